#include "cli/LoadProgress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

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

void LoadProgress::rowsExpected(std::uint64_t totalRows)
{
    m_expected = totalRows;
}

void LoadProgress::draw()
{
    if (!m_enabled)
        return;
    // The bar follows the rows when the definitions gave a total, the tables otherwise.
    constexpr int kWidth = 30;
    int filled = 0;
    if (m_expected > 0)
        filled = static_cast<int>(kWidth * std::min(m_rows, m_expected) / m_expected);
    else if (m_count > 0)
        filled = static_cast<int>(kWidth * m_index / m_count);
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') + std::string(kWidth - filled, ' ');
    if (m_count > 0 && m_expected > 0)
        std::fprintf(stderr, "\r[%s] table %zu of %zu, %llu of %llu rows\033[K", bar.c_str(), m_index + 1, m_count,
                     static_cast<unsigned long long>(m_rows), static_cast<unsigned long long>(m_expected));
    else if (m_count > 0)
        std::fprintf(stderr, "\r[%s] table %zu of %zu, %llu rows\033[K", bar.c_str(), m_index + 1, m_count,
                     static_cast<unsigned long long>(m_rows));
    else
        std::fprintf(stderr, "\rOpening: %s, %llu rows\033[K", m_table.c_str(), static_cast<unsigned long long>(m_rows));
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
