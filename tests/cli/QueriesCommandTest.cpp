#include "support/Fixtures.h"
#include "support/RunProcess.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;

// ace12_ASampleDatabase.accdb holds three queries of its own and three that Access keeps for a
// form and two reports.
const char *const kSample = "ace12_ASampleDatabase.accdb";

TEST(QueriesCommand, ListsNameTypeAndSqlOfTheUsersQueries)
{
    const auto result = runTool("vellum-cli", {"queries", fixturePath(kSample)});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out,
              "Query: qryComputerHardwareInOwnerOrder\n"
              "  Type: SELECT\n"
              "  SQL:\n"
              "    SELECT [Asset Items].[Asset No], [Asset Items].[Owner], [Asset Items].[Asset Category], [Asset "
              "Items].[Make], [Asset Items].[Model], [Asset Items].[Cost]\n"
              "    FROM [Asset Items]\n"
              "    WHERE ((([Asset Items].[Asset Category])=\"Computer Hardware\"))\n"
              "    ORDER BY [Asset Items].[Owner];\n"
              "\n"
              "Query: qryCostsSummedByOwner\n"
              "  Type: SELECT\n"
              "  SQL:\n"
              "    SELECT [Asset Items].[Owner], [Asset Items].[Asset Category], Sum([Asset Items].[Cost]) AS "
              "SumOfCost\n"
              "    FROM [Asset Items]\n"
              "    GROUP BY [Asset Items].[Owner], [Asset Items].[Asset Category];\n"
              "\n"
              "Query: qryGSTCalculations\n"
              "  Type: SELECT\n"
              "  SQL:\n"
              "    SELECT [Asset Items].[Asset No], [Asset Items].Make, [Asset Items].Model, [Asset Items].Acquired, "
              "[Asset Items].Cost, [Cost]/1.22 AS [Ex Tax], [Cost]-([Cost]/1.22) AS GST\n"
              "    FROM [Asset Items];\n");
}

TEST(QueriesCommand, JsonWithAndWithoutAccessOwnQueries)
{
    struct Case {
        std::vector<std::string> options;
        std::vector<std::string> names;
    };
    const Case cases[] = {
        {{"--json"}, {"qryComputerHardwareInOwnerOrder", "qryCostsSummedByOwner", "qryGSTCalculations"}},
        {{"--json", "--all"},
         {"~sq_ffrmAssetInventory", "~sq_rrptAssetListingInNumberOrder", "~sq_rrptAssetsGroupedByOwners",
          "qryComputerHardwareInOwnerOrder", "qryCostsSummedByOwner", "qryGSTCalculations"}},
    };
    for (const Case &c : cases) {
        std::vector<std::string> args = {"queries", fixturePath(kSample)};
        args.insert(args.end(), c.options.begin(), c.options.end());
        const auto result = runTool("vellum-cli", args);
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        const auto json = nlohmann::ordered_json::parse(result.out, nullptr, false);
        ASSERT_TRUE(json.is_array()) << result.out.substr(0, 400);
        std::vector<std::string> names;
        for (const auto &query : json) {
            names.push_back(query["name"]);
            std::vector<std::string> keys;
            for (auto it = query.begin(); it != query.end(); ++it)
                keys.push_back(it.key());
            EXPECT_EQ(keys, (std::vector<std::string>{"name", "type", "sql"}));
            EXPECT_EQ(query["type"], "SELECT");
        }
        EXPECT_EQ(names, c.names);
        EXPECT_EQ(json.back()["sql"],
                  "SELECT [Asset Items].[Asset No], [Asset Items].Make, [Asset Items].Model, [Asset "
                  "Items].Acquired, [Asset Items].Cost, [Cost]/1.22 AS [Ex Tax], "
                  "[Cost]-([Cost]/1.22) AS GST\nFROM [Asset Items];");
        if (c.names.size() == 6) {
            EXPECT_EQ(json[0]["sql"], "SELECT DISTINCTROW *\nFROM [Asset Items];");
        }
    }

    // A file without queries: an empty list, an empty text.
    const auto none = runTool("vellum-cli", {"queries", fixturePath("features.mdb"), "--json"});
    ASSERT_EQ(none.exitStatus, 0) << none.err;
    EXPECT_EQ(none.out, "[]\n");
    const auto noneText = runTool("vellum-cli", {"queries", fixturePath("features.mdb")});
    ASSERT_EQ(noneText.exitStatus, 0) << noneText.err;
    EXPECT_EQ(noneText.out, "");
}

TEST(QueriesCommand, SchemaJsonCarriesEveryQuery)
{
    const auto result = runTool("vellum-cli", {"schema", fixturePath(kSample), "--json"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_FALSE(json.is_discarded()) << result.out.substr(0, 400);
    ASSERT_EQ(json["queries"].size(), 6u);
    EXPECT_EQ(json["queries"][0]["name"], "~sq_ffrmAssetInventory");
    EXPECT_EQ(json["queries"][4]["name"], "qryCostsSummedByOwner");
    EXPECT_EQ(json["queries"][4]["type"], "SELECT");
    EXPECT_EQ(json["queries"][4]["sql"], "SELECT [Asset Items].[Owner], [Asset Items].[Asset Category], Sum([Asset "
                                         "Items].[Cost]) AS SumOfCost\nFROM [Asset Items]\nGROUP BY [Asset "
                                         "Items].[Owner], [Asset Items].[Asset Category];");
    const auto plain = runTool("vellum-cli", {"schema", fixturePath("features.mdb"), "--json"});
    ASSERT_EQ(plain.exitStatus, 0) << plain.err;
    EXPECT_EQ(nlohmann::json::parse(plain.out)["queries"], nlohmann::json::array());
}

TEST(QueriesCommand, ExitStatusesAndHelp)
{
    struct Case {
        std::vector<std::string> args;
        int status;
        const char *errContains;
    };
    const Case cases[] = {
        {{"queries", fixturePath("missing.accdb")}, 1, "cannot be opened"},
        {{"queries"}, 2, "usage: vellum-cli queries FILE [--json] [--all]"},
        {{"queries", fixturePath(kSample), fixturePath(kSample)}, 2, "expected one FILE"},
        {{"queries", fixturePath(kSample), "--hidden"}, 2, "--hidden"},
    };
    for (const Case &c : cases) {
        const auto result = runTool("vellum-cli", c.args);
        EXPECT_EQ(result.exitStatus, c.status) << c.errContains;
        EXPECT_NE(result.err.find(c.errContains), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty()) << result.out;
    }
    const auto help = runTool("vellum-cli", {"queries", "--help"});
    EXPECT_EQ(help.exitStatus, 0);
    EXPECT_NE(help.out.find("vellum-cli queries FILE [--json] [--all]"), std::string::npos) << help.out;
    const auto overview = runTool("vellum-cli", {"--help"});
    EXPECT_NE(overview.out.find("  queries  list the saved queries with their kind and SQL\n"), std::string::npos)
        << overview.out;
}

} // namespace
} // namespace vellum
