#include "export/losslessValues.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(LosslessValues, DatesBecomeIsoAndAnythingElseIsRefused)
{
    EXPECT_EQ(isoDateTime("12/31/1899 23:59:59").value_or("none"), "1899-12-31T23:59:59");
    EXPECT_EQ(isoDateTime("01/02/0100 00:00:00", ' ').value_or("none"), "0100-01-02 00:00:00");
    EXPECT_EQ(isoDateTime("06/15/2021 12:30:45.1234567").value_or("none"), "2021-06-15T12:30:45.1234567");
    const auto parts = parseCellDateTime("06/15/2021 12:30:45.12");
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->year, 2021);
    EXPECT_EQ(parts->month, 6);
    EXPECT_EQ(parts->day, 15);
    EXPECT_EQ(parts->second, 45);
    EXPECT_EQ(parts->fraction, "12");
    for (const char *bad :
         {"", "2021-06-15 12:30:45", "13/01/2000 00:00:00", "06/15/2021 24:00:00", "06/15/2021 12:30:45.",
          "06/15/2021 12:30:45.12345678", "06/15/2021T12:30:45", "0a/15/2021 12:30:45"})
        EXPECT_FALSE(isoDateTime(bad)) << bad;
}

TEST(LosslessValues, BytesAsBase64AndHex)
{
    const struct {
        const char *bytes;
        const char *base64;
    } cases[] = {{"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}};
    for (const auto &c : cases)
        EXPECT_EQ(base64Encode(c.bytes, std::char_traits<char>::length(c.bytes)), c.base64) << c.bytes;
    const unsigned char high[] = {0xff, 0x00, 0xfb};
    EXPECT_EQ(base64Encode(high, sizeof high), "/wD7");
    EXPECT_EQ(lowerHexText(high, sizeof high), "ff00fb");
}

TEST(LosslessValues, DecimalsThatADoubleHolds)
{
    for (const char *exact : {"0", "-12.5", "922337203685477.6", "0.1", "1e+21", "1.7976931348623157e+308",
                              "123456789012345", "100.0000000000000000"})
        EXPECT_TRUE(decimalFitsDouble(exact)) << exact;
    // 16 and more significant digits that are not a double's shortest text.
    for (const char *inexact : {"9223372036854775807", "922337203685477.5807", "1234567890123456.7",
                                "0.12345678901234567", "", "-", "1.2.3", "12a", "1e"})
        EXPECT_FALSE(decimalFitsDouble(inexact)) << inexact;
}

} // namespace
} // namespace vellum
