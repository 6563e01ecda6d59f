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
#include "app/windows/MainWindowBuilder.h"
#include "browser/linkedDatabases.h"
#include "browser/localizedFormat.h"
#include "browser/statusTexts.h"
#include "export/ExportRoutines.h"
#include "loader/chooseFileReader.h"
#include "model/TOrbMDBFile.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/logging.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace vellum {

namespace {

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
    std::shared_ptr<FileReader> reader = options.reader;
    if (!reader)
        reader = chooseFileReader([](const std::string &line) { C_LogError("%s", line.c_str()); });
    m_loader = new FileLoader(this, std::move(reader));
    for (int flag = 0; flag < 5; ++flag)
        m_paneFlags[static_cast<std::size_t>(flag)] = SettingsStore::paneFlag(static_cast<PaneFlag>(flag));

    adoptInterface(MainWindowBuilder(*this, m_controller, m_paneFlags).build());
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

void VellumAppDelegate::adoptInterface(const MainWindowBuilder::Controls &controls)
{
    m_fileListPane = controls.fileListPane;
    m_fileSearchField = controls.fileSearchField;
    m_fileTree = controls.fileTree;
    m_fileModel = controls.fileModel;
    m_dataView = controls.dataView;
    m_infoPane = controls.infoPane;
    m_statusBar = controls.statusBar;
    m_btnFileTree = controls.btnFileTree;
    m_btnTextView = controls.btnTextView;
    m_btnInfoView = controls.btnInfoView;
    m_toolbar = controls.toolbar;
    m_dataSearchField = controls.dataSearchField;
    m_searchMenu = controls.searchMenu;
    m_menuitemBack = controls.backItem;
    m_menuitemForward = controls.forwardItem;
    m_fullScreenAction = controls.fullScreenItem;
    m_showHiddenQueriesItem = controls.showHiddenQueriesItem;
    m_toggles = controls.paneToggles;
    m_exportActions = controls.exportActions;

    // The panes: the grid filters through the controller, the jump bar reports here.
    m_dataView->setFilterProvider([this] { return m_controller.dataFilter(); });
    m_dataView->jumpBar()->setDelegate(this);
    connect(m_btnFileTree, &QToolButton::clicked, this, &VellumAppDelegate::ToggleTreeView);
    connect(m_btnTextView, &QToolButton::clicked, this, &VellumAppDelegate::ToggleTextView);
    connect(m_btnInfoView, &QToolButton::clicked, this, &VellumAppDelegate::ToggleInformationView);

    connect(m_fileTree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &VellumAppDelegate::onTreeSelectionChanged);
    connect(m_fileTree, &QTreeView::doubleClicked, this, &VellumAppDelegate::OnDoubleClickFileTree);
    connect(m_fileTree, &QWidget::customContextMenuRequested, this, &VellumAppDelegate::onFileTreeContextMenu);
    connect(m_fileTree, &FileTreeView::filesDropped, this,
            [this](const QStringList &paths) { openPathsInTurn(paths, true); });
    connect(m_fileSearchField, &QLineEdit::textChanged, this, &VellumAppDelegate::fileSearchTextChanged);
    connect(m_dataView, &DataView::recordSelectionChanged, this, &VellumAppDelegate::updateStatusBarForRecordSelection);

    // The toolbar and the data search field's menu.
    connect(controls.toolbarBack, &QAction::triggered, this, &VellumAppDelegate::PreviousSelectedTable);
    connect(controls.toolbarNext, &QAction::triggered, this, &VellumAppDelegate::NextSelectedTable);
    connect(controls.toolbarOpen, &QAction::triggered, this, &VellumAppDelegate::OpenFile);
    for (const auto &[kind, action] : m_exportActions) {
        const ExportFileType k = kind;
        connect(action, &QAction::triggered, this, [this, k] { Export(k); });
    }
    connect(m_dataSearchField, &QLineEdit::textChanged, this, &VellumAppDelegate::dataSearchTextChanged);
    connect(controls.ignoreCaseItem, &QAction::triggered, this, &VellumAppDelegate::SetCaseForSearch);
    for (int tag = 0; tag < 4; ++tag)
        connect(controls.searchModeItems[static_cast<std::size_t>(tag)], &QAction::triggered, this,
                [this, tag] { SetSearchOption(tag); });

    // The menus.
    connect(controls.openItem, &QAction::triggered, this, &VellumAppDelegate::OpenFile);
    QAction *close = controls.closeItem;
    connect(close, &QAction::triggered, this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            CloseSelectedFile(file);
    });
    connect(controls.showInFileManagerItem, &QAction::triggered, this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            ShowInFinder(file);
    });
    connect(controls.removeFromListItem, &QAction::triggered, this, [this] {
        if (TOrbMDBFile *file = m_controller.selectedFile())
            RemoveSelectedFile(file);
    });
    connect(controls.clearListItem, &QAction::triggered, this, &VellumAppDelegate::clearRecentDocuments);
    connect(controls.fileMenu, &QMenu::aboutToShow, this, [this, close] {
        close->setEnabled(m_controller.selectedFile() && m_controller.selectedFile()->active());
        updateExportAvailability();
    });
    connect(controls.findItem, &QAction::triggered, this, &VellumAppDelegate::Find);
    const std::array<void (VellumAppDelegate::*)(), 5> toggles = {
        &VellumAppDelegate::ToggleTreeView, &VellumAppDelegate::ToggleTextView,
        &VellumAppDelegate::ToggleInformationView, &VellumAppDelegate::ToggleJumpBar,
        &VellumAppDelegate::ToggleNumRows};
    for (std::size_t flag = 0; flag < 5; ++flag)
        connect(m_toggles[flag], &QAction::triggered, this, toggles[flag]);
    connect(m_fullScreenAction, &QAction::triggered, this, &VellumAppDelegate::ToggleFullScreen);
    connect(m_showHiddenQueriesItem, &QAction::toggled, this, &VellumAppDelegate::ShowHiddenQueries);
    connect(m_menuitemBack, &QAction::triggered, this, &VellumAppDelegate::PreviousSelectedTable);
    connect(m_menuitemForward, &QAction::triggered, this, &VellumAppDelegate::NextSelectedTable);
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
    for (const auto &[kind, action] : m_exportActions)
        action->setEnabled(isExportFileTypeAvailable(kind));
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
        m_fileModel->setNumRowsShown(shown); // the texts change in place: rows stay expanded and selected
        break;
    }
    updateToggleTitles();
}

