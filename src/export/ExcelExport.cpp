#include "export/ExcelExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/xls/utf16.h"
#include "export/xls/workbook.h"
#include "util/logging.h"

#include <array>
#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace vellum {

namespace {

/// The one open workbook of the program and the thread that holds it.
struct WorkbookSlot {
    std::mutex lock;
    std::condition_variable freed;
    std::atomic<std::thread::id> owner{};
    std::unique_ptr<xls::workbook> book;
};

WorkbookSlot &slot()
{
    static WorkbookSlot instance;
    return instance;
}

/// The open workbook when the calling thread holds it, else nullptr.
xls::workbook *ownWorkbook()
{
    WorkbookSlot &s = slot();
    return s.owner.load(std::memory_order_acquire) == std::this_thread::get_id() ? s.book.get() : nullptr;
}

/// Waits until no other thread holds a workbook, then opens one for this thread.
xls::workbook *openWorkbook()
{
    WorkbookSlot &s = slot();
    std::unique_lock lock(s.lock);
    s.freed.wait(lock, [&] { return s.owner.load() == std::thread::id(); });
    s.book = std::make_unique<xls::workbook>();
    s.owner.store(std::this_thread::get_id(), std::memory_order_release);
    return s.book.get();
}

/// Destroys the calling thread's workbook and frees the slot.
void closeWorkbook()
{
    WorkbookSlot &s = slot();
    if (!ownWorkbook())
        return;
    {
        std::lock_guard lock(s.lock);
        s.book.reset();
        s.owner.store(std::thread::id(), std::memory_order_release);
    }
    s.freed.notify_all();
}

/// The sheet being written, or nullptr after logging "Error when writing <what>: …".
xls::worksheet *currentSheet(std::uint16_t index, const char *what)
{
    xls::workbook *book = ownWorkbook();
    if (!book) {
        C_LogError("Error when writing %s: No workbook available", what);
        return nullptr;
    }
    xls::worksheet *sheet = book->GetSheet(index);
    if (!sheet)
        C_LogError("Error when writing %s: No worksheet available", what);
    return sheet;
}

} // namespace

ExcelExport::~ExcelExport()
{
    deleteWorkBook();
}

bool ExcelExport::hasWorkbook()
{
    return ownWorkbook() != nullptr;
}

bool ExcelExport::addSheet(std::string_view name)
{
    if (name.empty())
        return false;
    xls::workbook *book = ownWorkbook();
    if (!book) {
        book = openWorkbook();
        m_indexOfLastSheet = 65535;
    }
    const auto utf16 = UTF8ToUTF16Converter(name.data(), name.size());
    if (!utf16)
        return true;
    if (!book->sheet(*utf16)) {
        C_LogError("Unable to add the sheet %.*s: %s", static_cast<int>(name.size()), name.data(),
                   book->lastError().c_str());
        return false;
    }
    ++m_indexOfLastSheet; // 65535 + 1 wraps to 0 for the first sheet
    return true;
}

void ExcelExport::writeString(std::string_view text, std::uint32_t row, std::uint32_t col)
{
    if (text.empty())
        return;
    xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "string");
    if (sheet && utf8ToUtf16(text, m_utf16))
        sheet->label(row, col, m_utf16);
}

void ExcelExport::writeNumber(double number, std::uint32_t row, std::uint32_t col)
{
    if (xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "number"))
        sheet->number(row, col, number);
}

void ExcelExport::writeStyledNumber(double number, NumberStyle style, std::uint32_t row, std::uint32_t col)
{
    xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "number");
    if (!sheet)
        return;
    // The format codes in UTF-16, made once (they are ASCII).
    static const std::array<std::u16string, 4> kCodes = [] {
        std::array<std::u16string, 4> codes;
        for (std::size_t i = 0; i < codes.size(); ++i) {
            const std::string_view code = numberFormatCode(static_cast<NumberStyle>(i));
            codes[i].assign(code.begin(), code.end());
        }
        return codes;
    }();
    const std::uint16_t xf = style == NumberStyle::General
                                 ? xls::biff::kDefaultCellXf
                                 : ownWorkbook()->numberFormat(kCodes[static_cast<std::size_t>(style)]);
    sheet->number(row, col, number, xf);
}

void ExcelExport::writeBoolean(bool value, std::uint32_t row, std::uint32_t col)
{
    if (xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "boolean"))
        sheet->boolean(row, col, value);
}

void ExcelExport::setBlankForRow(std::uint32_t row, std::uint32_t col)
{
    if (xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "null"))
        sheet->blank(row % 65536, col);
}

bool ExcelExport::dumpToFile(const std::string &path)
{
    xls::workbook *book = ownWorkbook();
    if (!book) {
        C_LogError("Error when dump file: No workbook available");
        return false;
    }
    const bool saved = book->Dump(path);
    if (!saved)
        C_LogError("Error when dump file: %s", book->lastError().c_str());
    closeWorkbook();
    return saved;
}

void ExcelExport::deleteWorkBook()
{
    closeWorkbook();
}

void exportXLSThread(ExportJob &job)
{
    ExcelExport excel;
    exportSpreadsheetTables(job, excel, kXlsLimits);
}

} // namespace vellum
