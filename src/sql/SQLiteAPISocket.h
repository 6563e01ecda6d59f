#pragma once

#include "sql/DBSocketBase.h"

#include <optional>

namespace vellum {

/// A SQLite socket that carries nothing but an error text: what `GetSocketForAddress` answers
/// when the database file cannot be used. It cannot connect, and its last error is the reason.
/// The class also makes the sockets (`GetSocketForAddress`) and new database files
/// (`CreateDbFile`).
class SQLiteAPISocket : public DBSocketBase {
public:
    /// A failed socket whose last error is `errorMessage`.
    explicit SQLiteAPISocket(std::string errorMessage = std::string());

    /// Creates an empty database file at the settings' `dbFilePath` (keyed with the settings'
    /// password when there is one). nullopt on success, else the reason; an existing file, or a
    /// path that cannot be probed, answers "Database file exists already" and is left untouched.
    /// The flag is not used.
    static std::optional<std::string> CreateDbFile(bool flag, const DBSocketAddress &address);
    /// A socket for the settings' database file: a `DynamicSQLiteAPISocket` when the file can be
    /// read, else a failed `SQLiteAPISocket` carrying the reason.
    static std::unique_ptr<SQLiteAPISocket> GetSocketForAddress(const DBSocketAddress &address);

    bool setConnectOptions(const std::string &value, const std::string &key) override;
    /// Always fails (after printing "WTF???" on standard output).
    [[nodiscard]] bool connect() override;
    void close() override {}
    int runQuery(const char *query, std::size_t length) override;
    std::string getLastErrorMessage() const override { return m_errorMessage; }
    int errorNo() const override { return m_errorMessage.empty() ? 0 : -1; }
    bool ping() override { return true; }
    bool hasPersistentConnection() const { return true; }
    bool isSwitchDBAfterConnect() const { return false; }
    std::int64_t getServerVersion() const override { return 0; }
    std::int32_t getServerEdition() const override { return 0; }
    bool supportCursor() const { return false; }
    std::uint32_t getWarningCount() const { return 0; }
    std::string getWarningMessage() const { return std::string(); }

    /// The open database; nullptr for a socket that is not connected.
    virtual sqlite3 *dbHandler() const { return nullptr; }
    /// A result made by this socket is being destroyed.
    virtual void forgetResult(SQLiteDBResult *) {}

protected:
    std::string m_errorMessage;
    bool m_hasPendingResult = false;
};

} // namespace vellum
