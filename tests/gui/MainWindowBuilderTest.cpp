// The builder of the main window on a bare QMainWindow: the menu bar's titles, items and
// shortcuts, the toolbar's items and their export kinds, the settings and search options it
// reads, and the file list's context menu for each kind of row.

#include "guiTestSupport.h"

#include "app/support/SettingsStore.h"
#include "app/windows/MainWindowBuilder.h"
#include "browser/BrowserController.h"
#include "browser/RecentDocuments.h"
#include "export/ExportRoutines.h"
#include "model/TOrbMDBTable.h"

#include <QAction>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

#include <memory>

using namespace vellum;

namespace {

/// A menu as "text|shortcut|enabled" lines, "-" for a separator, "text>" for a submenu.
QStringList describe(const QMenu *menu)
{
    QStringList lines;
    for (const QAction *action : menu->actions()) {
        if (action->isSeparator())
            lines << "-";
        else if (action->menu())
            lines << action->text() + ">";
        else
            lines << action->text() + "|" + action->shortcut().toString() + "|" + (action->isEnabled() ? "on" : "off");
    }
    return lines;
}

QString keys(QKeySequence::StandardKey key)
{
    return QKeySequence(key).toString();
}

QString availability(ExportFileType kind)
{
    return isExportFileTypeAvailable(kind) ? "on" : "off";
}

} // namespace

class MainWindowBuilderTest : public QObject {
    Q_OBJECT

    struct Built {
        std::unique_ptr<QMainWindow> window = std::make_unique<QMainWindow>();
        MainWindowBuilder::Controls controls;
    };

    Built build(BrowserController &controller)
    {
        Built built;
        const std::array<bool, 5> flags{true, false, true, false, true};
        built.controls = MainWindowBuilder(*built.window, controller, flags).build();
        return built;
    }

private slots:
    void menuBarTitlesItemsAndShortcuts()
    {
        RecentDocuments recent;
        BrowserController controller(recent);
        const Built built = build(controller);
        const QList<QAction *> menus = built.window->menuBar()->actions();

        const std::pair<QString, QStringList> expected[] = {
            {"File",
             {"Open…|" + keys(QKeySequence::Open) + "|on", "Close File|Ctrl+W|on", "Export>",
              "Save As…|" + keys(QKeySequence::SaveAs) + "|off", "-", "Show in File Manager||on",
              "Remove from List||on", "Clear List||on", "-", "Quit Vellum|" + keys(QKeySequence::Quit) + "|on"}},
            {"Edit",
             {"Copy|" + keys(QKeySequence::Copy) + "|on", "Select All||on", "Deselect All|Ctrl+Shift+A|on", "-",
              "Jump to Row…|Ctrl+J|on", "Find|" + keys(QKeySequence::Find) + "|on"}},
            // The pane toggles' titles are the controller's to set.
            {"View",
             {"||on", "||on", "||on", "||on", "||on", "-", "Show Hidden Queries||on", "-",
              "Enter Full Screen|" + keys(QKeySequence::FullScreen) + "|on"}},
            {"Go", {"Back|" + keys(QKeySequence::Back) + "|off", "Forward|" + keys(QKeySequence::Forward) + "|off"}},
            {"Help", {"About Vellum||on"}},
        };
        QCOMPARE(menus.size(), int(std::size(expected)));
        for (int i = 0; i < menus.size(); ++i) {
            QCOMPARE(menus[i]->text(), expected[i].first);
            QCOMPARE(describe(menus[i]->menu()), expected[i].second);
        }
        // The Export submenu's items are enabled as available when the File menu opens (the
        // controller does that).
        const QMenu *exportMenu = menus[0]->menu()->actions()[2]->menu();
        QCOMPARE(describe(exportMenu), QStringList({"Export CSV||on", "Export TXT||on", "Export XML||on",
                                                    "Export JSON||on", "Export JSON Lines||on", "Export XLS||on",
                                                    "Export XLSX||on", "Export SQL||on", "Export SQLite||on"}));
    }

    void toolbarItemsCarryTheirKinds()
    {
        RecentDocuments recent;
        BrowserController controller(recent);
        SettingsStore::setHiddenToolbarItems({"exportXml", "search"});
        const Built built = build(controller);
        SettingsStore::setHiddenToolbarItems({});
        const MainWindowBuilder::Controls &controls = built.controls;

        QStringList names;
        QStringList hidden;
        for (const QAction *action : controls.toolbar->actions()) {
            if (action->objectName().isEmpty())
                continue;
            names << action->objectName();
            if (!action->isVisible())
                hidden << action->objectName();
        }
        QCOMPARE(names, QStringList({"navigationBack", "navigationNext", "open", "exportCsv", "exportTxt", "exportXml",
                                     "exportJson", "exportXls", "exportSql", "exportSqlite", "search"}));
        QCOMPARE(hidden, QStringList({"exportXml", "search"}));
        QCOMPARE(controls.toolbarBack->objectName(), QString("navigationBack"));
        QCOMPARE(controls.toolbarNext->objectName(), QString("navigationNext"));
        QCOMPARE(controls.toolbarOpen->objectName(), QString("open"));

        // The toolbar's seven export items, then the File menu's nine, each with the kind its
        // object name or menu data names.
        const std::pair<ExportFileType, QString> toolbarKinds[] = {
            {ExportFileType::CSV, "exportCsv"},       {ExportFileType::TXT, "exportTxt"},
            {ExportFileType::XML, "exportXml"},       {ExportFileType::JSON, "exportJson"},
            {ExportFileType::XLS, "exportXls"},       {ExportFileType::SQL, "exportSql"},
            {ExportFileType::SQLite, "exportSqlite"},
        };
        QCOMPARE(controls.exportActions.size(), std::size(toolbarKinds) + 9);
        for (std::size_t i = 0; i < controls.exportActions.size(); ++i) {
            const auto &[kind, action] = controls.exportActions[i];
            if (i < std::size(toolbarKinds)) {
                QCOMPARE(kind, toolbarKinds[i].first);
                QCOMPARE(action->objectName(), toolbarKinds[i].second);
                // A hidden action also reports itself disabled.
                QCOMPARE(action->isEnabled(), isExportFileTypeAvailable(kind) && action->isVisible());
                QVERIFY(action->isCheckable());
            } else {
                QCOMPARE(action->data().toInt(), int(kind) + 1);
            }
        }
    }

