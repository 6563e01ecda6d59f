#include "sql/SQLEncoding.h"

#include "sql/SQLContext.h"
#include "util/stringEncodings.h"

#include <iconv.h>

#include <array>
#include <cerrno>

namespace vellum {

namespace {

// Core (CoreFoundation-style) encoding numbers, the numbering in which codes outside the short
// list are matched.
constexpr std::uint32_t kCoreASCII = 0x0600;
constexpr std::uint32_t kCoreUTF8 = 0x08000100;
constexpr std::uint32_t kCoreLatin1 = 0x0201;

struct CharsetRow {
    std::uint64_t code;       // string-encoding code
    std::uint32_t core;       // core encoding number
    const char *mysqlCharset; // MySQL's character set
};

// The listed codes come first; codes of the form 0x80000000 | core are matched by their core
// number, as are the listed codes' own core numbers.
constexpr std::array<CharsetRow, 24> kCharsets = {{
    {1, kCoreASCII, "ascii"},
    {3, 0x0920, "ujis"},
    {4, kCoreUTF8, "utf8"},
    {5, kCoreLatin1, "latin1"},
    {7, kCoreASCII, "ascii"}, // non-lossy ASCII
    {8, 0x0A01, "sjis"},
    {9, 0x0202, "latin2"},
    {10, 0x0100, "ucs2"},
    {11, 0x0502, "cp1251"},
    {12, 0x0500, "latin1"}, // MySQL's latin1 is Windows-1252
    {13, 0x0503, "greek"},
    {14, 0x0504, "latin5"},
    {15, 0x0501, "cp1250"},
    {30, 0x0000, "macroman"},
    {0x80000940, 0x0940, "euckr"},
    {0x80000930, 0x0930, "gb2312"},
    {0x80000632, 0x0632, "gbk"},
    {0x80000A03, 0x0A03, "big5"},
    {0x80000207, 0x0207, "greek"},
    {0x80000209, 0x0209, "latin5"},
    {0x80000208, 0x0208, "hebrew"},
    {0x80000A02, 0x0A02, "koi8r"},
    {0x80000504, 0x0504, "latin5"},
    {0x8000020F, 0x020F, "latin1"},
}};

/// The core encoding number of a string-encoding code.
std::optional<std::uint32_t> coreEncoding(std::uint64_t code)
{
    for (const CharsetRow &row : kCharsets)
        if (row.code == code)
            return row.core;
    if ((code & 0x80000000u) && code <= 0xFFFFFFFFu)
        return static_cast<std::uint32_t>(code & 0x7FFFFFFFu);
    return std::nullopt;
}

/// Bytes of `from` → UTF-8; bytes that do not decode are dropped.
std::string decode(std::string_view input, const char *from)
{
    iconv_t cd = iconv_open("UTF-8", from);
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
            ++in; // a byte that does not decode
            --inLeft;
        }
    }
    out.resize(static_cast<size_t>(outPtr - out.data()));
    iconv_close(cd);
    return out;
}

} // namespace

std::string MySQLCharsetFromStringEncoding(std::uint64_t encoding)
{
    for (const CharsetRow &row : kCharsets)
        if (row.code == encoding)
            return row.mysqlCharset;
    if (const std::optional<std::uint32_t> core = coreEncoding(encoding)) {
        for (const CharsetRow &row : kCharsets)
            if (row.core == *core)
                return row.mysqlCharset;
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
    TextEncoder encoder;
    if (encoding == kStringEncodingUTF8 || !encoder.open(encoding))
        return std::string(utf8);
    std::string bytes;
    encoder.append(utf8, bytes);
    return bytes;
}

std::string textFromBytes(std::string_view bytes, std::uint64_t encoding)
{
    const StringEncoding *known = stringEncodingForCode(encoding);
    if (encoding == kStringEncodingUTF8 || !known)
        return std::string(bytes);
    return decode(bytes, known->iconvName);
}

} // namespace SQLEncoding

} // namespace vellum
