// Complex columns through the command line: rows shows their values, extract writes the files
// of an attachment column, and the exports keep writing the stored id.

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include "util/json.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;

const char *const kFile = "complexData2007.accdb";

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

TEST(VellumCliComplex, RowsShowValuesAsTextAndJson)
{
    const auto text = runTool("vellum-cli", {"rows", fixturePath(kFile), "Table1"});
    ASSERT_EQ(text.exitStatus, 0) << text.err;
    EXPECT_EQ(text.out, "id\tVersionHistory_F5F8918F-0A3F-4DA9-AE71-184EE5012880\tmemo-data\tappend-memo-data\t"
                        "multi-value-data\tattach-data\n"
                        "row1\t\t[NULL]\t[NULL]\t\t\n"
                        "row2\trow2-memo\trow2-memo\trow2-memo\tvalue1; value4\ttest_data.txt; test_data2.txt\n"
                        "row3\trow3-memo-again\trow3-memo\trow3-memo-again\tvalue1; value2; value3; value4\t\n"
                        "row4\trow4-memo\trow4-memo\trow4-memo\t\ttest_data2.txt\n");

    const auto result = runTool("vellum-cli", {"rows", fixturePath(kFile), "Table1", "--json"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_FALSE(json.is_discarded());
    ASSERT_EQ(json["rows"].size(), 4u);
    const auto &row1 = json["rows"][0];
    EXPECT_EQ(row1[1], nlohmann::json::parse(R"({"versions": []})"));
    EXPECT_EQ(row1[4], nlohmann::json::parse(R"({"values": []})"));
    EXPECT_EQ(row1[5], nlohmann::json::parse(R"({"attachments": []})"));
    const auto &row2 = json["rows"][1];
    EXPECT_EQ(row2[4], nlohmann::json::parse(R"({"values": ["value1", "value4"]})"));
    EXPECT_EQ(row2[5], nlohmann::json::parse(R"({"attachments": [
        {"name": "test_data.txt", "type": "txt", "size": 38,
         "sha256": "c9ebf61b9960f16069a79915efd87a507d21d9144bcc317687f9323f1fc055b2"},
        {"name": "test_data2.txt", "type": "txt", "size": 43,
         "sha256": "1d83095a80dc9910a6bdf99e6cbae4e392066a91f3a8089975d5957250079b0a"}]})"));
    EXPECT_EQ(json["rows"][2][1], nlohmann::json::parse(R"({"versions": [
        {"value": "row3-memo-again", "date": "09/12/2011 21:22:45"},
        {"value": "row3-memo-revised", "date": "09/12/2011 21:22:33"},
        {"value": "row3-memo", "date": "09/12/2011 21:21:19"}]})"));
}

TEST(VellumCliComplex, ExtractWritesEachAttachmentUnderItsRowAndName)
{
    test::TempDir dir;
    const std::string out = dir.file("files");
    const auto result =
        runTool("vellum-cli", {"extract", fixturePath(kFile), "Table1", out, "--column", "attach-data"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, out + "/2/test_data.txt\n" + out + "/2/test_data2.txt\n" + out + "/4/test_data2.txt\n");
    const std::pair<const char *, const char *> files[] = {
        {"/2/test_data.txt", "c9ebf61b9960f16069a79915efd87a507d21d9144bcc317687f9323f1fc055b2"},
        {"/2/test_data2.txt", "1d83095a80dc9910a6bdf99e6cbae4e392066a91f3a8089975d5957250079b0a"},
        {"/4/test_data2.txt", "1d83095a80dc9910a6bdf99e6cbae4e392066a91f3a8089975d5957250079b0a"},
    };
    for (const auto &[name, sha256] : files) {
        const std::string content = readFile(out + name);
        EXPECT_EQ(sha256Hex(content.data(), content.size()), sha256) << name;
    }
}

TEST(VellumCliComplex, TextExportsWriteTheStoredIdOrTheValues)
{
    test::TempDir dir;
    const std::string out = dir.file("csv");
    const auto result =
        runTool("vellum-cli", {"export", fixturePath(kFile), out, "--format", "csv", "--table", "Table1", "--classic"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const std::string csv = readFile(out + "/Table1.csv");
    // Classic: each complex column writes the id its cell stores, as the SQL writers do.
    EXPECT_NE(csv.find("\"row2\",2,\"row2-memo\",\"row2-memo\",2,2\n"), std::string::npos) << csv;

    // Lossless: the values themselves, as JSON arrays.
    const std::string lossless = dir.file("lossless");
    const auto full =
        runTool("vellum-cli", {"export", fixturePath(kFile), lossless, "--format", "csv", "--table", "Table1"});
    ASSERT_EQ(full.exitStatus, 0) << full.err;
    const std::string text = readFile(lossless + "/Table1.csv");
    EXPECT_NE(
        text.find(
            ",\"[\"\"value1\"\",\"\"value4\"\"]\",\"[{\"\"name\"\":\"\"test_data.txt\"\",\"\"type\"\":\"\"txt\"\","
            "\"\"base64\"\":\""),
        std::string::npos)
        << text;
    EXPECT_EQ(text.find(",2,2\n"), std::string::npos) << text;
}

} // namespace
} // namespace vellum
