#pragma once

#include "model/TOrbBlobData.h"

#include <cstddef>
#include <memory>

namespace vellum {

/// Turns the raw bytes of a non-empty OLE Object field into a blob cell: the file inside its OLE
/// wrapper, or the bytes as they are when they do not decode as one (data stored by other
/// programs), with an extension from their signature; a Package that only links to a file gives
/// a link-only blob (`TOrbBlobData::linkTo`). nullptr for an empty or damaged field.
std::unique_ptr<TOrbBlobData> decodeOleCell(const void *field, std::size_t length);

} // namespace vellum
