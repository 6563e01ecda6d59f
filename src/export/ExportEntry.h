#pragma once

#include "export/ExportFileType.h"

#include <cstdint>
#include <string>

namespace vellum {

/// One table of the file in the export job: whether it is chosen, its name, and the file name
/// (not a path) it is written to when one file per table is made.
struct ExportEntry {
    bool selected = false;
    std::string tableName;
    std::string exportFileName;

    /// The entry of a new job: not selected, file name = table name + the kind's suffix
    /// ("%@%@"; no suffix for the SQLite kind).
    static ExportEntry exportEntryWithTableName(const std::string &tableName, ExportFileType kind);
};

/// One text encoding offered for text output: its stable numeric code (the menu tag and the
/// target of the conversion) and its display name.
struct EncodingEntry {
    std::uint64_t encoding = 0;
    std::string encodingName;

    /// The entry of an encoding code; the name is the encoding table's display name (empty for
    /// an unknown code).
    static EncodingEntry encodingEntryWithEncoding(std::uint64_t encoding);
};

/// Orders two encoding entries by a plain comparison of their names (true when a < b).
bool SortEncoding(const EncodingEntry &a, const EncodingEntry &b);

} // namespace vellum
