#include "export/LosslessSqliteWriter.h"

#include "export/ExportJob.h"
#include "export/IndexNameRegister.h"
#include "export/OutputFile.h"
#include "export/SqliteExport.h"
#include "export/losslessValues.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBTable.h"
#include "sql/SQLConnection.h"
#include "sql/SQLiteAPISocket.h"
#include "sql/sqliteLibrary.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/logging.h"

#include <sys/stat.h>

#include <charconv>
#include <cmath>
#include <limits>
#include <unordered_set>

namespace vellum {

namespace {

constexpr const char *kReasonCreateTableFailed = "Create table failed.";
constexpr const char *kReasonInsertRecordFailed = "Insert record failed.";
constexpr const char *kApproximatedNaN = "NaN floating-point values written as NULL";
constexpr const char *kApproximatedNegativeZero = "negative zeros stored as 0";
constexpr const char *kApproximatedDecimal = "decimals of more than 15 significant digits stored as REAL";

/// SQLITE_STATIC: the bound bytes stay valid until the statement is stepped.
void (*const kStaticBytes)(void *) = nullptr;
/// A valid address for a zero-length blob (a null pointer would bind NULL).
constexpr char kNoBytes[1] = {0};

/// Whether the dataType names one of the integer types.
bool isIntegerType(std::string_view type)
{
    return type == "Byte" || type == "Integer" || type == "Long Integer" || type == "Large Number";
}

/// True when a decimal text keeps its value as SQLite's NUMERIC affinity stores it: an integer
/// within 64 bits (stored as INTEGER), or a number of at most 15 significant digits once the
/// fraction's trailing zeros are dropped (a REAL that prints back as the same decimal).
bool decimalKeptByNumericAffinity(std::string_view text)
{
    std::int64_t integer = 0;
    if (parseSqliteInteger(text, integer))
        return true;
    std::string_view number = text;
    if (number.find_first_of("eE") == std::string_view::npos && number.find('.') != std::string_view::npos) {
        while (!number.empty() && number.back() == '0')
            number.remove_suffix(1);
        if (!number.empty() && number.back() == '.')
            number.remove_suffix(1);
    }
    std::size_t significant = 0;
    bool leading = true;
    for (const char c : number) {
        if (c == 'e' || c == 'E')
            break;
        if (c < '0' || c > '9')
            continue;
        if (leading && c == '0')
            continue;
        leading = false;
        ++significant;
    }
    return significant <= 15 || decimalFitsDouble(number);
}

/// Appends "YYYY-MM-DD HH:MM:SS[.fffffff]" of a cell's "MM/DD/YYYY HH:MM:SS[.fffffff]" text;
/// false (nothing appended) for any other text.
bool assignIsoDateTime(std::string &out, std::string_view text)
{
    if (!parseCellDateTime(text))
        return false;
    out.clear();
    out.append(text.substr(6, 4)).append(1, '-').append(text.substr(0, 2)).append(1, '-').append(text.substr(3, 2));
    out += ' ';
    out.append(text.substr(11));
    return true;
}

/// A prepared statement finalized when it goes.
class Statement {
public:
    Statement() = default;
    ~Statement() { finalize(); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    bool prepare(sqlite3 *db, const std::string &sql)
    {
        finalize();
        return sqliteAPI().sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &m_statement, nullptr) ==
               kSQLiteOK;
    }
    void finalize()
    {
        if (m_statement)
            sqliteAPI().sqlite3_finalize(m_statement);
        m_statement = nullptr;
    }
    sqlite3_stmt *get() const { return m_statement; }

private:
    sqlite3_stmt *m_statement = nullptr;
};

/// The child table of one complex column: its name and what it holds.
struct ChildTable {
    std::size_t column = 0;
    ComplexKind kind = ComplexKind::MultiValue;
    SqliteValueForm valueForm = SqliteValueForm::Text; ///< of multi-value items
    std::string name;
};

} // namespace

SqliteValueForm losslessSqliteValueForm(std::string_view type)
{
    if (type == "Boolean")
        return SqliteValueForm::Boolean;
    if (isIntegerType(type))
        return SqliteValueForm::Integer;
    if (type == "Single" || type == "Double")
        return SqliteValueForm::Real;
    if (type == "Currency" || type == "Numeric")
        return SqliteValueForm::Decimal;
    if (type == "DateTime" || type == "Date/Time Extended")
        return SqliteValueForm::DateTime;
    if (type == "Text" || type == "Memo/Hyperlink" || type == "Replication ID")
        return SqliteValueForm::Text;
    if (type == "Complex Value auto number")
        return SqliteValueForm::ComplexId;
    return SqliteValueForm::Blob; // Binary, OLE and types the reader does not know: their bytes
}

std::string losslessSqliteDeclaredType(std::string_view type, int precision, int scale)
{
    switch (losslessSqliteValueForm(type)) {
    case SqliteValueForm::Boolean:
        return "BOOLEAN";
    case SqliteValueForm::Integer:
    case SqliteValueForm::ComplexId:
        return "INTEGER";
    case SqliteValueForm::Real:
        return "REAL";
    case SqliteValueForm::Decimal:
        if (type == "Currency")
            return "DECIMAL(19,4)";
        return precision > 0 ? formatString("DECIMAL(%d,%d)", precision, std::max(scale, 0)) : "DECIMAL";
    case SqliteValueForm::DateTime:
        return "DATETIME";
    case SqliteValueForm::Text:
        return type == "Replication ID" ? "CHAR(38)" : "TEXT";
    case SqliteValueForm::Blob:
        return "BLOB";
    }
    return "BLOB";
}

std::string losslessSqliteColumnType(const TOrbMDBColumn &column)
{
    return losslessSqliteDeclaredType(column.dataType(), column.precision(), column.scale());
}

std::string losslessSqliteCreateTableStatement(const TOrbMDBTable &table,
                                               const std::vector<std::unique_ptr<TOrbMDBForeignKey>> *foreignKeys,
                                               const std::vector<std::string> &exportedTables)
{
    std::vector<const TOrbMDBColumn *> primaryKey;
    for (const auto &column : table.columns())
        if (column->isPrimaryKey())
            primaryKey.push_back(column.get());
    // One integer key column is declared INTEGER PRIMARY KEY: it becomes the row id, so the
    // table needs no separate key index.
    const TOrbMDBColumn *rowIdColumn =
        primaryKey.size() == 1 && (isIntegerType(primaryKey[0]->dataType())) ? primaryKey[0] : nullptr;

    std::string sql = "CREATE TABLE ";
    appendSqliteQuotedName(sql, table.name());
    sql += " (";
    bool first = true;
    for (const auto &column : table.columns()) {
        sql += first ? "\n\t" : ",\n\t";
        first = false;
        appendSqliteQuotedName(sql, column->name());
        sql += ' ';
        sql += losslessSqliteColumnType(*column);
        if (column.get() == rowIdColumn)
            sql += " PRIMARY KEY";
        else if (column->isPrimaryKey())
            sql += " NOT NULL";
    }
    if (!primaryKey.empty() && !rowIdColumn) {
        sql += ",\n\tPRIMARY KEY (";
        for (std::size_t i = 0; i < primaryKey.size(); ++i) {
            if (i)
                sql += ", ";
            appendSqliteQuotedName(sql, primaryKey[i]->name());
        }
        sql += ')';
    }
    if (foreignKeys) {
        for (const auto &key : *foreignKeys) {
            // A relationship Access does not enforce only documents a join: its rows may break it.
            if (key->referencingTable() != table.name() || !key->enforced() ||
                std::find(exportedTables.begin(), exportedTables.end(), key->referencedTable()) ==
                    exportedTables.end() ||
                key->referencingColumns().empty() ||
                key->referencingColumns().size() != key->referencedColumns().size())
                continue;
            sql += ",\n\tCONSTRAINT ";
            appendSqliteQuotedName(sql, key->name());
            sql += " FOREIGN KEY (";
            for (std::size_t i = 0; i < key->referencingColumns().size(); ++i) {
                if (i)
                    sql += ", ";
                appendSqliteQuotedName(sql, key->referencingColumns()[i]);
            }
            sql += ") REFERENCES ";
            appendSqliteQuotedName(sql, key->referencedTable());
            sql += " (";
            for (std::size_t i = 0; i < key->referencedColumns().size(); ++i) {
                if (i)
                    sql += ", ";
                appendSqliteQuotedName(sql, key->referencedColumns()[i]);
            }
            sql += ") ON UPDATE ";
            sql += key->onUpdateCascade() ? "CASCADE" : "NO ACTION";
            sql += " ON DELETE ";
            sql += key->onDeleteCascade() ? "CASCADE" : key->onDeleteSetNull() ? "SET NULL" : "NO ACTION";
        }
    }
    sql += "\n);";
    return sql;
}

bool parseSqliteInteger(std::string_view text, std::int64_t &value)
{
    const char *begin = text.data();
    const char *end = begin + text.size();
    if (begin != end && *begin == '+')
        ++begin;
    if (begin == end)
        return false;
    const auto [stop, error] = std::from_chars(begin, end, value);
    return error == std::errc() && stop == end;
}

// ---- the run ----

struct LosslessSqliteWriter::Run {
    explicit Run(ExportJob &job) : job(job), options(job.options()) {}

