#pragma once

#include "browser/RowFilter.h"
#include "browser/RowSet.h"
#include "model/CellValue.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QIcon>

namespace vellum {

class TOrbMDBTable;

/// The data grid's model over one table: one column per table column in stored order, one row
/// per entry of the row set (sorted and filtered row numbers). A cell's text is made when the
/// view asks for it, from the table's compact storage; nothing is formatted ahead.
class TableDataModel : public QAbstractTableModel {
    Q_OBJECT
public:
    /// True for a cell whose value is a blob (the value itself: cellValue).
    static constexpr int IsBlobRole = Qt::UserRole + 1;

    explicit TableDataModel(QObject *parent = nullptr);

    /// Shows a table (or none) with the given data filter: sorts, filters, resets.
    void showTable(const TOrbMDBTable *table, const RowFilter &filter);
    /// Sorts and filters the shown table again (after a header click or a new search).
    void reload(const RowFilter &filter);
    const TOrbMDBTable *table() const { return m_rows.table(); }
    const RowSet &rowSet() const { return m_rows; }

    /// The value of a grid cell.
    CellValue cellValue(int row, int column) const;
    /// The table row shown at a grid row.
    std::uint32_t tableRow(int row) const { return m_rows.rowAt(static_cast<std::size_t>(row)); }
    bool isOLEColumn(int column) const;
    /// The sort state of a column as stored in the model column (1, -1 or 0).
    std::int64_t sortOrder(int column) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    RowSet m_rows;
    int m_columnCount = 0;
    QFont m_cellFont;
    QIcon m_keyIcon;
};

} // namespace vellum
