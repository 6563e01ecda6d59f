#include "browser/RowFilter.h"

#include "browserTestSupport.h"
#include "support/complexTables.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

struct MatchCase {
    const char *text;
    SearchOption option;
    bool ignoreCase;
    const char *cell;
    bool expected;
};

TEST(RowFilter, ModesAndCase)
{
    const MatchCase cases[] = {
        {"10", SearchOption::BeginsWith, true, "100", true},
        {"10", SearchOption::BeginsWith, true, "210", false},
        {"10", SearchOption::Equals, true, "100", false},
        {"10", SearchOption::Equals, true, "210", false},
        {"10", SearchOption::Equals, true, "10", true},
        {"10", SearchOption::EndsWith, true, "210", true},
        {"10", SearchOption::EndsWith, true, "100", false},
        {"10", SearchOption::Contains, true, "2101", true},
        {"abc", SearchOption::Contains, true, "xABCx", true},
        {"abc", SearchOption::Contains, false, "xABCx", false},
        {"ABC", SearchOption::Equals, true, "abc", true},
        {"ABC", SearchOption::Equals, false, "abc", false},
        {"ÄRGER", SearchOption::BeginsWith, true, "ärgerlich", true},
        {"ärger", SearchOption::BeginsWith, false, "Ärgerlich", false},
        // Accents stay significant, also when the case is ignored.
        {"e", SearchOption::Equals, true, "é", false},
        {"straße", SearchOption::Equals, true, "STRASSE", true},
        {"ς", SearchOption::Contains, true, "ΛΌΓΟΣ", true},
        {"long needle", SearchOption::EndsWith, true, "le", false},
    };
    for (const MatchCase &c : cases) {
        const RowFilter filter(c.text, c.option, c.ignoreCase);
        EXPECT_EQ(filter.matches(c.cell), c.expected)
            << c.text << " mode " << static_cast<int>(c.option) << " ignoreCase " << c.ignoreCase << " cell " << c.cell;
    }
}

TEST(RowFilter, RowsPassOnTextCellsOutsideOleColumns)
{
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addTestTable(*file, "T", {{"id"}, {"pic", "OLE"}, {"note", "Memo/Hyperlink"}},
                                             {{"1", "needle", std::nullopt},
                                              {"2", std::nullopt, "has a needle"},
                                              {"3", std::nullopt, std::nullopt},
                                              {"[NULL]", std::nullopt, "x"}});
    const std::vector<std::size_t> columns = RowFilter::searchColumns(*table);
    EXPECT_EQ(columns, (std::vector<std::size_t>{0, 2}));

    const RowFilter needle("needle", SearchOption::Contains, true);
    EXPECT_FALSE(needle.rowPasses(*table, 0, columns)) << "an OLE column is never searched";
    EXPECT_TRUE(needle.rowPasses(*table, 1, columns));

    const RowFilter nullText("[NULL]", SearchOption::Equals, true);
    EXPECT_FALSE(nullText.rowPasses(*table, 2, columns)) << "null cells never match";
    EXPECT_TRUE(nullText.rowPasses(*table, 3, columns)) << "the text [NULL] itself does";

    const RowFilter none;
    EXPECT_FALSE(none.active());
    EXPECT_TRUE(none.rowPasses(*table, 2, columns));
}

TEST(RowFilter, ComplexCellsMatchOnTheTextTheGridShows)
{
    const auto table = test::complexItemsTable();
    const std::vector<std::size_t> columns = {1, 2, 3}; // the complex columns, not the ID
    const struct {
        const char *text;
        SearchOption option;
        std::vector<bool> rowsPassing;
    } cases[] = {
        {"GREEN", SearchOption::Contains, {true, false, false}},
        {"red; green; blue", SearchOption::Equals, {true, false, false}},
        {"setup.sh", SearchOption::EndsWith, {true, false, false}},
        {"empty.bin", SearchOption::Equals, {false, false, true}},
        {"only", SearchOption::Equals, {false, false, true}},
        {"third", SearchOption::Equals, {true, false, false}},
        {"first", SearchOption::Contains, {false, false, false}}, // an older version is not shown
        {"1", SearchOption::Equals, {false, false, false}},       // nor is the stored id
    };
    for (const auto &c : cases) {
        const RowFilter filter(c.text, c.option, true);
        for (std::size_t row = 0; row < 3; ++row)
            EXPECT_EQ(filter.rowPasses(*table, row, columns), c.rowsPassing[row]) << c.text << " row " << row;
    }
}

TEST(RowFilter, NameFilterIgnoresCase)
{
    EXPECT_TRUE(containsIgnoringCase("Orders", "ord"));
    EXPECT_TRUE(containsIgnoringCase("ÜBERSICHT", "übers"));
    EXPECT_FALSE(containsIgnoringCase("Customers", "ord"));
    EXPECT_TRUE(containsIgnoringCase("anything", ""));
}

} // namespace
} // namespace vellum
