#include "sql/SQLiteEscapeMethods.h"

namespace vellum {

std::size_t SQLiteEscapeMethods::EscCStr(const char *bytes, std::size_t length, char *to)
{
    std::size_t out = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (bytes[i] == '\'')
            to[out++] = '\'';
        to[out++] = bytes[i];
    }
    to[out] = '\0';
    return out;
}

std::optional<std::string> SQLiteEscapeMethods::getQueryToSwitchDB(const std::string &) const
{
    return std::nullopt;
}

std::optional<std::string> SQLiteEscapeMethods::getQueryToSwitchSqlSchema(const std::string &schema) const
{
    return getQueryToSwitchDB(schema);
}

} // namespace vellum
