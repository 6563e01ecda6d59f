#include "app/windows/VellumAppDelegate.h"

#include "app/export/ExportWizard.h"
#include "app/models/FileListModel.h"
#include "app/models/TableDataModel.h"
#include "app/support/SettingsStore.h"
#include "app/support/applicationSetup.h"
#include "app/support/desktopServices.h"
#include "app/support/qtStrings.h"
#include "app/widgets/CopyableTableView.h"
#include "app/widgets/DataView.h"
#include "app/widgets/FileTreeView.h"
#include "app/widgets/InformationPane.h"
#include "app/windows/ChildWindow.h"
#include "browser/localizedFormat.h"
#include "browser/statusTexts.h"
#include "export/ExportRoutines.h"
#include "export/exportRegistry.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"
#include "util/localized.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QSplitter>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include <optional>

namespace vellum {

namespace {

constexpr int kTagIgnoreCase = 100;
constexpr int kTagModesStart = 101;
/// The tag copied into both context menus of the file list (the export submenu).
constexpr int kTagExportSubmenu = 10101;

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
    {"exportXls", "XLS_32x32", "Export XLS", "Export XLS", ExportFileType::XLS},
    {"exportSql", "SQL_32x32", "Export SQL", "Export SQL", ExportFileType::SQL},
    {"exportSqlite", "SQLite_32x32", "Export SQLite", "Export SQLite", ExportFileType::SQLite},
};

const std::pair<const char *, const char *> kToggleTitles[] = {
    {"Hide File List", "Show File List"},
    {"Hide Text View", "Show Text View"},
    {"Hide Information View", "Show Information View"},
    {"Hide Jump Bar", "Show Jump Bar"},
    {"Hide Row Count in File List", "Show Row Count in File List"},
};

RecentDocumentList &chooseRecentDocuments(const VellumAppDelegate::Options &options,
                                          std::unique_ptr<RecentDocuments> &own)
{
    if (options.recentDocuments)
        return *options.recentDocuments;
    own = std::make_unique<RecentDocuments>();
    return *own;
}

QString fileNameWithExtension(const TOrbMDBFile *file)
{
    return toQString(formatObjects("%@.%@", {file->name(), file->fileExtension()}));
}

} // namespace

VellumAppDelegate::VellumAppDelegate(const Options &options)
    : m_recentDocuments(chooseRecentDocuments(options, m_ownRecentDocuments)), m_controller(m_recentDocuments),
      m_openPanelWhenEmpty(options.openPanelWhenEmpty)
{
    setObjectName("mainWindow");
    setWindowTitle(QGuiApplication::applicationDisplayName());
    m_controller.setListener(this);
    m_loader = new FileLoader(this);
    for (int flag = 0; flag < 5; ++flag)
        m_paneFlags[static_cast<std::size_t>(flag)] = SettingsStore::paneFlag(static_cast<PaneFlag>(flag));

    buildInterface();
    SetupToolbar();
    buildMenus();
    applyPaneFlags();
    refreshRecentFiles();
    updateStatusBarForNoSelection();
    const QByteArray geometry = SettingsStore::windowGeometry();
    if (geometry.isEmpty() || !restoreGeometry(geometry))
        resize(1100, 680);
    restoreState(SettingsStore::toolbarState());
}

VellumAppDelegate::~VellumAppDelegate()
{
    if (m_wizard) {
        m_wizard->disconnect(this);
        delete m_wizard.data();
    }
    m_loader->shutdown();
    if (m_childWinManager)
        m_childWinManager->closeAll();
    m_dataView->jumpBar()->setMenu(nullptr);
    m_dataView->updateDataTableToShowMDBTable(nullptr);
    m_controller.setListener(nullptr);
}

// ---------------------------------------------------------------------------------------------
// Interface

void VellumAppDelegate::buildInterface()
{
    auto *central = new QWidget(this);
    auto *layout = new QVBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);

    m_mainSplitter = new QSplitter(Qt::Horizontal, central);
    m_mainSplitter->setChildrenCollapsible(false);

    m_fileListPane = new QWidget(m_mainSplitter);
    auto *fileLayout = new QVBoxLayout(m_fileListPane);
    fileLayout->setContentsMargins(4, 4, 0, 0);
    fileLayout->setSpacing(4);
    m_fileSearchField = new QLineEdit(m_fileListPane);
    m_fileSearchField->setObjectName("fileSearchField");
    m_fileSearchField->setPlaceholderText(localizedQ("Search"));
    m_fileSearchField->setClearButtonEnabled(true);
    m_fileSearchField->addAction(namedIcon("search"), QLineEdit::LeadingPosition);
    m_fileTree = new FileTreeView(m_fileListPane);
    m_fileTree->setObjectName("fileTree");
    m_fileModel = new FileListModel(m_controller, this);
    m_fileModel->setNumRowsShown(m_paneFlags[static_cast<std::size_t>(PaneFlag::NumRowsShown)]);
    m_fileTree->setModel(m_fileModel);
    fileLayout->addWidget(m_fileSearchField);
    fileLayout->addWidget(m_fileTree, 1);

    m_dataView = new DataView(m_paneFlags[static_cast<std::size_t>(PaneFlag::TextViewShown)], m_mainSplitter);
    m_dataView->setObjectName("dataView");
    m_dataView->setFilterProvider([this] { return m_controller.dataFilter(); });
    m_dataView->jumpBar()->setDelegate(this);
    m_infoPane = new InformationPane(m_mainSplitter);
    m_infoPane->setObjectName("informationPane");

    m_mainSplitter->addWidget(m_fileListPane);
    m_mainSplitter->addWidget(m_dataView);
    m_mainSplitter->addWidget(m_infoPane);
    m_mainSplitter->setStretchFactor(0, 0);
    m_mainSplitter->setStretchFactor(1, 1);
    m_mainSplitter->setStretchFactor(2, 0);
    m_mainSplitter->setSizes({230, 600, 270});
    m_fileListPane->setMinimumWidth(150);
    m_infoPane->setMinimumWidth(200);
    layout->addWidget(m_mainSplitter, 1);

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
    m_btnFileTree = makePaneButton("btnFileTree", localizedQ("Show or hide the file list"));
    m_btnTextView = makePaneButton("btnTextView", localizedQ("Show or hide the text view"));
    m_btnInfoView = makePaneButton("btnInfoView", localizedQ("Show or hide the information view"));
    m_statusBar = new QLabel(bottom);
    m_statusBar->setObjectName("statusBar");
    m_statusBar->setAlignment(Qt::AlignCenter);
    bottomLayout->addWidget(m_btnFileTree);
    bottomLayout->addWidget(m_statusBar, 1);
    bottomLayout->addWidget(m_btnTextView);
    bottomLayout->addWidget(m_btnInfoView);
    layout->addWidget(bottom);
    setCentralWidget(central);

    connect(m_btnFileTree, &QToolButton::clicked, this, &VellumAppDelegate::ToggleTreeView);
    connect(m_btnTextView, &QToolButton::clicked, this, &VellumAppDelegate::ToggleTextView);
    connect(m_btnInfoView, &QToolButton::clicked, this, &VellumAppDelegate::ToggleInformationView);

    connect(m_fileTree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &VellumAppDelegate::onTreeSelectionChanged);
    connect(m_fileTree, &QTreeView::clicked, this, &VellumAppDelegate::OnSingleClickfileTree);
    connect(m_fileTree, &QTreeView::doubleClicked, this, &VellumAppDelegate::OnDoubleClickFileTree);
    connect(m_fileTree, &QWidget::customContextMenuRequested, this, &VellumAppDelegate::onFileTreeContextMenu);
    connect(m_fileTree, &FileTreeView::filesDropped, this, [this](const QStringList &paths) {
        openPathsInTurn(paths, true);
    });
    connect(m_fileSearchField, &QLineEdit::textChanged, this, &VellumAppDelegate::fileSearchTextChanged);
    connect(m_dataView, &DataView::recordSelectionChanged, this, &VellumAppDelegate::updateStatusBarForRecordSelection);
}

