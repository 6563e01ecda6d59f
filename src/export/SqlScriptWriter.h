#pragma once

#include "export/ExportSink.h"
#include "export/IndexNameRegister.h"
#include "sql/ServerType.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellum {

struct ExportOptions;
class TOrbMDBFile;
class TOrbMDBForeignKey;
class TOrbMDBIndex;
class TOrbMDBTable;

/// What a SQL script contains and in which dialect.
struct SqlScriptSettings {
    ServerType dialect = ServerTypeMySQL;
    bool exportStructure = true;
    bool includeDropTable = true;
    bool includeForeignKeys = true;
    bool includeIndexes = true;
    bool exportData = true;
    std::string schemaName;          ///< used by PostgreSQL, Oracle and SQL Server; empty = none
    std::string decimalSymbol = "."; ///< replaces "." in Currency, Single and Double values
    bool singleFile = true;          ///< one script for all tables (relationships at its end)

    /// The SQL fields of the export options.
    static SqlScriptSettings fromOptions(const ExportOptions &options);
};

/// Writes the statements that re-create and fill tables of one database file in one SQL
/// dialect: prologue, per table DROP, CREATE TABLE, indexes, comments and INSERTs, the
/// relationships, epilogue. One writer serves one export job: it keeps the register of index
/// names that makes them unique across the job. Output goes to a sink in large blocks; every
/// call answers false once the sink has failed. Runs on the export worker thread.
class SqlScriptWriter {
public:
    SqlScriptWriter(const TOrbMDBFile &file, const SqlScriptSettings &settings, const std::atomic<bool> &stop);

    /// Begins a new script on `sink` with the dialect's opening statements.
    [[nodiscard]] bool writePrologue(ExportSink &sink);
    /// The dialect's closing statements.
    [[nodiscard]] bool writeEpilogue(ExportSink &sink);

    /// Writes one table: structure and data as the settings choose and, for one script per
    /// table, its relationships. Stops between rows and fields when the stop flag is set (the
    /// caller checks the flag and discards the output). `rowProgress` (optional) gets rows done.
    [[nodiscard]] bool writeTable(const TOrbMDBTable &table, ExportSink &sink,
                                  const std::function<void(std::size_t, std::size_t)> &rowProgress = {});

    /// The end of a single script after the tables: for SQLite the separate indexes of the
    /// written tables, for the other dialects the relationships whose referencing table is one of
    /// them (in the file's order).
    [[nodiscard]] bool writeSingleScriptEnd(const std::vector<const TOrbMDBTable *> &writtenTables, ExportSink &sink);

    /// A name quoted for the dialect: the closing quote character doubled inside, then enclosed.
    std::string quoteName(std::string_view name) const;

private:
    bool stopped() const { return m_stop.load(std::memory_order_relaxed); }
    bool flush(ExportSink &sink);
    void flushIfFull(ExportSink &sink);

    void appendDropTable(const std::string &quotedTable);
    void appendCreateTable(const TOrbMDBTable &table, const std::string &quotedTable);
    void appendIndexKeys(const TOrbMDBIndex &index);
    void appendSeparateIndexes(const TOrbMDBTable &table, const std::string &quotedTable);
    void appendColumnComments(const TOrbMDBTable &table, const std::string &quotedTable);
    bool appendRows(const TOrbMDBTable &table, const std::string &quotedTable, ExportSink &sink,
                    const std::function<void(std::size_t, std::size_t)> &rowProgress);
    void appendRelationship(const TOrbMDBForeignKey &key);
    void appendInlineForeignKey(const TOrbMDBForeignKey &key);
    void appendQuotedNameList(const std::vector<std::string> &names);
    /// An index name made unique across the job ("ix", "ix_1", "ix_2" …).
    std::string registeredIndexName(const std::string &name);

    const TOrbMDBFile &m_file;
    SqlScriptSettings m_settings;
    const std::atomic<bool> &m_stop;
    char m_open;
    char m_close;
    std::string m_schemaPrefix;    ///< quoted schema and "." or empty
    std::string m_sqlServerSchema; ///< single-quoted schema text for SQL Server comments
    IndexNameRegister m_indexNames;
    std::string m_out;
    bool m_failed = false;
};

} // namespace vellum
