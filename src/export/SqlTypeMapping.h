#pragma once

#include "model/CellValue.h"
#include "sql/ServerType.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// The type name of an Access column type (a `dataType` text such as "Long Integer") in a target
/// dialect. ServerTypeNone, a number outside the dialects or a type the dialect does not list
/// gives the input unchanged.
std::string convertMDBTypeToTargetType(std::string_view mdbType, ServerType dialect);

/// The type of a column definition: the mapped type plus "(fieldSize)" for a "Text" column in
/// every dialect but SQLite.
std::string sqlColumnDefinitionType(std::string_view mdbType, int fieldSize, ServerType dialect);

/// The blob literal of a byte buffer: x'…' with two lower-case hex digits a byte (x'' when empty).
std::string encodeSqlBlobValue(const std::uint8_t *bytes, std::size_t size);
/// The blob literal of a byte buffer.
std::string encodeSqlBlobValue(const std::vector<std::uint8_t> &bytes);
/// Appends the blob literal of a byte buffer to `out`.
void appendSqlBlobValue(std::string &out, const std::uint8_t *bytes, std::size_t size);

/// Writes a text cell that holds a NUL byte (a Binary value's bytes) as a blob literal, whole:
/// no SQL text literal can hold one, and clients stop reading a script there. False, with
/// nothing written, for any other cell.
bool appendNulTextAsBlob(std::string &out, const CellValue &value);

/// Reads the month-first date text of a DateTime cell, "MM/dd/yyyy HH:mm:ss", and writes it as
/// "yyyy-MM-dd HH:mm:ss". False (and `out` untouched) when the text is not a valid date of that
/// exact pattern (a day that does not exist, a two-digit year).
[[nodiscard]] bool reformatMonthFirstDate(std::string_view text, std::string &out);

/// How the cells of one column are written in a data statement.
struct SqlLiteralColumn {
    std::string_view dataType;        ///< the column's `dataType`
    bool zeroLengthForbidden = false; ///< the column's `allowZeroLength` is exactly "NO"
};

/// Appends the literal of one cell to `out`: quoted and escaped text, the dialect's date form,
/// numbers with the decimal symbol, GUIDs per dialect, the blob literal, or for a missing value
/// "null" ("''" when the column forbids zero-length text).
void appendSqlValueLiteral(std::string &out, const CellValue &value, const SqlLiteralColumn &column, ServerType dialect,
                           std::string_view decimalSymbol);

/// The literal of one cell, as `appendSqlValueLiteral` writes it.
std::string sqlValueLiteral(const CellValue &value, const SqlLiteralColumn &column, ServerType dialect,
                            std::string_view decimalSymbol);

/// Appends `text` with every backslash doubled and every single quote doubled, between single
/// quotes: the quoted-text form shared by value literals and column comments.
void appendSqlQuotedText(std::string &out, std::string_view text);

} // namespace vellum