void VellumAppDelegate::updateToggleTitles()
{
    for (std::size_t flag = 0; flag < 5; ++flag)
        if (m_toggles[flag])
            m_toggles[flag]->setText(
                localizedQ(m_paneFlags[flag] ? kToggleTitles[flag].first : kToggleTitles[flag].second));
}

void VellumAppDelegate::ToggleTreeView()
{
    setPaneFlag(static_cast<int>(PaneFlag::FileTreeShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::FileTreeShown)]);
}

void VellumAppDelegate::ToggleTextView()
{
    setPaneFlag(static_cast<int>(PaneFlag::TextViewShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::TextViewShown)]);
}

void VellumAppDelegate::ToggleInformationView()
{
    setPaneFlag(static_cast<int>(PaneFlag::InformationViewShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::InformationViewShown)]);
}

void VellumAppDelegate::ToggleJumpBar()
{
    setPaneFlag(static_cast<int>(PaneFlag::JumpBarShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::JumpBarShown)]);
}

void VellumAppDelegate::ToggleNumRows()
{
    setPaneFlag(static_cast<int>(PaneFlag::NumRowsShown),
                !m_paneFlags[static_cast<std::size_t>(PaneFlag::NumRowsShown)]);
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
    if (index.isValid()) {
        if (index.parent().isValid())
            m_fileTree->expand(index.parent());
        m_fileTree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        if (scroll)
            m_fileTree->scrollTo(index);
    } else {
        m_fileTree->selectionModel()->clearSelection();
    }
}

