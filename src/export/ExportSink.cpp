#include "export/ExportSink.h"

#include <unistd.h>

namespace vellum {

FileSink::~FileSink()
{
    if (m_file)
        std::fclose(m_file);
}

bool FileSink::open(const std::string &path)
{
    if (m_file)
        std::fclose(m_file);
    m_path = path;
    m_failed = false;
    m_file = std::fopen(path.c_str(), "w");
    if (m_file)
        std::setvbuf(m_file, nullptr, _IOFBF, 1 << 18);
    return m_file != nullptr;
}

bool FileSink::write(std::string_view bytes)
{
    if (!m_file || m_failed)
        return false;
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), m_file) != bytes.size())
        m_failed = true;
    return !m_failed;
}

bool FileSink::close()
{
    if (!m_file)
        return !m_failed;
    const bool closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    return closed && !m_failed;
}

void FileSink::discard()
{
    if (m_file) {
        std::fclose(m_file);
        m_file = nullptr;
    }
    if (!m_path.empty())
        unlink(m_path.c_str());
}

} // namespace vellum
