#include "export/SqliteExport.h"

#include "export/ExportRoutines.h"
#include "export/IndexNameRegister.h"
#include "export/LosslessSqliteWriter.h"
#include "export/OutputFile.h"
#include "export/SqlTypeMapping.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBTable.h"
#include "model/mdbTypeNames.h"
#include "sql/SQLConnection.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/logging.h"

#include <sys/stat.h>

namespace vellum {

namespace {

constexpr const char *kForeignKeysOff = "PRAGMA foreign_keys = false;";
constexpr const char *kReasonCreateTableFailed = "Create table failed.";
constexpr const char *kReasonInsertRecordFailed = "Insert record failed.";

/// The column types whose text values are written as quoted texts.
bool isQuotedSqliteType(std::string_view type)
{
    const ColumnValueClass valueClass = columnValueClassForDataType(type);
    return isQuotedValueClass(valueClass) || valueClass == ColumnValueClass::Guid;
}

/// Whether a text is a plain decimal number SQLite reads as such: sign, digits with at most one
/// point, an optional exponent.
bool isSqlNumber(std::string_view text)
{
    std::size_t i = 0;
    const auto digits = [&] {
        const std::size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i;
        return i - start;
    };
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    std::size_t mantissa = digits();
    if (i < text.size() && text[i] == '.') {
        ++i;
        mantissa += digits();
    }
    if (mantissa == 0)
        return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '-' || text[i] == '+'))
            ++i;
        if (digits() == 0)
            return false;
    }
    return i == text.size();
}

bool forbidsZeroLength(const TOrbMDBColumn &column)
{
    return column.allowZeroLength() && *column.allowZeroLength() == "NO";
}

/// Appends the quoted form of each name, separated by ", ".
void appendQuotedNames(std::string &out, const std::vector<std::string> &names)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i)
            out += ", ";
        appendSqliteQuotedName(out, names[i]);
    }
}

/// Runs the statements of one export through its connection.
class SqliteExportRun {
public:
    explicit SqliteExportRun(ExportJob &job) : m_job(job), m_options(job.options()) {}

    void run();

private:
    /// Runs one statement; true when the connection reports no error afterwards.
    bool execute(std::string_view statement)
    {
        m_connection.queryString(statement);
        return m_connection.getLastErrorMessage().empty();
    }
    void exportTable(const ExportEntry &entry, const TOrbMDBTable &table);
    /// Inserts every row inside one transaction; false (and the table dropped) when one fails.
    bool insertRows(const ExportEntry &entry, const TOrbMDBTable &table, const std::string &quotedTable);
    void createIndexes();

    ExportJob &m_job;
    const ExportOptions &m_options;
    SQLConnection m_connection{ServerTypeSQLite};
    IndexNameRegister m_names{true};
    std::string m_query;
};

void SqliteExportRun::run()
{
    const std::string path = m_job.exportPath();
    // The database is built under a temporary name beside OUTPUT and renamed over it when
    // complete: an existing regular file is replaced only then, and anything else at OUTPUT (a
    // folder, a device, a pipe) is refused and left alone.
    OutputFile output;
    if (!output.begin(path, OutputFile::Target::PathOnly, false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), output.errorText().c_str());
        m_job.logLine(localized(kExportReasonUnableToCreateFile));
        // A device or pipe is a refusal of its own, new to users who expect it to be replaced.
        struct stat st {};
        if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode))
            m_job.logLine(formatObjects("%@: %@", {path, output.errorText()}));
        return;
    }
    const std::string &building = output.writePath();
    m_connection.setDbFilePath(building);
    m_connection.setPassword(m_options.password);
    m_connection.setConnectCancelCheck([this] { return m_job.terminated(); });

    if (const std::optional<std::string> reason = m_connection.createDbFile(false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), reason->c_str());
        m_job.logLine(localized(kExportReasonUnableToCreateFile));
        return;
    }
    if (!m_connection.connect(false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), m_connection.getLastErrorMessage().c_str());
        m_job.logLine(localized("Unable to establish SQLite connection"));
        return;
    }
    if (!execute(kForeignKeysOff)) {
        m_job.logLine(formatObjects(localized("Have error when executing query: %@"), {kForeignKeysOff}));
        m_connection.disconnect();
        return;
    }

    m_job.forEachTable(
        [this](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) { exportTable(entry, table); });
    if (!m_job.terminated() && m_options.includeIndexes)
        createIndexes();

    // The closing statement repeats the opening one word for word.
    if (!execute(kForeignKeysOff))
        m_job.logLine(formatObjects(localized("Have error when executing query: %@"), {kForeignKeysOff}));
    m_connection.disconnect();
    // A stopped export leaves no database behind, not even its complete tables; OUTPUT keeps
    // what it held before.
    if (m_job.terminated())
        return;
    if (!output.commit()) {
        C_LogError("SQLite export: %s: %s", path.c_str(), output.errorText().c_str());
        m_job.logLine(localized(kExportReasonUnableToWriteFile));
        m_job.clearSuccesses();
    }
}

