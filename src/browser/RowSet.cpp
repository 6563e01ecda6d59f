#include "browser/RowSet.h"

#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"
#include "util/finderCompare.h"
#include "util/parallel.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <string>

namespace vellum {

namespace {

/// Sort keys are made for every row up to a fixed number of bytes: 26 when a sample of the
/// column shows that short prefixes tell rows apart (numbers, codes, GUIDs), else 58 (texts with
/// long common beginnings). Rows whose prefixes still tie are told apart by the next parts of
/// their keys (kChunkBytes at a time), made only for them.
constexpr std::size_t kShortKeyBytes = 26;
constexpr std::size_t kLongKeyBytes = 58;
constexpr std::size_t kChunkBytes = 32;
/// After this many further chunks the rows still tied are compared on their full texts.
constexpr int kMaxChunks = 16;
/// Rows looked at to choose the key length.
constexpr std::size_t kSampleRows = 1024;

template <std::size_t KeyBytes> struct SortEntry {
    unsigned char key[KeyBytes];
    unsigned char length;
    std::uint32_t row;
};
static_assert(sizeof(SortEntry<kShortKeyBytes>) == 32);
static_assert(sizeof(SortEntry<kLongKeyBytes>) == 64);

bool isStopped(const StopCheck &stopped)
{
    return stopped && stopped();
}

std::string_view sortText(const TOrbMDBTable &table, std::uint32_t row, std::size_t column)
{
    const CellValue value = table.cell(row, column);
    if (value.complex)
        return value.complex->displayText(); // what the grid shows, not the stored id
    return value.isText() ? value.text : std::string_view();
}

/// Key prefixes in ascending order; equal cut prefixes count as equal here.
template <std::size_t KeyBytes> bool prefixLess(const SortEntry<KeyBytes> &a, const SortEntry<KeyBytes> &b)
{
    const int c = std::memcmp(a.key, b.key, std::min(a.length, b.length));
    if (c != 0)
        return c < 0;
    return a.length < b.length;
}

template <std::size_t KeyBytes> bool prefixTied(const SortEntry<KeyBytes> &a, const SortEntry<KeyBytes> &b)
{
    return a.length == KeyBytes && b.length == KeyBytes && std::memcmp(a.key, b.key, KeyBytes) == 0;
}

/// The key of a text in a column's chosen kind of key (the collator's, or the fast ASCII key).
std::string columnKey(std::string_view text, bool ascii)
{
    std::string key;
    if (ascii) {
        finderAsciiSortKey(text, key);
    } else {
        unsigned char buffer[kLongKeyBytes];
        key.assign(reinterpret_cast<const char *>(buffer), finderSortKeyPart(text, buffer, kLongKeyBytes));
    }
    return key;
}

/// The prefix length that tells the rows apart: the short one when, in a sample of the column,
/// every two neighbouring keys differ well within it.
std::size_t chooseKeyBytes(const TOrbMDBTable &table, std::size_t column, bool ascii)
{
    const std::size_t count = table.rowCount();
    const std::size_t samples = std::min(count, kSampleRows);
    if (samples < 2)
        return kShortKeyBytes;
    std::vector<std::string> keys(samples);
    for (std::size_t i = 0; i < samples; ++i)
        keys[i] = columnKey(sortText(table, static_cast<std::uint32_t>(i * count / samples), column), ascii);
    std::sort(keys.begin(), keys.end());
    std::size_t decisive = 0;
    for (std::size_t i = 1; i < samples; ++i) {
        const std::string &a = keys[i - 1];
        const std::string &b = keys[i];
        if (a == b)
            continue;
        std::size_t d = 0;
        while (d < a.size() && d < b.size() && a[d] == b[d])
            ++d;
        decisive = std::max(decisive, d + 1);
    }
    // The whole column has more neighbours, closer together, than the sample: keep room.
    return decisive + 10 <= kShortKeyBytes ? kShortKeyBytes : kLongKeyBytes;
}

/// Whether every text of a column is ASCII (then the fast keys serve).
bool columnIsAscii(const TOrbMDBTable &table, std::size_t column)
{
    const std::size_t count = table.rowCount();
    for (std::size_t row = 0; row < count; ++row) {
        unsigned char bits = 0;
        for (const char c : sortText(table, static_cast<std::uint32_t>(row), column))
            bits |= static_cast<unsigned char>(c);
        if (bits >= 0x80)
            return false;
    }
    return true;
}

/// Orders a run of rows whose keys agreed so far, by the next parts of their keys.
class TieBreaker {
public:
    TieBreaker(const TOrbMDBTable &table, std::size_t column, std::vector<std::array<std::uint32_t, 2>> &states)
        : m_table(table), m_column(column), m_states(states)
    {
    }

