// Lossless workbooks: every column type written as the cell its values call for, read back with
// independent readers (xlrd for .xls, openpyxl for .xlsx), and the values a workbook cannot
// hold exactly counted as approximations.

#include "export/ExcelExport.h"
#include "export/ExportJob.h"
#include "export/SpreadsheetExport.h"
#include "export/XlsxExport.h"
#include "export/workbookValues.h"
#include "support/TempDir.h"
#include "support/WorkbookReader.h"
#include "support/complexTables.h"

#include "ExportTestTables.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vellum {
namespace {

using test::makeFile;
using test::makeTable;
using test::ReadSheet;
using test::ReadWorkbook;

// ---- value forms ----

TEST(WorkbookValues, ExcelSerialDates)
{
    struct Case {
        const char *text;
        std::optional<double> serial;
    };
    const Case cases[] = {
        {"01/01/1900 00:00:00", 1.0},
        {"02/28/1900 00:00:00", 59.0},
        {"03/01/1900 00:00:00", 61.0}, // Excel's 29 February 1900 is 60
        {"12/30/1899 12:00:00", 0.5},  // Access's time without a date
        {"12/30/1899 00:00:00", 0.0},
        {"12/31/1899 00:00:00", std::nullopt},
        {"06/15/1800 06:30:00", std::nullopt},
        {"01/01/0100 00:00:00", std::nullopt},
        {"12/31/9999 00:00:00", 2958465.0},
        {"03/04/2010 18:00:00", 40241.75},
        {"03/04/2010 00:00:00.0004999", 40241.0},
        {"03/04/2010 00:00:00.0005", 40241.0 + 0.001 / 86400},
        {"03/04/2010 00:00:00.9995", 40241.0 + 1.0 / 86400},
        {"12/31/9999 23:59:59.9999999", 2958465.0 + 86399.999 / 86400},
    };
    for (const Case &c : cases) {
        const auto date = parseCellDateTime(c.text);
        ASSERT_TRUE(date) << c.text;
        const auto serial = excelSerialDate(*date);
        ASSERT_EQ(serial.has_value(), c.serial.has_value()) << c.text;
        if (serial) {
            EXPECT_DOUBLE_EQ(*serial, *c.serial) << c.text;
        }
    }
    struct Fraction {
        const char *text;
        bool beyond;
    };
    for (const Fraction &f :
         {Fraction{"03/04/2010 00:00:00", false}, Fraction{"03/04/2010 00:00:00.123", false},
          Fraction{"03/04/2010 00:00:00.1230000", false}, Fraction{"03/04/2010 00:00:00.1234", true},
          Fraction{"03/04/2010 00:00:00.0000001", true}})
        EXPECT_EQ(fractionBeyondMilliseconds(*parseCellDateTime(f.text)), f.beyond) << f.text;
}

TEST(WorkbookValues, Utf8PrefixWithinUnitsAndSignificantDigits)
{
    struct Cut {
        std::string text;
        std::size_t maxUnits;
        std::size_t bytes;
    };
    const Cut cuts[] = {
        {"abcdef", 4, 4},
        {"abc", 10, 3},
        {"\xC3\xA9\xC3\xA9\xC3\xA9", 2, 4}, // é is one unit of two bytes
        {"ab\xF0\x9F\x98\x80", 3, 2},       // the emoji needs two units: left out whole
        {"ab\xF0\x9F\x98\x80", 4, 6},
        {"\xE6\x97\xA5\xE6\x9C\xAC", 1, 3}, // 日本
        {"", 0, 0},
    };
    for (const Cut &c : cuts)
        EXPECT_EQ(utf8PrefixWithinUnits(c.text, c.maxUnits), c.bytes) << c.text << " " << c.maxUnits;

    struct Digits {
        double value;
        int digits;
    };
    const Digits digits[] = {{0.1, 1},
                             {123.45, 5},
                             {1e21, 1},
                             {100, 1},
                             {0.30000000000000004, 17},
                             {-2.5, 2},
                             {0, 0},
                             {1e-300, 1},
                             {2.718281828459045, 16}};
    for (const Digits &d : digits)
        EXPECT_EQ(significantDigits(d.value), d.digits) << d.value;
}

// ---- whole exports, read back ----

class NoObserver : public ExportObserver {
public:
    void updateProgressPanel(const ExportJob &, std::size_t) override {}
    void exportThreadFinished(const ExportJob &) override {}
};

struct LosslessRun {
    std::vector<std::string> log;
    std::int64_t successes = 0;
    std::map<std::string, std::size_t> approximations; ///< "table|what" → count
};

LosslessRun exportLossless(TOrbMDBFile &file, ExportFileType kind, const std::string &path)
{
    ExportJob job(file, nullptr, kind);
    job.mutableOptions().exportSingleFile = true;
    job.mutableOptions().lossless = true;
    job.setExportPath(path);
    NoObserver observer;
    EXPECT_TRUE(job.startExport(&observer));
    job.wait();
    LosslessRun run{job.msgLog(), job.successTableCount(), {}};
    for (const ExportApproximation &a : job.approximations())
        run.approximations[a.tableName + "|" + a.what] += a.count;
    return run;
}

/// Approximations are listed as warnings; nothing failed.
void expectOnlyWarnings(const std::vector<std::string> &log)
{
    for (const std::string &line : log)
        EXPECT_NE(line.find(" Warning: "), std::string::npos) << line;
}

class LosslessWorkbook : public testing::TestWithParam<ExportFileType> {
protected:
    void SetUp() override { VELLUM_REQUIRE_WORKBOOK_READERS(); }
    bool xlsx() const { return GetParam() == ExportFileType::XLSX; }
    std::string fileName(const std::string &stem) const { return stem + (xlsx() ? ".xlsx" : ".xls"); }
    const SpreadsheetLimits &limits() const { return xlsx() ? kXlsxLimits : kXlsLimits; }
};

struct ExpectedCell {
    int row, col;
    const char *type; ///< "" for no cell at all (.xlsx) or a blank one (.xls)
    nlohmann::json value;
    const char *format = "";
};

void expectCells(const ReadSheet &sheet, const std::vector<ExpectedCell> &cells, bool xlsx)
{
    for (const ExpectedCell &e : cells) {
        const auto *cell = sheet.at(e.row, e.col);
        if (std::string(e.type).empty()) {
            if (xlsx)
                EXPECT_EQ(cell, nullptr) << e.row << "," << e.col;
            else if (cell == nullptr)
                ADD_FAILURE() << e.row << "," << e.col << ": blank cell expected";
            else
                EXPECT_EQ(cell->type, "blank") << e.row << "," << e.col;
            continue;
        }
        ASSERT_NE(cell, nullptr) << e.row << "," << e.col;
        EXPECT_EQ(cell->type, e.type) << e.row << "," << e.col;
        EXPECT_EQ(cell->value, e.value) << e.row << "," << e.col;
        EXPECT_EQ(cell->format, e.format) << e.row << "," << e.col;
    }
}

TEST_P(LosslessWorkbook, EveryTypeAsItsOwnKindOfCell)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeTable(
        "Types",
        {{"flag", "Boolean"},
         {"byte", "Byte"},
         {"int", "Integer"},
         {"long", "Long Integer"},
         {"big", "Large Number"},
         {"money", "Currency"},
         {"num", "Numeric"},
         {"single", "Single"},
         {"double", "Double"},
         {"date", "DateTime"},
         {"ext", "Date/Time Extended"},
         {"bin", "Binary"},
         {"guid", "Replication ID"},
         {"text", "Text"},
         {"ole", "OLE"}},
        {{"1", "255", "-32768", "2147483647", "9007199254740992", "1234.5678", "-0.0001", "0.1", "2.718281828459045",
          "03/04/2010 13:05:09", "03/04/2010 13:05:09.1230000", "\x01\x02\xFF",
          "{6F9619FF-8B86-D011-B42D-00C04FC964FF}", "h\xC3\xA9llo", "raw"},
         {"0", "0", "0", "0", "12345678901234567890", "922337203685477.5807", "1234567890123456789.0123", "NaN",
          "-Infinity", "12/30/1899 08:30:00", "01/01/1900 00:00:00.0005000", std::nullopt, std::nullopt, "=1+2",
          std::nullopt},
         {"0", std::nullopt, std::nullopt, std::nullopt, "-5", "-0.5", "1e-7", "Infinity", "0.30000000000000004",
          "06/15/1800 06:30:00", "12/31/1899 23:59:59.1234567", std::nullopt, std::nullopt, std::nullopt,
          test::TestCell::blob()},
         {"1", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
          std::nullopt, "02/28/1900 12:00:00", "03/01/1900 00:00:00.9990000", std::nullopt, std::nullopt, std::nullopt,
          std::nullopt},
         // Extended dates without a fraction: still milliseconds, or seven digits as text.
         {"0", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
          std::nullopt, std::nullopt, "03/04/2010 13:05:09", std::nullopt, std::nullopt, std::nullopt, std::nullopt},
         {"0", std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
          std::nullopt, std::nullopt, "06/15/1800 06:30:00", std::nullopt, std::nullopt, std::nullopt, std::nullopt}}));
    const auto file = makeFile("types", std::move(tables));
    test::TempDir dir;
    const std::string path = dir.file(fileName("types"));
    const LosslessRun run = exportLossless(*file, GetParam(), path);
    expectOnlyWarnings(run.log);
    EXPECT_EQ(run.successes, 1);

    std::map<std::string, std::size_t> approximations = {
        {"Types|numbers with more digits than a cell keeps written as text", 3},
        {"Types|NaN and infinite numbers written as text", 3},
        {"Types|dates before 1900 written as ISO text", 3},
        {"Types|times rounded to milliseconds", 1},
    };
    if (xlsx())
        approximations["Types|numbers rounded to 16 significant digits"] = 1; // 0.30000000000000004
    EXPECT_EQ(run.approximations, approximations);

    const ReadWorkbook read = test::readWorkbook(path);
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_TRUE(read.warnings.empty()) << read.warnings.front();
    ASSERT_EQ(read.sheets.size(), 1u);
    const char *dateFormat = "yyyy-mm-dd hh:mm:ss";
    const char *millisecondFormat = "yyyy-mm-dd hh:mm:ss.000";
    const char *currencyFormat = "#,##0.00##";
    const std::vector<ExpectedCell> cells = {
        {0, 0, "text", "flag"},
        {1, 0, "boolean", true},
        {1, 1, "number", 255.0},
        {1, 2, "number", -32768.0},
        {1, 3, "number", 2147483647.0},
        {1, 4, "number", 9007199254740992.0},
        {1, 5, "number", 1234.5678, currencyFormat},
        {1, 6, "number", -0.0001},
        {1, 7, "number", 0.1},
        {1, 8, "number", 2.718281828459045},
        {1, 9, "date", "2010-03-04T13:05:09", dateFormat},
        {1, 10, "date", "2010-03-04T13:05:09.123", millisecondFormat},
        {1, 11, "text", "AQL/"},
        {1, 12, "text", "{6F9619FF-8B86-D011-B42D-00C04FC964FF}"},
        {1, 13, "text", "h\xC3\xA9llo"},
        {1, 14, "text", "cmF3"},
        {2, 0, "boolean", false},
        {2, 1, "number", 0.0},
        {2, 4, "text", "12345678901234567890"},
        {2, 5, "text", "922337203685477.5807"},
        {2, 6, "text", "1234567890123456789.0123"},
        {2, 7, "text", "NaN"},
        {2, 8, "text", "-Infinity"},
        {2, 9, "date", "1899-12-30T08:30:00", dateFormat},
        {2, 10, "date", "1900-01-01T00:00:00.001", millisecondFormat},
        {2, 11, "", nullptr},
        {2, 13, "text", "=1+2"},
        {3, 4, "number", -5.0},
        {3, 5, "number", -0.5, currencyFormat},
        {3, 6, "number", 1e-7},
        {3, 7, "text", "Infinity"},
        {3, 8, "number", xlsx() ? 0.3 : 0.30000000000000004},
        {3, 9, "text", "1800-06-15T06:30:00"},
        {3, 10, "text", "1899-12-31T23:59:59.1234567"},
        {3, 14, "text", "AQID"}, // the decoded payload of the blob
        {4, 9, "date", "1900-02-28T12:00:00", dateFormat},
        {4, 10, "date", "1900-03-01T00:00:00.999", millisecondFormat},
        {4, 1, "", nullptr},
        {5, 10, "date", "2010-03-04T13:05:09", millisecondFormat},
        {6, 10, "text", "1800-06-15T06:30:00.0000000"},
    };
    expectCells(read.sheets[0], cells, xlsx());
}