void SqliteExportRun::exportTable(const ExportEntry &entry, const TOrbMDBTable &table)
{
    m_names.recordTable(table.name());
    m_query =
        sqliteCreateTableStatement(table, m_options.includeForeignKeys ? &m_job.file().allForeignKeys() : nullptr);
    if (!execute(m_query)) {
        m_job.logFailure(entry.tableName, kReasonCreateTableFailed, m_connection.getLastErrorMessage());
        return;
    }
    bool failed = false;
    if (m_options.exportData)
        failed = !insertRows(entry, table, sqliteQuotedName(table.name()));
    if (m_job.terminated())
        m_job.logFailure(entry.tableName, kExportReasonTerminated);
    else if (!failed)
        m_job.addSuccess();
}

bool SqliteExportRun::insertRows(const ExportEntry &entry, const TOrbMDBTable &table, const std::string &quotedTable)
{
    const std::size_t rowCount = table.rowCount();
    if (rowCount == 0)
        return true;
    std::string head = "INSERT INTO " + quotedTable + " (";
    for (std::size_t c = 0; c < table.columns().size(); ++c) {
        if (c)
            head += ", ";
        appendSqliteQuotedName(head, table.columns()[c]->name());
    }
    head += ") VALUES (";

    // One transaction per table: SQLite then writes the table once instead of once per row.
    // Should BEGIN fail, the rows still go in one statement at a time.
    const bool inTransaction = execute("BEGIN TRANSACTION;");
    bool failed = false;
    for (std::size_t row = 0; row < rowCount && !m_job.terminated(); ++row) {
        buildSqliteInsertStatement(m_query, head, table, row);
        if (!execute(m_query)) {
            failed = true;
            break;
        }
        m_job.reportRowProgress(row + 1, rowCount);
    }
    if (inTransaction && !failed && !execute("COMMIT;"))
        failed = true;
    if (!failed)
        return true;
    const std::string error = m_connection.getLastErrorMessage();
    if (inTransaction)
        execute("ROLLBACK;");
    m_job.logFailure(entry.tableName, kReasonInsertRecordFailed, error);
    execute("DROP TABLE " + quotedTable + ";"); // its own outcome is not checked
    return false;
}

void SqliteExportRun::createIndexes()
{
    for (const ExportEntry &entry : m_job.entries()) {
        if (m_job.terminated())
            break;
        const TOrbMDBTable *table = m_job.file().tableNamed(entry.tableName);
        if (!table || table->indices().empty())
            continue;
        const std::string quotedTable = sqliteQuotedName(table->name());
        for (const auto &index : table->indices()) {
            if (m_job.terminated())
                break;
            if (index->isPrimaryKey())
                continue; // already part of the table
            const std::string name = m_names.uniqueIndexName(index->name());
            if (!execute(sqliteCreateIndexStatement(*index, name, quotedTable))) {
                const std::string reason =
                    formatObjects(localized("Create index %@ for table %@ failed."), {index->name(), table->name()});
                m_job.logLine(formatObjects("%@: %@", {localized("Failed"), reason}) + "\n    " +
                              m_connection.getLastErrorMessage());
            }
        }
        if (m_job.terminated())
            m_job.logFailure(entry.tableName, kExportReasonTerminated);
    }
}

} // namespace

void appendSqliteQuotedName(std::string &out, std::string_view name)
{
    out += '"';
    for (std::size_t start = 0;;) {
        const std::size_t quote = name.find('"', start);
        out.append(name.substr(start, quote == std::string_view::npos ? std::string_view::npos : quote + 1 - start));
        if (quote == std::string_view::npos)
            break;
        out += '"';
        start = quote + 1;
    }
    out += '"';
}

std::string sqliteQuotedName(std::string_view name)
{
    std::string out;
    out.reserve(name.size() + 2);
    appendSqliteQuotedName(out, name);
    return out;
}

