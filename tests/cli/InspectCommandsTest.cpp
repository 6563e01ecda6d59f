#include "support/Fixtures.h"
#include "support/RunProcess.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;

TEST(VellumCli, ListPrintsTablesAndRowCounts)
{
    const auto result = runTool("vellum-cli", {"list", fixturePath("features.mdb")});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out, "a]b\t1\nAllTypes\t20\nCustomers\t3\nEmpty\t0\nItems\t3\nOrderLines\t4\nOrders\t3\n"
                          "Props\t3\nQuote\"Table\t1\nSpace Table\t1\ntable1\t2\nTable2\t2\ntable10\t2\n"
                          "Ünïcode 表\t1\n");
}

TEST(VellumCli, ExitStatusesAndMessages)
{
    struct Case {
        std::vector<std::string> args;
        int status;
        const char *errContains;
    };
    const std::string missing = fixturePath("missing.mdb");
    const Case cases[] = {
        {{"list", missing}, 1, "File ("},
        {{"schema", missing, "--json"}, 1, "cannot be opened"},
        {{"rows", fixturePath("features.mdb"), "NoSuchTable"}, 1, "NoSuchTable"},
        {{"list"}, 2, "usage: vellum-cli list"},
        {{"list", fixturePath("features.mdb"), "--bogus"}, 2, "--bogus"},
        {{"rows", fixturePath("features.mdb")}, 2, "usage:"},
        {{"list", fixturePath("features.mdb"), "--codepage", "KLINGON"}, 2, "unknown code page 'KLINGON'"},
        {{"list", fixturePath("features.mdb"), "--codepage"}, 2, "--codepage needs a code page"},
        {{"frobnicate"}, 2, "unknown command"},
        {{}, 2, "usage:"},
    };
    for (const Case &c : cases) {
        const auto result = runTool("vellum-cli", c.args);
        EXPECT_EQ(result.exitStatus, c.status) << c.errContains;
        EXPECT_NE(result.err.find(c.errContains), std::string::npos) << result.err;
        EXPECT_TRUE(result.out.empty()) << result.out;
    }
    const auto missingResult = runTool("vellum-cli", {"list", missing});
    EXPECT_NE(missingResult.err.find("File (" + missing + ") cannot be opened"), std::string::npos);

    for (const char *command : {"list", "schema", "rows"}) {
        const auto help = runTool("vellum-cli", {command, "--help"});
        EXPECT_EQ(help.exitStatus, 0);
        EXPECT_NE(help.out.find(std::string("vellum-cli ") + command), std::string::npos);
    }
}

