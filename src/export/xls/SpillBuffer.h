#pragma once

#include "export/ExportSink.h"

#include <cstdint>
#include <cstdio>
#include <string>

namespace vellum::xls {

/// Append-only storage for finished parts of a workbook (the sheets already written), kept in
/// an anonymous temporary file so that memory holds only the sheet being written. When no
/// temporary file can be made it keeps the bytes in memory instead.
class SpillBuffer : public ExportSink {
public:
    SpillBuffer() = default;
    ~SpillBuffer() override;
    SpillBuffer(const SpillBuffer &) = delete;
    SpillBuffer &operator=(const SpillBuffer &) = delete;

    bool write(std::string_view bytes) override;
    std::uint64_t size() const { return m_size; }
    /// Copies a range that was written before to a sink.
    [[nodiscard]] bool copyTo(ExportSink &sink, std::uint64_t offset, std::uint64_t length);
    /// True once a write failed; every later write fails too.
    bool failed() const { return m_failed; }
    /// True while the bytes live in a temporary file (false: in memory).
    bool onDisk() const { return m_file != nullptr; }

private:
    void openTemporary();

    bool m_tried = false;
    std::FILE *m_file = nullptr;
    std::string m_memory;
    std::uint64_t m_size = 0;
    bool m_failed = false;
};

} // namespace vellum::xls
