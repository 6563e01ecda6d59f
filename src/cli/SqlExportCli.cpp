// The SQL script format of `vellum-cli export` and its options (--single-file and
// --file-per-table are declared with the workbooks').

#include "cli/ExportCliFormat.h"

namespace vellum::cli {

namespace {

constexpr ExportFileType kSql = ExportFileType::SQL;

bool applyDialect(ExportCliRequest &request, const std::string &value, std::string &error)
{
    return parseChoice("--dialect", value,
                       {{"mysql", 1}, {"postgresql", 2}, {"oracle", 3}, {"sqlite", 4}, {"sqlserver", 5}},
                       request.options.sqlFormat, error);
}

bool applySchema(ExportCliRequest &request, const std::string &value, std::string &)
{
    request.options.schemaName = value;
    return true;
}

bool applyDecimal(ExportCliRequest &request, const std::string &value, std::string &)
{
    request.options.decimalSymbol = value;
    return true;
}

bool validateSql(const ExportCliRequest &request, std::string &error)
{
    // The wizard's OK rule: structure or data must be on, or nothing would be written.
    if (!request.options.exportStructure && !request.options.exportData) {
        error = "--no-structure and --no-data together leave nothing to export";
        return false;
    }
    if (!request.options.schemaName.empty() && !schemaNameEnabledForSqlFormat(request.options.sqlFormat)) {
        error = "--schema applies to the postgresql, oracle and sqlserver dialects only";
        return false;
    }
    return true;
}

} // namespace

extern const ExportCliFormat kSqlCliFormat = {
    "sql", kSql, "SQL script (--dialect mysql|postgresql|oracle|sqlite|sqlserver); one script for the whole file", validateSql};

const std::vector<ExportCliOption> &sqlExportCliOptions()
{
    static const std::vector<ExportCliOption> options = {
        {"--dialect", "mysql|postgresql|oracle|sqlite|sqlserver", "SQL dialect of the script (default mysql)", {kSql},
         applyDialect},
        {"--schema", "NAME", "schema put before the table names (postgresql, oracle, sqlserver)", {kSql}, applySchema},
        {"--no-structure", nullptr, "leave out DROP, CREATE TABLE, indexes, comments and relationships", {kSql},
         setsFlag<&ExportOptions::exportStructure, false>},
        {"--no-drop", nullptr, "leave out DROP TABLE", {kSql}, setsFlag<&ExportOptions::includeDropTable, false>},
        {"--no-foreign-keys", nullptr, "leave out the relationships", {kSql}, setsFlag<&ExportOptions::includeForeignKeys, false>},
        {"--no-indexes", nullptr, "leave out the indexes", {kSql}, setsFlag<&ExportOptions::includeIndexes, false>},
        {"--no-data", nullptr, "leave out the INSERT statements", {kSql}, setsFlag<&ExportOptions::exportData, false>},
        {"--decimal", "TEXT", "replaces \".\" in Currency, Single and Double values (default \".\")", {kSql},
         applyDecimal},
    };
    return options;
}

} // namespace vellum::cli
