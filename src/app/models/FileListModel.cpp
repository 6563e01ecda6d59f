#include "app/models/FileListModel.h"

#include "app/support/applicationSetup.h"
#include "app/support/qtStrings.h"
#include "browser/BrowserController.h"
#include "model/TOrbMDBFile.h"

#include <algorithm>

namespace vellum {

// Internal ids: 0 for a file row, the file's position + 1 for a row under a file.

BrowserItem FileListModel::FileNode::child(std::size_t row) const
{
    if (row < tables.size())
        return BrowserItem::ofTable(tables[row]);
    row -= tables.size();
    if (row < linkedTables.size())
        return BrowserItem::ofLinkedTable(linkedTables[row]);
    row -= linkedTables.size();
    if (row < queries.size())
        return BrowserItem::ofQuery(queries[row]);
    return {};
}

FileListModel::FileListModel(BrowserController &controller, QObject *parent)
    : QAbstractItemModel(parent), m_controller(controller), m_fileIcon(namedIcon("FileList_MDBFile")),
      m_tableIcon(namedIcon("FileList_Table")), m_linkedTableIcon(namedIcon("FileList_LinkedTable")),
      m_queryIcon(namedIcon("FileList_Query"))
{
    reload();
}

void FileListModel::reload()
{
    beginResetModel();
    m_files.clear();
    for (TOrbMDBFile *file : m_controller.fileEntities()) {
        FileNode node{file, m_controller.isOpen(file), {}, {}, {}};
        if (node.open) {
            node.tables = m_controller.tableEntities(file);
            node.linkedTables = m_controller.linkedTableEntities(file);
            node.queries = m_controller.queryEntities(file);
        }
        m_files.push_back(std::move(node));
    }
    endResetModel();
}

void FileListModel::setNumRowsShown(bool shown)
{
    if (shown == m_numRowsShown)
        return;
    m_numRowsShown = shown;
    // Only the tables' texts change: no reset, so that the view keeps its expanded files, its
    // selection and its scroll position.
    for (std::size_t i = 0; i < m_files.size(); ++i)
        if (!m_files[i].tables.empty())
            emit dataChanged(childIndex(i, 0), childIndex(i, m_files[i].tables.size() - 1),
                             {Qt::DisplayRole, RowCountRole});
}

BrowserItem FileListModel::itemForIndex(const QModelIndex &index) const
{
    if (!index.isValid() || index.model() != this)
        return {};
    if (index.internalId() == 0)
        return static_cast<std::size_t>(index.row()) < m_files.size()
                   ? BrowserItem::ofFile(m_files[static_cast<std::size_t>(index.row())].file)
                   : BrowserItem();
    const std::size_t fileRow = index.internalId() - 1;
    if (fileRow >= m_files.size())
        return {};
    return m_files[fileRow].child(static_cast<std::size_t>(index.row()));
}

QModelIndex FileListModel::childIndex(std::size_t fileRow, std::size_t row) const
{
    return createIndex(static_cast<int>(row), 0, quintptr(fileRow + 1));
}

QModelIndex FileListModel::indexForFile(const TOrbMDBFile *file) const
{
    for (std::size_t i = 0; i < m_files.size(); ++i)
        if (m_files[i].file == file)
            return createIndex(static_cast<int>(i), 0, quintptr(0));
    return {};
}

QModelIndex FileListModel::indexForTable(const TOrbMDBTable *table) const
{
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        const auto &tables = m_files[i].tables;
        if (const auto it = std::find(tables.begin(), tables.end(), table); it != tables.end())
            return childIndex(i, static_cast<std::size_t>(it - tables.begin()));
    }
    return {};
}

QModelIndex FileListModel::indexForLinkedTable(const TOrbMDBLinkedTable *link) const
{
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        const auto &links = m_files[i].linkedTables;
        if (const auto it = std::find(links.begin(), links.end(), link); it != links.end())
            return childIndex(i, m_files[i].tables.size() + static_cast<std::size_t>(it - links.begin()));
    }
    return {};
}

