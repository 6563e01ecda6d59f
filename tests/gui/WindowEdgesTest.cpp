// The window under load and at its edges: a 200,001-character memo clicked while the event
// loop keeps turning, Copy typed in the cell cursor, the jump bar while a menu is open, child
// windows on the screen, the search modes as one group and alerts wide enough for their title.

#include "guiTestSupport.h"

#include "app/models/TableDataModel.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/LongTextView.h"
#include "app/windows/ChildWindow.h"
#include "app/windows/ChildWindowManager.h"
#include "app/windows/VellumAppDelegate.h"
#include "browser/JumpBarMenu.h"
#include "browser/RecentDocuments.h"

#include <QActionGroup>
#include <QClipboard>
#include <QElapsedTimer>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QScreen>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTimer>

using namespace vellum;

class WindowEdgesTest : public QObject {
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

    static std::unique_ptr<VellumAppDelegate> openWindow(const QStringList &paths)
    {
        auto window = test::freshWindow();
        window->resize(1000, 700);
        window->show();
        if (paths.isEmpty())
            return window;
        QSignalSpy finished(window.get(), &VellumAppDelegate::openFinished);
        window->openFiles(paths);
        if (!QTest::qWaitFor([&] { return finished.count() > 0; }, 30000))
            return nullptr;
        return window;
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void longMemoClickKeepsTheLoopTurning()
    {
        const QString shared = QStringLiteral(VELLUM_SHARED_DIR) + "/testdata/longtext.mdb";
        if (!QFile::exists(shared))
            QSKIP("../shared/testdata/longtext.mdb is not there: the long memo cannot be clicked");
        QFile::copy(shared, m_dir.path() + "/longtext.mdb");
        auto window = openWindow({m_dir.path() + "/longtext.mdb"});
        QVERIFY(window);
        TOrbMDBTable *longText = table(*window, "longtext", "LongText");
        QVERIFY(longText);
        window->selectionDidChange(BrowserItem::ofTable(longText));
        DataView *view = window->dataView();
        CopyableTableView *grid = view->grid();
        QTRY_COMPARE(view->dataModel()->rowCount(), 10);
        int row = -1;
        for (int r = 0; r < 10; ++r)
            if (view->dataModel()->index(r, 1).data().toString() == "200001")
                row = r;
        QVERIFY(row >= 0);
        if (!view->isTextViewShown())
            window->ToggleTextView();
        QVERIFY(view->isTextViewShown());
        grid->scrollTo(view->dataModel()->index(row, 3));
        QVERIFY(grid->viewport()->rect().contains(grid->visualRect(view->dataModel()->index(row, 3)).center()));

        // A timer that should fire every 10 ms records the largest gap between its shots.
        QElapsedTimer clock;
        qint64 last = 0;
        qint64 largestGap = 0;
        QTimer ticker;
        ticker.setInterval(10);
        connect(&ticker, &QTimer::timeout, [&] {
            const qint64 now = clock.elapsed();
            largestGap = std::max(largestGap, now - last);
            last = now;
        });
        clock.start();
        ticker.start();
        const QRect cell = grid->visualRect(view->dataModel()->index(row, 3));
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
        QCOMPARE(grid->cursorCell(), view->dataModel()->index(row, 3));
        LongTextView *pane = view->bottomTextView();
        QTRY_COMPARE(pane->shownText().size(), 200001);
        // Let the lazy layout run, and the pane paint, before the gaps are judged.
        QTest::qWait(300);
        pane->verticalScrollBar()->setValue(pane->verticalScrollBar()->maximum());
        QTest::qWait(200);
        ticker.stop();
        qInfo("largest gap of the event loop while the memo showed: %lld ms", largestGap);
        QVERIFY2(largestGap < 100, qPrintable(QString("the loop stood still for %1 ms").arg(largestGap)));

        // The pane's copy is the stored text (no breaks between its pieces); the editor elides.
        QCOMPARE(pane->shownText().right(1), QString("Z"));
        pane->selectAll();
        QApplication::clipboard()->clear();
        pane->copy();
        QCOMPARE(QApplication::clipboard()->text().size(), 200001);
        QCOMPARE(QApplication::clipboard()->text(), QString("0123456789").repeated(20000) + "Z");
        QVERIFY(pane->document()->blockCount() > 1);
        auto *editor = qobject_cast<QLineEdit *>(grid->indexWidget(grid->cursorCell()));
        QVERIFY(editor);
        QCOMPARE(editor->text().size(), CellCursorDelegate::kGridTextLimit + 1);
        QVERIFY(editor->text().endsWith(QChar(0x2026)));
    }

    void longTextViewCopiesTheStoredText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        QTest::addColumn<QString>("expected");
        const QString digits = QString("0123456789").repeated(250); // 2,500 characters
        QTest::newRow("short lines keep their breaks") << QString("ab\ncd") << 1 << 4 << QString("b\nc");
        QTest::newRow("across an added break") << digits << 995 << 1006 << digits.mid(995, 10);
        QTest::newRow("whole long text") << digits << 0 << 2502 << digits;
        QTest::newRow("a real break among pieces")
            << digits + "\n" + digits << 2501 << 2505 << (digits.right(1) + "\n" + digits.left(2));
    }

    void longTextViewCopiesTheStoredText()
    {
        QFETCH(QString, text);
        QFETCH(int, from);
        QFETCH(int, to);
        QFETCH(QString, expected);
        LongTextView view;
        view.setShownText(text);
        QCOMPARE(view.originalText(from, to), expected);
        QCOMPARE(view.shownText(), text);
    }

