#include "export/LosslessSqlWriter.h"

#include "export/ExportSink.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBTable.h"
#include "util/format.h"

#include <algorithm>
#include <unordered_set>

namespace vellum {

namespace {

constexpr std::size_t kFlushBytes = 1 << 20;
/// Bounds of one multi-row INSERT: rows and bytes.
constexpr std::size_t kRowsPerInsert = 500;
constexpr std::size_t kBytesPerInsert = 512 * 1024;
/// MySQL: the bytes of a row beyond which its long columns go off the page.
constexpr std::size_t kMySqlRowBytes = 8000;
/// SQL Server: rows per batch (between GO lines).
constexpr std::size_t kRowsPerBatch = 1000;

bool multiRowInserts(ServerType dialect)
{
    return dialect == ServerTypePostgreSQL || dialect == ServerTypeMySQL || dialect == ServerTypeSQLite;
}

/// `text` between single quotes with quotes doubled (identifiers inside Oracle's dynamic SQL).
std::string singleQuoted(std::string_view text)
{
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += c;
        out += c;
    }
    return out + "'";
}

/// Collects the rows of one table's INSERT statements: multi-row statements bounded in rows and
/// bytes where the target has them, one statement a row elsewhere.
class InsertBatcher {
public:
    InsertBatcher(std::string &out, ServerType dialect, std::string head)
        : m_out(out), m_dialect(dialect), m_head(std::move(head))
    {
    }

    /// Adds one row of literals "(…)"; `oracleBlock` holds the PL/SQL declarations and
    /// statements a row with large Oracle binary values needs.
    void addRow(const std::string &values, const OracleLobBuilder *oracleBlock = nullptr)
    {
        if (multiRowInserts(m_dialect)) {
            if (m_rows == 0) {
                m_out += m_head;
                m_out += '\n';
                m_start = m_out.size();
            } else {
                m_out += ",\n";
            }
            m_out += values;
            if (++m_rows >= kRowsPerInsert || m_out.size() - m_start >= kBytesPerInsert)
                finish();
            return;
        }
        if (oracleBlock && !oracleBlock->variables.empty()) {
            m_out += "DECLARE\n";
            for (const std::string &name : oracleBlock->variables)
                m_out += "  " + name + " BLOB;\n";
            m_out += "BEGIN\n" + oracleBlock->statements + "  " + m_head + " " + values + ";\nEND;\n/\n";
        } else {
            m_out += m_head + " " + values + ";\n";
        }
        if (m_dialect == ServerTypeSQLServer && ++m_rows % kRowsPerBatch == 0)
            m_out += "GO\n";
    }

    /// Ends an open multi-row statement.
    void finish()
    {
        if (multiRowInserts(m_dialect) && m_rows > 0)
            m_out += ";\n";
        if (multiRowInserts(m_dialect))
            m_rows = 0;
    }

private:
    std::string &m_out;
    ServerType m_dialect;
    std::string m_head;
    std::size_t m_rows = 0;
    std::size_t m_start = 0;
};

/// True when two rows of `table` share the key of `index` (rows with a null key column
/// aside, as SQL unique indexes take them): a damaged file can hold such rows under a unique
/// index, which no target would then create.
bool hasDuplicateKeys(const TOrbMDBTable &table, const TOrbMDBIndex &index)
{
    std::vector<std::size_t> positions;
    for (const auto &key : index.keys()) {
        const auto position = table.columnIndex(key.name);
        if (!position)
            return false;
        positions.push_back(*position);
    }
    std::unordered_set<std::string> seen;
    seen.reserve(table.rowCount());
    std::string key;
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        key.clear();
        bool null = false;
        for (std::size_t position : positions) {
            const CellValue cell = table.cell(row, position);
            if (cell.isNull()) {
                null = true;
                break;
            }
            if (cell.isBlob() && cell.blob)
                key.append(reinterpret_cast<const char *>(cell.blob->data().data()), cell.blob->data().size());
            else
                key.append(cell.text);
            key += '\x1f';
        }
        if (!null && !seen.insert(key).second)
            return true;
    }
    return false;
}

const char *beginTransaction(ServerType dialect)
{
    switch (dialect) {
    case ServerTypeMySQL:
        return "START TRANSACTION;\n";
    case ServerTypeSQLServer:
        return "BEGIN TRANSACTION;\n";
    case ServerTypeOracle:
        return ""; // a transaction begins with the first statement
    default:
        return "BEGIN;\n";
    }
}

