// The lossless SQLite database: each type's declared type, storage class and value as sqlite3
// reads them back, NULL apart from 0, NaN, blobs, the child tables of complex columns, which
// relationships become constraints, indexes after the data, and failure lines that carry
// SQLite's own message.

#include "export/LosslessSqliteWriter.h"
#include "export/ExportJob.h"
#include "export/ExportTestTables.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace vellum {
namespace {

namespace fs = std::filesystem;

constexpr const char *kSqlite3 = "/usr/bin/sqlite3";
constexpr const char *kSqlcipher = "/usr/bin/sqlcipher";

std::string sqlite3(const std::string &db, const std::string &sql)
{
    const test::ProcessResult result = test::runProcess({kSqlite3, "-batch", db, sql});
    EXPECT_EQ(result.exitStatus, 0) << sql << "\n" << result.err;
    return result.out;
}

/// Exports every table of `file` losslessly into `db` on the calling thread.
void exportLossless(ExportJob &job, const std::string &db)
{
    job.mutableOptions().lossless = true;
    job.setExportPath(db);
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
}

std::size_t approximated(const ExportJob &job, const std::string &table, const std::string &what)
{
    for (const ExportApproximation &approximation : job.approximations())
        if (approximation.tableName == table && approximation.what == what)
            return approximation.count;
    return 0;
}

struct TypeCase {
    const char *type;
    const char *value;      ///< the cell's text; nullptr for a blob {1, 2, 3}
    const char *declared;   ///< pragma table_info's type
    const char *storedAs;   ///< typeof() of the value
    const char *quoted;     ///< quote() of the value
    const char *zeroValue;  ///< a second row's text, a zero or empty value of the type
    const char *zeroStored; ///< its typeof()
    const char *zeroQuoted; ///< its quote()
};

class LosslessSqliteWriterTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(kSqlite3))
            GTEST_SKIP() << kSqlite3 << " (Debian package sqlite3) is needed to read the databases back";
    }
    test::TempDir m_dir;
};

