#include "model/MdbLoader.h"

#include "model/TOrbMDBFile.h"
#include "model/mdbColumnsUnsorted.h"
#include "model/mdbTypeNames.h"
#include "model/ole/decodeOleCell.h"

#include "model/mdbtoolsInclude.h"

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {
namespace {

constexpr unsigned kMaxColumns = 4096;   // Access allows 255; more means a damaged definition
constexpr unsigned kHiddenDataTableFlags = 0x800a0000u;
constexpr std::uint64_t kProgressEvery = 4096;

/// Closes a libmdb handle on every path.
struct HandleCloser {
    void operator()(MdbHandle *mdb) const { mdb_close(mdb); }
};
using HandlePtr = std::unique_ptr<MdbHandle, HandleCloser>;

struct TableDefFree {
    void operator()(MdbTableDef *t) const { mdb_free_tabledef(t); }
};
using TableDefPtr = std::unique_ptr<MdbTableDef, TableDefFree>;

/// libmdb converts Jet 4 and later text from UCS-2, which turns every character outside the
/// Basic Multilingual Plane into "??". UTF-16LE keeps surrogate pairs intact.
void useUtf16Conversion(MdbHandle *mdb)
{
    if (mdb->f->jet_version == MDB_VER_JET3)
        return;
    iconv_t utf16 = iconv_open("UTF-8", "UTF-16LE");
    if (utf16 == reinterpret_cast<iconv_t>(-1))
        return;
    if (mdb->iconv_in != reinterpret_cast<iconv_t>(-1))
        iconv_close(mdb->iconv_in);
    mdb->iconv_in = utf16;
}

/// Value buffers bound to every column of a table definition, freed on every path.
class Bindings {
public:
    explicit Bindings(MdbTableDef *tdef) : m_lengths(tdef->columns ? tdef->columns->len : 0, 0)
    {
        const unsigned n = tdef->columns ? tdef->columns->len : 0;
        m_buffers.resize(n);
        for (unsigned i = 0; i < n; ++i) {
            if (!g_ptr_array_index(tdef->columns, i))
                continue;
            m_buffers[i].reset(new char[kBindBufferSize]);
            m_buffers[i][0] = '\0';
            mdb_bind_column(tdef, static_cast<int>(i + 1), m_buffers[i].get(), &m_lengths[i]);
        }
    }
    char *buffer(unsigned i) const { return m_buffers[i].get(); }
    int length(unsigned i) const { return m_lengths[i]; }

private:
    std::vector<int> m_lengths;
    std::vector<std::unique_ptr<char[]>> m_buffers;
};

/// Position of a column pointer in the table definition's (sorted) array.
std::optional<unsigned> sortedPosition(MdbTableDef *tdef, const MdbColumn *col)
{
    for (unsigned i = 0; i < tdef->columns->len; ++i)
        if (g_ptr_array_index(tdef->columns, i) == col)
            return i;
    return std::nullopt;
}

void applyProperties(TOrbMDBColumn &column, const MdbColumn *col)
{
    if (!col->props || !col->props->hash)
        return;
    g_hash_table_foreach(
        col->props->hash,
        [](gpointer key, gpointer value, gpointer user) {
            getPropertyValues(static_cast<const char *>(key), static_cast<const char *>(value),
                              static_cast<TOrbMDBColumn *>(user));
        },
        &column);
}

/// Builds the table's columns in stored order.
void getColumnsFromMdbTableDef(TOrbMDBTable &table, MdbHandle *mdb, GPtrArray *stored,
                               const std::vector<ColumnDescriptorFlags> &flags)
{
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(col->name);
        column->setDataType(mdb_get_colbacktype_string_fromMdbType(col->col_type));
        if (col->col_type == MDB_TEXT && col->col_size > 0)
            column->setFieldSize(mdb->f->jet_version != MDB_VER_JET3 ? col->col_size / 2 : col->col_size);
        const ColumnDescriptorFlags f = i < flags.size() ? flags[i] : ColumnDescriptorFlags{};
        if (col->col_type == MDB_MEMO && (f.flags & 0x80))
            column->setIsHyperlink(true);
        if ((f.extFlags & 0xC0) == 0xC0)
            column->setIsCalculatedType(true);
        // libmdb keeps the precision in col_scale and the scale in col_prec.
        if (col->col_scale > 0) {
            column->setPrecision(col->col_scale);
            column->setScale(col->col_prec);
        }
        applyProperties(*column, col);
        table.addColumn(std::move(column));
    }
}

/// Loads every row in storage order; false when the observer cancelled.
bool getRowsFromMdbTableDef(TOrbMDBTable &table, MdbTableDef *tdef, MdbHandle *mdb, GPtrArray *stored,
                            LoadObserver *observer, std::uint64_t &totalRows)
{
    Bindings bindings(tdef);
    // Stored-order slot → position in libmdb's array (its binding number minus one).
    std::vector<unsigned> slots;
    std::vector<MdbColumn *> cols;
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        const auto position = sortedPosition(tdef, col);
        slots.push_back(position.value_or(0));
        cols.push_back(col);
    }
    TableStore &store = table.mutableStore();
    mdb_rewind_table(tdef);
    while (mdb_fetch_row(tdef)) {
        store.beginRow();
        for (size_t c = 0; c < cols.size(); ++c) {
            MdbColumn *col = cols[c];
            const unsigned slot = slots[c];
            const int length = bindings.length(slot);
            if (col->col_type != MDB_OLE) {
                const char *text = bindings.buffer(slot);
                const size_t n = length > 0 ? strnlen(text, std::min(length, kBindBufferSize - 1)) : 0;
                store.appendText(text, n);
                continue;
            }
            if (length <= 0) {
                store.appendNull();
                continue;
            }
            size_t size = 0;
            void *full = mdb_ole_read_full(mdb, col, &size);
            std::unique_ptr<TOrbBlobData> blob = full && size ? decodeOleCell(full, size) : nullptr;
            std::free(full);
            if (blob)
                store.appendBlob(std::move(blob));
            else
                store.appendNull();
        }
        store.endRow();
        if (observer && (++totalRows % kProgressEvery) == 0) {
            observer->rowsLoaded(totalRows);
            if (observer->shouldCancel())
                return false;
        }
    }
    store.shrink();
    return true;
}