TEST_P(LosslessWorkbook, LongTextsAreCutAndCountedWhereClassicRefusesTheTable)
{
    const std::size_t limit = limits().maxTextUnits;
    const std::string emojiAcross = std::string(limit - 1, 'a') + "\xF0\x9F\x98\x80"; // limit + 1 units
    std::string accents;
    for (std::size_t i = 0; i < limit + 5; ++i)
        accents += "\xC3\xA9";
    const std::string exact(limit, 'b');
    const std::string longer(40000, 'c');
    const std::string bytes(30000, '\x07'); // base64 of 40000 characters
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeTable("Long", {{"memo", "Memo/Hyperlink"}, {"bin", "Binary"}},
                               {{longer.c_str(), bytes.c_str()},
                                {exact.c_str(), "\x07"},
                                {emojiAcross.c_str(), std::nullopt},
                                {accents.c_str(), std::nullopt}}));
    const auto file = makeFile("long", std::move(tables));
    test::TempDir dir;
    const std::string path = dir.file(fileName("long"));
    const LosslessRun run = exportLossless(*file, GetParam(), path);
    expectOnlyWarnings(run.log);
    EXPECT_EQ(run.successes, 1);
    const std::map<std::string, std::size_t> approximations = {
        {"Long|texts cut at the cell limit", 3},
        {"Long|binary values too long for a cell replaced by a note", 1},
    };
    EXPECT_EQ(run.approximations, approximations);

    const ReadWorkbook read = test::readWorkbook(path);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 1u);
    std::string accentsCut;
    for (std::size_t i = 0; i < limit; ++i)
        accentsCut += "\xC3\xA9";
    const std::vector<ExpectedCell> cells = {
        {1, 0, "text", longer.substr(0, limit)},
        {1, 1, "text", "[30000 bytes, too long for a cell]"},
        {2, 0, "text", exact},
        {2, 1, "text", "Bw=="},
        {3, 0, "text", std::string(limit - 1, 'a')},
        {4, 0, "text", accentsCut},
    };
    expectCells(read.sheets[0], cells, xlsx());
}