void VellumAppDelegate::SetupToolbar()
{
    m_toolbar = new QToolBar(localizedQ("Toolbar"), this);
    m_toolbar->setObjectName("VellumToolbar");
    m_toolbar->setToolButtonStyle(Qt::ToolButtonIconOnly);
    m_toolbar->setIconSize(QSize(28, 28));
    m_toolbar->setMovable(false);
    addToolBar(Qt::TopToolBarArea, m_toolbar);

    for (const ToolbarItemDefinition &entry : kToolbarItems) {
        QAction *action = m_toolbar->addAction(namedIcon(entry.image), localizedQ(entry.label));
        action->setObjectName(entry.identifier);
        action->setToolTip(localizedQ(entry.tooltip));
        action->setIconText(localizedQ(entry.label));
        const QString identifier = entry.identifier;
        if (identifier == "navigationBack") {
            action->setEnabled(false);
            connect(action, &QAction::triggered, this, &VellumAppDelegate::PreviousSelectedTable);
        } else if (identifier == "navigationNext") {
            action->setEnabled(false);
            connect(action, &QAction::triggered, this, &VellumAppDelegate::NextSelectedTable);
        } else if (identifier == "open") {
            action->setCheckable(true);
            connect(action, &QAction::triggered, this, &VellumAppDelegate::OpenFile);
        } else {
            action->setCheckable(true);
            const ExportFileType kind = *entry.kind;
            connect(action, &QAction::triggered, this, [this, kind] { Export(kind); });
        }
    }
    auto *spacer = new QWidget(m_toolbar);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    m_toolbar->addWidget(spacer);

    m_dataSearchField = new QLineEdit(m_toolbar);
    m_dataSearchField->setObjectName("dataSearchField");
    m_dataSearchField->setPlaceholderText(localizedQ("Search"));
    m_dataSearchField->setClearButtonEnabled(true);
    m_dataSearchField->setMinimumSize(40, 22);
    m_dataSearchField->setMaximumSize(200, 22);
    m_dataSearchField->setFixedHeight(22);
    m_dataSearchField->resize(80, 22);
    buildSearchMenu();
    QAction *searchItem = m_toolbar->addWidget(m_dataSearchField);
    searchItem->setObjectName("search");
    searchItem->setText(localizedQ("Search"));
    connect(m_dataSearchField, &QLineEdit::textChanged, this, &VellumAppDelegate::dataSearchTextChanged);
    updateExportAvailability();

    // Customising: a right click on the toolbar lists its items to show or hide; the choice is
    // kept with the toolbar's other settings.
    const QStringList hidden = SettingsStore::hiddenToolbarItems();
    for (QAction *action : m_toolbar->actions())
        if (!action->objectName().isEmpty() && hidden.contains(action->objectName()))
            action->setVisible(false);
    m_toolbar->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_toolbar, &QWidget::customContextMenuRequested, this, [this](const QPoint &pos) {
        QMenu menu(this);
        for (QAction *action : m_toolbar->actions()) {
            if (action->objectName().isEmpty())
                continue;
            QAction *toggle = menu.addAction(action->text().isEmpty() ? action->objectName() : action->text());
            toggle->setCheckable(true);
            toggle->setChecked(action->isVisible());
            connect(toggle, &QAction::toggled, this, [this, action](bool shown) {
                action->setVisible(shown);
                QStringList hiddenItems;
                for (QAction *item : m_toolbar->actions())
                    if (!item->objectName().isEmpty() && !item->isVisible())
                        hiddenItems << item->objectName();
                SettingsStore::setHiddenToolbarItems(hiddenItems);
            });
        }
        menu.exec(m_toolbar->mapToGlobal(pos));
    });
}

