#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vellum {

/// Where bytes come from: fills the whole buffer or answers false.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    [[nodiscard]] virtual bool read(void *data, std::size_t length) = 0;
};

/// Reads messages of the loader's pipe format (see WireWriter) without trusting them: every
/// length is checked against what is left of the current message, memory grows only as bytes
/// actually arrive, and the first failure sticks (later reads give zero or empty values).
class WireReader {
public:
    explicit WireReader(ByteSource &source) : m_source(source) {}

    /// Reads bytes outside any message (the stream's header).
    [[nodiscard]] bool getRaw(void *data, std::size_t length);
    /// Reads the next message's type and length; false on failure.
    [[nodiscard]] bool beginMessage(std::uint8_t &type);
    /// True when the current message was read exactly to its end without failure.
    [[nodiscard]] bool endMessage();

    std::uint8_t getU8() { return getValue<std::uint8_t>(); }
    std::uint32_t getU32() { return getValue<std::uint32_t>(); }
    std::uint64_t getU64() { return getValue<std::uint64_t>(); }
    std::int64_t getI64() { return getValue<std::int64_t>(); }
    /// A byte that must be 0 or 1.
    bool getBool();
    /// A 32-bit length and that many bytes.
    std::string getString();
    std::optional<std::string> getOptionalString();
    /// `length` bytes into a new buffer.
    [[nodiscard]] bool getBlock(std::unique_ptr<char[]> &out, std::uint64_t length);

    /// `count` values of a trivially copyable type.
    template <class T> [[nodiscard]] bool getArray(std::vector<T> &out, std::uint64_t count)
    {
        out.clear();
        if (!m_ok || count > m_remaining / sizeof(T))
            return fail();
        const std::uint64_t chunk = kChunkBytes / sizeof(T);
        while (out.size() < count) {
            const std::size_t old = out.size();
            const std::size_t n = static_cast<std::size_t>(std::min<std::uint64_t>(count - old, chunk));
            if (out.capacity() < old + n)
                out.reserve(static_cast<std::size_t>(
                    std::min<std::uint64_t>(count, std::max<std::uint64_t>(old + n, 2 * old))));
            out.resize(old + n);
            if (!take(out.data() + old, n * sizeof(T)))
                return false;
        }
        return true;
    }

    bool ok() const { return m_ok; }
    /// Marks the stream as failed; always answers false.
    bool fail()
    {
        m_ok = false;
        return false;
    }
    /// Bytes left in the current message.
    std::uint64_t remaining() const { return m_remaining; }

private:
    /// Memory is committed in steps of this size, so a false length costs no more than the
    /// bytes that really came.
    static constexpr std::uint64_t kChunkBytes = 16u << 20;

    bool take(void *data, std::size_t length);
    /// A value in the machine's byte order; zero once the stream failed.
    template <class T> T getValue()
    {
        T value = 0;
        return take(&value, sizeof value) ? value : 0;
    }

    ByteSource &m_source;
    std::uint64_t m_remaining = 0;
    bool m_ok = true;
};

} // namespace vellum
