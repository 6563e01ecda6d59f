#include "export/losslessText.h"

#include "model/CellValue.h"
#include "model/TOrbComplexValue.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(LosslessText, FormsByTypeName)
{
    const std::pair<const char *, LosslessTextForm> cases[] = {
        {"Text", LosslessTextForm::Text},
        {"Memo/Hyperlink", LosslessTextForm::Text},
        {"Boolean", LosslessTextForm::Boolean},
        {"Byte", LosslessTextForm::Integer},
        {"Integer", LosslessTextForm::Integer},
        {"Long Integer", LosslessTextForm::Integer},
        {"Large Number", LosslessTextForm::Integer},
        {"Currency", LosslessTextForm::Decimal},
        {"Single", LosslessTextForm::Decimal},
        {"Double", LosslessTextForm::Decimal},
        {"Numeric", LosslessTextForm::Decimal},
        {"DateTime", LosslessTextForm::DateTime},
        {"Date/Time Extended", LosslessTextForm::DateTime},
        {"Replication ID", LosslessTextForm::Guid},
        {"Binary", LosslessTextForm::Bytes},
        {"Unknown_0011", LosslessTextForm::Bytes},
        {"OLE", LosslessTextForm::Ole},
        {"Complex Value auto number", LosslessTextForm::Complex},
    };
    for (const auto &[type, expected] : cases)
        EXPECT_EQ(losslessTextFormForDataType(type), expected) << type;
}

TEST(LosslessText, ValueTexts)
{
    struct Case {
        const char *text;
        LosslessTextForm form;
        LosslessValueStyle style;
        const char *expected;
    };
    const LosslessValueStyle plain;
    const LosslessValueStyle comma{",", LosslessBytes::Base64};
    const LosslessValueStyle hex{".", LosslessBytes::Hex};
    const Case cases[] = {
        {"1", LosslessTextForm::Boolean, plain, "true"},
        {"0", LosslessTextForm::Boolean, plain, "false"},
        {"-2147483648", LosslessTextForm::Integer, plain, "-2147483648"},
        {"9223372036854775807", LosslessTextForm::Integer, comma, "9223372036854775807"},
        {"12.3400", LosslessTextForm::Decimal, plain, "12.3400"},
        {"12.3400", LosslessTextForm::Decimal, comma, "12,3400"},
        {"1e+21", LosslessTextForm::Decimal, plain, "1e+21"},
        {"NaN", LosslessTextForm::Decimal, plain, "NaN"},
        {"01/02/2003 04:05:06", LosslessTextForm::DateTime, plain, "2003-01-02T04:05:06"},
        {"12/31/9999 23:59:59.9999999", LosslessTextForm::DateTime, plain, "9999-12-31T23:59:59.9999999"},
        {"{01234567-89AB-CDEF-0123-456789ABCDEF}", LosslessTextForm::Guid, plain,
         "{01234567-89AB-CDEF-0123-456789ABCDEF}"},
        {"\x01\xFF", LosslessTextForm::Bytes, plain, "Af8="},
        {"\x01\xFF", LosslessTextForm::Bytes, hex, "01ff"},
        {"abc", LosslessTextForm::Ole, plain, "YWJj"},
        {"a \"b\"\n", LosslessTextForm::Text, comma, "a \"b\"\n"},
    };
    for (const Case &c : cases) {
        std::string out;
        appendLosslessValue(out, CellValue::ofText(c.text), c.form, c.style);
        EXPECT_EQ(out, c.expected) << c.text;
    }
}

TEST(LosslessText, ComplexValuesAsJson)
{
    TOrbComplexValue tags(ComplexKind::MultiValue);
    tags.addValue("red");
    tags.addValue("say \"hi\"");
    TOrbComplexValue files(ComplexKind::Attachment);
    files.addAttachment("a.txt", "txt", {'h', 'i', '\n'});
    TOrbComplexValue notes(ComplexKind::VersionHistory);
    notes.addVersion("new", "03/04/2021 10:00:00");
    notes.addVersion("old\tline", "12/31/1999 23:59:59");
    const std::pair<const TOrbComplexValue *, const char *> cases[] = {
        {&tags, R"(["red","say \"hi\""])"},
        {&files, R"([{"name":"a.txt","type":"txt","base64":"aGkK"}])"},
        {&notes,
         R"([{"value":"new","date":"2021-03-04T10:00:00"},{"value":"old\tline","date":"1999-12-31T23:59:59"}])"},
    };
    for (const auto &[value, expected] : cases) {
        std::string out;
        appendComplexJson(out, *value);
        EXPECT_EQ(out, expected);
    }
    std::string empty;
    appendComplexJson(empty, TOrbComplexValue(ComplexKind::MultiValue));
    EXPECT_EQ(empty, "[]");
}