void VellumAppDelegate::buildSearchMenu()
{
    m_searchMenu = new QMenu(this);
    QAction *ignoreCase = m_searchMenu->addAction(localizedQ("Ignore Case"));
    ignoreCase->setData(kTagIgnoreCase);
    ignoreCase->setCheckable(true);
    ignoreCase->setChecked(m_controller.ignoreCase());
    connect(ignoreCase, &QAction::triggered, this, &VellumAppDelegate::SetCaseForSearch);
    QAction *modes = m_searchMenu->addSection(localizedQ("Match"));
    modes->setData(kTagModesStart);
    const char *titles[] = {"Contains", "Begins With", "Equals", "Ends With"};
    for (int tag = 0; tag < 4; ++tag) {
        QAction *mode = m_searchMenu->addAction(localizedQ(titles[tag]));
        mode->setData(tag);
        mode->setCheckable(true);
        mode->setChecked(static_cast<int>(m_controller.searchOption()) == tag);
        connect(mode, &QAction::triggered, this, [this, tag] { SetSearchOption(tag); });
    }
    QAction *menuButton = m_dataSearchField->addAction(namedIcon("search"), QLineEdit::LeadingPosition);
    menuButton->setToolTip(localizedQ("Search options"));
    connect(menuButton, &QAction::triggered, this, [this] {
        m_searchMenu->exec(m_dataSearchField->mapToGlobal(QPoint(0, m_dataSearchField->height())));
    });
}

void VellumAppDelegate::buildMenus()
{
    QMenu *fileMenu = menuBar()->addMenu(localizedQ("File"));
    QAction *open = fileMenu->addAction(localizedQ("Open…"), this, &VellumAppDelegate::OpenFile);
    open->setShortcut(QKeySequence::Open);
    QAction *close = fileMenu->addAction(localizedQ("Close File"), this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            CloseSelectedFile(file);
    });
    close->setShortcut(QKeySequence(QStringLiteral("Ctrl+W")));
    QMenu *exportMenu = fileMenu->addMenu(localizedQ("Export"));
    for (const ExportFileType kind : exportMenuKinds()) {
        QAction *item = exportMenu->addAction(localizedQ(exportKindInfo(kind)->title));
        item->setData(static_cast<int>(kind) + 1); // menu items carry their kind plus one
        connect(item, &QAction::triggered, this, [this, kind] { Export(kind); });
        m_exportMenuItems.push_back(item);
    }
    fileMenu->addSeparator();
    fileMenu->addAction(localizedQ("Show in File Manager"), this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            ShowInFinder(file);
    });
    fileMenu->addAction(localizedQ("Remove from List"), this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            RemoveSelectedFile(file);
    });
    fileMenu->addAction(localizedQ("Clear List"), this, &VellumAppDelegate::clearRecentDocuments);
    fileMenu->addSeparator();
    QAction *quit = fileMenu->addAction(toQString(localizedFormat("Quit %@", {QGuiApplication::applicationDisplayName().toStdString()})),
                                        this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    connect(fileMenu, &QMenu::aboutToShow, this, [this, close] {
        close->setEnabled(m_controller.selectedFile() && m_controller.selectedFile()->active());
        updateExportAvailability();
    });

    QMenu *editMenu = menuBar()->addMenu(localizedQ("Edit"));
    CopyableTableView *grid = m_dataView->grid();
    QAction *copy = editMenu->addAction(localizedQ("Copy"), grid, &CopyableTableView::copy);
    copy->setShortcut(QKeySequence::Copy);
    QAction *selectAll = editMenu->addAction(localizedQ("Select All"), grid, &CopyableTableView::selectAllRows);
    QAction *deselectAll = editMenu->addAction(localizedQ("Deselect All"), grid, &CopyableTableView::deselectAllRows);
    deselectAll->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+A")));
    editMenu->addSeparator();
    QAction *jump = editMenu->addAction(localizedQ("Jump to Row…"), grid, &CopyableTableView::jumpToRow);
    jump->setShortcut(QKeySequence(QStringLiteral("Ctrl+J")));
    QAction *find = editMenu->addAction(localizedQ("Find"), this, &VellumAppDelegate::Find);
    find->setShortcut(QKeySequence::Find);
    connect(editMenu, &QMenu::aboutToShow, this, [=] {
        copy->setEnabled(grid->canCopy());
        selectAll->setEnabled(grid->canSelectAll());
        deselectAll->setEnabled(grid->canDeselectAll());
        jump->setEnabled(grid->canJumpToRow());
    });

    QMenu *viewMenu = menuBar()->addMenu(localizedQ("View"));
    const std::array<void (VellumAppDelegate::*)(), 5> toggles = {
        &VellumAppDelegate::ToggleTreeView, &VellumAppDelegate::ToggleTextView,
        &VellumAppDelegate::ToggleInformationView, &VellumAppDelegate::ToggleJumpBar, &VellumAppDelegate::ToggleNumRows};
    for (std::size_t flag = 0; flag < 5; ++flag)
        m_toggles[flag] = viewMenu->addAction(QString(), this, toggles[flag]);
    viewMenu->addSeparator();
    m_fullScreenAction = viewMenu->addAction(localizedQ("Enter Full Screen"), this, &VellumAppDelegate::ToggleFullScreen);
    m_fullScreenAction->setShortcut(QKeySequence::FullScreen);

    QMenu *goMenu = menuBar()->addMenu(localizedQ("Go"));
    m_menuitemBack = goMenu->addAction(namedIcon("back_32x32"), localizedQ("Back"), this,
                                       &VellumAppDelegate::PreviousSelectedTable);
    m_menuitemBack->setShortcut(QKeySequence::Back);
    m_menuitemBack->setEnabled(false);
    m_menuitemForward = goMenu->addAction(namedIcon("forward_32x32"), localizedQ("Forward"), this,
                                          &VellumAppDelegate::NextSelectedTable);
    m_menuitemForward->setShortcut(QKeySequence::Forward);
    m_menuitemForward->setEnabled(false);

    QMenu *helpMenu = menuBar()->addMenu(localizedQ("Help"));
    const QString name = QGuiApplication::applicationDisplayName();
    helpMenu->addAction(toQString(localizedFormat("About %@", {name.toStdString()})), this, [this, name] {
        QMessageBox::about(this, toQString(localizedFormat("About %@", {name.toStdString()})),
                           QStringLiteral("<b>%1</b> %2<br>%3")
                               .arg(name, QStringLiteral(VELLUM_VERSION),
                                    localizedQ("A viewer and converter for Microsoft Access databases.")));
    });
    updateToggleTitles();
}

QAction *VellumAppDelegate::toolbarAction(const QString &identifier) const
{
    for (QAction *action : m_toolbar->actions())
        if (action->objectName() == identifier)
            return action;
    return nullptr;
}

