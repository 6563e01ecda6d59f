#include "util/json.h"

#include <glib.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace vellum {

namespace {

/// True for the bytes a JSON string holds as they are: printable ASCII but '"' and '\\'.
constexpr auto kPlainBytes = [] {
    std::array<bool, 256> plain{};
    for (int c = 0x20; c < 0x80; ++c)
        plain[static_cast<std::size_t>(c)] = c != '"' && c != '\\';
    return plain;
}();

/// True when none of 8 bytes needs an escape or a UTF-8 check (each is printable ASCII, neither
/// '"' nor '\\'): tested on all 8 at once.
inline bool plainWord(std::uint64_t word)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101ULL;
    constexpr std::uint64_t kHighs = 0x8080808080808080ULL;
    const auto hasZeroByte = [](std::uint64_t v) { return (v - kOnes) & ~v & kHighs; };
    const std::uint64_t below20 = (word - kOnes * 0x20) & ~word & kHighs;
    return !(word & kHighs) && !below20 && !hasZeroByte(word ^ (kOnes * '"')) && !hasZeroByte(word ^ (kOnes * '\\'));
}

} // namespace

void appendJsonString(std::string &out, std::string_view text)
{
    out += '"';
    const auto *p = reinterpret_cast<const unsigned char *>(text.data());
    const auto *end = p + text.size();
    while (p < end) {
        // A run of printable ASCII that needs no escape is appended at once.
        const auto *run = p;
        for (std::uint64_t word; end - p >= 8 && (std::memcpy(&word, p, 8), plainWord(word));)
            p += 8;
        while (p < end && kPlainBytes[*p])
            ++p;
        if (p != run)
            out.append(reinterpret_cast<const char *>(run), static_cast<std::size_t>(p - run));
        if (p == end)
            break;
        const unsigned char c = *p;
        if (c < 0x80) {
            switch (c) {
            case '"':
                out += "\\\"";
                break;
            case '\\':
                out += "\\\\";
                break;
            case '\n':
                out += "\\n";
                break;
            case '\r':
                out += "\\r";
                break;
            case '\t':
                out += "\\t";
                break;
            case '\b':
                out += "\\b";
                break;
            case '\f':
                out += "\\f";
                break;
            default:
                if (c < 0x20) {
                    char buf[8];
                    std::snprintf(buf, sizeof buf, "\\u%04x", c);
                    out += buf;
                } else {
                    out += static_cast<char>(c);
                }
            }
            ++p;
            continue;
        }
        const gunichar ch = g_utf8_get_char_validated(reinterpret_cast<const char *>(p), end - p);
        if (ch != static_cast<gunichar>(-1) && ch != static_cast<gunichar>(-2)) {
            const int n = g_unichar_to_utf8(ch, nullptr);
            out.append(reinterpret_cast<const char *>(p), n);
            p += n;
            continue;
        }
        out += "\xEF\xBF\xBD";
        ++p;
    }
    out += '"';
}

std::string sha256Hex(const void *data, std::size_t length)
{
    gchar *hex = g_compute_checksum_for_data(G_CHECKSUM_SHA256, static_cast<const guchar *>(data), length);
    std::string out(hex ? hex : "");
    g_free(hex);
    return out;
}

} // namespace vellum
