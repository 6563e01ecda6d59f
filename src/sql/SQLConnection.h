#pragma once

#include "sql/SQLConnectionBase.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vellum {

/// The object through which the program reaches a database. It is made for one server type,
/// given settings, connected, fed query texts, asked for the last error and disconnected. Only
/// SQLite (server type 4) reaches a socket: its database is the file at `setDbFilePath`, keyed
/// with the settings' password when one is given. Used by one thread at a time.
class SQLConnection : public SQLConnectionBase {
public:
    /// A SQLite connection (the deprecated plain initialiser; logs that it is deprecated).
    SQLConnection();
    /// A connection of a server type without host, login, password or port.
    explicit SQLConnection(ServerType type);
    /// A connection of a server type to a host; port 0 means none.
    SQLConnection(ServerType type, const std::string &host, const std::string &login, const std::string &password,
                  int port);
    ~SQLConnection() override;

    /// Binds the type's escape methods (SQLite's, or none for every other type).
    void setServerType(ServerType type) override;

    /// The database file of a SQLite connection.
    void setDbFilePath(const std::string &path);
    /// The password that keys a SQLite database (sqlite3_key); "" for a plain database.
    void setPassword(const std::string &password);
    /// Creates an empty database file at the settings' path; nullopt on success, else the
    /// reason ("Database file exists already" for an existing file). The flag is not used.
    std::optional<std::string> createDbFile(bool flag);

    /// The database name that the socket receives ("main" for SQLite).
    const std::optional<std::string> &defaultDatabase() const { return m_defaultDatabase; }

protected:
    std::unique_ptr<DBSocketBase> makeSocket(const DBSocketAddress &address) override;
    void _beforeConnect(DBSocketAddress &address) override;
    /// SQLite: journal in memory, then foreign keys on (from library version 3.0.0).
    void _afterConnect() override;

private:
    void initWithServerType(ServerType type, const std::string &host, const std::string &login,
                            const std::string &password, int port);

    std::optional<std::string> m_defaultDatabase;
};

} // namespace vellum
