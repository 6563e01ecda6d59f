#pragma once

#include "sql/SQLEscapeMethods.h"

namespace vellum {

/// SQLite's escaping: every single quote is written twice, nothing else changes. A SQLite
/// database is its own schema, and neither a database nor a schema can be switched by a query.
class SQLiteEscapeMethods : public SQLEscapeMethods {
public:
    /// Copies the bytes with every "'" doubled and a terminating zero byte; answers the output
    /// length without that zero.
    std::size_t EscCStr(const char *bytes, std::size_t length, char *to) override;
    using SQLEscapeMethods::EscCStr;

    bool isDatabaseEquivalentToSqlSchema() const override { return true; }
    std::optional<std::string> getQueryToSwitchDB(const std::string &database) const override;
    /// The same answer as `getQueryToSwitchDB`.
    std::optional<std::string> getQueryToSwitchSqlSchema(const std::string &schema) const override;
};

} // namespace vellum
