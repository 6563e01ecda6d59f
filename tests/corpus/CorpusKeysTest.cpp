// Indexes, primary-key marks and relationships of every file in ../shared/corpus compared with
// what Jackcess reads (../shared/corpus-truth), and every file exported to a new SQLite database
// by vellum-cli: wrong keys there make whole tables fail on a UNIQUE or PRIMARY KEY constraint.
// Encrypted files (the sidecar names a password) are opened elsewhere and skipped here.

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "support/TempDir.h"
#include "support/truthIndexes.h"
#include "truthFiles.h"

#include "model/TOrbMDBFile.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <future>
#include <set>
#include <sstream>

namespace vellum {
namespace {

struct TruthFile {
    std::string fileName;
    std::string path; ///< of the Access file
    nlohmann::json truth;
};

/// The sidecars of the unencrypted files whose Access file is present, in name order.
std::vector<TruthFile> readableTruths()
{
    std::vector<TruthFile> files;
    const std::string dir = test::sharedPath("corpus-truth");
    if (dir.empty())
        return files;
    const std::vector<std::filesystem::path> paths = test::truthFilePaths();
    for (const auto &jsonPath : paths) {
        std::ifstream in(jsonPath);
        nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        if (truth.is_discarded() || !truth["password"].is_null())
            continue;
        const std::string fileName = truth["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (!path.empty())
            files.push_back(TruthFile{fileName, path, std::move(truth)});
    }
    return files;
}

LoadOptions optionsFor(const nlohmann::json &truth)
{
    LoadOptions options;
    if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
        options.jet3CodePage = truth["codePage"];
    return options;
}

/// An index as one comparable line: name, flags, keys with directions.
std::string describeTruthIndex(const nlohmann::json &index)
{
    std::string out = index["name"].get<std::string>() + (index["primaryKey"].get<bool>() ? " primary" : "") +
                      (index["unique"].get<bool>() ? " unique" : "") +
                      (index["foreignKey"].get<bool>() ? " foreign" : "") + ":";
    for (const auto &key : index["columns"])
        out += " " + key["name"].get<std::string>() + (key["ascending"].get<bool>() ? "+" : "-");
    return out;
}

std::string describeIndex(const TOrbMDBIndex &index)
{
    std::string out = index.name() + (index.isPrimaryKey() ? " primary" : "") + (index.isUnique() ? " unique" : "") +
                      (index.isForeignKey() ? " foreign" : "") + ":";
    for (const IndexKey &key : index.keys())
        out += " " + key.name + (key.ascending ? "+" : "-");
    return out;
}

std::string joined(const std::vector<std::string> &parts)
{
    std::string out;
    for (const std::string &part : parts)
        out += (out.empty() ? "" : ",") + part;
    return out;
}

std::string describeTruthRelationship(const nlohmann::json &r)
{
    return r["name"].get<std::string>() + ": " + r["foreignTable"].get<std::string>() + "(" +
           joined(r["foreignColumns"].get<std::vector<std::string>>()) + ") -> " +
           r["primaryTable"].get<std::string>() + "(" + joined(r["primaryColumns"].get<std::vector<std::string>>()) +
           ")" + (r["cascadeUpdates"].get<bool>() ? " on-update-cascade" : "") +
           (r["cascadeDeletes"].get<bool>() ? " on-delete-cascade" : "") +
           (r["cascadeNull"].get<bool>() ? " on-delete-set-null" : "") +
           (r["enforced"].get<bool>() ? "" : " not-enforced");
}

std::string describeRelationship(const TOrbMDBForeignKey &key)
{
    return key.name() + ": " + key.referencingTable() + "(" + joined(key.referencingColumns()) + ") -> " +
           key.referencedTable() + "(" + joined(key.referencedColumns()) + ")" +
           (key.onUpdateCascade() ? " on-update-cascade" : "") + (key.onDeleteCascade() ? " on-delete-cascade" : "") +
           (key.onDeleteSetNull() ? " on-delete-set-null" : "") + (key.enforced() ? "" : " not-enforced");
}

TEST(CorpusKeys, IndexesPrimaryKeysAndRelationshipsAreWhatTheFileStores)
{
    const auto files = readableTruths();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    std::size_t indexes = 0, indexesMatching = 0, primaryKeys = 0, primaryKeysMatching = 0;
    std::size_t relationships = 0, relationshipsMatching = 0;
    for (const TruthFile &f : files) {
        SCOPED_TRACE(f.fileName);
        auto file = test::openInProcess(f.path, optionsFor(f.truth));
        ASSERT_TRUE(file);
        for (const auto &tableTruth : f.truth["tables"]) {
            const std::string tableName = tableTruth["name"];
            const TOrbMDBTable *table = file->tableNamed(tableName);
            ASSERT_NE(table, nullptr) << tableName;
            // Every logical index with key columns, sorted by name as the table keeps them.
            std::multiset<std::string> expected;
            std::set<std::string> primaryColumns;
            for (const auto &index : tableTruth["indexes"]) {
                if (index["columns"].empty())
                    continue;
                expected.insert(describeTruthIndex(index));
                if (index["primaryKey"].get<bool>())
                    for (const auto &key : index["columns"])
                        primaryColumns.insert(key["name"].get<std::string>());
            }
            std::multiset<std::string> ours;
            for (const auto &index : table->indices())
                ours.insert(describeIndex(*index));
            indexes += expected.size();
            for (const std::string &index : expected)
                indexesMatching += ours.count(index) ? 1 : 0;
            EXPECT_EQ(ours, expected) << tableName;

            std::set<std::string> marked;
            for (const auto &column : table->columns())
                if (column->isPrimaryKey())
                    marked.insert(column->name());
            if (!primaryColumns.empty() || !marked.empty()) {
                ++primaryKeys;
                primaryKeysMatching += marked == primaryColumns ? 1 : 0;
                EXPECT_EQ(marked, primaryColumns) << tableName << ": primary-key marks";
            }
        }
        std::multiset<std::string> expected;
        for (const auto &relationship : f.truth["relationships"])
            expected.insert(describeTruthRelationship(relationship));
        // The truth leaves out the relationships between Access's own system tables.
        std::multiset<std::string> ours;
        for (const auto &key : file->allForeignKeys())
            if (key->referencingTable().rfind("MSys", 0) != 0 && key->referencedTable().rfind("MSys", 0) != 0)
                ours.insert(describeRelationship(*key));
        relationships += expected.size();
        for (const std::string &relationship : expected)
            relationshipsMatching += ours.count(relationship) ? 1 : 0;
        EXPECT_EQ(ours, expected) << "relationships";
    }
    std::printf("corpus keys: indexes %zu of %zu, primary keys %zu of %zu, relationships %zu of %zu match\n",
                indexesMatching, indexes, primaryKeysMatching, primaryKeys, relationshipsMatching, relationships);
}

/// The "Create index … failed." lines an SQLite export must give because the file's own rows
/// break one of its unique indexes (SQLite refuses such an index; Access files can hold such
/// rows when damaged).
std::set<std::string> indexFailuresTheRowsForce(const nlohmann::json &truth)
{
    std::set<std::string> failures;
    for (const std::string &failure : test::uniqueIndexesTheRowsBreak(truth))
        failures.insert("Create index " + failure);
    return failures;
}

TEST(CorpusKeys, EveryFileExportsToSqliteWithoutAFailedTable)
{
    const auto files = readableTruths();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth or ../shared/corpus is absent";
    test::TempDir dir;
    ASSERT_FALSE(dir.path().empty());
    constexpr std::size_t kAtOnce = 2;
    std::size_t tablesExported = 0;
    std::size_t tablesExpected = 0;
    for (std::size_t first = 0; first < files.size(); first += kAtOnce) {
        std::vector<std::future<test::ProcessResult>> running;
        const std::size_t end = std::min(files.size(), first + kAtOnce);
        for (std::size_t i = first; i < end; ++i)
            running.push_back(std::async(std::launch::async, [&dir, &f = files[i], i] {
                return test::runTool(
                    "vellum-cli",
                    {"export", f.path, dir.file(std::to_string(i) + ".sqlite"), "--format", "sqlite", "--classic"},
                    120);
            }));
        for (std::size_t i = first; i < end; ++i) {
            const TruthFile &f = files[i];
            SCOPED_TRACE(f.fileName);
            const test::ProcessResult result = running[i - first].get();
            std::filesystem::remove(dir.file(std::to_string(i) + ".sqlite"));
            ASSERT_FALSE(result.timedOut);
            ASSERT_EQ(result.signal, 0) << "crashed";
            // 0, or 3 where the file itself reports what it could not read (a damaged catalog).
            const bool lossesTold = result.err.find("vellum-cli: warning: ") != std::string::npos;
            EXPECT_EQ(result.exitStatus, lossesTold ? 3 : 0) << result.out << result.err;
            // Every line that reports a failure must be one that the file's rows force.
            const std::set<std::string> forced = indexFailuresTheRowsForce(f.truth);
            std::set<std::string> failures;
            std::istringstream lines(result.out + result.err);
            std::string line;
            while (std::getline(lines, line)) {
                std::string lower = line;
                std::transform(lower.begin(), lower.end(), lower.begin(),
                               [](unsigned char c) { return std::tolower(c); });
                // An indented line is SQLite's own message under the failure line before it.
                if (lower.find("failed") == std::string::npos || line.rfind("    ", 0) == 0)
                    continue;
                const std::string prefix = "Failed: ";
                failures.insert(line.rfind(prefix, 0) == 0 ? line.substr(prefix.size()) : line);
            }
            EXPECT_EQ(failures, forced) << result.out;
            unsigned count = 0;
            if (std::sscanf(result.out.c_str(), "Export finished.\n%u", &count) == 1)
                tablesExported += count;
            tablesExpected += f.truth["tables"].size();
        }
    }
    std::printf("corpus sqlite export: %zu files, %zu tables exported (%zu user tables in the truth)\n", files.size(),
                tablesExported, tablesExpected);
}

} // namespace
} // namespace vellum
