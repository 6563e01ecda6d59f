#pragma once

#include "browser/BrowserItem.h"
#include "export/ExportFileType.h"

#include <array>
#include <utility>
#include <vector>

class QAction;
class QLabel;
class QLineEdit;
class QMainWindow;
class QMenu;
class QToolBar;
class QToolButton;
class QWidget;

namespace vellum {

class BrowserController;
class DataView;
class FileListModel;
class FileTreeView;
class InformationPane;

/// Makes the main window's widgets, toolbar and menus, and the file list's context menus: their
/// object names, texts, icons, shortcuts, tooltips and order, so that the window's controller
/// (VellumAppDelegate) holds behaviour only.
///
/// What it does besides making things: it wires the controls that never reach the controller (the
/// Edit menu to the grid, the toolbar's show-or-hide menu and its setting, the data search
/// field's options button, Quit and About), reads the hidden toolbar items from the settings,
/// and checks the search menu's items as the controller's search options stand.
/// What it does not do: connect anything to the controller's slots (the controller connects
/// the controls it gets back), show or hide panes, or keep any state once build() returns.
class MainWindowBuilder {
public:
    /// The data of the search menu's "Ignore Case" item; the mode items carry their
    /// SearchOption value (0 to 3) after the "Match" section, whose data is kTagModesStart.
    static constexpr int kTagIgnoreCase = 100;
    static constexpr int kTagModesStart = 101;
    /// The data of the Export submenu in the file list's context menus.
    static constexpr int kTagExportSubmenu = 10101;

    /// What the controller keeps and connects. Every pointer is owned by the window (QObject
    /// parents).
    struct Controls {
        QWidget *fileListPane = nullptr;
        QLineEdit *fileSearchField = nullptr;
        FileTreeView *fileTree = nullptr;
        FileListModel *fileModel = nullptr;
        DataView *dataView = nullptr;
        InformationPane *infoPane = nullptr;
        QLabel *statusBar = nullptr;
        QToolButton *btnFileTree = nullptr;
        QToolButton *btnTextView = nullptr;
        QToolButton *btnInfoView = nullptr;

        QToolBar *toolbar = nullptr;
        QAction *toolbarBack = nullptr;
        QAction *toolbarNext = nullptr;
        QAction *toolbarOpen = nullptr;
        QLineEdit *dataSearchField = nullptr;
        QMenu *searchMenu = nullptr;
        QAction *ignoreCaseItem = nullptr;
        /// The match modes by their SearchOption value.
        std::array<QAction *, 4> searchModeItems{};

        QMenu *fileMenu = nullptr;
        QAction *openItem = nullptr;
        QAction *closeItem = nullptr;
        QAction *showInFileManagerItem = nullptr;
        QAction *removeFromListItem = nullptr;
        QAction *clearListItem = nullptr;
        QAction *findItem = nullptr;
        /// The View menu's pane toggles in the order of PaneFlag; their titles are the
        /// controller's to set.
        std::array<QAction *, 5> paneToggles{};
        QAction *fullScreenItem = nullptr;
        /// View menu, checkable, off at start: the file list shows the hidden "~sq_" queries.
        QAction *showHiddenQueriesItem = nullptr;
        QAction *backItem = nullptr;
        QAction *forwardItem = nullptr;

        /// The toolbar's export items, then the File menu's Export submenu, each with its kind.
        std::vector<std::pair<ExportFileType, QAction *>> exportActions;
    };

    /// A file list context menu and its commands; the items a row's kind lacks are null.
    struct ItemMenu {
        QMenu *menu = nullptr; ///< a child of the given parent, for the caller to delete
        std::vector<std::pair<ExportFileType, QAction *>> exportActions;
        QAction *open = nullptr;              ///< file row: "Open"
        QAction *close = nullptr;             ///< file row: "Close"
        QAction *showInFileManager = nullptr; ///< file row
        QAction *removeFromList = nullptr;    ///< file row
        QAction *removeOtherFiles = nullptr;  ///< file row
        QAction *openInNewWindow = nullptr;   ///< table row
        QAction *openPanel = nullptr;         ///< no row: "Open…"
        QAction *clearList = nullptr;         ///< file row and no row
    };

    /// Builds into `window`; the file list model reads `controller`. Of `paneFlags` (in the
    /// order of PaneFlag) only the text view and the row counts are read, as their first state;
    /// the controller applies all the flags afterwards.
    MainWindowBuilder(QMainWindow &window, BrowserController &controller, const std::array<bool, 5> &paneFlags);

    /// Makes the central widget, the toolbar and the menu bar of the window (once).
    [[nodiscard]] Controls build();

    /// The context menu of a file list row: a file's (enabling Open or Close as `fileOpen`
    /// says), a table's, or the empty list's. Export items are enabled as their kind is available.
    [[nodiscard]] static ItemMenu buildItemMenu(const BrowserItem &item, bool fileOpen, QWidget *parent);

private:
    void buildPanes(Controls &controls);
    void buildToolbar(Controls &controls);
    void buildSearchMenu(Controls &controls);
    void buildMenus(Controls &controls);

    QMainWindow &m_window;
    BrowserController &m_controller;
    const std::array<bool, 5> &m_paneFlags;
};

} // namespace vellum
