#include "sql/DBSocketBase.h"

#include "sql/SQLEncoding.h"

namespace vellum {

int DBSocketBase::runQueryStr(std::string_view query)
{
    if (m_ourEncoding == 4) // UTF-8: the text's own bytes
        return runQuery(query.data(), query.size());
    const std::string bytes = SQLEncoding::bytesFromText(query, m_ourEncoding);
    return runQuery(bytes.data(), bytes.size());
}

std::unique_ptr<SQLiteDBResult> DBSocketBase::grabPendingDbResult()
{
    return std::move(m_lastResult);
}

} // namespace vellum
