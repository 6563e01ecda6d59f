#include "app/models/InfoRowsModel.h"

#include "app/support/qtStrings.h"
#include "model/TOrbMDBObject.h"

namespace vellum {

void InfoRowsModel::setObject(const TOrbMDBObject *object, const QStringList &omitted)
{
    beginResetModel();
    m_labels.clear();
    m_values.clear();
    if (object) {
        const ObjectValues values = object->getObjectValues();
        for (const std::string &label : object->getObjectLabels()) {
            if (omitted.contains(toQString(label)))
                continue;
            m_labels.append(toQString(label));
            const auto found = values.find(label);
            m_values.append(found == values.end() ? QString() : toQString(infoValueText(found->second)));
        }
    }
    endResetModel();
}

int InfoRowsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_labels.size());
}

int InfoRowsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant InfoRowsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_labels.size())
        return {};
    const bool label = index.column() == 0;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return label ? m_labels[index.row()] : m_values[index.row()];
    case Qt::ToolTipRole:
        return label ? QVariant() : QVariant(m_values[index.row()]);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(label ? Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter)
                                         : Qt::Alignment(Qt::AlignLeft | Qt::AlignVCenter));
    default:
        return {};
    }
}

QVariant InfoRowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole && (section == 0 || section == 1))
        return section == 0 ? QStringLiteral("label") : QStringLiteral("value");
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags InfoRowsModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    // Values open a read-only editor so that their text can be selected and copied.
    return index.column() == 0 ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsEditable;
}

void NamesListModel::setNames(const QStringList &names)
{
    beginResetModel();
    m_names = names;
    endResetModel();
}

int NamesListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_names.size());
}

int NamesListModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 1;
}

QVariant NamesListModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_names.size() || index.column() != 0)
        return {};
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return m_names[index.row()];
    return {};
}

QVariant NamesListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Horizontal && section == 0 && role == Qt::DisplayRole)
        return localizedQ("Name");
    return QAbstractTableModel::headerData(section, orientation, role);
}

} // namespace vellum
