#pragma once

#include "model/CellValue.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBObject.h"
#include "model/TableStore.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellum {

class TOrbMDBFile;
class TOrbMDBForeignKey;
class TOrbMDBTable;

/// A row of a loaded table, seen through its table: the value for a column name, or none when
/// the table has no such column.
class TOrbMDBRow {
public:
    TOrbMDBRow(const TOrbMDBTable *table, std::size_t index) : m_table(table), m_index(index) {}
    std::optional<CellValue> value(std::string_view columnName) const;
    /// The cell at a column position (stored column order).
    CellValue cell(std::size_t column) const;
    std::size_t index() const { return m_index; }

private:
    const TOrbMDBTable *m_table;
    std::size_t m_index;
};

/// One table of an opened database, entirely in memory: its columns in stored order, all rows
/// in storage order, and its indexes sorted by name. Read-only once loaded.
class TOrbMDBTable : public TOrbMDBObject {
public:
    TOrbMDBFile *file() const { return m_file; }
    void setFile(TOrbMDBFile *file) { m_file = file; }

    const std::vector<std::unique_ptr<TOrbMDBColumn>> &columns() const { return m_columns; }
    /// Appends a column (taking ownership) and sets its table.
    TOrbMDBColumn *addColumn(std::unique_ptr<TOrbMDBColumn> column);
    /// Position of the first column of that exact name.
    std::optional<std::size_t> columnIndex(std::string_view name) const;
    TOrbMDBColumn *columnNamed(std::string_view name) const;

    std::size_t rowCount() const { return m_store.rowCount(); }
    TOrbMDBRow row(std::size_t index) const { return TOrbMDBRow(this, index); }
    /// The cell at a row and column; a complex column's cell also points at its values.
    CellValue cell(std::size_t row, std::size_t column) const
    {
        CellValue value = m_store.cell(row, column);
        if (!m_complex.empty())
            attachComplex(value, column);
        return value;
    }
    /// Every cell of a row at once, one per column, into a reused vector: what writers going
    /// over whole rows use.
    void rowCells(std::size_t row, std::vector<CellValue> &out) const
    {
        m_store.rowCells(row, out);
        out.resize(m_columns.size());
        for (const auto &[column, values] : m_complex)
            if (column < out.size())
                attachComplex(out[column], column);
    }
    const TableStore &store() const { return m_store; }
    /// Row storage, for the loaders; sized for the current columns when first asked.
    TableStore &mutableStore();

    const std::vector<std::unique_ptr<TOrbMDBIndex>> &indices() const { return m_indices; }
    TOrbMDBIndex *addIndex(std::unique_ptr<TOrbMDBIndex> index);
    /// Sorts the indexes by name.
    void sortIndices();
    /// Marks every column named by a key of a primary-key index; never clears a mark.
    void setColumnPrimaryKey();

    /// Gives the column at a position the values of its complex cells (replacing any before).
    void setComplexValues(std::size_t column, std::unique_ptr<ComplexColumnValues> values);
    /// The complex values of the column at a position; nullptr for every other column.
    const ComplexColumnValues *complexValues(std::size_t column) const;
    /// The same, to complete while the table is received; nullptr for every other column.
    ComplexColumnValues *mutableComplexValues(std::size_t column);
    /// Positions and values of every complex column that has them, by position.
    const std::vector<std::pair<std::size_t, std::unique_ptr<ComplexColumnValues>>> &complexColumns() const
    {
        return m_complex;
    }

    /// YES when the first column of that name has the type "OLE".
    bool isOLEColumn(std::string_view name) const;
    /// The relationships whose referencing table is this one; nullopt when the file has none.
    std::optional<std::vector<const TOrbMDBForeignKey *>> foreignKeys() const;

    /// Empties columns, rows and indexes.
    void close();

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    /// Points a complex column's Text cell (its stored id) at the values of that id.
    void attachComplex(CellValue &value, std::size_t column) const;

    TOrbMDBFile *m_file = nullptr;
    std::vector<std::unique_ptr<TOrbMDBColumn>> m_columns;
    std::unordered_map<std::string, std::size_t> m_columnIndex;
    TableStore m_store;
    bool m_storeSized = false;
    std::vector<std::unique_ptr<TOrbMDBIndex>> m_indices;
    std::vector<std::pair<std::size_t, std::unique_ptr<ComplexColumnValues>>> m_complex; ///< by position
};

} // namespace vellum
