#include "export/TextFileExport.h"

#include "ExportTestTables.h"
#include "support/complexTables.h"
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

/// A table with a value of every simple type in row 1 and NULLs (and a false) in row 2.
std::unique_ptr<TOrbMDBTable> everyTypeTable()
{
    return makeTable("T",
                     {{"Name", "Text"},
                      {"Flag", "Boolean"},
                      {"N", "Long Integer"},
                      {"Amount", "Currency"},
                      {"D", "Double"},
                      {"When", "DateTime"},
                      {"Ext", "Date/Time Extended"},
                      {"G", "Replication ID"},
                      {"Bin", "Binary"},
                      {"Pic", "OLE"}},
                     {{"a\"b,c", "1", "7", "12.3400", "0.1", "01/02/2003 04:05:06", "12/31/1999 23:59:59.1234567",
                       "{01234567-89AB-CDEF-0123-456789ABCDEF}", "\x01\xFF", TestCell::blob()},
                      {std::nullopt, "0", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
                       std::nullopt, std::nullopt, std::nullopt}});
}

TEST(TextFileExport, LosslessDelimitedText)
{
    const auto table = everyTypeTable();
    const std::string header = "\"Name\",\"Flag\",\"N\",\"Amount\",\"D\",\"When\",\"Ext\",\"G\",\"Bin\",\"Pic\"\n";
    struct Case {
        const char *name;
        ExportFileType kind;
        void (*adjust)(ExportOptions &);
        std::string expected;
    };
    const Case cases[] = {
        {"csv defaults", ExportFileType::CSV, nullptr,
         header + "\"a\"\"b,c\",true,7,12.3400,0.1,\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
                  "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"Af8=\",\"AQID\"\n"
                  ",false,,,,,,,,\n"},
        {"NULL marker: unquoted, and a value equal to it quoted", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.nullMarker = "7";
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\",true,\"7\",12.3400,0.1,\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"Af8=\",\"AQID\"\n"
         "7,false,7,7,7,7,7,7,7,7\n"},
        {"quote all: every value, NULL stays unquoted", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.quoteAllFields = true;
             o.nullMarker = "\\N";
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\",\"true\",\"7\",\"12.3400\",\"0.1\",\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"Af8=\",\"AQID\"\n"
         "\\N,\"false\",\\N,\\N,\\N,\\N,\\N,\\N,\\N,\\N\n"},
        {"hex bytes", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.binaryEncodingTag = kBinaryEncodingHex;
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\",true,7,12.3400,0.1,\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"01ff\",\"010203\"\n"
         ",false,,,,,,,,\n"},
        {"semicolon and decimal comma", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.changeFieldDelimiter(kFieldDelimiterSemicolon);
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\";true;7;12,3400;0,1;\"2003-01-02T04:05:06\";\"1999-12-31T23:59:59.1234567\";"
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\";\"Af8=\";\"AQID\"\n"
         ";false;;;;;;;;\n"},
        {"decimal comma with comma delimiter quotes the numbers", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.decimalSymbol = ",";
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\",true,7,\"12,3400\",\"0,1\",\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"Af8=\",\"AQID\"\n"
         ",false,,,,,,,,\n"},
        {"an empty decimal symbol keeps the point", ExportFileType::CSV,
         [](ExportOptions &o) {
             o.decimalSymbol = "";
             o.includeColumnHeader = false;
         },
         "\"a\"\"b,c\",true,7,12.3400,0.1,\"2003-01-02T04:05:06\",\"1999-12-31T23:59:59.1234567\","
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\",\"Af8=\",\"AQID\"\n"
         ",false,,,,,,,,\n"},
        {"txt with byte-order mark", ExportFileType::TXT,
         [](ExportOptions &o) {
             o.byteOrderMark = true;
             o.includeColumnHeader = false;
         },
         "\xEF\xBB\xBF\"a\"\"b,c\"\ttrue\t7\t12.3400\t0.1\t\"2003-01-02T04:05:06\"\t\"1999-12-31T23:59:59.1234567\"\t"
         "\"{01234567-89AB-CDEF-0123-456789ABCDEF}\"\t\"Af8=\"\t\"AQID\"\n"
         "\tfalse\t\t\t\t\t\t\t\t\n"},
    };
    for (const Case &c : cases) {
        TextTableOutcome outcome;
        auto settings = settingsFor(c.kind, [](ExportOptions &o) { o.lossless = true; });
        if (c.adjust) {
            ExportOptions options = ExportOptions::defaultsFor(c.kind, true);
            options.lossless = true;
            c.adjust(options);
            settings = TextExportSettings::fromOptions(c.kind, options);
        }
        EXPECT_EQ(writeToString(*table, settings, &outcome), c.expected) << c.name;
        EXPECT_EQ(outcome.result, TextTableResult::Completed) << c.name;
        EXPECT_EQ(outcome.substitutedFields, 0u) << c.name;
    }
}

