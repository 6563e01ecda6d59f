#pragma once

#include "export/SpreadsheetExport.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vellum {

/// The adapter between the export routine and the BIFF8 workbook writer (xls::workbook): adds
/// sheets, writes cells into the last sheet added, converts text to UTF-16, saves.
///
/// The workbook being built lives in one module-level slot, not in the object: only one
/// workbook is open at a time in the whole program, and every ExcelExport on the thread that
/// opened it writes into it. A thread that wants a workbook while another thread's is open
/// waits in `addSheet` until that one is saved or deleted; cell calls from a thread that holds
/// no workbook find none. So the per-cell calls need no lock.
class ExcelExport final : public SpreadsheetWriter {
public:
    ExcelExport() = default;
    /// Closes a workbook left open (unsaved), so that the next export starts afresh.
    ~ExcelExport() override;
    ExcelExport(const ExcelExport &) = delete;
    ExcelExport &operator=(const ExcelExport &) = delete;

    /// Adds a sheet named `name` (UTF-8), opening a new workbook when none is open. False for an
    /// empty name or when the workbook refuses the name (already used, the library's reason is
    /// logged); true without a sheet when the name cannot be converted to UTF-16.
    [[nodiscard]] bool addSheet(std::string_view name) override;
    /// A text cell in the sheet `indexOfLastSheet`; an empty or unconvertible text writes nothing.
    void writeString(std::string_view text, std::uint32_t row, std::uint32_t col) override;
    /// A numeric cell in the sheet `indexOfLastSheet`.
    void writeNumber(double number, std::uint32_t row, std::uint32_t col) override;
    /// A numeric cell in the sheet `indexOfLastSheet` with the style's number format.
    void writeStyledNumber(double number, NumberStyle style, std::uint32_t row, std::uint32_t col) override;
    /// A boolean cell in the sheet `indexOfLastSheet`.
    void writeBoolean(bool value, std::uint32_t row, std::uint32_t col) override;
    /// An empty cell in the sheet `indexOfLastSheet`; the row is taken modulo 65536.
    void setBlankForRow(std::uint32_t row, std::uint32_t col) override;
    /// Saves the workbook to `path` (UTF-8) and destroys it, so the next `addSheet` starts a new
    /// one. False, with the reason logged, when there is no workbook or saving failed.
    [[nodiscard]] bool dumpToFile(const std::string &path) override;
    /// Destroys the open workbook without saving.
    void deleteWorkBook() override;

    /// Index of the sheet being written; 65535 right after a workbook was opened.
    std::uint16_t indexOfLastSheet() const { return m_indexOfLastSheet; }
    /// True while the calling thread holds the open workbook.
    static bool hasWorkbook();

private:
    std::uint16_t m_indexOfLastSheet = 65535;
    std::u16string m_utf16; ///< conversion buffer, reused for every cell
};

/// Rows of a BIFF8 sheet (row indexes 0 to 65535) and the longest text an .xls cell gets.
inline constexpr SpreadsheetLimits kXlsLimits = {65536, 32740};

} // namespace vellum
