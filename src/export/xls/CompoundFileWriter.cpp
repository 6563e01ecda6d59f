#include "export/xls/CompoundFileWriter.h"

#include <algorithm>
#include <memory>

namespace vellum::xls {

namespace {

constexpr std::uint32_t kFreeSect = 0xFFFFFFFF;
constexpr std::uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr std::uint32_t kFatSect = 0xFFFFFFFD;
constexpr std::uint32_t kDifSect = 0xFFFFFFFC;
constexpr std::uint32_t kNoStream = 0xFFFFFFFF;
constexpr std::uint32_t kHeaderDifatEntries = 109;
constexpr std::uint32_t kEntriesPerSector = CompoundFileWriter::kSectorSize / 4;

std::uint64_t ceilDiv(std::uint64_t a, std::uint64_t b)
{
    return (a + b - 1) / b;
}

/// Counts what a producer writes and passes it on, so a wrong size is caught.
class CheckedSink : public ExportSink {
public:
    explicit CheckedSink(ExportSink &target) : m_target(target) {}
    bool write(std::string_view bytes) override
    {
        m_count += bytes.size();
        return m_target.write(bytes);
    }
    std::uint64_t count() const { return m_count; }

private:
    ExportSink &m_target;
    std::uint64_t m_count = 0;
};

bool writeZeros(ExportSink &out, std::uint64_t count)
{
    static const char zeros[CompoundFileWriter::kSectorSize] = {};
    while (count > 0) {
        std::size_t n = static_cast<std::size_t>(std::min<std::uint64_t>(count, sizeof zeros));
        if (!out.write(std::string_view(zeros, n)))
            return false;
        count -= n;
    }
    return true;
}

/// The directory's order of names: shorter first, then by code units with ASCII letters
/// upper-cased.
bool directoryLess(const std::u16string &a, const std::u16string &b)
{
    if (a.size() != b.size())
        return a.size() < b.size();
    for (std::size_t i = 0; i < a.size(); ++i) {
        char16_t ua = (a[i] >= u'a' && a[i] <= u'z') ? static_cast<char16_t>(a[i] - 32) : a[i];
        char16_t ub = (b[i] >= u'a' && b[i] <= u'z') ? static_cast<char16_t>(b[i] - 32) : b[i];
        if (ua != ub)
            return ua < ub;
    }
    return false;
}

struct DirEntry {
    std::u16string name;
    std::uint8_t type = 0; // 2 stream, 5 root
    std::uint32_t left = kNoStream, right = kNoStream, child = kNoStream;
    std::uint32_t start = kEndOfChain;
    std::uint64_t size = 0;
};

/// Builds a balanced binary tree over the sorted range and answers its root's entry number.
std::uint32_t buildTree(std::vector<DirEntry> &entries, const std::vector<std::uint32_t> &sorted, std::size_t lo,
                        std::size_t hi)
{
    if (lo >= hi)
        return kNoStream;
    std::size_t mid = lo + (hi - lo) / 2;
    DirEntry &node = entries[sorted[mid]];
    node.left = buildTree(entries, sorted, lo, mid);
    node.right = buildTree(entries, sorted, mid + 1, hi);
    return sorted[mid];
}

void appendDirEntry(LeBytes &out, const DirEntry &e)
{
    for (char16_t u : e.name)
        out.u16(u);
    out.zeros(64 - e.name.size() * 2);
    out.u16(e.type == 0 ? 0 : static_cast<std::uint16_t>((e.name.size() + 1) * 2));
    out.u8(e.type).u8(1 /* black */);
    out.u32(e.left).u32(e.right).u32(e.child);
    out.zeros(16 /* CLSID */ + 4 /* state */ + 16 /* times */);
    out.u32(e.type == 0 ? 0 : e.start).u64(e.size);
}

} // namespace

bool CompoundFileWriter::addStream(const std::u16string &name, std::uint64_t size, Producer producer)
{
    if (name.empty() || name.size() > 31 || size > 0xFFFFFFFFu)
        return false;
    for (const Stream &s : m_streams)
        if (!directoryLess(s.name, name) && !directoryLess(name, s.name))
            return false;
    m_streams.push_back({name, size, std::move(producer)});
    return true;
}

bool CompoundFileWriter::addStream(const std::u16string &name, std::string bytes)
{
    auto shared = std::make_shared<std::string>(std::move(bytes));
    std::uint64_t size = shared->size();
    return addStream(name, size, [shared](ExportSink &sink) { return sink.write(*shared); });
}

bool CompoundFileWriter::write(ExportSink &out) const
{
    // Sector layout after the header: big streams, the mini stream, the mini FAT, the
    // directory, the FAT, the DIFAT sectors.
    std::vector<std::uint32_t> bigStart(m_streams.size(), kEndOfChain);
    std::vector<std::uint32_t> miniStart(m_streams.size(), kEndOfChain);
    std::uint64_t sector = 0;
    std::uint64_t miniSectors = 0;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const Stream &s = m_streams[i];
        if (s.size == 0)
            continue;
        if (s.size >= kMiniStreamCutoff) {
            bigStart[i] = static_cast<std::uint32_t>(sector);
            sector += ceilDiv(s.size, kSectorSize);
        } else {
            miniStart[i] = static_cast<std::uint32_t>(miniSectors);
            miniSectors += ceilDiv(s.size, kMiniSectorSize);
        }
    }
    const std::uint64_t miniStreamBytes = miniSectors * kMiniSectorSize;
    const std::uint64_t miniStreamStart = sector;
    const std::uint64_t miniStreamSectors = ceilDiv(miniStreamBytes, kSectorSize);
    sector += miniStreamSectors;
    const std::uint64_t miniFatStart = sector;
    const std::uint64_t miniFatSectors = ceilDiv(miniSectors * 4, kSectorSize);
    sector += miniFatSectors;
    const std::uint64_t dirStart = sector;
    const std::uint64_t dirSectors = ceilDiv(m_streams.size() + 1, kSectorSize / 128);
    sector += dirSectors;
    const std::uint64_t fatStart = sector;
    std::uint64_t fatSectors = 0, difatSectors = 0;
    for (;;) {
        std::uint64_t total = sector + fatSectors + difatSectors;
        std::uint64_t needFat = ceilDiv(total, kEntriesPerSector);
        std::uint64_t needDifat =
            needFat > kHeaderDifatEntries ? ceilDiv(needFat - kHeaderDifatEntries, kEntriesPerSector - 1) : 0;
        if (needFat == fatSectors && needDifat == difatSectors)
            break;
        fatSectors = needFat;
        difatSectors = needDifat;
    }
    const std::uint64_t difatStart = fatStart + fatSectors;
    const std::uint64_t totalSectors = difatStart + difatSectors;
    if (totalSectors >= kDifSect)
        return false;

