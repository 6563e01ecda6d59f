#pragma once

#include "sql/SQLiteAPISocket.h"
#include "sql/sqliteLibrary.h"

#include <vector>

namespace vellum {

/// A socket that owns one SQLite database opened through the run-time loaded library. Making
/// one takes a hold on the library, destroying it drops the hold. Used by one thread at a time.
class DynamicSQLiteAPISocket : public SQLiteAPISocket {
public:
    /// Loads (or holds) the library; the socket is usable only when that succeeded.
    DynamicSQLiteAPISocket();
    ~DynamicSQLiteAPISocket() override;

    /// Understands "sqlite-clientflag" (the sqlite3_open_v2 flags, as a decimal text); every
    /// key answers true.
    bool setConnectOptions(const std::string &value, const std::string &key) override;
    /// Opens the settings' `dbFilePath` with the client flags and, when the settings carry a
    /// password, keys it with sqlite3_key. True when both succeeded.
    [[nodiscard]] bool connect() override;
    /// Finalizes every result of this socket and closes the database.
    void close() override;
    /// Prepares the first statement of the bytes and steps it once; answers 0 when it gave a row
    /// or finished, else the SQLite code (of the prepare or of the step). The rest of a text
    /// with several statements is ignored.
    int runQuery(const char *query, std::size_t length) override;
    /// "" after a success, else the reason: a missing library, an invalid path, no open
    /// database, or SQLite's own message.
    std::string getLastErrorMessage() const override;
    /// 0 after a success, SQLite's code after a failure, -1 when there is no usable database.
    int errorNo() const override;
    sqlite3 *dbHandler() const override { return m_dbHandler; }
    void forgetResult(SQLiteDBResult *result) override;

    /// Interrupts a running statement.
    void stopQuery();
    /// sqlite3_libversion_number (major × 1000000 + minor × 1000 + patch); 0 without library.
    std::int64_t getServerVersion() const override;
    /// The version as major × 10000 + minor × 100 + patch.
    std::int64_t getSimplifiedServerVersion() const;
    /// sqlite3_libversion; "" without library.
    std::string getServerInfo() const;
    std::uint64_t getInsertId() const;
    std::int64_t getAffectedRows() const;
    /// Re-keys the open database with the settings' password (removes encryption when it is
    /// empty); true on success.
    [[nodiscard]] bool setEncryptionPassword();
    /// Drops the result of the last query.
    void _clearLastResult();

    /// The sqlite3_open_v2 flags `connect` uses (default 2, read-write).
    std::uint32_t clientFlags() const { return m_ulngClientFlags; }
    /// Whether this socket took a hold on the library when it was made.
    bool holdsLibrary() const { return m_holdsLibrary; }

private:
    /// The socket's own hold keeps the library loaded, so no look at the shared state is needed.
    bool libraryUsable() const { return m_holdsLibrary; }

    sqlite3 *m_dbHandler = nullptr;
    std::uint32_t m_ulngClientFlags = kSQLiteOpenReadWrite;
    bool m_holdsLibrary = false;
    std::vector<SQLiteDBResult *> m_liveResults;
};

/// The number of UTF-16 code units of a UTF-8 text: the "characters" by which a password's
/// length is given to sqlite3_key.
int passwordLengthInCharacters(std::string_view utf8);

} // namespace vellum
