#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbMDBFile.h"
#include "util/json.h"

namespace vellum::cli {

namespace {

/// The queries to show: every one with `all`, else those a user made (not the "~sq_" ones
/// Access keeps for forms and reports), in name order.
std::vector<const TOrbMDBQuery *> shownQueries(const TOrbMDBFile &file, bool all)
{
    std::vector<const TOrbMDBQuery *> shown;
    for (const auto &query : file.queries())
        if (all || !query->isHidden())
            shown.push_back(query.get());
    return shown;
}

void printQueriesText(std::FILE *out, const std::vector<const TOrbMDBQuery *> &queries)
{
    bool first = true;
    for (const TOrbMDBQuery *query : queries) {
        if (!first)
            std::fputc('\n', out);
        first = false;
        std::fprintf(out, "Query: %s\n  Type: %s\n  SQL:\n", query->name().c_str(),
                     TOrbMDBQuery::typeName(query->type()));
        // Each line of the text indented under its heading; stored texts may end their lines
        // with CR LF.
        const std::string &sql = query->sql();
        std::size_t start = 0;
        while (start < sql.size()) {
            std::size_t end = sql.find('\n', start);
            if (end == std::string::npos)
                end = sql.size();
            std::size_t lineEnd = end;
            if (lineEnd > start && sql[lineEnd - 1] == '\r')
                --lineEnd;
            std::fprintf(out, "    %.*s\n", static_cast<int>(lineEnd - start), sql.data() + start);
            start = end + 1;
        }
    }
}

int runQueries(CliContext &context)
{
    ArgParser parser({"--json", "--all"}, {});
    if (!parser.parse(context.args))
        return usageError(kQueriesCommand, parser.error());
    if (parser.positionals().size() != 1)
        return usageError(kQueriesCommand, "expected one FILE");
    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    const auto queries = shownQueries(*file, parser.has("--all"));
    if (parser.has("--json")) {
        std::string json = "[";
        appendQueriesJson(json, queries);
        json += "]\n";
        std::fwrite(json.data(), 1, json.size(), context.out);
    } else {
        printQueriesText(context.out, queries);
    }
    return kExitOk;
}

} // namespace

void appendQueriesJson(std::string &out, const std::vector<const TOrbMDBQuery *> &queries)
{
    bool first = true;
    for (const TOrbMDBQuery *query : queries) {
        out += first ? "\n  " : ",\n  ";
        first = false;
        out += "{\"name\": ";
        appendJsonString(out, query->name());
        out += ", \"type\": ";
        appendJsonString(out, TOrbMDBQuery::typeName(query->type()));
        out += ", \"sql\": ";
        appendJsonString(out, query->sql());
        out += '}';
    }
    if (!first)
        out += '\n';
}

extern const Command kQueriesCommand = {
    "queries", "list the saved queries with their kind and SQL",
    "vellum-cli queries FILE [--json] [--all]\n"
    "  Prints each saved query: its name, its kind (SELECT, MAKE_TABLE, APPEND, UPDATE, DELETE,\n"
    "  CROSS_TAB, DATA_DEFINITION, PASSTHROUGH, UNION or UNKNOWN) and its SQL as Access shows it,\n"
    "  rebuilt from the stored definition. Queries are never run.\n"
    "  --all   also the queries Access keeps for forms, reports and controls (names \"~sq_...\")\n"
    "  --json  one JSON array of {\"name\", \"type\", \"sql\"}",
    runQueries};

} // namespace vellum::cli
