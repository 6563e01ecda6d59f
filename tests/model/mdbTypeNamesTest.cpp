// The value class of every column type name, which decides how each writer puts a cell down.

#include "model/mdbTypeNames.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(mdbTypeNames, ValueClassOfEveryColumnTypeName)
{
    using C = ColumnValueClass;
    const std::pair<const char *, ColumnValueClass> cases[] = {
        {"Text", C::Text},
        {"Memo/Hyperlink", C::Text},
        {"DateTime", C::DateTime},
        {"Date/Time Extended", C::DateTime},
        {"Large Number", C::Number},
        {"Binary", C::Binary},
        {"Replication ID", C::Guid},
        {"Boolean", C::Boolean},
        {"Currency", C::Fraction},
        {"Single", C::Fraction},
        {"Double", C::Fraction},
        {"Integer", C::Number},
        {"Long Integer", C::Number},
        {"Numeric", C::Number},
        {"Byte", C::Other},
        {"OLE", C::Other},
        {"Complex Value auto number", C::Other},
        // Names are compared exactly: other spellings and unknown codes are written as they stand.
        {"text", C::Other},
        {"Long integer", C::Other},
        {"Unknown_0046", C::Other},
        {"", C::Other},
    };
    for (const auto &[name, expected] : cases)
        EXPECT_EQ(columnValueClassForDataType(name), expected) << name;

    // Every name the type codes get has a class of its own (codes 0x0D and 0x0E included), but
    // for the three written as they stand.
    for (int code = 0; code <= 0x14; ++code) {
        const std::string name = mdb_get_colbacktype_string_fromMdbType(code);
        const bool known = name.rfind("Unknown_", 0) != 0;
        const bool asItStands = name == "Byte" || name == "OLE" || name == "Complex Value auto number";
        EXPECT_EQ(columnValueClassForDataType(name) == C::Other, !known || asItStands) << name;
    }
}

} // namespace
} // namespace vellum
