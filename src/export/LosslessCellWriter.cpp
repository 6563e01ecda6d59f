#include "export/LosslessCellWriter.h"

#include "export/ExportJob.h"
#include "export/losslessValues.h"
#include "export/workbookValues.h"
#include "export/xls/utf16.h"
#include "model/CellValue.h"
#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBColumn.h"
#include "model/TOrbMDBTable.h"

#include <charconv>

namespace vellum {

namespace {

// What the approximations of lossless workbooks are called in the report.
constexpr const char *kTextsCut = "texts cut at the cell limit";
constexpr const char *kDatesBefore1900 = "dates before 1900 written as ISO text";
constexpr const char *kTimesRounded = "times rounded to milliseconds";
constexpr const char *kDecimalsAsText = "numbers with more digits than a cell keeps written as text";
constexpr const char *kNotFinite = "NaN and infinite numbers written as text";
constexpr const char *kBytesTooLong = "binary values too long for a cell replaced by a note";

/// The whole text as a double; false when it is not a decimal number.
bool parseWholeNumber(std::string_view text, double &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

} // namespace

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

LosslessCellWriter::LosslessCellWriter(ExportJob &job, SpreadsheetWriter &writer, const SpreadsheetLimits &limits,
                                       const TOrbMDBTable &table)
    : m_job(job), m_writer(writer), m_limits(limits), m_table(table)
{
    for (const auto &column : table.columns())
        m_forms.push_back(losslessFormOf(column->dataType()));
    m_roundedDigits = "numbers rounded to " + std::to_string(limits.numberDigits) + " significant digits";
}

void LosslessCellWriter::write(const CellValue &value, std::size_t column, std::uint32_t row)
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
        // The cell's id when the column's values were not read; else the values as the grid
        // shows them, nothing when there are none.
        if (!value.isComplex())
            writeNumberOrText(text, NumberStyle::General, row, col);
        else if (value.complex->displayText().empty())
            m_writer.setBlankForRow(row, col);
        else
            writeText(value.complex->displayText(), row, col);
        return;
    }
}

void LosslessCellWriter::count(const char *what)
{
    m_job.countApproximation(m_table.name(), what);
}

void LosslessCellWriter::writeText(std::string_view text, std::uint32_t row, std::uint32_t col)
{
    // A text never has more UTF-16 units than UTF-8 bytes, so short ones need no count.
    if (text.size() > m_limits.maxTextUnits && utf16Length(text) > m_limits.maxTextUnits) {
        text = text.substr(0, utf8PrefixWithinUnits(text, m_limits.maxTextUnits));
        count(kTextsCut);
    }
    m_writer.writeString(text, row, col);
}

void LosslessCellWriter::writeNumberOrText(std::string_view text, NumberStyle style, std::uint32_t row,
                                           std::uint32_t col)
{
    double number = 0;
    if (!parseWholeNumber(text, number)) {
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

void LosslessCellWriter::writeFloating(std::string_view text, std::uint32_t row, std::uint32_t col)
{
    if (text == "NaN" || text == "Infinity" || text == "-Infinity") {
        m_writer.writeString(text, row, col);
        count(kNotFinite);
        return;
    }
    double number = 0;
    if (!parseWholeNumber(text, number)) {
        m_writer.writeString(text, row, col);
        return;
    }
    if (significantDigits(number) > m_limits.numberDigits)
        count(m_roundedDigits.c_str());
    m_writer.writeStyledNumber(number, NumberStyle::General, row, col);
}

void LosslessCellWriter::writeDate(std::string_view text, bool extended, std::uint32_t row, std::uint32_t col)
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
    m_writer.writeStyledNumber(*serial, extended ? NumberStyle::DateTimeMilliseconds : NumberStyle::DateTime, row, col);
}

void LosslessCellWriter::writeBytes(const void *data, std::size_t length, std::uint32_t row, std::uint32_t col)
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

} // namespace vellum
