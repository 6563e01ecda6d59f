#include "model/TableStore.h"

#include <algorithm>
#include <cstring>

namespace vellum {
namespace {
constexpr std::size_t kBlockSize = 1 << 20;
}

TableStore::TableStore(std::size_t columnCount) : m_columnCount(columnCount) {}

const char *TableStore::rowText(std::size_t row) const
{
    const std::uint64_t start = m_rowStarts[row];
    return m_blocks[start >> 32].bytes.get() + (start & 0xFFFFFFFFu);
}

CellValue TableStore::cell(std::size_t row, std::size_t column) const
{
    if (row >= m_rowStarts.size() || column >= m_columnCount)
        return CellValue::null();
    const std::uint32_t *ends = m_cellEnds.data() + row * m_columnCount;
    const std::uint32_t begin = column ? (ends[column - 1] & ~kBlobFlag) : 0;
    const std::uint32_t endRaw = ends[column];
    const std::uint32_t end = endRaw & ~kBlobFlag;
    if (end == begin)
        return CellValue::null();
    const char *text = rowText(row) + begin;
    if (endRaw & kBlobFlag) {
        std::uint32_t index;
        std::memcpy(&index, text, sizeof index);
        return CellValue::ofBlob(m_blobs[index].get());
    }
    return CellValue::ofText(std::string_view(text, end - begin));
}

void TableStore::beginRow()
{
    m_pending.clear();
    m_pendingCells = 0;
}

void TableStore::appendText(const char *text, std::size_t length)
{
    if (m_pendingCells >= m_columnCount)
        return;
    if (length)
        m_pending.append(text, length);
    m_cellEnds.push_back(static_cast<std::uint32_t>(m_pending.size()));
    ++m_pendingCells;
}

void TableStore::appendBlob(std::unique_ptr<TOrbBlobData> blob)
{
    if (m_pendingCells >= m_columnCount)
        return;
    if (!blob) {
        appendNull();
        return;
    }
    const auto index = static_cast<std::uint32_t>(m_blobs.size());
    m_blobs.push_back(std::move(blob));
    m_pending.append(reinterpret_cast<const char *>(&index), sizeof index);
    m_cellEnds.push_back(static_cast<std::uint32_t>(m_pending.size()) | kBlobFlag);
    ++m_pendingCells;
}

void TableStore::endRow()
{
    while (m_pendingCells < m_columnCount)
        appendNull();
    const std::size_t need = m_pending.size();
    if (m_blocks.empty() || m_blocks.back().capacity - m_blocks.back().size < need) {
        if (!m_blocks.empty())
            m_blocks.back().capacity = m_blocks.back().size; // shrink() may trim it later
        Block block;
        block.capacity = std::max(kBlockSize, need);
        block.bytes.reset(new char[block.capacity]);
        m_blocks.push_back(std::move(block));
    }
    Block &block = m_blocks.back();
    if (need)
        std::memcpy(block.bytes.get() + block.size, m_pending.data(), need);
    m_rowStarts.push_back((static_cast<std::uint64_t>(m_blocks.size() - 1) << 32) | block.size);
    block.size += need;
    m_pending.clear();
    m_pendingCells = 0;
}

void TableStore::shrink()
{
    for (Block &block : m_blocks) {
        if (block.size == 0 || block.size + 4096 >= block.capacity)
            continue;
        std::unique_ptr<char[]> bytes(new char[block.size]);
        std::memcpy(bytes.get(), block.bytes.get(), block.size);
        block.bytes = std::move(bytes);
        block.capacity = block.size;
    }
    m_rowStarts.shrink_to_fit();
    m_cellEnds.shrink_to_fit();
    m_blobs.shrink_to_fit();
    std::string().swap(m_pending);
}

void TableStore::clear()
{
    m_blocks.clear();
    m_rowStarts.clear();
    m_rowStarts.shrink_to_fit();
    m_cellEnds.clear();
    m_cellEnds.shrink_to_fit();
    m_blobs.clear();
    std::string().swap(m_pending);
}

std::size_t TableStore::memoryUsage() const
{
    std::size_t total = m_rowStarts.capacity() * sizeof(std::uint64_t) + m_cellEnds.capacity() * sizeof(std::uint32_t);
    for (const Block &block : m_blocks)
        total += block.capacity;
    for (const auto &blob : m_blobs)
        total += blob ? blob->data().size() : 0;
    return total;
}

bool TableStore::adopt(std::size_t columnCount, std::vector<Block> blocks, std::vector<std::uint64_t> rowStarts,
                       std::vector<std::uint32_t> cellEnds, std::vector<std::unique_ptr<TOrbBlobData>> blobs)
{
    clear();
    if (cellEnds.size() != rowStarts.size() * columnCount)
        return false;
    for (std::size_t row = 0; row < rowStarts.size(); ++row) {
        const std::uint64_t blockIndex = rowStarts[row] >> 32;
        const std::uint64_t offset = rowStarts[row] & 0xFFFFFFFFu;
        if (blockIndex >= blocks.size() || offset > blocks[blockIndex].size)
            return false;
        const std::size_t room = blocks[blockIndex].size - offset;
        std::uint32_t previous = 0;
        for (std::size_t c = 0; c < columnCount; ++c) {
            const std::uint32_t raw = cellEnds[row * columnCount + c];
            const std::uint32_t end = raw & ~kBlobFlag;
            if (end < previous || end > room)
                return false;
            if (raw & kBlobFlag) {
                std::uint32_t index;
                if (end - previous != sizeof index)
                    return false;
                std::memcpy(&index, blocks[blockIndex].bytes.get() + offset + previous, sizeof index);
                if (index >= blobs.size() || !blobs[index])
                    return false;
            }
            previous = end;
        }
    }
    m_columnCount = columnCount;
    m_blocks = std::move(blocks);
    m_rowStarts = std::move(rowStarts);
    m_cellEnds = std::move(cellEnds);
    m_blobs = std::move(blobs);
    return true;
}

} // namespace vellum
