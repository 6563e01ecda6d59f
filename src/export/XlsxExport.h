#pragma once

#include "export/OutputFile.h"
#include "export/SpreadsheetExport.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct lxw_workbook;
struct lxw_worksheet;
struct lxw_format;

namespace vellum {

/// The adapter between the export routine and libxlsxwriter for Excel 2007 workbooks (.xlsx).
/// The workbook runs in libxlsxwriter's constant-memory mode: each row goes to a temporary file
/// as soon as the next row begins, so a sheet of a million rows is never held in memory. Rows
/// must therefore come in order, which the routine does. Texts are written inline (UTF-8).
class XlsxExport final : public SpreadsheetWriter {
public:
    XlsxExport() = default;
    /// Discards a workbook left open.
    ~XlsxExport() override;
    XlsxExport(const XlsxExport &) = delete;
    XlsxExport &operator=(const XlsxExport &) = delete;

    /// The file the next workbook is saved to (libxlsxwriter needs it when the workbook opens).
    void setTargetPath(const std::string &path) override { m_targetPath = path; }
    /// Adds a sheet, opening a workbook at the target path when none is open. The name follows
    /// the same rules as in .xls files (`xls::excelSheetName`); false for an empty name, a name
    /// already used (Excel ignores case), or when libxlsxwriter refuses (reason logged).
    [[nodiscard]] bool addSheet(std::string_view name) override;
    /// A text cell; an empty text or one that is not valid UTF-8 writes nothing.
    void writeString(std::string_view text, std::uint32_t row, std::uint32_t col) override;
    void writeNumber(double number, std::uint32_t row, std::uint32_t col) override;
    /// A numeric cell with the style's number format, made once per workbook when first used.
    void writeStyledNumber(double number, NumberStyle style, std::uint32_t row, std::uint32_t col) override;
    void writeBoolean(bool value, std::uint32_t row, std::uint32_t col) override;
    /// Writes nothing: an .xlsx file has no unformatted empty cells, a missing cell is empty.
    void setBlankForRow(std::uint32_t row, std::uint32_t col) override;
    /// Writes the workbook, which must be at the target path, and closes it. False, with the
    /// reason logged and nothing left at the path, when that failed or no workbook is open.
    [[nodiscard]] bool dumpToFile(const std::string &path) override;
    /// Closes the workbook without writing it.
    void deleteWorkBook() override;

private:
    lxw_workbook *m_workbook = nullptr;
    lxw_worksheet *m_sheet = nullptr;
    lxw_format *m_formats[4] = {}; ///< by NumberStyle, made on first use (owned by the workbook)
    std::string m_targetPath;
    std::string m_workbookPath;
    OutputFile m_output; ///< the workbook's temporary file until it is saved
    std::vector<std::u16string> m_sheetNames;
    std::string m_text; ///< NUL-terminated copy of the cell being written
};

/// Appends a text for an .xlsx cell: libxlsxwriter escapes control characters as OOXML's
/// "_xHHHH_", which readers turn back into characters, so an "_xHHHH_" that is really in the
/// text gets its underscore escaped ("_x005F_") to stay as it is.
void appendOoxmlText(std::string &out, std::string_view text);

/// A sheet of an .xlsx file holds 1,048,576 rows and a cell up to 32767 UTF-16 units;
/// libxlsxwriter writes numbers with 16 significant digits.
inline constexpr SpreadsheetLimits kXlsxLimits = {1048576, 32767, 16};

} // namespace vellum
