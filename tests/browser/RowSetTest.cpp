#include "browser/RowSet.h"

#include "browserTestSupport.h"
#include "support/complexTables.h"
#include "util/finderCompare.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace vellum {
namespace {

std::vector<std::string> shownValues(const TOrbMDBTable &table, const RowSet &set, std::size_t column = 0)
{
    std::vector<std::string> out;
    for (const std::uint32_t row : set.rows()) {
        const CellValue value = table.cell(row, column);
        out.push_back(value.isText() ? std::string(value.text) : std::string("<null>"));
    }
    return out;
}

TEST(RowSet, TextSortOrdersNumbersAndNulls)
{
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addColumnTable(*file, "T", {"10", std::nullopt, "2", "b", "A", "1", std::nullopt, "a"});
    RowSet set;

    set.reload(table, RowFilter());
    EXPECT_EQ(set.size(), 8u);
    EXPECT_EQ(set.rowAt(0), 0u) << "unsorted: storage order";

    table->columns()[0]->setSortOrder(1);
    set.reload(table, RowFilter());
    EXPECT_EQ(shownValues(*table, set), (std::vector<std::string>{"<null>", "<null>", "1", "2", "10", "a", "A", "b"}));

    table->columns()[0]->setSortOrder(-1);
    set.reload(table, RowFilter());
    EXPECT_EQ(shownValues(*table, set), (std::vector<std::string>{"b", "A", "a", "10", "2", "1", "<null>", "<null>"}));
}

TEST(RowSet, ComplexColumnsSortByTheTextTheGridShows)
{
    // Stored ids 1, 2, 3; shown texts by column: Tags "red; green; blue", "", "été";
    // Files "notes.txt; setup.sh", "", "empty.bin"; Notes "third", "", "only".
    const auto table = test::complexItemsTable();
    const struct {
        std::size_t column;
        std::vector<std::uint32_t> ascending;
    } cases[] = {
        {1, {1, 2, 0}}, // "été" before "red", as the collation has it
        {2, {1, 2, 0}},
        {3, {1, 2, 0}},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(sortedRows(*table, c.column, 1), c.ascending) << "column " << c.column;
        std::vector<std::uint32_t> descending(c.ascending.rbegin(), c.ascending.rend());
        EXPECT_EQ(sortedRows(*table, c.column, -1), descending) << "column " << c.column;
    }
}

TEST(RowSet, FilterKeepsSortOrderAndFollowsChanges)
{
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addTestTable(*file, "T", {{"name"}, {"n"}},
                                             {{"pear", "3"}, {"apple", "1"}, {"peach", "2"}, {"plum", "4"}});
    RowSet set;
    table->columns()[1]->setSortOrder(-1);
    set.reload(table, RowFilter("pe", SearchOption::BeginsWith, true));
    EXPECT_EQ(shownValues(*table, set), (std::vector<std::string>{"pear", "peach"}));
    EXPECT_EQ(set.positionOfRow(2), 1u);
    EXPECT_FALSE(set.positionOfRow(1));

    // Changing the sort of the same table re-sorts, clearing the filter shows all rows.
    table->columns()[1]->setSortOrder(1);
    set.reload(table, RowFilter());
    EXPECT_EQ(shownValues(*table, set), (std::vector<std::string>{"apple", "peach", "pear", "plum"}));

    // Another table replaces the set; no table empties it.
    TOrbMDBTable *other = test::addColumnTable(*file, "U", {"x"});
    set.reload(other, RowFilter());
    EXPECT_EQ(set.size(), 1u);
    set.reload(nullptr, RowFilter());
    EXPECT_TRUE(set.empty());
    EXPECT_EQ(set.table(), nullptr);
}

TEST(RowSet, BuildWorksFromTheRequestAndGivesUpWhenStopped)
{
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addColumnTable(*file, "T", {"b", "c", "a"});
    RowSet shown;
    table->columns()[0]->setSortOrder(1);
    const RowSet::Request ascending = shown.request(table, RowFilter());
    // The sort state is the one taken with the request, not what the columns say by the time
    // the build runs.
    table->columns()[0]->setSortOrder(-1);
    std::optional<RowSet> built = RowSet::build(ascending, {});
    ASSERT_TRUE(built);
    EXPECT_EQ(shownValues(*table, *built), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(built->sortColumn(), 0u);
    EXPECT_EQ(built->sortDirection(), 1);
    EXPECT_TRUE(shown.empty()) << "building leaves the set it was asked from alone";

    // A build asked to stop yields nothing; one that is not asked yields the set.
    int asked = 0;
    EXPECT_FALSE(RowSet::build(built->request(table, RowFilter("a", SearchOption::Contains, true)), [&] {
        ++asked;
        return true;
    }));
    EXPECT_GT(asked, 0);
    const std::optional<RowSet> descending = RowSet::build(built->request(table, RowFilter()), [] { return false; });
    ASSERT_TRUE(descending);
    EXPECT_EQ(shownValues(*table, *descending), (std::vector<std::string>{"c", "b", "a"}));
    const std::optional<RowSet> none = RowSet::build(shown.request(nullptr, RowFilter()), {});
    ASSERT_TRUE(none);
    EXPECT_TRUE(none->empty());
    EXPECT_EQ(none->table(), nullptr);
}

TEST(RowSet, HeaderClickCyclesOneColumn)
{
    EXPECT_EQ(nextSortOrder(0), 1);
    EXPECT_EQ(nextSortOrder(1), -1);
    EXPECT_EQ(nextSortOrder(-1), 0);
    EXPECT_EQ(nextSortOrder(7), 0);

    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addTestTable(*file, "T", {{"a"}, {"b"}, {"c"}}, {});
    applyHeaderClick(*table, 1);
    EXPECT_EQ(sortColumnOf(*table), 1u);
    applyHeaderClick(*table, 2);
    EXPECT_EQ(table->columns()[1]->sortOrder(), 0) << "other columns go back to none";
    EXPECT_EQ(table->columns()[2]->sortOrder(), 1);
    applyHeaderClick(*table, 2);
    EXPECT_EQ(table->columns()[2]->sortOrder(), -1);
    applyHeaderClick(*table, 2);
    EXPECT_FALSE(sortColumnOf(*table));
}

// Sort keys are made a few bytes at a time, further bytes only for rows that still tie, and rows
// that tie after many bytes are compared on their texts. The order must equal a plain sort with
// finderCompare, also for long shared prefixes, both ways.
TEST(RowSet, SortMatchesFinderCompareOnLongAndMixedTexts)
{
    std::mt19937 random(7);
    const std::vector<std::string> pieces = {"a",  "A",  "b", "é", "E",     "1", "2",
                                             "10", "09", " ", "-", "Zebra", "ß", "日本"};
    std::vector<test::TestCell> cells;
    const std::string longPrefix(40, 'x');
    const std::string veryLongPrefix(700, 'y');
    for (int i = 0; i < 400; ++i) {
        std::string text = (i % 3 == 0) ? longPrefix : (i % 5 == 0 ? veryLongPrefix : std::string());
        const int parts = 1 + static_cast<int>(random() % 4);
        for (int p = 0; p < parts; ++p)
            text += pieces[random() % pieces.size()];
        cells.push_back(i % 17 == 0 ? test::TestCell() : test::TestCell(text));
    }
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addColumnTable(*file, "T", cells);
    for (const int direction : {1, -1}) {
        const std::vector<std::uint32_t> order = sortedRows(*table, 0, direction);
        ASSERT_EQ(order.size(), cells.size());
        std::vector<bool> seen(cells.size());
        for (const std::uint32_t row : order)
            seen[row] = true;
        EXPECT_EQ(std::count(seen.begin(), seen.end(), true), static_cast<long>(cells.size()));
        for (std::size_t i = 1; i < order.size(); ++i) {
            const CellValue a = table->cell(order[i - 1], 0);
            const CellValue b = table->cell(order[i], 0);
            EXPECT_LE(direction * finderCompare(a.isText() ? a.text : "", b.isText() ? b.text : ""), 0)
                << "direction " << direction << " position " << i << ": " << (a.isText() ? a.text : "<null>")
                << " before " << (b.isText() ? b.text : "<null>");
        }
    }
}

} // namespace
} // namespace vellum
