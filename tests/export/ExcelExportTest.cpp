#include "export/ExcelExport.h"
#include "export/ExportJob.h"
#include "export/SpreadsheetExport.h"
#include "export/XlsxExport.h"
#include "export/xls/sheetNames.h"
#include "export/xls/utf16.h"
#include "model/TOrbMDBColumn.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"
#include "support/WorkbookReader.h"

#include "ExportTestTables.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vellum {
namespace {

using test::makeFile;
using test::makeTable;
using test::ReadSheet;
using test::ReadWorkbook;

// ---- values ----

TEST(SpreadsheetExport, NumberColumnsAndLeadingNumbers)
{
    const std::pair<const char *, bool> types[] = {
        {"Integer", true}, {"Long Integer", true}, {"Currency", true}, {"Single", true},
        {"Double", true},  {"Numeric", true},      {"Byte", false},    {"Boolean", false},
        {"Text", false},   {"DateTime", false},    {"double", false},
    };
    for (const auto &[type, numeric] : types)
        EXPECT_EQ(isSpreadsheetNumberType(type), numeric) << type;

    const std::pair<const char *, double> numbers[] = {
        {"12", 12},
        {"12abc", 12},
        {"abc", 0},
        {"", 0},
        {"  3.5", 3.5},
        {"-1.5e3 kg", -1500},
        {"+2", 2},
        {".5", 0.5},
        {"1e", 1},
        {"1e+", 1},
        {"1,5", 1},
        {"1234.5000", 1234.5},
        {"0x1A", 0},
        {"inf", 0},
        {"nan", 0},
        {"-", 0},
        {"-.", 0},
        {"\t\n7", 7},
        {"1e400", DBL_MAX},
        {"-1e400", -DBL_MAX},
        {"1e-400", 0},
        {"00123", 123},
        {"3.1400001", 3.1400001},
        {"1.797693134862316e+308", DBL_MAX}, // Double's maximum as libmdb prints it
    };
    for (const auto &[text, value] : numbers)
        EXPECT_EQ(leadingNumberValue(text), value) << text;
}

// ---- the adapter ----

TEST(XlsxExport, EscapesOnlyUnderscoresThatStartAnOoxmlEscape)
{
    const std::pair<const char *, const char *> cases[] = {
        {"plain", "plain"},
        {"a_b_c", "a_b_c"},
        {"_x0041_", "_x005F_x0041_"},
        {"a_x0041_b_xABCD_", "a_x005F_x0041_b_x005F_xABCD_"},
        {"_x005F_x0041_", "_x005F_x005F_x005F_x0041_"}, // escapes that touch
        {"_x0041", "_x0041"},                           // no closing underscore
        {"_x00G1_", "_x00G1_"},                         // not hexadecimal
        {"_X0041_", "_X0041_"},                         // the x is lower case only
        {"tail_", "tail_"},
    };
    for (const auto &[text, expected] : cases) {
        std::string out = "prefix:";
        appendOoxmlText(out, text);
        EXPECT_EQ(out, std::string("prefix:") + expected) << text;
    }
    // Binary values keep their NUL bytes: each becomes Excel's escape instead of ending the text.
    std::string out;
    appendOoxmlText(out, std::string_view("\0a\0_x0041_\0", 11));
    EXPECT_EQ(out, "_x0000_a_x0000__x005F_x0041__x0000_");
}

TEST(ExcelExport, AdapterKeepsOneWorkbookAndLogsWithoutOne)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    test::TempDir dir;
    ExcelExport excel;

