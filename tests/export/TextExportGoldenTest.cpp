// Whole delimited text and XML files of the fixture database, classic and lossless, compared
// byte for byte with the reviewed files in tests/data/export-golden.

#include "export/ExportJob.h"
#include "support/FileContents.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace vellum {
namespace {

TEST(TextExportGolden, FixtureTablesInEveryKind)
{
    auto file = test::openInProcess(test::fixturePath("features.mdb"));
    ASSERT_TRUE(file);
    struct Case {
        const char *folder;
        ExportFileType kind;
        std::vector<std::string> tables;
        void (*adjust)(ExportOptions &);
    };
    const Case cases[] = {
        {"csv", ExportFileType::CSV, {"AllTypes", "Quote\"Table"}, nullptr},
        {"txt",
         ExportFileType::TXT,
         {"AllTypes", "Quote\"Table"},
         [](ExportOptions &o) {
             o.changeFieldDelimiter(kFieldDelimiterSemicolon);
             o.recordDelimiterTag = kRecordDelimiterCRLF;
         }},
        {"xml", ExportFileType::XML, {"AllTypes", "Quote\"Table"}, nullptr},
        {"latin1",
         ExportFileType::CSV,
         {"AllTypes", "\u00dcn\u00efcode \u8868"},
         [](ExportOptions &o) { o.encoding = 5; }},
        {"lossless-csv",
         ExportFileType::CSV,
         {"AllTypes", "Quote\"Table"},
         [](ExportOptions &o) { o.lossless = true; }},
        {"lossless-xml",
         ExportFileType::XML,
         {"AllTypes", "Quote\"Table"},
         [](ExportOptions &o) { o.lossless = true; }},
    };
    for (const Case &c : cases) {
        test::TempDir dir;
        ExportJob job(*file, file->tableNamed(c.tables[0]), c.kind);
        for (std::size_t i = 0; i < job.entries().size(); ++i)
            for (const std::string &name : c.tables)
                if (job.entries()[i].tableName == name)
                    job.setEntrySelected(i, true);
        if (c.adjust)
            c.adjust(job.mutableOptions());
        job.setExportPath(dir.path());
        ASSERT_TRUE(job.startExport(nullptr));
        job.wait();
        EXPECT_EQ(job.successTableCount(), 2) << c.folder;

        const std::filesystem::path golden = std::filesystem::path(test::fixturePath("export-golden")) / c.folder;
        std::size_t compared = 0;
        for (const auto &expected : std::filesystem::directory_iterator(golden)) {
            const std::filesystem::path written = std::filesystem::path(dir.path()) / expected.path().filename();
            ASSERT_TRUE(std::filesystem::exists(written)) << written;
            // VELLUM_UPDATE_GOLDEN=1 rewrites the reviewed files after a deliberate change.
            if (std::getenv("VELLUM_UPDATE_GOLDEN"))
                std::filesystem::copy_file(written, expected.path(), std::filesystem::copy_options::overwrite_existing);
            EXPECT_EQ(test::fileContents(written), test::fileContents(expected.path())) << written;
            ++compared;
        }
        EXPECT_EQ(compared, 2u) << c.folder;
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path()), std::filesystem::directory_iterator()),
                  2)
            << c.folder;
    }
}

} // namespace
} // namespace vellum
