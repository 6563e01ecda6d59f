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
constexpr ExportFileType kJson = ExportFileType::JSON;
constexpr ExportFileType kJsonLines = ExportFileType::JSONLines;

// ---- reading and storing one field of the options ----

template <bool ExportOptions::*Field> ExportOptionValue readFlag(const ExportOptions &options)
{
    return options.*Field;
}

template <bool ExportOptions::*Field> void storeFlag(ExportOptions &options, const ExportOptionValue &value)
{
    options.*Field = std::get<bool>(value);
}

template <int ExportOptions::*Field> ExportOptionValue readTag(const ExportOptions &options)
{
    return static_cast<std::int64_t>(options.*Field);
}

template <int ExportOptions::*Field> void storeTag(ExportOptions &options, const ExportOptionValue &value)
{
    options.*Field = static_cast<int>(std::get<std::int64_t>(value));
}

template <std::string ExportOptions::*Field> ExportOptionValue readText(const ExportOptions &options)
{
    return options.*Field;
}

template <std::string ExportOptions::*Field> void storeText(ExportOptions &options, const ExportOptionValue &value)
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
    // A script's numbers are SQL literals: with any other decimal symbol every fractional
    // value would be an invalid INSERT.
    if (options.decimalSymbol != ".") {
        error = "--decimal must be \".\" for SQL scripts: SQL numbers always use \".\"";
        return false;
    }
    if (!options.schemaName.empty() && !schemaNameEnabledForSqlFormat(options.sqlFormat)) {
        error = "--schema applies to the postgresql, oracle and sqlserver dialects only";
        return false;
    }
    return true;
}

bool validateDelimitedText(const ExportOptions &options, std::string &error)
{
    // A byte-order mark is a UTF-8 one; in another encoding it would be a wrong first character.
    if (options.byteOrderMark && options.encoding != kStringEncodingUTF8) {
        error = "--bom applies to --encoding UTF-8 only";
        return false;
    }
    return true;
}

std::int64_t dialectValue(ServerType type)
{
    return serverTypeValue(type);
}

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
bool losslessIsOn(ExportFileType, const ExportOptions &options)
{
    return options.lossless;
}

bool structureIsOnOrSqlite(ExportFileType kind, const ExportOptions &options)
{
    return options.exportStructure || kind == kSqlite;
}

// ---- the table ----

// Built on first use: the command line builds its help text during static initialization.
const std::vector<ExportKindInfo> &kindTable()
{
    static const std::vector<ExportKindInfo> table = {
        {.kind = kCsv,
         .name = "csv",
         .extension = "csv",
         .title = "Export CSV",
         .summary = "comma-separated text, one file per table",
         .routine = exportTextFileThread,
         .validate = validateDelimitedText},
        {.kind = kTxt,
         .name = "txt",
         .extension = "txt",
         .title = "Export TXT",
         .summary = "delimited text (tab by default), one file per table",
         .routine = exportTextFileThread,
         .validate = validateDelimitedText},
        {.kind = kXml,
         .name = "xml",
         .extension = "xml",
         .title = "Export XML",
         .summary = "XML, one file per table",
         .routine = exportTextFileThread},
        {.kind = kSql,
         .name = "sql",
         .extension = "sql",
         .title = "Export SQL",
         .summary = "SQL script (--dialect mysql|postgresql|oracle|sqlite|sqlserver); one script for the whole file",
         .routine = exportSQLThread,
         .singleFileTarget = true,
         .validate = validateSql},
        {.kind = kSqlite,
         .name = "sqlite",
         .extension = "sqlite",
         .title = "Export SQLite",
         .summary = "a new SQLite database, OUTPUT is its file (an existing file is replaced); with --password "
                    "encrypted (SQLCipher)",
         .routine = exportSQLiteThread,
         .singleFileTarget = true},
        {.kind = kXls,
         .name = "xls",
         .extension = "xls",
         .title = "Export XLS",
         .summary = "Excel 97-2003 workbook, a sheet per table (65,536 rows, then T(2), T(3) …); one workbook for "
                    "the whole file",
         .routine = exportXLSThread,
         .singleFileTarget = true},
        {.kind = kXlsx,
         .name = "xlsx",
         .extension = "xlsx",
         .title = "Export XLSX",
         .summary = "Excel 2007 workbook, a sheet per table (1,048,576 rows, then T(2) …); one workbook for the "
                    "whole file",
         .routine = exportXLSXThread,
         .singleFileTarget = true},
        {.kind = kJson,
         .name = "json",
         .extension = "json",
         .title = "Export JSON",
         .summary = "JSON (UTF-8), one file per table: an array of objects, one per row, keyed by column name",
         .routine = exportJSONThread},
        {.kind = kJsonLines,
         .name = "jsonl",
         .extension = "jsonl",
         .title = "Export JSON Lines",
         .summary = "JSON Lines (UTF-8), one file per table: one object per row, one row a line",
         .routine = exportJSONThread},
    };
    return table;
}

