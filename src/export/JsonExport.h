#pragma once

// JSON output of tables: an array of objects (one per row) or JSON Lines (one object a line),
// keys the column names in display order, every value in a JSON form that keeps it exactly.

#include "export/ExportSink.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace vellum {

struct CellValue;
class TOrbComplexValue;
class TOrbMDBTable;

/// How the rows of a table are laid out.
enum class JsonLayout {
    Array, ///< "[", the objects separated by ",\n", "]"; "[]" for no rows
    Lines, ///< one object a line, each ended by "\n"; nothing for no rows
};

/// The JSON form of the values of a column type.
enum class JsonValueForm {
    Text,     ///< a string (Text, Memo, GUID)
    Integer,  ///< a number when a double holds it exactly, else a string (Byte … Large Number)
    Decimal,  ///< likewise (Currency, Numeric)
    Floating, ///< a number; NaN and ±Infinity as the strings "NaN", "Infinity", "-Infinity"
    Boolean,  ///< true / false
    DateTime, ///< an ISO 8601 string "YYYY-MM-DDTHH:MM:SS[.fffffff]"
    Binary,   ///< {"base64": …} of the stored bytes (Binary and unknown types)
    Ole,      ///< {"base64": …, "extension": …} of the decoded content, the extension when known
};

/// The form of a column type name (a column's `dataType`).
JsonValueForm jsonValueFormForDataType(std::string_view dataType);

/// True when `text` is a number in JSON's grammar: -?(0|[1-9][0-9]*)(.[0-9]+)?([eE][+-]?[0-9]+)?
bool isJsonNumberText(std::string_view text);

/// Appends the JSON value of one cell in `form` (null for a null cell). A complex cell is
/// written with `appendJsonComplexValue` instead.
void appendJsonCellValue(std::string &out, const CellValue &cell, JsonValueForm form);

/// The form of the items of a multi-value column whose items have the type `valueType`: that
/// type's form, strings when the type is unknown ("").
JsonValueForm jsonItemFormForValueType(std::string_view valueType);

/// Appends the values of one complex cell as an array: multi-value items in `itemForm`,
/// attachments as {"name","type","base64"}, a version history as {"value","date"} newest first.
void appendJsonComplexValue(std::string &out, const TOrbComplexValue &value,
                            JsonValueForm itemForm = JsonValueForm::Text);

/// How writing one table ended.
enum class JsonTableResult { Completed, Terminated, WriteFailed };

/// Writes one table as JSON to a sink in large blocks, one row at a time. Polls `stop` between
/// rows; on stop it ends the output where it is (the caller discards it). `rowProgress` (may be
/// empty) gets (rows done, row count).
JsonTableResult writeJsonTable(const TOrbMDBTable &table, JsonLayout layout, ExportSink &sink,
                               const std::atomic<bool> &stop,
                               const std::function<void(std::size_t, std::size_t)> &rowProgress = {});

} // namespace vellum
