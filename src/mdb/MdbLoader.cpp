#include "mdb/MdbLoader.h"

#include "mdb/CatalogReader.h"
#include "mdb/ComplexValueReader.h"
#include "mdb/DatabaseImage.h"
#include "mdb/FieldReader.h"
#include "mdb/indexDefinitions.h"
#include "mdb/mdbColumnsUnsorted.h"
#include "model/TOrbMDBFile.h"
#include "model/mdbTypeNames.h"
#include "model/querySql.h"

#include "mdb/mdbtoolsInclude.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

namespace vellum {
namespace {

constexpr unsigned kMaxColumns = 4096; // Access allows 255; more means a damaged definition
constexpr unsigned kMaxIndexes = 1024; // Access allows 32; libmdb reads every index a definition states
constexpr unsigned kHiddenDataTableFlags = 0x800a0000u;
constexpr std::uint64_t kTickEveryRows = 1024;
constexpr auto kRowsReportInterval = std::chrono::milliseconds(20);
constexpr auto kWaitSlice = std::chrono::milliseconds(20);

/// Closes a libmdb handle on every path.
struct HandleCloser {
    void operator()(MdbHandle *mdb) const { mdb_close(mdb); }
};
using HandlePtr = std::unique_ptr<MdbHandle, HandleCloser>;

struct TableDefFree {
    void operator()(MdbTableDef *t) const { mdb_free_tabledef(t); }
};
using TableDefPtr = std::unique_ptr<MdbTableDef, TableDefFree>;

/// Sets the conversion libmdb uses for the names it reads (tables, columns, the catalog). libmdb
/// converts Jet 4 and later text from UCS-2, which turns every character outside the Basic
/// Multilingual Plane into "??": UTF-16LE keeps surrogate pairs intact. Jet 3 text is read in
/// `codePage`, the same one as the rows.
void useTextConversion(MdbHandle *mdb, const std::string &codePage)
{
    const bool jet3 = mdb->f->jet_version == MDB_VER_JET3;
    iconv_t converter = iconv_open("UTF-8", jet3 ? codePage.c_str() : "UTF-16LE");
    if (converter == reinterpret_cast<iconv_t>(-1))
        return;
    if (mdb->iconv_in != reinterpret_cast<iconv_t>(-1))
        iconv_close(mdb->iconv_in);
    mdb->iconv_in = converter;
}

std::string codePageOf(const LoadOptions &options)
{
    return options.jet3CodePage.empty() ? std::string(kDefaultJet3CodePage) : options.jet3CodePage;
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
        const ColumnDescriptorFlags f = i < flags.size() ? flags[i] : ColumnDescriptorFlags{};
        const bool calculated = mdb->f->jet_version != MDB_VER_JET3 && isCalculatedColumn(f);
        column->setDataType(mdb_get_colbacktype_string_fromMdbType(storedValueType(*col, calculated)));
        if (col->col_type == MDB_TEXT && col->col_size > 0)
            column->setFieldSize(mdb->f->jet_version != MDB_VER_JET3 ? col->col_size / 2 : col->col_size);
        if (col->col_type == MDB_MEMO && (f.flags & 0x80))
            column->setIsHyperlink(true);
        if (calculated)
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

/// Called with the number of rows loaded since the last call, every kTickEveryRows rows and
/// after every row that held OLE data; answers false to stop the load.
using RowTicker = std::function<bool(std::uint64_t newRows)>;

/// Which data pages of a table a read covers, by libmdb's current page after each fetched
/// row: the rows of pages before `splitPage` (`Front`), from it on (`Back`), or all. libmdb
/// visits a table's pages in ascending page order (through the usage map, or page by page when
/// it cannot read the map), so the front rows followed by the back rows are exactly the rows of
/// a whole read, in the same order, whichever way the pages are found.
struct PageRange {
    enum class Part { All, Front, Back };
    Part part = Part::All;
    std::uint32_t splitPage = 0;

    bool inRange(std::uint32_t page) const
    {
        return part == Part::All || (part == Part::Front ? page < splitPage : page >= splitPage);
    }
};

/// Loads the rows of `range` into `store` in storage order, decoding every field from its
/// stored bytes; false when the ticker stopped it.
bool getRowsFromMdbTableDef(TableStore &store, MdbTableDef *tdef, MdbHandle *mdb, GPtrArray *stored,
                            const std::vector<ColumnDescriptorFlags> &flags, const std::string &codePage,
                            const RowTicker &tick, std::uint64_t &lostLongValues, const PageRange &range = {})
{
    std::vector<MdbColumn *> cols;
    std::vector<ColumnDescriptorFlags> colFlags;
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        cols.push_back(col);
        colFlags.push_back(i < flags.size() ? flags[i] : ColumnDescriptorFlags{});
    }
    FieldReader reader(mdb, std::move(cols), colFlags, codePage);
    // Counted on every way out, a stopped read included.
    struct LostCounter {
        const FieldReader &reader;
        std::uint64_t &lost;
        ~LostCounter() { lost += reader.lostLongValues(); }
    } counter{reader, lostLongValues};
    std::uint64_t untold = 0;
    mdb_rewind_table(tdef);
    if (range.part == PageRange::Part::Back)
        tdef->cur_phys_pg = range.splitPage - 1; // the first page read is the next one after
    while (mdb_fetch_row(tdef)) {
        if (!range.inRange(tdef->cur_phys_pg)) {
            if (range.part == PageRange::Part::Front)
                break; // the back half's pages begin
            continue;  // a page before the back half, read when libmdb cannot use the map
        }
        store.beginRow();
        const bool heavy = reader.appendRow(store);
        store.endRow();
        if ((++untold >= kTickEveryRows || heavy) && !tick(std::exchange(untold, 0)))
            return false;
    }
    store.shrink();
    return untold == 0 || tick(untold);
}

/// The table definition's logical indexes, read from its stored bytes; empty when the
/// definition cannot be read or is damaged.
std::vector<IndexDefinition> readIndexDefinitions(MdbHandle *mdb, MdbTableDef *tdef)
{
    const std::size_t pageSize = mdb->fmt->pg_size;
    const PageReader readPage = [mdb, pageSize](std::uint32_t page, std::vector<unsigned char> &bytes) {
        if (mdb_read_pg(mdb, page) <= 0)
            return false;
        bytes.assign(mdb->pg_buf, mdb->pg_buf + pageSize);
        return true;
    };
    const auto definition = gatherTableDefinition(tdef->entry->table_pg, pageSize, readPage);
    if (!definition)
        return {};
    const DefinitionLayout layout =
        mdb->f->jet_version == MDB_VER_JET3 ? DefinitionLayout::Jet3 : DefinitionLayout::Jet4;
    auto parsed = parseIndexDefinitions(*definition, layout);
    return parsed ? std::move(parsed->indexes) : std::vector<IndexDefinition>{};
}

/// Adds the indexes that have at least one key column, named in the handle's text conversion,
/// with their keys by column number, then sorts them by name.
void getIndicesFromMdbTableDef(TOrbMDBTable &table, MdbHandle *mdb, MdbTableDef *tdef)
{
    std::unordered_map<unsigned, const MdbColumn *> byNumber;
    for (unsigned i = 0; tdef->columns && i < tdef->columns->len; ++i)
        if (const auto *col = static_cast<const MdbColumn *>(g_ptr_array_index(tdef->columns, i)))
            byNumber.emplace(static_cast<unsigned>(col->col_num), col);
    for (const IndexDefinition &definition : readIndexDefinitions(mdb, tdef)) {
        std::vector<IndexKey> keys;
        for (const IndexKeyDefinition &key : definition.keys)
            if (const auto it = byNumber.find(key.columnNumber); it != byNumber.end())
                keys.push_back(IndexKey{it->second->name, key.ascending});
        if (keys.empty())
            continue;
        char name[MDB_MAX_OBJ_NAME + 1] = {0};
        mdb_unicode2ascii(mdb, definition.rawName.data(), definition.rawName.size(), name, sizeof name);
        auto index = std::make_unique<TOrbMDBIndex>();
        index->setName(name);
        index->setIsPrimaryKey(definition.type == IndexType::PrimaryKey);
        index->setIsUnique(definition.unique);
        index->setIsForeignKey(definition.type == IndexType::ForeignKey);
        index->setKeys(std::move(keys));
        table.addIndex(std::move(index));
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
        // A memo or OLE column here is damage: libmdb would follow its chain without bound.
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(tdef->columns, i));
        if (col && col->col_type != MDB_MEMO && col->col_type != MDB_OLE)
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
        if (grbit & 0x2000)
            key->setOnDeleteSetNull(true);
        if (grbit & 0x2)
            key->setEnforced(false);
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

/// What the handles of one load read: the file at `path`, or the decrypted `image` of it.
struct DatabaseSource {
    std::string path;
    std::shared_ptr<Bytes> image;
};

/// Opens a handle set up the way every load reads: libmdb's own text (used for the catalog
/// tables only) converted from UTF-16, 200000-byte value buffers, month-first dates.
HandlePtr openHandle(const DatabaseSource &source, const std::string &codePage)
{
    // libmdb only reads from the image (a read-only memory stream over the shared bytes).
    HandlePtr mdb(source.image ? mdb_open_buffer(source.image->data(), source.image->size(), MDB_NOFLAGS)
                               : mdb_open(source.path.c_str(), MDB_NOFLAGS));
    if (!mdb)
        return nullptr;
    useTextConversion(mdb.get(), codePage);
    mdb_set_bind_size(mdb.get(), kBindBufferSize);
    mdb_set_date_fmt(mdb.get(), "%m/%d/%Y %H:%M:%S");
    return mdb;
}

/// The columns of a table definition as libmdb reads them, plus the stored column
/// order with the descriptors' flag bytes. Owns the stored-order array.
class ColumnLayout {
public:
    ColumnLayout() = default;
    ColumnLayout(const ColumnLayout &) = delete;
    ColumnLayout &operator=(const ColumnLayout &) = delete;
    ~ColumnLayout()
    {
        if (m_stored)
            g_ptr_array_free(m_stored, TRUE); // the array only: it owns no column
    }

    /// Reads the columns and their stored order; false when the definition is implausible or
    /// any part cannot be read.
    bool read(MdbTableDef *tdef)
    {
        if (tdef->num_cols > kMaxColumns || tdef->num_idxs > kMaxIndexes || tdef->num_real_idxs > kMaxIndexes)
            return false;
        if (!mdb_read_columns(tdef) || !tdef->columns)
            return false;
        m_stored = mdb_read_columns_without_sorting(tdef, &m_flags);
        return m_stored != nullptr;
    }
    GPtrArray *stored() const { return m_stored; }
    const std::vector<ColumnDescriptorFlags> &flags() const { return m_flags; }

private:
    GPtrArray *m_stored = nullptr;
    std::vector<ColumnDescriptorFlags> m_flags;
};

/// A stored row of a query definition with the catalog id of the query it belongs to.
struct StoredQueryRow {
    std::uint32_t objectId = 0;
    QueryRow row;
};

/// The decoded cell as text; nullopt for the null marker (null or empty) and for blobs.
std::optional<std::string> cellText(const TableStore &store, std::size_t row, std::optional<std::size_t> column)
{
    if (!column)
        return std::nullopt;
    const CellValue cell = store.cell(row, *column);
    if (!cell.isText())
        return std::nullopt;
    return std::string(cell.text);
}

std::optional<long long> cellNumber(const TableStore &store, std::size_t row, std::optional<std::size_t> column)
{
    const auto text = cellText(store, row, column);
    if (!text)
        return std::nullopt;
    char *end = nullptr;
    const long long value = std::strtoll(text->c_str(), &end, 10);
    if (end == text->c_str() || *end != '\0')
        return std::nullopt;
    return value;
}

/// Reads "MSysQueries": every row decoded from its stored bytes, in storage order (the order of
/// a query's columns, joins and sort keys). A table that cannot be read gives no rows.
std::vector<StoredQueryRow> readQueryRows(MdbHandle *mdb, MdbTableDef *tdef, const std::string &codePage)
{
    std::vector<StoredQueryRow> rows;
    ColumnLayout layout;
    if (!layout.read(tdef))
        return rows;
    GPtrArray *stored = layout.stored();
    std::vector<MdbColumn *> cols;
    std::vector<ColumnDescriptorFlags> flags;
    std::vector<std::string> names;
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        cols.push_back(col);
        flags.push_back(i < layout.flags().size() ? layout.flags()[i] : ColumnDescriptorFlags{});
        names.emplace_back(col->name);
    }
    const auto position = [&](const char *name) -> std::optional<std::size_t> {
        for (std::size_t i = 0; i < names.size(); ++i)
            if (names[i] == name)
                return i;
        return std::nullopt;
    };
    const auto objectIdColumn = position("ObjectId");
    const auto attributeColumn = position("Attribute");
    if (!objectIdColumn || !attributeColumn)
        return rows;
    const auto expressionColumn = position("Expression");
    const auto flagColumn = position("Flag");
    const auto extraColumn = position("LvExtra");
    const auto name1Column = position("Name1");
    const auto name2Column = position("Name2");

    TableStore store(cols.size());
    FieldReader reader(mdb, std::move(cols), flags, codePage);
    mdb_rewind_table(tdef);
    while (mdb_fetch_row(tdef)) {
        store.beginRow();
        reader.appendRow(store);
        store.endRow();
    }
    for (std::size_t r = 0; r < store.rowCount(); ++r) {
        const auto objectId = cellNumber(store, r, objectIdColumn);
        const auto attribute = cellNumber(store, r, attributeColumn);
        if (!objectId || !attribute)
            continue;
        StoredQueryRow row;
        row.objectId = static_cast<std::uint32_t>(*objectId);
        row.row.attribute = static_cast<int>(*attribute);
        row.row.expression = cellText(store, r, expressionColumn);
        if (const auto flag = cellNumber(store, r, flagColumn))
            row.row.flag = static_cast<int>(*flag);
        if (const auto extra = cellNumber(store, r, extraColumn))
            row.row.extra = static_cast<std::int32_t>(*extra);
        row.row.name1 = cellText(store, r, name1Column);
        row.row.name2 = cellText(store, r, name2Column);
        rows.push_back(std::move(row));
    }
    return rows;
}

/// Adds the saved queries of the catalog (entries of type query) to `file`, each rebuilt from
/// its rows of "MSysQueries". The catalog keeps the low 24 bits of an object's id, which is
/// all that tells one query's rows from another's.
void addQueries(MdbHandle *mdb, TOrbMDBFile &file, const std::vector<StoredQueryRow> &rows)
{
    constexpr std::uint32_t kCatalogIdMask = 0x00FFFFFFu;
    std::unordered_map<std::uint32_t, std::vector<QueryRow>> rowsById;
    for (const StoredQueryRow &row : rows)
        rowsById[row.objectId & kCatalogIdMask].push_back(row.row);
    const std::vector<QueryRow> none;
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (!entry || entry->object_type != MDB_QUERY || entry->object_name[0] == '\0')
            continue;
        const auto found = rowsById.find(static_cast<std::uint32_t>(entry->table_pg) & kCatalogIdMask);
        const RebuiltQuery rebuilt =
            rebuildQuery(static_cast<std::uint32_t>(entry->flags), found != rowsById.end() ? found->second : none);
        auto query = std::make_unique<TOrbMDBQuery>();
        query->setName(entry->object_name);
        query->setType(rebuilt.type);
        query->setSql(rebuilt.sql);
        file.addQuery(std::move(query));
    }
}

/// Catalog types of the tables a database links to (MSysObjects "Type").
constexpr long kLinkedOdbcTableType = 4;
constexpr long kLinkedAccessTableType = 6;
/// Catalog flags that mark a system object; such entries are never listed.
constexpr std::uint32_t kSystemObjectFlags = 0x80000002u;

/// Reads the links to tables of other databases from "MSysObjects" into the file: type 6
/// entries link to a table of another Access file ("Database" holds its path as stored), type 4
/// entries reach a table over ODBC ("Connect" holds the connection text); "ForeignName" is the
/// table's name in the target. libmdb's catalog keeps none of these columns, so the rows are
/// decoded here from their stored bytes, only the six columns needed (not the long property
/// blobs beside them). A catalog whose rows cannot be read adds nothing.
void readLinkedTables(TOrbMDBFile &file, MdbHandle *mdb, MdbTableDef *tdef, const std::string &codePage)
{
    ColumnLayout layout;
    if (!layout.read(tdef))
        return;
    enum Wanted { Name, Type, Flags, Database, Connect, ForeignName, WantedCount };
    static constexpr const char *kWantedNames[WantedCount] = {"Name",     "Type",    "Flags",
                                                              "Database", "Connect", "ForeignName"};
    std::array<int, WantedCount> position;
    position.fill(-1);
    std::unique_ptr<GPtrArray, void (*)(GPtrArray *)> wanted(g_ptr_array_new(),
                                                             [](GPtrArray *a) { g_ptr_array_free(a, TRUE); });
    std::vector<ColumnDescriptorFlags> wantedFlags;
    GPtrArray *stored = layout.stored();
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        for (int w = 0; w < WantedCount; ++w) {
            if (position[static_cast<std::size_t>(w)] < 0 && std::strcmp(col->name, kWantedNames[w]) == 0) {
                position[static_cast<std::size_t>(w)] = static_cast<int>(wanted->len);
                g_ptr_array_add(wanted.get(), col);
                wantedFlags.push_back(i < layout.flags().size() ? layout.flags()[i] : ColumnDescriptorFlags{});
                break;
            }
        }
    }
    if (position[Name] < 0 || position[Type] < 0 || position[ForeignName] < 0 ||
        (position[Database] < 0 && position[Connect] < 0))
        return;
    TableStore store(wanted->len);
    std::uint64_t lostLongValues = 0; // the catalog's own long values are not among the columns read
    if (!getRowsFromMdbTableDef(
            store, tdef, mdb, wanted.get(), wantedFlags, codePage, [](std::uint64_t) { return true; }, lostLongValues))
        return;
    const auto text = [&store, &position](std::size_t row, Wanted column) {
        const int at = position[static_cast<std::size_t>(column)];
        if (at < 0)
            return std::string();
        const CellValue cell = store.cell(row, static_cast<std::size_t>(at));
        return cell.isText() ? std::string(cell.text) : std::string();
    };
    for (std::size_t row = 0; row < store.rowCount(); ++row) {
        const long objectType = std::strtol(text(row, Type).c_str(), nullptr, 10);
        if (objectType != kLinkedAccessTableType && objectType != kLinkedOdbcTableType)
            continue;
        const auto objectFlags = static_cast<std::uint32_t>(std::strtoll(text(row, Flags).c_str(), nullptr, 10));
        if (objectFlags & kSystemObjectFlags)
            continue;
        auto link = std::make_unique<TOrbMDBLinkedTable>();
        link->setName(text(row, Name));
        if (objectType == kLinkedOdbcTableType) {
            link->setKind(TOrbMDBLinkedTable::Kind::Odbc);
        } else {
            link->setKind(TOrbMDBLinkedTable::Kind::Access);
            link->setDatabase(text(row, Database));
        }
        link->setConnect(text(row, Connect));
        link->setTargetTable(text(row, ForeignName));
        file.addLinkedTable(std::move(link));
    }
}

