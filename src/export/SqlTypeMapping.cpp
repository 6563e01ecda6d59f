#include "export/SqlTypeMapping.h"

#include "model/TOrbBlobData.h"
#include "model/mdbTypeNames.h"
#include "util/format.h"

#include <array>

namespace vellum {

namespace {

struct TypeRow {
    std::string_view mdbType;
    std::array<std::string_view, 5> target; // ServerTypeMySQL … ServerTypeSQLServer
};

// Several cells are odd on purpose (MySQL "char" for Boolean, "float" for every fractional type,
// "varchar" without a length for Binary; SQL Server "char" for Byte and the type name
// "Sybase_Replication ID"; SQLite "INTEGER" for Numeric): scripts must keep exactly these names.
constexpr std::array<TypeRow, 17> kTypeTable = {{
    {"Boolean", {"char", "BOOL", "NUMBER(1)", "INTEGER", "bit"}},
    {"Byte", {"int", "SMALLINT", "NUMBER(3)", "INTEGER", "char"}},
    {"Integer", {"int", "INTEGER", "NUMBER(5)", "INTEGER", "smallint"}},
    {"Long Integer", {"int", "INTEGER", "NUMBER(11)", "INTEGER", "int"}},
    {"Currency", {"float", "NUMERIC(15,2)", "NUMBER(15,2)", "REAL", "money"}},
    {"Single", {"float", "REAL", "FLOAT", "REAL", "real"}},
    {"Double", {"float", "DOUBLE PRECISION", "FLOAT", "REAL", "float"}},
    {"DateTime", {"datetime", "TIMESTAMP WITHOUT TIME ZONE", "TIMESTAMP", "TEXT", "smalldatetime"}},
    {"Binary", {"varchar", "BYTEA", "BINARY", "BLOB", "text"}},
    {"Text", {"varchar", "VARCHAR", "VARCHAR2", "TEXT", "varchar"}},
    {"OLE", {"text(8000)", "BYTEA", "BLOB", "BLOB", "varbinary"}},
    {"Memo/Hyperlink", {"text(8000)", "TEXT", "CLOB", "TEXT", "text"}},
    {"Replication ID", {"varchar(16)", "UUID", "NUMBER", "TEXT", "Sybase_Replication ID"}},
    {"Numeric", {"numeric", "NUMERIC(15,2)", "NUMBER", "INTEGER", "numeric"}},
    {"Complex Value auto number", {"int", "INTEGER", "NUMBER(11)", "INTEGER", "int"}},
    {"Large Number", {"bigint", "BIGINT", "NUMBER(19)", "INTEGER", "bigint"}},
    {"Date/Time Extended", {"datetime(6)", "TIMESTAMP", "TIMESTAMP", "TEXT", "datetime2(7)"}},
}};

bool parseDigits(std::string_view text, std::size_t pos, std::size_t count, int &value)
{
    value = 0;
    for (std::size_t i = pos; i < pos + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        value = value * 10 + (text[i] - '0');
    }
    return true;
}

int daysInMonth(int year, int month)
{
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : kDays[month - 1];
}

} // namespace

std::string convertMDBTypeToTargetType(std::string_view mdbType, ServerType dialect)
{
    const auto number = serverTypeValue(dialect);
    if (number < serverTypeValue(ServerTypeMySQL) || number > serverTypeValue(ServerTypeSQLServer))
        return std::string(mdbType);
    for (const TypeRow &row : kTypeTable)
        if (row.mdbType == mdbType)
            return std::string(row.target[static_cast<std::size_t>(number - 1)]);
    return std::string(mdbType);
}

std::string sqlColumnDefinitionType(std::string_view mdbType, int fieldSize, ServerType dialect)
{
    std::string type = convertMDBTypeToTargetType(mdbType, dialect);
    if (mdbType == "Text" && dialect != ServerTypeSQLite)
        type += formatString("(%d)", fieldSize);
    return type;
}

void appendSqlBlobValue(std::string &out, const std::uint8_t *bytes, std::size_t size)
{
    static constexpr char kHex[] = "0123456789abcdef";
    out.reserve(out.size() + 2 * size + 3);
    out += "x'";
    for (std::size_t i = 0; i < size; ++i) {
        out += kHex[bytes[i] >> 4];
        out += kHex[bytes[i] & 0x0f];
    }
    out += '\'';
}

std::string encodeSqlBlobValue(const std::uint8_t *bytes, std::size_t size)
{
    std::string out;
    appendSqlBlobValue(out, bytes, size);
    return out;
}

std::string encodeSqlBlobValue(const std::vector<std::uint8_t> &bytes)
{
    return encodeSqlBlobValue(bytes.data(), bytes.size());
}

bool reformatMonthFirstDate(std::string_view text, std::string &out)
{
    // "MM/dd/yyyy HH:mm:ss": 19 characters with fixed separators. The reformatting is a pure
    // rearrangement of the fields (local time in, local time out), so no time zone is involved.
    if (text.size() != 19 || text[2] != '/' || text[5] != '/' || text[10] != ' ' || text[13] != ':' || text[16] != ':')
        return false;
    int month, day, year, hour, minute, second;
    if (!parseDigits(text, 0, 2, month) || !parseDigits(text, 3, 2, day) || !parseDigits(text, 6, 4, year) ||
        !parseDigits(text, 11, 2, hour) || !parseDigits(text, 14, 2, minute) || !parseDigits(text, 17, 2, second))
        return false;
    if (year < 1 || month < 1 || month > 12 || day < 1 || day > daysInMonth(year, month) || hour > 23 || minute > 59 ||
        second > 59)
        return false;
    out.assign(text.substr(6, 4));
    out += '-';
    out += text.substr(0, 2);
    out += '-';
    out += text.substr(3, 2);
    out += text.substr(10);
    return true;
}

bool appendNulTextAsBlob(std::string &out, const CellValue &value)
{
    if (!value.isText() || value.text.find('\0') == std::string_view::npos)
        return false;
    appendSqlBlobValue(out, reinterpret_cast<const std::uint8_t *>(value.text.data()), value.text.size());
    return true;
}

void appendSqlQuotedText(std::string &out, std::string_view text)
{
    out += '\'';
    for (char c : text) {
        if (c == '\\' || c == '\'')
            out += c;
        out += c;
    }
    out += '\'';
}

void appendSqlValueLiteral(std::string &out, const CellValue &value, const SqlLiteralColumn &column, ServerType dialect,
                           std::string_view decimalSymbol)
{
    if (appendNulTextAsBlob(out, value))
        return;
    if (value.isText()) {
        const ColumnValueClass valueClass = columnValueClassForDataType(column.dataType);
        const bool date = valueClass == ColumnValueClass::DateTime;
        std::string_view text = value.text;
        if (dialect == ServerTypeOracle || isQuotedValueClass(valueClass) ||
            (dialect == ServerTypePostgreSQL && valueClass == ColumnValueClass::Boolean)) {
            std::string reformatted;
            if (date &&
                (dialect == ServerTypeMySQL || dialect == ServerTypePostgreSQL || dialect == ServerTypeSQLServer) &&
                reformatMonthFirstDate(text, reformatted))
                text = reformatted;
            const bool oracleDate = date && dialect == ServerTypeOracle;
            if (oracleDate)
                out += "TO_DATE(";
            appendSqlQuotedText(out, text);
            if (oracleDate)
                out += ", 'MM/DD/YYYY HH24:MI:SS')";
            return;
        }
        if ((dialect == ServerTypeMySQL || dialect == ServerTypePostgreSQL) && valueClass == ColumnValueClass::Guid &&
            text.size() >= 2 && text.front() == '{' && text.back() == '}') {
            out += '\'';
            for (char c : text.substr(1, text.size() - 2))
                if (!(dialect == ServerTypeMySQL && c == '-'))
                    out += c;
            out += '\'';
            return;
        }
        if (valueClass == ColumnValueClass::Fraction) {
            for (char c : text) {
                if (c == '.')
                    out += decimalSymbol;
                else
                    out += c;
            }
            return;
        }
        out += text;
        return;
    }
    if (value.isBlob() && value.blob) {
        const auto &data = value.blob->data();
        appendSqlBlobValue(out, data.data(), data.size());
        return;
    }
    out += column.zeroLengthForbidden ? "''" : "null";
}

std::string sqlValueLiteral(const CellValue &value, const SqlLiteralColumn &column, ServerType dialect,
                            std::string_view decimalSymbol)
{
    std::string out;
    appendSqlValueLiteral(out, value, column, dialect, decimalSymbol);
    return out;
}

} // namespace vellum
