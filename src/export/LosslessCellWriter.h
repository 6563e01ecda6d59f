#pragma once

#include "export/SpreadsheetExport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class ExportJob;
class TOrbMDBTable;
struct CellValue;

/// What a lossless workbook makes of a column's values.
enum class LosslessForm {
    Text,     ///< text (Text, Memo, Replication ID), cut at the cell limit
    Boolean,  ///< a boolean cell
    Integer,  ///< Byte, Integer, Long Integer: a number, always exact
    Decimal,  ///< Numeric, Large Number: a number when a cell keeps it exactly, else text
    Currency, ///< a number with the currency format when a cell keeps it exactly, else text
    Floating, ///< Single, Double: a number; NaN and the infinities as text
    Date,     ///< Date/Time: a date cell, or ISO text before 1900
    Extended, ///< Date/Time Extended: a date cell with milliseconds, or ISO text with 7 digits
    Bytes,    ///< Binary, OLE, unknown types: base64 text, or a note when it does not fit a cell
    Complex,  ///< attachments, multiple values, version history: their display text
};

/// The lossless form of a column type name (a column's `dataType`).
LosslessForm losslessFormOf(std::string_view dataType);

/// Writes the cells of one table into a lossless workbook: each value as the cell its type calls
/// for (booleans, exact numbers, date cells, base64 bytes), and every value the workbook can only
/// approximate counted in the job (`ExportJob::countApproximation`) under the table's name.
/// Called on the worker thread, row by row.
class LosslessCellWriter {
public:
    LosslessCellWriter(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits,
                       const TOrbMDBTable &table);

    /// Writes the value of column `column` (position in the table's columns) into sheet row `row`.
    void write(const CellValue &value, std::size_t column, std::uint32_t row);

private:
    void count(const char *what);
    /// A text, cut at the cell limit (never inside a character) and counted when too long.
    void writeText(std::string_view text, std::uint32_t row, std::uint32_t col);
    /// A decimal text as a number when a cell keeps it exactly, else as the text itself.
    void writeNumberOrText(std::string_view text, NumberStyle style, std::uint32_t row, std::uint32_t col);
    void writeFloating(std::string_view text, std::uint32_t row, std::uint32_t col);
    /// A date cell; an extended date (which has a fraction of a second) shows milliseconds.
    void writeDate(std::string_view text, bool extended, std::uint32_t row, std::uint32_t col);
    /// Base64 of bytes, or a note when that is longer than a cell holds.
    void writeBytes(const void *data, std::size_t length, std::uint32_t row, std::uint32_t col);

    ExportJob &m_job;
    SpreadsheetWriter &m_writer;
    const SpreadsheetLimits &m_limits;
    const TOrbMDBTable &m_table;
    std::vector<LosslessForm> m_forms; ///< by column
    std::string m_roundedDigits;       ///< the approximation text of numbers rounded to the cell's digits
    std::string m_base64;              ///< reused for every binary value
};

} // namespace vellum
