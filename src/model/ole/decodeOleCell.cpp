#include "model/ole/decodeOleCell.h"

#include "model/fileExtensions.h"
#include "model/ole/oleField.h"

#include <cstdlib>

namespace vellum {

std::unique_ptr<TOrbBlobData> decodeOleCell(const void *field, std::size_t length)
{
    void *payload = nullptr;
    char *extension = nullptr;
    std::size_t size = length;
    if (!field || length == 0)
        return nullptr;
    const auto *bytes = static_cast<const std::uint8_t *>(field);
    if (mdb_read_ole_field(field, &payload, &size, &extension) != 0) {
        // An OLE object that does not decode stays the null marker, noting the file when it is a
        // Package that only links to one (otherwise it is damaged). Data stored
        // without an OLE wrapper by other programs ("long binary data") is kept as it is, named
        // by its signature when it has a known one.
        if (length >= 2 && bytes[0] == 0x15 && bytes[1] == 0x1C) {
            std::string link = oleFieldLinkPath(field, length);
            return link.empty() ? nullptr : TOrbBlobData::linkTo(std::move(link));
        }
        return std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(bytes, bytes + length),
                                              std::string(extensionFromSignature(bytes, length)).c_str());
    }
    const auto *decoded = static_cast<const std::uint8_t *>(payload);
    auto blob = std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(decoded, decoded + size), extension);
    if (length >= 2 && bytes[0] == 0x15 && bytes[1] == 0x1C)
        blob->setPackageLabel(oleFieldPackageLabel(field, length));
    std::free(payload);
    std::free(extension);
    return blob;
}

} // namespace vellum
