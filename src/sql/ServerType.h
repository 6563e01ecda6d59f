#pragma once

#include <cstdint>
#include <optional>

namespace vellum {

/// The kind of database server a SQL context talks to, and the SQL dialect of a script export.
/// The numbers are stable: stored settings and the dialect menu's tags carry them.
enum class ServerType : std::int32_t {
    ServerTypeNone = 0, ///< not set: a fresh connection before a type is given
    ServerTypeMySQL = 1,
    ServerTypePostgreSQL = 2,
    ServerTypeOracle = 3,
    ServerTypeSQLite = 4,
    ServerTypeSQLServer = 5,
};

// The enumerators go by their full names (ServerTypeMySQL …) without the type prefix; they stay
// typed, so a bare number never passes for a dialect.
using enum ServerType;

/// The server type of a stored number (0 … 5); nullopt for any other number.
inline std::optional<ServerType> serverTypeFromValue(std::int64_t value)
{
    if (value < static_cast<std::int64_t>(ServerTypeNone) || value > static_cast<std::int64_t>(ServerTypeSQLServer))
        return std::nullopt;
    return static_cast<ServerType>(value);
}

/// The stored number of a server type.
constexpr std::int32_t serverTypeValue(ServerType type)
{
    return static_cast<std::int32_t>(type);
}

} // namespace vellum
