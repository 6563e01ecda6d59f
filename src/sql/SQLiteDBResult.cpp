#include "sql/SQLiteDBResult.h"

#include "sql/SQLiteAPISocket.h"

namespace vellum {

SQLiteDBResult::SQLiteDBResult(SQLiteAPISocket *socket, int status) : m_sqliteSocket(socket), initStatus(status) {}

std::string SQLiteDBResult::getErrorMessage() const
{
    return m_sqliteSocket ? m_sqliteSocket->getLastErrorMessage() : std::string();
}

} // namespace vellum
