#include "export/SpreadsheetExport.h"

#include "export/ExportJob.h"
#include "export/OutputFile.h"
#include "export/losslessValues.h"
#include "export/workbookValues.h"
#include "export/xls/utf16.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBTable.h"
#include "model/mdbTypeNames.h"
#include "util/format.h"
#include "util/localized.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <vector>

namespace vellum {

namespace {

/// The localized reason, with "%d" replaced by `number` first and then "%@" by `name` (so a
/// "%" inside the name is never read as a format).
std::string sheetReason(const char *english, const std::string &name, int number = 0)
{
    std::string format = localized(english);
    if (const auto at = format.find("%d"); at != std::string::npos)
        format.replace(at, 2, std::to_string(number));
    return formatObjects(format, {name});
}

void logTableFailure(ExportJob &job, const std::string &tableName, const std::string &localizedReason)
{
    job.logLine(formatObjects("<%@> %@: %@", {tableName, localized("Failed"), localizedReason}));
}

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// What a lossless workbook makes of a column's values.
enum class LosslessForm {
    Text,     ///< text (Text, Memo, Replication ID), cut at the cell limit
    Boolean,  ///< a boolean cell
    Integer,  ///< Byte, Integer, Long Integer: a number, always exact
    Decimal,  ///< Numeric, Large Number: a number when a cell keeps it exactly, else text
    Currency, ///< a number with the currency format when a cell keeps it exactly, else text
    Floating, ///< Single, Double: a number; NaN and the infinities as text
    Date,     ///< Date/Time: a date cell, or ISO text before 1900
    Extended, ///< Date/Time Extended: a date cell with milliseconds, or ISO text with 7 digits
    Bytes,    ///< Binary, OLE, unknown types: base64 text, or a note when it does not fit a cell
    Complex,  ///< attachments, multiple values, version history: their display text
};

LosslessForm losslessFormOf(std::string_view dataType)
{
    if (dataType == "Boolean")
        return LosslessForm::Boolean;
    if (dataType == "Byte" || dataType == "Integer" || dataType == "Long Integer")
        return LosslessForm::Integer;
    if (dataType == "Numeric" || dataType == "Large Number")
        return LosslessForm::Decimal;
    if (dataType == "Currency")
        return LosslessForm::Currency;
    if (dataType == "Single" || dataType == "Double")
        return LosslessForm::Floating;
    if (dataType == "DateTime")
        return LosslessForm::Date;
    if (dataType == "Date/Time Extended")
        return LosslessForm::Extended;
    // A type libmdb does not know ("Unknown_0011") holds its stored bytes, as Binary does.
    if (dataType == "Binary" || dataType == "OLE" || dataType.rfind("Unknown_", 0) == 0)
        return LosslessForm::Bytes;
    if (dataType == "Complex Value auto number")
        return LosslessForm::Complex;
    return LosslessForm::Text;
}

// What the approximations of lossless workbooks are called in the report.
constexpr const char *kTextsCut = "texts cut at the cell limit";
constexpr const char *kDatesBefore1900 = "dates before 1900 written as ISO text";
constexpr const char *kTimesRounded = "times rounded to milliseconds";
constexpr const char *kDecimalsAsText = "numbers with more digits than a cell keeps written as text";
constexpr const char *kNotFinite = "NaN and infinite numbers written as text";
constexpr const char *kBytesTooLong = "binary values too long for a cell replaced by a note";

/// Writes one table's cells in the lossless forms and counts what could only be approximated.
class LosslessCellWriter {
public:
    LosslessCellWriter(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits,
                       const TOrbMDBTable &table)
        : m_job(job), m_writer(writer), m_limits(limits), m_table(table)
    {
        for (const auto &column : table.columns())
            m_forms.push_back(losslessFormOf(column->dataType()));
        m_roundedDigits = "numbers rounded to " + std::to_string(limits.numberDigits) + " significant digits";
    }

