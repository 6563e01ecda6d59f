#include "export/losslessDialects.h"

#include "export/losslessValues.h"
#include "model/TOrbBlobData.h"
#include "util/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace vellum {

namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
/// The most bytes one Oracle literal (HEXTORAW of a 4000-character text) makes.
constexpr std::size_t kOracleRawLimit = 2000;
/// The most bytes of one Oracle text literal piece; well under its 4000-byte limit and
/// SQL*Plus's line length.
constexpr std::size_t kOracleTextPiece = 1000;

void appendHex(std::string &out, const std::uint8_t *bytes, std::size_t size)
{
    out.reserve(out.size() + 2 * size + 8);
    for (std::size_t i = 0; i < size; ++i) {
        out += kHexDigits[bytes[i] >> 4];
        out += kHexDigits[bytes[i] & 0x0f];
    }
}

bool isAsciiDigits(std::string_view text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (c < '0' || c > '9')
            return false;
    return true;
}

/// A decimal number text (sign, digits, point, exponent) that can stand bare in a script.
bool isPlainNumber(std::string_view text)
{
    if (text.empty())
        return false;
    bool digit = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c >= '0' && c <= '9')
            digit = true;
        else if (!(c == '.' || c == 'e' || c == 'E' ||
                   ((c == '-' || c == '+') && (i == 0 || text[i - 1] == 'e' || text[i - 1] == 'E'))))
            return false;
    }
    return digit;
}

/// Days since 1970-01-01 of a civil date (proleptic Gregorian).
long long daysFromCivil(long long y, unsigned m, unsigned d)
{
    y -= m <= 2;
    const long long era = (y >= 0 ? y : y - 399) / 400;
    const unsigned yoe = static_cast<unsigned>(y - era * 400);
    const unsigned doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
    return era * 146097 + static_cast<long long>(doe) - 719468;
}

void civilFromDays(long long z, int &year, int &month, int &day)
{
    z += 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const unsigned doe = static_cast<unsigned>(z - era * 146097);
    const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const long long y = static_cast<long long>(yoe) + era * 400;
    const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const unsigned mp = (5 * doy + 2) / 153;
    day = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
    month = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
    year = static_cast<int>(y + (month <= 2));
}

/// "YYYY-MM-DD HH:MM:SS" and, with `digits` > 0, "." and that many fractional digits.
std::string isoText(int year, int month, int day, int hour, int minute, int second, const std::string &fraction)
{
    std::string text = formatString("%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour, minute, second);
    if (!fraction.empty())
        text += "." + fraction;
    return text;
}

/// The dialect's date-time literal of an ISO text with `digits` fractional digits.
void appendDateLiteral(std::string &out, ServerType dialect, const std::string &iso, int digits)
{
    if (dialect == ServerTypeOracle) {
        out += "TO_TIMESTAMP('" + iso + "', 'YYYY-MM-DD HH24:MI:SS";
        if (digits > 0)
            out += ".FF" + std::to_string(digits);
        out += "')";
        return;
    }
    out += '\'' + iso + '\'';
}

LosslessApproximation appendDateTime(std::string &out, ServerType dialect, std::string_view text, bool extended)
{
    const auto date = parseCellDateTime(text);
    if (!date) {
        out += "NULL";
        return LosslessApproximation::UnreadableAsNull;
    }
    if (!extended) {
        appendDateLiteral(out, dialect,
                          isoText(date->year, date->month, date->day, date->hour, date->minute, date->second, {}), 0);
        return LosslessApproximation::None;
    }
    if (dialect == ServerTypePostgreSQL || dialect == ServerTypeMySQL) {
        // Microseconds are the finest these targets keep.
        bool rounded = false;
        appendDateLiteral(out, dialect, microsecondDateTime(text, rounded), 6);
        return rounded ? LosslessApproximation::MicrosecondRounded : LosslessApproximation::None;
    }
    std::string fraction = date->fraction;
    fraction.resize(7, '0');
    appendDateLiteral(out, dialect,
                      isoText(date->year, date->month, date->day, date->hour, date->minute, date->second, fraction), 7);
    return LosslessApproximation::None;
}

/// Significant digits of a decimal text's mantissa (leading and trailing zeros aside).
std::size_t significantDigits(std::string_view text)
{
    std::string digits;
    for (char c : text.substr(0, text.find_first_of("eE"))) {
        if (c >= '0' && c <= '9')
            digits += c;
    }
    const auto first = digits.find_first_not_of('0');
    if (first == std::string::npos)
        return 0;
    return digits.find_last_not_of('0') - first + 1;
}

/// True when a decimal text has a nonzero digit after its point.
bool hasFraction(std::string_view text)
{
    const auto point = text.find('.');
    return point != std::string_view::npos && text.find_first_of("123456789", point) != std::string_view::npos;
}

/// A double as an SQLite expression that computes it exactly: its 53-bit mantissa (an integer,
/// which SQLite reads exactly) scaled by powers of two (exact multiplications). SQLite's own
/// reading of long decimal texts is not correctly rounded in every version.
std::string sqliteExactDouble(double value)
{
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent); // value = fraction * 2^exponent
    const auto mantissa = static_cast<long long>(std::ldexp(fraction, 53));
    exponent -= 53;
    std::string out = "(" + std::to_string(mantissa) + ".0";
    while (exponent != 0) {
        const int step = std::clamp(exponent, -62, 62);
        out += step > 0 ? " * " : " / ";
        out += std::to_string(1ULL << (step > 0 ? step : -step)) + ".0";
        exponent -= step;
    }
    return out + ")";
}

