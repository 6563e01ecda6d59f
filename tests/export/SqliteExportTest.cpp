// exportSQLiteThread: the exact statements, and whole exports checked with the sqlite3 tool
// (schema, keys, indexes, every value), an INSERT that fails, a stop, replaced and unwritable
// files.

#include "export/SqliteExport.h"
#include "export/ExportJob.h"
#include "export/ExportTestTables.h"
#include "export/IndexNameRegister.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace vellum {
namespace {

namespace fs = std::filesystem;

constexpr const char *kSqlite3 = "/usr/bin/sqlite3";

/// Runs SQL through the sqlite3 tool; its standard output.
std::string sqlite3(const std::string &db, const std::string &sql)
{
    const test::ProcessResult result = test::runProcess({kSqlite3, "-batch", db, sql});
    EXPECT_EQ(result.exitStatus, 0) << sql << "\n" << result.err;
    return result.out;
}

std::vector<std::string> lines(const std::string &text)
{
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        out.push_back(line);
    return out;
}

/// Counts the job's reports; optionally stops the job when entry `stopAt` begins.
class StopObserver : public ExportObserver {
public:
    void updateProgressPanel(const ExportJob &, std::size_t index) override
    {
        ++progressCalls;
        if (stopAt && index == *stopAt)
            job->stop();
    }
    void exportThreadFinished(const ExportJob &) override { ++finishedCalls; }

