// The lossless SQLite database of every fixture and every corpus file, read back through the
// SQLite library and compared, cell by cell and by storage class, with the truth: the corpus
// sidecars (../shared/corpus-truth) and, for the fixtures (../shared/testdata), the loaded model
// whose cells the fixture suites prove equal to their sidecars. Complex columns are compared
// through their child tables. The only differences allowed are the approximations the export
// counts (NaN as NULL, decimals of more than 15 significant digits as REAL), and their number
// must equal the export's own count.

#include "export/ExportJob.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "sql/sqliteLibrary.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"
#include "support/truthIndexes.h"
#include "support/truthValues.h"
#include "util/json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>

namespace vellum {
namespace {

using test::floatBits;
using test::lowerCase;
using test::parseTruthNumber;
using test::truthTypeName;
using test::uniqueIndexesTheRowsBreak;

namespace fs = std::filesystem;

constexpr const char *kNaNWhat = "NaN floating-point values written as NULL";
constexpr const char *kNegativeZeroWhat = "negative zeros stored as 0";
constexpr const char *kDecimalWhat = "decimals of more than 15 significant digits stored as REAL";
constexpr int kSQLiteOpenReadOnly = 0x1;

/// A value read back: its storage class and its content.
struct StoredValue {
    int storageClass = kSQLiteNull;
    std::int64_t integer = 0;
    double real = 0;
    std::string bytes; ///< text or blob
};

/// One database opened read-only through the run-time library.
class StoredDatabase {
public:
    explicit StoredDatabase(const std::string &path)
    {
        m_library = LoadSQLiteLibrary();
        if (m_library && sqliteAPI().sqlite3_open_v2(path.c_str(), &m_db, kSQLiteOpenReadOnly, nullptr) != kSQLiteOK)
            close();
    }
    ~StoredDatabase()
    {
        close();
        if (m_library)
            UnloadSQLiteLibrary();
    }
    bool ok() const { return m_db != nullptr; }