const char *commitTransaction(ServerType dialect)
{
    return dialect == ServerTypeSQLServer ? "COMMIT TRANSACTION;\nGO\n" : "COMMIT;\n";
}

} // namespace

/// A complex column's child table `<table>_<column>`.
struct LosslessSqlWriter::ChildTable {
    std::size_t column = 0;
    ComplexKind kind = ComplexKind::MultiValue;
    std::string name;
};

LosslessSqlWriter::LosslessSqlWriter(const TOrbMDBFile &file, const SqlScriptSettings &settings,
                                     const std::atomic<bool> &stop, ApproximationSink approximate)
    : m_file(file), m_settings(settings), m_dialect(settings.dialect), m_stop(stop),
      m_approximate(std::move(approximate)), m_indexNames(true)
{
    if ((m_dialect == ServerTypePostgreSQL || m_dialect == ServerTypeOracle || m_dialect == ServerTypeSQLServer) &&
        !m_settings.schemaName.empty())
        m_schemaPrefix = quoteName(m_settings.schemaName) + ".";
    // Tables and indexes share one namespace in most targets: no index may take the name of a
    // table of the file, whether it comes before or after the index in the script.
    for (const auto &table : m_file.tables()) {
        m_indexNames.recordTable(table->name());
        for (const auto &[position, values] : table->complexColumns())
            if (position < table->columns().size())
                m_indexNames.recordTable(childTableName(*table, position));
    }
}

std::string LosslessSqlWriter::quoteName(std::string_view name) const
{
    char open = '"', close = '"';
    if (m_dialect == ServerTypeMySQL)
        open = close = '`';
    else if (m_dialect == ServerTypeSQLServer)
        open = '[', close = ']';
    std::string out;
    out.reserve(name.size() + 2);
    out += open;
    for (char c : name) {
        if (c == close)
            out += c;
        out += c;
    }
    out += close;
    return out;
}

bool LosslessSqlWriter::flush(ExportSink &sink)
{
    if (!m_failed && !m_out.empty() && !sink.write(m_out))
        m_failed = true;
    m_out.clear();
    return !m_failed;
}

void LosslessSqlWriter::flushIfFull(ExportSink &sink)
{
    if (m_out.size() >= kFlushBytes)
        flush(sink);
}

void LosslessSqlWriter::endStatement()
{
    m_out += m_dialect == ServerTypeSQLServer ? ";\nGO\n" : ";\n";
}

void LosslessSqlWriter::approximate(const std::string &table, LosslessApproximation approximation)
{
    if (approximation != LosslessApproximation::None && m_approximate)
        m_approximate(table, losslessApproximationText(approximation), 1);
}

bool LosslessSqlWriter::writePrologue(ExportSink &sink)
{
    m_out.clear();
    m_failed = false;
    switch (m_dialect) {
    case ServerTypePostgreSQL:
        m_out += "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n\n";
        break;
    case ServerTypeMySQL:
        m_out += "SET NAMES utf8mb4;\nSET FOREIGN_KEY_CHECKS = 0;\n\n";
        break;
    case ServerTypeSQLite:
        m_out += "PRAGMA foreign_keys = OFF;\n\n";
        break;
    case ServerTypeSQLServer:
        m_out += "SET NOCOUNT ON;\nGO\n\n";
        break;
    case ServerTypeOracle:
        // SQL*Plus: "&" is text, not a substitution variable.
        m_out += "SET DEFINE OFF\n\n";
        break;
    default:
        break;
    }
    return flush(sink);
}

bool LosslessSqlWriter::writeEpilogue(ExportSink &sink)
{
    if (m_dialect == ServerTypeMySQL)
        m_out += "SET FOREIGN_KEY_CHECKS = 1;\n";
    else if (m_dialect == ServerTypeSQLite)
        m_out += "PRAGMA foreign_keys = ON;\n";
    return flush(sink);
}

