#pragma once

#include <cstdint>
#include <string>

namespace vellum {

class SQLiteDBResult;

/// What is kept of a query's result after the result itself is gone: its error text, insert
/// id, affected rows, warning count and query information.
struct BasicResultInfo {
    std::string errorMessage;
    std::uint64_t insertId = 0;
    std::int64_t affectedRows = 0;
    std::uint32_t warningCount = 0;
    std::string queryInfo;

    /// A copy of a result's information.
    static BasicResultInfo initWithSomeResultInfo(const SQLiteDBResult &result);

    bool hasABadState() const { return !errorMessage.empty(); }
};

} // namespace vellum
