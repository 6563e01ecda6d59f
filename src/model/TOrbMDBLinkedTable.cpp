#include "model/TOrbMDBLinkedTable.h"

namespace vellum {

const char *TOrbMDBLinkedTable::kindName(Kind kind)
{
    return kind == Kind::Odbc ? "ODBC" : "ACCESS";
}

std::string TOrbMDBLinkedTable::targetDescription() const
{
    if (m_kind == Kind::Odbc)
        return "ODBC " + m_targetTable;
    return m_database + " : " + m_targetTable;
}

void TOrbMDBLinkedTable::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    // The target database only for links to Access files, the connect text only where one is
    // stored: a row with nothing to say is left out.
    labels = {"Name", "Link"};
    values = {m_name, std::string(kindName(m_kind))};
    if (m_kind == Kind::Access) {
        labels.emplace_back("Database");
        values.emplace_back(m_database);
    }
    labels.emplace_back("Table");
    values.emplace_back(m_targetTable);
    if (!m_connect.empty()) {
        labels.emplace_back("Connect");
        values.emplace_back(m_connect);
    }
}

} // namespace vellum
