#include "cli/LoadProgress.h"

#include <unistd.h>

#include <cstdio>

namespace vellum::cli {

namespace {
constexpr std::uint64_t kShowFromBytes = 4ull << 20;
}

LoadProgress::LoadProgress(std::uint64_t fileSize) : m_enabled(fileSize >= kShowFromBytes && isatty(2)) {}

void LoadProgress::tableStarted(const std::string &name, std::size_t index, std::size_t count)
{
    m_table = name;
    m_index = index;
    m_count = count;
    draw();
}

void LoadProgress::rowsLoaded(std::uint64_t totalRows)
{
    m_rows = totalRows;
    draw();
}

void LoadProgress::draw()
{
    if (!m_enabled)
        return;
    if (m_count > 0) {
        const int width = 30;
        const int filled = static_cast<int>(width * m_index / m_count);
        std::fprintf(stderr, "\r[%.*s%*s] table %zu of %zu, %llu rows\033[K", filled,
                     "##############################", width - filled, "", m_index + 1, m_count,
                     static_cast<unsigned long long>(m_rows));
    } else {
        std::fprintf(stderr, "\rOpening: %s, %llu rows\033[K", m_table.c_str(), static_cast<unsigned long long>(m_rows));
    }
    std::fflush(stderr);
    m_drawn = true;
}

void LoadProgress::finish()
{
    if (m_drawn) {
        std::fprintf(stderr, "\r\033[K");
        std::fflush(stderr);
        m_drawn = false;
    }
}

} // namespace vellum::cli