/// The rows of a large table's later data pages, read by a second handle while the first one
/// reads the earlier pages.
struct BackHalf {
    std::uint32_t splitPage = 0; ///< the first data page of the back half
    std::uint64_t rowBound = 0;  ///< more rows than the file can hold (a damaged count may say more)
    TableStore rows;
    std::uint64_t lostLongValues = 0; ///< of the back half, set by the thread that reads it
    bool done = false;                ///< guarded by the hub's mutex
    bool ok = false;                  ///< guarded by the hub's mutex
};

/// A kept table as the catalog walk leaves it: complete but for its rows.
struct PlannedTable {
    unsigned catalogIndex = 0;
    std::string objectName; ///< the catalog entry's name, to find the same entry through another handle
    std::unique_ptr<TOrbMDBTable> table;
    std::uint64_t rows = 0;             ///< as the table definition says
    std::uint64_t cost = 0;             ///< estimated cells
    std::unique_ptr<BackHalf> backHalf; ///< set when a second handle reads the later pages
    std::string codePage;               ///< of Jet 3 text
    std::string name{};                 ///< the kept name, after the table has gone to the sink
    std::uint64_t rowsRead = 0;         ///< set once the rows are loaded
    std::uint64_t lostLongValues = 0;   ///< memo and OLE values that could not be read
};

