#pragma once

#include <QAbstractTableModel>

namespace vellum {

class ExportJob;

/// The export wizard's table list over the job's entries: a check box ("selected"), the table
/// name ("tablename", header "Table Name") and the editable file name ("filename", header
/// "File Name"). Only the check box and the file name can be changed.
class ExportEntriesModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { SelectedColumn = 0, TableNameColumn = 1, FileNameColumn = 2 };

    explicit ExportEntriesModel(ExportJob &job, QObject *parent = nullptr);

    /// Reads the entries again (after Select All / Deselect All).
    void reload();
    /// Stops answering (the job's list becomes the export's own once it starts).
    void detach();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

signals:
    /// A check box changed: the number of selected entries is now `count`.
    void selectedCountChanged(int count);

private:
    ExportJob *m_job;
};

} // namespace vellum
