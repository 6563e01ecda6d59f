#include "export/ExportJob.h"

#include "ExportTestTables.h"
#include "export/ExportRoutines.h"
#include "export/exportPaths.h"
#include "support/FileContents.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vellum {
namespace {

using test::makeFile;
using test::makeNumberTable;
using test::TempDir;

/// Records every call as a line and can stop the job at a chosen point.
class RecordingObserver : public ExportObserver {
public:
    void updateProgressPanel(const ExportJob &job, std::size_t index) override
    {
        events.push_back("progress " + std::to_string(index) + " " +
                         exportProgressLabel(job.entries()[index].tableName, index, job.entries().size()));
        if (stopAtProgress && index == *stopAtProgress)
            stopTarget->stop();
    }
    void updateRowProgress(const ExportJob &, std::size_t rowsDone, std::size_t rowCount) override
    {
        events.push_back("rows " + std::to_string(rowsDone) + "/" + std::to_string(rowCount));
        if (stopAtRows && rowsDone >= *stopAtRows)
            stopTarget->stop();
    }
    void exportThreadFinished(const ExportJob &) override { events.push_back("finished"); }

    std::vector<std::string> events;
    std::optional<std::size_t> stopAtProgress;
    std::optional<std::size_t> stopAtRows;
    ExportJob *stopTarget = nullptr;
};

std::unique_ptr<TOrbMDBFile> threeTableFile()
{
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeNumberTable("A", 2));
    tables.push_back(makeNumberTable("B", 1));
    tables.push_back(makeNumberTable("C", 3));
    return makeFile("db", std::move(tables));
}

TEST(ExportJob, WritesTheChosenTablesWithProgressFromZero)
{
    TempDir dir;
    auto file = threeTableFile();
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    ASSERT_EQ(job.entries().size(), 3u);
    EXPECT_EQ(job.selectedTableCount(), 3);
    EXPECT_TRUE(job.wholeFile());
    job.setEntrySelected(2, false);
    EXPECT_EQ(job.selectedTableCount(), 2);
    EXPECT_FALSE(job.canStartExport()) << "no path yet";
    job.setExportPath(dir.path());
    EXPECT_TRUE(job.canStartExport());

    RecordingObserver observer;
    ASSERT_TRUE(job.startExport(&observer));
    EXPECT_FALSE(job.startExport(&observer)) << "a job runs once";
    job.wait();

    EXPECT_EQ(observer.events,
              (std::vector<std::string>{"progress 0 Exporting A... <0 of 2>", "rows 2/2",
                                        "progress 1 Exporting B... <1 of 2>", "rows 1/1", "finished"}));
    EXPECT_EQ(job.entries().size(), 2u) << "unselected entries are removed at the start";
    EXPECT_EQ(test::fileContents(dir.file("A.csv")), "\"n\"\n1\n2\n");
    EXPECT_EQ(test::fileContents(dir.file("B.csv")), "\"n\"\n1\n");
    EXPECT_FALSE(std::filesystem::exists(dir.file("C.csv")));
    const ExportReport report = job.report();
    EXPECT_EQ(report.title, "Export finished.");
    EXPECT_EQ(report.message, "2 tables exported successfully.");
}

TEST(ExportJob, OneTableUsesTheSingularAndItsEditedFileName)
{
    TempDir dir;
    auto file = threeTableFile();
    ExportJob job(*file, file->tables()[1].get(), ExportFileType::XML);
    EXPECT_FALSE(job.wholeFile());
    EXPECT_EQ(job.selectedTableCount(), 1);
    EXPECT_FALSE(job.entries()[0].selected);
    EXPECT_TRUE(job.entries()[1].selected);
    EXPECT_EQ(job.entries()[1].exportFileName, "B.xml");
    job.setEntryFileName(1, "renamed.xml");
    job.setExportPath(dir.path());
    RecordingObserver observer;
    ASSERT_TRUE(job.startExport(&observer));
    job.wait();
    EXPECT_EQ(test::fileContents(dir.file("renamed.xml")),
              "<?xml version=\"1.0\"?>\n<RECORDS>\n<RECORD>\n\t<n>1</n>\n</RECORD>\n</RECORDS>\n");
    EXPECT_EQ(job.report().message, "1 table exported successfully.");
}

