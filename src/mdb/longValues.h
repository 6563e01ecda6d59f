#pragma once

#include "mdb/mdbtoolsInclude.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vellum {

/// The whole value of a Memo or OLE Object field from its stored form (a 12-byte header, then
/// the data when it is inline): inline, on one other page, or along a chain of pages. The pages
/// are read into libmdb's second page buffer, so `mdb->pg_buf` (the data page of the fetched
/// row) stays as it is. nullopt when the header is not understood, a page or row of the chain
/// cannot be read, the chain comes back to a row it has visited or has more links than `limit`
/// holds pages, or the length given is larger than `limit` (the file's size: no value can be
/// longer). The value never grows past the length its header states.
std::optional<std::string> readLongValue(MdbHandle *mdb, std::span<const unsigned char> field, std::uint64_t limit);

/// The largest a long value can be: the file's size (a chain cannot hold more bytes than the
/// file has); 4 GiB when the size cannot be known (a file opened from memory).
std::uint64_t longValueLimit(MdbHandle *mdb);

} // namespace vellum