    /// Every row of a query; nullopt (and the message) when it fails.
    std::optional<std::vector<std::vector<StoredValue>>> rows(const std::string &sql, std::string &error)
    {
        const SQLiteAPI &api = sqliteAPI();
        sqlite3_stmt *statement = nullptr;
        if (api.sqlite3_prepare_v2(m_db, sql.c_str(), -1, &statement, nullptr) != kSQLiteOK) {
            error = api.sqlite3_errmsg(m_db);
            return std::nullopt;
        }
        std::vector<std::vector<StoredValue>> out;
        int status;
        while ((status = api.sqlite3_step(statement)) == kSQLiteRow) {
            std::vector<StoredValue> row(static_cast<std::size_t>(api.sqlite3_column_count(statement)));
            for (int c = 0; c < static_cast<int>(row.size()); ++c) {
                StoredValue &value = row[static_cast<std::size_t>(c)];
                value.storageClass = api.sqlite3_column_type(statement, c);
                if (value.storageClass == kSQLiteInteger)
                    value.integer = api.sqlite3_column_int64(statement, c);
                else if (value.storageClass == kSQLiteFloat)
                    value.real = api.sqlite3_column_double(statement, c);
                else if (value.storageClass == kSQLiteText) {
                    const auto *text = reinterpret_cast<const char *>(api.sqlite3_column_text(statement, c));
                    value.bytes.assign(text, static_cast<std::size_t>(api.sqlite3_column_bytes(statement, c)));
                } else if (value.storageClass == kSQLiteBlob) {
                    const auto *blob = static_cast<const char *>(api.sqlite3_column_blob(statement, c));
                    const int size = api.sqlite3_column_bytes(statement, c);
                    if (blob)
                        value.bytes.assign(blob, static_cast<std::size_t>(size));
                }
            }
            out.push_back(std::move(row));
        }
        if (status != kSQLiteDone)
            error = api.sqlite3_errmsg(m_db);
        api.sqlite3_finalize(statement);
        if (status != kSQLiteDone)
            return std::nullopt;
        return out;
    }

private:
    void close()
    {
        if (m_db)
            sqliteAPI().sqlite3_close(m_db);
        m_db = nullptr;
    }
    bool m_library = false;
    sqlite3 *m_db = nullptr;
};

std::string sqlName(const std::string &name)
{
    std::string out = "\"";
    for (const char c : name)
        out += c == '"' ? std::string("\"\"") : std::string(1, c);
    return out + "\"";
}

std::string fifteenDigits(double value)
{
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.15g", value);
    return buf;
}

/// Whether a decimal text is an integer within 64 bits.
bool isInt64Text(const std::string &text)
{
    if (text.empty())
        return false;
    errno = 0;
    char *end = nullptr;
    std::strtoll(text.c_str(), &end, 10);
    return errno == 0 && *end == '\0';
}

/// Whether SQLite's NUMERIC affinity keeps a decimal: an integer within 64 bits, or at most 15
/// significant digits once the fraction's trailing zeros are gone.
bool decimalIsKept(std::string text)
{
    if (isInt64Text(text))
        return true;
    if (text.find('.') != std::string::npos && text.find_first_of("eE") == std::string::npos) {
        while (text.back() == '0')
            text.pop_back();
        if (text.back() == '.')
            text.pop_back();
    }
    std::size_t digits = 0;
    bool leading = true;
    for (const char c : text) {
        if (c == 'e' || c == 'E')
            break;
        if (c >= '0' && c <= '9' && !(leading && c == '0')) {
            leading = false;
            ++digits;
        }
    }
    return digits <= 15;
}

/// The comparison key of an exact decimal text: the integer itself, else the 15 significant
/// digits a double keeps (exact for every decimal of at most 15 digits).
std::string decimalKey(const std::string &text)
{
    return isInt64Text(text) ? std::to_string(std::strtoll(text.c_str(), nullptr, 10))
                             : fifteenDigits(parseTruthNumber(text));
}

/// The key of a value read back, in the terms of the truth's canonical forms.
std::string storedKey(const StoredValue &value, const std::string &type)
{
    if (value.storageClass == kSQLiteNull)
        return "null";
    if (type == "BOOLEAN")
        return value.storageClass == kSQLiteInteger ? (value.integer ? "true" : "false") : "?" + value.bytes;
    if (type == "BYTE" || type == "INT" || type == "LONG" || type == "BIG_INT")
        return value.storageClass == kSQLiteInteger ? std::to_string(value.integer) : "?" + value.bytes;
    if (type == "MONEY" || type == "NUMERIC") {
        if (value.storageClass == kSQLiteInteger)
            return std::to_string(value.integer);
        if (value.storageClass == kSQLiteFloat)
            return fifteenDigits(value.real);
        return "text:" + value.bytes; // the affinity keeps no number as text
    }
    if (type == "FLOAT" || type == "DOUBLE")
        return value.storageClass == kSQLiteFloat ? floatBits(value.real, type == "FLOAT") : "?" + value.bytes;
    if (type == "SHORT_DATE_TIME")
        return value.storageClass == kSQLiteText ? value.bytes : "?";
    if (type == "EXT_DATE_TIME")
        return value.storageClass == kSQLiteText ? (value.bytes.size() == 19 ? value.bytes + ".0000000" : value.bytes)
                                                 : "?";
    if (type == "GUID")
        return value.storageClass == kSQLiteText ? lowerCase(value.bytes) : "?";
    if (type == "TEXT" || type == "MEMO")
        return value.storageClass == kSQLiteText ? value.bytes : "?" + value.bytes;
    if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0)
        return value.storageClass == kSQLiteBlob ? test::lowerHex(value.bytes) : "?";
    return "?";
}

/// What a file's cells should be, in the truth's canonical forms, and how many of them the
/// export can only approximate.
struct Expected {
    std::string key;
    bool nan = false;
    bool negativeZero = false;
    bool decimalApproximated = false;
};

/// A truth cell (corpus sidecar) as a key.
Expected truthKey(const nlohmann::json &cell, const std::string &type)
{
    Expected expected;
    if (cell.is_boolean()) {
        expected.key = cell.get<bool>() ? "true" : "false";
        return expected;
    }
    // An empty text reads as NULL in the model (a known limit of the reader).
    if (cell.is_null() || (cell.is_string() && cell.get<std::string>().empty())) {
        expected.key = "null";
        return expected;
    }
    const std::string text = cell.is_string() ? cell.get<std::string>() : cell.dump();
    if (type == "FLOAT" || type == "DOUBLE") {
        expected.nan = text == "NaN";
        const double value = parseTruthNumber(text);
        expected.negativeZero = value == 0 && std::signbit(value);
        expected.key = expected.nan ? "null" : floatBits(expected.negativeZero ? 0.0 : value, type == "FLOAT");
    } else if (type == "MONEY" || type == "NUMERIC") {
        expected.decimalApproximated = !decimalIsKept(text);
        expected.key = decimalKey(text);
    } else {
        expected.key = text;
    }
    return expected;
}

/// A model cell (fixtures) as a key.
Expected modelKey(const CellValue &cell, const std::string &type)
{
    Expected expected;
    if (type == "BOOLEAN") {
        expected.key = cell.isNull() ? "null" : cell.text == "1" ? "true" : "false";
        return expected;
    }
    if (cell.isNull()) {
        expected.key = "null";
        return expected;
    }
    const std::string text(cell.isText() ? cell.text : std::string_view());
    if (type == "FLOAT" || type == "DOUBLE") {
        expected.nan = text == "NaN";
        const double value = parseTruthNumber(text);
        expected.negativeZero = value == 0 && std::signbit(value);
        expected.key = expected.nan ? "null" : floatBits(expected.negativeZero ? 0.0 : value, type == "FLOAT");
    } else if (type == "MONEY" || type == "NUMERIC") {
        expected.decimalApproximated = !decimalIsKept(text);
        expected.key = decimalKey(text);
    } else if (type == "SHORT_DATE_TIME") {
        expected.key = test::isoFromMonthFirst(text, ' ');
    } else if (type == "EXT_DATE_TIME") {
        expected.key = test::isoFromMonthFirst(text, ' ');
        if (expected.key.size() == 19)
            expected.key += ".0000000";
    } else if (type == "GUID") {
        expected.key = lowerCase(text);
    } else if (type == "BINARY" || type.rfind("UNSUPPORTED", 0) == 0) {
        expected.key = test::lowerHex(text);
    } else {
        expected.key = text;
    }
    return expected;
}

std::string sha256Of(const std::string &bytes)
{
    return sha256Hex(bytes.data(), bytes.size());
}

/// The values of one complex cell as one key: items joined in their order.
using ComplexItems = std::map<std::int64_t, std::vector<std::string>>;

std::string complexKey(const std::vector<std::string> &items)
{
    std::string key = "[";
    for (const std::string &item : items)
        key += item + '\x1e';
    return key + "]";
}

/// The truth's list of a complex cell as a key.
std::string truthComplexKey(const nlohmann::json &cell, const std::string &complexType)
{
    std::vector<std::string> items;
    if (cell.is_array()) {
        for (const auto &item : cell) {
            if (complexType == "ATTACHMENT")
                items.push_back(item.value("fileName", "") + "|" + item.value("fileType", "") + "|" +
                                std::to_string(item.value("size", 0)) + "|" + item.value("sha256", ""));
            else if (complexType == "VERSION_HISTORY")
                items.push_back(item.value("value", "") + "|" + item.value("date", ""));
            else
                items.push_back(item.is_string() ? item.get<std::string>() : item.dump());
        }
    }
    return complexKey(items);
}

/// The model's values of a complex cell as a key.
std::string modelComplexKey(const CellValue &cell)
{
    std::vector<std::string> items;
    if (cell.complex) {
        for (const std::string &value : cell.complex->values())
            items.push_back(value);
        for (const auto &attachment : cell.complex->attachments()) {
            const auto &data = attachment.data->data();
            items.push_back(attachment.fileName + "|" + attachment.fileType + "|" + std::to_string(data.size()) + "|" +
                            sha256Hex(data.data(), data.size()));
        }
        for (const auto &version : cell.complex->versions())
            items.push_back(version.value + "|" + test::isoFromMonthFirst(version.date, ' '));
    }
    return complexKey(items);
}

/// The child table of a complex column read back, by parent id; nullopt when it is missing.
std::optional<ComplexItems> readChildTable(StoredDatabase &db, const std::string &name, std::string &error)
{
    const auto rows = db.rows("SELECT * FROM " + sqlName(name) + " ORDER BY rowid;", error);
    if (!rows)
        return std::nullopt;
    ComplexItems items;
    for (const auto &row : *rows) {
        if (row.empty())
            continue;
        std::string item;
        if (row.size() == 4) // attachment: file_name, file_type, data
            item = row[1].bytes + "|" + row[2].bytes + "|" + std::to_string(row[3].bytes.size()) + "|" +
                   sha256Of(row[3].bytes);
        else if (row.size() == 3) // version history: value, changed
            item = row[1].bytes + "|" + row[2].bytes;
        else if (row.size() == 2)
            item = row[1].bytes;
        items[row[0].integer].push_back(item);
    }
    return items;
}

/// The child table of a complex column: `<table>_<column>`, or that name with "_1", "_2", …
/// where a table of the file already had it; the first of them whose first column is parent_id.
std::optional<ComplexItems> findChildTable(StoredDatabase &db, const std::string &base, std::string &error)
{
    for (int n = 0; n < 10; ++n) {
        const std::string name = n ? base + "_" + std::to_string(n) : base;
        std::string ignored;
        // The library may predate the pragma functions: PRAGMA table_info answers cid, name, ….
        const auto columns = db.rows("PRAGMA table_info(" + sqlName(name) + ");", ignored);
        if (columns && !columns->empty() && (*columns)[0].size() > 1 && (*columns)[0][1].bytes == "parent_id")
            return readChildTable(db, name, error);
    }
    error = "no table " + base + " with a parent_id column";
    return std::nullopt;
}

/// One file to export and what it should hold.
struct Subject {
    std::string label;
    std::string path;
    std::string password;
    LoadOptions options;
    const nlohmann::json *truth = nullptr; ///< corpus sidecar; null for a fixture (the model is the truth)
};

/// The counts of a whole run.
struct Tally {
    std::size_t files = 0, tables = 0, rows = 0, cells = 0, differences = 0, nan = 0, negativeZeros = 0, decimals = 0,
                indexFailures = 0;
};

/// Exports one file losslessly, reads every table back and compares it with its truth.
void checkSubject(const Subject &subject, const std::string &work, Tally &tally)
{
    SCOPED_TRACE(subject.label);
    auto file = test::openInProcess(subject.path, subject.options, subject.password);
    ASSERT_TRUE(file) << subject.path;
    const std::string dbPath = work + "/" + std::to_string(tally.files) + ".sqlite";
    ExportJob job(*file, nullptr, ExportFileType::SQLite);
    job.mutableOptions().lossless = true;
    job.setExportPath(dbPath);
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
    ++tally.files;
    // Besides the approximation warnings, the log may only name unique indexes that the rows
    // themselves break (a damaged file's duplicates), each with SQLite's message.
    const std::set<std::string> forced =
        subject.truth ? uniqueIndexesTheRowsBreak(*subject.truth) : std::set<std::string>{};
    std::set<std::string> indexFailures;
    for (const std::string &line : job.msgLog()) {
        const std::string prefix = "Failed: Create index ";
        if (line.rfind(prefix, 0) == 0 && line.find("\n    UNIQUE constraint failed: ") != std::string::npos)
            indexFailures.insert(line.substr(prefix.size(), line.find('\n') - prefix.size()));
        else
            EXPECT_NE(line.find("values approximated"), std::string::npos) << "unexpected log line: " << line;
    }
    EXPECT_EQ(indexFailures, forced);
    tally.indexFailures += indexFailures.size();

    StoredDatabase db(dbPath);
    ASSERT_TRUE(db.ok()) << dbPath;
    std::size_t expectedNaN = 0, expectedNegativeZeros = 0, expectedDecimals = 0;
    const auto fail = [&tally](const std::string &what) {
        if (++tally.differences <= 40)
            ADD_FAILURE() << what;
    };

    // The tables to compare: the truth's, or every table of the model.
    std::vector<std::string> tableNames;
    if (subject.truth)
        for (const auto &table : (*subject.truth)["tables"])
            tableNames.push_back(table["name"]);
    else
        for (const auto &table : file->tables())
            tableNames.push_back(table->name());

    for (std::size_t t = 0; t < tableNames.size(); ++t) {
        const std::string &tableName = tableNames[t];
        const TOrbMDBTable *table = file->tableNamed(tableName);
        if (!table) {
            fail(tableName + ": not in the model");
            continue;
        }
        ++tally.tables;
        // Columns as the truth lists them (or the model's), with their types and complex kinds.
        struct Column {
            std::string name, type, complexType;
            std::size_t truthIndex = 0;
            std::optional<ComplexItems> children;
        };
        std::vector<Column> columns;
        const nlohmann::json *tableTruth = subject.truth ? &(*subject.truth)["tables"][t] : nullptr;
        if (tableTruth) {
            const auto &truthColumns = (*tableTruth)["columns"];
            for (std::size_t c = 0; c < truthColumns.size(); ++c)
                columns.push_back({truthColumns[c]["name"], truthColumns[c]["type"],
                                   truthColumns[c].value("complexType", ""), c, std::nullopt});
        } else {
            for (std::size_t c = 0; c < table->columns().size(); ++c) {
                const TOrbMDBColumn &column = *table->columns()[c];
                const ComplexColumnValues *values = table->complexValues(c);
                std::string complexType;
                if (values)
                    complexType = values->kind() == ComplexKind::Attachment   ? "ATTACHMENT"
                                  : values->kind() == ComplexKind::MultiValue ? "MULTI_VALUE"
                                                                              : "VERSION_HISTORY";
                columns.push_back({column.name(), truthTypeName(column.dataType()), complexType, c, std::nullopt});
            }
        }
        std::string select = "SELECT ";
        for (std::size_t c = 0; c < columns.size(); ++c)
            select += (c ? ", " : "") + sqlName(columns[c].name);
        select += " FROM " + sqlName(tableName) + " ORDER BY rowid;";
        std::string error;
        const auto stored = db.rows(select, error);
        if (!stored) {
            fail(tableName + ": cannot be read back: " + error);
            continue;
        }
        for (Column &column : columns) {
            if (column.type != "COMPLEX_TYPE" || column.complexType == "UNSUPPORTED" || column.complexType.empty())
                continue;
            column.children = findChildTable(db, tableName + "_" + column.name, error);
            if (!column.children)
                fail(tableName + "." + column.name + ": no child table: " + error);
        }

        // Rows as multisets of keys (another reader may scan pages in another order); OLE cells
        // are then compared row by row.
        const auto storedRowKey = [&](const std::vector<StoredValue> &row) {
            std::string key;
            for (std::size_t c = 0; c < columns.size(); ++c) {
                const Column &column = columns[c];
                if (column.type == "OLE")
                    key += "ole";
                else if (column.type == "COMPLEX_TYPE") {
                    if (column.children && row[c].storageClass == kSQLiteInteger) {
                        const auto found = column.children->find(row[c].integer);
                        key += complexKey(found != column.children->end() ? found->second : std::vector<std::string>{});
                    } else {
                        key += column.children ? "[]" : "complex";
                    }
                } else {
                    key += storedKey(row[c], column.type);
                }
                key += '\x1f';
            }
            return key;
        };
        std::multimap<std::string, std::size_t> ours;
        for (std::size_t r = 0; r < stored->size(); ++r)
            ours.emplace(storedRowKey((*stored)[r]), r);

        const std::size_t expectedRows = tableTruth ? (*tableTruth)["rows"].size() : table->rowCount();
        const bool truncated = tableTruth && tableTruth->value("rowsTruncated", false);
        if (!truncated && stored->size() != expectedRows) {
            fail(tableName + ": " + std::to_string(stored->size()) + " rows, expected " + std::to_string(expectedRows));
            continue;
        }
        for (std::size_t r = 0; r < expectedRows; ++r) {
            std::string key;
            std::vector<const nlohmann::json *> oleTruth(columns.size(), nullptr);
            for (std::size_t c = 0; c < columns.size(); ++c) {
                const Column &column = columns[c];
                if (column.type == "OLE") {
                    key += "ole";
                    if (tableTruth)
                        oleTruth[c] = &(*tableTruth)["rows"][r][column.truthIndex];
                } else if (column.type == "COMPLEX_TYPE") {
                    if (!column.children)
                        key += "complex";
                    else if (tableTruth)
                        key += truthComplexKey((*tableTruth)["rows"][r][column.truthIndex], column.complexType);
                    else
                        key += modelComplexKey(table->cell(r, column.truthIndex));
                } else {
                    const Expected expected = tableTruth
                                                  ? truthKey((*tableTruth)["rows"][r][column.truthIndex], column.type)
                                                  : modelKey(table->cell(r, column.truthIndex), column.type);
                    expectedNaN += expected.nan;
                    expectedNegativeZeros += expected.negativeZero;
                    expectedDecimals += expected.decimalApproximated;
                    key += expected.key;
                }
                key += '\x1f';
                ++tally.cells;
            }
            ++tally.rows;
            const auto found = ours.find(key);
            if (found == ours.end()) {
                fail(tableName + ": row " + std::to_string(r) + " not read back: " + key.substr(0, 300));
                continue;
            }
            const std::vector<StoredValue> &row = (*stored)[found->second];
            ours.erase(found);
            for (std::size_t c = 0; c < columns.size(); ++c) {
                if (columns[c].type != "OLE")
                    continue;
                const StoredValue &value = row[c];
                if (value.storageClass != kSQLiteNull && value.storageClass != kSQLiteBlob) {
                    fail(tableName + "." + columns[c].name + ": OLE stored as class " +
                         std::to_string(value.storageClass));
                    continue;
                }
                if (!tableTruth)
                    continue; // compared as a multiset of contents below
                const nlohmann::json &truth = *oleTruth[c];
                const bool truthNull = truth.is_null() || truth.value("kind", "") == "LINK";
                if (truthNull || value.storageClass == kSQLiteNull) {
                    if ((value.storageClass == kSQLiteNull) != truthNull &&
                        !(value.storageClass == kSQLiteNull && truth.value("kind", "") == "UNKNOWN"))
                        fail(tableName + "." + columns[c].name + ": OLE null differs from " + truth.dump());
                    continue;
                }
                std::set<std::string> accepted = {truth.value("rawSha256", "")};
                if (truth["sha256"].is_string())
                    accepted.insert(truth["sha256"].get<std::string>());
                if (truth.contains("streams"))
                    for (const auto &[name, stream] : truth["streams"].items())
                        accepted.insert(stream.value("sha256", ""));
                if (!accepted.count(sha256Of(value.bytes)))
                    fail(tableName + "." + columns[c].name + ": OLE content differs from " + truth.dump());
            }
        }
        // Fixture OLE cells: the multiset of their contents equals the model's.
        if (!tableTruth) {
            for (std::size_t c = 0; c < columns.size(); ++c) {
                if (columns[c].type != "OLE")
                    continue;
                std::multiset<std::string> model, back;
                for (std::size_t r = 0; r < table->rowCount(); ++r) {
                    const CellValue cell = table->cell(r, c);
                    model.insert(cell.isNull()   ? "null"
                                 : cell.isBlob() ? sha256Hex(cell.blob->data().data(), cell.blob->data().size())
                                                 : sha256Hex(cell.text.data(), cell.text.size()));
                }
                for (const auto &row : *stored)
                    back.insert(row[c].storageClass == kSQLiteNull ? "null" : sha256Of(row[c].bytes));
                if (model != back)
                    fail(tableName + "." + columns[c].name + ": OLE contents differ");
            }
        }
    }

    // Exactly the values that cannot be kept were counted, and nothing else.
    std::size_t countedNaN = 0, countedNegativeZeros = 0, countedDecimals = 0;
    for (const ExportApproximation &approximation : job.approximations()) {
        if (approximation.what == kNaNWhat)
            countedNaN += approximation.count;
        else if (approximation.what == kNegativeZeroWhat)
            countedNegativeZeros += approximation.count;
        else if (approximation.what == kDecimalWhat)
            countedDecimals += approximation.count;
        else
            fail("unexpected approximation: " + approximation.what);
    }
    // Rows past the truth's cap are exported too; compare the counts where the truth has them all.
    bool capped = false;
    if (subject.truth)
        for (const auto &table : (*subject.truth)["tables"])
            capped = capped || table.value("rowsTruncated", false);
    if (!capped) {
        EXPECT_EQ(countedNaN, expectedNaN);
        EXPECT_EQ(countedNegativeZeros, expectedNegativeZeros);
        EXPECT_EQ(countedDecimals, expectedDecimals);
    }
    tally.nan += countedNaN;
    tally.negativeZeros += countedNegativeZeros;
    tally.decimals += countedDecimals;
    std::error_code ignored;
    fs::remove(dbPath, ignored);
}

TEST(SqliteDatabaseLoad, EveryFixtureAndCorpusFileReadsBackAsTheTruth)
{
    const std::string testdata = test::sharedPath("testdata");
    const std::string corpus = test::sharedPath("corpus");
    const std::string truths = test::sharedPath("corpus-truth");
    if (testdata.empty() && (corpus.empty() || truths.empty()))
        GTEST_SKIP() << "../shared/testdata and ../shared/corpus are absent";
    {
        const bool library = LoadSQLiteLibrary();
        if (library)
            UnloadSQLiteLibrary();
        ASSERT_TRUE(library) << "the SQLite library " << sqliteLibraryPath() << " is needed";
    }
    test::TempDir work;
    Tally tally;

    // The fixtures: every Access file with a sidecar.
    if (!testdata.empty()) {
        std::vector<fs::path> fixtures;
        for (const auto &entry : fs::directory_iterator(testdata)) {
            const std::string extension = entry.path().extension().string();
            if ((extension == ".mdb" || extension == ".accdb") && fs::exists(entry.path().string() + ".json"))
                fixtures.push_back(entry.path());
        }
        std::sort(fixtures.begin(), fixtures.end());
        for (const fs::path &fixture : fixtures) {
            Subject subject;
            subject.label = fixture.filename().string();
            subject.path = fixture.string();
            checkSubject(subject, work.path(), tally);
        }
    }

    // The corpus: every file with a truth sidecar (the damaged_* files have none and are
    // skipped: their truth is that they are damaged, which other suites check).
    std::size_t damagedSkipped = 0;
    if (!corpus.empty())
        for (const auto &entry : fs::directory_iterator(corpus))
            damagedSkipped += entry.path().filename().string().rfind("damaged_", 0) == 0;
    std::vector<fs::path> truthPaths;
    if (!truths.empty())
        for (const auto &entry : fs::directory_iterator(truths))
            if (entry.path().extension() == ".json")
                truthPaths.push_back(entry.path());
    std::sort(truthPaths.begin(), truthPaths.end());
    for (const fs::path &truthPath : truthPaths) {
        std::ifstream in(truthPath);
        const nlohmann::json truth = nlohmann::json::parse(in, nullptr, false);
        ASSERT_FALSE(truth.is_discarded()) << truthPath;
        Subject subject;
        subject.label = truth["file"].get<std::string>();
        subject.path = corpus + "/" + subject.label;
        if (!fs::exists(subject.path))
            continue;
        subject.password = truth["password"].is_string() ? truth["password"].get<std::string>() : "";
        if (truth["codePage"].is_string() && truth["codePage"] != "windows-1252")
            subject.options.jet3CodePage = truth["codePage"];
        subject.truth = &truth;
        checkSubject(subject, work.path(), tally);
    }
    std::printf(
        "lossless sqlite: %zu files (%zu damaged files skipped), %zu tables, %zu rows, %zu cells compared, "
        "%zu differences, %zu unique indexes the rows break; approximated: %zu NaN values, %zu negative zeros, %zu "
        "decimals\n",
        tally.files, damagedSkipped, tally.tables, tally.rows, tally.cells, tally.differences, tally.indexFailures,
        tally.nan, tally.negativeZeros, tally.decimals);
    EXPECT_GT(tally.files, 0u);
    EXPECT_EQ(tally.differences, 0u);
}

} // namespace
} // namespace vellum
