#include "browser/RowSet.h"

#include "model/TOrbMDBTable.h"
#include "util/finderCompare.h"

#include <algorithm>
#include <cstring>
#include <thread>

namespace vellum {

namespace {

/// Bytes of collation key kept per row. Longer keys are cut; rows whose cut keys are equal are
/// compared on their full texts, which is rare at this length.
constexpr std::size_t kKeyBytes = 58;

struct SortEntry {
    unsigned char key[kKeyBytes];
    unsigned char length;
    std::uint32_t row;
};
static_assert(sizeof(SortEntry) == 64);

/// Below this many rows the work stays on the calling thread.
constexpr std::size_t kParallelThreshold = 32768;

/// Runs `work(begin, end)` over [0, count) in one chunk per hardware thread (at most 4), the
/// first chunk on the calling thread; returns when all are done.
template <typename Work>
void forChunks(std::size_t count, const Work &work)
{
    std::size_t chunks = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 4);
    if (count < kParallelThreshold)
        chunks = 1;
    std::vector<std::thread> threads;
    const std::size_t step = (count + chunks - 1) / chunks;
    for (std::size_t c = 1; c < chunks; ++c) {
        const std::size_t begin = std::min(count, c * step);
        const std::size_t end = std::min(count, begin + step);
        threads.emplace_back([&work, begin, end] { work(begin, end); });
    }
    work(0, std::min(count, step));
    for (std::thread &t : threads)
        t.join();
}

std::string_view sortText(const TOrbMDBTable &table, std::uint32_t row, std::size_t column)
{
    const CellValue value = table.cell(row, column);
    return value.isText() ? value.text : std::string_view();
}

} // namespace

std::vector<std::uint32_t> sortedRows(const TOrbMDBTable &table, std::size_t column, std::int64_t direction)
{
    const std::size_t count = table.rowCount();
    std::vector<SortEntry> entries(count);
    forChunks(count, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            SortEntry &entry = entries[i];
            entry.row = static_cast<std::uint32_t>(i);
            entry.length = static_cast<unsigned char>(
                finderSortKeyPart(sortText(table, entry.row, column), entry.key, kKeyBytes));
        }
    });
    // a < b in the ascending order.
    const auto ascending = [&](const SortEntry &a, const SortEntry &b) {
        const std::size_t common = std::min(a.length, b.length);
        const int c = std::memcmp(a.key, b.key, common);
        if (c != 0)
            return c < 0;
        if (a.length == kKeyBytes && b.length == kKeyBytes) {
            // Cut keys that tie: equal texts are equal without asking the collator.
            const std::string_view textA = sortText(table, a.row, column);
            const std::string_view textB = sortText(table, b.row, column);
            return textA != textB && finderCompare(textA, textB) < 0;
        }
        return a.length < b.length;
    };
    const auto descending = [&](const SortEntry &a, const SortEntry &b) { return ascending(b, a); };
    // Both halves are sorted at once, then merged; a stable merge of stable sorts is stable.
    const auto sortRange = [&](auto first, auto last) {
        if (direction == 1)
            std::stable_sort(first, last, ascending);
        else
            std::stable_sort(first, last, descending);
    };
    if (count >= kParallelThreshold && std::thread::hardware_concurrency() > 1) {
        const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(count / 2);
        std::thread second([&] { sortRange(middle, entries.end()); });
        sortRange(entries.begin(), middle);
        second.join();
        if (direction == 1)
            std::inplace_merge(entries.begin(), middle, entries.end(), ascending);
        else
            std::inplace_merge(entries.begin(), middle, entries.end(), descending);
    } else {
        sortRange(entries.begin(), entries.end());
    }
    std::vector<std::uint32_t> out(count);
    for (std::size_t i = 0; i < count; ++i)
        out[i] = entries[i].row;
    return out;
}

std::int64_t nextSortOrder(std::int64_t current)
{
    if (current == 0)
        return 1;
    if (current == 1)
        return -1;
    return 0;
}

void applyHeaderClick(const TOrbMDBTable &table, std::size_t clickedColumn)
{
    const auto &columns = table.columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        columns[i]->setSortOrder(i == clickedColumn ? nextSortOrder(columns[i]->sortOrder()) : 0);
}

std::optional<std::size_t> sortColumnOf(const TOrbMDBTable &table)
{
    const auto &columns = table.columns();
    for (std::size_t i = 0; i < columns.size(); ++i)
        if (columns[i]->sortOrder() != 0)
            return i;
    return std::nullopt;
}

void RowSet::clear()
{
    m_table = nullptr;
    m_rows.clear();
    m_sorted.clear();
    m_sortedValid = false;
}

void RowSet::reload(const TOrbMDBTable *table, const RowFilter &filter)
{
    if (table != m_table)
        clear();
    m_table = table;
    m_rows.clear();
    if (!table)
        return;

    const std::optional<std::size_t> column = sortColumnOf(*table);
    const std::int64_t direction = column ? table->columns()[*column]->sortOrder() : 0;
    if (!m_sortedValid || column != m_sortColumn || direction != m_sortDirection ||
        m_sorted.size() != table->rowCount()) {
        if (column) {
            m_sorted = sortedRows(*table, *column, direction);
        } else {
            m_sorted.resize(table->rowCount());
            for (std::size_t i = 0; i < m_sorted.size(); ++i)
                m_sorted[i] = static_cast<std::uint32_t>(i);
        }
        m_sortColumn = column;
        m_sortDirection = direction;
        m_sortedValid = true;
    }

    if (!filter.active()) {
        m_rows = m_sorted;
        return;
    }
    const std::vector<std::size_t> searchColumns = RowFilter::searchColumns(*table);
    // Rows are tested in storage order (memory is read front to back), then taken in the
    // sorted order.
    std::vector<char> passes(table->rowCount());
    forChunks(passes.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t row = begin; row < end; ++row)
            passes[row] = filter.rowPasses(*table, row, searchColumns);
    });
    for (const std::uint32_t row : m_sorted)
        if (passes[row])
            m_rows.push_back(row);
}

std::optional<std::size_t> RowSet::positionOfRow(std::uint32_t row) const
{
    const auto it = std::find(m_rows.begin(), m_rows.end(), row);
    if (it == m_rows.end())
        return std::nullopt;
    return static_cast<std::size_t>(it - m_rows.begin());
}

} // namespace vellum