TEST_F(LosslessSqliteWriterTest, EachTypeKeepsItsStorageClassAndValue)
{
    const TypeCase cases[] = {
        {"Boolean", "1", "BOOLEAN", "integer", "1", "0", "integer", "0"},
        {"Byte", "255", "INTEGER", "integer", "255", "0", "integer", "0"},
        {"Integer", "-32768", "INTEGER", "integer", "-32768", "0", "integer", "0"},
        {"Long Integer", "2147483647", "INTEGER", "integer", "2147483647", "0", "integer", "0"},
        {"Large Number", "-9223372036854775808", "INTEGER", "integer", "-9223372036854775808", "0", "integer", "0"},
        {"Single", "0.1", "REAL", "real", "0.1", "0", "real", "0.0"},
        {"Double", "1e+21", "REAL", "real", "1.0e+21", "0", "real", "0.0"},
        {"Double", "Infinity", "REAL", "real", "Inf", "-Infinity", "real", "-Inf"},
        {"Currency", "12.5000", "DECIMAL(19,4)", "real", "12.5", "0.0001", "real", "0.0001"},
        {"Currency", "100.0000", "DECIMAL(19,4)", "integer", "100", "0", "integer", "0"},
        {"Numeric", "-1234.56", "DECIMAL(12,2)", "real", "-1234.56", "0", "integer", "0"},
        {"DateTime", "03/04/2010 13:05:09", "DATETIME", "text", "'2010-03-04 13:05:09'", "12/30/1899 00:00:00", "text",
         "'1899-12-30 00:00:00'"},
        {"Date/Time Extended", "03/04/2010 13:05:09.1234567", "DATETIME", "text", "'2010-03-04 13:05:09.1234567'",
         "01/01/0001 00:00:00.0000000", "text", "'0001-01-01 00:00:00.0000000'"},
        {"Replication ID", "{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "CHAR(38)", "text",
         "'{6F9619FF-8B86-D011-B42D-00C04FC964FF}'", "{00000000-0000-0000-0000-000000000000}", "text",
         "'{00000000-0000-0000-0000-000000000000}'"},
        {"Binary", "AB'C", "BLOB", "blob", "X'41422743'", "0", "blob", "X'30'"},
        {"OLE", nullptr, "BLOB", "blob", "X'010203'", "raw", "blob", "X'726177'"},
        {"Text", "O'Brien \\x", "TEXT", "text", "'O''Brien \\x'", "0", "text", "'0'"},
        {"Memo/Hyperlink", "00123", "TEXT", "text", "'00123'", "NULL", "text", "'NULL'"},
    };
    std::vector<std::pair<std::string, std::string>> columns;
    std::vector<test::TestCell> values, zeros, nulls;
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        columns.emplace_back("c" + std::to_string(i), cases[i].type);
        values.push_back(cases[i].value ? test::TestCell(cases[i].value) : test::TestCell::blob());
        zeros.push_back(test::TestCell(cases[i].zeroValue));
        nulls.push_back(std::nullopt);
    }
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Types", columns, {values, zeros, nulls}));
    tables.back()->columnNamed("c10")->setPrecision(12);
    tables.back()->columnNamed("c10")->setScale(2);
    auto file = test::makeFile("mem", std::move(tables));
    const std::string db = m_dir.file("types.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    exportLossless(job, db);
    EXPECT_TRUE(job.msgLog().empty()) << job.msgLog().front();
    EXPECT_EQ(job.successTableCount(), 1);
    EXPECT_TRUE(job.approximations().empty());

    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const TypeCase &c = cases[i];
        const std::string name = "c" + std::to_string(i);
        const std::string column = "\"" + name + "\"";
        SCOPED_TRACE(std::string(c.type) + " " + (c.value ? c.value : "blob"));
        EXPECT_EQ(sqlite3(db, "SELECT type FROM pragma_table_info('Types') WHERE name = '" + name + "';"),
                  std::string(c.declared) + "\n");
        // The value, a zero of the type (never NULL), and NULL (never 0 or '').
        EXPECT_EQ(
            sqlite3(db, "SELECT typeof(" + column + ") || '|' || quote(" + column + ") FROM \"Types\" ORDER BY rowid;"),
            std::string(c.storedAs) + "|" + c.quoted + "\n" + c.zeroStored + "|" + c.zeroQuoted + "\nnull|NULL\n");
    }
}

TEST_F(LosslessSqliteWriterTest, ApproximationsAreCounted)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Odd", {{"d", "Double"}, {"s", "Single"}, {"m", "Currency"}, {"n", "Numeric"}},
                                     {{"NaN", "NaN", "922337203685477.5807", "12345678901234567.89"},
                                      {"1.5", "2.5", "-922337203685477.5808", "1234567890123.4500"},
                                      {"-0", std::nullopt, "9223372036854775807", "123456789012345678"}}));
    tables.back()->columnNamed("n")->setPrecision(28);
    tables.back()->columnNamed("n")->setScale(2);
    auto file = test::makeFile("mem", std::move(tables));
    const std::string db = m_dir.file("odd.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    exportLossless(job, db);
    EXPECT_EQ(job.msgLog(),
              (std::vector<std::string>{
                  "<Odd> Warning: 2 values approximated: NaN floating-point values written as NULL",
                  "<Odd> Warning: 3 values approximated: decimals of more than 15 significant digits stored as REAL",
                  "<Odd> Warning: 1 value approximated: negative zeros stored as 0"}));
    EXPECT_EQ(approximated(job, "Odd", "NaN floating-point values written as NULL"), 2u);
    // A REAL column keeps a whole number as an integer on disk, which has no negative zero.
    EXPECT_EQ(approximated(job, "Odd", "negative zeros stored as 0"), 1u);
    // The two Currency extremes and the long decimal become doubles; a 64-bit integer, an
    // 18-digit integer and a decimal with 15 significant digits (trailing zeros aside) do not.
    EXPECT_EQ(approximated(job, "Odd", "decimals of more than 15 significant digits stored as REAL"), 3u);
    EXPECT_EQ(sqlite3(db, "SELECT quote(d), quote(s), typeof(m), typeof(n) FROM \"Odd\" ORDER BY rowid;"),
              "NULL|NULL|real|integer\n1.5|2.5|real|real\n0.0|NULL|integer|integer\n");
    EXPECT_EQ(sqlite3(db, "SELECT m, n FROM \"Odd\" WHERE rowid = 3;"), "9223372036854775807|123456789012345678\n");
    EXPECT_EQ(sqlite3(db, "SELECT printf('%.2f', n) FROM \"Odd\" WHERE rowid = 2;"), "1234567890123.45\n");
    EXPECT_EQ(job.report().message.find("approximated") != std::string::npos ||
                  job.report().title.find("approximated") != std::string::npos || !job.approximations().empty(),
              true);
}

