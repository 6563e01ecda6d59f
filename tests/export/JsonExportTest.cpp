#include "export/JsonExport.h"

#include "ExportTestTables.h"
#include "model/TOrbComplexValue.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace vellum {
namespace {

using test::makeTable;
using test::TestCell;

std::string writeToString(const TOrbMDBTable &table, JsonLayout layout, JsonTableResult *result = nullptr)
{
    StringSink sink;
    std::atomic<bool> stop{false};
    const JsonTableResult outcome = writeJsonTable(table, layout, sink, stop);
    if (result)
        *result = outcome;
    return sink.data();
}

/// The JSON value one cell of a one-column table of `type` becomes.
std::string valueOf(const std::string &type, TestCell cell)
{
    const auto table = makeTable("T", {{"v", type}}, {{cell}});
    const std::string out = writeToString(*table, JsonLayout::Lines);
    const std::string head = "{\"v\":";
    if (out.rfind(head, 0) != 0 || out.size() < head.size() + 2 || out.substr(out.size() - 2) != "}\n")
        return "unexpected row " + out;
    return out.substr(head.size(), out.size() - head.size() - 2);
}

TEST(JsonExport, WritesEachTypeInItsExactForm)
{
    struct Case {
        const char *type;
        TestCell cell;
        const char *expected;
    };
    const Case cases[] = {
        {"Boolean", "1", "true"},
        {"Boolean", "0", "false"},
        {"Byte", "255", "255"},
        {"Integer", "-32768", "-32768"},
        {"Long Integer", "2147483647", "2147483647"},
        {"Long Integer", std::nullopt, "null"},
        // 2^53 + 1 is no double: a string keeps it; 2^53 is one.
        {"Large Number", "9007199254740993", "\"9007199254740993\""},
        {"Large Number", "9007199254740992", "9007199254740992"},
        {"Large Number", "-9223372036854775807", "\"-9223372036854775807\""},
        {"Large Number", "-9223372036854775808", "-9223372036854775808"}, // -2^63 is a double
        {"Currency", "12.5000", "12.5000"},
        {"Currency", "-922337203685477.5808", "\"-922337203685477.5808\""},
        {"Numeric", "12345678901234567890.12345678", "\"12345678901234567890.12345678\""},
        {"Numeric", "0.1", "0.1"},
        // A text that is not in JSON's number grammar stays a string.
        {"Numeric", ".5", "\".5\""},
        {"Numeric", "+1", "\"+1\""},
        {"Single", "0.1", "0.1"},
        {"Double", "1e+21", "1e+21"},
        {"Double", "-1.5e-7", "-1.5e-7"},
        {"Double", "-0", "-0.0"}, // a parser reads "-0" as the integer 0
        {"Double", "NaN", "\"NaN\""},
        {"Double", "Infinity", "\"Infinity\""},
        {"Single", "-Infinity", "\"-Infinity\""},
        {"DateTime", "12/31/1999 23:59:58", "\"1999-12-31T23:59:58\""},
        {"DateTime", "01/02/0100 00:00:00", "\"0100-01-02T00:00:00\""},
        {"Date/Time Extended", "07/04/2021 12:34:56.1234567", "\"2021-07-04T12:34:56.1234567\""},
        {"DateTime", "not a date", "\"not a date\""},
        // Texts that only look like dates are not rewritten.
        {"DateTime", "13/01/2000 00:00:00", "\"13/01/2000 00:00:00\""},
        {"DateTime", "01/01/2000 24:00:00", "\"01/01/2000 24:00:00\""},
        {"Date/Time Extended", "01/01/2000 00:00:00.12345678", "\"01/01/2000 00:00:00.12345678\""},
        {"Date/Time Extended", "01/01/2000 00:00:00.", "\"01/01/2000 00:00:00.\""},
        {"Replication ID", "{6B29FC40-CA47-1067-B31D-00DD010662DA}", "\"{6B29FC40-CA47-1067-B31D-00DD010662DA}\""},
        {"Text", "Split Rail Beer & Ale \"<q>\"\\", "\"Split Rail Beer & Ale \\\"<q>\\\"\\\\\""},
        {"Memo/Hyperlink", "line\r\nnext\ttab\x01", "\"line\\r\\nnext\\ttab\\u0001\""},
        {"Text", "caf\xC3\xA9 \xF0\x9F\x8D\xBA", "\"caf\xC3\xA9 \xF0\x9F\x8D\xBA\""},
        {"Binary", "\x01\x02\x03\xff", "{\"base64\":\"AQID/w==\"}"},
        {"Unknown_0046", "ab", "{\"base64\":\"YWI=\"}"},
        // An OLE field: the decoded blob with its extension, or its stored bytes.
        {"OLE", TestCell::blob(), "{\"base64\":\"AQID\",\"extension\":\"bin\"}"},
        {"OLE", "raw", "{\"base64\":\"cmF3\"}"},
        {"OLE", std::nullopt, "null"},
        {"Complex Value auto number", "7", "7"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(valueOf(c.type, c.cell), c.expected) << c.type << " " << c.cell.text.value_or("(null)");
}

TEST(JsonExport, RecognizesJsonNumbers)
{
    const std::pair<const char *, bool> cases[] = {
        {"0", true},        {"-0", true},  {"12", true},   {"1.5", true},  {"1e+21", true}, {"2E-3", true},
        {"-0.25e10", true}, {"", false},   {"-", false},   {"01", false},  {".5", false},   {"5.", false},
        {"+1", false},      {"1e", false}, {"1e+", false}, {"NaN", false}, {"0x10", false}, {"1 ", false},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(isJsonNumberText(text), expected) << text;
}

TEST(JsonExport, LaysOutRowsAsAnArrayOrAsLines)
{
    const auto table = makeTable("T", {{"ID", "Long Integer"}, {"Na\"me \xC3\xA9", "Text"}, {"Paid", "Boolean"}},
                                 {{"1", "a", "1"}, {"2", std::nullopt, "0"}});
    EXPECT_EQ(writeToString(*table, JsonLayout::Array), "[\n{\"ID\":1,\"Na\\\"me \xC3\xA9\":\"a\",\"Paid\":true},\n"
                                                        "{\"ID\":2,\"Na\\\"me \xC3\xA9\":null,\"Paid\":false}\n]\n");
    EXPECT_EQ(writeToString(*table, JsonLayout::Lines), "{\"ID\":1,\"Na\\\"me \xC3\xA9\":\"a\",\"Paid\":true}\n"
                                                        "{\"ID\":2,\"Na\\\"me \xC3\xA9\":null,\"Paid\":false}\n");
    // The array parses back to the same values.
    const nlohmann::json parsed = nlohmann::json::parse(writeToString(*table, JsonLayout::Array));
    ASSERT_EQ(parsed.size(), 2u);
    EXPECT_EQ(parsed[0]["Na\"me \xC3\xA9"], "a");
    EXPECT_TRUE(parsed[1]["Na\"me \xC3\xA9"].is_null());

    // No rows: an empty array, or no lines at all.
    const auto empty = makeTable("E", {{"ID", "Long Integer"}}, {});
    JsonTableResult result = JsonTableResult::WriteFailed;
    EXPECT_EQ(writeToString(*empty, JsonLayout::Array, &result), "[]\n");
    EXPECT_EQ(result, JsonTableResult::Completed);
    EXPECT_EQ(writeToString(*empty, JsonLayout::Lines), "");
}

TEST(JsonExport, WritesComplexColumnsAsArrays)
{
    auto table = makeTable("T",
                           {{"Tags", "Complex Value auto number"},
                            {"Files", "Complex Value auto number"},
                            {"Notes", "Complex Value auto number"}},
                           {{"1", "2", "3"}, {"9", std::nullopt, "4"}});
    auto tags = std::make_unique<ComplexColumnValues>(ComplexKind::MultiValue);
    tags->valuesFor(1).addValue("red");
    tags->valuesFor(1).addValue("gr\"een");
    auto files = std::make_unique<ComplexColumnValues>(ComplexKind::Attachment);
    files->valuesFor(2).addAttachment("a.txt", "txt", {'h', 'i'});
    files->valuesFor(2).addAttachment("b.bin", "bin", {});
    auto notes = std::make_unique<ComplexColumnValues>(ComplexKind::VersionHistory);
    notes->valuesFor(3).addVersion("new", "02/03/2020 04:05:06");
    notes->valuesFor(3).addVersion("old", "01/01/2019 00:00:00");
    table->setComplexValues(0, std::move(tags));
    table->setComplexValues(1, std::move(files));
    table->setComplexValues(2, std::move(notes));
    // Row 2: an id without values, a field without an id, an id without versions.
    EXPECT_EQ(writeToString(*table, JsonLayout::Lines),
              "{\"Tags\":[\"red\",\"gr\\\"een\"],"
              "\"Files\":[{\"name\":\"a.txt\",\"type\":\"txt\",\"base64\":\"aGk=\"},"
              "{\"name\":\"b.bin\",\"type\":\"bin\",\"base64\":\"\"}],"
              "\"Notes\":[{\"value\":\"new\",\"date\":\"2020-02-03T04:05:06\"},"
              "{\"value\":\"old\",\"date\":\"2019-01-01T00:00:00\"}]}\n"
              "{\"Tags\":[],\"Files\":[],\"Notes\":[]}\n");
}

TEST(JsonExport, WritesMultiValueItemsInTheFormOfTheirType)
{
    struct Case {
        const char *valueType;
        std::vector<std::string> items;
        const char *expected;
    };
    const Case cases[] = {
        {"Long Integer", {"5", "-12", ""}, "[5,-12,null]"},
        {"DateTime", {"02/03/2020 04:05:06"}, "[\"2020-02-03T04:05:06\"]"},
        {"Boolean", {"1", "0"}, "[true,false]"},
        {"Double", {"0.5", "NaN"}, "[0.5,\"NaN\"]"},
        {"Text", {"5", ""}, "[\"5\",\"\"]"},
        {"", {"5"}, "[\"5\"]"}, // an unknown type: strings
    };
    for (const Case &c : cases) {
        auto table = makeTable("T", {{"Tags", "Complex Value auto number"}}, {{"1"}});
        auto values = std::make_unique<ComplexColumnValues>(ComplexKind::MultiValue);
        values->setValueType(c.valueType);
        for (const std::string &item : c.items)
            values->valuesFor(1).addValue(item);
        table->setComplexValues(0, std::move(values));
        EXPECT_EQ(writeToString(*table, JsonLayout::Lines), std::string("{\"Tags\":") + c.expected + "}\n")
            << c.valueType;
    }
}

/// A sink that refuses every write.
class FailingSink : public ExportSink {
public:
    bool write(std::string_view) override { return false; }
};

TEST(JsonExport, ReportsAStopAndAFailedWrite)
{
    const auto table = test::makeNumberTable("N", 10);
    StringSink sink;
    std::atomic<bool> stop{true};
    EXPECT_EQ(writeJsonTable(*table, JsonLayout::Array, sink, stop), JsonTableResult::Terminated);

    FailingSink failing;
    stop = false;
    EXPECT_EQ(writeJsonTable(*table, JsonLayout::Array, failing, stop), JsonTableResult::WriteFailed);

    // Progress comes for every row.
    std::size_t lastDone = 0;
    StringSink counted;
    EXPECT_EQ(writeJsonTable(*table, JsonLayout::Lines, counted, stop,
                             [&lastDone](std::size_t done, std::size_t count) {
                                 EXPECT_EQ(count, 10u);
                                 EXPECT_EQ(done, lastDone + 1);
                                 lastDone = done;
                             }),
              JsonTableResult::Completed);
    EXPECT_EQ(lastDone, 10u);
}

} // namespace
} // namespace vellum
