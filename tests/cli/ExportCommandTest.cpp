#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include "export/exportRegistry.h"

#include <gtest/gtest.h>

#include <cstring>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;
using test::TempDir;

TEST(VellumCliExport, RefusesBadArgumentsBeforeWritingAnything)
{
    TempDir dir;
    const std::string db = fixturePath("features.mdb");
    const std::string out = dir.file("out");
    const std::string plainFile = dir.file("plain");
    {
        std::ofstream(plainFile) << "keep";
    }
    struct Case {
        std::vector<std::string> args;
        int status;
        const char *errContains;
    };
    const Case cases[] = {
        {{"export", db, out, "--format", "pdf"}, 2, "unknown format 'pdf'"},
        {{"export", db, out}, 2, "missing --format"},
        {{"export", db, "--format", "csv"}, 2, "expected FILE and OUTPUT"},
        {{"export", db, out, "--format", "csv", "--table", "Nope"}, 1, "unknown table 'Nope'"},
        {{"export", db, out, "--format", "txt", "--delimiter", "pipe"}, 2, "unknown delimiter 'pipe'"},
        {{"export", db, out, "--format", "csv", "--delimiter", "tab"}, 2, "unknown delimiter 'tab'"},
        {{"export", db, out, "--format", "csv", "--record-delimiter", "nl"}, 2, "unknown record-delimiter 'nl'"},
        {{"export", db, out, "--format", "csv", "--encoding", "KLINGON"}, 2, "unknown encoding 'KLINGON'"},
        {{"export", db, out, "--format", "xml", "--no-header"}, 2, "--no-header does not apply to --format xml"},
        {{"export", db, out, "--format", "csv", "--bogus"}, 2, "unknown option '--bogus'"},
        {{"export", db, out, "--format", "csv", "--bom", "--encoding", "ISO-8859-1"},
         2,
         "--bom applies to --encoding UTF-8 only"},
        {{"export", db, plainFile, "--format", "csv"}, 2, "is a file"},
        {{"export", fixturePath("missing.mdb"), out, "--format", "csv"}, 1, "cannot be opened"},
    };
    for (const Case &c : cases) {
        const auto result = runTool("vellum-cli", c.args);
        EXPECT_EQ(result.exitStatus, c.status) << c.errContains << "\n" << result.err;
        EXPECT_NE(result.err.find(c.errContains), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty()) << result.out;
        EXPECT_FALSE(std::filesystem::exists(out)) << c.errContains;
    }
    EXPECT_EQ(test::fileContents(plainFile), "keep");
}

TEST(VellumCliExport, OptionsOfOtherFormatsAreRefusedAndEveryOptionIsInTheHelp)
{
    TempDir dir;
    const std::string db = fixturePath("features.mdb");
    const std::string out = dir.file("out");
    const std::string help = runTool("vellum-cli", {"export", "--help"}).out;
    std::map<std::string, std::set<ExportFileType>> takenBy;
    for (const ExportCommandLineForm &form : exportCommandLineForms()) {
        const std::string head = std::string(form.flag) + (form.valueName ? std::string(" ") + form.valueName : "");
        EXPECT_NE(help.find("\n  " + head + "\n      " + form.help + " ["), std::string::npos) << head;
        takenBy[form.flag].insert(form.kinds.begin(), form.kinds.end());
    }
    for (const auto &[flag, kinds] : takenBy) {
        const bool valued = [&] {
            for (const ExportCommandLineForm &form : exportCommandLineForms())
                if (flag == form.flag)
                    return form.valueName != nullptr;
            return false;
        }();
        for (const ExportKindInfo &format : exportKinds()) {
            if (kinds.count(format.kind))
                continue;
            std::vector<std::string> args = {"export", db, out, "--format", format.name, flag};
            if (valued)
                args.push_back("x");
            const auto result = runTool("vellum-cli", args);
            EXPECT_EQ(result.exitStatus, 2) << flag << " " << format.name;
            EXPECT_NE(result.err.find("option " + flag + " does not apply to --format " + format.name),
                      std::string::npos)
                << result.err;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(VellumCliExport, WritesIntoANewFolderAndPrintsTheReport)
{
    TempDir dir;
    const std::string out = dir.file("new/nested");
    const auto result =
        runTool("vellum-cli", {"export", fixturePath("features.mdb"), out, "--format", "txt", "--table", "AllTypes",
                               "--delimiter", "semicolon", "--record-delimiter", "crlf", "--classic"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, "Export finished.\n1 table exported successfully.\n");
    EXPECT_EQ(test::fileContents(out + "/AllTypes.txt"),
              test::fileContents(fixturePath("export-golden/txt/AllTypes.txt")));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(out), std::filesystem::directory_iterator()), 1);

    // Every table of the file without --table; --decimal overrides the delimiter's symbol.
    const auto all = runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.file("all"), "--format", "xml",
                                            "--decimal", "<d>", "--classic"});
    ASSERT_EQ(all.exitStatus, 0) << all.err;
    EXPECT_EQ(all.out, "Export finished.\n14 tables exported successfully.\n");
    EXPECT_NE(test::fileContents(dir.file("all/AllTypes.xml")).find("<ColDouble>2<d>718281828459045</ColDouble>"),
              std::string::npos);
}

