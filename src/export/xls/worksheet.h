#pragma once

#include "export/xls/BiffStream.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum::xls {

class SharedStringTable;
class SpillBuffer;

/// One sheet of a `workbook`: cells addressed by 0-based row (below 65536) and column (below
/// 256). Rows are written in blocks of 32 (rows 0-31, 32-63 …): cells may come in any order
/// within the block being filled, and writing a cell of a later block writes the current block
/// out to the workbook's temporary storage. A cell of a block already written out is refused,
/// so a sheet is filled from top to bottom and memory holds one block at most. Writing a cell
/// twice keeps the last value. A sheet takes cells until the workbook adds the next sheet or is
/// saved.
class worksheet {
public:
    worksheet(const worksheet &) = delete;
    worksheet &operator=(const worksheet &) = delete;

    /// The sheet's name as stored (after Excel's name rules).
    const std::u16string &name() const { return m_name; }

    /// A text cell, its text kept in the workbook's shared string table. False when the
    /// position is outside the sheet or in a block already written out, the text is longer
    /// than 32767 UTF-16 units, or the sheet no longer takes cells.
    bool label(std::uint32_t row, std::uint32_t col, std::u16string_view text);
    /// A numeric cell (an IEEE double) shown with the cell format `xf` (an index the workbook
    /// gave out, see `workbook::numberFormat`). False as for `label`.
    bool number(std::uint32_t row, std::uint32_t col, double value, std::uint16_t xf = biff::kDefaultCellXf);
    /// A boolean cell (TRUE or FALSE). False as for `label`.
    bool boolean(std::uint32_t row, std::uint32_t col, bool value);
    /// An empty cell with the default format. False as for `label`.
    bool blank(std::uint32_t row, std::uint32_t col);

    /// Cells held in memory (those of the block being filled).
    std::size_t cellCount() const { return m_cells.size(); }
    /// True once the sheet was finished and takes no more cells.
    bool isClosed() const { return m_closed; }

private:
    friend class workbook;

    enum class Kind : std::uint8_t { Label, Number, Blank, Boolean };
    struct Cell {
        std::uint32_t key; ///< row << 8 | column: the sheet's cell order
        Kind kind;
        std::uint16_t xf; ///< the cell format
        union {
            double number;
            std::uint32_t sst;
            bool truth;
        };
    };

    worksheet(SharedStringTable &strings, SpillBuffer &body, std::u16string name, std::uint16_t index);
    bool put(std::uint32_t row, std::uint32_t col, Cell cell);
    /// Writes the block being filled (ROW records, cells, DBCELL) to the body storage.
    void flushBlock();

    /// Writes the last block and the sheet's closing records; false when the storage failed.
    [[nodiscard]] bool close();
    /// Size of the sheet's substream once closed.
    std::uint64_t closedSize() const;
    /// Writes the closed sheet's substream at the stream's position: the head made now (it
    /// holds absolute positions), then the body from storage.
    [[nodiscard]] bool writeClosed(BiffStream &out) const;
    /// BOF, INDEX, the sheet settings, DEFCOLWIDTH and DIMENSIONS, for a BOF at `start`.
    [[nodiscard]] bool writeHead(BiffStream &out, std::uint64_t start) const;
    /// The fixed records of a sheet: calculation, printing, guts, row height, sheet flags.
    [[nodiscard]] static bool writeSettings(BiffStream &out);

    SharedStringTable &m_strings;
    SpillBuffer &m_body;
    std::u16string m_name;
    std::uint16_t m_index;
    bool m_closed = false;

    std::vector<Cell> m_cells; ///< the block being filled
    LeBytes m_blockBytes;      ///< its records, reused from block to block
    std::uint32_t m_block = 0; ///< its number (row / 32)
    bool m_hasBlock = false;
    std::uint64_t m_bodyOffset; ///< where this sheet's body starts in the body storage
    std::uint64_t m_bodySize = 0;
    std::vector<std::uint32_t> m_dbCells; ///< DBCELL offsets from the body's start
    std::uint32_t m_firstRow = 0xFFFFFFFF, m_rowsEnd = 0;
    std::uint16_t m_firstCol = 0xFFFF, m_colsEnd = 0;
};

} // namespace vellum::xls
