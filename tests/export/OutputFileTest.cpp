#include "export/OutputFile.h"

#include "support/FileContents.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace vellum {
namespace {

using test::TempDir;

bool writeAll(int fd, const std::string &bytes)
{
    return ::write(fd, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
}

std::size_t entryCount(const std::string &folder)
{
    std::size_t count = 0;
    for ([[maybe_unused]] const auto &entry : std::filesystem::directory_iterator(folder))
        ++count;
    return count;
}

TEST(OutputFile, ReplacesOnlyARegularFileEvenWhenThePathChangesMeanwhile)
{
    TempDir dir;
    // Nothing there at the start, a named pipe there at the end: the pipe stays.
    const std::string fresh = dir.file("fresh.csv");
    OutputFile first;
    ASSERT_TRUE(first.begin(fresh));
    ASSERT_TRUE(writeAll(first.descriptor(), "new"));
    ASSERT_EQ(mkfifo(fresh.c_str(), 0600), 0);
    EXPECT_FALSE(first.commit());
    EXPECT_NE(first.errorText().find("left alone"), std::string::npos) << first.errorText();
    struct stat st {};
    EXPECT_TRUE(lstat(fresh.c_str(), &st) == 0 && S_ISFIFO(st.st_mode));

    // A regular file at the start, a link at the end: the link stays.
    const std::string replaced = dir.file("replaced.csv");
    std::ofstream(replaced) << "old";
    OutputFile second;
    ASSERT_TRUE(second.begin(replaced));
    ASSERT_TRUE(writeAll(second.descriptor(), "new"));
    ASSERT_EQ(unlink(replaced.c_str()), 0);
    ASSERT_EQ(symlink("/dev/null", replaced.c_str()), 0);
    EXPECT_FALSE(second.commit());
    EXPECT_TRUE(lstat(replaced.c_str(), &st) == 0 && S_ISLNK(st.st_mode));
    EXPECT_EQ(entryCount(dir.path()), 2u) << "no temporary file is left";

    // A regular file that is still one is replaced, keeping its permissions.
    const std::string kept = dir.file("kept.csv");
    std::ofstream(kept) << "old";
    ASSERT_EQ(chmod(kept.c_str(), 0640), 0);
    OutputFile third;
    ASSERT_TRUE(third.begin(kept));
    ASSERT_TRUE(writeAll(third.descriptor(), "new"));
    ASSERT_TRUE(third.commit()) << third.errorText();
    EXPECT_EQ(test::fileContents(kept), "new");
    ASSERT_EQ(stat(kept.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
}

TEST(OutputFile, APathOnlyWriterIsCopiedIntoAPipe)
{
    TempDir dir;
    const std::string fifo = dir.file("pipe");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // A reader on the pipe, as a program reading it would be.
    const int reader = open(fifo.c_str(), O_RDONLY | O_NONBLOCK);
    ASSERT_GE(reader, 0);

    OutputFile output;
    ASSERT_TRUE(output.begin(fifo, OutputFile::Target::PathOnly)) << output.errorText();
    EXPECT_TRUE(output.isDevice());
    // The writer makes its own file under the given name, outside the pipe's folder.
    const std::string writePath = output.writePath();
    EXPECT_NE(writePath, fifo);
    std::ofstream(writePath) << "workbook bytes";
    ASSERT_TRUE(output.commit()) << output.errorText();
    char buffer[64] = {};
    EXPECT_EQ(read(reader, buffer, sizeof buffer), 14);
    EXPECT_EQ(std::string(buffer), "workbook bytes");
    close(reader);
    EXPECT_FALSE(std::filesystem::exists(writePath)) << "the copied file is removed";
    struct stat st {};
    EXPECT_TRUE(stat(fifo.c_str(), &st) == 0 && S_ISFIFO(st.st_mode));

    // Where the caller does not allow a device, nothing is opened or made.
    OutputFile refused;
    EXPECT_FALSE(refused.begin(fifo, OutputFile::Target::PathOnly, false));
    EXPECT_FALSE(refused.begin(OutputFile::kStandardOutput, OutputFile::Target::Descriptor, false));
}

} // namespace
} // namespace vellum
