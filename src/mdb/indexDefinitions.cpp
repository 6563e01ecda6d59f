#include "mdb/indexDefinitions.h"

#include <unordered_set>

namespace vellum {
namespace {

/// Where the parts of a table definition lie in one layout. Counts are little-endian.
struct LayoutConstants {
    std::size_t columnCountOffset;    ///< 2 bytes
    std::size_t logicalCountOffset;   ///< 4 bytes
    std::size_t realCountOffset;      ///< 4 bytes
    std::size_t realSlotsOffset;      ///< one slot per real index (row counts) starts here
    std::size_t realSlotSize;         ///< bytes of one such slot
    std::size_t columnEntrySize;      ///< bytes of one column descriptor
    std::size_t columnNumberOffset;   ///< the column number (2 bytes) inside a descriptor
    std::size_t nameLengthSize;       ///< 1 (Jet 3) or 2 (Jet 4) bytes before each name
    std::size_t realEntryLead;        ///< unknown bytes before a real index's key slots
    std::size_t realEntryFlagsOffset; ///< the flags byte inside a real index entry
    std::size_t realEntrySize;        ///< bytes of one real index entry
    std::size_t logicalEntryLead;     ///< unknown bytes before a logical entry's index number
    std::size_t logicalEntrySize;     ///< bytes of one logical index entry
};

// A real index entry: [lead] 10 key slots (column number, 2 bytes, 0xFFFF unused; order byte,
// 0x01 ascending), the index's usage map (4 bytes), its first page (4), [Jet 4: 4 unknown],
// the flags byte, [Jet 4: 5 unknown]. A logical entry: [lead] index number (4), real index
// number (4), the other table's side (1: 1 referenced, 2 referencing), the other index number
// (4), the other table's page (4), cascade updates (1), cascade deletes/nulls (1), the index
// type (1), [Jet 4: 4 unknown].
constexpr LayoutConstants kJet3{25, 27, 31, 43, 8, 18, 1, 1, 0, 38, 39, 0, 20};
constexpr LayoutConstants kJet4{45, 47, 51, 63, 12, 25, 5, 2, 4, 46, 52, 4, 28};

constexpr unsigned kKeySlots = 10;
constexpr unsigned kUnusedColumn = 0xFFFF;
constexpr std::uint8_t kAscendingKey = 0x01;
constexpr std::uint8_t kReferencedSide = 1;
constexpr std::uint32_t kNoIndex = 0xFFFFFFFFu;
constexpr std::size_t kMaxDefinitionPages = 4096; // far more than 255 columns and 32 indexes take

/// A bounded little-endian reader over the definition.
class ByteCursor {
public:
    explicit ByteCursor(std::span<const unsigned char> bytes) : m_bytes(bytes) {}

