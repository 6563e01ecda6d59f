#include "export/SqlScriptWriter.h"

#include "export/ExportOptions.h"
#include "export/SqlTypeMapping.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBForeignKey.h"
#include "model/TOrbMDBIndex.h"
#include "model/TOrbMDBTable.h"
#include "util/format.h"

#include <algorithm>

namespace vellum {

namespace {

constexpr std::size_t kFlushBytes = 1 << 20;

/// `text` with every single quote doubled.
std::string doubledSingleQuotes(std::string_view text)
{
    std::string out;
    out.reserve(text.size() + 2);
    for (char c : text) {
        if (c == '\'')
            out += c;
        out += c;
    }
    return out;
}

const char *cascadeOrSetNull(bool cascade)
{
    return cascade ? "CASCADE" : "SET NULL";
}

} // namespace

SqlScriptSettings SqlScriptSettings::fromOptions(const ExportOptions &options)
{
    SqlScriptSettings settings;
    settings.dialect = options.sqlFormat;
    settings.exportStructure = options.exportStructure;
    settings.includeDropTable = options.includeDropTable;
    settings.includeForeignKeys = options.includeForeignKeys;
    settings.includeIndexes = options.includeIndexes;
    settings.exportData = options.exportData;
    settings.schemaName = options.schemaName;
    settings.decimalSymbol = options.decimalSymbol;
    settings.singleFile = options.exportSingleFile;
    return settings;
}

SqlScriptWriter::SqlScriptWriter(const TOrbMDBFile &file, const SqlScriptSettings &settings,
                                 const std::atomic<bool> &stop)
    : m_file(file), m_settings(settings), m_stop(stop), m_indexNames(settings.dialect == ServerTypeSQLite)
{
    switch (m_settings.dialect) {
    case ServerTypeMySQL:
        m_open = m_close = '`';
        break;
    case ServerTypeSQLServer:
        m_open = '[';
        m_close = ']';
        break;
    default:
        m_open = m_close = '"';
        break;
    }
    const ServerType d = m_settings.dialect;
    if ((d == ServerTypePostgreSQL || d == ServerTypeOracle || d == ServerTypeSQLServer) &&
        !m_settings.schemaName.empty())
        m_schemaPrefix = quoteName(m_settings.schemaName) + ".";
    // SQL Server's column comments name the schema as a text; without one the user is left a
    // placeholder to replace by hand.
    m_sqlServerSchema =
        m_settings.schemaName.empty() ? "'<SCHEMA>'" : "'" + doubledSingleQuotes(m_settings.schemaName) + "'";
}

std::string SqlScriptWriter::quoteName(std::string_view name) const
{
    std::string out;
    out.reserve(name.size() + 2);
    out += m_open;
    for (char c : name) {
        if (c == m_close)
            out += c;
        out += c;
    }
    out += m_close;
    return out;
}

bool SqlScriptWriter::flush(ExportSink &sink)
{
    if (!m_failed && !m_out.empty() && !sink.write(m_out))
        m_failed = true;
    m_out.clear();
    return !m_failed;
}

void SqlScriptWriter::flushIfFull(ExportSink &sink)
{
    if (m_out.size() >= kFlushBytes)
        flush(sink);
}

bool SqlScriptWriter::writePrologue(ExportSink &sink)
{
    // A new script begins: a failure of an earlier sink does not carry over.
    m_out.clear();
    m_failed = false;
    switch (m_settings.dialect) {
    case ServerTypeMySQL:
        m_out += "SET NAMES 'UTF8';\nSET FOREIGN_KEY_CHECKS = 0;\n\n";
        break;
    case ServerTypeSQLite:
        m_out += "PRAGMA foreign_keys = false;\n\n";
        break;
    case ServerTypeSQLServer:
        m_out += "BEGIN TRANSACTION\nGO\n";
        break;
    default:
        break;
    }
    return flush(sink);
}

bool SqlScriptWriter::writeEpilogue(ExportSink &sink)
{
    switch (m_settings.dialect) {
    case ServerTypeMySQL:
        m_out += "SET FOREIGN_KEY_CHECKS = 1;\n";
        break;
    case ServerTypeSQLite:
        m_out += "PRAGMA foreign_keys = true;\n";
        break;
    case ServerTypeSQLServer:
        m_out += "COMMIT\n";
        break;
    default:
        break;
    }
    return flush(sink);
}

void SqlScriptWriter::appendQuotedNameList(const std::vector<std::string> &names)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i)
            m_out += ", ";
        m_out += quoteName(names[i]);
    }
}

