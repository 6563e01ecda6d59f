#pragma once

// Little-endian integers inside byte buffers, the byte order of every Access and compound
// document structure. The caller has checked that the bytes are there.

#include <cstdint>

namespace vellum {

/// The 16-bit unsigned value stored at `p`.
inline std::uint16_t readLe16(const unsigned char *p)
{
    return static_cast<std::uint16_t>(p[0] | p[1] << 8);
}

/// The 32-bit unsigned value stored at `p`.
inline std::uint32_t readLe32(const unsigned char *p)
{
    return static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
           static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24;
}

} // namespace vellum
