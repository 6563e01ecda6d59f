#include "export/JsonExport.h"

#include "export/ExportJob.h"
#include "export/ExportRoutines.h"
#include "export/losslessValues.h"
#include "model/CellValue.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"
#include "util/json.h"

#include <vector>

namespace vellum {

namespace {

constexpr std::size_t kFlushBytes = 1 << 20;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Appends a number text as a JSON number when it is one and a double holds it exactly,
/// otherwise as a string, so that no reader rounds it.
void appendExactNumber(std::string &out, std::string_view text)
{
    // The common case first: a short plain decimal has at most 15 digits, which a double holds.
    bool plain = text.size() <= 15 && isJsonNumberText(text);
    for (std::size_t i = 0; plain && i < text.size(); ++i)
        plain = text[i] != 'e' && text[i] != 'E';
    if (plain || (isJsonNumberText(text) && decimalFitsDouble(text)))
        out += text;
    else
        appendJsonString(out, text);
}

/// True when `text` is a cell's date text, "MM/DD/YYYY HH:MM:SS" with an optional fraction of
/// one to seven digits and every field in its range (what parseCellDateTime accepts, without
/// building its parts: this runs for every date of a table).
bool isCellDateLayout(std::string_view text)
{
    constexpr std::string_view kLayout = "00/00/0000 00:00:00";
    if (text.size() < kLayout.size() || text.size() == kLayout.size() + 1 || text.size() > kLayout.size() + 8)
        return false;
    for (std::size_t i = 0; i < kLayout.size(); ++i)
        if (kLayout[i] == '0' ? !isDigit(text[i]) : text[i] != kLayout[i])
            return false;
    if (text.size() > kLayout.size() && text[kLayout.size()] != '.')
        return false;
    for (std::size_t i = kLayout.size() + 1; i < text.size(); ++i)
        if (!isDigit(text[i]))
            return false;
    const auto twoDigits = [text](std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); };
    const int month = twoDigits(0), day = twoDigits(3);
    return month >= 1 && month <= 12 && day >= 1 && day <= 31 && twoDigits(11) <= 23 && twoDigits(14) <= 59 &&
           twoDigits(17) <= 59;
}

/// Appends the ISO 8601 string of a cell's date text, or the text itself when it is no date.
void appendJsonDate(std::string &out, std::string_view text)
{
    if (!isCellDateLayout(text)) {
        appendJsonString(out, text);
        return;
    }
    // "MM/DD/YYYY HH:MM:SS[.f…]" to "YYYY-MM-DDTHH:MM:SS[.f…]".
    out += '"';
    out.append(text.substr(6, 4));
    out += '-';
    out.append(text.substr(0, 2));
    out += '-';
    out.append(text.substr(3, 2));
    out += 'T';
    out.append(text.substr(11));
    out += '"';
}

/// Appends {"base64": "…"} of bytes, with "extension" when one is known.
void appendJsonBytes(std::string &out, const void *data, std::size_t length, std::string_view extension = {})
{
    out += "{\"base64\":\"";
    appendBase64(out, data, length);
    out += '"';
    if (!extension.empty()) {
        out += ",\"extension\":";
        appendJsonString(out, extension);
    }
    out += '}';
}

} // namespace

JsonValueForm jsonValueFormForDataType(std::string_view dataType)
{
    if (dataType == "Text" || dataType == "Memo/Hyperlink" || dataType == "Replication ID")
        return JsonValueForm::Text;
    if (dataType == "Byte" || dataType == "Integer" || dataType == "Long Integer" || dataType == "Large Number" ||
        dataType == "Complex Value auto number")
        return JsonValueForm::Integer;
    if (dataType == "Currency" || dataType == "Numeric")
        return JsonValueForm::Decimal;
    if (dataType == "Single" || dataType == "Double")
        return JsonValueForm::Floating;
    if (dataType == "Boolean")
        return JsonValueForm::Boolean;
    if (dataType == "DateTime" || dataType == "Date/Time Extended")
        return JsonValueForm::DateTime;
    if (dataType == "OLE")
        return JsonValueForm::Ole;
    // Binary, and types this program does not know, whose cells hold the stored bytes.
    return JsonValueForm::Binary;
}

bool isJsonNumberText(std::string_view text)
{
    std::size_t i = 0;
    const std::size_t n = text.size();
    if (i < n && text[i] == '-')
        ++i;
    if (i == n || !isDigit(text[i]))
        return false;
    if (text[i] == '0')
        ++i;
    else
        while (i < n && isDigit(text[i]))
            ++i;
    if (i < n && text[i] == '.') {
        ++i;
        if (i == n || !isDigit(text[i]))
            return false;
        while (i < n && isDigit(text[i]))
            ++i;
    }
    if (i < n && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < n && (text[i] == '+' || text[i] == '-'))
            ++i;
        if (i == n || !isDigit(text[i]))
            return false;
        while (i < n && isDigit(text[i]))
            ++i;
    }
    return i == n;
}

