// Loss reports against the truth (../shared/corpus-truth): every table the truth lists is loaded
// with all its rows or named in a loss report, and every loss report is true.

#include "support/Fixtures.h"
#include "truthFiles.h"

#include "mdb/MdbLoader.h"
#include "model/TOrbMDBFile.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace vellum {
namespace {

namespace fs = std::filesystem;

TEST(CorpusLosses, NoTableOrRowIsLostSilentlyAndNoLossIsFalse)
{
    const std::string folder = test::sharedPath("corpus-truth");
    if (folder.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    const std::vector<std::filesystem::path> files = test::truthFilePaths();
    std::size_t checked = 0, withLosses = 0;
    for (const auto &truthPath : files) {
        std::ifstream in(truthPath);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << truthPath;
        if (!truth["password"].is_null())
            continue; // encrypted: read with its password elsewhere
        const std::string fileName = truth["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (path.empty())
            continue;
        SCOPED_TRACE(fileName);
        LoadOptions options;
        if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
            options.jet3CodePage = truth["codePage"];
        auto file = test::openInProcess(path, options);
        ASSERT_TRUE(file);
        ++checked;
        const auto &losses = file->losses();
        withLosses += !losses.empty();
        const auto lossFor = [&](LossReport::Kind kind, const std::string &table) {
            return std::find_if(losses.begin(), losses.end(),
                                [&](const LossReport &loss) { return loss.kind == kind && loss.table == table; });
        };
        const bool catalogShort = std::any_of(losses.begin(), losses.end(), [](const LossReport &loss) {
            return loss.kind == LossReport::Kind::Catalog || loss.kind == LossReport::Kind::CatalogPart;
        });
        for (const auto &tableTruth : truth["tables"]) {
            const std::string name = tableTruth["name"];
            const std::uint64_t rows = tableTruth["rowsTotal"];
            const TOrbMDBTable *table = file->tableNamed(name);
            if (!table) {
                EXPECT_TRUE(catalogShort || lossFor(LossReport::Kind::TableDefinition, name) != losses.end())
                    << "table " << name << " is missing and no loss says so";
                continue;
            }
            const auto rowsLoss = lossFor(LossReport::Kind::Rows, name);
            if (table->rowCount() < rows) {
                EXPECT_NE(rowsLoss, losses.end()) << name << ": " << table->rowCount() << " of " << rows << " rows";
            }
        }
        for (const LossReport &loss : losses) {
            SCOPED_TRACE(lossText(loss));
            switch (loss.kind) {
            case LossReport::Kind::TableDefinition:
                EXPECT_EQ(file->tableNamed(loss.table), nullptr);
                break;
            case LossReport::Kind::Rows: {
                const TOrbMDBTable *table = file->tableNamed(loss.table);
                ASSERT_NE(table, nullptr);
                EXPECT_EQ(table->rowCount(), loss.count);
                EXPECT_LT(loss.count, loss.expected);
                break;
            }
            case LossReport::Kind::LongValues:
                EXPECT_NE(file->tableNamed(loss.table), nullptr);
                EXPECT_GT(loss.count, 0u);
                break;
            case LossReport::Kind::Catalog:
                EXPECT_TRUE(file->tables().empty());
                break;
            case LossReport::Kind::CatalogPart:
                EXPECT_LT(loss.count, loss.expected);
                break;
            }
        }
    }
    std::printf("%zu files checked against the truth, %zu with losses reported\n", checked, withLosses);
}

} // namespace
} // namespace vellum
