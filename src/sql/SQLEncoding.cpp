#include "sql/SQLEncoding.h"

#include "sql/SQLContext.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace vellum {

namespace {

// Core (CoreFoundation-style) encoding numbers, the numbering in which codes outside the short
// list are matched.
constexpr std::uint32_t kCoreASCII = 0x0600;
constexpr std::uint32_t kCoreUTF8 = 0x08000100;
constexpr std::uint32_t kCoreLatin1 = 0x0201;

struct EncodingRow {
    std::uint64_t code;       // string-encoding code
    std::uint32_t core;       // core encoding number
    const char *iconvName;    // name for the conversion
    const char *mysqlCharset; // MySQL's character set, nullptr when it has none
};

// The direct codes come first; codes of the form 0x80000000 | core are matched by their core
// number, as are the direct codes' own core numbers.
constexpr std::array<EncodingRow, 27> kEncodings = {{
    {1, kCoreASCII, "ASCII", "ascii"},
    {3, 0x0920, "EUC-JP", "ujis"},
    {4, kCoreUTF8, "UTF-8", "utf8"},
    {5, kCoreLatin1, "ISO-8859-1", "latin1"},
    {7, kCoreASCII, "ASCII", "ascii"}, // non-lossy ASCII
    {8, 0x0A01, "SHIFT_JIS", "sjis"},
    {9, 0x0202, "ISO-8859-2", "latin2"},
    {10, 0x0100, "UTF-16", "ucs2"},
    {11, 0x0502, "CP1251", "cp1251"},
    {12, 0x0500, "CP1252", "latin1"},
    {13, 0x0503, "CP1253", "greek"},
    {14, 0x0504, "CP1254", "latin5"},
    {15, 0x0501, "CP1250", "cp1250"},
    {21, 0x0820, "ISO-2022-JP", nullptr},
    {30, 0x0000, "MACINTOSH", "macroman"},
    {0x90000100, 0x10000100, "UTF-16BE", nullptr},
    {0x94000100, 0x14000100, "UTF-16LE", nullptr},
    {0x8c000100, 0x0c000100, "UTF-32", nullptr},
    {0x80000940, 0x0940, "EUC-KR", "euckr"},
    {0x80000930, 0x0930, "GB2312", "gb2312"},
    {0x80000632, 0x0632, "GBK", "gbk"},
    {0x80000A03, 0x0A03, "BIG5", "big5"},
    {0x80000207, 0x0207, "ISO-8859-7", "greek"},
    {0x80000209, 0x0209, "ISO-8859-9", "latin5"},
    {0x80000208, 0x0208, "ISO-8859-8", "hebrew"},
    {0x80000A02, 0x0A02, "KOI8-R", "koi8r"},
    {0x8000020F, 0x020F, "ISO-8859-15", "latin1"},
}};

const EncodingRow *rowForCode(std::uint64_t code)
{
    for (const EncodingRow &row : kEncodings)
        if (row.code == code)
            return &row;
    return nullptr;
}

/// The core encoding number of a string-encoding code.
std::optional<std::uint32_t> coreEncoding(std::uint64_t code)
{
    if (const EncodingRow *row = rowForCode(code))
        return row->core;
    if ((code & 0x80000000u) && code <= 0xFFFFFFFFu)
        return static_cast<std::uint32_t>(code & 0x7FFFFFFFu);
    return std::nullopt;
}

std::string convert(std::string_view input, const char *from, const char *to)
{
    iconv_t cd = iconv_open(to, from);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return std::string(input);
    std::string out;
    out.resize(input.size() * 4 + 16);
    char *in = const_cast<char *>(input.data());
    size_t inLeft = input.size();
    char *outPtr = out.data();
    size_t outLeft = out.size();
    while (inLeft > 0) {
        if (iconv(cd, &in, &inLeft, &outPtr, &outLeft) != static_cast<size_t>(-1))
            break;
        if (errno == E2BIG) {
            const size_t used = static_cast<size_t>(outPtr - out.data());
            out.resize(out.size() * 2);
            outPtr = out.data() + used;
            outLeft = out.size() - used;
        } else {
            // A character the target lacks, or a byte the source cannot decode: drop one input
            // byte, or for UTF-8 input the whole character, and go on (a lossy conversion).
            size_t skip = 1;
            if (std::string_view(from) == "UTF-8") {
                const unsigned char lead = static_cast<unsigned char>(*in);
                skip = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
            }
            skip = std::min(skip, inLeft);
            in += skip;
            inLeft -= skip;
        }
    }
    iconv(cd, nullptr, nullptr, &outPtr, &outLeft);
    out.resize(static_cast<size_t>(outPtr - out.data()));
    iconv_close(cd);
    return out;
}

} // namespace

std::string MySQLCharsetFromStringEncoding(std::uint64_t encoding)
{
    const EncodingRow *row = rowForCode(encoding);
    if (row && row->mysqlCharset)
        return row->mysqlCharset;
    if (const std::optional<std::uint32_t> core = coreEncoding(encoding)) {
        for (const EncodingRow &candidate : kEncodings)
            if (candidate.core == *core && candidate.mysqlCharset)
                return candidate.mysqlCharset;
    }
    return "latin1";
}

namespace SQLEncoding {

std::optional<std::string> charsetForStringEncoding(std::uint64_t encoding, const SQLContext &context)
{
    if (context.serverType() != ServerTypeMySQL)
        return std::nullopt;
    return MySQLCharsetFromStringEncoding(encoding);
}

std::string bytesFromText(std::string_view utf8, std::uint64_t encoding)
{
    const EncodingRow *row = rowForCode(encoding);
    if (!row || row->code == 4)
        return std::string(utf8);
    return convert(utf8, "UTF-8", row->iconvName);
}

std::string textFromBytes(std::string_view bytes, std::uint64_t encoding)
{
    const EncodingRow *row = rowForCode(encoding);
    if (!row || row->code == 4)
        return std::string(bytes);
    return convert(bytes, row->iconvName, "UTF-8");
}

} // namespace SQLEncoding

} // namespace vellum
