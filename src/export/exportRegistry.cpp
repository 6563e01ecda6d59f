#include "export/exportRegistry.h"

#include "export/ExportRoutines.h"
#include "util/stringEncodings.h"

#include <algorithm>

namespace vellum {

namespace {

constexpr ExportFileType kCsv = ExportFileType::CSV;
constexpr ExportFileType kTxt = ExportFileType::TXT;
constexpr ExportFileType kXml = ExportFileType::XML;
constexpr ExportFileType kXls = ExportFileType::XLS;
constexpr ExportFileType kSql = ExportFileType::SQL;
constexpr ExportFileType kSqlite = ExportFileType::SQLite;
constexpr ExportFileType kXlsx = ExportFileType::XLSX;

// ---- reading and storing one field of the options ----

template <bool ExportOptions::*Field>
ExportOptionValue readFlag(const ExportOptions &options)
{
    return options.*Field;
}

template <bool ExportOptions::*Field>
void storeFlag(ExportOptions &options, const ExportOptionValue &value)
{
    options.*Field = std::get<bool>(value);
}

template <int ExportOptions::*Field>
ExportOptionValue readTag(const ExportOptions &options)
{
    return static_cast<std::int64_t>(options.*Field);
}

template <int ExportOptions::*Field>
void storeTag(ExportOptions &options, const ExportOptionValue &value)
{
    options.*Field = static_cast<int>(std::get<std::int64_t>(value));
}

template <std::string ExportOptions::*Field>
ExportOptionValue readText(const ExportOptions &options)
{
    return options.*Field;
}

template <std::string ExportOptions::*Field>
void storeText(ExportOptions &options, const ExportOptionValue &value)
{
    options.*Field = std::get<std::string>(value);
}

ExportOptionValue readEncoding(const ExportOptions &options)
{
    return static_cast<std::int64_t>(options.encoding);
}

void storeEncoding(ExportOptions &options, const ExportOptionValue &value)
{
    options.encoding = static_cast<std::uint64_t>(std::get<std::int64_t>(value));
}

ExportOptionValue readSqlFormat(const ExportOptions &options)
{
    return static_cast<std::int64_t>(serverTypeValue(options.sqlFormat));
}

void storeSqlFormat(ExportOptions &options, const ExportOptionValue &value)
{
    options.sqlFormat = serverTypeFromValue(std::get<std::int64_t>(value)).value_or(ServerTypeNone);
}

void chooseFieldDelimiter(ExportOptions &options, const ExportOptionValue &value)
{
    options.changeFieldDelimiter(static_cast<int>(std::get<std::int64_t>(value)));
}

// ---- command-line texts that are not choices ----

bool parseEncoding(const std::string &text, ExportOptionValue &value, std::string &error)
{
    const StringEncoding *encoding = findStringEncoding(text);
    if (!encoding) {
        error = "unknown encoding '" + text + "' (see --list-encodings)";
        return false;
    }
    value = static_cast<std::int64_t>(encoding->code);
    return true;
}

bool parsePassword(const std::string &text, ExportOptionValue &value, std::string &error)
{
    // The key is handed to SQLCipher with its length counted in characters, so only a password
    // of single-byte characters is the same key that `PRAGMA key` of other SQLCipher programs
    // derives from the same text.
    for (const char c : text) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            error = "--password must consist of ASCII characters";
            return false;
        }
    }
    if (text.empty()) {
        error = "--password must not be empty";
        return false;
    }
    value = text;
    return true;
}

// ---- the kinds' last checks ----

bool validateSql(const ExportOptions &options, std::string &error)
{
    // The wizard's OK rule: structure or data must be on, or nothing would be written.
    if (!options.exportStructure && !options.exportData) {
        error = "--no-structure and --no-data together leave nothing to export";
        return false;
    }
    if (!options.schemaName.empty() && !schemaNameEnabledForSqlFormat(options.sqlFormat)) {
        error = "--schema applies to the postgresql, oracle and sqlserver dialects only";
        return false;
    }
    return true;
}

std::int64_t dialectValue(ServerType type) { return serverTypeValue(type); }

// ---- when the wizard enables a control ----

bool schemaNameEnabled(ExportFileType, const ExportOptions &options)
{
    return schemaNameEnabledForSqlFormat(options.sqlFormat);
}

bool structureIsOn(ExportFileType, const ExportOptions &options)
{
    return options.exportStructure;
}

/// Keys and indexes belong to the structure of a script; a SQLite database always has one.
bool structureIsOnOrSqlite(ExportFileType kind, const ExportOptions &options)
{
    return options.exportStructure || kind == kSqlite;
}