/// Walks the catalog in order: reads "MSysRelationships", the linked tables of "MSysObjects" and
/// the saved queries into `file` and describes every kept table (columns, indexes, primary-key
/// marks, the values of complex columns, name). False when the sink cancelled.
bool walkCatalog(MdbHandle *mdb, TOrbMDBFile &file, LoadSink &sink, std::vector<PlannedTable> &plan,
                 const std::string &codePage)
{
    std::vector<StoredQueryRow> queryRows;
    const bool modernFormat = mdb->f->jet_version >= MDB_VER_ACCDB_2007;
    // A table that would be listed (a user table, or a hidden data table of a complex column)
    // whose definition cannot be read is missing from the file: say so.
    const auto lostDefinition = [&file, modernFormat](MdbCatalogEntry *entry) {
        const bool hiddenData =
            mdb_is_system_table(entry) && modernFormat && static_cast<unsigned>(entry->flags) == kHiddenDataTableFlags;
        if (mdb_is_user_table(entry) || hiddenData)
            file.addLoss(LossReport{LossReport::Kind::TableDefinition, entry->object_name, 0, 0});
    };
    ComplexValueReader complexValues(mdb, codePage);
    // The name given to the last kept table; a hidden data table without a primary-key
    // column takes it over (it is never reset between entries).
    std::string workingName;
    bool haveWorkingName = false;
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (!entry || entry->object_type != MDB_TABLE)
            continue;
        TableDefPtr tdef(mdb_read_table(entry));
        if (!tdef) {
            lostDefinition(entry);
            continue;
        }
        const bool user = mdb_is_user_table(entry);
        const bool hidden = !user && mdb_is_system_table(entry) && modernFormat &&
                            static_cast<unsigned>(entry->flags) == kHiddenDataTableFlags;
        if (!user && !hidden) {
            if (std::strcmp(entry->object_name, "MSysRelationships") == 0)
                readRelationships(file, tdef.get());
            else if (std::strcmp(entry->object_name, "MSysObjects") == 0)
                readLinkedTables(file, mdb, tdef.get(), codePage);
            else if (std::strcmp(entry->object_name, "MSysQueries") == 0)
                queryRows = readQueryRows(mdb, tdef.get(), codePage);
            continue;
        }
        ColumnLayout layout;
        if (!layout.read(tdef.get())) {
            lostDefinition(entry);
            continue;
        }
        if (sink.shouldCancel())
            return false;
        auto table = std::make_unique<TOrbMDBTable>();
        getColumnsFromMdbTableDef(*table, mdb, layout.stored(), layout.flags());
        getIndicesFromMdbTableDef(*table, mdb, tdef.get());
        table->setColumnPrimaryKey();
        std::uint64_t lostComplexValues = 0;
        if (user && complexValues.any())
            lostComplexValues = complexValues.attach(*table, layout.stored(), layout.flags(),
                                                     static_cast<std::uint32_t>(entry->table_pg));

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
        const std::uint64_t rows = tdef->num_rows > 0 ? static_cast<std::uint64_t>(tdef->num_rows) : 0;
        const std::uint64_t cost = rows * std::max<std::uint64_t>(1, table->columns().size());
        plan.push_back(PlannedTable{i, entry->object_name, std::move(table), rows, cost, nullptr, {}});
        plan.back().name = workingName;
        plan.back().lostLongValues = lostComplexValues;
    }
    addQueries(mdb, file, queryRows);
    return true;
}

