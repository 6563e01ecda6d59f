#include "mdb/storedValues.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace vellum {
namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
// 1899-12-30 counted in days from 1970-01-01.
constexpr std::int64_t kAccessEpochDay = -25569;
// 0001-01-01 counted in days from 1970-01-01.
constexpr std::int64_t kExtendedEpochDay = -719162;
// Access stores dates from 100-01-01 to 9999-12-31: these bound the day part of a serial
// before it is converted to an integer, with a margin for the carry.
constexpr double kMinSerialDay = -657435.0;
constexpr double kMaxSerialDay = 2958466.0;

struct CivilDate {
    std::int64_t year;
    unsigned month;
    unsigned day;
};

/// The proleptic Gregorian date of a day counted from 1970-01-01.
CivilDate civilFromDays(std::int64_t z)
{
    z += 719468;
    const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
    const std::int64_t doe = z - era * 146097;
    const std::int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    const std::int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const std::int64_t mp = (5 * doy + 2) / 153;
    const auto day = static_cast<unsigned>(doy - (153 * mp + 2) / 5 + 1);
    const auto month = static_cast<unsigned>(mp < 10 ? mp + 3 : mp - 9);
    return {yoe + era * 400 + (month <= 2), month, day};
}

void appendDigits(std::string &out, std::uint64_t value, int width)
{
    char buf[24];
    int n = 0;
    do {
        buf[n++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value != 0);
    for (int i = n; i < width; ++i)
        out.push_back('0');
    while (n > 0)
        out.push_back(buf[--n]);
}

/// Appends "MM/DD/YYYY HH:MM:SS" of a date and a second of its day.
void appendDateAndTime(std::string &out, const CivilDate &date, std::uint64_t second)
{
    appendDigits(out, date.month, 2);
    out.push_back('/');
    appendDigits(out, date.day, 2);
    out.push_back('/');
    appendDigits(out, static_cast<std::uint64_t>(date.year), 4);
    out.push_back(' ');
    appendDigits(out, second / 3600, 2);
    out.push_back(':');
    appendDigits(out, second / 60 % 60, 2);
    out.push_back(':');
    appendDigits(out, second % 60, 2);
}

/// Whole seconds of `fraction` (0 ≤ fraction < 1) of a day, rounded half-up. Computed exactly:
/// the double's 53-bit significand times 86400 fits in 128 bits.
std::int64_t roundedSecondsOfDay(double fraction)
{
    if (fraction == 0.0)
        return 0;
    int exponent = 0;
    const double mantissa = std::frexp(fraction, &exponent); // fraction = mantissa × 2^exponent
    const auto significand = static_cast<std::uint64_t>(std::ldexp(mantissa, 53));
    const int shift = 53 - exponent; // fraction = significand / 2^shift, shift ≥ 53
    if (shift > 120)
        return 0; // far below half a second
    const unsigned __int128 scaled = static_cast<unsigned __int128>(significand) * kSecondsPerDay;
    const unsigned __int128 half = static_cast<unsigned __int128>(1) << (shift - 1);
    return static_cast<std::int64_t>((scaled + half) >> shift);
}

template <typename T> T readLittleEndian(StoredBytes bytes)
{
    T value{};
    std::memcpy(&value, bytes.data(), sizeof value);
    return value; // every platform Vellum builds for is little-endian
}

/// Lays out the shortest round-trip digits of a value the way ECMAScript's Number#toString does.
std::string layoutShortest(const char *digitsBegin, const char *digitsEnd, int exponent, bool negative)
{
    // Digits "d1d2…dn" with the value d1.d2…dn × 10^exponent.
    const std::string digits(digitsBegin, digitsEnd);
    const int n = static_cast<int>(digits.size());
    const int pointAt = exponent + 1; // digits before the decimal point
    std::string out = negative ? "-" : "";
    if (pointAt > 21 || pointAt < -5) {
        out += digits[0];
        if (n > 1) {
            out += '.';
            out.append(digits, 1);
        }
        out += exponent >= 0 ? "e+" : "e-";
        out += std::to_string(exponent >= 0 ? exponent : -exponent);
    } else if (pointAt <= 0) {
        out += "0.";
        out.append(static_cast<std::size_t>(-pointAt), '0');
        out += digits;
    } else if (pointAt >= n) {
        out += digits;
        out.append(static_cast<std::size_t>(pointAt - n), '0');
    } else {
        out.append(digits, 0, static_cast<std::size_t>(pointAt));
        out += '.';
        out.append(digits, static_cast<std::size_t>(pointAt));
    }
    return out;
}

template <typename Float> std::string formatShortest(Float value)
{
    if (std::isnan(value))
        return "NaN";
    if (std::isinf(value))
        return value < 0 ? "-Infinity" : "Infinity";
    if (value == 0)
        return std::signbit(value) ? "-0" : "0";
    char buf[64];
    const auto result = std::to_chars(buf, buf + sizeof buf, std::fabs(value), std::chars_format::scientific);
    // "d.ddde±XX": split the significant digits from the exponent.
    const char *end = result.ptr;
    const char *e = static_cast<const char *>(std::memchr(buf, 'e', static_cast<std::size_t>(end - buf)));
    std::string digits;
    for (const char *p = buf; p < e; ++p)
        if (*p != '.')
            digits.push_back(*p);
    int exponent = 0;
    std::from_chars(e + (e[1] == '+' ? 2 : 1), end, exponent);
    return layoutShortest(digits.data(), digits.data() + digits.size(), exponent, std::signbit(value));
}

/// Decimal text of a non-negative 128-bit integer.
std::string decimalOf(unsigned __int128 value)
{
    char buf[48];
    int n = 0;
    do {
        buf[n++] = static_cast<char>('0' + static_cast<int>(value % 10));
        value /= 10;
    } while (value != 0);
    std::string out;
    while (n > 0)
        out.push_back(buf[--n]);
    return out;
}

/// "-?digits" with `scale` digits after a decimal point (none when the scale is 0).
std::string withScale(bool negative, unsigned __int128 magnitude, unsigned scale)
{
    std::string digits = decimalOf(magnitude);
    if (scale > 0) {
        if (digits.size() <= scale)
            digits.insert(0, scale + 1 - digits.size(), '0');
        digits.insert(digits.size() - scale, 1, '.');
    }
    return negative && magnitude != 0 ? "-" + digits : digits;
}

bool parseDigits(const unsigned char *p, std::size_t n, std::uint64_t &value)
{
    value = 0;
    for (std::size_t i = 0; i < n; ++i) {
        if (p[i] < '0' || p[i] > '9')
            return false;
        value = value * 10 + (p[i] - '0');
    }
    return true;
}

void appendUtf8(std::string &out, char32_t c)
{
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

/// Appends UTF-16 code units as UTF-8, pairing surrogates across calls through `pendingHigh`.
class Utf16ToUtf8 {
public:
    explicit Utf16ToUtf8(std::string &out) : m_out(out) {}
    void unit(char16_t u)
    {
        if (u >= 0xDC00 && u <= 0xDFFF) {
            if (m_high) {
                appendUtf8(m_out, 0x10000 + ((static_cast<char32_t>(m_high) - 0xD800) << 10) + (u - 0xDC00));
                m_high = 0;
            } else {
                appendUtf8(m_out, 0xFFFD);
            }
            return;
        }
        flush();
        if (u >= 0xD800 && u <= 0xDBFF)
            m_high = u;
        else
            appendUtf8(m_out, u);
    }
    void flush()
    {
        if (m_high)
            appendUtf8(m_out, 0xFFFD);
        m_high = 0;
    }

private:
    std::string &m_out;
    char16_t m_high = 0;
};

} // namespace

std::string decodeUnicodeText(StoredBytes bytes)
{
    std::string out;
    appendUnicodeText(out, bytes);
    return out;
}

void appendUnicodeText(std::string &out, StoredBytes bytes)
{
    out.reserve(out.size() + bytes.size());
    Utf16ToUtf8 converter(out);
    std::size_t i = 0;
    const std::size_t n = bytes.size();
    if (n >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) {
        bool compressed = true;
        for (i = 2; i < n;) {
            if (bytes[i] == 0) {
                compressed = !compressed;
                ++i;
            } else if (compressed) {
                converter.unit(bytes[i++]);
            } else if (i + 1 < n) {
                converter.unit(static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8));
                i += 2;
            } else {
                break;
            }
        }
    } else {
        for (; i + 1 < n; i += 2)
            converter.unit(static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8));
    }
    converter.flush();
}