std::string sqliteCreateTableStatement(const TOrbMDBTable &table,
                                       const std::vector<std::unique_ptr<TOrbMDBForeignKey>> *foreignKeys)
{
    std::unordered_map<std::string, std::string> quotedColumns;
    std::vector<std::string> primaryKey;
    std::string sql = "CREATE TABLE " + sqliteQuotedName(table.name()) + " (";
    bool first = true;
    for (const auto &column : table.columns()) {
        const std::string quoted = sqliteQuotedName(column->name());
        quotedColumns.emplace(column->name(), quoted);
        if (!first)
            sql += ",";
        first = false;
        sql += "\n\t" + quoted + " " + convertMDBTypeToTargetType(column->dataType(), ServerTypeSQLite);
        // The zero-length property, not the required property, decides NOT NULL here.
        if (forbidsZeroLength(*column) || column->isPrimaryKey())
            sql += " NOT NULL";
        if (column->isPrimaryKey())
            primaryKey.push_back(quoted);
    }
    if (!primaryKey.empty())
        sql += ",\n\tPRIMARY KEY (" + join(primaryKey, ", ") + ")";
    if (foreignKeys) {
        for (const auto &key : *foreignKeys) {
            if (key->referencingTable() != table.name())
                continue;
            sql += ",\n\tCONSTRAINT " + sqliteQuotedName(key->name()) + " FOREIGN KEY (";
            for (std::size_t i = 0; i < key->referencingColumns().size(); ++i) {
                const std::string &column = key->referencingColumns()[i];
                const auto quoted = quotedColumns.find(column);
                sql += (i ? ", " : "") + (quoted != quotedColumns.end() ? quoted->second : sqliteQuotedName(column));
            }
            sql += ") REFERENCES " + sqliteQuotedName(key->referencedTable()) + " (";
            appendQuotedNames(sql, key->referencedColumns());
            sql += formatString(") ON UPDATE %s ON DELETE %s", key->onUpdateCascade() ? "CASCADE" : "SET NULL",
                                key->onDeleteCascade() ? "CASCADE" : "SET NULL");
        }
    }
    sql += "\n);";
    return sql;
}

void appendSqliteValueLiteral(std::string &out, const CellValue &value, const TOrbMDBColumn &column)
{
    if (appendNulTextAsBlob(out, value))
        return;
    if (value.isText()) {
        // Numbers, booleans and the like are held as text and go in bare; a text that is not a
        // number (which the decoders do not produce for those types) is quoted so that the
        // statement stays valid.
        if (isQuotedSqliteType(column.dataType()) || !isSqlNumber(value.text))
            appendSqlQuotedText(out, value.text);
        else
            out += value.text;
    } else if (value.isBlob()) {
        appendSqlBlobValue(out, value.blob->data().data(), value.blob->data().size());
    } else {
        // A missing value in a column that forbids zero-length text becomes an empty text.
        out += forbidsZeroLength(column) ? "\"\"" : "null";
    }
}

void buildSqliteInsertStatement(std::string &out, std::string_view insertHead, const TOrbMDBTable &table,
                                std::size_t row)
{
    out.assign(insertHead);
    const auto &columns = table.columns();
    thread_local std::vector<CellValue> cells; // reused across the rows of an export
    table.rowCells(row, cells);
    for (std::size_t c = 0; c < columns.size(); ++c) {
        if (c)
            out += ", ";
        appendSqliteValueLiteral(out, cells[c], *columns[c]);
    }
    out += ");";
}

std::string sqliteCreateIndexStatement(const TOrbMDBIndex &index, std::string_view name, std::string_view quotedTable)
{
    std::string sql = index.isUnique() ? "CREATE UNIQUE INDEX " : "CREATE INDEX ";
    appendSqliteQuotedName(sql, name);
    sql += " ON ";
    sql += quotedTable;
    sql += " (\n\t";
    const auto &keys = index.keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i)
            sql += ",\n\t";
        appendSqliteQuotedName(sql, keys[i].name);
        sql += keys[i].ascending ? " ASC" : " DESC";
    }
    sql += "\n);";
    return sql;
}

void exportSQLiteThread(ExportJob &job)
{
    if (job.options().lossless) {
        LosslessSqliteWriter(job).run();
        return;
    }
    SqliteExportRun(job).run();
}

} // namespace vellum
