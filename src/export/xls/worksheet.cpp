#include "export/xls/worksheet.h"

#include "export/xls/SharedStringTable.h"
#include "export/xls/SpillBuffer.h"

#include <algorithm>

namespace vellum::xls {

namespace {

constexpr std::uint32_t kRowsPerBlock = 32;
constexpr std::uint64_t kRowRecordSize = 4 + 16;

LeBytes u16Payload(std::uint16_t v)
{
    LeBytes b;
    b.u16(v);
    return b;
}

} // namespace

worksheet::worksheet(SharedStringTable &strings, SpillBuffer &body, std::u16string name, std::uint16_t index)
    : m_strings(strings), m_body(body), m_name(std::move(name)), m_index(index), m_bodyOffset(body.size())
{
}

bool worksheet::put(std::uint32_t row, std::uint32_t col, Cell cell)
{
    const std::uint32_t block = row / kRowsPerBlock;
    if (m_hasBlock && block < m_block)
        return false; // that block was written out already
    if (!m_hasBlock || block > m_block) {
        flushBlock();
        m_block = block;
        m_hasBlock = true;
    }
    cell.key = row << 8 | col;
    m_cells.push_back(cell);
    return true;
}

bool worksheet::label(std::uint32_t row, std::uint32_t col, std::u16string_view text)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns || text.size() > biff::kMaxTextUnits ||
        (m_hasBlock && row / kRowsPerBlock < m_block))
        return false;
    Cell cell{};
    cell.kind = Kind::Label;
    cell.xf = biff::kDefaultCellXf;
    cell.sst = m_strings.add(text);
    return put(row, col, cell);
}

bool worksheet::number(std::uint32_t row, std::uint32_t col, double value, std::uint16_t xf)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns)
        return false;
    Cell cell{};
    cell.kind = Kind::Number;
    cell.xf = xf;
    cell.number = value;
    return put(row, col, cell);
}

bool worksheet::boolean(std::uint32_t row, std::uint32_t col, bool value)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns)
        return false;
    Cell cell{};
    cell.kind = Kind::Boolean;
    cell.xf = biff::kDefaultCellXf;
    cell.truth = value;
    return put(row, col, cell);
}

bool worksheet::blank(std::uint32_t row, std::uint32_t col)
{
    if (m_closed || row >= biff::kMaxRows || col >= biff::kMaxColumns)
        return false;
    Cell cell{};
    cell.kind = Kind::Blank;
    cell.xf = biff::kDefaultCellXf;
    return put(row, col, cell);
}

void worksheet::flushBlock()
{
    if (m_cells.empty())
        return;
    // Sorted by position; of cells written to one place, the last one counts. Cells usually
    // come in order, which needs neither.
    const bool ordered = std::adjacent_find(m_cells.begin(), m_cells.end(), [](const Cell &a, const Cell &b) {
                             return a.key >= b.key;
                         }) == m_cells.end();
    if (!ordered) {
        std::stable_sort(m_cells.begin(), m_cells.end(), [](const Cell &a, const Cell &b) { return a.key < b.key; });
        std::size_t kept = 0;
        for (std::size_t i = 0; i < m_cells.size(); ++i)
            if (i + 1 == m_cells.size() || m_cells[i + 1].key != m_cells[i].key)
                m_cells[kept++] = m_cells[i];
        m_cells.resize(kept);
    }

    struct RowSpan {
        std::uint32_t row;
        std::size_t begin, end;
    };
    std::vector<RowSpan> rows;
    std::uint64_t labels = 0;
    for (std::size_t i = 0; i < m_cells.size(); ++i) {
        const std::uint32_t row = m_cells[i].key >> 8;
        const auto col = static_cast<std::uint16_t>(m_cells[i].key & 0xFF);
        if (rows.empty() || rows.back().row != row)
            rows.push_back({row, i, i});
        rows.back().end = i + 1;
        m_firstCol = std::min(m_firstCol, col);
        m_colsEnd = std::max<std::uint16_t>(m_colsEnd, col + 1);
        labels += m_cells[i].kind == Kind::Label;
    }
    m_strings.countUse(labels);
    m_firstRow = std::min(m_firstRow, rows.front().row);
    m_rowsEnd = std::max(m_rowsEnd, rows.back().row + 1);

    // The block's records, made in memory and stored at once. Offsets are from the body's
    // start: the DBCELL points back at the block's first ROW record and on from there to each
    // row's first cell.
    const std::uint64_t firstRowRecord = m_body.size() - m_bodyOffset;
    LeBytes &out = m_blockBytes;
    out.clear();
    for (const RowSpan &span : rows) {
        const auto rowFirstCol = static_cast<std::uint16_t>(m_cells[span.begin].key & 0xFF);
        const auto rowColsEnd = static_cast<std::uint16_t>((m_cells[span.end - 1].key & 0xFF) + 1);
        out.recordHeader(biff::kRow, 16)
            .u16(static_cast<std::uint16_t>(span.row))
            .u16(rowFirstCol)
            .u16(rowColsEnd)
            .u16(255);
        out.u16(0).u16(0).u16(0x0100).u16(biff::kDefaultCellXf);
    }
    LeBytes dbcell;
    std::uint64_t previousFirstCell = kRowRecordSize;
    for (const RowSpan &span : rows) {
        dbcell.u16(static_cast<std::uint16_t>(out.size() - previousFirstCell));
        previousFirstCell = out.size();
        for (std::size_t i = span.begin; i < span.end; ++i) {
            const Cell &cell = m_cells[i];
            const auto row = static_cast<std::uint16_t>(span.row);
            const auto col = static_cast<std::uint16_t>(cell.key & 0xFF);
            switch (cell.kind) {
            case Kind::Label:
                out.recordHeader(biff::kLabelSst, 10).u16(row).u16(col).u16(biff::kDefaultCellXf).u32(cell.sst);
                break;
            case Kind::Number:
                out.recordHeader(biff::kNumber, 14).u16(row).u16(col).u16(cell.xf).f64(cell.number);
                break;
            case Kind::Boolean:
                // BOOLERR: the value, then 0 for "a boolean, not an error code".
                out.recordHeader(biff::kBoolErr, 8).u16(row).u16(col).u16(cell.xf).u8(cell.truth ? 1 : 0).u8(0);
                break;
            case Kind::Blank:
                out.recordHeader(biff::kBlank, 6).u16(row).u16(col).u16(biff::kDefaultCellXf);
                break;
            }
        }
    }
    const std::size_t dbcellAt = out.size();
    m_dbCells.push_back(static_cast<std::uint32_t>(firstRowRecord + dbcellAt));
    out.recordHeader(biff::kDbCell, static_cast<std::uint16_t>(4 + dbcell.size()))
        .u32(static_cast<std::uint32_t>(dbcellAt));
    out.bytes(dbcell.data().data(), dbcell.size());
    (void)m_body.write(out.data()); // a failure stays with the storage, checked on closing
    m_cells.clear();
}

