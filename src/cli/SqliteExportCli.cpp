// The SQLite database format of `vellum-cli export` and its options.

#include "cli/ExportCliFormat.h"

namespace vellum::cli {

namespace {

constexpr ExportFileType kSqlite = ExportFileType::SQLite;

/// Turns one of the export's on/off options off.
template <bool ExportOptions::*Option>
bool turnOff(ExportCliRequest &request, const std::string &, std::string &)
{
    request.options.*Option = false;
    return true;
}

bool applyPassword(ExportCliRequest &request, const std::string &value, std::string &error)
{
    // The key is handed to SQLCipher with its length counted in characters, so only a password
    // of single-byte characters is the same key that `PRAGMA key` of other SQLCipher programs
    // derives from the same text.
    for (const char c : value) {
        if (static_cast<unsigned char>(c) >= 0x80) {
            error = "--password must consist of ASCII characters";
            return false;
        }
    }
    if (value.empty()) {
        error = "--password must not be empty";
        return false;
    }
    request.options.password = value;
    return true;
}

} // namespace

extern const ExportCliFormat kSqliteCliFormat = {
    "sqlite", kSqlite,
    "a new SQLite database, OUTPUT is its file (an existing file is replaced); with --password encrypted (SQLCipher)",
    nullptr};

const std::vector<ExportCliOption> &sqliteExportCliOptions()
{
    static const std::vector<ExportCliOption> options = {
        {"--no-foreign-keys", nullptr, "create the tables without FOREIGN KEY constraints", {kSqlite},
         turnOff<&ExportOptions::includeForeignKeys>},
        {"--no-indexes", nullptr, "create no indexes besides the primary keys", {kSqlite},
         turnOff<&ExportOptions::includeIndexes>},
        {"--no-data", nullptr, "create the tables without their rows", {kSqlite}, turnOff<&ExportOptions::exportData>},
        {"--password", "TEXT",
         "encrypt the database with SQLCipher; open it with sqlcipher and PRAGMA key = 'TEXT' (ASCII only)",
         {kSqlite}, applyPassword},
    };
    return options;
}

} // namespace vellum::cli
