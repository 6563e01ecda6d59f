#include "browser/gridTexts.h"

#include "browserTestSupport.h"
#include "model/TOrbBlobData.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(gridTexts, CopyTextReplacesTabsAndEmptiesNulls)
{
    auto file = test::makeTestFile("f");
    TOrbMDBTable *table = test::addTestTable(
        *file, "T", {{"a"}, {"b"}, {"c"}},
        {{"a\tb", std::nullopt, "z"}, {"line1\nline2", "[NULL]", "[NON-TEXTUAL DATA]"}, {"cr\rstays", "x", "y"}});
    EXPECT_EQ(copyTextForRows(*table, {0}, {0, 1, 2}), "a b\t\tz\n");
    EXPECT_EQ(copyTextForRows(*table, {1, 0}, {2, 0}), "\tline1 line2\nz\ta b\n")
        << "rows in the given order, columns in display order";
    EXPECT_EQ(copyTextForRows(*table, {2}, {0}), "cr\rstays\n");
    EXPECT_EQ(copyTextForRows(*table, {}, {0, 1}), "");
}

TEST(gridTexts, DisplayTexts)
{
    EXPECT_EQ(cellDisplayText(CellValue::null()), "[NULL]");
    EXPECT_EQ(cellDisplayText(CellValue::ofText("x")), "x");
    const TOrbBlobData blob(std::vector<std::uint8_t>(2345, 0), "bmp");
    EXPECT_EQ(cellDisplayText(CellValue::ofBlob(&blob)), ".bmp [3 KB]");
}

TEST(gridTexts, BytesShowAsHexInBinaryAndUnknownColumns)
{
    TOrbMDBColumn binary;
    binary.setDataType("Binary");
    TOrbMDBColumn unknown;
    unknown.setDataType("Unknown_0046");
    TOrbMDBColumn text;
    text.setDataType("Text");
    const std::string bytes("\0\x01\xff", 3);
    EXPECT_EQ(cellDisplayText(CellValue::ofText(bytes), binary), "0x0001ff");
    EXPECT_EQ(cellDisplayText(CellValue::ofText(bytes), unknown), "0x0001ff");
    EXPECT_EQ(cellDisplayText(CellValue::ofText("0x"), text), "0x");
    EXPECT_EQ(cellDisplayText(CellValue::null(), binary), "[NULL]");
}

TEST(gridTexts, JumpToRowBounds)
{
    struct Case {
        const char *input;
        std::size_t rows;
        std::optional<std::size_t> target;
    };
    const Case cases[] = {
        {"1", 5, 0},
        {"5", 5, 4},
        {"0", 5, std::nullopt},
        {"6", 5, std::nullopt},
        {"-1", 5, std::nullopt},
        {" 3", 5, 2},
        {"3rd", 5, 2},
        {"abc", 5, std::nullopt},
        {"", 5, std::nullopt},
        {"1", 0, std::nullopt},
        {"99999999999999", 5, std::nullopt},
    };
    for (const Case &c : cases)
        EXPECT_EQ(jumpToRowTarget(c.input, c.rows), c.target) << '"' << c.input << "\" of " << c.rows;
}

} // namespace
} // namespace vellum
