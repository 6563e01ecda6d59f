#include "app/models/ExportEntriesModel.h"

#include "app/support/qtStrings.h"
#include "export/ExportJob.h"

namespace vellum {

ExportEntriesModel::ExportEntriesModel(ExportJob &job, QObject *parent) : QAbstractTableModel(parent), m_job(&job) {}

void ExportEntriesModel::reload()
{
    beginResetModel();
    endResetModel();
}

void ExportEntriesModel::detach()
{
    beginResetModel();
    m_job = nullptr;
    endResetModel();
}

int ExportEntriesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() || !m_job ? 0 : static_cast<int>(m_job->entries().size());
}

int ExportEntriesModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 3;
}

QVariant ExportEntriesModel::data(const QModelIndex &index, int role) const
{
    if (!m_job || !index.isValid() || static_cast<std::size_t>(index.row()) >= m_job->entries().size())
        return {};
    const ExportEntry &entry = m_job->entries()[static_cast<std::size_t>(index.row())];
    switch (index.column()) {
    case SelectedColumn:
        if (role == Qt::CheckStateRole)
            return entry.selected ? Qt::Checked : Qt::Unchecked;
        return {};
    case TableNameColumn:
        if (role == Qt::DisplayRole)
            return toQString(entry.tableName);
        return {};
    case FileNameColumn:
        if (role == Qt::DisplayRole || role == Qt::EditRole)
            return toQString(entry.exportFileName);
        return {};
    default:
        return {};
    }
}

bool ExportEntriesModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!m_job || !index.isValid() || static_cast<std::size_t>(index.row()) >= m_job->entries().size())
        return false;
    const auto row = static_cast<std::size_t>(index.row());
    if (index.column() == SelectedColumn && role == Qt::CheckStateRole) {
        m_job->setEntrySelected(row, value.toInt() == Qt::Checked);
        emit dataChanged(index, index, {Qt::CheckStateRole});
        emit selectedCountChanged(m_job->selectedTableCount());
        return true;
    }
    if (index.column() == FileNameColumn && role == Qt::EditRole) {
        const QString name = value.toString();
        if (name.isEmpty())
            return false;
        m_job->setEntryFileName(row, name.toStdString());
        emit dataChanged(index, index, {Qt::DisplayRole, Qt::EditRole});
        return true;
    }
    return false;
}

QVariant ExportEntriesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case SelectedColumn:
        return QString();
    case TableNameColumn:
        return localizedQ("Table Name");
    case FileNameColumn:
        return localizedQ("File Name");
    default:
        return {};
    }
}

Qt::ItemFlags ExportEntriesModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    switch (index.column()) {
    case SelectedColumn:
        return Qt::ItemIsEnabled | Qt::ItemIsUserCheckable;
    case FileNameColumn:
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable;
    default:
        return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    }
}

} // namespace vellum
