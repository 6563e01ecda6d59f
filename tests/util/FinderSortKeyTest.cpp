#include "util/finderCompare.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

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

/// The whole collator key of a text, as bytes.
std::string collatorKey(const std::string &text)
{
    unsigned char key[512];
    const std::size_t length = finderSortKeyPart(text, key, sizeof key);
    EXPECT_LT(length, sizeof key);
    return std::string(reinterpret_cast<const char *>(key), length);
}

/// Random texts that mix ASCII with the full-width and half-width forms of the same letters,
/// digits and punctuation, kana in both widths and the ideographic space.
std::string randomMixedWidth(std::mt19937 &random)
{
    static const std::vector<std::string> pieces = {
        "a",  "A",  "b",  "B",  "z",  "1",  "2",  "0", "9",  " ", "-",  "(", "ａ", "Ａ", "ｂ", "Ｂ", "ｚ",
        "１", "２", "０", "９", "　", "－", "（", "ｶ", "カ", "ﾞ", "ガ", "ｰ", "ー", "é",  "É",  "ß",  "￥"};
    std::string text;
    const int length = static_cast<int>(random() % 9);
    for (int i = 0; i < length; ++i)
        text += pieces[random() % pieces.size()];
    return text;
}

// Width does not count: full-width and half-width forms compare as their usual forms, numbers
// still as numbers and case still as the last tie-break; the collator's keys order the same way.
TEST(finderCompare, IgnoresWidthButNotNumbersOrCase)
{
    const struct {
        const char *a;
        const char *b;
        int expected;
    } cases[] = {
        {"ＡＢＣ", "ABC", 0},
        {"ABC", "ＡＢＣ", 0},
        {"ａｂｃ", "ABC", -1},
        {"ＡＢＣ", "abd", -1},
        {"Ｂ", "a", 1},
        {"ＡＢＣ２", "ABC10", -1},
        {"ｔａｂｌｅ１０", "table2", 1},
        {"table１", "Table2", -1},
        {"ｔａｂｌｅ1", "table1", 0},
        {"ｶﾀｶﾅ", "カタカナ", 0},
        {"ｶﾞ", "ガ", 0},
        {"a　b", "a b", 0},
        {"（x）", "(x)", 0},
        {"￥", "¥", 0},
        {"Ａ10", "A9", 1},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(finderCompare(c.a, c.b), c.expected) << c.a << " vs " << c.b;
        EXPECT_EQ(compareKeys(collatorKey(c.a), collatorKey(c.b)), c.expected) << c.a << " vs " << c.b;
    }
    std::mt19937 random(777);
    for (int i = 0; i < 50000; ++i) {
        const std::string a = randomMixedWidth(random);
        const std::string b = randomMixedWidth(random);
        ASSERT_EQ(compareKeys(collatorKey(a), collatorKey(b)), finderCompare(a, b))
            << '"' << a << "\" vs \"" << b << '"';
    }
}

// Key parts made one after another join to the key made at once.
TEST(finderSortKeyPart, PartsJoinToTheWholeKey)
{
    for (const std::string text : {"Name november alpha 12345 and some more words to make it long",
                                   "Ｎａｍｅ november ａｌｐｈａ １２３４５ and ｶﾀｶﾅ words to make it long"}) {
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
        EXPECT_EQ(joined, std::string(reinterpret_cast<const char *>(whole), length));
    }
}

} // namespace
} // namespace vellum
