#pragma once

// The formats and options of `vellum-cli export`.
//
// Adding a format (for writer authors)
// ------------------------------------
// The command parses FILE, OUTPUT, --format, --table and --list-encodings itself, starts the
// request from the kind's defaults (ExportOptions::defaultsFor, whole file when no --table is
// given), applies the options the user gave, checks OUTPUT (a folder with one file per table,
// the file itself when options.exportSingleFile is on), runs the export job and prints its
// report. A format only declares what differs:
// 1. In a file of its own under src/cli/ (e.g. FooExportCli.cpp for a kind Foo) define
//        extern const ExportCliFormat kFooCliFormat = {"foo", ExportFileType::Foo, "summary", validateFoo};
//    and, when it has options of its own, a function returning them:
//        const std::vector<ExportCliOption> &fooExportCliOptions();
// 2. Declare both at the end of this header and add one line to each list in
//    ExportCliRegistry.cpp.
// An option name may be declared by several formats (e.g. --decimal by text and by SQL, or
// --single-file by SQL and by the workbooks): the declaration whose kinds hold the chosen
// format applies it; given with any other format it is refused. Options are applied in the
// order of the lists, the text formats' first. The same name must be a switch everywhere or
// take a value everywhere.

#include "export/ExportFileType.h"
#include "export/ExportOptions.h"

#include <string>
#include <vector>

namespace vellum::cli {

/// What the command has settled before the job starts.
struct ExportCliRequest {
    ExportFileType kind = ExportFileType::CSV;
    /// The kind's defaults, then every option given.
    ExportOptions options;
    /// The --table names in the order given; empty = every table of the file.
    std::vector<std::string> tables;
    /// OUTPUT as given.
    std::string output;

    bool wholeFile() const { return tables.empty(); }
};

/// An option of one or more formats.
struct ExportCliOption {
    const char *name;      ///< "--dialect"
    const char *valueName; ///< "NAME" in the usage; nullptr for a switch
    const char *help;      ///< one line for the usage
    std::vector<ExportFileType> kinds;
    /// Applies the value (empty for a switch); false with `error` naming the bad value.
    bool (*apply)(ExportCliRequest &request, const std::string &value, std::string &error);
};

/// The `apply` of a switch that sets one flag of the options, e.g.
/// `setsFlag<&ExportOptions::includeIndexes, false>` for --no-indexes.
template <bool ExportOptions::*Flag, bool Value>
bool setsFlag(ExportCliRequest &request, const std::string &, std::string &)
{
    request.options.*Flag = Value;
    return true;
}

/// One value of --format.
struct ExportCliFormat {
    const char *name; ///< "csv"
    ExportFileType kind;
    const char *summary;
    /// The last check after every option was applied (e.g. an export that would write
    /// nothing); nullptr when there is none. False with `error` set refuses the command.
    bool (*validate)(const ExportCliRequest &request, std::string &error);
};

/// Every format, in the order the usage lists them.
const std::vector<const ExportCliFormat *> &exportCliFormats();
/// Every declared option of every format, in the order they are applied.
const std::vector<ExportCliOption> &exportCliOptions();

/// Reads one of the given words (e.g. "tab") as its value; false with `error` naming the option
/// and the bad word when it is none of them.
bool parseChoice(const std::string &option, const std::string &word,
                 const std::vector<std::pair<const char *, int>> &choices, int &value, std::string &error);

// ---- the formats and their options ----
extern const ExportCliFormat kCsvCliFormat;
extern const ExportCliFormat kTxtCliFormat;
extern const ExportCliFormat kXmlCliFormat;
const std::vector<ExportCliOption> &textExportCliOptions();
extern const ExportCliFormat kSqlCliFormat;
const std::vector<ExportCliOption> &sqlExportCliOptions();
extern const ExportCliFormat kSqliteCliFormat;
const std::vector<ExportCliOption> &sqliteExportCliOptions();
extern const ExportCliFormat kXlsCliFormat;
extern const ExportCliFormat kXlsxCliFormat;
const std::vector<ExportCliOption> &workbookExportCliOptions();

} // namespace vellum::cli
