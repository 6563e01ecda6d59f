#include "browser/RecentDocuments.h"

#include "browserTestSupport.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace vellum {
namespace {

/// XDG_DATA_HOME in a fresh temporary folder for each test.
class RecentDocumentsTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_FALSE(dataHome.folder().empty()); }
    test::ScopedDataHome dataHome;
    const std::string &folder = dataHome.folder();
};

TEST_F(RecentDocumentsTest, MostRecentFirstAndOnlyOurs)
{
    RecentDocuments ours;
    RecentDocuments other("SomeViewer");
    EXPECT_TRUE(ours.paths().empty()) << "a missing list is empty";
    EXPECT_EQ(RecentDocuments::listFilePath(), folder + "/recently-used.xbel");

    ours.note("/data/a.mdb");
    ours.note("/data/b b.accdb");
    other.note("/data/c.mdb");
    other.note("/data/a.mdb");
    EXPECT_EQ(ours.paths(), (std::vector<std::string>{"/data/b b.accdb", "/data/a.mdb"}));

    ours.note("/data/a.mdb");
    EXPECT_EQ(ours.paths(), (std::vector<std::string>{"/data/a.mdb", "/data/b b.accdb"}));

    ours.clear();
    EXPECT_TRUE(ours.paths().empty());
    EXPECT_EQ(other.paths(), (std::vector<std::string>{"/data/a.mdb", "/data/c.mdb"}))
        << "clearing removes only this application's registrations";
}

TEST_F(RecentDocumentsTest, UnreadableListIsLeftAlone)
{
    const std::string path = folder + "/recently-used.xbel";
    std::ofstream(path) << "this is not a bookmark file";
    RecentDocuments ours;
    EXPECT_TRUE(ours.paths().empty());
    ours.note("/data/a.mdb");
    std::ifstream in(path);
    std::stringstream content;
    content << in.rdbuf();
    EXPECT_EQ(content.str(), "this is not a bookmark file");
}

} // namespace
} // namespace vellum
