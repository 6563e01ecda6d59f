#include "export/ExportOptions.h"

namespace vellum {

ExportOptions ExportOptions::defaultsFor(ExportFileType kind, bool wholeFile)
{
    ExportOptions options;
    switch (kind) {
    case ExportFileType::TXT:
        options.fieldDelimiterTag = kFieldDelimiterTab;
        break;
    case ExportFileType::XML:
        options.includeColumnHeader = false;
        break;
    case ExportFileType::XLS:
    case ExportFileType::XLSX:
    case ExportFileType::SQL:
        options.exportSingleFile = wholeFile;
        break;
    case ExportFileType::SQLite:
        options.exportSingleFile = true;
        break;
    case ExportFileType::CSV:
        break;
    }
    return options;
}

void ExportOptions::changeFieldDelimiter(int tag)
{
    fieldDelimiterTag = tag;
    if (tag == kFieldDelimiterComma)
        decimalSymbol = ".";
    else if (tag == kFieldDelimiterSemicolon)
        decimalSymbol = ",";
}

const char *fieldDelimiterForTag(int tag)
{
    switch (tag) {
    case kFieldDelimiterTab: return "\t";
    case kFieldDelimiterSemicolon: return ";";
    case kFieldDelimiterSpace: return " ";
    default: return ",";
    }
}

const char *recordDelimiterForTag(int tag)
{
    switch (tag) {
    case kRecordDelimiterCR: return "\r";
    case kRecordDelimiterCRLF: return "\r\n";
    default: return "\n";
    }
}

bool schemaNameEnabledForSqlFormat(int sqlFormat)
{
    return sqlFormat == 2 || sqlFormat == 3 || sqlFormat == 5;
}

bool enableOkButtonCheck(const std::string &pathText, int selectedTableCount, const ExportOptions &options)
{
    return !pathText.empty() && selectedTableCount != 0 && (options.exportStructure || options.exportData);
}

} // namespace vellum
