#pragma once

#include "cli/TerminalBar.h"
#include "model/TOrbMDBFile.h"

#include <cstdint>
#include <string>

namespace vellum::cli {

/// A progress line on standard error while a file larger than a few megabytes opens, shown
/// only when standard error is a terminal.
class LoadProgress : public LoadObserver {
public:
    explicit LoadProgress(std::uint64_t fileSize);
    /// The observer to pass to `open`, or nullptr when nothing is shown.
    LoadObserver *observer() { return m_enabled ? this : nullptr; }
    /// Clears the line.
    void finish() { m_bar.clear(); }

    void tableStarted(const std::string &name, std::size_t index, std::size_t count) override;
    void rowsLoaded(std::uint64_t totalRows) override;
    void rowsExpected(std::uint64_t totalRows) override;
    bool shouldCancel() override { return false; }

private:
    void draw();
    TerminalBar m_bar;
    bool m_enabled;
    std::string m_table;
    std::size_t m_index = 0;
    std::size_t m_count = 0;
    std::uint64_t m_rows = 0;
    std::uint64_t m_expected = 0;
};

} // namespace vellum::cli