void VellumAppDelegate::updateExportAvailability()
{
    for (const ToolbarItemDefinition &entry : kToolbarItems)
        if (entry.kind)
            if (QAction *action = toolbarAction(entry.identifier))
                action->setEnabled(isExportFileTypeAvailable(*entry.kind));
    for (QAction *item : m_exportMenuItems)
        item->setEnabled(isExportFileTypeAvailable(static_cast<ExportFileType>(item->data().toInt() - 1)));
}

// ---------------------------------------------------------------------------------------------
// Panes

void VellumAppDelegate::applyPaneFlags()
{
    for (int flag = 0; flag < 5; ++flag)
        setPaneFlag(flag, m_paneFlags[static_cast<std::size_t>(flag)]);
}

void VellumAppDelegate::setPaneFlag(int flag, bool shown)
{
    m_paneFlags[static_cast<std::size_t>(flag)] = shown;
    switch (static_cast<PaneFlag>(flag)) {
    case PaneFlag::FileTreeShown:
        m_fileListPane->setVisible(shown);
        m_btnFileTree->setChecked(shown);
        m_btnFileTree->setIcon(namedIcon(shown ? "pane_left" : "pane_right"));
        break;
    case PaneFlag::TextViewShown:
        m_dataView->showHideBottomTextView(shown);
        m_btnTextView->setChecked(shown);
        m_btnTextView->setIcon(namedIcon(shown ? "pane_down" : "pane_up"));
        break;
    case PaneFlag::InformationViewShown:
        m_infoPane->setVisible(shown);
        m_btnInfoView->setChecked(shown);
        m_btnInfoView->setIcon(namedIcon(shown ? "pane_right" : "pane_left"));
        break;
    case PaneFlag::JumpBarShown:
        m_dataView->showHideJumpBar(shown);
        break;
    case PaneFlag::NumRowsShown:
        m_fileModel->setNumRowsShown(shown);
        reloadFileList();
        break;
    }
    updateToggleTitles();
}

void VellumAppDelegate::updateToggleTitles()
{
    for (std::size_t flag = 0; flag < 5; ++flag)
        if (m_toggles[flag])
            m_toggles[flag]->setText(localizedQ(m_paneFlags[flag] ? kToggleTitles[flag].first : kToggleTitles[flag].second));
}

void VellumAppDelegate::ToggleTreeView()
{
    setPaneFlag(static_cast<int>(PaneFlag::FileTreeShown), !m_paneFlags[static_cast<std::size_t>(PaneFlag::FileTreeShown)]);
}

void VellumAppDelegate::ToggleTextView()
{
    setPaneFlag(static_cast<int>(PaneFlag::TextViewShown), !m_paneFlags[static_cast<std::size_t>(PaneFlag::TextViewShown)]);
}

void VellumAppDelegate::ToggleInformationView()
{
    setPaneFlag(static_cast<int>(PaneFlag::InformationViewShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::InformationViewShown)]);
}

void VellumAppDelegate::ToggleJumpBar()
{
    setPaneFlag(static_cast<int>(PaneFlag::JumpBarShown), !m_paneFlags[static_cast<std::size_t>(PaneFlag::JumpBarShown)]);
}

void VellumAppDelegate::ToggleNumRows()
{
    setPaneFlag(static_cast<int>(PaneFlag::NumRowsShown), !m_paneFlags[static_cast<std::size_t>(PaneFlag::NumRowsShown)]);
}

void VellumAppDelegate::ToggleFullScreen()
{
    const bool entering = !isFullScreen();
    if (entering)
        showFullScreen();
    else
        showNormal();
    m_fullScreenAction->setText(localizedQ(entering ? "Exit Full Screen" : "Enter Full Screen"));
    if (m_childWinManager) {
        m_childWinManager->AllAlwaysOnTop(entering);
        // Back from full screen the main window goes behind the first child window.
        if (!entering && !m_childWinManager->childWins().empty())
            m_childWinManager->childWins().front()->raise();
    }
}

// ---------------------------------------------------------------------------------------------
// The file list

BrowserItem VellumAppDelegate::selectedTreeItem() const
{
    const QModelIndexList rows = m_fileTree->selectionModel()->selectedRows();
    return rows.isEmpty() ? BrowserItem() : m_fileModel->itemForIndex(rows.first());
}

BrowserItem VellumAppDelegate::commandTarget() const
{
    if (m_rightClicked)
        return *m_rightClicked;
    return selectedTreeItem();
}

void VellumAppDelegate::selectItemInTree(const BrowserItem &item, bool scroll)
{
    const QModelIndex index = m_fileModel->indexForItem(item);
    const bool ignoring = m_ignoreTreeSelection;
    m_ignoreTreeSelection = true;
    if (index.isValid()) {
        if (index.parent().isValid())
            m_fileTree->expand(index.parent());
        m_fileTree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        if (scroll)
            m_fileTree->scrollTo(index);
    } else {
        m_fileTree->selectionModel()->clearSelection();
    }
    m_ignoreTreeSelection = ignoring;
}

void VellumAppDelegate::expandFile(const TOrbMDBFile *file)
{
    const QModelIndex index = m_fileModel->indexForFile(file);
    if (index.isValid())
        m_fileTree->expand(index);
}

void VellumAppDelegate::collapseFile(const TOrbMDBFile *file)
{
    const QModelIndex index = m_fileModel->indexForFile(file);
    if (index.isValid())
        m_fileTree->collapse(index);
}

void VellumAppDelegate::reloadFileList()
{
    std::vector<const TOrbMDBFile *> expanded;
    for (int row = 0; row < m_fileModel->rowCount(); ++row) {
        const QModelIndex index = m_fileModel->index(row, 0);
        if (m_fileTree->isExpanded(index))
            expanded.push_back(m_fileModel->itemForIndex(index).file);
    }
    const BrowserItem selected = selectedTreeItem();
    const bool ignoring = m_ignoreTreeSelection;
    m_ignoreTreeSelection = true;
    m_fileModel->reload();
    for (const TOrbMDBFile *file : expanded)
        expandFile(file);
    if (!selected.isNone() && m_fileModel->indexForItem(selected).isValid())
        selectItemInTree(selected, false);
    m_ignoreTreeSelection = ignoring;
}

