#include "export/XlsxExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/xls/sheetNames.h"
#include "export/xls/utf16.h"
#include "util/logging.h"

#include <algorithm>
#include <glib.h>
#include <xlsxwriter.h>

#include <cmath>
#include <cstdio>
#include <iterator>

namespace vellum {

namespace {

bool isHex(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// UTF-8 that may hold NUL characters (GLib's check refuses every NUL).
bool isUtf8WithNuls(std::string_view text)
{
    for (std::size_t from = 0; from <= text.size();) {
        const std::size_t nul = std::min(text.find('\0', from), text.size());
        if (nul > from && !g_utf8_validate_len(text.data() + from, nul - from, nullptr))
            return false;
        from = nul + 1;
    }
    return true;
}

/// libxlsxwriter writes 16 significant digits, which round the largest doubles up past the range
/// of a double ("1.797693134862316E+308"); those are written as the largest value whose 16
/// digits a reader can still read.
double readableNumber(double number)
{
    constexpr double kLargest = 1.797693134862315e308;
    return std::fabs(number) > kLargest ? std::copysign(kLargest, number) : number;
}

} // namespace

void appendOoxmlText(std::string &out, std::string_view text)
{
    // Copies runs up to each underscore or NUL whole; only an underscore that starts "_xHHHH_"
    // changes, and a NUL (which would end the text in the C string libxlsxwriter takes) becomes
    // the escape Excel reads back as NUL.
    static constexpr std::string_view kSpecial("_\0", 2);
    std::size_t from = 0;
    for (std::size_t i = text.find_first_of(kSpecial); i != std::string_view::npos;
         i = text.find_first_of(kSpecial, i + 1)) {
        if (text[i] == '\0') {
            out.append(text.substr(from, i - from));
            out += "_x0000_";
            from = i + 1;
        } else if (i + 6 < text.size() && text[i + 1] == 'x' && isHex(text[i + 2]) && isHex(text[i + 3]) &&
                   isHex(text[i + 4]) && isHex(text[i + 5]) && text[i + 6] == '_') {
            out.append(text.substr(from, i - from));
            out += "_x005F";
            from = i; // the underscore itself follows with the rest
        }
    }
    out.append(text.substr(from));
}

XlsxExport::~XlsxExport()
{
    deleteWorkBook();
}

bool XlsxExport::addSheet(std::string_view name)
{
    std::u16string utf16;
    if (name.empty() || !utf8ToUtf16(name, utf16))
        return false;
    const std::u16string sheetName = xls::excelSheetName(utf16);
    for (const std::u16string &used : m_sheetNames) {
        if (xls::sameSheetName(used, sheetName)) {
            C_LogError("Unable to add the sheet %s: the workbook has a sheet of that name already",
                       utf16ToUtf8(sheetName).c_str());
            return false;
        }
    }
    if (m_workbook == nullptr) {
        lxw_workbook_options options = {};
        options.constant_memory = LXW_TRUE;
        options.tmpdir = const_cast<char *>(g_get_tmp_dir());
        // The workbook is written under a temporary name and renamed when complete (or copied
        // into a device, pipe or the standard output).
        if (!m_output.begin(m_targetPath, OutputFile::Target::PathOnly)) {
            C_LogError("Unable to start the workbook %s: %s", m_targetPath.c_str(), m_output.errorText().c_str());
            return false;
        }
        m_workbook = workbook_new_opt(m_output.writePath().c_str(), &options);
        if (m_workbook == nullptr) {
            C_LogError("Unable to start the workbook %s", m_targetPath.c_str());
            m_output.abandon();
            return false;
        }
        m_workbookPath = m_targetPath;
        m_sheetNames.clear();
        m_sheet = nullptr;
        std::fill(std::begin(m_formats), std::end(m_formats), nullptr);
    }
    const std::string utf8 = utf16ToUtf8(sheetName);
    lxw_worksheet *sheet = workbook_add_worksheet(m_workbook, utf8.c_str());
    if (sheet == nullptr) {
        C_LogError("Unable to add the sheet %s", utf8.c_str());
        return false;
    }
    m_sheet = sheet;
    m_sheetNames.push_back(sheetName);
    return true;
}

void XlsxExport::writeString(std::string_view text, std::uint32_t row, std::uint32_t col)
{
    // As in .xls files, a text that is not valid UTF-8 (a Binary value) is left out; NUL bytes
    // are valid and kept.
    if (text.empty() || m_sheet == nullptr || !isUtf8WithNuls(text))
        return;
    m_text.clear();
    appendOoxmlText(m_text, text);
    worksheet_write_string(m_sheet, row, static_cast<lxw_col_t>(col), m_text.c_str(), nullptr);
}

void XlsxExport::writeNumber(double number, std::uint32_t row, std::uint32_t col)
{
    if (m_sheet != nullptr)
        worksheet_write_number(m_sheet, row, static_cast<lxw_col_t>(col), readableNumber(number), nullptr);
}

void XlsxExport::writeStyledNumber(double number, NumberStyle style, std::uint32_t row, std::uint32_t col)
{
    if (m_workbook == nullptr || m_sheet == nullptr)
        return;
    lxw_format *&format = m_formats[static_cast<int>(style)];
    if (format == nullptr && style != NumberStyle::General) {
        format = workbook_add_format(m_workbook);
        if (format != nullptr)
            format_set_num_format(format, numberFormatCode(style));
    }
    worksheet_write_number(m_sheet, row, static_cast<lxw_col_t>(col), readableNumber(number), format);
}

void XlsxExport::writeBoolean(bool value, std::uint32_t row, std::uint32_t col)
{
    if (m_sheet != nullptr)
        worksheet_write_boolean(m_sheet, row, static_cast<lxw_col_t>(col), value ? 1 : 0, nullptr);
}

void XlsxExport::setBlankForRow(std::uint32_t, std::uint32_t) {}

bool XlsxExport::dumpToFile(const std::string &path)
{
    if (m_workbook == nullptr) {
        C_LogError("Error when dump file: No workbook available");
        return false;
    }
    if (path != m_workbookPath) {
        C_LogError("Error when dump file: the workbook belongs to %s", m_workbookPath.c_str());
        deleteWorkBook();
        return false;
    }
    const lxw_error error = workbook_close(m_workbook);
    m_workbook = nullptr;
    m_sheet = nullptr;
    std::fill(std::begin(m_formats), std::end(m_formats), nullptr);
    m_sheetNames.clear();
    if (error != LXW_NO_ERROR) {
        C_LogError("Error when dump file: %s", lxw_strerror(error));
        m_output.abandon();
        return false;
    }
    if (!m_output.commit()) {
        C_LogError("Error when dump file: %s", m_output.errorText().c_str());
        return false;
    }
    return true;
}

void XlsxExport::deleteWorkBook()
{
    if (m_workbook != nullptr)
        lxw_workbook_free(m_workbook);
    m_output.abandon();
    m_workbook = nullptr;
    m_sheet = nullptr;
    std::fill(std::begin(m_formats), std::end(m_formats), nullptr);
    m_sheetNames.clear();
}

void exportXLSXThread(ExportJob &job)
{
    XlsxExport xlsx;
    exportSpreadsheetTables(job, xlsx, kXlsxLimits);
}

} // namespace vellum