    void write(const CellValue &value, std::size_t column, std::uint32_t row)
    {
        const auto col = static_cast<std::uint32_t>(column);
        if (value.isBlob()) {
            writeBytes(value.blob->data().data(), value.blob->data().size(), row, col);
            return;
        }
        if (!value.isText()) {
            m_writer.setBlankForRow(row, col);
            return;
        }
        const std::string_view text = value.text;
        switch (m_forms[column]) {
        case LosslessForm::Text:
            writeText(text, row, col);
            return;
        case LosslessForm::Boolean:
            m_writer.writeBoolean(text != "0", row, col);
            return;
        case LosslessForm::Integer:
            writeNumberOrText(text, NumberStyle::General, row, col);
            return;
        case LosslessForm::Decimal:
            writeNumberOrText(text, NumberStyle::General, row, col);
            return;
        case LosslessForm::Currency:
            writeNumberOrText(text, NumberStyle::Currency, row, col);
            return;
        case LosslessForm::Floating:
            writeFloating(text, row, col);
            return;
        case LosslessForm::Date:
            writeDate(text, false, row, col);
            return;
        case LosslessForm::Extended:
            writeDate(text, true, row, col);
            return;
        case LosslessForm::Bytes:
            writeBytes(text.data(), text.size(), row, col);
            return;
        case LosslessForm::Complex:
            if (value.isComplex()) {
                if (value.complex->displayText().empty())
                    m_writer.setBlankForRow(row, col);
                else
                    writeText(value.complex->displayText(), row, col);
            } else {
                writeNumberOrText(text, NumberStyle::General, row, col);
            }
            return;
        }
    }

private:
    void count(const char *what) { m_job.countApproximation(m_table.name(), what); }

    void writeText(std::string_view text, std::uint32_t row, std::uint32_t col)
    {
        // A text never has more UTF-16 units than UTF-8 bytes, so short ones need no count.
        if (text.size() > m_limits.maxTextUnits && utf16Length(text) > m_limits.maxTextUnits) {
            text = text.substr(0, utf8PrefixWithinUnits(text, m_limits.maxTextUnits));
            count(kTextsCut);
        }
        m_writer.writeString(text, row, col);
    }

    /// A decimal text as a number when a cell keeps it exactly, else as the text itself.
    void writeNumberOrText(std::string_view text, NumberStyle style, std::uint32_t row, std::uint32_t col)
    {
        double number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size()) {
            m_writer.writeString(text, row, col); // not a decimal: the reader's text as it is
            return;
        }
        if (!decimalFitsDouble(text) || significantDigits(number) > m_limits.numberDigits) {
            m_writer.writeString(text, row, col);
            count(kDecimalsAsText);
            return;
        }
        m_writer.writeStyledNumber(number, style, row, col);
    }

    void writeFloating(std::string_view text, std::uint32_t row, std::uint32_t col)
    {
        if (text == "NaN" || text == "Infinity" || text == "-Infinity") {
            m_writer.writeString(text, row, col);
            count(kNotFinite);
            return;
        }
        double number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size()) {
            m_writer.writeString(text, row, col);
            return;
        }
        if (significantDigits(number) > m_limits.numberDigits)
            count(m_roundedDigits.c_str());
        m_writer.writeStyledNumber(number, NumberStyle::General, row, col);
    }

    /// A date cell; an extended date (which has a fraction of a second) shows milliseconds.
    void writeDate(std::string_view text, bool extended, std::uint32_t row, std::uint32_t col)
    {
        const auto date = parseCellDateTime(text);
        if (!date) {
            m_writer.writeString(text, row, col);
            return;
        }
        const auto serial = excelSerialDate(*date);
        if (!serial) {
            // ISO text; an extended date keeps all seven digits of its fraction.
            std::string iso = *isoDateTime(text, 'T');
            if (extended)
                iso.append(date->fraction.empty() ? "." : "").append(7 - date->fraction.size(), '0');
            m_writer.writeString(iso, row, col);
            count(kDatesBefore1900);
            return;
        }
        if (fractionBeyondMilliseconds(*date))
            count(kTimesRounded);
        m_writer.writeStyledNumber(*serial, extended ? NumberStyle::DateTimeMilliseconds : NumberStyle::DateTime, row,
                                   col);
    }

