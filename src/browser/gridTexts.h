#pragma once

#include "model/CellValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

class TOrbMDBColumn;
class TOrbMDBTable;

/// The grid's text for a cell: the text itself, "[NULL]" for the null marker, or the blob's
/// cell description (".bmp [3 KB]").
std::string cellDisplayText(const CellValue &value);

/// True for a column whose values are bytes rather than text: Binary, and the types Vellum
/// does not know (their values are kept as stored).
bool columnHoldsBytes(const TOrbMDBColumn &column);

/// The grid's text for a cell of `column`: bytes as "0x" and two lower-case hex digits per
/// byte (Binary values may hold any byte, NUL included), everything else as `cellDisplayText`.
std::string cellDisplayText(const CellValue &value, const TOrbMDBColumn &column);

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