TEST(ExportJob, StopBetweenRowsDeletesTheFileAndEndsTheExport)
{
    TempDir dir;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeNumberTable("Big", 10000));
    tables.push_back(makeNumberTable("Next", 1));
    auto file = makeFile("db", std::move(tables));
    ExportJob job(*file, nullptr, ExportFileType::TXT);
    job.setExportPath(dir.path());
    RecordingObserver observer;
    observer.stopAtRows = 4096;
    observer.stopTarget = &job;
    ASSERT_TRUE(job.startExport(&observer));
    job.wait();

    EXPECT_EQ(observer.events,
              (std::vector<std::string>{"progress 0 Exporting Big... <0 of 2>", "rows 4096/10000", "finished"}));
    EXPECT_FALSE(std::filesystem::exists(dir.file("Big.txt")));
    EXPECT_FALSE(std::filesystem::exists(dir.file("Next.txt")));
    EXPECT_EQ(job.successTableCount(), 0);
    const ExportReport report = job.report();
    EXPECT_EQ(report.title, "Export terminated.");
    EXPECT_EQ(report.message, "<Big> Failed: Terminated.");
}

TEST(ExportJob, NamesThatCollideAfterSanitisingGetDistinctFiles)
{
    TempDir dir;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeNumberTable("ta/le1", 1));
    tables.push_back(makeNumberTable("ta_le1", 2));
    tables.push_back(makeNumberTable("ta_le1.csv", 3)); // its file would be "ta_le1.csv.csv"
    auto file = makeFile("db", std::move(tables));
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    job.setExportPath(dir.path());
    RecordingObserver observer;
    ASSERT_TRUE(job.startExport(&observer));
    job.wait();

    // The first of the two in the job keeps the plain name; nothing is overwritten.
    const bool slashFirst = job.entries()[0].tableName == "ta/le1";
    const std::string oneRow = "\"n\"\n1\n";
    const std::string twoRows = "\"n\"\n1\n2\n";
    EXPECT_EQ(test::fileContents(dir.file("ta_le1.csv")), slashFirst ? oneRow : twoRows);
    EXPECT_EQ(test::fileContents(dir.file("ta_le1 (2).csv")), slashFirst ? twoRows : oneRow);
    EXPECT_EQ(test::fileContents(dir.file("ta_le1.csv.csv")), "\"n\"\n1\n2\n3\n");
    EXPECT_EQ(job.successTableCount(), 3);
    EXPECT_EQ(job.report().message, "3 tables exported successfully.\n<" +
                                        std::string(slashFirst ? "ta_le1" : "ta/le1") +
                                        "> Warning: written as \"ta_le1 (2).csv\": another table's file is named "
                                        "\"ta_le1.csv\"");
}

TEST(ExportJob, AStoppedTableKeepsTheFileThatWasThereBefore)
{
    TempDir dir;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(makeNumberTable("Big", 10000));
    auto file = makeFile("db", std::move(tables));
    {
        std::ofstream previous(dir.file("Big.csv"));
        previous << "an earlier export\n";
    }
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    job.setExportPath(dir.path());
    RecordingObserver observer;
    observer.stopAtRows = 4096;
    observer.stopTarget = &job;
    ASSERT_TRUE(job.startExport(&observer));
    job.wait();
    EXPECT_EQ(test::fileContents(dir.file("Big.csv")), "an earlier export\n");
    // Nothing else is left in the folder: the temporary file went with the stop.
    std::size_t entries = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(dir.path()))
        ++entries;
    EXPECT_EQ(entries, 1u);
}

TEST(ExportJob, StopDuringTheProgressCallKeepsFinishedTables)
{
    TempDir dir;
    auto file = threeTableFile();
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    job.setExportPath(dir.path());
    RecordingObserver observer;
    observer.stopAtProgress = 1;
    observer.stopTarget = &job;
    ASSERT_TRUE(job.startExport(&observer));
    job.wait();
    EXPECT_TRUE(std::filesystem::exists(dir.file("A.csv")));
    EXPECT_FALSE(std::filesystem::exists(dir.file("B.csv")));
    EXPECT_FALSE(std::filesystem::exists(dir.file("C.csv")));
    EXPECT_EQ(job.report().title, "Export terminated.");
    EXPECT_EQ(job.report().message, "1 table exported successfully.\n<B> Failed: Terminated.");
}

