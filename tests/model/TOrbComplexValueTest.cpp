#include "support/complexTables.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(TOrbComplexValue, ShowsJoinedTextInTheGridAndEveryItemInTheTextPane)
{
    const auto table = test::complexItemsTable();
    struct Case {
        std::size_t row;
        std::size_t column;
        const char *display;
        const char *detail;
    };
    const Case cases[] = {
        {0, 1, "red; green; blue", "red\ngreen; blue"},
        {0, 2, "notes.txt; setup.sh", "notes.txt (.txt [1 KB])\nsetup.sh (.sh [1 KB])"},
        {0, 3, "third",
         "[03/04/2021 10:00:00] third\n\n[03/03/2021 09:30:15] second\nline\n\n[03/01/2021 08:00:00] first"},
        {1, 1, "", ""},
        {1, 2, "", ""},
        {1, 3, "", ""},
        {2, 1, "\xC3\xA9t\xC3\xA9", "\xC3\xA9t\xC3\xA9"},
        {2, 2, "empty.bin", "empty.bin (.bin [0 KB])"},
        {2, 3, "only", "[12/31/1999 23:59:59] only"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(std::to_string(c.row) + "/" + std::to_string(c.column));
        const CellValue cell = table->cell(c.row, c.column);
        ASSERT_TRUE(cell.isComplex());
        EXPECT_TRUE(cell.isText()); // the stored id, which writers keep writing
        EXPECT_EQ(cell.text, std::to_string(c.row + 1));
        EXPECT_EQ(cell.complex->displayText(), c.display);
        EXPECT_EQ(cell.complex->detailText(), c.detail);
    }
}

TEST(TOrbComplexValue, TableGivesOnlyComplexColumnsTheirValues)
{
    auto table = test::complexItemsTable();
    EXPECT_FALSE(table->cell(0, 0).isComplex()); // the ID column
    EXPECT_EQ(table->cell(0, 1).complex->kind(), ComplexKind::MultiValue);
    EXPECT_EQ(table->cell(0, 2).complex->kind(), ComplexKind::Attachment);
    EXPECT_EQ(table->cell(0, 3).complex->kind(), ComplexKind::VersionHistory);
    EXPECT_FALSE(table->cell(7, 1).isComplex()); // no such row

    std::vector<CellValue> cells;
    table->rowCells(2, cells);
    ASSERT_EQ(cells.size(), 4u);
    for (std::size_t c = 0; c < cells.size(); ++c)
        EXPECT_EQ(cells[c].complex, table->cell(2, c).complex) << c;

    // A cell whose stored text is not an id, or null, holds no values.
    TableStore &store = table->mutableStore();
    store.beginRow();
    store.appendText("4", 1);
    store.appendText("x1", 2);
    store.appendNull();
    store.appendText("99999999999999999999", 20);
    store.endRow();
    EXPECT_FALSE(table->cell(3, 1).isComplex());
    EXPECT_FALSE(table->cell(3, 2).isComplex());
    EXPECT_FALSE(table->cell(3, 3).isComplex());

    // Replacing a column's values, and a table that has none.
    table->setComplexValues(1, std::make_unique<ComplexColumnValues>(ComplexKind::Attachment));
    EXPECT_EQ(table->cell(0, 1).complex->kind(), ComplexKind::Attachment);
    EXPECT_EQ(table->cell(0, 1).complex->itemCount(), 0u);
    EXPECT_EQ(table->complexColumns().size(), 3u);
    table->close();
    EXPECT_TRUE(table->complexColumns().empty());
}

} // namespace
} // namespace vellum