BrowserItem VellumAppDelegate::listedSelection() const
{
    const BrowserItem &item = m_controller.selection();
    return m_fileModel->indexForItem(item).isValid() ? item : BrowserItem();
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
    // A reset clears the view's selection without reporting it; the selection's row is
    // selected again below, which the list reports as no change.
    m_fileModel->reload();
    for (const TOrbMDBFile *file : expanded)
        expandFile(file);
    selectItemInTree(listedSelection(), false);
}

void VellumAppDelegate::onTreeSelectionChanged()
{
    const BrowserItem row = selectedTreeItem();
    // The list selecting the row of the current selection is only following it.
    if (row == listedSelection())
        return;
    m_controller.select(row, SelectionReason::FileList);
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
        m_controller.select(item, SelectionReason::FileList);
        OpenSelectedFile(item.file);
    } else if (item.isTable()) {
        OpenTableInNewWindow(item.table);
    }
}

QMenu *VellumAppDelegate::contextMenuForItem(const BrowserItem &item)
{
    const MainWindowBuilder::ItemMenu built =
        MainWindowBuilder::buildItemMenu(item, item.isFile() && m_controller.isOpen(item.file), this);
    for (const auto &[kind, action] : built.exportActions) {
        const ExportFileType k = kind;
        connect(action, &QAction::triggered, this, [this, k, item] { Export(k, item); });
    }
    const auto onTriggered = [this](QAction *action, auto slot) {
        if (action)
            connect(action, &QAction::triggered, this, std::move(slot));
    };
    TOrbMDBFile *file = item.file;
    TOrbMDBTable *table = item.table;
    onTriggered(built.open, [this, file] { OpenSelectedFile(file); });
    onTriggered(built.close, [this, file] { CloseSelectedFile(file); });
    onTriggered(built.showInFileManager, [this, file] { ShowInFinder(file); });
    onTriggered(built.removeFromList, [this, file] { RemoveSelectedFile(file); });
    onTriggered(built.removeOtherFiles, [this, file] { RemoveOtherFiles(file); });
    onTriggered(built.openInNewWindow, [this, table] { OpenTableInNewWindow(table); });
    onTriggered(built.openPanel, [this] { OpenFile(); });
    onTriggered(built.clearList, [this] { clearRecentDocuments(); });
    return built.menu;
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
    m_controller.select(item, SelectionReason::Command);
}

void VellumAppDelegate::selectionChanged(const BrowserItem &item, SelectionReason reason)
{
    // A linked table's target that finishes opening later is shown only if still wanted.
    ++m_entryGeneration;
    m_dataView->updateDataTableToShowMDBTable(item.isTable() ? item.table : nullptr);
    m_dataView->displayTextViewContent(std::nullopt);
    if (item.isTable()) {
        m_infoPane->showTable(item.table);
        updateStatusBarForTableSelection();
    } else if (item.isQuery()) {
        updateStatusBarForFileSelection();
        m_infoPane->showQuery(item.query);
    } else if (item.isLinkedTable()) {
        updateStatusBarForFileSelection();
        showLinkedTable(item.linkedTable);
    } else if (item.isFile()) {
        m_infoPane->showFile(item.file);
        updateStatusBarForFileSelection();
    } else {
        // Nothing selected: the file page with its empty text, no table, the count of files.
        m_infoPane->showFile(nullptr);
        updateStatusBarForNoSelection();
    }
    // The file list follows (the row the user selected there is already selected).
    const BrowserItem row = listedSelection();
    if (!(selectedTreeItem() == row))
        selectItemInTree(row);
    // The jump bar follows: a new menu tree after a choice in the list (or when the bar has
    // none, as after a file closed), otherwise the new location in the tree it has. While a file
    // closes its tree is left alone: it is rebuilt once the file is closed.
    if (reason == SelectionReason::FileList ||
        (!m_dataView->jumpBar()->menu() && reason != SelectionReason::FileClosed))
        refreshJumpBarMenu();
    else
        updateJumpBarSelection();
    updateHistoryButtons();
}

