#include "util/stringEncodings.h"

#include <gtest/gtest.h>

#include <set>

namespace vellum {
namespace {

TEST(StringEncodings, StableCodesNamesAndLookup)
{
    const std::tuple<const char *, std::uint64_t> lookups[] = {
        {"4", 4},
        {"UTF-8", 4},
        {"utf-8", 4},
        {"Unicode (UTF-8)", 4},
        {"1", 1},
        {"iso-8859-1", 5},
        {"10", 10},
        {"MACINTOSH", 30},
        {"Western (Mac OS Roman)", 30},
        {"CP1252", 12},
        {"2147485234", 0x80000632},
        {"KOI8-R", 0x80000A02},
    };
    for (const auto &[text, code] : lookups) {
        const StringEncoding *encoding = findStringEncoding(text);
        ASSERT_NE(encoding, nullptr) << text;
        EXPECT_EQ(encoding->code, code) << text;
    }
    for (const char *unknown : {"", "KLINGON", "7", "99999", "4x"})
        EXPECT_EQ(findStringEncoding(unknown), nullptr) << unknown;

    const auto &all = availableStringEncodings();
    std::set<std::uint64_t> codes;
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_TRUE(codes.insert(all[i].code).second) << "duplicate code " << all[i].code;
        if (i > 0) {
            EXPECT_LE(std::string(all[i - 1].displayName), std::string(all[i].displayName));
        }
    }
    EXPECT_GE(all.size(), 40u);
}

TEST(StringEncodings, EncoderSubstitutesPerCharacterAndKeepsNoState)
{
    struct Case {
        std::uint64_t code;
        std::string input;
        std::string expected;
        std::size_t substituted;
    };
    const Case cases[] = {
        {4,
         "a\xFF"
         "b",
         "a\xFF"
         "b",
         0}, // UTF-8 is written as it stands
        {5, "caf\xC3\xA9", "caf\xE9", 0},
        {5, "\xE2\x82\xAC 5", "? 5", 1},             // the euro sign is not in Latin 1
        {0x8000020F, "\xE2\x82\xAC 5", "\xA4 5", 0}, // but it is in Latin 9
        {5,
         "a\xFF"
         "b\xC3",
         "a?b?", 2},                       // bytes that are not UTF-8
        {5, "\xF0\x9F\x98\x80!", "?!", 1}, // one emoji, one "?"
        {1, "plain ascii", "plain ascii", 0},
        {0x90000100, "A\xC3\xA9", std::string("\0A\0\xE9", 4), 0},
        {21, "\xE6\x97\xA5x", "\x1B$BF|\x1B(Bx", 0}, // back to ASCII inside the piece
        {21, "", "", 0},
    };
    for (const Case &c : cases) {
        TextEncoder encoder;
        ASSERT_TRUE(encoder.open(c.code)) << c.code;
        std::string out;
        EXPECT_EQ(encoder.append(c.input, out), c.substituted) << c.code << " " << c.input;
        EXPECT_EQ(out, c.expected) << c.code << " " << c.input;
        // A second piece starts again from the initial state.
        std::string again;
        encoder.append(c.input, again);
        EXPECT_EQ(again, c.expected) << c.code;
    }
    TextEncoder unknown;
    EXPECT_FALSE(unknown.open(12345));
}

} // namespace
} // namespace vellum