void VellumAppDelegate::onTreeSelectionChanged()
{
    if (m_ignoreTreeSelection)
        return;
    selectionDidChange(selectedTreeItem());
}

void VellumAppDelegate::OnSingleClickfileTree(const QModelIndex &index)
{
    const BrowserItem item = m_fileModel->itemForIndex(index);
    if (item.isTable()) {
        m_controller.history().recordVisit(item.table);
        updateHistoryButtons();
        refreshJumpBarMenu();
    }
}

void VellumAppDelegate::updateHistoryButtons()
{
    const NavigationHistory &history = m_controller.history();
    toolbarAction("navigationBack")->setEnabled(history.backEnabled());
    toolbarAction("navigationNext")->setEnabled(history.nextEnabled());
    m_menuitemBack->setEnabled(history.backEnabled());
    m_menuitemForward->setEnabled(history.nextEnabled());
}

void VellumAppDelegate::OnDoubleClickFileTree(const QModelIndex &index)
{
    const BrowserItem item = m_fileModel->itemForIndex(index);
    if (item.isFile()) {
        selectionDidChange(item);
        OpenSelectedFile(item.file);
    } else if (item.isTable()) {
        OpenTableInNewWindow(item.table);
    }
}

QMenu *VellumAppDelegate::contextMenuForItem(const BrowserItem &item)
{
    auto *menu = new QMenu(this);
    QMenu *exportMenu = new QMenu(localizedQ("Export"), menu);
    exportMenu->menuAction()->setData(kTagExportSubmenu);
    for (const ExportFileType kind : exportMenuKinds()) {
        QAction *action = exportMenu->addAction(localizedQ(exportKindInfo(kind)->title));
        action->setData(static_cast<int>(kind) + 1);
        action->setEnabled(isExportFileTypeAvailable(kind));
        connect(action, &QAction::triggered, this, [this, kind, item] { Export(kind, item); });
    }
    if (item.isFile()) {
        TOrbMDBFile *file = item.file;
        const bool open = m_controller.isOpen(file);
        menu->addAction(localizedQ("Open"), this, [this, file] { OpenSelectedFile(file); })->setEnabled(!open);
        menu->addAction(localizedQ("Close"), this, [this, file] { CloseSelectedFile(file); })->setEnabled(open);
        menu->addSeparator();
        menu->addMenu(exportMenu);
        menu->addSeparator();
        menu->addAction(localizedQ("Show in File Manager"), this, [this, file] { ShowInFinder(file); });
        menu->addAction(localizedQ("Remove from List"), this, [this, file] { RemoveSelectedFile(file); });
        menu->addAction(localizedQ("Remove Other Files"), this, [this, file] { RemoveOtherFiles(file); });
        menu->addSeparator();
        menu->addAction(localizedQ("Clear List"), this, &VellumAppDelegate::clearRecentDocuments);
    } else if (item.isTable()) {
        TOrbMDBTable *table = item.table;
        menu->addAction(localizedQ("Open in New Window"), this, [this, table] { OpenTableInNewWindow(table); });
        menu->addSeparator();
        menu->addMenu(exportMenu);
    } else {
        menu->addAction(localizedQ("Open…"), this, &VellumAppDelegate::OpenFile);
        menu->addAction(localizedQ("Clear List"), this, &VellumAppDelegate::clearRecentDocuments);
    }
    return menu;
}

void VellumAppDelegate::onFileTreeContextMenu(const QPoint &pos)
{
    const BrowserItem item = m_fileModel->itemForIndex(m_fileTree->indexAt(pos));
    QMenu *menu = contextMenuForItem(item);
    m_rightClicked = item;
    menu->exec(m_fileTree->viewport()->mapToGlobal(pos));
    m_rightClicked.reset();
    menu->deleteLater();
}

// ---------------------------------------------------------------------------------------------
// Selection, history, jump bar

void VellumAppDelegate::selectionDidChange(BrowserItem item)
{
    m_controller.selectionDidChange(item);
    if (item.isFile()) {
        m_infoPane->showFile(item.file);
        m_dataView->updateDataTableToShowMDBTable(nullptr);
        m_dataView->displayTextViewContent(std::nullopt);
        updateStatusBarForFileSelection();
    } else if (item.isTable()) {
        m_infoPane->showTable(item.table);
        m_dataView->updateDataTableToShowMDBTable(item.table);
        m_dataView->displayTextViewContent(std::nullopt);
        updateStatusBarForTableSelection();
    } else {
        m_infoPane->showFile(nullptr);
        m_dataView->updateDataTableToShowMDBTable(nullptr);
        m_dataView->displayTextViewContent(std::nullopt);
        updateStatusBarForNoSelection();
        return;
    }
    // The list and the jump bar follow the selection (without reporting it again).
    if (!(selectedTreeItem() == item))
        selectItemInTree(item);
    const bool refreshing = m_JumpBarMenuRefresh;
    m_JumpBarMenuRefresh = true;
    if (const JumpBarItem *location = locationItem(m_jumpBarMenu.get(), m_controller.selectedFile(),
                                                   m_controller.selectedTable()))
        m_dataView->jumpBar()->setSelectedMenuItem(location);
    m_JumpBarMenuRefresh = refreshing;
}

void VellumAppDelegate::refreshJumpBarMenu()
{
    std::unique_ptr<JumpBarMenu> menu = m_controller.makeJumpBarMenu();
    GCJumpBar *bar = m_dataView->jumpBar();
    m_JumpBarMenuRefresh = true;
    bar->clearSelection();
    bar->setMenu(menu.get());
    // The children take the new tree before the old one goes away.
    std::swap(m_jumpBarMenu, menu);
    if (m_childWinManager)
        m_childWinManager->refreshChildJumpBarMenu();
    menu.reset();
    if (m_jumpBarMenu)
        updateJumpBarSelection();
    m_JumpBarMenuRefresh = false;
}

void VellumAppDelegate::updateJumpBarSelection()
{
    if (const JumpBarItem *item = locationItem(m_jumpBarMenu.get(), m_controller.selectedFile(),
                                               m_controller.selectedTable()))
        m_dataView->jumpBar()->setSelectedMenuItem(item);
}

