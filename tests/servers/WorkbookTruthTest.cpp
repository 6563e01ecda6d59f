// Lossless workbooks against the truth: every file of ../shared/corpus with tables, and every
// fixture of ../shared/testdata whose sidecar lists its rows, exported as .xlsx and .xls, read back with openpyxl and
// xlrd (tests/scripts/check_workbook_truth.py) and compared with what Jackcess reads from the same file. Date cells
// must read as dates, numbers as numbers, booleans as booleans; the values a workbook cannot hold exactly must be
// exactly the approximations the export counted.

#include "export/ExcelExport.h"
#include "export/ExportJob.h"
#include "export/XlsxExport.h"
#include "export/xls/sheetNames.h"
#include "export/xls/utf16.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"
#include "support/WorkbookReader.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vellum {
namespace {

class NoObserver : public ExportObserver {
public:
    void updateProgressPanel(const ExportJob &, std::size_t) override {}
    void exportThreadFinished(const ExportJob &) override {}
};

std::string sheetName(const std::string &text)
{
    std::u16string utf16;
    if (!utf8ToUtf16(text, utf16))
        return text;
    return utf16ToUtf8(xls::excelSheetName(utf16));
}

/// What the comparison needs of one export: the manifest entry and the counted approximations.
struct ExportedBook {
    nlohmann::json entry;
    std::map<std::string, std::size_t> approximations; ///< "workbook file|table|what"
};

/// Exports the chosen tables of `file` (all when `only` is empty) as one lossless workbook.
ExportedBook exportBook(TOrbMDBFile &file, ExportFileType kind, const std::string &path, const std::string &truthPath,
                        const std::set<std::string> &only)
{
    ExportJob job(file, nullptr, kind);
    for (std::size_t i = 0; i < job.entries().size(); ++i)
        job.setEntrySelected(i, only.empty() || only.count(job.entries()[i].tableName) > 0);
    job.mutableOptions().exportSingleFile = true;
    job.mutableOptions().lossless = true;
    job.setExportPath(path);
    NoObserver observer;
    EXPECT_TRUE(job.startExport(&observer));
    job.wait();
    for (const std::string &line : job.msgLog())
        EXPECT_NE(line.find(" Warning: "), std::string::npos) << path << ": " << line;

    const SpreadsheetLimits &limits = kind == ExportFileType::XLSX ? kXlsxLimits : kXlsLimits;
    const std::string workbookName = std::filesystem::path(path).filename().string();
    ExportedBook book;
    book.entry = {{"workbook", path},
                  {"truth", truthPath},
                  {"limit", limits.maxTextUnits},
                  {"digits", limits.numberDigits},
                  {"tables", nlohmann::json::array()}};
    const bool header = job.options().includeColumnHeader;
    for (const auto &table : file.tables()) {
        if (!only.empty() && !only.count(table->name()))
            continue;
        nlohmann::json sheets = nlohmann::json::array({sheetName(table->name())});
        const std::size_t rows = table->rowCount() + (header ? 1 : 0);
        for (std::size_t n = 2; (n - 1) * limits.rowsPerSheet < rows; ++n)
            sheets.push_back(sheetName(table->name() + "(" + std::to_string(n) + ")"));
        book.entry["tables"].push_back({{"name", table->name()}, {"sheets", sheets}});
    }
    for (const ExportApproximation &a : job.approximations())
        book.approximations[workbookName + "|" + a.tableName + "|" + a.what] += a.count;
    return book;
}

/// Runs the comparison script over the exported books and checks its findings.
void compareWithTruth(const std::vector<ExportedBook> &books, const std::string &dir, std::size_t minimumCells)
{
    nlohmann::json manifest = nlohmann::json::array();
    std::map<std::string, std::size_t> counted;
    for (const ExportedBook &book : books) {
        manifest.push_back(book.entry);
        for (const auto &[key, count] : book.approximations)
            counted[key] += count;
    }
    const std::string manifestPath = dir + "/manifest.json";
    std::ofstream(manifestPath) << manifest.dump();
    const test::ProcessResult result =
        test::runProcess({test::pythonWithWorkbookReaders(),
                          std::string(VELLUM_SOURCE_DIR) + "/tests/scripts/check_workbook_truth.py", manifestPath},
                         1200);
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const nlohmann::json found = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_FALSE(found.is_discarded()) << result.out.substr(0, 400);
    for (const auto &difference : found["differences"])
        ADD_FAILURE() << difference.get<std::string>();
    EXPECT_TRUE(found["differences"].empty());

    // Every approximation the script recognised is one the export counted, and the reverse;
    // tables whose truth lists only their first rows are left out of the count.
    std::set<std::string> truncated;
    for (const auto &t : found["truncated"])
        truncated.insert(t.get<std::string>());
    auto tableOf = [](const std::string &key) { return key.substr(0, key.rfind('|')); };
    std::map<std::string, std::size_t> recognised;
    for (const auto &[key, count] : found["approximations"].items())
        if (!truncated.count(tableOf(key)))
            recognised[key] = count.get<std::size_t>();
    std::map<std::string, std::size_t> expected;
    std::size_t total = 0;
    for (const auto &[key, count] : counted) {
        if (!truncated.count(tableOf(key)))
            expected[key] = count;
        total += count;
    }
    EXPECT_EQ(recognised, expected);
    std::map<std::string, std::size_t> byKind;
    for (const auto &[key, count] : counted)
        byKind[key.substr(key.rfind('|') + 1)] += count;
    for (const auto &[what, count] : byKind)
        std::printf("lossless workbooks: %zu values approximated: %s\n", count, what.c_str());
    const std::size_t cells = found["cells"].get<std::size_t>();
    std::printf("lossless workbooks: %zu books, %zu cells compared (%zu of complex columns of unknown kind not), "
                "%zu approximations counted, %zu differences\n",
                books.size(), cells, found["unread"].get<std::size_t>(), total, found["differences"].size());
    EXPECT_GE(cells, minimumCells);
}

TEST(WorkbookTruth, CorpusAsLosslessXlsxAndXls)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    const std::string corpusTruth = test::sharedPath("corpus-truth");
    const std::string corpus = test::sharedPath("corpus");
    if (corpusTruth.empty() || corpus.empty())
        GTEST_SKIP() << "../shared/corpus or ../shared/corpus-truth is absent";
    std::vector<std::filesystem::path> truthPaths;
    for (const auto &entry : std::filesystem::directory_iterator(corpusTruth))
        if (entry.path().extension() == ".json")
            truthPaths.push_back(entry.path());
    std::sort(truthPaths.begin(), truthPaths.end());
    std::size_t damaged = 0;
    for (const auto &entry : std::filesystem::directory_iterator(corpus))
        damaged += entry.path().filename().string().rfind("damaged_", 0) == 0;
    std::printf("lossless workbooks: %zu damaged corpus files skipped (they have no truth)\n", damaged);