void SqlScriptWriter::appendDropTable(const std::string &quotedTable)
{
    const ServerType d = m_settings.dialect;
    if (d == ServerTypeSQLServer) {
        m_out += "IF EXISTS (SELECT * FROM sys.all_objects WHERE object_id = OBJECT_ID('";
        m_out += m_schemaPrefix + quotedTable;
        m_out += "') AND type IN ('U'))\n\tDROP TABLE ";
        m_out += m_schemaPrefix + quotedTable;
        m_out += "\nGO\n";
        return;
    }
    m_out += "DROP TABLE ";
    if (d == ServerTypeMySQL || d == ServerTypePostgreSQL || d == ServerTypeSQLite)
        m_out += "IF EXISTS ";
    m_out += m_schemaPrefix + quotedTable;
    if (d == ServerTypeMySQL || d == ServerTypePostgreSQL || d == ServerTypeOracle)
        m_out += " CASCADE";
    if (d == ServerTypeOracle)
        m_out += " CONSTRAINTS";
    m_out += ";\n";
}

void SqlScriptWriter::appendIndexKeys(const TOrbMDBIndex &index)
{
    const auto &keys = index.keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (i)
            m_out += ", ";
        m_out += quoteName(keys[i].name);
        m_out += keys[i].ascending ? " ASC" : " DESC";
    }
}

void SqlScriptWriter::appendInlineForeignKey(const TOrbMDBForeignKey &key)
{
    m_out += ",\n\tCONSTRAINT ";
    m_out += quoteName(key.name());
    m_out += " FOREIGN KEY (";
    appendQuotedNameList(key.referencingColumns());
    m_out += ") REFERENCES ";
    m_out += m_schemaPrefix + quoteName(key.referencedTable());
    m_out += " (";
    appendQuotedNameList(key.referencedColumns());
    m_out += formatString(") ON UPDATE %s ON DELETE %s", cascadeOrSetNull(key.onUpdateCascade()),
                          cascadeOrSetNull(key.onDeleteCascade()));
}

void SqlScriptWriter::appendCreateTable(const TOrbMDBTable &table, const std::string &quotedTable)
{
    const ServerType d = m_settings.dialect;
    m_out += "CREATE TABLE " + m_schemaPrefix + quotedTable + " (";
    std::vector<std::string> primaryKey;
    bool first = true;
    for (const auto &column : table.columns()) {
        if (!first)
            m_out += ',';
        first = false;
        const std::string quoted = quoteName(column->name());
        m_out += "\n\t" + quoted + " ";
        m_out += sqlColumnDefinitionType(column->dataType(), column->fieldSize(), d);
        if (column->allowZeroLength() == "NO" || column->isPrimaryKey())
            m_out += " NOT NULL";
        if (d == ServerTypeMySQL && column->description()) {
            m_out += " COMMENT '";
            for (char c : *column->description()) {
                if (c == '\\')
                    m_out += "\\\\";
                else if (c == '\'')
                    m_out += "\\'";
                else
                    m_out += c;
            }
            m_out += '\'';
        }
        if (column->isPrimaryKey())
            primaryKey.push_back(quoted);
    }
    if (!primaryKey.empty()) {
        m_out += ",\n\t";
        if (d == ServerTypePostgreSQL || d == ServerTypeSQLServer) {
            // The constraint name is the table's name (as quoted inside) followed by "_pkey".
            m_out += "CONSTRAINT ";
            m_out += m_open;
            m_out += std::string_view(quotedTable).substr(1, quotedTable.size() - 2);
            m_out += "_pkey";
            m_out += m_close;
            m_out += ' ';
        }
        m_out += "PRIMARY KEY ";
        if (d == ServerTypeSQLServer)
            m_out += "CLUSTERED ";
        m_out += "(" + join(primaryKey, ", ") + ")";
    }
    if (d == ServerTypeSQLite && m_settings.includeForeignKeys) {
        for (const auto &key : m_file.allForeignKeys())
            if (key->referencingTable() == table.name())
                appendInlineForeignKey(*key);
    }
    if (d == ServerTypeMySQL && m_settings.includeIndexes) {
        for (const auto &index : table.indices()) {
            if (index->isPrimaryKey())
                continue;
            m_out += ",\n\tINDEX " + quoteName(index->name()) + " (";
            appendIndexKeys(*index);
            m_out += ")";
        }
    }
    m_out += d == ServerTypeSQLServer ? ")\nGO\n" : "\n);\n";
}

