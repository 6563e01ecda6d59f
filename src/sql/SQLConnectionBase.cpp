#include "sql/SQLConnectionBase.h"

#include "sql/SQLEscapeMethods.h"
#include "sql/SocketConnectHandler.h"
#include "util/localized.h"
#include "util/logging.h"

namespace vellum {

SQLConnectionBase::SQLConnectionBase() : m_address(std::make_unique<DBSocketAddress>())
{
    setEncoding(5); // ISO Latin 1 until a server type says otherwise
}

SQLConnectionBase::~SQLConnectionBase() = default;

bool SQLConnectionBase::connect(bool direct)
{
    if (m_fConnected && m_socketPtr && (m_fSuspendPing || m_socketPtr->ping()))
        return true;

    m_fConnected = false;
    m_fCanceled = false;
    m_cancelRequested.store(false);

    std::unique_ptr<DBSocketAddress> address = m_address->copyAsSocketAddress();
    _beforeConnect(*address);

    if (m_socketPtr) {
        m_socketPtr->close();
        m_socketPtr.reset();
    }
    m_socketPtr = makeSocket(*address);
    if (!m_socketPtr)
        return false;
    m_socketPtr->setEscapeMethods(sqlEscapeMethods());
    m_socketPtr->setDestinationAddress(*address);
    m_socketPtr->setOurEncoding(encoding());
    m_socketPtr->setAutoCommit(m_fAutoCommit);
    m_socketPtr->setStreamResult(m_fIsStreamResult);
    m_socketPtr->setUsesCursor(m_fUsesCursor);

    bool connected = false;
    if (direct) {
        connected = m_socketPtr->connect();
    } else {
        const auto shouldCancel = [this] { return m_cancelRequested.load() || (m_cancelCheck && m_cancelCheck()); };
        switch (SocketConnectHandler::ConnectWithSocket(*m_socketPtr, shouldCancel)) {
        case SocketConnectHandler::kConnected:
            connected = true;
            break;
        case SocketConnectHandler::kFailed:
            break;
        case SocketConnectHandler::kCancelled:
            m_fCanceled = true;
            m_socketPtr.reset();
            return false;
        }
    }
    // A failed socket is kept: its last error is the reason the caller reads.
    if (!connected)
        return false;

    if (const int error = m_socketPtr->errorNo())
        C_LogError("Connect succeed but with error: %d (%s)", error, m_socketPtr->getLastErrorMessage().c_str());
    setVersion(static_cast<std::int32_t>(m_socketPtr->getServerVersion()));
    setEdition(m_socketPtr->getServerEdition());

    m_fConnected = true;
    _afterConnect();
    return true;
}

bool SQLConnectionBase::queryStringGrabsResult(std::string_view query, std::unique_ptr<SQLResult> *result)
{
    _beforeQuery();
    if (m_fClearErrorBufferOnNextQuery && m_oldErrorMsg) {
        m_oldErrorMsg.reset();
        m_oldErrorQuery.reset();
    }
    m_fClearErrorBufferOnNextQuery = false;

    if (m_socketPtr) {
        m_socketPtr->runQueryStr(query);
        if (!m_oldErrorMsg && m_socketPtr->errorNo() != 0) {
            m_oldErrorMsg = m_socketPtr->getLastErrorMessage();
            m_oldErrorQuery = std::string(query);
        }
    } else if (!m_oldErrorMsg) {
        m_oldErrorMsg = localized("No connection has been made.");
        m_oldErrorQuery = std::string(query);
    }

    _afterQuery();
    if (result) {
        std::unique_ptr<SQLiteDBResult> pending = m_socketPtr ? m_socketPtr->grabPendingDbResult() : nullptr;
        *result = pending ? std::make_unique<SQLResult>(std::move(pending), serverType()) : nullptr;
    }
    return m_oldErrorMsg.has_value();
}

std::unique_ptr<SQLResult> SQLConnectionBase::queryString(std::string_view query)
{
    std::unique_ptr<SQLResult> result;
    queryStringGrabsResult(query, &result);
    return result;
}

std::string SQLConnectionBase::getLastErrorMessage()
{
    m_fClearErrorBufferOnNextQuery = true;
    if (m_fCanceled)
        return localized("The connection was cancelled.");
    if (!m_socketPtr)
        return localized("No connection has been made.");
    return m_socketPtr->getLastErrorMessage();
}

void SQLConnectionBase::disconnect()
{
    if (!m_fConnected)
        return;
    if (m_socketPtr) {
        m_socketPtr->close();
        m_socketPtr.reset();
    }
    m_fConnected = false;
    _afterRealDisconnect();
    if (SQLEscapeMethods *methods = sqlEscapeMethods())
        methods->reduceMemoryUseSafely();
}

} // namespace vellum
