#pragma once

#include <QAbstractTableModel>
#include <QStringList>

namespace vellum {

class TOrbMDBObject;

/// A label/value list of the information pane: one row per label of a model object's
/// `getObjectLabels`, the value looked up in `getObjectValues`. Columns "label" and "value".
class InfoRowsModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    /// Shows an object's rows (none for nullptr), leaving out the rows labelled in `omitted`
    /// (the English labels; a pane that shows such a value in a view of its own).
    void setObject(const TOrbMDBObject *object, const QStringList &omitted = {});
    void clear() { setObject(nullptr); }
    const QStringList &labels() const { return m_labels; }
    const QStringList &values() const { return m_values; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    QStringList m_labels;
    QStringList m_values;
};

/// A names list of the information pane: one column "value" with the header "Name".
class NamesListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    void setNames(const QStringList &names);
    const QStringList &names() const { return m_names; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

private:
    QStringList m_names;
};

} // namespace vellum
