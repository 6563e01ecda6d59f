#include "export/TextFileExport.h"

#include "ExportTestTables.h"
#include "util/stringEncodings.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::makeTable;
using test::TestCell;

std::string writeToString(const TOrbMDBTable &table, const TextExportSettings &settings,
                          TextTableOutcome *outcome = nullptr)
{
    StringSink sink;
    std::atomic<bool> stop{false};
    const TextTableOutcome result = writeTextTable(table, settings, sink, stop);
    if (outcome)
        *outcome = result;
    return sink.data();
}

std::string fromHex(std::string_view hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(hex.substr(i, 2)), nullptr, 16));
    return bytes;
}

TextExportSettings settingsFor(ExportFileType kind, void (*adjust)(ExportOptions &) = nullptr)
{
    ExportOptions options = ExportOptions::defaultsFor(kind, true);
    if (adjust)
        adjust(options);
    return TextExportSettings::fromOptions(kind, options);
}

TEST(TextFileExport, ValueClassesByTypeName)
{
    const std::pair<const char *, TextValueClass> cases[] = {
        {"Text", TextValueClass::Quoted},          {"Memo/Hyperlink", TextValueClass::Quoted},
        {"DateTime", TextValueClass::Quoted},      {"Binary", TextValueClass::Quoted},
        {"Currency", TextValueClass::Decimal},     {"Single", TextValueClass::Decimal},
        {"Double", TextValueClass::Decimal},       {"Numeric", TextValueClass::Plain},
        {"Long Integer", TextValueClass::Plain},   {"Boolean", TextValueClass::Plain},
        {"Replication ID", TextValueClass::Plain}, {"OLE", TextValueClass::Plain},
        {"text", TextValueClass::Plain},
    };
    for (const auto &[type, expected] : cases)
        EXPECT_EQ(textValueClassForDataType(type), expected) << type;
}

TEST(TextFileExport, DelimitedTables)
{
    const auto table =
        makeTable("T", {{"Name", "Text"}, {"Amount", "Double"}, {"Count", "Long Integer"}, {"When", "DateTime"}},
                  {{"a\"b", "3.5", "7", "01/02/2003 04:05:06"},
                   {std::nullopt, "1.25", "8", std::nullopt},
                   {"x", std::nullopt, std::nullopt, "\"\""}});
    struct Case {
        const char *name;
        ExportFileType kind;
        void (*adjust)(ExportOptions &);
        const char *expected;
    };
    const Case cases[] = {
        {"csv defaults", ExportFileType::CSV, nullptr,
         "\"Name\",\"Amount\",\"Count\",\"When\"\n"
         "\"a\"\"b\",3.5,7,\"01/02/2003 04:05:06\"\n"
         ",1.25,8,\n"
         "\"x\",,,\"\"\"\"\"\"\n"},
        {"csv semicolon sets decimal comma", ExportFileType::CSV, [](ExportOptions &o) { o.changeFieldDelimiter(1); },
         "\"Name\";\"Amount\";\"Count\";\"When\"\n"
         "\"a\"\"b\";3,5;7;\"01/02/2003 04:05:06\"\n"
         ";1,25;8;\n"
         "\"x\";;;\"\"\"\"\"\"\n"},
        {"txt defaults: tab", ExportFileType::TXT, nullptr,
         "\"Name\"\t\"Amount\"\t\"Count\"\t\"When\"\n"
         "\"a\"\"b\"\t3.5\t7\t\"01/02/2003 04:05:06\"\n"
         "\t1.25\t8\t\n"
         "\"x\"\t\t\t\"\"\"\"\"\"\n"},
        {"txt space, CR, header off, long decimal symbol", ExportFileType::TXT,
         [](ExportOptions &o) {
             o.changeFieldDelimiter(3);
             o.recordDelimiterTag = 1;
             o.includeColumnHeader = false;
             o.decimalSymbol = "<dot>";
         },
         "\"a\"\"b\" 3<dot>5 7 \"01/02/2003 04:05:06\"\r"
         " 1<dot>25 8 \r"
         "\"x\"   \"\"\"\"\"\"\r"},
        {"csv CRLF, empty decimal symbol", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.recordDelimiterTag = 2;
             o.decimalSymbol = "";
         },
         "\"Name\",\"Amount\",\"Count\",\"When\"\r\n"
         "\"a\"\"b\",35,7,\"01/02/2003 04:05:06\"\r\n"
         ",125,8,\r\n"
         "\"x\",,,\"\"\"\"\"\"\r\n"},
        {"unknown delimiter tag means comma", ExportFileType::TXT,
         [](ExportOptions &o) {
             o.fieldDelimiterTag = 9;
             o.includeColumnHeader = false;
         },
         "\"a\"\"b\",3.5,7,\"01/02/2003 04:05:06\"\n,1.25,8,\n\"x\",,,\"\"\"\"\"\"\n"},
    };
    for (const Case &c : cases) {
        TextTableOutcome outcome;
        EXPECT_EQ(writeToString(*table, settingsFor(c.kind, c.adjust), &outcome), c.expected) << c.name;
        EXPECT_EQ(outcome.result, TextTableResult::Completed) << c.name;
    }
}

