#pragma once

#include "sql/BasicResultInfo.h"
#include "sql/DBSocketAddress.h"
#include "sql/SQLiteDBResult.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;

namespace vellum {

class SQLEscapeMethods;

/// The root of the driver sockets: one socket talks to one database for a connection
/// (`SQLConnection`), which gives it its settings and drives it through the socket protocol
/// below. A socket is used by one thread at a time.
class DBSocketBase {
public:
    DBSocketBase() = default;
    virtual ~DBSocketBase() = default;
    DBSocketBase(const DBSocketBase &) = delete;
    DBSocketBase &operator=(const DBSocketBase &) = delete;

    /// Keeps a copy of the connection settings.
    void setDestinationAddress(const DBSocketAddress &address) { m_destAddress = address.copyAsSocketAddress(); }
    /// The settings; nullptr before any were given.
    const DBSocketAddress *destinationAddress() const { return m_destAddress.get(); }

    /// The connection's escape methods (not owned).
    void setEscapeMethods(SQLEscapeMethods *methods) { m_escapeMethods = methods; }
    SQLEscapeMethods *escapeMethods() const { return m_escapeMethods; }
    /// The client-side string encoding that query texts are converted to.
    void setOurEncoding(std::uint64_t encoding) { m_ourEncoding = encoding; }
    std::uint64_t ourEncoding() const { return m_ourEncoding; }
    void setAutoCommit(bool on) { m_fAutoCommit = on; }
    bool autoCommit() const { return m_fAutoCommit; }
    void setStreamResult(bool on) { m_fIsStreamResult = on; }
    void setUsesCursor(bool on) { m_fUsesCursor = on; }
    bool isConnected() const { return m_fConnected; }

    /// Sets a driver option by key; answers whether the option was accepted.
    virtual bool setConnectOptions(const std::string &value, const std::string &key) = 0;
    /// Opens the database of the settings; true on success.
    [[nodiscard]] virtual bool connect() = 0;
    /// Closes the database. The owner drops the socket afterwards.
    virtual void close() = 0;
    /// Runs the first statement of `length` query bytes; answers 0 or the driver's error code.
    virtual int runQuery(const char *query, std::size_t length) = 0;
    /// Converts a UTF-8 query text to the socket's encoding and runs it.
    int runQueryStr(std::string_view query);
    /// The reason of the last failure; "" after a success.
    virtual std::string getLastErrorMessage() const = 0;
    /// The driver's code of the last failure; 0 after a success.
    virtual int errorNo() const = 0;
    /// Whether the server still answers.
    virtual bool ping() = 0;
    /// The server's version as a number.
    virtual std::int64_t getServerVersion() const = 0;
    /// The server's edition.
    virtual std::int32_t getServerEdition() const = 0;
    /// The result of the last query, handed to the caller (nullptr when there is none).
    std::unique_ptr<SQLiteDBResult> grabPendingDbResult();
    /// What is known of the last query after its result is gone.
    const BasicResultInfo &latestResultInfo() const { return m_latestResultInfo; }

protected:
    std::unique_ptr<DBSocketAddress> m_destAddress;
    SQLEscapeMethods *m_escapeMethods = nullptr;
    bool m_fAutoCommit = true;
    bool m_fConnected = false;
    bool m_fIsStreamResult = false;
    bool m_fUsesCursor = false;
    std::unique_ptr<SQLiteDBResult> m_lastResult;
    BasicResultInfo m_latestResultInfo;
    std::uint64_t m_ourEncoding = 4;
};

} // namespace vellum
