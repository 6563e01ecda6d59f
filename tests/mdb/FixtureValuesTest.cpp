// Every row of the fixtures with exactly known content (tests/data and, when present,
// ../shared/testdata) as Vellum reads it, compared with what the sidecars say the file holds.

#include "support/Fixtures.h"

#include "model/TOrbBlobData.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

namespace vellum {
namespace {

using test::lowerHex;

std::size_t utf8Characters(std::string_view text)
{
    std::size_t count = 0;
    for (const unsigned char c : text)
        count += (c & 0xC0) != 0x80;
    return count;
}

/// Empty when the cell shows what the sidecar says; otherwise what differs.
std::string difference(const CellValue &cell, const nlohmann::json &truth, const std::string &type)
{
    const std::string ours = cell.isText() ? std::string(cell.text) : std::string();
    // The row store keeps an empty value as the null marker: "" and empty bytes read as null.
    const bool empty =
        (truth.is_string() && truth.get<std::string>().empty()) || (truth.is_object() && truth.value("len", -1) == 0);
    if (truth.is_null() || empty)
        return cell.isNull() ? "" : "a value where the file has none";
    if (truth.is_boolean())
        return ours == (truth.get<bool>() ? "1" : "0") ? "" : "boolean " + ours;
    if (cell.isNull())
        return "null for " + truth.dump().substr(0, 80);
    if (truth.is_number_integer())
        return ours == truth.dump() ? "" : ours;
    if (truth.is_number_float()) {
        // The shortest text that reads back as the stored Single or Double.
        const bool same = type == "FLOAT" ? std::strtof(ours.c_str(), nullptr) == truth.get<float>()
                                          : std::strtod(ours.c_str(), nullptr) == truth.get<double>();
        return same && ours.size() <= 24 ? "" : ours;
    }
    if (truth.is_string())
        return ours == truth.get<std::string>() ? "" : ours.substr(0, 80);
    if (truth.contains("iso")) {
        std::string expected = truth["iso"];
        // Extended dates carry 100 ns units, the sidecar nanoseconds.
        if (type == "EXT_DATE_TIME" && expected.size() == 29)
            expected.resize(27);
        return test::isoFromMonthFirst(ours, 'T') == expected ? "" : ours;
    }
    if (truth.contains("hex")) {
        const std::string bytes =
            cell.isBlob() ? std::string(cell.blob->data().begin(), cell.blob->data().end()) : ours;
        return lowerHex(bytes) == truth["hex"] ? "" : "bytes " + lowerHex(bytes).substr(0, 40);
    }
    if (truth.contains("sha256_utf8")) {
        if (utf8Characters(ours) != truth["chars"].get<std::size_t>())
            return std::to_string(utf8Characters(ours)) + " characters";
        return sha256Hex(ours.data(), ours.size()) == truth["sha256_utf8"] ? "" : "other text";
    }
    return "unknown truth " + truth.dump().substr(0, 80);
}

TEST(FixtureValues, EveryRowIsWhatTheFileStores)
{
    std::vector<std::string> paths = {test::fixturePath("features.mdb"), test::fixturePath("features.accdb"),
                                      test::fixturePath("newtypes.accdb")};
    for (const char *shared : {"testdata/longtext.mdb", "testdata/longtext.accdb"})
        if (const std::string path = test::sharedPath(shared); !path.empty())
            paths.push_back(path);
    std::size_t compared = 0;
    for (const std::string &path : paths) {
        SCOPED_TRACE(path);
        auto file = test::openInProcess(path);
        ASSERT_TRUE(file);
        const auto sidecar = test::loadSidecar(path);
        for (const auto &tableTruth : sidecar["tables"]) {
            if (!tableTruth.contains("rows"))
                continue;
            const TOrbMDBTable *table = file->tableNamed(tableTruth["name"].get<std::string>());
            ASSERT_NE(table, nullptr) << tableTruth["name"];
            ASSERT_EQ(table->rowCount(), tableTruth["rows"].size()) << tableTruth["name"];
            for (std::size_t c = 0; c < table->columns().size(); ++c) {
                const std::string &name = table->columns()[c]->name();
                const nlohmann::json *columnTruth = nullptr;
                for (const auto &column : tableTruth["columns"])
                    if (column["name"] == name)
                        columnTruth = &column;
                ASSERT_NE(columnTruth, nullptr) << name;
                const std::string type = (*columnTruth)["type"];
                for (std::size_t r = 0; r < table->rowCount(); ++r) {
                    ++compared;
                    const std::string why = difference(table->cell(r, c), tableTruth["rows"][r][name], type);
                    EXPECT_TRUE(why.empty())
                        << tableTruth["name"] << " row " << r << " " << name << " (" << type << "): " << why;
                }
            }
        }
    }
    EXPECT_GT(compared, 1000u);
}

} // namespace
} // namespace vellum