TEST(TextFileExport, HeaderNamesAreQuotedWhateverTheirType)
{
    const auto table = makeTable("Q", {{"Col\"Q", "Long Integer"}, {"O'Col", "Double"}}, {});
    EXPECT_EQ(writeToString(*table, settingsFor(ExportFileType::CSV)), "\"Col\"\"Q\",\"O'Col\"\n");
    auto noHeader = settingsFor(ExportFileType::CSV);
    noHeader.includeHeader = false;
    EXPECT_EQ(writeToString(*table, noHeader), "");
}

TEST(TextFileExport, XmlIsBareAndOneFieldPerLine)
{
    const auto table = makeTable("T", {{"Name", "Text"}, {"Price", "Currency"}, {"Pic", "OLE"}},
                                 {{"a\"b<&>", "2.5000", TestCell::blob()}, {std::nullopt, std::nullopt, "x"}});
    auto settings = settingsFor(ExportFileType::XML, [](ExportOptions &o) { o.changeFieldDelimiter(1); });
    EXPECT_TRUE(settings.xml);
    EXPECT_FALSE(settings.includeHeader);
    EXPECT_EQ(writeToString(*table, settings),
              "<?xml version=\"1.0\"?>\n<RECORDS>\n"
              "<RECORD>\n\t<Name>a\"b<&></Name>\n\t<Price>2,5000</Price>\n\t<Pic></Pic>\n</RECORD>\n"
              "<RECORD>\n\t<Name></Name>\n\t<Price></Price>\n\t<Pic>x</Pic>\n</RECORD>\n"
              "</RECORDS>\n");

    const auto empty = makeTable("E", {{"A", "Text"}}, {});
    settings.recordDelimiter = "\r\n";
    EXPECT_EQ(writeToString(*empty, settings), "<?xml version=\"1.0\"?>\r\n<RECORDS>\r\n</RECORDS>\r\n");
}

TEST(TextFileExport, BlobAndNullCellsWriteNothing)
{
    const auto table = makeTable("B", {{"A", "Long Integer"}, {"P", "OLE"}, {"C", "Text"}},
                                 {{"1", TestCell::blob(), "z"}, {std::nullopt, std::nullopt, std::nullopt}});
    auto settings = settingsFor(ExportFileType::CSV);
    settings.includeHeader = false;
    EXPECT_EQ(writeToString(*table, settings), "1,,\"z\"\n,,\n");
}