    ExportJob *job = nullptr;
    std::optional<std::size_t> stopAt;
    int progressCalls = 0;
    int finishedCalls = 0;
};

/// Runs a SQLite export of every table of `file` into `path` on the calling thread.
void runExport(ExportJob &job, const std::string &path, StopObserver *observer = nullptr)
{
    job.setExportPath(path);
    ASSERT_TRUE(job.startExport(observer));
    job.wait();
}

void setAllowZeroLength(TOrbMDBTable &table, const std::string &column, const char *value)
{
    table.columnNamed(column)->setAllowZeroLength(std::string(value));
}

// ---- the statements ----

TEST(SqliteExport, CreateTableStatement)
{
    auto orders = test::makeTable("Orders", {{"ID", "Long Integer"}, {"Note", "Memo/Hyperlink"}}, {});
    orders->columnNamed("ID")->setIsPrimaryKey(true);
    EXPECT_EQ(sqliteCreateTableStatement(*orders, nullptr),
              "CREATE TABLE \"Orders\" (\n\t\"ID\" INTEGER NOT NULL,\n\t\"Note\" TEXT,\n\tPRIMARY KEY (\"ID\")\n);");

    // No key: no PRIMARY KEY clause; NOT NULL only where zero-length text is "NO".
    auto plain = test::makeTable("Quote\"Table", {{"Col\"Q", "Text"}, {"When", "DateTime"}, {"Pic", "OLE"}}, {});
    setAllowZeroLength(*plain, "Col\"Q", "NO");
    setAllowZeroLength(*plain, "When", "YES");
    EXPECT_EQ(sqliteCreateTableStatement(*plain, nullptr),
              "CREATE TABLE \"Quote\"\"Table\" (\n\t\"Col\"\"Q\" TEXT NOT NULL,\n\t\"When\" TEXT,\n\t\"Pic\" BLOB\n);");

    std::vector<std::unique_ptr<TOrbMDBForeignKey>> keys;
    const auto addKey = [&keys](const char *name, const char *from, std::vector<std::string> columns, const char *to,
                                std::vector<std::string> referenced, bool update, bool remove) {
        auto key = std::make_unique<TOrbMDBForeignKey>();
        key->setName(name);
        key->setReferencingTable(from);
        key->setReferencingColumns(std::move(columns));
        key->setReferencedTable(to);
        key->setReferencedColumns(std::move(referenced));
        key->setOnUpdateCascade(update);
        key->setOnDeleteCascade(remove);
        keys.push_back(std::move(key));
    };
    addKey("Lines", "Lines", {"OrderID"}, "Orders", {"ID"}, false, false);
    addKey("ByCode", "Orders", {"ID", "Note"}, "Codes", {"Code", "Country"}, true, false);
    addKey("All", "Orders", {"Note"}, "Notes", {"Text"}, true, true);
    EXPECT_EQ(sqliteCreateTableStatement(*orders, &keys),
              "CREATE TABLE \"Orders\" (\n\t\"ID\" INTEGER NOT NULL,\n\t\"Note\" TEXT,\n\tPRIMARY KEY (\"ID\"),"
              "\n\tCONSTRAINT \"ByCode\" FOREIGN KEY (\"ID\", \"Note\") REFERENCES \"Codes\" (\"Code\", \"Country\")"
              " ON UPDATE CASCADE ON DELETE SET NULL,"
              "\n\tCONSTRAINT \"All\" FOREIGN KEY (\"Note\") REFERENCES \"Notes\" (\"Text\")"
              " ON UPDATE CASCADE ON DELETE CASCADE\n);");
}

TEST(SqliteExport, ValueLiterals)
{
    auto table = test::makeTable("T",
                                 {{"Text", "Text"},
                                  {"Long", "Long Integer"},
                                  {"Double", "Double"},
                                  {"Guid", "Replication ID"},
                                  {"Date", "DateTime"},
                                  {"Ole", "OLE"},
                                  {"Strict", "Text"}},
                                 {{"O'Brien\\x", "-12", "1.5e-07", "{6F9619FF-8B86-D011-B42D-00C04FC964FF}",
                                   "03/04/2010 13:05:00", test::TestCell::blob(), std::nullopt},
                                  {std::nullopt, "O'Brien\\x", ".5", std::nullopt, std::nullopt, std::nullopt, "x"}});
    setAllowZeroLength(*table, "Strict", "NO");
    setAllowZeroLength(*table, "Text", "YES");
    std::string sql;
    buildSqliteInsertStatement(sql, "INSERT INTO \"T\" VALUES (", *table, 0);
    EXPECT_EQ(sql, "INSERT INTO \"T\" VALUES ('O''Brien\\\\x', -12, 1.5e-07, '{6F9619FF-8B86-D011-B42D-00C04FC964FF}', "
                   "'03/04/2010 13:05:00', x'010203', \"\");");
    buildSqliteInsertStatement(sql, "(", *table, 1);
    // A text that is no number is quoted even in a number column, so the statement stays valid.
    EXPECT_EQ(sql, "(null, 'O''Brien\\\\x', .5, null, null, null, 'x');");
}

TEST(SqliteExport, IndexStatementsAndUniqueNames)
{
    TOrbMDBIndex index;
    index.setName("ixPriceDesc");
    index.setIsUnique(true);
    index.setKeys({{"Price", false}, {"Code\"X", true}});
    EXPECT_EQ(sqliteCreateIndexStatement(index, "ixPriceDesc_1", "\"Order Lines\""),
              "CREATE UNIQUE INDEX \"ixPriceDesc_1\" ON \"Order Lines\" (\n\t\"Price\" DESC,\n\t\"Code\"\"X\" ASC\n);");
    index.setIsUnique(false);
    index.setKeys({{"A", true}});
    EXPECT_EQ(sqliteCreateIndexStatement(index, "i", "\"t\""), "CREATE INDEX \"i\" ON \"t\" (\n\t\"A\" ASC\n);");

    IndexNameRegister names(true);
    names.recordTable("Orders");
    names.recordTable("Ünïcode 表");
    const std::pair<const char *, const char *> cases[] = {
        {"ORDERS", "ORDERS_1"},         {"orders", "orders_2"},   {"ix", "ix"}, {"IX", "IX_1"}, {"ix", "ix_2"},
        {"ÜNÏCODE 表", "ÜNÏCODE 表_1"}, {"ORDERS_1", "ORDERS_1"},
    };
    for (const auto &[name, expected] : cases)
        EXPECT_EQ(names.uniqueIndexName(name), expected) << name;

    // The other dialects of the script writer compare index names as they stand.
    IndexNameRegister exact(false);
    EXPECT_EQ(exact.uniqueIndexName("ix"), "ix");
    EXPECT_EQ(exact.uniqueIndexName("IX"), "IX");
    EXPECT_EQ(exact.uniqueIndexName("ix"), "ix_1");
    EXPECT_EQ(exact.uniqueIndexName("ix"), "ix_2");
}

// ---- whole exports ----

/// The sqlite3 text of one stored cell as `quote()` gives it, for what the export was given.
std::string expectedQuote(const CellValue &value, const TOrbMDBColumn &column)
{
    if (value.isBlob()) {
        std::string hex = "X'";
        for (const std::uint8_t byte : value.blob->data())
            hex += "0123456789ABCDEF"[byte >> 4], hex += "0123456789ABCDEF"[byte & 15];
        return hex + "'";
    }
    if (value.isNull())
        return column.allowZeroLength() == std::optional<std::string>("NO") ? "''" : "NULL";
    std::string text = "'";
    for (const char c : value.text) {
        if (c == '\'' || c == '\\')
            text += c; // backslashes are written doubled, and stay doubled in the database
        text += c;
    }
    return text + "'";
}

std::string unhex(const std::string &hex)
{
    std::string out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return out;
}

/// Every value of every table in the database equals the model's, as sqlite3 reads it.
void expectSameValues(const TOrbMDBFile &file, const std::string &db)
{
    for (const auto &table : file.tables()) {
        std::string select = "SELECT ";
        for (std::size_t c = 0; c < table->columns().size(); ++c)
            select += std::string(c ? " || ',' || " : "") + "hex(quote(" +
                      sqliteQuotedName(table->columns()[c]->name()) + "))";
        select += " FROM " + sqliteQuotedName(table->name()) + " ORDER BY rowid;";
        const std::vector<std::string> rows = lines(sqlite3(db, select));
        ASSERT_EQ(rows.size(), table->rowCount()) << table->name();
        for (std::size_t r = 0; r < rows.size(); ++r) {
            std::istringstream cells(rows[r]);
            std::string cell;
            for (std::size_t c = 0; c < table->columns().size(); ++c) {
                std::getline(cells, cell, ',');
                const TOrbMDBColumn &column = *table->columns()[c];
                const CellValue value = table->cell(r, c);
                const std::string stored = unhex(cell);
                const std::string where = table->name() + "." + column.name() + " row " + std::to_string(r);
                if (value.isText() && stored.front() != '\'') {
                    // A number: compare as a number, SQLite writes REAL values its own way.
                    const double expected = std::strtod(std::string(value.text).c_str(), nullptr);
                    const double actual = std::strtod(stored.c_str(), nullptr);
                    if (std::isinf(expected))
                        EXPECT_EQ(actual, expected) << where; // libmdb rounds DBL_MAX up
                    else
                        EXPECT_NEAR(actual, expected, std::fabs(expected) * 1e-12) << where;
                } else {
                    EXPECT_EQ(stored, expectedQuote(value, column)) << where;
                }
            }
        }
    }
}

class SqliteExportFixture : public testing::Test {
protected:
    void SetUp() override
    {
        if (!fs::exists(kSqlite3))
            GTEST_SKIP() << kSqlite3 << " (Debian package sqlite3) is needed to check the exported databases";
    }
    test::TempDir m_dir;
};

TEST_F(SqliteExportFixture, FeaturesDatabaseWithKeysIndexesAndValues)
{
    auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    const std::string db = m_dir.file("features.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    StopObserver observer;
    runExport(job, db, &observer);
    EXPECT_TRUE(job.msgLog().empty()) << job.msgLog().front();
    EXPECT_EQ(job.successTableCount(), static_cast<std::int64_t>(file->tables().size()));
    EXPECT_EQ(observer.progressCalls, static_cast<int>(file->tables().size()));
    EXPECT_EQ(observer.finishedCalls, 1);

    std::string expectedTables;
    for (const auto &table : file->tables())
        expectedTables += table->name() + "\n";
    EXPECT_EQ(sqlite3(db, "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid;"), expectedTables);
    EXPECT_EQ(sqlite3(db, "PRAGMA integrity_check;"), "ok\n");

    // id|seq|table|from|to|on_update|on_delete|match, in the order the constraints were declared.
    EXPECT_EQ(sqlite3(db, "PRAGMA foreign_key_list(\"Orders\");"),
              "0|0|Customers|ShipToID|CustomerID|SET NULL|SET NULL|NONE\n"
              "1|0|Customers|CustCode|Code|SET NULL|SET NULL|NONE\n"
              "1|1|Customers|CustCountry|Country|SET NULL|SET NULL|NONE\n"
              "2|0|Customers|CustomerID|CustomerID|CASCADE|SET NULL|NONE\n");
    EXPECT_EQ(sqlite3(db, "PRAGMA foreign_key_list(\"OrderLines\");"),
              "0|0|Orders|OrderID|OrderID|CASCADE|CASCADE|NONE\n");
    // Only the relationship that Access does not enforce (ShipToID) has rows without a parent.
    EXPECT_EQ(sqlite3(db, "SELECT \"table\", parent, fkid FROM pragma_foreign_key_check;"), "Orders|Customers|0\n");

    // The index ORDERS beside the table Orders, and the second "ix" and ".rB", get suffixes. The
    // relationships' own indexes (".rB", ".rC", "CustomersOrders", …) are indexes of their tables.
    EXPECT_EQ(sqlite3(db, "SELECT name, tbl_name FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL "
                          "ORDER BY rowid;"),
              ".rB|Customers\n.rC|Customers\nux_CodeCountry|Customers\nix|Items\nORDERS_1|Items\nixPriceDesc|"
              "OrderLines\nOrdersOrderLines|OrderLines\n.rB_1|Orders\nCustomersOrders|Orders\nCustomersOrdersCode|"
              "Orders\nix_1|Orders\n");
    EXPECT_EQ(sqlite3(db, "SELECT name, \"unique\" FROM pragma_index_list('Items') ORDER BY name;"),
              "ORDERS_1|0\nix|1\n");
    EXPECT_EQ(sqlite3(db, "SELECT name, \"desc\" FROM pragma_index_xinfo('ixPriceDesc') WHERE key;"), "Price|1\n");
    EXPECT_EQ(sqlite3(db, "SELECT name FROM pragma_table_info('OrderLines') WHERE pk ORDER BY pk;"),
              "OrderID\nLineNo\n");
    EXPECT_EQ(sqlite3(db, "SELECT name, \"notnull\" FROM pragma_table_info('Props') "
                          "WHERE name IN ('TextAZLTrue', 'TextAZLFalse', 'ID');"),
              "ID|1\nTextAZLTrue|0\nTextAZLFalse|1\n");

    expectSameValues(*file, db);
}

TEST_F(SqliteExportFixture, BlobsByteForByte)
{
    auto file = test::openInProcess(test::fixturePath("ole.mdb"));
    ASSERT_TRUE(file);
    const std::string db = m_dir.file("ole.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    runExport(job, db);
    EXPECT_TRUE(job.msgLog().empty());
    const TOrbMDBTable *blobs = file->tableNamed("Blobs");
    ASSERT_TRUE(blobs);
    std::size_t blobCount = 0;
    for (std::size_t r = 0; r < blobs->rowCount(); ++r)
        for (std::size_t c = 0; c < blobs->columns().size(); ++c)
            blobCount += blobs->cell(r, c).isBlob();
    EXPECT_GT(blobCount, 0u);
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM \"Blobs\" WHERE typeof(\"Data\") = 'blob';"),
              std::to_string(blobCount) + "\n");
    expectSameValues(*file, db);
}

TEST_F(SqliteExportFixture, FailedInsertDropsTheTable)
{
    std::vector<std::vector<test::TestCell>> rows;
    std::vector<std::string> ids;
    for (int i = 1; i <= 600; ++i)
        ids.push_back(std::to_string(i == 500 ? 7 : i)); // row 500 repeats the key 7
    for (const std::string &id : ids)
        rows.push_back({id.c_str(), "x"});
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Dup", {{"ID", "Long Integer"}, {"Label", "Text"}}, rows));
    tables.back()->columnNamed("ID")->setIsPrimaryKey(true);
    tables.push_back(test::makeNumberTable("Fine", 3));
    auto file = test::makeFile("mem", std::move(tables));

    const std::string db = m_dir.file("dup.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    runExport(job, db);
    ASSERT_EQ(job.msgLog().size(), 1u);
    EXPECT_EQ(job.msgLog()[0], "<Dup> Failed: Insert record failed.\n    UNIQUE constraint failed: Dup.ID");
    EXPECT_EQ(job.successTableCount(), 1);
    EXPECT_EQ(sqlite3(db, "SELECT name FROM sqlite_master;"), "Fine\n");
    EXPECT_EQ(sqlite3(db, "SELECT sum(n) FROM \"Fine\";"), "6\n");
}

TEST_F(SqliteExportFixture, StopDuringTheThirdTableLeavesNoFile)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    for (const char *name : {"A", "B", "C", "D"})
        tables.push_back(test::makeNumberTable(name, 10));
    auto file = test::makeFile("mem", std::move(tables));
    const std::string db = m_dir.file("stopped.sqlite");
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    StopObserver observer;
    observer.job = &job;
    observer.stopAt = 2;
    runExport(job, db, &observer);
    EXPECT_TRUE(job.terminated());
    EXPECT_FALSE(fs::exists(db));
    ASSERT_EQ(job.msgLog().size(), 1u);
    EXPECT_EQ(job.msgLog()[0], "<C> Failed: Terminated.");
    EXPECT_EQ(observer.progressCalls, 3);
    EXPECT_EQ(job.report().title, "Export terminated.");
}

TEST_F(SqliteExportFixture, OptionsAndTheTargetFile)
{
    auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    const std::string db = m_dir.file("replaced.sqlite");
    std::ofstream(db) << "an older file that is replaced";
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    job.mutableOptions().exportData = false;
    job.mutableOptions().includeIndexes = false;
    job.mutableOptions().includeForeignKeys = false;
    runExport(job, db);
    EXPECT_TRUE(job.msgLog().empty());
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM sqlite_master WHERE type = 'table';"),
              std::to_string(file->tables().size()) + "\n");
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM \"AllTypes\";"), "0\n");
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL;"), "0\n");
    EXPECT_EQ(sqlite3(db, "SELECT count(*) FROM pragma_foreign_key_list('Orders');"), "0\n");

    ExportJob unwritable(*file, nullptr, ExportFileType::SQLite);
    runExport(unwritable, m_dir.file("no-such-folder/x.sqlite"));
    EXPECT_EQ(unwritable.msgLog(), std::vector<std::string>{"Unable to create file for export."});
    EXPECT_EQ(unwritable.successTableCount(), 0);

    // A folder at the target path is never removed.
    fs::create_directory(m_dir.file("folder.sqlite"));
    ExportJob onFolder(*file, nullptr, ExportFileType::SQLite);
    runExport(onFolder, m_dir.file("folder.sqlite"));
    EXPECT_EQ(onFolder.msgLog(), std::vector<std::string>{"Unable to create file for export."});
    EXPECT_TRUE(fs::is_directory(m_dir.file("folder.sqlite")));
}

} // namespace
} // namespace vellum