TEST(ExportJob, ThirteenUnwritableTablesGiveTenLinesAndACount)
{
    TempDir dir;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    for (int i = 1; i <= 13; ++i)
        tables.push_back(makeNumberTable("T" + std::to_string(100 + i), 1));
    auto file = makeFile("db", std::move(tables));
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    job.setExportPath(dir.file("no/such/folder"));
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
    EXPECT_EQ(job.msgLog().size(), 13u);
    std::string expected;
    for (int i = 1; i <= 10; ++i)
        expected += (i > 1 ? "\n" : "") + std::string("<T") + std::to_string(100 + i) +
                    "> Failed: Unable to create file for export.\n    No such file or directory";
    expected += "\n\u2026and 3 more.";
    EXPECT_EQ(job.report().title, "Export finished.");
    EXPECT_EQ(job.report().message, expected);
}

TEST(ExportJob, SubstitutedCharactersAreLoggedOncePerTable)
{
    TempDir dir;
    std::vector<std::unique_ptr<TOrbMDBTable>> tables;
    tables.push_back(test::makeTable("Greek", {{"w", "Text"}}, {{"αβ"}, {"γ"}}));
    tables.push_back(test::makeTable("Plain", {{"w", "Text"}}, {{"abc"}}));
    auto file = makeFile("db", std::move(tables));
    ExportJob job(*file, nullptr, ExportFileType::CSV);
    job.mutableOptions().encoding = 5;
    job.setExportPath(dir.path());
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
    EXPECT_EQ(test::fileContents(dir.file("Greek.csv")), "\"w\"\n\"??\"\n\"?\"\n");
    EXPECT_EQ(job.report().message,
              "2 tables exported successfully.\n"
              "<Greek> Warning: 3 characters that the chosen encoding cannot represent were written as \"?\".");
}

TEST(ExportJob, KindWithoutRoutineStartsNothing)
{
    auto file = threeTableFile();
    ExportJob job(*file, nullptr, static_cast<ExportFileType>(99));
    job.setExportPath("/tmp");
    RecordingObserver observer;
    EXPECT_FALSE(job.startExport(&observer));
    job.wait();
    EXPECT_TRUE(observer.events.empty());
    EXPECT_EQ(job.entries().size(), 3u);
}

TEST(ExportReport, TitlesCountsAndLogLines)
{
    const std::vector<std::string> twelve(12, "x");
    struct Case {
        bool terminated;
        std::int64_t successes;
        std::vector<std::string> log;
        const char *title;
        const char *message;
    };
    const Case cases[] = {
        {false, 0, {}, "Export finished.", ""},
        {false, 1, {}, "Export finished.", "1 table exported successfully."},
        {false, 2, {}, "Export finished.", "2 tables exported successfully."},
        {true, 0, {"<T> Failed: Terminated."}, "Export terminated.", "<T> Failed: Terminated."},
        {false, 3, {"a", "b"}, "Export finished.", "3 tables exported successfully.\na\nb"},
        {false, 0, std::vector<std::string>(10, "x"), "Export finished.", "x\nx\nx\nx\nx\nx\nx\nx\nx\nx"},
        {false, 1, twelve, "Export finished.",
         "1 table exported successfully.\nx\nx\nx\nx\nx\nx\nx\nx\nx\nx\n\u2026and 2 more."},
    };
    for (const Case &c : cases) {
        const ExportReport report = makeExportReport(c.terminated, c.successes, c.log);
        EXPECT_EQ(report.title, c.title);
        EXPECT_EQ(report.message, c.message);
    }
    EXPECT_EQ(exportFailureLine("Orders", kExportReasonUnableToCreateFile),
              "<Orders> Failed: Unable to create file for export.");
}