    test::TempDir dir;
    std::vector<ExportedBook> books;
    for (const auto &truthPath : truthPaths) {
        std::ifstream in(truthPath);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << truthPath;
        const std::string fileName = truth["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (path.empty())
            continue;
        LoadOptions options;
        if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
            options.jet3CodePage = truth["codePage"];
        const std::string password = truth["password"].is_string() ? truth["password"].get<std::string>() : "";
        auto file = test::openInProcess(path, options, password);
        ASSERT_TRUE(file) << fileName;
        if (file->tables().empty())
            continue;
        for (const ExportFileType kind : {ExportFileType::XLSX, ExportFileType::XLS}) {
            const std::string path = dir.file(fileName + (kind == ExportFileType::XLSX ? ".xlsx" : ".xls"));
            books.push_back(exportBook(*file, kind, path, truthPath.string(), {}));
        }
    }
    compareWithTruth(books, dir.path(), 30000);
}

TEST(WorkbookTruth, FixturesAsLosslessXlsxAndXls)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    const std::string testdata = test::sharedPath("testdata");
    if (testdata.empty())
        GTEST_SKIP() << "../shared/testdata is absent";
    test::TempDir dir;
    std::vector<ExportedBook> books;
    std::vector<std::filesystem::path> sidecars;
    for (const auto &entry : std::filesystem::directory_iterator(testdata))
        if (entry.path().extension() == ".json")
            sidecars.push_back(entry.path());
    std::sort(sidecars.begin(), sidecars.end());
    for (const auto &sidecar : sidecars) {
        std::ifstream in(sidecar);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << sidecar;
        // Tables too large to list their rows are checked by their own tests.
        std::set<std::string> listed;
        for (const auto &table : truth["tables"])
            if (table.contains("rows"))
                listed.insert(table["name"].get<std::string>());
        if (listed.empty())
            continue;
        const std::string fileName = truth["file"];
        auto file = test::openInProcess(testdata + "/" + fileName);
        ASSERT_TRUE(file) << fileName;
        for (const ExportFileType kind : {ExportFileType::XLSX, ExportFileType::XLS}) {
            const std::string path = dir.file(fileName + (kind == ExportFileType::XLSX ? ".xlsx" : ".xls"));
            books.push_back(exportBook(*file, kind, path, sidecar.string(), listed));
        }
    }
    compareWithTruth(books, dir.path(), 1000);
}

} // namespace
} // namespace vellum