void LosslessSqlWriter::appendDropTable(const std::string &name)
{
    switch (m_dialect) {
    case ServerTypeOracle:
        m_out += "BEGIN\n  EXECUTE IMMEDIATE " +
                 singleQuoted("DROP TABLE " + qualified(name) + " CASCADE CONSTRAINTS") +
                 ";\nEXCEPTION\n  WHEN OTHERS THEN\n    IF SQLCODE != -942 THEN\n      RAISE;\n    END IF;\nEND;\n/\n";
        return;
    case ServerTypePostgreSQL:
        m_out += "DROP TABLE IF EXISTS " + qualified(name) + " CASCADE";
        break;
    default:
        m_out += "DROP TABLE IF EXISTS " + qualified(name);
        break;
    }
    endStatement();
}

std::string LosslessSqlWriter::childTableName(const TOrbMDBTable &table, std::size_t column) const
{
    // "<table>_<column>", with "_1", "_2" … added while a table of the file has that name (a
    // file may list the hidden tables of its complex values under such names).
    const std::string base = table.name() + "_" + table.columns()[column]->name();
    std::string name = base;
    for (int n = 1;; ++n) {
        const std::string lower = lowercasedName(name);
        const bool taken = std::any_of(m_file.tables().begin(), m_file.tables().end(),
                                       [&](const auto &other) { return lowercasedName(other->name()) == lower; });
        if (!taken)
            return name;
        name = base + "_" + std::to_string(n);
    }
}

bool LosslessSqlWriter::isArrayColumn(const TOrbMDBTable &table, std::size_t column) const
{
    const ComplexColumnValues *values = table.complexValues(column);
    return m_dialect == ServerTypePostgreSQL && values && values->kind() == ComplexKind::MultiValue;
}

bool LosslessSqlWriter::writesRelationship(const TOrbMDBForeignKey &key) const
{
    return m_settings.includeForeignKeys && key.enforced() && !key.referencingColumns().empty() &&
           key.referencingColumns().size() == key.referencedColumns().size() && referencesUniqueKey(key) &&
           dataKeepsRelationship(key);
}

bool LosslessSqlWriter::dataKeepsRelationship(const TOrbMDBForeignKey &key) const
{
    // Every referencing row whose key columns all hold a value must find its referenced row; a
    // damaged file can break that, and no target would then add the constraint.
    const TOrbMDBTable *from = m_file.tableNamed(key.referencingTable());
    const TOrbMDBTable *to = m_file.tableNamed(key.referencedTable());
    if (!from || !to)
        return false;
    const auto positions = [](const TOrbMDBTable &table, const std::vector<std::string> &names) {
        std::vector<std::size_t> out;
        for (const auto &name : names) {
            const auto position = table.columnIndex(name);
            if (!position)
                return std::vector<std::size_t>();
            out.push_back(*position);
        }
        return out;
    };
    const std::vector<std::size_t> fromColumns = positions(*from, key.referencingColumns());
    const std::vector<std::size_t> toColumns = positions(*to, key.referencedColumns());
    if (fromColumns.empty() || toColumns.size() != fromColumns.size())
        return false;
    const auto rowKey = [](const TOrbMDBTable &table, std::size_t row, const std::vector<std::size_t> &columns,
                           std::string &out) {
        out.clear();
        for (std::size_t position : columns) {
            const CellValue cell = table.cell(row, position);
            if (!cell.isText())
                return false;
            out.append(cell.text);
            out += '\x1f';
        }
        return true;
    };
    std::unordered_set<std::string> referenced;
    std::string text;
    for (std::size_t row = 0; row < to->rowCount(); ++row)
        if (rowKey(*to, row, toColumns, text))
            referenced.insert(text);
    for (std::size_t row = 0; row < from->rowCount(); ++row)
        if (rowKey(*from, row, fromColumns, text) && !referenced.count(text))
            return false;
    return true;
}

bool LosslessSqlWriter::referencesUniqueKey(const TOrbMDBForeignKey &key) const
{
    // A foreign key needs a primary key or unique index of exactly the referenced columns.
    const TOrbMDBTable *table = m_file.tableNamed(key.referencedTable());
    if (!table)
        return false;
    std::vector<std::string> referenced = key.referencedColumns();
    std::sort(referenced.begin(), referenced.end());
    for (const auto &index : table->indices()) {
        if (!index->isPrimaryKey() && !index->isUnique())
            continue;
        std::vector<std::string> columns;
        for (const auto &indexKey : index->keys())
            columns.push_back(indexKey.name);
        std::sort(columns.begin(), columns.end());
        if (columns != referenced)
            continue;
        const std::string cacheKey = table->name() + '\x1f' + index->name();
        auto found = m_uniqueIndexes.find(cacheKey);
        if (found == m_uniqueIndexes.end())
            found = m_uniqueIndexes.emplace(cacheKey, !hasDuplicateKeys(*table, *index)).first;
        if (found->second)
            return true;
    }
    return false;
}

