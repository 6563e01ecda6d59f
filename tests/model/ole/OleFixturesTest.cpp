#include "support/Fixtures.h"

#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "util/json.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

class OleFixture : public ::testing::TestWithParam<const char *> {};

// Every row of the Blobs table loads as its sidecar says: the inserted file with its extension,
// or the null marker where nothing decodes.
TEST_P(OleFixture, BlobsDecodeToTheInsertedFiles)
{
    const std::string path = test::fixturePath(GetParam());
    auto file = test::openInProcess(path);
    ASSERT_TRUE(file);
    const auto sidecar = test::loadSidecar(path);
    ASSERT_TRUE(sidecar.contains("ole_rows"));
    const TOrbMDBTable *table = file->tableNamed("Blobs");
    ASSERT_NE(table, nullptr);
    ASSERT_EQ(table->rowCount(), sidecar["ole_rows"].size());

    std::size_t idColumn = 0, dataColumn = 0;
    for (std::size_t c = 0; c < table->columns().size(); ++c) {
        if (table->columns()[c]->name() == "ID")
            idColumn = c;
        if (table->columns()[c]->name() == "Data")
            dataColumn = c;
    }
    std::size_t blobs = 0;
    for (std::size_t r = 0; r < table->rowCount(); ++r) {
        const int id = std::stoi(std::string(table->cell(r, idColumn).text));
        const auto &expected = sidecar["ole_rows"][static_cast<std::size_t>(id - 1)];
        SCOPED_TRACE(expected["description"].get<std::string>());
        const CellValue cell = table->cell(r, dataColumn);
        const std::string decode = expected["expected_decode"];
        if (decode == "payload") {
            ASSERT_TRUE(cell.isBlob());
            const auto &data = cell.blob->data();
            EXPECT_EQ(data.size(), expected["payload_length"].get<std::size_t>());
            EXPECT_EQ(sha256Hex(data.data(), data.size()), expected["payload_sha256"]);
            const std::string extension =
                expected["expected_extension"].is_null() ? "" : expected["expected_extension"].get<std::string>();
            EXPECT_EQ(cell.blob->fileExtension(), extension);
            ++blobs;
        } else if (decode == "fail") {
            // Stored without an OLE header: kept as the bytes stored, named by their signature.
            ASSERT_TRUE(cell.isBlob());
            const auto &data = cell.blob->data();
            EXPECT_EQ(sha256Hex(data.data(), data.size()), expected["field_sha256"]);
            EXPECT_EQ(cell.blob->fileExtension(), id == 7 ? "png" : "");
            ++blobs;
        } else if (decode == "null") {
            EXPECT_TRUE(cell.isNull());
        } else {
            // A Package that only links to a file: the null marker, noting the path.
            EXPECT_TRUE(cell.isNull());
            ASSERT_NE(cell.blob, nullptr);
            EXPECT_EQ(cell.blob->cellDescription(), "link to C:\\Data\\linked.xlsx");
            EXPECT_EQ(cell.blob->description(), "link to C:\\Data\\linked.xlsx");
        }
    }
    EXPECT_EQ(blobs, 11u);
}

INSTANTIATE_TEST_SUITE_P(Files, OleFixture, ::testing::Values("ole.mdb", "ole.accdb"));

} // namespace
} // namespace vellum
