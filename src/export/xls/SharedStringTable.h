#pragma once

#include "export/xls/BiffStream.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vellum::xls {

/// The workbook's shared string table: every distinct text once, in the order first used, each
/// cell naming its text by index. Texts whose units all lie below U+0100 are kept with one byte
/// a character (BIFF8's compressed form), others with two. Texts are found again through an
/// open-addressing hash of 32-bit entry numbers, so each distinct text costs its characters
/// plus about 16 bytes.
class SharedStringTable {
public:
    SharedStringTable();

    /// The index of the text, adding it when it is new. Texts longer than 65535 units are the
    /// caller's to refuse.
    std::uint32_t add(std::u16string_view text);
    /// Counts one more cell that refers to a text (the table's total of references).
    void countUse(std::uint64_t uses = 1) { m_totalUses += uses; }

    std::uint32_t uniqueCount() const { return static_cast<std::uint32_t>(m_entries.size()); }
    std::uint64_t totalUses() const { return m_totalUses; }
    /// The text of an entry (for tests and diagnostics).
    std::u16string text(std::uint32_t index) const;

    /// Writes the SST record with its CONTINUE records and the EXTSST index that follows it.
    /// The stream's position must be the real stream position: EXTSST holds absolute offsets.
    [[nodiscard]] bool write(BiffStream &out) const;

    /// Heap bytes held.
    std::size_t memoryUsage() const;

private:
    struct EntryView {
        std::uint16_t length;
        bool wide;
        const unsigned char *chars;
    };

    EntryView entry(std::uint32_t index) const;
    static std::uint32_t hashOf(const EntryView &e);
    static std::uint32_t hashOf(std::u16string_view text);
    static bool equals(const EntryView &e, std::u16string_view text);
    void grow();

    static constexpr std::size_t kChunkSize = 1 << 20;
    std::vector<std::string> m_chunks;
    std::vector<std::uint64_t> m_entries; ///< chunk index << 32 | offset of the entry
    std::vector<std::uint32_t> m_slots;   ///< entry number + 1, 0 when free
    std::uint64_t m_totalUses = 0;
};

} // namespace vellum::xls
