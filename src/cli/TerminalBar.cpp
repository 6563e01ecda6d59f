#include "cli/TerminalBar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace vellum::cli {

TerminalBar::TerminalBar() : m_enabled(isatty(2) != 0) {}

void TerminalBar::draw(double fraction, const std::string &label)
{
    if (!m_enabled)
        return;
    constexpr int kWidth = 30;
    const int filled = static_cast<int>(kWidth * std::clamp(fraction, 0.0, 1.0));
    const std::string bar = std::string(static_cast<std::size_t>(filled), '#') + std::string(kWidth - filled, ' ');
    std::fprintf(stderr, "\r[%s] %s\033[K", bar.c_str(), label.c_str());
    std::fflush(stderr);
    m_drawn = true;
}

void TerminalBar::clear()
{
    if (!m_drawn)
        return;
    std::fprintf(stderr, "\r\033[K");
    std::fflush(stderr);
    m_drawn = false;
}

} // namespace vellum::cli
