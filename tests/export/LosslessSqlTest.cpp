// The lossless SQL scripts: the literal of each type in each dialect (with the values a target
// cannot hold and how they are counted), the column types, the golden scripts of the fixture
// database in the five dialects, and the writer's rules for indexes, relationships and rows.
//
// After a reviewed change of the output, VELLUM_UPDATE_GOLDEN=1 rewrites the golden files from
// the current output; review the diff before committing it.

#include "ExportTestTables.h"

#include "export/ExportJob.h"
#include "export/ExportSink.h"
#include "export/LosslessSqlWriter.h"
#include "export/losslessDialects.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace vellum {
namespace {

namespace fs = std::filesystem;
using A = LosslessApproximation;

constexpr ServerType kPg = ServerTypePostgreSQL;
constexpr ServerType kMy = ServerTypeMySQL;
constexpr ServerType kLite = ServerTypeSQLite;
constexpr ServerType kMs = ServerTypeSQLServer;
constexpr ServerType kOra = ServerTypeOracle;

struct LiteralCase {
    ServerType dialect;
    LosslessKind kind;
    std::string text; ///< the cell's text
    std::string literal;
    A approximation = A::None;
};

TEST(LosslessSqlLiteral, EachTypeInEachDialect)
{
    const std::string nul("a\0b", 3);
    const std::string controls = "a\\b'c" + std::string(1, '\0') + "d\r\n";
    const LiteralCase cases[] = {
        // Booleans
        {kPg, LosslessKind::Boolean, "1", "TRUE"},
        {kPg, LosslessKind::Boolean, "0", "FALSE"},
        {kMy, LosslessKind::Boolean, "1", "TRUE"},
        {kLite, LosslessKind::Boolean, "1", "1"},
        {kMs, LosslessKind::Boolean, "0", "0"},
        {kOra, LosslessKind::Boolean, "1", "1"},
        // Integers and exact decimals
        {kPg, LosslessKind::Byte, "255", "255"},
        {kMy, LosslessKind::LargeNumber, "-9223372036854775808", "-9223372036854775808"},
        {kOra, LosslessKind::Integer, "-32768", "-32768"},
        {kPg, LosslessKind::Currency, "922337203685477.5807", "922337203685477.5807"},
        {kMs, LosslessKind::Numeric, "-99999999999999.9999", "-99999999999999.9999"},
        {kLite, LosslessKind::Currency, "12.5", "'12.5'"},
        {kLite, LosslessKind::Currency, "922337203685477.5807", "'922337203685477.5807'", A::DecimalAsReal},
        {kLite, LosslessKind::Numeric, "1234567890123456789.0000", "'1234567890123456789.0000'"},
        {kPg, LosslessKind::LongInteger, "12abc", "NULL", A::UnreadableAsNull},
        // Single and Double: shortest text, NaN and infinities where the target has them
        {kPg, LosslessKind::Single, "3.4028235e+38", "'3.4028235e+38'"},
        {kPg, LosslessKind::Double, "NaN", "'NaN'"},
        {kPg, LosslessKind::Double, "-0", "'-0'"},
        {kMy, LosslessKind::Single, "3.4028235e+38", "3.4028234663852886e+38"},
        {kMy, LosslessKind::Single, "0.1", "0.10000000149011612e0"},
        {kMy, LosslessKind::Double, "0.1", "0.1e0"},
        {kMy, LosslessKind::Double, "-0", "-0e0", A::NegativeZero},
        {kMy, LosslessKind::Single, "-0", "-0e0", A::NegativeZero},
        {kMy, LosslessKind::Double, "1e+21", "1e+21"},
        {kMy, LosslessKind::Double, "NaN", "NULL", A::NotANumberAsNull},
        {kMy, LosslessKind::Single, "-Infinity", "NULL", A::InfinityAsNull},
        {kLite, LosslessKind::Double, "0.1", "0.1e0"},
        {kLite, LosslessKind::Double, "2.718281828459045", "(6121026514868073.0 / 2251799813685248.0)"},
        {kLite, LosslessKind::Double, "NaN", "NULL", A::NotANumberAsNull},
        {kLite, LosslessKind::Double, "-0", "-0e0", A::NegativeZero},
        {kLite, LosslessKind::Double, "Infinity", "9e999"},
        {kLite, LosslessKind::Single, "-Infinity", "-9e999"},
        {kMs, LosslessKind::Double, "1.7976931348623157e+308", "1.7976931348623157e+308"},
        {kMs, LosslessKind::Single, "NaN", "NULL", A::NotANumberAsNull},
        {kMs, LosslessKind::Double, "Infinity", "NULL", A::InfinityAsNull},
        {kOra, LosslessKind::Single, "0.1", "0.1f"},
        {kOra, LosslessKind::Double, "1e-300", "1e-300d"},
        {kOra, LosslessKind::Single, "NaN", "BINARY_FLOAT_NAN"},
        {kOra, LosslessKind::Double, "-Infinity", "-BINARY_DOUBLE_INFINITY"},
        // Date/Time over the whole range Access stores
        {kPg, LosslessKind::DateTime, "01/01/0100 00:00:00", "'0100-01-01 00:00:00'"},
        {kPg, LosslessKind::DateTime, "12/31/9999 23:59:59", "'9999-12-31 23:59:59'"},
        {kMy, LosslessKind::DateTime, "01/01/0100 00:00:00", "'0100-01-01 00:00:00'"},
        {kLite, LosslessKind::DateTime, "12/31/9999 23:59:59", "'9999-12-31 23:59:59'"},
        {kMs, LosslessKind::DateTime, "01/01/0100 00:00:00", "'0100-01-01 00:00:00'"},
        {kOra, LosslessKind::DateTime, "01/01/0100 00:00:00",
         "TO_TIMESTAMP('0100-01-01 00:00:00', 'YYYY-MM-DD HH24:MI:SS')"},
        {kPg, LosslessKind::DateTime, "13/01/2020 00:00:00", "NULL", A::UnreadableAsNull},
        // Date/Time Extended: seven digits where the target keeps them, else rounded and counted
        {kPg, LosslessKind::DateTimeExtended, "01/02/2020 03:04:05.1234567", "'2020-01-02 03:04:05.123457'",
         A::MicrosecondRounded},
        {kPg, LosslessKind::DateTimeExtended, "01/02/2020 03:04:05.1234560", "'2020-01-02 03:04:05.123456'"},
        {kMy, LosslessKind::DateTimeExtended, "12/31/2019 23:59:59.9999996", "'2020-01-01 00:00:00.000000'",
         A::MicrosecondRounded},
        {kMy, LosslessKind::DateTimeExtended, "12/31/9999 23:59:59.9999999", "'9999-12-31 23:59:59.999999'",
         A::MicrosecondRounded},
        {kLite, LosslessKind::DateTimeExtended, "01/02/2020 03:04:05.1234567", "'2020-01-02 03:04:05.1234567'"},
        {kMs, LosslessKind::DateTimeExtended, "01/01/0100 00:00:00.0000001", "'0100-01-01 00:00:00.0000001'"},
        {kOra, LosslessKind::DateTimeExtended, "01/02/2020 03:04:05.1234567",
         "TO_TIMESTAMP('2020-01-02 03:04:05.1234567', 'YYYY-MM-DD HH24:MI:SS.FF7')"},
        // GUIDs
        {kPg, LosslessKind::Guid, "{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "'{6F9619FF-8B86-D011-B42D-00C04FC964FF}'"},
        {kMs, LosslessKind::Guid, "{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "'6F9619FF-8B86-D011-B42D-00C04FC964FF'"},
        {kLite, LosslessKind::Guid, "{6F9619FF-8B86-D011-B42D-00C04FC964FF}",
         "'{6F9619FF-8B86-D011-B42D-00C04FC964FF}'"},
        // Binary values (the cell's bytes)
        {kPg, LosslessKind::Binary, std::string("\x00\xff", 2), "'\\x00ff'"},
        {kMy, LosslessKind::Binary, std::string("\x00\xff", 2), "X'00ff'"},
        {kLite, LosslessKind::Binary, std::string("\x00\xff", 2), "X'00ff'"},
        {kMs, LosslessKind::Binary, std::string("\x00\xff", 2), "0x00ff"},
        {kOra, LosslessKind::Binary, std::string("\x00\xff", 2), "HEXTORAW('00ff')"},
        // Text: quotes, backslashes, NUL, line breaks, emoji
        {kPg, LosslessKind::Text, "O'Neil\\x", "'O''Neil\\x'"},
        {kPg, LosslessKind::Memo, nul, "'ab'", A::NulRemoved},
        {kPg, LosslessKind::Text, "a\r\nb 😀", "'a\r\nb 😀'"},
        {kMy, LosslessKind::Memo, controls, "'a\\\\b''c\\0d\\r\\n'"},
        {kMy, LosslessKind::Text, "😀", "'😀'"},
        {kLite, LosslessKind::Text, "O'Neil\\x", "'O''Neil\\x'"},
        {kLite, LosslessKind::Memo, "a\r\nb", "CAST(X'610d0a62' AS TEXT)"},
        {kLite, LosslessKind::Memo, nul, "CAST(X'610062' AS TEXT)"},
        {kMs, LosslessKind::Text, "O'Neil\\x 😀", "N'O''Neil\\x 😀'"},
        {kMs, LosslessKind::Memo, "a\r\nb", "N'a' + NCHAR(13) + NCHAR(10) + N'b'"},
        {kMs, LosslessKind::Memo, nul, "N'a' + NCHAR(0) + N'b'"},
        {kOra, LosslessKind::Text, "a\nb", "N'a' || NCHR(10) || N'b'"},
        {kOra, LosslessKind::Memo, "a\nb", "TO_NCLOB(N'a') || NCHR(10) || N'b'"},
        {kOra, LosslessKind::Text, "O'Neil\\x", "N'O''Neil\\x'"},
    };
    for (const LiteralCase &c : cases) {
        A approximation = A::None;
        const std::string literal = losslessLiteral(c.dialect, c.kind, CellValue::ofText(c.text), &approximation);
        EXPECT_EQ(literal, c.literal) << "dialect " << static_cast<int>(c.dialect) << ", text '" << c.text << "'";
        EXPECT_EQ(approximation, c.approximation)
            << "dialect " << static_cast<int>(c.dialect) << ", text '" << c.text << "'";
    }
    // NULL is NULL everywhere.
    for (ServerType dialect : {kPg, kMy, kLite, kMs, kOra})
        EXPECT_EQ(losslessLiteral(dialect, LosslessKind::Text, CellValue::null()), "NULL");
}

TEST(LosslessSqlLiteral, OracleBinaryValuesBeyondTheLiteralLimit)
{
    const TOrbBlobData empty(std::vector<std::uint8_t>{}, "");
    EXPECT_EQ(losslessLiteral(kOra, LosslessKind::Ole, CellValue::ofBlob(&empty)), "EMPTY_BLOB()");
    EXPECT_EQ(losslessLiteral(kPg, LosslessKind::Ole, CellValue::ofBlob(&empty)), "'\\x'");
    EXPECT_EQ(losslessLiteral(kMs, LosslessKind::Ole, CellValue::ofBlob(&empty)), "0x");

    std::vector<std::uint8_t> bytes(5000);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 7);
    const TOrbBlobData large(bytes, "bin");
    OracleLobBuilder lobs;
    std::string out;
    EXPECT_EQ(appendLosslessLiteral(out, kOra, LosslessKind::Ole, CellValue::ofBlob(&large), &lobs), A::None);
    EXPECT_EQ(out, "b1");
    ASSERT_EQ(lobs.variables, std::vector<std::string>{"b1"});
    // Five pieces of 1000 bytes, each within the 2000-byte limit of a RAW literal, in order.
    std::string hex;
    std::size_t pieces = 0;
    for (std::size_t at = lobs.statements.find("HEXTORAW('"); at != std::string::npos;
         at = lobs.statements.find("HEXTORAW('", at + 1)) {
        const std::size_t start = at + 10;
        const std::size_t end = lobs.statements.find('\'', start);
        EXPECT_LE(end - start, 4000u);
        hex += lobs.statements.substr(start, end - start);
        ++pieces;
    }
    EXPECT_EQ(pieces, 5u);
    EXPECT_EQ(hex, test::lowerHex(std::string(bytes.begin(), bytes.end())));
    EXPECT_NE(lobs.statements.find("DBMS_LOB.CREATETEMPORARY(b1, TRUE);"), std::string::npos);

    // Long texts go in pieces of at most 1000 bytes, never cut inside a character.
    const std::string memo(3000, 'x');
    const std::string literal = losslessLiteral(kOra, LosslessKind::Memo, CellValue::ofText(memo));
    EXPECT_EQ(literal.rfind("TO_NCLOB(N'", 0), 0u) << literal.substr(0, 40);
    EXPECT_EQ(std::count(literal.begin(), literal.end(), 'x'), 3000);
    const std::string accents = "é" + std::string(999, 'y') + "é";
    EXPECT_EQ(losslessLiteral(kOra, LosslessKind::Text, CellValue::ofText(accents)),
              "N'é" + std::string(998, 'y') + "' || N'yé'");
}

TEST(LosslessSqlTypes, EachAccessTypeInEachDialect)
{
    struct TypeCase {
        LosslessKind kind;
        int size, precision, scale;
        const char *pg, *my, *lite, *ms, *ora;
    };
    const TypeCase cases[] = {
        {LosslessKind::Boolean, 0, 0, 0, "boolean", "BOOLEAN", "BOOLEAN", "bit", "NUMBER(1)"},
        {LosslessKind::Byte, 0, 0, 0, "smallint", "TINYINT UNSIGNED", "INTEGER", "tinyint", "NUMBER(3)"},
        {LosslessKind::LargeNumber, 0, 0, 0, "bigint", "BIGINT", "INTEGER", "bigint", "NUMBER(19)"},
        {LosslessKind::Currency, 0, 0, 0, "numeric(19,4)", "DECIMAL(19,4)", "DECIMAL(19,4)", "decimal(19,4)",
         "NUMBER(19,4)"},
        {LosslessKind::Numeric, 0, 18, 4, "numeric(18,4)", "DECIMAL(18,4)", "DECIMAL(18,4)", "decimal(18,4)",
         "NUMBER(18,4)"},
        {LosslessKind::Numeric, 0, -1, 0, "numeric", "DECIMAL(65,30)", "DECIMAL", "decimal(38,18)", "NUMBER"},
        {LosslessKind::Single, 0, 0, 0, "real", "FLOAT", "REAL", "real", "BINARY_FLOAT"},
        {LosslessKind::Double, 0, 0, 0, "double precision", "DOUBLE", "REAL", "float(53)", "BINARY_DOUBLE"},
        {LosslessKind::DateTime, 0, 0, 0, "timestamp(0)", "DATETIME", "DATETIME", "datetime2(0)", "TIMESTAMP(0)"},
        {LosslessKind::DateTimeExtended, 0, 0, 0, "timestamp(6)", "DATETIME(6)", "DATETIME", "datetime2(7)",
         "TIMESTAMP(7)"},
        {LosslessKind::Guid, 0, 0, 0, "uuid", "CHAR(38)", "CHAR(38)", "uniqueidentifier", "CHAR(38)"},
        {LosslessKind::Binary, 50, 0, 0, "bytea", "VARBINARY(50)", "BLOB", "varbinary(50)", "RAW(50)"},
        {LosslessKind::Ole, 0, 0, 0, "bytea", "LONGBLOB", "BLOB", "varbinary(max)", "BLOB"},
        {LosslessKind::Text, 255, 0, 0, "varchar(255)", "VARCHAR(255)", "TEXT", "nvarchar(255)", "NVARCHAR2(255)"},
        {LosslessKind::Memo, 0, 0, 0, "text", "LONGTEXT", "TEXT", "nvarchar(max)", "NCLOB"},
    };
    for (const TypeCase &c : cases) {
        const LosslessColumnShape shape{c.kind, c.size, c.precision, c.scale};
        EXPECT_EQ(losslessColumnType(kPg, shape), c.pg);
        EXPECT_EQ(losslessColumnType(kMy, shape), c.my);
        EXPECT_EQ(losslessColumnType(kLite, shape), c.lite);
        EXPECT_EQ(losslessColumnType(kMs, shape), c.ms);
        EXPECT_EQ(losslessColumnType(kOra, shape), c.ora);
    }
    EXPECT_EQ(losslessKindForDataType("Date/Time Extended"), LosslessKind::DateTimeExtended);
    EXPECT_EQ(losslessKindForDataType("Unknown_0046"), LosslessKind::Binary);
}

// ---- the scripts ----

const std::pair<ServerType, const char *> kDialects[] = {
    {ServerTypeMySQL, "mysql"},   {ServerTypePostgreSQL, "postgresql"}, {ServerTypeOracle, "oracle"},
    {ServerTypeSQLite, "sqlite"}, {ServerTypeSQLServer, "sqlserver"},
};

void expectGolden(const std::string &actual, const std::string &goldenPath)
{
    ASSERT_FALSE(actual.empty());
    if (std::getenv("VELLUM_UPDATE_GOLDEN")) {
        fs::create_directories(fs::path(goldenPath).parent_path());
        std::ofstream(goldenPath, std::ios::binary) << actual;
    }
    ASSERT_TRUE(fs::exists(goldenPath)) << "missing golden file " << goldenPath;
    const std::string expected = test::fileContents(goldenPath);
    if (actual == expected)
        return;
    std::size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at])
        ++at;
    const std::size_t from = at > 80 ? at - 80 : 0;
    ADD_FAILURE() << goldenPath << " differs at byte " << at << "\n--- expected:\n"
                  << expected.substr(from, 200) << "\n--- actual:\n"
                  << actual.substr(from, 200);
}