// In the order of the wizard's controls, which is the order of ExportOptionId.
const std::vector<ExportOptionInfo> &optionTable()
{
    static const std::vector<ExportOptionInfo> table = {
        {.id = ExportOptionId::ColumnHeader,
         .kinds = {kCsv, kTxt, kXls, kXlsx},
         .wizardKinds = {kCsv, kTxt, kXls, kXlsx},
         .control = ExportControl::CheckBox,
         .label = "Include column header",
         .kindDefaults = {{kXml, false}},
         .read = readFlag<&ExportOptions::includeColumnHeader>,
         .store = storeFlag<&ExportOptions::includeColumnHeader>},
        {.id = ExportOptionId::FieldDelimiter,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::Menu,
         .label = "Field delimiter:",
         .localizedChoices = true,
         // Comma-separated text offers only ";" and ",".
         .choices = {{"tab", "Tab", kFieldDelimiterTab, {kTxt}},
                     {"semicolon", "Semicolon (;)", kFieldDelimiterSemicolon, {}},
                     {"comma", "Comma (,)", kFieldDelimiterComma, {}},
                     {"space", "Space", kFieldDelimiterSpace, {kTxt}}},
         .kindDefaults = {{kTxt, std::int64_t{kFieldDelimiterTab}}},
         .read = readTag<&ExportOptions::fieldDelimiterTag>,
         .store = storeTag<&ExportOptions::fieldDelimiterTag>,
         .choose = chooseFieldDelimiter},
        {.id = ExportOptionId::RecordDelimiter,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::Menu,
         .label = "Record delimiter:",
         .localizedChoices = true,
         .choices = {{"lf", "LF (Linux, macOS)", kRecordDelimiterLF, {}},
                     {"cr", "CR (classic Mac OS)", kRecordDelimiterCR, {}},
                     {"crlf", "CR LF (Windows)", kRecordDelimiterCRLF, {}}},
         .read = readTag<&ExportOptions::recordDelimiterTag>,
         .store = storeTag<&ExportOptions::recordDelimiterTag>},
        {.id = ExportOptionId::DecimalSymbol,
         .kinds = {kCsv, kTxt, kXml, kSql},
         .wizardKinds = {kCsv, kTxt, kXml},
         .control = ExportControl::TextField,
         .label = "Decimal symbol:",
         .read = readText<&ExportOptions::decimalSymbol>,
         .store = storeText<&ExportOptions::decimalSymbol>},
        {.id = ExportOptionId::Encoding,
         .kinds = {kCsv, kTxt, kXml},
         .wizardKinds = {kCsv, kTxt, kXml, kSql, kXls, kXlsx},
         .control = ExportControl::EncodingMenu,
         .label = "Encoding:",
         .read = readEncoding,
         .store = storeEncoding,
         .parseText = parseEncoding},
        {.id = ExportOptionId::SqlFormat,
         .kinds = {kSql},
         .wizardKinds = {kSql},
         .control = ExportControl::Menu,
         .label = "SQL format:",
         .choices = {{"mysql", "MySQL", dialectValue(ServerTypeMySQL), {}},
                     {"postgresql", "PostgreSQL", dialectValue(ServerTypePostgreSQL), {}},
                     {"oracle", "Oracle", dialectValue(ServerTypeOracle), {}},
                     {"sqlite", "SQLite", dialectValue(ServerTypeSQLite), {}},
                     {"sqlserver", "SQL Server", dialectValue(ServerTypeSQLServer), {}}},
         .read = readSqlFormat,
         .store = storeSqlFormat},
        {.id = ExportOptionId::SchemaName,
         .kinds = {kSql},
         .wizardKinds = {kSql},
         .control = ExportControl::TextField,
         .label = "Schema name:",
         .enabledWhen = schemaNameEnabled,
         .read = readText<&ExportOptions::schemaName>,
         .store = storeText<&ExportOptions::schemaName>},
        {.id = ExportOptionId::Structure,
         .kinds = {kSql},
         .wizardKinds = {kSql},
         .control = ExportControl::CheckBox,
         .label = "Export structure",
         .read = readFlag<&ExportOptions::exportStructure>,
         .store = storeFlag<&ExportOptions::exportStructure>},
        {.id = ExportOptionId::DropTable,
         .kinds = {kSql},
         .wizardKinds = {kSql},
         .control = ExportControl::CheckBox,
         .label = "Include DROP TABLE",
         .enabledWhen = structureIsOn,
         .read = readFlag<&ExportOptions::includeDropTable>,
         .store = storeFlag<&ExportOptions::includeDropTable>},
        {.id = ExportOptionId::ForeignKeys,
         .kinds = {kSql, kSqlite},
         .wizardKinds = {kSql, kSqlite},
         .control = ExportControl::CheckBox,
         .label = "Include foreign keys",
         .enabledWhen = structureIsOnOrSqlite,
         .read = readFlag<&ExportOptions::includeForeignKeys>,
         .store = storeFlag<&ExportOptions::includeForeignKeys>},
        {.id = ExportOptionId::Indexes,
         .kinds = {kSql, kSqlite},
         .wizardKinds = {kSql, kSqlite},
         .control = ExportControl::CheckBox,
         .label = "Include indexes",
         .enabledWhen = structureIsOnOrSqlite,
         .read = readFlag<&ExportOptions::includeIndexes>,
         .store = storeFlag<&ExportOptions::includeIndexes>},
        {.id = ExportOptionId::Data,
         .kinds = {kSql, kSqlite},
         .wizardKinds = {kSql, kSqlite},
         .control = ExportControl::CheckBox,
         .label = "Export data",
         .read = readFlag<&ExportOptions::exportData>,
         .store = storeFlag<&ExportOptions::exportData>},
        {.id = ExportOptionId::Password,
         .kinds = {kSqlite},
         .read = readText<&ExportOptions::password>,
         .store = storeText<&ExportOptions::password>,
         .parseText = parsePassword},
        // The SQLite kind always writes one file: on by default, and not offered.
        {.id = ExportOptionId::SingleFile,
         .kinds = {kXls, kXlsx, kSql},
         .wizardKinds = {kXls, kXlsx, kSql},
         .control = ExportControl::CheckBox,
         .label = "Export single file",
         .kindDefaults = {{kXls, true, true}, {kXlsx, true, true}, {kSql, true, true}, {kSqlite, true}},
         .read = readFlag<&ExportOptions::exportSingleFile>,
         .store = storeFlag<&ExportOptions::exportSingleFile>},
        {.id = ExportOptionId::Lossless,
         .kinds = {kCsv, kTxt, kXml, kXls, kXlsx, kSql, kSqlite},
         .wizardKinds = {kCsv, kTxt, kXml, kXls, kXlsx, kSql, kSqlite},
         .control = ExportControl::CheckBox,
         .label = "Lossless output: standard types, exact values",
         .read = readFlag<&ExportOptions::lossless>,
         .store = storeFlag<&ExportOptions::lossless>},
        {.id = ExportOptionId::NullMarker,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::TextField,
         .label = "NULL as:",
         .read = readText<&ExportOptions::nullMarker>,
         .store = storeText<&ExportOptions::nullMarker>},
        {.id = ExportOptionId::BinaryEncoding,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::Menu,
         .label = "Binary data:",
         .localizedChoices = true,
         .choices = {{"base64", "Base64", kBinaryEncodingBase64, {}}, {"hex", "Hexadecimal", kBinaryEncodingHex, {}}},
         .enabledWhen = losslessIsOn,
         .read = readTag<&ExportOptions::binaryEncodingTag>,
         .store = storeTag<&ExportOptions::binaryEncodingTag>},
        {.id = ExportOptionId::ByteOrderMark,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::CheckBox,
         .label = "Begin with a byte-order mark (UTF-8)",
         .read = readFlag<&ExportOptions::byteOrderMark>,
         .store = storeFlag<&ExportOptions::byteOrderMark>},
        {.id = ExportOptionId::QuoteAllFields,
         .kinds = {kCsv, kTxt},
         .wizardKinds = {kCsv, kTxt},
         .control = ExportControl::CheckBox,
         .label = "Quote every field",
         .read = readFlag<&ExportOptions::quoteAllFields>,
         .store = storeFlag<&ExportOptions::quoteAllFields>},
    };
    return table;
}