void VellumAppDelegate::jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path)
{
    if (m_JumpBarMenuRefresh)
        return;
    const JumpBarItem *item = bar->menuItemAtIndexPath(path);
    if (!item)
        return;
    const BrowserItem object = item->object;
    selectionDidChange(object);
    if (object.isTable() && !m_performBackForward) {
        m_controller.history().recordVisit(object.table);
        updateHistoryButtons();
    }
}

void VellumAppDelegate::jumpBarWillShowSubmenuAtIndexPath(GCJumpBar *, const IndexPath &path)
{
    childWillShowSubmenu(path);
}

void VellumAppDelegate::childWillShowSubmenu(const IndexPath &path)
{
    const JumpBarItem *item = m_jumpBarMenu ? m_jumpBarMenu->itemAtIndexPath(path) : nullptr;
    if (!item || !item->object.isFile())
        return;
    TOrbMDBFile *file = item->object.file;
    loadFile(file, [this, file](LoadResult result) {
        if (result == LoadResult::Failed) {
            showAlert(localizedQ("Error"), toQString(localizedFormat("File (%@) cannot be opened",
                                                                     {fileNameWithExtension(file).toStdString()})));
            return;
        }
        if (result != LoadResult::Opened)
            return;
        reloadFileList();
        expandFile(file);
        // The tree may have been rebuilt meanwhile: find the file's item again.
        if (m_jumpBarMenu)
            for (const auto &top : m_jumpBarMenu->items())
                if (top->object.file == file && !top->submenu)
                    addTableItems(*top);
        m_dataView->jumpBar()->menuTreeChanged();
        if (m_childWinManager)
            m_childWinManager->childMenuTreeChanged();
    });
}

bool VellumAppDelegate::showHistoryTarget(TOrbMDBTable *target)
{
    m_controller.setSelectedTable(target);
    m_performBackForward = true;
    updateJumpBarSelection();
    m_performBackForward = false;
    const JumpBarItem *shown = m_dataView->jumpBar()->selectedMenuItem();
    return shown && shown->object.table == target;
}

void VellumAppDelegate::PreviousSelectedTable()
{
    if (!m_controller.history().backEnabled())
        return;
    m_controller.history().goBack([this](TOrbMDBTable *target) { return showHistoryTarget(target); });
    updateHistoryButtons();
}

void VellumAppDelegate::NextSelectedTable()
{
    if (!m_controller.history().nextEnabled())
        return;
    m_controller.history().goNext([this](TOrbMDBTable *target) { return showHistoryTarget(target); });
    updateHistoryButtons();
}

// ---------------------------------------------------------------------------------------------
// Status texts

void VellumAppDelegate::updateStatusBarForNoSelection()
{
    m_statusBar->setText(toQString(m_controller.statusForNoSelection()));
}

void VellumAppDelegate::updateStatusBarForFileSelection()
{
    m_statusBar->setText(toQString(m_controller.statusForFileSelection()));
}

void VellumAppDelegate::updateStatusBarForTableSelection()
{
    m_statusBar->setText(toQString(m_controller.statusForTableSelection()));
}

void VellumAppDelegate::updateStatusBarForRecordSelection()
{
    CopyableTableView *grid = m_dataView->grid();
    QModelIndexList rows = grid->selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    const std::size_t first = rows.isEmpty() ? 0 : static_cast<std::size_t>(rows.first().row());
    m_statusBar->setText(toQString(statusForRecordSelection(static_cast<std::size_t>(rows.size()), first,
                                                            static_cast<std::size_t>(m_dataView->dataModel()->rowCount()))));
}

// ---------------------------------------------------------------------------------------------
// Search

void VellumAppDelegate::fileSearchTextChanged(const QString &text)
{
    m_controller.setFileSearchText(text.toStdString());
    const BrowserItem remembered = selectedTreeItem();
    m_ignoreTreeSelection = true;
    m_fileModel->reload();
    if (m_controller.useFileFilter())
        for (TOrbMDBFile *file : m_controller.fileEntities())
            if (m_controller.isOpen(file))
                expandFile(file);
    m_dataView->updateDataTableToShowMDBTable(m_controller.selectedTable());
    const JumpBarItem *shown = m_dataView->jumpBar()->selectedMenuItem();
    if (!remembered.isNone() && m_fileModel->indexForItem(remembered).isValid() && shown && shown->object == remembered)
        selectItemInTree(remembered, false);
    else
        m_fileTree->selectionModel()->clearSelection();
    m_ignoreTreeSelection = false;
    if (!m_controller.selectedTable()) {
        m_controller.history().enableBackForSingleEntry();
        updateHistoryButtons();
    }
    if (m_controller.selectedTable())
        updateStatusBarForTableSelection();
    else if (m_controller.selectedFile())
        updateStatusBarForFileSelection();
    else
        updateStatusBarForNoSelection();
}

void VellumAppDelegate::dataSearchTextChanged(const QString &text)
{
    m_controller.setDataSearchText(text.toStdString());
    m_dataView->reloadKeepingSelection();
    updateStatusBarForRecordSelection();
}

void VellumAppDelegate::SetSearchOption(int tag)
{
    bool afterStart = false;
    for (QAction *action : m_searchMenu->actions()) {
        if (action->data().toInt() == kTagModesStart && action->isSeparator()) {
            afterStart = true;
            continue;
        }
        if (afterStart)
            action->setChecked(action->data().toInt() == tag);
    }
    m_controller.setSearchOption(static_cast<SearchOption>(tag));
    m_dataView->reloadKeepingSelection();
}

void VellumAppDelegate::SetCaseForSearch()
{
    for (QAction *action : m_searchMenu->actions())
        if (action->data().toInt() == kTagIgnoreCase && !action->isSeparator())
            m_controller.setIgnoreCase(action->isChecked());
    m_dataView->reloadKeepingSelection();
}

void VellumAppDelegate::Find()
{
    m_dataSearchField->setFocus(Qt::ShortcutFocusReason);
    m_dataSearchField->selectAll();
}

// ---------------------------------------------------------------------------------------------
// Opening and closing files

bool VellumAppDelegate::busy() const
{
    return m_loader->isBusy() || !m_wizard.isNull();
}

