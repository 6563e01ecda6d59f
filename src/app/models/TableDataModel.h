#pragma once

#include "browser/RowFilter.h"
#include "browser/RowSet.h"
#include "model/CellValue.h"
#include "util/BackgroundTask.h"

#include <QAbstractTableModel>
#include <QFont>
#include <QIcon>

#include <functional>

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

    /// Tables with fewer rows are sorted and filtered on the GUI thread (a few milliseconds, and
    /// no flicker); larger ones on the model's worker thread.
    static constexpr std::size_t kBackgroundRows = 16384;

    /// Run on the GUI thread when the rows of a request are put in: `before` while the old rows
    /// are still shown, `after` once the new ones are. Neither runs for a request that a newer
    /// one replaced; for a small table both run inside the call that asked.
    struct ReloadHooks {
        std::function<void()> before;
        std::function<void()> after;
    };

    explicit TableDataModel(QObject *parent = nullptr);
    /// Stops a running sort and waits for it (it reads the table).
    ~TableDataModel() override;

    /// Shows a table (or none) with the given data filter: the columns at once, the sorted and
    /// filtered rows when they are ready (until then none, for another table). Waits for work
    /// still reading the table shown before, so that it may be freed afterwards.
    void showTable(const TOrbMDBTable *table, const RowFilter &filter, ReloadHooks hooks = {});
    /// Sorts and filters the shown table again (after a header click or a new search); the
    /// rows shown keep their order until the new ones are ready.
    void reload(const RowFilter &filter, ReloadHooks hooks = {});
    /// Whether sorting or filtering runs on the worker thread and its rows are not in yet.
    bool isReloading() const { return m_reloading; }
    const TOrbMDBTable *table() const { return m_table; }
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

signals:
    /// Sorting or filtering began on the worker thread.
    void reloadStarted();
    /// The rows of the newest request are in (or a request on the GUI thread replaced it).
    void reloadFinished();

private:
    void request(const TOrbMDBTable *table, const RowFilter &filter, ReloadHooks hooks);
    void rowsArrived(std::uint64_t generation, RowSet rows);
    void putRows(const TOrbMDBTable *table, RowSet rows, const ReloadHooks &hooks);
    void setReloading(bool reloading);

    const TOrbMDBTable *m_table = nullptr;
    RowSet m_rows;
    ReloadHooks m_pendingHooks;
    bool m_reloading = false;
    int m_columnCount = 0;
    QFont m_cellFont;
    QIcon m_keyIcon;
    // Last member: destroyed (its work stopped and waited for) before the rest goes.
    BackgroundTask m_task;
};

} // namespace vellum
