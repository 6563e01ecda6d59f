#pragma once

#include "export/IndexNameRegister.h"
#include "export/SqlScriptWriter.h"
#include "export/losslessDialects.h"
#include "sql/ServerType.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellum {

class ExportSink;
class TOrbMDBFile;
class TOrbMDBForeignKey;
class TOrbMDBTable;

/// Writes SQL scripts that load into their target without errors and keep every value: types
/// that hold each Access type exactly, literals in the target's own forms (ISO dates, binary
/// literals, Unicode text, floating-point text that reads back bit for bit), each table's rows
/// in one transaction with multi-row INSERTs where the target has them, complex columns as an
/// array (PostgreSQL multi-values) or a child table `<table>_<column>`, indexes after the data,
/// and only the relationships Access enforces, added after the data of every table. What a
/// target cannot hold is written in its least lossy form and reported through `approximate`.
/// One writer serves one export job; runs on the export worker thread.
class LosslessSqlWriter {
public:
    /// Receives (table, what, count) for values written approximately.
    using ApproximationSink = std::function<void(std::string_view, std::string_view, std::size_t)>;

    LosslessSqlWriter(const TOrbMDBFile &file, const SqlScriptSettings &settings, const std::atomic<bool> &stop,
                      ApproximationSink approximate = {});

    /// Begins a new script on `sink` with the dialect's session settings.
    [[nodiscard]] bool writePrologue(ExportSink &sink);
    /// The dialect's closing statements.
    [[nodiscard]] bool writeEpilogue(ExportSink &sink);
    /// Writes one table (and its complex columns' child tables): structure, data, indexes and,
    /// for one script per table, its relationships.
    [[nodiscard]] bool writeTable(const TOrbMDBTable &table, ExportSink &sink,
                                  const std::function<void(std::size_t, std::size_t)> &rowProgress = {});
    /// The end of a single script: the enforced relationships between the written tables.
    [[nodiscard]] bool writeSingleScriptEnd(const std::vector<const TOrbMDBTable *> &writtenTables, ExportSink &sink);

    /// A name quoted for the dialect.
    std::string quoteName(std::string_view name) const;

private:
    struct ChildTable;

    bool stopped() const { return m_stop.load(std::memory_order_relaxed); }
    bool flush(ExportSink &sink);
    void flushIfFull(ExportSink &sink);
    void endStatement();
    void approximate(const std::string &table, LosslessApproximation approximation);

    std::string qualified(std::string_view name) const { return m_schemaPrefix + quoteName(name); }
    void appendDropTable(const std::string &name);
    void appendCreateTable(const TOrbMDBTable &table);
    void appendChildTables(const TOrbMDBTable &table, std::vector<ChildTable> &children);
    void appendComments(const TOrbMDBTable &table);
    bool appendRows(const TOrbMDBTable &table, const std::vector<ChildTable> &children, ExportSink &sink,
                    const std::function<void(std::size_t, std::size_t)> &rowProgress);
    void appendIndexes(const TOrbMDBTable &table);
    void appendRelationship(const TOrbMDBForeignKey &key);
    bool isArrayColumn(const TOrbMDBTable &table, std::size_t column) const;
    /// The name of a complex column's child table, distinct from the file's tables.
    std::string childTableName(const TOrbMDBTable &table, std::size_t column) const;
    bool writesRelationship(const TOrbMDBForeignKey &key) const;
    /// The referenced columns are those of a primary key or a unique index the data keeps.
    bool referencesUniqueKey(const TOrbMDBForeignKey &key) const;
    /// Every referencing row of the data finds its referenced row.
    bool dataKeepsRelationship(const TOrbMDBForeignKey &key) const;

    const TOrbMDBFile &m_file;
    SqlScriptSettings m_settings;
    ServerType m_dialect;
    const std::atomic<bool> &m_stop;
    ApproximationSink m_approximate;
    std::string m_schemaPrefix;
    IndexNameRegister m_indexNames;
    /// Whether a unique index ("table\x1findex") holds no duplicate keys, once computed.
    mutable std::unordered_map<std::string, bool> m_uniqueIndexes;
    std::string m_out;
    bool m_failed = false;
};

} // namespace vellum