TEST_P(LosslessWorkbook, ComplexColumnsShowTheirValuesJoined)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::complexItemsTable());
    const auto file = makeFile("complex", std::move(tables));
    test::TempDir dir;
    const std::string path = dir.file(fileName("complex"));
    const LosslessRun run = exportLossless(*file, GetParam(), path);
    EXPECT_TRUE(run.log.empty()) << run.log.front();
    EXPECT_TRUE(run.approximations.empty());
    const ReadWorkbook read = test::readWorkbook(path);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 1u);
    const std::vector<ExpectedCell> cells = {
        {1, 0, "number", 1.0},
        {1, 1, "text", "red; green; blue"},
        {1, 2, "text", "notes.txt; setup.sh"},
        {1, 3, "text", "third"},
        {2, 1, "", nullptr},
        {2, 2, "", nullptr},
        {2, 3, "", nullptr},
        {3, 1, "text", "\xC3\xA9t\xC3\xA9"},
        {3, 2, "text", "empty.bin"},
        {3, 3, "text", "only"},
    };
    expectCells(read.sheets[0], cells, xlsx());
}

INSTANTIATE_TEST_SUITE_P(Kinds, LosslessWorkbook, testing::Values(ExportFileType::XLS, ExportFileType::XLSX),
                         [](const testing::TestParamInfo<ExportFileType> &info) {
                             return info.param == ExportFileType::XLS ? "xls" : "xlsx";
                         });

} // namespace
} // namespace vellum