void VellumAppDelegate::runDeferredRefresh()
{
    if (busy())
        return;
    if (m_closeWhenIdle) {
        m_closeWhenIdle = false;
        close();
        return;
    }
    if (m_refreshPending) {
        m_refreshPending = false;
        refreshRecentFiles();
    }
}

void VellumAppDelegate::refreshRecentFiles()
{
    if (busy()) {
        m_refreshPending = true;
        return;
    }
    const bool showDropHint = m_controller.refreshRecentFiles();
    m_fileTree->setDropHintVisible(showDropHint);
    reloadFileList();
    const BrowserItem selected = selectedTreeItem();
    if (!selected.isNone() && !m_controller.selectedFile()) {
        m_ignoreTreeSelection = true;
        m_fileTree->selectionModel()->clearSelection();
        m_ignoreTreeSelection = false;
    }
    if (m_controller.selectedTable())
        selectItemInTree(BrowserItem::ofTable(m_controller.selectedTable()));
    else if (m_controller.selectedFile())
        selectItemInTree(BrowserItem::ofFile(m_controller.selectedFile()));
    else if (const QModelIndexList rows = m_fileTree->selectionModel()->selectedRows(); !rows.isEmpty())
        m_fileTree->scrollTo(rows.first());
    refreshJumpBarMenu();
}

void VellumAppDelegate::loadFile(TOrbMDBFile *file, std::function<void(LoadResult)> done)
{
    if (m_controller.isOpen(file)) {
        done(LoadResult::Opened);
        return;
    }
    if (m_loader->isBusy()) {
        QApplication::beep();
        done(LoadResult::Cancelled);
        return;
    }
    m_controller.setLoadingFile(file);
    m_loader->open(file, [this, done = std::move(done)](LoadResult result) {
        m_controller.setLoadingFile(nullptr);
        done(result);
        QTimer::singleShot(0, this, &VellumAppDelegate::runDeferredRefresh);
    });
}

void VellumAppDelegate::OpenFile()
{
    QStringList paths;
    if (m_openPanel) {
        paths = m_openPanel();
    } else {
        QFileDialog dialog(this, localizedQ("Open"));
        dialog.setFileMode(QFileDialog::ExistingFiles);
        dialog.setNameFilter(localizedQ("Access databases") + QStringLiteral(" (*.mdb *.accdb *.MDB *.ACCDB)"));
        if (dialog.exec() == QDialog::Accepted)
            paths = dialog.selectedFiles();
    }
    if (paths.isEmpty()) {
        refreshRecentFiles();
        deselectAllForToolbarItems();
        emit openFinished();
        return;
    }
    openPathsInTurn(paths, true);
}

void VellumAppDelegate::openFiles(const QStringList &paths)
{
    refreshRecentFiles();
    openPathsInTurn(paths, true);
}

void VellumAppDelegate::openPathsInTurn(QStringList paths, bool alertAsPanel)
{
    while (!paths.isEmpty() && !hasDatabaseExtension(paths.first().toStdString()))
        paths.removeFirst(); // other files are skipped without a message
    if (paths.isEmpty()) {
        refreshRecentFiles();
        deselectAllForToolbarItems();
        emit openFinished();
        return;
    }
    if (m_loader->isBusy()) {
        QApplication::beep();
        return;
    }
    const QString path = QFileInfo(paths.takeFirst()).absoluteFilePath();
    TOrbMDBFile *file = m_controller.findMDBFileByPath(path.toStdString());
    reloadFileList();
    loadFile(file, [this, file, path, paths, alertAsPanel](LoadResult result) {
        if (result == LoadResult::Opened) {
            m_controller.noteRecentDocument(file);
            m_fileTree->setDropHintVisible(false);
            reloadFileList();
            expandFile(file);
            const QModelIndex index = m_fileModel->indexForFile(file);
            m_fileTree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
            m_fileTree->scrollTo(index);
        } else if (result == LoadResult::Failed) {
            m_controller.clearSelection();
            popFileOpenAlert(QFileInfo(path).fileName());
        }
        // The next path after the loader's own bookkeeping is done.
        QTimer::singleShot(0, this, [this, paths, alertAsPanel] { openPathsInTurn(paths, alertAsPanel); });
    });
}

void VellumAppDelegate::OpenSelectedFile(TOrbMDBFile *file)
{
    if (!file)
        return;
    loadFile(file, [this, file](LoadResult result) {
        if (result == LoadResult::Failed) {
            popFileOpenAlert(fileNameWithExtension(file));
        } else if (result == LoadResult::Opened) {
            m_controller.noteRecentDocument(file);
            refreshRecentFiles();
            expandFile(file);
            if (!m_fileTree->selectionModel()->hasSelection())
                selectItemInTree(BrowserItem::ofFile(file));
            updateStatusBarForFileSelection();
        }
        emit openFinished();
    });
}

void VellumAppDelegate::closeFile(TOrbMDBFile *file)
{
    m_controller.closeFile(file);
}

void VellumAppDelegate::fileWillClose(TOrbMDBFile *file)
{
    updateHistoryButtons(); // the file's tables have left the history
    if (m_childWinManager)
        m_childWinManager->closeChildrenForFile(file);
    m_dataView->jumpBar()->setMenu(nullptr);
    collapseFile(file);
    if (!m_controller.selectedFile())
        m_dataView->updateDataTableToShowMDBTable(nullptr);
}

void VellumAppDelegate::selectedTableCleared()
{
    m_dataView->updateDataTableToShowMDBTable(nullptr);
    m_dataView->displayTextViewContent(std::nullopt);
    m_infoPane->showFile(m_controller.selectedFile());
}

void VellumAppDelegate::CloseSelectedFile(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    const bool wasSelected = file == m_controller.selectedFile();
    BrowserItem keep = selectedTreeItem();
    if (wasSelected) {
        m_controller.clearSelection();
        m_dataView->updateDataTableToShowMDBTable(nullptr);
        m_dataView->displayTextViewContent(std::nullopt);
        m_infoPane->showFile(nullptr);
        keep = BrowserItem();
    }
    closeFile(file);
    reloadFileList();
    refreshJumpBarMenu();
    selectItemInTree(keep, false);
    updateStatusBarForFileSelection();
}

