#pragma once

#include "sql/DBSocketAddress.h"
#include "sql/DBSocketBase.h"
#include "sql/SQLContext.h"
#include "sql/SQLResult.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

/// The server-independent part of a connection: its settings, the socket it holds while
/// connected, the connect procedure, the common query path and the first error of a query.
/// A connection is used by one thread at a time; only `CancelConnection` may come from another.
class SQLConnectionBase : public SQLContext {
public:
    SQLConnectionBase();
    ~SQLConnectionBase() override;

    /// The connection settings.
    DBSocketAddress &address() { return *m_address; }
    const DBSocketAddress &address() const { return *m_address; }

    /// Connects (or keeps a standing connection). With `direct` the socket connects on this
    /// thread; otherwise on a short-lived thread while this one waits, which the cancel check
    /// and `CancelConnection` can abandon. True when the connection stands.
    [[nodiscard]] bool connect(bool direct);
    /// Asked while a non-direct connect waits; true abandons the connect.
    void setConnectCancelCheck(std::function<bool()> check) { m_cancelCheck = std::move(check); }
    /// Abandons a waiting connect (from any thread).
    void CancelConnection() { m_cancelRequested.store(true); }

    /// Runs one query text (only its first statement) and answers its result, or nullptr when
    /// it gave none. Whether it failed is read with `getLastErrorMessage`.
    std::unique_ptr<SQLResult> queryString(std::string_view query);
    /// Runs one query text; answers whether an error is recorded for the current query and
    /// hands the result to `result` when it is given.
    bool queryStringGrabsResult(std::string_view query, std::unique_ptr<SQLResult> *result);

    /// The text of the last failure, "" for success: the socket's latest call, "usercanceled"
    /// after a cancelled connect, "noconninit" without a socket. The first error of a query
    /// stays readable through `oldErrorMessage` until the next query after this call.
    std::string getLastErrorMessage();
    /// The first error recorded since the error buffer was last cleared, and its query text.
    const std::optional<std::string> &oldErrorMessage() const { return m_oldErrorMsg; }
    const std::optional<std::string> &oldErrorQuery() const { return m_oldErrorQuery; }

    /// Closes the socket when connected.
    void disconnect();
    bool isConnected() const { return m_fConnected; }
    bool isCanceled() const { return m_fCanceled; }
    /// The socket while one is held (for the driver's own questions); nullptr otherwise.
    DBSocketBase *socket() const { return m_socketPtr.get(); }

    bool autoCommit() const { return m_fAutoCommit; }
    void setAutoCommit(bool on) { m_fAutoCommit = on; }
    void setSuspendPing(bool on) { m_fSuspendPing = on; }

protected:
    /// The socket for the connection's server type and settings; nullptr when the type has none.
    virtual std::unique_ptr<DBSocketBase> makeSocket(const DBSocketAddress &address) = 0;
    /// Adjusts the settings copy that the socket receives.
    virtual void _beforeConnect(DBSocketAddress &address) = 0;
    /// Runs right after the connection stands.
    virtual void _afterConnect() = 0;
    virtual void _beforeQuery() {}
    virtual void _afterQuery() {}
    virtual void _afterRealDisconnect() {}

    std::unique_ptr<DBSocketAddress> m_address;
    std::unique_ptr<DBSocketBase> m_socketPtr;
    bool m_fConnected = false;
    bool m_fCanceled = false;
    bool m_fClearErrorBufferOnNextQuery = false;
    std::optional<std::string> m_oldErrorMsg;
    std::optional<std::string> m_oldErrorQuery;
    bool m_fAutoCommit = true;
    bool m_fIsStreamResult = false;
    bool m_fUsesCursor = false;
    bool m_fSuspendPing = false;

private:
    std::function<bool()> m_cancelCheck;
    std::atomic<bool> m_cancelRequested{false};
};

} // namespace vellum
