#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace vellum {

// The one-line status texts of the main window. Every text goes through localized(); the
// singular forms are used for exactly 1 only, so 0 reads "0 files", "0 records".

/// Nothing selected: "%d %@" of the files listed and "file"/"files".
std::string statusForNoSelection(std::size_t filesListed);

/// A file selected: "1 of 1 file" or "1 of %d files"; for an open file followed by
/// ", contains 1 table" / ", contains %d tables" (`tableCount` is set only for an open file).
std::string statusForFileSelection(std::size_t filesListed, std::optional<std::size_t> tableCount);

/// A table selected: "1 of 1 table" / "1 of %d tables" of the tables listed in its file, then
/// ", contains 1 record" / ", contains %d records" of its full row count.
std::string statusForTableSelection(std::size_t tablesListed, std::size_t rowCount);

/// The grid: no row selected "%d record(s)", one "Record %d of %d" (position counted from 1),
/// several "%d of %d records".
std::string statusForRecordSelection(std::size_t selectedCount, std::size_t firstSelectedPosition,
                                     std::size_t rowsShown);

} // namespace vellum
