// The lossless SQL scripts of every fixture of ../shared/testdata and every file of
// ../shared/corpus (encrypted ones with their password; the damaged_* files are skipped), loaded
// into PostgreSQL, MariaDB and SQLite: no statement may fail, every table must hold every row,
// and every value read back must equal the truth by type (rows compared as multisets). The
// corpus is compared with ../shared/corpus-truth; the fixtures, whose sidecars give the row
// counts, with the values the reader shows (which the corpus and fixture suites prove equal to
// the sidecars). What a target cannot hold (NaN in MySQL and SQLite, infinities in MySQL, the
// seventh fractional digit of a time in PostgreSQL and MySQL, NUL in a PostgreSQL text) is
// expected in its documented form, and the number of such values must equal what the export
// counted.

#include "export/ExportJob.h"
#include "export/losslessDialects.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "servers/ServerClients.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"
#include "support/truthValues.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vellum {
namespace {

using test::canonicalDecimal;
using test::floatBits;
using test::parseTruthNumber;

using test::ServerCell;
using test::ServerKind;
using test::ServerRow;

/// One file to load and the truth of its tables (the corpus truth's form).
struct LoadFile {
    std::string name;
    std::string path;
    std::string password;
    std::string codePage;
    /// Tables as the corpus truth writes them: name, rowsTotal, columns (name, type,
    /// complexType), rows (at most 2000).
    nlohmann::json tables;
    /// Fixtures: the truth is made from the reader's values; the model is kept open for it.
    bool fromModel = false;
};

std::string shortestDouble(double value)
{
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

/// A decimal as SQLite keeps it under NUMERIC affinity: as a double where 15 significant
/// digits hold it (so compared as that double), else as its exact text.
std::size_t significantDigits(const std::string &canonical)
{
    std::string digits;
    for (char c : canonical)
        if (c >= '0' && c <= '9')
            digits += c;
    const auto first = digits.find_first_not_of('0');
    const auto last = digits.find_last_not_of('0');
    return first == std::string::npos ? 0 : last - first + 1;
}

std::string sqliteDecimal(const std::string &text)
{
    if (text.find_first_of("eE") != std::string::npos)
        return shortestDouble(std::strtod(text.c_str(), nullptr));
    const std::string canonical = canonicalDecimal(text);
    return significantDigits(canonical) <= 15 ? shortestDouble(std::strtod(canonical.c_str(), nullptr)) : canonical;
}

std::string hexDigitsLower(const std::string &text)
{
    std::string out;
    for (char c : text)
        if (std::isxdigit(static_cast<unsigned char>(c)))
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

/// "YYYY-MM-DD HH:MM:SS.fffffff" from a text with up to seven fractional digits (or none).
std::string sevenDigits(std::string text)
{
    const auto dot = text.find('.');
    if (dot == std::string::npos)
        return text + ".0000000";
    text.resize(dot + 8, '0');
    return text;
}

/// The truth's Date/Time Extended text rounded to microseconds as the export writes it.
std::string microsecondsOfTruth(const std::string &iso, bool &rounded)
{
    // Back into the reader's month-first form, which the export's rounding takes.
    const std::string monthFirst =
        iso.substr(5, 2) + "/" + iso.substr(8, 2) + "/" + iso.substr(0, 4) + " " + iso.substr(11);
    return microsecondDateTime(monthFirst, rounded);
}

// ---- what a server holds, in the truth's canonical terms ----

/// The expression that reads a column back with all its information.
std::string readExpression(ServerKind kind, const std::string &quoted, const std::string &type)
{
    const bool floating = type == "FLOAT" || type == "DOUBLE";
    if (kind == ServerKind::MariaDB && floating)
        return "CAST(" + quoted + " AS DOUBLE)";
    if (kind == ServerKind::SQLite && floating) // the shell's exact "ieee754(mantissa,exponent)"
        return "CASE WHEN " + quoted + " IS NULL THEN NULL ELSE ieee754(" + quoted + ") END";
    if (kind == ServerKind::SQLite && (type == "MONEY" || type == "NUMERIC"))
        return "CASE WHEN typeof(" + quoted + ") = 'real' THEN ieee754(" + quoted + ") ELSE " + quoted + " END";
    return quoted;
}

std::string serverCanonical(ServerKind kind, const std::string &type, const ServerCell &cell)
{
    if (!cell)
        return type == "BOOLEAN" ? "false" : "null";
    const std::string &text = *cell;
    if (type == "BOOLEAN")
        return text == "t" || text == "true" || text == "1" ? "true" : "false";
    long long mantissa = 0;
    int exponent = 0;
    if (type == "MONEY" || type == "NUMERIC") {
        if (kind == ServerKind::SQLite && std::sscanf(text.c_str(), "ieee754(%lld,%d)", &mantissa, &exponent) == 2)
            return shortestDouble(std::ldexp(static_cast<double>(mantissa), exponent));
        return kind == ServerKind::SQLite ? sqliteDecimal(text) : canonicalDecimal(text);
    }
    if (type == "FLOAT" || type == "DOUBLE") {
        if (kind == ServerKind::SQLite && std::sscanf(text.c_str(), "ieee754(%lld,%d)", &mantissa, &exponent) == 2) {
            // The shell's ieee754() writes negative zero as (1,-3071).
            const double value =
                mantissa == 1 && exponent == -3071 ? -0.0 : std::ldexp(static_cast<double>(mantissa), exponent);
            return floatBits(value, type == "FLOAT");
        }
        return floatBits(parseTruthNumber(text), type == "FLOAT");
    }
    if (type == "EXT_DATE_TIME")
        return sevenDigits(text);
    if (type == "GUID")
        return hexDigitsLower(text);
    if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0) {
        if (kind == ServerKind::PostgreSQL && text.rfind("\\x", 0) == 0)
            return text.substr(2);
        return test::lowerHex(text);
    }
    if (type == "TEXT" || type == "MEMO")
        return text.empty() ? "null" : text;
    return text;
}

/// The truth cell as the target is documented to hold it.
std::string expectedCanonical(ServerKind kind, const std::string &type, const nlohmann::json &truth,
                              std::size_t &approximated)
{
    if (truth.is_boolean())
        return truth.get<bool>() ? "true" : "false";
    if (truth.is_null() || (truth.is_string() && truth.get<std::string>().empty()))
        return type == "BOOLEAN" ? "false" : "null";
    const std::string text = truth.is_string() ? truth.get<std::string>() : truth.dump();
    if (type == "MONEY" || type == "NUMERIC") {
        if (kind != ServerKind::SQLite)
            return text;
        // NUMERIC affinity: a fraction beyond 15 digits becomes the nearest double.
        if (significantDigits(text) > 15 && text.find('.') != std::string::npos) {
            ++approximated;
            return shortestDouble(std::strtod(text.c_str(), nullptr));
        }
        return sqliteDecimal(text);
    }
    if (type == "FLOAT" || type == "DOUBLE") {
        const bool nan = text == "NaN";
        const bool infinity = text == "Infinity" || text == "-Infinity";
        if ((nan && kind != ServerKind::PostgreSQL) || (infinity && kind == ServerKind::MariaDB)) {
            ++approximated;
            return "null";
        }
        if (kind != ServerKind::PostgreSQL && text == "-0") {
            ++approximated; // MySQL and SQLite keep no negative zero
            return floatBits(0.0, type == "FLOAT");
        }
        return floatBits(parseTruthNumber(text), type == "FLOAT");
    }
    if (type == "EXT_DATE_TIME") {
        if (kind == ServerKind::SQLite)
            return sevenDigits(text);
        bool rounded = false;
        const std::string micro = microsecondsOfTruth(text, rounded);
        approximated += rounded;
        return sevenDigits(micro);
    }
    if (type == "GUID")
        return hexDigitsLower(text);
    if ((type == "TEXT" || type == "MEMO") && kind == ServerKind::PostgreSQL && text.find('\0') != std::string::npos) {
        ++approximated;
        std::string kept;
        for (char c : text)
            if (c)
                kept += c;
        return kept.empty() ? "null" : kept;
    }
    return text;
}

/// Does an OLE cell read back match the truth (raw bytes, unwrapped content or a stream)?
bool oleMatches(ServerKind kind, const nlohmann::json &truth, const ServerCell &cell, std::string &why)
{
    const bool truthNull = truth.is_null() || truth.value("kind", "") == "LINK";
    if (truthNull)
        return !cell || (why = "a value where the truth has none", false);
    if (!cell)
        return truth.value("kind", "") == "UNKNOWN" || (why = "null for " + truth.dump(), false);
    std::string bytes = *cell;
    if (kind == ServerKind::PostgreSQL && bytes.rfind("\\x", 0) == 0) {
        std::string raw;
        for (std::size_t i = 2; i + 1 < bytes.size(); i += 2)
            raw += static_cast<char>(std::stoi(bytes.substr(i, 2), nullptr, 16));
        bytes = raw;
    }
    const std::string ours = sha256Hex(bytes.data(), bytes.size());
    std::set<std::string> accepted = {truth.value("rawSha256", "")};
    if (truth.contains("sha256") && truth["sha256"].is_string())
        accepted.insert(truth["sha256"].get<std::string>());
    if (truth.contains("streams"))
        for (const auto &[name, stream] : truth["streams"].items())
            accepted.insert(stream.value("sha256", ""));
    return accepted.count(ours) || (why = "OLE content " + ours + " is not " + truth.dump().substr(0, 200), false);
}

// ---- the files ----

std::string truthType(const TOrbMDBColumn &column, const TOrbMDBTable &table, std::size_t position,
                      std::string &complexType)
{
    if (const ComplexColumnValues *values = table.complexValues(position)) {
        complexType = values->kind() == ComplexKind::MultiValue   ? "MULTI_VALUE"
                      : values->kind() == ComplexKind::Attachment ? "ATTACHMENT"
                                                                  : "VERSION_HISTORY";
        return "COMPLEX_TYPE";
    }
    return test::truthTypeName(column.dataType());
}

/// The truth of a fixture's tables from the values the reader shows, with the sidecar's row
/// counts.
nlohmann::json fixtureTables(const TOrbMDBFile &file, const nlohmann::json &sidecar)
{
    nlohmann::json tables = nlohmann::json::array();
    for (const auto &table : file.tables()) {
        nlohmann::json entry;
        entry["name"] = table->name();
        const nlohmann::json *side = test::sidecarTable(sidecar, table->name());
        entry["rowsTotal"] =
            side && side->contains("row_count") ? (*side)["row_count"].get<std::size_t>() : table->rowCount();
        nlohmann::json columns = nlohmann::json::array();
        std::vector<std::string> types;
        for (std::size_t c = 0; c < table->columns().size(); ++c) {
            std::string complexType;
            types.push_back(truthType(*table->columns()[c], *table, c, complexType));
            columns.push_back({{"name", table->columns()[c]->name()}, {"type", types.back()}});
            if (!complexType.empty())
                columns.back()["complexType"] = complexType;
        }
        entry["columns"] = columns;
        nlohmann::json rows = nlohmann::json::array();
        for (std::size_t r = 0; r < table->rowCount() && r < 2000; ++r) {
            nlohmann::json row = nlohmann::json::array();
            for (std::size_t c = 0; c < types.size(); ++c) {
                const CellValue cell = table->cell(r, c);
                const std::string &type = types[c];
                if (type == "BOOLEAN") {
                    row.push_back(cell.isText() && cell.text == "1");
                } else if (cell.isNull()) {
                    row.push_back(nullptr);
                } else if (type == "OLE") {
                    const std::string sha = cell.isBlob()
                                                ? sha256Hex(cell.blob->data().data(), cell.blob->data().size())
                                                : sha256Hex(cell.text.data(), cell.text.size());
                    row.push_back({{"rawSha256", sha}, {"kind", "CONTENT"}});
                } else if (type == "COMPLEX_TYPE") {
                    nlohmann::json items = nlohmann::json::array();
                    if (cell.complex)
                        for (std::size_t i = 0; i < cell.complex->itemCount(); ++i)
                            items.push_back(i);
                    row.push_back(items);
                } else {
                    const std::string text(cell.text);
                    if (type == "MONEY" || type == "NUMERIC")
                        row.push_back(canonicalDecimal(text));
                    else if (type == "SHORT_DATE_TIME")
                        row.push_back(test::isoFromMonthFirst(text, ' '));
                    else if (type == "EXT_DATE_TIME")
                        row.push_back(sevenDigits(test::isoFromMonthFirst(text, ' ')));
                    else if (type == "GUID")
                        row.push_back(hexDigitsLower(text));
                    else if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0)
                        row.push_back(test::lowerHex(text));
                    else
                        row.push_back(text);
                }
            }
            rows.push_back(row);
        }
        entry["rows"] = rows;
        tables.push_back(entry);
    }
    return tables;
}

std::vector<LoadFile> loadFiles()
{
    std::vector<LoadFile> files;
    const std::string testdata = test::sharedPath("testdata");
    if (!testdata.empty()) {
        std::vector<std::filesystem::path> paths;
        for (const auto &entry : std::filesystem::directory_iterator(testdata)) {
            const std::string ext = entry.path().extension().string();
            if ((ext == ".mdb" || ext == ".accdb") && std::filesystem::exists(entry.path().string() + ".json"))
                paths.push_back(entry.path());
        }
        std::sort(paths.begin(), paths.end());
        for (const auto &path : paths)
            files.push_back({"testdata/" + path.filename().string(), path.string(), "", "", {}, true});
    }
    const std::string truthDir = test::sharedPath("corpus-truth");
    if (!truthDir.empty()) {
        std::vector<std::filesystem::path> paths;
        for (const auto &entry : std::filesystem::directory_iterator(truthDir))
            if (entry.path().extension() == ".json")
                paths.push_back(entry.path());
        std::sort(paths.begin(), paths.end());
        for (const auto &truthPath : paths) {
            std::ifstream in(truthPath);
            nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
            if (truth.is_discarded() || !truth.contains("file"))
                continue;
            const std::string fileName = truth["file"];
            const std::string path = test::sharedPath("corpus/" + fileName);
            if (path.empty() || fileName.rfind("damaged_", 0) == 0)
                continue;
            LoadFile file{"corpus/" + fileName, path, "", "", std::move(truth["tables"]), false};
            if (truth["password"].is_string())
                file.password = truth["password"];
            if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
                file.codePage = truth["codePage"];
            files.push_back(std::move(file));
        }
    }
    return files;
}

/// A complex column's child table: "<table>_<column>", with "_1", "_2" … while the file has a
/// table of that name (letter case aside).
std::string childTable(const TOrbMDBFile &file, const std::string &base)
{
    const auto lower = [](std::string text) {
        for (char &c : text)
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        return text;
    };
    std::string name = base;
    for (int n = 1;; ++n) {
        const bool taken = std::any_of(file.tables().begin(), file.tables().end(),
                                       [&](const auto &table) { return lower(table->name()) == lower(name); });
        if (!taken)
            return name;
        name = base + "_" + std::to_string(n);
    }
}

ServerType dialectOf(ServerKind kind)
{
    return kind == ServerKind::PostgreSQL ? ServerTypePostgreSQL
           : kind == ServerKind::MariaDB  ? ServerTypeMySQL
                                          : ServerTypeSQLite;
}

const char *nameOf(ServerKind kind)
{
    return kind == ServerKind::PostgreSQL ? "postgresql" : kind == ServerKind::MariaDB ? "mariadb" : "sqlite";
}

/// The totals of one target, for the load table.
struct Totals {
    std::size_t files = 0, tables = 0, rows = 0, values = 0, approximated = 0, errors = 0, mismatches = 0;
};

class LosslessLoad : public ::testing::TestWithParam<ServerKind> {
protected:
    void SetUp() override
    {
        m_env = test::readServersEnv(VELLUM_SERVERS_ENV);
        m_inCI = std::getenv("CI") && std::string(std::getenv("CI")) == "true";
    }

