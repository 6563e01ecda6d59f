#include "mdb/ComplexValueReader.h"

#include "mdb/FieldReader.h"
#include "model/TOrbMDBTable.h"
#include "model/attachmentData.h"
#include "model/mdbTypeNames.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

namespace vellum {
namespace {

constexpr std::uint32_t kPageMask = 0x00FFFFFFu; // an object id's page part
constexpr unsigned kMaxColumns = 4096;
constexpr std::size_t kMaxValueRows = 1u << 24; // far more than one file's hidden table holds
constexpr int kTypeLargeNumber = 0x13;

struct TableDefFree {
    void operator()(MdbTableDef *t) const { mdb_free_tabledef(t); }
};
using TableDefPtr = std::unique_ptr<MdbTableDef, TableDefFree>;

/// One column of a table read whole.
struct ReadColumn {
    std::string name;
    int type = 0;
    bool autoNumber = false;
};

/// A table read whole: its columns in stored order and every row in Vellum's text forms, OLE
/// fields as their stored bytes.
struct ReadTable {
    std::vector<ReadColumn> columns;
    TableStore rows;
    std::uint64_t lostLongValues = 0; ///< memo and OLE values of its rows that could not be read
};

bool equalNoCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
           });
}

std::optional<std::int64_t> integerOf(const CellValue &cell)
{
    if (!cell.isText())
        return std::nullopt;
    std::int64_t value = 0;
    const char *end = cell.text.data() + cell.text.size();
    const auto [last, error] = std::from_chars(cell.text.data(), end, value);
    if (error != std::errc() || last != end)
        return std::nullopt;
    return value;
}

/// Reads the columns of the table at `entry`, and its rows unless `columnsOnly`; nullopt when
/// the definition cannot be read or is implausible.
std::optional<ReadTable> readTable(MdbHandle *mdb, MdbCatalogEntry *entry, const std::string &codePage,
                                   bool columnsOnly)
{
    TableDefPtr tdef(mdb_read_table(entry));
    if (!tdef || tdef->num_cols > kMaxColumns || !mdb_read_columns(tdef.get()) || !tdef->columns)
        return std::nullopt;
    mdb_read_indices(tdef.get()); // the descriptor walk below expects the index read to follow
    std::vector<ColumnDescriptorFlags> flags;
    GPtrArray *stored = mdb_read_columns_without_sorting(tdef.get(), &flags);
    if (!stored)
        return std::nullopt;
    ReadTable table;
    std::vector<MdbColumn *> columns;
    std::vector<ColumnDescriptorFlags> columnFlags;
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        columns.push_back(col);
        columnFlags.push_back(i < flags.size() ? flags[i] : ColumnDescriptorFlags{});
        table.columns.push_back(ReadColumn{col->name, col->col_type, col->is_long_auto != 0});
    }
    g_ptr_array_free(stored, TRUE); // the array only: the columns belong to the definition
    table.rows = TableStore(columns.size());
    if (columnsOnly)
        return table;
    FieldReader reader(mdb, std::move(columns), columnFlags, codePage);
    reader.keepOleBytes();
    mdb_rewind_table(tdef.get());
    while (table.rows.rowCount() < kMaxValueRows && mdb_fetch_row(tdef.get())) {
        table.rows.beginRow();
        reader.appendRow(table.rows);
        table.rows.endRow();
    }
    table.lostLongValues = reader.lostLongValues();
    return table;
}

std::optional<std::size_t> columnNamed(const ReadTable &table, std::string_view name)
{
    for (std::size_t i = 0; i < table.columns.size(); ++i)
        if (equalNoCase(table.columns[i].name, name))
            return i;
    return std::nullopt;
}

/// The kind of complex column a template table describes, by its columns' types as Access
/// creates them: one value of a simple type (multi-value); file URL, name, type, data, time
/// stamp and flags (attachment); a memo and a date (version history). nullopt for any other.
std::optional<ComplexKind> kindOfTemplate(const ReadTable &typeTemplate)
{
    const auto &columns = typeTemplate.columns;
    if (columns.size() == 1) {
        switch (columns[0].type) {
        case MDB_BYTE:
        case MDB_INT:
        case MDB_LONGINT:
        case MDB_FLOAT:
        case MDB_DOUBLE:
        case MDB_REPID:
        case MDB_NUMERIC:
        case MDB_TEXT:
        case kTypeLargeNumber:
            return ComplexKind::MultiValue;
        default:
            break;
        }
    }
    const auto count = [&](int type) {
        return std::count_if(columns.begin(), columns.end(), [type](const ReadColumn &c) { return c.type == type; });
    };
    if (columns.size() >= 6 && count(MDB_MEMO) >= 1 && count(MDB_TEXT) >= 2 && count(MDB_OLE) >= 1 &&
        count(MDB_DATETIME) >= 1 && count(MDB_LONGINT) >= 1)
        return ComplexKind::Attachment;
    if (columns.size() >= 2 && count(MDB_MEMO) >= 1 && count(MDB_DATETIME) >= 1)
        return ComplexKind::VersionHistory;
    return std::nullopt;
}

