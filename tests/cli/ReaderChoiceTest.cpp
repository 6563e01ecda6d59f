// Which reader vellum-cli opens files with: the vellum-loader helper when it lies beside the
// program, otherwise libmdb in the program's own process, and then it says so on standard error.

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vellum {
namespace {

namespace fs = std::filesystem;

constexpr const char *kListing = "a]b\t1\nAllTypes\t20\nCustomers\t3\nEmpty\t0\nItems\t3\nOrderLines\t4\nOrders\t3\n"
                                 "Props\t3\nQuote\"Table\t1\nSpace Table\t1\ntable1\t2\nTable2\t2\ntable10\t2\n"
                                 "Ünïcode 表\t1\n";

TEST(ReaderChoice, ReadsInProcessAndSaysSoOnlyWithoutTheHelper)
{
    test::TempDir dir;
    ASSERT_FALSE(dir.path().empty());
    // A vellum-cli alone in a folder: no vellum-loader beside it.
    const std::string lonely = dir.file("vellum-cli");
    fs::copy_file(std::string(VELLUM_BIN_DIR) + "/vellum-cli", lonely);
    ASSERT_FALSE(fs::exists(dir.file("vellum-loader")));

    struct Case {
        const char *name;
        std::string program;
        bool inProcess;
    };
    const Case cases[] = {
        {"without the helper", lonely, true},
        {"beside the helper", std::string(VELLUM_BIN_DIR) + "/vellum-cli", false},
    };
    const std::string notice = "reading in process: vellum-loader not found at " + dir.file("vellum-loader") + "\n";
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = test::runProcess({c.program, "list", test::fixturePath("features.mdb")});
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(result.out, kListing);
        EXPECT_EQ(result.err.find(notice) != std::string::npos, c.inProcess) << result.err;
        EXPECT_EQ(result.err.find("reading in process") != std::string::npos, c.inProcess) << result.err;
    }

    // The choice is made only when a file is opened: help says nothing about it.
    const auto help = test::runProcess({lonely, "--help"});
    EXPECT_EQ(help.err.find("reading in process"), std::string::npos) << help.err;
}

} // namespace
} // namespace vellum
