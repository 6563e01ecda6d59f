#include "browser/gridTexts.h"

#include "model/TOrbBlobData.h"
#include "model/TOrbComplexValue.h"
#include "model/TOrbMDBTable.h"
#include "model/hex.h"
#include "model/mdbTypeNames.h"

#include <climits>

namespace vellum {

std::string cellDisplayText(const CellValue &value)
{
    if (value.complex)
        return value.complex->displayText();
    switch (value.kind) {
    case CellValue::Kind::Text:
        return std::string(value.text);
    case CellValue::Kind::Blob:
        return value.blob ? value.blob->cellDescription() : std::string("[NULL]");
    case CellValue::Kind::Null:
        break;
    }
    return "[NULL]";
}

bool columnHoldsBytes(const TOrbMDBColumn &column)
{
    const std::string &type = column.dataType();
    return columnValueClassForDataType(type) == ColumnValueClass::Binary || type.starts_with("Unknown_");
}

std::string cellDisplayText(const CellValue &value, const TOrbMDBColumn &column)
{
    if (!value.isText() || !columnHoldsBytes(column))
        return cellDisplayText(value);
    std::string out(2 + 2 * value.text.size(), '\0');
    out[0] = '0';
    out[1] = 'x';
    toHex(out.data() + 2, out.size() - 2, reinterpret_cast<const std::uint8_t *>(value.text.data()), value.text.size());
    return out;
}

std::string copyField(std::string_view displayText)
{
    if (displayText == "[NON-TEXTUAL DATA]" || displayText == "[NULL]")
        return {};
    std::string out(displayText);
    for (char &c : out)
        if (c == '\n' || c == '\t')
            c = ' ';
    return out;
}

std::string copyTextForRows(const TOrbMDBTable &table, const std::vector<std::uint32_t> &rows,
                            const std::vector<std::size_t> &columns)
{
    std::string out;
    for (const std::uint32_t row : rows) {
        for (const std::size_t column : columns) {
            out += copyField(cellDisplayText(table.cell(row, column), *table.columns()[column]));
            out.push_back('\t');
        }
        if (!out.empty()) {
            out.pop_back();
            out.push_back('\n');
        }
    }
    return out;
}

std::optional<std::size_t> jumpToRowTarget(std::string_view input, std::size_t rowCount)
{
    std::size_t i = 0;
    while (i < input.size() && (input[i] == ' ' || input[i] == '\t' || input[i] == '\n' || input[i] == '\r'))
        ++i;
    bool negative = false;
    if (i < input.size() && (input[i] == '+' || input[i] == '-'))
        negative = input[i++] == '-';
    long long value = 0;
    for (; i < input.size() && input[i] >= '0' && input[i] <= '9'; ++i) {
        value = value * 10 + (input[i] - '0');
        if (value > INT_MAX)
            value = static_cast<long long>(INT_MAX) + 1;
    }
    if (negative)
        value = -value;
    if (value < 1 || static_cast<unsigned long long>(value) > rowCount)
        return std::nullopt;
    return static_cast<std::size_t>(value - 1);
}

} // namespace vellum