bool worksheet::close()
{
    if (m_closed)
        return !m_body.failed();
    flushBlock();
    m_closed = true;
    std::vector<Cell>().swap(m_cells);
    // WINDOW2: grid lines, headers, zeros, outline symbols; the first sheet is the selected one.
    BiffStream out(m_body, m_body.size() - m_bodyOffset);
    const std::uint16_t window = m_index == 0 ? 0x06B6 : 0x00B6;
    (void)(out.record(biff::kWindow2, LeBytes().u16(window).u16(0).u16(0).u32(0x40).u16(0).u16(0).u32(0)) &&
           out.record(biff::kEof, std::string_view()));
    m_bodySize = m_body.size() - m_bodyOffset;
    return !m_body.failed();
}

bool worksheet::writeHead(BiffStream &out, std::uint64_t start) const
{
    // BOF (20 bytes), INDEX, the settings, DEFCOLWIDTH (6) and DIMENSIONS (18): their sizes do
    // not depend on `start`, so INDEX can point at DEFCOLWIDTH and the body's DBCELLs.
    static const std::uint64_t settingsSize = [] {
        CountingSink counter;
        BiffStream measure(counter);
        (void)writeSettings(measure);
        return counter.count();
    }();
    const std::uint64_t indexSize = 4 + 16 + 4 * m_dbCells.size();
    const std::uint64_t defColWidth = start + 20 + indexSize + settingsSize;
    const std::uint64_t bodyStart = defColWidth + 6 + 18;
    const bool empty = m_rowsEnd == 0;
    LeBytes index;
    index.u32(0).u32(empty ? 0 : m_firstRow).u32(m_rowsEnd).u32(static_cast<std::uint32_t>(defColWidth));
    for (std::uint32_t offset : m_dbCells)
        index.u32(static_cast<std::uint32_t>(bodyStart + offset));
    LeBytes dimensions;
    dimensions.u32(empty ? 0 : m_firstRow).u32(m_rowsEnd).u16(empty ? 0 : m_firstCol).u16(m_colsEnd).u16(0);
    return out.record(biff::kBof, bofPayload(biff::kWorksheetSubstream)) && out.record(biff::kIndex, index) &&
           writeSettings(out) && out.record(biff::kDefColWidth, u16Payload(8)) &&
           out.record(biff::kDimensions, dimensions) && out.position() == bodyStart;
}

bool worksheet::writeSettings(BiffStream &out)
{
    return out.record(biff::kCalcMode, u16Payload(1)) && out.record(biff::kCalcCount, u16Payload(100)) &&
           out.record(biff::kRefMode, u16Payload(1)) && out.record(biff::kIteration, u16Payload(0)) &&
           out.record(biff::kDelta, LeBytes().f64(0.001)) && out.record(biff::kSaveRecalc, u16Payload(1)) &&
           out.record(biff::kPrintHeaders, u16Payload(0)) && out.record(biff::kPrintGridlines, u16Payload(0)) &&
           out.record(biff::kGridSet, u16Payload(1)) && out.record(biff::kGuts, LeBytes().zeros(8)) &&
           out.record(biff::kDefaultRowHeight, LeBytes().u16(0).u16(255)) &&
           out.record(biff::kWsBool, u16Payload(0x04C1));
}

std::uint64_t worksheet::closedSize() const
{
    CountingSink counter;
    BiffStream measure(counter);
    return (writeHead(measure, 0) ? counter.count() : 0) + m_bodySize;
}

bool worksheet::writeClosed(BiffStream &out) const
{
    return writeHead(out, out.position()) && out.copy(m_body, m_bodyOffset, m_bodySize);
}

} // namespace vellum::xls
