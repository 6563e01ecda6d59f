#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vellum {

/// The cell value of a non-empty OLE Object field: the decoded payload and the file-name
/// extension found for it ("" when unknown).
class TOrbBlobData {
public:
    /// Keeps the bytes; a null extension becomes "".
    TOrbBlobData(std::vector<std::uint8_t> data, const char *fileExtension);

    const std::vector<std::uint8_t> &data() const { return m_data; }
    const std::string &fileExtension() const { return m_fileExtension; }

private:
    std::vector<std::uint8_t> m_data;
    std::string m_fileExtension;
};

} // namespace vellum