TEST(LosslessSqlScript, GoldenScriptsOfTheFixtureInEveryDialect)
{
    auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    test::TempDir dir;
    for (const auto &[dialect, name] : kDialects) {
        const std::string path = dir.file(std::string(name) + ".sql");
        ExportJob job(*file, nullptr, ExportFileType::SQL);
        ExportOptions options = job.options();
        options.sqlFormat = dialect;
        options.exportSingleFile = true;
        options.lossless = true;
        job.setOptions(options);
        job.setExportPath(path);
        ASSERT_TRUE(job.startExport(nullptr));
        job.wait();
        for (const std::string &line : job.msgLog())
            EXPECT_NE(line.find("approximated"), std::string::npos) << name << ": " << line;
        EXPECT_EQ(job.successTableCount(), 14) << name;
        // The fixture's values a target cannot hold: the -0 of the Single and the Double in MySQL
        // and SQLite, and in SQLite the four decimals of 18 and 19 digits
        // (largest and smallest Currency and Numeric), which NUMERIC affinity makes REALs.
        std::vector<std::pair<std::string, std::size_t>> expected;
        if (dialect == ServerTypeMySQL)
            expected = {{"negative zeros stored as zero", 2}};
        else if (dialect == ServerTypeSQLite)
            expected = {{"decimals of more than 15 digits stored as REAL", 4}, {"negative zeros stored as zero", 2}};
        std::vector<std::pair<std::string, std::size_t>> counted;
        for (const auto &approximation : job.approximations()) {
            EXPECT_EQ(approximation.tableName, "AllTypes") << name;
            counted.emplace_back(approximation.what, approximation.count);
        }
        EXPECT_EQ(counted, expected) << name;
        expectGolden(test::fileContents(path),
                     std::string(VELLUM_TEST_DATA) + "/golden/sql-lossless/" + std::string(name) + ".sql");
    }
}