    testing::internal::CaptureStderr();
    excel.writeString("x", 0, 0);
    excel.writeNumber(1, 0, 0);
    excel.setBlankForRow(0, 0);
    EXPECT_FALSE(excel.dumpToFile(dir.file("none.xls")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error when writing string: No workbook available\n"
                                                      "Error when writing number: No workbook available\n"
                                                      "Error when writing null: No workbook available\n"
                                                      "Error when dump file: No workbook available\n");

    EXPECT_FALSE(excel.addSheet(""));
    EXPECT_FALSE(ExcelExport::hasWorkbook());
    ASSERT_TRUE(excel.addSheet("T"));
    EXPECT_EQ(excel.indexOfLastSheet(), 0);
    excel.writeNumber(5, 0, 0);
    excel.writeString("", 0, 0);    // an empty text leaves the cell as it is
    excel.setBlankForRow(65537, 2); // row 65537 is row 1
    excel.writeString("kept", 2, 0);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(excel.addSheet("t")); // Excel ignores case: the name is taken
    EXPECT_NE(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(excel.indexOfLastSheet(), 0);
    ASSERT_TRUE(excel.addSheet("U"));
    EXPECT_EQ(excel.indexOfLastSheet(), 1);
    excel.writeString("second", 0, 0);
    ASSERT_TRUE(excel.dumpToFile(dir.file("book.xls")));
    EXPECT_FALSE(ExcelExport::hasWorkbook());

    const ReadWorkbook read = test::readWorkbook(dir.file("book.xls"));
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 2u);
    const ReadSheet &t = read.sheets[0];
    EXPECT_EQ(t.name, "T");
    ASSERT_EQ(t.cells.size(), 3u);
    EXPECT_EQ(t.at(0, 0)->type, "number");
    EXPECT_EQ(t.at(0, 0)->value, 5.0);
    EXPECT_EQ(t.at(1, 2)->type, "blank");
    EXPECT_EQ(t.at(2, 0)->value, "kept");
    EXPECT_EQ(read.sheets[1].at(0, 0)->value, "second");

    // A new workbook after the dump; one left open is gone with the adapter.
    {
        ExcelExport other;
        ASSERT_TRUE(other.addSheet("V"));
        EXPECT_EQ(other.indexOfLastSheet(), 0);
        EXPECT_TRUE(ExcelExport::hasWorkbook());
    }
    EXPECT_FALSE(ExcelExport::hasWorkbook());
}

// ---- whole exports, read back ----

/// Waits for nothing; stops the job when entry `stopAt` is about to begin.
class StopObserver : public ExportObserver {
public:
    explicit StopObserver(std::optional<std::size_t> stopAt = std::nullopt) : m_stopAt(stopAt) {}
    void updateProgressPanel(const ExportJob &job, std::size_t index) override
    {
        if (m_stopAt && index == *m_stopAt)
            const_cast<ExportJob &>(job).stop();
    }
    void exportThreadFinished(const ExportJob &) override {}

private:
    std::optional<std::size_t> m_stopAt;
};

struct ExportRun {
    std::vector<std::string> log;
    std::int64_t successes = 0;
    std::string title;
};

ExportRun runExport(TOrbMDBFile &file, ExportFileType kind, const std::string &path, bool singleFile,
                    bool header = true, std::optional<std::size_t> stopAt = std::nullopt)
{
    ExportJob job(file, nullptr, kind);
    job.mutableOptions().exportSingleFile = singleFile;
    job.mutableOptions().includeColumnHeader = header;
    job.setExportPath(path);
    StopObserver observer(stopAt);
    EXPECT_TRUE(job.startExport(&observer));
    job.wait();
    return {job.msgLog(), job.successTableCount(), job.report().title};
}

const char *extensionOf(ExportFileType kind)
{
    return kind == ExportFileType::XLS ? "xls" : "xlsx";
}

std::string sheetNameFor(const std::string &tableName)
{
    std::u16string utf16;
    EXPECT_TRUE(utf8ToUtf16(tableName, utf16));
    return utf16ToUtf8(xls::excelSheetName(utf16));
}

/// Checks that `sheet` holds exactly the table's rows [first, first + count) from sheet row
/// `startRow` (after a header row when `header`): numbers for the number columns, texts for
/// the others (none for a text that is not UTF-8, such as a Binary value), blank cells (.xls) or
/// none (.xlsx) for values that are not text.
void expectSheetHoldsRows(const ReadSheet &sheet, const TOrbMDBTable &table, bool header, std::size_t first,
                          std::size_t count, ExportFileType kind)
{
    const bool xlsx = kind == ExportFileType::XLSX;
    const auto &columns = table.columns();
    std::size_t expectedCells = 0;
    std::size_t mismatches = 0;
    auto report = [&](int row, int col, const std::string &what) {
        if (++mismatches <= 5)
            ADD_FAILURE() << sheet.name << " cell (" << row << ", " << col << "): " << what;
    };
    if (header) {
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const auto *cell = sheet.at(0, static_cast<int>(c));
            ++expectedCells;
            if (!cell || cell->type != "text" || cell->value != columns[c]->name())
                report(0, static_cast<int>(c), "header " + columns[c]->name());
        }
    }
    const int startRow = header ? 1 : 0;
    for (std::size_t r = 0; r < count; ++r) {
        const int row = startRow + static_cast<int>(r);
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const int col = static_cast<int>(c);
            const CellValue value = table.cell(first + r, c);
            const auto *cell = sheet.at(row, col);
            if (!value.isText()) {
                if (!xlsx) {
                    ++expectedCells;
                    if (!cell || cell->type != "blank")
                        report(row, col, "blank expected");
                }
                continue;
            }
            const bool numeric = isSpreadsheetNumberType(columns[c]->dataType());
            std::u16string utf16;
            if (!numeric && !utf8ToUtf16(value.text, utf16)) {
                if (cell)
                    report(row, col, "no cell expected for text that is not UTF-8");
                continue;
            }
            ++expectedCells;
            if (numeric) {
                const double expected = leadingNumberValue(value.text);
                if (!cell || cell->type != "number") {
                    report(row, col, "number expected for " + std::string(value.text));
                } else {
                    const double got = cell->value.get<double>();
                    // .xls keeps the double's bits; .xlsx writes 16 significant digits.
                    if (xlsx ? std::fabs(got - expected) > std::fabs(expected) * 1e-15 : got != expected)
                        report(row, col, "number " + std::string(value.text) + " read as " + cell->value.dump());
                }
            } else if (!cell || cell->type != "text" || cell->value != std::string(value.text)) {
                report(row, col,
                       "text " + std::string(value.text).substr(0, 40) + " read as " +
                           (cell ? cell->value.dump().substr(0, 40) : std::string("nothing")));
            }
        }
    }
    EXPECT_EQ(sheet.cells.size(), expectedCells) << sheet.name;
}

