#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace vellum::test {

/// Builds small compound documents (512-byte big blocks, 64-byte small blocks, one allocation
/// table block) with streams below the root, for tests and fuzz seeds. Streams under the
/// threshold go to small blocks. The header fields can be changed before `bytes()` is taken.
class CompoundDocumentBuilder {
public:
    struct Entry {
        std::u16string name;
        std::vector<std::uint8_t> data;
    };

    void addStream(std::u16string name, std::vector<std::uint8_t> data)
    {
        m_entries.push_back({std::move(name), std::move(data)});
    }

    std::uint32_t threshold = 4096;
    std::uint16_t bigShift = 9;
    std::uint16_t smallShift = 6;

    /// Index in the file of the directory record of stream i (root is 0).
    static std::size_t recordOf(std::size_t stream) { return stream + 1; }

    std::vector<std::uint8_t> bytes() const
    {
        constexpr std::uint32_t kEnd = 0xFFFFFFFE, kFree = 0xFFFFFFFF, kBatBlock = 0xFFFFFFFD;
        std::vector<std::uint32_t> bat;
        std::vector<std::vector<std::uint8_t>> blocks;
        const auto addChain = [&](const std::vector<std::uint8_t> &data) -> std::uint32_t {
            const std::size_t count = (data.size() + 511) / 512;
            if (count == 0)
                return kEnd;
            const auto first = static_cast<std::uint32_t>(blocks.size());
            for (std::size_t i = 0; i < count; ++i) {
                std::vector<std::uint8_t> block(512, 0);
                for (std::size_t j = 0; j < 512 && i * 512 + j < data.size(); ++j)
                    block[j] = data[i * 512 + j];
                blocks.push_back(block);
                bat.push_back(i + 1 < count ? first + static_cast<std::uint32_t>(i) + 1 : kEnd);
            }
            return first;
        };

        std::vector<std::uint32_t> starts(m_entries.size());
        std::vector<std::uint8_t> mini;
        std::vector<std::uint32_t> sbat;
        for (std::size_t i = 0; i < m_entries.size(); ++i) {
            const auto &data = m_entries[i].data;
            if (data.size() >= threshold) {
                starts[i] = addChain(data);
                continue;
            }
            const std::size_t count = (data.size() + 63) / 64;
            starts[i] = count ? static_cast<std::uint32_t>(sbat.size()) : kEnd;
            for (std::size_t k = 0; k < count; ++k)
                sbat.push_back(k + 1 < count ? static_cast<std::uint32_t>(sbat.size()) + 1 : kEnd);
            std::vector<std::uint8_t> padded = data;
            padded.resize(count * 64, 0);
            mini.insert(mini.end(), padded.begin(), padded.end());
        }
        const std::uint32_t rootStart = addChain(mini);
        std::vector<std::uint8_t> sbatBytes;
        for (const std::uint32_t v : sbat)
            putU32(sbatBytes, v);
        sbatBytes.resize(((sbatBytes.size() + 511) / 512) * 512, 0xFF);
        const std::uint32_t sbatStart = addChain(sbatBytes);

        std::vector<std::uint8_t> dir;
        const std::size_t n = m_entries.size();
        appendRecord(dir, u"Root Entry", 5, kFree, kFree, n ? 1 + balanced(0, n) : kFree, rootStart,
                     static_cast<std::uint32_t>(mini.size()));
        for (std::size_t i = 0; i < n; ++i) {
            std::uint32_t prev = kFree, next = kFree;
            children(0, n, i, prev, next);
            appendRecord(dir, m_entries[i].name, 2, prev, next, kFree, starts[i],
                         static_cast<std::uint32_t>(m_entries[i].data.size()));
        }
        dir.resize(((dir.size() + 511) / 512) * 512, 0);
        const std::uint32_t dirStart = addChain(dir);

        const auto batBlock = static_cast<std::uint32_t>(blocks.size());
        bat.push_back(kBatBlock);
        std::vector<std::uint8_t> batBytes;
        for (const std::uint32_t v : bat)
            putU32(batBytes, v);
        batBytes.resize(512, 0xFF);
        blocks.push_back(batBytes);

        std::vector<std::uint8_t> out(512, 0);
        const std::uint8_t signature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
        std::copy(signature, signature + 8, out.begin());
        setU16(out, 24, 0x3E);
        setU16(out, 26, 3);
        setU16(out, 28, 0xFFFE);
        setU16(out, 30, bigShift);
        setU16(out, 32, smallShift);
        setU32(out, 44, 1);
        setU32(out, 48, dirStart);
        setU32(out, 56, threshold);
        setU32(out, 60, sbat.empty() ? kEnd : sbatStart);
        setU32(out, 64, static_cast<std::uint32_t>(sbatBytes.size() / 512));
        setU32(out, 68, kEnd);
        setU32(out, 72, 0);
        for (int i = 0; i < 109; ++i)
            setU32(out, 76 + 4 * i, i == 0 ? batBlock : kFree);
        for (const auto &block : blocks)
            out.insert(out.end(), block.begin(), block.end());
        return out;
    }

