#pragma once

#include <cstddef>
#include <cstdint>

namespace vellum {

/// Writes two lower-case hexadecimal digits per input byte (high nibble first) and answers the
/// number of characters, 2 × length. With no output buffer it only answers that number; when
/// the capacity is smaller it writes nothing and answers 0. No terminating zero is written.
std::size_t toHex(char *out, std::size_t capacity, const std::uint8_t *bytes, std::size_t length);

} // namespace vellum