LosslessApproximation appendFloatingPoint(std::string &out, ServerType dialect, std::string_view text, bool single)
{
    const bool nan = text == "NaN";
    const bool infinity = text == "Infinity" || text == "-Infinity";
    const bool negative = !text.empty() && text.front() == '-';
    if (!nan && !infinity && !isPlainNumber(text)) {
        out += "NULL";
        return LosslessApproximation::UnreadableAsNull;
    }
    switch (dialect) {
    case ServerTypePostgreSQL:
        // Quoted, the text goes straight to the type's own input function, which reads "NaN"
        // and "Infinity" too and keeps the sign of -0.
        out += '\'';
        out += text;
        out += '\'';
        return LosslessApproximation::None;
    case ServerTypeOracle:
        if (nan) {
            out += single ? "BINARY_FLOAT_NAN" : "BINARY_DOUBLE_NAN";
        } else if (infinity) {
            if (negative)
                out += '-';
            out += single ? "BINARY_FLOAT_INFINITY" : "BINARY_DOUBLE_INFINITY";
        } else {
            out += text;
            out += single ? 'f' : 'd';
        }
        return LosslessApproximation::None;
    case ServerTypeSQLite:
        if (nan) {
            out += "NULL";
            return LosslessApproximation::NotANumberAsNull;
        }
        if (infinity) {
            // A literal beyond the double range reads as infinity.
            out += negative ? "-9e999" : "9e999";
            return LosslessApproximation::None;
        }
        break;
    default: // MySQL, SQL Server: no NaN, no infinity
        if (nan || infinity) {
            out += "NULL";
            return nan ? LosslessApproximation::NotANumberAsNull : LosslessApproximation::InfinityAsNull;
        }
        break;
    }
    std::string number(text);
    if (!single && dialect == ServerTypeSQLite && significantDigits(text) > 15) {
        out += sqliteExactDouble(std::strtod(number.c_str(), nullptr));
        return LosslessApproximation::None;
    }
    if (single && dialect == ServerTypeMySQL) {
        // MySQL reads the literal as a double before storing the single: the shortest text of
        // the single can lie beyond the single range ("3.4028235e+38"), the exact value cannot.
        number = shortestDoubleText(static_cast<double>(std::strtof(number.c_str(), nullptr)));
    }
    if (number.find_first_of("eE") == std::string::npos &&
        (dialect == ServerTypeMySQL || dialect == ServerTypeSQLServer || dialect == ServerTypeSQLite))
        number += "e0"; // a floating-point literal, not an exact decimal (and -0 keeps its sign)
    out += number;
    // MySQL keeps no negative zero, nor does SQLite, which stores a REAL that is a whole
    // number as an integer.
    if ((dialect == ServerTypeMySQL || dialect == ServerTypeSQLite) && negative &&
        std::strtod(number.c_str(), nullptr) == 0)
        return LosslessApproximation::NegativeZero;
    return LosslessApproximation::None;
}