    /// Loads one file; adds to the totals; failures name the file, table, column and value.
    void loadOne(const LoadFile &entry, ServerKind kind, test::ServerDatabase &database, Totals &totals);

    std::map<std::string, std::string> m_env;
    bool m_inCI = false;
    test::TempDir m_work;
};

void LosslessLoad::loadOne(const LoadFile &entry, ServerKind kind, test::ServerDatabase &database, Totals &totals)
{
    LoadOptions options;
    if (!entry.codePage.empty())
        options.jet3CodePage = entry.codePage;
    auto file = test::openInProcess(entry.path, options, entry.password);
    ASSERT_TRUE(file) << entry.name << " cannot be opened";
    nlohmann::json tables = entry.tables;
    if (entry.fromModel)
        tables = fixtureTables(*file, test::loadSidecar(entry.path));

    std::string stem = std::filesystem::path(entry.path).filename().string();
    for (char &c : stem)
        if (!std::isalnum(static_cast<unsigned char>(c)))
            c = '_';
    const std::string databaseName = std::string("vl_") + nameOf(kind) + "_" + stem.substr(0, 40);
    ASSERT_TRUE(database.reset()) << entry.name << ": " << database.lastError();

    const std::string script = m_work.file(databaseName + ".sql");
    ExportJob job(*file, nullptr, ExportFileType::SQL);
    ExportOptions exportOptions = job.options();
    exportOptions.sqlFormat = dialectOf(kind);
    exportOptions.exportSingleFile = true;
    exportOptions.lossless = true;
    job.setOptions(exportOptions);
    job.setExportPath(script);
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
    for (const std::string &line : job.msgLog())
        ASSERT_NE(line.find(" approximated: "), std::string::npos) << entry.name << ": " << job.report().message;
    std::size_t counted = 0;
    for (const auto &approximation : job.approximations())
        counted += approximation.count;

    std::string clientFailure;
    const std::vector<std::string> errors = database.loadScript(script, clientFailure);
    std::filesystem::remove(script);
    ASSERT_TRUE(clientFailure.empty()) << entry.name << ": " << clientFailure;
    totals.errors += errors.size();
    for (std::size_t i = 0; i < errors.size() && i < 5; ++i)
        ADD_FAILURE() << entry.name << " (" << nameOf(kind) << "): statement error at line " << errors[i];
    ++totals.files;

    // Every table read back in one client run (table by table when that fails).
    std::vector<std::pair<std::string, std::vector<std::string>>> queries;
    for (const auto &tableTruth : tables) {
        std::vector<std::string> expressions;
        for (const auto &column : tableTruth["columns"])
            if (column["type"] != "COMPLEX_TYPE")
                expressions.push_back(readExpression(kind, database.quote(column["name"]), column["type"]));
        if (expressions.empty())
            expressions.push_back("1");
        queries.emplace_back(tableTruth["name"], expressions);
    }
    const auto allRows = database.readMany(queries);

    std::size_t expectedApproximations = 0;
    std::size_t tableIndex = 0;
    for (const auto &tableTruth : tables) {
        const std::size_t queryIndex = tableIndex++;
        const std::string tableName = tableTruth["name"];
        const auto &columns = tableTruth["columns"];
        const auto &truthRows = tableTruth["rows"];
        const std::size_t rowsTotal = tableTruth["rowsTotal"];
        ++totals.tables;
        // Read back every column but the complex ones, whose values are checked by count.
        std::vector<std::size_t> simple;
        std::vector<std::string> expressions;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const std::string type = columns[c]["type"];
            if (type == "COMPLEX_TYPE")
                continue;
            simple.push_back(c);
            expressions.push_back(readExpression(kind, database.quote(columns[c]["name"]), type));
        }
        if (expressions.empty())
            expressions.push_back("1");
        const auto rows = allRows ? std::optional<std::vector<ServerRow>>((*allRows)[queryIndex])
                                  : database.readExpressions(tableName, expressions);
        if (!rows) {
            ADD_FAILURE() << entry.name << ": table " << tableName << " cannot be read back: " << database.lastError();
            ++totals.mismatches;
            continue;
        }
        totals.rows += rows->size();
        EXPECT_EQ(rows->size(), rowsTotal) << entry.name << ": rows of " << tableName;

        const auto serverKey = [&](const ServerRow &row) {
            std::string key;
            for (std::size_t k = 0; k < simple.size(); ++k) {
                const std::string type = columns[simple[k]]["type"];
                key += (type == "OLE" ? std::string("ole") : serverCanonical(kind, type, row[k])) + '\x1f';
            }
            return key;
        };
        std::multimap<std::string, std::size_t> held;
        for (std::size_t r = 0; r < rows->size(); ++r)
            held.emplace(serverKey((*rows)[r]), r);
        for (std::size_t t = 0; t < truthRows.size(); ++t) {
            std::string key;
            for (std::size_t k = 0; k < simple.size(); ++k) {
                const std::string type = columns[simple[k]]["type"];
                key +=
                    (type == "OLE" ? std::string("ole")
                                   : expectedCanonical(kind, type, truthRows[t][simple[k]], expectedApproximations)) +
                    '\x1f';
            }
            totals.values += simple.size();
            const auto found = held.find(key);
            if (found == held.end()) {
                // Name the first column that differs from the server's row at the same place.
                std::string detail = "no server row";
                if (t < rows->size()) {
                    std::size_t ignored = 0;
                    for (std::size_t k = 0; k < simple.size(); ++k) {
                        const std::string type = columns[simple[k]]["type"];
                        if (type == "OLE")
                            continue;
                        const std::string want = expectedCanonical(kind, type, truthRows[t][simple[k]], ignored);
                        const std::string got = serverCanonical(kind, type, (*rows)[t][k]);
                        if (want != got) {
                            detail = "column " + columns[simple[k]]["name"].get<std::string>() + " (" + type +
                                     "): expected '" + want.substr(0, 120) + "', server holds '" + got.substr(0, 120) +
                                     "'";
                            break;
                        }
                    }
                }
                if (++totals.mismatches <= 30)
                    ADD_FAILURE() << entry.name << " (" << nameOf(kind) << "): table " << tableName << ", truth row "
                                  << t << " not found; " << detail;
                continue;
            }
            const ServerRow &row = (*rows)[found->second];
            held.erase(found);
            for (std::size_t k = 0; k < simple.size(); ++k) {
                if (columns[simple[k]]["type"] != "OLE")
                    continue;
                std::string why;
                if (!oleMatches(kind, truthRows[t][simple[k]], row[k], why) && ++totals.mismatches <= 30)
                    ADD_FAILURE() << entry.name << " (" << nameOf(kind) << "): table " << tableName << ", row " << t
                                  << ", column " << columns[simple[k]]["name"].get<std::string>() << ": " << why;
            }
        }

        // Complex columns: as many values as the truth lists, in the array or child table.
        for (std::size_t c = 0; c < columns.size(); ++c) {
            if (columns[c]["type"] != "COMPLEX_TYPE" || columns[c].value("complexType", "") == "UNSUPPORTED")
                continue;
            std::size_t items = 0;
            for (const auto &row : truthRows)
                if (row[c].is_array())
                    items += row[c].size();
            const std::string columnName = columns[c]["name"];
            const bool array = kind == ServerKind::PostgreSQL && columns[c].value("complexType", "") == "MULTI_VALUE";
            const auto counted =
                array ? database.readExpressions(tableName,
                                                 {"SELECT coalesce(sum(cardinality(" + database.quote(columnName) +
                                                  ")), 0) FROM " + database.quote(tableName)})
                      : database.readExpressions(childTable(*file, tableName + "_" + columnName), {"count(*)"});
            if (rowsTotal > truthRows.size())
                continue; // the truth lists the values of its first rows only
            if (counted && counted->empty() && items == 0)
                continue; // no rows, no values
            if (!counted || counted->empty() || !counted->front().front()) {
                ADD_FAILURE() << entry.name << ": the values of " << tableName << "." << columnName
                              << " cannot be read back: " << database.lastError();
                continue;
            }
            EXPECT_EQ(*counted->front().front(), std::to_string(items))
                << entry.name << " (" << nameOf(kind) << "): values of " << tableName << "." << columnName;
            if (array || entry.fromModel)
                continue;
            // The child table's rows, as multisets: attachments by name, type and content,
            // version histories by text and date, multi-values of text and integer types by text.
            const std::string complexType = columns[c].value("complexType", "");
            const std::string valueType = columns[c].value("multiValueType", "");
            const bool textValues = valueType == "TEXT" || valueType == "MEMO" || valueType == "LONG" ||
                                    valueType == "INT" || valueType == "BYTE" || valueType == "BIG_INT";
            std::vector<std::string> expressions;
            if (complexType == "ATTACHMENT")
                expressions = {database.quote("file_name"), database.quote("file_type"), database.quote("data")};
            else if (complexType == "VERSION_HISTORY")
                expressions = {database.quote("value"), database.quote("changed")};
            else if (textValues)
                expressions = {database.quote("value")};
            else
                continue;
            const auto childRows =
                database.readExpressions(childTable(*file, tableName + "_" + columnName), expressions);
            if (!childRows) {
                ADD_FAILURE() << entry.name << ": " << tableName << "." << columnName << " cannot be read back";
                continue;
            }
            std::multiset<std::string> held, expected;
            for (const ServerRow &row : *childRows) {
                std::string key;
                for (std::size_t k = 0; k < row.size(); ++k) {
                    std::string text = row[k].value_or("<null>");
                    if (complexType == "ATTACHMENT" && k == 2) {
                        if (kind == ServerKind::PostgreSQL && text.rfind("\\x", 0) == 0) {
                            std::string raw;
                            for (std::size_t i = 2; i + 1 < text.size(); i += 2)
                                raw += static_cast<char>(std::stoi(text.substr(i, 2), nullptr, 16));
                            text = raw;
                        }
                        text = sha256Hex(text.data(), text.size());
                    }
                    key += text + '\x1f';
                }
                held.insert(key);
            }
            for (const auto &row : truthRows) {
                if (!row[c].is_array())
                    continue;
                for (const auto &item : row[c]) {
                    if (complexType == "ATTACHMENT")
                        expected.insert(item.value("fileName", "") + '\x1f' + item.value("fileType", "") + '\x1f' +
                                        item.value("sha256", "") + '\x1f');
                    else if (complexType == "VERSION_HISTORY")
                        expected.insert(item.value("value", "") + '\x1f' + item.value("date", "") + '\x1f');
                    else
                        expected.insert((item.is_string() ? item.get<std::string>() : item.dump()) + '\x1f');
                }
            }
            EXPECT_EQ(held, expected) << entry.name << " (" << nameOf(kind) << "): the values of " << tableName << "."
                                      << columnName;
        }
    }
    totals.approximated += counted;
    EXPECT_EQ(counted, expectedApproximations)
        << entry.name << " (" << nameOf(kind) << "): approximated values counted by the export";
}

