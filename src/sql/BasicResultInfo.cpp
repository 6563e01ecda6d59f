#include "sql/BasicResultInfo.h"

#include "sql/SQLiteDBResult.h"

namespace vellum {

BasicResultInfo BasicResultInfo::initWithSomeResultInfo(const SQLiteDBResult &result)
{
    BasicResultInfo info;
    info.errorMessage = result.getErrorMessage();
    info.insertId = result.getInsertId();
    info.affectedRows = result.getAffectedRows();
    return info;
}

} // namespace vellum
