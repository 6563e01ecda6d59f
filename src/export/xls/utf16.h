#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vellum {

/// Converts UTF-8 bytes to UTF-16LE code units (the string's terminating zero unit is the 16-bit
/// zero that ends the buffer). Answers nullopt for no input, a zero length, invalid UTF-8, or
/// when the converter from "UTF-8" to "UTF-16LE" cannot be opened. The caller owns the result.
std::optional<std::u16string> UTF8ToUTF16Converter(const char *bytes, std::size_t length);

/// The same conversion into a reused buffer, for the per-cell path of the workbook writers:
/// false (and `out` empty) for empty or invalid input. Thread-safe (one converter per thread).
[[nodiscard]] bool utf8ToUtf16(std::string_view utf8, std::u16string &out);

/// UTF-16 code units back to UTF-8; an unpaired surrogate becomes U+FFFD.
std::string utf16ToUtf8(std::u16string_view utf16);

/// Number of UTF-16 code units that the UTF-8 text takes (a character beyond the Basic
/// Multilingual Plane counts two): the unit in which Excel measures a cell's text.
std::size_t utf16Length(std::string_view utf8);

} // namespace vellum
