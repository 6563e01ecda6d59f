#pragma once

// The statements of the SQLite database export (`exportSQLiteThread`, declared in
// ExportRoutines.h). They are pure text builders so that their exact output can be tested
// without a database.

#include "model/CellValue.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellum {

class TOrbMDBColumn;
class TOrbMDBForeignKey;
class TOrbMDBIndex;
class TOrbMDBTable;

/// Appends a table, column, constraint or index name for SQLite: every '"' doubled, the whole
/// between '"'.
void appendSqliteQuotedName(std::string &out, std::string_view name);
/// The quoted form of a name (see `appendSqliteQuotedName`).
std::string sqliteQuotedName(std::string_view name);

/// The CREATE TABLE statement of a table: each column with its SQLite type and " NOT NULL"
/// when its zero-length property is exactly "NO" or it is in the primary key; the PRIMARY KEY
/// clause; and, when `foreignKeys` is given, a FOREIGN KEY constraint for each of its
/// relationships whose referencing table is this one, in the list's order.
std::string sqliteCreateTableStatement(const TOrbMDBTable &table,
                                       const std::vector<std::unique_ptr<TOrbMDBForeignKey>> *foreignKeys);

/// Appends the literal of one cell for an INSERT: text of the types "Text", "Memo/Hyperlink",
/// "DateTime", "Binary" and "Replication ID" quoted (backslashes and single quotes doubled);
/// other text bare when it is a number, else quoted; a blob as x'…'; a missing value as ""
/// (an empty text) when the column's zero-length property is "NO", else null.
void appendSqliteValueLiteral(std::string &out, const CellValue &value, const TOrbMDBColumn &column);

/// The INSERT statement of one row; `insertHead` is "INSERT INTO <table> (<columns>) VALUES (".
void buildSqliteInsertStatement(std::string &out, std::string_view insertHead, const TOrbMDBTable &table,
                                std::size_t row);

/// The CREATE [UNIQUE] INDEX statement of an index under `name` on the quoted table.
std::string sqliteCreateIndexStatement(const TOrbMDBIndex &index, std::string_view name, std::string_view quotedTable);

} // namespace vellum
