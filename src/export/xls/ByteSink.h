#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace vellum::xls {

/// Where the workbook writer puts its bytes: a file for real output, memory for tests.
class ByteSink {
public:
    virtual ~ByteSink() = default;
    /// Appends bytes; false when they could not be written.
    [[nodiscard]] virtual bool write(const void *data, std::size_t size) = 0;
    [[nodiscard]] bool write(std::string_view bytes) { return write(bytes.data(), bytes.size()); }
};

/// Collects everything in memory.
class MemorySink : public ByteSink {
public:
    [[nodiscard]] bool write(const void *data, std::size_t size) override;
    const std::string &bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

/// Counts bytes and keeps none: measures what a writer would produce.
class CountingSink : public ByteSink {
public:
    [[nodiscard]] bool write(const void *, std::size_t size) override
    {
        m_count += size;
        return true;
    }
    std::uint64_t count() const { return m_count; }

private:
    std::uint64_t m_count = 0;
};

/// Writes to a file created (truncated) by `open`; `close` reports whether every byte reached it.
class FileSink : public ByteSink {
public:
    FileSink() = default;
    ~FileSink() override;
    FileSink(const FileSink &) = delete;
    FileSink &operator=(const FileSink &) = delete;

    [[nodiscard]] bool open(const std::string &path);
    [[nodiscard]] bool write(const void *data, std::size_t size) override;
    /// Flushes and closes; false when any write or the close failed.
    [[nodiscard]] bool close();

private:
    std::FILE *m_file = nullptr;
    bool m_failed = false;
};

/// Little-endian field builder for record payloads.
class LeBytes {
public:
    LeBytes &u8(std::uint8_t v);
    LeBytes &u16(std::uint16_t v);
    LeBytes &u32(std::uint32_t v);
    LeBytes &u64(std::uint64_t v);
    LeBytes &f64(double v);
    LeBytes &bytes(const void *data, std::size_t size);
    LeBytes &zeros(std::size_t count);
    /// Overwrites four bytes at a position already written.
    void patchU32(std::size_t at, std::uint32_t v);

    const std::string &data() const { return m_data; }
    std::size_t size() const { return m_data.size(); }
    void clear() { m_data.clear(); }

private:
    std::string m_data;
};

} // namespace vellum::xls
