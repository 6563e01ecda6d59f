#include "export/SpreadsheetExport.h"

#include "export/ExportJob.h"
#include "export/LosslessCellWriter.h"
#include "export/OutputFile.h"
#include "export/xls/utf16.h"
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
