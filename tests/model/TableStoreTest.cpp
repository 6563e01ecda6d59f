#include "model/TableStore.h"

#include <gtest/gtest.h>

#include <string>

namespace vellum {
namespace {

TEST(TableStore, CellsKeepTheirKindAcrossBlocks)
{
    TableStore store(3);
    const std::string big(1500000, 'x'); // larger than a block: gets a block of its own
    for (int r = 0; r < 5000; ++r) {
        store.beginRow();
        const std::string text = "row " + std::to_string(r);
        store.appendText(text.data(), text.size());
        store.appendNull();
        if (r == 1234)
            store.appendText(big.data(), big.size());
        else if (r % 2)
            store.appendBlob(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>{1, 2, 3}, "bin"));
        else
            store.appendText("", 0);
        store.endRow();
    }
    ASSERT_EQ(store.rowCount(), 5000u);
    EXPECT_GT(store.blocks().size(), 1u);
    for (int r = 0; r < 5000; ++r) {
        EXPECT_EQ(store.cell(r, 0).text, "row " + std::to_string(r));
        EXPECT_TRUE(store.cell(r, 1).isNull());
        const CellValue third = store.cell(r, 2);
        if (r == 1234) {
            EXPECT_EQ(third.text.size(), big.size());
        } else if (r % 2) {
            ASSERT_TRUE(third.isBlob());
            EXPECT_EQ(third.blob->fileExtension(), "bin");
        } else {
            EXPECT_TRUE(third.isNull()); // an empty text is the null marker
        }
    }
    EXPECT_TRUE(store.cell(5000, 0).isNull());
    EXPECT_TRUE(store.cell(0, 3).isNull());
}

TEST(TableStore, ShortRowsArePaddedWithNull)
{
    TableStore store(2);
    store.beginRow();
    store.appendText("a", 1);
    store.endRow();
    EXPECT_EQ(store.cell(0, 0).text, "a");
    EXPECT_TRUE(store.cell(0, 1).isNull());
}

TableStore::Block makeBlock(const std::string &bytes)
{
    TableStore::Block block;
    block.bytes.reset(new char[bytes.size() + 1]);
    std::copy(bytes.begin(), bytes.end(), block.bytes.get());
    block.size = block.capacity = bytes.size();
    return block;
}

TEST(TableStore, AdoptValidatesTheRawForm)
{
    struct Case {
        const char *what;
        std::vector<std::uint64_t> rowStarts;
        std::vector<std::uint32_t> cellEnds;
        bool blob;
        bool ok;
    };
    const std::uint32_t kBlob = TableStore::kBlobFlag;
    const Case cases[] = {
        {"valid", {0, 3}, {1, 3, 1, 2}, false, true},
        {"cell past its block", {0}, {1, 9}, false, false},
        {"row start past the block", {(0ull << 32) | 99}, {0, 0}, false, false},
        {"unknown block", {1ull << 32}, {0, 0}, false, false},
        {"decreasing ends", {0}, {2, 1}, false, false},
        {"cell count mismatch", {0}, {1}, false, false},
        {"blob index out of range", {0}, {0, 4 | kBlob}, false, false},
        {"valid blob", {0}, {0, 4 | kBlob}, true, true},
    };
    for (const Case &c : cases) {
        std::vector<TableStore::Block> blocks;
        std::string bytes = "abcde";
        if (c.blob)
            bytes = std::string("\0\0\0\0", 4);
        blocks.push_back(makeBlock(bytes));
        std::vector<std::unique_ptr<TOrbBlobData>> blobs;
        if (c.blob)
            blobs.push_back(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>{7}, "png"));
        TableStore store;
        EXPECT_EQ(store.adopt(2, std::move(blocks), c.rowStarts, c.cellEnds, std::move(blobs)), c.ok) << c.what;
        if (!c.ok)
            EXPECT_EQ(store.rowCount(), 0u) << c.what;
    }
}

} // namespace
} // namespace vellum
