#include "model/TableStore.h"
#include "model/TOrbBlobData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

TEST(TableStore, WholeRowsReadAsTheirCells)
{
    // Cells of every kind and header width, so that a slip in the one-pass reading shows.
    TableStore store(5);
    const std::string wide(5000, 'w'); // a three-byte header number
    for (int r = 0; r < 300; ++r) {
        store.beginRow();
        const std::string id = std::to_string(r);
        store.appendText(id.data(), id.size());
        store.appendText(wide.data(), r % 2 ? wide.size() : 0);
        if (r % 3 == 0)
            store.appendBlob(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(r, 2), "bin"));
        else
            store.appendNull();
        store.appendText(std::string(r % 70, 'x').data(), r % 70);
        store.endRow(); // the fifth cell is padded with null
    }
    std::vector<CellValue> cells(17, CellValue::ofText("stale"));
    for (std::size_t r = 0; r < store.rowCount(); ++r) {
        store.rowCells(r, cells);
        ASSERT_EQ(cells.size(), 5u);
        for (std::size_t c = 0; c < 5; ++c) {
            const CellValue one = store.cell(r, c);
            EXPECT_EQ(cells[c].kind, one.kind) << r << "," << c;
            EXPECT_EQ(cells[c].text, one.text) << r << "," << c;
            EXPECT_EQ(cells[c].blob, one.blob) << r << "," << c;
        }
    }
    store.rowCells(store.rowCount(), cells);
    ASSERT_EQ(cells.size(), 5u);
    for (const CellValue &cell : cells)
        EXPECT_TRUE(cell.isNull());
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
    // Two columns; a row is a header of one number per cell (length << 1 | blob flag), then the
    // cells' bytes.
    struct Case {
        const char *what;
        std::string bytes;
        std::vector<std::uint64_t> rowStarts;
        bool ok;
    };
    const std::string blobIndex0("\0\0\0\0", 4);
    const std::string blobIndex5("\5\0\0\0", 4);
    const Case cases[] = {
        {"valid",
         std::string("\x02\x04"
                     "abc"
                     "\x00\x02"
                     "d",
                     8),
         {0, 5},
         true},
        {"cell past its block",
         "\x02\x10"
         "ab",
         {0},
         false},
        {"row start past the block", std::string(2, '\0'), {(0ull << 32) | 99}, false},
        {"unknown block", std::string(2, '\0'), {1ull << 32}, false},
        {"header runs off the block", "\x80", {0}, false},
        {"blob of the wrong size",
         std::string("\x00\x07"
                     "abc",
                     5),
         {0},
         false},
        {"blob index out of range", std::string("\x00\x09", 2) + blobIndex5, {0}, false},
        {"valid blob", std::string("\x00\x09", 2) + blobIndex0, {0}, true},
    };
    for (const Case &c : cases) {
        std::vector<TableStore::Block> blocks;
        blocks.push_back(makeBlock(c.bytes));
        std::vector<std::unique_ptr<TOrbBlobData>> blobs;
        blobs.push_back(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>{7}, "png"));
        TableStore store;
        EXPECT_EQ(store.adopt(2, std::move(blocks), c.rowStarts, std::move(blobs)), c.ok) << c.what;
        if (!c.ok) {
            EXPECT_EQ(store.rowCount(), 0u) << c.what;
        }
    }
    TableStore store;
    std::vector<TableStore::Block> blocks;
    blocks.push_back(makeBlock(std::string("\x02\x04"
                                           "abc"
                                           "\x00\x02"
                                           "d",
                                           8)));
    ASSERT_TRUE(store.adopt(2, std::move(blocks), {0, 5}, {}));
    EXPECT_EQ(store.cell(0, 0).text, "a");
    EXPECT_EQ(store.cell(0, 1).text, "bc");
    EXPECT_TRUE(store.cell(1, 0).isNull());
    EXPECT_EQ(store.cell(1, 1).text, "d");
}

TEST(TableStore, RawFormArrivingInPiecesIsCheckedAsBlocksArrive)
{
    // Block 0 holds two good rows, block 1 one row whose blob index is 1.
    std::vector<TableStore::Block> blocks;
    blocks.push_back(makeBlock(std::string("\x02\x04"
                                           "abc"
                                           "\x00\x02"
                                           "d",
                                           8)));
    const std::vector<std::uint64_t> rowStarts = {0, 5, 1ull << 32};
    auto check = TableStore::checkRawRows(2, blocks, rowStarts, 0, 0);
    EXPECT_TRUE(check.valid);
    EXPECT_EQ(check.checked, 2u); // the third row waits for its block

    blocks.push_back(makeBlock(std::string("\x00\x09\x01\x00\x00\x00", 6)));
    check = TableStore::checkRawRows(2, blocks, rowStarts, check.checked, 1);
    EXPECT_FALSE(check.valid); // only one blob so far: index 1 is out of range
    EXPECT_EQ(check.checked, 2u);
    check = TableStore::checkRawRows(2, blocks, rowStarts, 2, 2);
    EXPECT_TRUE(check.valid);
    EXPECT_EQ(check.checked, 3u);

    // adopt() checks only the rows past those already checked, but still all of those.
    std::vector<std::unique_ptr<TOrbBlobData>> blobs;
    for (int i = 0; i < 2; ++i)
        blobs.push_back(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>{7}, "png"));
    std::vector<TableStore::Block> broken;
    broken.push_back(makeBlock(std::string("\x02\x04"
                                           "abc"
                                           "\x00\x02"
                                           "d",
                                           8)));
    broken.push_back(makeBlock(std::string("\x00\x09\x05\x00\x00\x00", 6)));
    TableStore store;
    EXPECT_FALSE(store.adopt(2, std::move(broken), rowStarts, std::move(blobs), 2));
    EXPECT_EQ(store.rowCount(), 0u);
}

