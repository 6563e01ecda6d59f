#pragma once

#include "model/MdbLoader.h"
#include "model/WireWriter.h"
#include "model/modelWire.h"

#include <map>
#include <memory>

namespace vellum {

/// The sending end of the loader's pipe format (modelWire.h): a load sink that writes the
/// stream header, a Catalog message with the relationships, progress messages, each table as
/// it completes, and End. Used by vellum-loader.
class ModelStreamWriter : public LoadSink {
public:
    /// `relationships` is the file the load reads its relationships into; it is sent with the
    /// catalog.
    ModelStreamWriter(ByteOutput output, const TOrbMDBFile &relationships);

    /// Writes the stream header.
    [[nodiscard]] bool begin();
    /// Writes End; true when every message went out.
    [[nodiscard]] bool finish();

    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override;
    void rowsLoaded(std::uint64_t totalRows) override;
    /// Asks the load to stop once the pipe failed.
    bool shouldCancel() override { return !m_ok; }
    void catalogRead(std::size_t count) override;
    void tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table) override;
    /// Sends the blocks of the table that are finished, once there is a new one.
    void tableGrowing(std::size_t position, const TOrbMDBTable &table) override;

private:
    void send(LoaderMessage type, const WireWriter &message);

    ByteOutput m_output;
    const TOrbMDBFile &m_relationships;
    std::size_t m_count = 0;
    std::map<std::size_t, StoreParts> m_sent; ///< storage sent ahead, by table position
    std::unique_ptr<TOrbMDBTable> m_lastSent;
    bool m_ok = true;
};

} // namespace vellum
