#pragma once

// The indexes of a table read from the bytes of its table definition. Access keeps two lists
// there: the real indexes (the stored key sets: key columns with their directions and the
// index flags) and the logical indexes (what a user sees: a name, a type and the number of the
// real index whose keys it uses). Several logical indexes may share one real index (a
// relationship's index on the referenced side shares the primary key's) and deleted indexes
// leave gaps in the logical numbering, so a logical index is matched to its keys by the real
// index number it names, never by position. Everything here is a pure function over bytes.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace vellum {

/// The two layouts of a table definition: Jet 3 (Access 97) and Jet 4 with all later formats.
enum class DefinitionLayout { Jet3, Jet4 };

/// The index types Access stores for a logical index.
enum class IndexType : std::uint8_t { Normal = 0, PrimaryKey = 1, ForeignKey = 2 };

/// Flag bits of a real index.
inline constexpr std::uint8_t kIndexFlagUnique = 0x01;
inline constexpr std::uint8_t kIndexFlagIgnoreNulls = 0x02;
inline constexpr std::uint8_t kIndexFlagRequired = 0x08;

/// One key column of an index: the column's number in the table definition (not its position)
/// and its direction.
struct IndexKeyDefinition {
    unsigned columnNumber = 0;
    bool ascending = true;
    bool operator==(const IndexKeyDefinition &) const = default;
};

/// The other side of a foreign-key index.
struct ForeignKeyReference {
    bool primarySide = false;           ///< this table is the referenced ("one") side
    std::uint32_t otherIndexNumber = 0; ///< the logical index number in the other table
    std::uint32_t otherTablePage = 0;   ///< the other table's definition page
    bool cascadeUpdates = false;
    bool cascadeDeletes = false;
    bool cascadeNull = false;
};

/// One logical index with the keys and flags of the real index it uses.
struct IndexDefinition {
    std::string rawName;         ///< the stored name bytes: UTF-16LE (Jet 4) or the code page's (Jet 3)
    std::uint32_t number = 0;    ///< the logical index number
    std::uint32_t realIndex = 0; ///< the real index whose keys and flags it takes
    IndexType type = IndexType::Normal;
    std::uint8_t flags = 0; ///< the real index's flags (kIndexFlag…)
    /// True when the real index is unique or backs a primary key (a primary key is unique
    /// whether or not the flag is stored).
    bool unique = false;
    std::vector<IndexKeyDefinition> keys;         ///< key columns that exist in the definition, in key order
    std::optional<ForeignKeyReference> reference; ///< foreign-key indexes that name their other side
};

/// One column descriptor as far as indexes need it: its number and stored name bytes.
struct ColumnDefinition {
    unsigned number = 0;
    std::string rawName;
};

/// The columns and logical indexes of one table definition, in stored order.
struct TableIndexDefinitions {
    std::vector<ColumnDefinition> columns;
    std::vector<IndexDefinition> indexes;
};

/// Parses a whole table definition (every page of it joined: the first page complete, each
/// following page from its byte 8 on). Skips the header, the per-index row counts, the column
/// descriptors and names, then reads the real index entries, the logical index entries and the
/// logical index names. A key naming a column that the definition does not hold is left out. A
/// logical index naming a real index that does not exist gets no keys. nullopt when the
/// definition is cut short or its counts cannot be right: a damaged definition gives no indexes.
[[nodiscard]] std::optional<TableIndexDefinitions> parseIndexDefinitions(std::span<const unsigned char> definition,
                                                                         DefinitionLayout layout);

/// Reads one page of `pageSize` bytes into the buffer; false when it cannot.
using PageReader = std::function<bool(std::uint32_t page, std::vector<unsigned char> &bytes)>;

/// Joins the pages of a table definition that starts at `firstPage`, following each page's
/// next-page pointer (bytes 4 to 7). Stops at a zero pointer; nullopt when a page cannot be
/// read, the chain loops or grows past any real definition's size.
[[nodiscard]] std::optional<std::vector<unsigned char>>
gatherTableDefinition(std::uint32_t firstPage, std::size_t pageSize, const PageReader &readPage);

} // namespace vellum