    void copyInTheCellCursorTakesRows()
    {
        auto window = openWindow({test::copyFixture("features.mdb", m_dir.path())});
        QVERIFY(window);
        window->selectionDidChange(BrowserItem::ofTable(table(*window, "features", "Orders")));
        CopyableTableView *grid = window->dataView()->grid();
        QTRY_COMPARE(grid->model()->rowCount(), 3);
        // Row 1's column 2 is a null: the cell shows "[NULL]", the copy leaves the field empty.
        grid->setEditedColumn(2, 1);
        QWidget *editor = grid->indexWidget(grid->cursorCell());
        QVERIFY(editor);
        QCOMPARE(grid->model()->index(1, 2).data().toString(), QString("[NULL]"));
        QApplication::clipboard()->clear();
        QTest::keySequence(editor, QKeySequence::Copy);
        QCOMPARE(QApplication::clipboard()->text(), QString("10249\t1\t\tANATR\tMexico\t03/05/2010 09:00:00\n"));
    }

    void jumpBarDropsOldLabelsAtOnce()
    {
        auto window = openWindow({test::copyFixture("features.mdb", m_dir.path())});
        QVERIFY(window);
        GCJumpBar *bar = window->dataView()->jumpBar();
        window->ToggleJumpBar();
        TOrbMDBTable *orders = table(*window, "features", "Orders");
        window->selectionDidChange(BrowserItem::ofTable(orders));
        QVERIFY(bar->menu());
        const IndexPath customers = bar->menu()->indexPathOfItem(
            locationItem(bar->menu(), orders->file(), orders->file()->tableNamed("Customers")));
        // As from a menu's own event loop: no deferred deletion runs before the bar is looked at.
        bar->chooseIndexPath(customers, bar->generation());
        // Two labels and a separator before the stretch; the old labels are out and hidden.
        QCOMPARE(bar->layout()->count(), 4);
        for (auto *label : bar->findChildren<GCJumpBarLabel *>())
            if (std::find(bar->labels().begin(), bar->labels().end(), label) == bar->labels().end())
                QVERIFY(label->isHidden());
        QCOMPARE(bar->labels().back()->fullText(), QString("Customers"));
    }

    void childWindowsStayOnTheScreen_data()
    {
        QTest::addColumn<QPoint>("previous");
        QTest::addColumn<QPoint>("expected");
        QTest::newRow("room below") << QPoint(100, 100) << QPoint(124, 124);
        QTest::newRow("bottom reached") << QPoint(100, 400) << QPoint(124, 0);
        QTest::newRow("right edge reached") << QPoint(710, 100) << QPoint(0, 124);
        QTest::newRow("above the area") << QPoint(100, -300) << QPoint(124, 0);
    }

    void childWindowsStayOnTheScreen()
    {
        QFETCH(QPoint, previous);
        QFETCH(QPoint, expected);
        QCOMPARE(ChildWindowManager::cascadePosition(previous, QSize(300, 200), QRect(0, 0, 1024, 600)), expected);
    }

    void manyChildWindowsOnTheMainWindowsScreen()
    {
        auto window = openWindow({test::copyFixture("features.mdb", m_dir.path())});
        QVERIFY(window);
        TOrbMDBTable *orders = table(*window, "features", "Orders");
        for (int i = 0; i < 40; ++i)
            window->OpenTableInNewWindow(orders);
        const QRect area = window->screen()->availableGeometry();
        for (const ChildWindow *child : window->childWindowManager()->childWins()) {
            QVERIFY2(area.contains(child->pos()),
                     qPrintable(QString("child at %1,%2").arg(child->x()).arg(child->y())));
            QCOMPARE(child->windowTitle(), QString("Orders @features"));
        }
        // Qt appends a display name, when one is set, to the title the window manager shows.
        QCOMPARE(QGuiApplication::applicationDisplayName(), QCoreApplication::applicationName());
        window->childWindowManager()->closeAll();
    }

    void searchModesAreOneGroup()
    {
        auto window = openWindow({});
        QVERIFY(window);
        QActionGroup *group = nullptr;
        int modes = 0;
        for (QAction *action : window->searchFieldMenu()->actions())
            if (action->actionGroup()) {
                QVERIFY(!group || group == action->actionGroup());
                group = action->actionGroup();
                ++modes;
            }
        QCOMPARE(modes, 4);
        QVERIFY(group->isExclusive());
        group->actions()[2]->trigger();
        QCOMPARE(group->checkedAction(), group->actions()[2]);
        QVERIFY(!group->actions()[0]->isChecked());
    }

    void alertsAreWideEnoughForTheirTitle()
    {
        QMessageBox alert(QMessageBox::Information, "Export Succeeded — all tables written", "OK", QMessageBox::Ok);
        fitAlertToTitle(&alert);
        alert.show();
        QVERIFY(QTest::qWaitForWindowExposed(&alert));
        const int titleWidth =
            QFontMetrics(QApplication::font("QMdiSubWindowTitleBar")).horizontalAdvance(alert.windowTitle());
        QVERIFY2(alert.width() > titleWidth + 100, qPrintable(QString::number(alert.width())));
    }
};

VELLUM_GUI_TEST_MAIN(WindowEdgesTest)
#include "WindowEdgesTest.moc"
