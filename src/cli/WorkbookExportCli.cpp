// The Excel workbook formats of `vellum-cli export` (.xls and .xlsx) and their options; the
// single-file switches also serve the SQL script format.

#include "cli/ExportCliFormat.h"

namespace vellum::cli {

namespace {

constexpr ExportFileType kXls = ExportFileType::XLS;
constexpr ExportFileType kXlsx = ExportFileType::XLSX;
constexpr ExportFileType kSql = ExportFileType::SQL;

} // namespace

extern const ExportCliFormat kXlsCliFormat = {
    "xls", kXls, "Excel 97-2003 workbook, a sheet per table (65,536 rows, then T(2), T(3) …); one workbook for the whole file",
    nullptr};
extern const ExportCliFormat kXlsxCliFormat = {
    "xlsx", kXlsx, "Excel 2007 workbook, a sheet per table (1,048,576 rows, then T(2) …); one workbook for the whole file",
    nullptr};

const std::vector<ExportCliOption> &workbookExportCliOptions()
{
    static const std::vector<ExportCliOption> options = {
        {"--single-file", nullptr,
         "one workbook or script for all chosen tables, OUTPUT is its path (the default without --table)",
         {kXls, kXlsx, kSql}, setsFlag<&ExportOptions::exportSingleFile, true>},
        {"--file-per-table", nullptr, "one workbook or script per table, OUTPUT is a folder (the default with --table)",
         {kXls, kXlsx, kSql}, setsFlag<&ExportOptions::exportSingleFile, false>},
        {"--no-header", nullptr, "leave out the row of column names", {kXls, kXlsx}, setsFlag<&ExportOptions::includeColumnHeader, false>},
    };
    return options;
}

} // namespace vellum::cli
