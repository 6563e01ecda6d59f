#pragma once

#include "model/CellValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class TOrbMDBTable;

/// The grid's text for a cell: the text itself, "[NULL]" for the null marker, or the blob's
/// cell description (".bmp [3 KB]").
std::string cellDisplayText(const CellValue &value);

/// The clipboard text of grid rows: for each row (table row numbers, in the given order) the
/// display texts of the given columns (positions, in display order), "[NULL]" and
/// "[NON-TEXTUAL DATA]" left empty, line feeds and then tabs turned into spaces, joined by tabs;
/// each row ends with a line feed. No header line.
std::string copyTextForRows(const TOrbMDBTable &table, const std::vector<std::uint32_t> &rows,
                            const std::vector<std::size_t> &columns);

/// One field of the copy text, from a cell's display text.
std::string copyField(std::string_view displayText);

/// Reads the "Jump to row" input as an integer (leading blanks, an optional sign, digits; what
/// follows is ignored; no digits read as 0) and answers the 0-based row when it lies in
/// 1 … rowCount, nullopt (a beep) otherwise.
std::optional<std::size_t> jumpToRowTarget(std::string_view input, std::size_t rowCount);

} // namespace vellum