/// "MM/DD/YYYY HH:MM:SS" as "YYYYMMDDHHMMSS", which sorts in time order; "" for another text.
std::string sortableDate(std::string_view date)
{
    if (date.size() != 19)
        return {};
    std::string key;
    key.append(date.substr(6, 4)).append(date.substr(0, 2)).append(date.substr(3, 2));
    key.append(date.substr(11, 2)).append(date.substr(14, 2)).append(date.substr(17, 2));
    return key;
}

/// Builds the values of one complex column from its hidden table and template.
std::unique_ptr<ComplexColumnValues> buildValues(ComplexKind kind, const ReadTable &flat, const ReadTable &typeTemplate)
{
    auto values = std::make_unique<ComplexColumnValues>(kind);
    // The hidden table holds the template's columns plus its own key and the referring id.
    std::vector<std::size_t> typeColumns;
    std::optional<std::size_t> key;
    std::optional<std::size_t> reference;
    for (std::size_t i = 0; i < flat.columns.size(); ++i) {
        const ReadColumn &column = flat.columns[i];
        if (columnNamed(typeTemplate, column.name))
            typeColumns.push_back(i);
        else if (column.autoNumber)
            key = i;
        else if (column.type == MDB_LONGINT)
            reference = i;
    }
    if (!key || !reference || typeColumns.empty())
        return values; // not the layout Access writes: no values

    std::optional<std::size_t> first;  // the value, the file name, or the memo text
    std::optional<std::size_t> second; // the file type, or the date of a version
    std::optional<std::size_t> data;   // the file data
    for (const std::size_t i : typeColumns) {
        const ReadColumn &column = flat.columns[i];
        switch (kind) {
        case ComplexKind::MultiValue:
            if (!first)
                first = i;
            break;
        case ComplexKind::Attachment:
            if (column.type == MDB_OLE)
                data = i;
            else if (column.type == MDB_TEXT) {
                if (equalNoCase(column.name, "FileName"))
                    first = i;
                else if (equalNoCase(column.name, "FileType"))
                    second = i;
            }
            break;
        case ComplexKind::VersionHistory:
            if (column.type == MDB_MEMO && !first)
                first = i;
            else if (column.type == MDB_DATETIME && !second)
                second = i;
            break;
        }
    }
    if (kind == ComplexKind::Attachment) {
        // Text columns not named as Access names them are the name and then the type.
        for (const std::size_t i : typeColumns)
            if (flat.columns[i].type == MDB_TEXT && i != first && i != second) {
                if (!first)
                    first = i;
                else if (!second)
                    second = i;
            }
        if (!data)
            return values;
    }
    if (!first || (kind == ComplexKind::VersionHistory && !second))
        return values;
    if (kind == ComplexKind::MultiValue)
        values->setValueType(mdb_get_colbacktype_string_fromMdbType(flat.columns[*first].type));

    struct PendingVersion {
        std::string sortKey;
        std::int64_t key;
        std::string value;
        std::string date;
    };
    std::unordered_map<std::int64_t, std::vector<PendingVersion>> versions;
    std::vector<CellValue> cells;
    for (std::size_t r = 0; r < flat.rows.rowCount(); ++r) {
        flat.rows.rowCells(r, cells);
        const auto id = integerOf(cells[*reference]);
        if (!id)
            continue;
        const auto text = [&cells](std::optional<std::size_t> column) {
            return column && cells[*column].isText() ? std::string(cells[*column].text) : std::string();
        };
        switch (kind) {
        case ComplexKind::MultiValue:
            values->valuesFor(*id).addValue(text(first));
            break;
        case ComplexKind::Attachment: {
            const CellValue &stored = cells[*data];
            std::vector<std::uint8_t> content;
            if (stored.isText()) {
                auto decoded = decodeAttachmentData(std::span<const std::uint8_t>(
                    reinterpret_cast<const std::uint8_t *>(stored.text.data()), stored.text.size()));
                if (!decoded)
                    continue; // damaged data: the file is left out
                content = std::move(*decoded);
            }
            values->valuesFor(*id).addAttachment(text(first), text(second), std::move(content));
            break;
        }
        case ComplexKind::VersionHistory: {
            std::string date = text(second);
            versions[*id].push_back(
                {sortableDate(date), integerOf(cells[*key]).value_or(0), text(first), std::move(date)});
            break;
        }
        }
    }
    for (auto &[id, list] : versions) {
        // Newest first; versions of the same moment by their key, the later one first.
        std::stable_sort(list.begin(), list.end(), [](const PendingVersion &a, const PendingVersion &b) {
            return a.sortKey != b.sortKey ? a.sortKey > b.sortKey : a.key > b.key;
        });
        TOrbComplexValue &value = values->valuesFor(id);
        for (PendingVersion &version : list)
            value.addVersion(std::move(version.value), std::move(version.date));
    }
    return values;
}

} // namespace