    // Header.
    LeBytes header;
    const unsigned char signature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    header.bytes(signature, 8).zeros(16);
    header.u16(0x003E).u16(0x0003).u16(0xFFFE).u16(9).u16(6).zeros(6);
    header.u32(0).u32(static_cast<std::uint32_t>(fatSectors)).u32(static_cast<std::uint32_t>(dirStart)).u32(0);
    header.u32(kMiniStreamCutoff);
    header.u32(miniFatSectors ? static_cast<std::uint32_t>(miniFatStart) : kEndOfChain)
        .u32(static_cast<std::uint32_t>(miniFatSectors));
    header.u32(difatSectors ? static_cast<std::uint32_t>(difatStart) : kEndOfChain)
        .u32(static_cast<std::uint32_t>(difatSectors));
    for (std::uint32_t i = 0; i < kHeaderDifatEntries; ++i)
        header.u32(i < fatSectors ? static_cast<std::uint32_t>(fatStart + i) : kFreeSect);
    if (!out.write(header.data()))
        return false;

    // Big streams, each padded to whole sectors.
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const Stream &s = m_streams[i];
        if (s.size < kMiniStreamCutoff)
            continue;
        CheckedSink checked(out);
        if (!s.producer(checked) || checked.count() != s.size)
            return false;
        if (!writeZeros(out, ceilDiv(s.size, kSectorSize) * kSectorSize - s.size))
            return false;
    }
    // The mini stream: small streams padded to whole mini sectors, then to a whole sector.
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const Stream &s = m_streams[i];
        if (s.size == 0 || s.size >= kMiniStreamCutoff)
            continue;
        CheckedSink checked(out);
        if (!s.producer(checked) || checked.count() != s.size)
            return false;
        if (!writeZeros(out, ceilDiv(s.size, kMiniSectorSize) * kMiniSectorSize - s.size))
            return false;
    }
    if (!writeZeros(out, miniStreamSectors * kSectorSize - miniStreamBytes))
        return false;

    // Mini FAT: one chain per small stream.
    LeBytes miniFat;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        const Stream &s = m_streams[i];
        if (s.size == 0 || s.size >= kMiniStreamCutoff)
            continue;
        std::uint64_t n = ceilDiv(s.size, kMiniSectorSize);
        for (std::uint64_t k = 1; k < n; ++k)
            miniFat.u32(static_cast<std::uint32_t>(miniStart[i] + k));
        miniFat.u32(kEndOfChain);
    }
    while (miniFat.size() < miniFatSectors * kSectorSize)
        miniFat.u32(kFreeSect);
    if (!out.write(miniFat.data()))
        return false;

    // Directory: the root entry, then the streams, as a balanced tree under the root.
    std::vector<DirEntry> entries(m_streams.size() + 1);
    entries[0].name = u"Root Entry";
    entries[0].type = 5;
    entries[0].start = miniStreamSectors ? static_cast<std::uint32_t>(miniStreamStart) : kEndOfChain;
    entries[0].size = miniStreamBytes;
    std::vector<std::uint32_t> sorted;
    for (std::size_t i = 0; i < m_streams.size(); ++i) {
        DirEntry &e = entries[i + 1];
        e.name = m_streams[i].name;
        e.type = 2;
        e.size = m_streams[i].size;
        e.start = m_streams[i].size >= kMiniStreamCutoff ? bigStart[i] : miniStart[i];
        sorted.push_back(static_cast<std::uint32_t>(i + 1));
    }
    std::sort(sorted.begin(), sorted.end(),
              [&](std::uint32_t a, std::uint32_t b) { return directoryLess(entries[a].name, entries[b].name); });
    entries[0].child = buildTree(entries, sorted, 0, sorted.size());
    LeBytes directory;
    for (const DirEntry &e : entries)
        appendDirEntry(directory, e);
    while (directory.size() < dirSectors * kSectorSize)
        appendDirEntry(directory, DirEntry{});
    if (!out.write(directory.data()))
        return false;

    // FAT, written a sector at a time: chains of the big streams and the structures, the FAT
    // and DIFAT sectors marked, the rest free.
    auto chainEnd = [&](std::uint64_t s, std::uint64_t start, std::uint64_t count) -> std::uint32_t {
        return s + 1 < start + count ? static_cast<std::uint32_t>(s + 1) : kEndOfChain;
    };
    std::size_t streamIndex = 0;
    for (std::uint64_t fatSector = 0; fatSector < fatSectors; ++fatSector) {
        LeBytes block;
        for (std::uint32_t k = 0; k < kEntriesPerSector; ++k) {
            std::uint64_t s = fatSector * kEntriesPerSector + k;
            std::uint32_t value = kFreeSect;
            if (s < miniStreamStart) {
                while (streamIndex < m_streams.size() &&
                       (m_streams[streamIndex].size < kMiniStreamCutoff ||
                        s >= bigStart[streamIndex] + ceilDiv(m_streams[streamIndex].size, kSectorSize)))
                    ++streamIndex;
                const Stream &st = m_streams[streamIndex];
                value = chainEnd(s, bigStart[streamIndex], ceilDiv(st.size, kSectorSize));
            } else if (s < miniFatStart) {
                value = chainEnd(s, miniStreamStart, miniStreamSectors);
            } else if (s < dirStart) {
                value = chainEnd(s, miniFatStart, miniFatSectors);
            } else if (s < fatStart) {
                value = chainEnd(s, dirStart, dirSectors);
            } else if (s < difatStart) {
                value = kFatSect;
            } else if (s < totalSectors) {
                value = kDifSect;
            }
            block.u32(value);
        }
        if (!out.write(block.data()))
            return false;
    }

    // DIFAT sectors: the FAT sectors beyond the header's 109, 127 a sector, then the next link.
    for (std::uint64_t d = 0; d < difatSectors; ++d) {
        LeBytes block;
        for (std::uint32_t k = 0; k < kEntriesPerSector - 1; ++k) {
            std::uint64_t fatIndex = kHeaderDifatEntries + d * (kEntriesPerSector - 1) + k;
            block.u32(fatIndex < fatSectors ? static_cast<std::uint32_t>(fatStart + fatIndex) : kFreeSect);
        }
        block.u32(d + 1 < difatSectors ? static_cast<std::uint32_t>(difatStart + d + 1) : kEndOfChain);
        if (!out.write(block.data()))
            return false;
    }
    return true;
}

} // namespace vellum::xls