    void run();
    /// Runs statements without results; false with `lastError` set when one fails.
    bool exec(const std::string &sql);
    /// SQLite's message about the last failure of the database handle.
    std::string databaseError() const;
    void exportTable(const ExportEntry &entry, const TOrbMDBTable &table);
    /// Inserts every row of the table and the values of its complex columns; false with
    /// `lastError` set when a statement fails.
    bool insertRows(const TOrbMDBTable &table, const std::vector<ChildTable> &children);
    bool insertChildRows(const TOrbMDBTable &table, const ChildTable &child);
    /// Binds one cell to parameter `index` (1-based) of the table's INSERT.
    int bindCell(sqlite3_stmt *statement, int index, const CellValue &cell, SqliteValueForm form, std::string &buffer,
                 const TOrbMDBTable &table);
    void createIndexes();
    /// A table name not yet used in the database: `base`, else `base_1`, `base_2`, ….
    std::string unusedTableName(const std::string &base);

    ExportJob &job;
    const ExportOptions &options;
    SQLConnection connection{ServerTypeSQLite};
    sqlite3 *db = nullptr;
    IndexNameRegister names{true};
    std::vector<std::string> exportedTables;
    std::unordered_set<std::string> usedTableNames; ///< lower-cased
    std::string lastError;
    /// One text buffer per column for the values that are converted before binding (dates).
    std::vector<std::string> buffers;
    std::vector<CellValue> cells;
};

bool LosslessSqliteWriter::Run::exec(const std::string &sql)
{
    // The handle keeps the message of a failed statement until its next call.
    if (sqliteAPI().sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == kSQLiteOK)
        return true;
    lastError = databaseError();
    return false;
}

std::string LosslessSqliteWriter::Run::databaseError() const
{
    const char *message = db ? sqliteAPI().sqlite3_errmsg(db) : nullptr;
    return message ? message : std::string();
}

std::string LosslessSqliteWriter::Run::unusedTableName(const std::string &base)
{
    std::string name = base;
    for (int n = 1; usedTableNames.count(lowercasedName(name)); ++n)
        name = base + "_" + std::to_string(n);
    usedTableNames.insert(lowercasedName(name));
    names.recordTable(name);
    return name;
}

void LosslessSqliteWriter::Run::run()
{
    const std::string path = job.exportPath();
    // Built under a temporary name beside OUTPUT and renamed over it when complete, exactly as
    // the classic database: anything but a regular file at OUTPUT is refused and left alone.
    OutputFile output;
    if (!output.begin(path, OutputFile::Target::PathOnly, false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), output.errorText().c_str());
        job.logLine(localized(kExportReasonUnableToCreateFile));
        struct stat st {};
        if (stat(path.c_str(), &st) == 0 && !S_ISREG(st.st_mode) && !S_ISDIR(st.st_mode))
            job.logLine(formatObjects("%@: %@", {path, output.errorText()}));
        return;
    }
    connection.setDbFilePath(output.writePath());
    connection.setPassword(options.password);
    connection.setConnectCancelCheck([this] { return job.terminated(); });
    if (const std::optional<std::string> reason = connection.createDbFile(false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), reason->c_str());
        job.logLine(localized(kExportReasonUnableToCreateFile));
        return;
    }
    if (!connection.connect(false)) {
        C_LogError("SQLite export: %s: %s", path.c_str(), connection.getLastErrorMessage().c_str());
        job.logLine(localized("Unable to establish SQLite connection"));
        return;
    }
    const auto *socket = dynamic_cast<const SQLiteAPISocket *>(connection.socket());
    db = socket ? socket->dbHandler() : nullptr;
    // A new file that only appears when complete needs neither a journal nor waits for the
    // disk; the relationships are declared with the tables and checked by nobody while the
    // rows go in, in whatever order the tables come.
    if (!db || !exec("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF; PRAGMA foreign_keys = OFF;")) {
        C_LogError("SQLite export: %s: %s", path.c_str(), db ? lastError.c_str() : "no database handle");
        job.logLine(localized("Unable to establish SQLite connection"));
        connection.disconnect();
        return;
    }

    for (const ExportEntry &entry : job.entries()) {
        exportedTables.push_back(entry.tableName);
        usedTableNames.insert(lowercasedName(entry.tableName));
    }
    job.forEachTable(
        [this](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) { exportTable(entry, table); });
    if (!job.terminated() && options.includeIndexes)
        createIndexes();
    connection.disconnect();
    db = nullptr;
    if (job.terminated())
        return;
    if (!output.commit()) {
        C_LogError("SQLite export: %s: %s", path.c_str(), output.errorText().c_str());
        job.logLine(localized(kExportReasonUnableToWriteFile));
        job.clearSuccesses();
    }
}

