// Compares every cell of every table of every file in ../shared/corpus with what Jackcess reads
// (../shared/corpus-truth), after turning Vellum's text forms into the truth's canonical ones.
// Encrypted files are opened with the sidecar's password; complex columns are read elsewhere and
// skipped here by column type.

#include "support/Fixtures.h"
#include "support/truthValues.h"
#include "truthFiles.h"

#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <set>

namespace vellum {
namespace {

using test::canonicalDecimal;
using test::floatBits;
using test::parseTruthNumber;

using test::isoFromMonthFirst;
using test::lowerHex;

/// Tables whose truth Vellum does not reach, each with its reason: "file|table".
const std::map<std::string, std::string> kAllowed = {};

bool sameFloatingPoint(const std::string &ours, const std::string &truth, bool single)
{
    const double value = single ? std::strtof(ours.c_str(), nullptr) : parseTruthNumber(ours);
    return floatBits(value, single) == floatBits(parseTruthNumber(truth), single);
}

/// The truth's canonical text of one of Vellum's cells (floating point as its bits).
std::string ourCanonical(const CellValue &cell, const std::string &type)
{
    if (type == "BOOLEAN")
        return cell.isText() && cell.text == "1" ? "true" : "false";
    if (cell.isNull())
        return "null";
    if (!cell.isText())
        return "blob";
    const std::string text(cell.text);
    if (type == "MONEY" || type == "NUMERIC")
        return canonicalDecimal(text);
    if (type == "FLOAT")
        return floatBits(std::strtof(text.c_str(), nullptr), true);
    if (type == "DOUBLE")
        return floatBits(parseTruthNumber(text), false);
    if (type == "SHORT_DATE_TIME")
        return isoFromMonthFirst(text, ' ');
    if (type == "EXT_DATE_TIME") {
        std::string iso = isoFromMonthFirst(text, ' ');
        return iso.size() == 19 ? iso + ".0000000" : iso;
    }
    if (type == "GUID") {
        std::string lower = text;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
        return lower;
    }
    if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0)
        return lowerHex(text);
    return text;
}

/// The canonical text of a truth cell in the same terms.
std::string truthCanonical(const nlohmann::json &truth, const std::string &type)
{
    if (truth.is_boolean())
        return truth.get<bool>() ? "true" : "false";
    if (truth.is_null() || (truth.is_string() && truth.get<std::string>().empty()))
        return "null";
    const std::string text = truth.is_string() ? truth.get<std::string>() : truth.dump();
    if (type == "FLOAT" || type == "DOUBLE")
        return floatBits(parseTruthNumber(text), type == "FLOAT");
    return text;
}

/// Does Vellum's cell show what the truth's cell says? `why` names the difference.
bool cellMatches(const CellValue &cell, const nlohmann::json &truth, const std::string &type, std::string &why)
{
    const bool truthNull = truth.is_null() || (truth.is_string() && truth.get<std::string>().empty());
    if (type == "OLE") {
        if (truthNull || truth.value("kind", "") == "LINK")
            return cell.isNull() || (why = "a value where the truth has none", false);
        if (cell.isNull())
            return truth.value("kind", "") == "UNKNOWN" || (why = "null for " + truth.dump(), false);
        const std::string ours = cell.isBlob() ? sha256Hex(cell.blob->data().data(), cell.blob->data().size())
                                               : sha256Hex(cell.text.data(), cell.text.size());
        std::set<std::string> accepted = {truth.value("rawSha256", "")};
        if (truth["sha256"].is_string())
            accepted.insert(truth["sha256"].get<std::string>());
        if (truth.contains("streams"))
            for (const auto &[name, stream] : truth["streams"].items())
                accepted.insert(stream.value("sha256", ""));
        return accepted.count(ours) || (why = "OLE content " + ours + " is not " + truth.dump(), false);
    }
    if (type == "BOOLEAN") {
        const std::string expected = truth.get<bool>() ? "1" : "0";
        return (cell.isText() && cell.text == expected) || (why = "boolean", false);
    }
    if (truthNull)
        return cell.isNull() || (why = "a value where the truth has none", false);
    if (!cell.isText())
        return why = "no text for " + truth.dump(), false;
    const std::string ours(cell.text);
    const std::string expected = truth.is_string() ? truth.get<std::string>() : truth.dump();
    if (type == "MONEY" || type == "NUMERIC")
        return canonicalDecimal(ours) == expected || (why = ours, false);
    if (type == "FLOAT" || type == "DOUBLE")
        return sameFloatingPoint(ours, expected, type == "FLOAT") || (why = ours, false);
    if (type == "SHORT_DATE_TIME")
        return isoFromMonthFirst(ours, ' ') == expected || (why = ours, false);
    if (type == "EXT_DATE_TIME") {
        std::string iso = isoFromMonthFirst(ours, ' ');
        if (iso.size() == 19)
            iso += ".0000000";
        return iso == expected || (why = ours, false);
    }
    if (type == "GUID") {
        std::string lower = ours;
        std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
        return lower == expected || (why = ours, false);
    }
    if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0)
        return lowerHex(ours) == expected || (why = lowerHex(ours), false);
    return ours == expected || (why = ours.substr(0, 200), false);
}

