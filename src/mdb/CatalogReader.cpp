#include "mdb/CatalogReader.h"

#include "mdb/longValues.h"
#include "util/littleEndian.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vellum {

namespace {

constexpr unsigned kCatalogPage = 2;         // MSysObjects' definition is always on page 2
constexpr int kCatalogTextBuffer = 4096;     // ids, names, types and flags are short
constexpr unsigned kMaxCatalogColumns = 256; // Access allows 255

struct TableDefFree {
    void operator()(MdbTableDef *t) const { mdb_free_tabledef(t); }
};

/// The position (from 1) of the column named `name`, 0 when there is none.
int columnNamed(MdbTableDef *table, const char *name)
{
    for (unsigned i = 0; i < table->columns->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(table->columns, i));
        if (col && g_ascii_strcasecmp(col->name, name) == 0)
            return static_cast<int>(i + 1);
    }
    return 0;
}

/// The object types Access writes into the catalog: tables, databases, containers, linked
/// tables, queries, modules, relationships, and forms, macros, reports, modules and properties
/// of the Access application (negative).
bool isKnownObjectType(long type)
{
    static constexpr long kKnown[] = {1, 2, 3, 4, 5, 6, 7, 8, -32768, -32766, -32764, -32761, -32758, -32757, -32756};
    return std::find(std::begin(kKnown), std::end(kKnown), type) != std::end(kKnown);
}

/// A table entry whose flags mark a system table must carry a system table's name ("MSys…", or
/// "f_…" for the hidden tables of complex columns): otherwise a damaged flag hides a user table.
bool isPlausibleEntry(long type, long flags, const char *name)
{
    if (!isKnownObjectType(type))
        return false;
    constexpr unsigned long kSystemFlags = 0x80000002u;
    if (type == MDB_TABLE && (static_cast<unsigned long>(flags) & kSystemFlags))
        return std::strncmp(name, "MSys", 4) == 0 || std::strncmp(name, "f_", 2) == 0;
    return true;
}

/// The least number of bytes libmdb reads for a property value of a fixed-size type.
std::uint32_t fixedValueSize(int type)
{
    switch (type) {
    case MDB_BYTE:
        return 1;
    case MDB_INT:
        return 2;
    case MDB_LONGINT:
    case MDB_FLOAT:
    case MDB_COMPLEX:
        return 4;
    case MDB_MONEY:
    case MDB_DOUBLE:
    case MDB_DATETIME:
        return 8;
    case MDB_REPID:
        return 16;
    case MDB_NUMERIC:
        return 17;
    default:
        return 0;
    }
}

/// A list of property names: each a 16-bit length and that many bytes.
bool namesFit(const unsigned char *block, std::uint32_t length)
{
    for (std::uint32_t pos = 0; pos < length;) {
        if (length - pos < 2)
            return false;
        const std::uint32_t n = readLe16(block + pos);
        pos += 2;
        if (n > length - pos)
            return false;
        pos += n;
    }
    return true;
}

/// A block of property values: a header with the block's name, then records of at least 8
/// bytes, each holding its value.
bool valuesFit(const unsigned char *block, std::uint32_t length)
{
    if (length < 6)
        return false;
    const std::uint32_t nameLength = readLe16(block + 4);
    if (nameLength > length - 6)
        return false;
    for (std::uint32_t pos = 6 + nameLength; pos < length;) {
        if (length - pos < 8)
            return false;
        const std::uint32_t recordLength = readLe16(block + pos);
        const int type = block[pos + 3];
        const std::uint32_t valueSize = readLe16(block + pos + 6);
        if (recordLength < 8 || recordLength > length - pos || valueSize > length - pos - 8 ||
            valueSize < fixedValueSize(type))
            return false;
        pos += recordLength;
    }
    return true;
}

/// True when a property block ("KKD" or "MR2", then chunks of names and values) holds only
/// chunks and records that lie within it: libmdb parses blocks without checking that, so a
/// damaged length makes it read far beyond the block, or loop forever on a zero length.
bool isWellFormedPropertyBlock(const std::string &block)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(block.data());
    const std::size_t length = block.size();
    if (length < 4 || (std::memcmp(bytes, "KKD", 4) != 0 && std::memcmp(bytes, "MR2", 4) != 0))
        return false;
    for (std::size_t pos = 4; pos < length;) {
        if (length - pos < 6)
            return false;
        const std::uint32_t chunkLength = readLe32(bytes + pos);
        const std::uint32_t type = readLe16(bytes + pos + 4);
        if (chunkLength < 6 || chunkLength > length - pos)
            return false;
        if (type == 0x80 && !namesFit(bytes + pos + 6, chunkLength - 6))
            return false;
        if (type <= 0x02 && !valuesFit(bytes + pos + 6, chunkLength - 6))
            return false;
        pos += chunkLength;
    }
    return true;
}

} // namespace

