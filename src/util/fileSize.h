#pragma once

#include <cstdint>
#include <string>

namespace vellum {

/// Byte count to the display text "%1.0lf KB", "%1.1lf MB" or "%1.1lf GB"; kilobytes are
/// rounded up, so 1 byte shows as 1 KB and 0 bytes as 0 KB.
std::string formatComputerFileSize(std::uint64_t bytes);

} // namespace vellum
