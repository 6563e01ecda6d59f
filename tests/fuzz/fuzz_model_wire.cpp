// Feeds arbitrary bytes to the receiving end of the loader's pipe as the whole stream a helper
// sent, and reads it into a file the way the isolated reader does; a model that was accepted is
// then walked cell by cell, so that a stored reference past its storage is caught.
#include "loader/WireReader.h"
#include "loader/modelWire.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

/// The fuzzer's bytes as the pipe: a read past the end fails, as at the end of a real pipe.
class InputSource : public vellum::ByteSource {
public:
    InputSource(const std::uint8_t *data, std::size_t size) : m_data(data), m_size(size) {}
    bool read(void *out, std::size_t length) override
    {
        if (length > m_size - m_position)
            return false;
        if (length)
            std::memcpy(out, m_data + m_position, length);
        m_position += length;
        return true;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_position = 0;
};

/// Takes every progress call and never cancels, so that the whole stream is read.
class QuietObserver : public vellum::LoadObserver {
public:
    void tableStarted(const std::string &, std::size_t, std::size_t) override {}
    void rowsLoaded(std::uint64_t) override {}
    bool shouldCancel() override { return false; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    InputSource source(data, size);
    QuietObserver observer;
    vellum::ReceivedModel model;
    if (!vellum::readModelStream(source, &observer, model))
        return 0; // a refused stream is dropped, as the isolated reader drops it
    vellum::TOrbMDBFile file;
    model.moveInto(file);
    file.sortLoadedLists();
    file.setActive(true);

    volatile std::size_t sink = 0;
    std::vector<vellum::CellValue> cells;
    for (const auto &table : file.tables()) {
        if (table->file() != &file)
            std::abort(); // every table belongs to the file it was handed to
        const vellum::TableStore &store = table->store();
        for (std::size_t row = 0; row < store.rowCount(); ++row) {
            store.rowCells(row, cells);
            if (cells.size() != store.columnCount())
                std::abort();
            for (const vellum::CellValue &cell : cells) {
                if (cell.isText())
                    sink = sink + static_cast<unsigned char>(cell.text.back());
                else if (cell.isBlob())
                    sink = sink + cell.blob->data().size();
            }
        }
        // The values of complex columns, through the table's cells and whole.
        for (std::size_t row = 0; row < table->rowCount(); ++row) {
            table->rowCells(row, cells);
            for (const vellum::CellValue &cell : cells)
                if (cell.complex)
                    sink = sink + cell.complex->displayText().size() + cell.complex->detailText().size();
        }
        for (const auto &[position, values] : table->complexColumns()) {
            if (position >= table->columns().size())
                std::abort(); // a complex column is one of the table's columns
            for (const auto &[id, value] : values->entries())
                for (const auto &attachment : value.attachments())
                    sink = sink + attachment.data->data().size() + static_cast<std::size_t>(id);
        }
    }
    (void)sink;
    return 0;
}
