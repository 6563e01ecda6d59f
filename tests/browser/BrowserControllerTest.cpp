#include "browser/BrowserController.h"

#include "browserTestSupport.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

/// Records what the controller asks of the window.
class RecordingListener : public BrowserListener {
public:
    void fileWillClose(TOrbMDBFile *file) override { closed.push_back(file->name()); }
    void selectionChanged(const BrowserItem &item, SelectionReason reason) override { shown.push_back({item, reason}); }
    std::vector<std::string> closed;
    std::vector<std::pair<BrowserItem, SelectionReason>> shown;
};

/// The controller over the real freedesktop list, with XDG_DATA_HOME in a temporary folder.
class BrowserControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_FALSE(dataHome.folder().empty());
        folder = dataHome.folder();
        controller = std::make_unique<BrowserController>(recent);
        controller->setListener(&listener);
    }

    std::vector<std::string> listedNames() const
    {
        std::vector<std::string> out;
        for (TOrbMDBFile *file : controller->recentFiles())
            out.push_back(file->name() + "." + file->fileExtension());
        return out;
    }
    std::string path(const std::string &name) const { return folder + "/" + name; }

    test::ScopedDataHome dataHome;
    std::string folder;
    RecentDocuments recent;
    RecordingListener listener;
    std::unique_ptr<BrowserController> controller;
};

TEST_F(BrowserControllerTest, ReconcilesWithTheSystemList)
{
    EXPECT_TRUE(controller->refreshRecentFiles()) << "both lists empty: the drop hint shows";
    EXPECT_TRUE(controller->recentFiles().empty());

    recent.note(path("b.mdb"));
    recent.note(path("table10.mdb"));
    recent.note(path("Table2.accdb"));
    EXPECT_FALSE(controller->refreshRecentFiles());
    EXPECT_EQ(listedNames(), (std::vector<std::string>{"b.mdb", "Table2.accdb", "table10.mdb"}));

    // The system forgets b.mdb, which is open with a table shown, and learns c.mdb.
    TOrbMDBFile *b = controller->recentFiles()[0];
    TOrbMDBTable *shown = test::addColumnTable(*b, "T", {"1"});
    controller->select(BrowserItem::ofTable(shown), SelectionReason::FileList); // a visit
    std::vector<std::string> kept = {path("table10.mdb"), path("Table2.accdb"), path("c.mdb")};
    recent.clear();
    for (const std::string &p : kept)
        recent.note(p);
    EXPECT_FALSE(controller->refreshRecentFiles());
    EXPECT_EQ(listedNames(), (std::vector<std::string>{"c.mdb", "Table2.accdb", "table10.mdb"}));
    EXPECT_EQ(listener.closed, (std::vector<std::string>{"b"}));
    ASSERT_EQ(listener.shown.size(), 2u);
    EXPECT_EQ(listener.shown[1].first, BrowserItem()) << "the views show nothing once the file is gone";
    EXPECT_EQ(listener.shown[1].second, SelectionReason::FileClosed);
    EXPECT_EQ(controller->selectedTable(), nullptr);
    EXPECT_EQ(controller->selectedFile(), nullptr);
    EXPECT_TRUE(controller->history().previous().empty());
    EXPECT_FALSE(controller->isListed(b));
}

TEST_F(BrowserControllerTest, FindByPathReplacesTheEntryOfTheSameName)
{
    TOrbMDBFile *mdb = controller->findMDBFileByPath(path("Orders.mdb"));
    controller->createNewMDBFile(path("Other.mdb"), false);
    TOrbMDBFile *accdb = controller->findMDBFileByPath(path("Orders.accdb"));
    EXPECT_NE(mdb, accdb);
    EXPECT_FALSE(controller->isListed(mdb)) << "the extension is not compared";
    EXPECT_EQ(listedNames(), (std::vector<std::string>{"Orders.accdb", "Other.mdb"})) << "new entry in front";
    EXPECT_FALSE(accdb->active());
}

