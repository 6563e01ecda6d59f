#include "servers/ServerClients.h"

#include "support/RunProcess.h"

#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace vellum::test {

namespace {

std::string shellQuoted(const std::string &text)
{
    std::string out = "'";
    for (char c : text) {
        if (c == '\'')
            out += "'\\''";
        else
            out += c;
    }
    return out + "'";
}

std::string sqlText(const std::string &text, bool backslashEscapes)
{
    std::string out = "'";
    for (char c : text) {
        if (c == '\'' || (backslashEscapes && c == '\\'))
            out += c;
        out += c;
    }
    return out + "'";
}

std::vector<std::string> splitLines(const std::string &text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> splitTabs(const std::string &line)
{
    std::vector<std::string> fields;
    std::size_t from = 0;
    for (std::size_t at = line.find('\t'); at != std::string::npos; at = line.find('\t', from)) {
        fields.push_back(line.substr(from, at - from));
        from = at + 1;
    }
    fields.push_back(line.substr(from));
    return fields;
}

std::optional<std::string> fromHex(const std::string &hex)
{
    if (hex.size() % 2)
        return std::nullopt;
    std::string out;
    for (std::size_t i = 0; i < hex.size(); i += 2) {
        const auto digit = [](char c) -> int {
            if (c >= '0' && c <= '9')
                return c - '0';
            if (c >= 'a' && c <= 'f')
                return c - 'a' + 10;
            if (c >= 'A' && c <= 'F')
                return c - 'A' + 10;
            return -1;
        };
        const int high = digit(hex[i]), low = digit(hex[i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        out += static_cast<char>(high * 16 + low);
    }
    return out;
}

/// Rows of encoded cells ("N" or "v" and hex), `count` a row; nullopt for any other line.
std::optional<std::vector<ServerRow>> parseRows(const std::vector<std::string> &lines, std::size_t count)
{
    std::vector<ServerRow> rows;
    for (const std::string &line : lines) {
        ServerRow row;
        for (const std::string &field : splitTabs(line)) {
            if (field == "N") {
                row.push_back(std::nullopt);
            } else if (!field.empty() && field[0] == 'v') {
                const auto bytes = fromHex(field.substr(1));
                if (!bytes)
                    return std::nullopt;
                row.push_back(*bytes);
            } else {
                return std::nullopt;
            }
        }
        if (row.size() != count)
            return std::nullopt;
        rows.push_back(std::move(row));
    }
    return rows;
}

std::string valueOr(const std::map<std::string, std::string> &env, const std::string &key)
{
    const auto found = env.find(key);
    return found == env.end() ? std::string() : found->second;
}

} // namespace

std::map<std::string, std::string> readServersEnv(const std::string &path)
{
    std::map<std::string, std::string> env;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) {
        const std::size_t eq = line.find('=');
        if (eq == std::string::npos)
            continue;
        std::string value = line.substr(eq + 1);
        if (value.size() >= 2 && value.front() == '\'' && value.back() == '\'')
            value = value.substr(1, value.size() - 2);
        env[line.substr(0, eq)] = value;
    }
    return env;
}

ServerDatabase::ServerDatabase(ServerKind kind, const std::map<std::string, std::string> &env, const std::string &name,
                               const std::string &workFolder)
    : m_kind(kind), m_env(env), m_name(name)
{
    switch (m_kind) {
    case ServerKind::PostgreSQL: {
        if (valueOr(env, "PG_OK") != "1") {
            m_error = "PostgreSQL is not available: " + valueOr(env, "PG_REASON");
            return;
        }
        const std::string database = m_name;
        m_name = "postgres";
        if (!query("DROP DATABASE IF EXISTS " + quote(database)) || !query("CREATE DATABASE " + quote(database)))
            m_error = "cannot create the PostgreSQL database: " + m_lastError;
        m_name = database;
        break;
    }
    case ServerKind::MariaDB: {
        if (valueOr(env, "MY_OK") != "1") {
            m_error = "MariaDB is not available: " + valueOr(env, "MY_REASON");
            return;
        }
        const std::string database = m_name;
        m_name = "mysql";
        if (!query("DROP DATABASE IF EXISTS " + quote(database) + "; CREATE DATABASE " + quote(database)))
            m_error = "cannot create the MariaDB database: " + m_lastError;
        m_name = database;
        break;
    }
    case ServerKind::SQLite:
        if (valueOr(env, "SQLITE3").empty()) {
            m_error = "the sqlite3 shell is not installed";
            return;
        }
        m_sqlitePath = workFolder + "/" + m_name + ".sqlite";
        std::filesystem::remove(m_sqlitePath);
        break;
    }
    m_created = m_error.empty();
}

ServerDatabase::~ServerDatabase()
{
    if (!m_created)
        return;
    const std::string database = m_name;
    if (m_kind == ServerKind::PostgreSQL) {
        m_name = "postgres";
        (void)query("DROP DATABASE IF EXISTS " + quote(database));
    } else if (m_kind == ServerKind::MariaDB) {
        (void)query("DROP DATABASE IF EXISTS " + quote(database));
    } else {
        std::filesystem::remove(m_sqlitePath);
    }
}

bool ServerDatabase::reset()
{
    switch (m_kind) {
    case ServerKind::PostgreSQL:
        return query("DROP SCHEMA IF EXISTS public CASCADE; CREATE SCHEMA public").has_value();
    case ServerKind::MariaDB:
        return query("DROP DATABASE IF EXISTS " + quote(m_name) + "; CREATE DATABASE " + quote(m_name) + "; USE " +
                     quote(m_name))
            .has_value();
    case ServerKind::SQLite:
        std::filesystem::remove(m_sqlitePath);
        return true;
    }
    return false;
}

std::string ServerDatabase::quote(const std::string &name) const
{
    const char q = m_kind == ServerKind::MariaDB ? '`' : '"';
    std::string out(1, q);
    for (char c : name) {
        if (c == q)
            out += c;
        out += c;
    }
    return out + q;
}

std::vector<std::string> ServerDatabase::clientArguments() const
{
    switch (m_kind) {
    case ServerKind::PostgreSQL:
        return {valueOr(m_env, "PSQL"),
                "-X",
                "-q",
                "-h",
                valueOr(m_env, "PG_HOST"),
                "-p",
                valueOr(m_env, "PG_PORT"),
                "-U",
                valueOr(m_env, "PG_USER"),
                "-d",
                m_name};
    case ServerKind::MariaDB:
        return {valueOr(m_env, "MARIADB"), "--no-defaults", "--socket=" + valueOr(m_env, "MY_SOCKET"), "-uroot",
                m_name};
    case ServerKind::SQLite:
        return {valueOr(m_env, "SQLITE3"), "-batch", m_sqlitePath};
    }
    return {};
}

std::optional<std::vector<std::string>> ServerDatabase::query(const std::string &sql)
{
    std::vector<std::string> argv = clientArguments();
    switch (m_kind) {
    case ServerKind::PostgreSQL:
        argv.insert(argv.end(), {"-A", "-t", "-F", "\t", "-v", "ON_ERROR_STOP=1", "-c", sql});
        break;
    case ServerKind::MariaDB:
        argv.insert(argv.end(), {"-N", "-B", "-e", sql});
        break;
    case ServerKind::SQLite:
        argv.insert(argv.end() - 1, {"-bail", "-separator", "\t"});
        argv.push_back(sql);
        break;
    }
    const ProcessResult result = runProcess(argv, 120);
    if (result.exitStatus != 0) {
        m_lastError = result.err.empty() ? "client status " + std::to_string(result.exitStatus) : result.err;
        return std::nullopt;
    }
    return splitLines(result.out);
}

std::vector<std::string> ServerDatabase::loadScript(const std::string &scriptPath, std::string &clientFailure)
{
    ProcessResult result;
    std::regex pattern;
    switch (m_kind) {
    case ServerKind::PostgreSQL: {
        std::vector<std::string> argv = clientArguments();
        argv.insert(argv.end(), {"-v", "ON_ERROR_STOP=0", "-f", scriptPath});
        result = runProcess(argv, 300);
        pattern = std::regex("^psql:.*:([0-9]+): ERROR:  (.*)$");
        break;
    }
    case ServerKind::MariaDB:
    case ServerKind::SQLite: {
        std::string command;
        for (const std::string &arg : clientArguments())
            command += shellQuoted(arg) + " ";
        if (m_kind == ServerKind::MariaDB)
            command += "--force ";
        command += "< " + shellQuoted(scriptPath);
        result = runProcess({"/bin/sh", "-c", command}, 300);
        pattern = m_kind == ServerKind::MariaDB ? std::regex("^(ERROR [0-9]+ \\([0-9A-Z]+\\)) at line ([0-9]+): (.*)$")
                                                : std::regex("^(Parse|Runtime) error near line ([0-9]+): (.*)$");
        break;
    }
    }
    std::vector<std::string> errors;
    for (const std::string &line : splitLines(result.err)) {
        std::smatch match;
        if (!std::regex_match(line, match, pattern))
            continue;
        if (m_kind == ServerKind::PostgreSQL)
            errors.push_back(match[1].str() + ": " + match[2].str());
        else if (m_kind == ServerKind::MariaDB)
            errors.push_back(match[2].str() + ": " + match[1].str() + ": " + match[3].str());
        else
            errors.push_back(match[2].str() + ": " + match[3].str());
    }
    if (result.timedOut || result.exitStatus < 0 || (result.exitStatus != 0 && errors.empty()))
        clientFailure = "client status " + std::to_string(result.exitStatus) + ": " + result.err;
    return errors;
}

bool ServerDatabase::hasTable(const std::string &table)
{
    std::optional<std::vector<std::string>> lines;
    switch (m_kind) {
    case ServerKind::PostgreSQL:
        lines = query("SELECT count(*) FROM pg_tables WHERE schemaname = 'public' AND tablename = " +
                      sqlText(table, false));
        break;
    case ServerKind::MariaDB:
        lines =
            query("SELECT count(*) FROM information_schema.tables WHERE table_schema = DATABASE() AND table_name = " +
                  sqlText(table, true));
        break;
    case ServerKind::SQLite:
        lines = query("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name = " + sqlText(table, false));
        break;
    }
    return lines && !lines->empty() && lines->front() == "1";
}

std::optional<std::vector<ServerRow>> ServerDatabase::readTable(const std::string &table,
                                                                const std::vector<std::string> &columns)
{
    std::vector<std::string> expressions;
    for (const std::string &column : columns)
        expressions.push_back(quote(column));
    return readExpressions(table, expressions);
}

std::string ServerDatabase::selectOf(const std::string &table, const std::vector<std::string> &expressions) const
{
    // Every cell travels as "N" (null) or "v" and the hex of its text, so that no separator,
    // line break or client escaping can change it.
    std::string select = "SELECT ";
    for (std::size_t i = 0; i < expressions.size(); ++i) {
        const std::string c = "(" + expressions[i] + ")";
        if (i)
            select += ", ";
        switch (m_kind) {
        case ServerKind::PostgreSQL:
            select += "CASE WHEN " + c + " IS NULL THEN 'N' ELSE 'v' || encode(convert_to(" + c +
                      "::text, 'UTF8'), 'hex') END";
            break;
        case ServerKind::MariaDB:
            select += "IF(" + c + " IS NULL, 'N', CONCAT('v', HEX(CONCAT(" + c + "))))";
            break;
        case ServerKind::SQLite:
            select += "CASE WHEN " + c + " IS NULL THEN 'N' ELSE 'v' || hex(" + c + ") END";
            break;
        }
    }
    select += " FROM " + quote(table);
    return select;
}

std::optional<std::vector<ServerRow>> ServerDatabase::readExpressions(const std::string &table,
                                                                      const std::vector<std::string> &expressions)
{
    const auto lines = query(selectOf(table, expressions));
    if (!lines)
        return std::nullopt;
    return parseRows(*lines, expressions.size());
}

std::optional<std::vector<std::vector<ServerRow>>>
ServerDatabase::readMany(const std::vector<std::pair<std::string, std::vector<std::string>>> &queries)
{
    // Each table's rows end with a line "#", which no encoded row can be.
    std::vector<std::string> sqls;
    for (const auto &[table, expressions] : queries) {
        sqls.push_back(selectOf(table, expressions));
        sqls.push_back("SELECT '#'");
    }
    const auto lines = queryAll(sqls);
    if (!lines)
        return std::nullopt;
    std::vector<std::vector<ServerRow>> tables;
    std::vector<std::string> current;
    for (const std::string &line : *lines) {
        if (line != "#") {
            current.push_back(line);
            continue;
        }
        if (tables.size() >= queries.size())
            return std::nullopt;
        auto rows = parseRows(current, queries[tables.size()].second.size());
        if (!rows)
            return std::nullopt;
        tables.push_back(std::move(*rows));
        current.clear();
    }
    if (tables.size() != queries.size() || !current.empty())
        return std::nullopt;
    return tables;
}

std::optional<std::vector<std::string>> ServerDatabase::queryAll(const std::vector<std::string> &sqls)
{
    if (m_kind == ServerKind::PostgreSQL) {
        std::vector<std::string> argv = clientArguments();
        argv.insert(argv.end(), {"-A", "-t", "-F", "\t", "-v", "ON_ERROR_STOP=1"});
        for (const std::string &sql : sqls)
            argv.insert(argv.end(), {"-c", sql});
        const ProcessResult result = runProcess(argv, 300);
        if (result.exitStatus != 0) {
            m_lastError = result.err.empty() ? "client status " + std::to_string(result.exitStatus) : result.err;
            return std::nullopt;
        }
        return splitLines(result.out);
    }
    std::string joined;
    for (const std::string &sql : sqls)
        joined += sql + ";\n";
    return query(joined);
}

} // namespace vellum::test
