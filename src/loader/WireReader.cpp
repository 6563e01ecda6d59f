#include "loader/WireReader.h"

#include <cstring>

namespace vellum {

namespace {
/// No text of the model comes near this; a longer one means the stream is broken.
constexpr std::uint32_t kMaxString = 64u << 20;
} // namespace

bool WireReader::getRaw(void *data, std::size_t length)
{
    if (!m_ok)
        return false;
    if (!m_source.read(data, length))
        return fail();
    return true;
}

bool WireReader::take(void *data, std::size_t length)
{
    if (!m_ok || length > m_remaining)
        return fail();
    if (length && !m_source.read(data, length))
        return fail();
    m_remaining -= length;
    return true;
}

bool WireReader::beginMessage(std::uint8_t &type)
{
    if (m_remaining != 0)
        return fail();
    char header[1 + sizeof(std::uint64_t)];
    if (!getRaw(header, sizeof header))
        return false;
    type = static_cast<std::uint8_t>(header[0]);
    std::memcpy(&m_remaining, header + 1, sizeof m_remaining);
    return true;
}

bool WireReader::endMessage()
{
    if (m_remaining != 0)
        fail();
    return m_ok;
}

bool WireReader::getBool()
{
    const std::uint8_t value = getU8();
    if (value > 1)
        fail();
    return value == 1;
}

std::string WireReader::getString()
{
    const std::uint32_t length = getU32();
    if (!m_ok || length > kMaxString || length > m_remaining) {
        fail();
        return {};
    }
    std::string text(length, '\0');
    if (!take(text.data(), length))
        return {};
    return text;
}

std::optional<std::string> WireReader::getOptionalString()
{
    if (!getBool())
        return std::nullopt;
    return getString();
}

bool WireReader::getBlock(std::unique_ptr<char[]> &out, std::uint64_t length)
{
    if (!m_ok || length > m_remaining)
        return fail();
    if (length <= kChunkBytes) {
        out.reset(new char[length ? length : 1]);
        return take(out.get(), static_cast<std::size_t>(length));
    }
    std::vector<char> bytes;
    if (!getArray(bytes, length))
        return false;
    out.reset(new char[bytes.size()]);
    std::memcpy(out.get(), bytes.data(), bytes.size());
    return true;
}

} // namespace vellum