void appendJsonCellValue(std::string &out, const CellValue &cell, JsonValueForm form)
{
    if (cell.isBlob()) {
        const auto &data = cell.blob->data();
        appendJsonBytes(out, data.data(), data.size(), cell.blob->fileExtension());
        return;
    }
    if (!cell.isText()) {
        out += "null";
        return;
    }
    const std::string_view text = cell.text;
    switch (form) {
    case JsonValueForm::Text:
        appendJsonString(out, text);
        break;
    case JsonValueForm::Integer:
    case JsonValueForm::Decimal:
        appendExactNumber(out, text);
        break;
    case JsonValueForm::Floating:
        // Every other text is the shortest that reads back as the same value, already in
        // JSON's number grammar; NaN and the infinities have no JSON number. Parsers read "-0"
        // as the integer 0: "-0.0" keeps the sign.
        if (text == "-0")
            out += "-0.0";
        else if (isJsonNumberText(text))
            out += text;
        else
            appendJsonString(out, text);
        break;
    case JsonValueForm::Boolean:
        if (text == "1")
            out += "true";
        else if (text == "0")
            out += "false";
        else
            appendJsonString(out, text);
        break;
    case JsonValueForm::DateTime:
        appendJsonDate(out, text);
        break;
    case JsonValueForm::Binary:
    case JsonValueForm::Ole:
        // An OLE field whose content was not decoded holds its stored bytes as text.
        appendJsonBytes(out, text.data(), text.size());
        break;
    }
}

JsonValueForm jsonItemFormForValueType(std::string_view valueType)
{
    return valueType.empty() ? JsonValueForm::Text : jsonValueFormForDataType(valueType);
}

void appendJsonComplexValue(std::string &out, const TOrbComplexValue &value, JsonValueForm itemForm)
{
    appendJsonComplexArray(out, value, [itemForm](std::string &json, const std::string &item) {
        // An empty text item stays a text; of any other type it is a missing value.
        if (itemForm == JsonValueForm::Text)
            appendJsonString(json, item);
        else
            appendJsonCellValue(json, CellValue::ofText(item), itemForm);
    });
}

JsonTableResult writeJsonTable(const TOrbMDBTable &table, JsonLayout layout, ExportSink &sink,
                               const std::atomic<bool> &stop,
                               const std::function<void(std::size_t, std::size_t)> &rowProgress)
{
    const auto &columns = table.columns();
    const std::size_t columnCount = columns.size();
    // Each key with its opening: `{"Name":` for the first column, `,"Name":` for the others.
    std::vector<std::string> keys(columnCount);
    std::vector<JsonValueForm> forms;
    std::vector<JsonValueForm> itemForms; // of multi-value columns
    std::vector<bool> complex;
    for (std::size_t c = 0; c < columnCount; ++c) {
        keys[c].push_back(c ? ',' : '{');
        appendJsonString(keys[c], columns[c]->name());
        keys[c] += ':';
        forms.push_back(jsonValueFormForDataType(columns[c]->dataType()));
        const ComplexColumnValues *values = table.complexValues(c);
        complex.push_back(values != nullptr);
        itemForms.push_back(jsonItemFormForValueType(values ? values->valueType() : std::string_view()));
    }

    std::string buffer;
    buffer.reserve(kFlushBytes + (kFlushBytes >> 2));
    bool failed = false;
    const auto flush = [&] {
        if (!buffer.empty() && !failed && !sink.write(buffer))
            failed = true;
        buffer.clear();
    };
    const std::size_t rowCount = table.rowCount();
    std::vector<CellValue> cells;
    std::size_t r = 0;
    for (; r < rowCount && !failed && !stop.load(std::memory_order_relaxed); ++r) {
        table.rowCells(r, cells);
        if (layout == JsonLayout::Array)
            buffer += r ? ",\n" : "[\n";
        for (std::size_t c = 0; c < columnCount; ++c) {
            buffer += keys[c];
            const CellValue &cell = cells[c];
            if (cell.complex)
                appendJsonComplexValue(buffer, *cell.complex, itemForms[c]);
            else if (complex[c])
                buffer += "[]"; // a complex field without values
            else
                appendJsonCellValue(buffer, cell, forms[c]);
        }
        buffer += columnCount ? "}" : "{}";
        if (layout == JsonLayout::Lines)
            buffer += '\n';
        if (buffer.size() >= kFlushBytes)
            flush();
        if (rowProgress)
            rowProgress(r + 1, rowCount);
    }
    if (r < rowCount || stop.load(std::memory_order_relaxed)) {
        flush();
        return failed ? JsonTableResult::WriteFailed : JsonTableResult::Terminated;
    }
    if (layout == JsonLayout::Array)
        buffer += rowCount ? "\n]\n" : "[]\n";
    flush();
    return failed ? JsonTableResult::WriteFailed : JsonTableResult::Completed;
}

void exportJSONThread(ExportJob &job)
{
    const JsonLayout layout = job.kind() == ExportFileType::JSONLines ? JsonLayout::Lines : JsonLayout::Array;
    job.forEachTable([&](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) {
        FileSink file;
        if (!file.open(job.outputPathForEntry(entry))) {
            job.logFailure(entry.tableName, kExportReasonUnableToCreateFile);
            return;
        }
        const JsonTableResult result =
            writeJsonTable(table, layout, file, job.terminateFlag(),
                           [&job](std::size_t done, std::size_t count) { job.reportRowProgress(done, count); });
        if (result == JsonTableResult::Terminated || job.terminated()) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonTerminated);
        } else if (result == JsonTableResult::WriteFailed || !file.close()) {
            file.discard();
            job.logFailure(entry.tableName, kExportReasonUnableToWriteFile);
        } else {
            job.addSuccess();
        }
    });
}

} // namespace vellum