TEST(LosslessSqlScript, ApproximationsAreCountedPerTable)
{
    auto file = test::openInProcess(test::fixturePath("newtypes.accdb"));
    ASSERT_TRUE(file);
    test::TempDir dir;
    // PostgreSQL and MySQL keep microseconds; SQLite, SQL Server and Oracle keep all seven digits.
    for (const auto &[dialect, name] : kDialects) {
        ExportJob job(*file, nullptr, ExportFileType::SQL);
        ExportOptions options = job.options();
        options.sqlFormat = dialect;
        options.exportSingleFile = true;
        options.lossless = true;
        job.setOptions(options);
        job.setExportPath(dir.file(std::string(name) + ".sql"));
        ASSERT_TRUE(job.startExport(nullptr));
        job.wait();
        const bool rounds = dialect == ServerTypePostgreSQL || dialect == ServerTypeMySQL;
        std::size_t seventhDigits = 0;
        const TOrbMDBTable *dates = file->tableNamed("ExtDates");
        ASSERT_TRUE(dates);
        for (std::size_t r = 0; r < dates->rowCount(); ++r)
            for (std::size_t c = 0; c < dates->columns().size(); ++c) {
                const CellValue cell = dates->cell(r, c);
                if (dates->columns()[c]->dataType() == "Date/Time Extended" && cell.isText() &&
                    cell.text.size() == 27 && cell.text.back() != '0')
                    ++seventhDigits;
            }
        if (rounds) {
            ASSERT_EQ(job.approximations().size(), 1u) << name;
            EXPECT_EQ(job.approximations()[0].tableName, "ExtDates");
            EXPECT_EQ(job.approximations()[0].what, "times rounded to microseconds");
            EXPECT_EQ(job.approximations()[0].count, seventhDigits);
            EXPECT_GT(seventhDigits, 0u);
        } else {
            EXPECT_TRUE(job.approximations().empty()) << name;
        }
    }
}

