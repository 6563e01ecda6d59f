#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vellum {

class SQLiteAPISocket;

/// One fetched cell: its bytes (text or blob, copied out of SQLite), or nullopt for NULL.
using SQLCell = std::optional<std::string>;
/// One fetched row, a cell per result column.
using SQLRow = std::vector<SQLCell>;
/// The caller's row table that `fetchRows` appends to.
using SQLRowTable = std::vector<SQLRow>;

/// The result of one query on a SQLite socket: the state of fetching its rows. The statement
/// itself lives in the derived class that talks to the library.
class SQLiteDBResult {
public:
    SQLiteDBResult(SQLiteAPISocket *socket, int status);
    virtual ~SQLiteDBResult() = default;
    SQLiteDBResult(const SQLiteDBResult &) = delete;
    SQLiteDBResult &operator=(const SQLiteDBResult &) = delete;

    /// Appends up to `maxCount` rows (0: all remaining) to `rows`; answers how many it added.
    virtual std::uint64_t fetchRows(SQLRowTable &rows, std::uint64_t maxCount) = 0;
    /// Whether the statement returns columns and is still held.
    virtual bool hasTableBody() const = 0;
    virtual std::int64_t getAffectedRows() const = 0;
    virtual std::uint64_t getInsertId() const = 0;
    /// Releases the statement; the result then fetches nothing.
    virtual void invalidateThisResult() = 0;

    /// The socket's last error text ("" without a socket).
    std::string getErrorMessage() const;
    /// Whether that text is non-empty.
    bool hasABadState() const { return !getErrorMessage().empty(); }

    int numberOfColumns() const { return m_numFields; }
    /// Rows handed out so far.
    std::uint64_t numberOfFetchedRows() const { return m_nTuplesFetched; }
    /// Whether every row has been read.
    bool fetchIsOver() const { return resultFetched; }
    bool isSelectStatement() const { return selectStatement; }
    /// The result code of the last step.
    int status() const { return initStatus; }

    /// Asks not to fetch blob columns; SQLite results keep the flag but fetch blobs anyway.
    void setDoNotFetchBLOB(bool flag) { m_fDoNotFetchBLOB = flag; }
    bool doNotFetchBLOB() const { return m_fDoNotFetchBLOB; }
    bool supportDoNotFetchBLOB() const { return true; }

    /// The socket that made this result; nullptr once that socket closed.
    SQLiteAPISocket *socket() const { return m_sqliteSocket; }
    /// Forgets the socket (it is closing).
    void detachFromSocket() { m_sqliteSocket = nullptr; }

protected:
    SQLiteAPISocket *m_sqliteSocket;
    int initStatus;
    int m_numFields = 0;
    std::uint64_t m_nTuplesFetched = 0;
    bool resultFetched = false;
    bool selectStatement = false;
    bool m_fDoNotFetchBLOB = false;
};

} // namespace vellum
