#pragma once

#include "model/TOrbMDBObject.h"

#include <string>

namespace vellum {

class TOrbMDBFile;

/// A saved query of the database: its name, its kind and its SQL text as rebuilt from the
/// stored query definition. Reading a query never runs it.
class TOrbMDBQuery : public TOrbMDBObject {
public:
    enum class Type : unsigned char {
        Select,
        MakeTable,
        Append,
        Update,
        Delete,
        CrossTab,
        DataDefinition,
        PassThrough,
        Union,
        Unknown,
    };

    TOrbMDBFile *file() const { return m_file; }
    void setFile(TOrbMDBFile *file) { m_file = file; }
    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    const std::string &sql() const { return m_sql; }
    void setSql(std::string sql) { m_sql = std::move(sql); }
    /// Access's own queries behind forms, reports and controls ("~sq_" names).
    bool isHidden() const { return m_name.rfind("~sq_", 0) == 0; }

    /// "SELECT", "MAKE_TABLE", "APPEND", "UPDATE", "DELETE", "CROSS_TAB", "DATA_DEFINITION",
    /// "PASSTHROUGH", "UNION" or "UNKNOWN".
    static const char *typeName(Type type);

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    TOrbMDBFile *m_file = nullptr;
    Type m_type = Type::Unknown;
    std::string m_sql;
};

} // namespace vellum
