#include "export/TextFileExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/losslessValues.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"
#include "model/mdbTypeNames.h"
#include "util/format.h"
#include "util/localized.h"
#include "util/stringEncodings.h"

#include <cstring>
#include <string>
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

    /// A piece of XML in UTF-8, with every character the encoding cannot hold written as a
    /// character reference.
    void writeXml(std::string_view utf8)
    {
        appendXml(utf8, m_buffer);
        flushIfFull();
    }
    /// Converts a constant piece of XML once (characters the encoding cannot hold as references).
    std::string encodeXml(std::string_view utf8)
    {
        std::string bytes;
        appendXml(utf8, bytes);
        return bytes;
    }

    /// Converts a constant piece once.
    std::pair<std::string, std::size_t> encode(std::string_view utf8)
    {
        std::string bytes;
        const std::size_t substituted = m_encoder.append(utf8, bytes);
        return {std::move(bytes), substituted};
    }

private:
    void appendXml(std::string_view utf8, std::string &out)
    {
        if (m_passThrough) {
            out += utf8;
            return;
        }
        const std::size_t size = out.size();
        if (m_encoder.append(utf8, out) == 0)
            return;
        // Some character is not in the encoding: convert character by character.
        out.resize(size);
        for (std::size_t at = 0; at < utf8.size();) {
            const std::size_t start = at;
            const long codePoint = nextUtf8CodePoint(utf8, at);
            const std::size_t mark = out.size();
            if (codePoint >= 0 && m_encoder.append(utf8.substr(start, at - start), out) == 0)
                continue;
            out.resize(mark);
            m_encoder.append("&#" + std::to_string(codePoint >= 0 ? codePoint : 0xFFFD) + ";", out);
        }
    }

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

/// How the report names values that held characters the encoding cannot represent.
constexpr const char *kSubstitutedApproximation =
    "texts with characters the chosen encoding cannot represent, written as \"?\"";

/// How the report names complex cells written as their id.
constexpr const char *kComplexIdApproximation = "complex values that could not be read, written as their stored id";

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
    settings.lossless = options.lossless;
    if (!settings.xml) {
        settings.nullMarker = options.nullMarker;
        settings.bytes = options.binaryEncodingTag == kBinaryEncodingHex ? LosslessBytes::Hex : LosslessBytes::Base64;
        settings.byteOrderMark = options.byteOrderMark;
        settings.quoteAllFields = options.quoteAllFields;
    }
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