QModelIndex FileListModel::indexForQuery(const TOrbMDBQuery *query) const
{
    for (std::size_t i = 0; i < m_files.size(); ++i) {
        const auto &queries = m_files[i].queries;
        if (const auto it = std::find(queries.begin(), queries.end(), query); it != queries.end())
            return childIndex(i, m_files[i].tables.size() + m_files[i].linkedTables.size() +
                                     static_cast<std::size_t>(it - queries.begin()));
    }
    return {};
}

QModelIndex FileListModel::indexForItem(const BrowserItem &item) const
{
    if (item.isFile())
        return indexForFile(item.file);
    if (item.isTable())
        return indexForTable(item.table);
    if (item.isLinkedTable())
        return indexForLinkedTable(item.linkedTable);
    if (item.isQuery())
        return indexForQuery(item.query);
    return {};
}

QModelIndex FileListModel::index(int row, int column, const QModelIndex &parent) const
{
    if (row < 0 || column != 0)
        return {};
    if (!parent.isValid())
        return static_cast<std::size_t>(row) < m_files.size() ? createIndex(row, 0, quintptr(0)) : QModelIndex();
    if (parent.internalId() != 0 || static_cast<std::size_t>(parent.row()) >= m_files.size())
        return {};
    const FileNode &node = m_files[static_cast<std::size_t>(parent.row())];
    if (static_cast<std::size_t>(row) >= node.childCount())
        return {};
    return createIndex(row, 0, quintptr(parent.row() + 1));
}

QModelIndex FileListModel::parent(const QModelIndex &child) const
{
    if (!child.isValid() || child.internalId() == 0)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), 0, quintptr(0));
}

int FileListModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_files.size());
    if (parent.column() != 0 || parent.internalId() != 0 || static_cast<std::size_t>(parent.row()) >= m_files.size())
        return 0;
    return static_cast<int>(m_files[static_cast<std::size_t>(parent.row())].childCount());
}

int FileListModel::columnCount(const QModelIndex &) const
{
    return 1;
}

bool FileListModel::hasChildren(const QModelIndex &parent) const
{
    return rowCount(parent) > 0;
}

QVariant FileListModel::data(const QModelIndex &index, int role) const
{
    const BrowserItem item = itemForIndex(index);
    if (item.isFile()) {
        switch (role) {
        case Qt::DisplayRole:
        case NameRole:
            return toQString(item.file->name());
        case Qt::DecorationRole:
            return m_fileIcon;
        case Qt::ToolTipRole:
            return toQString(item.file->fullPath());
        default:
            return {};
        }
    }
    if (item.isTable()) {
        const auto rows = static_cast<qlonglong>(item.table->rowCount());
        switch (role) {
        case Qt::DisplayRole:
            return m_numRowsShown ? toQString(item.table->name()) + QStringLiteral("  (%1)").arg(rows)
                                  : toQString(item.table->name());
        case Qt::DecorationRole:
            return m_tableIcon;
        case RowCountRole:
            return m_numRowsShown ? QVariant(rows) : QVariant();
        case NameRole:
            return toQString(item.table->name());
        default:
            return {};
        }
    }
    if (item.isLinkedTable()) {
        switch (role) {
        case Qt::DisplayRole:
        case NameRole:
            return toQString(item.linkedTable->name());
        case Qt::DecorationRole:
            return m_linkedTableIcon;
        case Qt::ToolTipRole:
            return toQString(item.linkedTable->targetDescription());
        default:
            return {};
        }
    }
    if (item.isQuery()) {
        switch (role) {
        case Qt::DisplayRole:
        case NameRole:
            return toQString(item.query->name());
        case Qt::DecorationRole:
            return m_queryIcon;
        default:
            return {};
        }
    }
    return {};
}

Qt::ItemFlags FileListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace vellum
