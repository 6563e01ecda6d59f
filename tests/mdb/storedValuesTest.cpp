#include "mdb/storedValues.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <vector>

using namespace vellum;

namespace {

template <typename T> std::vector<unsigned char> bytesOf(T value)
{
    std::vector<unsigned char> bytes(sizeof value);
    std::memcpy(bytes.data(), &value, sizeof value);
    return bytes;
}

std::vector<unsigned char> ascii(const char *text)
{
    return std::vector<unsigned char>(text, text + std::strlen(text));
}

constexpr double kSecond = 1.0 / 86400;

} // namespace

TEST(StoredValues, DateTimeCoversEveryAccessDateAndRoundsWithCarry)
{
    struct Case {
        double serial;
        const char *expected; // nullptr: not a date Access can store
    };
    const Case cases[] = {
        {0.0, "12/30/1899 00:00:00"},
        {-1.25, "12/29/1899 06:00:00"}, // the sign applies to the day only
        {-0.5, "12/30/1899 12:00:00"},
        {2.5, "01/01/1900 12:00:00"},
        {-657434.0, "01/01/0100 00:00:00"},
        {-657434.0 - kSecond, "01/01/0100 00:00:01"}, // still day -657434, one second in
        {-657435.0, nullptr},                         // 99-12-31
        {2958465.0 + 86399 * kSecond, "12/31/9999 23:59:59"},
        {2958466.0, nullptr},                             // 10000-01-01
        {1.0 + 86399.6 * kSecond, "01/01/1900 00:00:00"}, // 23:59:59.6 carries into the next day
        {1.0 + 86399.4 * kSecond, "12/31/1899 23:59:59"},
        {-1.0 - 86399.7 * kSecond, "12/30/1899 00:00:00"}, // carry forward from 12/29/1899
        {44197.0 + 0.5 * kSecond + 1e-9, "01/01/2021 00:00:01"},
        {std::numeric_limits<double>::quiet_NaN(), nullptr},
        {std::numeric_limits<double>::infinity(), nullptr},
        {1e300, nullptr},
    };
    for (const Case &c : cases) {
        const auto text = decodeDateTime(bytesOf(c.serial));
        if (c.expected)
            EXPECT_EQ(text.value_or("<none>"), c.expected) << c.serial;
        else
            EXPECT_FALSE(text.has_value()) << c.serial << " gave " << *text;
    }
    EXPECT_FALSE(decodeDateTime(std::vector<unsigned char>(7, 0)).has_value());
}

TEST(StoredValues, ReplicationIdReadsItsFirstThreeGroupsLittleEndian)
{
    std::vector<unsigned char> bytes(16);
    for (unsigned i = 0; i < 16; ++i)
        bytes[i] = static_cast<unsigned char>(i == 15 ? 0xAB : i);
    EXPECT_EQ(decodeReplicationId(bytes).value_or(""), "{03020100-0504-0706-0809-0A0B0C0D0EAB}");
    bytes.pop_back();
    EXPECT_FALSE(decodeReplicationId(bytes).has_value());
}

