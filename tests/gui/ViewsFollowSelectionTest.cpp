// The views of the main window follow one selection, offscreen: the file list's row, the jump
// bar's location, the grid, the information pane and the status agree after a click in the
// list, a choice in the jump bar, Back and Next; the row-count toggle keeps the expanded files
// and the selected row; a file that cannot be opened leaves the panes showing nothing selected.

#include "guiTestSupport.h"

#include "app/models/FileListModel.h"
#include "app/models/TableDataModel.h"
#include "app/widgets/DataView.h"
#include "app/widgets/FileTreeView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/InformationPane.h"
#include "app/widgets/InformationTopBar.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/JumpBarMenu.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QSignalSpy>

using namespace vellum;

class ViewsFollowSelectionTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<VellumAppDelegate> m_window;
    QStringList m_alerts;

    void makeWindow()
    {
        m_alerts.clear();
        m_window =
            test::freshWindow([this](const QString &title, const QString &text) { m_alerts << title + "|" + text; });
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void openAndWait(const QStringList &paths)
    {
        QSignalSpy finished(m_window.get(), &VellumAppDelegate::openFinished);
        m_window->openFiles(paths);
        QVERIFY(finished.count() > 0 || finished.wait(20000));
    }

    TOrbMDBFile *file(const std::string &name) const
    {
        for (TOrbMDBFile *f : m_window->controller().recentFiles())
            if (f->name() == name)
                return f;
        return nullptr;
    }

    TOrbMDBTable *table(const std::string &fileName, const std::string &name) const
    {
        if (TOrbMDBFile *f = file(fileName))
            for (const auto &t : f->tables())
                if (t->name() == name)
                    return t.get();
        return nullptr;
    }

    /// Clicks a table's row in the file list as the user does.
    void clickRow(const BrowserItem &item)
    {
        const QModelIndex index = m_window->fileListModel()->indexForItem(item);
        QVERIFY(index.isValid());
        m_window->fileTree()->scrollTo(index);
        QTest::mouseClick(m_window->fileTree()->viewport(), Qt::LeftButton, {},
                          m_window->fileTree()->visualRect(index).center());
    }

    BrowserItem treeRow() const
    {
        const QModelIndexList rows = m_window->fileTree()->selectionModel()->selectedRows();
        return rows.size() == 1 ? m_window->fileListModel()->itemForIndex(rows.first()) : BrowserItem();
    }

    /// Every view shows `shown`: the controller, the list's row, the jump bar, the grid, the
    /// information pane and the status.
    void verifyViewsShow(TOrbMDBTable *shown)
    {
        QVERIFY(shown);
        const BrowserItem item = BrowserItem::ofTable(shown);
        QCOMPARE(m_window->controller().selection(), item);
        QCOMPARE(m_window->controller().selectedTable(), shown);
        QCOMPARE(m_window->controller().selectedFile(), shown->file());
        QCOMPARE(treeRow(), item);
        const JumpBarItem *location = m_window->dataView()->jumpBar()->selectedMenuItem();
        QVERIFY(location);
        QCOMPARE(location->object, item);
        QCOMPARE(m_window->dataView()->jumpBar()->labels().back()->fullText(), QString::fromStdString(shown->name()));
        QCOMPARE(m_window->dataView()->dataModel()->table(), shown);
        QCOMPARE_NE(m_window->informationPane()->currentPage(), int(kInfoFile));
        QCOMPARE(
            m_window->statusBarLabel()->text(),
            QString("1 of %1 tables, contains %2 records").arg(shown->file()->tables().size()).arg(shown->rowCount()));
    }

    bool backEnabled() const
    {
        return m_window->toolbarAction("navigationBack")->isEnabled() && m_window->backMenuItem()->isEnabled();
    }
    bool nextEnabled() const
    {
        return m_window->toolbarAction("navigationNext")->isEnabled() && m_window->forwardMenuItem()->isEnabled();
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanup() { m_window.reset(); }

    void listJumpBarBackAndNextAgree()
    {
        makeWindow();
        openAndWait({test::copyFixture("features.mdb", m_dir.path())});
        m_window->ToggleJumpBar();
        TOrbMDBTable *orders = table("features", "Orders");
        TOrbMDBTable *customers = table("features", "Customers");
        TOrbMDBTable *items = table("features", "Items");

        clickRow(BrowserItem::ofTable(orders));
        verifyViewsShow(orders);
        QVERIFY(!backEnabled());
        clickRow(BrowserItem::ofTable(customers));
        verifyViewsShow(customers);
        QVERIFY(backEnabled());

        // The user picks Items from the jump bar's menu of the file's tables.
        GCJumpBar *bar = m_window->dataView()->jumpBar();
        std::unique_ptr<QMenu> menu(bar->menuForLevel(2, nullptr));
        QAction *itemsAction = nullptr;
        for (QAction *action : menu->actions())
            if (action->text() == "Items")
                itemsAction = action;
        QVERIFY(itemsAction);
        itemsAction->trigger();
        verifyViewsShow(items);
        QCOMPARE(m_window->controller().history().previous(), (std::vector<TOrbMDBTable *>{orders, customers, items}));

        m_window->toolbarAction("navigationBack")->trigger();
        verifyViewsShow(customers);
        QVERIFY(backEnabled());
        QVERIFY(nextEnabled());
        m_window->backMenuItem()->trigger();
        verifyViewsShow(orders);
        QVERIFY(!backEnabled());

        m_window->toolbarAction("navigationNext")->trigger();
        verifyViewsShow(customers);
        m_window->forwardMenuItem()->trigger();
        verifyViewsShow(items);
        QVERIFY(!nextEnabled());
        QCOMPARE(m_window->controller().history().previous(), (std::vector<TOrbMDBTable *>{orders, customers, items}));
        QVERIFY(m_window->controller().history().next().empty());

        // Choosing the file in the jump bar selects its row; the grid shows no table.
        std::unique_ptr<QMenu> files(bar->menuForLevel(1, nullptr));
        QVERIFY(!files->actions().isEmpty());
        QMenu *fileMenu = files->actions().first()->menu();
        QVERIFY(fileMenu);
        emit fileMenu->aboutToShow();
        fileMenu->actions().first()->trigger(); // the file's own item
        QCOMPARE(m_window->controller().selection(), BrowserItem::ofFile(orders->file()));
        QCOMPARE(treeRow(), BrowserItem::ofFile(orders->file()));
        QCOMPARE(bar->labels().size(), std::size_t(1));
        QCOMPARE(m_window->dataView()->dataModel()->table(), nullptr);
        QCOMPARE(m_window->informationPane()->currentPage(), int(kInfoFile));
        QCOMPARE(m_window->statusBarLabel()->text(), QString("1 of 1 file, contains 14 tables"));
        QCOMPARE(m_window->controller().history().previous().back(), items); // a file is not a visit
    }

    void rowCountToggleKeepsExpandedFilesAndSelection()
    {
        makeWindow();
        openAndWait({test::copyFixture("features.mdb", m_dir.path()), test::copyFixture("ole.mdb", m_dir.path())});
        FileListModel *model = m_window->fileListModel();
        FileTreeView *tree = m_window->fileTree();
        const QModelIndex featuresRow = model->indexForFile(file("features"));
        const QModelIndex oleRow = model->indexForFile(file("ole"));
        QVERIFY(featuresRow.isValid() && oleRow.isValid());
        tree->collapse(oleRow);
        QVERIFY(tree->isExpanded(featuresRow));
        TOrbMDBTable *orders = table("features", "Orders");
        clickRow(BrowserItem::ofTable(orders));
        verifyViewsShow(orders);
        const QString status = m_window->statusBarLabel()->text();

        QAction *toggle = m_window->paneToggle(4);
        QCOMPARE(toggle->text(), QString("Hide Row Count in File List"));
        for (const auto &[label, title] : {std::pair{QString("Orders"), QString("Show Row Count in File List")},
                                           std::pair{QString("Orders  (3)"), QString("Hide Row Count in File List")}}) {
            toggle->trigger();
            QCOMPARE(toggle->text(), title);
            QCOMPARE(model->indexForTable(orders).data().toString(), label);
            QVERIFY(tree->isExpanded(model->indexForFile(file("features"))));
            QVERIFY(!tree->isExpanded(model->indexForFile(file("ole"))));
            QCOMPARE(treeRow(), BrowserItem::ofTable(orders));
            QCOMPARE(m_window->controller().selection(), BrowserItem::ofTable(orders));
            QCOMPARE(m_window->dataView()->dataModel()->table(), orders);
            QCOMPARE(m_window->statusBarLabel()->text(), status);
        }
    }

    void failedOpenShowsNothingSelected()
    {
        makeWindow();
        openAndWait({test::copyFixture("features.mdb", m_dir.path())});
        m_window->ToggleJumpBar();
        TOrbMDBTable *orders = table("features", "Orders");
        clickRow(BrowserItem::ofTable(orders));
        verifyViewsShow(orders);

        QFile bogus(m_dir.path() + "/bogus.mdb");
        QVERIFY(bogus.open(QIODevice::WriteOnly));
        bogus.write(QByteArray(4096, 'x'));
        bogus.close();
        openAndWait({bogus.fileName()});
        QCOMPARE(m_alerts, QStringList({"Error|File (bogus.mdb) cannot be opened"}));

        QCOMPARE(m_window->controller().selection(), BrowserItem());
        QCOMPARE(m_window->controller().selectedFile(), nullptr);
        QCOMPARE(m_window->controller().selectedTable(), nullptr);
        QCOMPARE(treeRow(), BrowserItem());
        QVERIFY(m_window->fileTree()->selectionModel()->selectedRows().isEmpty());
        QCOMPARE(m_window->dataView()->dataModel()->table(), nullptr);
        QVERIFY(m_window->dataView()->jumpBar()->labels().empty());
        InformationPane *pane = m_window->informationPane();
        QCOMPARE(pane->currentPage(), int(kInfoFile));
        QVERIFY(pane->showsEmptyText(kInfoFile));
        QCOMPARE(pane->emptyLabel(kInfoFile)->text(), QString("No files selected"));
        QCOMPARE(m_window->fileListModel()->rowCount(), 1); // the failed entry is dropped again
        QCOMPARE(m_window->statusBarLabel()->text(), QString("1 file"));

        // A click on the row selects it again, and every view follows.
        clickRow(BrowserItem::ofTable(orders));
        verifyViewsShow(orders);
    }
};

VELLUM_GUI_TEST_MAIN(ViewsFollowSelectionTest)
#include "ViewsFollowSelectionTest.moc"
