#include "model/ole/decodeOleCell.h"

namespace vellum {

// OLE Object fields load as the null marker until the OLE decoder is in place.
std::unique_ptr<TOrbBlobData> decodeOleCell(const void *, std::size_t)
{
    return nullptr;
}

} // namespace vellum