TEST(LosslessText, DelimitedFieldsThatNeedQuotes)
{
    struct Case {
        const char *value;
        const char *delimiter;
        const char *nullMarker;
        bool expected;
    };
    const Case cases[] = {
        {"12.5", ",", "", false}, {"12,5", ",", "", true},      {"12,5", ";", "", false}, {"a\nb", "\t", "", true},
        {"a\rb", "\t", "", true}, {"say \"x\"", ",", "", true}, {"7", ",", "7", true},    {"7", ",", "\\N", false},
        {"a b", " ", "", true},   {"", ",", "", false},
    };
    for (const Case &c : cases)
        EXPECT_EQ(delimitedFieldNeedsQuotes(c.value, c.delimiter, "\"", c.nullMarker), c.expected)
            << c.value << " / " << c.delimiter;
}

TEST(LosslessText, XmlElementNames)
{
    struct Case {
        const char *column;
        bool asciiOnly;
        const char *expected;
    };
    const Case cases[] = {
        {"Name", false, "Name"},
        {"<Asset No>", false, "_Asset_No_"},
        {"Split Rail Beer & Ale", false, "Split_Rail_Beer___Ale"},
        {"1st Quarter", false, "_1st_Quarter"},
        {"-x", false, "_-x"},
        {"xmlData", false, "_xmlData"},
        {"XMLish", false, "_XMLish"},
        {"xm", false, "xm"},
        {"a:b", false, "a_b"},
        {"Größe", false, "Größe"},
        {"Größe", true, "Gr__e"},
        {"表", false, "表"},
        {"Ünïcode 表", true, "_n_code__"},
        {"", false, "_"},
        {"a.b-c_d9", false, "a.b-c_d9"},
        {"\xFF\xFE", false, "__"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(xmlElementName(c.column, c.asciiOnly), c.expected) << c.column;
}

TEST(LosslessText, XmlTextAndEscaping)
{
    const std::pair<const char *, bool> texts[] = {
        {"plain", true},         {"tab\tline\ncr\r", true},   {"bell\x07", false},
        {"nul\0x", true},        {"\xC3\xA9t\xC3\xA9", true}, {"\xFF", false},
        {"\xEF\xBF\xBE", false}, {"\xF0\x9F\x98\x80", true},  {"\xED\xA0\x80", false},
    };
    for (const auto &[text, expected] : texts)
        EXPECT_EQ(isXmlText(text), expected) << text;
    EXPECT_FALSE(isXmlText(std::string_view("nul\0x", 5)));

    std::string content;
    appendXmlText(content, "Split Rail Beer & Ale <\"x\"> a'b\r\n\t");
    EXPECT_EQ(content, "Split Rail Beer &amp; Ale &lt;&quot;x&quot;&gt; a'b&#13;\n\t");
    std::string attribute;
    appendXmlAttribute(attribute, "<Asset No>\t&\n\x07\xC3\xA9");
    EXPECT_EQ(attribute, "&lt;Asset No&gt;&#9;&amp;&#10;\xEF\xBF\xBD\xC3\xA9");
}

TEST(LosslessText, XmlEncodingNames)
{
    const std::pair<const char *, const char *> cases[] = {
        {"UTF-8", "UTF-8"},  {"ISO-8859-1", "ISO-8859-1"}, {"ASCII", "US-ASCII"},      {"CP1252", "windows-1252"},
        {"CP850", "IBM850"}, {"MACINTOSH", "macintosh"},   {"SHIFT_JIS", "Shift_JIS"}, {"UTF-16LE", "UTF-16LE"},
    };
    for (const auto &[iconv, expected] : cases)
        EXPECT_EQ(xmlEncodingName(iconv), expected) << iconv;
}

} // namespace
} // namespace vellum