void LosslessSqliteWriter::Run::exportTable(const ExportEntry &entry, const TOrbMDBTable &table)
{
    names.recordTable(table.name());
    const std::string create = losslessSqliteCreateTableStatement(
        table, options.includeForeignKeys ? &job.file().allForeignKeys() : nullptr, exportedTables);
    if (!exec(create)) {
        job.logFailure(entry.tableName, kReasonCreateTableFailed, lastError);
        return;
    }
    // A child table `<table>_<column>` for each complex column whose kind is known.
    std::vector<ChildTable> children;
    for (const auto &[column, values] : table.complexColumns()) {
        if (!values || column >= table.columns().size())
            continue;
        ChildTable child;
        child.column = column;
        child.kind = values->kind();
        if (!values->valueType().empty())
            child.valueForm = losslessSqliteValueForm(values->valueType());
        child.name = unusedTableName(table.name() + "_" + table.columns()[column]->name());
        std::string sql = "CREATE TABLE " + sqliteQuotedName(child.name) + " (\n\t\"parent_id\" INTEGER NOT NULL,";
        switch (child.kind) {
        case ComplexKind::MultiValue:
            // The items' own type where the reader knows it, else their text.
            sql += "\n\t\"value\" " +
                   (values->valueType().empty() ? std::string("TEXT")
                                                : losslessSqliteDeclaredType(values->valueType(), -1, -1)) +
                   "\n);";
            break;
        case ComplexKind::Attachment:
            sql += "\n\t\"file_name\" TEXT,\n\t\"file_type\" TEXT,\n\t\"data\" BLOB\n);";
            break;
        case ComplexKind::VersionHistory:
            sql += "\n\t\"value\" TEXT,\n\t\"changed\" DATETIME\n);";
            break;
        }
        if (!exec(sql)) {
            job.logFailure(entry.tableName, kReasonCreateTableFailed, lastError);
            exec("DROP TABLE " + sqliteQuotedName(table.name()) + ";");
            for (const ChildTable &made : children)
                exec("DROP TABLE " + sqliteQuotedName(made.name) + ";");
            return;
        }
        children.push_back(std::move(child));
    }

    bool failed = false;
    if (options.exportData && !job.terminated()) {
        // One transaction per table: its pages are written once, at the commit.
        failed = !exec("BEGIN;");
        if (!failed) {
            failed = !insertRows(table, children);
            const std::string error = lastError;
            // With the journal off a rollback is undefined; what went in is committed and the
            // table dropped below.
            if (!exec("COMMIT;") && !failed) {
                failed = true;
            } else if (failed) {
                lastError = error;
            }
        }
        if (failed && !job.terminated()) {
            job.logFailure(entry.tableName, kReasonInsertRecordFailed, lastError);
            for (const ChildTable &child : children)
                exec("DROP TABLE " + sqliteQuotedName(child.name) + ";");
            exec("DROP TABLE " + sqliteQuotedName(table.name()) + ";"); // its own outcome is not checked
        }
    }
    if (job.terminated())
        job.logFailure(entry.tableName, kExportReasonTerminated);
    else if (!failed)
        job.addSuccess();
}

