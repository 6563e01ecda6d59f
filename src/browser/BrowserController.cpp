#include "browser/BrowserController.h"

#include "browser/statusTexts.h"
#include "model/TOrbMDBFile.h"

#include <algorithm>

namespace vellum {

namespace {

std::string lowered(std::string text)
{
    for (char &c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

/// The objects of a list whose names contain `text` ignoring case (all for an empty text) and
/// that `keep` accepts.
template <typename T, typename Keep>
std::vector<T *> namedEntities(const std::vector<std::unique_ptr<T>> &objects, const std::string &text, Keep keep)
{
    std::vector<T *> out;
    for (const auto &object : objects)
        if (keep(*object) && (text.empty() || containsIgnoringCase(object->name(), text)))
            out.push_back(object.get());
    return out;
}

std::vector<TOrbMDBTable *> tablesOf(const TOrbMDBFile *file, const TOrbMDBFile *loading = nullptr)
{
    std::vector<TOrbMDBTable *> out;
    if (!file || file == loading || !file->active())
        return out;
    for (const auto &table : file->tables())
        out.push_back(table.get());
    return out;
}

} // namespace

TOrbMDBFile *ownerFile(const BrowserItem &item)
{
    if (item.isFile())
        return item.file;
    if (item.isTable())
        return item.table->file();
    if (item.isLinkedTable())
        return item.linkedTable->file();
    if (item.isQuery())
        return item.query->file();
    return nullptr;
}

PathParts splitDatabasePath(const std::string &path)
{
    PathParts parts;
    const std::size_t slash = path.rfind('/');
    parts.folder = slash == std::string::npos ? "." : path.substr(0, slash);
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    const std::size_t dot = base.rfind('.');
    if (dot == std::string::npos || dot == 0) {
        parts.name = base;
    } else {
        parts.name = base.substr(0, dot);
        parts.extension = base.substr(dot + 1);
    }
    return parts;
}

bool hasDatabaseExtension(const std::string &path)
{
    const std::string extension = lowered(splitDatabasePath(path).extension);
    return extension == "mdb" || extension == "accdb";
}

std::vector<TOrbMDBTable *> filterTableName(const std::vector<TOrbMDBTable *> &tables, const std::string &text)
{
    if (text.empty())
        return tables;
    std::vector<TOrbMDBTable *> out;
    for (TOrbMDBTable *table : tables)
        if (containsIgnoringCase(table->name(), text))
            out.push_back(table);
    return out;
}

std::vector<TOrbMDBFile *> filterFileName(const std::vector<TOrbMDBFile *> &files, const std::string &text,
                                          const TOrbMDBFile *loading, bool hiddenQueries)
{
    if (text.empty())
        return files;
    std::vector<TOrbMDBFile *> out;
    for (TOrbMDBFile *file : files) {
        bool passes = containsIgnoringCase(file->name(), text);
        if (!passes && file != loading && file->active())
            passes =
                !filterTableName(tablesOf(file), text).empty() ||
                !namedEntities(file->linkedTables(), text, [](const TOrbMDBLinkedTable &) { return true; }).empty() ||
                !namedEntities(file->queries(), text, [hiddenQueries](const TOrbMDBQuery &query) {
                     return hiddenQueries || !query.isHidden();
                 }).empty();
        if (passes)
            out.push_back(file);
    }
    return out;
}

BrowserController::BrowserController(RecentDocumentList &recentDocuments) : m_recentDocuments(recentDocuments) {}

BrowserController::~BrowserController() = default;

std::vector<TOrbMDBFile *> BrowserController::recentFiles() const
{
    std::vector<TOrbMDBFile *> out;
    out.reserve(m_recentFiles.size());
    for (const auto &file : m_recentFiles)
        out.push_back(file.get());
    return out;
}

std::vector<TOrbMDBFile *> BrowserController::fileEntities() const
{
    return filterFileName(recentFiles(), m_fileSearchText, m_loadingFile, m_showHiddenQueries);
}

std::vector<TOrbMDBTable *> BrowserController::tableEntities(const TOrbMDBFile *file) const
{
    return filterTableName(tablesOf(file, m_loadingFile), m_fileSearchText);
}

std::vector<TOrbMDBLinkedTable *> BrowserController::linkedTableEntities(const TOrbMDBFile *file) const
{
    if (!isOpen(file))
        return {};
    return namedEntities(file->linkedTables(), m_fileSearchText, [](const TOrbMDBLinkedTable &) { return true; });
}

std::vector<TOrbMDBQuery *> BrowserController::queryEntities(const TOrbMDBFile *file) const
{
    if (!isOpen(file))
        return {};
    return namedEntities(file->queries(), m_fileSearchText,
                         [this](const TOrbMDBQuery &query) { return m_showHiddenQueries || !query.isHidden(); });
}

bool BrowserController::isOpen(const TOrbMDBFile *file) const
{
    return file && file != m_loadingFile && file->active();
}

bool BrowserController::isListed(const TOrbMDBFile *file) const
{
    return std::any_of(m_recentFiles.begin(), m_recentFiles.end(), [&](const auto &f) { return f.get() == file; });
}

void BrowserController::retire(std::size_t index)
{
    m_retired.push_back(std::move(m_recentFiles[index]));
    m_recentFiles.erase(m_recentFiles.begin() + static_cast<std::ptrdiff_t>(index));
}

TOrbMDBFile *BrowserController::findMDBFileByPath(const std::string &path)
{
    const PathParts parts = splitDatabasePath(path);
    std::optional<std::size_t> found;
    for (std::size_t i = 0; i < m_recentFiles.size(); ++i)
        if (m_recentFiles[i]->name() == parts.name && m_recentFiles[i]->path() == parts.folder)
            found = i;
    if (found) {
        TOrbMDBFile *old = m_recentFiles[*found].get();
        // The old entry leaves the list; closing it first keeps the history and the windows
        // free of tables that are no longer reachable from the list.
        clearSelectionIfIn(old);
        if (old->active())
            closeFile(old);
        retire(*found);
    }
    return createNewMDBFile(path, true);
}

TOrbMDBFile *BrowserController::createNewMDBFile(const std::string &path, bool insertFront)
{
    std::unique_ptr<TOrbMDBFile> file = TOrbMDBFile::fromPath(path);
    TOrbMDBFile *raw = file.get();
    if (insertFront)
        m_recentFiles.insert(m_recentFiles.begin(), std::move(file));
    else
        m_recentFiles.push_back(std::move(file));
    return raw;
}

void BrowserController::noteRecentDocument(const TOrbMDBFile *file)
{
    if (file)
        m_recentDocuments.note(file->openPath());
}

bool BrowserController::refreshRecentFiles()
{
    const std::vector<std::string> systemPaths = m_recentDocuments.paths();
    bool showDropHint = false;
    if (m_recentFiles.empty()) {
        for (const std::string &path : systemPaths)
            createNewMDBFile(path, false);
        showDropHint = systemPaths.empty();
    } else {
        std::vector<TOrbMDBFile *> vanished = recentFiles();
        std::vector<std::string> added = systemPaths;
        for (const auto &entry : m_recentFiles) {
            const std::string fullPath = entry->openPath();
            if (std::find(systemPaths.begin(), systemPaths.end(), fullPath) == systemPaths.end())
                continue;
            std::erase(added, fullPath);
            std::erase(vanished, entry.get());
            const std::unique_ptr<TOrbMDBFile> fresh = TOrbMDBFile::fromPath(fullPath);
            entry->setSize(fresh->size());
            entry->setCreateDate(fresh->createDate());
            entry->setModifyDate(fresh->modifyDate());
            entry->setLastOpenDate(fresh->lastOpenDate());
        }
        if (!vanished.empty() || !added.empty()) {
            std::stable_sort(m_recentFiles.begin(), m_recentFiles.end(),
                             [](const auto &a, const auto &b) { return a->compareByLastOpenDate(*b) < 0; });
            for (TOrbMDBFile *file : vanished) {
                clearSelectionIfIn(file);
                if (file->active())
                    closeFile(file);
                for (std::size_t i = 0; i < m_recentFiles.size(); ++i)
                    if (m_recentFiles[i].get() == file) {
                        retire(i);
                        break;
                    }
            }
            for (const std::string &path : added)
                createNewMDBFile(path, false);
        }
    }
    std::stable_sort(m_recentFiles.begin(), m_recentFiles.end(),
                     [](const auto &a, const auto &b) { return a->compareByName(*b) < 0; });
    return showDropHint;
}

void BrowserController::clearSelectionIfIn(TOrbMDBFile *file)
{
    const bool shown = ownerFile(m_selection) == file;
    if (m_selectedTable && m_selectedTable->file() == file)
        m_selectedTable = nullptr;
    if (m_selectedFile == file)
        m_selectedFile = nullptr;
    if (shown) {
        m_selection = {};
        publish(SelectionReason::FileClosed);
    }
}

void BrowserController::closeFile(TOrbMDBFile *file)
{
    if (!file)
        return;
    m_history.purgeTables(tablesOf(file));
    if (m_listener)
        m_listener->fileWillClose(file);
    // The table, link and query objects go away with the file: no view may keep showing one
    // of them. The file itself stays selected (closed) when it was.
    if (m_selectedTable && m_selectedTable->file() == file)
        m_selectedTable = nullptr;
    if (ownerFile(m_selection) == file && !m_selection.isFile()) {
        m_selection = m_selectedFile == file ? BrowserItem::ofFile(file) : BrowserItem();
        publish(SelectionReason::FileClosed);
    }
    file->close();
}

void BrowserController::removeFile(TOrbMDBFile *file)
{
    if (!file)
        return;
    clearSelectionIfIn(file);
    closeFile(file);
    const std::string fullPath = file->openPath();
    for (std::size_t i = 0; i < m_recentFiles.size(); ++i)
        if (m_recentFiles[i].get() == file) {
            retire(i);
            break;
        }
    std::vector<std::string> remaining = m_recentDocuments.paths();
    m_recentDocuments.clear();
    std::erase(remaining, fullPath);
    for (auto it = remaining.rbegin(); it != remaining.rend(); ++it)
        m_recentDocuments.note(*it);
    refreshRecentFiles();
}

void BrowserController::removeOtherFiles(TOrbMDBFile *file)
{
    if (!file)
        return;
    for (const auto &other : m_recentFiles)
        if (other.get() != file) {
            clearSelectionIfIn(other.get());
            closeFile(other.get());
        }
    while (!m_recentFiles.empty())
        retire(m_recentFiles.size() - 1);
    m_recentDocuments.clear();
    m_recentDocuments.note(file->openPath());
    refreshRecentFiles();
}

void BrowserController::clearRecentDocuments()
{
    m_recentDocuments.clear();
    clearSelection(SelectionReason::FileClosed);
    for (const auto &file : m_recentFiles)
        closeFile(file.get());
    while (!m_recentFiles.empty())
        retire(m_recentFiles.size() - 1);
}

void BrowserController::closeAll()
{
    clearSelection(SelectionReason::FileClosed);
    for (const auto &file : m_recentFiles)
        closeFile(file.get());
    while (!m_recentFiles.empty())
        retire(m_recentFiles.size() - 1);
}

bool BrowserController::select(BrowserItem item, SelectionReason reason)
{
    const bool fromView = reason == SelectionReason::FileList || reason == SelectionReason::JumpBar;
    if (fromView && item == m_selection)
        return false;
    if (item.isTable()) {
        m_selectedTable = item.table;
        m_selectedFile = item.table->file();
        if (fromView)
            m_history.recordVisit(item.table);
    } else if (!item.isNone()) {
        m_selectedTable = nullptr;
        m_selectedFile = ownerFile(item);
    }
    m_selection = item;
    publish(reason);
    return true;
}

void BrowserController::clearSelection(SelectionReason reason)
{
    m_selectedTable = nullptr;
    m_selectedFile = nullptr;
    m_selection = {};
    publish(reason);
}

void BrowserController::publish(SelectionReason reason)
{
    if (m_listener)
        m_listener->selectionChanged(m_selection, reason);
}

bool BrowserController::showHistoryTarget(TOrbMDBTable *target)
{
    // Only a table that is still reachable from the list can be shown again.
    if (!target || !isListed(target->file()) || !isOpen(target->file()))
        return false;
    select(BrowserItem::ofTable(target), SelectionReason::History);
    return m_selectedTable == target;
}

void BrowserController::goBack()
{
    m_history.goBack([this](TOrbMDBTable *target) { return showHistoryTarget(target); });
}

void BrowserController::goNext()
{
    m_history.goNext([this](TOrbMDBTable *target) { return showHistoryTarget(target); });
}

std::string BrowserController::statusForNoSelection() const
{
    return vellum::statusForNoSelection(fileEntities().size());
}

std::string BrowserController::statusForFileSelection() const
{
    std::optional<std::size_t> tables;
    if (isOpen(m_selectedFile)) {
        // A file read with losses says so instead of its table count.
        if (!m_selectedFile->losses().empty())
            return lossNotice(m_selectedFile->losses());
        tables = m_selectedFile->tables().size();
    }
    return vellum::statusForFileSelection(fileEntities().size(), tables);
}

std::string BrowserController::statusForTableSelection() const
{
    if (!m_selectedTable)
        return statusForNoSelection();
    return vellum::statusForTableSelection(tableEntities(m_selectedTable->file()).size(), m_selectedTable->rowCount());
}

std::string BrowserController::statusForCurrentSelection() const
{
    if (m_selectedTable)
        return statusForTableSelection();
    if (m_selectedFile)
        return statusForFileSelection();
    return statusForNoSelection();
}

std::unique_ptr<JumpBarMenu> BrowserController::makeJumpBarMenu() const
{
    return buildJumpBarMenu(recentFiles(), m_selectedFile, m_loadingFile);
}

} // namespace vellum
