#pragma once

#include "model/CellValue.h"
#include "model/TOrbBlobData.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// Compact row storage of one table. Each row lies contiguously in large shared blocks: a header
/// of one variable-length number per cell (length << 1 | blob flag, 7 bits a byte, so one byte for
/// a cell under 64 bytes), then the cells' bytes. A row costs one 64-bit start reference beside
/// that, so a million rows take no heap string or map per row. A cell whose text is empty is the
/// null marker. A blob cell holds the 4-byte index of its TOrbBlobData in place of a text.
class TableStore {
public:
    explicit TableStore(std::size_t columnCount = 0);

    std::size_t columnCount() const { return m_columnCount; }
    std::size_t rowCount() const { return m_rowStarts.size(); }

    /// The cell of a row and a column position; out of range gives the null marker.
    CellValue cell(std::size_t row, std::size_t column) const;
    /// Every cell of a row, in column order, read in one pass over the row (`cell` reads the
    /// row's header up to its column each time, which costs columns² over a wide row). `out`
    /// is reused; a row out of range gives null markers.
    void rowCells(std::size_t row, std::vector<CellValue> &out) const;

    // Filling, one row at a time: beginRow, one append per column, endRow.
    void beginRow();
    void appendText(const char *text, std::size_t length);
    void appendNull() { appendText(nullptr, 0); }
    void appendBlob(std::unique_ptr<TOrbBlobData> blob);
    void endRow();

    /// Appends every row of `other` (same column count, no row half filled in either) after
    /// this store's rows, taking over its blocks and blobs: how the two halves of a table read
    /// by two handles are joined. Blob cells of the appended rows are renumbered in place.
    /// False, with nothing changed, when the column counts differ.
    bool appendStore(TableStore &&other);

    /// Releases spare capacity after loading (of the last block; earlier blocks never move).
    void shrink();
    void clear();

    /// Approximate heap bytes held (blocks, references, blobs).
    std::size_t memoryUsage() const;

    // Raw form, for moving a loaded table between processes without re-encoding.
    struct Block {
        std::unique_ptr<char[]> bytes;
        std::size_t size = 0;     ///< bytes in use
        std::size_t capacity = 0; ///< bytes allocated
    };
    const std::vector<Block> &blocks() const { return m_blocks; }
    /// Per row: block index << 32 | offset of the row's header in that block.
    const std::vector<std::uint64_t> &rowStarts() const { return m_rowStarts; }
    const std::vector<std::unique_ptr<TOrbBlobData>> &blobs() const { return m_blobs; }
    /// Rebuilds a store from its raw form; answers false (and stays empty) when the parts do
    /// not fit together (a row or cell past its block, a bad header, a blob index out of range).
    /// The first `checkedRows` rows are taken as already checked by `checkRawRows` against the
    /// same leading blocks, so a form that arrived in pieces is not checked twice.
    [[nodiscard]] bool adopt(std::size_t columnCount, std::vector<Block> blocks, std::vector<std::uint64_t> rowStarts,
                             std::vector<std::unique_ptr<TOrbBlobData>> blobs, std::size_t checkedRows = 0);

    /// Result of checking part of a raw form.
    struct RawCheck {
        std::size_t checked = 0; ///< rows known good from the first row on
        bool valid = true;       ///< false when a row in a present block is bad
    };
    /// Checks the rows of a raw form from `from` on, stopping at the first row whose block has
    /// not arrived yet (rows only ever point forward). Rows in present blocks are complete, so
    /// a row found good stays good as more blocks and blobs arrive.
    static RawCheck checkRawRows(std::size_t columnCount, const std::vector<Block> &blocks,
                                 const std::vector<std::uint64_t> &rowStarts, std::size_t from, std::size_t blobCount);

    /// Reserves room for a number of rows (a hint; rows past it still fit).
    void reserveRows(std::size_t rows);

private:
    const unsigned char *rowBytes(std::size_t row) const;
    std::size_t m_columnCount;
    std::vector<Block> m_blocks;
    std::vector<std::uint64_t> m_rowStarts;
    std::vector<std::unique_ptr<TOrbBlobData>> m_blobs;
    std::string m_pendingHeader; ///< the row being filled: its header …
    std::string m_pendingCells;  ///< … and its cell bytes
    std::size_t m_pendingCount = 0;
};

} // namespace vellum
