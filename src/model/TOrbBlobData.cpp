#include "model/TOrbBlobData.h"

namespace vellum {

TOrbBlobData::TOrbBlobData(std::vector<std::uint8_t> data, const char *fileExtension)
    : m_data(std::move(data)), m_fileExtension(fileExtension ? fileExtension : "")
{
}

} // namespace vellum
