#include "model/TOrbMDBLinkedTable.h"

namespace vellum {

const char *TOrbMDBLinkedTable::kindName(Kind kind)
{
    return kind == Kind::Odbc ? "ODBC" : "ACCESS";
}

void TOrbMDBLinkedTable::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    labels = {"Name", "Link", "Database", "Table", "Connect"};
    values = {m_name, std::string(kindName(m_kind)), m_database, m_targetTable, m_connect};
}

} // namespace vellum
