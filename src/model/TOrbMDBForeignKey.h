#pragma once

#include "model/TOrbMDBObject.h"

#include <string>
#include <vector>

namespace vellum {

class TOrbMDBFile;

/// One relationship between two tables of a file: the referencing table and columns, the
/// referenced table and columns (position by position), and the cascade rules.
class TOrbMDBForeignKey : public TOrbMDBObject {
public:
    TOrbMDBFile *file() const { return m_file; }
    void setFile(TOrbMDBFile *file) { m_file = file; }
    const std::string &referencingTable() const { return m_referencingTable; }
    void setReferencingTable(std::string v) { m_referencingTable = std::move(v); }
    const std::vector<std::string> &referencingColumns() const { return m_referencingColumns; }
    void setReferencingColumns(std::vector<std::string> v) { m_referencingColumns = std::move(v); }
    const std::string &referencedTable() const { return m_referencedTable; }
    void setReferencedTable(std::string v) { m_referencedTable = std::move(v); }
    const std::vector<std::string> &referencedColumns() const { return m_referencedColumns; }
    void setReferencedColumns(std::vector<std::string> v) { m_referencedColumns = std::move(v); }
    bool onUpdateCascade() const { return m_onUpdateCascade; }
    void setOnUpdateCascade(bool v) { m_onUpdateCascade = v; }
    bool onDeleteCascade() const { return m_onDeleteCascade; }
    void setOnDeleteCascade(bool v) { m_onDeleteCascade = v; }
    /// Access enforces referential integrity (the stored flag 0x2 is clear); a relationship that
    /// is not enforced only documents a join and its rows may break it.
    bool enforced() const { return m_enforced; }
    void setEnforced(bool v) { m_enforced = v; }
    /// Deleting a referenced row sets the referencing columns to NULL (Access 2010 and later).
    bool onDeleteSetNull() const { return m_onDeleteSetNull; }
    void setOnDeleteSetNull(bool v) { m_onDeleteSetNull = v; }

    void addReferencingColumn(std::string column) { m_referencingColumns.push_back(std::move(column)); }
    void addReferencedColumn(std::string column) { m_referencedColumns.push_back(std::move(column)); }

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    TOrbMDBFile *m_file = nullptr;
    std::string m_referencingTable;
    std::vector<std::string> m_referencingColumns;
    std::string m_referencedTable;
    std::vector<std::string> m_referencedColumns;
    bool m_onUpdateCascade = false;
    bool m_onDeleteCascade = false;
    bool m_enforced = true;
    bool m_onDeleteSetNull = false;
};

} // namespace vellum
