#include "model/ole/decodeOleCell.h"

#include "model/ole/oleField.h"

#include <cstdlib>

namespace vellum {

std::unique_ptr<TOrbBlobData> decodeOleCell(const void *field, std::size_t length)
{
    void *payload = nullptr;
    char *extension = nullptr;
    std::size_t size = length;
    if (!field || mdb_read_ole_field(field, &payload, &size, &extension) != 0)
        return nullptr;
    const auto *bytes = static_cast<const std::uint8_t *>(payload);
    auto blob = std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(bytes, bytes + size), extension);
    std::free(payload);
    std::free(extension);
    return blob;
}

} // namespace vellum
