#include "sql/SQLConnection.h"

#include "sql/SQLiteAPISocket.h"
#include "sql/SQLiteEscapeMethods.h"
#include "util/logging.h"

namespace vellum {

SQLConnection::SQLConnection()
{
    C_LogError("SQLConnection :: init is deprecated");
    initWithServerType(ServerTypeSQLite, std::string(), std::string(), std::string(), 0);
}

SQLConnection::SQLConnection(ServerType type)
{
    initWithServerType(type, std::string(), std::string(), std::string(), 0);
}

SQLConnection::SQLConnection(ServerType type, const std::string &host, const std::string &login,
                             const std::string &password, int port)
{
    initWithServerType(type, host, login, password, port);
}

SQLConnection::~SQLConnection()
{
    disconnect();
}

void SQLConnection::initWithServerType(ServerType type, const std::string &host, const std::string &login,
                                       const std::string &password, int port)
{
    setServerType(type);
    const std::string portText = port != 0 ? std::to_string(port) : std::string();
    m_address = std::make_unique<DBSocketAddress>(host, portText, login, password, m_defaultDatabase.value_or(""));
    setDefaultSchema(std::nullopt);
}

void SQLConnection::setServerType(ServerType type)
{
    SQLContext::setServerType(type);
    if (type == ServerTypeSQLite) {
        setEncoding(4); // SQLite talks UTF-8
        m_defaultDatabase = "main";
        if (m_address)
            m_address->setDbFilePath(std::string());
        setSqlEscapeMethods(std::make_shared<SQLiteEscapeMethods>());
    } else {
        setSqlEscapeMethods(nullptr);
    }
}

void SQLConnection::setDbFilePath(const std::string &path)
{
    m_address->setDbFilePath(path);
}

void SQLConnection::setPassword(const std::string &password)
{
    m_address->setPassword(password);
}

std::optional<std::string> SQLConnection::createDbFile(bool flag)
{
    return SQLiteAPISocket::CreateDbFile(flag, *m_address);
}

std::unique_ptr<DBSocketBase> SQLConnection::makeSocket(const DBSocketAddress &address)
{
    if (serverType() != ServerTypeSQLite)
        return nullptr;
    return SQLiteAPISocket::GetSocketForAddress(address);
}

void SQLConnection::_beforeConnect(DBSocketAddress &address)
{
    address.setDb(m_defaultDatabase.value_or(""));
}

void SQLConnection::_afterConnect()
{
    if (serverType() != ServerTypeSQLite)
        return;
    queryString("PRAGMA journal_mode = MEMORY");
    if (version() >= 3000000)
        queryString("PRAGMA foreign_keys = ON");
}

} // namespace vellum