bool CatalogReader::read()
{
    if (m_mdb->catalog)
        mdb_free_catalog(m_mdb);
    m_mdb->catalog = g_ptr_array_new();
    m_mdb->num_catalog = 0;
    m_entriesRead = m_entriesStated = m_entriesDamaged = 0;

    MdbCatalogEntry catalog{};
    catalog.mdb = m_mdb;
    catalog.object_type = MDB_TABLE;
    catalog.table_pg = kCatalogPage;
    std::snprintf(catalog.object_name, sizeof catalog.object_name, "%s", "MSysObjects");
    std::unique_ptr<MdbTableDef, TableDefFree> table(mdb_read_table(&catalog));
    if (!table || table->num_cols > kMaxCatalogColumns || !mdb_read_columns(table.get()) || !table->columns) {
        mdb_free_catalog(m_mdb);
        return false;
    }
    m_entriesStated = table->num_rows > 0 ? static_cast<std::uint64_t>(table->num_rows) : 0;

    // Text columns are bound (libmdb converts them into the buffers, within their size); the
    // properties are read from their stored bytes.
    std::vector<char> id(kCatalogTextBuffer), name(kCatalogTextBuffer), type(kCatalogTextBuffer),
        flags(kCatalogTextBuffer);
    const int idColumn = columnNamed(table.get(), "Id");
    const int nameColumn = columnNamed(table.get(), "Name");
    const int typeColumn = columnNamed(table.get(), "Type");
    const int flagsColumn = columnNamed(table.get(), "Flags");
    const int propsColumn = columnNamed(table.get(), "LvProp");
    if (!idColumn || !nameColumn || !typeColumn || !flagsColumn || !propsColumn) {
        mdb_free_catalog(m_mdb);
        return false;
    }
    auto *props = static_cast<MdbColumn *>(g_ptr_array_index(table->columns, propsColumn - 1));
    const int savedBindSize = static_cast<int>(m_mdb->bind_size);
    mdb_set_bind_size(m_mdb, kCatalogTextBuffer);
    mdb_bind_column(table.get(), idColumn, id.data(), nullptr);
    mdb_bind_column(table.get(), nameColumn, name.data(), nullptr);
    mdb_bind_column(table.get(), typeColumn, type.data(), nullptr);
    mdb_bind_column(table.get(), flagsColumn, flags.data(), nullptr);

    const std::uint64_t limit = longValueLimit(m_mdb);
    mdb_rewind_table(table.get());
    while (mdb_fetch_row(table.get())) {
        ++m_entriesRead;
        auto *entry = static_cast<MdbCatalogEntry *>(g_malloc0(sizeof(MdbCatalogEntry)));
        entry->mdb = m_mdb;
        std::snprintf(entry->object_name, sizeof entry->object_name, "%s", name.data());
        entry->object_type = std::atoi(type.data()) & 0x7F;
        entry->table_pg = static_cast<unsigned long>(std::atol(id.data()) & 0x00FFFFFF);
        entry->flags = static_cast<int>(std::atol(flags.data()));
        if (!isPlausibleEntry(std::atol(type.data()), std::atol(flags.data()), entry->object_name))
            ++m_entriesDamaged;
        if (props->cur_value_len > 0 && props->cur_value_start >= 0 &&
            props->cur_value_start + props->cur_value_len <= static_cast<int>(m_mdb->fmt->pg_size)) {
            const auto *page = reinterpret_cast<const unsigned char *>(m_mdb->pg_buf);
            const std::span<const unsigned char> field(page + props->cur_value_start,
                                                       static_cast<std::size_t>(props->cur_value_len));
            std::optional<std::string> value = readLongValue(m_mdb, field, limit);
            if (value && !value->empty() && isWellFormedPropertyBlock(*value))
                entry->props = mdb_kkd_to_props(m_mdb, value->data(), value->size());
        }
        ++m_mdb->num_catalog;
        g_ptr_array_add(m_mdb->catalog, entry);
    }
    mdb_set_bind_size(m_mdb, savedBindSize);
    return true;
}

} // namespace vellum
