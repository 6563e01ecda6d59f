#pragma once

// The routine shared by the two workbook kinds (Excel 97-2003 .xls and Excel 2007 .xlsx): one
// sheet per table, continuation sheets "T(2)", "T(3)" … beyond a sheet's rows, numbers for the
// number columns, text for the rest, blank cells for values that are not text, and the length
// check that fails a table before anything of it is written. With lossless output each value
// gets the cell its type calls for instead (date cells, booleans, exact numbers, base64 bytes)
// and a text over the cell limit is cut and counted rather than failing its table.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

class ExportJob;
class TOrbMDBTable;

/// The number format a lossless workbook shows a numeric cell with.
enum class NumberStyle {
    General,              ///< the default: the number as it is
    DateTime,             ///< "yyyy-mm-dd hh:mm:ss": a date cell
    DateTimeMilliseconds, ///< "yyyy-mm-dd hh:mm:ss.000": a date cell with milliseconds
    Currency,             ///< "#,##0.00##": thousands grouped, two to four decimals
};

/// The Excel number format code of a style ("" for General).
const char *numberFormatCode(NumberStyle style);

/// A workbook writer as the routine drives it. Called on the worker thread only.
class SpreadsheetWriter {
public:
    virtual ~SpreadsheetWriter() = default;
    /// Where the next workbook will be saved, told before its first `addSheet` (a writer that
    /// learns the path only when saving ignores it).
    virtual void setTargetPath(const std::string &path) { (void)path; }
    /// Adds a sheet (opening a workbook when none is open); false when it cannot be added.
    [[nodiscard]] virtual bool addSheet(std::string_view name) = 0;
    /// A text cell of the last sheet; an empty text writes nothing.
    virtual void writeString(std::string_view text, std::uint32_t row, std::uint32_t col) = 0;
    /// A numeric cell of the last sheet.
    virtual void writeNumber(double number, std::uint32_t row, std::uint32_t col) = 0;
    /// A numeric cell of the last sheet shown with a number format (a date, an amount).
    virtual void writeStyledNumber(double number, NumberStyle style, std::uint32_t row, std::uint32_t col) = 0;
    /// A boolean cell (TRUE/FALSE) of the last sheet.
    virtual void writeBoolean(bool value, std::uint32_t row, std::uint32_t col) = 0;
    /// An empty cell of the last sheet, for a value that is not text.
    virtual void setBlankForRow(std::uint32_t row, std::uint32_t col) = 0;
    /// Saves the open workbook to `path` and closes it; false (nothing left at the path) when
    /// that failed or no workbook is open.
    [[nodiscard]] virtual bool dumpToFile(const std::string &path) = 0;
    /// Closes the open workbook without saving.
    virtual void deleteWorkBook() = 0;
};

/// The limits of a workbook format.
struct SpreadsheetLimits {
    std::uint32_t rowsPerSheet; ///< rows of one sheet, the header row included
    std::size_t maxTextUnits;   ///< longest text of a cell, in UTF-16 code units
    /// Significant digits a numeric cell keeps: 17 where the file holds the double's bits
    /// (every double is exact), fewer where numbers are written as decimal text.
    int numberDigits = 17;
};

/// Writes the job's tables through `writer`: into one workbook at the path text when single
/// file is on (saved at the end, also after Stop), else one workbook per table at
/// "%@/%@" of the folder and the entry's file name. Follows the export driver contract.
void exportSpreadsheetTables(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits);

/// True for the column types written as numeric cells: "Integer", "Long Integer", "Currency",
/// "Single", "Double" and "Numeric". Every other type ("Byte" and "Boolean" too) is text.
bool isSpreadsheetNumberType(std::string_view dataType);

/// The value of a text's leading numeric part after leading white space ("12abc" is 12,
/// "-1.5e3 kg" is -1500), 0 when the text does not start with a number. The decimal point is
/// "." whatever the locale; hexadecimal, "inf" and "nan" are not numbers here. A number beyond
/// a double's range gives the largest double of its sign (workbooks have no infinity).
double leadingNumberValue(std::string_view text);

/// The position of the first column (in column order) holding a text longer than `maxUnits`
/// UTF-16 code units in any row; nullopt when every text fits.
std::optional<std::size_t> columnExceedingTextLength(const TOrbMDBTable &table, std::size_t maxUnits);

} // namespace vellum