TEST_P(LosslessLoad, EveryFileLoadsWithEveryValue)
{
    const ServerKind kind = GetParam();
    const auto files = loadFiles();
    if (files.empty())
        GTEST_SKIP() << "../shared/testdata and ../shared/corpus-truth are absent";
    // One database for the run, emptied before each file and dropped at the end.
    test::ServerDatabase database(kind, m_env, std::string("vl_lossless_") + nameOf(kind), m_work.path());
    if (!database.ready()) {
        std::string reason = database.error();
        if (m_env.empty())
            reason = "the servers were not started (run the suite through ctest -L servers)";
        if (m_inCI)
            FAIL() << reason;
        GTEST_SKIP() << reason;
    }
    const auto started = std::chrono::steady_clock::now();
    Totals totals;
    // VELLUM_LOSSLESS_FILES=TEXT narrows a run to the files whose name holds TEXT.
    const char *only = std::getenv("VELLUM_LOSSLESS_FILES");
    for (const LoadFile &entry : files) {
        if (only && entry.name.find(only) == std::string::npos)
            continue;
        SCOPED_TRACE(entry.name);
        loadOne(entry, kind, database, totals);
    }
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - started).count();
    std::printf("lossless %s: %zu files (damaged_* skipped), %zu tables, %zu rows, %zu values compared, %zu "
                "approximated, %zu statement errors, %zu mismatches, %llds\n",
                nameOf(kind), totals.files, totals.tables, totals.rows, totals.values, totals.approximated,
                totals.errors, totals.mismatches, static_cast<long long>(seconds));
    EXPECT_EQ(totals.errors, 0u);
    EXPECT_EQ(totals.mismatches, 0u);
}

INSTANTIATE_TEST_SUITE_P(Targets, LosslessLoad,
                         ::testing::Values(ServerKind::PostgreSQL, ServerKind::MariaDB, ServerKind::SQLite),
                         [](const ::testing::TestParamInfo<ServerKind> &info) {
                             return std::string(info.param == ServerKind::PostgreSQL ? "PostgreSQL"
                                                : info.param == ServerKind::MariaDB  ? "MariaDB"
                                                                                     : "SQLite");
                         });

} // namespace
} // namespace vellum
