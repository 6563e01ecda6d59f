#pragma once

#include "export/xls/BiffStream.h"
#include "export/xls/SpillBuffer.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vellum::xls {

/// The workbook's shared string table (SST): the texts of all label cells, each cell naming
/// its text by index. The table is written out as its records are made, to temporary storage,
/// so memory holds one record whatever the number of texts. A short text (up to 32 units) that
/// was added recently is found again and shared; other texts get an entry of their own, which
/// the format allows. Texts whose units all lie below U+0100 are stored with one byte a
/// character (BIFF8's compressed form), others with two.
class SharedStringTable {
public:
    /// The index of the text's entry, adding one unless a recent short text is the same. Texts
    /// longer than 65535 units are the caller's to refuse.
    std::uint32_t add(std::u16string_view text);
    /// Counts cells that refer to a text (the table's total of references).
    void countUse(std::uint64_t uses = 1) { m_totalUses += uses; }

    std::uint32_t uniqueCount() const { return m_uniqueCount; }
    std::uint64_t totalUses() const { return m_totalUses; }
    /// False once the temporary storage failed.
    bool ok() const { return !m_spill.failed(); }

    /// Writes the SST record, its CONTINUE records and the EXTSST index after them. The
    /// stream's position must be the real stream position: EXTSST holds absolute offsets.
    /// Can be called again; the table stays as it is.
    [[nodiscard]] bool write(BiffStream &out);

    /// Heap bytes held.
    std::size_t memoryUsage() const;

    /// Texts up to this many units are looked up among the recent ones.
    static constexpr std::size_t kSharedTextUnits = 32;
    /// Slots of the cache of recent short texts (a power of two).
    static constexpr std::size_t kRecentSlots = 4096;

private:
    void finishRecord();
    void mark();

    LeBytes m_first; ///< the SST record's payload once it is full (its counts patched on writing)
    bool m_hasFirst = false;
    LeBytes m_current;               ///< the record being filled (the SST record itself until it is full)
    SpillBuffer m_spill;             ///< complete CONTINUE records after the first
    std::uint64_t m_recordStart = 0; ///< offset of the current record from the SST record's start
    std::uint32_t m_uniqueCount = 0;
    std::uint64_t m_totalUses = 0;

    /// EXTSST: offset from the SST record's start and offset inside its record of every
    /// m_markStride-th text. The stride doubles when the list is full, keeping it small.
    std::vector<std::pair<std::uint64_t, std::uint16_t>> m_marks;
    std::uint32_t m_markStride = 8;
    static constexpr std::size_t kMaxMarks = 4096;

    struct RecentText {
        std::uint32_t index = 0;
        std::uint16_t length = 0xFFFF; ///< 0xFFFF: the slot is free
        std::array<char16_t, kSharedTextUnits> units;
    };
    std::unique_ptr<RecentText[]> m_recent; ///< made on first use
};

} // namespace vellum::xls