TEST(TextFileExport, NullMarkerBomAndQuoteAllInClassicOutput)
{
    const auto table =
        makeTable("T", {{"Name", "Text"}, {"N", "Long Integer"}, {"D", "Double"}, {"P", "OLE"}},
                  {{"x", "7", "1.5", TestCell::blob()}, {std::nullopt, std::nullopt, std::nullopt, std::nullopt}});
    struct Case {
        const char *name;
        void (*adjust)(ExportOptions &);
        const char *expected;
    };
    const Case cases[] = {
        {"marker", [](ExportOptions &o) { o.nullMarker = "NULL"; }, "\"x\",7,1.5,\nNULL,NULL,NULL,NULL\n"},
        {"quote all, decimal comma",
         [](ExportOptions &o) {
             o.quoteAllFields = true;
             o.decimalSymbol = ",";
         },
         "\"x\",\"7\",\"1,5\",\n,,,\n"},
        {"byte-order mark", [](ExportOptions &o) { o.byteOrderMark = true; }, "\xEF\xBB\xBF\"x\",7,1.5,\n,,,\n"},
        {"no byte-order mark outside UTF-8",
         [](ExportOptions &o) {
             o.byteOrderMark = true;
             o.encoding = 5;
         },
         "\"x\",7,1.5,\n,,,\n"},
    };
    for (const Case &c : cases) {
        ExportOptions options = ExportOptions::defaultsFor(ExportFileType::CSV, true);
        options.includeColumnHeader = false;
        c.adjust(options);
        EXPECT_EQ(writeToString(*table, TextExportSettings::fromOptions(ExportFileType::CSV, options)), c.expected)
            << c.name;
    }
}

TEST(TextFileExport, LosslessComplexColumns)
{
    const auto table = test::complexItemsTable();
    auto csv = settingsFor(ExportFileType::CSV, [](ExportOptions &o) { o.lossless = true; });
    EXPECT_EQ(
        writeToString(*table, csv),
        "\"ID\",\"Tags\",\"Files\",\"Notes\"\n"
        "1,\"[\"\"red\"\",\"\"green; blue\"\"]\","
        "\"[{\"\"name\"\":\"\"notes.txt\"\",\"\"type\"\":\"\"txt\"\",\"\"base64\"\":\"\"aGkK\"\"},"
        "{\"\"name\"\":\"\"setup.sh\"\",\"\"type\"\":\"\"sh\"\",\"\"base64\"\":\"\"IyEvYmluL3M=\"\"}]\","
        "\"[{\"\"value\"\":\"\"third\"\",\"\"date\"\":\"\"2021-03-04T10:00:00\"\"},"
        "{\"\"value\"\":\"\"second\\nline\"\",\"\"date\"\":\"\"2021-03-03T09:30:15\"\"},"
        "{\"\"value\"\":\"\"first\"\",\"\"date\"\":\"\"2021-03-01T08:00:00\"\"}]\"\n"
        "2,\"[]\",\"[]\",\"[]\"\n"
        "3,\"[\"\"\xC3\xA9t\xC3\xA9\"\"]\",\"[{\"\"name\"\":\"\"empty.bin\"\",\"\"type\"\":\"\"bin\"\",\"\"base64\"\":"
        "\"\"\"\"}]\",\"[{\"\"value\"\":\"\"only\"\",\"\"date\"\":\"\"1999-12-31T23:59:59\"\"}]\"\n");

    auto xml = settingsFor(ExportFileType::XML, [](ExportOptions &o) { o.lossless = true; });
    EXPECT_EQ(writeToString(*table, xml),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RECORDS table=\"Items\">\n"
              "<RECORD>\n\t<ID>1</ID>\n"
              "\t<Tags><value>red</value><value>green; blue</value></Tags>\n"
              "\t<Files><attachment name=\"notes.txt\" type=\"txt\" encoding=\"base64\">aGkK</attachment>"
              "<attachment name=\"setup.sh\" type=\"sh\" encoding=\"base64\">IyEvYmluL3M=</attachment></Files>\n"
              "\t<Notes><version date=\"2021-03-04T10:00:00\">third</version>"
              "<version date=\"2021-03-03T09:30:15\">second\nline</version>"
              "<version date=\"2021-03-01T08:00:00\">first</version></Notes>\n</RECORD>\n"
              "<RECORD>\n\t<ID>2</ID>\n\t<Tags></Tags>\n\t<Files></Files>\n\t<Notes></Notes>\n</RECORD>\n"
              "<RECORD>\n\t<ID>3</ID>\n\t<Tags><value>\xC3\xA9t\xC3\xA9</value></Tags>\n"
              "\t<Files><attachment name=\"empty.bin\" type=\"bin\" encoding=\"base64\"></attachment></Files>\n"
              "\t<Notes><version date=\"1999-12-31T23:59:59\">only</version></Notes>\n</RECORD>\n"
              "</RECORDS>\n");
}

