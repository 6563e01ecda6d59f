#include "util/dates.h"
#include "util/fileSize.h"
#include "util/finderCompare.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace vellum {
namespace {

TEST(finderCompare, NaturalOrderWithCaseAsTieBreak)
{
    std::vector<std::string> names = {"table10", "Table2", "table1", "Ünïcode 表", "apple", "Apple", "b"};
    std::sort(names.begin(), names.end(), [](const auto &a, const auto &b) { return finderCompare(a, b) < 0; });
    EXPECT_EQ(names, (std::vector<std::string>{"apple", "Apple", "b", "table1", "Table2", "table10", "Ünïcode 表"}));
    EXPECT_EQ(finderCompare("file2", "file10"), -1);
    EXPECT_EQ(finderCompare("x", "x"), 0);
    EXPECT_EQ(finderCompare("b", "a"), 1);
    // Precomposed and decomposed forms are the same name.
    EXPECT_EQ(finderCompare("\xC3\xA9", "e\xCC\x81"), 0);
}

TEST(formatComputerFileSize, RoundsKilobytesUp)
{
    const std::pair<std::uint64_t, const char *> cases[] = {
        {0, "0 KB"},
        {1, "1 KB"},
        {1024, "1 KB"},
        {1025, "2 KB"},
        {1023 * 1024, "1023 KB"},
        {1023 * 1024 + 1, "1.0 MB"},
        {1048577, "1.0 MB"},
        {5 * 1048576ull, "5.0 MB"},
        {1024ull * 1024 * 1024 * 3, "3.0 GB"},
    };
    for (const auto &[bytes, text] : cases)
        EXPECT_EQ(formatComputerFileSize(bytes), text) << bytes;
}

TEST(dateWithFinderFormat, DaysRoundToTheNearestWhole)
{
    setenv("TZ", "UTC", 1);
    tzset();
    const TimePoint reference = 1336057620; // 2012-05-03 15:07 UTC
    EXPECT_EQ(dateWithFinderFormat(reference, reference), "Today 3:07 PM");
    EXPECT_EQ(dateWithFinderFormat(reference - 86400, reference), "Yesterday 3:07 PM");
    EXPECT_EQ(dateWithFinderFormat(reference - 3 * 86400, reference), "30/4/2012 3:07 PM");
    EXPECT_EQ(dateWithFinderFormat(reference + 5 * 86400, reference), "8/5/2012 3:07 PM");
    EXPECT_EQ(dateWithFinderFormat(std::nullopt, reference), "");
    // 1 day 23 hours apart: the day boundary lies at noon UTC, so the same distance is
    // "Yesterday" from 11:00 and a full date from 15:07.
    const TimePoint elevenAm = 1336042800; // 2012-05-03 11:00 UTC
    EXPECT_EQ(dateWithFinderFormat(elevenAm - 47 * 3600, elevenAm), "Yesterday 12:00 PM");
    EXPECT_EQ(dateWithFinderFormat(reference - 47 * 3600, reference), "1/5/2012 4:07 PM");
    // Midnight and noon in 12-hour form.
    EXPECT_EQ(dateWithFinderFormat(1336003200, 1336003200), "Today 12:00 AM");
    EXPECT_EQ(dateWithFinderFormat(1336046400, 1336046400 + 3 * 86400), "3/5/2012 12:00 PM");
}

TEST(Json, StringsAreEscapedAndInvalidUtf8Replaced)
{
    std::string out;
    const char input[] = "a\"b\\c\n\t\x01 \xC3\xA9 \xF0\x9F\x98\x80 \xFF";
    appendJsonString(out, std::string(input, sizeof input - 1));
    EXPECT_EQ(out, "\"a\\\"b\\\\c\\n\\t\\u0001 \xC3\xA9 \xF0\x9F\x98\x80 \xEF\xBF\xBD\"");
    EXPECT_EQ(sha256Hex("abc", 3), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");

    // Long plain runs are copied in blocks: a character that needs care is found at every
    // position of a run, and the bytes at the edges of the plain range stay as they are.
    const std::pair<std::string, std::string> specials[] = {
        {"\"", "\\\""},
        {"\\", "\\\\"},
        {"\n", "\\n"},
        {"\x1f", "\\u001f"},
        {std::string(1, '\0'), "\\u0000"},
        {"\xC3\xA9", "\xC3\xA9"},
        {"\xFF", "\xEF\xBF\xBD"},
        {" ", " "},
        {"\x7f", "\x7f"},
    };
    for (const auto &[special, escaped] : specials) {
        for (std::size_t at = 0; at < 20; ++at) {
            out.clear();
            appendJsonString(out, std::string(at, 'x') + special + std::string(19 - at, '~'));
            EXPECT_EQ(out, "\"" + std::string(at, 'x') + escaped + std::string(19 - at, '~') + "\"")
                << escaped << " at " << at;
        }
    }
}

} // namespace
} // namespace vellum
