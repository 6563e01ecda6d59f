// The fault-injection suite: vellum-cli run against outputs that fail (a full device, a file
// size limit, a full small file system, closed and broken standard output), killed in the middle
// of an export, run twice at once on one
// output, and run without a temporary folder. Every case checks the exit status, the message and
// what is left on disk: a failure is never reported as a success, and no file under its final
// name is ever partial.

#include "support/CliScript.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/mount.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace vellum {
namespace {

namespace fs = std::filesystem;
using test::ProcessResult;
using test::TempDir;

using test::folderContents;
using test::isCharacterDevice;
using test::runScript;

std::string bigFixture()
{
    return test::sharedPath("testdata/big.mdb");
}

TEST(OutputFaults, AFullDeviceIsNeverASuccess)
{
    const std::string features = test::fixturePath("features.mdb");
    struct Case {
        const char *label;
        std::string script;
        const char *message;
    };
    const std::vector<Case> cases = {
        {"rows", "\"$CLI\" rows \"$1\" AllTypes > /dev/full", "(No space left on device)"},
        {"rows --json", "\"$CLI\" rows \"$1\" AllTypes --json > /dev/full", "(No space left on device)"},
        {"schema --json", "\"$CLI\" schema \"$1\" --json > /dev/full", "(No space left on device)"},
        {"list", "\"$CLI\" list \"$1\" > /dev/full", "(No space left on device)"},
        {"sql script", "\"$CLI\" export \"$1\" /dev/full --format sql", "Unable to write file for export."},
        {"xls workbook", "\"$CLI\" export \"$1\" /dev/full --format xls", "Unable to write file for export."},
        {"xlsx workbook", "\"$CLI\" export \"$1\" /dev/full --format xlsx", "No space left on device"},
        {"sqlite database", "\"$CLI\" export \"$1\" /dev/full --format sqlite", "is not a regular file"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.label);
        const ProcessResult result = runScript(c.script, {features});
        EXPECT_NE(result.exitStatus, 0);
        EXPECT_EQ(result.out.find("exported successfully"), std::string::npos) << result.out;
        EXPECT_NE((result.out + result.err).find(c.message), std::string::npos) << result.out << result.err;
        EXPECT_TRUE(isCharacterDevice("/dev/full")) << "the device is never removed";
    }
}

TEST(OutputFaults, AFileSizeLimitFailsTheTableAndLeavesNothingPartial)
{
    TempDir dir;
    const std::string out = dir.file("out");
    // A 4 KiB file size limit (SIGXFSZ ignored, so a write fails with EFBIG as on a full disk):
    // the small tables fit, AllTypes does not.
    const ProcessResult exported =
        runScript("trap '' XFSZ; ulimit -f 4; exec \"$CLI\" export \"$1\" \"$2\" --format csv",
                  {test::fixturePath("features.mdb"), out});
    EXPECT_NE(exported.exitStatus, 0);
    EXPECT_NE(exported.out.find("<AllTypes> Failed: Unable to write file for export."), std::string::npos)
        << exported.out;
    const auto files = folderContents(out);
    EXPECT_EQ(files.count("AllTypes.csv"), 0u);
    EXPECT_EQ(files.at("table1.csv").substr(0, 1), "\"") << "the tables that fit are written";
    for (const auto &[name, bytes] : files)
        EXPECT_NE(name.front(), '.') << "a temporary file was left: " << name;

    // extract: the 300,000-byte payload cannot be written; nothing of it is left.
    const std::string blobs = dir.file("blobs");
    const ProcessResult extracted = runScript("trap '' XFSZ; ulimit -f 64; exec \"$CLI\" extract \"$1\" Blobs \"$2\"",
                                              {test::fixturePath("ole.mdb"), blobs});
    EXPECT_NE(extracted.exitStatus, 0);
    EXPECT_NE(extracted.err.find("cannot write"), std::string::npos) << extracted.err;
    const auto written = folderContents(blobs);
    EXPECT_FALSE(written.empty()) << "the small payloads are written";
    for (const auto &[name, bytes] : written) {
        EXPECT_NE(name.front(), '.') << "a temporary file was left: " << name;
        EXPECT_LT(bytes.size(), 64u * 1024) << name;
        EXPECT_FALSE(bytes.empty()) << "an empty file was left: " << name;
    }
}

TEST(OutputFaults, AFullSmallFileSystemFailsTheWrite)
{
    TempDir dir;
    const std::string mountPoint = dir.file("small");
    fs::create_directory(mountPoint);
    if (mount("vellum-test", mountPoint.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "cannot mount a small tmpfs here (" << std::strerror(errno)
                     << "): the full-file-system case is skipped; the file size limit case covers the same path";
    struct Unmount {
        std::string path;
        ~Unmount() { umount2(path.c_str(), MNT_DETACH); }
    } unmount{mountPoint};

    // Filled before the write: 8 KiB stay free, the script needs about 20 KiB.
    {
        std::ofstream filler(mountPoint + "/filler", std::ios::binary);
        filler << std::string(56 * 1024, 'x');
    }
    const ProcessResult result = runScript("exec \"$CLI\" export \"$1\" \"$2\" --format sql",
                                           {test::fixturePath("features.mdb"), mountPoint + "/features.sql"});
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_NE(result.out.find("Unable to write file for export."), std::string::npos) << result.out;
    const auto left = folderContents(mountPoint);
    EXPECT_EQ(left.size(), 1u) << "no partial script, no temporary file";
    EXPECT_EQ(left.count("filler"), 1u);
}

TEST(OutputFaults, ClosedAndBrokenStandardOutput)
{
    const std::string features = test::fixturePath("features.mdb");
    const ProcessResult closed = runScript("exec \"$CLI\" list \"$1\" >&-", {features});
    EXPECT_NE(closed.exitStatus, 0);
    EXPECT_NE(closed.err.find("the output could not be written completely"), std::string::npos) << closed.err;

    const std::string big = bigFixture();
    if (big.empty())
        GTEST_SKIP() << "../shared/testdata/big.mdb is absent: the broken-pipe case is skipped";
    // A reader that stops early: vellum-cli ends quietly, as any tool in a pipe does.
    const ProcessResult broken =
        runScript("\"$CLI\" rows \"$1\" Big | head -c 100 > /dev/null; echo \"status ${PIPESTATUS[0]}\"", {big});
    EXPECT_EQ(broken.out, "status 141\n");
    EXPECT_EQ(broken.err, "");
}

TEST(OutputFaults, AKilledExportLeavesThePreviousFileOrNothing)
{
    const std::string big = bigFixture();
    if (big.empty())
        GTEST_SKIP() << "../shared/testdata/big.mdb is absent: the killed-export case is skipped";
    TempDir dir;
    const std::string reference = dir.file("reference");
    ASSERT_EQ(runScript("exec \"$CLI\" export \"$1\" \"$2\" --format csv", {big, reference}).exitStatus, 0);
    const std::string complete = test::fileContents(reference + "/Big.csv");
    ASSERT_GT(complete.size(), 10'000'000u);

    for (const char *signal : {"TERM", "KILL"}) {
        for (const char *delay : {"0.4", "1", "2"}) {
            SCOPED_TRACE(std::string(signal) + " after " + delay + " s");
            // Into a folder holding a complete earlier export, and into an empty one.
            const std::string again = dir.file(std::string("again-") + signal + delay);
            fs::create_directory(again);
            fs::copy_file(reference + "/Big.csv", again + "/Big.csv");
            const std::string fresh = dir.file(std::string("fresh-") + signal + delay);
            const ProcessResult result =
                runScript("timeout --preserve-status -s \"$3\" \"$4\" \"$CLI\" export \"$1\" \"$2\" --format csv & "
                          "timeout --preserve-status -s \"$3\" \"$4\" \"$CLI\" export \"$1\" \"$5\" --format csv; wait",
                          {big, again, signal, delay, fresh});
            EXPECT_EQ(test::fileContents(again + "/Big.csv"), complete);
            if (fs::exists(fresh + "/Big.csv")) {
                EXPECT_EQ(test::fileContents(fresh + "/Big.csv"), complete);
            }
            if (std::string(signal) == "TERM") {
                // A stopped run cleans up after itself.
                for (const std::string &folder : {again, fresh}) {
                    if (!fs::exists(folder))
                        continue;
                    for (const auto &[name, bytes] : folderContents(folder)) {
                        EXPECT_EQ(name, "Big.csv");
                    }
                }
            }
        }
    }

    // A SQLite export stopped midway leaves no database.
    const std::string database = dir.file("stopped.sqlite");
    runScript("exec timeout --preserve-status -s TERM 1 \"$CLI\" export \"$1\" \"$2\" --format sqlite",
              {big, database});
    if (fs::exists(database)) {
        const ProcessResult check = runScript("sqlite3 \"$1\" 'SELECT count(*) FROM Big'", {database});
        EXPECT_EQ(check.out, "200000\n") << "a database under its name is complete";
    }
}

TEST(OutputFaults, ADatabaseReplacesARegularFileOnlyWhenComplete)
{
    TempDir dir;
    const std::string features = test::fixturePath("features.mdb");
    const std::string database = dir.file("out.sqlite");
    {
        std::ofstream previous(database);
        previous << "not a database";
    }
    const ProcessResult replaced =
        runScript("exec \"$CLI\" export \"$1\" \"$2\" --format sqlite --classic", {features, database});
    EXPECT_EQ(replaced.exitStatus, 0) << replaced.out << replaced.err;
    EXPECT_EQ(runScript("sqlite3 \"$1\" 'SELECT count(*) FROM table1'", {database}).exitStatus, 0);
    EXPECT_EQ(folderContents(dir.path()).size(), 1u) << "no temporary file is left";
}

TEST(OutputFaults, TwoRunsOnOneOutputGiveOneWholeFile)
{
    TempDir dir;
    const std::string features = test::fixturePath("features.mdb");
    const std::string reference = dir.file("reference.sql");
    ASSERT_EQ(runScript("exec \"$CLI\" export \"$1\" \"$2\" --format sql --classic", {features, reference}).exitStatus,
              0);
    const std::string shared = dir.file("shared.sql");
    const ProcessResult both =
        runScript("for i in 1 2 3 4; do \"$CLI\" export \"$1\" \"$2\" --format sql --classic > /dev/null "
                  "|| echo failed & done; wait",
                  {features, shared});
    EXPECT_EQ(both.out, "");
    EXPECT_EQ(test::fileContents(shared), test::fileContents(reference)) << "the last rename wins, whole";
    EXPECT_EQ(folderContents(dir.path()).size(), 2u) << "no temporary file is left";
}

TEST(OutputFaults, AMissingTemporaryFolderChangesNoValue)
{
    TempDir dir;
    const std::string ole = test::fixturePath("ole.mdb");
    const std::string usual = dir.file("usual");
    const std::string without = dir.file("without");
    ASSERT_EQ(runScript("exec \"$CLI\" extract \"$1\" Blobs \"$2\"", {ole, usual}).exitStatus, 0);
    const ProcessResult result =
        runScript("TMPDIR=/nonexistent/vellum exec \"$CLI\" extract \"$1\" Blobs \"$2\"", {ole, without});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const auto expected = folderContents(usual);
    EXPECT_EQ(folderContents(without), expected);
    // The Word document's .docx comes out of its compound document, read in memory.
    bool docx = false;
    for (const auto &[name, bytes] : expected)
        docx = docx || (name.size() > 5 && name.substr(name.size() - 5) == ".docx");
    EXPECT_TRUE(docx);
}

} // namespace
} // namespace vellum