// ---- the table ----

// Built on first use: the command line builds its help text during static initialization.
const std::vector<ExportKindInfo> &kindTable()
{
    static const std::vector<ExportKindInfo> table = {
        {kCsv, "csv", "csv", "Export CSV", "comma-separated text, one file per table", exportTextFileThread, false, nullptr},
        {kTxt, "txt", "txt", "Export TXT", "delimited text (tab by default), one file per table", exportTextFileThread,
         false, nullptr},
        {kXml, "xml", "xml", "Export XML", "XML, one file per table", exportTextFileThread, false, nullptr},
        {kSql, "sql", "sql", "Export SQL",
         "SQL script (--dialect mysql|postgresql|oracle|sqlite|sqlserver); one script for the whole file", exportSQLThread,
         true, validateSql},
        {kSqlite, "sqlite", "sqlite", "Export SQLite",
         "a new SQLite database, OUTPUT is its file (an existing file is replaced); with --password encrypted (SQLCipher)",
         exportSQLiteThread, true, nullptr},
        {kXls, "xls", "xls", "Export XLS",
         "Excel 97-2003 workbook, a sheet per table (65,536 rows, then T(2), T(3) …); one workbook for the whole file",
         exportXLSThread, true, nullptr},
        {kXlsx, "xlsx", "xlsx", "Export XLSX",
         "Excel 2007 workbook, a sheet per table (1,048,576 rows, then T(2) …); one workbook for the whole file",
         exportXLSXThread, true, nullptr},
    };
    return table;
}

