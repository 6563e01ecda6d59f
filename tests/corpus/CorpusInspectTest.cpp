// Runs `vellum-cli list` and `schema` over every real-world file of ../shared/corpus and
// checks that nothing crashes and that each table has as many rows as a plain libmdb scan.

#include "support/Fixtures.h"
#include "support/RunProcess.h"

#include "mdb/mdbtoolsInclude.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <sstream>

namespace vellum {
namespace {

std::vector<std::string> corpusFiles()
{
    std::vector<std::string> files;
    const std::string dir = test::sharedPath("corpus");
    if (dir.empty())
        return files;
    for (const auto &entry : std::filesystem::directory_iterator(dir)) {
        const std::string name = entry.path().filename().string();
        const std::string ext = entry.path().extension().string();
        if ((ext == ".mdb" || ext == ".accdb") && name.rfind("damaged_", 0) != 0)
            files.push_back(entry.path().string());
    }
    std::sort(files.begin(), files.end());
    return files;
}

/// Row counts of the user tables by a plain libmdb scan (all columns bound, as mdb-export does).
std::map<std::string, size_t> plainScanCounts(const std::string &path, bool &opened)
{
    std::map<std::string, size_t> counts;
    MdbHandle *mdb = mdb_open(path.c_str(), MDB_NOFLAGS);
    opened = mdb != nullptr;
    if (!mdb)
        return counts;
    mdb_set_bind_size(mdb, 200000);
    if (mdb_read_catalog(mdb, MDB_TABLE)) {
        for (unsigned i = 0; i < mdb->num_catalog; ++i) {
            auto *entry = static_cast<MdbCatalogEntry *>(g_ptr_array_index(mdb->catalog, i));
            if (!entry || entry->object_type != MDB_TABLE || !mdb_is_user_table(entry))
                continue;
            MdbTableDef *table = mdb_read_table(entry);
            if (!table)
                continue;
            if (mdb_read_columns(table) && table->columns) {
                std::vector<std::vector<char>> buffers(table->columns->len, std::vector<char>(200000));
                std::vector<int> lengths(table->columns->len);
                for (unsigned c = 0; c < table->columns->len; ++c)
                    mdb_bind_column(table, static_cast<int>(c + 1), buffers[c].data(), &lengths[c]);
                mdb_rewind_table(table);
                size_t n = 0;
                while (mdb_fetch_row(table))
                    ++n;
                counts[entry->object_name] = n;
            }
            mdb_free_tabledef(table);
        }
    }
    mdb_close(mdb);
    return counts;
}

TEST(Corpus, ListAndSchemaOverEveryFile)
{
    const auto files = corpusFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus is absent: the real-world corpus suite is skipped";
    int opened = 0;
    for (const std::string &path : files) {
        SCOPED_TRACE(path);
        const auto list = test::runTool("vellum-cli", {"list", path}, 60);
        ASSERT_FALSE(list.timedOut);
        ASSERT_EQ(list.signal, 0) << "crashed";
        bool libmdbOpens = false;
        const auto counts = plainScanCounts(path, libmdbOpens);
        if (list.exitStatus == 1) {
            EXPECT_TRUE(list.err.find("cannot be opened") != std::string::npos ||
                        list.err.find("is encrypted: a password is needed") != std::string::npos)
                << list.err;
            continue;
        }
        // 3: opened, with what could not be read told on standard error (a damaged catalog).
        ASSERT_TRUE(list.exitStatus == 0 || list.exitStatus == 3) << list.err;
        EXPECT_EQ(list.exitStatus == 3, list.err.find("vellum-cli: warning: ") != std::string::npos) << list.err;
        ++opened;
        std::istringstream lines(list.out);
        std::string line;
        while (std::getline(lines, line)) {
            const size_t tab = line.rfind('\t');
            ASSERT_NE(tab, std::string::npos) << line;
            const std::string name = line.substr(0, tab);
            const auto it = counts.find(name);
            if (it != counts.end()) { // hidden data tables are not user tables of libmdb
                EXPECT_EQ(std::stoul(line.substr(tab + 1)), it->second) << name;
            }
        }
        const auto schema = test::runTool("vellum-cli", {"schema", path, "--json"}, 60);
        ASSERT_EQ(schema.signal, 0) << "schema crashed";
        ASSERT_EQ(schema.exitStatus, list.exitStatus) << schema.err;
        EXPECT_FALSE(nlohmann::json::parse(schema.out, nullptr, false).is_discarded());
    }
    EXPECT_GT(opened, 50);
}

} // namespace
} // namespace vellum
