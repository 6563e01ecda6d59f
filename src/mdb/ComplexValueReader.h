#pragma once

#include "mdb/mdbColumnsUnsorted.h"
#include "mdb/mdbtoolsInclude.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// Reads the values of complex columns (attachments, multi-value lists, version histories of
/// Access 2007 and later files). A complex column's descriptor holds an id; the row for that id
/// in "MSysComplexColumns" names a template table (whose columns tell the kind) and a hidden
/// value table, whose rows carry the value columns of the template, a primary key and a Long
/// Integer referring to the id a cell of the column stores. Everything read is bounded: a table
/// that cannot be read gives its column no values, never a failed load.
class ComplexValueReader {
public:
    /// Reads "MSysComplexColumns" through `mdb` (whose catalog is read); nothing when the file
    /// has none. `codePage` as for the rows of Jet 3 files (unused by the formats that have
    /// complex columns, passed for the reader of their rows).
    ComplexValueReader(MdbHandle *mdb, std::string codePage);

    /// True when the file describes any complex column.
    bool any() const { return !m_columns.empty(); }

    /// Gives every complex column of `table` (columns in stored order, as `stored` and `flags`
    /// list them, null entries skipped) the values of its hidden table. `tablePage` is the page
    /// of the table's definition. Reads other tables through the handle: call it while no
    /// table of the handle is being read row by row.
    /// Answers how many values could not be read (for the table's loss report).
    [[nodiscard]] std::uint64_t attach(TOrbMDBTable &table, GPtrArray *stored,
                                       const std::vector<ColumnDescriptorFlags> &flags, std::uint32_t tablePage);

private:
    struct ColumnInfo {
        std::uint32_t tablePage = 0;    ///< the table the column belongs to
        std::uint32_t flatTable = 0;    ///< page of the hidden value table
        std::uint32_t typeTemplate = 0; ///< page of the template table
    };

    MdbCatalogEntry *entryAt(std::uint32_t page) const;

    MdbHandle *m_mdb;
    std::string m_codePage;
    std::unordered_map<std::int32_t, ColumnInfo> m_columns;         ///< by complex id
    std::unordered_map<std::uint32_t, MdbCatalogEntry *> m_entries; ///< tables by definition page
};

} // namespace vellum
