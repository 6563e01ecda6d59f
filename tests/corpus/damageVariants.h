#pragma once

// Deterministic damage for Access database images, for the corruption suite.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vellum::test {

/// One way of damaging a database image: a label naming it and the edit itself, applied to a
/// copy of the image's bytes.
struct Damage {
    std::string label;
    std::function<void(std::vector<std::uint8_t> &)> apply;
};

/// What the damages aim at, found by walking the image's pages.
struct ImageLayout {
    bool jet3 = false;
    std::size_t pageSize = 4096;
    std::size_t pageCount = 0;
    std::vector<std::size_t> catalogPages;    ///< data pages of MSysObjects (its definition is page 2)
    std::vector<std::size_t> definitionPages; ///< table definition pages (columns, indexes)
    std::vector<std::size_t> propertyOffsets; ///< property blocks ("MR2" / "KKD" signatures)
    std::vector<std::size_t> longValuePages;  ///< data pages of long values (memo, OLE): "LVAL" owner
};

/// Walks the pages of an image.
ImageLayout analyseImage(const std::vector<std::uint8_t> &image);

/// Makes every row on the long-value pages of `layout` point at itself as the next link of its
/// chain: a value stored along a chain then loops forever unless the reader stops it.
void loopLongValueChains(std::vector<std::uint8_t> &bytes, const ImageLayout &layout);

/// The damages derived from one image, always the same for the same image and seed:
/// truncations, zeroed and random pages, flipped bytes in the catalog, in property blocks and
/// in column definition pages, an unreadable catalog, unreadable table definitions, and long
/// value chains whose every link points back at itself (50 in all).
std::vector<Damage> damagesFor(const std::vector<std::uint8_t> &image, std::uint64_t seed);

} // namespace vellum::test