/// The catalog entry of a planned table in `mdb`'s catalog; nullptr when it is not the same.
MdbCatalogEntry *plannedEntry(MdbHandle *mdb, const PlannedTable &planned)
{
    if (planned.catalogIndex >= mdb->num_catalog)
        return nullptr;
    auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, planned.catalogIndex));
    if (!entry || entry->object_type != MDB_TABLE || planned.objectName != entry->object_name)
        return nullptr;
    return entry;
}

/// The data page that splits a table's pages into two halves, or 0 when the table has too few
/// pages for that to help or libmdb cannot read its usage map.
std::uint32_t middleDataPage(MdbHandle *mdb, const PlannedTable &planned)
{
    constexpr std::size_t kMinPages = 2;
    constexpr std::size_t kMaxPages = 1u << 24; // more than any Access file holds
    MdbCatalogEntry *entry = plannedEntry(mdb, planned);
    if (!entry)
        return 0;
    TableDefPtr tdef(mdb_read_table(entry));
    if (!tdef || !tdef->usage_map || tdef->map_sz == 0)
        return 0;
    std::vector<std::uint32_t> pages;
    std::int32_t page = 0;
    while (pages.size() < kMaxPages) {
        const std::int32_t next = mdb_map_find_next(mdb, tdef->usage_map, static_cast<unsigned>(tdef->map_sz),
                                                    static_cast<std::uint32_t>(page));
        if (next <= page) // 0 at the end, negative for a map libmdb cannot read; pages only ascend
            break;
        pages.push_back(static_cast<std::uint32_t>(next));
        page = next;
    }
    return pages.size() >= kMinPages ? pages[pages.size() / 2] : 0;
}

