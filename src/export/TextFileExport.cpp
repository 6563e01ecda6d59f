#include "export/TextFileExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "model/TOrbMDBTable.h"
#include "model/mdbTypeNames.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/stringEncodings.h"

#include <cstring>
#include <vector>

namespace vellum {

namespace {

constexpr std::size_t kFlushBytes = 1 << 20;

/// Converts pieces to the target encoding into a buffer that is handed to the sink in large
/// blocks; remembers a failed write and counts substituted characters.
class PieceWriter {
public:
    PieceWriter(ExportSink &sink) : m_sink(sink) {}

    [[nodiscard]] bool open(std::uint64_t encoding)
    {
        m_passThrough = encoding == kStringEncodingUTF8;
        return m_encoder.open(encoding);
    }
    bool passThrough() const { return m_passThrough; }

    /// A piece that was converted before (a tag, a delimiter); `substituted` as counted then.
    void writeEncoded(const std::string &bytes, std::size_t substituted)
    {
        m_buffer += bytes;
        m_substituted += substituted;
        flushIfFull();
    }
    /// A piece in UTF-8.
    void write(std::string_view utf8)
    {
        m_substituted += m_encoder.append(utf8, m_buffer);
        flushIfFull();
    }
    /// The buffer for a caller that appends UTF-8 directly (pass-through only).
    std::string &directBuffer() { return m_buffer; }
    void flushIfFull()
    {
        if (m_buffer.size() >= kFlushBytes)
            flush();
    }
    bool flush()
    {
        if (!m_buffer.empty() && !m_sink.write(m_buffer))
            m_failed = true;
        m_buffer.clear();
        return !m_failed;
    }
    bool failed() const { return m_failed; }
    std::size_t substituted() const { return m_substituted; }

