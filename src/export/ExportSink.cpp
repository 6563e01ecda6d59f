#include "export/ExportSink.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vellum {

FileSink::~FileSink()
{
    discard();
}

bool FileSink::open(const std::string &path)
{
    discard();
    m_path = path;
    m_failed = false;
    m_error.clear();
    if (!m_output.begin(path)) {
        m_error = m_output.errorText();
        return false;
    }
    const int fd = m_output.takeDescriptor();
    m_file = fdopen(fd, "w");
    if (!m_file) {
        m_error = std::strerror(errno);
        ::close(fd);
        m_output.abandon();
        return false;
    }
    std::setvbuf(m_file, nullptr, _IOFBF, 1 << 18);
    return true;
}

bool FileSink::write(std::string_view bytes)
{
    if (!m_file || m_failed)
        return false;
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), m_file) != bytes.size()) {
        m_failed = true;
        m_error = std::strerror(errno);
    }
    return !m_failed;
}

bool FileSink::close()
{
    if (!m_file)
        return false;
    bool ok = !m_failed;
    if (std::fflush(m_file) != 0 || std::ferror(m_file)) {
        if (ok)
            m_error = std::strerror(errno);
        ok = false;
    }
    if (std::fclose(m_file) != 0 && ok) {
        m_error = std::strerror(errno);
        ok = false;
    }
    m_file = nullptr;
    if (!ok) {
        m_output.abandon();
        m_failed = true;
        return false;
    }
    // `commit` syncs the data to the disk before the name points at it.
    if (!m_output.commit()) {
        m_error = m_output.errorText();
        m_failed = true;
        return false;
    }
    return true;
}

void FileSink::discard()
{
    if (m_file) {
        std::fclose(m_file);
        m_file = nullptr;
    }
    m_output.abandon();
}

} // namespace vellum
