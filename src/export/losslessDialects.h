#pragma once

// Column types and value literals of the lossless SQL scripts, one small description per target
// (PostgreSQL, MySQL/MariaDB, SQLite, SQL Server, Oracle). Every literal keeps the cell's value
// exactly where the target's type can hold it; where it cannot, the literal is the least lossy
// form and the caller is told which approximation it made, so that the job can count it.

#include "model/CellValue.h"
#include "sql/ServerType.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// What a column holds, as the lossless scripts distinguish it.
enum class LosslessKind {
    Boolean,
    Byte,
    Integer,
    LongInteger,
    LargeNumber,
    ComplexId, ///< the id a complex column stores
    Currency,
    Numeric,
    Single,
    Double,
    DateTime,
    DateTimeExtended,
    Guid,
    Binary, ///< Binary and unknown fixed or variable types: the stored bytes
    Ole,
    Text,
    Memo,
};

/// The kind of an Access column type name (a column's `dataType`); unknown names are Binary.
LosslessKind losslessKindForDataType(std::string_view dataType);

/// The size facts of a column that its type needs.
struct LosslessColumnShape {
    LosslessKind kind = LosslessKind::Text;
    int fieldSize = 0; ///< Text: characters; Binary: bytes
    int precision = 0; ///< Numeric; negative: any scale (a calculated result)
    int scale = 0;     ///< Numeric
};

/// The declared type of a column in a dialect.
std::string losslessColumnType(ServerType dialect, const LosslessColumnShape &shape);

/// How a literal could not keep a value exactly (English texts for the report).
enum class LosslessApproximation : unsigned char {
    None,
    NotANumberAsNull,   ///< NaN where the type has none
    InfinityAsNull,     ///< ±Infinity where the type has none
    MicrosecondRounded, ///< a seventh fractional digit of a time rounded away
    NulRemoved,         ///< NUL characters removed from a text the type cannot hold them in
    UnreadableAsNull,   ///< a cell text that is not a value of its column type
    NegativeZero,       ///< -0 where the target keeps only 0 (MySQL, SQLite)
    DecimalAsReal,      ///< a decimal of more than 15 digits that SQLite stores as a REAL
};

/// The report's text of an approximation ("" for None).
const char *losslessApproximationText(LosslessApproximation approximation);

/// Oracle's large binary values: a literal cannot hold more than 2000 bytes, so the row is
/// inserted from a PL/SQL block that first builds each such value in a temporary BLOB. The
/// literal function appends the variable's name to the row and the statements that fill it here.
struct OracleLobBuilder {
    std::vector<std::string> variables; ///< names declared in the block
    std::string statements;             ///< the block's statements before the INSERT
};

/// Appends the literal of one cell of a column of `kind` to `out` in `dialect`. `lobs` is used
/// by Oracle for binary values over 2000 bytes (required there; null elsewhere).
LosslessApproximation appendLosslessLiteral(std::string &out, ServerType dialect, LosslessKind kind,
                                            const CellValue &cell, OracleLobBuilder *lobs = nullptr);

/// The literal of one cell, as `appendLosslessLiteral` writes it (Oracle without large binary).
std::string losslessLiteral(ServerType dialect, LosslessKind kind, const CellValue &cell,
                            LosslessApproximation *approximation = nullptr);

/// Appends a text literal in the dialect's Unicode form with its escaping rules.
LosslessApproximation appendLosslessText(std::string &out, ServerType dialect, std::string_view text,
                                         bool longText = false);

/// Appends a binary literal (Oracle: at most 2000 bytes here).
void appendLosslessBytes(std::string &out, ServerType dialect, const std::uint8_t *bytes, std::size_t size);

/// The shortest decimal text that a double reads back from as exactly `value` ("0.1",
/// "3.4028234663852886e+38"); used for a Single's value where the target reads its literal as a
/// double first.
std::string shortestDoubleText(double value);

/// "YYYY-MM-DD HH:MM:SS.ffffff" of a Date/Time Extended text rounded half up to microseconds
/// (carrying into the seconds, days, months and years); `rounded` says whether a nonzero
/// seventh digit went. nullopt-like empty text when the text is not a date.
std::string microsecondDateTime(std::string_view cellText, bool &rounded);

} // namespace vellum