void VellumAppDelegate::RemoveSelectedFile(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    if (file == m_controller.selectedFile()) {
        m_controller.clearSelection();
        m_dataView->updateDataTableToShowMDBTable(nullptr);
        m_dataView->displayTextViewContent(std::nullopt);
        m_infoPane->showFile(nullptr);
    }
    m_ignoreTreeSelection = true;
    m_controller.removeFile(file);
    m_fileModel->reload();
    m_ignoreTreeSelection = false;
    refreshRecentFiles();
    updateStatusBarForNoSelection();
}

void VellumAppDelegate::RemoveOtherFiles(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    m_ignoreTreeSelection = true;
    m_controller.removeOtherFiles(file);
    m_fileModel->reload();
    m_ignoreTreeSelection = false;
    refreshRecentFiles();
    updateStatusBarForFileSelection();
}

void VellumAppDelegate::clearRecentDocuments()
{
    if (busy())
        return;
    m_ignoreTreeSelection = true;
    m_controller.clearRecentDocuments();
    m_dataView->updateDataTableToShowMDBTable(nullptr);
    m_dataView->displayTextViewContent(std::nullopt);
    m_infoPane->showFile(nullptr);
    m_fileModel->reload();
    m_ignoreTreeSelection = false;
    refreshJumpBarMenu();
    updateStatusBarForFileSelection();
    m_fileTree->setDropHintVisible(true);
}

void VellumAppDelegate::ShowInFinder(TOrbMDBFile *file)
{
    if (file)
        revealInFileManager(toQString(file->fullPath()));
}

void VellumAppDelegate::popFileOpenAlert(const QString &fileName)
{
    showAlert(localizedQ("Error"), toQString(localizedFormat("File (%@) cannot be opened", {fileName.toStdString()})));
}

void VellumAppDelegate::showAlert(const QString &title, const QString &text)
{
    if (m_alert) {
        m_alert(title, text);
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok, this);
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void VellumAppDelegate::deselectAllForToolbarItems()
{
    for (QAction *action : m_toolbar->actions())
        if (action->isCheckable())
            action->setChecked(false);
}

// ---------------------------------------------------------------------------------------------
// Export and child windows

void VellumAppDelegate::Export(ExportFileType kind, std::optional<BrowserItem> target)
{
    const BrowserItem item = target ? *target : commandTarget();
    if (item.isNone()) {
        showAlert(localizedQ("No MDB File selected."), localizedQ("Please select a file from the file list first."));
        deselectAllForToolbarItems();
        return;
    }
    if (!isExportFileTypeAvailable(kind) || busy()) {
        deselectAllForToolbarItems();
        return;
    }
    TOrbMDBFile *file = item.isFile() ? item.file : item.table->file();
    TOrbMDBTable *table = item.table;
    loadFile(file, [this, file, table, kind](LoadResult result) {
        if (result != LoadResult::Opened) {
            if (result == LoadResult::Failed)
                popFileOpenAlert(fileNameWithExtension(file));
            deselectAllForToolbarItems();
            return;
        }
        reloadFileList();
        startExportWizard(file, table, kind);
    });
}

void VellumAppDelegate::startExportWizard(TOrbMDBFile *file, TOrbMDBTable *table, ExportFileType kind)
{
    auto *wizard = new ExportWizard(*file, table, kind, this);
    m_wizard = wizard;
    connect(wizard, &QDialog::rejected, this, &VellumAppDelegate::deselectAllForToolbarItems);
    connect(wizard, &ExportWizard::exportFinished, this, &VellumAppDelegate::deselectAllForToolbarItems);
    connect(wizard, &QObject::destroyed, this, [this] {
        deselectAllForToolbarItems();
        QTimer::singleShot(0, this, &VellumAppDelegate::runDeferredRefresh);
    });
    emit exportWizardCreated(wizard);
    wizard->open();
}

void VellumAppDelegate::OpenTableInNewWindow(TOrbMDBTable *table)
{
    if (!table)
        return;
    if (!m_childWinManager)
        m_childWinManager = new ChildWindowManager(*this, this);
    m_childWinManager->createChildWindow(table);
}

void VellumAppDelegate::openFileForChild(TOrbMDBFile *file, std::function<void(bool opened)> done)
{
    loadFile(file, [this, file, done = std::move(done)](LoadResult result) {
        if (result == LoadResult::Failed)
            popFileOpenAlert(fileNameWithExtension(file));
        if (result == LoadResult::Opened) {
            refreshRecentFiles();
            expandFile(file);
        }
        done(result == LoadResult::Opened);
    });
}

// ---------------------------------------------------------------------------------------------
// Window life

void VellumAppDelegate::applicationDidFinishLaunching()
{
    raise();
    activateWindow();
    if (m_openPanelWhenEmpty && m_controller.recentFiles().empty())
        QTimer::singleShot(0, this, &VellumAppDelegate::OpenFile);
}

void VellumAppDelegate::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && !m_quitting)
        refreshRecentFiles();
}

void VellumAppDelegate::saveState()
{
    for (int flag = 0; flag < 5; ++flag)
        SettingsStore::setPaneFlag(static_cast<PaneFlag>(flag), m_paneFlags[static_cast<std::size_t>(flag)]);
    SettingsStore::setToolbarState(QMainWindow::saveState());
    SettingsStore::setWindowGeometry(saveGeometry());
    SettingsStore::flush();
}

void VellumAppDelegate::closeEvent(QCloseEvent *event)
{
    if (m_wizard && m_wizard->progressLabel()) {
        // An export runs: stop it and close once its report is in.
        m_wizard->job().stop();
        m_closeWhenIdle = true;
        event->ignore();
        return;
    }
    m_quitting = true;
    m_loader->shutdown();
    m_controller.setLoadingFile(nullptr);
    saveState();
    if (m_childWinManager)
        m_childWinManager->closeAll();
    m_dataView->jumpBar()->setMenu(nullptr);
    m_jumpBarMenu.reset();
    m_dataView->updateDataTableToShowMDBTable(nullptr);
    m_ignoreTreeSelection = true;
    m_controller.closeAll();
    m_fileModel->reload();
    event->accept();
}

} // namespace vellum
