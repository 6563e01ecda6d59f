#include "support/Fixtures.h"

#include "mdb/InProcessReader.h"
#include "model/FileReader.h"
#include "model/TOrbMDBFile.h"
#include "model/fileCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace vellum {
namespace {

using test::fixturePath;

class FeaturesFile : public ::testing::TestWithParam<const char *> {};

TEST_P(FeaturesFile, KeepsUserTablesInNaturalNameOrder)
{
    auto file = test::openInProcess(fixturePath(GetParam()));
    ASSERT_TRUE(file);
    const auto sidecar = test::loadSidecar(fixturePath(GetParam()));
    std::vector<std::string> names;
    for (const auto &table : file->tables())
        names.push_back(table->name());
    // Catalog order is table10, Table2, table1, …; the list is in natural order, numbers as
    // numbers and case only as a tie-break; MSys tables never show.
    const std::vector<std::string> expected = {"a]b",        "AllTypes", "Customers", "Empty",        "Items",
                                               "OrderLines", "Orders",   "Props",     "Quote\"Table", "Space Table",
                                               "table1",     "Table2",   "table10",   "Ünïcode 表"};
    EXPECT_EQ(names, expected);
    for (const auto &table : file->tables()) {
        const auto *expectedTable = test::sidecarTable(sidecar, table->name());
        ASSERT_NE(expectedTable, nullptr) << table->name();
        EXPECT_EQ(table->rowCount(), (*expectedTable)["row_count"].get<size_t>()) << table->name();
        ASSERT_EQ(table->columns().size(), (*expectedTable)["columns"].size()) << table->name();
        for (size_t c = 0; c < table->columns().size(); ++c) {
            EXPECT_EQ(table->columns()[c]->name(), (*expectedTable)["columns"][c]["name"]) << table->name();
        }
    }
}

TEST_P(FeaturesFile, MergesRelationshipRowsWithTheirCascadeBits)
{
    auto file = test::openInProcess(fixturePath(GetParam()));
    ASSERT_TRUE(file);
    std::vector<std::string> names;
    for (const auto &key : file->allForeignKeys())
        names.push_back(key->name());
    EXPECT_EQ(names, (std::vector<std::string>{"CustomersOrders", "CustomersOrdersCode", "CustomersOrdersShipTo",
                                               "OrdersOrderLines"}));

    const TOrbMDBForeignKey *twoColumns = file->findForeignKeyByName("CustomersOrdersCode");
    ASSERT_NE(twoColumns, nullptr);
    EXPECT_EQ(twoColumns->referencingTable(), "Orders");
    EXPECT_EQ(twoColumns->referencedTable(), "Customers");
    EXPECT_EQ(twoColumns->referencingColumns(), (std::vector<std::string>{"CustCode", "CustCountry"}));
    EXPECT_EQ(twoColumns->referencedColumns(), (std::vector<std::string>{"Code", "Country"}));
    EXPECT_FALSE(twoColumns->onUpdateCascade());
    EXPECT_FALSE(twoColumns->onDeleteCascade());

    const TOrbMDBForeignKey *updateOnly = file->findForeignKeyByName("CustomersOrders");
    ASSERT_NE(updateOnly, nullptr);
    EXPECT_TRUE(updateOnly->onUpdateCascade());
    EXPECT_FALSE(updateOnly->onDeleteCascade());
    const TOrbMDBForeignKey *both = file->findForeignKeyByName("OrdersOrderLines");
    ASSERT_NE(both, nullptr);
    EXPECT_TRUE(both->onUpdateCascade());
    EXPECT_TRUE(both->onDeleteCascade());
    EXPECT_EQ(file->findForeignKeyByName("customersorders"), nullptr);

    const auto ordersKeys = file->tableNamed("Orders")->foreignKeys();
    ASSERT_TRUE(ordersKeys.has_value());
    EXPECT_EQ(ordersKeys->size(), 3u);
    const auto customerKeys = file->tableNamed("Customers")->foreignKeys();
    ASSERT_TRUE(customerKeys.has_value());
    EXPECT_TRUE(customerKeys->empty());

    const auto values = updateOnly->getObjectValues();
    EXPECT_EQ(std::get<std::string>(values.at("Columns")), "CustomerID");
    EXPECT_EQ(std::get<std::string>(values.at("Referenced table")), "Customers");
    EXPECT_EQ(std::get<std::string>(values.at("On update cascade")), "YES");
    EXPECT_EQ(std::get<std::string>(values.at("On delete cascade")), "NO");
}

TEST_P(FeaturesFile, EmptyAndNullTextBothLoadAsTheNullMarker)
{
    auto file = test::openInProcess(fixturePath(GetParam()));
    ASSERT_TRUE(file);
    const TOrbMDBTable *allTypes = file->tableNamed("AllTypes");
    ASSERT_NE(allTypes, nullptr);
    const auto sidecar = test::loadSidecar(fixturePath(GetParam()));
    const auto &rows = (*test::sidecarTable(sidecar, "AllTypes"))["rows"];
    int emptyTexts = 0, nullTexts = 0;
    for (size_t r = 0; r < rows.size(); ++r) {
        const auto &expected = rows[r]["ColText255"];
        const auto cell = allTypes->row(r).value("ColText255");
        ASSERT_TRUE(cell.has_value());
        if (expected.is_null()) {
            ++nullTexts;
            EXPECT_TRUE(cell->isNull()) << "row " << r;
        } else if (expected == "") {
            ++emptyTexts;
            EXPECT_TRUE(cell->isNull()) << "row " << r;
        } else {
            ASSERT_TRUE(cell->isText()) << "row " << r;
            EXPECT_EQ(cell->text, expected.get<std::string>()) << "row " << r;
        }
    }
    EXPECT_GT(emptyTexts, 0);
    EXPECT_GT(nullTexts, 0);
    EXPECT_FALSE(allTypes->row(0).value("NoSuchColumn").has_value());
    EXPECT_TRUE(allTypes->isOLEColumn("ColOle"));
    EXPECT_FALSE(allTypes->isOLEColumn("ColMemo"));
    EXPECT_FALSE(allTypes->isOLEColumn("NoSuchColumn"));
}

TEST_P(FeaturesFile, TextOutsideTheBasicPlaneSurvives)
{
    auto file = test::openInProcess(fixturePath(GetParam()));
    ASSERT_TRUE(file);
    const TOrbMDBTable *allTypes = file->tableNamed("AllTypes");
    const auto sidecar = test::loadSidecar(fixturePath(GetParam()));
    const auto &rows = (*test::sidecarTable(sidecar, "AllTypes"))["rows"];
    bool sawEmoji = false;
    for (size_t r = 0; r < rows.size(); ++r) {
        const auto &memo = rows[r]["ColMemo"];
        if (!memo.is_string())
            continue;
        const std::string expected = memo.get<std::string>();
        if (expected.find("\xF0\x9F") == std::string::npos)
            continue;
        sawEmoji = true;
        const auto cell = allTypes->row(r).value("ColMemo");
        ASSERT_TRUE(cell && cell->isText());
        EXPECT_EQ(cell->text, expected);
    }
    EXPECT_TRUE(sawEmoji);
}

INSTANTIATE_TEST_SUITE_P(Formats, FeaturesFile, ::testing::Values("features.mdb", "features.accdb"));

TEST(TOrbMDBFile, OpenTwiceAndCloseAndReopen)
{
    InProcessReader reader;
    auto file = test::openInProcess(fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    const TOrbMDBTable *first = file->tables().front().get();
    EXPECT_TRUE(file->active());
    // A second open of an active file does not read it again: the same objects stay.
    EXPECT_TRUE(file->open(reader, nullptr));
    EXPECT_EQ(file->tables().front().get(), first);
    EXPECT_EQ(file->tables().size(), 14u);

    file->close();
    EXPECT_FALSE(file->active());
    EXPECT_TRUE(file->tables().empty());
    EXPECT_TRUE(file->allForeignKeys().empty());
    EXPECT_FALSE(file->foreignKeysForTable("Orders").has_value());
    EXPECT_TRUE(file->open(reader, nullptr));
    EXPECT_EQ(file->tables().size(), 14u);
}

TEST(TOrbMDBFile, FilesThatCannotBeOpenedStayInactive)
{
    InProcessReader reader;
    const std::string missing = fixturePath("no-such-file.mdb");
    auto file = TOrbMDBFile::fromPath(missing);
    EXPECT_FALSE(file->open(reader, nullptr));
    EXPECT_FALSE(file->active());

    // Not an Access file at all.
    char tmpl[] = "/tmp/vellum-notmdb-XXXXXX.mdb";
    const int fd = mkstemps(tmpl, 4);
    ASSERT_GE(fd, 0);
    const char garbage[] = "this is not an access database";
    ASSERT_EQ(write(fd, garbage, sizeof garbage), static_cast<ssize_t>(sizeof garbage));
    close(fd);
    auto notMdb = TOrbMDBFile::fromPath(tmpl);
    EXPECT_FALSE(notMdb->open(reader, nullptr));
    EXPECT_FALSE(notMdb->active());
    unlink(tmpl);
}

/// Adds two tables and a relationship out of name order, then answers as told.
class ScriptedReader : public FileReader {
public:
    explicit ScriptedReader(bool succeeds) : m_succeeds(succeeds) {}
    bool read(TOrbMDBFile &file, LoadObserver *) override
    {
        ++reads;
        for (const char *name : {"Zebra", "Apple"}) {
            auto table = std::make_unique<TOrbMDBTable>();
            table->setName(name);
            file.addTable(std::move(table));
        }
        auto key = std::make_unique<TOrbMDBForeignKey>();
        key->setName("Link");
        file.addForeignKey(std::move(key));
        return m_succeeds;
    }
    int reads = 0;

private:
    bool m_succeeds;
};

TEST(TOrbMDBFile, OpenKeepsWhatTheReaderReadOnlyWhenItSucceeds)
{
    for (const bool succeeds : {true, false}) {
        SCOPED_TRACE(succeeds ? "reader succeeds" : "reader fails");
        ScriptedReader reader(succeeds);
        TOrbMDBFile file;
        EXPECT_EQ(file.open(reader, nullptr), succeeds);
        EXPECT_EQ(file.active(), succeeds);
        if (succeeds) {
            ASSERT_EQ(file.tables().size(), 2u);
            EXPECT_EQ(file.tables()[0]->name(), "Apple"); // sorted once read
            EXPECT_EQ(file.allForeignKeys().size(), 1u);
            EXPECT_TRUE(file.open(reader, nullptr)); // an active file is not read again
            EXPECT_EQ(reader.reads, 1);
        } else {
            EXPECT_TRUE(file.tables().empty()); // a failed read leaves nothing behind
            EXPECT_TRUE(file.allForeignKeys().empty());
        }
    }
}

TEST(TOrbMDBFile, PathPartsAndInformationRows)
{
    auto file = TOrbMDBFile::fromPath(fixturePath("features.mdb"));
    EXPECT_EQ(file->name(), "features");
    EXPECT_EQ(file->fileExtension(), "mdb");
    EXPECT_EQ(file->fullPath(), fixturePath("features.mdb"));
    EXPECT_EQ(file->size(), 417792u);
    EXPECT_EQ(file->getObjectLabels(),
              (std::vector<std::string>{"Name", "Where", "Size", "Created", "Modified", "Last opened"}));
    const auto values = file->getObjectValues();
    EXPECT_EQ(std::get<std::string>(values.at("Name")), "features.mdb");
    EXPECT_EQ(std::get<std::string>(values.at("Where")), std::string(VELLUM_TEST_DATA));
    EXPECT_EQ(std::get<std::string>(values.at("Size")), "408 KB");
    // A Jet database password adds one row after the others.
    file->setDatabasePasswordSet(true);
    EXPECT_EQ(file->getObjectLabels(), (std::vector<std::string>{"Name", "Where", "Size", "Created", "Modified",
                                                                 "Last opened", "Password protected"}));
    EXPECT_EQ(std::get<std::string>(file->getObjectValues().at("Password protected")), "YES");

    TOrbMDBFile older, newer;
    older.setLastOpenDate(1000);
    newer.setLastOpenDate(2000);
    EXPECT_LT(newer.compareByLastOpenDate(older), 0); // most recent first
    EXPECT_GT(older.compareByLastOpenDate(newer), 0);

    TOrbMDBFile a, b;
    a.setName("Data");
    a.setPath("/b");
    b.setName("Data");
    b.setPath("/a");
    EXPECT_GT(a.compareByName(b), 0); // equal names fall back to the folder
}

TEST(TOrbMDBFile, FilesWithoutAnExtensionOpenFromTheirRealName)
{
    char tmpl[] = "/tmp/vellum-names-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string folder = tmpl;
    std::ifstream in(fixturePath("features.mdb"), std::ios::binary);
    const std::string image((std::istreambuf_iterator<char>(in)), {});
    struct Case {
        std::string name;
        std::string display; // the "%@/%@.%@" rule, kept where a path is shown
    };
    for (const Case &c : {Case{"noextension", folder + "/noextension."}, Case{".mdb", folder + "/.mdb."},
                          Case{"two.dots.mdb", folder + "/two.dots.mdb"}}) {
        SCOPED_TRACE(c.name);
        const std::string path = folder + "/" + c.name;
        std::ofstream(path, std::ios::binary) << image;
        auto file = TOrbMDBFile::fromPath(path);
        EXPECT_EQ(file->openPath(), path);
        EXPECT_EQ(file->fullPath(), c.display);
        InProcessReader reader;
        EXPECT_TRUE(file->open(reader, nullptr));
        EXPECT_FALSE(file->tables().empty());
        EXPECT_EQ(file->openFailure(), OpenFailure::None);
    }
    std::filesystem::remove_all(folder);
}

TEST(TOrbMDBFile, TheCheckBeforeReadingNamesWhyAFileCannotBeRead)
{
    char tmpl[] = "/tmp/vellum-check-XXXXXX";
    ASSERT_NE(mkdtemp(tmpl), nullptr);
    const std::string folder = tmpl;
    std::ifstream in(fixturePath("features.accdb"), std::ios::binary);
    std::string header(4096, '\0');
    in.read(header.data(), static_cast<std::streamsize>(header.size()));
    const auto write = [&](const std::string &name, const std::string &bytes) {
        std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
        return folder + "/" + name;
    };
    const std::string fifo = folder + "/pipe.mdb";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    std::filesystem::create_directory(folder + "/folder.mdb");
    std::filesystem::create_symlink("/dev/zero", folder + "/device.mdb");
    std::filesystem::create_symlink(folder + "/gone", folder + "/dangling.mdb");
    std::string jet3 = header;
    jet3.replace(4, 15, "Standard Jet DB");
    struct Case {
        std::string path;
        OpenFailure expected;
    };
    const std::vector<Case> cases = {
        {fixturePath("features.mdb"), OpenFailure::None},
        {write("ace.accdb", header), OpenFailure::None},
        {write("jet.mdb", jet3), OpenFailure::None},
        {write("empty.mdb", ""), OpenFailure::NotAccessFile},
        {write("short.mdb", header.substr(0, 12)), OpenFailure::NotAccessFile},
        {write("zeros.mdb", std::string(1 << 20, '\0')), OpenFailure::NotAccessFile},
        {write("text.mdb", "Standard Jet DB, but not at its place\n"), OpenFailure::NotAccessFile},
        {fifo, OpenFailure::NotRegularFile},
        {folder + "/folder.mdb", OpenFailure::NotRegularFile},
        {folder + "/device.mdb", OpenFailure::NotRegularFile},
        {folder + "/dangling.mdb", OpenFailure::NotFound},
        {folder + "/missing.mdb", OpenFailure::NotFound},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.path);
        EXPECT_EQ(checkDatabaseFile(c.path), c.expected);
        if (c.expected == OpenFailure::None)
            continue;
        // Every reader refuses the file with the same reason, before reading it.
        InProcessReader reader;
        auto file = TOrbMDBFile::fromPath(c.path);
        EXPECT_FALSE(file->open(reader, nullptr));
        EXPECT_EQ(file->openFailure(), c.expected);
    }
    std::filesystem::remove_all(folder);
}

TEST(TOrbMDBFile, LossesAreListedAfterTheInformationRowsAndClearedByTheNextOpen)
{
    class LossyReader : public FileReader {
    public:
        bool read(TOrbMDBFile &file, LoadObserver *) override
        {
            file.addLoss(LossReport{LossReport::Kind::TableDefinition, "Orders", 0, 0});
            file.addLoss(LossReport{LossReport::Kind::Rows, "Items", 120, 500});
            return true;
        }
    } reader;
    TOrbMDBFile file;
    ASSERT_TRUE(file.open(reader, nullptr));
    const std::vector<std::string> labels = file.getObjectLabels();
    ASSERT_EQ(labels.size(), 8u);
    EXPECT_EQ(labels[6], "Not read");
    EXPECT_EQ(lossNotice(file.losses()),
              "This file could not be read completely: 1 table is missing, 1 table is missing rows");
    EXPECT_EQ(lossText(file.losses()[1]), "table \"Items\" could not be read: only 120 of 500 rows could be read");
    file.close();
    EXPECT_TRUE(file.losses().empty());
    EXPECT_EQ(file.getObjectLabels().size(), 6u);
}

} // namespace
} // namespace vellum
