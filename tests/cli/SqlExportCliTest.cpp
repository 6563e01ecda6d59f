// vellum-cli export --format sql: single script or one per table, the options and their refusals.

#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace vellum {
namespace {

namespace fs = std::filesystem;
using test::fixturePath;
using test::runTool;

std::vector<std::string> exportArgs(const std::string &output, std::vector<std::string> options)
{
    std::vector<std::string> args = {"export", fixturePath("features.mdb"), output, "--format", "sql", "--classic"};
    args.insert(args.end(), options.begin(), options.end());
    return args;
}

TEST(SqlExportCli, LosslessScriptsByDefault)
{
    test::TempDir dir;
    const std::string script = dir.file("features.sql");
    const auto pg = runTool(
        "vellum-cli", {"export", fixturePath("features.mdb"), script, "--format", "sql", "--dialect", "postgresql"});
    ASSERT_EQ(pg.exitStatus, 0) << pg.err;
    EXPECT_EQ(pg.out, "Export finished.\n14 tables exported successfully.\n");
    EXPECT_EQ(test::fileContents(script), test::fileContents(fixturePath("golden/sql-lossless/postgresql.sql")));

    // MySQL keeps no negative zero: the script is written, the values counted, status 3.
    const std::string mysql = dir.file("features-mysql.sql");
    const auto my = runTool("vellum-cli", {"export", fixturePath("features.mdb"), mysql, "--format", "sql"});
    EXPECT_EQ(my.exitStatus, 3) << my.err;
    EXPECT_NE((my.out + my.err).find("<AllTypes> Warning: 2 values approximated: negative zeros stored as zero"),
              std::string::npos)
        << my.out << my.err;
    EXPECT_EQ(test::fileContents(mysql), test::fileContents(fixturePath("golden/sql-lossless/mysql.sql")));
}

TEST(SqlExportCli, RefusesCombinationsThatWriteNothingOrDoNotApply)
{
    test::TempDir dir;
    struct Case {
        std::vector<std::string> options;
        const char *message;
    };
    const Case cases[] = {
        {{"--no-structure", "--no-data"}, "--no-structure and --no-data together leave nothing to export"},
        {{"--dialect", "db2"}, "unknown dialect 'db2' (use mysql|postgresql|oracle|sqlite|sqlserver)"},
        {{"--dialect", "sqlite", "--schema", "s"},
         "--schema applies to the postgresql, oracle and sqlserver dialects only"},
        {{"--schema", "s"}, "--schema applies to the postgresql, oracle and sqlserver dialects only"},
    };
    for (const Case &c : cases) {
        const auto result = runTool("vellum-cli", exportArgs(dir.file("out.sql"), c.options));
        EXPECT_EQ(result.exitStatus, 2) << c.message;
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
        EXPECT_FALSE(fs::exists(dir.file("out.sql"))) << c.message;
    }
    // A script option with another format is refused too.
    const auto csv = runTool("vellum-cli", {"export", fixturePath("features.mdb"), dir.file("csv"), "--format", "csv",
                                            "--dialect", "mysql"});
    EXPECT_EQ(csv.exitStatus, 2);
    EXPECT_NE(csv.err.find("option --dialect does not apply to --format csv"), std::string::npos) << csv.err;
}

TEST(SqlExportCli, OneScriptForTheFileOneScriptPerChosenTable)
{
    test::TempDir dir;
    // The whole file: one script, the golden one of its dialect.
    const std::string script = dir.file("scripts/features.sql");
    const auto whole = runTool("vellum-cli", exportArgs(script, {"--dialect", "postgresql"}));
    ASSERT_EQ(whole.exitStatus, 0) << whole.err;
    EXPECT_EQ(whole.out, "Export finished.\n14 tables exported successfully.\n");
    EXPECT_EQ(test::fileContents(script), test::fileContents(fixturePath("golden/sql/postgresql.sql")));

    // Chosen tables: one script each in the folder OUTPUT, unless --single-file.
    const std::string folder = dir.file("tables");
    const auto some =
        runTool("vellum-cli", exportArgs(folder, {"--dialect", "sqlserver", "--table", "a]b", "--table", "Orders"}));
    ASSERT_EQ(some.exitStatus, 0) << some.err;
    EXPECT_EQ(test::fileContents(folder + "/a]b.sql"), test::fileContents(fixturePath("golden/sql/sqlserver/a]b.sql")));
    EXPECT_TRUE(fs::exists(folder + "/Orders.sql"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);

    const std::string two = dir.file("two.sql");
    ASSERT_EQ(
        runTool("vellum-cli", exportArgs(two, {"--table", "a]b", "--table", "table1", "--single-file"})).exitStatus, 0);
    const std::string text = test::fileContents(two);
    EXPECT_EQ(text.rfind("SET NAMES 'UTF8';", 0), 0u);
    EXPECT_NE(text.find("CREATE TABLE `table1`"), std::string::npos);
    EXPECT_EQ(text.find("CREATE TABLE `Orders`"), std::string::npos);

    const std::string perTable = dir.file("per-table");
    ASSERT_EQ(runTool("vellum-cli", exportArgs(perTable, {"--file-per-table", "--dialect", "oracle"})).exitStatus, 0);
    EXPECT_EQ(std::distance(fs::directory_iterator(perTable), fs::directory_iterator()), 14);
}

TEST(SqlExportCli, OptionsReachTheScript)
{
    test::TempDir dir;
    const std::string path = dir.file("props.sql");
    const auto result =
        runTool("vellum-cli", exportArgs(path, {"--dialect", "postgresql", "--table", "Props", "--single-file",
                                                "--schema", "app", "--no-drop", "--no-indexes", "--decimal", "."}));
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const std::string text = test::fileContents(path);
    EXPECT_EQ(text.rfind("CREATE TABLE \"app\".\"Props\" (", 0), 0u) << text.substr(0, 200);
    EXPECT_NE(text.find("COMMENT ON COLUMN \"app\".\"Props\".\"DescCol\" IS 'O''Neil''s \"quoted\" column';"),
              std::string::npos);
    EXPECT_NE(text.find("INSERT INTO \"app\".\"Props\""), std::string::npos);
    EXPECT_NE(text.find(", 0.0000, "), std::string::npos); // Currency as a SQL number
    EXPECT_EQ(text.find("DROP TABLE"), std::string::npos);

    // Any other decimal symbol would make every fractional INSERT invalid: refused before
    // anything is written.
    const std::string comma = dir.file("comma.sql");
    const auto refused = runTool("vellum-cli", exportArgs(comma, {"--table", "Props", "--decimal", ","}));
    EXPECT_EQ(refused.exitStatus, 2);
    EXPECT_NE(refused.err.find("--decimal must be \".\" for SQL scripts"), std::string::npos) << refused.err;
    EXPECT_FALSE(fs::exists(comma));

    // --table with an OUTPUT named like a script writes that script, not a folder of that name.
    const std::string named = dir.file("one.sql");
    ASSERT_EQ(runTool("vellum-cli", exportArgs(named, {"--table", "table1"})).exitStatus, 0);
    EXPECT_TRUE(fs::is_regular_file(named));
    EXPECT_NE(test::fileContents(named).find("CREATE TABLE `table1`"), std::string::npos);

    const std::string dataOnly = dir.file("data.sql");
    ASSERT_EQ(runTool("vellum-cli", exportArgs(dataOnly, {"--table", "table1", "--single-file", "--no-structure"}))
                  .exitStatus,
              0);
    EXPECT_EQ(test::fileContents(dataOnly), "SET NAMES 'UTF8';\nSET FOREIGN_KEY_CHECKS = 0;\n\n"
                                            "INSERT INTO `table1` (`ID`, `Label`) VALUES (1, 'row one of table1');\n"
                                            "INSERT INTO `table1` (`ID`, `Label`) VALUES (2, 'row two of table1');\n\n"
                                            "SET FOREIGN_KEY_CHECKS = 1;\n");
}

} // namespace
} // namespace vellum