TEST(ExportPaths, SingleFileRewritingAndEntryNames)
{
    struct Case {
        const char *path;
        bool singleFile;
        ExportFileType kind;
        const char *expected;
    };
    const Case cases[] = {
        {"/tmp/out", true, ExportFileType::XLS, "/tmp/out/db.xls"},
        {"/tmp/out/", true, ExportFileType::SQL, "/tmp/out/db.sql"},
        {"/tmp/out", true, ExportFileType::SQLite, "/tmp/out/db.sqlite"},
        {"/tmp/out/db.xls", false, ExportFileType::XLS, "/tmp/out"},
        {"/tmp/out/db.XLS", false, ExportFileType::XLS, "/tmp/out"},
        {"/tmp/out/db.sql", false, ExportFileType::XLS, "/tmp/out/db.sql"},
        {"/tmp/out", false, ExportFileType::XLS, "/tmp/out"},
        {"/db.xls", false, ExportFileType::XLS, "/"},
        {"", true, ExportFileType::XLS, ""},
    };
    for (const Case &c : cases)
        EXPECT_EQ(updateExportSingleFilePath(c.path, c.singleFile, "db", c.kind), c.expected) << c.path;
    EXPECT_EQ(exportPathLabel(true), "Export file:");
    EXPECT_EQ(exportPathLabel(false), "Export path:");

    EXPECT_EQ(ExportEntry::exportEntryWithTableName("Orders", ExportFileType::SQLite).exportFileName, "Orders");
    EXPECT_EQ(ExportEntry::exportEntryWithTableName("Orders", ExportFileType::TXT).exportFileName, "Orders.txt");
    EXPECT_FALSE(ExportEntry::exportEntryWithTableName("Orders", ExportFileType::CSV).selected);
    EXPECT_EQ(fileExtensionByExportFileType(ExportFileType::SQLite), "sqlite");
    EXPECT_EQ(fileExtensionByExportFileType(static_cast<ExportFileType>(9)), std::nullopt);
    ExportEntry entry;
    entry.exportFileName = "a.csv";
    EXPECT_EQ(exportOutputPath("/out", entry), "/out/a.csv");
    EXPECT_EQ(folderSafeFileName("a/b.csv"), "a_b.csv");
    EXPECT_EQ(folderSafeFileName(".."), "__");
}

TEST(ExportOptions, DefaultsPerKindAndTheWizardRules)
{
    const ExportOptions csv = ExportOptions::defaultsFor(ExportFileType::CSV, true);
    EXPECT_TRUE(csv.includeColumnHeader);
    EXPECT_EQ(csv.fieldDelimiterTag, kFieldDelimiterComma);
    EXPECT_EQ(csv.recordDelimiterTag, kRecordDelimiterLF);
    EXPECT_EQ(csv.decimalSymbol, ".");
    EXPECT_EQ(csv.encoding, 4u);
    EXPECT_FALSE(csv.exportSingleFile);
    EXPECT_EQ(ExportOptions::defaultsFor(ExportFileType::TXT, true).fieldDelimiterTag, kFieldDelimiterTab);
    EXPECT_FALSE(ExportOptions::defaultsFor(ExportFileType::XML, true).includeColumnHeader);
    EXPECT_TRUE(ExportOptions::defaultsFor(ExportFileType::XLS, true).exportSingleFile);
    EXPECT_FALSE(ExportOptions::defaultsFor(ExportFileType::SQL, false).exportSingleFile);
    EXPECT_TRUE(ExportOptions::defaultsFor(ExportFileType::SQLite, false).exportSingleFile);

    ExportOptions options = csv;
    options.changeFieldDelimiter(kFieldDelimiterSemicolon);
    EXPECT_EQ(options.decimalSymbol, ",");
    options.changeFieldDelimiter(kFieldDelimiterTab);
    EXPECT_EQ(options.decimalSymbol, ",") << "other choices leave the symbol alone";
    options.changeFieldDelimiter(kFieldDelimiterComma);
    EXPECT_EQ(options.decimalSymbol, ".");

    EXPECT_TRUE(enableOkButtonCheck("/out", 1, csv));
    EXPECT_FALSE(enableOkButtonCheck("", 1, csv));
    EXPECT_FALSE(enableOkButtonCheck("/out", 0, csv));
    options.exportStructure = false;
    options.exportData = false;
    EXPECT_FALSE(enableOkButtonCheck("/out", 1, options));
    options.exportData = true;
    EXPECT_TRUE(enableOkButtonCheck("/out", 1, options));
}

} // namespace
} // namespace vellum
