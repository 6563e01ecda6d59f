#pragma once

#include <cstddef>

namespace vellum {

/// Inflates raw deflate data (no zlib header) in one call. `destLength` gives the room in
/// `dest` and receives the bytes produced. Answers Z_OK (0) on success; Z_BUF_ERROR (-5) when a
/// length does not fit in 32 bits or the room is too small; Z_DATA_ERROR (-3) for damaged or
/// truncated data; other zlib codes as zlib reports them.
int inflateRaw(unsigned char *dest, std::size_t *destLength, const unsigned char *source, std::size_t sourceLength);

} // namespace vellum
