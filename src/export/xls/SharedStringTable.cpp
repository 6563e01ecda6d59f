#include "export/xls/SharedStringTable.h"

#include <algorithm>

namespace vellum::xls {

// Entry layout in a chunk: 16-bit length in units, one flag byte (1 = two bytes a unit), then
// the characters in the form the SST record stores them.

SharedStringTable::SharedStringTable() : m_slots(1024, 0) {}

SharedStringTable::EntryView SharedStringTable::entry(std::uint32_t index) const
{
    std::uint64_t ref = m_entries[index];
    const auto *p = reinterpret_cast<const unsigned char *>(m_chunks[ref >> 32].data()) + (ref & 0xFFFFFFFFu);
    return {static_cast<std::uint16_t>(p[0] | (p[1] << 8)), p[2] != 0, p + 3};
}

std::uint32_t SharedStringTable::hashOf(std::u16string_view text)
{
    std::uint32_t h = 2166136261u; // FNV-1a over the code units
    for (char16_t u : text) {
        h = (h ^ static_cast<std::uint32_t>(u)) * 16777619u;
    }
    return h;
}

std::uint32_t SharedStringTable::hashOf(const EntryView &e)
{
    std::uint32_t h = 2166136261u;
    for (std::size_t i = 0; i < e.length; ++i) {
        std::uint32_t u = e.wide ? (e.chars[2 * i] | (e.chars[2 * i + 1] << 8)) : e.chars[i];
        h = (h ^ u) * 16777619u;
    }
    return h;
}

bool SharedStringTable::equals(const EntryView &e, std::u16string_view text)
{
    if (e.length != text.size())
        return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char16_t u = e.wide ? static_cast<char16_t>(e.chars[2 * i] | (e.chars[2 * i + 1] << 8)) : e.chars[i];
        if (u != text[i])
            return false;
    }
    return true;
}

void SharedStringTable::grow()
{
    std::vector<std::uint32_t> slots(m_slots.size() * 2, 0);
    std::size_t mask = slots.size() - 1;
    for (std::uint32_t i = 0; i < m_entries.size(); ++i) {
        std::size_t s = hashOf(entry(i)) & mask;
        while (slots[s] != 0)
            s = (s + 1) & mask;
        slots[s] = i + 1;
    }
    m_slots.swap(slots);
}

std::uint32_t SharedStringTable::add(std::u16string_view text)
{
    std::size_t mask = m_slots.size() - 1;
    std::size_t s = hashOf(text) & mask;
    while (m_slots[s] != 0) {
        std::uint32_t index = m_slots[s] - 1;
        if (equals(entry(index), text))
            return index;
        s = (s + 1) & mask;
    }

    bool wide = std::any_of(text.begin(), text.end(), [](char16_t u) { return u > 0xFF; });
    std::size_t bytes = 3 + text.size() * (wide ? 2 : 1);
    if (m_chunks.empty() || m_chunks.back().size() + bytes > m_chunks.back().capacity()) {
        m_chunks.emplace_back();
        m_chunks.back().reserve(std::max(kChunkSize, bytes));
    }
    std::string &chunk = m_chunks.back();
    std::uint64_t ref = (static_cast<std::uint64_t>(m_chunks.size() - 1) << 32) | chunk.size();
    chunk += static_cast<char>(text.size() & 0xFF);
    chunk += static_cast<char>((text.size() >> 8) & 0xFF);
    chunk += static_cast<char>(wide ? 1 : 0);
    for (char16_t u : text) {
        chunk += static_cast<char>(u & 0xFF);
        if (wide)
            chunk += static_cast<char>(u >> 8);
    }
    std::uint32_t index = static_cast<std::uint32_t>(m_entries.size());
    m_entries.push_back(ref);
    m_slots[s] = index + 1;
    if (m_entries.size() * 2 > m_slots.size())
        grow();
    return index;
}

std::u16string SharedStringTable::text(std::uint32_t index) const
{
    EntryView e = entry(index);
    std::u16string out(e.length, u'\0');
    for (std::size_t i = 0; i < e.length; ++i)
        out[i] = e.wide ? static_cast<char16_t>(e.chars[2 * i] | (e.chars[2 * i + 1] << 8)) : e.chars[i];
    return out;
}

bool SharedStringTable::write(BiffStream &out) const
{
    // A text's 3-byte header never splits; its characters may go on in the next CONTINUE
    // record, which then starts with the flag byte of the remaining characters. A two-byte
    // character never splits either.
    const std::uint32_t unique = uniqueCount();
    const std::uint32_t perBucket = std::max<std::uint32_t>(8, unique / 128 + 1);
    LeBytes extsst;
    extsst.u16(static_cast<std::uint16_t>(perBucket));

    LeBytes current;
    current.u32(static_cast<std::uint32_t>(std::min<std::uint64_t>(m_totalUses, 0xFFFFFFFFu))).u32(unique);
    bool first = true;
    auto flush = [&]() {
        bool ok = out.record(first ? biff::kSst : biff::kContinue, current);
        first = false;
        current.clear();
        return ok;
    };

    for (std::uint32_t i = 0; i < unique; ++i) {
        EntryView e = entry(i);
        std::size_t unit = e.wide ? 2 : 1;
        std::size_t need = 3 + (e.length > 0 ? unit : 0);
        if (current.size() + need > biff::kMaxPayload && !flush())
            return false;
        if (i % perBucket == 0) {
            std::uint64_t at = out.position() + 4 + current.size();
            extsst.u32(static_cast<std::uint32_t>(at)).u16(static_cast<std::uint16_t>(4 + current.size())).u16(0);
        }
        current.u16(e.length).u8(e.wide ? 1 : 0);
        std::size_t done = 0;
        while (done < e.length) {
            std::size_t room = (biff::kMaxPayload - current.size()) / unit;
            std::size_t n = std::min<std::size_t>(room, e.length - done);
            current.bytes(e.chars + done * unit, n * unit);
            done += n;
            if (done < e.length) {
                if (!flush())
                    return false;
                current.u8(e.wide ? 1 : 0);
            }
        }
    }
    if (!flush())
        return false;
    return out.record(biff::kExtSst, extsst);
}

std::size_t SharedStringTable::memoryUsage() const
{
    std::size_t bytes = m_entries.capacity() * sizeof(std::uint64_t) + m_slots.capacity() * sizeof(std::uint32_t);
    for (const std::string &chunk : m_chunks)
        bytes += chunk.capacity();
    return bytes;
}

} // namespace vellum::xls