void LosslessSqlWriter::appendCreateTable(const TOrbMDBTable &table)
{
    m_out += "CREATE TABLE " + qualified(table.name()) + " (";
    std::vector<std::string> primaryKey;
    const auto &columns = table.columns();
    // MySQL keeps a row within about 8000 bytes of its page: a table whose Text and Binary
    // columns could pass that has its unindexed ones stored off the page as TEXT and BLOB.
    std::vector<bool> offPage(columns.size(), false);
    if (m_dialect == ServerTypeMySQL) {
        std::size_t rowBytes = 0;
        for (const auto &column : columns) {
            const LosslessKind kind = losslessKindForDataType(column->dataType());
            const auto size = static_cast<std::size_t>(std::max(column->fieldSize(), 1));
            rowBytes += kind == LosslessKind::Text ? 4 * size + 2 : kind == LosslessKind::Binary ? size + 2 : 40;
        }
        if (rowBytes > kMySqlRowBytes) {
            for (std::size_t c = 0; c < columns.size(); ++c) {
                const bool indexed =
                    std::any_of(table.indices().begin(), table.indices().end(), [&](const auto &index) {
                        return std::any_of(index->keys().begin(), index->keys().end(),
                                           [&](const auto &key) { return key.name == columns[c]->name(); });
                    });
                offPage[c] = !indexed && !columns[c]->isPrimaryKey();
            }
        }
    }
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const TOrbMDBColumn &column = *columns[c];
        m_out += c ? ",\n\t" : "\n\t";
        m_out += quoteName(column.name()) + " ";
        const LosslessKind kind = losslessKindForDataType(column.dataType());
        if (isArrayColumn(table, c)) {
            m_out += "text[]";
        } else if (offPage[c] && (kind == LosslessKind::Text || kind == LosslessKind::Binary)) {
            m_out += kind == LosslessKind::Text ? "TEXT" : "BLOB";
        } else {
            // A calculated Numeric column stores results of any scale.
            const bool anyScale = column.isCalculatedType() && column.dataType() == "Numeric";
            const LosslessColumnShape shape{losslessKindForDataType(column.dataType()), column.fieldSize(),
                                            anyScale ? -1 : column.precision(), column.scale()};
            m_out += losslessColumnType(m_dialect, shape);
        }
        if (column.isPrimaryKey()) {
            m_out += " NOT NULL";
            primaryKey.push_back(quoteName(column.name()));
        }
        if (m_dialect == ServerTypeMySQL && column.description()) {
            m_out += " COMMENT ";
            appendLosslessText(m_out, m_dialect, *column.description());
        }
    }
    if (!primaryKey.empty())
        m_out += ",\n\tPRIMARY KEY (" + join(primaryKey, ", ") + ")";
    if (m_dialect == ServerTypeSQLite) {
        // SQLite adds no constraint later: the relationships go with the table, checked only
        // once the script has turned foreign keys back on.
        for (const auto &key : m_file.allForeignKeys()) {
            if (key->referencingTable() != table.name() || !writesRelationship(*key))
                continue;
            std::vector<std::string> from, to;
            for (const auto &name : key->referencingColumns())
                from.push_back(quoteName(name));
            for (const auto &name : key->referencedColumns())
                to.push_back(quoteName(name));
            m_out += ",\n\tCONSTRAINT " + quoteName(key->name()) + " FOREIGN KEY (" + join(from, ", ") +
                     ") REFERENCES " + quoteName(key->referencedTable()) + " (" + join(to, ", ") + ")";
            m_out += key->onUpdateCascade() ? " ON UPDATE CASCADE" : " ON UPDATE NO ACTION";
            m_out += key->onDeleteCascade()   ? " ON DELETE CASCADE"
                     : key->onDeleteSetNull() ? " ON DELETE SET NULL"
                                              : " ON DELETE NO ACTION";
        }
    }
    m_out += "\n)";
    if (m_dialect == ServerTypeMySQL)
        m_out += " ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin";
    endStatement();
}