TEST_F(LosslessSqliteWriterTest, ComplexColumnsGetChildTables)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Items",
                                     {{"ID", "Long Integer"},
                                      {"Tags", "Complex Value auto number"},
                                      {"Files", "Complex Value auto number"},
                                      {"Notes", "Complex Value auto number"},
                                      {"Sizes", "Complex Value auto number"}},
                                     {{"1", "10", "20", "30", "40"},
                                      {"2", "11", "21", "31", "41"},
                                      {"3", std::nullopt, std::nullopt, std::nullopt, std::nullopt}}));
    TOrbMDBTable &items = *tables.back();
    items.columnNamed("ID")->setIsPrimaryKey(true);
    auto tags = std::make_unique<ComplexColumnValues>(ComplexKind::MultiValue);
    tags->valuesFor(10).addValue("red");
    tags->valuesFor(10).addValue("O'Neil");
    tags->valuesFor(11).addValue("blue");
    items.setComplexValues(1, std::move(tags));
    auto files = std::make_unique<ComplexColumnValues>(ComplexKind::Attachment);
    files->valuesFor(20).addAttachment("a.txt", "txt", {'h', 'i', 0, '!'});
    files->valuesFor(20).addAttachment("empty.bin", "bin", {});
    items.setComplexValues(2, std::move(files));
    auto notes = std::make_unique<ComplexColumnValues>(ComplexKind::VersionHistory);
    notes->valuesFor(31).addVersion("second", "02/03/2021 04:05:06");
    notes->valuesFor(31).addVersion("first", "01/02/2020 03:04:05");
    items.setComplexValues(3, std::move(notes));
    // Items of a known type are stored as that type.
    auto sizes = std::make_unique<ComplexColumnValues>(ComplexKind::MultiValue);
    sizes->setValueType("Long Integer");
    sizes->valuesFor(40).addValue("42");
    sizes->valuesFor(41).addValue("-7");
    items.setComplexValues(4, std::move(sizes));
    // A table already named like the first child table: the child takes the next free name.
    tables.push_back(test::makeNumberTable("items_tags", 1));
    auto file = test::makeFile("mem", std::move(tables));

    const std::string db = m_dir.file("complex.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    exportLossless(job, db);
    EXPECT_TRUE(job.msgLog().empty()) << job.msgLog().front();
    EXPECT_EQ(job.successTableCount(), 2);
    EXPECT_EQ(sqlite3(db, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name;"),
              "Items\nItems_Files\nItems_Notes\nItems_Sizes\nItems_Tags_1\nitems_tags\n");
    EXPECT_EQ(sqlite3(db, "SELECT typeof(Tags), Tags, quote(Files), quote(Notes) FROM Items ORDER BY ID;"),
              "integer|10|20|30\ninteger|11|21|31\nnull||NULL|NULL\n");
    EXPECT_EQ(sqlite3(db, "SELECT parent_id, value FROM Items_Tags_1 ORDER BY rowid;"), "10|red\n10|O'Neil\n11|blue\n");
    EXPECT_EQ(sqlite3(db, "SELECT parent_id, file_name, file_type, typeof(data), hex(data) FROM Items_Files "
                          "ORDER BY rowid;"),
              "20|a.txt|txt|blob|68690021\n20|empty.bin|bin|blob|\n");
    EXPECT_EQ(sqlite3(db, "SELECT parent_id, value, changed FROM Items_Notes ORDER BY rowid;"),
              "31|second|2021-02-03 04:05:06\n31|first|2020-01-02 03:04:05\n");
    EXPECT_EQ(sqlite3(db, "SELECT type FROM pragma_table_info('Items_Tags_1') ORDER BY cid;"), "INTEGER\nTEXT\n");
    EXPECT_EQ(sqlite3(db, "SELECT type FROM pragma_table_info('Items_Sizes') ORDER BY cid;"), "INTEGER\nINTEGER\n");
    EXPECT_EQ(sqlite3(db, "SELECT parent_id, typeof(value), value FROM Items_Sizes ORDER BY rowid;"),
              "40|integer|42\n41|integer|-7\n");
    EXPECT_EQ(sqlite3(db, "SELECT type FROM pragma_table_info('Items_Notes') ORDER BY cid;"),
              "INTEGER\nTEXT\nDATETIME\n");
}

TEST_F(LosslessSqliteWriterTest, OnlyEnforcedRelationshipsBecomeConstraints)
{
    auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    const std::string db = m_dir.file("features.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    exportLossless(job, db);
    EXPECT_EQ(job.successTableCount(), static_cast<std::int64_t>(file->tables().size()));
    // The Currency and Decimal extremes of AllTypes have more digits than a double keeps, and
    // its Single and Double -0 lose their sign.
    EXPECT_EQ(job.msgLog(), (std::vector<std::string>{"<AllTypes> Warning: 4 values approximated: decimals of more "
                                                      "than 15 significant digits stored as REAL",
                                                      "<AllTypes> Warning: 2 values approximated: negative zeros "
                                                      "stored as 0"}));
    EXPECT_EQ(sqlite3(db, "PRAGMA integrity_check;"), "ok\n");
    // id|seq|table|from|to|on_update|on_delete|match: ShipToID, which Access does not enforce,
    // is no constraint; a relationship without cascades refuses (NO ACTION).
    EXPECT_EQ(sqlite3(db, "PRAGMA foreign_key_list(\"Orders\");"),
              "0|0|Customers|CustCode|Code|NO ACTION|NO ACTION|NONE\n"
              "0|1|Customers|CustCountry|Country|NO ACTION|NO ACTION|NONE\n"
              "1|0|Customers|CustomerID|CustomerID|CASCADE|NO ACTION|NONE\n");
    EXPECT_EQ(sqlite3(db, "PRAGMA foreign_key_list(\"OrderLines\");"),
              "0|0|Orders|OrderID|OrderID|CASCADE|CASCADE|NONE\n");
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM pragma_foreign_key_check;"), "0\n");
    // The constraints hold once enforcement is on: deleting an order removes its lines.
    EXPECT_EQ(sqlite3(db,
                      "PRAGMA foreign_keys = ON; DELETE FROM \"Orders\" WHERE \"OrderID\" = "
                      "(SELECT min(\"OrderID\") FROM \"OrderLines\"); SELECT count(*) FROM pragma_foreign_key_check;"),
              "0\n");
    // Indexes, unique ones too, exist after the data; the key is the table's own.
    EXPECT_EQ(sqlite3(db, "SELECT name, \"unique\" FROM pragma_index_list('Items') ORDER BY name;"),
              "ORDERS_1|0\nix|1\n");
    EXPECT_EQ(sqlite3(db, "SELECT name, pk FROM pragma_table_info('OrderLines') WHERE pk ORDER BY pk;"),
              "OrderID|1\nLineNo|2\n");

    // A relationship is written only when both tables are in the export.
    ExportJob some(*file, nullptr, ExportFileType::SQLite);
    for (std::size_t i = 0; i < some.entries().size(); ++i)
        some.setEntrySelected(i, some.entries()[i].tableName == "Orders");
    const std::string one = m_dir.file("orders.sqlite");
    exportLossless(some, one);
    EXPECT_EQ(some.successTableCount(), 1);
    EXPECT_EQ(sqlite3(one, "SELECT count(*) FROM pragma_foreign_key_list('Orders');"), "0\n");
}

TEST_F(LosslessSqliteWriterTest, FailuresCarrySqlitesMessage)
{
    std::vector<std::vector<test::TestCell>> rows;
    std::vector<std::string> ids;
    for (int i = 1; i <= 600; ++i)
        ids.push_back(std::to_string(i == 500 ? 7 : i)); // row 500 repeats the key 7
    for (const std::string &id : ids)
        rows.push_back({id.c_str(), id == "7" ? "same" : id.c_str()});
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Dup", {{"ID", "Long Integer"}, {"Label", "Text"}}, rows));
    tables.back()->columnNamed("ID")->setIsPrimaryKey(true);
    tables.push_back(test::makeTable("Twice", {{"Code", "Text"}}, {{"a"}, {"b"}, {"a"}}));
    auto unique = std::make_unique<TOrbMDBIndex>();
    unique->setName("uxCode");
    unique->setIsUnique(true);
    unique->setKeys({{"Code", true}});
    tables.back()->addIndex(std::move(unique));
    tables.push_back(test::makeNumberTable("Fine", 3));
    auto file = test::makeFile("mem", std::move(tables));

    const std::string db = m_dir.file("dup.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    exportLossless(job, db);
    EXPECT_EQ(job.msgLog(), (std::vector<std::string>{
                                "<Dup> Failed: Insert record failed.\n    UNIQUE constraint failed: Dup.ID",
                                "Failed: Create index uxCode for table Twice failed.\n"
                                "    UNIQUE constraint failed: Twice.Code",
                            }));
    EXPECT_EQ(job.successTableCount(), 2);
    EXPECT_EQ(sqlite3(db, "PRAGMA integrity_check;"), "ok\n");
    EXPECT_EQ(sqlite3(db, "SELECT name FROM sqlite_master ORDER BY name;"), "Fine\nTwice\n");
    EXPECT_EQ(sqlite3(db, "SELECT sum(n) FROM \"Fine\";"), "6\n");
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM \"Twice\";"), "3\n");
}

TEST_F(LosslessSqliteWriterTest, PasswordEncryptsTheDatabase)
{
    if (!fs::exists(kSqlcipher))
        GTEST_SKIP() << kSqlcipher << " is needed";
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Secret", {{"ID", "Long Integer"}, {"Word", "Text"}}, {{"1", "swordfish"}}));
    auto file = test::makeFile("mem", std::move(tables));
    const std::string db = m_dir.file("secret.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    job.mutableOptions().password = "Tr0ub4dor&3";
    exportLossless(job, db);
    EXPECT_TRUE(job.msgLog().empty());
    const auto keyed =
        test::runProcess({kSqlcipher, db, "PRAGMA key = 'Tr0ub4dor&3'; SELECT typeof(ID), Word FROM Secret;"});
    EXPECT_EQ(keyed.out, "integer|swordfish\n") << keyed.err;
    const auto plain = test::runProcess({kSqlite3, db, "SELECT Word FROM Secret;"});
    EXPECT_NE(plain.exitStatus, 0);
    EXPECT_NE(plain.err.find("not a database"), std::string::npos) << plain.err;
}

TEST(LosslessSqliteWriter, IntegerTexts)
{
    const std::pair<const char *, std::optional<std::int64_t>> cases[] = {
        {"0", 0},
        {"-9223372036854775808", INT64_MIN},
        {"+42", 42},
        {"9223372036854775808", std::nullopt},
        {"1.0", std::nullopt},
        {"", std::nullopt},
        {"-", std::nullopt},
        {"12a", std::nullopt},
        {" 1", std::nullopt},
    };
    for (const auto &[text, expected] : cases) {
        std::int64_t value = -1;
        const bool parsed = parseSqliteInteger(text, value);
        EXPECT_EQ(parsed, expected.has_value()) << text;
        if (expected && parsed) {
            EXPECT_EQ(value, *expected) << text;
        }
    }
}

} // namespace
} // namespace vellum
