#include "util/stringEncodings.h"

#include <iconv.h>
#include <strings.h>

#include <algorithm>
#include <cerrno>
#include <charconv>

namespace vellum {

namespace {

constexpr std::uint64_t cf(std::uint64_t coreFoundationNumber)
{
    return 0x80000000ull | coreFoundationNumber;
}

// Encodings whose converter emits a header at the start of every conversion (ISO-2022-KR) are
// left out: each piece is converted separately.
const StringEncoding kEncodings[] = {
    {1, "ASCII", "Western (ASCII)", true},
    {3, "EUC-JP", "Japanese (EUC)", true},
    {4, "UTF-8", "Unicode (UTF-8)", true},
    {5, "ISO-8859-1", "Western (ISO Latin 1)", true},
    {8, "SHIFT_JIS", "Japanese (Shift JIS)", false},
    {9, "ISO-8859-2", "Central European (ISO Latin 2)", true},
    {10, "UTF-16LE", "Unicode (UTF-16)", false},
    {11, "CP1251", "Cyrillic (Windows)", true},
    {12, "CP1252", "Western (Windows Latin 1)", true},
    {13, "CP1253", "Greek (Windows)", true},
    {14, "CP1254", "Turkish (Windows Latin 5)", true},
    {15, "CP1250", "Central European (Windows Latin 2)", true},
    {21, "ISO-2022-JP", "Japanese (ISO 2022-JP)", true},
    {30, "MACINTOSH", "Western (Mac OS Roman)", true},
    {0x90000100, "UTF-16BE", "Unicode (UTF-16BE)", false},
    {0x94000100, "UTF-16LE", "Unicode (UTF-16LE)", false},
    {0x8c000100, "UTF-32LE", "Unicode (UTF-32)", false},
    {0x98000100, "UTF-32BE", "Unicode (UTF-32BE)", false},
    {0x9c000100, "UTF-32LE", "Unicode (UTF-32LE)", false},
    {cf(0x04000100), "UTF-7", "Unicode (UTF-7)", false},
    {cf(0x0203), "ISO-8859-3", "Western (ISO Latin 3)", true},
    {cf(0x0204), "ISO-8859-4", "Central European (ISO Latin 4)", true},
    {cf(0x0205), "ISO-8859-5", "Cyrillic (ISO 8859-5)", true},
    {cf(0x0206), "ISO-8859-6", "Arabic (ISO 8859-6)", true},
    {cf(0x0207), "ISO-8859-7", "Greek (ISO 8859-7)", true},
    {cf(0x0208), "ISO-8859-8", "Hebrew (ISO 8859-8)", true},
    {cf(0x0209), "ISO-8859-9", "Turkish (ISO Latin 5)", true},
    {cf(0x020A), "ISO-8859-10", "Nordic (ISO Latin 6)", true},
    {cf(0x020B), "ISO-8859-11", "Thai (ISO 8859-11)", true},
    {cf(0x020D), "ISO-8859-13", "Baltic (ISO Latin 7)", true},
    {cf(0x020E), "ISO-8859-14", "Celtic (ISO Latin 8)", true},
    {cf(0x020F), "ISO-8859-15", "Western (ISO Latin 9)", true},
    {cf(0x0210), "ISO-8859-16", "Romanian (ISO Latin 10)", true},
    {cf(0x0400), "CP437", "Latin-US (DOS)", true},
    {cf(0x0410), "CP850", "Western (DOS Latin 1)", true},
    {cf(0x0412), "CP852", "Central European (DOS Latin 2)", true},
    {cf(0x0415), "CP866", "Cyrillic (DOS)", true},
    {cf(0x041D), "CP874", "Thai (Windows, DOS)", true},
    {cf(0x0420), "CP932", "Japanese (Windows, DOS)", true},
    {cf(0x0421), "CP936", "Simplified Chinese (Windows, DOS)", true},
    {cf(0x0422), "CP949", "Korean (Windows, DOS)", true},
    {cf(0x0423), "CP950", "Traditional Chinese (Windows, DOS)", true},
    {cf(0x0505), "CP1255", "Hebrew (Windows)", true},
    {cf(0x0506), "CP1256", "Arabic (Windows)", true},
    {cf(0x0507), "CP1257", "Baltic (Windows)", true},
    {cf(0x0508), "CP1258", "Vietnamese (Windows)", true},
    {cf(0x0632), "GB18030", "Chinese (GB 18030)", true},
    {cf(0x0930), "EUC-CN", "Simplified Chinese (GB 2312)", true},
    {cf(0x0940), "EUC-KR", "Korean (EUC)", true},
    {cf(0x0A02), "KOI8-R", "Cyrillic (KOI8-R)", true},
    {cf(0x0A03), "BIG5", "Traditional Chinese (Big 5)", true},
    {cf(0x0A06), "BIG5-HKSCS", "Traditional Chinese (Big 5 HKSCS)", true},
    {cf(0x0A08), "KOI8-U", "Ukrainian (KOI8-U)", true},
    {cf(0x0007), "MAC-CYRILLIC", "Cyrillic (Mac OS)", true},
    {cf(0x001D), "MAC-CENTRALEUROPE", "Central European (Mac OS)", true},
};

bool converterExists(const char *iconvName)
{
    const iconv_t cd = iconv_open(iconvName, "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        return false;
    iconv_close(cd);
    return true;
}

/// Length of the UTF-8 sequence at the start of `s` (1 for a byte that starts none).
std::size_t utf8SequenceLength(const unsigned char *s, std::size_t available)
{
    const unsigned char lead = s[0];
    std::size_t length = 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        length = 2;
    else if (lead >= 0xE0 && lead <= 0xEF)
        length = 3;
    else if (lead >= 0xF0 && lead <= 0xF4)
        length = 4;
    if (length > available)
        return 1;
    for (std::size_t i = 1; i < length; ++i)
        if ((s[i] & 0xC0) != 0x80)
            return 1;
    return length;
}

} // namespace

const std::vector<StringEncoding> &availableStringEncodings()
{
    static const std::vector<StringEncoding> encodings = [] {
        std::vector<StringEncoding> list;
        for (const StringEncoding &encoding : kEncodings)
            if (converterExists(encoding.iconvName))
                list.push_back(encoding);
        std::stable_sort(list.begin(), list.end(), [](const StringEncoding &a, const StringEncoding &b) {
            return std::string_view(a.displayName) < std::string_view(b.displayName);
        });
        return list;
    }();
    return encodings;
}

const StringEncoding *stringEncodingForCode(std::uint64_t code)
{
    for (const StringEncoding &encoding : availableStringEncodings())
        if (encoding.code == code)
            return &encoding;
    return nullptr;
}

const StringEncoding *findStringEncoding(std::string_view nameOrCode)
{
    std::uint64_t code = 0;
    const char *end = nameOrCode.data() + nameOrCode.size();
    if (!nameOrCode.empty()) {
        const auto [ptr, error] = std::from_chars(nameOrCode.data(), end, code);
        if (error == std::errc() && ptr == end)
            return stringEncodingForCode(code);
    }
    const std::string wanted(nameOrCode);
    for (const StringEncoding &encoding : availableStringEncodings())
        if (!strcasecmp(wanted.c_str(), encoding.iconvName) || !strcasecmp(wanted.c_str(), encoding.displayName))
            return &encoding;
    return nullptr;
}

TextEncoder::~TextEncoder()
{
    if (m_iconv)
        iconv_close(static_cast<iconv_t>(m_iconv));
}

bool TextEncoder::open(std::uint64_t code)
{
    const StringEncoding *encoding = stringEncodingForCode(code);
    if (!encoding)
        return false;
    if (m_iconv) {
        iconv_close(static_cast<iconv_t>(m_iconv));
        m_iconv = nullptr;
    }
    m_passThrough = code == kStringEncodingUTF8;
    m_asciiCompatible = encoding->asciiCompatible;
    if (m_passThrough)
        return true;
    const iconv_t cd = iconv_open(encoding->iconvName, "UTF-8");
    if (cd == reinterpret_cast<iconv_t>(-1))
        return false;
    m_iconv = cd;
    return true;
}

std::size_t TextEncoder::append(std::string_view utf8, std::string &out)
{
    if (m_passThrough) {
        out.append(utf8);
        return 0;
    }
    if (m_asciiCompatible &&
        std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        out.append(utf8);
        return 0;
    }
    std::size_t substituted = 0;
    convert(utf8, out, substituted);
    return substituted;
}

void TextEncoder::convert(std::string_view utf8, std::string &out, std::size_t &substituted)
{
    const iconv_t cd = static_cast<iconv_t>(m_iconv);
    char *in = const_cast<char *>(utf8.data());
    std::size_t inLeft = utf8.size();
    bool flushed = false;
    while (true) {
        const std::size_t start = out.size();
        const std::size_t room = inLeft * 4 + 16;
        out.resize(start + room);
        char *outPtr = out.data() + start;
        std::size_t outLeft = room;
        const std::size_t result =
            inLeft ? iconv(cd, &in, &inLeft, &outPtr, &outLeft) : iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
        const int error = result == static_cast<std::size_t>(-1) ? errno : 0;
        out.resize(start + (room - outLeft));
        if (error == E2BIG)
            continue;
        if (error == EILSEQ || error == EINVAL) {
            const std::size_t skip = utf8SequenceLength(reinterpret_cast<const unsigned char *>(in), inLeft);
            in += skip;
            inLeft -= skip;
            ++substituted;
            char question[] = "?";
            char *q = question;
            std::size_t qLeft = 1;
            const std::size_t qStart = out.size();
            out.resize(qStart + 16);
            char *qOut = out.data() + qStart;
            std::size_t qRoom = 16;
            iconv(cd, &q, &qLeft, &qOut, &qRoom);
            out.resize(qStart + (16 - qRoom));
            continue;
        }
        if (inLeft == 0) {
            if (flushed)
                return;
            flushed = true; // one more round with no input returns to the initial shift state
        }
    }
}

} // namespace vellum
