#pragma once

#include <string>
#include <string_view>

namespace vellum::xls {

/// Longest sheet name Excel accepts, in UTF-16 code units.
inline constexpr std::size_t kMaxSheetNameUnits = 31;

/// Applies Excel's sheet-name rules to a proposed name: each of : \ / ? * [ ] becomes "_", and
/// so does an apostrophe at the start or the end; a name over 31 units is cut, keeping a
/// trailing continuation number such as "(2)" and never splitting a surrogate pair. An empty
/// name stays empty. Tables whose names differ only in these places end up with one name.
std::u16string excelSheetName(std::u16string_view proposed);

/// True when Excel sees the two names as the same sheet (it ignores case).
bool sameSheetName(std::u16string_view a, std::u16string_view b);

} // namespace vellum::xls
