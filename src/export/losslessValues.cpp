#include "export/losslessValues.h"

#include "model/TOrbBlobData.h"
#include "util/json.h"

#include <charconv>
#include <cstdlib>

namespace vellum {

namespace {

bool readDigits(std::string_view text, std::size_t at, std::size_t count, int &value)
{
    if (at + count > text.size())
        return false;
    int result = 0;
    for (std::size_t i = at; i < at + count; ++i) {
        if (text[i] < '0' || text[i] > '9')
            return false;
        result = result * 10 + (text[i] - '0');
    }
    value = result;
    return true;
}

constexpr char kBase64Alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

} // namespace

std::optional<CellDateTime> parseCellDateTime(std::string_view text)
{
    // "MM/DD/YYYY HH:MM:SS" is 19 characters; a fraction adds "." and one to seven digits.
    if (text.size() < 19 || text[2] != '/' || text[5] != '/' || text[10] != ' ' || text[13] != ':' || text[16] != ':')
        return std::nullopt;
    CellDateTime date;
    if (!readDigits(text, 0, 2, date.month) || !readDigits(text, 3, 2, date.day) ||
        !readDigits(text, 6, 4, date.year) || !readDigits(text, 11, 2, date.hour) ||
        !readDigits(text, 14, 2, date.minute) || !readDigits(text, 17, 2, date.second))
        return std::nullopt;
    if (text.size() > 19) {
        if (text[19] != '.' || text.size() == 20 || text.size() > 27)
            return std::nullopt;
        for (std::size_t i = 20; i < text.size(); ++i)
            if (text[i] < '0' || text[i] > '9')
                return std::nullopt;
        date.fraction = std::string(text.substr(20));
    }
    if (date.month < 1 || date.month > 12 || date.day < 1 || date.day > 31 || date.hour > 23 || date.minute > 59 ||
        date.second > 59)
        return std::nullopt;
    return date;
}

std::optional<std::string> isoDateTime(std::string_view text, char separator)
{
    if (!parseCellDateTime(text))
        return std::nullopt;
    std::string iso;
    iso.reserve(text.size());
    iso.append(text.substr(6, 4)).append("-").append(text.substr(0, 2)).append("-").append(text.substr(3, 2));
    iso += separator;
    iso.append(text.substr(11));
    return iso;
}

void appendBase64(std::string &out, const void *data, std::size_t length)
{
    const auto *bytes = static_cast<const unsigned char *>(data);
    out.reserve(out.size() + (length + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 3 <= length; i += 3) {
        const std::uint32_t triple = bytes[i] << 16 | bytes[i + 1] << 8 | bytes[i + 2];
        out += kBase64Alphabet[triple >> 18 & 63];
        out += kBase64Alphabet[triple >> 12 & 63];
        out += kBase64Alphabet[triple >> 6 & 63];
        out += kBase64Alphabet[triple & 63];
    }
    if (i < length) {
        const std::uint32_t triple = bytes[i] << 16 | (i + 1 < length ? bytes[i + 1] << 8 : 0);
        out += kBase64Alphabet[triple >> 18 & 63];
        out += kBase64Alphabet[triple >> 12 & 63];
        out += i + 1 < length ? kBase64Alphabet[triple >> 6 & 63] : '=';
        out += '=';
    }
}

std::string base64Encode(const void *data, std::size_t length)
{
    std::string out;
    appendBase64(out, data, length);
    return out;
}

std::string lowerHexText(const void *data, std::size_t length)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    const auto *bytes = static_cast<const unsigned char *>(data);
    std::string out(2 * length, '\0');
    for (std::size_t i = 0; i < length; ++i) {
        out[2 * i] = kDigits[bytes[i] >> 4];
        out[2 * i + 1] = kDigits[bytes[i] & 15];
    }
    return out;
}

bool decimalFitsDouble(std::string_view text)
{
    std::size_t digits = 0;
    bool leading = true;
    std::size_t trailingZeros = 0;
    bool inFraction = false;
    bool any = false;
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.' && !inFraction) {
            inFraction = true;
            continue;
        }
        if (c == 'e' || c == 'E')
            break;
        if (c < '0' || c > '9')
            return false;
        any = true;
        if (leading && c == '0')
            continue;
        leading = false;
        ++digits;
        trailingZeros = c == '0' ? trailingZeros + 1 : 0;
    }
    if (!any)
        return false;
    if (i < text.size()) {
        // An exponent: digits only after an optional sign.
        std::size_t j = i + 1;
        if (j < text.size() && (text[j] == '-' || text[j] == '+'))
            ++j;
        if (j == text.size())
            return false;
        for (; j < text.size(); ++j)
            if (text[j] < '0' || text[j] > '9')
                return false;
    }
    // Trailing zeros of a fraction add no digits to the value; those of an integer do, but a
    // double holds every integer up to 2^53 exactly, which 15 digits never exceed.
    const std::size_t significant = inFraction ? digits - trailingZeros : digits;
    if (significant <= 15)
        return true;
    // More digits may still be exact when they are the shortest text of a double.
    const std::string copy(text);
    const double value = std::strtod(copy.c_str(), nullptr);
    char buf[32];
    const auto result = std::to_chars(buf, buf + sizeof buf, value);
    if (result.ec != std::errc())
        return false;
    const double again = std::strtod(std::string(buf, result.ptr).c_str(), nullptr);
    // The same double, and the text names exactly that double's shortest digits.
    std::string ours(buf, result.ptr);
    std::string theirs = copy;
    auto stripped = [](std::string s) {
        std::string digitsOnly;
        bool lead = true;
        for (const char c : s) {
            if (c == 'e' || c == 'E')
                break;
            if (c < '0' || c > '9')
                continue;
            if (lead && c == '0')
                continue;
            lead = false;
            digitsOnly += c;
        }
        while (!digitsOnly.empty() && digitsOnly.back() == '0')
            digitsOnly.pop_back();
        return digitsOnly;
    };
    return again == value && stripped(ours) == stripped(theirs);
}

void appendJsonAttachment(std::string &out, const TOrbComplexValue::Attachment &attachment)
{
    out += "{\"name\":";
    appendJsonString(out, attachment.fileName);
    out += ",\"type\":";
    appendJsonString(out, attachment.fileType);
    out += ",\"base64\":\"";
    const auto &data = attachment.data->data();
    appendBase64(out, data.data(), data.size());
    out += "\"}";
}

void appendJsonVersion(std::string &out, const TOrbComplexValue::Version &version)
{
    out += "{\"value\":";
    appendJsonString(out, version.value);
    out += ",\"date\":";
    appendJsonString(out, isoDateTime(version.date).value_or(version.date));
    out += '}';
}

void appendJsonComplexArray(std::string &out, const TOrbComplexValue &value,
                            const std::function<void(std::string &, const std::string &)> &appendItem)
{
    out += '[';
    bool first = true;
    const auto separate = [&out, &first] {
        if (!first)
            out += ',';
        first = false;
    };
    switch (value.kind()) {
    case ComplexKind::MultiValue:
        for (const std::string &item : value.values()) {
            separate();
            if (appendItem)
                appendItem(out, item);
            else
                appendJsonString(out, item);
        }
        break;
    case ComplexKind::Attachment:
        for (const auto &attachment : value.attachments()) {
            separate();
            appendJsonAttachment(out, attachment);
        }
        break;
    case ComplexKind::VersionHistory:
        for (const auto &version : value.versions()) {
            separate();
            appendJsonVersion(out, version);
        }
        break;
    }
    out += ']';
}

} // namespace vellum
