#pragma once

#include "browser/RowFilter.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// The rows a grid shows: positions of a table's rows, sorted by the first column with a
/// non-zero `sortOrder` and narrowed by the data filter. Only row numbers are kept; cells are
/// read from the table when they are drawn.
class RowSet {
public:
    /// Rebuilds the set for a table (or none): sort, then filter. The sorted order of the
    /// table shown is kept between reloads as long as neither the table nor its sort changes,
    /// so typing in the search field does not sort again, and a column sorted one way is
    /// sorted the other way by reading it backwards. Runs on the calling thread (the work is
    /// shared with helper threads for large tables).
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

private:
    const TOrbMDBTable *m_table = nullptr;
    std::vector<std::uint32_t> m_rows;
    // The sorted order of m_table before filtering, and the sort it was made for.
    std::vector<std::uint32_t> m_sorted;
    std::optional<std::size_t> m_sortColumn;
    std::int64_t m_sortDirection = 0;
    bool m_sortedValid = false;
    // The ascending order of the last sorted column of m_table.
    std::vector<std::uint32_t> m_ascending;
    std::optional<std::size_t> m_ascendingColumn;
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