TEST(VellumCliExport, TextIsLosslessUnlessClassicIsAsked)
{
    TempDir dir;
    const std::string db = fixturePath("features.mdb");
    struct Case {
        std::vector<std::string> flags;
        const char *golden;
    };
    const Case cases[] = {
        {{}, "export-golden/lossless-csv/AllTypes.csv"},
        {{"--classic"}, "export-golden/csv/AllTypes.csv"},
    };
    for (const Case &c : cases) {
        const std::string out = dir.file(c.golden);
        std::vector<std::string> args = {"export", db, out, "--format", "csv", "--table", "AllTypes"};
        args.insert(args.end(), c.flags.begin(), c.flags.end());
        const auto result = runTool("vellum-cli", args);
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(test::fileContents(out + "/AllTypes.csv"), test::fileContents(fixturePath(c.golden))) << c.golden;
    }

    // A character the encoding lacks is an approximation: counted per value, status 3.
    const auto latin1 = runTool("vellum-cli", {"export", db, dir.file("latin1"), "--format", "csv", "--table",
                                               "AllTypes", "--encoding", "ISO-8859-1"});
    EXPECT_EQ(latin1.exitStatus, 3) << latin1.err;
    EXPECT_EQ(latin1.out, "Export finished.\n1 table exported successfully.\n<AllTypes> Warning: 4 values "
                          "approximated: texts with characters the chosen encoding cannot represent, written as "
                          "\"?\"\n");

    // The delimited-text options: a byte-order mark, every value quoted, NULL as a marker.
    const std::string out = dir.file("options");
    const auto result = runTool("vellum-cli", {"export", db, out, "--format", "txt", "--table", "AllTypes", "--bom",
                                               "--quote-all", "--null", "\\N", "--no-header"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const std::string text = test::fileContents(out + "/AllTypes.txt");
    EXPECT_EQ(text.substr(0, 3), "\xEF\xBB\xBF");
    EXPECT_EQ(text.substr(3, text.find('\n') - 2),
              "\"1\"\t\"false\"\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\t\\N\n");
}

TEST(VellumCliExport, AFileThatCannotBeCreatedIsALossWithStatusThree)
{
    TempDir dir;
    std::filesystem::create_directories(dir.file("out/table1.csv")); // a folder where the file would go
    const auto result = runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.file("out"), "--format",
                                               "csv", "--table", "table1", "--table", "Table2"});
    EXPECT_EQ(result.exitStatus, 3) << result.err;
    EXPECT_EQ(result.out,
              "Export finished.\n1 table exported successfully.\n<table1> Failed: Unable to create file for export.\n"
              "    Is a directory\n");
    EXPECT_TRUE(std::filesystem::exists(dir.file("out/Table2.csv")));
}

TEST(VellumCliExport, ListsEncodingsSortedByName)
{
    const auto result = runTool("vellum-cli", {"export", "--list-encodings"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_NE(result.out.find("4            UTF-8              Unicode (UTF-8)\n"), std::string::npos) << result.out;
    EXPECT_NE(result.out.find("30           MACINTOSH          Western (Mac OS Roman)\n"), std::string::npos);
    std::istringstream lines(result.out);
    std::string line, previous;
    while (std::getline(lines, line)) {
        const std::string name = line.substr(32);
        EXPECT_LE(previous, name);
        previous = name;
    }
}

TEST(VellumCliExport, InterruptTerminateAndHangUpStopTheExportAndDeleteTheCurrentFile)
{
    const std::string db = test::sharedPath("testdata/multi.mdb");
    if (db.empty())
        GTEST_SKIP() << "../shared/testdata/multi.mdb is not present";
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        SCOPED_TRACE(strsignal(signal));
        TempDir dir;
        const std::string out = dir.file("out");
        const std::string report = dir.file("report.txt");
        const pid_t pid = fork();
        if (pid == 0) {
            const int fd = open(report.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            dup2(fd, 1);
            const int devNull = open("/dev/null", O_WRONLY);
            dup2(devNull, 2);
            const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
            execl(cli.c_str(), cli.c_str(), "export", db.c_str(), out.c_str(), "--format", "csv", nullptr);
            _exit(127);
        }
        ASSERT_GT(pid, 0);
        // The first file appears once the database is loaded; three more tables are still to come.
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
        while (!std::filesystem::exists(out + "/Part1.csv") && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        kill(pid, signal);
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFEXITED(status)) << "status " << status;
        EXPECT_EQ(WEXITSTATUS(status), 3);

        const std::string text = test::fileContents(report);
        EXPECT_EQ(text.rfind("Export terminated.\n", 0), 0u) << text;
        const std::size_t at = text.find("> Failed: Terminated.\n");
        ASSERT_NE(at, std::string::npos) << text;
        const std::string stopped = text.substr(text.rfind('<', at) + 1, at - text.rfind('<', at) - 1);
        EXPECT_FALSE(std::filesystem::exists(out + "/" + stopped + ".csv")) << stopped;
        std::size_t written = 0;
        for (const char *name : {"Part1", "Part2", "Part3", "Part4"})
            written += std::filesystem::exists(out + "/" + name + ".csv") ? 1 : 0;
        EXPECT_LT(written, 4u);
        if (written > 0) {
            EXPECT_NE(
                text.find(std::to_string(written) + (written == 1 ? " table" : " tables") + " exported successfully."),
                std::string::npos)
                << text;
        }
    }
}

} // namespace
} // namespace vellum