TEST(StoredValues, FloatingPointIsTheShortestTextThatReadsBackTheSameBits)
{
    const std::pair<double, const char *> doubles[] = {
        {3.14, "3.14"},
        {100.79636678523795, "100.79636678523795"},
        {444.555, "444.555"},
        {100.0, "100"},
        {0.1, "0.1"},
        {1.5e-6, "0.0000015"},
        {1e-7, "1e-7"},
        {1.27413e-10, "1.27413e-10"},
        {1e21, "1e+21"},
        {1.2345678901234568e20, "123456789012345680000"},
        {-2.5, "-2.5"},
        {-0.0, "-0"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308"},
        {std::numeric_limits<double>::denorm_min(), "5e-324"},
        {std::numeric_limits<double>::infinity(), "Infinity"},
    };
    for (const auto &[value, text] : doubles)
        EXPECT_EQ(decodeDouble(bytesOf(value)).value_or(""), text);
    const std::pair<float, const char *> singles[] = {
        {3.14f, "3.14"},
        {0.15f, "0.15"},
        {1e30f, "1e+30"},
        {-16777216.0f, "-16777216"},
        {std::numeric_limits<float>::max(), "3.4028235e+38"},
    };
    for (const auto &[value, text] : singles)
        EXPECT_EQ(decodeSingle(bytesOf(value)).value_or(""), text);
    EXPECT_FALSE(decodeSingle(bytesOf(1.0)).has_value());
}

TEST(StoredValues, ExactDecimalsKeepTheirScale)
{
    EXPECT_EQ(decodeCurrency(bytesOf<std::int64_t>(35000)).value_or(""), "3.5000");
    EXPECT_EQ(decodeCurrency(bytesOf<std::int64_t>(-100)).value_or(""), "-0.0100");
    EXPECT_EQ(decodeCurrency(bytesOf<std::int64_t>(0)).value_or(""), "0.0000");
    EXPECT_EQ(decodeCurrency(bytesOf(std::numeric_limits<std::int64_t>::min())).value_or(""), "-922337203685477.5808");

    // 123456789012345678 = 0x01B69B4BA630F34E: words (most significant first) 0, 0, 0x01B69B4B,
    // 0xA630F34E, each stored little-endian.
    std::vector<unsigned char> numeric = {0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0x4B, 0x9B, 0xB6, 0x01, 0x4E, 0xF3, 0x30, 0xA6};
    EXPECT_EQ(decodeNumeric(numeric, 4).value_or(""), "-12345678901234.5678");
    EXPECT_EQ(decodeNumeric(numeric, 0).value_or(""), "-123456789012345678");
    numeric[0] = 0;
    EXPECT_EQ(decodeNumeric(numeric, 20).value_or(""), "0.00123456789012345678");
    std::vector<unsigned char> zero(17, 0);
    zero[0] = 1;
    EXPECT_EQ(decodeNumeric(zero, 2).value_or(""), "0.00");
    std::vector<unsigned char> top(17, 0xFF);
    top[0] = 0;
    EXPECT_EQ(decodeNumeric(top, 0).value_or(""), "340282366920938463463374607431768211455");
    EXPECT_FALSE(decodeNumeric(std::vector<unsigned char>(13, 0), 0).has_value());
}

TEST(StoredValues, IntegersByWidth)
{
    EXPECT_EQ(decodeInteger(bytesOf<std::uint8_t>(255), 1).value_or(""), "255");
    EXPECT_EQ(decodeInteger(bytesOf<std::int16_t>(-32768), 2).value_or(""), "-32768");
    EXPECT_EQ(decodeInteger(bytesOf<std::int32_t>(-2147483647 - 1), 4).value_or(""), "-2147483648");
    EXPECT_EQ(decodeInteger(bytesOf(std::numeric_limits<std::int64_t>::max()), 8).value_or(""), "9223372036854775807");
    EXPECT_EQ(decodeInteger(bytesOf(std::numeric_limits<std::int64_t>::min()), 8).value_or(""), "-9223372036854775808");
    EXPECT_EQ(decodeInteger(bytesOf<std::int64_t>(9007199254740993), 8).value_or(""), "9007199254740993");
    EXPECT_FALSE(decodeInteger(bytesOf<std::int32_t>(1), 8).has_value());
}

TEST(StoredValues, ExtendedDateTimeKeepsSevenFractionalDigits)
{
    const std::pair<const char *, const char *> cases[] = {
        {"0000000000000000000:0000000000000000000:7\0", "01/01/0001 00:00:00"},
        {"0000000000000733834:0000000471001234567:7\0", "03/04/2010 13:05:00.1234567"},
        {"0000000000003652058:0000000863999999999:7\0", "12/31/9999 23:59:59.9999999"},
        {"0000000000000733834:0000000470000000000:7\0", "03/04/2010 13:03:20"},
    };
    for (const auto &[stored, text] : cases)
        EXPECT_EQ(decodeExtendedDateTime(ascii(stored)).value_or("<none>"), text) << stored;
    const char *bad[] = {
        "",
        "0000000000000733834:00000004710012345",     // truncated
        "0000000000000733834-0000000471001234567:7", // no separator
        "00000000000007338x4:0000000471001234567:7", // not a digit
        "0000000000000733834:0000000864000000000:7", // 24:00:00
        "0000000000003652059:0000000000000000000:7", // year 10000
    };
    for (const char *stored : bad)
        EXPECT_FALSE(decodeExtendedDateTime(ascii(stored)).has_value()) << stored;
}

TEST(StoredValues, CalculatedValueSitsBehindItsWrapper)
{
    std::vector<unsigned char> field(20, 0);
    field[16] = 8;
    const auto value = bytesOf(2.5);
    field.insert(field.end(), value.begin(), value.end());
    const auto inner = unwrapCalculatedValue(field);
    ASSERT_TRUE(inner.has_value());
    EXPECT_EQ(decodeDouble(*inner).value_or(""), "2.5");
    field.pop_back(); // shorter than its own length
    EXPECT_FALSE(unwrapCalculatedValue(field).has_value());
    EXPECT_FALSE(unwrapCalculatedValue(std::vector<unsigned char>(19, 0)).has_value());
}

TEST(StoredValues, CalculatedNumericCarriesItsOwnScale)
{
    // 192307692307692 at scale 10: a 4-byte group of 0, then one 8-byte group.
    const std::vector<unsigned char> weekly = {0x0e, 0x00, 0x0a, 0x00, 0x00, 0x00, 0x00, 0x00,
                                               0xec, 0x04, 0xb0, 0x1f, 0xe7, 0xae, 0x00, 0x00};
    EXPECT_EQ(decodeCalculatedNumeric(weekly).value_or(""), "19230.7692307692");
    std::vector<unsigned char> negative = weekly;
    negative[3] = 0x80;
    EXPECT_EQ(decodeCalculatedNumeric(negative).value_or(""), "-19230.7692307692");
    // The leading group is the most significant: 1 << 64 at scale 0.
    const std::vector<unsigned char> big = {0x0e, 0x00, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00,
                                            0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    EXPECT_EQ(decodeCalculatedNumeric(big).value_or(""), "18446744073709551616");
    EXPECT_FALSE(decodeCalculatedNumeric(std::vector<unsigned char>(weekly.begin(), weekly.begin() + 10)).has_value());
}

TEST(StoredValues, UnicodeTextPlainAndCompressed)
{
    // "Aé€😀" in UTF-16LE: 41 00, E9 00, AC 20, 3D D8 00 DE.
    const std::vector<unsigned char> plain = {0x41, 0x00, 0xE9, 0x00, 0xAC, 0x20, 0x3D, 0xD8, 0x00, 0xDE};
    EXPECT_EQ(decodeUnicodeText(plain), "A\u00e9\u20ac\U0001F600");
    // Compressed: "Ab" as one-byte characters, 00 switches to UTF-16 for "€", 00 back for "c".
    const std::vector<unsigned char> compressed = {0xFF, 0xFE, 'A', 'b', 0x00, 0xAC, 0x20, 0x00, 'c'};
    EXPECT_EQ(decodeUnicodeText(compressed), "Ab\u20acc");
    // A lone high surrogate, a lone low surrogate, and an odd last byte.
    const std::vector<unsigned char> broken = {0x3D, 0xD8, 0x41, 0x00, 0x00, 0xDE, 0x42};
    EXPECT_EQ(decodeUnicodeText(broken), "\uFFFDA\uFFFD");
    EXPECT_EQ(decodeUnicodeText(std::vector<unsigned char>{}), "");
}
