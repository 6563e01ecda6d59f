#pragma once

#include "sql/SQLiteDBResult.h"
#include "sql/sqliteLibrary.h"

namespace vellum {

class DynamicSQLiteAPISocket;

/// The result of one query through the run-time loaded library: owns the prepared statement,
/// which has been stepped once, and hands its rows out on request. The statement is finalized
/// when the result is invalidated or destroyed.
class DynamicSQLiteDBResult : public SQLiteDBResult {
public:
    /// Takes the statement and the status of its first step.
    DynamicSQLiteDBResult(sqlite3_stmt *statement, DynamicSQLiteAPISocket *socket, int status);
    ~DynamicSQLiteDBResult() override;

    /// Appends up to `maxCount` rows (0: all remaining) to `rows`, copying every cell; answers
    /// how many rows this call added (0 once all rows are read).
    std::uint64_t fetchRows(SQLRowTable &rows, std::uint64_t maxCount) override;
    bool hasTableBody() const override { return m_APIStatement && selectStatement; }
    /// 0 for a statement that returns columns, else the rows the statement changed.
    std::int64_t getAffectedRows() const override;
    std::uint64_t getInsertId() const override;
    void invalidateThisResult() override;

    sqlite3_stmt *APIStatement() const { return m_APIStatement; }

private:
    sqlite3 *databaseHandle() const;

    sqlite3_stmt *m_APIStatement;
};

} // namespace vellum