std::string SqlScriptWriter::registeredIndexName(const std::string &name)
{
    return m_indexNames.uniqueIndexName(name);
}

void SqlScriptWriter::appendSeparateIndexes(const TOrbMDBTable &table, const std::string &quotedTable)
{
    for (const auto &index : table.indices()) {
        if (index->isPrimaryKey())
            continue;
        const std::string name = registeredIndexName(index->name());
        m_out += "\nCREATE ";
        if (index->isUnique())
            m_out += "UNIQUE ";
        m_out += "INDEX " + quoteName(name) + " ON " + m_schemaPrefix + quotedTable + " (";
        appendIndexKeys(*index);
        m_out += ");\n";
    }
}

void SqlScriptWriter::appendColumnComments(const TOrbMDBTable &table, const std::string &quotedTable)
{
    const ServerType d = m_settings.dialect;
    for (const auto &column : table.columns()) {
        if (!column->description())
            continue;
        const std::string &description = *column->description();
        if (d == ServerTypePostgreSQL || d == ServerTypeOracle) {
            m_out += "COMMENT ON COLUMN " + m_schemaPrefix + quotedTable + "." + quoteName(column->name()) + " IS ";
            appendSqlQuotedText(m_out, description);
            m_out += ";\n";
        } else if (d == ServerTypeSQLServer) {
            m_out += "EXEC sp_addextendedproperty 'MS_Description', '" + doubledSingleQuotes(description) +
                     "', 'SCHEMA', " + m_sqlServerSchema + ", 'TABLE', '" + doubledSingleQuotes(table.name()) + "', ";
            m_out += "'COLUMN', '" + doubledSingleQuotes(column->name()) + "'\nGO\n";
        }
    }
}

bool SqlScriptWriter::appendRows(const TOrbMDBTable &table, const std::string &quotedTable, ExportSink &sink,
                                 const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    const ServerType d = m_settings.dialect;
    const auto &columns = table.columns();
    std::string head = "INSERT INTO " + m_schemaPrefix + quotedTable + " (";
    std::vector<SqlLiteralColumn> literalColumns;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        if (c)
            head += ", ";
        head += quoteName(columns[c]->name());
        literalColumns.push_back({columns[c]->dataType(), columns[c]->allowZeroLength() == "NO"});
    }
    head += ") VALUES (";
    const std::string rowEnd = d == ServerTypeSQLServer ? ");\nGO\n" : ");\n";
    const std::size_t rowCount = table.rowCount();
    std::vector<CellValue> cells;
    for (std::size_t row = 0; row < rowCount; ++row) {
        if (stopped())
            return true;
        table.rowCells(row, cells);
        m_out += head;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            if (stopped())
                return true;
            if (c)
                m_out += ", ";
            appendSqlValueLiteral(m_out, cells[c], literalColumns[c], d, m_settings.decimalSymbol);
        }
        m_out += rowEnd;
        flushIfFull(sink);
        if (m_failed)
            return false;
        if (rowProgress && ((row + 1) % 4096 == 0 || row + 1 == rowCount))
            rowProgress(row + 1, rowCount);
    }
    m_out += '\n';
    return true;
}

