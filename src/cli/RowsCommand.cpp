#include "browser/gridTexts.h"
#include "cli/ArgParser.h"
#include "cli/CliContext.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
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

/// A complex cell's values: {"values": [text, ...]}, {"attachments": [{"name", "type", "size",
/// "sha256"}, ...]} or {"versions": [{"value", "date"}, ...]} (newest first).
void appendJsonComplex(std::string &out, const TOrbComplexValue &value)
{
    switch (value.kind()) {
    case ComplexKind::MultiValue:
        out += "{\"values\": [";
        for (std::size_t i = 0; i < value.values().size(); ++i) {
            if (i)
                out += ", ";
            appendJsonString(out, value.values()[i]);
        }
        break;
    case ComplexKind::Attachment:
        out += "{\"attachments\": [";
        for (std::size_t i = 0; i < value.attachments().size(); ++i) {
            const auto &attachment = value.attachments()[i];
            const auto &data = attachment.data->data();
            out += i ? ", {\"name\": " : "{\"name\": ";
            appendJsonString(out, attachment.fileName);
            out += ", \"type\": ";
            appendJsonString(out, attachment.fileType);
            out += ", \"size\": " + std::to_string(data.size()) + ", \"sha256\": \"" +
                   sha256Hex(data.data(), data.size()) + "\"}";
        }
        break;
    case ComplexKind::VersionHistory:
        out += "{\"versions\": [";
        for (std::size_t i = 0; i < value.versions().size(); ++i) {
            const auto &version = value.versions()[i];
            out += i ? ", {\"value\": " : "{\"value\": ";
            appendJsonString(out, version.value);
            out += ", \"date\": ";
            appendJsonString(out, version.date);
            out += "}";
        }
        break;
    }
    out += "]}";
}

void appendJsonCell(std::string &out, const CellValue &cell, const TOrbMDBColumn &column)
{
    if (cell.complex) {
        appendJsonComplex(out, *cell.complex);
    } else if (cell.isNull()) {
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
    "  as \\\\, \\t, \\n and \\r. A picture or document cell shows as .EXT [SIZE]. A complex\n"
    "  cell shows its values or its attachments' file names joined by \"; \", a version history\n"
    "  its latest text.\n"
    "  --json  {\"columns\": [names], \"rows\": [[cell, ...], ...]}, each cell a string, null, or\n"
    "          {\"blob\": {\"extension\", \"size\", \"sha256\"}}; a complex cell {\"values\": [...]},\n"
    "          {\"attachments\": [{\"name\", \"type\", \"size\", \"sha256\"}]} or\n"
    "          {\"versions\": [{\"value\", \"date\"}]} (newest first)",
    runRows};

} // namespace vellum::cli
