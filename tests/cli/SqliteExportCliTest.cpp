// vellum-cli export --format sqlite: the database as sqlite3 and sqlcipher read it, the
// password, the options, the library beside the executable and the program's link-time
// dependencies.

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace vellum {
namespace {

namespace fs = std::filesystem;
using test::fixturePath;
using test::runProcess;
using test::runTool;

constexpr const char *kSqlite3 = "/usr/bin/sqlite3";
constexpr const char *kSqlcipher = "/usr/bin/sqlcipher";

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

TEST(SqliteExportCli, WritesTheDatabaseFile)
{
    if (!fs::exists(kSqlite3))
        GTEST_SKIP() << kSqlite3 << " is needed";
    test::TempDir dir;
    const std::string db = dir.file("new/features.sqlite");
    const auto result =
        runTool("vellum-cli", {"export", fixturePath("features.mdb"), db, "--format", "sqlite", "--classic"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, "Export finished.\n14 tables exported successfully.\n");
    const auto counts = runProcess({kSqlite3, db,
                                    "SELECT count(*) FROM sqlite_master WHERE type = 'table';"
                                    "SELECT count(*) FROM \"AllTypes\";"
                                    "SELECT \"Größe\" FROM \"Ünïcode 表\";"});
    ASSERT_EQ(counts.exitStatus, 0) << counts.err;
    EXPECT_EQ(counts.out.substr(0, 6), "14\n20\n");

    const auto some =
        runTool("vellum-cli", {"export", fixturePath("features.mdb"), db, "--format", "sqlite", "--classic", "--table",
                               "Orders", "--table", "Customers", "--no-data", "--no-indexes", "--no-foreign-keys"});
    ASSERT_EQ(some.exitStatus, 0) << some.err;
    const auto schema = runProcess({kSqlite3, db,
                                    "SELECT group_concat(name, ',') FROM sqlite_master;"
                                    "SELECT count(*) FROM \"Orders\";"
                                    "SELECT count(*) FROM pragma_foreign_key_list('Orders');"});
    EXPECT_EQ(schema.out, "Customers,Orders\n0\n0\n");
}

TEST(SqliteExportCli, PasswordEncryptsForSqlcipher)
{
    if (!fs::exists(kSqlite3) || !fs::exists(kSqlcipher))
        GTEST_SKIP() << kSqlite3 << " and " << kSqlcipher << " are needed";
    test::TempDir dir;
    const std::string db = dir.file("secret.sqlite");
    const auto result = runTool("vellum-cli", {"export", fixturePath("features.mdb"), db, "--format", "sqlite",
                                               "--classic", "--password", "Tr0ub4dor&3"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(readFile(db).find("row one of table1"), std::string::npos);

    const std::string query = "SELECT \"Label\" FROM \"table1\" ORDER BY \"ID\";";
    const auto keyed = runProcess({kSqlcipher, db, "PRAGMA key = 'Tr0ub4dor&3'; " + query});
    EXPECT_EQ(keyed.exitStatus, 0) << keyed.err;
    EXPECT_EQ(keyed.out, "row one of table1\nrow two of table1\n");
    for (const std::vector<std::string> &refused :
         {std::vector<std::string>{kSqlcipher, db, "PRAGMA key = 'tr0ub4dor&3'; " + query},
          std::vector<std::string>{kSqlcipher, db, query}, std::vector<std::string>{kSqlite3, db, query}}) {
        const auto denied = runProcess(refused);
        EXPECT_NE(denied.exitStatus, 0) << refused[0] << " " << refused[2];
        EXPECT_NE(denied.err.find("not a database"), std::string::npos) << denied.err;
        EXPECT_EQ(denied.out, "");
    }
}

TEST(SqliteExportCli, LosslessDatabaseIsTheDefault)
{
    if (!fs::exists(kSqlite3) || !fs::exists(kSqlcipher))
        GTEST_SKIP() << kSqlite3 << " and " << kSqlcipher << " are needed";
    test::TempDir dir;
    const std::string db = dir.file("lossless.sqlite");
    const auto result = runTool("vellum-cli", {"export", fixturePath("features.mdb"), db, "--format", "sqlite"});
    // The Currency and Decimal extremes of AllTypes have more digits than SQLite's REAL keeps,
    // and a REAL column has no negative zero.
    EXPECT_EQ(result.exitStatus, 3) << result.err;
    EXPECT_EQ(result.out, "Export finished.\n14 tables exported successfully.\n<AllTypes> Warning: 4 values "
                          "approximated: decimals of more than 15 significant digits stored as REAL\n<AllTypes> "
                          "Warning: 2 values approximated: negative zeros stored as 0\n");
    const auto read = runProcess({kSqlite3, db,
                                  "SELECT typeof(\"ColDate\"), \"ColDate\" FROM \"AllTypes\" WHERE \"ColDate\" "
                                  "IS NOT NULL ORDER BY \"ID\" LIMIT 1; SELECT count(*) FROM \"AllTypes\" WHERE "
                                  "\"ColText50\" IS NULL;"});
    ASSERT_EQ(read.exitStatus, 0) << read.err;
    EXPECT_EQ(read.out.substr(0, 5), "text|");
    EXPECT_EQ(read.out.find('/'), std::string::npos) << "dates are ISO: " << read.out;

    const std::string secret = dir.file("secret.sqlite");
    const auto keyedRun = runTool("vellum-cli", {"export", fixturePath("features.mdb"), secret, "--format", "sqlite",
                                                 "--table", "table1", "--password", "Tr0ub4dor&3"});
    ASSERT_EQ(keyedRun.exitStatus, 0) << keyedRun.err;
    const auto keyed = runProcess(
        {kSqlcipher, secret, "PRAGMA key = 'Tr0ub4dor&3'; SELECT \"Label\" FROM \"table1\" ORDER BY \"ID\";"});
    EXPECT_EQ(keyed.out, "row one of table1\nrow two of table1\n") << keyed.err;
    EXPECT_NE(runProcess({kSqlite3, secret, "SELECT 1 FROM \"table1\";"}).exitStatus, 0);
}

TEST(SqliteExportCli, RefusesWrongArguments)
{
    test::TempDir dir;
    fs::create_directory(dir.file("folder"));
    struct Case {
        std::vector<std::string> args;
        const char *errContains;
    };
    const std::string features = fixturePath("features.mdb");
    const Case cases[] = {
        {{"--password", "p\xc3\xa4ss"}, "--password must consist of ASCII characters"},
        {{"--password", ""}, "--password must not be empty"},
        {{"--no-drop"}, "--no-drop does not apply to --format sqlite"},
    };
    for (const Case &c : cases) {
        std::vector<std::string> args = {"export", features, dir.file("x.sqlite"), "--format", "sqlite"};
        args.insert(args.end(), c.args.begin(), c.args.end());
        const auto result = runTool("vellum-cli", args);
        EXPECT_EQ(result.exitStatus, 2) << c.errContains;
        EXPECT_NE(result.err.find(c.errContains), std::string::npos) << result.err;
        EXPECT_FALSE(fs::exists(dir.file("x.sqlite")));
    }
    const auto onFolder = runTool("vellum-cli", {"export", features, dir.file("folder"), "--format", "sqlite"});
    EXPECT_EQ(onFolder.exitStatus, 2);
    EXPECT_TRUE(fs::is_directory(dir.file("folder")));
    const auto withPassword =
        runTool("vellum-cli", {"export", features, dir.file("out"), "--format", "csv", "--password", "x"});
    EXPECT_EQ(withPassword.exitStatus, 2);
}

/// A copy of vellum-cli in <dir>/bin, whose library folder is <dir>/lib/vellum.
std::string copiedTool(const test::TempDir &dir)
{
    fs::create_directories(dir.file("bin"));
    fs::create_directories(dir.file("lib/vellum"));
    const std::string tool = dir.file("bin/vellum-cli");
    fs::copy_file(std::string(VELLUM_BIN_DIR) + "/vellum-cli", tool);
    return tool;
}

TEST(SqliteExportCli, LibraryIsTakenFromBesideTheExecutable)
{
    test::TempDir dir;
    const std::string tool = copiedTool(dir);
    const std::string db = dir.file("out.sqlite");
    const std::vector<std::string> args = {tool,      "export", fixturePath("features.mdb"), db, "--format", "sqlite",
                                           "--table", "table1"};

    const auto missing = runProcess(args);
    EXPECT_EQ(missing.exitStatus, 3);
    EXPECT_EQ(missing.out, "Export finished.\nUnable to create file for export.\n");
    EXPECT_NE(missing.err.find("SQLite dynamic library not found!"), std::string::npos) << missing.err;
    EXPECT_FALSE(fs::exists(db));

    const char *plain = "/usr/lib/x86_64-linux-gnu/libsqlite3.so.0";
    if (fs::exists(plain)) {
        fs::create_symlink(plain, dir.file("lib/vellum/libsqlcipher.so"));
        const auto refused = runProcess(args);
        EXPECT_EQ(refused.exitStatus, 3);
        EXPECT_NE(refused.err.find("Load Library Error"), std::string::npos) << refused.err;
        EXPECT_NE(refused.err.find("Missing function: sqlite3_key\nMissing function: sqlite3_rekey"), std::string::npos)
            << refused.err;
        fs::remove(dir.file("lib/vellum/libsqlcipher.so"));
    }

    fs::create_symlink(fs::read_symlink(std::string(VELLUM_BIN_DIR) + "/../lib/vellum/libsqlcipher.so"),
                       dir.file("lib/vellum/libsqlcipher.so"));
    const auto found = runProcess(args);
    EXPECT_EQ(found.exitStatus, 0) << found.err;
    EXPECT_TRUE(fs::exists(db));
}

TEST(SqliteExportCli, NoLinkTimeDependencyOnSQLite)
{
    if (!fs::exists("/usr/bin/ldd"))
        GTEST_SKIP() << "/usr/bin/ldd is not available";
    for (const char *program : {"vellum-cli", "vellum"}) {
        const std::string path = std::string(VELLUM_BIN_DIR) + "/" + program;
        if (!fs::exists(path))
            continue; // the window is built only with the GUI
        const auto ldd = runProcess({"/usr/bin/ldd", path});
        ASSERT_EQ(ldd.exitStatus, 0) << ldd.err;
        EXPECT_NE(ldd.out.find("libmdb"), std::string::npos) << ldd.out;
        EXPECT_EQ(ldd.out.find("sqlite"), std::string::npos) << program << ":\n" << ldd.out;
        EXPECT_EQ(ldd.out.find("sqlcipher"), std::string::npos) << program << ":\n" << ldd.out;
    }
}

} // namespace
} // namespace vellum
