#include "damageVariants.h"

#include <algorithm>
#include <cstring>
#include <random>

namespace vellum::test {

namespace {

/// Uniform enough for choosing damage, and the same on every standard library (unlike
/// std::uniform_int_distribution).
class Dice {
public:
    explicit Dice(std::uint64_t seed) : m_engine(seed) {}
    /// A number in [0, n); 0 when n is 0.
    std::size_t below(std::size_t n) { return n ? static_cast<std::size_t>(m_engine() % n) : 0; }
    std::size_t between(std::size_t low, std::size_t high) { return low + below(high > low ? high - low : 1); }
    std::uint8_t nonZeroByte() { return static_cast<std::uint8_t>(1 + below(255)); }
    template <class T> T pick(const std::vector<T> &from, T fallback)
    {
        return from.empty() ? fallback : from[below(from.size())];
    }

private:
    std::mt19937_64 m_engine;
};

std::uint32_t readU32(const std::vector<std::uint8_t> &image, std::size_t at)
{
    std::uint32_t value = 0;
    if (at + 4 <= image.size())
        std::memcpy(&value, image.data() + at, 4); // little-endian like the file
    return value;
}

/// Edits that flip bytes at chosen offsets by chosen masks.
std::function<void(std::vector<std::uint8_t> &)> flips(std::vector<std::pair<std::size_t, std::uint8_t>> edits)
{
    return [edits](std::vector<std::uint8_t> &bytes) {
        for (const auto &[at, mask] : edits)
            if (at < bytes.size())
                bytes[at] ^= mask;
    };
}

std::function<void(std::vector<std::uint8_t> &)> overwrite(std::size_t at, std::vector<std::uint8_t> with)
{
    return [at, with](std::vector<std::uint8_t> &bytes) {
        for (std::size_t i = 0; i < with.size() && at + i < bytes.size(); ++i)
            bytes[at + i] = with[i];
    };
}

} // namespace

ImageLayout analyseImage(const std::vector<std::uint8_t> &image)
{
    ImageLayout layout;
    layout.jet3 = image.size() > 0x14 && image[0x14] == 0;
    layout.pageSize = layout.jet3 ? 2048 : 4096;
    layout.pageCount = image.size() / layout.pageSize;
    for (std::size_t page = 1; page < layout.pageCount; ++page) {
        const std::size_t at = page * layout.pageSize;
        if (image[at] == 0x02)
            layout.definitionPages.push_back(page);
        else if (image[at] == 0x01 && readU32(image, at + 4) == 2)
            layout.catalogPages.push_back(page);
        else if (image[at] == 0x01 && std::memcmp(image.data() + at + 4, "LVAL", 4) == 0)
            layout.longValuePages.push_back(page);
    }
    const char *signature = layout.jet3 ? "KKD" : "MR2";
    for (std::size_t at = 0; at + 4 <= image.size(); ++at)
        if (std::memcmp(image.data() + at, signature, 4) == 0) // with its terminating zero
            layout.propertyOffsets.push_back(at);
    return layout;
}

void loopLongValueChains(std::vector<std::uint8_t> &bytes, const ImageLayout &layout)
{
    // Row count and offsets: at 8 and 10 on a Jet 3 page, at 12 and 14 on later ones; an
    // offset's top bits are flags.
    const std::size_t countAt = layout.jet3 ? 8 : 12;
    constexpr std::uint16_t offsetMask = 0x1FFF;
    for (const std::size_t page : layout.longValuePages) {
        const std::size_t at = page * layout.pageSize;
        if (at + layout.pageSize > bytes.size())
            continue;
        const std::size_t rows = bytes[at + countAt] | (bytes[at + countAt + 1] << 8);
        for (std::size_t row = 0; row < rows && row < 256; ++row) {
            const std::size_t entry = at + countAt + 2 + 2 * row;
            if (entry + 2 > at + layout.pageSize)
                break;
            const std::size_t start = (bytes[entry] | (bytes[entry + 1] << 8)) & offsetMask;
            if (start < countAt + 2 || start + 4 > layout.pageSize)
                continue;
            const std::uint32_t self = static_cast<std::uint32_t>(page << 8 | row);
            std::memcpy(bytes.data() + at + start, &self, 4);
        }
    }
}

std::vector<Damage> damagesFor(const std::vector<std::uint8_t> &image, std::uint64_t seed)
{
    Dice dice(seed);
    const ImageLayout layout = analyseImage(image);
    const std::size_t page = layout.pageSize;
    const std::size_t pages = std::max<std::size_t>(layout.pageCount, 4);
    std::vector<Damage> damages;
    const auto add = [&](std::string label, std::function<void(std::vector<std::uint8_t> &)> apply) {
        damages.push_back(Damage{std::move(label), std::move(apply)});
    };
    const auto truncate = [&](std::size_t size) {
        add("truncated-" + std::to_string(size),
            [size](std::vector<std::uint8_t> &bytes) { bytes.resize(std::min(size, bytes.size())); });
    };

    // Truncations: inside the header page, at page boundaries, and anywhere.
    for (const std::size_t size :
         {std::size_t{100}, page, 2 * page, 3 * page, image.size() / 2 / page * page, image.size() - page})
        truncate(size);
    for (int i = 0; i < 2; ++i)
        truncate(dice.between(4, pages - 1) * page);
    for (int i = 0; i < 2; ++i)
        truncate(dice.between(page, image.size()));

    // Whole pages zeroed or filled with noise; page 2 holds the catalog's table definition.
    std::vector<std::size_t> zeroed = {1, 2};
    for (int i = 0; i < 4; ++i)
        zeroed.push_back(dice.between(3, pages));
    for (const std::size_t p : zeroed)
        add("zeroed-page-" + std::to_string(p), overwrite(p * page, std::vector<std::uint8_t>(page, 0)));
    std::vector<std::size_t> noisy = {2};
    for (int i = 0; i < 4; ++i)
        noisy.push_back(dice.between(3, pages));
    for (const std::size_t p : noisy) {
        std::vector<std::uint8_t> noise(page);
        for (auto &byte : noise)
            byte = static_cast<std::uint8_t>(dice.below(256));
        add("random-page-" + std::to_string(p), overwrite(p * page, std::move(noise)));
    }

    // Flipped bytes in the catalog's rows, anywhere on its data pages (row offsets included).
    for (int i = 0; i < 8; ++i) {
        const std::size_t p = dice.pick(layout.catalogPages, dice.between(3, pages));
        std::vector<std::pair<std::size_t, std::uint8_t>> edits;
        const std::size_t count = 1 + dice.below(8);
        for (std::size_t k = 0; k < count; ++k)
            edits.emplace_back(p * page + dice.between(8, page), dice.nonZeroByte());
        add("catalog-page-" + std::to_string(p) + "-flips-" + std::to_string(count), flips(std::move(edits)));
    }

    // Property blocks: a zeroed record length (the kind that once made libmdb loop), flipped
    // bytes, a wrong chunk length, a zeroed stretch.
    for (int i = 0; i < 8; ++i) {
        const std::size_t at = dice.pick(layout.propertyOffsets, dice.between(3, pages) * page + 64);
        switch (i % 4) {
        case 0:
            add("property-" + std::to_string(at) + "-zero-length",
                overwrite(at + 4 + 2 * dice.below(64), std::vector<std::uint8_t>(2, 0)));
            break;
        case 1: {
            std::vector<std::pair<std::size_t, std::uint8_t>> edits;
            for (std::size_t k = 0, n = 1 + dice.below(4); k < n; ++k)
                edits.emplace_back(at + dice.below(256), dice.nonZeroByte());
            add("property-" + std::to_string(at) + "-flips", flips(std::move(edits)));
            break;
        }
        case 2: {
            std::vector<std::uint8_t> length(4);
            for (auto &byte : length)
                byte = static_cast<std::uint8_t>(dice.below(256));
            add("property-" + std::to_string(at) + "-chunk-length", overwrite(at + 4, std::move(length)));
            break;
        }
        default:
            add("property-" + std::to_string(at) + "-zeroed",
                overwrite(at + 4 + dice.below(196), std::vector<std::uint8_t>(16, 0)));
            break;
        }
    }

    // Column definitions: flipped bytes in the definition header, index and column entries.
    const std::size_t definitionStart = layout.jet3 ? 43 : 63;
    for (int i = 0; i < 8; ++i) {
        const std::size_t p = dice.pick(layout.definitionPages, std::size_t{2});
        std::vector<std::pair<std::size_t, std::uint8_t>> edits;
        const std::size_t count = 1 + dice.below(4);
        for (std::size_t k = 0; k < count; ++k)
            edits.emplace_back(p * page + definitionStart + dice.below(600), dice.nonZeroByte());
        add("definition-page-" + std::to_string(p) + "-flips-" + std::to_string(count), flips(std::move(edits)));
    }

    // The catalog's definition (page 2) of another page type: the catalog cannot be read.
    add("catalog-unreadable", overwrite(2 * page, {0x01}));
    // The last two table definitions (user tables come after the system ones) of another page
    // type: those tables cannot be read.
    for (std::size_t k = 0; k < 2; ++k) {
        const std::size_t n = layout.definitionPages.size();
        const std::size_t p = n > k ? layout.definitionPages[n - 1 - k] : 3 + k;
        add("definition-unreadable-" + std::to_string(p), overwrite(p * page, {0x01}));
    }
    // Long-value chains (memo and OLE values longer than a page) that loop.
    add("long-value-chains-loop", [layout](std::vector<std::uint8_t> &bytes) { loopLongValueChains(bytes, layout); });
    add("long-value-chains-loop-truncated", [layout](std::vector<std::uint8_t> &bytes) {
        loopLongValueChains(bytes, layout);
        bytes.resize(bytes.size() - bytes.size() / 8 / layout.pageSize * layout.pageSize);
    });
    return damages;
}

} // namespace vellum::test
