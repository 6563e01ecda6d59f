#include "model/TOrbMDBQuery.h"

namespace vellum {

const char *TOrbMDBQuery::typeName(Type type)
{
    switch (type) {
    case Type::Select:
        return "SELECT";
    case Type::MakeTable:
        return "MAKE_TABLE";
    case Type::Append:
        return "APPEND";
    case Type::Update:
        return "UPDATE";
    case Type::Delete:
        return "DELETE";
    case Type::CrossTab:
        return "CROSS_TAB";
    case Type::DataDefinition:
        return "DATA_DEFINITION";
    case Type::PassThrough:
        return "PASSTHROUGH";
    case Type::Union:
        return "UNION";
    case Type::Unknown:
        break;
    }
    return "UNKNOWN";
}

void TOrbMDBQuery::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    labels = {"Name", "Type", "SQL"};
    values = {m_name, std::string(typeName(m_type)), m_sql};
}

} // namespace vellum
