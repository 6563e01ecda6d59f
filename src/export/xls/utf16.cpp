#include "export/xls/utf16.h"

#include <cerrno>
#include <iconv.h>

namespace vellum {

namespace {

/// One iconv converter per thread, opened on first use and kept: opening one per cell would
/// cost more than the conversion itself.
class ThreadConverter {
public:
    ThreadConverter() : m_cd(iconv_open("UTF-16LE", "UTF-8")) {}
    ~ThreadConverter()
    {
        if (valid())
            iconv_close(m_cd);
    }
    ThreadConverter(const ThreadConverter &) = delete;
    ThreadConverter &operator=(const ThreadConverter &) = delete;

    bool valid() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    iconv_t handle() const { return m_cd; }

private:
    iconv_t m_cd;
};

iconv_t threadConverter()
{
    thread_local ThreadConverter converter;
    if (!converter.valid())
        return reinterpret_cast<iconv_t>(-1);
    iconv(converter.handle(), nullptr, nullptr, nullptr, nullptr); // back to the initial state
    return converter.handle();
}

bool isAscii(std::string_view text)
{
    for (unsigned char c : text)
        if (c >= 0x80)
            return false;
    return true;
}

/// The buffer discipline of the converter: start with twice the input length plus one byte,
/// grow by the input bytes still unconverted whenever the output is full, and end with the
/// bytes written. Units are written into a std::u16string, so sizes are in bytes below.
bool convertWithIconv(std::string_view utf8, std::u16string &out)
{
    iconv_t cd = threadConverter();
    if (cd == reinterpret_cast<iconv_t>(-1))
        return false;
    std::size_t capacityBytes = utf8.size() * 2 + 1;
    out.resize((capacityBytes + 1) / 2);
    char *in = const_cast<char *>(utf8.data());
    std::size_t inLeft = utf8.size();
    std::size_t written = 0;
    for (;;) {
        char *outPtr = reinterpret_cast<char *>(out.data()) + written;
        std::size_t outLeft = out.size() * 2 - written;
        std::size_t before = outLeft;
        std::size_t rc = iconv(cd, &in, &inLeft, &outPtr, &outLeft);
        written += before - outLeft;
        if (rc != static_cast<std::size_t>(-1))
            break;
        if (errno != E2BIG)
            return false; // EILSEQ or EINVAL: not valid UTF-8
        capacityBytes = out.size() * 2 + inLeft;
        out.resize((capacityBytes + 1) / 2);
    }
    out.resize(written / 2);
    return true;
}

} // namespace

bool utf8ToUtf16(std::string_view utf8, std::u16string &out)
{
    out.clear();
    if (utf8.empty())
        return false;
    if (isAscii(utf8)) {
        out.resize(utf8.size());
        for (std::size_t i = 0; i < utf8.size(); ++i)
            out[i] = static_cast<char16_t>(static_cast<unsigned char>(utf8[i]));
        return true;
    }
    if (!convertWithIconv(utf8, out)) {
        out.clear();
        return false;
    }
    return true;
}

std::optional<std::u16string> UTF8ToUTF16Converter(const char *bytes, std::size_t length)
{
    if (bytes == nullptr || length == 0)
        return std::nullopt;
    std::u16string result;
    if (!convertWithIconv(std::string_view(bytes, length), result))
        return std::nullopt;
    return result;
}

std::string utf16ToUtf8(std::u16string_view utf16)
{
    std::string out;
    out.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        char32_t c = utf16[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < utf16.size() && utf16[i + 1] >= 0xDC00 && utf16[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD;
        }
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else if (c < 0x800) {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            out += static_cast<char>(0xE0 | (c >> 12));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        } else {
            out += static_cast<char>(0xF0 | (c >> 18));
            out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
            out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

std::size_t utf16Length(std::string_view utf8)
{
    std::size_t units = 0;
    for (unsigned char c : utf8) {
        if ((c & 0xC0) == 0x80)
            continue; // continuation byte
        units += (c >= 0xF0) ? 2 : 1;
    }
    return units;
}

} // namespace vellum
