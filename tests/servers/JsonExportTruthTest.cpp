// Every fixture of ../shared/testdata and every file of ../shared/corpus exported as JSON, each
// table's file read back with a JSON parser (row by row, so that the 200,000-row tables keep
// little memory) and compared cell by cell with what the sidecars and the corpus truth say the
// files hold. JSON keeps every value exactly, so nothing may be counted as approximated.
//
// Rows are matched as multisets of their cells' canonical forms (another correct reader may
// scan pages in another order); OLE cells are compared after their row is matched, since the
// truth names several acceptable contents. Known limit of the model: an empty text or binary
// value reads as null, so "" and zero bytes in the truth count as null.

#include "corpus/truthFiles.h"
#include "export/ExportJob.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"
#include "support/truthValues.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>

namespace vellum {
namespace {

using test::canonicalDecimal;
using test::lowerCase;

/// The first differences reported in full; the rest are counted.
constexpr std::size_t kReportedDifferences = 40;

// ---- canonical forms shared by both sides ----

std::string floatingBits(double value, bool single)
{
    char buf[40];
    if (single) {
        const float f = static_cast<float>(value);
        std::uint32_t bits;
        std::memcpy(&bits, &f, sizeof bits);
        std::snprintf(buf, sizeof buf, "f%08x", bits);
    } else {
        std::uint64_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        std::snprintf(buf, sizeof buf, "d%016llx", static_cast<unsigned long long>(bits));
    }
    return buf;
}

/// The bits of a number text of the truth (shortest text, "NaN", "Infinity", "-Infinity").
std::string floatingTextBits(const std::string &text, bool single)
{
    if (text == "NaN")
        return single ? "fNaN" : "dNaN"; // every NaN alike
    if (text == "Infinity" || text == "-Infinity")
        return floatingBits(text[0] == '-' ? -HUGE_VAL : HUGE_VAL, single);
    return single ? floatingBits(std::strtof(text.c_str(), nullptr), true)
                  : floatingBits(std::strtod(text.c_str(), nullptr), false);
}

/// "YYYY-MM-DD HH:MM:SS[.f…]" with the fraction's trailing zeros removed; 'T' read as ' '.
std::string canonicalDate(std::string text)
{
    if (text.size() > 10 && text[10] == 'T')
        text[10] = ' ';
    if (text.find('.') != std::string::npos) {
        while (text.back() == '0')
            text.pop_back();
        if (text.back() == '.')
            text.pop_back();
    }
    return text;
}

std::string shaOf(std::string_view bytes)
{
    return "sha:" + sha256Hex(bytes.data(), bytes.size());
}

std::string bytesOfHex(const std::string &hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

/// Decodes base64 with padding; nullopt for any other text.
std::optional<std::string> bytesOfBase64(const std::string &text)
{
    static const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    if (text.size() % 4)
        return std::nullopt;
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); i += 4) {
        std::uint32_t group = 0;
        int pad = 0;
        for (std::size_t k = 0; k < 4; ++k) {
            const char c = text[i + k];
            std::size_t value = 0;
            if (c == '=' && i + 4 == text.size() && k >= 2) {
                ++pad;
            } else {
                value = alphabet.find(c);
                if (value == std::string::npos || pad)
                    return std::nullopt;
            }
            group = group << 6 | static_cast<std::uint32_t>(value);
        }
        bytes += static_cast<char>(group >> 16);
        if (pad < 2)
            bytes += static_cast<char>(group >> 8 & 0xFF);
        if (pad < 1)
            bytes += static_cast<char>(group & 0xFF);
    }
    return bytes;
}

/// The bytes of an exported {"base64": …} object; nullopt for anything else.
std::optional<std::string> exportedBytes(const nlohmann::json &value)
{
    if (!value.is_object() || !value.contains("base64") || !value["base64"].is_string())
        return std::nullopt;
    return bytesOfBase64(value["base64"].get<std::string>());
}

// ---- the columns and cells of one table ----

struct Column {
    std::string name;
    std::string type;        ///< the truth's type name (LONG, MONEY, COMPLEX_TYPE, …)
    std::string complexType; ///< ATTACHMENT, MULTI_VALUE, VERSION_HISTORY or UNSUPPORTED
    std::string itemType;    ///< MULTI_VALUE: the type of the items (TEXT, LONG, …)
};

/// Our exported cell in canonical form ("ole" for OLE cells, compared apart).
std::string ourCanonical(const nlohmann::json &cell, const Column &column)
{
    const std::string &type = column.type;
    const auto bad = [&cell] { return "unexpected " + cell.dump().substr(0, 120); };
    if (type == "OLE")
        return "ole";
    if (type == "COMPLEX_TYPE") {
        if (!cell.is_array())
            return bad();
        std::string out = "[";
        for (const nlohmann::json &item : cell) {
            if (column.complexType == "ATTACHMENT") {
                const auto bytes = exportedBytes(item);
                if (!bytes || !item["name"].is_string() || !item["type"].is_string())
                    return bad();
                out += item["name"].get<std::string>() + "|" + item["type"].get<std::string>() + "|" +
                       std::to_string(bytes->size()) + "|" + shaOf(*bytes);
            } else if (column.complexType == "VERSION_HISTORY") {
                if (!item["value"].is_string() || !item["date"].is_string())
                    return bad();
                out += item["value"].get<std::string>() + "|" + canonicalDate(item["date"].get<std::string>());
            } else {
                out += ourCanonical(item, Column{"", column.itemType, "", ""});
            }
            out += '\x1e';
        }
        return out + "]";
    }
    if (cell.is_null())
        return "null";
    if (type == "BOOLEAN")
        return cell.is_boolean() ? (cell.get<bool>() ? "true" : "false") : bad();
    if (type == "BYTE" || type == "INT" || type == "LONG" || type == "BIG_INT") {
        if (cell.is_number_integer())
            return cell.dump();
        return cell.is_string() ? cell.get<std::string>() : bad();
    }
    if (type == "MONEY" || type == "NUMERIC") {
        if (cell.is_number_integer())
            return cell.dump();
        if (cell.is_number_float()) {
            // A number is written only when a double holds the decimal: its shortest text is
            // the decimal.
            char buf[400];
            const auto result = std::to_chars(buf, buf + sizeof buf, cell.get<double>(), std::chars_format::fixed);
            return canonicalDecimal(std::string(buf, result.ptr));
        }
        return cell.is_string() ? canonicalDecimal(cell.get<std::string>()) : bad();
    }
    if (type == "FLOAT" || type == "DOUBLE") {
        const bool single = type == "FLOAT";
        if (cell.is_number())
            return floatingBits(cell.get<double>(), single);
        if (cell.is_string()) {
            const std::string text = cell.get<std::string>();
            if (text == "NaN" || text == "Infinity" || text == "-Infinity")
                return floatingTextBits(text, single);
        }
        return bad();
    }
    if (type == "SHORT_DATE_TIME" || type == "EXT_DATE_TIME") {
        if (!cell.is_string())
            return bad();
        const std::string text = cell.get<std::string>();
        // ISO 8601 with 'T' is the written form.
        return text.size() >= 19 && text[10] == 'T' ? canonicalDate(text) : bad();
    }
    if (type == "GUID")
        return cell.is_string() ? lowerCase(cell.get<std::string>()) : bad();
    if (type == "TEXT" || type == "MEMO")
        return cell.is_string() ? shaOf(cell.get<std::string>()) : bad();
    // BINARY and UNSUPPORTED_*: the stored bytes.
    const auto bytes = exportedBytes(cell);
    return bytes ? shaOf(*bytes) : bad();
}

/// A truth cell in canonical form; `fixture` for the sidecars of ../shared/testdata.
std::string truthCanonical(const nlohmann::json &cell, const Column &column, bool fixture)
{
    const std::string &type = column.type;
    if (type == "OLE")
        return "ole";
    if (type == "COMPLEX_TYPE") {
        std::string out = "[";
        for (const nlohmann::json &item : cell) {
            if (column.complexType == "ATTACHMENT")
                out += item.value("fileName", "") + "|" + item.value("fileType", "") + "|" +
                       std::to_string(item.value("size", 0)) + "|sha:" + item.value("sha256", "");
            else if (column.complexType == "VERSION_HISTORY")
                out += item.value("value", "") + "|" + canonicalDate(item.value("date", ""));
            else
                out += truthCanonical(item, Column{"", column.itemType, "", ""}, fixture);
            out += '\x1e';
        }
        return out + "]";
    }
    if (type == "BOOLEAN")
        return cell.is_boolean() && cell.get<bool>() ? "true" : "false";
    if (cell.is_null() || (cell.is_string() && cell.get<std::string>().empty()))
        return "null";
    if (type == "BYTE" || type == "INT" || type == "LONG" || type == "BIG_INT")
        return cell.is_string() ? cell.get<std::string>() : cell.dump();
    if (type == "MONEY" || type == "NUMERIC")
        return canonicalDecimal(cell.is_string() ? cell.get<std::string>() : cell.dump());
    if (type == "FLOAT" || type == "DOUBLE") {
        const bool single = type == "FLOAT";
        return cell.is_number() ? floatingBits(cell.get<double>(), single)
                                : floatingTextBits(cell.get<std::string>(), single);
    }
    if (type == "SHORT_DATE_TIME" || type == "EXT_DATE_TIME")
        return canonicalDate(cell.is_object() ? cell.value("iso", "") : cell.get<std::string>());
    if (type == "GUID")
        return lowerCase(cell.get<std::string>());
    if (type == "TEXT" || type == "MEMO") {
        if (cell.is_object()) // a long text: its digest
            return "sha:" + cell.value("sha256_utf8", "");
        return shaOf(cell.get<std::string>());
    }
    if (fixture) // empty bytes read as null, like an empty text
        return cell.value("len", 0) == 0 ? "null" : "sha:" + cell.value("sha256", "");
    return shaOf(bytesOfHex(cell.get<std::string>()));
}

/// Empty when our OLE cell holds what the truth accepts; otherwise what differs.
/// `oleRow` is the fixture's description of that row's payload (null elsewhere).
std::string oleMismatch(const nlohmann::json &ours, const nlohmann::json &truth, bool fixture,
                        const nlohmann::json &oleRow)
{
    const auto bytes = exportedBytes(ours);
    if (!ours.is_null() && !bytes)
        return "not a base64 object: " + ours.dump().substr(0, 120);
    const std::string ourSha = bytes ? sha256Hex(bytes->data(), bytes->size()) : std::string();
    if (fixture) {
        const std::string decode = oleRow.is_object() ? oleRow.value("expected_decode", "") : std::string();
        if (truth.is_null() || truth.value("len", 0) == 0 || decode == "null" || decode == "unspecified")
            return ours.is_null() || (bytes && bytes->empty()) ? "" : "a value where there is none";
        if (!bytes)
            return "null for " + truth.dump().substr(0, 120);
        if (decode == "payload") {
            if (ourSha != oleRow.value("payload_sha256", ""))
                return "content " + ourSha + " is not the payload";
            const std::string extension =
                oleRow["expected_extension"].is_string() ? oleRow["expected_extension"].get<std::string>() : "";
            const std::string ourExtension = ours.value("extension", "");
            return ourExtension == extension ? "" : "extension '" + ourExtension + "', expected '" + extension + "'";
        }
        return ourSha == truth.value("sha256", "") ? "" : "content " + ourSha + " is not the stored bytes";
    }
    const bool truthNull = truth.is_null() || (truth.is_string() && truth.get<std::string>().empty());
    if (truthNull || truth.value("kind", "") == "LINK")
        return ours.is_null() ? "" : "a value where the truth has none";
    if (!bytes)
        return truth.value("kind", "") == "UNKNOWN" ? "" : "null for " + truth.dump().substr(0, 120);
    std::set<std::string> accepted = {truth.value("rawSha256", "")};
    if (truth["sha256"].is_string())
        accepted.insert(truth["sha256"].get<std::string>());
    if (truth.contains("streams"))
        for (const auto &[name, stream] : truth["streams"].items())
            accepted.insert(stream.value("sha256", ""));
    return accepted.count(ourSha) ? "" : "OLE content " + ourSha + " is not " + truth.dump().substr(0, 200);
}

// ---- one table ----

/// What the truth says of one table.
struct TruthTable {
    std::string name;
    std::vector<Column> columns;
    std::vector<std::vector<nlohmann::json>> rows; ///< cells in `columns` order
    std::optional<std::size_t> rowCount;           ///< the table's full row count
    bool rowsComplete = false;                     ///< `rows` are every row of the table
    bool fixture = false;
    const nlohmann::json *oleRows = nullptr; ///< the fixture's OLE payload descriptions
};

struct Tally {
    std::size_t files = 0;
    std::size_t tables = 0;
    std::size_t cells = 0;
    std::size_t rows = 0;
    std::size_t differences = 0;
};

void reportDifference(Tally &tally, const std::string &text)
{
    if (++tally.differences <= kReportedDifferences)
        ADD_FAILURE() << text;
}

/// Reads our file of one table with the parser, row by row, and compares it with the truth.
void compareTable(const std::string &where, const std::string &path, const TruthTable &truth, Tally &tally)
{
    std::multimap<std::string, std::size_t> expected;
    std::vector<std::vector<std::string>> truthCells(truth.rows.size());
    for (std::size_t t = 0; t < truth.rows.size(); ++t) {
        std::string key;
        for (std::size_t c = 0; c < truth.columns.size(); ++c) {
            truthCells[t].push_back(truthCanonical(truth.rows[t][c], truth.columns[c], truth.fixture));
            key += truthCells[t].back() + '\x1f';
        }
        expected.emplace(std::move(key), t);
    }

    std::ifstream in(path, std::ios::binary);
    if (!in) {
        reportDifference(tally, where + ": no output file " + path);
        return;
    }
    std::size_t rowIndex = 0;
    std::size_t unmatched = 0;
    std::string problem;
    const auto handleRow = [&](const nlohmann::json &row) {
        const std::size_t r = rowIndex++;
        if (!row.is_object()) {
            problem = "row " + std::to_string(r) + " is no object";
            return;
        }
        std::string key;
        std::vector<std::string> cells;
        for (const Column &column : truth.columns) {
            const auto found = row.find(column.name);
            if (found == row.end()) {
                problem = "row " + std::to_string(r) + " has no key " + column.name;
                return;
            }
            cells.push_back(ourCanonical(*found, column));
            key += cells.back() + '\x1f';
        }
        const auto match = expected.find(key);
        if (match == expected.end()) {
            ++unmatched;
            if (!truth.rowsComplete)
                return; // a row the truth does not list
            // Name the first column that differs from the truth's row at the same position.
            std::string detail;
            for (std::size_t c = 0; c < cells.size() && r < truthCells.size(); ++c)
                if (cells[c] != truthCells[r][c]) {
                    detail = truth.columns[c].name + " (" + truth.columns[c].type + "): ours " +
                             cells[c].substr(0, 120) + " | truth " + truthCells[r][c].substr(0, 120);
                    break;
                }
            reportDifference(tally, where + ": row " + std::to_string(r) + " is not in the truth; " + detail);
            return;
        }
        const std::size_t t = match->second;
        expected.erase(match);
        tally.cells += truth.columns.size();
        for (std::size_t c = 0; c < truth.columns.size(); ++c) {
            if (truth.columns[c].type != "OLE")
                continue;
            nlohmann::json oleRow;
            if (truth.oleRows && row.contains("ID"))
                for (const auto &described : *truth.oleRows)
                    if (described.value("ID", -1) == row["ID"])
                        oleRow = described;
            const std::string why = oleMismatch(row[truth.columns[c].name], truth.rows[t][c], truth.fixture, oleRow);
            if (!why.empty())
                reportDifference(tally, where + " row " + std::to_string(r) + " " + truth.columns[c].name + ": " + why);
        }
    };
    // Each element of the top-level array is handled and dropped as soon as it is read.
    const nlohmann::json document = nlohmann::json::parse(
        in,
        [&](int depth, nlohmann::json::parse_event_t event, nlohmann::json &parsed) {
            if (depth == 1 &&
                (event == nlohmann::json::parse_event_t::object_end || event == nlohmann::json::parse_event_t::value)) {
                handleRow(parsed);
                return false;
            }
            return true;
        },
        false);
    if (document.is_discarded() || !document.is_array()) {
        reportDifference(tally, where + ": the file is not a JSON array");
        return;
    }
    if (!problem.empty())
        reportDifference(tally, where + ": " + problem);
    tally.rows += rowIndex;
    if (truth.rowCount && rowIndex != *truth.rowCount)
        reportDifference(tally, where + ": " + std::to_string(rowIndex) + " rows, the truth has " +
                                    std::to_string(*truth.rowCount));
    for (const auto &[key, t] : expected)
        reportDifference(tally, where + ": truth row " + std::to_string(t) + " was not written (" +
                                    std::to_string(unmatched) + " rows of ours unmatched)");
}

/// Exports every table of a file as JSON into `folder`; the path of each table's file by name.
std::map<std::string, std::string> exportFile(TOrbMDBFile &file, const std::string &folder, const std::string &where,
                                              Tally &tally)
{
    ExportJob job(file, nullptr, ExportFileType::JSON);
    job.setExportPath(folder);
    std::map<std::string, std::string> paths;
    if (!job.startExport(nullptr)) {
        reportDifference(tally, where + ": the export did not start");
        return paths;
    }
    job.wait();
    if (job.successTableCount() != static_cast<std::int64_t>(job.entries().size()))
        reportDifference(tally, where + ": " + std::to_string(job.successTableCount()) + " of " +
                                    std::to_string(job.entries().size()) + " tables written");
    if (!job.approximations().empty())
        reportDifference(tally, where + ": JSON counted approximated values");
    for (const ExportEntry &entry : job.entries())
        paths[entry.tableName] = job.outputPathForEntry(entry);
    return paths;
}

TEST(JsonExportTruth, FixturesReadBackWithTheirSidecarsValues)
{
    const std::string dir = test::sharedPath("testdata");
    if (dir.empty())
        GTEST_SKIP() << "../shared/testdata is absent";
    Tally tally;
    for (const auto &entry : std::filesystem::directory_iterator(dir)) {
        const std::string path = entry.path().string();
        const std::string extension = entry.path().extension().string();
        if ((extension != ".mdb" && extension != ".accdb") || !std::filesystem::exists(path + ".json"))
            continue;
        const nlohmann::json sidecar = test::loadSidecar(path);
        ASSERT_FALSE(sidecar.is_discarded()) << path;
        auto file = test::openInProcess(path);
        ASSERT_TRUE(file) << path;
        test::TempDir out;
        const std::string fileName = entry.path().filename().string();
        const auto written = exportFile(*file, out.path(), fileName, tally);
        ++tally.files;
        for (const nlohmann::json &tableTruth : sidecar["tables"]) {
            TruthTable truth;
            truth.name = tableTruth["name"];
            truth.fixture = true;
            truth.rowCount = tableTruth["row_count"].get<std::size_t>();
            if (sidecar.contains("ole_rows"))
                truth.oleRows = &sidecar["ole_rows"];
            for (const nlohmann::json &column : tableTruth["columns"])
                truth.columns.push_back({column["name"], column["type"], "", ""});
            const bool complete = tableTruth.contains("rows");
            truth.rowsComplete = complete;
            // Big tables list only sample rows, or none (their row count is still compared).
            const char *listed = complete ? "rows" : "sample_rows";
            const nlohmann::json rows = tableTruth.contains(listed) ? tableTruth[listed] : nlohmann::json::array();
            for (const nlohmann::json &row : rows) {
                std::vector<nlohmann::json> cells;
                for (const Column &column : truth.columns)
                    cells.push_back(row.contains(column.name) ? row[column.name] : nlohmann::json());
                truth.rows.push_back(std::move(cells));
            }
            const auto found = written.find(truth.name);
            if (found == written.end()) {
                reportDifference(tally, fileName + ": table " + truth.name + " was not exported");
                continue;
            }
            ++tally.tables;
            compareTable(fileName + " " + truth.name, found->second, truth, tally);
        }
    }
    std::printf("JSON fixtures: %zu files, %zu tables, %zu rows read back, %zu cells compared, %zu differences\n",
                tally.files, tally.tables, tally.rows, tally.cells, tally.differences);
    EXPECT_GT(tally.cells, 0u);
    EXPECT_EQ(tally.differences, 0u);
}

TEST(JsonExportTruth, CorpusFilesReadBackWithTheTruthsValues)
{
    const auto truthFiles = test::truthFilePaths();
    if (truthFiles.empty())
        GTEST_SKIP() << "../shared/corpus-truth is absent";
    // Damaged files have no truth: what a reader makes of them is checked elsewhere.
    std::size_t damaged = 0;
    const std::string corpus = test::sharedPath("corpus");
    if (corpus.empty())
        GTEST_SKIP() << "../shared/corpus is absent";
    for (const auto &entry : std::filesystem::directory_iterator(corpus))
        if (entry.path().filename().string().rfind("damaged_", 0) == 0)
            ++damaged;
    std::printf("JSON corpus: %zu damaged_* files skipped (no truth)\n", damaged);

    Tally tally;
    std::size_t encrypted = 0;
    std::size_t skippedColumns = 0;
    for (const auto &truthPath : truthFiles) {
        std::ifstream in(truthPath);
        const nlohmann::json truthFile = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truthFile.is_discarded()) << truthPath;
        const std::string fileName = truthFile["file"];
        const std::string path = test::sharedPath("corpus/" + fileName);
        if (path.empty())
            continue;
        const std::string password =
            truthFile["password"].is_string() ? truthFile["password"].get<std::string>() : std::string();
        LoadOptions options;
        if (truthFile["codePage"].is_string() && truthFile["codePage"] != "windows-1252")
            options.jet3CodePage = truthFile["codePage"];
        auto file = test::openInProcess(path, options, password);
        ASSERT_TRUE(file) << fileName;
        encrypted += password.empty() ? 0 : 1;
        test::TempDir out;
        const auto written = exportFile(*file, out.path(), fileName, tally);
        ++tally.files;
        for (const nlohmann::json &tableTruth : truthFile["tables"]) {
            TruthTable truth;
            truth.name = tableTruth["name"];
            const bool truncated = tableTruth.value("rowsTruncated", false);
            truth.rowsComplete = !truncated;
            truth.rowCount = tableTruth["rowsTotal"].get<std::size_t>();
            std::vector<std::size_t> positions;
            const auto &columns = tableTruth["columns"];
            for (std::size_t c = 0; c < columns.size(); ++c) {
                Column column{columns[c]["name"], columns[c]["type"], columns[c].value("complexType", ""),
                              columns[c].value("multiValueType", "")};
                // The values of an unsupported complex type are the hidden table's own columns.
                if (column.type == "COMPLEX_TYPE" && column.complexType == "UNSUPPORTED") {
                    ++skippedColumns;
                    continue;
                }
                truth.columns.push_back(std::move(column));
                positions.push_back(c);
            }
            for (const nlohmann::json &row : tableTruth["rows"]) {
                std::vector<nlohmann::json> cells;
                for (const std::size_t c : positions)
                    cells.push_back(row[c]);
                truth.rows.push_back(std::move(cells));
            }
            const auto found = written.find(truth.name);
            if (found == written.end()) {
                reportDifference(tally, fileName + ": table " + truth.name + " was not exported");
                continue;
            }
            ++tally.tables;
            compareTable(fileName + " " + truth.name, found->second, truth, tally);
        }
    }
    std::printf("JSON corpus: %zu files (%zu encrypted), %zu tables, %zu rows read back, %zu cells compared, "
                "%zu columns of an unsupported complex type left out, %zu differences\n",
                tally.files, encrypted, tally.tables, tally.rows, tally.cells, skippedColumns, tally.differences);
    EXPECT_GT(encrypted, 0u);
    EXPECT_EQ(tally.differences, 0u);
}

} // namespace
} // namespace vellum