void LosslessSqlWriter::appendChildTables(const TOrbMDBTable &table, std::vector<ChildTable> &children)
{
    for (const auto &[position, values] : table.complexColumns()) {
        if (position >= table.columns().size() || isArrayColumn(table, position))
            continue;
        ChildTable child{position, values->kind(), childTableName(table, position)};
        const auto type = [this](LosslessKind kind, int size = 0) {
            return losslessColumnType(m_dialect, LosslessColumnShape{kind, size, 0, 0});
        };
        std::string columns = "\n\t" + quoteName("parent_id") + " " + type(LosslessKind::LongInteger) + " NOT NULL";
        switch (child.kind) {
        case ComplexKind::MultiValue:
            columns += ",\n\t" + quoteName("value") + " " + type(LosslessKind::Memo);
            break;
        case ComplexKind::Attachment:
            columns += ",\n\t" + quoteName("file_name") + " " + type(LosslessKind::Text, 255);
            columns += ",\n\t" + quoteName("file_type") + " " + type(LosslessKind::Text, 255);
            columns += ",\n\t" + quoteName("data") + " " + type(LosslessKind::Ole);
            break;
        case ComplexKind::VersionHistory:
            columns += ",\n\t" + quoteName("value") + " " + type(LosslessKind::Memo);
            columns += ",\n\t" + quoteName("changed") + " " + type(LosslessKind::DateTime);
            break;
        }
        if (m_settings.exportStructure) {
            if (m_settings.includeDropTable)
                appendDropTable(child.name);
            m_out += "CREATE TABLE " + qualified(child.name) + " (" + columns + "\n)";
            if (m_dialect == ServerTypeMySQL)
                m_out += " ENGINE=InnoDB DEFAULT CHARSET=utf8mb4 COLLATE=utf8mb4_bin";
            endStatement();
        }
        children.push_back(std::move(child));
    }
}

void LosslessSqlWriter::appendComments(const TOrbMDBTable &table)
{
    for (const auto &column : table.columns()) {
        if (!column->description())
            continue;
        const std::string &description = *column->description();
        if (m_dialect == ServerTypePostgreSQL || m_dialect == ServerTypeOracle) {
            m_out += "COMMENT ON COLUMN " + qualified(table.name()) + "." + quoteName(column->name()) + " IS ";
            appendLosslessText(m_out, m_dialect == ServerTypeOracle ? ServerTypePostgreSQL : m_dialect, description);
            endStatement();
        } else if (m_dialect == ServerTypeSQLServer) {
            m_out += "EXEC sp_addextendedproperty N'MS_Description', ";
            appendLosslessText(m_out, m_dialect, description);
            m_out += ", N'SCHEMA', ";
            appendLosslessText(m_out, m_dialect, m_settings.schemaName.empty() ? "dbo" : m_settings.schemaName);
            m_out += ", N'TABLE', ";
            appendLosslessText(m_out, m_dialect, table.name());
            m_out += ", N'COLUMN', ";
            appendLosslessText(m_out, m_dialect, column->name());
            endStatement();
        }
    }
}