TEST(VellumCli, SchemaJsonHoldsEveryObjectsRowsInLabelOrder)
{
    const auto result = runTool("vellum-cli", {"schema", fixturePath("features.mdb"), "--json"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const auto json = nlohmann::ordered_json::parse(result.out, nullptr, false);
    ASSERT_FALSE(json.is_discarded()) << result.out.substr(0, 400);
    EXPECT_EQ(json["file"]["Name"], "features.mdb");
    ASSERT_EQ(json["tables"].size(), 14u);
    const auto &orders = json["tables"][6];
    EXPECT_EQ(orders["info"]["Name"], "Orders");
    EXPECT_TRUE(orders["info"]["Number of rows"].is_number());
    EXPECT_EQ(orders["info"]["Number of rows"], 3);
    EXPECT_EQ(orders["relationships"].size(), 3u);
    std::vector<std::string> keys;
    for (auto it = orders["relationships"][0].begin(); it != orders["relationships"][0].end(); ++it)
        keys.push_back(it.key());
    EXPECT_EQ(keys, (std::vector<std::string>{"Name", "Columns", "Referenced table", "Referenced columns",
                                              "On update cascade", "On delete cascade"}));
    const auto &lines = json["tables"][5];
    EXPECT_EQ(lines["info"]["Name"], "OrderLines");
    EXPECT_EQ(lines["indexes"][0]["Index keys"], "Price (Descending)");
    // Each index also says whether it is a relationship's, after its information rows.
    std::vector<std::string> indexKeys;
    for (auto it = lines["indexes"][1].begin(); it != lines["indexes"][1].end(); ++it)
        indexKeys.push_back(it.key());
    EXPECT_EQ(indexKeys, (std::vector<std::string>{"Name", "Index keys", "Primary key", "Unique", "Foreign key"}));
    EXPECT_EQ(lines["indexes"][1]["Name"], "OrdersOrderLines");
    EXPECT_EQ(lines["indexes"][1]["Foreign key"], "YES");
    EXPECT_EQ(lines["indexes"][0]["Foreign key"], "NO");
    EXPECT_EQ(lines["columns"][2]["Size"], 50);
}

TEST(VellumCli, LinkedTablesFollowTheLocalTables)
{
    // jet4_linked.mdb holds no local table and two links to tables of other Access files.
    struct Case {
        std::vector<std::string> args;
        std::string out;
    };
    const std::string linked = fixturePath("jet4_linked.mdb");
    const Case cases[] = {
        {{"list", linked}, "Table1\t-> C:\\db\\linkee1.mdb : Table1\ntable2\t-> C:\\db\\linkee2.mdb : table2\n"},
        {{"schema", linked},
         "\nLinked table: Table1\n  Name: Table1\n  Link: ACCESS\n  Database: C:\\db\\linkee1.mdb\n  Table: Table1\n"
         "\nLinked table: table2\n  Name: table2\n  Link: ACCESS\n  Database: C:\\db\\linkee2.mdb\n  Table: table2\n"},
        {{"schema", linked, "--json"},
         "\n], \"linkedTables\": [\n"
         "  {\"name\": \"Table1\", \"kind\": \"ACCESS\", \"database\": \"C:\\\\db\\\\linkee1.mdb\", \"table\": "
         "\"Table1\", "
         "\"connect\": null, \"relationships\": []},\n"
         "  {\"name\": \"table2\", \"kind\": \"ACCESS\", \"database\": \"C:\\\\db\\\\linkee2.mdb\", \"table\": "
         "\"table2\", "
         "\"connect\": null, \"relationships\": []}\n], \"queries\": []}\n"},
        {{"schema", fixturePath("features.mdb"), "--json"}, "\n], \"linkedTables\": [\n], \"queries\": []}\n"},
    };
    for (const Case &c : cases) {
        const auto result = runTool("vellum-cli", c.args);
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        ASSERT_GE(result.out.size(), c.out.size()) << result.out;
        // Each expected text is the end of the output (the file's own rows come first).
        EXPECT_EQ(result.out.substr(result.out.size() - c.out.size()), c.out) << c.args[0];
        if (c.args[0] == "list") {
            EXPECT_EQ(result.out, c.out);
        }
    }
    const auto json = runTool("vellum-cli", {"schema", linked, "--json"});
    const auto schema = nlohmann::json::parse(json.out, nullptr, false);
    ASSERT_FALSE(schema.is_discarded());
    EXPECT_TRUE(schema["tables"].empty());
    EXPECT_EQ(schema["linkedTables"].size(), 2u);
}

TEST(VellumCli, RowsAsTextAndJson)
{
    const auto text = runTool("vellum-cli", {"rows", fixturePath("features.mdb"), "table1"});
    ASSERT_EQ(text.exitStatus, 0) << text.err;
    const auto sidecar = test::loadSidecar(fixturePath("features.mdb"));
    const auto &expected = *test::sidecarTable(sidecar, "table1");
    std::string want;
    for (size_t c = 0; c < expected["columns"].size(); ++c)
        want += (c ? "\t" : "") + expected["columns"][c]["name"].get<std::string>();
    want += "\n";
    EXPECT_EQ(text.out.substr(0, want.size()), want);
    EXPECT_EQ(std::count(text.out.begin(), text.out.end(), '\n'), 3);

    const auto result = runTool("vellum-cli", {"rows", fixturePath("features.mdb"), "AllTypes", "--json"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const auto json = nlohmann::json::parse(result.out, nullptr, false);
    ASSERT_FALSE(json.is_discarded());
    EXPECT_EQ(json["columns"].size(), 16u);
    ASSERT_EQ(json["rows"].size(), 20u);
    // The first fixture row is all null but its key.
    for (size_t c = 1; c < 16; ++c)
        if (json["columns"][c] != "ColBoolean") {
            EXPECT_TRUE(json["rows"][0][c].is_null()) << json["columns"][c];
        }
    // Control characters and quotes survive the JSON round trip.
    const auto &rows = (*test::sidecarTable(sidecar, "AllTypes"))["rows"];
    const size_t memoColumn = 13;
    ASSERT_EQ(json["columns"][memoColumn], "ColMemo");
    for (size_t r = 0; r < rows.size(); ++r) {
        const auto &memo = rows[r]["ColMemo"];
        if (memo.is_string() && !memo.get<std::string>().empty() && memo.get<std::string>().size() < 4096) {
            EXPECT_EQ(json["rows"][r][memoColumn], memo) << "row " << r;
        }
    }
}

TEST(VellumCli, CodePageOfJet3TextIsTheCallersChoice)
{
    // An Access 97 file does not record its code page: windows-1252 unless --codepage says
    // otherwise, through the helper process and in the rows of every command.
    const std::string db = fixturePath("jet3_charsetGBK.mdb");
    const auto gbk = runTool("vellum-cli", {"rows", db, "table1", "--codepage", "GBK"});
    ASSERT_EQ(gbk.exitStatus, 0) << gbk.err;
    EXPECT_EQ(gbk.out, "ID\tfield1\n2\tGBK\u7f16\u7801\n");
    const auto plain = runTool("vellum-cli", {"rows", db, "table1"});
    ASSERT_EQ(plain.exitStatus, 0) << plain.err;
    EXPECT_EQ(plain.out, "ID\tfield1\n2\tGBK\u00b1\u00e0\u00c2\u00eb\n");
}

TEST(VellumCli, OutputThatCannotBeWrittenIsAFailure)
{
    // A full disk (/dev/full) fails the run with a message; a writable sink does not.
    const std::string cli = std::string(VELLUM_BIN_DIR) + "/vellum-cli";
    const std::string db = fixturePath("features.mdb");
    const std::vector<std::string> commands = {"list '" + db + "'", "schema '" + db + "' --json",
                                               "rows '" + db + "' AllTypes", "rows '" + db + "' AllTypes --json"};
    for (const std::string &command : commands) {
        SCOPED_TRACE(command);
        const auto full = test::runProcess({"/bin/sh", "-c", "exec '" + cli + "' " + command + " >/dev/full"});
        EXPECT_EQ(full.exitStatus, 3);
        EXPECT_NE(full.err.find("the output could not be written completely (No space left on device)"),
                  std::string::npos)
            << full.err;
        const auto sink = test::runProcess({"/bin/sh", "-c", "exec '" + cli + "' " + command + " >/dev/null"});
        EXPECT_EQ(sink.exitStatus, 0) << sink.err;
        EXPECT_TRUE(sink.err.empty()) << sink.err;
    }
}

} // namespace
} // namespace vellum
