#include "sql/DynamicSQLiteAPISocket.h"

#include "sql/DynamicSQLiteDBResult.h"

#include <algorithm>
#include <cstdlib>

namespace vellum {

int passwordLengthInCharacters(std::string_view utf8)
{
    int units = 0;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0) != 0x80)
            ++units; // the lead byte of a character
        if (byte >= 0xF0)
            ++units; // a character outside the Basic Multilingual Plane takes two code units
    }
    return units;
}

DynamicSQLiteAPISocket::DynamicSQLiteAPISocket() : m_holdsLibrary(LoadSQLiteLibrary()) {}

DynamicSQLiteAPISocket::~DynamicSQLiteAPISocket()
{
    // A socket released without `close` still closes its database, so the library is never
    // unloaded under an open handle.
    close();
    if (m_holdsLibrary)
        UnloadSQLiteLibrary();
}

bool DynamicSQLiteAPISocket::setConnectOptions(const std::string &value, const std::string &key)
{
    if (key == "sqlite-clientflag")
        m_ulngClientFlags = static_cast<std::uint32_t>(std::strtoul(value.c_str(), nullptr, 10));
    return true;
}

bool DynamicSQLiteAPISocket::connect()
{
    if (!libraryUsable())
        return false;
    const SQLiteAPI &api = sqliteAPI();
    const std::unique_ptr<DBSocketAddress> address =
        m_destAddress ? m_destAddress->copyAsSocketAddress() : std::make_unique<DBSocketAddress>();
    int result = -1;
    if (!address->dbFilePath().empty()) {
        close(); // a socket holds one database at a time
        result = api.sqlite3_open_v2(address->dbFilePath().c_str(), &m_dbHandler, static_cast<int>(m_ulngClientFlags),
                                     nullptr);
        const std::string &password = address->password();
        if (!password.empty() && m_dbHandler)
            result = api.sqlite3_key(m_dbHandler, password.data(), passwordLengthInCharacters(password));
    }
    m_fConnected = result == kSQLiteOK;
    return m_fConnected;
}

void DynamicSQLiteAPISocket::close()
{
    if (!libraryUsable())
        return;
    for (SQLiteDBResult *result : m_liveResults) {
        result->invalidateThisResult();
        result->detachFromSocket();
    }
    m_liveResults.clear();
    m_lastResult.reset();
    if (m_dbHandler)
        sqliteAPI().sqlite3_close(m_dbHandler);
    m_dbHandler = nullptr;
    m_fConnected = false;
}

void DynamicSQLiteAPISocket::forgetResult(SQLiteDBResult *result)
{
    m_liveResults.erase(std::remove(m_liveResults.begin(), m_liveResults.end(), result), m_liveResults.end());
}

void DynamicSQLiteAPISocket::_clearLastResult()
{
    m_lastResult.reset();
}

int DynamicSQLiteAPISocket::runQuery(const char *query, std::size_t length)
{
    _clearLastResult();
    if (!libraryUsable() || !m_dbHandler)
        return -1;
    const SQLiteAPI &api = sqliteAPI();
    sqlite3_stmt *statement = nullptr;
    const int prepared = api.sqlite3_prepare_v2(m_dbHandler, query, static_cast<int>(length), &statement, nullptr);
    if (prepared != kSQLiteOK) {
        m_latestResultInfo = BasicResultInfo{getLastErrorMessage(), 0, 0, 0, std::string()};
        return prepared;
    }
    // An empty text (or one holding only a comment) prepares to no statement: nothing ran.
    const int status = statement ? api.sqlite3_step(statement) : kSQLiteDone;
    if (status == kSQLiteRow || status == kSQLiteDone) {
        auto result = std::make_unique<DynamicSQLiteDBResult>(statement, this, status);
        m_liveResults.push_back(result.get());
        m_lastResult = std::move(result);
    } else if (statement) {
        api.sqlite3_finalize(statement);
    }
    m_hasPendingResult = false;
    if (m_lastResult)
        m_latestResultInfo = BasicResultInfo::initWithSomeResultInfo(*m_lastResult);
    else
        m_latestResultInfo = BasicResultInfo{getLastErrorMessage(), 0, 0, 0, std::string()};
    return (status == kSQLiteRow || status == kSQLiteDone) ? kSQLiteOK : status;
}

std::string DynamicSQLiteAPISocket::getLastErrorMessage() const
{
    if (!libraryUsable())
        return "SQLite dynamic library not found!";
    if (!m_destAddress || m_destAddress->dbFilePath().empty())
        return "Database file path is invalid";
    if (!m_dbHandler)
        return "No connection handler!";
    const int code = sqliteAPI().sqlite3_errcode(m_dbHandler);
    if (code == kSQLiteOK || code == kSQLiteRow || code == kSQLiteDone)
        return std::string();
    const char *message = sqliteAPI().sqlite3_errmsg(m_dbHandler);
    return message ? std::string(message) : std::string();
}

int DynamicSQLiteAPISocket::errorNo() const
{
    if (!libraryUsable() || !m_destAddress || m_destAddress->dbFilePath().empty() || !m_dbHandler)
        return -1;
    const int code = sqliteAPI().sqlite3_errcode(m_dbHandler);
    return (code == kSQLiteRow || code == kSQLiteDone) ? kSQLiteOK : code;
}

void DynamicSQLiteAPISocket::stopQuery()
{
    if (libraryUsable() && m_dbHandler)
        sqliteAPI().sqlite3_interrupt(m_dbHandler);
}

std::int64_t DynamicSQLiteAPISocket::getServerVersion() const
{
    return libraryUsable() ? sqliteAPI().sqlite3_libversion_number() : 0;
}

std::int64_t DynamicSQLiteAPISocket::getSimplifiedServerVersion() const
{
    const std::int64_t v = getServerVersion();
    const std::int64_t major = v / 1000000;
    const std::int64_t minor = (v - major * 1000000) / 1000;
    const std::int64_t patch = v - major * 1000000 - minor * 1000;
    return major * 10000 + minor * 100 + patch;
}

std::string DynamicSQLiteAPISocket::getServerInfo() const
{
    if (!libraryUsable())
        return std::string();
    const char *version = sqliteAPI().sqlite3_libversion();
    return version ? std::string(version) : std::string();
}

std::uint64_t DynamicSQLiteAPISocket::getInsertId() const
{
    if (!libraryUsable() || !m_dbHandler)
        return 0;
    return static_cast<std::uint64_t>(sqliteAPI().sqlite3_last_insert_rowid(m_dbHandler));
}

std::int64_t DynamicSQLiteAPISocket::getAffectedRows() const
{
    if (!libraryUsable() || !m_dbHandler)
        return 0;
    return sqliteAPI().sqlite3_changes(m_dbHandler);
}

bool DynamicSQLiteAPISocket::setEncryptionPassword()
{
    if (!libraryUsable() || !m_dbHandler)
        return false;
    const std::string password = m_destAddress ? m_destAddress->password() : std::string();
    if (password.empty())
        return sqliteAPI().sqlite3_rekey(m_dbHandler, nullptr, 0) == kSQLiteOK;
    return sqliteAPI().sqlite3_rekey(m_dbHandler, password.data(), passwordLengthInCharacters(password)) == kSQLiteOK;
}

} // namespace vellum
