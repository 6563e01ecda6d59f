#pragma once

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

/// A file opened for writing with truncation (mode "w"), buffered in large blocks.
class FileSink : public ExportSink {
public:
    FileSink() = default;
    ~FileSink() override;
    FileSink(const FileSink &) = delete;
    FileSink &operator=(const FileSink &) = delete;

    /// Creates or truncates the file; false when it cannot be created.
    [[nodiscard]] bool open(const std::string &path);
    bool write(std::string_view bytes) override;
    /// Flushes and closes; false when anything could not be written.
    [[nodiscard]] bool close();
    /// Closes (ignoring errors) and deletes the file.
    void discard();
    bool isOpen() const { return m_file != nullptr; }
    const std::string &path() const { return m_path; }

private:
    std::FILE *m_file = nullptr;
    std::string m_path;
    bool m_failed = false;
};

} // namespace vellum
