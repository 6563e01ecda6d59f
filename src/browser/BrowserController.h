#pragma once

#include "browser/BrowserItem.h"
#include "browser/JumpBarMenu.h"
#include "browser/NavigationHistory.h"
#include "browser/RecentDocuments.h"
#include "browser/RowFilter.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {

class TOrbMDBFile;
class TOrbMDBLinkedTable;
class TOrbMDBQuery;
class TOrbMDBTable;

/// Why the selection changed. Every view follows each change; the reason says where it came
/// from, so that the view the user acted in is not told again what it already shows and so
/// that only the user's own choices count as visits.
enum class SelectionReason {
    FileList,    ///< the user selected a row of the file list (a table row is a visit)
    JumpBar,     ///< the user chose an item of the jump bar (a table is a visit)
    History,     ///< Back or Next moved to a table of the history
    FileOpened,  ///< a file that has just opened is selected
    FileClosed,  ///< the selected item went away with its file (closed, removed, forgotten)
    OpenFailed,  ///< a file could not be opened: nothing is selected
    ListChanged, ///< the shown row left the file list (a filter changed): its file is shown
    Command,     ///< the window selected an item itself
};

/// What the window must do while the controller changes the file list or the selection.
/// Main thread.
class BrowserListener {
public:
    virtual ~BrowserListener() = default;
    /// A file is about to be closed: close the windows that show its tables, forget menus
    /// that point into it.
    virtual void fileWillClose(TOrbMDBFile *file) = 0;
    /// The selection changed to `item` (none: the nothing-selected state): every view shows it.
    virtual void selectionChanged(const BrowserItem &item, SelectionReason reason) = 0;
};

/// The browser's state without the window: the file list kept in line with the system's
/// recent-documents list, the selected file and table, the Back/Next history, the file and
/// data search, the status texts and the jump-bar menu tree. The window displays it and
/// forwards the user's actions. Main thread only.
class BrowserController {
public:
    explicit BrowserController(RecentDocumentList &recentDocuments);
    ~BrowserController();
    BrowserController(const BrowserController &) = delete;
    BrowserController &operator=(const BrowserController &) = delete;

    void setListener(BrowserListener *listener) { m_listener = listener; }

    // --- The file list ------------------------------------------------------------------
    /// Every file the list knows, open or not, in list order.
    std::vector<TOrbMDBFile *> recentFiles() const;
    /// The list's top level: every file, or the ones passing the file search.
    std::vector<TOrbMDBFile *> fileEntities() const;
    /// The rows under a file: its tables (or the ones passing the file search); none for a
    /// closed file.
    std::vector<TOrbMDBTable *> tableEntities(const TOrbMDBFile *file) const;
    /// The linked tables listed under a file after its tables (or the ones passing the file
    /// search); none for a closed file.
    std::vector<TOrbMDBLinkedTable *> linkedTableEntities(const TOrbMDBFile *file) const;
    /// The saved queries listed under a file after its linked tables (or the ones passing the
    /// file search); the hidden "~sq_" ones only while `showHiddenQueries`; none for a closed file.
    std::vector<TOrbMDBQuery *> queryEntities(const TOrbMDBFile *file) const;
    /// Whether the file list shows the queries Access keeps for forms and controls (off at start).
    bool showHiddenQueries() const { return m_showHiddenQueries; }
    void setShowHiddenQueries(bool shown) { m_showHiddenQueries = shown; }
    /// Whether a file object is (still) in the list.
    bool isListed(const TOrbMDBFile *file) const;
    /// Marks the file a worker is loading (nullptr: none). Until it is cleared the controller
    /// treats that file as closed and never reads it.
    void setLoadingFile(const TOrbMDBFile *file) { m_loadingFile = file; }
    const TOrbMDBFile *loadingFile() const { return m_loadingFile; }
    /// Whether a file is open and not being loaded.
    bool isOpen(const TOrbMDBFile *file) const;

    /// The list entry for a path, always a new closed file put in front; an older entry of the
    /// same folder and name (any extension) is taken out of the list first (and closed).
    TOrbMDBFile *findMDBFileByPath(const std::string &path);
    /// A new entry for a path with its size and dates from the file system.
    TOrbMDBFile *createNewMDBFile(const std::string &path, bool insertFront);
    /// Brings the list into line with the system list and sorts it by name. Answers whether
    /// the drop hint is to be shown (only when both lists were empty).
    bool refreshRecentFiles();
    /// Notes a file's full path as the most recent document.
    void noteRecentDocument(const TOrbMDBFile *file);

    /// Closes a file: its tables leave the history, the listener closes its windows; the entry
    /// stays in the list, closed.
    void closeFile(TOrbMDBFile *file);
    /// Closes a file, takes it out of the list and out of the system list (keeping the order
    /// of the others), then refreshes.
    void removeFile(TOrbMDBFile *file);
    /// Closes every other file and keeps only this one, in both lists.
    void removeOtherFiles(TOrbMDBFile *file);
    /// Clears the system list, the selection and the whole file list.
    void clearRecentDocuments();
    /// Closes every file and empties the list (quitting).
    void closeAll();

