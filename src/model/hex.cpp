#include "model/hex.h"

namespace vellum {

std::size_t toHex(char *out, std::size_t capacity, const std::uint8_t *bytes, std::size_t length)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    if (length > SIZE_MAX / 2)
        return 0;
    const std::size_t needed = 2 * length;
    if (!out)
        return needed;
    if (capacity < needed)
        return 0;
    for (std::size_t i = 0; i < length; ++i) {
        out[2 * i] = kDigits[bytes[i] >> 4];
        out[2 * i + 1] = kDigits[bytes[i] & 0x0F];
    }
    return needed;
}

} // namespace vellum
