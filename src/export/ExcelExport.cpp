#include "export/ExcelExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/xls/utf16.h"
#include "export/xls/workbook.h"
#include "util/logging.h"

#include <memory>
#include <mutex>

namespace vellum {

namespace {

std::mutex g_workbookLock;
std::unique_ptr<xls::workbook> g_workbook; ///< the one open workbook of the program

/// The sheet being written, or nullptr after logging "Error when writing <what>: …".
xls::worksheet *currentSheet(std::uint16_t index, const char *what)
{
    if (!g_workbook) {
        C_LogError("Error when writing %s: No workbook available", what);
        return nullptr;
    }
    xls::worksheet *sheet = g_workbook->GetSheet(index);
    if (!sheet)
        C_LogError("Error when writing %s: No worksheet available", what);
    return sheet;
}

} // namespace

ExcelExport::~ExcelExport() { deleteWorkBook(); }

bool ExcelExport::hasWorkbook()
{
    std::lock_guard lock(g_workbookLock);
    return g_workbook != nullptr;
}

bool ExcelExport::addSheet(std::string_view name)
{
    if (name.empty())
        return false;
    std::lock_guard lock(g_workbookLock);
    if (!g_workbook) {
        g_workbook = std::make_unique<xls::workbook>();
        m_indexOfLastSheet = 65535;
    }
    const auto utf16 = UTF8ToUTF16Converter(name.data(), name.size());
    if (!utf16)
        return true;
    if (!g_workbook->sheet(*utf16)) {
        C_LogError("Unable to add the sheet %.*s: %s", static_cast<int>(name.size()), name.data(),
                   g_workbook->lastError().c_str());
        return false;
    }
    ++m_indexOfLastSheet; // 65535 + 1 wraps to 0 for the first sheet
    return true;
}

void ExcelExport::writeString(std::string_view text, std::uint32_t row, std::uint32_t col)
{
    if (text.empty())
        return;
    std::lock_guard lock(g_workbookLock);
    xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "string");
    if (sheet && utf8ToUtf16(text, m_utf16))
        sheet->label(row, col, m_utf16);
}

void ExcelExport::writeNumber(double number, std::uint32_t row, std::uint32_t col)
{
    std::lock_guard lock(g_workbookLock);
    if (xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "number"))
        sheet->number(row, col, number);
}

void ExcelExport::setBlankForRow(std::uint32_t row, std::uint32_t col)
{
    std::lock_guard lock(g_workbookLock);
    if (xls::worksheet *sheet = currentSheet(m_indexOfLastSheet, "null"))
        sheet->blank(row % 65536, col);
}

bool ExcelExport::dumpToFile(const std::string &path)
{
    std::lock_guard lock(g_workbookLock);
    if (!g_workbook) {
        C_LogError("Error when dump file: No workbook available");
        return false;
    }
    const bool saved = g_workbook->Dump(path);
    if (!saved)
        C_LogError("Error when dump file: %s", g_workbook->lastError().c_str());
    g_workbook.reset();
    return saved;
}

void ExcelExport::deleteWorkBook()
{
    std::lock_guard lock(g_workbookLock);
    g_workbook.reset();
}

void exportXLSThread(ExportJob &job)
{
    ExcelExport excel;
    exportSpreadsheetTables(job, excel, kXlsLimits);
}

} // namespace vellum