class WorkbookExport : public testing::TestWithParam<ExportFileType> {
protected:
    void SetUp() override { VELLUM_REQUIRE_WORKBOOK_READERS(); }
    ExportFileType kind() const { return GetParam(); }
    const char *extension() const { return extensionOf(GetParam()); }
};

TEST_P(WorkbookExport, FixtureDatabaseOneFilePerTableAndSingleFile)
{
    const auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_NE(file, nullptr);
    test::TempDir dir;
    const ExportRun perTable = runExport(*file, kind(), dir.path(), false);
    EXPECT_TRUE(perTable.log.empty()) << perTable.log.front();
    EXPECT_EQ(perTable.successes, static_cast<std::int64_t>(file->tables().size()));
    for (const auto &table : file->tables()) {
        const std::string path = dir.file(table->name() + "." + extension());
        const ReadWorkbook read = test::readWorkbook(path);
        ASSERT_TRUE(read.ok) << table->name() << ": " << read.error;
        EXPECT_TRUE(read.warnings.empty()) << read.warnings.front();
        ASSERT_EQ(read.sheets.size(), 1u) << table->name();
        EXPECT_EQ(read.sheets[0].name, sheetNameFor(table->name()));
        expectSheetHoldsRows(read.sheets[0], *table, true, 0, table->rowCount(), kind());
    }

    const std::string single = dir.file(std::string("all.") + extension());
    const ExportRun all = runExport(*file, kind(), single, true, false);
    EXPECT_TRUE(all.log.empty()) << all.log.front();
    const ReadWorkbook read = test::readWorkbook(single);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), file->tables().size());
    for (std::size_t i = 0; i < read.sheets.size(); ++i) {
        const TOrbMDBTable &table = *file->tables()[i];
        EXPECT_EQ(read.sheets[i].name, sheetNameFor(table.name()));
        expectSheetHoldsRows(read.sheets[i], table, false, 0, table.rowCount(), kind());
    }
}

