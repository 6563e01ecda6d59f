#pragma once

#include <string>
#include <string_view>

namespace vellum {

/// Names a libmdb column type code with the names libmdb's default back end uses ("Boolean",
/// "Long Integer", "Memo/Hyperlink", …; codes above 0x10 as "Unknown_%04x"). Safe for every
/// code, including those on which libmdb's own lookup crashes (0x00, 0x0D, 0x0E).
std::string mdb_get_colbacktype_string_fromMdbType(int typeCode);

/// What the writers do with the cell texts of a column type: each class is written alike by
/// every export (text, SQL, SQLite, workbooks).
enum class ColumnValueClass {
    Text,     ///< "Text", "Memo/Hyperlink": quoted text
    DateTime, ///< "DateTime", "Date/Time Extended": month-first date text, quoted
    Binary,   ///< "Binary": the bytes as stored, quoted
    Guid,     ///< "Replication ID": a "{…}" GUID text
    Boolean,  ///< "Boolean"
    Fraction, ///< "Currency", "Single", "Double": numbers whose "." becomes the decimal symbol
    Number,   ///< "Integer", "Long Integer", "Numeric", "Large Number": numbers that workbooks store as numbers
    Other,    ///< "Byte", "OLE", "Complex Value auto number" and any other name: as it stands
};

/// The value class of a column type name (a column's `dataType`).
ColumnValueClass columnValueClassForDataType(std::string_view dataType);

/// True for the classes whose values text files and SQL scripts put between quotes (Text,
/// DateTime, Binary).
constexpr bool isQuotedValueClass(ColumnValueClass valueClass)
{
    return valueClass == ColumnValueClass::Text || valueClass == ColumnValueClass::DateTime ||
           valueClass == ColumnValueClass::Binary;
}

} // namespace vellum