/// Appends a piece of an Oracle or SQL Server text concatenation.
void appendUnicodePiece(std::string &out, std::string_view piece)
{
    out += "N'";
    for (char c : piece) {
        if (c == '\'')
            out += c;
        out += c;
    }
    out += '\'';
}

/// Oracle and SQL Server: quoted pieces between control characters, which go in as NCHR(n) /
/// NCHAR(n), so that no line break of a value reaches the script's lines (SQL*Plus and sqlcmd
/// read scripts line by line).
void appendConcatenatedText(std::string &out, ServerType dialect, std::string_view text, bool longText)
{
    const bool oracle = dialect == ServerTypeOracle;
    const char *plus = oracle ? " || " : " + ";
    std::vector<std::string> parts;
    std::string piece;
    const auto endPiece = [&] {
        if (piece.empty())
            return;
        std::string part;
        appendUnicodePiece(part, piece);
        parts.push_back(std::move(part));
        piece.clear();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c < 0x20 && c != '\t') {
            endPiece();
            parts.push_back(formatString(oracle ? "NCHR(%d)" : "NCHAR(%d)", c));
            continue;
        }
        // Oracle pieces stay short; a piece ends before a UTF-8 lead byte only.
        if (oracle && piece.size() >= kOracleTextPiece && (c & 0xC0) != 0x80)
            endPiece();
        piece += static_cast<char>(c);
    }
    endPiece();
    if (parts.empty()) {
        out += "N''";
        return;
    }
    if (parts.size() == 1) {
        out += oracle && longText && text.size() > kOracleTextPiece ? "TO_NCLOB(" + parts[0] + ")" : parts[0];
        return;
    }
    // A concatenation of Unicode texts is cut at 4000 characters (SQL Server) or bytes (Oracle)
    // unless its first operand is a large object.
    if (oracle) {
        if (longText)
            out += "TO_NCLOB(" + parts[0] + ")";
        else
            out += parts[0];
    } else {
        if (text.size() > 2000)
            out += "CAST(" + parts[0] + " AS NVARCHAR(MAX))";
        else
            out += parts[0];
    }
    std::size_t lineLength = out.size();
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (oracle && out.size() - lineLength > 1500) {
            out += '\n';
            lineLength = out.size();
            out += plus + 1; // "|| "
        } else {
            out += plus;
        }
        out += parts[i];
    }
}

} // namespace

LosslessKind losslessKindForDataType(std::string_view dataType)
{
    struct Row {
        std::string_view name;
        LosslessKind kind;
    };
    static constexpr Row kRows[] = {
        {"Boolean", LosslessKind::Boolean},
        {"Byte", LosslessKind::Byte},
        {"Integer", LosslessKind::Integer},
        {"Long Integer", LosslessKind::LongInteger},
        {"Large Number", LosslessKind::LargeNumber},
        {"Complex Value auto number", LosslessKind::ComplexId},
        {"Currency", LosslessKind::Currency},
        {"Numeric", LosslessKind::Numeric},
        {"Single", LosslessKind::Single},
        {"Double", LosslessKind::Double},
        {"DateTime", LosslessKind::DateTime},
        {"Date/Time Extended", LosslessKind::DateTimeExtended},
        {"Replication ID", LosslessKind::Guid},
        {"Binary", LosslessKind::Binary},
        {"OLE", LosslessKind::Ole},
        {"Text", LosslessKind::Text},
        {"Memo/Hyperlink", LosslessKind::Memo},
    };
    for (const Row &row : kRows)
        if (row.name == dataType)
            return row.kind;
    return LosslessKind::Binary;
}