TEST_P(WorkbookExport, NumberAndTextColumns)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(
        makeTable("Values", {{"b", "Byte"}, {"n", "Long Integer"}, {"d", "Double"}, {"flag", "Boolean"}, {"t", "Text"}},
                  {{"7", "42", "12abc", "1", "00123"},
                   {"255", "-3", "abc", "0", "a_x0041_b\r\n\x01"},
                   {std::nullopt, std::nullopt, " 2.5e2", std::nullopt, "=1+2"}}));
    const auto file = makeFile("values", std::move(tables));
    test::TempDir dir;
    ASSERT_TRUE(runExport(*file, kind(), dir.path(), false).log.empty());
    const ReadWorkbook read = test::readWorkbook(dir.file(std::string("Values.") + extension()));
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 1u);
    const ReadSheet &s = read.sheets[0];
    struct Expect {
        int row, col;
        const char *type;
        nlohmann::json value;
    };
    const Expect cells[] = {
        {1, 0, "text", "7"},     {1, 1, "number", 42.0},  {1, 2, "number", 12.0},
        {1, 3, "text", "1"},     {1, 4, "text", "00123"}, {2, 0, "text", "255"},
        {2, 1, "number", -3.0},  {2, 2, "number", 0.0},   {2, 4, "text", "a_x0041_b\r\n\x01"},
        {3, 2, "number", 250.0}, {3, 4, "text", "=1+2"},
    };
    for (const Expect &e : cells) {
        const auto *cell = s.at(e.row, e.col);
        ASSERT_NE(cell, nullptr) << e.row << "," << e.col;
        EXPECT_EQ(cell->type, e.type) << e.row << "," << e.col;
        EXPECT_EQ(cell->value, e.value) << e.row << "," << e.col;
    }
    const auto *nullCell = s.at(3, 0);
    if (kind() == ExportFileType::XLS) {
        ASSERT_NE(nullCell, nullptr);
        EXPECT_EQ(nullCell->type, "blank");
    } else {
        EXPECT_EQ(nullCell, nullptr);
    }
}

TEST_P(WorkbookExport, ContinuationSheetsOfTheSeventyThousandRowFixture)
{
    const std::string path = test::sharedPath("testdata/rows70000.mdb");
    if (path.empty())
        GTEST_SKIP() << "../shared/testdata/rows70000.mdb is absent";
    const auto file = test::openInProcess(path);
    ASSERT_NE(file, nullptr);
    const TOrbMDBTable &table = *file->tables().front();
    ASSERT_EQ(table.rowCount(), 70000u);
    test::TempDir dir;
    const std::string out = dir.file(std::string("rows.") + extension());
    const ExportRun run = runExport(*file, kind(), out, true);
    EXPECT_TRUE(run.log.empty()) << run.log.front();
    EXPECT_EQ(run.successes, 1);
    const ReadWorkbook read = test::readWorkbook(out);
    ASSERT_TRUE(read.ok) << read.error;
    EXPECT_TRUE(read.warnings.empty()) << read.warnings.front();
    if (kind() == ExportFileType::XLS) {
        // T: the header and rows 1 to 65535; T(2): the remaining 4465 rows, no header.
        ASSERT_EQ(read.sheets.size(), 2u);
        EXPECT_EQ(read.sheets[0].name, "Rows70000");
        EXPECT_EQ(read.sheets[0].rowCount(), 65536);
        expectSheetHoldsRows(read.sheets[0], table, true, 0, 65535, kind());
        EXPECT_EQ(read.sheets[1].name, "Rows70000(2)");
        EXPECT_EQ(read.sheets[1].rowCount(), 4465);
        expectSheetHoldsRows(read.sheets[1], table, false, 65535, 4465, kind());
    } else {
        ASSERT_EQ(read.sheets.size(), 1u);
        EXPECT_EQ(read.sheets[0].rowCount(), 70001);
        expectSheetHoldsRows(read.sheets[0], table, true, 0, 70000, kind());
    }
}

