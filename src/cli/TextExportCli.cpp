// The delimited text and XML formats of `vellum-cli export` and their options.

#include "cli/ExportCliFormat.h"
#include "util/stringEncodings.h"

namespace vellum::cli {

namespace {

constexpr ExportFileType kCsv = ExportFileType::CSV;
constexpr ExportFileType kTxt = ExportFileType::TXT;
constexpr ExportFileType kXml = ExportFileType::XML;

bool applyDelimiter(ExportCliRequest &request, const std::string &value, std::string &error)
{
    int tag = 0;
    // The wizard offers only ";" and "," for comma-separated text.
    const bool known = request.kind == kCsv
                           ? parseChoice("--delimiter", value,
                                         {{"semicolon", kFieldDelimiterSemicolon}, {"comma", kFieldDelimiterComma}}, tag, error)
                           : parseChoice("--delimiter", value,
                                         {{"tab", kFieldDelimiterTab},
                                          {"semicolon", kFieldDelimiterSemicolon},
                                          {"comma", kFieldDelimiterComma},
                                          {"space", kFieldDelimiterSpace}},
                                         tag, error);
    if (!known)
        return false;
    request.options.changeFieldDelimiter(tag);
    return true;
}

bool applyRecordDelimiter(ExportCliRequest &request, const std::string &value, std::string &error)
{
    return parseChoice("--record-delimiter", value,
                       {{"lf", kRecordDelimiterLF}, {"cr", kRecordDelimiterCR}, {"crlf", kRecordDelimiterCRLF}},
                       request.options.recordDelimiterTag, error);
}

bool applyDecimal(ExportCliRequest &request, const std::string &value, std::string &)
{
    request.options.decimalSymbol = value;
    return true;
}

bool applyEncoding(ExportCliRequest &request, const std::string &value, std::string &error)
{
    const StringEncoding *encoding = findStringEncoding(value);
    if (!encoding) {
        error = "unknown encoding '" + value + "' (see --list-encodings)";
        return false;
    }
    request.options.encoding = encoding->code;
    return true;
}

} // namespace

extern const ExportCliFormat kCsvCliFormat = {"csv", kCsv, "comma-separated text, one file per table", nullptr};
extern const ExportCliFormat kTxtCliFormat = {"txt", kTxt, "delimited text (tab by default), one file per table", nullptr};
extern const ExportCliFormat kXmlCliFormat = {"xml", kXml, "XML, one file per table", nullptr};

const std::vector<ExportCliOption> &textExportCliOptions()
{
    // --delimiter comes before --decimal: choosing ";" or "," sets the decimal symbol, which an
    // explicit --decimal then overrides.
    static const std::vector<ExportCliOption> options = {
        {"--no-header", nullptr, "leave out the row of column names", {kCsv, kTxt}, setsFlag<&ExportOptions::includeColumnHeader, false>},
        {"--delimiter", "tab|semicolon|comma|space",
         "field delimiter (csv: semicolon or comma; default comma for csv, tab for txt); semicolon sets the decimal "
         "symbol to \",\", comma to \".\"",
         {kCsv, kTxt}, applyDelimiter},
        {"--record-delimiter", "lf|cr|crlf", "line ending (default lf)", {kCsv, kTxt}, applyRecordDelimiter},
        {"--decimal", "TEXT", "replaces \".\" in Currency, Single and Double values (default \".\")", {kCsv, kTxt, kXml},
         applyDecimal},
        {"--encoding", "NAME", "target encoding by name or code (default UTF-8; see --list-encodings)", {kCsv, kTxt, kXml},
         applyEncoding},
    };
    return options;
}

} // namespace vellum::cli