/// Loads the rows of a planned table (the part of its pages `range` says) through `mdb` into
/// `store`, reading its definition again; false when the entry or its columns differ from what
/// the walk saw, or the ticker stopped the load.
bool loadPlannedRows(MdbHandle *mdb, PlannedTable &planned, TableStore &store, const PageRange &range,
                     const RowTicker &tick, std::uint64_t &lostLongValues)
{
    MdbCatalogEntry *entry = plannedEntry(mdb, planned);
    if (!entry)
        return false;
    TableDefPtr tdef(mdb_read_table(entry));
    if (!tdef)
        return false;
    ColumnLayout layout;
    if (!layout.read(tdef.get()))
        return false;
    const auto &columns = planned.table->columns();
    std::size_t n = 0;
    for (unsigned i = 0; i < layout.stored()->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(layout.stored(), i));
        if (!col)
            continue;
        if (n >= columns.size() || columns[n]->name() != col->name)
            return false;
        ++n;
    }
    if (n != columns.size())
        return false;
    return getRowsFromMdbTableDef(store, tdef.get(), mdb, layout.stored(), layout.flags(), planned.codePage, tick,
                                  lostLongValues, range);
}

/// The rows phase. Hands the planned tables to the workers (in catalog order for one worker,
/// biggest first for two) and carries what the workers report to the sink, on the thread that
/// owns the sink.
class RowLoadHub {
public:
    RowLoadHub(LoadSink &sink, std::vector<PlannedTable> &plan, bool biggestFirst) : m_sink(sink), m_plan(plan)
    {
        for (std::size_t i = 0; i < plan.size(); ++i)
            m_order.push_back(i);
        if (biggestFirst)
            std::stable_sort(m_order.begin(), m_order.end(),
                             [&](std::size_t a, std::size_t b) { return plan[a].cost > plan[b].cost; });
    }

