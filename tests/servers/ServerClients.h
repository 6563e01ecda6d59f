#pragma once

// The database clients of the servers suite: the servers that scripts/test-servers.sh started
// (PostgreSQL and MariaDB on the loopback interface, described in its servers.env) and the
// sqlite3 shell. Each client loads a script, answers the errors it reported, and reads tables
// back cell by cell.

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vellum::test {

/// The target of a load.
enum class ServerKind { PostgreSQL, MariaDB, SQLite };

/// The KEY='value' lines of servers.env; empty when the file is missing.
std::map<std::string, std::string> readServersEnv(const std::string &path);

/// A cell read back from a server: its text (bytes as the server gives them) or null.
using ServerCell = std::optional<std::string>;
using ServerRow = std::vector<ServerCell>;

/// One empty database on one server (a fresh database on PostgreSQL and MariaDB, a new file for
/// SQLite) that scripts are loaded into and tables are read from.
class ServerDatabase {
public:
    /// Prepares the database `name`; `error` says why it cannot be used (server unavailable,
    /// database not created).
    ServerDatabase(ServerKind kind, const std::map<std::string, std::string> &env, const std::string &name,
                   const std::string &workFolder);
    ~ServerDatabase();
    ServerDatabase(const ServerDatabase &) = delete;
    ServerDatabase &operator=(const ServerDatabase &) = delete;

    bool ready() const { return m_error.empty(); }
    const std::string &error() const { return m_error; }

    /// Runs a script through the server's command-line client, going on after errors. Answers
    /// each error as "LINE: message" (the script line the client names and the first line of
    /// the server's message), in the order reported; `clientFailure` is set when the client
    /// itself could not run.
    std::vector<std::string> loadScript(const std::string &scriptPath, std::string &clientFailure);

    /// Empties the database for the next load: a new public schema on PostgreSQL (much faster
    /// than a new database), the database made anew on MariaDB, a new file for SQLite. False
    /// (reason in `lastError`) when that failed.
    bool reset();

    /// True when the table exists.
    bool hasTable(const std::string &table);
    /// Every row of a table, each cell as text (numbers and dates in the server's own text
    /// form, blobs as their bytes) or null; nullopt when the query failed.
    std::optional<std::vector<ServerRow>> readTable(const std::string &table, const std::vector<std::string> &columns);
    /// Every row of a table as the values of SQL expressions over its columns (e.g. a cast that
    /// shows a number with every digit), each as text or null; nullopt when the query failed.
    std::optional<std::vector<ServerRow>> readExpressions(const std::string &table,
                                                          const std::vector<std::string> &expressions);
    /// The rows of several tables read with one client run, each as `readExpressions` reads
    /// it: (table, expressions) in, the tables' rows in the same order out; nullopt when any
    /// query failed.
    std::optional<std::vector<std::vector<ServerRow>>>
    readMany(const std::vector<std::pair<std::string, std::vector<std::string>>> &queries);
    /// Why the last query failed.
    const std::string &lastError() const { return m_lastError; }

    /// A name quoted for this server.
    std::string quote(const std::string &name) const;

private:
    /// Runs one query; answers its output lines, or nullopt on failure (message in `m_lastError`).
    std::optional<std::vector<std::string>> query(const std::string &sql);
    /// Runs several queries in one client run; their output lines in order.
    std::optional<std::vector<std::string>> queryAll(const std::vector<std::string> &sqls);
    /// The SELECT of `readExpressions`.
    std::string selectOf(const std::string &table, const std::vector<std::string> &expressions) const;
    std::vector<std::string> clientArguments() const;

    ServerKind m_kind;
    std::map<std::string, std::string> m_env;
    std::string m_name;
    std::string m_sqlitePath;
    std::string m_error;
    std::string m_lastError;
    bool m_created = false;
};

} // namespace vellum::test
