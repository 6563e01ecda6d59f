#include "model/ole/cStrings.h"

#include <iconv.h>

#include <cerrno>
#include <cstdint>

namespace vellum {

namespace {

/// An iconv descriptor closed on every path.
class Converter {
public:
    Converter(const char *to, const char *from) : m_cd(iconv_open(to, from)) {}
    ~Converter()
    {
        if (ok())
            iconv_close(m_cd);
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }

    /// Converts as much as it can; answers the errno that stopped it (0 when all went through).
    int convert(const char *&in, std::size_t &inLeft, std::string &out)
    {
        char buffer[4096];
        while (inLeft > 0) {
            char *inPtr = const_cast<char *>(in);
            char *outPtr = buffer;
            std::size_t outLeft = sizeof buffer;
            const std::size_t result = iconv(m_cd, &inPtr, &inLeft, &outPtr, &outLeft);
            in = inPtr;
            out.append(buffer, sizeof buffer - outLeft);
            if (result == static_cast<std::size_t>(-1) && errno != E2BIG)
                return errno;
        }
        char *outPtr = buffer;
        std::size_t outLeft = sizeof buffer;
        iconv(m_cd, nullptr, nullptr, &outPtr, &outLeft); // the closing shift sequence, if any
        out.append(buffer, sizeof buffer - outLeft);
        return 0;
    }

private:
    iconv_t m_cd;
};

std::string latin1ToUtf8(const unsigned char *bytes, std::size_t length)
{
    std::string out;
    out.reserve(length);
    for (std::size_t i = 0; i < length; ++i) {
        const unsigned char c = bytes[i];
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

/// Length of the UTF-8 sequence starting at text[0] (1 for an invalid lead byte).
std::size_t utf8SequenceLength(const char *text, std::size_t left)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    std::size_t n = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    return n <= left ? n : 1;
}

} // namespace

std::optional<std::string> decodeText(const void *bytes, std::size_t length, const char *encoding)
{
    Converter converter("UTF-8", encoding);
    if (!converter.ok())
        return std::nullopt;
    std::string out;
    const char *in = static_cast<const char *>(bytes);
    std::size_t left = bytes ? length : 0;
    if (converter.convert(in, left, out) != 0)
        return std::nullopt;
    return out;
}

std::optional<std::string> cStringFromString(const std::string *text, const char *encoding, std::size_t *length)
{
    if (!text)
        return std::nullopt;
    Converter converter(encoding, "UTF-8");
    Converter question(encoding, "UTF-8");
    if (!converter.ok() || !question.ok())
        return std::nullopt;
    std::string out;
    const char *in = text->data();
    std::size_t left = text->size();
    while (left > 0) {
        const int error = converter.convert(in, left, out);
        if (error == 0)
            break;
        // A character the encoding lacks, or a broken UTF-8 sequence: write "?" and go on.
        const std::size_t skip = error == EILSEQ ? utf8SequenceLength(in, left) : left;
        in += skip;
        left -= skip;
        const char *mark = "?";
        std::size_t markLeft = 1;
        question.convert(mark, markLeft, out);
    }
    if (length)
        *length = out.size();
    out.append(2, '\0');
    return out;
}

std::string stringFromCString(const void *bytes, std::size_t length, const char *encoding)
{
    if (!bytes)
        return {};
    if (auto text = decodeText(bytes, length, encoding))
        return *std::move(text);
    return latin1ToUtf8(static_cast<const unsigned char *>(bytes), length);
}

} // namespace vellum
