#include "export/xls/LeBytes.h"

#include <algorithm>

namespace vellum::xls {

void LeBytes::grow(std::size_t needed)
{
    const std::size_t capacity = std::max<std::size_t>({needed, m_capacity * 2, 64});
    auto data = std::make_unique<char[]>(capacity);
    if (m_size)
        std::memcpy(data.get(), m_data.get(), m_size);
    m_data = std::move(data);
    m_capacity = capacity;
}

LeBytes &LeBytes::bytes(const void *data, std::size_t size)
{
    if (size)
        std::memcpy(extend(size), data, size);
    return *this;
}

LeBytes &LeBytes::zeros(std::size_t count)
{
    if (count)
        std::memset(extend(count), 0, count);
    return *this;
}

LeBytes &LeBytes::units(const char16_t *text, std::size_t count, bool wide)
{
    char *out = extend(count * (wide ? 2 : 1));
    if (wide) {
        for (std::size_t i = 0; i < count; ++i) {
            *out++ = static_cast<char>(text[i] & 0xFF);
            *out++ = static_cast<char>(text[i] >> 8);
        }
    } else {
        for (std::size_t i = 0; i < count; ++i)
            *out++ = static_cast<char>(text[i]);
    }
    return *this;
}

void LeBytes::patchU32(std::size_t at, std::uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        m_data[at + i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

} // namespace vellum::xls