TEST(TextFileExport, EncodesEachPieceAndSubstitutesWhatTheEncodingLacks)
{
    const auto table = makeTable("E", {{"Größe", "Text"}, {"N", "Double"}}, {{"é日本", "1.5"}, {"ok", "2"}});
    struct Case {
        const char *name;
        std::uint64_t encoding;
        std::string expected;
        std::size_t substituted;
    };
    const Case cases[] = {
        {"UTF-8 as it stands", 4, "\"Größe\",\"N\"\n\"é日本\",1.5\n\"ok\",2\n", 0},
        {"Latin 1", 5,
         "\"Gr\xF6\xDF"
         "e\",\"N\"\n\"\xE9??\",1.5\n\"ok\",2\n",
         2},
        {"ASCII", 1, "\"Gr??e\",\"N\"\n\"???\",1.5\n\"ok\",2\n", 5},
        {"UTF-16 without byte-order mark", 10,
         fromHex("220047007200f600df00650022002c0022004e0022000a002200e900e5652c6722002c0031002e0035000a0022006f006b"
                 "0022002c0032000a00"),
         0},
        {"ISO-2022-JP returns to ASCII after each piece", 21, "\"Gr??e\",\"N\"\n\"?\x1B$BF|K\\\x1B(B\",1.5\n\"ok\",2\n",
         3},
    };
    for (const Case &c : cases) {
        auto settings = settingsFor(ExportFileType::CSV);
        settings.encoding = c.encoding;
        TextTableOutcome outcome;
        EXPECT_EQ(writeToString(*table, settings, &outcome), c.expected) << c.name;
        EXPECT_EQ(outcome.substitutedCharacters, c.substituted) << c.name;
    }
}

TEST(TextFileExport, StopsBetweenRowsAndClosesTheDocument)
{
    const auto table = test::makeNumberTable("N", 10);
    auto settings = settingsFor(ExportFileType::XML);
    StringSink sink;
    std::atomic<bool> stop{false};
    std::size_t progressCalls = 0;
    const TextTableOutcome outcome =
        writeTextTable(*table, settings, sink, stop, [&](std::size_t done, std::size_t count) {
            ++progressCalls;
            EXPECT_EQ(count, 10u);
            if (done == 2)
                stop = true;
        });
    EXPECT_EQ(outcome.result, TextTableResult::Terminated);
    EXPECT_EQ(progressCalls, 2u);
    EXPECT_EQ(sink.data(), "<?xml version=\"1.0\"?>\n<RECORDS>\n"
                           "<RECORD>\n\t<n>1</n>\n</RECORD>\n<RECORD>\n\t<n>2</n>\n</RECORD>\n</RECORDS>\n");
}

TEST(TextFileExport, ReportsAFailedWrite)
{
    class FailingSink : public ExportSink {
    public:
        bool write(std::string_view) override { return false; }
    } sink;
    const auto table = test::makeNumberTable("N", 3);
    std::atomic<bool> stop{false};
    EXPECT_EQ(writeTextTable(*table, settingsFor(ExportFileType::CSV), sink, stop).result,
              TextTableResult::WriteFailed);
    auto settings = settingsFor(ExportFileType::CSV);
    settings.encoding = 123456;
    StringSink memory;
    EXPECT_EQ(writeTextTable(*table, settings, memory, stop).result, TextTableResult::EncodingUnavailable);
}

TEST(TextFileExport, QuotingHelpers)
{
    const std::tuple<const char *, const char *, const char *> quoteCases[] = {
        {"", "\"", "\"\""},
        {"\"", "\"", "\"\"\"\""},
        {"a\"b", "\"", "\"a\"\"b\""},
        {"a\"b", "", "a\"b"},
        {"no quotes", "\"", "\"no quotes\""},
    };
    for (const auto &[text, quote, expected] : quoteCases) {
        std::string out;
        appendQuotedText(out, text, quote);
        EXPECT_EQ(out, expected) << text;
    }
    std::string out;
    appendWithDecimalSymbol(out, "1.2.3", ",");
    EXPECT_EQ(out, "1,2,3");
}

} // namespace
} // namespace vellum
