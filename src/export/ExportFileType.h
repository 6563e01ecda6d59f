#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

/// The kinds of export. The numbers are stable: they are the wizard's kinds and the tags of
/// its toolbar items and menu entries.
enum class ExportFileType : std::uint32_t {
    CSV = 0,       ///< comma-separated text, one file per table
    TXT = 1,       ///< delimited text, one file per table
    XML = 2,       ///< bare XML, one file per table
    XLS = 3,       ///< Excel BIFF8 workbook
    SQL = 4,       ///< SQL script in one of five dialects
    SQLite = 5,    ///< a new SQLite database file
    XLSX = 6,      ///< Excel 2007 workbook
    JSON = 7,      ///< a JSON array of row objects, one file per table
    JSONLines = 8, ///< JSON Lines: one row object a line, one file per table
};

/// The extension of a kind without a dot ("csv" … "sqlite", "xlsx"); nullopt for any other
/// value. Used by the save panel and the single-file path rules.
std::optional<std::string> fileExtensionByExportFileType(ExportFileType kind);

/// What a new entry's file name gets after the table name: "." plus the extension, except for
/// the SQLite kind, whose entries carry the bare table name.
std::string exportFileNameSuffix(ExportFileType kind);

/// The kind whose extension is `name` ("csv", "sqlite", …), case-sensitive; nullopt otherwise.
std::optional<ExportFileType> exportFileTypeFromName(std::string_view name);

/// The kind of a raw number, nullopt outside the known kinds.
std::optional<ExportFileType> exportFileTypeFromValue(std::uint32_t value);

} // namespace vellum
