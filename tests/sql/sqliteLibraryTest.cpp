#include "sql/sqliteLibrary.h"
#include "sql/DynamicSQLiteAPISocket.h"
#include "support/RunProcess.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <filesystem>
#include <vector>

namespace vellum {
namespace {

TEST(sqliteLibrary, TypeIdFollowsColumnAffinityRule)
{
    struct Case {
        const char *name;
        int expected;
    };
    const Case cases[] = {
        {"varchar(20)", 3}, {"Double precision", 2}, {"POINT", 1},  {"BLOBTEXT", 3}, {"", -1},
        {nullptr, -1},      {"integer", 1},          {"CLOB", 3},   {"blob", 4},     {"FLOAT", 2},
        {"REAL", 2},        {"DATETIME", -1},        {"BIGINT", 1},
    };
    for (const Case &c : cases)
        EXPECT_EQ(SQLiteTypeIDFromTypeName(c.name), c.expected) << (c.name ? c.name : "(null)");
}

TEST(sqliteLibrary, PathIsBesideTheExecutablesFolder)
{
    const std::filesystem::path expected =
        std::filesystem::path(VELLUM_BIN_DIR).parent_path() / "lib" / "vellum" / "libsqlcipher.so";
    const std::filesystem::path actual = sqliteLibraryPath();
    ASSERT_TRUE(std::filesystem::exists(actual)) << actual << ": the build must link the system's libsqlcipher.so.0";
    EXPECT_TRUE(std::filesystem::equivalent(actual, expected)) << actual << " vs " << expected;
}

TEST(sqliteLibrary, HoldCountClosesLibraryAfterLastSocket)
{
    ASSERT_EQ(SQLiteLibraryRetainCount(), 0u);
    auto first = std::make_unique<DynamicSQLiteAPISocket>();
    ASSERT_TRUE(first->holdsLibrary()) << "libsqlcipher must load from " << sqliteLibraryPath();
    EXPECT_EQ(SQLiteLibraryRetainCount(), 1u);
    auto second = std::make_unique<DynamicSQLiteAPISocket>();
    EXPECT_EQ(SQLiteLibraryRetainCount(), 2u);
    first.reset();
    EXPECT_TRUE(IsSQLiteLibraryLoaded());
    EXPECT_EQ(SQLiteLibraryRetainCount(), 1u);
    second.reset();
    EXPECT_FALSE(IsSQLiteLibraryLoaded());
    EXPECT_EQ(SQLiteLibraryRetainCount(), 0u);
}

/// Points the loader at another file for one test.
class LibraryPathOverride {
public:
    explicit LibraryPathOverride(const std::string &path) { setSQLiteLibraryPath(path); }
    ~LibraryPathOverride()
    {
        setSQLiteLibraryPath(std::string());
        setLoadLibraryErrorHandler(nullptr);
    }
};

TEST(sqliteLibrary, MissingLibraryFailsSilently)
{
    LibraryPathOverride path("/nonexistent/lib/vellum/libsqlcipher.so");
    int reports = 0;
    setLoadLibraryErrorHandler([&reports](const LoadLibraryError &) { ++reports; });
    EXPECT_FALSE(LoadSQLiteLibrary());
    EXPECT_EQ(SQLiteLibraryRetainCount(), 0u);

    DynamicSQLiteAPISocket socket;
    EXPECT_FALSE(socket.holdsLibrary());
    EXPECT_FALSE(socket.connect());
    EXPECT_EQ(socket.getLastErrorMessage(), "SQLite dynamic library not found!");
    EXPECT_EQ(socket.runQuery("SELECT 1", 8), -1);
    EXPECT_EQ(reports, 0);
}

TEST(sqliteLibrary, LibraryWithoutKeyFunctionsIsRefusedWithTheirNames)
{
    const char *plain = "/usr/lib/x86_64-linux-gnu/libsqlite3.so.0";
    if (!std::filesystem::exists(plain))
        GTEST_SKIP() << "plain SQLite library " << plain << " not installed";
    LibraryPathOverride path(plain);
    std::vector<LoadLibraryError> reports;
    setLoadLibraryErrorHandler([&reports](const LoadLibraryError &error) { reports.push_back(error); });

    EXPECT_FALSE(LoadSQLiteLibrary());
    ASSERT_EQ(reports.size(), 1u);
    EXPECT_EQ(reports[0].title, "Load Library Error");
    EXPECT_NE(reports[0].message.find(std::string("'") + plain + "'"), std::string::npos) << reports[0].message;
    EXPECT_EQ(reports[0].details, "Missing function: sqlite3_key\nMissing function: sqlite3_rekey");
    EXPECT_FALSE(IsSQLiteLibraryLoaded());
    EXPECT_EQ(SQLiteLibraryRetainCount(), 0u);
    // Closed again: nothing of it stays in the process to shadow SQLCipher's symbols.
    EXPECT_EQ(dlopen(plain, RTLD_NOW | RTLD_NOLOAD), nullptr);
}

TEST(sqliteLibrary, NoLinkTimeDependencyOnSQLite)
{
    const std::string self = std::filesystem::read_symlink("/proc/self/exe").string();
    if (!std::filesystem::exists("/usr/bin/ldd"))
        GTEST_SKIP() << "/usr/bin/ldd is not available";
    const test::ProcessResult ldd = test::runProcess({"/usr/bin/ldd", self});
    ASSERT_EQ(ldd.exitStatus, 0) << ldd.err;
    EXPECT_NE(ldd.out.find("libc.so"), std::string::npos) << ldd.out;
    EXPECT_EQ(ldd.out.find("sqlite"), std::string::npos) << ldd.out;
    EXPECT_EQ(ldd.out.find("sqlcipher"), std::string::npos) << ldd.out;
}

} // namespace
} // namespace vellum