/// The lossless script of an in-memory file, as one text.
std::string scriptOf(const TOrbMDBFile &file, ServerType dialect)
{
    SqlScriptSettings settings;
    settings.dialect = dialect;
    std::atomic<bool> stop{false};
    LosslessSqlWriter writer(file, settings, stop);
    StringSink sink;
    std::vector<const TOrbMDBTable *> written;
    EXPECT_TRUE(writer.writePrologue(sink));
    for (const auto &table : file.tables()) {
        EXPECT_TRUE(writer.writeTable(*table, sink));
        written.push_back(table.get());
    }
    EXPECT_TRUE(writer.writeSingleScriptEnd(written, sink));
    EXPECT_TRUE(writer.writeEpilogue(sink));
    return sink.data();
}

TEST(LosslessSqlScript, IndexesAndRelationshipsTheDataKeeps)
{
    // "Parent" has a unique index its rows keep (code) and one they break (dup). Of the
    // relationships from "Child", only "kept" is enforced, refers to a unique key and is kept by
    // every row (a null code refers to nothing).
    auto parent = test::makeTable("Parent", {{"id", "Long Integer"}, {"code", "Text"}, {"dup", "Long Integer"}},
                                  {{"1", "a", "5"}, {"2", "b", "5"}, {"3", std::nullopt, std::nullopt}});
    const auto addIndex = [](TOrbMDBTable &table, const char *name, const char *column, bool unique) {
        auto index = std::make_unique<TOrbMDBIndex>();
        index->setName(name);
        index->setIsUnique(unique);
        index->setKeys({{column, true}});
        table.addIndex(std::move(index));
    };
    addIndex(*parent, "uxCode", "code", true);
    addIndex(*parent, "uxDup", "dup", true);
    auto child = test::makeTable("Child", {{"id", "Long Integer"}, {"code", "Text"}, {"dup", "Long Integer"}},
                                 {{"1", "a", "5"}, {"2", "b", "5"}, {"3", std::nullopt, "5"}});
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(std::move(parent));
    tables.push_back(std::move(child));
    auto file = test::makeFile("rel.mdb", std::move(tables));
    const auto addKey = [&](const char *name, const char *from, const char *to, bool enforced) {
        auto key = std::make_unique<TOrbMDBForeignKey>();
        key->setName(name);
        key->setReferencingTable("Child");
        key->setReferencingColumns({from});
        key->setReferencedTable("Parent");
        key->setReferencedColumns({to});
        key->setEnforced(enforced);
        key->setOnDeleteSetNull(true);
        file->addForeignKey(std::move(key));
    };
    addKey("kept", "code", "code", true);
    addKey("documentOnly", "code", "code", false);
    addKey("toDuplicates", "dup", "dup", true);
    addKey("orphans", "id", "code", true); // ids 1..3 are no codes

    for (const auto &[dialect, name] : kDialects) {
        const std::string script = scriptOf(*file, dialect);
        EXPECT_NE(script.find("CREATE UNIQUE INDEX"), std::string::npos) << name;
        EXPECT_NE(script.find("-- not unique: rows of the table share a key of this index\nCREATE INDEX"),
                  std::string::npos)
            << name;
        EXPECT_EQ(script.find("documentOnly"), std::string::npos) << name << ": a relationship Access does not enforce";
        EXPECT_EQ(script.find("toDuplicates"), std::string::npos) << name << ": no unique key to refer to";
        EXPECT_EQ(script.find("orphans"), std::string::npos) << name << ": rows without their referenced row";
        const std::string rule =
            dialect == ServerTypeOracle ? ") ON DELETE SET NULL" : ") ON UPDATE NO ACTION ON DELETE SET NULL";
        const std::size_t kept = script.find("kept");
        ASSERT_NE(kept, std::string::npos) << name;
        EXPECT_NE(script.find(rule, kept), std::string::npos) << name;
        if (dialect == ServerTypeSQLite)
            EXPECT_LT(kept, script.find("INSERT INTO \"Child\"")) << "SQLite declares it with its table";
        else
            EXPECT_GT(kept, script.rfind("INSERT INTO")) << name << ": added after the data";
    }
}

