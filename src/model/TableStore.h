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

/// Compact row storage of one table. The text of each row lies contiguously in large shared
/// blocks; a row costs one 64-bit start reference and one 32-bit end offset per cell, so a
/// million rows take no heap string or map per row. A cell whose text is empty is the null
/// marker. A blob cell keeps the index of its TOrbBlobData (4 bytes) in place of its text and
/// is marked by the high bit of its end offset.
class TableStore {
public:
    explicit TableStore(std::size_t columnCount = 0);

    std::size_t columnCount() const { return m_columnCount; }
    std::size_t rowCount() const { return m_rowStarts.size(); }

    /// The cell of a row and a column position; out of range gives the null marker.
    CellValue cell(std::size_t row, std::size_t column) const;

    // Filling, one row at a time: beginRow, one append per column, endRow.
    void beginRow();
    void appendText(const char *text, std::size_t length);
    void appendNull() { appendText(nullptr, 0); }
    void appendBlob(std::unique_ptr<TOrbBlobData> blob);
    void endRow();

    /// Releases spare capacity after loading.
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
    const std::vector<std::uint64_t> &rowStarts() const { return m_rowStarts; }
    const std::vector<std::uint32_t> &cellEnds() const { return m_cellEnds; }
    const std::vector<std::unique_ptr<TOrbBlobData>> &blobs() const { return m_blobs; }
    /// Rebuilds a store from its raw form; answers false (and stays empty) when the parts do
    /// not fit together (a reference past a block, a blob index out of range).
    [[nodiscard]] bool adopt(std::size_t columnCount, std::vector<Block> blocks, std::vector<std::uint64_t> rowStarts,
                             std::vector<std::uint32_t> cellEnds, std::vector<std::unique_ptr<TOrbBlobData>> blobs);

    static constexpr std::uint32_t kBlobFlag = 0x80000000u;

private:
    const char *rowText(std::size_t row) const;

    std::size_t m_columnCount;
    std::vector<Block> m_blocks;
    std::vector<std::uint64_t> m_rowStarts; ///< block index << 32 | offset in block
    std::vector<std::uint32_t> m_cellEnds;  ///< per cell, relative to its row's start
    std::vector<std::unique_ptr<TOrbBlobData>> m_blobs;
    std::string m_pending; ///< the row being filled
    std::size_t m_pendingCells = 0;
};

} // namespace vellum
