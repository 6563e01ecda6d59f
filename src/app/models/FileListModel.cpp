#include "app/models/FileListModel.h"

#include "app/support/applicationSetup.h"
#include "app/support/qtStrings.h"
#include "browser/BrowserController.h"
#include "model/TOrbMDBFile.h"

namespace vellum {

// Internal ids: 0 for a file row, the file's position + 1 for a table row.

FileListModel::FileListModel(BrowserController &controller, QObject *parent)
    : QAbstractItemModel(parent), m_controller(controller), m_fileIcon(namedIcon("FileList_MDBFile")),
      m_tableIcon(namedIcon("FileList_Table"))
{
    reload();
}

void FileListModel::reload()
{
    beginResetModel();
    m_files.clear();
    for (TOrbMDBFile *file : m_controller.fileEntities()) {
        FileNode node{file, m_controller.isOpen(file), {}};
        if (node.open)
            node.tables = m_controller.tableEntities(file);
        m_files.push_back(std::move(node));
    }
    endResetModel();
}

void FileListModel::setNumRowsShown(bool shown)
{
    if (shown == m_numRowsShown)
        return;
    m_numRowsShown = shown;
    reload();
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
    if (fileRow >= m_files.size() || static_cast<std::size_t>(index.row()) >= m_files[fileRow].tables.size())
        return {};
    return BrowserItem::ofTable(m_files[fileRow].tables[static_cast<std::size_t>(index.row())]);
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
    for (std::size_t i = 0; i < m_files.size(); ++i)
        for (std::size_t t = 0; t < m_files[i].tables.size(); ++t)
            if (m_files[i].tables[t] == table)
                return createIndex(static_cast<int>(t), 0, quintptr(i + 1));
    return {};
}

QModelIndex FileListModel::indexForItem(const BrowserItem &item) const
{
    if (item.isFile())
        return indexForFile(item.file);
    if (item.isTable())
        return indexForTable(item.table);
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
    if (static_cast<std::size_t>(row) >= node.tables.size())
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
    return static_cast<int>(m_files[static_cast<std::size_t>(parent.row())].tables.size());
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
    return {};
}

Qt::ItemFlags FileListModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

} // namespace vellum
