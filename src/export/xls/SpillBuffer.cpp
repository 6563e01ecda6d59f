#include "export/xls/SpillBuffer.h"

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace vellum::xls {

SpillBuffer::~SpillBuffer()
{
    if (m_file != nullptr)
        std::fclose(m_file);
}

void SpillBuffer::openTemporary()
{
    m_tried = true;
    std::string pattern = std::string(g_get_tmp_dir()) + "/Vellum-xls-XXXXXX";
    int fd = mkstemp(pattern.data());
    if (fd < 0)
        return;
    unlink(pattern.c_str()); // anonymous: gone when closed, even after a crash
    m_file = fdopen(fd, "w+b");
    if (m_file == nullptr)
        close(fd);
}

bool SpillBuffer::write(std::string_view bytes)
{
    const char *data = bytes.data();
    const std::size_t size = bytes.size();
    if (m_failed)
        return false;
    if (!m_tried)
        openTemporary();
    if (m_file != nullptr) {
        if (size != 0 && std::fwrite(data, 1, size, m_file) != size) {
            m_failed = true;
            return false;
        }
    } else {
        m_memory.append(data, size);
    }
    m_size += size;
    return true;
}

bool SpillBuffer::copyTo(ExportSink &sink, std::uint64_t offset, std::uint64_t length)
{
    if (m_failed || offset + length > m_size)
        return false;
    if (m_file == nullptr)
        return sink.write(std::string_view(m_memory).substr(offset, length));
    if (std::fflush(m_file) != 0)
        return false;
    std::vector<char> buffer(std::min<std::uint64_t>(length, 1 << 20));
    int fd = fileno(m_file);
    while (length > 0) {
        std::size_t want = std::min<std::uint64_t>(length, buffer.size());
        ssize_t got = pread(fd, buffer.data(), want, static_cast<off_t>(offset));
        if (got <= 0)
            return false;
        if (!sink.write(std::string_view(buffer.data(), static_cast<std::size_t>(got))))
            return false;
        offset += static_cast<std::uint64_t>(got);
        length -= static_cast<std::uint64_t>(got);
    }
    return true;
}

} // namespace vellum::xls