TEST(TextFileExport, LosslessCountsComplexCellsWithoutValues)
{
    // A complex column whose values could not be read: its cells hold only the stored id.
    const auto table = makeTable("T", {{"Tags", "Complex Value auto number"}}, {{"7"}, {std::nullopt}});
    for (const ExportFileType kind : {ExportFileType::CSV, ExportFileType::XML}) {
        TextTableOutcome outcome;
        const std::string text =
            writeToString(*table, settingsFor(kind, [](ExportOptions &o) { o.lossless = true; }), &outcome);
        EXPECT_EQ(outcome.complexIdsOnly, 1u) << text;
        EXPECT_NE(text.find(kind == ExportFileType::XML ? "<Tags>7</Tags>" : "\"7\"\n"), std::string::npos) << text;
    }
    TextTableOutcome classic;
    writeToString(*table, settingsFor(ExportFileType::CSV), &classic);
    EXPECT_EQ(classic.complexIdsOnly, 0u);
}

TEST(TextFileExport, LosslessXmlNamesEscapingAndNulls)
{
    const auto table = makeTable(
        "Split Rail Beer & Ale",
        {{"<Asset No>", "Text"},
         {"Name", "Text"},
         {"xmlData", "Long Integer"},
         {"1st", "Currency"},
         {"Pic", "OLE"},
         {"Ctl", "Text"},
         {"When", "DateTime"},
         {"Flag", "Boolean"}},
        {{"Split Rail Beer & Ale", "a<b>\"c\"\r\n", "5", "6.5000", TestCell::blob(), "bell\x07", "01/02/2003 04:05:06",
          "1"},
         {std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, "0"}});
    auto settings = settingsFor(ExportFileType::XML, [](ExportOptions &o) { o.lossless = true; });
    EXPECT_EQ(writeToString(*table, settings),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RECORDS table=\"Split Rail Beer &amp; Ale\">\n"
              "<RECORD>\n"
              "\t<_Asset_No_ name=\"&lt;Asset No&gt;\">Split Rail Beer &amp; Ale</_Asset_No_>\n"
              "\t<Name>a&lt;b&gt;&quot;c&quot;&#13;\n</Name>\n"
              "\t<_xmlData name=\"xmlData\">5</_xmlData>\n"
              "\t<_1st name=\"1st\">6.5000</_1st>\n"
              "\t<Pic encoding=\"base64\">AQID</Pic>\n"
              "\t<Ctl encoding=\"base64\">YmVsbAc=</Ctl>\n"
              "\t<When>2003-01-02T04:05:06</When>\n"
              "\t<Flag>true</Flag>\n"
              "</RECORD>\n"
              "<RECORD>\n"
              "\t<_Asset_No_ name=\"&lt;Asset No&gt;\" null=\"true\"/>\n"
              "\t<Name null=\"true\"/>\n"
              "\t<_xmlData name=\"xmlData\" null=\"true\"/>\n"
              "\t<_1st name=\"1st\" null=\"true\"/>\n"
              "\t<Pic null=\"true\"/>\n"
              "\t<Ctl null=\"true\"/>\n"
              "\t<When null=\"true\"/>\n"
              "\t<Flag>false</Flag>\n"
              "</RECORD>\n"
              "</RECORDS>\n");
}

TEST(TextFileExport, LosslessOutputInEncodingsThatLackCharacters)
{
    const auto table = makeTable("E", {{"Größe", "Text"}}, {{"é日"}});
    struct Case {
        const char *name;
        ExportFileType kind;
        std::uint64_t encoding;
        std::string expected;
        std::size_t substitutedFields;
    };
    const Case cases[] = {
        {"XML in Latin 1: ASCII names, references for the rest", ExportFileType::XML, 5,
         "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<RECORDS table=\"E\">\n<RECORD>\n"
         "\t<Gr__e name=\"Gr\xF6\xDF"
         "e\">\xE9&#26085;</Gr__e>\n</RECORD>\n</RECORDS>\n",
         0},
        {"XML in ASCII", ExportFileType::XML, 1,
         "<?xml version=\"1.0\" encoding=\"US-ASCII\"?>\n<RECORDS table=\"E\">\n<RECORD>\n"
         "\t<Gr__e name=\"Gr&#246;&#223;e\">&#233;&#26085;</Gr__e>\n</RECORD>\n</RECORDS>\n",
         0},
        {"CSV in Latin 1 counts the field", ExportFileType::CSV, 5,
         "\"Gr\xF6\xDF"
         "e\"\n\"\xE9?\"\n",
         1},
        {"CSV in ASCII counts the name too", ExportFileType::CSV, 1, "\"Gr??e\"\n\"??\"\n", 2},
    };
    for (const Case &c : cases) {
        auto settings = settingsFor(c.kind, [](ExportOptions &o) { o.lossless = true; });
        settings.encoding = c.encoding;
        TextTableOutcome outcome;
        EXPECT_EQ(writeToString(*table, settings, &outcome), c.expected) << c.name;
        EXPECT_EQ(outcome.substitutedFields, c.substitutedFields) << c.name;
    }
}

} // namespace
} // namespace vellum
