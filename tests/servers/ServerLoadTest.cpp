// The SQL scripts of the fixture databases, loaded into real servers: PostgreSQL and MariaDB
// (started on the loopback interface by scripts/test-servers.sh around this suite) and SQLite
// (the sqlite3 shell). Each load must report exactly the known errors listed below, and every
// row that loads must hold the model's values: every text, number and date, compared by type.
//
// The known errors are the places where the script, written exactly as the export rules say,
// cannot load (for example MySQL's "varchar" without a length for a Binary column, or a hex
// literal into a PostgreSQL BYTEA column). The README's notes on SQL export list them; a new
// error, or a known one that goes away, fails the test.

#include "export/ExportJob.h"
#include "export/SqlTypeMapping.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "model/TOrbMDBTable.h"
#include "servers/ServerClients.h"
#include "support/Fixtures.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace vellum {
namespace {

using test::ServerCell;
using test::ServerKind;
using test::ServerRow;

/// One load: a fixture's single script in one dialect, and what is known not to load.
struct LoadCase {
    const char *fixture;
    ServerKind kind;
    /// "LINE: message" of every error the client reports, in order.
    std::vector<std::string> errors;
    /// Tables whose CREATE TABLE fails.
    std::set<std::string> absentTables;
    /// Rows whose INSERT fails, by table and key (the primary-key texts joined by "|").
    std::map<std::string, std::set<std::string>> missingRows;
};

ServerType dialectOf(ServerKind kind)
{
    switch (kind) {
    case ServerKind::MariaDB:
        return ServerTypeMySQL;
    case ServerKind::PostgreSQL:
        return ServerTypePostgreSQL;
    case ServerKind::SQLite:
        return ServerTypeSQLite;
    }
    return ServerTypeNone;
}

const char *nameOf(ServerKind kind)
{
    switch (kind) {
    case ServerKind::MariaDB:
        return "mysql";
    case ServerKind::PostgreSQL:
        return "postgresql";
    case ServerKind::SQLite:
        return "sqlite";
    }
    return "";
}

// ---- how a server gives back what the script wrote ----

enum class Rule {
    Text,                   ///< the same bytes
    TextDoubledBackslashes, ///< the same bytes with every backslash doubled (the script doubles
                            ///< them in every dialect; only MySQL reads "\\" back as one)
    Date,                   ///< "yyyy-MM-dd HH:mm:ss" of the month-first text
    Bool,                   ///< PostgreSQL's true/false for 1/0
    Integer,
    Real, ///< a number within a tolerance (the column type's precision)
    Guid, ///< the same hex digits, case and dashes aside
    Blob, ///< the blob's bytes
};

struct Comparison {
    Rule rule;
    double absolute = 0;
    double relative = 0;
};

Comparison comparisonFor(ServerKind kind, const std::string &type)
{
    const bool pg = kind == ServerKind::PostgreSQL;
    const bool my = kind == ServerKind::MariaDB;
    if (type == "Text" || type == "Memo/Hyperlink" || type == "Binary")
        return {my ? Rule::Text : Rule::TextDoubledBackslashes};
    if (type == "DateTime")
        return {kind == ServerKind::SQLite ? Rule::TextDoubledBackslashes : Rule::Date};
    if (type == "Boolean")
        return {pg ? Rule::Bool : Rule::Integer};
    if (type == "Byte" || type == "Integer" || type == "Long Integer" || type == "Complex Value auto number")
        return {Rule::Integer};
    // MySQL "float" is single precision for every fractional type; PostgreSQL NUMERIC(15,2)
    // keeps two decimals; SQLite REAL is a double.
    if (type == "Currency" || type == "Numeric") {
        if (pg)
            return {Rule::Real, 0.005};
        if (my)
            return type == "Numeric" ? Comparison{Rule::Real, 0.5} : Comparison{Rule::Real, 0, 1e-6};
        return {Rule::Real, 0, 1e-12};
    }
    if (type == "Single")
        return {Rule::Real, 0, pg || my ? 1e-6 : 1e-12};
    if (type == "Double")
        return {Rule::Real, 0, pg ? 1e-15 : my ? 1e-6 : 1e-12};
    if (type == "Replication ID")
        return {Rule::Guid};
    if (type == "OLE")
        return {Rule::Blob};
    return {Rule::Text};
}

bool parseInteger(const std::string &text, long long &value)
{
    char *end = nullptr;
    value = std::strtoll(text.c_str(), &end, 10);
    return !text.empty() && end && *end == '\0';
}

bool parseReal(const std::string &text, double &value)
{
    char *end = nullptr;
    value = std::strtod(text.c_str(), &end);
    return !text.empty() && end && *end == '\0';
}

std::string hexDigits(const std::string &text)
{
    std::string out;
    for (char c : text)
        if (std::isxdigit(static_cast<unsigned char>(c)))
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::string doubledBackslashes(std::string_view text)
{
    std::string out;
    for (char c : text) {
        if (c == '\\')
            out += c;
        out += c;
    }
    return out;
}

/// Empty when the server's cell holds the model's value; otherwise what was expected.
std::string mismatch(ServerKind kind, const TOrbMDBColumn &column, const CellValue &model, const ServerCell &server)
{
    const auto shown = [](const ServerCell &cell) { return cell ? "'" + *cell + "'" : std::string("null"); };
    if (model.isNull()) {
        // A missing value is written '' where zero-length text is forbidden, null elsewhere.
        const ServerCell expected =
            column.allowZeroLength() == "NO" ? ServerCell(std::string()) : ServerCell(std::nullopt);
        return server == expected ? std::string() : "expected " + shown(expected) + ", got " + shown(server);
    }
    if (!server)
        return "expected a value, got null";
    const Comparison comparison = comparisonFor(kind, column.dataType());
    const std::string &got = *server;
    if (model.isBlob()) {
        const auto &data = model.blob->data();
        std::string bytes(data.begin(), data.end());
        if (kind == ServerKind::PostgreSQL) // bytea as text: \x and hex digits
            bytes = "\\x" + hexDigits(encodeSqlBlobValue(data).substr(1));
        return got == bytes ? std::string() : "blob of " + std::to_string(data.size()) + " bytes differs";
    }
    const std::string text(model.text);
    switch (comparison.rule) {
    case Rule::Text:
        return got == text ? std::string() : "expected '" + text + "', got '" + got + "'";
    case Rule::TextDoubledBackslashes: {
        std::string expected = doubledBackslashes(text);
        if (kind == ServerKind::SQLite) {
            // The sqlite3 shell reads a script line by line and drops the CR of each CR LF.
            for (std::size_t at = expected.find("\r\n"); at != std::string::npos; at = expected.find("\r\n", at))
                expected.erase(at, 1);
        }
        return got == expected ? std::string() : "expected '" + expected + "', got '" + got + "'";
    }
    case Rule::Date: {
        std::string expected;
        if (!reformatMonthFirstDate(text, expected))
            expected = text;
        return got == expected ? std::string() : "expected '" + expected + "', got '" + got + "'";
    }
    case Rule::Bool: {
        const std::string expected = text == "0" ? "false" : "true";
        return got == expected ? std::string() : "expected " + expected + ", got " + got;
    }
    case Rule::Integer: {
        long long a = 0, b = 0;
        return parseInteger(text, a) && parseInteger(got, b) && a == b ? std::string()
                                                                       : "expected " + text + ", got " + got;
    }
    case Rule::Real: {
        double a = 0, b = 0;
        if (!parseReal(text, a) || !parseReal(got, b))
            return "expected number " + text + ", got '" + got + "'";
        const double tolerance = comparison.absolute + comparison.relative * std::max(std::fabs(a), std::fabs(b));
        return std::fabs(a - b) <= tolerance ? std::string() : "expected " + text + ", got " + got;
    }
    case Rule::Guid:
        return hexDigits(text) == hexDigits(got) ? std::string() : "expected GUID " + text + ", got " + got;
    case Rule::Blob:
        return "expected a blob, the model holds text";
    }
    return {};
}

/// The key of a row: its primary-key texts (or its first column's) joined by "|".
std::vector<std::size_t> keyColumns(const TOrbMDBTable &table)
{
    std::vector<std::size_t> key;
    for (std::size_t c = 0; c < table.columns().size(); ++c)
        if (table.columns()[c]->isPrimaryKey())
            key.push_back(c);
    if (key.empty())
        key.push_back(0);
    return key;
}

// ---- the suite ----

class ServerLoad : public ::testing::Test {
protected:
    void SetUp() override
    {
        m_env = test::readServersEnv(VELLUM_SERVERS_ENV);
        m_inCI = std::getenv("CI") && std::string(std::getenv("CI")) == "true";
        ASSERT_FALSE(m_work.path().empty());
    }

    /// Skips (fails in CI) when the server cannot be used.
    bool available(const test::ServerDatabase &database)
    {
        if (database.ready())
            return true;
        std::string reason = database.error();
        if (m_env.empty())
            reason = std::string("the servers were not started (no ") + VELLUM_SERVERS_ENV +
                     "; run the suite through ctest -L servers, which runs scripts/test-servers.sh)";
        if (m_inCI)
            ADD_FAILURE() << reason;
        else
            std::cout << "[  SKIPPED ] " << reason << "\n";
        return false;
    }

    void runLoad(const LoadCase &c);

    std::map<std::string, std::string> m_env;
    bool m_inCI = false;
    test::TempDir m_work;
};

void ServerLoad::runLoad(const LoadCase &c)
{
    const std::string databaseName = std::string("vellum_") + nameOf(c.kind) + "_" +
                                     std::string(c.fixture).substr(0, std::string(c.fixture).find('.'));
    test::ServerDatabase database(c.kind, m_env, databaseName, m_work.path());
    if (!available(database))
        GTEST_SKIP() << database.error();

    auto file = test::openInProcess(test::fixturePath(c.fixture));
    ASSERT_TRUE(file) << c.fixture;

    // The script, exactly as the export writes it: one script, every part on.
    const std::string script = m_work.file(databaseName + ".sql");
    ExportJob job(*file, nullptr, ExportFileType::SQL);
    ExportOptions options = job.options();
    options.sqlFormat = dialectOf(c.kind);
    options.exportSingleFile = true;
    job.setOptions(options);
    job.setExportPath(script);
    ASSERT_TRUE(job.startExport(nullptr));
    job.wait();
    ASSERT_TRUE(job.msgLog().empty()) << job.report().message;

    std::string clientFailure;
    const std::vector<std::string> errors = database.loadScript(script, clientFailure);
    ASSERT_TRUE(clientFailure.empty()) << clientFailure;
    EXPECT_EQ(errors, c.errors) << "the errors of loading the " << nameOf(c.kind) << " script of " << c.fixture;

    std::vector<std::string> mismatches;
    for (const auto &table : file->tables()) {
        const std::string &name = table->name();
        if (c.absentTables.count(name)) {
            EXPECT_FALSE(database.hasTable(name)) << name << " was expected not to load";
            continue;
        }
        std::vector<std::string> columnNames;
        for (const auto &column : table->columns())
            columnNames.push_back(column->name());
        const auto rows = database.readTable(name, columnNames);
        if (!rows) {
            ADD_FAILURE() << "cannot read " << name << " back";
            continue;
        }
        const std::vector<std::size_t> key = keyColumns(*table);
        const auto serverKey = [&](const ServerRow &row) {
            std::string text;
            for (std::size_t c : key)
                text += (text.empty() ? "" : "|") + row[c].value_or("<null>");
            return text;
        };
        std::map<std::string, const ServerRow *> byKey;
        for (const ServerRow &row : *rows)
            byKey[serverKey(row)] = &row;
        const auto missing = c.missingRows.count(name) ? c.missingRows.at(name) : std::set<std::string>();
        std::size_t expectedRows = 0;
        for (std::size_t r = 0; r < table->rowCount(); ++r) {
            std::string modelKey;
            for (std::size_t col : key)
                modelKey += (modelKey.empty() ? "" : "|") + std::string(table->cell(r, col).text);
            const auto found = byKey.find(modelKey);
            if (missing.count(modelKey)) {
                if (found != byKey.end())
                    mismatches.push_back(name + " row " + modelKey + " loaded, but was expected to fail");
                continue;
            }
            ++expectedRows;
            if (found == byKey.end()) {
                mismatches.push_back(name + " row " + modelKey + " is missing");
                continue;
            }
            for (std::size_t col = 0; col < table->columns().size(); ++col) {
                const std::string problem =
                    mismatch(c.kind, *table->columns()[col], table->cell(r, col), (*found->second)[col]);
                if (!problem.empty())
                    mismatches.push_back(name + " row " + modelKey + " " + table->columns()[col]->name() + ": " +
                                         problem);
            }
        }
        EXPECT_EQ(rows->size(), expectedRows) << "rows of " << name;
    }
    std::string listed;
    for (std::size_t i = 0; i < mismatches.size() && i < 25; ++i)
        listed += "\n  " + mismatches[i];
    EXPECT_TRUE(mismatches.empty()) << mismatches.size() << " values differ from the model:" << listed;
}

// The known errors. Line numbers are those of the golden scripts in tests/data/golden/sql.

TEST_F(ServerLoad, PostgreSQLFeatures)
{
    const char *bitNotBytea = "column \"ColBinary\" is of type bytea but expression is of type bit";
    runLoad({"features.mdb",
             ServerKind::PostgreSQL,
             {
                 // A Binary value with NUL bytes goes in as a blob literal x'…', a bit string here.
                 std::string("32: ") + bitNotBytea,
                 // The largest and smallest Currency do not fit NUMERIC(15,2).
                 "39: numeric field overflow",
                 "40: numeric field overflow",
                 // A Binary value without NUL is written as text; its bytes are not UTF-8.
                 "43: invalid byte sequence for encoding \"UTF8\": 0xff",
                 std::string("52: ") + bitNotBytea,
                 // A relationship without enforced integrity whose rows do not match.
                 "229: insert or update on table \"Orders\" violates foreign key constraint \"CustomersOrdersShipTo\"",
             },
             {},
             {{"AllTypes", {"3", "7", "8", "11", "19"}}}});
}

TEST_F(ServerLoad, MariaDBFeatures)
{
    // "varchar" without a length (the Binary column) is a syntax error, so AllTypes is not made
    // and none of its rows load.
    std::vector<std::string> errors = {
        "13: ERROR 1064 (42000): You have an error in your SQL syntax; check the manual "
        "that corresponds to your MariaDB server version for the right syntax to use near '"};
    for (int line : {33, 34, 35, 36, 37, 41, 42, 43, 44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 55, 56})
        errors.push_back(std::to_string(line) +
                         ": ERROR 1146 (42S02): Table 'vellum_mysql_features.AllTypes' doesn't exist");
    runLoad({"features.mdb", ServerKind::MariaDB, errors, {"AllTypes"}, {}});
}

TEST_F(ServerLoad, SQLiteFeatures)
{
    // GUIDs are written bare with their braces, which SQLite cannot parse.
    const char *brace = ": unrecognized token: \"{\"";
    runLoad({"features.mdb",
             ServerKind::SQLite,
             {std::string("33") + brace, std::string("34") + brace, std::string("41") + brace,
              std::string("49") + brace, std::string("54") + brace},
             {},
             {{"AllTypes", {"2", "3", "7", "15", "19"}}}});
}

TEST_F(ServerLoad, PostgreSQLBlobs)
{
    // The blob literal x'…' is a bit string in PostgreSQL, not BYTEA.
    std::vector<std::string> errors;
    for (int line : {9, 10, 11, 12, 13, 14, 15, 16, 19, 20, 22})
        errors.push_back(std::to_string(line) + ": column \"Data\" is of type bytea but expression is of type bit");
    runLoad({"ole.mdb",
             ServerKind::PostgreSQL,
             errors,
             {},
             {{"Blobs", {"1", "2", "3", "4", "5", "6", "7", "8", "11", "12", "14"}}}});
}

TEST_F(ServerLoad, MariaDBBlobs)
{
    // OLE columns are "text(8000)": payloads that are not UTF-8 are refused.
    const std::string refused = ": ERROR 1366 (22007): Incorrect string value: '";
    const std::string column = "...' for column `vellum_mysql_ole`.`Blobs`.`Data` at row 1";
    runLoad(
        {"ole.mdb",
         ServerKind::MariaDB,
         {"14" + refused + "\\x80U\\x00\\x80\\xAA\\x00" + column, "15" + refused + "\\xBDN\\xC30\\x10\\xDE" + column,
          "16" + refused + "\\xD0\\xCF\\x11\\xE0\\xA1\\xB1" + column,
          "17" + refused + "\\xD0\\xCF\\x11\\xE0\\xA1\\xB1" + column, "18" + refused + "\\x89PNG\\x0D\\x0A" + column,
          "22" + refused + "\\xFF\\xD8\\xFF\\xE0\\x00\\x10" + column,
          "25" + refused + "\\x9B\\xBA\\xD9\\xF8\\x176" + column},
         {},
         {{"Blobs", {"3", "4", "5", "6", "7", "11", "14"}}}});
}

TEST_F(ServerLoad, SQLiteBlobs)
{
    runLoad({"ole.mdb", ServerKind::SQLite, {}, {}, {}});
}

} // namespace
} // namespace vellum
