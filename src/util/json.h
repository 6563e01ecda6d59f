#pragma once

#include <string>
#include <string_view>

namespace vellum {

/// Appends a JSON string literal (quotes included) for UTF-8 text; control characters are
/// escaped, invalid UTF-8 bytes become U+FFFD.
void appendJsonString(std::string &out, std::string_view text);

/// SHA-256 of bytes as 64 lower-case hexadecimal digits.
std::string sha256Hex(const void *data, std::size_t length);

} // namespace vellum