TEST_P(WorkbookExport, LengthLimitOfTheLongTextFixture)
{
    const std::string path = test::sharedPath("testdata/longtext.mdb");
    if (path.empty())
        GTEST_SKIP() << "../shared/testdata/longtext.mdb is absent";
    const auto source = test::openInProcess(path);
    ASSERT_NE(source, nullptr);
    const TOrbMDBTable &longText = *source->tables().front();
    const std::size_t body = *longText.columnIndex("Body");
    // One table per body of interest, by ID: 1 = 32740, 2 = 32741, 3 = 32767, 4 = 32768
    // ASCII characters, 9 = 32741 × "é".
    auto bodyOf = [&](const char *id) {
        for (std::size_t r = 0; r < longText.rowCount(); ++r)
            if (longText.cell(r, 0).text == id)
                return std::string(longText.cell(r, body).text);
        return std::string();
    };
    const std::vector<std::pair<const char *, const char *>> picks = {
        {"Exact", "1"}, {"Over", "2"}, {"Max", "3"}, {"OverMax", "4"}, {"Accents", "9"}};
    std::vector<std::string> bodies;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    for (const auto &[name, id] : picks) {
        bodies.push_back(bodyOf(id));
        ASSERT_FALSE(bodies.back().empty()) << id;
    }
    for (std::size_t i = 0; i < picks.size(); ++i)
        tables.push_back(makeTable(picks[i].first, {{"ID", "Long Integer"}, {"Body", "Memo/Hyperlink"}},
                                   {{picks[i].second, bodies[i].c_str()}}));
    const auto file = makeFile("long", std::move(tables));
    test::TempDir dir;
    const bool xls = kind() == ExportFileType::XLS;
    const ExportRun run = runExport(*file, kind(), dir.path(), false);
    const std::vector<std::string> expectedLog =
        xls ? std::vector<std::string>{"<Over> Failed: Field Body exceeded length limit.",
                                       "<Max> Failed: Field Body exceeded length limit.",
                                       "<OverMax> Failed: Field Body exceeded length limit.",
                                       "<Accents> Failed: Field Body exceeded length limit."}
            : std::vector<std::string>{"<OverMax> Failed: Field Body exceeded length limit."};
    EXPECT_EQ(run.log, expectedLog);
    const std::vector<std::string> written =
        xls ? std::vector<std::string>{"Exact"} : std::vector<std::string>{"Exact", "Over", "Max", "Accents"};
    EXPECT_EQ(run.successes, static_cast<std::int64_t>(written.size()));
    for (const auto &table : file->tables()) {
        const std::string out = dir.file(table->name() + "." + extension());
        const bool expected = std::find(written.begin(), written.end(), table->name()) != written.end();
        ASSERT_EQ(std::filesystem::exists(out), expected) << out;
        if (!expected)
            continue;
        const ReadWorkbook read = test::readWorkbook(out);
        ASSERT_TRUE(read.ok) << read.error;
        ASSERT_EQ(read.sheets.size(), 1u);
        expectSheetHoldsRows(read.sheets[0], *table, true, 0, 1, kind());
    }

    // The fixture's own table holds every length: the whole table fails, naming the column.
    const ExportRun whole = runExport(*source, kind(), dir.path(), false);
    EXPECT_EQ(whole.log, std::vector<std::string>{"<LongText> Failed: Field Body exceeded length limit."});
    EXPECT_FALSE(std::filesystem::exists(dir.file(std::string("LongText.") + extension())));
}