void SqlScriptWriter::appendRelationship(const TOrbMDBForeignKey &key)
{
    const ServerType d = m_settings.dialect;
    m_out += "ALTER TABLE " + m_schemaPrefix + quoteName(key.referencingTable()) + " ADD CONSTRAINT ";
    m_out += quoteName(key.name()) + " FOREIGN KEY (";
    appendQuotedNameList(key.referencingColumns());
    m_out += ") REFERENCES " + m_schemaPrefix + quoteName(key.referencedTable()) + " (";
    appendQuotedNameList(key.referencedColumns());
    m_out += ") ON ";
    if (d == ServerTypeMySQL || d == ServerTypePostgreSQL || d == ServerTypeSQLServer) // Oracle has no ON UPDATE
        m_out += formatString("UPDATE %s ON ", cascadeOrSetNull(key.onUpdateCascade()));
    m_out += formatString("DELETE %s", cascadeOrSetNull(key.onDeleteCascade()));
    if (d == ServerTypeOracle)
        m_out += " ENABLE;";
    else if (d == ServerTypeSQLServer)
        m_out += "\nGO";
    else
        m_out += ";";
    m_out += '\n';
}

bool SqlScriptWriter::writeTable(const TOrbMDBTable &table, ExportSink &sink,
                                 const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    const ServerType d = m_settings.dialect;
    const std::string quotedTable = quoteName(table.name());
    if (d == ServerTypeSQLite)
        m_indexNames.recordTable(table.name());
    if (m_settings.exportStructure) {
        if (m_settings.includeDropTable)
            appendDropTable(quotedTable);
        appendCreateTable(table, quotedTable);
        if (m_settings.includeIndexes &&
            (d == ServerTypePostgreSQL || d == ServerTypeOracle || d == ServerTypeSQLServer ||
             (d == ServerTypeSQLite && !m_settings.singleFile)))
            appendSeparateIndexes(table, quotedTable);
        appendColumnComments(table, quotedTable);
        m_out += '\n';
    }
    if (m_settings.exportData && !appendRows(table, quotedTable, sink, rowProgress))
        return false;
    if (stopped())
        return flush(sink);
    if (!m_settings.singleFile && m_settings.exportStructure && m_settings.includeForeignKeys &&
        !m_file.allForeignKeys().empty() && d != ServerTypeSQLite) {
        for (const auto &key : m_file.allForeignKeys())
            if (key->referencingTable() == table.name())
                appendRelationship(*key);
        m_out += '\n';
    }
    return flush(sink);
}

bool SqlScriptWriter::writeSingleScriptEnd(const std::vector<const TOrbMDBTable *> &writtenTables, ExportSink &sink)
{
    if (!m_settings.exportStructure)
        return flush(sink);
    if (m_settings.dialect == ServerTypeSQLite) {
        if (m_settings.includeIndexes) {
            for (const TOrbMDBTable *table : writtenTables)
                appendSeparateIndexes(*table, quoteName(table->name()));
            m_out += '\n';
        }
    } else if (m_settings.includeForeignKeys && !m_file.allForeignKeys().empty()) {
        for (const auto &key : m_file.allForeignKeys()) {
            const bool written = std::any_of(writtenTables.begin(), writtenTables.end(), [&](const TOrbMDBTable *t) {
                return t->name() == key->referencingTable();
            });
            if (written)
                appendRelationship(*key);
        }
        m_out += '\n';
    }
    return flush(sink);
}

} // namespace vellum
