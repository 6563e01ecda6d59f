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
/// 256). Writing a cell twice keeps the last value. A sheet takes cells until the workbook adds
/// the next sheet or is saved; it is then written out (to the workbook's temporary storage) and
/// its cells leave memory, so only the sheet being written is held.
class worksheet {
public:
    worksheet(const worksheet &) = delete;
    worksheet &operator=(const worksheet &) = delete;

    /// The sheet's name as stored (after Excel's name rules).
    const std::u16string &name() const { return m_name; }

    /// A text cell, its text kept once in the workbook's shared string table. False when the
    /// position is outside the sheet, the text is longer than 32767 UTF-16 units, or the sheet
    /// no longer takes cells.
    bool label(std::uint32_t row, std::uint32_t col, std::u16string_view text);
    /// A numeric cell (an IEEE double). False as for `label`.
    bool number(std::uint32_t row, std::uint32_t col, double value);
    /// An empty cell with the default format. False as for `label`.
    bool blank(std::uint32_t row, std::uint32_t col);

    /// Cells held in memory (0 once the sheet was written out).
    std::size_t cellCount() const { return m_cells.size(); }
    /// True once the sheet was written out and takes no more cells.
    bool isClosed() const { return m_closed; }

private:
    friend class workbook;

    enum class Kind : std::uint8_t { Label, Number, Blank };
    struct Cell {
        std::uint32_t key; ///< row << 8 | column: the sheet's cell order
        Kind kind;
        union {
            double number;
            std::uint32_t sst;
        };
    };

    worksheet(SharedStringTable &strings, std::u16string name, std::uint16_t index);
    bool put(std::uint32_t row, std::uint32_t col, Cell cell);

    /// Writes everything after the INDEX record to `spill` (positions relative to the sheet's
    /// BOF) and drops the cells. False when the storage failed.
    [[nodiscard]] bool close(SpillBuffer &spill);
    /// Size of the sheet's substream once closed.
    std::uint64_t closedSize() const;
    /// Writes the closed sheet's substream, whose BOF lies at `start` in the workbook stream.
    [[nodiscard]] bool writeClosed(ExportSink &out, std::uint64_t start, SpillBuffer &spill) const;
    std::uint64_t headSize() const { return 20 + 4 + 16 + 4 * m_dbCells.size(); }

    SharedStringTable &m_strings;
    std::u16string m_name;
    std::uint16_t m_index;
    std::vector<Cell> m_cells;
    bool m_sorted = true;
    bool m_closed = false;

    // The closed form.
    std::uint64_t m_spillOffset = 0;
    std::uint64_t m_spillSize = 0;
    std::vector<std::uint32_t> m_dbCells; ///< DBCELL positions relative to the sheet's BOF
    std::uint32_t m_defColWidth = 0;      ///< DEFCOLWIDTH position relative to the BOF
    std::uint32_t m_firstRow = 0;
    std::uint32_t m_rowsEnd = 0;
};

} // namespace vellum::xls
