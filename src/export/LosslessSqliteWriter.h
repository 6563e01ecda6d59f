#pragma once

// The lossless SQLite database: standard column types (BOOLEAN, INTEGER, REAL, DECIMAL(p,s),
// DATETIME, CHAR(38), TEXT, BLOB), every value bound to one prepared INSERT per table in its
// own storage class, NULL kept as NULL, ISO dates, the bytes of binary and OLE values, a child
// table for each complex column, and only the relationships Access enforces.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class ExportJob;
class TOrbMDBColumn;
class TOrbMDBForeignKey;
class TOrbMDBTable;

/// How the values of a column are bound in the lossless database.
enum class SqliteValueForm {
    Boolean,   ///< 0 / 1 as an integer
    Integer,   ///< a 64-bit integer
    Real,      ///< a double; NaN becomes NULL
    Decimal,   ///< the exact decimal text, which the column's NUMERIC affinity converts
    DateTime,  ///< "YYYY-MM-DD HH:MM:SS[.fffffff]" text
    Text,      ///< the text as it stands (Text, Memo, GUID)
    Blob,      ///< the bytes (Binary, OLE, types the reader does not know)
    ComplexId, ///< the stored id of a complex column's values, an integer
};

/// The binding form of a column type name (a column's `dataType`).
SqliteValueForm losslessSqliteValueForm(std::string_view type);

/// The declared type of a column type name in the lossless database; `precision` and `scale`
/// are those of a Numeric column (DECIMAL without them when the precision is not positive).
std::string losslessSqliteDeclaredType(std::string_view type, int precision, int scale);

/// The declared type of a column in the lossless database: BOOLEAN, INTEGER, REAL,
/// DECIMAL(19,4) for Currency, DECIMAL(p,s) for Numeric, DATETIME, CHAR(38), TEXT or BLOB.
std::string losslessSqliteColumnType(const TOrbMDBColumn &column);

/// The CREATE TABLE statement of a table in the lossless database: typed columns, NOT NULL on
/// the primary key's columns, the PRIMARY KEY clause (a single integer key column becomes the
/// table's row id), and a FOREIGN KEY clause for each relationship in `foreignKeys` whose
/// referencing table is this one, whose referenced table is in `exportedTables`, and that
/// Access enforces (ON UPDATE CASCADE or NO ACTION; ON DELETE CASCADE, SET NULL or NO ACTION).
std::string losslessSqliteCreateTableStatement(const TOrbMDBTable &table,
                                               const std::vector<std::unique_ptr<TOrbMDBForeignKey>> *foreignKeys,
                                               const std::vector<std::string> &exportedTables);

/// Reads a decimal integer text (optional sign, digits) into `value`; false for any other text
/// or one out of the 64-bit range.
bool parseSqliteInteger(std::string_view text, std::int64_t &value);

/// Writes the job's tables as a lossless SQLite database at the job's path: the SQLite kind's
/// routine when `ExportOptions::lossless` is on. The database is built under a temporary name
/// with the journal and synchronous writes off (nothing can be lost that the rename at the end
/// would keep), one transaction per table, one prepared INSERT per table; indexes come after
/// the data. Used once, on the export worker.
class LosslessSqliteWriter {
public:
    explicit LosslessSqliteWriter(ExportJob &job);
    ~LosslessSqliteWriter();
    LosslessSqliteWriter(const LosslessSqliteWriter &) = delete;
    LosslessSqliteWriter &operator=(const LosslessSqliteWriter &) = delete;

    /// Writes the database; failures go to the job's log with SQLite's own message.
    void run();

private:
    struct Run;
    std::unique_ptr<Run> m_run;
};

} // namespace vellum