    bool has(std::size_t count) const { return m_position <= m_bytes.size() && count <= m_bytes.size() - m_position; }
    std::size_t position() const { return m_position; }
    bool seek(std::size_t position)
    {
        if (position > m_bytes.size())
            return false;
        m_position = position;
        return true;
    }
    bool skip(std::size_t count) { return has(count) && seek(m_position + count); }
    /// Reads `size` bytes (1, 2 or 4) as an unsigned number.
    bool read(std::size_t size, std::uint32_t &value)
    {
        if (!has(size))
            return false;
        value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= static_cast<std::uint32_t>(m_bytes[m_position + i]) << (8 * i);
        m_position += size;
        return true;
    }
    bool readBytes(std::size_t count, std::string &out)
    {
        if (!has(count))
            return false;
        out.assign(reinterpret_cast<const char *>(m_bytes.data() + m_position), count);
        m_position += count;
        return true;
    }
    /// A name: its length in bytes, then the bytes.
    bool readName(std::size_t lengthSize, std::string &out)
    {
        std::uint32_t length = 0;
        return read(lengthSize, length) && readBytes(length, out);
    }

private:
    std::span<const unsigned char> m_bytes;
    std::size_t m_position = 0;
};

/// One real index as stored: key slots by column number, and flags.
struct RealIndex {
    std::vector<IndexKeyDefinition> keys;
    std::uint8_t flags = 0;
    bool backsPrimaryKey = false;
};

bool readRealIndex(ByteCursor &cursor, const LayoutConstants &c, RealIndex &out)
{
    const std::size_t start = cursor.position();
    if (!cursor.has(c.realEntrySize) || !cursor.skip(c.realEntryLead))
        return false;
    for (unsigned slot = 0; slot < kKeySlots; ++slot) {
        std::uint32_t column = 0;
        std::uint32_t order = 0;
        if (!cursor.read(2, column) || !cursor.read(1, order))
            return false;
        if (column != kUnusedColumn)
            out.keys.push_back(IndexKeyDefinition{column, (order & kAscendingKey) != 0});
    }
    std::uint32_t flags = 0;
    if (!cursor.seek(start + c.realEntryFlagsOffset) || !cursor.read(1, flags))
        return false;
    out.flags = static_cast<std::uint8_t>(flags);
    return cursor.seek(start + c.realEntrySize);
}

bool readLogicalIndex(ByteCursor &cursor, const LayoutConstants &c, IndexDefinition &out)
{
    const std::size_t start = cursor.position();
    std::uint32_t side = 0, otherIndex = 0, otherPage = 0, cascadeUpdates = 0, cascadeDeletes = 0, type = 0;
    if (!cursor.has(c.logicalEntrySize) || !cursor.skip(c.logicalEntryLead) || !cursor.read(4, out.number) ||
        !cursor.read(4, out.realIndex) || !cursor.read(1, side) || !cursor.read(4, otherIndex) ||
        !cursor.read(4, otherPage) || !cursor.read(1, cascadeUpdates) || !cursor.read(1, cascadeDeletes) ||
        !cursor.read(1, type))
        return false;
    out.type = static_cast<IndexType>(type);
    if (out.type == IndexType::ForeignKey && otherIndex != kNoIndex)
        out.reference = ForeignKeyReference{side == kReferencedSide,
                                            otherIndex,
                                            otherPage,
                                            (cascadeUpdates & 0x01) != 0,
                                            (cascadeDeletes & 0x01) != 0,
                                            (cascadeDeletes & 0x02) != 0};
    return cursor.seek(start + c.logicalEntrySize);
}

} // namespace

std::optional<TableIndexDefinitions> parseIndexDefinitions(std::span<const unsigned char> definition,
                                                           DefinitionLayout layout)
{
    const LayoutConstants &c = layout == DefinitionLayout::Jet3 ? kJet3 : kJet4;
    ByteCursor cursor(definition);
    std::uint32_t columnCount = 0, logicalCount = 0, realCount = 0;
    if (!cursor.seek(c.columnCountOffset) || !cursor.read(2, columnCount) || !cursor.seek(c.logicalCountOffset) ||
        !cursor.read(4, logicalCount) || !cursor.seek(c.realCountOffset) || !cursor.read(4, realCount))
        return std::nullopt;
    // Every count must fit in the bytes there are before anything is sized by it.
    const std::size_t size = definition.size();
    if (realCount > size / c.realSlotSize || realCount > size / c.realEntrySize ||
        logicalCount > size / c.logicalEntrySize || columnCount > size / c.columnEntrySize)
        return std::nullopt;

    TableIndexDefinitions result;
    const std::size_t columnsStart = c.realSlotsOffset + realCount * c.realSlotSize;
    if (!cursor.seek(columnsStart) || !cursor.has(columnCount * c.columnEntrySize))
        return std::nullopt;
    result.columns.resize(columnCount);
    for (std::uint32_t i = 0; i < columnCount; ++i) {
        std::uint32_t number = 0;
        if (!cursor.seek(columnsStart + i * c.columnEntrySize + c.columnNumberOffset) || !cursor.read(2, number))
            return std::nullopt;
        result.columns[i].number = number;
    }
    if (!cursor.seek(columnsStart + columnCount * c.columnEntrySize))
        return std::nullopt;
    for (ColumnDefinition &column : result.columns)
        if (!cursor.readName(c.nameLengthSize, column.rawName))
            return std::nullopt;

    std::vector<RealIndex> real(realCount);
    for (RealIndex &index : real)
        if (!readRealIndex(cursor, c, index))
            return std::nullopt;
    result.indexes.resize(logicalCount);
    for (IndexDefinition &index : result.indexes) {
        if (!readLogicalIndex(cursor, c, index))
            return std::nullopt;
        if (index.realIndex < realCount && index.type == IndexType::PrimaryKey)
            real[index.realIndex].backsPrimaryKey = true;
    }
    for (IndexDefinition &index : result.indexes)
        if (!cursor.readName(c.nameLengthSize, index.rawName))
            return std::nullopt;

    std::unordered_set<unsigned> columnNumbers;
    for (const ColumnDefinition &column : result.columns)
        columnNumbers.insert(column.number);
    for (IndexDefinition &index : result.indexes) {
        if (index.realIndex >= realCount)
            continue;
        const RealIndex &source = real[index.realIndex];
        index.flags = source.flags;
        index.unique = (source.flags & kIndexFlagUnique) != 0 || source.backsPrimaryKey;
        for (const IndexKeyDefinition &key : source.keys)
            if (columnNumbers.count(key.columnNumber))
                index.keys.push_back(key);
    }
    return result;
}

std::optional<std::vector<unsigned char>> gatherTableDefinition(std::uint32_t firstPage, std::size_t pageSize,
                                                                const PageReader &readPage)
{
    constexpr std::size_t kHeader = 8; // page type, a byte, free space (2), next page (4)
    if (pageSize <= kHeader)
        return std::nullopt;
    std::vector<unsigned char> definition;
    std::vector<unsigned char> page;
    std::unordered_set<std::uint32_t> seen;
    std::uint32_t next = firstPage;
    while (next != 0) {
        if (seen.size() >= kMaxDefinitionPages || !seen.insert(next).second)
            return std::nullopt;
        page.clear();
        if (!readPage(next, page) || page.size() < pageSize)
            return std::nullopt;
        const std::size_t from = definition.empty() ? 0 : kHeader;
        definition.insert(definition.end(), page.begin() + static_cast<std::ptrdiff_t>(from),
                          page.begin() + static_cast<std::ptrdiff_t>(pageSize));
        next = static_cast<std::uint32_t>(page[4]) | static_cast<std::uint32_t>(page[5]) << 8 |
               static_cast<std::uint32_t>(page[6]) << 16 | static_cast<std::uint32_t>(page[7]) << 24;
    }
    if (definition.empty())
        return std::nullopt;
    return definition;
}

} // namespace vellum
