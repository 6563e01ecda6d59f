#include "export/SqlScriptWriter.h"

#include "export/ExportSink.h"
#include "export/ExportTestTables.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBTable.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {
namespace {

constexpr ServerType kDialects[] = {ServerTypeMySQL, ServerTypePostgreSQL, ServerTypeOracle, ServerTypeSQLite,
                                    ServerTypeSQLServer};

/// The properties of one column that the script writer reads beyond name and type.
struct ColumnProps {
    const char *name;
    int size = 0;
    bool primaryKey = false;
    const char *allowZeroLength = nullptr;
    const char *description = nullptr;
};

TOrbMDBTable *addTable(TOrbMDBFile &file, const char *name,
                       const std::vector<std::pair<std::string, std::string>> &columns,
                       const std::vector<std::vector<test::TestCell>> &rows, const std::vector<ColumnProps> &props)
{
    TOrbMDBTable *table = file.addTable(test::makeTable(name, columns, rows));
    for (const ColumnProps &p : props) {
        TOrbMDBColumn *column = table->columnNamed(p.name);
        column->setFieldSize(p.size);
        column->setIsPrimaryKey(p.primaryKey);
        if (p.allowZeroLength)
            column->setAllowZeroLength(std::string(p.allowZeroLength));
        if (p.description)
            column->setDescription(std::string(p.description));
    }
    return table;
}

void addIndex(TOrbMDBTable &table, const char *name, std::vector<IndexKey> keys, bool unique, bool primary = false)
{
    auto index = std::make_unique<TOrbMDBIndex>();
    index->setName(name);
    index->setKeys(std::move(keys));
    index->setIsUnique(unique);
    index->setIsPrimaryKey(primary);
    index->setTable(&table);
    table.addIndex(std::move(index));
}

void addRelationship(TOrbMDBFile &file, const char *name, const char *from, std::vector<std::string> fromColumns,
                     const char *to, std::vector<std::string> toColumns, bool onUpdate, bool onDelete)
{
    auto key = std::make_unique<TOrbMDBForeignKey>();
    key->setName(name);
    key->setReferencingTable(from);
    key->setReferencingColumns(std::move(fromColumns));
    key->setReferencedTable(to);
    key->setReferencedColumns(std::move(toColumns));
    key->setOnUpdateCascade(onUpdate);
    key->setOnDeleteCascade(onDelete);
    file.addForeignKey(std::move(key));
}

/// A small file: Orders (two-column key, index ix, a commented column), Lines (index ix, a
/// relationship over two columns to Orders), and a]b without key.
std::unique_ptr<TOrbMDBFile> makeFile()
{
    auto file = std::make_unique<TOrbMDBFile>();
    file->setName("shop");
    TOrbMDBTable *orders = addTable(
        *file, "Orders",
        {{"Shop", "Text"}, {"No", "Long Integer"}, {"Note", "Text"}, {"Price", "Double"}, {"When", "DateTime"}},
        {{"A", "1", "O'Neil\\x", "1.5", "03/04/2010 13:05:00"}, {"B", "2", std::nullopt, std::nullopt, std::nullopt}},
        {{"Shop", 10, true}, {"No", 4, true}, {"Note", 50, false, "NO", "O'Neil\\x"}});
    addIndex(*orders, "PrimaryKey", {{"Shop", true}, {"No", true}}, true, true);
    addIndex(*orders, "ix", {{"Price", false}}, false);
    TOrbMDBTable *lines =
        addTable(*file, "Lines", {{"Shop", "Text"}, {"No", "Long Integer"}}, {{"A", "1"}}, {{"Shop", 10}, {"No", 4}});
    addIndex(*lines, "ix", {{"Shop", true}, {"No", true}}, true);
    addIndex(*lines, "orders", {{"No", true}}, false);
    addTable(*file, "a]b", {{"Value", "Text"}}, {{"v"}}, {{"Value", 20}});
    addRelationship(*file, "LinesOrders", "Lines", {"Shop", "No"}, "Orders", {"Shop", "No"}, true, false);
    return file;
}

/// Writes the whole file as one script, or the named table as its own script.
std::string script(const TOrbMDBFile &file, SqlScriptSettings settings, const char *onlyTable = nullptr)
{
    std::atomic<bool> stop{false};
    StringSink sink;
    SqlScriptWriter writer(file, settings, stop);
    EXPECT_TRUE(writer.writePrologue(sink));
    std::vector<const TOrbMDBTable *> written;
    for (const auto &table : file.tables()) {
        if (onlyTable && table->name() != onlyTable)
            continue;
        EXPECT_TRUE(writer.writeTable(*table, sink));
        written.push_back(table.get());
    }
    if (settings.singleFile) {
        EXPECT_TRUE(writer.writeSingleScriptEnd(written, sink));
    }
    EXPECT_TRUE(writer.writeEpilogue(sink));
    return sink.data();
}

SqlScriptSettings settingsFor(ServerType dialect, bool singleFile = false)
{
    SqlScriptSettings settings;
    settings.dialect = dialect;
    settings.singleFile = singleFile;
    return settings;
}

TEST(SqlScriptWriter, OneTableScriptPerDialect)
{
    struct Case {
        ServerType dialect;
        const char *expected;
    };
    const Case cases[] = {
        {ServerTypeMySQL,
         "SET NAMES 'UTF8';\nSET FOREIGN_KEY_CHECKS = 0;\n\n"
         "DROP TABLE IF EXISTS `Orders` CASCADE;\n"
         "CREATE TABLE `Orders` (\n\t`Shop` varchar(10) NOT NULL,\n\t`No` int NOT NULL,\n"
         "\t`Note` varchar(50) NOT NULL COMMENT 'O\\'Neil\\\\x',\n\t`Price` float,\n\t`When` datetime,\n"
         "\tPRIMARY KEY (`Shop`, `No`),\n\tINDEX `ix` (`Price` DESC)\n);\n\n"
         "INSERT INTO `Orders` (`Shop`, `No`, `Note`, `Price`, `When`) VALUES ('A', 1, 'O''Neil\\\\x', 1.5, "
         "'2010-03-04 13:05:00');\n"
         "INSERT INTO `Orders` (`Shop`, `No`, `Note`, `Price`, `When`) VALUES ('B', 2, '', null, null);\n\n\n"
         "SET FOREIGN_KEY_CHECKS = 1;\n"},
        {ServerTypePostgreSQL,
         "DROP TABLE IF EXISTS \"Orders\" CASCADE;\n"
         "CREATE TABLE \"Orders\" (\n\t\"Shop\" VARCHAR(10) NOT NULL,\n\t\"No\" INTEGER NOT NULL,\n"
         "\t\"Note\" VARCHAR(50) NOT NULL,\n\t\"Price\" DOUBLE PRECISION,\n\t\"When\" TIMESTAMP WITHOUT TIME ZONE,\n"
         "\tCONSTRAINT \"Orders_pkey\" PRIMARY KEY (\"Shop\", \"No\")\n);\n"
         "\nCREATE INDEX \"ix\" ON \"Orders\" (\"Price\" DESC);\n"
         "COMMENT ON COLUMN \"Orders\".\"Note\" IS 'O''Neil\\\\x';\n\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('A', 1, 'O''Neil\\\\x', "
         "1.5, '2010-03-04 13:05:00');\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('B', 2, '', null, "
         "null);\n\n\n"},
        {ServerTypeOracle,
         "DROP TABLE \"Orders\" CASCADE CONSTRAINTS;\n"
         "CREATE TABLE \"Orders\" (\n\t\"Shop\" VARCHAR2(10) NOT NULL,\n\t\"No\" NUMBER(11) NOT NULL,\n"
         "\t\"Note\" VARCHAR2(50) NOT NULL,\n\t\"Price\" FLOAT,\n\t\"When\" TIMESTAMP,\n"
         "\tPRIMARY KEY (\"Shop\", \"No\")\n);\n"
         "\nCREATE INDEX \"ix\" ON \"Orders\" (\"Price\" DESC);\n"
         "COMMENT ON COLUMN \"Orders\".\"Note\" IS 'O''Neil\\\\x';\n\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('A', '1', 'O''Neil\\\\x', "
         "'1.5', "
         "TO_DATE('03/04/2010 13:05:00', 'MM/DD/YYYY HH24:MI:SS'));\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('B', '2', '', null, "
         "null);\n\n\n"},
        {ServerTypeSQLite,
         "PRAGMA foreign_keys = false;\n\n"
         "DROP TABLE IF EXISTS \"Orders\";\n"
         "CREATE TABLE \"Orders\" (\n\t\"Shop\" TEXT NOT NULL,\n\t\"No\" INTEGER NOT NULL,\n"
         "\t\"Note\" TEXT NOT NULL,\n\t\"Price\" REAL,\n\t\"When\" TEXT,\n"
         "\tPRIMARY KEY (\"Shop\", \"No\")\n);\n"
         "\nCREATE INDEX \"ix\" ON \"Orders\" (\"Price\" DESC);\n\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('A', 1, 'O''Neil\\\\x', "
         "1.5, '03/04/2010 13:05:00');\n"
         "INSERT INTO \"Orders\" (\"Shop\", \"No\", \"Note\", \"Price\", \"When\") VALUES ('B', 2, '', null, null);\n\n"
         "PRAGMA foreign_keys = true;\n"},
        {ServerTypeSQLServer,
         "BEGIN TRANSACTION\nGO\n"
         "IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('[Orders]') AND type IN ('U'))\n"
         "\tDROP TABLE [Orders]\nGO\n"
         "CREATE TABLE [Orders] (\n\t[Shop] varchar(10) NOT NULL,\n\t[No] int NOT NULL,\n"
         "\t[Note] varchar(50) NOT NULL,\n\t[Price] float,\n\t[When] smalldatetime,\n"
         "\tCONSTRAINT [Orders_pkey] PRIMARY KEY CLUSTERED ([Shop], [No]))\nGO\n"
         "\nCREATE INDEX [ix] ON [Orders] ([Price] DESC);\n"
         "EXEC sp_addextendedproperty 'MS_Description', 'O''Neil\\x', 'SCHEMA', '<SCHEMA>', 'TABLE', 'Orders', "
         "'COLUMN', 'Note'\nGO\n\n"
         "INSERT INTO [Orders] ([Shop], [No], [Note], [Price], [When]) VALUES ('A', 1, 'O''Neil\\\\x', 1.5, "
         "'2010-03-04 13:05:00');\nGO\n"
         "INSERT INTO [Orders] ([Shop], [No], [Note], [Price], [When]) VALUES ('B', 2, '', null, null);\nGO\n\n\n"
         "COMMIT\n"},
    };
    const auto file = makeFile();
    for (const Case &c : cases)
        EXPECT_EQ(script(*file, settingsFor(c.dialect), "Orders"), c.expected)
            << "dialect " << serverTypeValue(c.dialect);
}

TEST(SqlScriptWriter, QuotingSchemaAndNamesWithClosingCharacter)
{
    const auto file = makeFile();
    SqlScriptSettings sqlServer = settingsFor(ServerTypeSQLServer);
    sqlServer.schemaName = "it's";
    const std::string text = script(*file, sqlServer, "a]b");
    EXPECT_NE(text.find("OBJECT_ID('[it's].[a]]b]')"), std::string::npos) << text;
    EXPECT_NE(text.find("CREATE TABLE [it's].[a]]b] (\n\t[Value] varchar(20))\nGO\n"), std::string::npos) << text;
    EXPECT_NE(text.find("INSERT INTO [it's].[a]]b] ([Value]) VALUES ('v');\nGO\n"), std::string::npos) << text;
    // No key column: the last column is followed directly by the closing line.
    EXPECT_EQ(text.find("PRIMARY KEY"), std::string::npos);

    SqlScriptSettings postgres = settingsFor(ServerTypePostgreSQL);
    postgres.schemaName = "s\"x";
    const std::string pg = script(*file, postgres, "Orders");
    EXPECT_NE(pg.find("DROP TABLE IF EXISTS \"s\"\"x\".\"Orders\" CASCADE;"), std::string::npos) << pg;
    EXPECT_NE(pg.find("COMMENT ON COLUMN \"s\"\"x\".\"Orders\".\"Note\""), std::string::npos) << pg;
    EXPECT_NE(pg.find("ON \"s\"\"x\".\"Orders\" (\"Price\" DESC)"), std::string::npos) << pg;

    // MySQL and SQLite never take a schema.
    SqlScriptSettings mysql = settingsFor(ServerTypeMySQL);
    mysql.schemaName = "ignored";
    EXPECT_EQ(script(*file, mysql, "a]b").find("ignored"), std::string::npos);
    EXPECT_NE(script(*file, settingsFor(ServerTypeMySQL), "a]b").find("`a]b`"), std::string::npos);
}

TEST(SqlScriptWriter, IndexNamesAreMadeUniqueAcrossTheJob)
{
    const auto file = makeFile();
    // PostgreSQL: the second ix becomes ix_1; the index named like a table keeps its name.
    const std::string pg = script(*file, settingsFor(ServerTypePostgreSQL, true));
    EXPECT_NE(pg.find("CREATE INDEX \"ix\" ON \"Orders\""), std::string::npos) << pg;
    EXPECT_NE(pg.find("CREATE UNIQUE INDEX \"ix_1\" ON \"Lines\" (\"Shop\" ASC, \"No\" ASC);"), std::string::npos)
        << pg;
    EXPECT_NE(pg.find("CREATE INDEX \"orders\" ON \"Lines\""), std::string::npos) << pg;

    // SQLite, single script: all indexes after the last table, table names registered case-folded.
    const std::string sqlite = script(*file, settingsFor(ServerTypeSQLite, true));
    const std::size_t lastInsert = sqlite.rfind("INSERT INTO");
    const std::size_t firstIndex = sqlite.find("CREATE INDEX");
    EXPECT_LT(lastInsert, firstIndex);
    EXPECT_NE(sqlite.find("CREATE INDEX \"orders_1\" ON \"Lines\" (\"No\" ASC);"), std::string::npos) << sqlite;
    EXPECT_NE(sqlite.find("CREATE UNIQUE INDEX \"ix_1\" ON \"Lines\""), std::string::npos) << sqlite;
    EXPECT_TRUE(sqlite.ends_with(");\n\nPRAGMA foreign_keys = true;\n")) << sqlite;

    // MySQL writes its indexes inline, by their own names.
    const std::string mysql = script(*file, settingsFor(ServerTypeMySQL, true));
    EXPECT_NE(mysql.find(",\n\tINDEX `ix` (`Shop` ASC, `No` ASC),\n\tINDEX `orders` (`No` ASC)\n);"), std::string::npos)
        << mysql;
    EXPECT_EQ(mysql.find("ix_1"), std::string::npos);
}

TEST(SqlScriptWriter, RelationshipsPerDialectAndPlacement)
{
    struct Case {
        ServerType dialect;
        const char *statement;
    };
    const Case cases[] = {
        {ServerTypeMySQL, "ALTER TABLE `Lines` ADD CONSTRAINT `LinesOrders` FOREIGN KEY (`Shop`, `No`) REFERENCES "
                          "`Orders` (`Shop`, `No`) "
                          "ON UPDATE CASCADE ON DELETE SET NULL;\n\n"},
        {ServerTypePostgreSQL,
         "ALTER TABLE \"Lines\" ADD CONSTRAINT \"LinesOrders\" FOREIGN KEY (\"Shop\", \"No\") REFERENCES \"Orders\" "
         "(\"Shop\", \"No\") ON UPDATE CASCADE ON DELETE SET NULL;\n\n"},
        {ServerTypeOracle,
         "ALTER TABLE \"Lines\" ADD CONSTRAINT \"LinesOrders\" FOREIGN KEY (\"Shop\", \"No\") REFERENCES \"Orders\" "
         "(\"Shop\", \"No\") ON DELETE SET NULL ENABLE;\n\n"},
        {ServerTypeSQLServer, "ALTER TABLE [Lines] ADD CONSTRAINT [LinesOrders] FOREIGN KEY ([Shop], [No]) REFERENCES "
                              "[Orders] ([Shop], [No]) "
                              "ON UPDATE CASCADE ON DELETE SET NULL\nGO\n\n"},
    };
    const auto file = makeFile();
    for (const Case &c : cases) {
        // One script per table: after the referencing table's rows.
        const std::string perTable = script(*file, settingsFor(c.dialect), "Lines");
        const std::size_t at = perTable.find(c.statement);
        ASSERT_NE(at, std::string::npos) << perTable;
        EXPECT_LT(perTable.rfind("INSERT INTO"), at);
        // Nothing for a table that references nothing, but the closing blank line stays.
        EXPECT_EQ(script(*file, settingsFor(c.dialect), "Orders").find("ALTER TABLE"), std::string::npos);
        // Single script: after all tables, once.
        const std::string single = script(*file, settingsFor(c.dialect, true));
        const std::size_t singleAt = single.find(c.statement);
        ASSERT_NE(singleAt, std::string::npos) << single;
        EXPECT_LT(single.rfind("INSERT INTO"), singleAt);
        EXPECT_EQ(single.find("ALTER TABLE", singleAt + 1), std::string::npos);
    }
    // SQLite: inline in CREATE TABLE, never as ALTER TABLE.
    const std::string sqlite = script(*file, settingsFor(ServerTypeSQLite), "Lines");
    EXPECT_NE(
        sqlite.find(
            "\t\"No\" INTEGER,\n\tCONSTRAINT \"LinesOrders\" FOREIGN KEY (\"Shop\", \"No\") REFERENCES \"Orders\" "
            "(\"Shop\", \"No\") ON UPDATE CASCADE ON DELETE SET NULL\n);"),
        std::string::npos)
        << sqlite;
    EXPECT_EQ(sqlite.find("ALTER TABLE"), std::string::npos);
}

TEST(SqlScriptWriter, RelationshipToALinkedTableIsKept)
{
    // A local table may reference a table the database only links to: the constraint is written
    // like any other, naming the linked table.
    auto file = makeFile();
    auto link = std::make_unique<TOrbMDBLinkedTable>();
    link->setName("Stock");
    link->setDatabase("C:\\data\\stock.mdb");
    link->setTargetTable("Stock");
    file->addLinkedTable(std::move(link));
    addRelationship(*file, "LinesStock", "Lines", {"No"}, "Stock", {"No"}, false, true);
    for (const ServerType dialect :
         {ServerTypeMySQL, ServerTypePostgreSQL, ServerTypeOracle, ServerTypeSQLServer, ServerTypeSQLite}) {
        for (const bool single : {false, true}) {
            const std::string out = script(*file, settingsFor(dialect, single), single ? nullptr : "Lines");
            const std::size_t at = out.find("LinesStock");
            ASSERT_NE(at, std::string::npos) << static_cast<int>(dialect) << out;
            EXPECT_NE(out.find("Stock", at + 10), std::string::npos);
            EXPECT_NE(out.find("LinesOrders"), std::string::npos);
        }
    }
}

TEST(SqlScriptWriter, OptionsLeaveOutTheirParts)
{
    const auto file = makeFile();
    for (const ServerType dialect : kDialects) {
        SqlScriptSettings noData = settingsFor(dialect, true);
        noData.exportData = false;
        const std::string structureOnly = script(*file, noData);
        EXPECT_EQ(structureOnly.find("INSERT"), std::string::npos) << serverTypeValue(dialect);
        EXPECT_NE(structureOnly.find("CREATE TABLE"), std::string::npos) << serverTypeValue(dialect);
        // Prologue and epilogue stay.
        const std::string full = script(*file, settingsFor(dialect, true));
        EXPECT_EQ(structureOnly.substr(0, 10), full.substr(0, 10)) << serverTypeValue(dialect);
        EXPECT_EQ(structureOnly.substr(structureOnly.size() - 8), full.substr(full.size() - 8))
            << serverTypeValue(dialect);

        SqlScriptSettings noStructure = settingsFor(dialect, true);
        noStructure.exportStructure = false;
        const std::string dataOnly = script(*file, noStructure);
        for (const char *absent : {"CREATE", "DROP", "ALTER", "COMMENT", "sp_addextendedproperty"})
            EXPECT_EQ(dataOnly.find(absent), std::string::npos) << serverTypeValue(dialect) << " " << absent;
        EXPECT_NE(dataOnly.find("INSERT INTO"), std::string::npos);

        SqlScriptSettings bare = settingsFor(dialect, true);
        bare.includeDropTable = false;
        bare.includeForeignKeys = false;
        bare.includeIndexes = false;
        const std::string plain = script(*file, bare);
        for (const char *absent : {"DROP", "ALTER", "INDEX", "CONSTRAINT \"LinesOrders\""})
            EXPECT_EQ(plain.find(absent), std::string::npos) << serverTypeValue(dialect) << " " << absent;
    }
}

TEST(SqlScriptWriter, StopsBetweenRowsAndReportsSinkFailure)
{
    const auto file = makeFile();
    std::atomic<bool> stop{true};
    StringSink sink;
    SqlScriptWriter writer(*file, settingsFor(ServerTypePostgreSQL), stop);
    ASSERT_TRUE(writer.writePrologue(sink));
    ASSERT_TRUE(writer.writeTable(*file->tables()[0], sink));
    EXPECT_EQ(sink.data().find("INSERT"), std::string::npos);

    struct FailingSink : ExportSink {
        bool write(std::string_view) override { return false; }
    } failing;
    std::atomic<bool> go{false};
    SqlScriptWriter failingWriter(*file, settingsFor(ServerTypePostgreSQL), go);
    EXPECT_TRUE(failingWriter.writePrologue(failing)); // PostgreSQL has no prologue: nothing written
    EXPECT_FALSE(failingWriter.writeTable(*file->tables()[0], failing));
    EXPECT_FALSE(failingWriter.writeEpilogue(failing));
    // A new script on a working sink starts clean.
    StringSink fresh;
    EXPECT_TRUE(failingWriter.writePrologue(fresh));
    EXPECT_TRUE(failingWriter.writeTable(*file->tables()[2], fresh));
    EXPECT_EQ(fresh.data().substr(0, 22), "DROP TABLE IF EXISTS \"");
}

} // namespace
} // namespace vellum
