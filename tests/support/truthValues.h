#pragma once

// The canonical forms of the corpus truth's cells that the suites comparing an output with the
// truth share: exact decimals, floating-point values compared by their bits, lower-case text.

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace vellum::test {

/// Exact decimal in the truth's policy: no trailing fraction zeros, no lone point, "-0" as "0".
inline std::string canonicalDecimal(std::string text)
{
    if (text.find('.') != std::string::npos) {
        while (text.back() == '0')
            text.pop_back();
        if (text.back() == '.')
            text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

/// A number text as the truth and the targets write it, "NaN" and the infinities included.
inline double parseTruthNumber(const std::string &text)
{
    if (text == "NaN")
        return std::nan("");
    if (text == "Infinity" || text == "Inf" || text == "inf")
        return HUGE_VAL;
    if (text == "-Infinity" || text == "-Inf" || text == "-inf")
        return -HUGE_VAL;
    return std::strtod(text.c_str(), nullptr);
}

/// The bits of a value as a single ("f…") or a double ("d…"); every NaN gives the same text.
inline std::string floatBits(double value, bool single)
{
    char buffer[40];
    if (single) {
        const float f = static_cast<float>(value);
        std::uint32_t bits;
        std::memcpy(&bits, &f, sizeof bits);
        if (std::isnan(f))
            bits = 0x7fc00000u;
        std::snprintf(buffer, sizeof buffer, "f%08x", bits);
    } else {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        if (std::isnan(value))
            bits = 0x7ff8000000000000ull;
        std::snprintf(buffer, sizeof buffer, "d%016llx", static_cast<unsigned long long>(bits));
    }
    return buffer;
}

inline std::string lowerCase(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// The truth's type name of one of the model's column type names; "UNSUPPORTED" for a type the
/// truth does not name.
inline std::string truthTypeName(const std::string &dataType)
{
    static const std::map<std::string, std::string> kTypes = {
        {"Boolean", "BOOLEAN"},
        {"Byte", "BYTE"},
        {"Integer", "INT"},
        {"Long Integer", "LONG"},
        {"Currency", "MONEY"},
        {"Single", "FLOAT"},
        {"Double", "DOUBLE"},
        {"DateTime", "SHORT_DATE_TIME"},
        {"Binary", "BINARY"},
        {"Text", "TEXT"},
        {"OLE", "OLE"},
        {"Memo/Hyperlink", "MEMO"},
        {"Replication ID", "GUID"},
        {"Numeric", "NUMERIC"},
        {"Complex Value auto number", "COMPLEX_TYPE"},
        {"Large Number", "BIG_INT"},
        {"Date/Time Extended", "EXT_DATE_TIME"},
    };
    const auto found = kTypes.find(dataType);
    return found == kTypes.end() ? "UNSUPPORTED" : found->second;
}

} // namespace vellum::test
