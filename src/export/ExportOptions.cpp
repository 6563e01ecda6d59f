#include "export/ExportOptions.h"

#include "export/exportRegistry.h"

namespace vellum {

ExportOptions ExportOptions::defaultsFor(ExportFileType kind, bool wholeFile)
{
    ExportOptions options;
    for (const ExportOptionInfo &option : exportOptions())
        option.store(options, exportOptionDefault(option, kind, wholeFile));
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
    case kFieldDelimiterTab:
        return "\t";
    case kFieldDelimiterSemicolon:
        return ";";
    case kFieldDelimiterSpace:
        return " ";
    default:
        return ",";
    }
}

const char *recordDelimiterForTag(int tag)
{
    switch (tag) {
    case kRecordDelimiterCR:
        return "\r";
    case kRecordDelimiterCRLF:
        return "\r\n";
    default:
        return "\n";
    }
}

bool schemaNameEnabledForSqlFormat(ServerType sqlFormat)
{
    return sqlFormat == ServerTypePostgreSQL || sqlFormat == ServerTypeOracle || sqlFormat == ServerTypeSQLServer;
}

bool enableOkButtonCheck(const std::string &pathText, int selectedTableCount, const ExportOptions &options)
{
    return !pathText.empty() && selectedTableCount != 0 && (options.exportStructure || options.exportData);
}

} // namespace vellum