TEST_F(BrowserControllerTest, RemovingAFileKeepsTheOrderOfTheOthers)
{
    for (const char *name : {"a.mdb", "b.mdb", "c.mdb", "d.mdb"})
        recent.note(path(name));
    controller->refreshRecentFiles();
    TOrbMDBFile *b = controller->recentFiles()[1];
    ASSERT_EQ(b->name(), "b");
    controller->removeFile(b);
    EXPECT_EQ(recent.paths(), (std::vector<std::string>{path("d.mdb"), path("c.mdb"), path("a.mdb")}));
    EXPECT_EQ(listedNames(), (std::vector<std::string>{"a.mdb", "c.mdb", "d.mdb"}));

    controller->removeOtherFiles(controller->recentFiles()[1]);
    EXPECT_EQ(recent.paths(), (std::vector<std::string>{path("c.mdb")}));
    EXPECT_EQ(listedNames(), (std::vector<std::string>{"c.mdb"}));

    controller->clearRecentDocuments();
    EXPECT_TRUE(recent.paths().empty());
    EXPECT_TRUE(controller->recentFiles().empty());
}

TEST_F(BrowserControllerTest, FileSearchAndStatusCounts)
{
    controller->createNewMDBFile(path("Orders.mdb"), false);
    TOrbMDBFile *sales = controller->createNewMDBFile(path("Sales.accdb"), false);
    test::addColumnTable(*sales, "Customers", {});
    TOrbMDBTable *orders = test::addColumnTable(*sales, "Orders", {"1", "2"});
    controller->createNewMDBFile(path("Stock.mdb"), false);

    EXPECT_EQ(controller->statusForNoSelection(), "3 files");
    controller->setFileSearchText("ORD");
    const std::vector<TOrbMDBFile *> shown = controller->fileEntities();
    ASSERT_EQ(shown.size(), 2u);
    EXPECT_EQ(shown[0]->name(), "Orders");
    EXPECT_EQ(shown[1], sales);
    EXPECT_EQ(controller->tableEntities(sales), (std::vector<TOrbMDBTable *>{orders}));
    EXPECT_TRUE(controller->tableEntities(shown[0]).empty()) << "a closed file has no rows";

    controller->select(BrowserItem::ofFile(sales), SelectionReason::Command);
    EXPECT_EQ(controller->statusForCurrentSelection(), "1 of 2 files, contains 2 tables")
        << "the file count follows the filter, the table count does not";
    controller->select(BrowserItem::ofTable(orders), SelectionReason::Command);
    EXPECT_EQ(controller->statusForCurrentSelection(), "1 of 1 table, contains 2 records");
    controller->setFileSearchText("");
    EXPECT_EQ(controller->statusForCurrentSelection(), "1 of 2 tables, contains 2 records");

    controller->select(BrowserItem(), SelectionReason::FileList);
    EXPECT_EQ(controller->selectedTable(), orders) << "no item leaves the selection as it was";

    controller->closeFile(sales);
    EXPECT_EQ(controller->selectedTable(), nullptr);
    EXPECT_EQ(controller->selectedFile(), sales);
    EXPECT_TRUE(controller->isListed(sales)) << "a closed file stays listed";
    EXPECT_EQ(controller->statusForCurrentSelection(), "1 of 3 files");
}

TEST_F(BrowserControllerTest, PublishesTheSelectionWithItsReason)
{
    TOrbMDBFile *sales = controller->createNewMDBFile(path("Sales.mdb"), false);
    sales->setActive(true);
    TOrbMDBTable *orders = test::addColumnTable(*sales, "Orders", {"1"});
    TOrbMDBTable *stock = test::addColumnTable(*sales, "Stock", {"2"});
    const auto last = [&] { return listener.shown.back(); };
    using Shown = std::pair<BrowserItem, SelectionReason>;

    // The user's choices in the list and the jump bar are visits; the same choice again is the
    // view following the selection: nothing is told.
    EXPECT_TRUE(controller->select(BrowserItem::ofTable(orders), SelectionReason::FileList));
    EXPECT_FALSE(controller->select(BrowserItem::ofTable(orders), SelectionReason::JumpBar));
    EXPECT_TRUE(controller->select(BrowserItem::ofTable(stock), SelectionReason::JumpBar));
    EXPECT_EQ(listener.shown.size(), 2u);
    EXPECT_EQ(controller->history().previous(), (std::vector<TOrbMDBTable *>{orders, stock}));

    // Back and Next select through the history without recording visits.
    controller->goBack();
    EXPECT_EQ(last(), Shown(BrowserItem::ofTable(orders), SelectionReason::History));
    EXPECT_EQ(controller->selectedTable(), orders);
    EXPECT_EQ(controller->history().next(), (std::vector<TOrbMDBTable *>{stock}));
    controller->goNext();
    EXPECT_EQ(last(), Shown(BrowserItem::ofTable(stock), SelectionReason::History));
    EXPECT_EQ(controller->history().previous(), (std::vector<TOrbMDBTable *>{orders, stock}));

    // The window's own selection is told even when unchanged, and is no visit.
    controller->select(BrowserItem::ofTable(orders), SelectionReason::Command);
    controller->select(BrowserItem::ofTable(orders), SelectionReason::Command);
    EXPECT_EQ(listener.shown.size(), 6u);
    EXPECT_EQ(controller->history().previous(), (std::vector<TOrbMDBTable *>{orders, stock}));

    // No row: nothing shown, the selected table kept; a failed open clears everything.
    controller->select(BrowserItem(), SelectionReason::FileList);
    EXPECT_EQ(last(), Shown(BrowserItem(), SelectionReason::FileList));
    EXPECT_EQ(controller->selectedTable(), orders);
    controller->clearSelection(SelectionReason::OpenFailed);
    EXPECT_EQ(last(), Shown(BrowserItem(), SelectionReason::OpenFailed));
    EXPECT_EQ(controller->selectedFile(), nullptr);
    EXPECT_EQ(controller->selectedTable(), nullptr);

    // Closing the file of the selected table leaves its file selected and tells it.
    controller->select(BrowserItem::ofTable(stock), SelectionReason::FileList);
    controller->closeFile(sales);
    EXPECT_EQ(last(), Shown(BrowserItem::ofFile(sales), SelectionReason::FileClosed));
    EXPECT_EQ(controller->selectedTable(), nullptr);
    EXPECT_EQ(controller->selectedFile(), sales);
    EXPECT_TRUE(controller->history().previous().empty());
}

