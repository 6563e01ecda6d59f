#include "sql/SQLiteAPISocket.h"

#include "sql/DynamicSQLiteAPISocket.h"
#include "util/format.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace vellum {

SQLiteAPISocket::SQLiteAPISocket(std::string errorMessage) : m_errorMessage(std::move(errorMessage)) {}

bool SQLiteAPISocket::setConnectOptions(const std::string &, const std::string &)
{
    return true;
}

bool SQLiteAPISocket::connect()
{
    std::fputs("WTF???\n", stdout);
    return false;
}

int SQLiteAPISocket::runQuery(const char *, std::size_t)
{
    return -1;
}

std::optional<std::string> SQLiteAPISocket::CreateDbFile(bool, const DBSocketAddress &address)
{
    // Only a file that does not exist is created; anything else that stops the probe (an
    // existing file, a permission error) counts as an existing database.
    if (std::FILE *probe = std::fopen(address.dbFilePath().c_str(), "rb")) {
        std::fclose(probe);
        return std::string("Database file exists already");
    }
    if (errno != ENOENT)
        return std::string("Database file exists already");

    DynamicSQLiteAPISocket socket;
    socket.setDestinationAddress(address);
    (void)socket.setConnectOptions("6", "sqlite-clientflag"); // SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE
    if (!socket.connect())
        return socket.getLastErrorMessage();
    // VACUUM makes SQLite write the (empty) database to the file.
    socket.runQuery("VACUUM", 6);
    return std::nullopt;
}

std::unique_ptr<SQLiteAPISocket> SQLiteAPISocket::GetSocketForAddress(const DBSocketAddress &address)
{
    std::string reason;
    if (address.dbFilePath().empty()) {
        reason = "Database file path is not correct";
    } else if (std::FILE *file = std::fopen(address.dbFilePath().c_str(), "rb")) {
        // Only readability is checked here: SQLite itself judges the content when it opens it.
        std::fclose(file);
        return std::make_unique<DynamicSQLiteAPISocket>();
    } else {
        reason = formatString("Database file cannot be opened (%s)", std::strerror(errno));
    }
    return std::make_unique<SQLiteAPISocket>(reason);
}

} // namespace vellum
