#pragma once

#include "sql/SQLContext.h"
#include "sql/SQLiteDBResult.h"

#include <memory>

namespace vellum {

/// A query's result as the caller of `SQLConnection::queryString` sees it: wraps the socket's
/// result (and owns it) and forwards the row questions to it.
class SQLResult {
public:
    SQLResult(std::unique_ptr<SQLiteDBResult> result, ServerType serverType);

    /// Rows handed out so far.
    std::uint64_t numOfRows() const { return m_result->numberOfFetchedRows(); }
    int numOfFields() const { return m_result->numberOfColumns(); }
    bool fetchIsOver() const { return m_result->fetchIsOver(); }
    /// Appends up to `maxCount` rows (0: all remaining); answers how many were added.
    std::uint64_t fetchRows(SQLRowTable &rows, std::uint64_t maxCount) { return m_result->fetchRows(rows, maxCount); }
    bool hasTableBody() const { return m_result->hasTableBody(); }
    std::int64_t getAffectedRows() const { return m_result->getAffectedRows(); }
    std::uint64_t getInsertId() const { return m_result->getInsertId(); }
    std::string getErrorMessage() const { return m_result->getErrorMessage(); }
    ServerType serverType() const { return m_serverType; }

private:
    std::unique_ptr<SQLiteDBResult> m_result;
    ServerType m_serverType;
};

} // namespace vellum
