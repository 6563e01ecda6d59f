#include "export/xls/worksheet.h"

#include "export/xls/SharedStringTable.h"
#include "export/xls/SpillBuffer.h"

#include <algorithm>

namespace vellum::xls {

namespace {

constexpr std::size_t kRowsPerBlock = 32;
constexpr std::uint64_t kRowRecordSize = 4 + 16;

LeBytes u16Payload(std::uint16_t v)
{
    LeBytes b;
    b.u16(v);
    return b;
}

} // namespace

worksheet::worksheet(SharedStringTable &strings, std::u16string name, std::uint16_t index)
    : m_strings(strings), m_name(std::move(name)), m_index(index)
{
}

bool worksheet::put(std::uint32_t row, std::uint32_t col, Cell cell)
{
    cell.key = row << 8 | col;
    if (!m_cells.empty() && cell.key <= m_cells.back().key)
        m_sorted = false;
    m_cells.push_back(cell);
    return true;
}

bool worksheet::label(std::uint32_t row, std::uint32_t col, std::u16string_view text)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns || text.size() > biff::kMaxTextUnits)
        return false;
    Cell cell{};
    cell.kind = Kind::Label;
    cell.sst = m_strings.add(text);
    return put(row, col, cell);
}

bool worksheet::number(std::uint32_t row, std::uint32_t col, double value)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns)
        return false;
    Cell cell{};
    cell.kind = Kind::Number;
    cell.number = value;
    return put(row, col, cell);
}

bool worksheet::blank(std::uint32_t row, std::uint32_t col)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns)
        return false;
    Cell cell{};
    cell.kind = Kind::Blank;
    return put(row, col, cell);
}

