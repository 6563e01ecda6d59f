#include "model/TOrbBlobData.h"
#include "util/littleEndian.h"

#include "model/fileExtensions.h"
#include "model/ole/cStrings.h"
#include "util/fileSize.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace vellum {

namespace {

constexpr const char *kNonTextual = "[NON-TEXTUAL DATA]";
constexpr std::size_t kTextSample = 2000;

std::atomic<TOrbBlobData::ImageProbe> g_imageProbe{&TOrbBlobData::hasImageSignature};

bool startsWith(const std::uint8_t *data, std::size_t length, std::initializer_list<std::uint8_t> prefix)
{
    return length >= prefix.size() && std::equal(prefix.begin(), prefix.end(), data);
}

bool isWhiteSpace(std::uint8_t c)
{
    return c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

/// Writes all bytes to a descriptor, going on after short writes and interruptions.
bool writeAll(int fd, const std::uint8_t *data, std::size_t length)
{
    while (length > 0) {
        const ssize_t written = ::write(fd, data, length);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data += written;
        length -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

TOrbBlobData::TOrbBlobData(std::vector<std::uint8_t> data, const char *fileExtension)
    : m_data(std::move(data)), m_fileExtension(fileExtension ? fileExtension : "")
{
}

void TOrbBlobData::setImageProbe(ImageProbe probe)
{
    g_imageProbe.store(probe ? probe : &TOrbBlobData::hasImageSignature);
}

bool TOrbBlobData::hasImageSignature(const std::uint8_t *data, std::size_t length)
{
    if (!data)
        return false;
    if (startsWith(data, length, {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A}))
        return true;
    if (startsWith(data, length, {0xFF, 0xD8, 0xFF}))
        return true;
    if (startsWith(data, length, {'G', 'I', 'F', '8', '7', 'a'}) ||
        startsWith(data, length, {'G', 'I', 'F', '8', '9', 'a'}))
        return true;
    if (startsWith(data, length, {'I', 'I', 0x2A, 0x00}) || startsWith(data, length, {'M', 'M', 0x00, 0x2A}))
        return true;
    // BMP: "BM", then a known size of the info header at offset 14.
    if (startsWith(data, length, {'B', 'M'}) && length >= 18) {
        const std::uint32_t infoSize = readLe32(data + 14);
        return infoSize == 12 || infoSize == 40 || infoSize == 52 || infoSize == 56 || infoSize == 64 ||
               infoSize == 108 || infoSize == 124;
    }
    // ICO: reserved 0, type 1, at least one image.
    if (startsWith(data, length, {0x00, 0x00, 0x01, 0x00}) && length >= 6)
        return (data[4] | data[5]) != 0;
    return false;
}

bool TOrbBlobData::isImage() const
{
    signed char known = m_isImage.load(std::memory_order_relaxed);
    if (known < 0) {
        const ImageProbe probe = g_imageProbe.load();
        known = probe(m_data.data(), m_data.size()) ? 1 : 0;
        m_isImage.store(known, std::memory_order_relaxed);
    }
    return known == 1;
}

std::unique_ptr<TOrbBlobData> TOrbBlobData::linkTo(std::string path)
{
    auto blob = std::make_unique<TOrbBlobData>(std::vector<std::uint8_t>(), nullptr);
    blob->m_linkPath = std::move(path);
    return blob;
}

std::string TOrbBlobData::cellDescription() const
{
    if (isLinkOnly())
        return "link to " + m_linkPath;
    const std::string size = "[" + formatComputerFileSize(m_data.size()) + "]";
    return m_fileExtension.empty() ? size : "." + m_fileExtension + " " + size;
}

std::string TOrbBlobData::description() const
{
    if (isLinkOnly())
        return "link to " + m_linkPath;
    const std::uint8_t *bytes = m_data.data();
    const std::size_t length = m_data.size();
    if (length == 0)
        return "";
    const std::size_t sample = std::min(length, kTextSample);

    // A byte-order mark chooses the encoding; the mark itself is not part of the text.
    const char *encoding = nullptr;
    std::size_t skip = 0;
    if (startsWith(bytes, sample, {0x00, 0x00, 0xFE, 0xFF})) {
        encoding = "UTF-32BE";
        skip = 4;
    } else if (startsWith(bytes, sample, {0xFF, 0xFE, 0x00, 0x00})) {
        encoding = "UTF-32LE";
        skip = 4;
    } else if (startsWith(bytes, sample, {0xFE, 0xFF})) {
        encoding = "UTF-16BE";
        skip = 2;
    } else if (startsWith(bytes, sample, {0xFF, 0xFE})) {
        encoding = "UTF-16LE";
        skip = 2;
    } else {
        // The first byte is deliberately not examined.
        for (std::size_t i = sample - 1; i >= 1; --i) {
            const std::uint8_t c = bytes[i];
            if (c >= 0x80 || (c < 32 && !isWhiteSpace(c)))
                return kNonTextual;
        }
        encoding = decodeText(bytes, sample, "UTF-8") ? "UTF-8" : "ISO-8859-1";
    }
    if (auto text = decodeText(bytes + skip, length - skip, encoding))
        return *std::move(text);
    return kNonTextual;
}

std::string TOrbBlobData::createTempFile() const
{
    if (!m_tmpPath.empty())
        return m_tmpPath;
    // An extension that cannot be part of a file name is left out.
    const bool withExtension = isUsableFileExtension(m_fileExtension);
    std::string path = std::string(g_get_tmp_dir()) + "/Vellum-XXXXXXXXX";
    if (withExtension)
        path += "." + m_fileExtension;
    const int suffixLength = withExtension ? static_cast<int>(m_fileExtension.size()) + 1 : 0;
    const int fd = mkstemps(path.data(), suffixLength);
    if (fd < 0)
        return "";
    const bool written = writeAll(fd, m_data.data(), m_data.size());
    if (::close(fd) != 0 || !written) {
        ::unlink(path.c_str());
        return "";
    }
    m_tmpPath = path;
    return m_tmpPath;
}

} // namespace vellum
