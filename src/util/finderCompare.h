#pragma once

#include <string_view>

namespace vellum {

/// Compares two UTF-8 names the way every sorted list of the program does: Unicode collation
/// (root locale, tertiary strength) with runs of digits compared as numbers, so that
/// "table1" < "Table2" < "table10". Case decides only between otherwise equal names.
/// Returns -1, 0 or 1. Thread-safe.
int finderCompare(std::string_view a, std::string_view b);

} // namespace vellum
