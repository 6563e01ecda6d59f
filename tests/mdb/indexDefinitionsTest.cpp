// The index reader over table-definition bytes built here, in both layouts: logical indexes that
// share one real index, gaps left by deleted indexes, multi-column keys with mixed directions,
// foreign-key references, and definitions that are cut short or carry impossible counts.

#include "mdb/indexDefinitions.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace vellum {
namespace {

struct TestColumn {
    unsigned number;
    std::string name;
};

struct TestRealIndex {
    std::vector<IndexKeyDefinition> keys;
    std::uint8_t flags = 0;
};

struct TestLogicalIndex {
    std::string name;
    std::uint32_t number;
    std::uint32_t realIndex;
    std::uint8_t type = 0;
    std::uint8_t side = 0;
    std::uint32_t otherIndex = 0xFFFFFFFFu;
    std::uint32_t otherPage = 0;
    std::uint8_t cascadeUpdates = 0;
    std::uint8_t cascadeDeletes = 0;
};

struct TestTable {
    std::vector<TestColumn> columns;
    std::vector<TestRealIndex> real;
    std::vector<TestLogicalIndex> logical;
};

/// The stored bytes of an ASCII name: UTF-16LE in Jet 4, single bytes in Jet 3.
std::string storedName(const std::string &name, DefinitionLayout layout)
{
    if (layout == DefinitionLayout::Jet3)
        return name;
    std::string out;
    for (const char c : name) {
        out += c;
        out += '\0';
    }
    return out;
}

class DefinitionBuilder {
public:
    explicit DefinitionBuilder(DefinitionLayout layout) : m_jet3(layout == DefinitionLayout::Jet3), m_layout(layout) {}

    std::vector<unsigned char> build(const TestTable &table)
    {
        m_bytes.assign(m_jet3 ? 43 : 63, 0);
        m_bytes[0] = 0x02; // a table-definition page
        putAt(m_jet3 ? 25 : 45, table.columns.size(), 2);
        putAt(m_jet3 ? 27 : 47, table.logical.size(), 4);
        putAt(m_jet3 ? 31 : 51, table.real.size(), 4);
        for (std::size_t i = 0; i < table.real.size(); ++i) // row counts per real index
            put(i + 7, m_jet3 ? 8 : 12);
        for (const TestColumn &column : table.columns) {
            std::vector<unsigned char> descriptor(m_jet3 ? 18 : 25, 0);
            descriptor[0] = 0x04; // Long Integer
            const std::size_t at = m_jet3 ? 1 : 5;
            descriptor[at] = static_cast<unsigned char>(column.number);
            descriptor[at + 1] = static_cast<unsigned char>(column.number >> 8);
            m_bytes.insert(m_bytes.end(), descriptor.begin(), descriptor.end());
        }
        for (const TestColumn &column : table.columns)
            putName(column.name);
        for (const TestRealIndex &real : table.real) {
            if (!m_jet3)
                put(0, 4);
            for (std::size_t slot = 0; slot < 10; ++slot) {
                if (slot < real.keys.size()) {
                    put(real.keys[slot].columnNumber, 2);
                    put(real.keys[slot].ascending ? 0x01 : 0x00, 1);
                } else {
                    put(0xFFFF, 2);
                    put(0, 1);
                }
            }
            put(0x00012301, 4); // usage map
            put(0x44, 4);       // first index page
            if (!m_jet3)
                put(0, 4);
            put(real.flags, 1);
            if (!m_jet3)
                put(0, 5);
        }
        for (const TestLogicalIndex &logical : table.logical) {
            if (!m_jet3)
                put(0x0666, 4);
            put(logical.number, 4);
            put(logical.realIndex, 4);
            put(logical.side, 1);
            put(logical.otherIndex, 4);
            put(logical.otherPage, 4);
            put(logical.cascadeUpdates, 1);
            put(logical.cascadeDeletes, 1);
            put(logical.type, 1);
            if (!m_jet3)
                put(0, 4);
        }
        for (const TestLogicalIndex &logical : table.logical)
            putName(logical.name);
        // What follows the names in a real definition: column usage maps, ending in 0xFFFF.
        put(0xFFFF, 2);
        return m_bytes;
    }

private:
    void put(std::uint64_t value, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            m_bytes.push_back(i < 8 ? static_cast<unsigned char>(value >> (8 * i)) : 0);
    }
    void putAt(std::size_t offset, std::uint64_t value, std::size_t size)
    {
        for (std::size_t i = 0; i < size; ++i)
            m_bytes[offset + i] = i < 8 ? static_cast<unsigned char>(value >> (8 * i)) : 0;
    }
    void putName(const std::string &name)
    {
        const std::string stored = storedName(name, m_layout);
        put(stored.size(), m_jet3 ? 1 : 2);
        m_bytes.insert(m_bytes.end(), stored.begin(), stored.end());
    }

