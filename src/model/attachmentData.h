#pragma once

// The stored form of an Access attachment's file data: a wrapper of two little-endian 32-bit
// numbers (0 for plain, 1 for zlib-compressed content; the length of the content), then the
// content, itself a header (its own length first, then a flag and the file's extension) and
// the file's bytes.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace vellum {

/// The file bytes of an attachment's stored data; nullopt when the data is not in that form,
/// cut short, or its lengths do not fit together. The content is never inflated beyond the
/// length the wrapper declares.
std::optional<std::vector<std::uint8_t>> decodeAttachmentData(std::span<const std::uint8_t> stored);

} // namespace vellum
