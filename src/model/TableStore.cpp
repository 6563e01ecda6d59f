#include "model/TableStore.h"

#include <algorithm>
#include <cstring>

namespace vellum {
namespace {

/// A blob cell as consumers see it: a link-only Package is the null marker with its blob as a
/// note (nothing to write or open, but something to say).
CellValue blobCell(const TOrbBlobData *blob)
{
    return blob && blob->isLinkOnly() ? CellValue::nullWithNote(blob) : CellValue::ofBlob(blob);
}

constexpr std::size_t kBlockSize = 1 << 20;

void appendVarint(std::string &out, std::uint64_t value)
{
    while (value >= 0x80) {
        out += static_cast<char>((value & 0x7F) | 0x80);
        value >>= 7;
    }
    out += static_cast<char>(value);
}

/// Reads one header number; nullptr when it runs past `end` or is too long.
const unsigned char *readVarint(const unsigned char *p, const unsigned char *end, std::uint64_t &value)
{
    value = 0;
    for (int shift = 0; shift < 64 && p < end; shift += 7) {
        const unsigned char byte = *p++;
        value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
        if (!(byte & 0x80))
            return p;
    }
    return nullptr;
}

/// Reads one header number of a row known to be valid.
inline const unsigned char *readVarintTrusted(const unsigned char *p, std::uint64_t &value)
{
    value = *p & 0x7F;
    int shift = 7;
    while (*p++ & 0x80) {
        value |= static_cast<std::uint64_t>(*p & 0x7F) << shift;
        shift += 7;
    }
    return p;
}

/// Skips `count` header numbers of a row the store wrote itself.
inline const unsigned char *skipVarintsTrusted(const unsigned char *p, std::size_t count)
{
    for (std::size_t c = 0; c < count; ++c) {
        while (*p++ & 0x80) {
        }
    }
    return p;
}

} // namespace

TableStore::TableStore(std::size_t columnCount) : m_columnCount(columnCount) {}

const unsigned char *TableStore::rowBytes(std::size_t row) const
{
    const std::uint64_t start = m_rowStarts[row];
    return reinterpret_cast<const unsigned char *>(m_blocks[start >> 32].bytes.get()) + (start & 0xFFFFFFFFu);
}

CellValue TableStore::cell(std::size_t row, std::size_t column) const
{
    if (row >= m_rowStarts.size() || column >= m_columnCount)
        return CellValue::null();
    const unsigned char *p = rowBytes(row);
    std::uint64_t offset = 0;
    std::uint64_t entry = 0;
    for (std::size_t c = 0; c <= column; ++c) {
        p = readVarintTrusted(p, entry);
        if (c < column)
            offset += entry >> 1;
    }
    p = skipVarintsTrusted(p, m_columnCount - column - 1); // the rest of the header
    const std::uint64_t length = entry >> 1;
    if (length == 0)
        return CellValue::null();
    const char *bytes = reinterpret_cast<const char *>(p + offset);
    if (entry & 1) {
        std::uint32_t index;
        std::memcpy(&index, bytes, sizeof index);
        return blobCell(m_blobs[index].get());
    }
    return CellValue::ofText(std::string_view(bytes, length));
}

void TableStore::rowCells(std::size_t row, std::vector<CellValue> &out) const
{
    out.assign(m_columnCount, CellValue::null());
    if (row >= m_rowStarts.size())
        return;
    const unsigned char *header = rowBytes(row);
    const char *bytes = reinterpret_cast<const char *>(skipVarintsTrusted(header, m_columnCount));
    const unsigned char *p = header;
    for (std::size_t c = 0; c < m_columnCount; ++c) {
        std::uint64_t entry = 0;
        p = readVarintTrusted(p, entry);
        const std::uint64_t length = entry >> 1;
        if (length == 0)
            continue;
        if (entry & 1) {
            std::uint32_t index;
            std::memcpy(&index, bytes, sizeof index);
            out[c] = blobCell(m_blobs[index].get());
        } else {
            out[c] = CellValue::ofText(std::string_view(bytes, length));
        }
        bytes += length;
    }
}

void TableStore::beginRow()
{
    m_pendingHeader.clear();
    m_pendingCells.clear();
    m_pendingCount = 0;
}

void TableStore::appendText(const char *text, std::size_t length)
{
    if (m_pendingCount >= m_columnCount)
        return;
    appendVarint(m_pendingHeader, static_cast<std::uint64_t>(length) << 1);
    if (length)
        m_pendingCells.append(text, length);
    ++m_pendingCount;
}

void TableStore::appendBlob(std::unique_ptr<TOrbBlobData> blob)
{
    if (m_pendingCount >= m_columnCount)
        return;
    if (!blob) {
        appendNull();
        return;
    }
    const auto index = static_cast<std::uint32_t>(m_blobs.size());
    m_blobs.push_back(std::move(blob));
    appendVarint(m_pendingHeader, (sizeof index << 1) | 1);
    m_pendingCells.append(reinterpret_cast<const char *>(&index), sizeof index);
    ++m_pendingCount;
}

void TableStore::endRow()
{
    while (m_pendingCount < m_columnCount)
        appendNull();
    const std::size_t need = m_pendingHeader.size() + m_pendingCells.size();
    if (m_blocks.empty() || m_blocks.back().capacity - m_blocks.back().size < need) {
        Block block;
        block.capacity = std::max(kBlockSize, need);
        block.bytes.reset(new char[block.capacity]);
        m_blocks.push_back(std::move(block));
    }
    Block &block = m_blocks.back();
    char *dest = block.bytes.get() + block.size;
    std::memcpy(dest, m_pendingHeader.data(), m_pendingHeader.size());
    if (!m_pendingCells.empty())
        std::memcpy(dest + m_pendingHeader.size(), m_pendingCells.data(), m_pendingCells.size());
    m_rowStarts.push_back((static_cast<std::uint64_t>(m_blocks.size() - 1) << 32) | block.size);
    block.size += need;
    m_pendingHeader.clear();
    m_pendingCells.clear();
    m_pendingCount = 0;
}

bool TableStore::appendStore(TableStore &&other)
{
    if (other.m_columnCount != m_columnCount)
        return false;
    const auto blockShift = static_cast<std::uint64_t>(m_blocks.size()) << 32;
    const auto blobShift = static_cast<std::uint32_t>(m_blobs.size());
    if (blobShift != 0 && !other.m_blobs.empty()) {
        // The appended rows name their blobs by position: move those positions past ours.
        for (std::size_t row = 0; row < other.m_rowStarts.size(); ++row) {
            unsigned char *header = const_cast<unsigned char *>(other.rowBytes(row));
            unsigned char *cell = header + (skipVarintsTrusted(header, m_columnCount) - header);
            const unsigned char *p = header;
            for (std::size_t c = 0; c < m_columnCount; ++c) {
                std::uint64_t entry = 0;
                p = readVarintTrusted(p, entry);
                if (entry & 1) {
                    std::uint32_t index;
                    std::memcpy(&index, cell, sizeof index);
                    index += blobShift;
                    std::memcpy(cell, &index, sizeof index);
                }
                cell += entry >> 1;
            }
        }
    }
    m_rowStarts.reserve(m_rowStarts.size() + other.m_rowStarts.size());
    for (const std::uint64_t start : other.m_rowStarts)
        m_rowStarts.push_back(start + blockShift);
    for (Block &block : other.m_blocks)
        m_blocks.push_back(std::move(block));
    for (auto &blob : other.m_blobs)
        m_blobs.push_back(std::move(blob));
    other.clear();
    return true;
}

void TableStore::reserveRows(std::size_t rows)
{
    m_rowStarts.reserve(std::min<std::size_t>(rows, 50'000'000));
}

void TableStore::shrink()
{
    // Only the last block has room to spare worth giving back: a block is finished once the
    // next row does not fit, so an earlier one lacks at most one row. The earlier blocks also
    // stay where they are, since the loader may be sending them from another thread.
    if (!m_blocks.empty()) {
        Block &block = m_blocks.back();
        if (block.size != 0 && block.size + 4096 < block.capacity) {
            std::unique_ptr<char[]> bytes(new char[block.size]);
            std::memcpy(bytes.get(), block.bytes.get(), block.size);
            block.bytes = std::move(bytes);
            block.capacity = block.size;
        }
    }
    m_rowStarts.shrink_to_fit();
    m_blobs.shrink_to_fit();
    std::string().swap(m_pendingHeader);
    std::string().swap(m_pendingCells);
}

void TableStore::clear()
{
    m_blocks.clear();
    m_rowStarts.clear();
    m_rowStarts.shrink_to_fit();
    m_blobs.clear();
    std::string().swap(m_pendingHeader);
    std::string().swap(m_pendingCells);
    m_pendingCount = 0;
}

std::size_t TableStore::memoryUsage() const
{
    std::size_t total = m_rowStarts.capacity() * sizeof(std::uint64_t);
    for (const Block &block : m_blocks)
        total += block.capacity;
    for (const auto &blob : m_blobs)
        total += blob ? blob->data().size() : 0;
    return total;
}

namespace {

/// Checks one row's header and cells against the `room` bytes from its start: every cell
/// inside, blob cells four bytes long with an index below `blobCount`. Two passes over the
/// header, so that checking allocates nothing.
bool rowIsValid(std::size_t columnCount, const unsigned char *row, std::size_t room, std::size_t blobCount)
{
    const unsigned char *end = row + room;
    const unsigned char *p = row;
    std::uint64_t total = 0;
    bool hasBlob = false;
    for (std::size_t c = 0; c < columnCount; ++c) {
        std::uint64_t entry = 0;
        p = readVarint(p, end, entry);
        if (!p)
            return false;
        if (entry & 1) {
            if ((entry >> 1) != sizeof(std::uint32_t))
                return false;
            hasBlob = true;
        }
        total += entry >> 1;
        if (total > room)
            return false;
    }
    if (total > static_cast<std::uint64_t>(end - p))
        return false;
    if (!hasBlob)
        return true;
    const unsigned char *header = row;
    const unsigned char *cell = p;
    for (std::size_t c = 0; c < columnCount; ++c) {
        std::uint64_t entry = 0;
        header = readVarint(header, end, entry);
        if (entry & 1) {
            std::uint32_t index;
            std::memcpy(&index, cell, sizeof index);
            if (index >= blobCount)
                return false;
        }
        cell += entry >> 1;
    }
    return true;
}

} // namespace

TableStore::RawCheck TableStore::checkRawRows(std::size_t columnCount, const std::vector<Block> &blocks,
                                              const std::vector<std::uint64_t> &rowStarts, std::size_t from,
                                              std::size_t blobCount)
{
    RawCheck result{from, true};
    for (; result.checked < rowStarts.size(); ++result.checked) {
        const std::uint64_t blockIndex = rowStarts[result.checked] >> 32;
        const std::uint64_t offset = rowStarts[result.checked] & 0xFFFFFFFFu;
        if (blockIndex >= blocks.size())
            return result; // not arrived yet
        const Block &block = blocks[blockIndex];
        if (offset >= block.size + (columnCount == 0 ? 1 : 0) || (block.size && !block.bytes) ||
            !rowIsValid(columnCount, reinterpret_cast<const unsigned char *>(block.bytes.get()) + offset,
                        block.size - offset, blobCount)) {
            result.valid = false;
            return result;
        }
    }
    return result;
}

bool TableStore::adopt(std::size_t columnCount, std::vector<Block> blocks, std::vector<std::uint64_t> rowStarts,
                       std::vector<std::unique_ptr<TOrbBlobData>> blobs, std::size_t checkedRows)
{
    clear();
    for (const auto &blob : blobs)
        if (!blob)
            return false;
    for (const Block &block : blocks)
        if (block.size > block.capacity || (block.size && !block.bytes))
            return false;
    const RawCheck check =
        checkRawRows(columnCount, blocks, rowStarts, std::min(checkedRows, rowStarts.size()), blobs.size());
    if (!check.valid || check.checked != rowStarts.size())
        return false;
    m_columnCount = columnCount;
    m_blocks = std::move(blocks);
    m_rowStarts = std::move(rowStarts);
    m_blobs = std::move(blobs);
    return true;
}

} // namespace vellum