bool LosslessSqlWriter::appendRows(const TOrbMDBTable &table, const std::vector<ChildTable> &children, ExportSink &sink,
                                   const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    const auto &columns = table.columns();
    std::vector<LosslessKind> kinds;
    std::vector<std::string> names;
    std::vector<bool> arrays;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        kinds.push_back(losslessKindForDataType(columns[c]->dataType()));
        names.push_back(quoteName(columns[c]->name()));
        arrays.push_back(isArrayColumn(table, c));
    }
    const std::size_t rowCount = table.rowCount();
    if (rowCount == 0)
        return true;
    m_out += beginTransaction(m_dialect);
    InsertBatcher batch(m_out, m_dialect,
                        "INSERT INTO " + qualified(table.name()) + " (" + join(names, ", ") + ") VALUES");
    std::vector<CellValue> cells;
    std::string values;
    OracleLobBuilder lobs;
    for (std::size_t row = 0; row < rowCount; ++row) {
        if (stopped())
            return true;
        table.rowCells(row, cells);
        values.assign("(");
        lobs = {};
        for (std::size_t c = 0; c < columns.size(); ++c) {
            if (c)
                values += ", ";
            if (arrays[c] && cells[c].isText()) {
                // A PostgreSQL multi-value column: the values as a text array.
                values += "ARRAY[";
                if (cells[c].complex) {
                    const auto &items = cells[c].complex->values();
                    for (std::size_t i = 0; i < items.size(); ++i) {
                        if (i)
                            values += ", ";
                        approximate(table.name(), appendLosslessText(values, m_dialect, items[i]));
                    }
                }
                values += "]::text[]";
                continue;
            }
            approximate(table.name(), appendLosslessLiteral(values, m_dialect, kinds[c], cells[c], &lobs));
        }
        values += ')';
        batch.addRow(values, &lobs);
        flushIfFull(sink);
        if (m_failed)
            return false;
        if (rowProgress && ((row + 1) % 4096 == 0 || row + 1 == rowCount))
            rowProgress(row + 1, rowCount);
    }
    batch.finish();

    for (const ChildTable &child : children) {
        std::string head = "INSERT INTO " + qualified(child.name) + " (" + quoteName("parent_id");
        switch (child.kind) {
        case ComplexKind::MultiValue:
            head += ", " + quoteName("value");
            break;
        case ComplexKind::Attachment:
            head += ", " + quoteName("file_name") + ", " + quoteName("file_type") + ", " + quoteName("data");
            break;
        case ComplexKind::VersionHistory:
            head += ", " + quoteName("value") + ", " + quoteName("changed");
            break;
        }
        InsertBatcher childBatch(m_out, m_dialect, head + ") VALUES");
        for (std::size_t row = 0; row < rowCount; ++row) {
            if (stopped())
                return true;
            const CellValue cell = table.cell(row, child.column);
            if (!cell.complex)
                continue;
            const std::string parent(cell.text);
            for (const std::string &item : cell.complex->values()) {
                values = "(" + parent + ", ";
                approximate(child.name, appendLosslessText(values, m_dialect, item, true));
                childBatch.addRow(values + ")");
            }
            for (const auto &attachment : cell.complex->attachments()) {
                values = "(" + parent + ", ";
                lobs = {};
                approximate(child.name, appendLosslessText(values, m_dialect, attachment.fileName));
                values += ", ";
                approximate(child.name, appendLosslessText(values, m_dialect, attachment.fileType));
                values += ", ";
                approximate(child.name, appendLosslessLiteral(values, m_dialect, LosslessKind::Ole,
                                                              CellValue::ofBlob(attachment.data.get()), &lobs));
                childBatch.addRow(values + ")", &lobs);
            }
            for (const auto &version : cell.complex->versions()) {
                values = "(" + parent + ", ";
                approximate(child.name, appendLosslessText(values, m_dialect, version.value, true));
                values += ", ";
                approximate(child.name, appendLosslessLiteral(values, m_dialect, LosslessKind::DateTime,
                                                              CellValue::ofText(version.date)));
                childBatch.addRow(values + ")");
            }
            flushIfFull(sink);
            if (m_failed)
                return false;
        }
        childBatch.finish();
    }
    m_out += commitTransaction(m_dialect);
    m_out += '\n';
    return true;
}

void LosslessSqlWriter::appendIndexes(const TOrbMDBTable &table)
{
    // Oracle refuses a second index on a column list already indexed (the primary key's too).
    std::vector<std::vector<std::string>> indexedLists;
    std::vector<std::string> primaryKey;
    for (const auto &column : table.columns())
        if (column->isPrimaryKey())
            primaryKey.push_back(column->name());
    indexedLists.push_back(primaryKey);
    for (const auto &index : table.indices()) {
        if (index->isPrimaryKey() || index->keys().empty())
            continue;
        const std::string name = m_indexNames.uniqueIndexName(index->name());
        std::vector<std::string> keys;
        bool unique = index->isUnique() && !hasDuplicateKeys(table, *index);
        bool longKey = false;
        if (index->isUnique() && !unique)
            m_out += "-- not unique: rows of the table share a key of this index\n";
        for (const auto &key : index->keys()) {
            std::string text = quoteName(key.name);
            const TOrbMDBColumn *column = table.columnNamed(key.name);
            const LosslessKind kind = column ? losslessKindForDataType(column->dataType()) : LosslessKind::Text;
            const auto position = table.columnIndex(key.name);
            if (position && isArrayColumn(table, *position))
                unique = false; // the values, not the stored ids: equal lists may repeat
            if (m_dialect == ServerTypeMySQL && (kind == LosslessKind::Memo || kind == LosslessKind::Ole)) {
                // MySQL indexes long texts and blobs by a prefix only, which cannot be unique.
                text += "(255)";
                unique = false;
            }
            if ((m_dialect == ServerTypeSQLServer || m_dialect == ServerTypeOracle) &&
                (kind == LosslessKind::Memo || kind == LosslessKind::Ole))
                longKey = true;
            text += key.ascending ? " ASC" : " DESC";
            keys.push_back(std::move(text));
        }
        if (m_dialect == ServerTypeOracle) {
            std::vector<std::string> list;
            for (const auto &key : index->keys())
                list.push_back(key.name + (key.ascending ? "" : " DESC"));
            if (std::find(indexedLists.begin(), indexedLists.end(), list) != indexedLists.end()) {
                m_out += "-- left out: index " + quoteName(name) + " has the columns of an earlier index\n";
                continue;
            }
            indexedLists.push_back(std::move(list));
        }
        if (longKey) {
            // SQL Server's nvarchar(max) and varbinary(max), Oracle's NCLOB and BLOB: no index key.
            m_out += "-- left out: index " + quoteName(name) + " has a long text or binary key column\n";
            continue;
        }
        m_out += "CREATE ";
        if (unique)
            m_out += "UNIQUE ";
        m_out += "INDEX " + quoteName(name) + " ON " + qualified(table.name()) + " (" + join(keys, ", ") + ")";
        endStatement();
    }
}