void VellumAppDelegate::showLinkedTable(TOrbMDBLinkedTable *link)
{
    if (link->kind() == TOrbMDBLinkedTable::Kind::Odbc) {
        m_infoPane->showLinkedTable(link, localizedQ("The linked table is reached over ODBC: its rows are not read."));
        emit linkedTableResolved();
        return;
    }
    const TOrbMDBFile *owner = link->file();
    const std::optional<std::string> path = findLinkedDatabase(*link, owner ? owner->path() : std::string("."));
    if (!path) {
        m_infoPane->showLinkedTable(
            link, toQString(localizedFormat("The linked table's database was not found: %@", {link->database()})));
        emit linkedTableResolved();
        return;
    }
    m_infoPane->showLinkedTable(link, toQString(localizedFormat("Opening %@", {*path})));
    TOrbMDBFile *target = linkTargetFile(*path);
    const std::uint64_t generation = m_entryGeneration;
    loadFile(target, [this, link, target, generation, path = *path](LoadResult result) {
        if (generation != m_entryGeneration)
            return; // another selection since, or the link's file closed
        std::string note;
        if (result == LoadResult::Opened) {
            if (TOrbMDBTable *table = findLinkedTargetTable(*target, link->targetTable())) {
                m_dataView->updateDataTableToShowMDBTable(table);
                note = localizedFormat("Rows of %@ in %@ (read-only)", {table->name(), path});
            } else {
                note = localizedFormat("The linked table %@ was not found in %@", {link->targetTable(), path});
            }
        } else if (result == LoadResult::Failed) {
            note = localizedFormat("The linked table's database cannot be opened: %@", {path});
        } else {
            note = localizedFormat("The linked table's database was not opened: %@", {path});
        }
        m_infoPane->setLinkNote(toQString(note));
        emit linkedTableResolved();
    });
}

TOrbMDBFile *VellumAppDelegate::linkTargetFile(const std::string &path)
{
    for (const auto &file : m_linkTargets)
        if (file->fullPath() == path)
            return file.get();
    m_linkTargets.push_back(TOrbMDBFile::fromPath(path));
    return m_linkTargets.back().get();
}

void VellumAppDelegate::ShowHiddenQueries(bool shown)
{
    if (m_showHiddenQueriesItem->isChecked() != shown) {
        m_showHiddenQueriesItem->setChecked(shown); // reports back here through toggled
        return;
    }
    if (m_controller.showHiddenQueries() == shown)
        return;
    m_controller.setShowHiddenQueries(shown);
    reloadFileList();
    const BrowserItem &shownEntry = m_controller.selection();
    if ((shownEntry.isQuery() || shownEntry.isLinkedTable()) && !m_fileModel->indexForItem(shownEntry).isValid()) {
        // The hidden query shown has left the list: its file is shown in its place.
        TOrbMDBFile *file = m_controller.selectedFile();
        m_controller.select(file ? BrowserItem::ofFile(file) : BrowserItem(), SelectionReason::ListChanged);
    }
}

void VellumAppDelegate::refreshJumpBarMenu()
{
    std::unique_ptr<JumpBarMenu> menu = m_controller.makeJumpBarMenu();
    GCJumpBar *bar = m_dataView->jumpBar();
    bar->clearSelection();
    bar->setMenu(menu.get());
    // The children take the new tree before the old one goes away.
    std::swap(m_jumpBarMenu, menu);
    if (m_childWinManager)
        m_childWinManager->refreshChildJumpBarMenu();
    menu.reset();
    updateJumpBarSelection();
}

void VellumAppDelegate::updateJumpBarSelection()
{
    // The bar shows where the selection is (nothing when nothing is selected); showing a
    // location is not reported back as a choice.
    const JumpBarItem *location =
        m_controller.selection().isNone()
            ? nullptr
            : locationItem(m_jumpBarMenu.get(), m_controller.selectedFile(), m_controller.selectedTable());
    m_dataView->jumpBar()->setSelectedMenuItem(location);
}