const std::vector<ExportOptionInfo> &optionTable()
{
    static const std::vector<ExportOptionInfo> table = {
        {ExportOptionId::ColumnHeader, {kCsv, kTxt, kXls, kXlsx}, {kCsv, kTxt, kXls, kXlsx}, ExportControl::CheckBox,
         "Include column header", false, {}, {{kXml, false}}, nullptr, readFlag<&ExportOptions::includeColumnHeader>,
         storeFlag<&ExportOptions::includeColumnHeader>, nullptr, nullptr},
        {ExportOptionId::FieldDelimiter, {kCsv, kTxt}, {kCsv, kTxt}, ExportControl::Menu, "Field delimiter:", true,
         {{"tab", "Tab", kFieldDelimiterTab, {kTxt}},
          {"semicolon", "Semicolon (;)", kFieldDelimiterSemicolon, {}},
          {"comma", "Comma (,)", kFieldDelimiterComma, {}},
          {"space", "Space", kFieldDelimiterSpace, {kTxt}}},
         {{kTxt, std::int64_t{kFieldDelimiterTab}}}, nullptr, readTag<&ExportOptions::fieldDelimiterTag>,
         storeTag<&ExportOptions::fieldDelimiterTag>, chooseFieldDelimiter, nullptr},
        {ExportOptionId::RecordDelimiter, {kCsv, kTxt}, {kCsv, kTxt}, ExportControl::Menu, "Record delimiter:", true,
         {{"lf", "LF (Linux, macOS)", kRecordDelimiterLF, {}},
          {"cr", "CR (classic Mac OS)", kRecordDelimiterCR, {}},
          {"crlf", "CR LF (Windows)", kRecordDelimiterCRLF, {}}},
         {}, nullptr, readTag<&ExportOptions::recordDelimiterTag>, storeTag<&ExportOptions::recordDelimiterTag>, nullptr,
         nullptr},
        {ExportOptionId::DecimalSymbol, {kCsv, kTxt, kXml, kSql}, {kCsv, kTxt, kXml}, ExportControl::TextField,
         "Decimal symbol:", false, {}, {}, nullptr, readText<&ExportOptions::decimalSymbol>,
         storeText<&ExportOptions::decimalSymbol>, nullptr, nullptr},
        {ExportOptionId::Encoding, {kCsv, kTxt, kXml}, {kCsv, kTxt, kXml, kSql, kXls, kXlsx}, ExportControl::EncodingMenu,
         "Encoding:", false, {}, {}, nullptr, readEncoding, storeEncoding, nullptr, parseEncoding},
        {ExportOptionId::SqlFormat, {kSql}, {kSql}, ExportControl::Menu, "SQL format:", false,
         {{"mysql", "MySQL", dialectValue(ServerTypeMySQL), {}},
          {"postgresql", "PostgreSQL", dialectValue(ServerTypePostgreSQL), {}},
          {"oracle", "Oracle", dialectValue(ServerTypeOracle), {}},
          {"sqlite", "SQLite", dialectValue(ServerTypeSQLite), {}},
          {"sqlserver", "SQL Server", dialectValue(ServerTypeSQLServer), {}}},
         {}, nullptr, readSqlFormat, storeSqlFormat, nullptr, nullptr},
        {ExportOptionId::SchemaName, {kSql}, {kSql}, ExportControl::TextField, "Schema name:", false, {}, {}, schemaNameEnabled,
         readText<&ExportOptions::schemaName>, storeText<&ExportOptions::schemaName>, nullptr, nullptr},
        {ExportOptionId::Structure, {kSql}, {kSql}, ExportControl::CheckBox, "Export structure", false, {}, {}, nullptr,
         readFlag<&ExportOptions::exportStructure>, storeFlag<&ExportOptions::exportStructure>, nullptr, nullptr},
        {ExportOptionId::DropTable, {kSql}, {kSql}, ExportControl::CheckBox, "Include DROP TABLE", false, {}, {}, structureIsOn,
         readFlag<&ExportOptions::includeDropTable>, storeFlag<&ExportOptions::includeDropTable>, nullptr, nullptr},
        {ExportOptionId::ForeignKeys, {kSql, kSqlite}, {kSql, kSqlite}, ExportControl::CheckBox, "Include foreign keys",
         false, {}, {}, structureIsOnOrSqlite, readFlag<&ExportOptions::includeForeignKeys>, storeFlag<&ExportOptions::includeForeignKeys>,
         nullptr, nullptr},
        {ExportOptionId::Indexes, {kSql, kSqlite}, {kSql, kSqlite}, ExportControl::CheckBox, "Include indexes", false, {},
         {}, structureIsOnOrSqlite, readFlag<&ExportOptions::includeIndexes>, storeFlag<&ExportOptions::includeIndexes>, nullptr, nullptr},
        {ExportOptionId::Data, {kSql, kSqlite}, {kSql, kSqlite}, ExportControl::CheckBox, "Export data", false, {}, {},
         nullptr, readFlag<&ExportOptions::exportData>, storeFlag<&ExportOptions::exportData>, nullptr, nullptr},
        {ExportOptionId::Password, {kSqlite}, {}, ExportControl::None, "", false, {}, {}, nullptr,
         readText<&ExportOptions::password>, storeText<&ExportOptions::password>, nullptr, parsePassword},
        // The SQLite kind always writes one file: on by default, and not offered.
        {ExportOptionId::SingleFile, {kXls, kXlsx, kSql}, {kXls, kXlsx, kSql}, ExportControl::CheckBox,
         "Export single file", false, {},
         {{kXls, true, true}, {kXlsx, true, true}, {kSql, true, true}, {kSqlite, true}}, nullptr,
         readFlag<&ExportOptions::exportSingleFile>, storeFlag<&ExportOptions::exportSingleFile>, nullptr, nullptr},
    };
    return table;
}

