#pragma once

#include "model/TOrbBlobData.h"

#include <cstddef>
#include <memory>

namespace vellum {

/// Turns the raw bytes of a non-empty OLE Object field (as mdb_ole_read_full returns them)
/// into a blob cell, or nullptr when nothing decodes (the cell is then the null marker).
std::unique_ptr<TOrbBlobData> decodeOleCell(const void *field, std::size_t length);

} // namespace vellum