void getIndicesFromMdbTableDef(TOrbMDBTable &table, MdbTableDef *tdef)
{
    if (tdef->indices) {
        for (unsigned i = 0; i < tdef->indices->len; ++i) {
            auto *idx = static_cast<MdbIndex *>(g_ptr_array_index(tdef->indices, i));
            if (!idx)
                continue;
            auto index = std::make_unique<TOrbMDBIndex>();
            index->setName(idx->name);
            index->setIsPrimaryKey(idx->index_type == 1);
            index->setIsUnique((idx->flags & 0x01) != 0);
            std::vector<IndexKey> keys;
            const unsigned numKeys = std::min<unsigned>(idx->num_keys, MDB_MAX_IDX_COLS);
            for (unsigned k = 0; k < numKeys; ++k) {
                const int colNum = idx->key_col_num[k];
                if (colNum < 1 || static_cast<unsigned>(colNum) > tdef->columns->len)
                    continue;
                auto *col = static_cast<MdbColumn *>(g_ptr_array_index(tdef->columns, colNum - 1));
                if (!col)
                    continue;
                keys.push_back(IndexKey{col->name, idx->key_col_order[k] == 0});
            }
            if (keys.empty())
                continue;
            index->setKeys(std::move(keys));
            table.addIndex(std::move(index));
        }
    }
    table.sortIndices();
}