std::optional<std::string> formatStoredDateTime(double serial)
{
    if (!std::isfinite(serial))
        return std::nullopt;
    const double dayPart = std::trunc(serial);
    if (dayPart < kMinSerialDay || dayPart > kMaxSerialDay)
        return std::nullopt;
    std::int64_t day = static_cast<std::int64_t>(dayPart);
    std::int64_t second = roundedSecondsOfDay(std::fabs(serial - dayPart));
    if (second >= kSecondsPerDay) {
        second -= kSecondsPerDay;
        ++day;
    }
    const CivilDate date = civilFromDays(day + kAccessEpochDay);
    if (date.year < 100 || date.year > 9999)
        return std::nullopt;
    std::string out;
    out.reserve(19);
    appendDateAndTime(out, date, static_cast<std::uint64_t>(second));
    return out;
}

std::optional<std::string> decodeDateTime(StoredBytes bytes)
{
    if (bytes.size() != 8)
        return std::nullopt;
    return formatStoredDateTime(readLittleEndian<double>(bytes));
}

std::optional<std::string> decodeReplicationId(StoredBytes bytes)
{
    if (bytes.size() != 16)
        return std::nullopt;
    // Byte order of the text: the first three groups are little-endian numbers.
    static constexpr int kOrder[16] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string out = "{";
    out.reserve(38);
    for (int i = 0; i < 16; ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10)
            out.push_back('-');
        const unsigned char b = bytes[static_cast<std::size_t>(kOrder[i])];
        out.push_back(kHex[b >> 4]);
        out.push_back(kHex[b & 0x0F]);
    }
    out.push_back('}');
    return out;
}