    // Any thread.
    std::optional<std::size_t> nextTable()
    {
        const std::size_t i = m_next.fetch_add(1);
        if (i >= m_order.size())
            return std::nullopt;
        return m_order[i];
    }
    PlannedTable &planned(std::size_t position) { return m_plan[position]; }
    void tableStarted(std::size_t position)
    {
        std::lock_guard lock(m_mutex);
        m_started.push_back(position);
    }
    void tableFinished(std::size_t position)
    {
        std::lock_guard lock(m_mutex);
        m_finished.push_back(position);
        m_wake.notify_all();
    }
    void addRows(std::uint64_t rows) { m_rows.fetch_add(rows); }
    void fail()
    {
        m_failed = true;
        m_stop = true;
        m_wake.notify_all();
    }
    void stop() { m_stop = true; }
    bool stopped() const { return m_stop.load(); }
    bool failed() const { return m_failed.load(); }
    void workerDone()
    {
        std::lock_guard lock(m_mutex);
        ++m_workersDone;
        m_wake.notify_all();
    }
    /// The second handle finished (or gave up on) a table's back half.
    void backHalfDone(BackHalf &half, bool ok)
    {
        std::lock_guard lock(m_mutex);
        half.done = true;
        half.ok = ok;
        m_wake.notify_all();
    }

    // The owning thread only.
    /// Tells the sink that a table this thread is loading has grown.
    void tableGrowing(std::size_t position) { m_sink.tableGrowing(position, *m_plan[position].table); }
    /// Forwards started and finished tables and the row count to the sink and asks it whether
    /// to cancel; false when the load is to stop. The row count goes out at most every 20 ms
    /// unless `force`.
    bool deliver(bool force)
    {
        std::vector<std::size_t> started;
        std::vector<std::size_t> finished;
        {
            std::lock_guard lock(m_mutex);
            started.swap(m_started);
            finished.swap(m_finished);
        }
        for (const std::size_t position : started)
            m_sink.tableStarted(m_plan[position].table->name(), m_startedCount++, m_plan.size());
        const std::uint64_t rows = m_rows.load();
        const auto now = std::chrono::steady_clock::now();
        if (rows != m_reportedRows && (force || !finished.empty() || now - m_lastReport >= kRowsReportInterval)) {
            m_sink.rowsLoaded(rows);
            m_reportedRows = rows;
            m_lastReport = now;
        }
        for (const std::size_t position : finished)
            m_sink.tableLoaded(position, std::move(m_plan[position].table));
        if (m_sink.shouldCancel())
            m_stop = true;
        return !m_stop.load();
    }

    /// Keeps delivering until the second handle is done with a table's back half (read or
    /// given up); false when the load stopped meanwhile.
    bool waitForBackHalf(BackHalf &half)
    {
        for (;;) {
            if (!deliver(false))
                return false;
            std::unique_lock lock(m_mutex);
            if (half.done)
                return true;
            m_wake.wait_for(lock, kWaitSlice);
        }
    }

    /// Keeps delivering until `count` workers have reported done.
    void waitForWorkers(unsigned count)
    {
        for (;;) {
            deliver(false);
            std::unique_lock lock(m_mutex);
            if (m_workersDone >= count)
                return;
            m_wake.wait_for(lock, kWaitSlice);
        }
    }

private:
    LoadSink &m_sink;
    std::vector<PlannedTable> &m_plan;
    std::vector<std::size_t> m_order;
    std::atomic<std::size_t> m_next{0};
    std::atomic<std::uint64_t> m_rows{0};
    std::atomic<bool> m_stop{false};
    std::atomic<bool> m_failed{false};
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::vector<std::size_t> m_started;  ///< guarded by m_mutex
    std::vector<std::size_t> m_finished; ///< guarded by m_mutex
    unsigned m_workersDone = 0;          ///< guarded by m_mutex
    std::size_t m_startedCount = 0;
    std::uint64_t m_reportedRows = 0;
    std::chrono::steady_clock::time_point m_lastReport{};
};

