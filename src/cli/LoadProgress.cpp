#include "cli/LoadProgress.h"

#include <algorithm>

namespace vellum::cli {

namespace {
constexpr std::uint64_t kShowFromBytes = 4ull << 20;
}

LoadProgress::LoadProgress(std::uint64_t fileSize) : m_enabled(fileSize >= kShowFromBytes && m_bar.enabled()) {}

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
    const std::string rows = std::to_string(m_rows);
    if (m_expected > 0)
        m_bar.draw(static_cast<double>(std::min(m_rows, m_expected)) / static_cast<double>(m_expected),
                   "table " + std::to_string(m_index + 1) + " of " + std::to_string(m_count) + ", " + rows + " of " +
                       std::to_string(m_expected) + " rows");
    else if (m_count > 0)
        m_bar.draw(static_cast<double>(m_index) / static_cast<double>(m_count),
                   "table " + std::to_string(m_index + 1) + " of " + std::to_string(m_count) + ", " + rows + " rows");
    else
        m_bar.draw(0, "Opening: " + m_table + ", " + rows + " rows");
}

} // namespace vellum::cli