    void searchMenuFollowsTheControllersOptions()
    {
        const std::pair<bool, SearchOption> cases[] = {
            {true, SearchOption::Contains},
            {false, SearchOption::Equals},
            {true, SearchOption::EndsWith},
        };
        for (const auto &[ignoreCase, option] : cases) {
            RecentDocuments recent;
            BrowserController controller(recent);
            controller.setIgnoreCase(ignoreCase);
            controller.setSearchOption(option);
            const Built built = build(controller);
            const MainWindowBuilder::Controls &controls = built.controls;
            QCOMPARE(controls.ignoreCaseItem->data().toInt(), MainWindowBuilder::kTagIgnoreCase);
            QCOMPARE(controls.ignoreCaseItem->isChecked(), ignoreCase);
            for (int tag = 0; tag < 4; ++tag) {
                const QAction *mode = controls.searchModeItems[static_cast<std::size_t>(tag)];
                QCOMPARE(mode->data().toInt(), tag);
                QCOMPARE(mode->isChecked(), tag == int(option));
            }
            QStringList titles;
            for (const QAction *action : controls.searchMenu->actions())
                titles << (action->isSeparator() ? "[" + action->text() + "]" : action->text());
            QCOMPARE(titles, QStringList({"Ignore Case", "[Match]", "Contains", "Begins With", "Equals", "Ends With"}));
            QCOMPARE(controls.dataSearchField->maximumSize(), QSize(200, 22));
        }
    }

    void itemMenuForEachKindOfRow()
    {
        TOrbMDBFile file;
        TOrbMDBTable table;
        struct Case {
            const char *name;
            BrowserItem item;
            bool fileOpen;
            QStringList lines;
        };
        const Case cases[] = {
            {"closed file",
             BrowserItem::ofFile(&file),
             false,
             {"Open||on", "Close||off", "-", "Export>", "-", "Show in File Manager||on", "Remove from List||on",
              "Remove Other Files||on", "-", "Clear List||on"}},
            {"open file",
             BrowserItem::ofFile(&file),
             true,
             {"Open||off", "Close||on", "-", "Export>", "-", "Show in File Manager||on", "Remove from List||on",
              "Remove Other Files||on", "-", "Clear List||on"}},
            {"table", BrowserItem::ofTable(&table), false, {"Open in New Window||on", "-", "Export>"}},
            {"no row", BrowserItem(), false, {"Open…||on", "Clear List||on"}},
        };
        const QStringList exportLines = {
            "Export CSV||" + availability(ExportFileType::CSV),
            "Export TXT||" + availability(ExportFileType::TXT),
            "Export XML||" + availability(ExportFileType::XML),
            "Export JSON||" + availability(ExportFileType::JSON),
            "Export JSON Lines||" + availability(ExportFileType::JSONLines),
            "Export XLS||" + availability(ExportFileType::XLS),
            "Export XLSX||" + availability(ExportFileType::XLSX),
            "Export SQL||" + availability(ExportFileType::SQL),
            "Export SQLite||" + availability(ExportFileType::SQLite),
        };
        for (const Case &c : cases) {
            QWidget parent;
            const MainWindowBuilder::ItemMenu built = MainWindowBuilder::buildItemMenu(c.item, c.fileOpen, &parent);
            QVERIFY2(built.menu && built.menu->parent() == &parent, c.name);
            QCOMPARE(describe(built.menu), c.lines);
            QCOMPARE(built.exportActions.size(), std::size_t(9));
            for (const QAction *action : built.menu->actions()) {
                if (!action->menu())
                    continue;
                QCOMPARE(action->data().toInt(), MainWindowBuilder::kTagExportSubmenu);
                QCOMPARE(describe(action->menu()), exportLines);
            }
            // Exactly the row kind's commands are handed back for connecting.
            const bool isFile = c.item.isFile();
            QCOMPARE(built.open != nullptr, isFile);
            QCOMPARE(built.close != nullptr, isFile);
            QCOMPARE(built.showInFileManager != nullptr, isFile);
            QCOMPARE(built.removeFromList != nullptr, isFile);
            QCOMPARE(built.removeOtherFiles != nullptr, isFile);
            QCOMPARE(built.openInNewWindow != nullptr, c.item.isTable());
            QCOMPARE(built.openPanel != nullptr, c.item.isNone());
            QCOMPARE(built.clearList != nullptr, !c.item.isTable());
        }
    }
};

VELLUM_GUI_TEST_MAIN(MainWindowBuilderTest)
#include "MainWindowBuilderTest.moc"