std::string losslessColumnType(ServerType dialect, const LosslessColumnShape &shape)
{
    const int precision = shape.precision > 0 ? std::min(shape.precision, 38) : 28;
    const int scale = std::clamp(shape.scale, 0, precision);
    std::string decimal = formatString("(%d,%d)", precision, scale);
    if (shape.kind == LosslessKind::Numeric && shape.precision < 0) {
        // Any scale (calculated results): the widest exact decimal of each target.
        switch (dialect) {
        case ServerTypePostgreSQL:
            return "numeric";
        case ServerTypeMySQL:
            return "DECIMAL(65,30)";
        case ServerTypeSQLite:
            return "DECIMAL";
        case ServerTypeSQLServer:
            return "decimal(38,18)";
        case ServerTypeOracle:
            return "NUMBER";
        default:
            break;
        }
    }
    const int textSize = shape.fieldSize > 0 ? shape.fieldSize : 255;
    const int binarySize = shape.fieldSize > 0 ? shape.fieldSize : 510;
    switch (dialect) {
    case ServerTypePostgreSQL:
        switch (shape.kind) {
        case LosslessKind::Boolean:
            return "boolean";
        case LosslessKind::Byte:
        case LosslessKind::Integer:
            return "smallint";
        case LosslessKind::LongInteger:
        case LosslessKind::ComplexId:
            return "integer";
        case LosslessKind::LargeNumber:
            return "bigint";
        case LosslessKind::Currency:
            return "numeric(19,4)";
        case LosslessKind::Numeric:
            return "numeric" + decimal;
        case LosslessKind::Single:
            return "real";
        case LosslessKind::Double:
            return "double precision";
        case LosslessKind::DateTime:
            return "timestamp(0)";
        case LosslessKind::DateTimeExtended:
            return "timestamp(6)";
        case LosslessKind::Guid:
            return "uuid";
        case LosslessKind::Binary:
        case LosslessKind::Ole:
            return "bytea";
        case LosslessKind::Text:
            return formatString("varchar(%d)", textSize);
        case LosslessKind::Memo:
            return "text";
        }
        break;
    case ServerTypeMySQL:
        switch (shape.kind) {
        case LosslessKind::Boolean:
            return "BOOLEAN";
        case LosslessKind::Byte:
            return "TINYINT UNSIGNED";
        case LosslessKind::Integer:
            return "SMALLINT";
        case LosslessKind::LongInteger:
        case LosslessKind::ComplexId:
            return "INT";
        case LosslessKind::LargeNumber:
            return "BIGINT";
        case LosslessKind::Currency:
            return "DECIMAL(19,4)";
        case LosslessKind::Numeric:
            return "DECIMAL" + decimal;
        case LosslessKind::Single:
            return "FLOAT";
        case LosslessKind::Double:
            return "DOUBLE";
        case LosslessKind::DateTime:
            return "DATETIME";
        case LosslessKind::DateTimeExtended:
            return "DATETIME(6)";
        case LosslessKind::Guid:
            return "CHAR(38)";
        case LosslessKind::Binary:
            return formatString("VARBINARY(%d)", binarySize);
        case LosslessKind::Ole:
            return "LONGBLOB";
        case LosslessKind::Text:
            return formatString("VARCHAR(%d)", textSize);
        case LosslessKind::Memo:
            return "LONGTEXT";
        }
        break;
    case ServerTypeSQLite:
        switch (shape.kind) {
        case LosslessKind::Boolean:
            return "BOOLEAN";
        case LosslessKind::Byte:
        case LosslessKind::Integer:
        case LosslessKind::LongInteger:
        case LosslessKind::LargeNumber:
        case LosslessKind::ComplexId:
            return "INTEGER";
        case LosslessKind::Currency:
            return "DECIMAL(19,4)";
        case LosslessKind::Numeric:
            return "DECIMAL" + decimal;
        case LosslessKind::Single:
        case LosslessKind::Double:
            return "REAL";
        case LosslessKind::DateTime:
        case LosslessKind::DateTimeExtended:
            return "DATETIME";
        case LosslessKind::Guid:
            return "CHAR(38)";
        case LosslessKind::Binary:
        case LosslessKind::Ole:
            return "BLOB";
        case LosslessKind::Text:
        case LosslessKind::Memo:
            return "TEXT";
        }
        break;
    case ServerTypeSQLServer:
        switch (shape.kind) {
        case LosslessKind::Boolean:
            return "bit";
        case LosslessKind::Byte:
            return "tinyint";
        case LosslessKind::Integer:
            return "smallint";
        case LosslessKind::LongInteger:
        case LosslessKind::ComplexId:
            return "int";
        case LosslessKind::LargeNumber:
            return "bigint";
        case LosslessKind::Currency:
            return "decimal(19,4)";
        case LosslessKind::Numeric:
            return "decimal" + decimal;
        case LosslessKind::Single:
            return "real";
        case LosslessKind::Double:
            return "float(53)";
        case LosslessKind::DateTime:
            return "datetime2(0)";
        case LosslessKind::DateTimeExtended:
            return "datetime2(7)";
        case LosslessKind::Guid:
            return "uniqueidentifier";
        case LosslessKind::Binary:
            return formatString("varbinary(%d)", std::min(binarySize, 8000));
        case LosslessKind::Ole:
            return "varbinary(max)";
        case LosslessKind::Text:
            return textSize <= 4000 ? formatString("nvarchar(%d)", textSize) : "nvarchar(max)";
        case LosslessKind::Memo:
            return "nvarchar(max)";
        }
        break;
    case ServerTypeOracle:
        switch (shape.kind) {
        case LosslessKind::Boolean:
            return "NUMBER(1)";
        case LosslessKind::Byte:
            return "NUMBER(3)";
        case LosslessKind::Integer:
            return "NUMBER(5)";
        case LosslessKind::LongInteger:
        case LosslessKind::ComplexId:
            return "NUMBER(10)";
        case LosslessKind::LargeNumber:
            return "NUMBER(19)";
        case LosslessKind::Currency:
            return "NUMBER(19,4)";
        case LosslessKind::Numeric:
            return "NUMBER" + decimal;
        case LosslessKind::Single:
            return "BINARY_FLOAT";
        case LosslessKind::Double:
            return "BINARY_DOUBLE";
        case LosslessKind::DateTime:
            return "TIMESTAMP(0)";
        case LosslessKind::DateTimeExtended:
            return "TIMESTAMP(7)";
        case LosslessKind::Guid:
            return "CHAR(38)";
        case LosslessKind::Binary:
            return formatString("RAW(%d)", std::min(binarySize, 2000));
        case LosslessKind::Ole:
            return "BLOB";
        case LosslessKind::Text:
            return textSize <= 2000 ? formatString("NVARCHAR2(%d)", textSize) : "NCLOB";
        case LosslessKind::Memo:
            return "NCLOB";
        }
        break;
    default:
        break;
    }
    return "TEXT";
}