    // --- Selection and history ----------------------------------------------------------------
    TOrbMDBFile *selectedFile() const { return m_selectedFile; }
    TOrbMDBTable *selectedTable() const { return m_selectedTable; }
    /// The item the views show: a file, a table, a linked table, a query, or none.
    const BrowserItem &selection() const { return m_selection; }
    /// Selects an item for a reason and tells the listener. A file selects no table; a table
    /// selects its file; a linked table or a query selects its file and no table; no item
    /// shows nothing and leaves the selected file and table as they were. A table chosen in
    /// the file list or the jump bar is recorded as a visit. A choice of the file list or the
    /// jump bar that is already shown changes nothing and is not told (the view only follows).
    /// Answers whether the listener was told.
    bool select(BrowserItem item, SelectionReason reason);
    /// Clears the selected item, file and table and tells the listener.
    void clearSelection(SelectionReason reason);
    /// Back: moves to the history's previous table (when enabled) through `select`.
    void goBack();
    /// Next: moves to the history's next table (when enabled) through `select`.
    void goNext();
    NavigationHistory &history() { return m_history; }
    const NavigationHistory &history() const { return m_history; }

    // --- Search ----------------------------------------------------------------------------
    const std::string &fileSearchText() const { return m_fileSearchText; }
    void setFileSearchText(std::string text) { m_fileSearchText = std::move(text); }
    bool useFileFilter() const { return !m_fileSearchText.empty(); }
    const std::string &dataSearchText() const { return m_dataSearchText; }
    void setDataSearchText(std::string text) { m_dataSearchText = std::move(text); }
    bool useDataFilter() const { return !m_dataSearchText.empty(); }
    SearchOption searchOption() const { return m_searchOption; }
    void setSearchOption(SearchOption option) { m_searchOption = option; }
    bool ignoreCase() const { return m_ignoreCase; }
    void setIgnoreCase(bool ignore) { m_ignoreCase = ignore; }
    /// The data filter of the current search text, mode and case option.
    RowFilter dataFilter() const { return RowFilter(m_dataSearchText, m_searchOption, m_ignoreCase); }

    // --- Status texts ------------------------------------------------------------------------
    std::string statusForNoSelection() const;
    std::string statusForFileSelection() const;
    std::string statusForTableSelection() const;
    /// The selection text of the current state: table, else file, else none.
    std::string statusForCurrentSelection() const;

    // --- Jump bar ------------------------------------------------------------------------------
    /// A new menu tree for the current list and selection (none without a selected file).
    std::unique_ptr<JumpBarMenu> makeJumpBarMenu() const;

private:
    void retire(std::size_t index);
    void clearSelectionIfIn(TOrbMDBFile *file);
    /// Shows a history target when its file is listed and open; answers whether it is shown.
    bool showHistoryTarget(TOrbMDBTable *target);
    void publish(SelectionReason reason);

    RecentDocumentList &m_recentDocuments;
    BrowserListener *m_listener = nullptr;
    std::vector<std::unique_ptr<TOrbMDBFile>> m_recentFiles;
    /// Entries taken out of the list, kept (closed) so that no pointer held elsewhere dangles.
    std::vector<std::unique_ptr<TOrbMDBFile>> m_retired;
    const TOrbMDBFile *m_loadingFile = nullptr;
    TOrbMDBFile *m_selectedFile = nullptr;
    TOrbMDBTable *m_selectedTable = nullptr;
    BrowserItem m_selection;
    NavigationHistory m_history;
    std::string m_fileSearchText;
    std::string m_dataSearchText;
    SearchOption m_searchOption = SearchOption::Contains;
    bool m_ignoreCase = true;
    bool m_showHiddenQueries = false;
};

/// The file search on tables: names containing the text, ignoring case; the list unchanged
/// for an empty text.
std::vector<TOrbMDBTable *> filterTableName(const std::vector<TOrbMDBTable *> &tables, const std::string &text);
/// The file search on files: a file passes by its name, or when it is open and one of its
/// tables, linked tables or saved queries (the hidden ones only with `hiddenQueries`) passes;
/// the list unchanged for an empty text. `loading` (a file being loaded) counts as closed.
std::vector<TOrbMDBFile *> filterFileName(const std::vector<TOrbMDBFile *> &files, const std::string &text,
                                          const TOrbMDBFile *loading = nullptr, bool hiddenQueries = false);

/// The file an item belongs to (the file itself for a file item; nullptr for none).
TOrbMDBFile *ownerFile(const BrowserItem &item);

/// Splits a path into folder, name without extension, and extension ("" when none).
struct PathParts {
    std::string folder;
    std::string name;
    std::string extension;
};
PathParts splitDatabasePath(const std::string &path);

/// Whether a path's extension is "mdb" or "accdb", compared case-insensitively.
bool hasDatabaseExtension(const std::string &path);

} // namespace vellum