    /// Converts a constant piece once.
    std::pair<std::string, std::size_t> encode(std::string_view utf8)
    {
        std::string bytes;
        const std::size_t substituted = m_encoder.append(utf8, bytes);
        return {std::move(bytes), substituted};
    }

private:
    ExportSink &m_sink;
    TextEncoder m_encoder;
    bool m_passThrough = true;
    std::string m_buffer;
    bool m_failed = false;
    std::size_t m_substituted = 0;
};

/// "%d character(s) … written as "?"." for the log line of a table with substitutions.
std::string substitutionText(std::size_t count)
{
    const std::string format =
        localized(count == 1 ? "%d character that the chosen encoding cannot represent was written as \"?\"."
                             : "%d characters that the chosen encoding cannot represent were written as \"?\".");
    return formatString(format.c_str(), static_cast<int>(count));
}

struct EncodedPiece {
    std::string bytes;
    std::size_t substituted = 0;
};

} // namespace

TextValueClass textValueClassForDataType(std::string_view dataType)
{
    const ColumnValueClass valueClass = columnValueClassForDataType(dataType);
    if (isQuotedValueClass(valueClass))
        return TextValueClass::Quoted;
    if (valueClass == ColumnValueClass::Fraction)
        return TextValueClass::Decimal;
    return TextValueClass::Plain;
}

TextExportSettings TextExportSettings::fromOptions(ExportFileType kind, const ExportOptions &options)
{
    TextExportSettings settings;
    settings.xml = kind == ExportFileType::XML;
    settings.quote = settings.xml ? "" : "\"";
    settings.fieldDelimiter = settings.xml ? "" : fieldDelimiterForTag(options.fieldDelimiterTag);
    settings.recordDelimiter = recordDelimiterForTag(options.recordDelimiterTag);
    settings.decimalSymbol = options.decimalSymbol;
    settings.includeHeader = !settings.xml && options.includeColumnHeader;
    settings.encoding = options.encoding;
    return settings;
}

void appendQuotedText(std::string &out, std::string_view text, std::string_view quote)
{
    if (quote.empty()) {
        out += text;
        return;
    }
    out += quote;
    std::size_t from = 0;
    for (std::size_t at = text.find(quote); at != std::string_view::npos; at = text.find(quote, from)) {
        out.append(text.substr(from, at - from + quote.size()));
        out += quote;
        from = at + quote.size();
    }
    out.append(text.substr(from));
    out += quote;
}

void appendWithDecimalSymbol(std::string &out, std::string_view text, std::string_view decimalSymbol)
{
    if (decimalSymbol == ".") {
        out += text;
        return;
    }
    for (const char c : text) {
        if (c == '.')
            out += decimalSymbol;
        else
            out += c;
    }
}

void appendTextValue(std::string &out, std::string_view value, TextValueClass valueClass,
                     const TextExportSettings &settings)
{
    switch (valueClass) {
    case TextValueClass::Quoted:
        if (settings.xml)
            out += value;
        else
            appendQuotedText(out, value, settings.quote);
        break;
    case TextValueClass::Decimal:
        appendWithDecimalSymbol(out, value, settings.decimalSymbol);
        break;
    case TextValueClass::Plain:
        out += value;
        break;
    }
}

TextTableOutcome writeTextTable(const TOrbMDBTable &table, const TextExportSettings &settings, ExportSink &sink,
                                const std::atomic<bool> &stop,
                                const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    TextTableOutcome outcome;
    PieceWriter writer(sink);
    if (!writer.open(settings.encoding)) {
        outcome.result = TextTableResult::EncodingUnavailable;
        return outcome;
    }
    const auto stopped = [&stop] { return stop.load(std::memory_order_relaxed); };
    const auto constant = [&writer](std::string_view utf8) {
        auto [bytes, substituted] = writer.encode(utf8);
        return EncodedPiece{std::move(bytes), substituted};
    };

    const auto &columns = table.columns();
    const std::size_t columnCount = columns.size();
    const EncodedPiece fieldDelimiter = constant(settings.fieldDelimiter);
    const EncodedPiece recordDelimiter = constant(settings.recordDelimiter);
    std::vector<TextValueClass> classes;
    std::vector<EncodedPiece> openTags, closeTags;
    for (const auto &column : columns) {
        classes.push_back(textValueClassForDataType(column->dataType()));
        if (settings.xml) {
            openTags.push_back(constant(formatObjects("\t<%@>", {column->name()})));
            closeTags.push_back(constant(formatObjects("</%@>%@", {column->name(), settings.recordDelimiter})));
        }
    }

    // Prologue.
    if (settings.xml) {
        writer.write("<?xml version=\"1.0\"?>");
        writer.write(formatObjects("%@<RECORDS>%@", {settings.recordDelimiter, settings.recordDelimiter}));
    } else if (settings.includeHeader) {
        std::string name;
        for (std::size_t c = 0; c < columnCount; ++c) {
            if (c)
                writer.writeEncoded(fieldDelimiter.bytes, fieldDelimiter.substituted);
            name.clear();
            appendQuotedText(name, columns[c]->name(), "\"");
            writer.write(name);
        }
        writer.writeEncoded(recordDelimiter.bytes, recordDelimiter.substituted);
    }

    // Rows.
    const EncodedPiece recordOpen = constant(formatObjects("<RECORD>%@", {settings.recordDelimiter}));
    const EncodedPiece recordClose = constant("</RECORD>");
    const std::size_t rowCount = table.rowCount();
    std::string value;
    std::vector<CellValue> cells;
    for (std::size_t r = 0; r < rowCount && !stopped(); ++r) {
        table.rowCells(r, cells);
        if (settings.xml)
            writer.writeEncoded(recordOpen.bytes, recordOpen.substituted);
        for (std::size_t c = 0; c < columnCount && !stopped(); ++c) {
            if (settings.xml)
                writer.writeEncoded(openTags[c].bytes, openTags[c].substituted);
            else if (c)
                writer.writeEncoded(fieldDelimiter.bytes, fieldDelimiter.substituted);
            const CellValue &cell = cells[c];
            if (cell.isText()) {
                if (writer.passThrough()) {
                    appendTextValue(writer.directBuffer(), cell.text, classes[c], settings);
                } else {
                    value.clear();
                    appendTextValue(value, cell.text, classes[c], settings);
                    writer.write(value);
                }
            }
            if (settings.xml)
                writer.writeEncoded(closeTags[c].bytes, closeTags[c].substituted);
        }
        if (settings.xml)
            writer.writeEncoded(recordClose.bytes, recordClose.substituted);
        writer.writeEncoded(recordDelimiter.bytes, recordDelimiter.substituted);
        if (writer.failed())
            break;
        if (rowProgress)
            rowProgress(r + 1, rowCount);
    }

    // Epilogue.
    if (settings.xml)
        writer.write(formatObjects("</RECORDS>%@", {settings.recordDelimiter}));
    writer.flush();
    outcome.substitutedCharacters = writer.substituted();
    if (writer.failed())
        outcome.result = TextTableResult::WriteFailed;
    else if (stopped())
        outcome.result = TextTableResult::Terminated;
    return outcome;
}

void exportTextFileThread(ExportJob &job)
{
    const TextExportSettings settings = TextExportSettings::fromOptions(job.kind(), job.options());
    job.forEachTable([&](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) {
        FileSink file;
        if (!file.open(job.outputPathForEntry(entry))) {
            job.logFailure(entry.tableName, kExportReasonUnableToCreateFile);
            return;
        }
        const TextTableOutcome outcome =
            writeTextTable(table, settings, file, job.terminateFlag(),
                           [&job](std::size_t done, std::size_t count) { job.reportRowProgress(done, count); });
        const bool complete = outcome.result == TextTableResult::Completed && !job.terminated();
        const bool closed = complete && file.close();
        if (outcome.result == TextTableResult::Terminated || job.terminated()) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonTerminated);
        } else if (outcome.result == TextTableResult::EncodingUnavailable) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonEncodingUnavailable);
        } else if (outcome.result == TextTableResult::WriteFailed || !closed) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonUnableToWriteFile);
        } else {
            job.addSuccess();
            if (outcome.substitutedCharacters)
                job.logLine(exportWarningLine(entry.tableName, substitutionText(outcome.substitutedCharacters)));
        }
    });
}

} // namespace vellum