namespace {

/// The encoded pieces of one column of lossless XML: the start of its open tag ("\t<NAME",
/// with the original name as an attribute when the element name differs), its close tag with
/// the line end, and the end of an empty NULL element.
struct XmlColumnTags {
    EncodedPiece openStart;
    EncodedPiece close;
    EncodedPiece empty;
};

/// Writes one lossless delimited field (not the delimiter).
void writeLosslessField(PieceWriter &writer, const CellValue &cell, LosslessTextForm form,
                        const TextExportSettings &settings, const LosslessValueStyle &style, std::string &value,
                        std::string &field)
{
    if (cell.isNull()) {
        if (!settings.nullMarker.empty())
            writer.write(settings.nullMarker);
        return;
    }
    value.clear();
    appendLosslessValue(value, cell, form, style);
    const bool quoted = settings.quoteAllFields || isQuotedLosslessForm(form) || cell.isComplex() ||
                        delimitedFieldNeedsQuotes(value, settings.fieldDelimiter, settings.quote, settings.nullMarker);
    if (!quoted) {
        writer.write(value);
        return;
    }
    field.clear();
    appendQuotedText(field, value, settings.quote);
    writer.write(field);
}

/// Writes one classic delimited field (not the delimiter).
void writeClassicField(PieceWriter &writer, const CellValue &cell, TextValueClass valueClass,
                       const TextExportSettings &settings, std::string &value, std::string &field)
{
    if (cell.isNull()) {
        if (!settings.nullMarker.empty())
            writer.write(settings.nullMarker);
        return;
    }
    if (!cell.isText())
        return;
    if (settings.quoteAllFields && valueClass != TextValueClass::Quoted) {
        value.clear();
        appendTextValue(value, cell.text, valueClass, settings);
        field.clear();
        appendQuotedText(field, value, settings.quote);
        writer.write(field);
    } else if (writer.passThrough()) {
        appendTextValue(writer.directBuffer(), cell.text, valueClass, settings);
    } else {
        value.clear();
        appendTextValue(value, cell.text, valueClass, settings);
        writer.write(value);
    }
}

/// Appends an element `name` with `attributes` holding one text: escaped, or base64 of its
/// bytes with encoding="base64" when XML cannot hold it.
void appendXmlItem(std::string &out, std::string_view name, std::string_view attributes, std::string_view text)
{
    out += '<';
    out += name;
    out += attributes;
    if (isXmlText(text)) {
        out += '>';
        appendXmlText(out, text);
    } else {
        out += " encoding=\"base64\">";
        appendBase64(out, text.data(), text.size());
    }
    out += "</";
    out += name;
    out += '>';
}

/// The elements of a complex value inside its column's element: <value>, <attachment> with
/// name and type attributes and base64 content, <version> with an ISO date attribute.
void appendXmlComplex(std::string &out, const TOrbComplexValue &complex)
{
    switch (complex.kind()) {
    case ComplexKind::MultiValue:
        for (const std::string &item : complex.values())
            appendXmlItem(out, "value", "", item);
        break;
    case ComplexKind::Attachment:
        for (const auto &attachment : complex.attachments()) {
            out += "<attachment name=\"";
            appendXmlAttribute(out, attachment.fileName);
            out += "\" type=\"";
            appendXmlAttribute(out, attachment.fileType);
            out += "\" encoding=\"base64\">";
            appendBase64(out, attachment.data->data().data(), attachment.data->data().size());
            out += "</attachment>";
        }
        break;
    case ComplexKind::VersionHistory:
        for (const auto &version : complex.versions()) {
            std::string attributes = " date=\"";
            const auto iso = isoDateTime(version.date, 'T');
            appendXmlAttribute(attributes, iso ? std::string_view(*iso) : std::string_view(version.date));
            attributes += '"';
            appendXmlItem(out, "version", attributes, version.value);
        }
        break;
    }
}

} // namespace

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
    const bool losslessXml = settings.xml && settings.lossless;
    const StringEncoding *encoding = stringEncodingForCode(settings.encoding);
    const std::string iconvName = encoding ? encoding->iconvName : "UTF-8";
    // A name cannot use character references: outside the Unicode encodings names keep to ASCII.
    const bool unicodeTarget = iconvName.rfind("UTF", 0) == 0;
    const auto xmlConstant = [&writer](std::string_view utf8) { return EncodedPiece{writer.encodeXml(utf8), 0}; };

    const auto &columns = table.columns();
    const std::size_t columnCount = columns.size();
    const EncodedPiece fieldDelimiter = constant(settings.fieldDelimiter);
    const EncodedPiece recordDelimiter = constant(settings.recordDelimiter);
    std::vector<TextValueClass> classes;
    std::vector<LosslessTextForm> forms;
    std::vector<EncodedPiece> openTags, closeTags;
    std::vector<XmlColumnTags> xmlTags;
    for (const auto &column : columns) {
        classes.push_back(textValueClassForDataType(column->dataType()));
        forms.push_back(losslessTextFormForDataType(column->dataType()));
        if (losslessXml) {
            const std::string element = xmlElementName(column->name(), !unicodeTarget);
            std::string openStart = "\t<" + element;
            if (element != column->name()) {
                openStart += " name=\"";
                appendXmlAttribute(openStart, column->name());
                openStart += '"';
            }
            xmlTags.push_back({xmlConstant(openStart), xmlConstant("</" + element + ">" + settings.recordDelimiter),
                               xmlConstant(" null=\"true\"/>" + settings.recordDelimiter)});
        } else if (settings.xml) {
            openTags.push_back(constant(formatObjects("\t<%@>", {column->name()})));
            closeTags.push_back(constant(formatObjects("</%@>%@", {column->name(), settings.recordDelimiter})));
        }
    }

    // Prologue.
    if (!settings.xml && settings.byteOrderMark && settings.encoding == kStringEncodingUTF8)
        writer.writeEncoded("\xEF\xBB\xBF", 0);
    if (losslessXml) {
        std::string prologue = "<?xml version=\"1.0\" encoding=\"" + xmlEncodingName(iconvName) + "\"?>" +
                               settings.recordDelimiter + "<RECORDS table=\"";
        appendXmlAttribute(prologue, table.name());
        prologue += "\">" + settings.recordDelimiter;
        writer.writeEncoded(writer.encodeXml(prologue), 0);
    } else if (settings.xml) {
        writer.write("<?xml version=\"1.0\"?>");
        writer.write(formatObjects("%@<RECORDS>%@", {settings.recordDelimiter, settings.recordDelimiter}));
    } else if (settings.includeHeader) {
        std::string name;
        for (std::size_t c = 0; c < columnCount; ++c) {
            if (c)
                writer.writeEncoded(fieldDelimiter.bytes, fieldDelimiter.substituted);
            name.clear();
            appendQuotedText(name, columns[c]->name(), "\"");
            const std::size_t before = writer.substituted();
            writer.write(name);
            outcome.substitutedFields += writer.substituted() != before ? 1 : 0;
        }
        writer.writeEncoded(recordDelimiter.bytes, recordDelimiter.substituted);
    }

    // Rows.
    const EncodedPiece recordOpen = constant(formatObjects("<RECORD>%@", {settings.recordDelimiter}));
    const EncodedPiece recordClose = constant("</RECORD>");
    // An empty decimal symbol would join the integer and fraction digits: lossless keeps ".".
    const LosslessValueStyle style{settings.decimalSymbol.empty() ? "." : settings.decimalSymbol, settings.bytes};
    const std::size_t rowCount = table.rowCount();
    std::string value, field;
    std::vector<CellValue> cells;
    for (std::size_t r = 0; r < rowCount && !stopped(); ++r) {
        table.rowCells(r, cells);
        if (settings.xml)
            writer.writeEncoded(recordOpen.bytes, recordOpen.substituted);
        for (std::size_t c = 0; c < columnCount && !stopped(); ++c) {
            const CellValue &cell = cells[c];
            const std::size_t before = writer.substituted();
            if (settings.lossless && forms[c] == LosslessTextForm::Complex && cell.isText() && !cell.isComplex())
                ++outcome.complexIdsOnly;
            if (losslessXml) {
                const XmlColumnTags &tags = xmlTags[c];
                writer.writeEncoded(tags.openStart.bytes, 0);
                if (cell.isNull()) {
                    writer.writeEncoded(tags.empty.bytes, 0);
                    continue;
                }
                value.clear();
                if (cell.isComplex()) {
                    value += '>';
                    appendXmlComplex(value, *cell.complex);
                } else if (isBytesValue(cell, forms[c])) {
                    const std::string_view bytes = cellBytes(cell);
                    value += " encoding=\"base64\">";
                    appendBase64(value, bytes.data(), bytes.size());
                } else {
                    field.clear();
                    appendLosslessValue(field, cell, forms[c], style);
                    if (isXmlText(field)) {
                        value += '>';
                        appendXmlText(value, field);
                    } else {
                        value += " encoding=\"base64\">";
                        appendBase64(value, field.data(), field.size());
                    }
                }
                writer.writeXml(value);
                writer.writeEncoded(tags.close.bytes, 0);
                continue;
            }
            if (settings.xml)
                writer.writeEncoded(openTags[c].bytes, openTags[c].substituted);
            else if (c)
                writer.writeEncoded(fieldDelimiter.bytes, fieldDelimiter.substituted);
            if (settings.lossless)
                writeLosslessField(writer, cell, forms[c], settings, style, value, field);
            else
                writeClassicField(writer, cell, classes[c], settings, value, field);
            if (settings.xml)
                writer.writeEncoded(closeTags[c].bytes, closeTags[c].substituted);
            outcome.substitutedFields += writer.substituted() != before ? 1 : 0;
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
            job.logFailure(entry.tableName, kExportReasonUnableToCreateFile, file.errorText());
            return;
        }
        const TextTableOutcome outcome =
            writeTextTable(table, settings, file, job.terminateFlag(),
                           [&job](std::size_t done, std::size_t count) { job.reportRowProgress(done, count); });
        const bool complete = outcome.result == TextTableResult::Completed && !job.terminated();
        const bool closed = complete && file.close();
        // A stop that comes after the file was put in place stops nothing of this table.
        if (!closed && (outcome.result == TextTableResult::Terminated || job.terminated())) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonTerminated);
        } else if (outcome.result == TextTableResult::EncodingUnavailable) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonEncodingUnavailable);
        } else if (outcome.result == TextTableResult::WriteFailed || !closed) {
            const std::string why = file.errorText();
            file.discard();
            job.logFailure(entry.tableName, kExportReasonUnableToWriteFile, why);
        } else {
            job.addSuccess();
            if (outcome.complexIdsOnly)
                job.countApproximation(entry.tableName, kComplexIdApproximation, outcome.complexIdsOnly);
            if (settings.lossless && outcome.substitutedFields)
                job.countApproximation(entry.tableName, kSubstitutedApproximation, outcome.substitutedFields);
            else if (!settings.lossless && outcome.substitutedCharacters)
                job.logLine(exportWarningLine(entry.tableName, substitutionText(outcome.substitutedCharacters)));
        }
    });
}

} // namespace vellum
