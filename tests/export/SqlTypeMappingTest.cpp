#include "export/SqlTypeMapping.h"

#include "model/TOrbBlobData.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace vellum {
namespace {

constexpr ServerType kDialects[] = {ServerTypeMySQL, ServerTypePostgreSQL, ServerTypeOracle, ServerTypeSQLite,
                                    ServerTypeSQLServer};

TEST(SqlTypeMapping, TypeTableForEveryDialect)
{
    struct Row {
        const char *mdbType;
        std::array<const char *, 5> expected;
    };
    const Row rows[] = {
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
        // Not listed (or spelled differently): unchanged in every dialect.
        {"Attachment", {"Attachment", "Attachment", "Attachment", "Attachment", "Attachment"}},
        {"text", {"text", "text", "text", "text", "text"}},
        {"Unknown_0046", {"Unknown_0046", "Unknown_0046", "Unknown_0046", "Unknown_0046", "Unknown_0046"}},
    };
    for (const Row &row : rows) {
        for (const ServerType dialect : kDialects)
            EXPECT_EQ(convertMDBTypeToTargetType(row.mdbType, dialect),
                      row.expected[static_cast<std::size_t>(serverTypeValue(dialect) - 1)])
                << row.mdbType << " dialect " << serverTypeValue(dialect);
        // No dialect, or a number that is none (a damaged stored setting), leaves the name alone.
        for (const ServerType other : {ServerTypeNone, static_cast<ServerType>(6), static_cast<ServerType>(-1)})
            EXPECT_EQ(convertMDBTypeToTargetType(row.mdbType, other), row.mdbType) << serverTypeValue(other);
    }
}

TEST(SqlTypeMapping, LengthSuffixOnlyForTextOutsideSQLite)
{
    struct Case {
        const char *mdbType;
        int fieldSize;
        ServerType dialect;
        const char *expected;
    };
    const Case cases[] = {
        {"Text", 50, ServerTypeMySQL, "varchar(50)"},        {"Text", 50, ServerTypePostgreSQL, "VARCHAR(50)"},
        {"Text", 50, ServerTypeOracle, "VARCHAR2(50)"},      {"Text", 50, ServerTypeSQLite, "TEXT"},
        {"Text", 50, ServerTypeSQLServer, "varchar(50)"},    {"Binary", 50, ServerTypeMySQL, "varchar"},
        {"Memo/Hyperlink", 0, ServerTypePostgreSQL, "TEXT"}, {"Long Integer", 4, ServerTypeOracle, "NUMBER(11)"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(sqlColumnDefinitionType(c.mdbType, c.fieldSize, c.dialect), c.expected)
            << c.mdbType << " " << serverTypeValue(c.dialect);
}

TEST(SqlTypeMapping, BlobLiteral)
{
    EXPECT_EQ(encodeSqlBlobValue({}), "x''");
    EXPECT_EQ(encodeSqlBlobValue({0x00, 0xff, 0x10}), "x'00ff10'");
    std::vector<std::uint8_t> all(256);
    for (int i = 0; i < 256; ++i)
        all[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(i);
    const std::string literal = encodeSqlBlobValue(all);
    ASSERT_EQ(literal.size(), 2 * 256 + 3);
    EXPECT_EQ(literal.substr(0, 8), "x'000102");
    EXPECT_EQ(literal.substr(2 + 2 * 0xab, 2), "ab");
    EXPECT_EQ(literal.substr(literal.size() - 3), "ff'");
}

TEST(SqlTypeMapping, MonthFirstDateReformatting)
{
    struct Case {
        const char *text;
        const char *expected; // nullptr: not a date of the pattern
    };
    const Case cases[] = {
        {"03/04/2010 13:05:00", "2010-03-04 13:05:00"},
        {"02/29/2024 12:30:45", "2024-02-29 12:30:45"},
        {"12/31/9999 23:59:59", "9999-12-31 23:59:59"},
        {"02/29/2023 00:00:00", nullptr}, // no such day
        {"01/00/2010 00:00:00", nullptr}, // day 0
        {"01/01/10 00:00:00", nullptr},   // two-digit year
        {"13/01/2010 00:00:00", nullptr},
        {"03/04/2010 24:00:00", nullptr},
        {"3/4/2010 13:05:00", nullptr},
        {"03/04/2010", nullptr},
        {"03-04-2010 13:05:00", nullptr},
        {"03/04/2010 13:05:00 ", nullptr},
    };
    for (const Case &c : cases) {
        std::string out = "untouched";
        const bool ok = reformatMonthFirstDate(c.text, out);
        EXPECT_EQ(ok, c.expected != nullptr) << c.text;
        EXPECT_EQ(out, c.expected ? c.expected : "untouched") << c.text;
    }
}

TEST(SqlTypeMapping, ValueLiterals)
{
    struct Case {
        const char *type;
        const char *text; // nullptr: the null marker
        bool zeroLengthForbidden;
        ServerType dialect;
        const char *decimal;
        const char *expected;
    };
    const Case cases[] = {
        // Quoting and escaping of text, the same in every dialect.
        {"Text", "O'Neil\\x", false, ServerTypeMySQL, ".", "'O''Neil\\\\x'"},
        {"Text", "O'Neil\\x", false, ServerTypePostgreSQL, ".", "'O''Neil\\\\x'"},
        {"Text", "O'Neil\\x", false, ServerTypeOracle, ".", "'O''Neil\\\\x'"},
        {"Text", "O'Neil\\x", false, ServerTypeSQLite, ".", "'O''Neil\\\\x'"},
        {"Text", "O'Neil\\x", false, ServerTypeSQLServer, ".", "'O''Neil\\\\x'"},
        {"Memo/Hyperlink", "a\nb", false, ServerTypeMySQL, ".", "'a\nb'"},
        {"Binary", "raw", false, ServerTypePostgreSQL, ".", "'raw'"},
        // Dates: reformatted for MySQL, PostgreSQL and SQL Server, TO_DATE for Oracle, as stored
        // for SQLite; a text that is no date of the pattern stays as it stands.
        {"DateTime", "03/04/2010 13:05:00", false, ServerTypeMySQL, ".", "'2010-03-04 13:05:00'"},
        {"DateTime", "03/04/2010 13:05:00", false, ServerTypePostgreSQL, ".", "'2010-03-04 13:05:00'"},
        {"DateTime", "03/04/2010 13:05:00", false, ServerTypeSQLServer, ".", "'2010-03-04 13:05:00'"},
        {"DateTime", "03/04/2010 13:05:00", false, ServerTypeOracle, ".",
         "TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS')"},
        {"DateTime", "03/04/2010 13:05:00", false, ServerTypeSQLite, ".", "'03/04/2010 13:05:00'"},
        // A text that is no date of the pattern goes in as it stands.
        {"DateTime", "02/30/2021 00:00:00", false, ServerTypePostgreSQL, ".", "'02/30/2021 00:00:00'"},
        // Numbers: decimal symbol outside Oracle, which quotes every text first.
        {"Double", "1.5", false, ServerTypeMySQL, ",", "1,5"},
        {"Single", "1.5", false, ServerTypeSQLite, ",", "1,5"},
        {"Currency", "-0.0100", false, ServerTypeSQLServer, ".", "-0.0100"},
        {"Double", "1.5", false, ServerTypeOracle, ",", "'1.5'"},
        {"Long Integer", "42", false, ServerTypeOracle, ".", "'42'"},
        {"Long Integer", "42", false, ServerTypePostgreSQL, ",", "42"},
        {"Numeric", "12345.6789", false, ServerTypeMySQL, ",", "12345.6789"},
        // Booleans are quoted for PostgreSQL (and Oracle) only.
        {"Boolean", "1", false, ServerTypePostgreSQL, ".", "'1'"},
        {"Boolean", "1", false, ServerTypeMySQL, ".", "1"},
        {"Boolean", "0", false, ServerTypeOracle, ".", "'0'"},
        {"Boolean", "0", false, ServerTypeSQLServer, ".", "0"},
        // GUIDs: braces become quotes for MySQL (dashes removed) and PostgreSQL.
        {"Replication ID", "{6F9619FF-8B86-D011-B42D00C04FC964FF}", false, ServerTypeMySQL, ".",
         "'6F9619FF8B86D011B42D00C04FC964FF'"},
        {"Replication ID", "{6F9619FF-8B86-D011-B42D00C04FC964FF}", false, ServerTypePostgreSQL, ".",
         "'6F9619FF-8B86-D011-B42D00C04FC964FF'"},
        {"Replication ID", "{6F9619FF-8B86-D011-B42D00C04FC964FF}", false, ServerTypeSQLite, ".",
         "{6F9619FF-8B86-D011-B42D00C04FC964FF}"},
        {"Replication ID", "{6F9619FF-8B86-D011-B42D00C04FC964FF}", false, ServerTypeSQLServer, ".",
         "{6F9619FF-8B86-D011-B42D00C04FC964FF}"},
        {"Replication ID", "{6F9619FF}", false, ServerTypeOracle, ".", "'{6F9619FF}'"},
        {"Replication ID", "6F9619FF", false, ServerTypePostgreSQL, ".", "6F9619FF"},
        // Missing values: null, or an empty quoted text where zero-length text is forbidden.
        {"Text", nullptr, false, ServerTypeMySQL, ".", "null"},
        {"Text", nullptr, true, ServerTypeMySQL, ".", "''"},
        {"Long Integer", nullptr, true, ServerTypePostgreSQL, ".", "''"},
        {"DateTime", nullptr, false, ServerTypeOracle, ".", "null"},
    };
    for (const Case &c : cases) {
        const CellValue value = c.text ? CellValue::ofText(c.text) : CellValue::null();
        EXPECT_EQ(sqlValueLiteral(value, {c.type, c.zeroLengthForbidden}, c.dialect, c.decimal), c.expected)
            << c.type << " " << (c.text ? c.text : "(null)") << " dialect " << serverTypeValue(c.dialect);
    }
}

TEST(SqlTypeMapping, BlobCellIsTheBlobLiteralInEveryDialect)
{
    const TOrbBlobData blob({0x00, 0xff, 0x10}, "bin");
    for (const ServerType dialect : kDialects)
        EXPECT_EQ(sqlValueLiteral(CellValue::ofBlob(&blob), {"OLE", true}, dialect, "."), "x'00ff10'");
}

} // namespace
} // namespace vellum