/// Reads "MSysRelationships" into the file's relationships, merging rows of one name.
void readRelationships(TOrbMDBFile &file, MdbTableDef *tdef)
{
    if (!mdb_read_columns(tdef) || !tdef->columns)
        return;
    const unsigned n = tdef->columns->len;
    std::vector<std::unique_ptr<char[]>> buffers(n);
    for (unsigned i = 0; i < n; ++i) {
        buffers[i].reset(new char[kBindBufferSize]);
        buffers[i][0] = '\0';
        mdb_bind_column(tdef, static_cast<int>(i + 1), buffers[i].get(), nullptr);
    }
    mdb_rewind_table(tdef);
    while (mdb_fetch_row(tdef)) {
        const auto text = [&](unsigned position) -> std::string {
            return position <= n ? std::string(buffers[position - 1].get()) : std::string();
        };
        if (n < 8)
            continue;
        bool isNew = false;
        TOrbMDBForeignKey *key = file.findForeignKeyByName(text(1));
        std::unique_ptr<TOrbMDBForeignKey> created;
        if (!key) {
            created = std::make_unique<TOrbMDBForeignKey>();
            created->setFile(&file);
            created->setName(text(1));
            key = created.get();
            isNew = true;
        }
        const long grbit = std::strtol(buffers[1].get(), nullptr, 10);
        if (grbit & 0x100)
            key->setOnUpdateCascade(true);
        if (grbit & 0x1000)
            key->setOnDeleteCascade(true);
        if (isNew)
            key->setReferencingTable(text(5));
        key->addReferencingColumn(text(6));
        if (isNew)
            key->setReferencedTable(text(7));
        key->addReferencedColumn(text(8));
        if (created)
            file.addForeignKey(std::move(created));
    }
}

} // namespace

bool loadFileInProcess(TOrbMDBFile &file, LoadObserver *observer)
{
    HandlePtr mdb(mdb_open(file.fullPath().c_str(), MDB_NOFLAGS));
    if (!mdb)
        return false;
    useUtf16Conversion(mdb.get());
    mdb_set_bind_size(mdb.get(), kBindBufferSize);
    mdb_set_date_fmt(mdb.get(), "%m/%d/%Y %H:%M:%S");

    if (!mdb_read_catalog(mdb.get(), MDB_ANY))
        return true; // active with no tables
    const bool modernFormat = mdb->f->jet_version >= MDB_VER_ACCDB_2007;

    std::uint64_t totalRows = 0;
    std::string workingName;
    bool haveWorkingName = false;
    std::size_t tableIndex = 0;
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (!entry || entry->object_type != MDB_TABLE)
            continue;
        TableDefPtr tdef(mdb_read_table(entry));
        if (!tdef)
            continue;
        const bool user = mdb_is_user_table(entry);
        const bool hidden = !user && mdb_is_system_table(entry) && modernFormat &&
                            static_cast<unsigned>(entry->flags) == kHiddenDataTableFlags;
        if (!user && !hidden) {
            if (std::strcmp(entry->object_name, "MSysRelationships") == 0)
                readRelationships(file, tdef.get());
            continue;
        }
        if (tdef->num_cols > kMaxColumns)
            continue;
        if (!mdb_read_columns(tdef.get()) || !tdef->columns)
            continue;
        mdb_read_indices(tdef.get()); // fills tdef->indices; must follow the column read
        std::vector<ColumnDescriptorFlags> flags;
        GPtrArray *stored = mdb_read_columns_without_sorting(tdef.get(), &flags);
        if (!stored)
            continue;
        if (observer) {
            observer->tableStarted(user ? std::string(tdef->name) : std::string(), tableIndex++, 0);
            if (observer->shouldCancel()) {
                g_ptr_array_free(stored, FALSE);
                return false;
            }
        }
        auto table = std::make_unique<TOrbMDBTable>();
        table->setFile(&file);
        getColumnsFromMdbTableDef(*table, mdb.get(), stored, flags);
        const bool completed = getRowsFromMdbTableDef(*table, tdef.get(), mdb.get(), stored, observer, totalRows);
        g_ptr_array_free(stored, FALSE);
        if (!completed)
            return false;
        getIndicesFromMdbTableDef(*table, tdef.get());
        table->setColumnPrimaryKey();

        if (user) {
            workingName = tdef->name;
            haveWorkingName = true;
        } else {
            bool named = false;
            for (const auto &column : table->columns()) {
                if (column->isPrimaryKey()) {
                    workingName = column->name();
                    named = haveWorkingName = true;
                    break;
                }
            }
            if (!named && !haveWorkingName)
                workingName = tdef->name;
            if (workingName == "MSysResources_Data")
                continue;
        }
        table->setName(workingName);
        file.addTable(std::move(table));
    }
    if (observer)
        observer->rowsLoaded(totalRows);
    return true;
}

} // namespace vellum
