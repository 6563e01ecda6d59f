#include "export/xls/SharedStringTable.h"

#include <algorithm>

namespace vellum::xls {

// A text's 3-byte header (length in units, flag byte: 1 = two bytes a unit) never splits; its
// characters may go on in the next CONTINUE record, which then starts with the flag byte of the
// remaining characters. A two-byte character never splits either.

void SharedStringTable::finishRecord()
{
    const std::uint64_t size = 4 + m_current.size();
    if (!m_hasFirst) {
        m_first = std::move(m_current);
        m_hasFirst = true;
    } else {
        LeBytes header;
        header.u16(biff::kContinue).u16(static_cast<std::uint16_t>(m_current.size()));
        (void)(m_spill.write(header.data()) && m_spill.write(m_current.data())); // failure is kept by the spill
    }
    m_recordStart += size;
    m_current.clear();
}

void SharedStringTable::mark()
{
    if (m_uniqueCount % m_markStride != 0)
        return;
    if (m_marks.size() == kMaxMarks) {
        // Keep every other mark: the stride doubles.
        std::size_t out = 0;
        for (std::size_t i = 0; i < m_marks.size(); i += 2)
            m_marks[out++] = m_marks[i];
        m_marks.resize(out);
        m_markStride *= 2;
        if (m_uniqueCount % m_markStride != 0)
            return;
    }
    m_marks.emplace_back(m_recordStart + 4 + m_current.size(), static_cast<std::uint16_t>(4 + m_current.size()));
}

std::uint32_t SharedStringTable::add(std::u16string_view text)
{
    RecentText *slot = nullptr;
    if (text.size() <= kSharedTextUnits) {
        if (!m_recent)
            m_recent = std::make_unique<RecentText[]>(kRecentSlots);
        std::uint32_t hash = 2166136261u; // FNV-1a over the units
        for (char16_t u : text)
            hash = (hash ^ u) * 16777619u;
        slot = &m_recent[hash & (kRecentSlots - 1)];
        if (slot->length == text.size() && std::equal(text.begin(), text.end(), slot->units.begin()))
            return slot->index;
    }

    if (!m_hasFirst && m_current.size() == 0)
        m_current.zeros(8); // the counts, filled in when written
    const bool wide = std::any_of(text.begin(), text.end(), [](char16_t u) { return u > 0xFF; });
    const std::size_t unit = wide ? 2 : 1;
    if (m_current.size() + 3 + (text.empty() ? 0 : unit) > biff::kMaxPayload)
        finishRecord();
    mark();
    m_current.u16(static_cast<std::uint16_t>(text.size())).u8(wide ? 1 : 0);
    std::size_t done = 0;
    while (done < text.size()) {
        const std::size_t room = (biff::kMaxPayload - m_current.size()) / unit;
        const std::size_t count = std::min(room, text.size() - done);
        m_current.units(text.data() + done, count, wide);
        done += count;
        if (done < text.size()) {
            finishRecord();
            m_current.u8(wide ? 1 : 0);
        }
    }

    const std::uint32_t index = m_uniqueCount++;
    if (slot) {
        slot->index = index;
        slot->length = static_cast<std::uint16_t>(text.size());
        std::copy(text.begin(), text.end(), slot->units.begin());
    }
    return index;
}

bool SharedStringTable::write(BiffStream &out)
{
    const std::uint64_t start = out.position();
    auto withCounts = [this](const LeBytes &payload) {
        LeBytes patched = payload;
        if (patched.size() < 8)
            patched.zeros(8 - patched.size());
        patched.patchU32(0, static_cast<std::uint32_t>(std::min<std::uint64_t>(m_totalUses, 0xFFFFFFFFu)));
        patched.patchU32(4, m_uniqueCount);
        return patched;
    };
    if (!m_hasFirst) {
        if (!out.record(biff::kSst, withCounts(m_current)))
            return false;
    } else if (!out.record(biff::kSst, withCounts(m_first)) || !out.copy(m_spill, 0, m_spill.size()) ||
               (m_current.size() > 0 && !out.record(biff::kContinue, m_current))) {
        return false;
    }

    // EXTSST: a bucket of `perBucket` texts for at most 128 buckets, pointing at each bucket's
    // first text; `perBucket` is a multiple of the marks' stride.
    std::uint32_t perBucket = std::max<std::uint32_t>(8, m_uniqueCount / 128 + 1);
    perBucket = (perBucket + m_markStride - 1) / m_markStride * m_markStride;
    LeBytes extsst;
    extsst.u16(static_cast<std::uint16_t>(std::min<std::uint32_t>(perBucket, 0xFFFF)));
    const std::size_t step = perBucket / m_markStride;
    for (std::size_t i = 0; i < m_marks.size(); i += step)
        extsst.u32(static_cast<std::uint32_t>(start + m_marks[i].first)).u16(m_marks[i].second).u16(0);
    return out.record(biff::kExtSst, extsst);
}

std::size_t SharedStringTable::memoryUsage() const
{
    return m_first.size() + m_current.size() + m_marks.capacity() * sizeof(m_marks[0]) +
           (m_recent ? kRecentSlots * sizeof(RecentText) : 0);
}

} // namespace vellum::xls