// In the order of the help. A flag given to a kind applies through the form whose kinds hold
// that kind; the text kinds' --delimiter comes before --decimal, since choosing ";" or ","
// sets the decimal symbol, which an explicit --decimal then overrides.
const std::vector<ExportCommandLineForm> &formTable()
{
    static const std::vector<ExportCommandLineForm> table = {
        {.option = ExportOptionId::ColumnHeader,
         .flag = "--no-header",
         .help = "leave out the row of column names",
         .kinds = {kCsv, kTxt}},
        {.option = ExportOptionId::FieldDelimiter,
         .flag = "--delimiter",
         .valueName = "tab|semicolon|comma|space",
         .help = "field delimiter (csv: semicolon or comma; default comma for csv, tab for txt); semicolon "
                 "sets the decimal symbol to \",\", comma to \".\"",
         .kinds = {kCsv, kTxt}},
        {.option = ExportOptionId::RecordDelimiter,
         .flag = "--record-delimiter",
         .valueName = "lf|cr|crlf",
         .help = "line ending (default lf)",
         .kinds = {kCsv, kTxt}},
        {.option = ExportOptionId::DecimalSymbol,
         .flag = "--decimal",
         .valueName = "TEXT",
         .help = "replaces \".\" in Currency, Single and Double values (default \".\")",
         .kinds = {kCsv, kTxt, kXml}},
        {.option = ExportOptionId::Encoding,
         .flag = "--encoding",
         .valueName = "NAME",
         .help = "target encoding by name or code (default UTF-8; see --list-encodings)",
         .kinds = {kCsv, kTxt, kXml}},
        {.option = ExportOptionId::SqlFormat,
         .flag = "--dialect",
         .valueName = "mysql|postgresql|oracle|sqlite|sqlserver",
         .help = "SQL dialect of the script (default mysql)",
         .kinds = {kSql}},
        {.option = ExportOptionId::SchemaName,
         .flag = "--schema",
         .valueName = "NAME",
         .help = "schema put before the table names (postgresql, oracle, sqlserver)",
         .kinds = {kSql}},
        {.option = ExportOptionId::Structure,
         .flag = "--no-structure",
         .help = "leave out DROP, CREATE TABLE, indexes, comments and relationships",
         .kinds = {kSql}},
        {.option = ExportOptionId::DropTable, .flag = "--no-drop", .help = "leave out DROP TABLE", .kinds = {kSql}},
        {.option = ExportOptionId::ForeignKeys,
         .flag = "--no-foreign-keys",
         .help = "leave out the relationships",
         .kinds = {kSql}},
        {.option = ExportOptionId::Indexes, .flag = "--no-indexes", .help = "leave out the indexes", .kinds = {kSql}},
        {.option = ExportOptionId::Data,
         .flag = "--no-data",
         .help = "leave out the INSERT statements",
         .kinds = {kSql}},
        {.option = ExportOptionId::DecimalSymbol,
         .flag = "--decimal",
         .valueName = "TEXT",
         .help = "only \".\" is accepted: SQL numbers always use \".\"",
         .kinds = {kSql}},
        {.option = ExportOptionId::ForeignKeys,
         .flag = "--no-foreign-keys",
         .help = "create the tables without FOREIGN KEY constraints",
         .kinds = {kSqlite}},
        {.option = ExportOptionId::Indexes,
         .flag = "--no-indexes",
         .help = "create no indexes besides the primary keys",
         .kinds = {kSqlite}},
        {.option = ExportOptionId::Data,
         .flag = "--no-data",
         .help = "create the tables without their rows",
         .kinds = {kSqlite}},
        {.option = ExportOptionId::Password,
         .flag = "--password",
         .valueName = "TEXT",
         .help = "encrypt the database with SQLCipher; open it with sqlcipher and PRAGMA key = 'TEXT' (ASCII only)",
         .kinds = {kSqlite}},
        {.option = ExportOptionId::SingleFile,
         .flag = "--single-file",
         .help = "one workbook or script for all chosen tables, OUTPUT is its path (the default without --table)",
         .kinds = {kXls, kXlsx, kSql},
         .switchValue = true},
        {.option = ExportOptionId::SingleFile,
         .flag = "--file-per-table",
         .help = "one workbook or script per table, OUTPUT is a folder (the default with --table)",
         .kinds = {kXls, kXlsx, kSql}},
        {.option = ExportOptionId::ColumnHeader,
         .flag = "--no-header",
         .help = "leave out the row of column names",
         .kinds = {kXls, kXlsx}},
        {.option = ExportOptionId::NullMarker,
         .flag = "--null",
         .valueName = "TEXT",
         .help = "text written for a NULL field (default: an empty field)",
         .kinds = {kCsv, kTxt}},
        {.option = ExportOptionId::BinaryEncoding,
         .flag = "--binary",
         .valueName = "base64|hex",
         .help = "how binary and OLE values are written (default base64)",
         .kinds = {kCsv, kTxt}},
        {.option = ExportOptionId::ByteOrderMark,
         .flag = "--bom",
         .help = "begin the file with a UTF-8 byte-order mark (for spreadsheet programs)",
         .kinds = {kCsv, kTxt},
         .switchValue = true},
        {.option = ExportOptionId::QuoteAllFields,
         .flag = "--quote-all",
         .help = "put every field in quotes, not only those that need them",
         .kinds = {kCsv, kTxt},
         .switchValue = true},
        {.option = ExportOptionId::Lossless,
         .flag = "--classic",
         .help = "the classic output the window writes by default, instead of the lossless output (standard "
                 "types, exact values)",
         .kinds = {kCsv, kTxt, kXml, kXls, kXlsx, kSql, kSqlite}},
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

const ExportKinds &exportMenuKinds()
{
    static const ExportKinds kinds = {kCsv, kTxt, kXml, kJson, kJsonLines, kXls, kXlsx, kSql, kSqlite};
    return kinds;
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
