#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbMDBFile.h"
#include "util/json.h"
#include "util/localized.h"

namespace vellum::cli {

namespace {

/// Fields a JSON object carries beyond the object's information rows: none for most objects.
std::string extraFieldsJson(const TOrbMDBObject &)
{
    return {};
}

/// An index also says whether it is a relationship's index, which the information pane does
/// not show.
std::string extraFieldsJson(const TOrbMDBIndex &index)
{
    std::string out;
    appendJsonString(out, "Foreign key");
    out += ": ";
    appendJsonString(out, localized(index.isForeignKey() ? "YES" : "NO"));
    return out;
}

/// One object's information rows as a JSON object, in label order (numbers stay numbers),
/// followed by `extra` (complete "key": value pairs).
void appendObjectJson(std::string &out, const TOrbMDBObject &object, const std::string &extra = {})
{
    const auto labels = object.getObjectLabels();
    const auto values = object.getObjectValues();
    out += '{';
    bool first = true;
    for (const auto &label : labels) {
        const auto it = values.find(label);
        if (it == values.end())
            continue;
        if (!first)
            out += ", ";
        first = false;
        appendJsonString(out, label);
        out += ": ";
        if (const auto *number = std::get_if<long long>(&it->second))
            out += std::to_string(*number);
        else
            appendJsonString(out, std::get<std::string>(it->second));
    }
    if (!extra.empty())
        out += (first ? "" : ", ") + extra;
    out += '}';
}

template <typename List> void appendListJson(std::string &out, const char *key, const List &objects)
{
    out += ", ";
    appendJsonString(out, key);
    out += ": [";
    bool first = true;
    for (const auto &object : objects) {
        if (!first)
            out += ", ";
        first = false;
        appendObjectJson(out, *object, extraFieldsJson(*object));
    }
    out += ']';
}

/// A JSON string, or null for an empty text.
void appendJsonStringOrNull(std::string &out, const std::string &text)
{
    if (text.empty())
        out += "null";
    else
        appendJsonString(out, text);
}

/// A linked table as {"name", "kind", "database", "table", "connect", "relationships"}: kind
/// "ACCESS" or "ODBC", database null for ODBC links, connect null where none is stored; the
/// relationships in which the linked table is the referencing side.
void appendLinkedTableJson(std::string &out, const TOrbMDBFile &file, const TOrbMDBLinkedTable &link)
{
    out += "{\"name\": ";
    appendJsonString(out, link.name());
    out += ", \"kind\": ";
    appendJsonString(out, TOrbMDBLinkedTable::kindName(link.kind()));
    out += ", \"database\": ";
    if (link.kind() == TOrbMDBLinkedTable::Kind::Odbc)
        out += "null";
    else
        appendJsonString(out, link.database());
    out += ", \"table\": ";
    appendJsonString(out, link.targetTable());
    out += ", \"connect\": ";
    appendJsonStringOrNull(out, link.connect());
    appendListJson(out, "relationships",
                   file.foreignKeysForTable(link.name()).value_or(std::vector<const TOrbMDBForeignKey *>{}));
    out += '}';
}

std::string schemaJson(const TOrbMDBFile &file)
{
    std::string out = "{\"file\": ";
    appendObjectJson(out, file);
    out += ", \"tables\": [";
    bool first = true;
    for (const auto &table : file.tables()) {
        out += first ? "\n  " : ",\n  ";
        first = false;
        out += "{\"info\": ";
        appendObjectJson(out, *table);
        appendListJson(out, "columns", table->columns());
        appendListJson(out, "indexes", table->indices());
        appendListJson(out, "relationships", table->foreignKeys().value_or(std::vector<const TOrbMDBForeignKey *>{}));
        out += '}';
    }
    out += "\n], \"linkedTables\": [";
    first = true;
    for (const auto &link : file.linkedTables()) {
        out += first ? "\n  " : ",\n  ";
        first = false;
        appendLinkedTableJson(out, file, *link);
    }
    // Every saved query, the ones Access keeps for forms and reports included.
    out += "\n], \"queries\": [";
    std::vector<const TOrbMDBQuery *> queries;
    for (const auto &query : file.queries())
        queries.push_back(query.get());
    appendQueriesJson(out, queries);
    out += "]}\n";
    return out;
}

void printObjectText(std::FILE *out, const TOrbMDBObject &object, const char *heading, int indent)
{
    std::fprintf(out, "%*s%s: %s\n", indent, "", heading, object.name().c_str());
    const auto values = object.getObjectValues();
    for (const auto &label : object.getObjectLabels()) {
        const auto it = values.find(label);
        if (it != values.end())
            std::fprintf(out, "%*s%s: %s\n", indent + 2, "", label.c_str(), infoValueText(it->second).c_str());
    }
}

void printSchemaText(std::FILE *out, const TOrbMDBFile &file)
{
    printObjectText(out, file, "File", 0);
    for (const auto &table : file.tables()) {
        std::fputc('\n', out);
        printObjectText(out, *table, "Table", 0);
        for (const auto &column : table->columns())
            printObjectText(out, *column, "Column", 2);
        for (const auto &index : table->indices())
            printObjectText(out, *index, "Index", 2);
        if (const auto keys = table->foreignKeys())
            for (const TOrbMDBForeignKey *key : *keys)
                printObjectText(out, *key, "Relationship", 2);
    }
    for (const auto &link : file.linkedTables()) {
        std::fputc('\n', out);
        printObjectText(out, *link, "Linked table", 0);
        if (const auto keys = file.foreignKeysForTable(link->name()))
            for (const TOrbMDBForeignKey *key : *keys)
                printObjectText(out, *key, "Relationship", 2);
    }
}

int runSchema(CliContext &context)
{
    ArgParser parser({"--json"}, {});
    if (!parser.parse(context.args))
        return usageError(kSchemaCommand, parser.error());
    if (parser.positionals().size() != 1)
        return usageError(kSchemaCommand, "expected one FILE");
    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    if (parser.has("--json")) {
        const std::string json = schemaJson(*file);
        std::fwrite(json.data(), 1, json.size(), context.out);
    } else {
        printSchemaText(context.out, *file);
    }
    return kExitOk;
}

} // namespace

extern const Command kSchemaCommand = {
    "schema", "show the schema: file, tables, columns, indexes, relationships, linked tables",
    "vellum-cli schema FILE [--json]\n"
    "  Prints the information rows of the file, then of each table with its columns, indexes\n"
    "  and relationships (those in which the table is the referencing side), then of each\n"
    "  linked table with its relationships.\n"
    "  --json  one JSON document {\"file\": {...}, \"tables\": [{\"info\", \"columns\", \"indexes\",\n"
    "          \"relationships\"}], \"linkedTables\": [{\"name\", \"kind\", \"database\", \"table\",\n"
    "          \"connect\", \"relationships\"}], \"queries\": [{\"name\", \"type\", \"sql\"}]}; kind is\n"
    "          \"ACCESS\" or \"ODBC\", database is null for ODBC links, connect null where none is\n"
    "          stored; every saved query is listed (those Access keeps for forms and reports too; see\n"
    "          `vellum-cli queries`)",
    runSchema};

} // namespace vellum::cli