TEST_P(WorkbookExport, StoppedSingleFileKeepsTheSheetsWrittenSoFar)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeNumberTable("First", 100));
    tables.push_back(test::makeNumberTable("Second", 100));
    tables.push_back(test::makeNumberTable("Third", 100));
    const auto file = makeFile("stop", std::move(tables));
    test::TempDir dir;
    const std::string out = dir.file(std::string("stopped.") + extension());
    const ExportRun run = runExport(*file, kind(), out, true, true, 1);
    EXPECT_EQ(run.title, "Export terminated.");
    EXPECT_EQ(run.successes, 1);
    EXPECT_EQ(run.log, std::vector<std::string>{"<Second> Failed: Terminated."});
    const ReadWorkbook read = test::readWorkbook(out);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 2u);
    expectSheetHoldsRows(read.sheets[0], *file->tables()[0], true, 0, 100, kind());
    EXPECT_EQ(read.sheets[1].name, "Second");
    expectSheetHoldsRows(read.sheets[1], *file->tables()[1], true, 0, 0, kind()); // the header only

    // One file per table: the stopped table leaves no file.
    const ExportRun perTable = runExport(*file, kind(), dir.path(), false, true, 1);
    EXPECT_EQ(perTable.log, std::vector<std::string>{"<Second> Failed: Terminated."});
    EXPECT_TRUE(std::filesystem::exists(dir.file(std::string("First.") + extension())));
    EXPECT_FALSE(std::filesystem::exists(dir.file(std::string("Second.") + extension())));
    EXPECT_FALSE(std::filesystem::exists(dir.file(std::string("Third.") + extension())));
}

TEST_P(WorkbookExport, FailuresFailOnlyTheirTable)
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeTable("a]b", {{"v", "Text"}}, {{"one"}}));
    tables.push_back(makeTable("A[B", {{"v", "Text"}}, {{"two"}})); // same sheet name as a]b
    tables.push_back(makeTable("c", {{"v", "Text"}}, {{"three"}}));
    const auto file = makeFile("fail", std::move(tables));
    test::TempDir dir;

    const std::string out = dir.file(std::string("dup.") + extension());
    testing::internal::CaptureStderr();
    const ExportRun dup = runExport(*file, kind(), out, true);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(dup.log, std::vector<std::string>{"<A[B> Failed: Unable to create spreadsheet A[B."});
    EXPECT_EQ(dup.successes, 2);
    const ReadWorkbook read = test::readWorkbook(out);
    ASSERT_TRUE(read.ok) << read.error;
    ASSERT_EQ(read.sheets.size(), 2u);
    EXPECT_EQ(read.sheets[0].name, "a_b");
    EXPECT_EQ(read.sheets[1].name, "c");
    EXPECT_EQ(read.sheets[1].at(1, 0)->value, "three");

    // No folder: each table fails; a single file that cannot be made is one bare line.
    const std::string missing = dir.file("missing");
    const ExportRun noFolder = runExport(*file, kind(), missing, false);
    EXPECT_EQ(noFolder.log, (std::vector<std::string>{"<a]b> Failed: Unable to create file for export.",
                                                      "<A[B> Failed: Unable to create file for export.",
                                                      "<c> Failed: Unable to create file for export."}));
    const ExportRun noFile = runExport(*file, kind(), missing + "/x." + extension(), true);
    EXPECT_EQ(noFile.log, std::vector<std::string>{"Unable to create file for export."});
    EXPECT_EQ(noFile.successes, 0);
}

INSTANTIATE_TEST_SUITE_P(Kinds, WorkbookExport, testing::Values(ExportFileType::XLS, ExportFileType::XLSX),
                         [](const testing::TestParamInfo<ExportFileType> &info) {
                             return std::string(extensionOf(info.param));
                         });

} // namespace
} // namespace vellum
