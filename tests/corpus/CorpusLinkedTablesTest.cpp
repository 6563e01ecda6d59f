// The linked tables of every file in ../shared/corpus against what Jackcess reads
// (../shared/corpus-truth): name, kind, target database, target table and connect text, through
// both readers and through vellum-cli; and the relationships that touch a linked table.

#include "support/Fixtures.h"
#include "support/RunProcess.h"
#include "truthFiles.h"

#include "loader/IsolatedReader.h"
#include "model/TOrbMDBFile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace vellum {
namespace {

/// One linked table in the truth's terms; null texts as "<null>".
using LinkTuple = std::tuple<std::string, std::string, std::string, std::string, std::string>;

std::string textOrNull(const nlohmann::json &value)
{
    return value.is_null() ? std::string("<null>") : value.get<std::string>();
}

std::multiset<LinkTuple> truthLinks(const nlohmann::json &links)
{
    std::multiset<LinkTuple> out;
    for (const auto &link : links)
        out.insert(
            {link["name"], link["kind"], textOrNull(link["database"]), link["table"], textOrNull(link["connect"])});
    return out;
}

/// The model's linked tables as the truth writes them: database null for ODBC links, connect
/// null where none is stored.
std::multiset<LinkTuple> modelLinks(const TOrbMDBFile &file)
{
    std::multiset<LinkTuple> out;
    for (const auto &link : file.linkedTables()) {
        const bool odbc = link->kind() == TOrbMDBLinkedTable::Kind::Odbc;
        out.insert({link->name(), TOrbMDBLinkedTable::kindName(link->kind()),
                    odbc ? std::string("<null>") : link->database(), link->targetTable(),
                    link->connect().empty() ? std::string("<null>") : link->connect()});
    }
    return out;
}

struct TruthFile {
    std::string path; ///< the Access file
    nlohmann::json truth;
};

/// Every unencrypted file of the corpus with its truth (encrypted files hold no links).
std::vector<TruthFile> corpusFiles()
{
    std::vector<TruthFile> out;
    const std::string dir = test::sharedPath("corpus-truth");
    if (dir.empty())
        return out;
    const std::vector<std::filesystem::path> truthPaths = test::truthFilePaths();
    for (const auto &truthPath : truthPaths) {
        std::ifstream in(truthPath);
        nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        if (truth.is_discarded() || !truth["password"].is_null())
            continue;
        const std::string path = test::sharedPath("corpus/" + truth["file"].get<std::string>());
        if (!path.empty())
            out.push_back({path, std::move(truth)});
    }
    return out;
}

TEST(CorpusLinkedTables, EveryLinkedTableEqualsTheTruthThroughBothReaders)
{
    const auto files = corpusFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    ASSERT_TRUE(isolatedLoaderAvailable()) << "vellum-loader is built beside the test executables";
    std::size_t links = 0;
    std::size_t filesWithLinks = 0;
    for (const TruthFile &corpus : files) {
        SCOPED_TRACE(corpus.path);
        const auto expected = truthLinks(corpus.truth["linkedTables"]);
        const auto file = test::openInProcess(corpus.path);
        ASSERT_TRUE(file);
        EXPECT_EQ(modelLinks(*file), expected);
        for (const auto &link : file->linkedTables())
            EXPECT_EQ(link->file(), file.get());
        if (expected.empty())
            continue;
        links += expected.size();
        ++filesWithLinks;
        auto isolated = TOrbMDBFile::fromPath(corpus.path);
        IsolatedReader reader;
        ASSERT_TRUE(isolated->open(reader, nullptr));
        EXPECT_EQ(modelLinks(*isolated), expected);
        // Linked tables are listed by name, like local tables.
        const auto &listed = isolated->linkedTables();
        EXPECT_TRUE(std::is_sorted(listed.begin(), listed.end(),
                                   [](const auto &a, const auto &b) { return a->compareByName(*b) < 0; }));
    }
    EXPECT_EQ(links, 3u);
    EXPECT_EQ(filesWithLinks, 2u);
}

TEST(CorpusLinkedTables, RelationshipsTouchingALinkedTableAreKept)
{
    const auto files = corpusFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    for (const TruthFile &corpus : files) {
        std::set<std::string> linkedNames;
        for (const auto &link : corpus.truth["linkedTables"])
            linkedNames.insert(link["name"].get<std::string>());
        if (linkedNames.empty())
            continue;
        SCOPED_TRACE(corpus.path);
        const auto file = test::openInProcess(corpus.path);
        ASSERT_TRUE(file);
        for (const auto &relationship : corpus.truth["relationships"]) {
            const std::string primary = relationship["primaryTable"];
            const std::string foreign = relationship["foreignTable"];
            if (!linkedNames.count(primary) && !linkedNames.count(foreign))
                continue;
            const TOrbMDBForeignKey *key = file->findForeignKeyByName(relationship["name"].get<std::string>());
            ASSERT_NE(key, nullptr) << relationship["name"];
            EXPECT_EQ(key->referencedTable(), primary);
            EXPECT_EQ(key->referencingTable(), foreign);
            EXPECT_EQ(key->referencedColumns(), relationship["primaryColumns"].get<std::vector<std::string>>());
            EXPECT_EQ(key->referencingColumns(), relationship["foreignColumns"].get<std::vector<std::string>>());
        }
        // Every relationship the file stores is kept, whichever tables it joins.
        EXPECT_EQ(file->allForeignKeys().size(), corpus.truth["relationships"].size());
    }
}

TEST(CorpusLinkedTables, SchemaJsonListsTheLinkedTablesOfTheTruth)
{
    const auto files = corpusFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    for (const TruthFile &corpus : files) {
        if (corpus.truth["linkedTables"].empty())
            continue;
        SCOPED_TRACE(corpus.path);
        const auto result = test::runTool("vellum-cli", {"schema", corpus.path, "--json"});
        ASSERT_EQ(result.exitStatus, 0) << result.err;
        const auto schema = nlohmann::json::parse(result.out, nullptr, false);
        ASSERT_FALSE(schema.is_discarded());
        nlohmann::json links = schema["linkedTables"];
        ASSERT_TRUE(links.is_array());
        for (auto &link : links) {
            EXPECT_TRUE(link["relationships"].is_array());
            link.erase("relationships");
        }
        EXPECT_EQ(truthLinks(links), truthLinks(corpus.truth["linkedTables"]));
        // The truth's keys and no others.
        for (const auto &link : links) {
            std::vector<std::string> keys;
            for (const auto &item : link.items())
                keys.push_back(item.key());
            std::sort(keys.begin(), keys.end());
            EXPECT_EQ(keys, (std::vector<std::string>{"connect", "database", "kind", "name", "table"}));
        }
    }
}

} // namespace
} // namespace vellum