    void order(std::uint32_t *first, std::uint32_t *last, int depth)
    {
        const std::size_t n = static_cast<std::size_t>(last - first);
        // Copies of one text (common in real columns) are equal: nothing to order.
        const std::string_view head = sortText(m_table, *first, m_column);
        if (std::all_of(first + 1, last, [&](std::uint32_t row) { return sortText(m_table, row, m_column) == head; }))
            return;
        if (depth >= kMaxChunks) {
            std::stable_sort(first, last, [&](std::uint32_t a, std::uint32_t b) {
                const std::string_view ta = sortText(m_table, a, m_column);
                const std::string_view tb = sortText(m_table, b, m_column);
                return ta != tb && finderCompare(ta, tb) < 0;
            });
            return;
        }
        struct Part {
            unsigned char bytes[kChunkBytes];
            unsigned char length;
            std::uint32_t row;
        };
        std::vector<Part> parts(n);
        for (std::size_t i = 0; i < n; ++i) {
            Part &part = parts[i];
            part.row = first[i];
            part.length = static_cast<unsigned char>(finderSortKeyNext(
                sortText(m_table, part.row, m_column), m_states[part.row].data(), part.bytes, kChunkBytes));
        }
        std::stable_sort(parts.begin(), parts.end(), [](const Part &a, const Part &b) {
            const int c = std::memcmp(a.bytes, b.bytes, std::min(a.length, b.length));
            return c != 0 ? c < 0 : a.length < b.length;
        });
        for (std::size_t i = 0; i < n; ++i)
            first[i] = parts[i].row;
        for (std::size_t i = 0; i < n;) {
            std::size_t j = i + 1;
            while (j < n && parts[i].length == kChunkBytes && parts[j].length == kChunkBytes &&
                   std::memcmp(parts[i].bytes, parts[j].bytes, kChunkBytes) == 0)
                ++j;
            if (j - i > 1)
                order(first + i, first + j, depth + 1);
            i = j;
        }
    }

private:
    const TOrbMDBTable &m_table;
    std::size_t m_column;
    std::vector<std::array<std::uint32_t, 2>> &m_states;
};

/// The rows in ascending order: key prefixes of KeyBytes for every row (the fast ASCII keys or
/// the collator's), then the rows whose prefixes tie ordered by their whole keys.
template <std::size_t KeyBytes, bool Ascii>
std::optional<std::vector<std::uint32_t>> sortedRowsWithKeys(const TOrbMDBTable &table, std::size_t column,
                                                             const StopCheck &stopped)
{
    const std::size_t count = table.rowCount();
    std::vector<SortEntry<KeyBytes>> entries(count);
    // The collator's keys go on from where they stopped, for rows that tie.
    std::vector<std::array<std::uint32_t, 2>> states(Ascii ? 0 : count, {0, 0});
    forChunks(count, [&](std::size_t begin, std::size_t end) {
        std::string key;
        for (std::size_t i = begin; i < end; ++i) {
            SortEntry<KeyBytes> &entry = entries[i];
            entry.row = static_cast<std::uint32_t>(i);
            const std::string_view text = sortText(table, entry.row, column);
            if constexpr (Ascii) {
                finderAsciiSortKey(text, key);
                const std::size_t length = std::min(key.size(), KeyBytes);
                std::memcpy(entry.key, key.data(), length);
                entry.length = static_cast<unsigned char>(length);
            } else {
                entry.length =
                    static_cast<unsigned char>(finderSortKeyNext(text, states[i].data(), entry.key, KeyBytes));
            }
        }
    });
    if (isStopped(stopped))
        return std::nullopt;
    // Both halves are sorted at once, then merged; a stable merge of stable sorts is stable.
    if (count >= kParallelThreshold) {
        const auto middle = entries.begin() + static_cast<std::ptrdiff_t>(count / 2);
        runBoth([&] { std::stable_sort(entries.begin(), middle, prefixLess<KeyBytes>); },
                [&] { std::stable_sort(middle, entries.end(), prefixLess<KeyBytes>); });
        if (isStopped(stopped))
            return std::nullopt;
        std::inplace_merge(entries.begin(), middle, entries.end(), prefixLess<KeyBytes>);
    } else {
        std::stable_sort(entries.begin(), entries.end(), prefixLess<KeyBytes>);
    }
    std::vector<std::uint32_t> out(count);
    for (std::size_t i = 0; i < count; ++i)
        out[i] = entries[i].row;

    // Runs of rows whose first key bytes tie are ordered by the rest of their keys.
    std::vector<std::pair<std::size_t, std::size_t>> runs;
    std::size_t tiedRows = 0;
    for (std::size_t i = 0; i < count;) {
        std::size_t j = i + 1;
        while (j < count && prefixTied<KeyBytes>(entries[i], entries[j]))
            ++j;
        if (j - i > 1) {
            runs.emplace_back(i, j);
            tiedRows += j - i;
        }
        i = j;
    }
    entries = {};
    if (isStopped(stopped))
        return std::nullopt;
    forChunks(runs.size(), tiedRows, [&](std::size_t begin, std::size_t end) {
        if constexpr (Ascii) {
            for (std::size_t r = begin; r < end; ++r) {
                // Copies of one text need no ordering.
                const std::string_view head = sortText(table, out[runs[r].first], column);
                if (std::all_of(out.begin() + static_cast<std::ptrdiff_t>(runs[r].first) + 1,
                                out.begin() + static_cast<std::ptrdiff_t>(runs[r].second),
                                [&](std::uint32_t row) { return sortText(table, row, column) == head; }))
                    continue;
                std::vector<std::pair<std::string, std::uint32_t>> keyed;
                for (std::size_t i = runs[r].first; i < runs[r].second; ++i)
                    keyed.emplace_back(columnKey(sortText(table, out[i], column), true), out[i]);
                std::stable_sort(keyed.begin(), keyed.end(),
                                 [](const auto &a, const auto &b) { return a.first < b.first; });
                for (std::size_t i = 0; i < keyed.size(); ++i)
                    out[runs[r].first + i] = keyed[i].second;
            }
        } else {
            TieBreaker breaker(table, column, states);
            for (std::size_t r = begin; r < end; ++r)
                breaker.order(out.data() + runs[r].first, out.data() + runs[r].second, 0);
        }
    });
    if (isStopped(stopped))
        return std::nullopt;
    return out;
}

/// The rows of a column in ascending order, or nothing when `stopped` said so on the way.
std::optional<std::vector<std::uint32_t>> ascendingRows(const TOrbMDBTable &table, std::size_t column,
                                                        const StopCheck &stopped)
{
    // A column of plain ASCII texts (most) is sorted with the fast keys; anything else with the
    // collator's. Both order exactly as finderCompare does.
    const bool ascii = columnIsAscii(table, column);
    if (isStopped(stopped))
        return std::nullopt;
    const bool shortKeys = chooseKeyBytes(table, column, ascii) == kShortKeyBytes;
    if (ascii)
        return shortKeys ? sortedRowsWithKeys<kShortKeyBytes, true>(table, column, stopped)
                         : sortedRowsWithKeys<kLongKeyBytes, true>(table, column, stopped);
    return shortKeys ? sortedRowsWithKeys<kShortKeyBytes, false>(table, column, stopped)
                     : sortedRowsWithKeys<kLongKeyBytes, false>(table, column, stopped);
}

} // namespace

std::vector<std::uint32_t> sortedRows(const TOrbMDBTable &table, std::size_t column, std::int64_t direction)
{
    std::vector<std::uint32_t> out = *ascendingRows(table, column, {});
    if (direction != 1)
        std::reverse(out.begin(), out.end());
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
    *this = RowSet();
}

RowSet::Request RowSet::request(const TOrbMDBTable *table, const RowFilter &filter) const
{
    Request request;
    request.table = table;
    request.filter = filter;
    if (table) {
        request.sortColumn = sortColumnOf(*table);
        request.sortDirection = request.sortColumn ? table->columns()[*request.sortColumn]->sortOrder() : 0;
    }
    if (table && table == m_table)
        request.orders = m_orders;
    return request;
}

std::optional<RowSet> RowSet::build(const Request &request, const StopCheck &stopped)
{
    RowSet set;
    set.m_table = request.table;
    set.m_sortColumn = request.sortColumn;
    set.m_sortDirection = request.sortDirection;
    const TOrbMDBTable *table = request.table;
    if (!table)
        return set;
    const std::size_t rowCount = table->rowCount();
    const std::optional<std::size_t> column = request.sortColumn;
    const std::int64_t direction = request.sortDirection;
    Orders &orders = set.m_orders;
    orders = request.orders;
    if (!orders.sorted || orders.sortColumn != column || orders.sortDirection != direction ||
        orders.sorted->size() != rowCount) {
        std::vector<std::uint32_t> sorted;
        if (column) {
            // Descending is ascending read backwards, so the second click of a header reuses
            // the first one's work.
            if (!orders.ascending || orders.ascendingColumn != column || orders.ascending->size() != rowCount) {
                std::optional<std::vector<std::uint32_t>> ascending = ascendingRows(*table, *column, stopped);
                if (!ascending)
                    return std::nullopt;
                orders.ascending = std::make_shared<const std::vector<std::uint32_t>>(std::move(*ascending));
                orders.ascendingColumn = column;
            }
            sorted = *orders.ascending;
            if (direction != 1)
                std::reverse(sorted.begin(), sorted.end());
        } else {
            sorted.resize(rowCount);
            for (std::size_t i = 0; i < sorted.size(); ++i)
                sorted[i] = static_cast<std::uint32_t>(i);
        }
        orders.sorted = std::make_shared<const std::vector<std::uint32_t>>(std::move(sorted));
        orders.sortColumn = column;
        orders.sortDirection = direction;
    }

    const RowFilter &filter = request.filter;
    if (!filter.active()) {
        set.m_rows = *orders.sorted;
        return set;
    }
    const std::vector<std::size_t> searchColumns = RowFilter::searchColumns(*table);
    // Rows are tested in storage order (memory is read front to back), then taken in the
    // sorted order.
    std::vector<char> passes(rowCount);
    constexpr std::size_t kStopCheckRows = 4096;
    std::atomic<bool> abandoned{false};
    forChunks(passes.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t row = begin; row < end; ++row) {
            if ((row - begin) % kStopCheckRows == 0 && (abandoned.load() || isStopped(stopped))) {
                abandoned.store(true);
                return;
            }
            passes[row] = filter.rowPasses(*table, row, searchColumns);
        }
    });
    if (abandoned.load())
        return std::nullopt;
    for (const std::uint32_t row : *orders.sorted)
        if (passes[row])
            set.m_rows.push_back(row);
    return set;
}

void RowSet::reload(const TOrbMDBTable *table, const RowFilter &filter)
{
    // Without a stop check the build always yields a set.
    *this = std::move(*build(request(table, filter), {}));
}

std::optional<std::size_t> RowSet::positionOfRow(std::uint32_t row) const
{
    const auto it = std::find(m_rows.begin(), m_rows.end(), row);
    if (it == m_rows.end())
        return std::nullopt;
    return static_cast<std::size_t>(it - m_rows.begin());
}

} // namespace vellum
