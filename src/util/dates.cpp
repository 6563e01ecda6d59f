#include "util/dates.h"

#include "util/format.h"
#include "util/localized.h"

#include <chrono>
#include <cmath>

namespace vellum {

TimePoint now()
{
    using namespace std::chrono;
    return duration_cast<duration<double>>(system_clock::now().time_since_epoch()).count();
}

namespace {

/// Hour 1-12 without leading zero, two-digit minutes, AM/PM.
std::string clockText(const std::tm &t)
{
    int hour = t.tm_hour % 12;
    if (hour == 0)
        hour = 12;
    return formatString("%d:%02d %s", hour, t.tm_min, t.tm_hour < 12 ? "AM" : "PM");
}

} // namespace

std::string dateWithFinderFormat(std::optional<TimePoint> date, TimePoint reference)
{
    if (!date)
        return "";
    const long long today = std::llround(reference / 86400.0);
    const long long day = std::llround(*date / 86400.0);
    const long long d = today - day;
    const std::time_t seconds = static_cast<std::time_t>(std::floor(*date));
    std::tm t{};
    localtime_r(&seconds, &t);
    if (d == 0)
        return formatObjects("%@ %@", {localized("Today"), clockText(t)});
    if (d == 1)
        return formatObjects("%@ %@", {localized("Yesterday"), clockText(t)});
    return formatString("%d/%d/%d ", t.tm_mday, t.tm_mon + 1, t.tm_year + 1900) + clockText(t);
}

} // namespace vellum