    static void putU32(std::vector<std::uint8_t> &out, std::uint32_t v)
    {
        for (int i = 0; i < 4; ++i)
            out.push_back(static_cast<std::uint8_t>(v >> (8 * i)));
    }
    static void setU16(std::vector<std::uint8_t> &out, std::size_t at, std::uint16_t v)
    {
        out[at] = static_cast<std::uint8_t>(v);
        out[at + 1] = static_cast<std::uint8_t>(v >> 8);
    }
    static void setU32(std::vector<std::uint8_t> &out, std::size_t at, std::uint32_t v)
    {
        for (int i = 0; i < 4; ++i)
            out[at + i] = static_cast<std::uint8_t>(v >> (8 * i));
    }

private:
    /// Streams [lo, hi) as a balanced sibling tree: the middle one is the subtree's root.
    static std::uint32_t balanced(std::size_t lo, std::size_t hi) { return static_cast<std::uint32_t>((lo + hi) / 2); }
    static void children(std::size_t lo, std::size_t hi, std::size_t i, std::uint32_t &prev, std::uint32_t &next)
    {
        const std::size_t mid = (lo + hi) / 2;
        if (i == mid) {
            prev = lo < mid ? 1 + balanced(lo, mid) : 0xFFFFFFFF;
            next = mid + 1 < hi ? 1 + balanced(mid + 1, hi) : 0xFFFFFFFF;
        } else if (i < mid) {
            children(lo, mid, i, prev, next);
        } else {
            children(mid + 1, hi, i, prev, next);
        }
    }
    static void appendRecord(std::vector<std::uint8_t> &dir, const std::u16string &name, std::uint8_t type,
                             std::uint32_t prev, std::uint32_t next, std::uint32_t child, std::uint32_t start,
                             std::uint32_t size)
    {
        std::vector<std::uint8_t> record(128, 0);
        std::size_t i = 0;
        for (; i < name.size() && i < 31; ++i)
            setU16(record, 2 * i, name[i]);
        setU16(record, 64, static_cast<std::uint16_t>(2 * (i + 1)));
        record[66] = type;
        record[67] = 1;
        setU32(record, 68, prev);
        setU32(record, 72, next);
        setU32(record, 76, child);
        setU32(record, 116, start);
        setU32(record, 120, size);
        dir.insert(dir.end(), record.begin(), record.end());
    }

    std::vector<Entry> m_entries;
};

/// Writes bytes to a new file in a folder that the test owns; answers the path.
inline std::string writeTempBytes(const std::string &folder, const std::string &name,
                                  const std::vector<std::uint8_t> &bytes)
{
    const std::string path = folder + "/" + name;
    std::FILE *out = std::fopen(path.c_str(), "wb");
    if (out) {
        std::fwrite(bytes.data(), 1, bytes.size(), out);
        std::fclose(out);
    }
    return path;
}

} // namespace vellum::test