TEST(LosslessSqlScript, RowsGoInBoundedMultiRowInsertsInsideATransaction)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeNumberTable("Numbers", 1201));
    auto file = test::makeFile("numbers.mdb", std::move(tables));
    const auto count = [](const std::string &text, const std::string &what) {
        std::size_t n = 0;
        for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1))
            ++n;
        return n;
    };
    struct Expect {
        ServerType dialect;
        std::size_t inserts;
        const char *begin;
        const char *commit;
    };
    for (const Expect &e :
         {Expect{kPg, 3, "BEGIN;\n", "COMMIT;\n"}, Expect{kMy, 3, "START TRANSACTION;\n", "COMMIT;\n"},
          Expect{kLite, 3, "BEGIN;\n", "COMMIT;\n"},
          Expect{kMs, 1201, "BEGIN TRANSACTION;\n", "COMMIT TRANSACTION;\nGO\n"},
          Expect{kOra, 1201, "", "COMMIT;\n"}}) {
        const std::string script = scriptOf(*file, e.dialect);
        EXPECT_EQ(count(script, "INSERT INTO"), e.inserts) << serverTypeValue(e.dialect);
        EXPECT_EQ(count(script, e.commit), 1u) << serverTypeValue(e.dialect);
        if (*e.begin) {
            EXPECT_LT(script.find(e.begin), script.find("INSERT INTO")) << serverTypeValue(e.dialect);
        }
        EXPECT_LT(script.find("INSERT INTO"), script.find(e.commit)) << serverTypeValue(e.dialect);
    }
}

} // namespace
} // namespace vellum