TEST(BrowserPaths, ExtensionsAndParts)
{
    EXPECT_TRUE(hasDatabaseExtension("/x/Report.MDB"));
    EXPECT_TRUE(hasDatabaseExtension("/x/a.b.accdb"));
    EXPECT_FALSE(hasDatabaseExtension("/x/notes.txt"));
    EXPECT_FALSE(hasDatabaseExtension("/x/mdb"));
    const PathParts parts = splitDatabasePath("/home/u/My Files/Sales.2012.accdb");
    EXPECT_EQ(parts.folder, "/home/u/My Files");
    EXPECT_EQ(parts.name, "Sales.2012");
    EXPECT_EQ(parts.extension, "accdb");
}

TEST(BrowserControllerEntries, LinksAndQueriesOfOpenFilesOnly)
{
    class NoDocuments : public RecentDocumentList {
    public:
        std::vector<std::string> paths() override { return {}; }
        void note(const std::string &) override {}
        void clear() override {}
    } documents;
    BrowserController controller(documents);
    TOrbMDBFile file;
    auto link = std::make_unique<TOrbMDBLinkedTable>();
    link->setName("Orders");
    file.addLinkedTable(std::move(link));
    for (const char *name : {"Totals", "~sq_fForm", "Orders by month"}) {
        auto query = std::make_unique<TOrbMDBQuery>();
        query->setName(name);
        file.addQuery(std::move(query));
    }
    EXPECT_TRUE(controller.linkedTableEntities(&file).empty()); // closed
    EXPECT_TRUE(controller.queryEntities(&file).empty());
    file.setActive(true);
    EXPECT_EQ(controller.linkedTableEntities(&file).size(), 1u);
    EXPECT_EQ(controller.queryEntities(&file).size(), 2u);
    controller.setShowHiddenQueries(true);
    EXPECT_EQ(controller.queryEntities(&file).size(), 3u);
    controller.setFileSearchText("ORD");
    ASSERT_EQ(controller.queryEntities(&file).size(), 1u);
    EXPECT_EQ(controller.queryEntities(&file)[0]->name(), "Orders by month");
    EXPECT_EQ(controller.linkedTableEntities(&file).size(), 1u); // "Orders"

    // Selecting a link or a query selects its file and no table.
    controller.select(BrowserItem::ofLinkedTable(file.linkedTables()[0].get()), SelectionReason::FileList);
    EXPECT_EQ(controller.selectedFile(), &file);
    EXPECT_EQ(controller.selectedTable(), nullptr);
    EXPECT_EQ(filterFileName({&file}, "month", nullptr).size(), 1u);
    EXPECT_EQ(filterFileName({&file}, "fForm", nullptr).size(), 0u);
    EXPECT_EQ(filterFileName({&file}, "fForm", nullptr, true).size(), 1u);
}

} // namespace
} // namespace vellum