TEST(CorpusTruth, EveryCellShowsWhatTheFileStores)
{
    const auto files = test::truthFilePaths();
    if (files.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    std::size_t compared = 0;
    std::size_t differences = 0;
    std::size_t encryptedCompared = 0;
    for (const auto &truthPath : files) {
        std::ifstream in(truthPath);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << truthPath;
        const std::string password = truth["password"].is_string() ? truth["password"].get<std::string>() : "";
        const std::string fileName = truth["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (path.empty())
            continue;
        // Jet 3 files do not record their code page; the truth names the one it read them in.
        LoadOptions options;
        if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
            options.jet3CodePage = truth["codePage"];
        auto file = test::openInProcess(path, options, password);
        ASSERT_TRUE(file) << fileName;
        for (const auto &tableTruth : truth["tables"]) {
            const std::string tableName = tableTruth["name"];
            const TOrbMDBTable *table = file->tableNamed(tableName);
            if (!table) {
                ADD_FAILURE() << fileName << ": table " << tableName << " is missing";
                ++differences;
                continue;
            }
            // Columns by name; complex columns are the next reader's business.
            std::vector<std::pair<std::size_t, std::string>> pairs; // our position, truth type
            std::vector<std::size_t> truthIndex;
            const auto &truthColumns = tableTruth["columns"];
            for (std::size_t t = 0; t < truthColumns.size(); ++t) {
                const std::string type = truthColumns[t]["type"];
                const std::string name = truthColumns[t]["name"];
                if (type == "COMPLEX_TYPE")
                    continue;
                const auto &columns = table->columns();
                const auto it =
                    std::find_if(columns.begin(), columns.end(), [&](const auto &c) { return c->name() == name; });
                ASSERT_NE(it, columns.end()) << fileName << " " << tableName << " column " << name;
                pairs.emplace_back(static_cast<std::size_t>(it - columns.begin()), type);
                truthIndex.push_back(t);
            }
            const auto &rows = tableTruth["rows"];
            const bool truncated = tableTruth.value("rowsTruncated", false);
            if (!truncated && table->rowCount() != rows.size()) {
                ADD_FAILURE() << fileName << " " << tableName << ": " << table->rowCount() << " rows, truth "
                              << rows.size();
                ++differences;
                continue;
            }
            // Rows as multisets of their canonical texts (OLE cells aside): another correct reader
            // may scan the pages in another order. OLE cells are then compared row by row.
            auto keyOfOurs = [&](std::size_t r) {
                std::string key;
                for (const auto &[position, type] : pairs)
                    key += (type == "OLE" ? std::string("ole") : ourCanonical(table->cell(r, position), type)) + '\x1f';
                return key;
            };
            auto keyOfTruth = [&](const nlohmann::json &row) {
                std::string key;
                for (std::size_t k = 0; k < pairs.size(); ++k)
                    key += (pairs[k].second == "OLE" ? std::string("ole")
                                                     : truthCanonical(row[truthIndex[k]], pairs[k].second)) +
                           '\x1f';
                return key;
            };
            std::multimap<std::string, std::size_t> ours;
            for (std::size_t r = 0; r < table->rowCount(); ++r)
                ours.emplace(keyOfOurs(r), r);
            for (std::size_t t = 0; t < rows.size(); ++t) {
                compared += pairs.size();
                if (!password.empty())
                    encryptedCompared += pairs.size();
                const std::string key = keyOfTruth(rows[t]);
                const auto found = ours.find(key);
                if (found == ours.end()) {
                    if (kAllowed.count(fileName + "|" + tableName))
                        continue;
                    // Name the first column that differs from our row at the same position.
                    std::string detail;
                    for (std::size_t k = 0; k < pairs.size() && t < table->rowCount(); ++k) {
                        std::string why;
                        if (!cellMatches(table->cell(t, pairs[k].first), rows[t][truthIndex[k]], pairs[k].second,
                                         why)) {
                            detail = truthColumns[truthIndex[k]]["name"].get<std::string>() + " (" + pairs[k].second +
                                     "): ours " + why + " | truth " + rows[t][truthIndex[k]].dump().substr(0, 160);
                            break;
                        }
                    }
                    if (++differences <= 40)
                        ADD_FAILURE() << fileName << " " << tableName << ": truth row " << t << " not found; "
                                      << detail;
                    continue;
                }
                const std::size_t r = found->second;
                ours.erase(found);
                for (std::size_t k = 0; k < pairs.size(); ++k) {
                    if (pairs[k].second != "OLE")
                        continue;
                    std::string why;
                    if (cellMatches(table->cell(r, pairs[k].first), rows[t][truthIndex[k]], "OLE", why) ||
                        kAllowed.count(fileName + "|" + tableName))
                        continue;
                    if (++differences <= 40)
                        ADD_FAILURE() << fileName << " " << tableName << " row " << r << " "
                                      << truthColumns[truthIndex[k]]["name"].get<std::string>() << ": " << why;
                }
            }
        }
    }
    std::printf("corpus truth: %zu cells compared (%zu of them in encrypted files), %zu differences\n", compared,
                encryptedCompared, differences);
    EXPECT_GT(encryptedCompared, 0u) << "the encrypted files were compared too";
    EXPECT_EQ(differences, 0u);
}

} // namespace
} // namespace vellum