    bool m_jet3;
    DefinitionLayout m_layout;
    std::vector<unsigned char> m_bytes;
};

/// What a test expects of one logical index.
struct ExpectedIndex {
    std::string name;
    IndexType type;
    std::vector<IndexKeyDefinition> keys;
    bool unique;
};

struct DefinitionCase {
    const char *what;
    TestTable table;
    std::vector<ExpectedIndex> expected;
};

const IndexKeyDefinition kIdAscending{1, true};

std::vector<DefinitionCase> definitionCases()
{
    return {
        {"a primary key and two foreign-key indexes on one key set",
         {{{1, "ID"}, {2, "Name"}},
          {{{kIdAscending}, 0x81}},
          {{"PrimaryKey", 0, 0, 1}, {".rB", 1, 0, 2, 1, 1, 0x60, 0, 0}, {".rC", 2, 0, 2, 1, 3, 0x70, 1, 1}}},
         {{"PrimaryKey", IndexType::PrimaryKey, {kIdAscending}, true},
          {".rB", IndexType::ForeignKey, {kIdAscending}, true},
          {".rC", IndexType::ForeignKey, {kIdAscending}, true}}},
        {"deleted indexes leave gaps: logical numbers 0, 3, 7 use real indexes 2, 0, 1",
         {{{1, "ID"}, {2, "Code"}, {3, "Price"}},
          {{{{2, true}}, 0x00}, {{{3, false}}, 0x00}, {{kIdAscending}, 0x01}},
          {{"PrimaryKey", 0, 2, 1}, {"ixCode", 3, 0}, {"ixPrice", 7, 1}}},
         {{"PrimaryKey", IndexType::PrimaryKey, {kIdAscending}, true},
          {"ixCode", IndexType::Normal, {{2, true}}, false},
          {"ixPrice", IndexType::Normal, {{3, false}}, false}}},
        {"a two-column key with one descending column, over columns numbered around a deleted one",
         {{{0, "A"}, {2, "OrderID"}, {5, "LineNo"}}, {{{{2, true}, {5, false}}, 0x01}}, {{"ux_OrderLine", 0, 0, 0}}},
         {{"ux_OrderLine", IndexType::Normal, {{2, true}, {5, false}}, true}}},
        {"a primary key is unique even without the stored flag",
         {{{1, "ID"}}, {{{kIdAscending}, 0x00}}, {{"PrimaryKey", 0, 0, 1}}},
         {{"PrimaryKey", IndexType::PrimaryKey, {kIdAscending}, true}}},
        {"a key on a column the definition lacks is left out; a missing real index gives no keys",
         {{{1, "ID"}}, {{{{9, true}, kIdAscending}, 0x00}}, {{"ix", 0, 0, 0}, {"lost", 1, 4, 0}}},
         {{"ix", IndexType::Normal, {kIdAscending}, false}, {"lost", IndexType::Normal, {}, false}}},
        {"no indexes at all", {{{1, "ID"}}, {}, {}}, {}},
    };
}

TEST(IndexDefinitions, LogicalIndexesTakeTheKeysOfTheRealIndexTheyName)
{
    for (const DefinitionLayout layout : {DefinitionLayout::Jet3, DefinitionLayout::Jet4}) {
        for (const DefinitionCase &c : definitionCases()) {
            SCOPED_TRACE(std::string(layout == DefinitionLayout::Jet3 ? "Jet 3: " : "Jet 4: ") + c.what);
            const auto bytes = DefinitionBuilder(layout).build(c.table);
            const auto parsed = parseIndexDefinitions(bytes, layout);
            ASSERT_TRUE(parsed);
            ASSERT_EQ(parsed->columns.size(), c.table.columns.size());
            for (std::size_t i = 0; i < c.table.columns.size(); ++i) {
                EXPECT_EQ(parsed->columns[i].number, c.table.columns[i].number);
                EXPECT_EQ(parsed->columns[i].rawName, storedName(c.table.columns[i].name, layout));
            }
            ASSERT_EQ(parsed->indexes.size(), c.expected.size());
            for (std::size_t i = 0; i < c.expected.size(); ++i) {
                const IndexDefinition &index = parsed->indexes[i];
                const ExpectedIndex &want = c.expected[i];
                EXPECT_EQ(index.rawName, storedName(want.name, layout)) << want.name;
                EXPECT_EQ(index.number, c.table.logical[i].number) << want.name;
                EXPECT_EQ(index.type, want.type) << want.name;
                EXPECT_EQ(index.keys, want.keys) << want.name;
                EXPECT_EQ(index.unique, want.unique) << want.name;
            }
        }
    }
}

TEST(IndexDefinitions, ForeignKeyIndexesCarryTheirReference)
{
    const TestTable table{{{1, "ID"}, {2, "CustomerID"}},
                          {{{kIdAscending}, 0x01}, {{{2, true}}, 0x00}},
                          {{"PrimaryKey", 0, 0, 1},
                           {"CustomersOrders", 1, 1, 2, 2, 0, 0x1234, 1, 0},
                           {".rB", 2, 0, 2, 1, 5, 0x77, 0, 3},
                           {"unlinked", 3, 1, 2}}};
    for (const DefinitionLayout layout : {DefinitionLayout::Jet3, DefinitionLayout::Jet4}) {
        const auto parsed = parseIndexDefinitions(DefinitionBuilder(layout).build(table), layout);
        ASSERT_TRUE(parsed);
        ASSERT_EQ(parsed->indexes.size(), 4u);
        EXPECT_FALSE(parsed->indexes[0].reference);
        const auto &referencing = parsed->indexes[1].reference;
        ASSERT_TRUE(referencing);
        EXPECT_FALSE(referencing->primarySide);
        EXPECT_EQ(referencing->otherIndexNumber, 0u);
        EXPECT_EQ(referencing->otherTablePage, 0x1234u);
        EXPECT_TRUE(referencing->cascadeUpdates);
        EXPECT_FALSE(referencing->cascadeDeletes);
        const auto &referenced = parsed->indexes[2].reference;
        ASSERT_TRUE(referenced);
        EXPECT_TRUE(referenced->primarySide);
        EXPECT_EQ(referenced->otherIndexNumber, 5u);
        EXPECT_FALSE(referenced->cascadeUpdates);
        EXPECT_TRUE(referenced->cascadeDeletes);
        EXPECT_TRUE(referenced->cascadeNull);
        // A foreign-key index whose other side is no index has no reference, but stays one.
        EXPECT_EQ(parsed->indexes[3].type, IndexType::ForeignKey);
        EXPECT_FALSE(parsed->indexes[3].reference);
        EXPECT_EQ(parsed->indexes[3].keys, (std::vector<IndexKeyDefinition>{{2, true}}));
    }
}

TEST(IndexDefinitions, DamagedDefinitionsGiveNothing)
{
    const TestTable table = definitionCases()[1].table;
    for (const DefinitionLayout layout : {DefinitionLayout::Jet3, DefinitionLayout::Jet4}) {
        const auto bytes = DefinitionBuilder(layout).build(table);
        // Cut short anywhere before the last index name ends: never a partial answer.
        for (std::size_t size = 0; size + 2 < bytes.size(); ++size)
            EXPECT_FALSE(parseIndexDefinitions(std::span(bytes.data(), size), layout)) << size;
        // Counts that cannot fit in the bytes there are.
        const std::size_t columns = layout == DefinitionLayout::Jet3 ? 25 : 45;
        const std::size_t logical = layout == DefinitionLayout::Jet3 ? 27 : 47;
        const std::size_t real = layout == DefinitionLayout::Jet3 ? 31 : 51;
        const std::vector<std::pair<std::size_t, std::size_t>> edits = {
            {columns + 1, 0x7F}, {logical + 3, 0xFF}, {real + 3, 0xFF}, {real, 0x40}};
        for (const auto &[offset, value] : edits) {
            auto damaged = bytes;
            damaged[offset] = static_cast<unsigned char>(value);
            EXPECT_FALSE(parseIndexDefinitions(damaged, layout)) << offset;
        }
    }
}

TEST(IndexDefinitions, GatherFollowsTheNextPagePointers)
{
    constexpr std::size_t kPageSize = 32;
    const auto page = [](std::uint32_t next, unsigned char fill) {
        std::vector<unsigned char> bytes(kPageSize, fill);
        bytes[0] = 0x02;
        for (int i = 0; i < 4; ++i)
            bytes[4 + i] = static_cast<unsigned char>(next >> (8 * i));
        return bytes;
    };
    struct Case {
        const char *what;
        std::map<std::uint32_t, std::vector<unsigned char>> pages;
        std::uint32_t first;
        std::size_t size; ///< 0: nothing
    };
    const std::vector<Case> cases = {
        {"one page", {{5, page(0, 0xA1)}}, 5, kPageSize},
        {"three pages, the later ones without their headers",
         {{5, page(9, 0xA1)}, {9, page(2, 0xB2)}, {2, page(0, 0xC3)}},
         5,
         kPageSize + 2 * (kPageSize - 8)},
        {"a chain that loops", {{5, page(9, 0xA1)}, {9, page(5, 0xB2)}}, 5, 0},
        {"a page that cannot be read", {{5, page(7, 0xA1)}}, 5, 0},
        {"no first page", {}, 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.what);
        const PageReader reader = [&](std::uint32_t number, std::vector<unsigned char> &bytes) {
            const auto it = c.pages.find(number);
            if (it == c.pages.end())
                return false;
            bytes = it->second;
            return true;
        };
        const auto joined = gatherTableDefinition(c.first, kPageSize, reader);
        if (c.size == 0) {
            EXPECT_FALSE(joined);
            continue;
        }
        ASSERT_TRUE(joined);
        ASSERT_EQ(joined->size(), c.size);
        EXPECT_EQ((*joined)[4], c.pages.at(c.first)[4]); // the first page keeps its header
        if (c.pages.size() == 3) {
            EXPECT_EQ((*joined)[kPageSize], 0xB2);
            EXPECT_EQ(joined->back(), 0xC3);
        }
    }
}

} // namespace
} // namespace vellum
