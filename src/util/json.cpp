#include "util/json.h"

#include <glib.h>

#include <cstdio>

namespace vellum {

void appendJsonString(std::string &out, std::string_view text)
{
    out += '"';
    const auto *p = reinterpret_cast<const unsigned char *>(text.data());
    const auto *end = p + text.size();
    while (p < end) {
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