int LosslessSqliteWriter::Run::bindCell(sqlite3_stmt *statement, int index, const CellValue &cell, SqliteValueForm form,
                                        std::string &buffer, const TOrbMDBTable &table)
{
    const SQLiteAPI &api = sqliteAPI();
    if (cell.isNull())
        return api.sqlite3_bind_null(statement, index);
    if (cell.isBlob()) {
        const auto &bytes = cell.blob->data();
        return api.sqlite3_bind_blob(statement, index,
                                     bytes.empty() ? static_cast<const void *>(kNoBytes) : bytes.data(),
                                     static_cast<int>(bytes.size()), kStaticBytes);
    }
    const std::string_view text = cell.text;
    switch (form) {
    case SqliteValueForm::Boolean:
        if (text == "1" || text == "0")
            return api.sqlite3_bind_int64(statement, index, text == "1" ? 1 : 0);
        break;
    case SqliteValueForm::Integer:
    case SqliteValueForm::ComplexId: {
        std::int64_t value = 0;
        if (parseSqliteInteger(text, value))
            return api.sqlite3_bind_int64(statement, index, value);
        break;
    }
    case SqliteValueForm::Real: {
        if (text == "NaN") {
            job.countApproximation(table.name(), kApproximatedNaN);
            return api.sqlite3_bind_null(statement, index);
        }
        if (text == "Infinity" || text == "-Infinity")
            return api.sqlite3_bind_double(statement, index,
                                           text[0] == '-' ? -std::numeric_limits<double>::infinity()
                                                          : std::numeric_limits<double>::infinity());
        double value = 0;
        const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (error == std::errc() && stop == text.data() + text.size()) {
            // A REAL column stores a whole number as an integer, which drops the sign of -0.
            if (value == 0 && std::signbit(value))
                job.countApproximation(table.name(), kApproximatedNegativeZero);
            return api.sqlite3_bind_double(statement, index, value);
        }
        break;
    }
    case SqliteValueForm::Decimal:
        if (!decimalKeptByNumericAffinity(text))
            job.countApproximation(table.name(), kApproximatedDecimal);
        break;
    case SqliteValueForm::DateTime:
        if (assignIsoDateTime(buffer, text))
            return api.sqlite3_bind_text(statement, index, buffer.data(), static_cast<int>(buffer.size()),
                                         kStaticBytes);
        break;
    case SqliteValueForm::Text:
        break;
    case SqliteValueForm::Blob:
        return api.sqlite3_bind_blob(statement, index, text.data(), static_cast<int>(text.size()), kStaticBytes);
    }
    // The text as it stands: the cell outlives the step.
    return api.sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), kStaticBytes);
}

