#include "model/TOrbMDBColumn.h"

#include "model/mdbTypeNames.h"
#include "util/format.h"
#include "util/localized.h"

#include <cstdlib>

namespace vellum {

void TOrbMDBColumn::setTextAlign(const std::string &propertyText)
{
    switch (std::atoi(propertyText.c_str())) {
    case 1:
        m_textAlign = localized("Left");
        break;
    case 2:
        m_textAlign = localized("Center");
        break;
    case 3:
        m_textAlign = localized("Right");
        break;
    case 4:
        m_textAlign = localized("Distribute");
        break;
    default:
        m_textAlign = localized("General");
        break;
    }
}

std::optional<std::string> TOrbMDBColumn::decimalPlaces() const
{
    if (m_decimalPlaces && *m_decimalPlaces == "255")
        return localized("Auto");
    return m_decimalPlaces;
}

CellAlignment TOrbMDBColumn::textAlignForCell() const
{
    if (!m_textAlign)
        return CellAlignment::Natural;
    if (*m_textAlign == localized("Left"))
        return CellAlignment::Left;
    if (*m_textAlign == localized("Center"))
        return CellAlignment::Center;
    if (*m_textAlign == localized("Right"))
        return CellAlignment::Right;
    if (*m_textAlign == localized("Distribute"))
        return CellAlignment::Justified;
    return CellAlignment::Natural;
}

void TOrbMDBColumn::applyProperty(const std::string &key, const std::string &value)
{
    const auto yesNo = [&] { return localized(value == "yes" ? "YES" : "NO"); };
    if (key == "AllowZeroLength")
        m_allowZeroLength = yesNo();
    else if (key == "UnicodeCompression")
        m_unicodeCompression = yesNo();
    else if (key == "Required")
        m_required = yesNo();
    else if (key == "DecimalPlaces")
        m_decimalPlaces = value;
    else if (key == "DefaultValue")
        m_defaultValue = value;
    else if (key == "TextAlign")
        setTextAlign(value);
    else if (key == "Description")
        m_description = value;
    else if (key == "ResultType") {
        if (value != "0")
            m_resultType = mdb_get_colbacktype_string_fromMdbType(std::atoi(value.c_str()));
    } else if (key == "Expression")
        m_expression = value;
    else if (key == "TextFormat") {
        if (m_dataType == "Memo/Hyperlink") {
            if (value == "0")
                m_textFormat = localized("Plain Text");
            else if (value == "1")
                m_textFormat = localized("Rich Text");
            else
                m_textFormat = localized("Unknown");
        }
    }
}

void getPropertyValues(const char *key, const char *value, TOrbMDBColumn *column)
{
    if (key && value && column)
        column->applyProperty(key, value);
}

void TOrbMDBColumn::informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const
{
    const auto add = [&](const char *label, InfoValue value) {
        labels.emplace_back(label);
        values.push_back(std::move(value));
    };
    const auto addIf = [&](const char *label, const std::optional<std::string> &value) {
        if (value)
            add(label, *value);
    };
    add("Name", m_name);
    add("Type", m_isCalculatedType ? formatObjects(localized("Calculated"), {m_dataType}) : m_dataType);
    addIf("Result Type", m_resultType);
    addIf("Expression", m_expression);
    if (m_fieldSize >= 0)
        add("Size", static_cast<long long>(m_fieldSize));
    if (m_precision >= 0) {
        add("Precision", static_cast<long long>(m_precision));
        add("Scale", static_cast<long long>(m_scale));
    }
    addIf("Allow zero length", m_allowZeroLength);
    addIf("Decimal places", decimalPlaces());
    addIf("Default value", m_defaultValue);
    addIf("Required", m_required);
    addIf("Unicode compression", m_unicodeCompression);
    addIf("Text alignment", m_textAlign);
    addIf("Description", m_description);
    addIf("Text Format", m_textFormat);
}

} // namespace vellum
