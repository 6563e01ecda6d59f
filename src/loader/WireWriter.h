#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// Where encoded bytes go: writes all of them or answers false.
using ByteOutput = std::function<bool(const void *data, std::size_t length)>;

/// Builds one message of the loader's pipe format. Integers are copied in the machine's own
/// byte order (both ends are the same build); large byte ranges are referenced in place, not
/// copied, and must stay alive until `send` returns.
class WireWriter {
public:
    void putU8(std::uint8_t value) { putCopied(&value, sizeof value); }
    void putU32(std::uint32_t value) { putCopied(&value, sizeof value); }
    void putU64(std::uint64_t value) { putCopied(&value, sizeof value); }
    void putI64(std::int64_t value) { putCopied(&value, sizeof value); }
    void putBool(bool value) { putU8(value ? 1 : 0); }
    /// A 32-bit length and the bytes.
    void putString(std::string_view text);
    /// A presence byte, then the text when present.
    void putOptionalString(const std::optional<std::string> &text);
    /// Appends a byte range without copying it.
    void putBorrowed(const void *data, std::size_t length);
    /// Appends a copy of a byte range.
    void putCopied(const void *data, std::size_t length);

    /// Bytes of content so far.
    std::uint64_t size() const { return m_size; }
    /// Writes the message: its type byte, its 64-bit content length and the content.
    [[nodiscard]] bool send(std::uint8_t type, const ByteOutput &output) const;

private:
    struct Piece {
        std::string copied;
        const void *borrowed = nullptr;
        std::size_t borrowedLength = 0;
    };
    std::vector<Piece> m_pieces;
    std::uint64_t m_size = 0;
};

} // namespace vellum
