#include "mdb/mdbColumnsUnsorted.h"

#include <cstring>
#include <string>

namespace vellum {
namespace {

constexpr unsigned char kComplexType = 0x12;
constexpr int kComplexIdOffset = 11;

/// A cursor over a chain of table-definition pages: page bytes are read in order, following the
/// "next page" link at offset 4 of each page, as libmdb does for its own descriptor walk.
class DefinitionCursor {
public:
    DefinitionCursor(MdbHandle *mdb, int position) : m_mdb(mdb), m_position(position) {}

    bool read(void *out, size_t length)
    {
        auto *dest = static_cast<unsigned char *>(out);
        const int pageSize = static_cast<int>(m_mdb->fmt->pg_size);
        if (m_position < 0)
            return false;
        while (m_position >= pageSize) {
            if (!nextPage())
                return false;
            m_position -= pageSize - 8;
        }
        while (length > 0) {
            if (m_position >= pageSize) {
                if (!nextPage())
                    return false;
                m_position = 8;
            }
            const size_t piece = std::min(length, static_cast<size_t>(pageSize - m_position));
            std::memcpy(dest, m_mdb->pg_buf + m_position, piece);
            dest += piece;
            length -= piece;
            m_position += static_cast<int>(piece);
        }
        return true;
    }

private:
    bool nextPage()
    {
        if (++m_hops > kMaxHops)
            return false;
        const long next = mdb_get_int32(m_mdb->pg_buf, 4);
        if (next <= 0)
            return false;
        return mdb_read_pg(m_mdb, static_cast<unsigned long>(next)) > 0;
    }

    static constexpr int kMaxHops = 4096; // a definition never spans that many pages
    MdbHandle *m_mdb;
    int m_position;
    int m_hops = 0;
};

} // namespace

GPtrArray *mdb_read_columns_without_sorting(MdbTableDef *table, std::vector<ColumnDescriptorFlags> *flags)
{
    if (!table || !table->entry || !table->columns)
        return nullptr;
    MdbHandle *mdb = table->entry->mdb;
    MdbFormatConstants *fmt = mdb->fmt;
    if (!mdb_read_pg(mdb, table->entry->table_pg))
        return nullptr;
    const unsigned numCols = table->columns->len;
    const long realIndexes = mdb_get_int32(mdb->pg_buf, fmt->tab_num_ridxs_offset);
    if (realIndexes < 0 || realIndexes > 1000)
        return nullptr;
    DefinitionCursor cursor(mdb, fmt->tab_cols_start_offset + static_cast<int>(realIndexes) * fmt->tab_ridx_entry_size);
    const bool jet3 = mdb->f->jet_version == MDB_VER_JET3;

    std::vector<ColumnDescriptorFlags> descriptorFlags(numCols);
    unsigned char descriptor[64];
    if (fmt->tab_col_entry_size > static_cast<int>(sizeof descriptor))
        return nullptr;
    for (unsigned i = 0; i < numCols; ++i) {
        if (!cursor.read(descriptor, fmt->tab_col_entry_size))
            return nullptr;
        descriptorFlags[i].flags = descriptor[fmt->col_flags_offset];
        descriptorFlags[i].extFlags = jet3 ? 0 : descriptor[fmt->col_flags_offset + 1];
        // A complex column keeps its id where other types keep their precision or collation.
        if (mdb->f->jet_version >= MDB_VER_ACCDB_2007 && descriptor[0] == kComplexType &&
            fmt->tab_col_entry_size >= kComplexIdOffset + 4)
            descriptorFlags[i].complexId = static_cast<std::int32_t>(mdb_get_int32(descriptor, kComplexIdOffset));
    }

    GPtrArray *ordered = g_ptr_array_sized_new(numCols);
    std::vector<bool> taken(numCols, false);
    std::vector<ColumnDescriptorFlags> orderedFlags;
    std::string raw;
    for (unsigned i = 0; i < numCols; ++i) {
        size_t nameLength = 0;
        if (jet3) {
            unsigned char n = 0;
            if (!cursor.read(&n, 1))
                break;
            nameLength = n;
        } else {
            unsigned char n[2];
            if (!cursor.read(n, 2))
                break;
            nameLength = static_cast<size_t>(n[0] | (n[1] << 8));
        }
        raw.resize(nameLength);
        if (nameLength && !cursor.read(raw.data(), nameLength))
            break;
        char name[MDB_MAX_OBJ_NAME + 1] = {0};
        mdb_unicode2ascii(mdb, raw.data(), nameLength, name, sizeof name);
        // Names are unique within a table: find the libmdb column of this descriptor.
        for (unsigned j = 0; j < numCols; ++j) {
            auto *col = static_cast<MdbColumn *>(g_ptr_array_index(table->columns, j));
            if (!taken[j] && col && std::strcmp(col->name, name) == 0) {
                taken[j] = true;
                g_ptr_array_add(ordered, col);
                orderedFlags.push_back(descriptorFlags[i]);
                break;
            }
        }
    }
    // Anything the walk could not place keeps libmdb's order at the end.
    for (unsigned j = 0; j < numCols; ++j) {
        if (!taken[j] && g_ptr_array_index(table->columns, j)) {
            g_ptr_array_add(ordered, g_ptr_array_index(table->columns, j));
            orderedFlags.push_back(ColumnDescriptorFlags{});
        }
    }
    if (flags)
        *flags = std::move(orderedFlags);
    return ordered;
}

} // namespace vellum
