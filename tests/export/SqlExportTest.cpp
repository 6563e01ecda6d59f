// exportSQLThread through the export job: golden scripts of the fixture database in every
// dialect (one script and one per table, compared byte for byte), stop and unwritable paths.
//
// After a reviewed change of the output, VELLUM_UPDATE_GOLDEN=1 rewrites the golden files from
// the current output; review the diff before committing it.

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "model/TOrbMDBFile.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace vellum {
namespace {

namespace fs = std::filesystem;

/// Each dialect with the name of its golden files.
const std::pair<ServerType, const char *> kDialects[] = {
    {ServerTypeMySQL, "mysql"},   {ServerTypePostgreSQL, "postgresql"}, {ServerTypeOracle, "oracle"},
    {ServerTypeSQLite, "sqlite"}, {ServerTypeSQLServer, "sqlserver"},
};

std::string goldenDir()
{
    return std::string(VELLUM_TEST_DATA) + "/golden/sql";
}

/// Compares a written script with its golden file (or rewrites the golden file on request).
void expectGolden(const std::string &actualPath, const std::string &goldenPath)
{
    const std::string actual = test::fileContents(actualPath);
    ASSERT_FALSE(actual.empty()) << actualPath;
    if (std::getenv("VELLUM_UPDATE_GOLDEN")) {
        fs::create_directories(fs::path(goldenPath).parent_path());
        std::ofstream(goldenPath, std::ios::binary) << actual;
    }
    ASSERT_TRUE(fs::exists(goldenPath)) << "missing golden file " << goldenPath;
    const std::string expected = test::fileContents(goldenPath);
    if (actual == expected)
        return;
    std::size_t at = 0;
    while (at < actual.size() && at < expected.size() && actual[at] == expected[at])
        ++at;
    const std::size_t from = at > 80 ? at - 80 : 0;
    ADD_FAILURE() << goldenPath << " differs at byte " << at << "\n--- expected:\n"
                  << expected.substr(from, 200) << "\n--- actual:\n"
                  << actual.substr(from, 200);
}

/// Stops the job when entry `stopAt` is about to begin.
class StopAt : public ExportObserver {
public:
    explicit StopAt(std::size_t stopAt) : m_stopAt(stopAt) {}
    void updateProgressPanel(const ExportJob &job, std::size_t index) override
    {
        if (index == m_stopAt)
            const_cast<ExportJob &>(job).stop();
    }
    void exportThreadFinished(const ExportJob &) override {}

private:
    std::size_t m_stopAt;
};

class SqlExport : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_file = test::openInProcess(test::fixturePath("features.mdb"));
        ASSERT_TRUE(m_file) << "cannot open the fixture features.mdb";
        ASSERT_FALSE(m_dir.path().empty());
    }

    /// Runs the SQL kind over the whole file on this thread; answers the job for its report.
    std::unique_ptr<ExportJob> run(ServerType dialect, bool singleFile, const std::string &path,
                                   ExportObserver *observer = nullptr)
    {
        auto job = std::make_unique<ExportJob>(*m_file, nullptr, ExportFileType::SQL);
        ExportOptions options = job->options();
        options.sqlFormat = dialect;
        options.exportSingleFile = singleFile;
        job->setOptions(options);
        job->setExportPath(path);
        EXPECT_TRUE(job->startExport(observer));
        job->wait();
        return job;
    }

    std::unique_ptr<TOrbMDBFile> m_file;
    test::TempDir m_dir;
};

TEST_F(SqlExport, GoldenSingleScriptPerDialect)
{
    for (const auto &[dialect, name] : kDialects) {
        const std::string path = m_dir.file(std::string(name) + ".sql");
        const auto job = run(dialect, true, path);
        EXPECT_EQ(job->successTableCount(), 14) << name;
        EXPECT_TRUE(job->msgLog().empty()) << job->report().message;
        expectGolden(path, goldenDir() + "/" + name + ".sql");
    }
}

TEST_F(SqlExport, GoldenScriptPerTablePerDialect)
{
    for (const auto &[dialect, dialectName] : kDialects) {
        const std::string folder = m_dir.file(dialectName);
        fs::create_directories(folder);
        const auto job = run(dialect, false, folder);
        EXPECT_EQ(job->successTableCount(), 14) << dialectName;
        std::size_t files = 0;
        for (const auto &table : m_file->tables()) {
            const std::string name = table->name() + ".sql";
            expectGolden(folder + "/" + name, goldenDir() + "/" + dialectName + "/" + name);
            ++files;
        }
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), files);
    }
}

TEST_F(SqlExport, StopDeletesTheScriptBeingWritten)
{
    // One script: stopped before the third table, the whole script is deleted.
    const std::string path = m_dir.file("stopped.sql");
    StopAt stopSingle(2);
    const auto single = run(ServerTypePostgreSQL, true, path, &stopSingle);
    EXPECT_FALSE(fs::exists(path));
    ASSERT_EQ(single->msgLog().size(), 1u);
    EXPECT_EQ(single->msgLog()[0], "Failed: Terminated.");
    EXPECT_EQ(single->report().title, "Export terminated.");

    // One script per table: the scripts written before the stop stay; the one begun is deleted.
    const std::string folder = m_dir.file("per-table");
    fs::create_directories(folder);
    StopAt stopPerTable(2);
    const auto perTable = run(ServerTypeMySQL, false, folder, &stopPerTable);
    EXPECT_EQ(perTable->successTableCount(), 2);
    EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()), 2);
    EXPECT_EQ(perTable->msgLog(), std::vector<std::string>{"<Customers> Failed: Terminated."});
}

TEST_F(SqlExport, UnwritablePathsAreLogged)
{
    const std::string missing = m_dir.file("no/such/folder");
    const auto single = run(ServerTypeSQLite, true, missing + "/db.sql");
    EXPECT_EQ(single->successTableCount(), 0);
    ASSERT_EQ(single->msgLog().size(), 1u);
    EXPECT_EQ(single->msgLog()[0], "Unable to create file for export.");

    const auto perTable = run(ServerTypeSQLite, false, missing);
    EXPECT_EQ(perTable->successTableCount(), 0);
    ASSERT_EQ(perTable->msgLog().size(), 14u);
    EXPECT_EQ(perTable->msgLog()[0], "<a]b> Failed: Unable to create file for export.");
    EXPECT_NE(perTable->report().message.find("…and 4 more."), std::string::npos);
}

} // namespace
} // namespace vellum
