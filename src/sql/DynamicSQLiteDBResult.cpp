#include "sql/DynamicSQLiteDBResult.h"

#include "sql/DynamicSQLiteAPISocket.h"

#include <limits>

namespace vellum {

DynamicSQLiteDBResult::DynamicSQLiteDBResult(sqlite3_stmt *statement, DynamicSQLiteAPISocket *socket, int status)
    : SQLiteDBResult(socket, status), m_APIStatement(statement)
{
    m_numFields = m_APIStatement ? sqliteAPI().sqlite3_column_count(m_APIStatement) : 0;
    selectStatement = m_numFields != 0;
}

DynamicSQLiteDBResult::~DynamicSQLiteDBResult()
{
    if (m_APIStatement)
        sqliteAPI().sqlite3_finalize(m_APIStatement);
    if (m_sqliteSocket)
        m_sqliteSocket->forgetResult(this);
}

std::uint64_t DynamicSQLiteDBResult::fetchRows(SQLRowTable &rows, std::uint64_t maxCount)
{
    if (!m_APIStatement || !selectStatement || resultFetched)
        return 0;
    constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();
    std::uint64_t limit = kNoLimit;
    if (maxCount != 0 && maxCount < kNoLimit - m_nTuplesFetched)
        limit = m_nTuplesFetched + maxCount;

    const SQLiteAPI &api = sqliteAPI();
    std::uint64_t count = m_nTuplesFetched;
    while (count < limit) {
        if (initStatus != kSQLiteRow) {
            resultFetched = true;
            break;
        }
        SQLRow row(static_cast<std::size_t>(m_numFields));
        for (int column = 0; column < m_numFields; ++column) {
            const int type = api.sqlite3_column_type(m_APIStatement, column);
            const void *bytes = nullptr;
            if (type == kSQLiteBlob)
                bytes = api.sqlite3_column_blob(m_APIStatement, column);
            else if (type != kSQLiteNull)
                bytes = api.sqlite3_column_text(m_APIStatement, column);
            if (bytes) {
                const int length = api.sqlite3_column_bytes(m_APIStatement, column);
                row[static_cast<std::size_t>(column)].emplace(static_cast<const char *>(bytes),
                                                              static_cast<std::size_t>(length));
            }
        }
        rows.push_back(std::move(row));
        initStatus = api.sqlite3_step(m_APIStatement);
        ++count;
    }
    const std::uint64_t added = count - m_nTuplesFetched;
    m_nTuplesFetched = count;
    return added;
}

sqlite3 *DynamicSQLiteDBResult::databaseHandle() const
{
    return m_sqliteSocket ? m_sqliteSocket->dbHandler() : nullptr;
}

std::int64_t DynamicSQLiteDBResult::getAffectedRows() const
{
    if (m_numFields != 0)
        return 0;
    sqlite3 *db = databaseHandle();
    return db ? sqliteAPI().sqlite3_changes(db) : 0;
}

std::uint64_t DynamicSQLiteDBResult::getInsertId() const
{
    sqlite3 *db = databaseHandle();
    return db ? static_cast<std::uint64_t>(sqliteAPI().sqlite3_last_insert_rowid(db)) : 0;
}

void DynamicSQLiteDBResult::invalidateThisResult()
{
    if (m_APIStatement)
        sqliteAPI().sqlite3_finalize(m_APIStatement);
    m_APIStatement = nullptr;
    m_numFields = 0;
}

} // namespace vellum
