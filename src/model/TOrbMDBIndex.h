#pragma once

#include "model/TOrbMDBObject.h"

#include <string>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// One key of an index: the column's name and its direction.
struct IndexKey {
    std::string name;
    bool ascending = true;
};

/// One index of a loaded table: its keys in order, primary-key, unique and foreign-key flags.
class TOrbMDBIndex : public TOrbMDBObject {
public:
    TOrbMDBTable *table() const { return m_table; }
    void setTable(TOrbMDBTable *table) { m_table = table; }
    const std::vector<IndexKey> &keys() const { return m_keys; }
    void setKeys(std::vector<IndexKey> keys) { m_keys = std::move(keys); }
    bool isAscending() const { return m_isAscending; }
    void setIsAscending(bool v) { m_isAscending = v; }
    bool isPrimaryKey() const { return m_isPrimaryKey; }
    void setIsPrimaryKey(bool v) { m_isPrimaryKey = v; }
    bool isUnique() const { return m_isUnique; }
    void setIsUnique(bool v) { m_isUnique = v; }
    /// True for the index Access keeps for a relationship, on either of its tables.
    bool isForeignKey() const { return m_isForeignKey; }
    void setIsForeignKey(bool v) { m_isForeignKey = v; }

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    TOrbMDBTable *m_table = nullptr;
    std::vector<IndexKey> m_keys;
    bool m_isAscending = false;
    bool m_isPrimaryKey = false;
    bool m_isUnique = false;
    bool m_isForeignKey = false;
};

} // namespace vellum
