// vellum-cli export --format json|jsonl: one UTF-8 file per table that a JSON parser reads
// back with every value in its typed form, and the options that do not apply to JSON.

#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;

TEST(JsonExportCli, WritesEveryTableAsAnArrayOfTypedRows)
{
    test::TempDir dir;
    const std::string out = dir.file("json");
    const auto result = runTool("vellum-cli", {"export", fixturePath("features.mdb"), out, "--format", "json"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, "Export finished.\n14 tables exported successfully.\n");
    std::size_t files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(out)) {
        ++files;
        EXPECT_EQ(entry.path().extension(), ".json");
        const nlohmann::json parsed = nlohmann::json::parse(test::fileContents(entry.path().string()), nullptr, false);
        EXPECT_TRUE(parsed.is_array()) << entry.path();
    }
    EXPECT_EQ(files, 14u);
    EXPECT_EQ(test::fileContents(out + "/Empty.json"), "[]\n");
    EXPECT_TRUE(std::filesystem::exists(out + "/\xC3\x9Cn\xC3\xAF"
                                              "code \xE8\xA1\xA8.json"));

    const nlohmann::json rows = nlohmann::json::parse(test::fileContents(out + "/AllTypes.json"));
    ASSERT_GE(rows.size(), 4u);
    const nlohmann::json &row = rows[2];
    EXPECT_EQ(row["ID"], 3);
    EXPECT_EQ(row["ColBoolean"], true);
    EXPECT_EQ(row["ColMoney"], 1.5);
    EXPECT_EQ(row["ColFloat"], 3.14);
    EXPECT_EQ(row["ColDouble"], 2.718281828459045);
    EXPECT_EQ(row["ColDate"], "2010-03-04T13:05:00");
    EXPECT_EQ(row["ColBinary"], nlohmann::json({{"base64", "AAECAwQFBgcICQoLDA0ODw=="}}));
    EXPECT_EQ(row["ColGuid"], "{6F9619FF-8B86-D011-B42D-00C04FC964FF}");
    EXPECT_EQ(row["ColNumeric"], 12345.6789);
    EXPECT_TRUE(rows[0]["ColText255"].is_null());
    EXPECT_EQ(rows[3]["ColMemo"], "Quote \" single ' backslash \\ end");
    // Keys in the columns' order.
    std::vector<std::string> keys;
    for (const auto &item : row.items())
        keys.push_back(item.key());
    EXPECT_EQ(keys.size(), 16u);
    const std::string text = test::fileContents(out + "/AllTypes.json");
    EXPECT_EQ(text.rfind("[\n{\"ID\":1,\"ColBoolean\":false,", 0), 0u) << text.substr(0, 80);
}

TEST(JsonExportCli, WritesOneObjectALineWithComplexColumnsAsArrays)
{
    test::TempDir dir;
    const std::string out = dir.file("lines");
    const auto result = runTool(
        "vellum-cli", {"export", fixturePath("complexData2007.accdb"), out, "--format", "jsonl", "--table", "Table1"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    std::istringstream lines(test::fileContents(out + "/Table1.jsonl"));
    std::vector<nlohmann::json> rows;
    for (std::string line; std::getline(lines, line);)
        rows.push_back(nlohmann::json::parse(line));
    ASSERT_GE(rows.size(), 2u);
    const nlohmann::json &row = rows[1];
    EXPECT_EQ(row["id"], "row2");
    EXPECT_EQ(row["multi-value-data"], nlohmann::json({"value1", "value4"}));
    ASSERT_EQ(row["attach-data"].size(), 2u);
    EXPECT_EQ(row["attach-data"][0],
              nlohmann::json({{"name", "test_data.txt"},
                              {"type", "txt"},
                              {"base64", "dGhpcyBpcyBzb21lIHRlc3QgZGF0YSBmb3IgYXR0YWNobWVudC4="}}));
    EXPECT_EQ(row["VersionHistory_F5F8918F-0A3F-4DA9-AE71-184EE5012880"],
              nlohmann::json::parse(R"([{"value":"row2-memo","date":"2011-09-12T21:21:02"}])"));
    EXPECT_EQ(rows[0]["attach-data"], nlohmann::json::array());
}

TEST(JsonExportCli, RefusesOptionsThatDoNotApplyToJson)
{
    test::TempDir dir;
    const std::string out = dir.file("out");
    for (const std::string format : {"json", "jsonl"}) {
        for (const std::vector<std::string> &extra :
             {std::vector<std::string>{"--encoding", "UTF-16"}, {"--classic"}, {"--delimiter", "tab"}}) {
            std::vector<std::string> args = {"export", fixturePath("features.mdb"), out, "--format", format};
            args.insert(args.end(), extra.begin(), extra.end());
            const auto result = runTool("vellum-cli", args);
            EXPECT_EQ(result.exitStatus, 2) << format << " " << extra[0];
            EXPECT_NE(result.err.find("option " + extra[0] + " does not apply to --format " + format),
                      std::string::npos)
                << result.err;
        }
    }
    EXPECT_FALSE(std::filesystem::exists(out));
}

} // namespace
} // namespace vellum
