#pragma once

#include "model/TOrbMDBObject.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vellum {

class TOrbMDBTable;

/// How a grid cell aligns a column's text (the Access TextAlign property).
enum class CellAlignment { Left = 0, Right = 1, Center = 2, Justified = 3, Natural = 4 };

/// One column of a loaded table: name, type name, size or precision, and the Access field
/// properties shown in the information pane and used by the exporters. Absent properties are
/// std::nullopt.
class TOrbMDBColumn : public TOrbMDBObject {
public:
    TOrbMDBTable *table() const { return m_table; }
    void setTable(TOrbMDBTable *table) { m_table = table; }

    const std::string &dataType() const { return m_dataType; }
    void setDataType(std::string type) { m_dataType = std::move(type); }
    int fieldSize() const { return m_fieldSize; }
    void setFieldSize(int size) { m_fieldSize = size; }
    int precision() const { return m_precision; }
    void setPrecision(int precision) { m_precision = precision; }
    int scale() const { return m_scale; }
    void setScale(int scale) { m_scale = scale; }

    const std::optional<std::string> &allowZeroLength() const { return m_allowZeroLength; }
    void setAllowZeroLength(std::optional<std::string> v) { m_allowZeroLength = std::move(v); }
    const std::optional<std::string> &unicodeCompression() const { return m_unicodeCompression; }
    void setUnicodeCompression(std::optional<std::string> v) { m_unicodeCompression = std::move(v); }
    const std::optional<std::string> &required() const { return m_required; }
    void setRequired(std::optional<std::string> v) { m_required = std::move(v); }
    const std::optional<std::string> &defaultValue() const { return m_defaultValue; }
    void setDefaultValue(std::optional<std::string> v) { m_defaultValue = std::move(v); }
    /// The column's Description property (not a debugging text).
    const std::optional<std::string> &description() const { return m_description; }
    void setDescription(std::optional<std::string> v) { m_description = std::move(v); }
    const std::optional<std::string> &resultType() const { return m_resultType; }
    void setResultType(std::optional<std::string> v) { m_resultType = std::move(v); }
    const std::optional<std::string> &expression() const { return m_expression; }
    void setExpression(std::optional<std::string> v) { m_expression = std::move(v); }
    const std::optional<std::string> &textFormat() const { return m_textFormat; }
    void setTextFormat(std::optional<std::string> v) { m_textFormat = std::move(v); }
    const std::optional<std::string> &textAlign() const { return m_textAlign; }
    /// Takes the property's text, reads it as an integer and stores the alignment's name.
    void setTextAlign(const std::string &propertyText);
    /// Stores an alignment name as it stands (used when a model is rebuilt from its stored form).
    void setTextAlignName(std::optional<std::string> v) { m_textAlign = std::move(v); }
    /// "Auto" for a stored 255, else the stored text.
    std::optional<std::string> decimalPlaces() const;
    const std::optional<std::string> &storedDecimalPlaces() const { return m_decimalPlaces; }
    void setDecimalPlaces(std::optional<std::string> v) { m_decimalPlaces = std::move(v); }

    bool isPrimaryKey() const { return m_isPrimaryKey; }
    void setIsPrimaryKey(bool v) { m_isPrimaryKey = v; }
    bool isHyperlink() const { return m_isHyperlink; }
    void setIsHyperlink(bool v) { m_isHyperlink = v; }
    bool isCalculatedType() const { return m_isCalculatedType; }
    void setIsCalculatedType(bool v) { m_isCalculatedType = v; }

    /// The grid's sort direction for this column; kept here, unused by the model.
    std::int64_t sortOrder() const { return m_sortOrder; }
    void setSortOrder(std::int64_t order) { m_sortOrder = order; }

    CellAlignment textAlignForCell() const;

    /// Maps one Access property (key, value text) onto this column.
    void applyProperty(const std::string &key, const std::string &value);

protected:
    void informationRows(std::vector<std::string> &labels, std::vector<InfoValue> &values) const override;

private:
    TOrbMDBTable *m_table = nullptr;
    std::string m_dataType;
    int m_fieldSize = -1;
    int m_precision = -1;
    int m_scale = -1;
    std::optional<std::string> m_allowZeroLength;
    std::optional<std::string> m_unicodeCompression;
    std::optional<std::string> m_required;
    std::optional<std::string> m_defaultValue;
    std::optional<std::string> m_description;
    std::optional<std::string> m_resultType;
    std::optional<std::string> m_expression;
    std::optional<std::string> m_textFormat;
    std::optional<std::string> m_textAlign;
    std::optional<std::string> m_decimalPlaces;
    bool m_isPrimaryKey = false;
    bool m_isHyperlink = false;
    bool m_isCalculatedType = false;
    std::int64_t m_sortOrder = 0;
};

/// The per-property callback of column building: key, value text, column.
void getPropertyValues(const char *key, const char *value, TOrbMDBColumn *column);

} // namespace vellum
