#include "browser/gridTexts.h"
#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbMDBFile.h"
#include "util/json.h"

namespace vellum::cli {

namespace {

/// Tab-separated form of a text: backslash, tab, line feed and carriage return are escaped so
/// that every row stays on one line.
void appendTsvText(std::string &out, std::string_view text)
{
    for (const char c : text) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            out += c;
        }
    }
}

void appendTsvCell(std::string &out, const CellValue &cell, const TOrbMDBColumn &column)
{
    appendTsvText(out, cellDisplayText(cell, column));
}

void appendJsonCell(std::string &out, const CellValue &cell, const TOrbMDBColumn &column)
{
    if (cell.isNull()) {
        out += "null";
    } else if (cell.isText() && columnHoldsBytes(column)) {
        // Bytes as {"hex": "0001…"}, so that no consumer takes them for text.
        out += "{\"hex\": ";
        appendJsonString(out, cellDisplayText(cell, column).substr(2));
        out += "}";
    } else if (cell.isText()) {
        appendJsonString(out, cell.text);
    } else {
        const auto &data = cell.blob->data();
        out += "{\"blob\": {\"extension\": ";
        appendJsonString(out, cell.blob->fileExtension());
        out += ", \"size\": " + std::to_string(data.size()) + ", \"sha256\": \"" + sha256Hex(data.data(), data.size()) +
               "\"}}";
    }
}

/// Writes the buffer once it is large; false when the output refused it (the rest is not worth
/// converting: the caller stops, and the failed stream makes the run fail).
bool flushIfLarge(std::string &buffer, std::FILE *out)
{
    if (buffer.size() < (1 << 16))
        return true;
    const bool written = std::fwrite(buffer.data(), 1, buffer.size(), out) == buffer.size();
    buffer.clear();
    return written;
}

void printRows(std::FILE *out, const TOrbMDBTable &table, bool json)
{
    const auto &columns = table.columns();
    std::string buffer;
    if (json) {
        buffer = "{\"columns\": [";
        for (size_t c = 0; c < columns.size(); ++c) {
            if (c)
                buffer += ", ";
            appendJsonString(buffer, columns[c]->name());
        }
        buffer += "],\n \"rows\": [";
    } else {
        for (size_t c = 0; c < columns.size(); ++c) {
            if (c)
                buffer += '\t';
            appendTsvText(buffer, columns[c]->name());
        }
        buffer += '\n';
    }
    for (size_t r = 0; r < table.rowCount(); ++r) {
        if (json)
            buffer += r ? ",\n  [" : "\n  [";
        for (size_t c = 0; c < columns.size(); ++c) {
            if (c)
                buffer += json ? ", " : "\t";
            if (json)
                appendJsonCell(buffer, table.cell(r, c), *columns[c]);
            else
                appendTsvCell(buffer, table.cell(r, c), *columns[c]);
        }
        buffer += json ? "]" : "\n";
        if (!flushIfLarge(buffer, out))
            return;
    }
    if (json)
        buffer += "\n]}\n";
    std::fwrite(buffer.data(), 1, buffer.size(), out);
}

int runRows(CliContext &context)
{
    ArgParser parser({"--json"}, {});
    if (!parser.parse(context.args))
        return usageError(kRowsCommand, parser.error());
    if (parser.positionals().size() != 2)
        return usageError(kRowsCommand, "expected FILE and TABLE");
    auto file = openDatabase(context, parser.positionals()[0]);
    if (!file)
        return kExitFailure;
    const TOrbMDBTable *table = file->tableNamed(parser.positionals()[1]);
    if (!table) {
        printError("table (" + parser.positionals()[1] + ") does not exist");
        return kExitFailure;
    }
    printRows(context.out, *table, parser.has("--json"));
    return kExitOk;
}

} // namespace

extern const Command kRowsCommand = {
    "rows", "print the rows of a table",
    "vellum-cli rows FILE TABLE [--json]\n"
    "  Prints the table's rows in storage order as tab-separated text, the column names first and\n"
    "  null as [NULL]; backslash, tab, line feed and carriage return inside a value are written\n"
    "  as \\\\, \\t, \\n and \\r. A picture or document cell shows as .EXT [SIZE].\n"
    "  --json  {\"columns\": [names], \"rows\": [[cell, ...], ...]}, each cell a string, null, or\n"
    "          {\"blob\": {\"extension\", \"size\", \"sha256\"}}",
    runRows};

} // namespace vellum::cli