void VellumAppDelegate::jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path)
{
    if (const JumpBarItem *item = bar->menuItemAtIndexPath(path))
        m_controller.select(item->object, SelectionReason::JumpBar);
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
            showAlert(
                localizedQ("Error"),
                toQString(localizedFormat("File (%@) cannot be opened", {fileNameWithExtension(file).toStdString()})),
                toQString(openFailureText(file->openFailure())));
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

void VellumAppDelegate::PreviousSelectedTable()
{
    if (!m_controller.history().backEnabled())
        return;
    m_controller.goBack();
    updateHistoryButtons();
}

void VellumAppDelegate::NextSelectedTable()
{
    if (!m_controller.history().nextEnabled())
        return;
    m_controller.goNext();
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
    m_statusBar->setText(toQString(statusForRecordSelection(
        static_cast<std::size_t>(rows.size()), first, static_cast<std::size_t>(m_dataView->dataModel()->rowCount()))));
}

// ---------------------------------------------------------------------------------------------
// Search

void VellumAppDelegate::fileSearchTextChanged(const QString &text)
{
    m_controller.setFileSearchText(text.toStdString());
    m_fileModel->reload();
    if (m_controller.useFileFilter())
        for (TOrbMDBFile *file : m_controller.fileEntities())
            if (m_controller.isOpen(file))
                expandFile(file);
    // The selection's row when the filter lets it through; the panes keep showing it either way.
    selectItemInTree(listedSelection(), false);
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
    // The status counts the rows shown, so it follows when they are in.
    m_dataView->reloadKeepingSelection([this] { updateStatusBarForRecordSelection(); });
}

void VellumAppDelegate::SetSearchOption(int tag)
{
    bool afterStart = false;
    for (QAction *action : m_searchMenu->actions()) {
        if (action->data().toInt() == MainWindowBuilder::kTagModesStart && action->isSeparator()) {
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
        if (action->data().toInt() == MainWindowBuilder::kTagIgnoreCase && !action->isSeparator())
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
    return m_loader->isBusy() || !m_wizard.isNull() || !m_passwordDialog.isNull();
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
    reloadFileList(); // the list shows the selection's row, if listed
    if (const QModelIndexList rows = m_fileTree->selectionModel()->selectedRows(); !rows.isEmpty())
        m_fileTree->scrollTo(rows.first());
    refreshJumpBarMenu();
}

void VellumAppDelegate::loadFile(TOrbMDBFile *file, std::function<void(LoadResult)> done)
{
    const auto remembered = m_sessionPasswords.find(file->fullPath());
    loadWithPassword(file, remembered != m_sessionPasswords.end() ? remembered->second : std::string(),
                     std::move(done));
}

void VellumAppDelegate::loadWithPassword(TOrbMDBFile *file, const std::string &password,
                                         std::function<void(LoadResult)> done)
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
    m_loader->setPassword(password);
    m_loader->open(file, [this, file, done = std::move(done)](LoadResult result) mutable {
        m_loader->setPassword(std::string()); // kept no longer than its open
        const OpenFailure why = file->openFailure();
        if (result == LoadResult::Failed && (why == OpenFailure::PasswordNeeded || why == OpenFailure::WrongPassword)) {
            askForPassword(file, why, std::move(done)); // the file stays marked as loading meanwhile
            return;
        }
        m_controller.setLoadingFile(nullptr);
        done(result);
        QTimer::singleShot(0, this, &VellumAppDelegate::runDeferredRefresh);
    });
}

void VellumAppDelegate::askForPassword(TOrbMDBFile *file, OpenFailure why, std::function<void(LoadResult)> done)
{
    const std::string name = fileNameWithExtension(file).toStdString();
    auto *dialog = new PasswordDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setMessage(toQString(why == OpenFailure::WrongPassword
                                     ? localizedFormat("The password for (%@) is not correct", {name})
                                     : localizedFormat("File (%@) is encrypted: a password is needed", {name})));
    m_passwordDialog = dialog;
    connect(dialog, &QDialog::finished, this, [this, dialog, file, done = std::move(done)](int code) mutable {
        m_passwordDialog = nullptr;
        m_controller.setLoadingFile(nullptr);
        if (code != QDialog::Accepted) {
            // Cancel leaves the file closed; no error beyond that.
            done(LoadResult::Cancelled);
            QTimer::singleShot(0, this, &VellumAppDelegate::runDeferredRefresh);
            return;
        }
        const std::string password = dialog->password().toStdString();
        if (dialog->remember())
            m_sessionPasswords[file->fullPath()] = password;
        else
            m_sessionPasswords.erase(file->fullPath());
        loadWithPassword(file, password, std::move(done));
    });
    dialog->open();
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
        // With nothing selected (an open failed) the status counts the files listed now, the
        // failed entry gone.
        if (m_controller.selection().isNone())
            updateStatusBarForNoSelection();
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
            m_controller.select(BrowserItem::ofFile(file), SelectionReason::FileOpened);
        } else if (result == LoadResult::Failed) {
            m_controller.clearSelection(SelectionReason::OpenFailed);
            popFileOpenAlert(QFileInfo(path).fileName(), file ? file->openFailure() : OpenFailure::Other);
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
            popFileOpenAlert(fileNameWithExtension(file), file->openFailure());
        } else if (result == LoadResult::Opened) {
            m_controller.noteRecentDocument(file);
            refreshRecentFiles();
            expandFile(file);
            // Selected when nothing else is, shown afresh when it was selected while closed.
            const BrowserItem &selected = m_controller.selection();
            if (selected.isNone() || selected == BrowserItem::ofFile(file))
                m_controller.select(BrowserItem::ofFile(file), SelectionReason::FileOpened);
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

void VellumAppDelegate::CloseSelectedFile(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    if (file == m_controller.selectedFile())
        m_controller.clearSelection(SelectionReason::FileClosed); // no row stays selected
    closeFile(file);
    reloadFileList(); // another selected row is found again wherever it moved
    refreshJumpBarMenu();
    updateStatusBarForFileSelection();
}

void VellumAppDelegate::RemoveSelectedFile(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    if (file == m_controller.selectedFile())
        m_controller.clearSelection(SelectionReason::FileClosed);
    m_controller.removeFile(file);
    m_fileModel->reload();
    refreshRecentFiles();
    updateStatusBarForNoSelection();
}

void VellumAppDelegate::RemoveOtherFiles(TOrbMDBFile *file)
{
    if (!file || busy())
        return;
    m_controller.removeOtherFiles(file);
    m_fileModel->reload();
    refreshRecentFiles();
    updateStatusBarForFileSelection();
}

void VellumAppDelegate::clearRecentDocuments()
{
    if (busy())
        return;
    m_controller.clearRecentDocuments(); // the views show nothing selected
    m_fileModel->reload();
    refreshJumpBarMenu();
    updateStatusBarForFileSelection();
    m_fileTree->setDropHintVisible(true);
}

void VellumAppDelegate::ShowInFinder(TOrbMDBFile *file)
{
    if (file)
        revealInFileManager(toQString(file->openPath()));
}

void VellumAppDelegate::popFileOpenAlert(const QString &fileName, OpenFailure failure)
{
    showAlert(localizedQ("Error"), toQString(localizedFormat("File (%@) cannot be opened", {fileName.toStdString()})),
              toQString(openFailureText(failure)));
}

void VellumAppDelegate::showAlert(const QString &title, const QString &text, const QString &informative)
{
    m_lastAlertInformative = informative;
    if (m_alert) {
        m_alert(title, text);
        return;
    }
    auto *box = new QMessageBox(QMessageBox::Warning, title, text, QMessageBox::Ok, this);
    if (!informative.isEmpty())
        box->setInformativeText(informative); // why the file could not be opened
    fitAlertToTitle(box);
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
    // A linked table or a query exports its file, as the file itself does.
    TOrbMDBFile *file = item.isFile()          ? item.file
                        : item.isTable()       ? item.table->file()
                        : item.isLinkedTable() ? item.linkedTable->file()
                                               : item.query->file();
    TOrbMDBTable *table = item.table;
    loadFile(file, [this, file, table, kind](LoadResult result) {
        if (result != LoadResult::Opened) {
            if (result == LoadResult::Failed)
                popFileOpenAlert(fileNameWithExtension(file), file->openFailure());
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
            popFileOpenAlert(fileNameWithExtension(file), file->openFailure());
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
    m_controller.closeAll();
    m_fileModel->reload();
    event->accept();
}

} // namespace vellum