// In the order of the help. A flag given to a kind applies through the form whose kinds hold
// that kind; the text kinds' --delimiter comes before --decimal, since choosing ";" or ","
// sets the decimal symbol, which an explicit --decimal then overrides.
const std::vector<ExportCommandLineForm> &formTable()
{
    static const std::vector<ExportCommandLineForm> table = {
        {ExportOptionId::ColumnHeader, "--no-header", nullptr, "leave out the row of column names", {kCsv, kTxt}, false},
        {ExportOptionId::FieldDelimiter, "--delimiter", "tab|semicolon|comma|space",
         "field delimiter (csv: semicolon or comma; default comma for csv, tab for txt); semicolon sets the decimal "
         "symbol to \",\", comma to \".\"",
         {kCsv, kTxt}},
        {ExportOptionId::RecordDelimiter, "--record-delimiter", "lf|cr|crlf", "line ending (default lf)", {kCsv, kTxt}},
        {ExportOptionId::DecimalSymbol, "--decimal", "TEXT",
         "replaces \".\" in Currency, Single and Double values (default \".\")", {kCsv, kTxt, kXml}},
        {ExportOptionId::Encoding, "--encoding", "NAME",
         "target encoding by name or code (default UTF-8; see --list-encodings)", {kCsv, kTxt, kXml}},
        {ExportOptionId::SqlFormat, "--dialect", "mysql|postgresql|oracle|sqlite|sqlserver",
         "SQL dialect of the script (default mysql)", {kSql}},
        {ExportOptionId::SchemaName, "--schema", "NAME", "schema put before the table names (postgresql, oracle, sqlserver)",
         {kSql}},
        {ExportOptionId::Structure, "--no-structure", nullptr,
         "leave out DROP, CREATE TABLE, indexes, comments and relationships", {kSql}, false},
        {ExportOptionId::DropTable, "--no-drop", nullptr, "leave out DROP TABLE", {kSql}, false},
        {ExportOptionId::ForeignKeys, "--no-foreign-keys", nullptr, "leave out the relationships", {kSql}, false},
        {ExportOptionId::Indexes, "--no-indexes", nullptr, "leave out the indexes", {kSql}, false},
        {ExportOptionId::Data, "--no-data", nullptr, "leave out the INSERT statements", {kSql}, false},
        {ExportOptionId::DecimalSymbol, "--decimal", "TEXT",
         "replaces \".\" in Currency, Single and Double values (default \".\")", {kSql}},
        {ExportOptionId::ForeignKeys, "--no-foreign-keys", nullptr, "create the tables without FOREIGN KEY constraints",
         {kSqlite}, false},
        {ExportOptionId::Indexes, "--no-indexes", nullptr, "create no indexes besides the primary keys", {kSqlite}, false},
        {ExportOptionId::Data, "--no-data", nullptr, "create the tables without their rows", {kSqlite}, false},
        {ExportOptionId::Password, "--password", "TEXT",
         "encrypt the database with SQLCipher; open it with sqlcipher and PRAGMA key = 'TEXT' (ASCII only)", {kSqlite}},
        {ExportOptionId::SingleFile, "--single-file", nullptr,
         "one workbook or script for all chosen tables, OUTPUT is its path (the default without --table)",
         {kXls, kXlsx, kSql}, true},
        {ExportOptionId::SingleFile, "--file-per-table", nullptr,
         "one workbook or script per table, OUTPUT is a folder (the default with --table)", {kXls, kXlsx, kSql}, false},
        {ExportOptionId::ColumnHeader, "--no-header", nullptr, "leave out the row of column names", {kXls, kXlsx}, false},
    };
    return table;
}

} // namespace

bool containsKind(const ExportKinds &kinds, ExportFileType kind)
{
    return std::find(kinds.begin(), kinds.end(), kind) != kinds.end();
}

const std::vector<ExportKindInfo> &exportKinds()
{
    return kindTable();
}

const ExportKindInfo *exportKindInfo(ExportFileType kind)
{
    for (const ExportKindInfo &info : kindTable())
        if (info.kind == kind)
            return &info;
    return nullptr;
}

const std::vector<ExportOptionInfo> &exportOptions()
{
    return optionTable();
}

const ExportOptionInfo &exportOptionInfo(ExportOptionId id)
{
    // The rows are in the order of the ids.
    return optionTable()[static_cast<std::size_t>(id)];
}

const std::vector<ExportCommandLineForm> &exportCommandLineForms()
{
    return formTable();
}

std::vector<ExportOptionChoice> exportOptionChoices(const ExportOptionInfo &option, ExportFileType kind)
{
    std::vector<ExportOptionChoice> offered;
    for (const ExportOptionChoice &choice : option.choices)
        if (choice.onlyFor.empty() || containsKind(choice.onlyFor, kind))
            offered.push_back(choice);
    return offered;
}

ExportOptionValue exportOptionDefault(const ExportOptionInfo &option, ExportFileType kind, bool wholeFile)
{
    for (const ExportKindDefault &row : option.kindDefaults)
        if (row.kind == kind)
            return row.followsWholeFile ? ExportOptionValue(wholeFile) : row.value;
    return option.read(ExportOptions{});
}

void chooseExportOption(const ExportOptionInfo &option, ExportOptions &options, const ExportOptionValue &value)
{
    (option.choose ? option.choose : option.store)(options, value);
}

bool parseExportOptionText(const ExportOptionInfo &option, ExportFileType kind, const std::string &flag,
                           const std::string &text, ExportOptionValue &value, std::string &error)
{
    if (!option.choices.empty()) {
        std::string known;
        for (const ExportOptionChoice &choice : exportOptionChoices(option, kind)) {
            if (text == choice.word) {
                value = choice.value;
                return true;
            }
            known += known.empty() ? choice.word : std::string("|") + choice.word;
        }
        error = "unknown " + flag.substr(2) + " '" + text + "' (use " + known + ")";
        return false;
    }
    if (option.parseText)
        return option.parseText(text, value, error);
    value = text;
    return true;
}

} // namespace vellum
