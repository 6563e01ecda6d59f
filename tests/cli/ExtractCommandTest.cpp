#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"

#include "util/json.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace vellum {
namespace {

using test::fixturePath;
using test::runTool;
using test::TempDir;

std::string readFile(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::vector<std::string> lines(const std::string &text)
{
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

class VellumCliExtract : public ::testing::TestWithParam<const char *> {};

TEST_P(VellumCliExtract, WritesEachBlobAsAFileOfItsType)
{
    TempDir dir;
    const std::string out = dir.file("blobs"); // created by the command
    const auto result = runTool("vellum-cli", {"extract", fixturePath(GetParam()), "Blobs", out});
    ASSERT_EQ(result.exitStatus, 0) << result.err;

    // What the sidecar says was inserted: (SHA-256, extension) of each decodable payload.
    std::multiset<std::pair<std::string, std::string>> expected;
    const auto sidecar = test::loadSidecar(fixturePath(GetParam()));
    for (const auto &row : sidecar["ole_rows"]) {
        if (row["expected_decode"] == "payload")
            expected.insert({row["payload_sha256"].get<std::string>(),
                             row["expected_extension"].is_null() ? "" : row["expected_extension"].get<std::string>()});
        // Data stored without an OLE header comes out as stored, named by its signature.
        if (row["expected_decode"] == "fail")
            expected.insert({row["field_sha256"].get<std::string>(), row["ID"] == 7 ? "png" : ""});
    }

    std::multiset<std::pair<std::string, std::string>> written;
    const auto paths = lines(result.out);
    ASSERT_EQ(paths.size(), expected.size());
    for (const std::string &path : paths) {
        SCOPED_TRACE(path);
        ASSERT_EQ(path.rfind(out + "/Blobs-", 0), 0u);
        const std::string name = path.substr(out.size() + 1);
        const std::size_t dot = name.find('.');
        const std::string stem = name.substr(0, dot);
        EXPECT_EQ(stem.substr(stem.size() - 5), "-Data");
        const std::string content = readFile(path);
        const std::string extension = dot == std::string::npos ? "" : name.substr(dot + 1);
        written.insert({sha256Hex(content.data(), content.size()), extension});
        // The files open as what their extension says. A Word 2007 object whose compound
        // document lacks its Package stream is written as that compound document.
        const std::multimap<std::string, std::string> magic = {{"pdf", "%PDF"},
                                                               {"bmp", "BM"},
                                                               {"docx", "PK\x03\x04"},
                                                               {"docx", "\xD0\xCF\x11\xE0"},
                                                               {"jpg", "\xFF\xD8\xFF"}};
        if (magic.count(extension)) {
            bool matches = false;
            for (auto [it, end] = magic.equal_range(extension); it != end; ++it)
                matches = matches || content.rfind(it->second, 0) == 0;
            EXPECT_TRUE(matches);
        }
    }
    EXPECT_EQ(written, expected);
}

INSTANTIATE_TEST_SUITE_P(Files, VellumCliExtract, ::testing::Values("ole.mdb", "ole.accdb"));

TEST(VellumCliExtractOptions, ColumnsTablesAndFolders)
{
    TempDir dir;
    const std::string db = fixturePath("ole.mdb");
    {
        std::ofstream(dir.file("plain")) << "keep";
    }
    struct Case {
        std::vector<std::string> args;
        int exitStatus;
        std::size_t files;
        const char *message;
    };
    const Case cases[] = {
        {{"extract", db, "Blobs", dir.file("a"), "--column", "Data"}, 0, 11, ""},
        {{"extract", db, "Blobs", dir.file("b"), "--column", "ID"}, 0, 0, ""},
        {{"extract", db, "Blobs", dir.file("c"), "--column", "Nope"}, 1, 0, "Nope"},
        {{"extract", db, "NoSuchTable", dir.file("d")}, 1, 0, "NoSuchTable"},
        {{"extract", db, "Blobs", dir.file("plain")}, 1, 0, "not a folder"},
        {{"extract", db, "Blobs", dir.file("missing/parent")}, 1, 0, "cannot create"},
        {{"extract", db, "Blobs"}, 2, 0, "usage:"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.args.back());
        const auto result = runTool("vellum-cli", c.args);
        EXPECT_EQ(result.exitStatus, c.exitStatus) << result.err;
        EXPECT_EQ(lines(result.out).size(), c.files);
        EXPECT_NE(result.err.find(c.message), std::string::npos) << result.err;
    }
    EXPECT_EQ(readFile(dir.file("plain")), "keep");
}

TEST(VellumCliExtractOptions, RowsShowBlobsByTheirCellDescription)
{
    const auto result = runTool("vellum-cli", {"rows", fixturePath("ole.mdb"), "Blobs"});
    ASSERT_EQ(result.exitStatus, 0) << result.err;
    const auto rows = lines(result.out);
    ASSERT_EQ(rows.size(), 15u);
    const auto dataOf = [&](const std::string &id) {
        for (const std::string &row : rows)
            if (row.rfind(id + "\t", 0) == 0)
                return row.substr(row.rfind('\t') + 1);
        return std::string("(no row)");
    };
    EXPECT_EQ(dataOf("1"), ".pdf [1 KB]");
    EXPECT_EQ(dataOf("2"), "[1 KB]");
    EXPECT_EQ(dataOf("7"), ".png [1 KB]"); // a PNG stored without an OLE header
    EXPECT_EQ(dataOf("9"), "[NULL]");
    EXPECT_EQ(dataOf("14"), ".bin [293 KB]");
}

} // namespace
} // namespace vellum
