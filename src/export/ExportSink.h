#pragma once

#include "export/OutputFile.h"

#include <cstdio>
#include <string>
#include <string_view>

namespace vellum {

/// Where a writer's bytes go. Writers take a sink rather than a file name, so that their output
/// can be checked in memory; the routine that owns the file makes a `FileSink`.
class ExportSink {
public:
    virtual ~ExportSink() = default;
    /// Appends bytes; false when they could not be written (the sink stays failed).
    [[nodiscard]] virtual bool write(std::string_view bytes) = 0;
};

/// Collects everything in memory (tests, small outputs).
class StringSink : public ExportSink {
public:
    bool write(std::string_view bytes) override
    {
        m_data.append(bytes);
        return true;
    }
    const std::string &data() const { return m_data; }

private:
    std::string m_data;
};

/// A file written through an `OutputFile`, buffered in large blocks: it appears under its name
/// only when `close` succeeds; a device or FIFO at the path is written into directly.
class FileSink : public ExportSink {
public:
    FileSink() = default;
    ~FileSink() override;
    FileSink(const FileSink &) = delete;
    FileSink &operator=(const FileSink &) = delete;

    /// Prepares the file; false when it cannot be created (`errorText` says why).
    [[nodiscard]] bool open(const std::string &path);
    bool write(std::string_view bytes) override;
    /// Flushes, closes and puts the file in place; false when anything could not be written,
    /// and then nothing is left under the name.
    [[nodiscard]] bool close();
    /// Stops writing: the temporary file is removed, the path keeps what it held before.
    void discard();
    bool isOpen() const { return m_file != nullptr; }
    const std::string &path() const { return m_path; }
    /// Why the file could not be created or written, e.g. "No space left on device".
    const std::string &errorText() const { return m_error; }

private:
    std::FILE *m_file = nullptr;
    OutputFile m_output;
    std::string m_path;
    std::string m_error;
    bool m_failed = false;
};

} // namespace vellum
