#pragma once

// The forms lossless workbooks give cell values: Excel serial numbers for dates, cutting texts
// at a cell's limit, and how many significant digits a number needs.

#include "export/losslessValues.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace vellum {

/// The Excel serial number of a cell date in the 1900 date system: days counted as Excel counts
/// them (1900-01-01 is 1; from 1900-03-01 on, days since 1899-12-30, Excel having a 29 February
/// 1900) plus the time of day, the fraction rounded half up to milliseconds. Access's day zero,
/// 1899-12-30, which holds Access's times without a date, is Excel's time-only serial below 1.
/// Nullopt for every other day before 1900-01-01: Excel has no date cell for it. A time that
/// rounds past 9999-12-31, Excel's last day, stays at its last millisecond.
std::optional<double> excelSerialDate(const CellDateTime &date);

/// True when a date's fraction has digits beyond milliseconds that are not zero, so that a
/// workbook date cell rounds it.
bool fractionBeyondMilliseconds(const CellDateTime &date);

/// The length in bytes of the longest start of UTF-8 `text` that has at most `maxUnits` UTF-16
/// code units and ends between two characters (never inside a character or a surrogate pair).
std::size_t utf8PrefixWithinUnits(std::string_view text, std::size_t maxUnits);

/// The significant digits of a double's shortest round-trip decimal ("0.1" has 1, "123.45" has
/// 5, "1e+21" has 1); 0 for zero, NaN and the infinities.
int significantDigits(double value);

} // namespace vellum
