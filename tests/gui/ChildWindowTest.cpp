// Child table windows: two windows of one table, titles, all rows despite the main window's
// search, the sort state shared through the model, closing a file closing only its children,
// and a closed file chosen in a child's jump bar opening in the main list.

#include "guiTestSupport.h"

#include "app/models/FileListModel.h"
#include "app/models/TableDataModel.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/windows/ChildWindow.h"
#include "app/windows/ChildWindowManager.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/JumpBarMenu.h"
#include "browser/RecentDocuments.h"

#include <QLineEdit>
#include <QSettings>
#include <QSignalSpy>

using namespace vellum;

class ChildWindowTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    static TOrbMDBTable *table(VellumAppDelegate &window, const std::string &file, const std::string &name)
    {
        for (TOrbMDBFile *f : window.controller().recentFiles())
            if (f->name() == file && f->active())
                return f->tableNamed(name);
        return nullptr;
    }
    static TOrbMDBFile *file(VellumAppDelegate &window, const std::string &name)
    {
        for (TOrbMDBFile *f : window.controller().recentFiles())
            if (f->name() == name)
                return f;
        return nullptr;
    }

private slots:
    void childrenOfTablesAndFiles()
    {
        RecentDocuments().clear();
        QSettings().clear();
        VellumAppDelegate window(VellumAppDelegate::Options{false, nullptr, test::inProcessReader()});
        window.setAlertHandler([](const QString &, const QString &) {});
        window.show();
        QSignalSpy finished(&window, &VellumAppDelegate::openFinished);
        window.openFiles({test::copyFixture("features.mdb", m_dir.path()), test::copyFixture("ole.mdb", m_dir.path())});
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() > 0, 20000);
        TOrbMDBTable *orders = table(window, "features", "Orders");
        TOrbMDBTable *blobs = table(window, "ole", "Blobs");
        QVERIFY(orders && blobs);

        // The main window searches; children keep every row.
        window.selectionDidChange(BrowserItem::ofTable(orders));
        window.dataSearchField()->setText("ALFKI");
        QCOMPARE(window.dataView()->dataModel()->rowCount(), 1);
        window.OpenTableInNewWindow(orders);
        window.OpenTableInNewWindow(orders);
        window.OpenTableInNewWindow(blobs);
        ChildWindowManager *manager = window.childWindowManager();
        QVERIFY(manager);
        QCOMPARE(manager->childWins().size(), std::size_t(3));
        ChildWindow *first = manager->childWins()[0];
        ChildWindow *second = manager->childWins()[1];
        QCOMPARE(first->windowTitle(), QString("Orders @features"));
        QCOMPARE(second->windowTitle(), QString("Orders @features"));
        QCOMPARE(first->dataView()->dataModel()->rowCount(), 3);
        QVERIFY(first->dataView()->isTextViewShown());

        // The sort lives in the model: a header click in one child sorts the other at its reload.
        emit first->dataView()->grid()->headerClicked(3);
        QCOMPARE(first->dataView()->dataModel()->index(1, 3).data().toString(), QString("ALFKI"));
        second->dataView()->reloadData();
        QCOMPARE(second->dataView()->dataModel()->index(0, 3).data().toString(), QString("[NULL]"));

        // The child's jump bar shows the controller's menu with its own table selected.
        GCJumpBar *bar = first->dataView()->jumpBar();
        QVERIFY(bar->menu());
        QCOMPARE(bar->selectedMenuItem()->object.table, orders);
        const IndexPath customers = bar->menu()->indexPathOfItem(
            locationItem(bar->menu(), orders->file(), orders->file()->tableNamed("Customers")));
        bar->chooseIndexPath(customers, bar->generation());
        QCOMPARE(first->tableToShow(), orders->file()->tableNamed("Customers"));
        QCOMPARE(first->windowTitle(), QString("Customers @features"));

        // Closing a file closes only the children showing its tables.
        TOrbMDBFile *ole = blobs->file();
        window.CloseSelectedFile(ole);
        QTRY_COMPARE(manager->childWins().size(), std::size_t(2));
        QVERIFY(!ole->active());

        // Choosing the closed file in a child's jump bar opens it in the main list.
        GCJumpBar *secondBar = second->dataView()->jumpBar();
        JumpBarItem *oleItem = nullptr;
        for (const auto &item : secondBar->menu()->items())
            if (item->object.file == ole)
                oleItem = item.get();
        QVERIFY(oleItem);
        QVERIFY(!oleItem->submenu);
        secondBar->chooseIndexPath(secondBar->menu()->indexPathOfItem(oleItem), secondBar->generation());
        QTRY_VERIFY_WITH_TIMEOUT(ole->active(), 20000);
        QTRY_COMPARE(second->windowTitle(), QString("@ole"));
        QCOMPARE(second->tableToShow(), nullptr);
        QCOMPARE(window.fileListModel()->rowCount(window.fileListModel()->indexForFile(ole)), 1);

        first->close();
        QTRY_COMPARE(manager->childWins().size(), std::size_t(1));
    }
};

VELLUM_GUI_TEST_MAIN(ChildWindowTest)
#include "ChildWindowTest.moc"