TEST(TableStore, AppendedHalvesKeepTheirRowsAndBlobs)
{
    // Two halves of one table, each with blobs numbered from 0, as two handles read them.
    const auto fill = [](TableStore &store, int from, int to) {
        for (int r = from; r < to; ++r) {
            store.beginRow();
            const std::string id = std::to_string(r);
            store.appendText(id.data(), id.size());
            if (r % 4 == 0)
                store.appendBlob(std::make_unique<TOrbBlobData>(
                    std::vector<std::uint8_t>(1 + r % 50, static_cast<std::uint8_t>(r)), "bin"));
            else
                store.appendNull();
            const std::string wide(static_cast<std::size_t>(r % 700), 'q');
            store.appendText(wide.data(), wide.size());
            store.endRow();
        }
    };
    TableStore whole(3), front(3), back(3);
    fill(whole, 0, 9000);
    fill(front, 0, 4000);
    fill(back, 4000, 9000);
    ASSERT_GT(back.blocks().size(), 1u);
    ASSERT_TRUE(front.appendStore(std::move(back)));
    EXPECT_EQ(back.rowCount(), 0u);
    ASSERT_EQ(front.rowCount(), whole.rowCount());
    ASSERT_EQ(front.blobs().size(), whole.blobs().size());
    for (std::size_t r = 0; r < whole.rowCount(); ++r)
        for (std::size_t c = 0; c < 3; ++c) {
            const CellValue expected = whole.cell(r, c);
            const CellValue joined = front.cell(r, c);
            ASSERT_EQ(joined.kind, expected.kind) << r << "," << c;
            if (expected.isBlob())
                ASSERT_EQ(joined.blob->data(), expected.blob->data()) << r;
            else
                ASSERT_EQ(joined.text, expected.text) << r << "," << c;
        }
    // The joined store is a valid raw form, as the isolated open checks it.
    std::vector<TableStore::Block> blocks;
    for (const auto &block : front.blocks())
        blocks.push_back(makeBlock(std::string(block.bytes.get(), block.size)));
    std::vector<std::unique_ptr<TOrbBlobData>> blobs;
    for (const auto &blob : front.blobs())
        blobs.push_back(std::make_unique<TOrbBlobData>(blob->data(), "bin"));
    TableStore copy;
    EXPECT_TRUE(copy.adopt(3, std::move(blocks), front.rowStarts(), std::move(blobs)));

    TableStore narrow(2);
    EXPECT_FALSE(front.appendStore(std::move(narrow)));
    EXPECT_EQ(front.rowCount(), whole.rowCount());
}

TEST(TableStore, RawFormRoundTrips)
{
    TableStore source(3);
    const std::string long300(300, 'y'); // a two-byte header number
    for (int r = 0; r < 100; ++r) {
        source.beginRow();
        source.appendText(long300.data(), r % 3 ? long300.size() : 0);
        source.appendBlob(std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(r, 1), "bin"));
        source.appendText("z", 1);
        source.endRow();
    }
    std::vector<TableStore::Block> blocks;
    for (const auto &block : source.blocks())
        blocks.push_back(makeBlock(std::string(block.bytes.get(), block.size)));
    std::vector<std::unique_ptr<TOrbBlobData>> blobs;
    for (const auto &blob : source.blobs())
        blobs.push_back(std::make_unique<TOrbBlobData>(blob->data(), blob->fileExtension().c_str()));
    TableStore copy;
    ASSERT_TRUE(copy.adopt(3, std::move(blocks), source.rowStarts(), std::move(blobs)));
    for (int r = 0; r < 100; ++r) {
        EXPECT_EQ(copy.cell(r, 0).text, source.cell(r, 0).text);
        ASSERT_TRUE(copy.cell(r, 1).isBlob());
        EXPECT_EQ(copy.cell(r, 1).blob->data().size(), static_cast<size_t>(r));
        EXPECT_EQ(copy.cell(r, 2).text, "z");
    }
}

} // namespace
} // namespace vellum
