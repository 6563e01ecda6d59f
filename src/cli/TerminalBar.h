#pragma once

#include <string>

namespace vellum::cli {

/// One progress line on standard error, redrawn in place: a bar of 30 cells and a label. It
/// draws only when standard error is a terminal, so logs and pipes never see it.
class TerminalBar {
public:
    TerminalBar();

    bool enabled() const { return m_enabled; }
    /// Redraws the line with `fraction` (0 to 1, clamped) of the bar filled.
    void draw(double fraction, const std::string &label);
    /// Clears the line when one was drawn.
    void clear();

private:
    bool m_enabled;
    bool m_drawn = false;
};

} // namespace vellum::cli
