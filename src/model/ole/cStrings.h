#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace vellum {

/// Decodes bytes in an iconv encoding ("UTF-16LE", "ISO-8859-1", …) to UTF-8; std::nullopt when
/// the encoding is unknown or the bytes are not valid in it. Embedded zero characters are kept.
std::optional<std::string> decodeText(const void *bytes, std::size_t length, const char *encoding);

/// The UTF-8 text's bytes in an iconv encoding, characters the encoding lacks replaced by "?",
/// followed by two zero bytes so that the result is terminated for 8- and 16-bit encodings.
/// `length` (optional) receives the byte count without the terminator. A null text, or an
/// encoding iconv does not know, gives std::nullopt.
std::optional<std::string> cStringFromString(const std::string *text, const char *encoding,
                                             std::size_t *length = nullptr);

/// Bytes in an iconv encoding to UTF-8 text; when they do not decode, they are read as ISO
/// Latin-1. Null bytes give "".
std::string stringFromCString(const void *bytes, std::size_t length, const char *encoding);

} // namespace vellum