ComplexValueReader::ComplexValueReader(MdbHandle *mdb, std::string codePage)
    : m_mdb(mdb), m_codePage(std::move(codePage))
{
    if (mdb->f->jet_version < MDB_VER_ACCDB_2007)
        return; // complex columns came with Access 2007
    MdbCatalogEntry *catalog = nullptr;
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
        if (!entry || entry->object_type != MDB_TABLE)
            continue;
        m_entries.emplace(static_cast<std::uint32_t>(entry->table_pg & kPageMask), entry);
        if (std::strcmp(entry->object_name, "MSysComplexColumns") == 0)
            catalog = entry;
    }
    if (!catalog)
        return;
    const auto table = readTable(mdb, catalog, m_codePage, false);
    if (!table)
        return;
    const auto id = columnNamed(*table, "ComplexID");
    const auto owner = columnNamed(*table, "ConceptualTableID");
    const auto flat = columnNamed(*table, "FlatTableID");
    const auto typeTemplate = columnNamed(*table, "ComplexTypeObjectID");
    if (!id || !owner || !flat || !typeTemplate)
        return;
    std::vector<CellValue> cells;
    for (std::size_t r = 0; r < table->rows.rowCount(); ++r) {
        table->rows.rowCells(r, cells);
        const auto complexId = integerOf(cells[*id]);
        const auto ownerId = integerOf(cells[*owner]);
        const auto flatId = integerOf(cells[*flat]);
        const auto templateId = integerOf(cells[*typeTemplate]);
        if (!complexId || !ownerId || !flatId || !templateId)
            continue;
        m_columns[static_cast<std::int32_t>(*complexId)] = ColumnInfo{
            static_cast<std::uint32_t>(*ownerId) & kPageMask, static_cast<std::uint32_t>(*flatId) & kPageMask,
            static_cast<std::uint32_t>(*templateId) & kPageMask};
    }
}

MdbCatalogEntry *ComplexValueReader::entryAt(std::uint32_t page) const
{
    const auto it = m_entries.find(page);
    return it == m_entries.end() ? nullptr : it->second;
}

std::uint64_t ComplexValueReader::attach(TOrbMDBTable &table, GPtrArray *stored,
                                         const std::vector<ColumnDescriptorFlags> &flags, std::uint32_t tablePage)
{
    std::uint64_t lost = 0;
    if (m_columns.empty())
        return lost;
    std::size_t position = 0;
    for (unsigned i = 0; i < stored->len; ++i) {
        auto *col = static_cast<MdbColumn *>(g_ptr_array_index(stored, i));
        if (!col)
            continue;
        const std::size_t here = position++;
        if (col->col_type != MDB_COMPLEX || i >= flags.size())
            continue;
        const auto info = m_columns.find(flags[i].complexId);
        if (info == m_columns.end() || info->second.tablePage != (tablePage & kPageMask))
            continue;
        MdbCatalogEntry *templateEntry = entryAt(info->second.typeTemplate);
        const auto typeTemplate = templateEntry ? readTable(m_mdb, templateEntry, m_codePage, true) : std::nullopt;
        const auto kind = typeTemplate ? kindOfTemplate(*typeTemplate) : std::nullopt;
        if (!kind)
            continue; // a kind Vellum does not know: the cell shows its id
        MdbCatalogEntry *flatEntry = entryAt(info->second.flatTable);
        const auto flat = flatEntry ? readTable(m_mdb, flatEntry, m_codePage, false) : std::nullopt;
        // A value table that cannot be read loses the column's values; one whose long values
        // cannot be read loses those.
        lost += flat ? flat->lostLongValues : 1;
        table.setComplexValues(here, flat ? buildValues(*kind, *flat, *typeTemplate)
                                          : std::make_unique<ComplexColumnValues>(*kind));
    }
    return lost;
}

} // namespace vellum