std::string formatShortestDouble(double value)
{
    return formatShortest(value);
}

std::string formatShortestFloat(float value)
{
    return formatShortest(value);
}

std::optional<std::string> decodeDouble(StoredBytes bytes)
{
    if (bytes.size() != 8)
        return std::nullopt;
    return formatShortestDouble(readLittleEndian<double>(bytes));
}

std::optional<std::string> decodeSingle(StoredBytes bytes)
{
    if (bytes.size() != 4)
        return std::nullopt;
    return formatShortestFloat(readLittleEndian<float>(bytes));
}

std::optional<std::string> decodeCurrency(StoredBytes bytes)
{
    if (bytes.size() != 8)
        return std::nullopt;
    const auto units = readLittleEndian<std::int64_t>(bytes);
    const bool negative = units < 0;
    // Negating through unsigned arithmetic keeps INT64_MIN exact.
    const std::uint64_t magnitude =
        negative ? 0 - static_cast<std::uint64_t>(units) : static_cast<std::uint64_t>(units);
    return withScale(negative, magnitude, 4);
}

std::optional<std::string> decodeNumeric(StoredBytes bytes, unsigned scale)
{
    if (bytes.size() != 17 || scale > 38)
        return std::nullopt;
    unsigned __int128 magnitude = 0;
    for (std::size_t word = 0; word < 4; ++word)
        magnitude = (magnitude << 32) | readLittleEndian<std::uint32_t>(bytes.subspan(1 + word * 4, 4));
    return withScale(bytes[0] != 0, magnitude, scale);
}

std::optional<std::string> decodeCalculatedNumeric(StoredBytes bytes)
{
    if (bytes.size() < 4)
        return std::nullopt;
    const auto announced = readLittleEndian<std::int16_t>(bytes);
    const std::size_t available = bytes.size() - 2;
    const std::size_t total = announced > 0 ? static_cast<std::size_t>(announced) : available;
    if (total < 2)
        return std::nullopt;
    const std::size_t count = std::min<std::size_t>((total - 2) / 4 * 4, 16);
    const unsigned scale = bytes[2];
    const bool negative = bytes[3] != 0;
    if (count + 4 > bytes.size() || scale > 38)
        return std::nullopt;
    unsigned __int128 magnitude = 0;
    std::size_t at = 4;
    if (count % 8 != 0) {
        magnitude = readLittleEndian<std::uint32_t>(bytes.subspan(at, 4));
        at += 4;
    }
    for (; at < 4 + count; at += 8)
        magnitude = (magnitude << 64) | readLittleEndian<std::uint64_t>(bytes.subspan(at, 8));
    return withScale(negative, magnitude, scale);
}

std::optional<std::string> decodeInteger(StoredBytes bytes, std::size_t width)
{
    if (bytes.size() != width)
        return std::nullopt;
    switch (width) {
    case 1:
        return std::to_string(bytes[0]);
    case 2:
        return std::to_string(readLittleEndian<std::int16_t>(bytes));
    case 4:
        return std::to_string(readLittleEndian<std::int32_t>(bytes));
    case 8:
        return std::to_string(readLittleEndian<std::int64_t>(bytes));
    default:
        return std::nullopt;
    }
}

std::optional<std::string> decodeExtendedDateTime(StoredBytes bytes)
{
    constexpr std::size_t kDigits = 19;
    if (bytes.size() < 2 * kDigits + 1 || bytes[kDigits] != ':')
        return std::nullopt;
    std::uint64_t days = 0;
    std::uint64_t ticks = 0; // 100 ns units of the day
    if (!parseDigits(bytes.data(), kDigits, days) || !parseDigits(bytes.data() + kDigits + 1, kDigits, ticks))
        return std::nullopt;
    constexpr std::uint64_t kTicksPerSecond = 10'000'000;
    if (ticks >= static_cast<std::uint64_t>(kSecondsPerDay) * kTicksPerSecond || days > 3'652'058)
        return std::nullopt; // 3652058 is 9999-12-31
    std::string out;
    out.reserve(27);
    appendDateAndTime(out, civilFromDays(static_cast<std::int64_t>(days) + kExtendedEpochDay), ticks / kTicksPerSecond);
    if (const std::uint64_t fraction = ticks % kTicksPerSecond; fraction != 0) {
        out.push_back('.');
        appendDigits(out, fraction, 7);
    }
    return out;
}

std::optional<StoredBytes> unwrapCalculatedValue(StoredBytes bytes)
{
    constexpr std::size_t kHeader = 20;
    if (bytes.size() < kHeader)
        return std::nullopt;
    const auto length = readLittleEndian<std::uint32_t>(bytes.subspan(16, 4));
    if (length > bytes.size() - kHeader)
        return std::nullopt;
    return bytes.subspan(kHeader, length);
}

} // namespace vellum