bool LosslessSqliteWriter::Run::insertRows(const TOrbMDBTable &table, const std::vector<ChildTable> &children)
{
    const SQLiteAPI &api = sqliteAPI();
    const auto &columns = table.columns();
    const std::size_t rowCount = table.rowCount();
    if (rowCount > 0 && !columns.empty()) {
        std::string sql = "INSERT INTO " + sqliteQuotedName(table.name()) + " VALUES (";
        for (std::size_t c = 0; c < columns.size(); ++c)
            sql += c ? ", ?" : "?";
        sql += ");";
        Statement insert;
        if (!insert.prepare(db, sql)) {
            lastError = databaseError();
            return false;
        }
        std::vector<SqliteValueForm> forms;
        for (const auto &column : columns)
            forms.push_back(losslessSqliteValueForm(column->dataType()));
        buffers.resize(columns.size());
        sqlite3_stmt *statement = insert.get();
        for (std::size_t row = 0; row < rowCount; ++row) {
            if (job.terminated())
                return true;
            table.rowCells(row, cells);
            for (std::size_t c = 0; c < columns.size(); ++c) {
                if (bindCell(statement, static_cast<int>(c + 1), cells[c], forms[c], buffers[c], table) != kSQLiteOK) {
                    lastError = databaseError();
                    return false;
                }
            }
            const int status = api.sqlite3_step(statement);
            if (status != kSQLiteDone) {
                // reset gives the statement's own message for a failed step.
                api.sqlite3_reset(statement);
                lastError = databaseError();
                return false;
            }
            api.sqlite3_reset(statement);
            job.reportRowProgress(row + 1, rowCount);
        }
    }
    for (const ChildTable &child : children)
        if (job.terminated() || !insertChildRows(table, child))
            return job.terminated();
    return true;
}

