#pragma once

#include <ctime>
#include <optional>
#include <string>

namespace vellum {

/// A point in time with sub-second precision, as seconds since 1970 (UTC).
using TimePoint = double;

/// The current time.
TimePoint now();

/// Display text of a date: "Today 3:07 PM", "Yesterday 3:07 PM", or "5/3/2012 3:07 PM". Whole
/// days are counted by rounding seconds/86400 to the nearest integer (so the day boundary lies at
/// noon UTC). The clock time is shown in the local time zone. A missing date gives "".
std::string dateWithFinderFormat(std::optional<TimePoint> date, TimePoint reference = now());

} // namespace vellum
