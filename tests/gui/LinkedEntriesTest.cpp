// Linked tables and saved queries in the main window, offscreen: their rows under the file with
// icons of their own, the information pane of each, a found target's table in the grid (its file
// left unchanged), the line for a target that is not found, and the hidden queries following the
// View menu's item. Set VELLUM_SCREENSHOT_DIR to keep pictures of the window.

#include "guiTestSupport.h"

#include "app/export/ExportWizard.h"
#include "app/models/FileListModel.h"
#include "app/models/InfoRowsModel.h"
#include "app/models/TableDataModel.h"
#include "app/widgets/DataView.h"
#include "app/widgets/FileTreeView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/InformationPane.h"
#include "app/widgets/InformationTopBar.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/JumpBarMenu.h"
#include "browser/RecentDocuments.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>

using namespace vellum;

namespace {

constexpr const char *kVisibleQuerySql = "SELECT Orders.OrderID, Orders.CustomerID\r\nFROM Orders\r\nWHERE "
                                         "Orders.OrderID > 10248;";

/// Reads in this process and gives the file named "withQueries" two saved queries (one of them
/// hidden) and a link over ODBC, as a file with such objects holds them.
class ReaderWithQueries : public FileReader {
public:
    bool read(TOrbMDBFile &file, LoadObserver *observer) override
    {
        if (!test::inProcessReader()->read(file, observer))
            return false;
        if (file.name() != "withQueries")
            return true;
        auto visible = std::make_unique<TOrbMDBQuery>();
        visible->setName("Big Orders");
        visible->setType(TOrbMDBQuery::Type::Select);
        visible->setSql(kVisibleQuerySql);
        file.addQuery(std::move(visible));
        auto hidden = std::make_unique<TOrbMDBQuery>();
        hidden->setName("~sq_cOrders~sq_cCombo1");
        hidden->setType(TOrbMDBQuery::Type::Select);
        hidden->setSql("SELECT Customers.CustomerID FROM Customers;");
        file.addQuery(std::move(hidden));
        auto odbc = std::make_unique<TOrbMDBLinkedTable>();
        odbc->setName("Stock");
        odbc->setKind(TOrbMDBLinkedTable::Kind::Odbc);
        odbc->setTargetTable("dbo.stock");
        odbc->setConnect("DSN=warehouse;UID=reader");
        file.addLinkedTable(std::move(odbc));
        // A relationship from the linked table to a local one.
        auto key = std::make_unique<TOrbMDBForeignKey>();
        key->setName("StockOrders");
        key->setReferencingTable("Stock");
        key->setReferencingColumns({"OrderID"});
        key->setReferencedTable("Orders");
        key->setReferencedColumns({"OrderID"});
        file.addForeignKey(std::move(key));
        return true;
    }
};

QImage iconImage(const QVariant &decoration)
{
    return decoration.value<QIcon>().pixmap(32, 32).toImage();
}

QByteArray fileHash(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha256);
}

} // namespace

class LinkedEntriesTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<VellumAppDelegate> m_window;

    void makeWindow()
    {
        m_window.reset();
        RecentDocuments().clear();
        QSettings().clear();
        m_window = std::make_unique<VellumAppDelegate>(
            VellumAppDelegate::Options{false, nullptr, std::make_shared<ReaderWithQueries>()});
        m_window->setAlertHandler([](const QString &title, const QString &text) {
            QFAIL(qPrintable("unexpected alert: " + title + " " + text));
        });
        m_window->resize(1100, 640);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    }

    void openAndWait(const QStringList &paths)
    {
        QSignalSpy finished(m_window.get(), &VellumAppDelegate::openFinished);
        m_window->openFiles(paths);
        QVERIFY(finished.count() > 0 || finished.wait(20000));
    }

    TOrbMDBFile *listedFile(const QString &name) const
    {
        for (TOrbMDBFile *file : m_window->controller().recentFiles())
            if (file->name() == name.toStdString())
                return file;
        return nullptr;
    }

    /// Clicks a row of the file list as the user does.
    void clickItem(const BrowserItem &item)
    {
        const QModelIndex index = m_window->fileListModel()->indexForItem(item);
        QVERIFY(index.isValid());
        m_window->fileTree()->scrollTo(index);
        const QRect rect = m_window->fileTree()->visualRect(index);
        QTest::mouseClick(m_window->fileTree()->viewport(), Qt::LeftButton, {}, rect.center());
    }

    /// The entry page's label/value rows as "label=value".
    QStringList entryRows() const
    {
        const auto *rows = m_window->informationPane()->findChild<LabelValueView *>("entryRows");
        QStringList out;
        for (int r = 0; rows && r < rows->rowsModel()->rowCount(); ++r)
            out << rows->rowsModel()->labels()[r] + "=" + rows->rowsModel()->values()[r];
        return out;
    }

    QString note() const { return m_window->informationPane()->entryNoteLabel()->text(); }

    void screenshot(const QString &name)
    {
        const QString dir = qEnvironmentVariable("VELLUM_SCREENSHOT_DIR");
        if (dir.isEmpty())
            return;
        QApplication::sendPostedEvents(); // pending layout requests, as a repaint would see them
        QVERIFY(m_window->grab().save(dir + "/" + name + ".png"));
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanup() { m_window.reset(); }

    void linkedTablesShowTheirTargets()
    {
        makeWindow();
        // linked.mdb links Table1 of C:\db\linkee1.mdb and table2 of C:\db\linkee2.mdb; a copy of
        // features.mdb (which has a "table1") sits beside it as linkee1.mdb, linkee2.mdb is absent.
        const QString linked = test::copyFixture("jet4_linked.mdb", m_dir.path(), "linked.mdb");
        const QString target = test::copyFixture("features.mdb", m_dir.path(), "linkee1.mdb");
        QFile::remove(m_dir.path() + "/linkee2.mdb");
        const QString local = test::copyFixture("features.mdb", m_dir.path(), "local.mdb");
        const QByteArray targetBefore = fileHash(target);
        openAndWait({local, linked});
        TOrbMDBFile *file = listedFile("linked");
        TOrbMDBFile *localFile = listedFile("local");
        QVERIFY(file && file->active() && localFile && localFile->active());
        QCOMPARE(file->linkedTables().size(), std::size_t(2));

        // The two links are the rows under the file (it has no local table), with their own icon.
        FileListModel *model = m_window->fileListModel();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QModelIndex fileRow = model->indexForFile(file);
        QCOMPARE(model->rowCount(fileRow), 2);
        TOrbMDBLinkedTable *table1 = file->linkedTables()[0].get();
        TOrbMDBLinkedTable *table2 = file->linkedTables()[1].get();
        QCOMPARE(table1->name(), std::string("Table1"));
        QCOMPARE(model->index(0, 0, fileRow).data().toString(), QString("Table1"));
        QCOMPARE(model->index(1, 0, fileRow).data().toString(), QString("table2"));
        QCOMPARE(model->itemForIndex(model->index(1, 0, fileRow)), BrowserItem::ofLinkedTable(table2));
        QCOMPARE(model->index(0, 0, fileRow).data(Qt::ToolTipRole).toString(), QString("C:\\db\\linkee1.mdb : Table1"));
        const QImage linkIcon = iconImage(model->index(0, 0, fileRow).data(Qt::DecorationRole));
        QVERIFY(!linkIcon.isNull());
        QCOMPARE(linkIcon, namedIcon("FileList_LinkedTable").pixmap(32, 32).toImage());
        const QModelIndex localTable = model->index(0, 0, model->indexForFile(localFile));
        QVERIFY(model->itemForIndex(localTable).isTable());
        QVERIFY(linkIcon != iconImage(localTable.data(Qt::DecorationRole)));
        QVERIFY(linkIcon != iconImage(fileRow.data(Qt::DecorationRole)));

        // A local table first, so that Back has somewhere to go.
        clickItem(BrowserItem::ofTable(localFile->tableNamed("Orders")));
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 3);

        // A found target: the pane shows the link, the grid the target's table.
        QSignalSpy resolved(m_window.get(), &VellumAppDelegate::linkedTableResolved);
        clickItem(BrowserItem::ofLinkedTable(table1));
        QVERIFY(resolved.count() > 0 || resolved.wait(20000));
        InformationPane *pane = m_window->informationPane();
        QCOMPARE(pane->currentPage(), InformationPane::kEntryPage);
        for (int type = kInfoFile; type <= kInfoRelation; ++type)
            QVERIFY(pane->topBar()->isHiddenForType(type));
        QCOMPARE(entryRows(),
                 QStringList({"Name=Table1", "Link=ACCESS", "Database=C:\\db\\linkee1.mdb", "Table=Table1"}));
        QCOMPARE(note(), QString("Rows of table1 in %1 (read-only)").arg(target));
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 2);
        QCOMPARE(m_window->linkTargets().size(), std::size_t(1));
        QCOMPARE(QString::fromStdString(m_window->linkTargets()[0]->fullPath()), target);
        // The target is read apart from the file list: it is neither listed nor noted as recent.
        QCOMPARE(m_window->controller().recentFiles().size(), std::size_t(2));
        QCOMPARE(RecentDocuments().paths().size(), std::size_t(2));
        QCOMPARE(m_window->controller().selectedFile(), file);
        QCOMPARE(m_window->controller().selectedTable(), nullptr);
        // The jump bar stands on the link's file.
        const JumpBarItem *location = m_window->dataView()->jumpBar()->selectedMenuItem();
        QVERIFY(location);
        QCOMPARE(location->object, BrowserItem::ofFile(file));
        screenshot("linked-table-found");

        // A target that is not found: one line says so, the grid is empty.
        resolved.clear();
        clickItem(BrowserItem::ofLinkedTable(table2));
        QVERIFY(resolved.count() > 0 || resolved.wait(20000));
        QCOMPARE(note(), QString("The linked table's database was not found: C:\\db\\linkee2.mdb"));
        QVERIFY(pane->entryNoteLabel()->isVisible());
        QVERIFY(!pane->entryRelationshipNames()->isVisible());
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 0);
        screenshot("linked-table-not-found");

        // Back leaves the link for the table visited before it.
        QVERIFY(!m_window->toolbarAction("navigationBack")->isEnabled());
        clickItem(BrowserItem::ofTable(localFile->tableNamed("Customers")));
        clickItem(BrowserItem::ofLinkedTable(table1));
        QVERIFY(m_window->toolbarAction("navigationBack")->isEnabled());
        m_window->PreviousSelectedTable();
        QCOMPARE(m_window->controller().selectedTable(), localFile->tableNamed("Orders"));
        QCOMPARE(pane->currentPage(), int(kInfoTable));
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 3);

        // Closing the link's file while its target is shown empties the pane and the grid.
        clickItem(BrowserItem::ofLinkedTable(table1));
        QTRY_COMPARE(m_window->dataView()->dataModel()->rowCount(), 2);
        m_window->CloseSelectedFile(file);
        QVERIFY(!file->active());
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 0);
        QVERIFY(pane->currentPage() != InformationPane::kEntryPage);

        // The target was only read.
        m_window.reset();
        QCOMPARE(fileHash(target), targetBefore);
    }

    void queriesShowTheirSqlAndFollowTheViewItem()
    {
        makeWindow();
        const QString path = test::copyFixture("features.mdb", m_dir.path(), "withQueries.mdb");
        openAndWait({path});
        TOrbMDBFile *file = listedFile("withQueries");
        QVERIFY(file && file->active());
        FileListModel *model = m_window->fileListModel();
        QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QModelIndex fileRow = model->indexForFile(file);
        const int tables = static_cast<int>(file->tables().size());
        QAction *showHidden = m_window->showHiddenQueriesItem();
        QCOMPARE(showHidden->text(), QString("Show Hidden Queries"));
        QVERIFY(showHidden->isCheckable());
        QVERIFY(!showHidden->isChecked());

        // Tables, then the link, then the visible query; the hidden one is left out.
        QCOMPARE(model->rowCount(fileRow), tables + 2);
        const QModelIndex linkRow = model->index(tables, 0, fileRow);
        const QModelIndex queryRow = model->index(tables + 1, 0, fileRow);
        QVERIFY(model->itemForIndex(linkRow).isLinkedTable());
        QCOMPARE(queryRow.data().toString(), QString("Big Orders"));
        TOrbMDBQuery *visible = model->itemForIndex(queryRow).query;
        QVERIFY(visible);
        const QImage queryIcon = iconImage(queryRow.data(Qt::DecorationRole));
        QCOMPARE(queryIcon, namedIcon("FileList_Query").pixmap(32, 32).toImage());
        QVERIFY(queryIcon != iconImage(linkRow.data(Qt::DecorationRole)));
        QVERIFY(queryIcon != iconImage(model->index(0, 0, fileRow).data(Qt::DecorationRole)));

        // An ODBC link: its target, and one line saying its rows are not read.
        QSignalSpy resolved(m_window.get(), &VellumAppDelegate::linkedTableResolved);
        clickItem(model->itemForIndex(linkRow));
        QVERIFY(resolved.count() > 0 || resolved.wait(5000));
        QCOMPARE(entryRows(),
                 QStringList({"Name=Stock", "Link=ODBC", "Table=dbo.stock", "Connect=DSN=warehouse;UID=reader"}));
        QCOMPARE(note(), QString("The linked table is reached over ODBC: its rows are not read."));
        // Its relationship is listed with it.
        InformationPane *linkPane = m_window->informationPane();
        QVERIFY(linkPane->entryRelationshipNames()->isVisible());
        QCOMPARE(linkPane->entryRelationshipNames()->namesModel()->names(), QStringList({"StockOrders"}));
        QVERIFY(linkPane->entryRelationshipRows()->rowsModel()->values().contains("Orders"));
        screenshot("odbc-link");

        // A query: its name and type, the SQL in a read-only, fixed-width, selectable view.
        clickItem(BrowserItem::ofQuery(visible));
        InformationPane *pane = m_window->informationPane();
        QCOMPARE(pane->currentPage(), InformationPane::kEntryPage);
        QCOMPARE(entryRows(), QStringList({"Name=Big Orders", "Type=SELECT"}));
        QPlainTextEdit *sql = pane->sqlView();
        QVERIFY(sql->isVisible());
        QCOMPARE(sql->toPlainText(), QString(kVisibleQuerySql).replace("\r\n", "\n"));
        QVERIFY(sql->isReadOnly());
        QVERIFY(sql->textInteractionFlags() & Qt::TextSelectableByMouse);
        QVERIFY(QFontInfo(sql->font()).fixedPitch());
        QVERIFY(!pane->entryNoteLabel()->isVisible());
        QVERIFY(!pane->entryRelationshipNames()->isVisible());
        QCOMPARE(m_window->dataView()->dataModel()->rowCount(), 0);
        QCOMPARE(m_window->controller().selectedFile(), file);
        screenshot("query");

        // An export started with a query selected exports its file.
        m_window->toolbarAction("exportCsv")->trigger();
        QTRY_VERIFY(m_window->exportWizard());
        QPushButton *cancel =
            m_window->exportWizard()->findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Cancel);
        QTest::mouseClick(cancel, Qt::LeftButton);
        QTRY_VERIFY(!m_window->exportWizard());

        // The View item brings the hidden query in and takes it out again.
        showHidden->trigger();
        QVERIFY(showHidden->isChecked());
        QCOMPARE(model->rowCount(fileRow), tables + 3);
        // Queries are in name order: Access's own "~sq_" names come first.
        const QModelIndex hiddenRow = model->index(tables + 1, 0, fileRow);
        QCOMPARE(hiddenRow.data().toString(), QString("~sq_cOrders~sq_cCombo1"));
        QCOMPARE(model->index(tables + 2, 0, fileRow).data().toString(), QString("Big Orders"));
        clickItem(model->itemForIndex(hiddenRow));
        QCOMPARE(sql->toPlainText(), QString("SELECT Customers.CustomerID FROM Customers;"));
        screenshot("hidden-query");
        showHidden->trigger();
        QVERIFY(!showHidden->isChecked());
        QCOMPARE(model->rowCount(model->indexForFile(file)), tables + 2);
        // The hidden query shown left the list: its file takes its place.
        QCOMPARE(pane->currentPage(), int(kInfoFile));
        QCOMPARE(m_window->controller().selectedFile(), file);

        // The file search narrows queries and links by name like tables.
        m_window->fileSearchField()->setText("big");
        QCOMPARE(model->rowCount(model->indexForFile(file)), 1);
        QCOMPARE(model->index(0, 0, model->indexForFile(file)).data().toString(), QString("Big Orders"));
        m_window->fileSearchField()->clear();
    }
};

VELLUM_GUI_TEST_MAIN(LinkedEntriesTest)
#include "LinkedEntriesTest.moc"
