#include "app/windows/MainWindowBuilder.h"

#include "app/models/FileListModel.h"
#include "app/support/SettingsStore.h"
#include "app/support/applicationSetup.h"
#include "app/support/qtStrings.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/widgets/FileTreeView.h"
#include "app/widgets/InformationPane.h"
#include "browser/BrowserController.h"
#include "browser/localizedFormat.h"
#include "export/ExportRoutines.h"
#include "export/exportRegistry.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <optional>

namespace vellum {

namespace {

struct ToolbarItemDefinition {
    const char *identifier;
    const char *image;
    const char *label;
    const char *tooltip;
    std::optional<ExportFileType> kind; ///< the export kind of an export item
};

const ToolbarItemDefinition kToolbarItems[] = {
    {"navigationBack", "back_32x32", "Back", "Show the previous table", std::nullopt},
    {"navigationNext", "forward_32x32", "Next", "Show the next table", std::nullopt},
    {"open", "open_folder_32x32", "Open", "Open MDB files", std::nullopt},
    {"exportCsv", "CSV_32x32", "Export CSV", "Export CSV", ExportFileType::CSV},
    {"exportTxt", "TXT_32x32", "Export TXT", "Export TXT", ExportFileType::TXT},
    {"exportXml", "XML_32x32", "Export XML", "Export XML", ExportFileType::XML},
    {"exportJson", "JSON_32x32", "Export JSON", "Export JSON", ExportFileType::JSON},
    {"exportXls", "XLS_32x32", "Export XLS", "Export XLS", ExportFileType::XLS},
    {"exportSql", "SQL_32x32", "Export SQL", "Export SQL", ExportFileType::SQL},
    {"exportSqlite", "SQLite_32x32", "Export SQLite", "Export SQLite", ExportFileType::SQLite},
};

} // namespace

MainWindowBuilder::MainWindowBuilder(QMainWindow &window, BrowserController &controller,
                                     const std::array<bool, 5> &paneFlags)
    : m_window(window), m_controller(controller), m_paneFlags(paneFlags)
{
}

MainWindowBuilder::Controls MainWindowBuilder::build()
{
    Controls controls;
    buildPanes(controls);
    buildToolbar(controls);
    buildMenus(controls);
    return controls;
}

void MainWindowBuilder::buildPanes(Controls &controls)
{
    auto *central = new QWidget(&m_window);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    auto *mainSplitter = new QSplitter(Qt::Horizontal, central);
    mainSplitter->setChildrenCollapsible(false);

    controls.fileListPane = new QWidget(mainSplitter);
    auto *fileLayout = new QVBoxLayout(controls.fileListPane);
    fileLayout->setContentsMargins(4, 4, 0, 0);
    fileLayout->setSpacing(4);
    controls.fileSearchField = new QLineEdit(controls.fileListPane);
    controls.fileSearchField->setObjectName("fileSearchField");
    controls.fileSearchField->setPlaceholderText(localizedQ("Search"));
    controls.fileSearchField->setClearButtonEnabled(true);
    controls.fileSearchField->addAction(namedIcon("search"), QLineEdit::LeadingPosition);
    controls.fileTree = new FileTreeView(controls.fileListPane);
    controls.fileTree->setObjectName("fileTree");
    controls.fileModel = new FileListModel(m_controller, &m_window);
    controls.fileModel->setNumRowsShown(m_paneFlags[static_cast<std::size_t>(PaneFlag::NumRowsShown)]);
    controls.fileTree->setModel(controls.fileModel);
    fileLayout->addWidget(controls.fileSearchField);
    fileLayout->addWidget(controls.fileTree, 1);

    controls.dataView = new DataView(m_paneFlags[static_cast<std::size_t>(PaneFlag::TextViewShown)], mainSplitter);
    controls.dataView->setObjectName("dataView");
    controls.infoPane = new InformationPane(mainSplitter);
    controls.infoPane->setObjectName("informationPane");

    mainSplitter->addWidget(controls.fileListPane);
    mainSplitter->addWidget(controls.dataView);
    mainSplitter->addWidget(controls.infoPane);
    mainSplitter->setStretchFactor(0, 0);
    mainSplitter->setStretchFactor(1, 1);
    mainSplitter->setStretchFactor(2, 0);
    mainSplitter->setSizes({230, 600, 270});
    controls.fileListPane->setMinimumWidth(150);
    controls.infoPane->setMinimumWidth(200);
    layout->addWidget(mainSplitter, 1);

    auto *bottom = new QWidget(central);
    auto *bottomLayout = new QHBoxLayout(bottom);
    bottomLayout->setContentsMargins(4, 1, 4, 1);
    const auto makePaneButton = [bottom](const char *name, const QString &tip) {
        auto *button = new QToolButton(bottom);
        button->setObjectName(name);
        button->setCheckable(true);
        button->setAutoRaise(true);
        button->setIconSize(QSize(14, 14));
        button->setToolTip(tip);
        return button;
    };
    controls.btnFileTree = makePaneButton("btnFileTree", localizedQ("Show or hide the file list"));
    controls.btnTextView = makePaneButton("btnTextView", localizedQ("Show or hide the text view"));
    controls.btnInfoView = makePaneButton("btnInfoView", localizedQ("Show or hide the information view"));
    controls.statusBar = new QLabel(bottom);
    controls.statusBar->setObjectName("statusBar");
    controls.statusBar->setAlignment(Qt::AlignCenter);
    bottomLayout->addWidget(controls.btnFileTree);
    bottomLayout->addWidget(controls.statusBar, 1);
    bottomLayout->addWidget(controls.btnTextView);
    bottomLayout->addWidget(controls.btnInfoView);
    layout->addWidget(bottom);
    m_window.setCentralWidget(central);
}

void MainWindowBuilder::buildToolbar(Controls &controls)
{
    QToolBar *toolbar = new QToolBar(localizedQ("Toolbar"), &m_window);
    controls.toolbar = toolbar;
    toolbar->setObjectName("VellumToolbar");
    toolbar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    toolbar->setIconSize(QSize(28, 28));
    toolbar->setMovable(false);
    m_window.addToolBar(Qt::TopToolBarArea, toolbar);

    for (const ToolbarItemDefinition &entry : kToolbarItems) {
        QAction *action = toolbar->addAction(namedIcon(entry.image), localizedQ(entry.label));
        action->setObjectName(entry.identifier);
        action->setToolTip(localizedQ(entry.tooltip));
        action->setIconText(localizedQ(entry.label));
        const QString identifier = entry.identifier;
        if (identifier == "navigationBack") {
            action->setEnabled(false);
            controls.toolbarBack = action;
        } else if (identifier == "navigationNext") {
            action->setEnabled(false);
            controls.toolbarNext = action;
        } else if (identifier == "open") {
            action->setCheckable(true);
            controls.toolbarOpen = action;
        } else {
            action->setCheckable(true);
            controls.exportActions.emplace_back(*entry.kind, action);
        }
    }
    auto *spacer = new QWidget(toolbar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    toolbar->addWidget(spacer);

    controls.dataSearchField = new QLineEdit(toolbar);
    controls.dataSearchField->setObjectName("dataSearchField");
    controls.dataSearchField->setPlaceholderText(localizedQ("Search"));
    controls.dataSearchField->setClearButtonEnabled(true);
    controls.dataSearchField->setMinimumSize(40, 22);
    controls.dataSearchField->setMaximumSize(200, 22);
    controls.dataSearchField->setFixedHeight(22);
    controls.dataSearchField->resize(80, 22);
    buildSearchMenu(controls);
    QAction *searchItem = toolbar->addWidget(controls.dataSearchField);
    searchItem->setObjectName("search");
    searchItem->setText(localizedQ("Search"));
    // The export items start enabled as their kinds are available (the controller keeps them so).
    for (const auto &[kind, action] : controls.exportActions)
        action->setEnabled(isExportFileTypeAvailable(kind));

    // Customising: a right click on the toolbar lists its items to show or hide; the choice is
    // kept with the toolbar's other settings.
    const QStringList hidden = SettingsStore::hiddenToolbarItems();
    for (QAction *action : toolbar->actions())
        if (!action->objectName().isEmpty() && hidden.contains(action->objectName()))
            action->setVisible(false);
    toolbar->setContextMenuPolicy(Qt::CustomContextMenu);
    QMainWindow *window = &m_window;
    QObject::connect(toolbar, &QWidget::customContextMenuRequested, window, [window, toolbar](const QPoint &pos) {
        QMenu menu(window);
        for (QAction *action : toolbar->actions()) {
            if (action->objectName().isEmpty())
                continue;
            QAction *toggle = menu.addAction(action->text().isEmpty() ? action->objectName() : action->text());
            toggle->setCheckable(true);
            toggle->setChecked(action->isVisible());
            QObject::connect(toggle, &QAction::toggled, window, [toolbar, action](bool shown) {
                action->setVisible(shown);
                QStringList hiddenItems;
                for (QAction *item : toolbar->actions())
                    if (!item->objectName().isEmpty() && !item->isVisible())
                        hiddenItems << item->objectName();
                SettingsStore::setHiddenToolbarItems(hiddenItems);
            });
        }
        menu.exec(toolbar->mapToGlobal(pos));
    });
}

void MainWindowBuilder::buildSearchMenu(Controls &controls)
{
    QMenu *searchMenu = new QMenu(&m_window);
    controls.searchMenu = searchMenu;
    QAction *ignoreCase = searchMenu->addAction(localizedQ("Ignore Case"));
    ignoreCase->setData(kTagIgnoreCase);
    ignoreCase->setCheckable(true);
    ignoreCase->setChecked(m_controller.ignoreCase());
    controls.ignoreCaseItem = ignoreCase;
    QAction *modes = searchMenu->addSection(localizedQ("Match"));
    modes->setData(kTagModesStart);
    const char *titles[] = {"Contains", "Begins With", "Equals", "Ends With"};
    // One exclusive group: the styles draw its items as radio items, one of them checked.
    auto *modeGroup = new QActionGroup(searchMenu);
    modeGroup->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
    for (int tag = 0; tag < 4; ++tag) {
        QAction *mode = searchMenu->addAction(localizedQ(titles[tag]));
        modeGroup->addAction(mode);
        mode->setData(tag);
        mode->setCheckable(true);
        mode->setChecked(static_cast<int>(m_controller.searchOption()) == tag);
        controls.searchModeItems[static_cast<std::size_t>(tag)] = mode;
    }
    QLineEdit *field = controls.dataSearchField;
    QAction *menuButton = field->addAction(namedIcon("search"), QLineEdit::LeadingPosition);
    menuButton->setToolTip(localizedQ("Search options"));
    QObject::connect(menuButton, &QAction::triggered, &m_window,
                     [searchMenu, field] { searchMenu->exec(field->mapToGlobal(QPoint(0, field->height()))); });
}

void MainWindowBuilder::buildMenus(Controls &controls)
{
    QMainWindow *window = &m_window;
    QMenuBar *menuBar = m_window.menuBar();
    QMenu *fileMenu = menuBar->addMenu(localizedQ("File"));
    controls.fileMenu = fileMenu;
    controls.openItem = fileMenu->addAction(localizedQ("Open…"));
    controls.openItem->setShortcut(QKeySequence::Open);
    controls.closeItem = fileMenu->addAction(localizedQ("Close File"));
    controls.closeItem->setShortcut(QKeySequence(QStringLiteral("Ctrl+W")));
    QMenu *exportMenu = fileMenu->addMenu(localizedQ("Export"));
    for (const ExportFileType kind : exportMenuKinds()) {
        QAction *item = exportMenu->addAction(localizedQ(exportKindInfo(kind)->title));
        item->setData(static_cast<int>(kind) + 1); // menu items carry their kind plus one
        controls.exportActions.emplace_back(kind, item);
    }
    CopyableTableView *dataGrid = controls.dataView->grid();
    QAction *saveAs = fileMenu->addAction(localizedQ("Save As…"), dataGrid, &CopyableTableView::saveBlobAs);
    saveAs->setShortcut(QKeySequence::SaveAs);
    saveAs->setEnabled(false); // until the cell cursor is on a blob
    QObject::connect(dataGrid, &CopyableTableView::cellCursorChanged, saveAs,
                     [=] { saveAs->setEnabled(dataGrid->canSaveBlobAs()); });
    QObject::connect(dataGrid, &CopyableTableView::cellCursorLeft, saveAs, [=] { saveAs->setEnabled(false); });
    QObject::connect(fileMenu, &QMenu::aboutToShow, window, [=] { saveAs->setEnabled(dataGrid->canSaveBlobAs()); });
    fileMenu->addSeparator();
    controls.showInFileManagerItem = fileMenu->addAction(localizedQ("Show in File Manager"));
    controls.removeFromListItem = fileMenu->addAction(localizedQ("Remove from List"));
    controls.clearListItem = fileMenu->addAction(localizedQ("Clear List"));
    fileMenu->addSeparator();
    QAction *quit = fileMenu->addAction(
        toQString(localizedFormat("Quit %@", {QGuiApplication::applicationDisplayName().toStdString()})));
    quit->setShortcut(QKeySequence::Quit);
    QObject::connect(quit, &QAction::triggered, window, &QWidget::close);

    QMenu *editMenu = menuBar->addMenu(localizedQ("Edit"));
    CopyableTableView *grid = controls.dataView->grid();
    QAction *copy = editMenu->addAction(localizedQ("Copy"), grid, &CopyableTableView::copy);
    copy->setShortcut(QKeySequence::Copy);
    QAction *selectAll = editMenu->addAction(localizedQ("Select All"), grid, &CopyableTableView::selectAllRows);
    QAction *deselectAll = editMenu->addAction(localizedQ("Deselect All"), grid, &CopyableTableView::deselectAllRows);
    deselectAll->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+A")));
    editMenu->addSeparator();
    QAction *jump = editMenu->addAction(localizedQ("Jump to Row…"), grid, &CopyableTableView::jumpToRow);
    jump->setShortcut(QKeySequence(QStringLiteral("Ctrl+J")));
    controls.findItem = editMenu->addAction(localizedQ("Find"));
    controls.findItem->setShortcut(QKeySequence::Find);
    QObject::connect(editMenu, &QMenu::aboutToShow, window, [=] {
        copy->setEnabled(grid->canCopy());
        selectAll->setEnabled(grid->canSelectAll());
        deselectAll->setEnabled(grid->canDeselectAll());
        jump->setEnabled(grid->canJumpToRow());
    });

    QMenu *viewMenu = menuBar->addMenu(localizedQ("View"));
    for (QAction *&toggle : controls.paneToggles)
        toggle = viewMenu->addAction(QString());
    viewMenu->addSeparator();
    controls.showHiddenQueriesItem = viewMenu->addAction(localizedQ("Show Hidden Queries"));
    controls.showHiddenQueriesItem->setObjectName("showHiddenQueries");
    controls.showHiddenQueriesItem->setCheckable(true);
    controls.showHiddenQueriesItem->setChecked(false);
    viewMenu->addSeparator();
    controls.fullScreenItem = viewMenu->addAction(localizedQ("Enter Full Screen"));
    controls.fullScreenItem->setShortcut(QKeySequence::FullScreen);

    QMenu *goMenu = menuBar->addMenu(localizedQ("Go"));
    controls.backItem = goMenu->addAction(namedIcon("back_32x32"), localizedQ("Back"));
    controls.backItem->setShortcut(QKeySequence::Back);
    controls.backItem->setEnabled(false);
    controls.forwardItem = goMenu->addAction(namedIcon("forward_32x32"), localizedQ("Forward"));
    controls.forwardItem->setShortcut(QKeySequence::Forward);
    controls.forwardItem->setEnabled(false);

    QMenu *helpMenu = menuBar->addMenu(localizedQ("Help"));
    const QString name = QGuiApplication::applicationDisplayName();
    QAction *about = helpMenu->addAction(toQString(localizedFormat("About %@", {name.toStdString()})));
    QObject::connect(about, &QAction::triggered, window, [window, name] {
        QMessageBox::about(window, toQString(localizedFormat("About %@", {name.toStdString()})),
                           QStringLiteral("<b>%1</b> %2<br>%3")
                               .arg(name, QStringLiteral(VELLUM_VERSION),
                                    localizedQ("A viewer and converter for Microsoft Access databases.")));
    });
}

MainWindowBuilder::ItemMenu MainWindowBuilder::buildItemMenu(const BrowserItem &item, bool fileOpen, QWidget *parent)
{
    ItemMenu built;
    auto *menu = new QMenu(parent);
    built.menu = menu;
    QMenu *exportMenu = new QMenu(localizedQ("Export"), menu);
    exportMenu->menuAction()->setData(kTagExportSubmenu);
    for (const ExportFileType kind : exportMenuKinds()) {
        QAction *action = exportMenu->addAction(localizedQ(exportKindInfo(kind)->title));
        action->setData(static_cast<int>(kind) + 1);
        action->setEnabled(isExportFileTypeAvailable(kind));
        built.exportActions.emplace_back(kind, action);
    }
    if (item.isFile()) {
        built.open = menu->addAction(localizedQ("Open"));
        built.open->setEnabled(!fileOpen);
        built.close = menu->addAction(localizedQ("Close"));
        built.close->setEnabled(fileOpen);
        menu->addSeparator();
        menu->addMenu(exportMenu);
        menu->addSeparator();
        built.showInFileManager = menu->addAction(localizedQ("Show in File Manager"));
        built.removeFromList = menu->addAction(localizedQ("Remove from List"));
        built.removeOtherFiles = menu->addAction(localizedQ("Remove Other Files"));
        menu->addSeparator();
        built.clearList = menu->addAction(localizedQ("Clear List"));
    } else if (item.isTable()) {
        built.openInNewWindow = menu->addAction(localizedQ("Open in New Window"));
        menu->addSeparator();
        menu->addMenu(exportMenu);
    } else {
        built.openPanel = menu->addAction(localizedQ("Open…"));
        built.clearList = menu->addAction(localizedQ("Clear List"));
    }
    return built;
}

} // namespace vellum
