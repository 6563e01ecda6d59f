#pragma once

#include "export/ExportSink.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

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

/// Little-endian field builder for record payloads and blocks of records. Grows like a
/// vector; the fixed-size appends are inline, as the per-cell path runs through them.
class LeBytes {
public:
    LeBytes() = default;
    LeBytes(const LeBytes &other) { bytes(other.m_data.get(), other.m_size); }
    LeBytes &operator=(const LeBytes &other)
    {
        if (this != &other) {
            clear();
            bytes(other.m_data.get(), other.m_size);
        }
        return *this;
    }
    LeBytes(LeBytes &&other) noexcept { *this = std::move(other); }
    LeBytes &operator=(LeBytes &&other) noexcept
    {
        m_data = std::move(other.m_data);
        m_size = std::exchange(other.m_size, 0);
        m_capacity = std::exchange(other.m_capacity, 0);
        return *this;
    }

    LeBytes &u8(std::uint8_t v) { return put<1>(v); }
    LeBytes &u16(std::uint16_t v) { return put<2>(v); }
    LeBytes &u32(std::uint32_t v) { return put<4>(v); }
    LeBytes &u64(std::uint64_t v) { return put<8>(v); }
    LeBytes &f64(double v)
    {
        std::uint64_t bits;
        std::memcpy(&bits, &v, sizeof bits);
        return put<8>(bits);
    }
    LeBytes &bytes(const void *data, std::size_t size);
    LeBytes &zeros(std::size_t count);
    /// UTF-16 units as BIFF8 stores them: one byte each (all below U+0100) or two.
    LeBytes &units(const char16_t *text, std::size_t count, bool wide);
    /// A record header (type, payload length) for a payload appended next.
    LeBytes &recordHeader(std::uint16_t type, std::uint16_t length) { return u16(type).u16(length); }
    /// Overwrites four bytes at a position already written.
    void patchU32(std::size_t at, std::uint32_t v);

    std::string_view data() const { return {m_data.get(), m_size}; }
    std::size_t size() const { return m_size; }
    void clear() { m_size = 0; }

private:
    /// Room for `n` more bytes; answers where they go.
    char *extend(std::size_t n)
    {
        if (m_size + n > m_capacity)
            grow(m_size + n);
        char *at = m_data.get() + m_size;
        m_size += n;
        return at;
    }
    void grow(std::size_t needed);

    /// The low `N` bytes of a value, least significant first.
    template <std::size_t N> LeBytes &put(std::uint64_t v)
    {
        char *out = extend(N);
        for (std::size_t i = 0; i < N; ++i)
            out[i] = static_cast<char>((v >> (8 * i)) & 0xFF);
        return *this;
    }

    std::unique_ptr<char[]> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

} // namespace vellum::xls
