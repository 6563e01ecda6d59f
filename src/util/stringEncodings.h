#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum {

/// One text encoding that text output can be written in. The codes are stable (the established
/// platform numbering: 1 ASCII, 4 UTF-8, 5 ISO Latin 1, 10 UTF-16, 30 Mac Roman, and
/// 0x80000000 plus the Core Foundation number for the others); they are menu tags and option
/// values, and the SQL toolkit maps them to server character sets.
struct StringEncoding {
    std::uint64_t code;
    const char *iconvName;
    const char *displayName;
    /// Every ASCII character is the same single byte in this encoding (from its initial state).
    bool asciiCompatible;
};

/// UTF-8, the default of every text output.
inline constexpr std::uint64_t kStringEncodingUTF8 = 4;

/// The encodings this system offers whose converter is available, sorted by display name.
const std::vector<StringEncoding> &availableStringEncodings();

/// The encoding of a code, nullptr when it is not offered.
const StringEncoding *stringEncodingForCode(std::uint64_t code);

/// Finds an encoding by its iconv name or display name (case-insensitive) or by its decimal
/// code; nullptr when nothing matches.
const StringEncoding *findStringEncoding(std::string_view nameOrCode);

/// Converts UTF-8 pieces to one target encoding. Each piece is converted on its own, ending in
/// the encoding's initial state, with no byte-order mark. A character that the target cannot
/// represent (or a byte that is not UTF-8) is written as "?". Not thread-safe; one per writer.
class TextEncoder {
public:
    TextEncoder() = default;
    ~TextEncoder();
    TextEncoder(const TextEncoder &) = delete;
    TextEncoder &operator=(const TextEncoder &) = delete;

    /// Prepares the conversion to an encoding code; false for an unknown code.
    [[nodiscard]] bool open(std::uint64_t code);
    /// Appends `utf8` converted to the target to `out`; answers how many characters became "?".
    std::size_t append(std::string_view utf8, std::string &out);

private:
    void convert(std::string_view utf8, std::string &out, std::size_t &substituted);
    void *m_iconv = nullptr;
    bool m_passThrough = true;
    bool m_asciiCompatible = true;
};

} // namespace vellum
