#include "export/xls/LeBytes.h"

#include <cstring>

namespace vellum::xls {

LeBytes &LeBytes::u8(std::uint8_t v)
{
    m_data += static_cast<char>(v);
    return *this;
}

LeBytes &LeBytes::u16(std::uint16_t v)
{
    char b[2] = {static_cast<char>(v & 0xFF), static_cast<char>(v >> 8)};
    m_data.append(b, 2);
    return *this;
}

LeBytes &LeBytes::u32(std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        m_data += static_cast<char>((v >> (8 * i)) & 0xFF);
    return *this;
}

LeBytes &LeBytes::u64(std::uint64_t v)
{
    for (int i = 0; i < 8; ++i)
        m_data += static_cast<char>((v >> (8 * i)) & 0xFF);
    return *this;
}

LeBytes &LeBytes::f64(double v)
{
    std::uint64_t bits;
    std::memcpy(&bits, &v, sizeof bits);
    return u64(bits);
}

LeBytes &LeBytes::bytes(const void *data, std::size_t size)
{
    m_data.append(static_cast<const char *>(data), size);
    return *this;
}

LeBytes &LeBytes::zeros(std::size_t count)
{
    m_data.append(count, '\0');
    return *this;
}

void LeBytes::patchU32(std::size_t at, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        m_data[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

} // namespace vellum::xls