    void writeBytes(const void *data, std::size_t length, std::uint32_t row, std::uint32_t col)
    {
        if (length == 0) {
            m_writer.setBlankForRow(row, col);
            return;
        }
        if ((length + 2) / 3 * 4 > m_limits.maxTextUnits) {
            m_writer.writeString("[" + std::to_string(length) + " bytes, too long for a cell]", row, col);
            count(kBytesTooLong);
            return;
        }
        m_base64.clear();
        appendBase64(m_base64, data, length);
        m_writer.writeString(m_base64, row, col);
    }

    ExportJob &m_job;
    SpreadsheetWriter &m_writer;
    const SpreadsheetLimits &m_limits;
    const TOrbMDBTable &m_table;
    std::vector<LosslessForm> m_forms;
    std::string m_roundedDigits;
    std::string m_base64;
};

/// Writes a table's rows from sheet row `row` on, opening continuation sheets as needed.
void writeRows(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits, const TOrbMDBTable &table,
               std::uint32_t row)
{
    const auto &columns = table.columns();
    std::vector<bool> numeric(columns.size());
    for (std::size_t c = 0; c < columns.size(); ++c)
        numeric[c] = isSpreadsheetNumberType(columns[c]->dataType());
    const std::size_t rowCount = table.rowCount();
    int sheetNumber = 2;
    std::vector<CellValue> cells;
    const bool lossless = job.options().lossless;
    LosslessCellWriter losslessCells(job, writer, limits, table);
    for (std::size_t r = 0; r < rowCount && !job.terminated(); ++r) {
        if (row == limits.rowsPerSheet) {
            const std::string name = table.name() + "(" + std::to_string(sheetNumber) + ")"; // "%@(%d)"
            if (!writer.addSheet(name)) {
                logTableFailure(job, table.name(),
                                sheetReason("Unable to create spreadsheet %@(%d).", table.name(), sheetNumber));
                return;
            }
            ++sheetNumber;
            row = 0;
        }
        table.rowCells(r, cells);
        if (lossless) {
            for (std::size_t c = 0; c < columns.size(); ++c)
                losslessCells.write(cells[c], c, row);
            ++row;
            job.reportRowProgress(r + 1, rowCount);
            continue;
        }
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const CellValue &value = cells[c];
            const auto col = static_cast<std::uint32_t>(c);
            if (!value.isText())
                writer.setBlankForRow(row, col);
            else if (numeric[c])
                writer.writeNumber(leadingNumberValue(value.text), row, col);
            else
                writer.writeString(value.text, row, col);
        }
        ++row;
        job.reportRowProgress(r + 1, rowCount);
    }
}

} // namespace

const char *numberFormatCode(NumberStyle style)
{
    switch (style) {
    case NumberStyle::General:
        return "";
    case NumberStyle::DateTime:
        return "yyyy-mm-dd hh:mm:ss";
    case NumberStyle::DateTimeMilliseconds:
        return "yyyy-mm-dd hh:mm:ss.000";
    case NumberStyle::Currency:
        return "#,##0.00##";
    }
    return "";
}

bool isSpreadsheetNumberType(std::string_view dataType)
{
    const ColumnValueClass valueClass = columnValueClassForDataType(dataType);
    return valueClass == ColumnValueClass::Number || valueClass == ColumnValueClass::Fraction;
}

