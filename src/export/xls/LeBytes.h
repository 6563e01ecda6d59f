#pragma once

#include "export/ExportSink.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace vellum::xls {

/// Counts bytes and keeps none: measures what a writer would produce.
class CountingSink : public ExportSink {
public:
    bool write(std::string_view bytes) override
    {
        m_count += bytes.size();
        return true;
    }
    std::uint64_t count() const { return m_count; }

private:
    std::uint64_t m_count = 0;
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
