#include "sql/SQLResult.h"

namespace vellum {

SQLResult::SQLResult(std::unique_ptr<SQLiteDBResult> result, ServerType serverType)
    : m_result(std::move(result)), m_serverType(serverType)
{
}

} // namespace vellum