double leadingNumberValue(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && isSpace(text[i]))
        ++i;
    const std::size_t start = i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        negative = text[i++] == '-';
    const std::size_t mantissa = i;
    std::size_t digits = 0;
    while (i < text.size() && isDigit(text[i]))
        ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && isDigit(text[i]))
            ++i, ++digits;
    }
    if (digits == 0)
        return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        std::size_t e = i + 1;
        if (e < text.size() && (text[e] == '+' || text[e] == '-'))
            ++e;
        if (e < text.size() && isDigit(text[e])) {
            while (e < text.size() && isDigit(text[e]))
                ++e;
            i = e;
        }
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data() + mantissa, text.data() + i, value);
    if (error == std::errc::result_out_of_range) {
        // Beyond the range of a double. Workbooks hold no infinity, so a text just above the
        // largest double (libmdb prints Double's maximum as 1.797693134862316e+308) is written
        // as that largest double; a text below the smallest gives strtod's tiny value or 0.
        static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
        const std::string digitsOnly(text.substr(start, i - start));
        const double parsed = strtod_l(digitsOnly.c_str(), nullptr, cLocale);
        if (std::isinf(parsed))
            return std::copysign(std::numeric_limits<double>::max(), parsed);
        return parsed;
    }
    (void)end;
    return negative ? -value : value;
}

std::optional<std::size_t> columnExceedingTextLength(const TOrbMDBTable &table, std::size_t maxUnits)
{
    const std::size_t columnCount = table.columns().size();
    std::vector<CellValue> cells;
    for (std::size_t r = 0; r < table.rowCount(); ++r) {
        table.rowCells(r, cells);
        for (std::size_t c = 0; c < columnCount; ++c) {
            const CellValue &value = cells[c];
            // A text never has more UTF-16 units than UTF-8 bytes, so short ones need no count.
            if (value.isText() && value.text.size() > maxUnits && utf16Length(value.text) > maxUnits)
                return c;
        }
    }
    return std::nullopt;
}

void exportSpreadsheetTables(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits)
{
    const bool singleFile = job.options().exportSingleFile;
    if (singleFile) {
        if (!OutputFile::canWrite(job.exportPath())) {
            job.logLine(localized(kExportReasonUnableToCreateFile));
            return;
        }
        writer.setTargetPath(job.exportPath());
    }

    // In one workbook, a table is exported only once the workbook is saved.
    int savedWithWorkbook = 0;
    job.forEachTable([&](std::size_t, const ExportEntry &entry, const TOrbMDBTable &table) {
        const std::string &name = table.name();
        std::string path;
        if (!singleFile) {
            path = job.outputPathForEntry(entry);
            if (!OutputFile::canWrite(path)) {
                job.logFailure(name, kExportReasonUnableToCreateFile);
                return;
            }
            writer.setTargetPath(path);
        }
        if (!writer.addSheet(name)) {
            logTableFailure(job, name, sheetReason("Unable to create spreadsheet %@.", name));
            return;
        }
        // Lossless workbooks cut a text that is too long (and count it) instead.
        const auto column =
            job.options().lossless ? std::nullopt : columnExceedingTextLength(table, limits.maxTextUnits);
        if (column) {
            logTableFailure(job, name,
                            sheetReason("Field %@ exceeded length limit.", table.columns()[*column]->name()));
            if (!singleFile)
                writer.deleteWorkBook(); // its only sheet is the refused table's
            return;
        }

        std::uint32_t row = 0;
        if (job.options().includeColumnHeader) {
            const auto &columns = table.columns();
            for (std::size_t c = 0; c < columns.size(); ++c)
                writer.writeString(columns[c]->name(), 0, static_cast<std::uint32_t>(c));
            row = 1;
        }
        writeRows(job, writer, limits, table, row);

        if (job.terminated()) {
            // A workbook of its own is dropped; one workbook is saved below with the sheets so far.
            if (!singleFile)
                writer.deleteWorkBook();
            job.logFailure(name, kExportReasonTerminated);
            return;
        }
        if (!singleFile && !writer.dumpToFile(path)) {
            job.logFailure(name, kExportReasonUnableToWriteFile);
            return;
        }
        if (singleFile)
            ++savedWithWorkbook;
        else
            job.addSuccess();
    });

    // Also after Stop: a stopped single-file export keeps the sheets written so far.
    if (!singleFile)
        return;
    if (!writer.dumpToFile(job.exportPath())) {
        job.logLine(localized(kExportReasonUnableToWriteFile));
        return;
    }
    for (int i = 0; i < savedWithWorkbook; ++i)
        job.addSuccess();
}

} // namespace vellum
