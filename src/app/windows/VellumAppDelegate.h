#pragma once

#include "app/export/ExportWizard.h"
#include "app/support/FileLoader.h"
#include "app/widgets/GCJumpBar.h"
#include "app/widgets/PasswordDialog.h"
#include "app/windows/ChildWindowManager.h"
#include "app/windows/MainWindowBuilder.h"
#include "browser/BrowserController.h"
#include "browser/RecentDocuments.h"
#include "export/ExportFileType.h"
#include "model/OpenFailure.h"

#include <QMainWindow>
#include <QPointer>

#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QMenu;
class QToolBar;
class QToolButton;

namespace vellum {

class DataView;
class FileListModel;
class FileTreeView;
class InformationPane;

/// The main window and its single controller: the file list kept in line with the desktop's
/// recent-documents list, the grid of the selected table, the information pane, the toolbar
/// "VellumToolbar" with Back, Next, Open, the six export kinds and the data search, the View
/// menu's pane toggles, and the export wizard. The logic lives in BrowserController; this
/// class shows it and forwards the user's actions. MainWindowBuilder makes the widgets, the
/// toolbar and the menus; this class keeps them, connects them to its slots and reacts.
class VellumAppDelegate : public QMainWindow,
                          private BrowserListener,
                          private JumpBarDelegate,
                          public ChildWindowDelegate {
    Q_OBJECT
public:
    struct Options {
        /// Show the open panel at once when the file list starts empty (off in tests).
        bool openPanelWhenEmpty = true;
        /// The recent-documents list to mirror (the freedesktop one when null).
        RecentDocumentList *recentDocuments = nullptr;
        /// How files are read; when null, the isolated reader if vellum-loader is beside the
        /// executable, otherwise the in-process reader with a line in the log saying so.
        std::shared_ptr<FileReader> reader;
    };

    explicit VellumAppDelegate(const Options &options);
    ~VellumAppDelegate() override;

    /// After the window is shown: the open panel when the list is empty.
    void applicationDidFinishLaunching();
    /// Files handed over by the desktop (command line, "Open with"): each Access file is opened
    /// in turn; others are ignored.
    void openFiles(const QStringList &paths);

    // ---- The parts, for tests and child windows ----
    BrowserController &controller() { return m_controller; }
    FileTreeView *fileTree() const { return m_fileTree; }
    FileListModel *fileListModel() const { return m_fileModel; }
    DataView *dataView() const { return m_dataView; }
    InformationPane *informationPane() const { return m_infoPane; }
    QLineEdit *fileSearchField() const { return m_fileSearchField; }
    QLineEdit *dataSearchField() const { return m_dataSearchField; }
    QMenu *searchFieldMenu() const { return m_searchMenu; }
    QLabel *statusBarLabel() const { return m_statusBar; }
    QToolBar *toolbar() const { return m_toolbar; }
    /// A toolbar action by its identifier ("navigationBack", "open", "exportCsv" …).
    QAction *toolbarAction(const QString &identifier) const;
    /// The View menu's toggle of a pane flag.
    QAction *paneToggle(int flag) const { return m_toggles[static_cast<std::size_t>(flag)]; }
    /// The View menu's checkable "Show Hidden Queries".
    QAction *showHiddenQueriesItem() const { return m_showHiddenQueriesItem; }
    /// The files opened for linked tables' targets (not in the file list), in the order opened.
    const std::vector<std::unique_ptr<TOrbMDBFile>> &linkTargets() const { return m_linkTargets; }
    QAction *backMenuItem() const { return m_menuitemBack; }
    QAction *forwardMenuItem() const { return m_menuitemForward; }
    FileLoader *fileLoader() const { return m_loader; }
    /// The password dialog while it asks (null otherwise).
    PasswordDialog *passwordDialog() const { return m_passwordDialog; }
    ChildWindowManager *childWindowManager() const { return m_childWinManager; }
    /// The wizard while one is up or exporting.
    ExportWizard *exportWizard() const { return m_wizard; }
    /// The file list's context menu for a row (file or table menu), as it would open.
    QMenu *contextMenuForItem(const BrowserItem &item);

    // ---- Actions ----
    void OpenFile();
    void OpenSelectedFile(TOrbMDBFile *file);
    void CloseSelectedFile(TOrbMDBFile *file);
    void RemoveSelectedFile(TOrbMDBFile *file);
    void RemoveOtherFiles(TOrbMDBFile *file);
    void ShowInFinder(TOrbMDBFile *file);
    void clearRecentDocuments();
    /// Opens the export wizard of a kind for an item (none: the right-clicked or selected row).
    void Export(ExportFileType kind, std::optional<BrowserItem> target = std::nullopt);
    void OpenTableInNewWindow(TOrbMDBTable *table);
    void PreviousSelectedTable();
    void NextSelectedTable();
    void ToggleTreeView();
    void ToggleTextView();
    void ToggleInformationView();
    void ToggleJumpBar();
    void ToggleNumRows();
    void ToggleFullScreen();
    /// Shows or hides the hidden "~sq_" queries in the file list (the View menu's checkable item).
    void ShowHiddenQueries(bool shown);
    /// The data search menu's mode items (tags 0 to 3) and the case item.
    void SetSearchOption(int tag);
    void SetCaseForSearch();
    /// Puts the focus into the data search field.
    void Find();

    /// Selects an item as a command of the window (not a visit): every view then shows it.
    void selectionDidChange(BrowserItem item);
    /// Brings the list into line with the desktop's list (later, while a file loads or an
    /// export runs).
    void refreshRecentFiles();
    void refreshJumpBarMenu();
    /// Shows the selection's location in the jump bar (nothing when nothing is selected).
    void updateJumpBarSelection();
    void updateStatusBarForNoSelection();
    void updateStatusBarForFileSelection();
    void updateStatusBarForTableSelection();
    void updateStatusBarForRecordSelection();

    // ChildWindowDelegate
    JumpBarMenu *jumpBarMenu() const override { return m_jumpBarMenu.get(); }
    void openFileForChild(TOrbMDBFile *file, std::function<void(bool opened)> done) override;
    void childWillShowSubmenu(const IndexPath &path) override;

    /// Replaces the open panel (tests): answers the chosen paths.
    void setOpenPanel(std::function<QStringList()> panel) { m_openPanel = std::move(panel); }
    /// Replaces the error alerts (tests): gets the title and the text.
    void setAlertHandler(std::function<void(const QString &, const QString &)> handler)
    {
        m_alert = std::move(handler);
    }
    /// The informative text of the last error alert (why a file could not be opened), for tests.
    const QString &lastAlertInformativeText() const { return m_lastAlertInformative; }

signals:
    /// A series of opens (panel, drop, hand-over, list command) has ended.
    void openFinished();
    /// The linked table shown has its final note: its target's rows are in the grid, or the
    /// note says why not.
    void linkedTableResolved();
    /// An export wizard was made (tests configure it here).
    void exportWizardCreated(vellum::ExportWizard *wizard);

protected:
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    // BrowserListener
    void fileWillClose(TOrbMDBFile *file) override;
    /// The one place that shows a selection: the information pane, the grid, the text view,
    /// the status, the file list's row, the jump bar and Back/Next follow the controller.
    void selectionChanged(const BrowserItem &item, SelectionReason reason) override;
    // JumpBarDelegate
    void jumpBarDidSelectItemAtIndexPath(GCJumpBar *bar, const IndexPath &path) override;
    void jumpBarWillShowSubmenuAtIndexPath(GCJumpBar *bar, const IndexPath &path) override;

    /// Keeps the built widgets and actions and connects their signals to this window's slots.
    void adoptInterface(const MainWindowBuilder::Controls &controls);
    void applyPaneFlags();
    void setPaneFlag(int flag, bool shown);
    void updateToggleTitles();

    /// The user selected a row (or none) in the file list.
    void onTreeSelectionChanged();
    void OnDoubleClickFileTree(const QModelIndex &index);
    /// Enables Back and Next (toolbar and menu) as the history says.
    void updateHistoryButtons();
    void onFileTreeContextMenu(const QPoint &pos);
    void fileSearchTextChanged(const QString &text);
    void dataSearchTextChanged(const QString &text);

    /// Reloads the file list keeping the expanded files and (when still listed) the selected row.
    void reloadFileList();
    void selectItemInTree(const BrowserItem &item, bool scroll = true);
    BrowserItem selectedTreeItem() const;
    /// The controller's selection when the file list has a row for it, else none.
    BrowserItem listedSelection() const;
    /// The target of a file-list command: the right-clicked row, else the selected row.
    BrowserItem commandTarget() const;
    void expandFile(const TOrbMDBFile *file);
    void collapseFile(const TOrbMDBFile *file);

    /// Opens paths one after another (panel, drop, hand-over).
    void openPathsInTurn(QStringList paths, bool alertAsPanel);
    void loadFile(TOrbMDBFile *file, std::function<void(LoadResult)> done);
    /// Opens with `password`; an encrypted file that needs another asks for it in the password
    /// dialog and tries again, until it opens or the dialog is cancelled (Cancelled).
    void loadWithPassword(TOrbMDBFile *file, const std::string &password, std::function<void(LoadResult)> done);
    void askForPassword(TOrbMDBFile *file, OpenFailure why, std::function<void(LoadResult)> done);
    /// "File (NAME) cannot be opened", with the reason as the informative text.
    void popFileOpenAlert(const QString &fileName, OpenFailure failure);
    void showAlert(const QString &title, const QString &text, const QString &informative = {});
    void deselectAllForToolbarItems();
    void updateExportAvailability();
    void startExportWizard(TOrbMDBFile *file, TOrbMDBTable *table, ExportFileType kind);
    bool busy() const;
    void runDeferredRefresh();
    void closeFile(TOrbMDBFile *file);
    void saveState();
    /// Shows a linked table: its rows in the pane and, when its target Access file is found,
    /// that file's table in the grid (the file is opened read-only through the file reader,
    /// apart from the file list).
    void showLinkedTable(TOrbMDBLinkedTable *link);
    /// The file object for a linked table's target path (made, closed, when first asked for).
    TOrbMDBFile *linkTargetFile(const std::string &path);

    std::unique_ptr<RecentDocuments> m_ownRecentDocuments;
    RecentDocumentList &m_recentDocuments;
    BrowserController m_controller;
    bool m_openPanelWhenEmpty;

    FileLoader *m_loader = nullptr;
    /// Passwords the user asked to keep for this session, by full path.
    std::map<std::string, std::string> m_sessionPasswords;
    QPointer<PasswordDialog> m_passwordDialog;
    ChildWindowManager *m_childWinManager = nullptr;
    QPointer<ExportWizard> m_wizard;
    std::unique_ptr<JumpBarMenu> m_jumpBarMenu;
    bool m_refreshPending = false;
    bool m_closeWhenIdle = false;
    bool m_quitting = false;
    std::optional<BrowserItem> m_rightClicked;
    /// Raised at every selection change, so that a linked table's target that finishes opening
    /// later is shown only if still wanted.
    std::uint64_t m_entryGeneration = 0;
    std::vector<std::unique_ptr<TOrbMDBFile>> m_linkTargets;

    // Pane flags in the order of PaneFlag.
    std::array<bool, 5> m_paneFlags{};

    QWidget *m_fileListPane = nullptr;
    QLineEdit *m_fileSearchField = nullptr;
    FileTreeView *m_fileTree = nullptr;
    FileListModel *m_fileModel = nullptr;
    DataView *m_dataView = nullptr;
    InformationPane *m_infoPane = nullptr;
    QLabel *m_statusBar = nullptr;
    QToolButton *m_btnFileTree = nullptr;
    QToolButton *m_btnTextView = nullptr;
    QToolButton *m_btnInfoView = nullptr;

    QToolBar *m_toolbar = nullptr;
    QLineEdit *m_dataSearchField = nullptr;
    QMenu *m_searchMenu = nullptr;
    QAction *m_menuitemBack = nullptr;
    QAction *m_menuitemForward = nullptr;
    QAction *m_fullScreenAction = nullptr;
    QAction *m_showHiddenQueriesItem = nullptr;
    std::array<QAction *, 5> m_toggles{};
    /// The toolbar's and the File menu's export items with their kinds.
    std::vector<std::pair<ExportFileType, QAction *>> m_exportActions;

    std::function<QStringList()> m_openPanel;
    std::function<void(const QString &, const QString &)> m_alert;
    QString m_lastAlertInformative;
};

} // namespace vellum