const char *losslessApproximationText(LosslessApproximation approximation)
{
    switch (approximation) {
    case LosslessApproximation::None:
        return "";
    case LosslessApproximation::NotANumberAsNull:
        return "NaN written as NULL";
    case LosslessApproximation::InfinityAsNull:
        return "infinities written as NULL";
    case LosslessApproximation::MicrosecondRounded:
        return "times rounded to microseconds";
    case LosslessApproximation::NulRemoved:
        return "NUL characters removed from texts";
    case LosslessApproximation::UnreadableAsNull:
        return "unreadable values written as NULL";
    case LosslessApproximation::NegativeZero:
        return "negative zeros stored as zero";
    case LosslessApproximation::DecimalAsReal:
        return "decimals of more than 15 digits stored as REAL";
    }
    return "";
}

std::string shortestDoubleText(double value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string microsecondDateTime(std::string_view cellText, bool &rounded)
{
    rounded = false;
    const auto date = parseCellDateTime(cellText);
    if (!date)
        return {};
    std::string fraction = date->fraction;
    fraction.resize(7, '0');
    long long micro = std::stoll(fraction.substr(0, 6));
    const char seventh = fraction[6];
    rounded = seventh != '0';
    // Rounding up past the last representable instant would make year 10000: keep 9999.
    const bool lastMicrosecond = date->year == 9999 && date->month == 12 && date->day == 31 && date->hour == 23 &&
                                 date->minute == 59 && date->second == 59 && micro == 999999;
    if (seventh >= '5' && !lastMicrosecond)
        ++micro;
    int year = date->year, month = date->month, day = date->day;
    long long seconds = date->hour * 3600LL + date->minute * 60LL + date->second;
    if (micro == 1000000) {
        micro = 0;
        if (++seconds == 86400) {
            seconds = 0;
            civilFromDays(daysFromCivil(year, static_cast<unsigned>(month), static_cast<unsigned>(day)) + 1, year,
                          month, day);
        }
    }
    return isoText(year, month, day, static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                   static_cast<int>(seconds % 60), formatString("%06lld", micro));
}

void appendLosslessBytes(std::string &out, ServerType dialect, const std::uint8_t *bytes, std::size_t size)
{
    switch (dialect) {
    case ServerTypePostgreSQL:
        out += "'\\x";
        appendHex(out, bytes, size);
        out += '\'';
        break;
    case ServerTypeSQLServer:
        out += "0x";
        appendHex(out, bytes, size);
        break;
    case ServerTypeOracle:
        if (size == 0) {
            out += "EMPTY_BLOB()";
            break;
        }
        out += "HEXTORAW('";
        appendHex(out, bytes, size);
        out += "')";
        break;
    default: // MySQL, SQLite
        out += "X'";
        appendHex(out, bytes, size);
        out += '\'';
        break;
    }
}

LosslessApproximation appendLosslessText(std::string &out, ServerType dialect, std::string_view text, bool longText)
{
    switch (dialect) {
    case ServerTypePostgreSQL: {
        // standard_conforming_strings: only the quote is doubled. A text value cannot hold NUL.
        bool removed = false;
        out += '\'';
        for (char c : text) {
            if (c == '\0') {
                removed = true;
                continue;
            }
            if (c == '\'')
                out += c;
            out += c;
        }
        out += '\'';
        return removed ? LosslessApproximation::NulRemoved : LosslessApproximation::None;
    }
    case ServerTypeMySQL:
        // Backslash escapes are on (the default mode): backslash, NUL, CR, LF and Ctrl-Z are
        // escaped, so that a value never breaks a script line.
        out += '\'';
        for (char c : text) {
            switch (c) {
            case '\\':
                out += "\\\\";
                break;
            case '\'':
                out += "''";
                break;
            case '\0':
                out += "\\0";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\x1a':
                out += "\\Z";
                break;
            default:
                out += c;
            }
        }
        out += '\'';
        return LosslessApproximation::None;
    case ServerTypeSQLite:
        // The sqlite3 shell drops the CR of a CR LF in a script, and no quoted text holds NUL:
        // such texts go in as their UTF-8 bytes.
        if (text.find_first_of(std::string_view("\r\0", 2)) != std::string_view::npos) {
            out += "CAST(X'";
            appendHex(out, reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
            out += "' AS TEXT)";
            return LosslessApproximation::None;
        }
        out += '\'';
        for (char c : text) {
            if (c == '\'')
                out += c;
            out += c;
        }
        out += '\'';
        return LosslessApproximation::None;
    case ServerTypeSQLServer:
    case ServerTypeOracle:
        appendConcatenatedText(out, dialect, text, longText);
        return LosslessApproximation::None;
    default:
        out += '\'';
        out += text;
        out += '\'';
        return LosslessApproximation::None;
    }
}

LosslessApproximation appendLosslessLiteral(std::string &out, ServerType dialect, LosslessKind kind,
                                            const CellValue &cell, OracleLobBuilder *lobs)
{
    if (cell.isNull()) {
        out += "NULL";
        return LosslessApproximation::None;
    }
    if (cell.isBlob() || kind == LosslessKind::Binary || kind == LosslessKind::Ole) {
        const std::uint8_t *bytes = nullptr;
        std::size_t size = 0;
        if (cell.isBlob() && cell.blob) {
            bytes = cell.blob->data().data();
            size = cell.blob->data().size();
        } else {
            bytes = reinterpret_cast<const std::uint8_t *>(cell.text.data());
            size = cell.text.size();
        }
        if (dialect == ServerTypeOracle && size > kOracleRawLimit && lobs) {
            const std::string name = "b" + std::to_string(lobs->variables.size() + 1);
            lobs->variables.push_back(name);
            lobs->statements += "  DBMS_LOB.CREATETEMPORARY(" + name + ", TRUE);\n";
            for (std::size_t at = 0; at < size; at += kOracleRawLimit / 2) {
                const std::size_t part = std::min(kOracleRawLimit / 2, size - at);
                lobs->statements += formatString("  DBMS_LOB.WRITEAPPEND(%s, %zu, HEXTORAW('", name.c_str(), part);
                appendHex(lobs->statements, bytes + at, part);
                lobs->statements += "'));\n";
            }
            out += name;
            return LosslessApproximation::None;
        }
        appendLosslessBytes(out, dialect, bytes, size);
        return LosslessApproximation::None;
    }
    const std::string_view text = cell.text;
    switch (kind) {
    case LosslessKind::Boolean: {
        const bool value = text != "0";
        if (dialect == ServerTypePostgreSQL || dialect == ServerTypeMySQL)
            out += value ? "TRUE" : "FALSE";
        else
            out += value ? '1' : '0';
        return LosslessApproximation::None;
    }
    case LosslessKind::Byte:
    case LosslessKind::Integer:
    case LosslessKind::LongInteger:
    case LosslessKind::LargeNumber:
    case LosslessKind::ComplexId: {
        const std::string_view digits = !text.empty() && text.front() == '-' ? text.substr(1) : text;
        if (!isAsciiDigits(digits)) {
            out += "NULL";
            return LosslessApproximation::UnreadableAsNull;
        }
        out += text;
        return LosslessApproximation::None;
    }
    case LosslessKind::Currency:
    case LosslessKind::Numeric:
        if (!isPlainNumber(text)) {
            out += "NULL";
            return LosslessApproximation::UnreadableAsNull;
        }
        if (dialect == ServerTypeSQLite) {
            // As text, which NUMERIC affinity stores as an integer where it is whole and as a REAL
            // where its first 15 digits survive that: a fraction beyond 15 digits is then lost.
            out += '\'';
            out += text;
            out += '\'';
            if (significantDigits(text) > 15 && hasFraction(text))
                return LosslessApproximation::DecimalAsReal;
        } else {
            out += text;
        }
        return LosslessApproximation::None;
    case LosslessKind::Single:
    case LosslessKind::Double:
        return appendFloatingPoint(out, dialect, text, kind == LosslessKind::Single);
    case LosslessKind::DateTime:
    case LosslessKind::DateTimeExtended:
        return appendDateTime(out, dialect, text, kind == LosslessKind::DateTimeExtended);
    case LosslessKind::Guid:
        if (dialect == ServerTypeSQLServer && text.size() == 38 && text.front() == '{' && text.back() == '}') {
            out += '\'';
            out += text.substr(1, 36);
            out += '\'';
            return LosslessApproximation::None;
        }
        out += '\'';
        for (char c : text) {
            if (c == '\'')
                out += c;
            out += c;
        }
        out += '\'';
        return LosslessApproximation::None;
    case LosslessKind::Text:
    case LosslessKind::Memo:
        return appendLosslessText(out, dialect, text, kind == LosslessKind::Memo);
    case LosslessKind::Binary:
    case LosslessKind::Ole:
        break;
    }
    return LosslessApproximation::None;
}

std::string losslessLiteral(ServerType dialect, LosslessKind kind, const CellValue &cell,
                            LosslessApproximation *approximation)
{
    std::string out;
    const LosslessApproximation made = appendLosslessLiteral(out, dialect, kind, cell);
    if (approximation)
        *approximation = made;
    return out;
}

} // namespace vellum
