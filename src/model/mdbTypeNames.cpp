#include "model/mdbTypeNames.h"

#include "util/format.h"

namespace vellum {

std::string mdb_get_colbacktype_string_fromMdbType(int typeCode)
{
    switch (typeCode) {
    case 0x01:
        return "Boolean";
    case 0x02:
        return "Byte";
    case 0x03:
        return "Integer";
    case 0x04:
        return "Long Integer";
    case 0x05:
        return "Currency";
    case 0x06:
        return "Single";
    case 0x07:
        return "Double";
    case 0x08:
        return "DateTime";
    case 0x09:
        return "Binary";
    case 0x0A:
        return "Text";
    case 0x0B:
        return "OLE";
    case 0x0C:
        return "Memo/Hyperlink";
    case 0x0F:
        return "Replication ID";
    case 0x10:
        return "Numeric";
    case 0x12:
        return "Complex Value auto number";
    case 0x13:
        return "Large Number";
    case 0x14:
        return "Date/Time Extended";
    default:
        return formatString("Unknown_%04x", static_cast<unsigned>(typeCode) & 0xFFFFu);
    }
}

ColumnValueClass columnValueClassForDataType(std::string_view dataType)
{
    if (dataType == "Text" || dataType == "Memo/Hyperlink")
        return ColumnValueClass::Text;
    if (dataType == "Long Integer" || dataType == "Integer" || dataType == "Numeric" || dataType == "Large Number")
        return ColumnValueClass::Number;
    if (dataType == "Double" || dataType == "Currency" || dataType == "Single")
        return ColumnValueClass::Fraction;
    if (dataType == "DateTime" || dataType == "Date/Time Extended")
        return ColumnValueClass::DateTime;
    if (dataType == "Boolean")
        return ColumnValueClass::Boolean;
    if (dataType == "Replication ID")
        return ColumnValueClass::Guid;
    if (dataType == "Binary")
        return ColumnValueClass::Binary;
    return ColumnValueClass::Other;
}

} // namespace vellum