/// Loads a table whose later pages the second handle reads: reads the earlier pages here,
/// waits for the later ones (reading them here after all when the second handle could not)
/// and joins the two in order. False when a half could not be read or the load stopped.
bool loadSplitTable(MdbHandle *mdb, RowLoadHub &hub, PlannedTable &planned, const RowTicker &tick)
{
    BackHalf &half = *planned.backHalf;
    TableStore &store = planned.table->mutableStore();
    // Room for every row up front, so that joining the halves moves no row starts.
    store.reserveRows(static_cast<std::size_t>(std::min(planned.rows, half.rowBound)));
    const PageRange front{PageRange::Part::Front, half.splitPage};
    if (!loadPlannedRows(mdb, planned, store, front, tick, planned.lostLongValues) || !hub.waitForBackHalf(half))
        return false;
    if (!half.ok) {
        half.rows = TableStore(planned.table->columns().size());
        const PageRange back{PageRange::Part::Back, half.splitPage};
        if (!loadPlannedRows(mdb, planned, half.rows, back, tick, planned.lostLongValues))
            return false;
    } else {
        planned.lostLongValues += half.lostLongValues;
    }
    const bool joined = store.appendStore(std::move(half.rows));
    planned.backHalf.reset();
    return joined;
}

/// Loads tables from the hub through one handle until none is left; false when a table could
/// not be loaded or the load stopped. The owner (the thread of the sink) passes progress on as
/// it goes; the other worker only counts rows and watches for a stop.
bool runWorker(MdbHandle *mdb, RowLoadHub &hub, bool owner)
{
    while (!hub.stopped()) {
        const auto position = hub.nextTable();
        if (!position)
            return true;
        hub.tableStarted(*position);
        if (owner && !hub.deliver(false))
            return false;
        const RowTicker tick = [&hub, owner, position](std::uint64_t rows) {
            hub.addRows(rows);
            if (!owner)
                return !hub.stopped();
            if (!hub.deliver(false))
                return false;
            hub.tableGrowing(*position);
            return true;
        };
        PlannedTable &planned = hub.planned(*position);
        const bool loaded = planned.backHalf ? loadSplitTable(mdb, hub, planned, tick)
                                             : loadPlannedRows(mdb, planned, planned.table->mutableStore(), PageRange{},
                                                               tick, planned.lostLongValues);
        if (!loaded) {
            hub.fail();
            return false;
        }
        planned.rowsRead = planned.table->store().rowCount();
        hub.tableFinished(*position);
        if (owner && !hub.deliver(false))
            return false;
    }
    return false;
}

/// Stops and joins the second worker on every way out.
class WorkerGuard {
public:
    WorkerGuard(RowLoadHub &hub, std::thread &thread) : m_hub(hub), m_thread(thread) {}
    WorkerGuard(const WorkerGuard &) = delete;
    WorkerGuard &operator=(const WorkerGuard &) = delete;
    ~WorkerGuard()
    {
        if (m_thread.joinable()) {
            m_hub.stop();
            m_thread.join();
        }
    }

private:
    RowLoadHub &m_hub;
    std::thread &m_thread;
};

/// The second handle's work when several tables are large: opens the file again and takes
/// tables from the hub as the owner does.
void loadSharedTables(RowLoadHub &hub, const DatabaseSource &source, const std::string &codePage, unsigned catalogSize)
{
    try {
        // A handle that cannot be opened the same way simply does not help.
        HandlePtr own = openHandle(source, codePage);
        if (own && CatalogReader(own.get()).read() && own->num_catalog == catalogSize)
            runWorker(own.get(), hub, false);
    } catch (...) {
        hub.fail();
    }
    hub.workerDone();
}

/// With one large table, the second handle reads the later half of its pages: picks the
/// largest table when it reaches `splitFromCells` and has pages to split, and prepares its
/// back half. nullptr when no table is split.
PlannedTable *planSplit(const std::string &path, MdbHandle *mdb, std::vector<PlannedTable> &plan,
                        const LoadOptions &options)
{
    if (plan.empty())
        return nullptr;
    const auto biggest =
        std::max_element(plan.begin(), plan.end(), [](const auto &a, const auto &b) { return a.cost < b.cost; });
    if (biggest->cost < options.splitFromCells)
        return nullptr;
    const std::uint32_t page = middleDataPage(mdb, *biggest);
    if (!page)
        return nullptr;
    auto half = std::make_unique<BackHalf>();
    half->splitPage = page;
    // A row takes a few bytes of its page at the least.
    std::error_code error;
    const std::uintmax_t bytes = std::filesystem::file_size(path, error);
    half->rowBound = error ? 0 : static_cast<std::uint64_t>(bytes / 4);
    half->rows = TableStore(biggest->table->columns().size());
    biggest->backHalf = std::move(half);
    return &*biggest;
}

/// The second handle's work on a split table: opens the file again and reads the back half,
/// then reports whether it could (the owner reads it itself when not).
void readBackHalf(RowLoadHub &hub, const DatabaseSource &source, unsigned catalogSize, PlannedTable &split)
{
    BackHalf &half = *split.backHalf;
    bool ok = false;
    try {
        HandlePtr own = openHandle(source, split.codePage);
        if (own && CatalogReader(own.get()).read() && own->num_catalog == catalogSize) {
            const RowTicker tick = [&hub](std::uint64_t rows) {
                hub.addRows(rows);
                return !hub.stopped();
            };
            ok = loadPlannedRows(own.get(), split, half.rows, PageRange{PageRange::Part::Back, half.splitPage}, tick,
                                 half.lostLongValues);
        }
    } catch (...) {
        ok = false;
    }
    hub.backHalfDone(half, ok);
    hub.workerDone();
}

