#pragma once

#include "export/ExportFileType.h"
#include "sql/ServerType.h"

#include <cstdint>
#include <string>

namespace vellum {

/// Field delimiter tags of the wizard: 0 tab, 1 ";", 2 ",", 3 space; any other tag means ",".
enum FieldDelimiterTag : int {
    kFieldDelimiterTab = 0,
    kFieldDelimiterSemicolon = 1,
    kFieldDelimiterComma = 2,
    kFieldDelimiterSpace = 3
};
/// Record delimiter tags: 0 "\n", 1 "\r", 2 "\r\n".
enum RecordDelimiterTag : int { kRecordDelimiterLF = 0, kRecordDelimiterCR = 1, kRecordDelimiterCRLF = 2 };
/// How lossless delimited text writes binary and OLE values.
enum BinaryEncodingTag : int { kBinaryEncodingBase64 = 0, kBinaryEncodingHex = 1 };

/// Every option value of the export wizard, read by the worker as plain values. A writer reads
/// the fields of its kind and ignores the rest. A further option adds a field here with its
/// default and a row in export/exportRegistry.cpp (kinds, control, choices, per-kind defaults).
struct ExportOptions {
    /// One output file for all tables (path text = the file) instead of one file per table
    /// (path text = the folder).
    bool exportSingleFile = false;
    bool includeColumnHeader = true;
    int fieldDelimiterTag = kFieldDelimiterComma;
    int recordDelimiterTag = kRecordDelimiterLF;
    /// Replaces "." in Currency, Single and Double values; any length, may be empty.
    std::string decimalSymbol = ".";
    /// Target encoding of text output (a code of the encoding table; 4 = UTF-8).
    std::uint64_t encoding = 4;
    /// SQL dialect of a script.
    ServerType sqlFormat = ServerTypeMySQL;
    /// Schema prefix for the PostgreSQL, Oracle and SQL Server dialects; empty = none.
    std::string schemaName;
    bool exportStructure = true;
    bool includeDropTable = true;
    bool includeForeignKeys = true;
    bool includeIndexes = true;
    bool exportData = true;
    /// Key of an encrypted SQLite export; empty = a plain database.
    std::string password;
    /// Lossless output: types and literals that keep every value exactly and load into the
    /// target without errors (ISO dates, binary as base64 or the target's binary type, NULL kept
    /// as NULL, well-formed XML). Off = the classic output, byte for byte as it always was. The
    /// window's default is off; the command line turns it on unless --classic is given.
    bool lossless = false;
    /// Text written for a NULL field of delimited text; empty = an empty field.
    std::string nullMarker;
    /// How lossless delimited text writes binary and OLE values (a BinaryEncodingTag).
    int binaryEncodingTag = kBinaryEncodingBase64;
    /// A UTF-8 byte-order mark at the start of delimited text, for spreadsheet programs.
    bool byteOrderMark = false;
    /// Every field of delimited text in quotes, not only those that need them.
    bool quoteAllFields = false;

    /// The defaults of a kind as the registry gives them: header on (off for XML), tab for txt
    /// and "," for csv, line feed, ".", UTF-8; single file on for xls, xlsx and sql opened for
    /// the whole file and always for sqlite.
    static ExportOptions defaultsFor(ExportFileType kind, bool wholeFile);

    /// Chooses a field delimiter as the wizard's menu does: "," sets the decimal symbol to ".",
    /// ";" sets it to ","; other choices leave it alone.
    void changeFieldDelimiter(int tag);
};

/// The field delimiter text of a tag (any unknown tag gives ",").
const char *fieldDelimiterForTag(int tag);
/// The record delimiter text of a tag (any unknown tag gives "\n").
const char *recordDelimiterForTag(int tag);

/// True when the schema name can be edited for a SQL dialect (PostgreSQL, Oracle, SQL Server).
bool schemaNameEnabledForSqlFormat(ServerType sqlFormat);

/// The wizard's OK rule: a path, at least one chosen table, and structure or data on.
bool enableOkButtonCheck(const std::string &pathText, int selectedTableCount, const ExportOptions &options);

} // namespace vellum
