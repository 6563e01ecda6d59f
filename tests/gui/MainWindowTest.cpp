// The main window end to end, offscreen: opening files into the list, browsing tables, the
// data search, sorting, copying, the cell cursor, Back and Next, the file search, the pane
// flags, the error alerts, and an export to CSV through the wizard.

#include "guiTestSupport.h"

#include "app/export/ExportWizard.h"
#include "app/models/FileListModel.h"
#include "app/models/TableDataModel.h"
#include "app/support/SettingsStore.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/widgets/FileTreeView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/InformationPane.h"
#include "app/widgets/InformationTopBar.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/JumpBarMenu.h"
#include "browser/RecentDocuments.h"

#include <QClipboard>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>

using namespace vellum;

class MainWindowTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    std::unique_ptr<VellumAppDelegate> m_window;
    QStringList m_alerts;

    /// A fresh window over a cleared recent-documents list and settings.
    void makeWindow()
    {
        m_window.reset();
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

    TOrbMDBTable *table(const std::string &name) const
    {
        for (TOrbMDBFile *file : m_window->controller().recentFiles())
            if (file->active())
                for (const auto &t : file->tables())
                    if (t->name() == name)
                        return t.get();
        return nullptr;
    }

    /// Clicks a table's row in the file list as the user does.
    void clickTable(const std::string &name)
    {
        TOrbMDBTable *t = table(name);
        QVERIFY2(t, name.c_str());
        const QModelIndex index = m_window->fileListModel()->indexForTable(t);
        QVERIFY(index.isValid());
        m_window->fileTree()->scrollTo(index);
        const QRect rect = m_window->fileTree()->visualRect(index);
        QTest::mouseClick(m_window->fileTree()->viewport(), Qt::LeftButton, {}, rect.center());
    }

    QString status() const { return m_window->statusBarLabel()->text(); }
    TableDataModel *grid() const { return m_window->dataView()->dataModel(); }
    QStringList column(int c) const
    {
        QStringList out;
        for (int r = 0; r < grid()->rowCount(); ++r)
            out << grid()->index(r, c).data().toString();
        return out;
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }
    void cleanup() { m_window.reset(); }

    void startsWithDefaultsAndToolbar()
    {
        makeWindow();
        QCOMPARE(status(), QString("0 files"));
        QVERIFY(m_window->fileTree()->isDropHintVisible());
        const QStringList expected = {"navigationBack", "navigationNext", "open",       "exportCsv",
                                      "exportTxt",      "exportXml",      "exportJson", "exportXls",
                                      "exportSql",      "exportSqlite",   "",           "search"};
        QStringList identifiers;
        for (QAction *action : m_window->toolbar()->actions())
            identifiers << action->objectName();
        QCOMPARE(identifiers, expected);
        QCOMPARE(m_window->toolbarAction("navigationBack")->toolTip(), QString("Show the previous table"));
        QCOMPARE(m_window->toolbarAction("open")->text(), QString("Open"));
        QCOMPARE(m_window->toolbarAction("open")->toolTip(), QString("Open MDB files"));
        QCOMPARE(m_window->toolbarAction("exportSqlite")->text(), QString("Export SQLite"));
        QVERIFY(!m_window->toolbarAction("navigationBack")->isEnabled());
        QVERIFY(!m_window->toolbarAction("navigationNext")->isEnabled());
        QVERIFY(m_window->toolbarAction("exportCsv")->isEnabled());
        QCOMPARE(m_window->dataSearchField()->maximumSize(), QSize(200, 22));

        // Pane flags: a key never written takes its default, and the titles name the next action.
        QCOMPARE(m_window->paneToggle(0)->text(), QString("Hide File List"));
        QCOMPARE(m_window->paneToggle(1)->text(), QString("Show Text View"));
        QCOMPARE(m_window->paneToggle(2)->text(), QString("Hide Information View"));
        QCOMPARE(m_window->paneToggle(3)->text(), QString("Show Jump Bar"));
        QCOMPARE(m_window->paneToggle(4)->text(), QString("Hide Row Count in File List"));
        m_window->ToggleJumpBar();
        m_window->ToggleTreeView();
        QCOMPARE(m_window->paneToggle(3)->text(), QString("Hide Jump Bar"));
        QCOMPARE(m_window->paneToggle(0)->text(), QString("Show File List"));
        m_window->close();
        QCOMPARE(QSettings().value("jumpBarShown").toBool(), true);
        QCOMPARE(QSettings().value("fileTreeShown").toBool(), false);
        QCOMPARE(QSettings().value("textViewShown").toBool(), false);
        m_window.reset();
        QSettings().clear();
    }

    void opensBrowsesSearchesAndSorts()
    {
        makeWindow();
        const QString path = test::copyFixture("features.mdb", m_dir.path());
        openAndWait({path, m_dir.path() + "/notes.txt"});
        QVERIFY(m_alerts.isEmpty());
        QCOMPARE(RecentDocuments().paths(), std::vector<std::string>{path.toStdString()});
        QVERIFY(!m_window->fileTree()->isDropHintVisible());
        QCOMPARE(status(), QString("1 of 1 file, contains 14 tables"));
        const QModelIndex fileRow = m_window->fileListModel()->index(0, 0);
        QVERIFY(m_window->fileTree()->isExpanded(fileRow));
        QCOMPARE(m_window->fileListModel()->rowCount(fileRow), 14);
        QCOMPARE(m_window->fileListModel()->indexForTable(table("Orders")).data().toString(), QString("Orders  (3)"));

        clickTable("Orders");
        QCOMPARE(status(), QString("1 of 14 tables, contains 3 records"));
        QCOMPARE(grid()->rowCount(), 3);
        QCOMPARE(m_window->informationPane()->currentPage(), int(kInfoTable));

        // The data search narrows the rows live; the status counts what is shown.
        m_window->dataSearchField()->setText("alf");
        QCOMPARE(grid()->rowCount(), 1);
        QCOMPARE(status(), QString("1 record"));
        m_window->SetCaseForSearch(); // no menu click: the state is read from the menu item
        QCOMPARE(grid()->rowCount(), 1);
        for (QAction *action : m_window->searchFieldMenu()->actions())
            if (action->data().toInt() == 100 && !action->isSeparator())
                action->trigger(); // case now respected
        QVERIFY(!m_window->controller().ignoreCase());
        QCOMPARE(grid()->rowCount(), 0);
        m_window->dataSearchField()->setText("ANATR");
        QCOMPARE(grid()->rowCount(), 1);
        for (QAction *action : m_window->searchFieldMenu()->actions())
            if (action->data().toInt() == 2 && !action->isSeparator())
                action->trigger(); // equals
        QCOMPARE(grid()->rowCount(), 1);
        m_window->dataSearchField()->setText("ANAT");
        QCOMPARE(grid()->rowCount(), 0);
        m_window->dataSearchField()->clear();
        QCOMPARE(grid()->rowCount(), 3);
        QCOMPARE(status(), QString("3 records"));

        // Header clicks: ascending (nulls first), descending, none.
        CopyableTableView *view = m_window->dataView()->grid();
        emit view->headerClicked(3);
        QCOMPARE(column(3), QStringList({"[NULL]", "ALFKI", "ANATR"}));
        QVERIFY(view->horizontalHeader()->isSortIndicatorShown());
        emit view->headerClicked(3);
        QCOMPARE(column(3), QStringList({"ANATR", "ALFKI", "[NULL]"}));
        emit view->headerClicked(3);
        QCOMPARE(column(0), QStringList({"10248", "10249", "10250"}));
        QVERIFY(!view->horizontalHeader()->isSortIndicatorShown());

        // Numbers stored as text sort as numbers.
        clickTable("OrderLines");
        emit m_window->dataView()->grid()->headerClicked(3);
        QCOMPARE(column(3), QStringList({"9.8000", "14.0000", "18.0000", "31.0000"}));

        // Copy: tab-separated, a null is an empty field.
        clickTable("Orders");
        view->selectRowAlone(1);
        QCOMPARE(status(), QString("Record 2 of 3"));
        view->copy();
        QCOMPARE(QApplication::clipboard()->text(), QString("10249\t1\t\tANATR\tMexico\t03/05/2010 09:00:00\n"));
        view->selectAllRows();
        QCOMPARE(status(), QString("3 of 3 records"));

        // The cell cursor: right arrow without a selection goes to row 0, column 0.
        view->clearSelection();
        view->setFocus();
        QTest::keyClick(view, Qt::Key_Right);
        QCOMPARE(view->cursorCell(), grid()->index(0, 0));
        QCOMPARE(m_window->dataView()->bottomTextView()->toPlainText(), QString("10248"));
        QWidget *editor = view->indexWidget(view->cursorCell());
        QVERIFY(editor);
        QTest::keyClick(editor, Qt::Key_Down);
        QTest::keyClick(view->indexWidget(view->cursorCell()), Qt::Key_Right);
        QCOMPARE(view->cursorCell(), grid()->index(1, 1));
        QTest::keyClick(view->indexWidget(view->cursorCell()), Qt::Key_Right);
        QTest::keyClick(view->indexWidget(view->cursorCell()), Qt::Key_Escape);
        QVERIFY(!view->cursorCell().isValid());
        QCOMPARE(m_window->dataView()->bottomTextView()->toPlainText(), QString("No fields selected"));
        QTest::keyClick(view, Qt::Key_Left);
        QCOMPARE(view->cursorCell().column(), 5);

        // Jump to row: 3 selects the third row alone; 0 and 4 change nothing.
        const auto answerJump = [](const QString &text) {
            QTimer::singleShot(0, [text] {
                auto *dialog = qobject_cast<QInputDialog *>(QApplication::activeModalWidget());
                QVERIFY(dialog);
                QCOMPARE(dialog->windowTitle(), QString("Jump to row"));
                QCOMPARE(dialog->labelText(), QString("Row:"));
                dialog->setTextValue(text);
                dialog->accept();
            });
        };
        answerJump("3");
        view->jumpToRow();
        QCOMPARE(view->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(view->selectionModel()->selectedRows().first().row(), 2);
        for (const QString &outOfRange : {QString("0"), QString("4"), QString("x")}) {
            answerJump(outOfRange);
            view->jumpToRow();
            QCOMPARE(view->selectionModel()->selectedRows().first().row(), 2);
        }
    }

    void historyJumpBarAndFileSearch()
    {
        makeWindow();
        openAndWait({test::copyFixture("features.mdb", m_dir.path())});
        m_window->ToggleJumpBar();
        clickTable("Orders");
        clickTable("Customers");
        clickTable("Items");
        QVERIFY(m_window->toolbarAction("navigationBack")->isEnabled());
        m_window->PreviousSelectedTable();
        QCOMPARE(m_window->controller().selectedTable(), table("Customers"));
        QCOMPARE(grid()->table(), table("Customers"));
        QVERIFY(m_window->toolbarAction("navigationNext")->isEnabled());
        m_window->PreviousSelectedTable();
        QCOMPARE(m_window->controller().selectedTable(), table("Orders"));
        QVERIFY(!m_window->toolbarAction("navigationBack")->isEnabled());
        QVERIFY(!m_window->backMenuItem()->isEnabled());
        clickTable("OrderLines");
        QCOMPARE(m_window->controller().history().previous(),
                 (std::vector<TOrbMDBTable *>{table("Orders"), table("OrderLines")}));
        QVERIFY(!m_window->toolbarAction("navigationNext")->isEnabled());

        // The jump bar shows file and table; choosing another table there records a visit.
        GCJumpBar *bar = m_window->dataView()->jumpBar();
        QCOMPARE(bar->labels().size(), std::size_t(2));
        QCOMPARE(bar->labels()[1]->fullText(), QString("OrderLines"));
        const IndexPath itemsPath =
            bar->menu()->indexPathOfItem(locationItem(bar->menu(), table("Items")->file(), table("Items")));
        QCOMPARE(itemsPath.stringRepresentation(), QString("0.4").toStdString());
        bar->chooseIndexPath(itemsPath, bar->generation());
        QCOMPARE(grid()->table(), table("Items"));
        QCOMPARE(m_window->controller().history().previous().back(), table("Items"));
        // A choice from a menu of an older tree (rebuilt meanwhile) is ignored.
        const unsigned old = bar->generation();
        m_window->refreshJumpBarMenu();
        bar->chooseIndexPath(IndexPath{0, 0}, old);
        QCOMPARE(grid()->table(), table("Items"));

        // File search "ord": only the matching tables of the open file.
        m_window->fileSearchField()->setText("ord");
        const QModelIndex fileRow = m_window->fileListModel()->index(0, 0);
        QCOMPARE(m_window->fileListModel()->rowCount(fileRow), 2);
        QCOMPARE(m_window->fileListModel()->index(0, 0, fileRow).data(FileListModel::NameRole).toString(),
                 QString("OrderLines"));
        QCOMPARE(status(), QString("1 of 2 tables, contains 3 records"));
        m_window->fileSearchField()->setText("zzz");
        QCOMPARE(m_window->fileListModel()->rowCount(), 0);
        QCOMPARE(status(), QString("1 of 0 tables, contains 3 records"));
        m_window->fileSearchField()->clear();
        QCOMPARE(m_window->fileListModel()->rowCount(fileRow), 14);

        // Closing the file takes its tables out of the history and the grid.
        TOrbMDBFile *file = table("Items")->file();
        m_window->CloseSelectedFile(file);
        QVERIFY(m_window->controller().history().previous().empty());
        QVERIFY(!m_window->toolbarAction("navigationBack")->isEnabled());
        QCOMPARE(grid()->table(), nullptr);
        QVERIFY(!file->active());
        QCOMPARE(m_window->fileListModel()->rowCount(), 1);
        QCOMPARE(status(), QString("1 of 1 file"));
    }

    void reportsFilesThatCannotBeOpened()
    {
        makeWindow();
        QFile bogus(m_dir.path() + "/bogus.mdb");
        QVERIFY(bogus.open(QIODevice::WriteOnly));
        bogus.write(QByteArray(4096, 'x'));
        bogus.close();
        openAndWait({bogus.fileName()});
        QCOMPARE(m_alerts, QStringList({"Error|File (bogus.mdb) cannot be opened"}));
        QCOMPARE(m_window->lastAlertInformativeText(), QString("It is not a Microsoft Access database."));
        QVERIFY(RecentDocuments().paths().empty());
        QCOMPARE(m_window->fileListModel()->rowCount(), 0); // the failed entry is dropped again

        m_alerts.clear();
        m_window->Export(ExportFileType::CSV);
        QCOMPARE(m_alerts, QStringList({"No MDB File selected.|Please select a file from the file list first."}));
    }

    void showsWhatAFileWithADamagedCatalogLost()
    {
        makeWindow();
        const QString path = test::copyFixture("features.mdb", m_dir.path(), "nocatalog.mdb");
        QFile damaged(path);
        QVERIFY(damaged.open(QIODevice::ReadWrite));
        QVERIFY(damaged.seek(2 * 4096)); // the catalog's definition page, now of another type
        QVERIFY(damaged.write(QByteArray(1, '\x01')) == 1);
        damaged.close();
        openAndWait({path});
        QVERIFY(m_alerts.isEmpty()); // it opens, with no tables
        QCOMPARE(m_window->controller().recentFiles().size(), std::size_t{1});
        TOrbMDBFile *file = m_window->controller().recentFiles()[0];
        QVERIFY(file->active());
        QVERIFY(file->tables().empty());
        QTRY_COMPARE(status(), QString("This file could not be read completely: its catalog is unreadable"));
        const auto labels = file->getObjectLabels();
        QCOMPARE(labels.back(), std::string("Not read"));
    }

    void followsTheSystemList()
    {
        makeWindow();
        const QString a = test::copyFixture("features.mdb", m_dir.path(), "a.mdb");
        const QString b = test::copyFixture("ole.mdb", m_dir.path(), "b.mdb");
        RecentDocuments().note(a.toStdString());
        m_window->refreshRecentFiles();
        QCOMPARE(m_window->fileListModel()->rowCount(), 1);
        RecentDocuments().note(b.toStdString());
        m_window->refreshRecentFiles();
        QCOMPARE(m_window->fileListModel()->rowCount(), 2);
        QCOMPARE(m_window->fileListModel()->index(1, 0).data().toString(), QString("b"));
        m_window->RemoveSelectedFile(m_window->controller().recentFiles()[0]);
        QCOMPARE(RecentDocuments().paths(), std::vector<std::string>{b.toStdString()});
        QCOMPARE(m_window->fileListModel()->rowCount(), 1);
    }

    void exportsCsvThroughTheWizard()
    {
        makeWindow();
        openAndWait({test::copyFixture("features.mdb", m_dir.path())});
        clickTable("Orders");
        m_window->dataSearchField()->setText("a");
        emit m_window->dataView()->grid()->headerClicked(1);
        QCOMPARE(grid()->rowCount(), 2); // the search narrows the grid, not the export

        const QString out = m_dir.path() + "/csv";
        QVERIFY(QDir().mkpath(out));
        QString title, message;
        connect(m_window.get(), &VellumAppDelegate::exportWizardCreated, this, [&](ExportWizard *wizard) {
            wizard->setShowsFinalAlert(false);
            connect(wizard, &ExportWizard::exportFinished, this, [&](const QString &t, const QString &m) {
                title = t;
                message = m;
            });
        });
        m_window->toolbarAction("exportCsv")->trigger();
        QTRY_VERIFY(m_window->exportWizard());
        ExportWizard *wizard = m_window->exportWizard();
        QVERIFY2(!wizard->okButton()->isEnabled(), "no path yet");
        wizard->setPathChooser(
            [&](bool folder, const QString &, const QString &, const QString &) { return folder ? out : QString(); });
        wizard->selectExportPath();
        QCOMPARE(wizard->pathField()->text(), out);
        QVERIFY(wizard->okButton()->isEnabled());
        QTest::mouseClick(wizard->okButton(), Qt::LeftButton);
        QTRY_COMPARE_WITH_TIMEOUT(title, QString("Export finished."), 20000);
        QCOMPARE(message, QString("1 table exported successfully."));
        QTRY_VERIFY(!m_window->exportWizard());
        QVERIFY(!m_window->toolbarAction("exportCsv")->isChecked());

        QFile written(out + "/Orders.csv");
        QVERIFY(written.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(written.readAll()),
                 QString("\"OrderID\",\"CustomerID\",\"ShipToID\",\"CustCode\",\"CustCountry\",\"OrderDate\"\n"
                         "10248,1,2,\"ALFKI\",\"Germany\",\"03/04/2010 13:05:00\"\n"
                         "10249,1,,\"ANATR\",\"Mexico\",\"03/05/2010 09:00:00\"\n"
                         "10250,3,99,,,\"03/06/2010 00:00:00\"\n"));
        QCOMPARE(SettingsStore::exportFilePath(), out);
    }
};

VELLUM_GUI_TEST_MAIN(MainWindowTest)
#include "MainWindowTest.moc"