void LosslessSqlWriter::appendRelationship(const TOrbMDBForeignKey &key)
{
    std::vector<std::string> from, to;
    for (const auto &name : key.referencingColumns())
        from.push_back(quoteName(name));
    for (const auto &name : key.referencedColumns())
        to.push_back(quoteName(name));
    m_out += "ALTER TABLE " + qualified(key.referencingTable()) + " ADD CONSTRAINT " + quoteName(key.name()) +
             " FOREIGN KEY (" + join(from, ", ") + ") REFERENCES " + qualified(key.referencedTable()) + " (" +
             join(to, ", ") + ")";
    if (m_dialect != ServerTypeOracle) // Oracle has no ON UPDATE rule
        m_out += key.onUpdateCascade() ? " ON UPDATE CASCADE" : " ON UPDATE NO ACTION";
    if (key.onDeleteCascade())
        m_out += " ON DELETE CASCADE";
    else if (key.onDeleteSetNull())
        m_out += " ON DELETE SET NULL";
    else if (m_dialect != ServerTypeOracle) // Oracle's default is "no action" and has no keyword for it
        m_out += " ON DELETE NO ACTION";
    endStatement();
}

bool LosslessSqlWriter::writeTable(const TOrbMDBTable &table, ExportSink &sink,
                                   const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    if (m_settings.exportStructure) {
        if (m_settings.includeDropTable)
            appendDropTable(table.name());
        appendCreateTable(table);
    }
    std::vector<ChildTable> children;
    appendChildTables(table, children);
    if (m_settings.exportStructure) {
        appendComments(table);
        m_out += '\n';
    }
    if (m_settings.exportData && !appendRows(table, children, sink, rowProgress))
        return false;
    if (stopped())
        return flush(sink);
    if (m_settings.exportStructure && m_settings.includeIndexes) {
        appendIndexes(table);
        m_out += '\n';
    }
    if (!m_settings.singleFile && m_settings.exportStructure && m_dialect != ServerTypeSQLite) {
        bool any = false;
        for (const auto &key : m_file.allForeignKeys()) {
            if (key->referencingTable() == table.name() && writesRelationship(*key)) {
                appendRelationship(*key);
                any = true;
            }
        }
        if (any)
            m_out += '\n';
    }
    return flush(sink);
}

bool LosslessSqlWriter::writeSingleScriptEnd(const std::vector<const TOrbMDBTable *> &writtenTables, ExportSink &sink)
{
    if (!m_settings.exportStructure || m_dialect == ServerTypeSQLite)
        return flush(sink);
    const auto written = [&](const std::string &name) {
        return std::any_of(writtenTables.begin(), writtenTables.end(),
                           [&](const TOrbMDBTable *t) { return t->name() == name; });
    };
    bool any = false;
    for (const auto &key : m_file.allForeignKeys()) {
        if (writesRelationship(*key) && written(key->referencingTable()) && written(key->referencedTable())) {
            appendRelationship(*key);
            any = true;
        }
    }
    if (any)
        m_out += '\n';
    return flush(sink);
}

} // namespace vellum
