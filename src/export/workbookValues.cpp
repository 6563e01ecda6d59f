#include "export/workbookValues.h"

#include <charconv>
#include <cmath>
#include <cstdint>

namespace vellum {

namespace {

/// Days from 1970-01-01 to a date of the proleptic Gregorian calendar.
std::int64_t daysFromCivil(std::int64_t year, unsigned month, unsigned day)
{
    year -= month <= 2;
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const auto yearOfEra = static_cast<unsigned>(year - era * 400);
    const unsigned dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
    const unsigned dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + static_cast<std::int64_t>(dayOfEra) - 719468;
}

/// The fraction's digits as ten-millionths of a second (seven digits, padded with zeros).
std::int64_t fractionTicks(const CellDateTime &date)
{
    std::int64_t ticks = 0;
    for (std::size_t i = 0; i < 7; ++i)
        ticks = ticks * 10 + (i < date.fraction.size() ? date.fraction[i] - '0' : 0);
    return ticks;
}

} // namespace

std::optional<double> excelSerialDate(const CellDateTime &date)
{
    static const std::int64_t kAccessDayZero = daysFromCivil(1899, 12, 30);
    static const std::int64_t kFirstOf1900 = daysFromCivil(1900, 1, 1);
    static const std::int64_t kMarchFirst1900 = daysFromCivil(1900, 3, 1);
    const std::int64_t day =
        daysFromCivil(date.year, static_cast<unsigned>(date.month), static_cast<unsigned>(date.day));
    std::int64_t serialDay = 0;
    if (day >= kMarchFirst1900)
        serialDay = day - kAccessDayZero;
    else if (day >= kFirstOf1900)
        serialDay = day - kAccessDayZero - 1; // before Excel's 29 February 1900
    else if (day != kAccessDayZero)
        return std::nullopt;
    static const std::int64_t kLastExcelDay = daysFromCivil(9999, 12, 31);
    const std::int64_t milliseconds = (fractionTicks(date) + 5000) / 10000;
    std::int64_t dayMilliseconds =
        (static_cast<std::int64_t>(date.hour) * 3600 + date.minute * 60 + date.second) * 1000 + milliseconds;
    // Excel has no day after 9999-12-31: its last millisecond stays the last.
    if (day == kLastExcelDay && dayMilliseconds >= 86400000)
        dayMilliseconds = 86399999;
    return static_cast<double>(serialDay) + static_cast<double>(dayMilliseconds) / 86400000.0;
}

bool fractionBeyondMilliseconds(const CellDateTime &date)
{
    return fractionTicks(date) % 10000 != 0;
}

std::size_t utf8PrefixWithinUnits(std::string_view text, std::size_t maxUnits)
{
    std::size_t units = 0;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        // A four-byte sequence is a character beyond the BMP: two UTF-16 units.
        const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
        const std::size_t needed = length == 4 ? 2 : 1;
        if (units + needed > maxUnits || i + length > text.size())
            break;
        units += needed;
        i += length;
    }
    return i;
}

int significantDigits(double value)
{
    if (value == 0 || !std::isfinite(value))
        return 0;
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    int digits = 0;
    int trailingZeros = 0;
    bool leading = true;
    for (const char *p = buffer; p != result.ptr && *p != 'e'; ++p) {
        if (*p < '0' || *p > '9')
            continue;
        if (leading && *p == '0')
            continue;
        leading = false;
        ++digits;
        trailingZeros = *p == '0' ? trailingZeros + 1 : 0;
    }
    return digits - trailingZeros;
}

} // namespace vellum