/// Loads the rows of every planned table and hands the tables to the sink. A second handle
/// on a second thread helps when at least two tables are substantial.
bool loadRows(const DatabaseSource &source, MdbHandle *mdb, std::vector<PlannedTable> &plan, LoadSink &sink,
              const LoadOptions &options)
{
    const auto substantial = std::count_if(plan.begin(), plan.end(), [&](const PlannedTable &planned) {
        return planned.cost >= options.parallelFromCells;
    });
    const bool parallel = options.workers >= 2 && substantial >= 2;
    PlannedTable *split = parallel || options.workers < 2 ? nullptr : planSplit(source.path, mdb, plan, options);
    RowLoadHub hub(sink, plan, parallel);
    std::thread second;
    WorkerGuard guard(hub, second);
    const unsigned catalogSize = mdb->num_catalog;
    if (split)
        second = std::thread([&hub, source, catalogSize, split] { readBackHalf(hub, source, catalogSize, *split); });
    else if (parallel)
        second = std::thread([&hub, source, codePage = codePageOf(options), catalogSize] {
            loadSharedTables(hub, source, codePage, catalogSize);
        });
    const bool ownerDone = runWorker(mdb, hub, true);
    if (!ownerDone)
        hub.stop();
    if (parallel || split) {
        hub.waitForWorkers(1);
        second.join();
    }
    return ownerDone && !hub.failed() && hub.deliver(true);
}

/// Collects the tables of an in-process load and adds them to the file in catalog order.
class FileSink : public LoadSink {
public:
    explicit FileSink(LoadObserver *observer) : m_observer(observer) {}

    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override
    {
        if (m_observer)
            m_observer->tableStarted(name, index, count);
    }
    void rowsLoaded(std::uint64_t totalRows) override
    {
        if (m_observer)
            m_observer->rowsLoaded(totalRows);
    }
    bool shouldCancel() override { return m_observer && m_observer->shouldCancel(); }
    void catalogRead(std::size_t count, std::uint64_t expectedRows) override
    {
        m_tables.resize(count);
        if (m_observer)
            m_observer->rowsExpected(expectedRows);
    }
    void tableLoaded(std::size_t position, std::unique_ptr<TOrbMDBTable> table) override
    {
        if (position < m_tables.size())
            m_tables[position] = std::move(table);
    }

    /// Adds every table to the file; false when one never arrived.
    bool commit(TOrbMDBFile &file)
    {
        for (const auto &table : m_tables)
            if (!table)
                return false;
        for (auto &table : m_tables)
            file.addTable(std::move(table));
        return true;
    }

private:
    LoadObserver *m_observer;
    std::vector<std::unique_ptr<TOrbMDBTable>> m_tables;
};

} // namespace

bool isKnownCodePage(const std::string &codePage)
{
    iconv_t converter = iconv_open("UTF-8", codePage.c_str());
    if (converter == reinterpret_cast<iconv_t>(-1))
        return false;
    iconv_close(converter);
    return true;
}

bool loadDatabase(const std::string &path, TOrbMDBFile &relationships, LoadSink &sink, const LoadOptions &options,
                  OpenFailure *failure)
{
    try {
        // An encrypted file is decrypted into memory once; both handles read that image.
        DatabaseImage image = prepareDatabaseImage(path, options.password);
        if (image.failure != OpenFailure::None) {
            if (failure)
                *failure = image.failure;
            return false;
        }
        relationships.setDatabasePasswordSet(image.databasePasswordSet);
        const DatabaseSource source{path, std::move(image.bytes)};
        HandlePtr mdb = openHandle(source, codePageOf(options));
        if (!mdb)
            return false;
        std::vector<PlannedTable> plan;
        CatalogReader catalog(mdb.get());
        if (!catalog.read()) {
            relationships.addLoss(LossReport{LossReport::Kind::Catalog, {}, 0, 0});
        } else {
            if (catalog.entriesRead() < catalog.entriesStated())
                relationships.addLoss(
                    LossReport{LossReport::Kind::CatalogPart, {}, catalog.entriesRead(), catalog.entriesStated()});
            if (!walkCatalog(mdb.get(), relationships, sink, plan, codePageOf(options)))
                return false;
        }
        for (PlannedTable &planned : plan)
            planned.codePage = codePageOf(options);
        std::uint64_t expectedRows = 0;
        for (const PlannedTable &planned : plan)
            expectedRows += planned.rows;
        sink.catalogRead(plan.size(), expectedRows);
        if (!loadRows(source, mdb.get(), plan, sink, options))
            return false;
        for (const PlannedTable &planned : plan) {
            if (planned.rowsRead < planned.rows)
                relationships.addLoss(LossReport{LossReport::Kind::Rows, planned.name, planned.rowsRead, planned.rows});
            if (planned.lostLongValues)
                relationships.addLoss(
                    LossReport{LossReport::Kind::LongValues, planned.name, planned.lostLongValues, 0});
        }
        return true;
    } catch (const std::exception &) {
        return false; // out of memory, or no thread could be started
    }
}

bool loadFileInProcess(TOrbMDBFile &file, LoadObserver *observer, const LoadOptions &options)
{
    FileSink sink(observer);
    OpenFailure failure = OpenFailure::None;
    if (!loadDatabase(file.openPath(), file, sink, options, &failure)) {
        if (failure != OpenFailure::None)
            file.setOpenFailure(failure);
        return false;
    }
    return sink.commit(file);
}

} // namespace vellum
