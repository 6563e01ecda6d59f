#pragma once

#include "browser/RowFilter.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// Asked now and then by long work: true when the work should give up (its result is no longer
/// wanted). An empty check never stops.
using StopCheck = std::function<bool()>;

/// The rows a grid shows: positions of a table's rows, sorted by the first column with a
/// non-zero `sortOrder` and narrowed by the data filter. Only row numbers are kept; cells are
/// read from the table when they are drawn.
class RowSet {
public:
    /// The sorted orders of one table kept between rebuilds, shared read-only between the sets
    /// made from one another (a rebuild may run on another thread while the old set is shown).
    struct Orders {
        /// The sorted order before filtering, and the sort it was made for.
        std::shared_ptr<const std::vector<std::uint32_t>> sorted;
        std::optional<std::size_t> sortColumn;
        std::int64_t sortDirection = 0;
        /// The ascending order of the last sorted column.
        std::shared_ptr<const std::vector<std::uint32_t>> ascending;
        std::optional<std::size_t> ascendingColumn;
    };

    /// Everything one rebuild needs, taken on the thread that owns the set (the sort state is
    /// read from the table's columns, which header clicks change there).
    struct Request {
        const TOrbMDBTable *table = nullptr;
        std::optional<std::size_t> sortColumn;
        std::int64_t sortDirection = 0;
        RowFilter filter;
        Orders orders;
    };

    /// The request that rebuilds this set for a table (or none) and a filter, reusing this set's
    /// sorted orders when the table is the same. Owner's thread.
    Request request(const TOrbMDBTable *table, const RowFilter &filter) const;
    /// Builds a set for a request: sort, then filter. Reads only the request and the table, so
    /// it may run on any thread while the table is not changed or freed. The sorted order of a
    /// table is kept as long as neither the table nor its sort changes, so typing in the search
    /// field does not sort again, and a column sorted one way is sorted the other way by reading
    /// it backwards. The work is shared with helper threads for large tables. Nothing when
    /// `stopped` answered true on the way.
    static std::optional<RowSet> build(const Request &request, const StopCheck &stopped);

    /// Rebuilds the set for a table (or none) on the calling thread: sort, then filter.
    void reload(const TOrbMDBTable *table, const RowFilter &filter);
    /// Empties the set and forgets the table.
    void clear();

    const TOrbMDBTable *table() const { return m_table; }
    std::size_t size() const { return m_rows.size(); }
    bool empty() const { return m_rows.empty(); }
    /// The table row shown at a position of the set.
    std::uint32_t rowAt(std::size_t position) const { return m_rows[position]; }
    const std::vector<std::uint32_t> &rows() const { return m_rows; }
    /// The position at which a table row is shown, if it is in the set.
    std::optional<std::size_t> positionOfRow(std::uint32_t row) const;
    /// The sort this set was built for: the column (none: storage order) and its direction.
    std::optional<std::size_t> sortColumn() const { return m_sortColumn; }
    std::int64_t sortDirection() const { return m_sortDirection; }

private:
    const TOrbMDBTable *m_table = nullptr;
    std::vector<std::uint32_t> m_rows;
    std::optional<std::size_t> m_sortColumn;
    std::int64_t m_sortDirection = 0;
    Orders m_orders;
};

/// The rows of a table in the order of the text sort on one column: values compared with
/// finderCompare, null and blob cells as empty text, `direction` 1 ascending and any other
/// value descending. Equal values keep their storage order ascending (reversed descending).
std::vector<std::uint32_t> sortedRows(const TOrbMDBTable &table, std::size_t column, std::int64_t direction);

/// The header-click cycle of a column's sort state: 0 → 1 → -1 → 0; any other state → 0.
std::int64_t nextSortOrder(std::int64_t current);

/// A click on a column header: the clicked column steps through the cycle, every other column
/// of the table goes back to 0 (written into the model columns' `sortOrder`, the one part of a
/// loaded table that the views change).
void applyHeaderClick(const TOrbMDBTable &table, std::size_t clickedColumn);

/// The column the grid sorts by: the first with a non-zero `sortOrder`, if any.
std::optional<std::size_t> sortColumnOf(const TOrbMDBTable &table);

} // namespace vellum