bool worksheet::close(SpillBuffer &spill)
{
    if (m_closed)
        return true;
    m_closed = true;
    if (!m_sorted) {
        std::stable_sort(m_cells.begin(), m_cells.end(), [](const Cell &a, const Cell &b) { return a.key < b.key; });
        // Of cells written to one place, the last one counts.
        std::size_t out = 0;
        for (std::size_t i = 0; i < m_cells.size(); ++i) {
            if (i + 1 < m_cells.size() && m_cells[i + 1].key == m_cells[i].key)
                continue;
            m_cells[out++] = m_cells[i];
        }
        m_cells.resize(out);
    }

    // Rows that hold cells: [first cell, end cell) each.
    struct RowSpan {
        std::uint32_t row;
        std::size_t begin, end;
    };
    std::vector<RowSpan> rows;
    std::uint16_t firstCol = 0xFFFF, colsEnd = 0;
    std::uint64_t labels = 0;
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        std::uint32_t row = m_cells[i].key >> 8;
        auto col = static_cast<std::uint16_t>(m_cells[i].key & 0xFF);
        if (rows.empty() || rows.back().row != row)
            rows.push_back({row, i, i});
        rows.back().end = i + 1;
        firstCol = std::min(firstCol, col);
        colsEnd = std::max<std::uint16_t>(colsEnd, col + 1);
        labels += m_cells[i].kind == Kind::Label;
    }
    m_strings.countUse(labels);
    if (rows.empty())
        firstCol = 0;
    m_firstRow = rows.empty() ? 0 : rows.front().row;
    m_rowsEnd = rows.empty() ? 0 : rows.back().row + 1;
    m_dbCells.assign((rows.size() + kRowsPerBlock - 1) / kRowsPerBlock, 0);

    m_spillOffset = spill.size();
    BiffStream out(spill, headSize());
    bool ok = out.record(biff::kCalcMode, u16Payload(1)) && out.record(biff::kCalcCount, u16Payload(100)) &&
              out.record(biff::kRefMode, u16Payload(1)) && out.record(biff::kIteration, u16Payload(0)) &&
              out.record(biff::kDelta, LeBytes().f64(0.001)) && out.record(biff::kSaveRecalc, u16Payload(1)) &&
              out.record(biff::kPrintHeaders, u16Payload(0)) && out.record(biff::kPrintGridlines, u16Payload(0)) &&
              out.record(biff::kGridSet, u16Payload(1)) && out.record(biff::kGuts, LeBytes().zeros(8)) &&
              out.record(biff::kDefaultRowHeight, LeBytes().u16(0).u16(255)) && out.record(biff::kWsBool, u16Payload(0x04C1));
    m_defColWidth = static_cast<std::uint32_t>(out.position());
    ok = ok && out.record(biff::kDefColWidth, u16Payload(8));
    ok = ok && out.record(biff::kDimensions, LeBytes().u32(m_firstRow).u32(m_rowsEnd).u16(firstCol).u16(colsEnd).u16(0));

    // Row blocks: up to 32 ROW records, their cells, and a DBCELL that points back at them.
    LeBytes payload;
    for (std::size_t block = 0; ok && block < m_dbCells.size(); ++block) {
        std::size_t from = block * kRowsPerBlock;
        std::size_t to = std::min(rows.size(), from + kRowsPerBlock);
        std::uint64_t firstRowRecord = out.position();
        for (std::size_t r = from; ok && r < to; ++r) {
            const RowSpan &span = rows[r];
            auto rowFirstCol = static_cast<std::uint16_t>(m_cells[span.begin].key & 0xFF);
            auto rowColsEnd = static_cast<std::uint16_t>((m_cells[span.end - 1].key & 0xFF) + 1);
            payload.clear();
            payload.u16(static_cast<std::uint16_t>(span.row)).u16(rowFirstCol).u16(rowColsEnd).u16(255);
            payload.u16(0).u16(0).u16(0x0100).u16(biff::kDefaultCellXf);
            ok = out.record(biff::kRow, payload);
        }
        LeBytes dbcell;
        dbcell.u32(0); // patched below
        std::uint64_t previousFirstCell = firstRowRecord + kRowRecordSize;
        for (std::size_t r = from; ok && r < to; ++r) {
            const RowSpan &span = rows[r];
            std::uint64_t firstCell = out.position();
            dbcell.u16(static_cast<std::uint16_t>(firstCell - previousFirstCell));
            previousFirstCell = firstCell;
            for (std::size_t i = span.begin; ok && i < span.end; ++i) {
                const Cell &cell = m_cells[i];
                payload.clear();
                payload.u16(static_cast<std::uint16_t>(span.row)).u16(static_cast<std::uint16_t>(cell.key & 0xFF)).u16(biff::kDefaultCellXf);
                switch (cell.kind) {
                case Kind::Label:
                    ok = out.record(biff::kLabelSst, payload.u32(cell.sst));
                    break;
                case Kind::Number:
                    ok = out.record(biff::kNumber, payload.f64(cell.number));
                    break;
                case Kind::Blank:
                    ok = out.record(biff::kBlank, payload);
                    break;
                }
            }
        }
        m_dbCells[block] = static_cast<std::uint32_t>(out.position());
        dbcell.patchU32(0, static_cast<std::uint32_t>(out.position() - firstRowRecord));
        ok = ok && out.record(biff::kDbCell, dbcell);
    }

    // WINDOW2: grid lines, headers, zeros, outline symbols; the first sheet is the selected one.
    std::uint16_t window = m_index == 0 ? 0x06B6 : 0x00B6;
    ok = ok && out.record(biff::kWindow2, LeBytes().u16(window).u16(0).u16(0).u32(0x40).u16(0).u16(0).u32(0));
    ok = ok && out.record(biff::kEof, std::string_view());
    m_spillSize = spill.size() - m_spillOffset;
    std::vector<Cell>().swap(m_cells);
    return ok;
}

std::uint64_t worksheet::closedSize() const { return headSize() + m_spillSize; }

bool worksheet::writeClosed(ExportSink &sink, std::uint64_t start, SpillBuffer &spill) const
{
    BiffStream out(sink, start);
    LeBytes index;
    index.u32(0).u32(m_firstRow).u32(m_rowsEnd).u32(static_cast<std::uint32_t>(start + m_defColWidth));
    for (std::uint32_t position : m_dbCells)
        index.u32(static_cast<std::uint32_t>(start + position));
    return out.record(biff::kBof, bofPayload(biff::kWorksheetSubstream)) && out.record(biff::kIndex, index) &&
           spill.copyTo(sink, m_spillOffset, m_spillSize);
}

} // namespace vellum::xls