bool LosslessSqliteWriter::Run::insertChildRows(const TOrbMDBTable &table, const ChildTable &child)
{
    const SQLiteAPI &api = sqliteAPI();
    const char *placeholders = child.kind == ComplexKind::Attachment   ? "(?, ?, ?, ?);"
                               : child.kind == ComplexKind::MultiValue ? "(?, ?);"
                                                                       : "(?, ?, ?);";
    Statement insert;
    if (!insert.prepare(db, "INSERT INTO " + sqliteQuotedName(child.name) + " VALUES " + placeholders)) {
        lastError = databaseError();
        return false;
    }
    sqlite3_stmt *statement = insert.get();
    std::string date;
    const auto step = [&]() {
        const int status = api.sqlite3_step(statement);
        api.sqlite3_reset(statement);
        if (status == kSQLiteDone)
            return true;
        lastError = databaseError();
        return false;
    };
    const auto bindText = [&](int index, std::string_view text) {
        return api.sqlite3_bind_text(statement, index, text.empty() ? kNoBytes : text.data(),
                                     static_cast<int>(text.size()), kStaticBytes);
    };
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        const CellValue cell = table.cell(row, child.column);
        std::int64_t id = 0;
        if (!cell.complex || !cell.isText() || !parseSqliteInteger(cell.text, id))
            continue;
        api.sqlite3_bind_int64(statement, 1, id);
        switch (child.kind) {
        case ComplexKind::MultiValue:
            for (const std::string &value : cell.complex->values()) {
                if (bindCell(statement, 2, CellValue::ofText(value), child.valueForm, date, table) != kSQLiteOK) {
                    lastError = databaseError();
                    return false;
                }
                if (!step())
                    return false;
            }
            break;
        case ComplexKind::Attachment:
            for (const TOrbComplexValue::Attachment &attachment : cell.complex->attachments()) {
                bindText(2, attachment.fileName);
                bindText(3, attachment.fileType);
                const auto &bytes = attachment.data->data();
                api.sqlite3_bind_blob(statement, 4, bytes.empty() ? static_cast<const void *>(kNoBytes) : bytes.data(),
                                      static_cast<int>(bytes.size()), kStaticBytes);
                if (!step())
                    return false;
            }
            break;
        case ComplexKind::VersionHistory:
            for (const TOrbComplexValue::Version &version : cell.complex->versions()) {
                bindText(2, version.value);
                if (assignIsoDateTime(date, version.date))
                    bindText(3, date);
                else if (version.date.empty())
                    api.sqlite3_bind_null(statement, 3);
                else
                    bindText(3, version.date);
                if (!step())
                    return false;
            }
            break;
        }
    }
    return true;
}

void LosslessSqliteWriter::Run::createIndexes()
{
    // A unique index that the rows break fails half-built and must be rolled back: from here on
    // the journal is kept (in memory; an index only adds pages, which need no journal entry).
    exec("PRAGMA journal_mode = MEMORY;");
    for (const ExportEntry &entry : job.entries()) {
        if (job.terminated())
            break;
        const TOrbMDBTable *table = job.file().tableNamed(entry.tableName);
        if (!table || table->indices().empty())
            continue;
        const std::string quotedTable = sqliteQuotedName(table->name());
        for (const auto &index : table->indices()) {
            if (job.terminated())
                break;
            if (index->isPrimaryKey() || index->keys().empty())
                continue; // already part of the table
            const std::string name = names.uniqueIndexName(index->name());
            if (!exec(sqliteCreateIndexStatement(*index, name, quotedTable))) {
                const std::string reason =
                    formatObjects(localized("Create index %@ for table %@ failed."), {index->name(), table->name()});
                job.logLine(formatObjects("%@: %@", {localized("Failed"), reason}) + "\n    " + lastError);
            }
        }
        if (job.terminated())
            job.logFailure(entry.tableName, kExportReasonTerminated);
    }
}

LosslessSqliteWriter::LosslessSqliteWriter(ExportJob &job) : m_run(std::make_unique<Run>(job)) {}

LosslessSqliteWriter::~LosslessSqliteWriter() = default;

void LosslessSqliteWriter::run()
{
    m_run->run();
}

} // namespace vellum
