// Exports into what is not a regular file: device nodes of the null and full kinds, named pipes,
// links to devices, folders, and the standard output ("-"). A device or pipe is written into
// and always left in place; a kind that needs a real file refuses it before writing anything.

#include "support/CliScript.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <fstream>
#include <string>
#include <vector>

namespace vellum {
namespace {

using test::isCharacterDevice;
using test::ProcessResult;
using test::runScript;
using test::TempDir;

/// An export kind with the arguments that make it write one stream of bytes. The classic output
/// is used: the lossless one of features.mdb approximates some values, which exits 3.
struct StreamKind {
    const char *format;
    std::vector<std::string> arguments; ///< after FILE OUTPUT
    const char *fileName;               ///< what a file export into a folder writes
};

const std::vector<StreamKind> &streamKinds()
{
    static const std::vector<StreamKind> kinds = {
        {"csv", {"--format", "csv", "--classic", "--table", "Customers"}, "Customers.csv"},
        {"txt", {"--format", "txt", "--classic", "--table", "Customers"}, "Customers.txt"},
        {"xml", {"--format", "xml", "--classic", "--table", "Customers"}, "Customers.xml"},
        {"sql", {"--format", "sql", "--dialect", "postgresql", "--classic"}, "features.sql"},
        {"xls", {"--format", "xls", "--classic"}, "features.xls"},
        {"xlsx", {"--format", "xlsx", "--classic"}, "features.xlsx"},
    };
    return kinds;
}

std::string joined(const std::vector<std::string> &words)
{
    std::string text;
    for (const std::string &word : words)
        text += " '" + word + "'";
    return text;
}

/// The bytes a kind writes into a regular file: the one file of a folder export.
std::string fileExportBytes(const StreamKind &kind, const TempDir &dir)
{
    const std::string folder = dir.file(std::string("file-") + kind.format);
    const bool singleFile = std::string(kind.format) == "sql" || std::string(kind.format).rfind("xls", 0) == 0;
    const std::string output = singleFile ? folder + "/" + kind.fileName : folder;
    const ProcessResult run =
        runScript("mkdir -p \"$2\" && exec \"$CLI\" export \"$1\" \"$3\"" + joined(kind.arguments),
                  {test::fixturePath("features.mdb"), folder, output});
    EXPECT_EQ(run.exitStatus, 0) << kind.format << run.err;
    return test::fileContents(folder + "/" + kind.fileName);
}

bool makeDevice(const std::string &path, unsigned minor)
{
    return mknod(path.c_str(), S_IFCHR | 0666, makedev(1, minor)) == 0;
}

bool isFifo(const std::string &path)
{
    struct stat st {};
    return stat(path.c_str(), &st) == 0 && S_ISFIFO(st.st_mode);
}

bool isLink(const std::string &path)
{
    struct stat st {};
    return lstat(path.c_str(), &st) == 0 && S_ISLNK(st.st_mode);
}

/// Two outputs of one kind hold the same export. A workbook records the second it was made in
/// docProps/core.xml, so xlsx files are compared member by member without that one.
bool sameExport(const StreamKind &kind, const std::string &a, const std::string &b, const TempDir &dir)
{
    if (std::string(kind.format) != "xlsx")
        return a == b;
    const std::string first = dir.file("compare-a.xlsx");
    const std::string second = dir.file("compare-b.xlsx");
    std::ofstream(first, std::ios::binary) << a;
    std::ofstream(second, std::ios::binary) << b;
    const ProcessResult compared =
        runScript("exec python3 -c 'import sys, zipfile\n"
                  "def members(path):\n"
                  "    with zipfile.ZipFile(path) as z:\n"
                  "        return {n: z.read(n) for n in z.namelist() if n != \"docProps/core.xml\"}\n"
                  "sys.exit(0 if members(sys.argv[1]) == members(sys.argv[2]) else 1)' \"$1\" \"$2\"",
                  {first, second});
    return compared.exitStatus == 0;
}

TEST(StreamOutputs, StandardOutputAndAPipeGetTheBytesOfAFileExport)
{
    TempDir dir;
    const std::string features = test::fixturePath("features.mdb");
    for (const StreamKind &kind : streamKinds()) {
        const std::string expected = fileExportBytes(kind, dir);
        ASSERT_FALSE(expected.empty()) << kind.format;

        // "-" into a reader; the report goes to standard error.
        const ProcessResult piped = runScript(
            "\"$CLI\" export \"$1\" -" + joined(kind.arguments) + " | cat; exit ${PIPESTATUS[0]}", {features});
        EXPECT_EQ(piped.exitStatus, 0) << kind.format << piped.err;
        EXPECT_TRUE(sameExport(kind, piped.out, expected, dir))
            << kind.format << ": standard output differs from the file";
        EXPECT_NE(piped.err.find("exported successfully"), std::string::npos) << kind.format;

        // A named pipe with a reader: written into, left in place.
        const std::string fifo = dir.file(std::string("pipe-") + kind.format);
        ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
        const std::string got = fifo + ".got";
        const ProcessResult run = runScript("cat \"$2\" > \"$3\" & \"$CLI\" export \"$1\" \"$2\"" +
                                                joined(kind.arguments) + "; status=$?; wait; exit $status",
                                            {features, fifo, got}, 60);
        EXPECT_EQ(run.exitStatus, 0) << kind.format << run.err;
        EXPECT_TRUE(isFifo(fifo)) << kind.format << ": the pipe is left in place";
        EXPECT_TRUE(sameExport(kind, test::fileContents(got), expected, dir))
            << kind.format << ": the pipe's reader got other bytes";
    }

    // A kind that writes a file per table sends one table only; a database needs a file.
    const ProcessResult many = runScript("exec \"$CLI\" export \"$1\" - --format csv", {features});
    EXPECT_EQ(many.exitStatus, 2);
    EXPECT_NE(many.err.find("choose one with --table"), std::string::npos) << many.err;
    EXPECT_EQ(many.out, "");
    const ProcessResult database = runScript("exec \"$CLI\" export \"$1\" - --format sqlite", {features});
    EXPECT_EQ(database.exitStatus, 2);
    EXPECT_NE(database.err.find("needs a regular file"), std::string::npos) << database.err;
    EXPECT_EQ(database.out, "");
}

TEST(StreamOutputs, DeviceNodesAreWrittenIntoAndNeverRemoved)
{
    TempDir dir;
    const std::string null = dir.file("null");
    const std::string full = dir.file("full");
    if (!makeDevice(null, 3) || !makeDevice(full, 7))
        GTEST_SKIP() << "device nodes cannot be made here (needs root and a file system that allows them)";
    const std::string link = dir.file("link-to-full");
    ASSERT_EQ(symlink(full.c_str(), link.c_str()), 0);
    const std::string features = test::fixturePath("features.mdb");

    for (const StreamKind &kind : streamKinds()) {
        const ProcessResult intoNull =
            runScript("exec \"$CLI\" export \"$1\" \"$2\"" + joined(kind.arguments), {features, null});
        EXPECT_EQ(intoNull.exitStatus, 0) << kind.format << intoNull.out << intoNull.err;
        EXPECT_TRUE(isCharacterDevice(null)) << kind.format;

        for (const std::string &target : {full, link}) {
            const ProcessResult intoFull =
                runScript("exec \"$CLI\" export \"$1\" \"$2\"" + joined(kind.arguments), {features, target});
            EXPECT_EQ(intoFull.exitStatus, 3) << kind.format << " into " << target << intoFull.out << intoFull.err;
            EXPECT_EQ(intoFull.out.find("exported successfully"), std::string::npos) << kind.format << intoFull.out;
            EXPECT_TRUE(isCharacterDevice(full)) << kind.format << ": the full device is left in place";
        }
        EXPECT_TRUE(isLink(link)) << kind.format << ": the link is left in place";
    }

    // The SQLite database needs a regular file: every other thing is refused before anything is
    // written, and left as it was.
    const std::string fifo = dir.file("pipe");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const std::string folder = dir.file("folder");
    ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
    for (const std::string &target : {null, full, link, fifo, folder}) {
        const ProcessResult refused =
            runScript("exec \"$CLI\" export \"$1\" \"$2\" --format sqlite", {features, target});
        EXPECT_EQ(refused.exitStatus, 2) << target << refused.out << refused.err;
        EXPECT_FALSE(refused.err.empty()) << target;
    }
    EXPECT_TRUE(isCharacterDevice(null) && isCharacterDevice(full) && isFifo(fifo) && isLink(link));
    EXPECT_TRUE(test::folderContents(folder).empty()) << "nothing is written into the folder";
    EXPECT_EQ(test::folderContents(dir.path()).size(), 5u) << "no temporary file is left beside the nodes";
}

TEST(StreamOutputs, ExtractWritesIntoADeviceAtAPayloadsName)
{
    TempDir dir;
    const std::string folder = dir.file("out");
    ASSERT_EQ(mkdir(folder.c_str(), 0700), 0);
    const std::string ole = test::fixturePath("ole.mdb");
    // Where the payloads go, from a first run into a plain folder.
    const ProcessResult first = runScript("exec \"$CLI\" extract \"$1\" Blobs \"$2\"", {ole, dir.file("plain")});
    ASSERT_EQ(first.exitStatus, 0) << first.err;
    const std::string firstPath = first.out.substr(0, first.out.find('\n'));
    const std::string name = firstPath.substr(firstPath.rfind('/') + 1);
    ASSERT_FALSE(name.empty());

    const std::string node = folder + "/" + name;
    if (!makeDevice(node, 7))
        GTEST_SKIP() << "device nodes cannot be made here (needs root and a file system that allows them)";
    const ProcessResult intoFull = runScript("exec \"$CLI\" extract \"$1\" Blobs \"$2\"", {ole, folder});
    EXPECT_EQ(intoFull.exitStatus, 3) << intoFull.out << intoFull.err;
    EXPECT_NE(intoFull.err.find("No space left on device"), std::string::npos) << intoFull.err;
    EXPECT_TRUE(isCharacterDevice(node)) << "the device at the payload's name is left in place";

    ASSERT_EQ(unlink(node.c_str()), 0);
    ASSERT_TRUE(makeDevice(node, 3));
    const ProcessResult intoNull = runScript("exec \"$CLI\" extract \"$1\" Blobs \"$2\"", {ole, folder});
    EXPECT_EQ(intoNull.exitStatus, 0) << intoNull.err;
    EXPECT_TRUE(isCharacterDevice(node));
}

} // namespace
} // namespace vellum
