#include "cli/ExportCliFormat.h"

namespace vellum::cli {

const std::vector<const ExportCliFormat *> &exportCliFormats()
{
    static const std::vector<const ExportCliFormat *> formats = {
        &kCsvCliFormat,
        &kTxtCliFormat,
        &kXmlCliFormat,
        &kSqlCliFormat,
        &kSqliteCliFormat,
        &kXlsCliFormat,
        &kXlsxCliFormat,
    };
    return formats;
}

const std::vector<ExportCliOption> &exportCliOptions()
{
    using Group = const std::vector<ExportCliOption> &(*)();
    static const std::vector<ExportCliOption> options = [] {
        const Group groups[] = {
            textExportCliOptions,
            sqlExportCliOptions,
            sqliteExportCliOptions,
            workbookExportCliOptions,
        };
        std::vector<ExportCliOption> all;
        for (const Group group : groups)
            all.insert(all.end(), group().begin(), group().end());
        return all;
    }();
    return options;
}

bool parseChoice(const std::string &option, const std::string &word,
                 const std::vector<std::pair<const char *, int>> &choices, int &value, std::string &error)
{
    std::string known;
    for (const auto &[name, choice] : choices) {
        if (word == name) {
            value = choice;
            return true;
        }
        known += known.empty() ? name : std::string("|") + name;
    }
    error = "unknown " + option.substr(2) + " '" + word + "' (use " + known + ")";
    return false;
}

} // namespace vellum::cli
