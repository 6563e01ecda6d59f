// vellum-cli export --format xls|xlsx: single workbook or one per table, the header option,
// options that do not apply to workbooks, and lossless workbooks (the default) beside the
// classic ones (--classic).

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"
#include "support/WorkbookReader.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;

TEST(WorkbookExportCli, SingleWorkbookAndOnePerTable)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    for (const std::string format : {"xls", "xlsx"}) {
        test::TempDir dir;
        const std::string book = dir.file("all." + format);
        const auto all =
            runTool("vellum-cli", {"export", fixturePath("features.mdb"), book, "--format", format, "--classic"});
        ASSERT_EQ(all.exitStatus, 0) << all.err;
        EXPECT_EQ(all.out, "Export finished.\n14 tables exported successfully.\n");
        const test::ReadWorkbook read = test::readWorkbook(book);
        ASSERT_TRUE(read.ok) << read.error;
        ASSERT_EQ(read.sheets.size(), 14u) << format;
        EXPECT_EQ(read.sheets[0].name, "a_b") << format; // the table a]b, first in the file's order
        ASSERT_NE(read.sheets[0].at(0, 0), nullptr);
        EXPECT_EQ(read.sheets[0].at(0, 0)->value, "ID") << format;

        // --table picks one workbook per table by default; --single-file puts them in one.
        const auto some =
            runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.file("per"), "--format", format,
                                   "--table", "Orders", "--table", "Items", "--no-header", "--classic"});
        ASSERT_EQ(some.exitStatus, 0) << some.err;
        EXPECT_TRUE(std::filesystem::exists(dir.file("per/Orders." + format)));
        const test::ReadWorkbook items = test::readWorkbook(dir.file("per/Items." + format));
        ASSERT_TRUE(items.ok) << items.error;
        ASSERT_EQ(items.sheets.size(), 1u);
        ASSERT_NE(items.sheets[0].at(0, 0), nullptr);
        EXPECT_NE(items.sheets[0].at(0, 0)->value, "ItemID") << format; // no header row

        const std::string two = dir.file("two." + format);
        const auto joined =
            runTool("vellum-cli", {"export", fixturePath("features.mdb"), two, "--format", format, "--table", "Orders",
                                   "--table", "Items", "--single-file", "--classic"});
        ASSERT_EQ(joined.exitStatus, 0) << joined.err;
        const test::ReadWorkbook both = test::readWorkbook(two);
        ASSERT_TRUE(both.ok) << both.error;
        ASSERT_EQ(both.sheets.size(), 2u);
        EXPECT_EQ(both.sheets[0].name, "Items");
        EXPECT_EQ(both.sheets[1].name, "Orders");
    }
}

TEST(WorkbookExportCli, LosslessByDefaultWithItsApproximationsAndClassicOnRequest)
{
    VELLUM_REQUIRE_WORKBOOK_READERS();
    for (const std::string format : {"xls", "xlsx"}) {
        test::TempDir dir;
        const std::string lossless = dir.file("lossless." + format);
        const auto run = runTool(
            "vellum-cli", {"export", fixturePath("features.mdb"), lossless, "--format", format, "--table", "AllTypes"});
        // AllTypes holds dates of 1800 and Currency and Numeric extremes beyond a double's digits.
        EXPECT_EQ(run.exitStatus, 3) << run.err;
        EXPECT_NE(run.out.find("<AllTypes> Warning: 2 values approximated: dates before 1900 written as ISO text"),
                  std::string::npos)
            << run.out;
        const test::ReadWorkbook read = test::readWorkbook(lossless);
        ASSERT_TRUE(read.ok) << read.error;
        ASSERT_EQ(read.sheets.size(), 1u);
        const auto *flag = read.sheets[0].at(1, 1);
        const auto *date = read.sheets[0].at(3, 8);
        ASSERT_TRUE(flag && date) << format;
        EXPECT_EQ(flag->type, "boolean") << format;
        EXPECT_EQ(date->type, "date") << format;
        EXPECT_EQ(date->value, "2010-03-04T13:05:00") << format;

        const std::string classic = dir.file("classic." + format);
        const auto plain = runTool("vellum-cli", {"export", fixturePath("features.mdb"), classic, "--format", format,
                                                  "--table", "AllTypes", "--classic"});
        EXPECT_EQ(plain.exitStatus, 0) << plain.err;
        const test::ReadWorkbook old = test::readWorkbook(classic);
        ASSERT_TRUE(old.ok) << old.error;
        ASSERT_EQ(old.sheets.size(), 1u);
        const auto *oldDate = old.sheets[0].at(3, 8);
        ASSERT_NE(oldDate, nullptr);
        EXPECT_EQ(oldDate->type, "text") << format;
        EXPECT_EQ(oldDate->value, "03/04/2010 13:05:00") << format;
    }
}

TEST(WorkbookExportCli, RefusesOptionsOfOtherFormatsAndAFolderAsTheWorkbook)
{
    test::TempDir dir;
    const auto delimiter = runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.file("x.xls"), "--format",
                                                  "xls", "--delimiter", "tab"});
    EXPECT_EQ(delimiter.exitStatus, 2);
    EXPECT_NE(delimiter.err.find("--delimiter does not apply to --format xls"), std::string::npos) << delimiter.err;

    const auto folder = runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.path(), "--format", "xlsx"});
    EXPECT_EQ(folder.exitStatus, 2);
    EXPECT_NE(folder.err.find("is a folder"), std::string::npos) << folder.err;
}

} // namespace
} // namespace vellum
