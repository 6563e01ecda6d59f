#include "util/finderCompare.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace vellum {
namespace {

int sign(int v)
{
    return (v > 0) - (v < 0);
}

int compareKeys(const std::string &a, const std::string &b)
{
    return sign(a.compare(b));
}

/// Random ASCII texts: letters of both cases, digit runs with leading zeros, punctuation,
/// spaces and controls (which the collation ignores), lengths 0 to 12.
std::string randomAscii(std::mt19937 &random)
{
    static const std::string alphabet =
        std::string("aAbBzZ0123456789000 \t-_,.;:!?'\"()[]{}@*/\\&#%`^+<=>|~$") + std::string("\x01\x07\x1f\x7f", 4);
    std::string text;
    const int length = static_cast<int>(random() % 13);
    for (int i = 0; i < length; ++i)
        text.push_back(alphabet[random() % alphabet.size()]);
    return text;
}

// The fast ASCII keys must order texts exactly as the collator does, equal keys meaning
// equivalent texts.
TEST(finderAsciiSortKey, OrdersLikeFinderCompare)
{
    std::mt19937 random(12345);
    std::string keyA, keyB;
    for (int i = 0; i < 200000; ++i) {
        const std::string a = randomAscii(random);
        const std::string b = (i % 4 == 0) ? a.substr(0, a.size() / 2) + randomAscii(random) : randomAscii(random);
        ASSERT_TRUE(finderAsciiSortKey(a, keyA));
        ASSERT_TRUE(finderAsciiSortKey(b, keyB));
        ASSERT_EQ(compareKeys(keyA, keyB), finderCompare(a, b)) << '"' << a << "\" vs \"" << b << '"';
    }
    const struct {
        const char *a;
        const char *b;
        int expected;
    } cases[] = {
        {"table1", "Table2", -1}, {"Table2", "table10", -1}, {"a", "A", -1},
        {"01", "1", 0},           {"2", "10", -1},           {"", "a", -1},
        {"x\x01y", "xy", 0},      {"aB", "Ab", -1},          {"9", "a", -1},
        {"$", "0", -1},           {"a b", "ab", -1},
    };
    for (const auto &c : cases) {
        ASSERT_TRUE(finderAsciiSortKey(c.a, keyA));
        ASSERT_TRUE(finderAsciiSortKey(c.b, keyB));
        EXPECT_EQ(compareKeys(keyA, keyB), c.expected) << c.a << " vs " << c.b;
        EXPECT_EQ(finderCompare(c.a, c.b), c.expected) << c.a << " vs " << c.b;
    }
    EXPECT_FALSE(finderAsciiSortKey("Größe", keyA));
}

// Key parts made one after another join to the key made at once.
TEST(finderSortKeyPart, PartsJoinToTheWholeKey)
{
    const std::string text = "Name november alpha 12345 and some more words to make it long";
    unsigned char whole[256];
    const std::size_t length = finderSortKeyPart(text, whole, sizeof whole);
    ASSERT_GT(length, 40u);
    ASSERT_LT(length, sizeof whole);
    std::uint32_t state[2] = {0, 0};
    std::string joined;
    unsigned char part[16];
    for (;;) {
        const std::size_t n = finderSortKeyNext(text, state, part, sizeof part);
        joined.append(reinterpret_cast<const char *>(part), n);
        if (n < sizeof part)
            break;
    }
    // Parts are comparable among themselves; their prefix agrees with the whole key's order.
    unsigned char prefix[16];
    ASSERT_EQ(finderSortKeyPart(text, prefix, sizeof prefix), sizeof prefix);
    EXPECT_EQ(joined.substr(0, sizeof prefix), std::string(reinterpret_cast<const char *>(prefix), sizeof prefix));
}

} // namespace
} // namespace vellum
