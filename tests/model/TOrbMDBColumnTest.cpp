#include "support/Fixtures.h"

#include "model/TOrbMDBColumn.h"
#include "model/mdbTypeNames.h"

#include <gtest/gtest.h>

#include <map>

namespace vellum {
namespace {

using test::fixturePath;

std::string valueText(const ObjectValues &values, const std::string &label)
{
    const auto it = values.find(label);
    return it == values.end() ? "<absent>" : infoValueText(it->second);
}

TEST(TOrbMDBColumn, TypeNamesOfEveryColumnMatchTheFixture)
{
    const std::map<std::string, std::string> expectedNames = {{"BOOLEAN", "Boolean"},
                                                              {"BYTE", "Byte"},
                                                              {"INT", "Integer"},
                                                              {"LONG", "Long Integer"},
                                                              {"MONEY", "Currency"},
                                                              {"FLOAT", "Single"},
                                                              {"DOUBLE", "Double"},
                                                              {"SHORT_DATE_TIME", "DateTime"},
                                                              {"BINARY", "Binary"},
                                                              {"TEXT", "Text"},
                                                              {"OLE", "OLE"},
                                                              {"MEMO", "Memo/Hyperlink"},
                                                              {"GUID", "Replication ID"},
                                                              {"NUMERIC", "Numeric"},
                                                              {"BIG_INT", "Large Number"},
                                                              {"EXT_DATE_TIME", "Date/Time Extended"}};
    for (const char *name : {"features.mdb", "features.accdb", "newtypes.accdb"}) {
        auto file = test::openInProcess(fixturePath(name));
        ASSERT_TRUE(file) << name;
        const auto sidecar = test::loadSidecar(fixturePath(name));
        for (const auto &table : file->tables()) {
            const auto &columns = (*test::sidecarTable(sidecar, table->name()))["columns"];
            for (size_t c = 0; c < table->columns().size(); ++c) {
                const TOrbMDBColumn &column = *table->columns()[c];
                EXPECT_EQ(column.dataType(), expectedNames.at(columns[c]["type"])) << name << " " << column.name();
                if (columns[c]["type"] == "TEXT") {
                    if (!columns[c].value("calculated", false)) {
                        EXPECT_EQ(column.fieldSize(), columns[c]["length_units"].get<int>()) << column.name();
                    }
                } else {
                    EXPECT_EQ(column.fieldSize(), -1) << column.name();
                }
                EXPECT_EQ(column.isHyperlink(), columns[c].value("hyperlink", false)) << column.name();
                EXPECT_EQ(column.isCalculatedType(), columns[c].value("calculated", false)) << column.name();
            }
        }
    }
    // Codes on which libmdb's own lookup crashes still get a name.
    EXPECT_EQ(mdb_get_colbacktype_string_fromMdbType(0x00), "Unknown_0000");
    EXPECT_EQ(mdb_get_colbacktype_string_fromMdbType(0x0D), "Unknown_000d");
    EXPECT_EQ(mdb_get_colbacktype_string_fromMdbType(0x12), "Complex Value auto number");
    EXPECT_EQ(mdb_get_colbacktype_string_fromMdbType(0x46), "Unknown_0046");
}

TEST(TOrbMDBColumn, Jet3TextSizeIsTheByteCount)
{
    auto file = test::openInProcess(fixturePath("jet3_size97.mdb"));
    ASSERT_TRUE(file);
    const TOrbMDBColumn *field = file->tableNamed("table1")->columnNamed("field1");
    ASSERT_NE(field, nullptr);
    EXPECT_EQ(field->fieldSize(), 10);
}

TEST(TOrbMDBColumn, PropertiesAndTheirDisplayTexts)
{
    for (const char *name : {"features.mdb", "features.accdb"}) {
        auto file = test::openInProcess(fixturePath(name));
        ASSERT_TRUE(file);
        const TOrbMDBTable *props = file->tableNamed("Props");
        ASSERT_NE(props, nullptr);
        struct Case {
            const char *column, *label, *value;
        };
        const Case cases[] = {
            {"ID", "Description", "Row number"},
            {"TextAZLTrue", "Allow zero length", "YES"},
            {"TextAZLTrue", "Required", "NO"},
            {"TextAZLFalse", "Allow zero length", "NO"},
            {"TextAZLFalse", "Required", "YES"},
            {"ReqLong", "Default value", "42"},
            {"ReqLong", "Size", "<absent>"},
            {"ReqLong", "Precision", "<absent>"},
            {"DblAuto", "Decimal places", "Auto"},
            {"Money2", "Decimal places", "2"},
            {"DefText", "Default value", "\"n/a\""},
            {"DescCol", "Description", "O'Neil's \"quoted\" column"},
            {"AlignRight", "Text alignment", "Right"},
            {"AlignOdd", "Text alignment", "General"},
            {"AlignGeneral", "Text alignment", "General"},
            {"RichMemo", "Text Format", "Rich Text"},
            {"RichText", "Text Format", "<absent>"},
            {"PlainMemo", "Text Format", "Plain Text"},
            {"UniComp", "Unicode compression", "YES"},
            {"UniComp", "Size", "50"},
        };
        for (const Case &c : cases) {
            const TOrbMDBColumn *column = props->columnNamed(c.column);
            ASSERT_NE(column, nullptr) << c.column;
            EXPECT_EQ(valueText(column->getObjectValues(), c.label), c.value)
                << name << " " << c.column << " " << c.label;
        }
        EXPECT_EQ(props->columnNamed("AlignRight")->textAlignForCell(), CellAlignment::Right);
        EXPECT_EQ(props->columnNamed("AlignOdd")->textAlignForCell(), CellAlignment::Natural);
        EXPECT_EQ(props->columnNamed("ID")->textAlignForCell(), CellAlignment::Natural);
        EXPECT_TRUE(props->columnNamed("Link")->isHyperlink());
    }
    auto accdb = test::openInProcess(fixturePath("features.accdb"));
    const TOrbMDBColumn *calc = accdb->tableNamed("Props")->columnNamed("CalcDouble");
    ASSERT_NE(calc, nullptr);
    EXPECT_TRUE(calc->isCalculatedType());
    EXPECT_EQ(calc->resultType(), "Double");
    EXPECT_EQ(calc->expression(), "[ReqLong]*2.5");

    auto numeric = test::openInProcess(fixturePath("features.mdb"));
    const TOrbMDBColumn *decimal = numeric->tableNamed("AllTypes")->columnNamed("ColNumeric");
    EXPECT_EQ(decimal->precision(), 18);
    EXPECT_EQ(decimal->scale(), 4);
}

TEST(TOrbMDBColumn, PropertyMappingIsExact)
{
    TOrbMDBColumn text;
    text.setDataType("Text");
    getPropertyValues("Required", "Yes", &text); // only "yes" is true
    getPropertyValues("TextFormat", "1", &text); // ignored for non-memo columns
    getPropertyValues("ResultType", "0", &text); // "0" is ignored
    getPropertyValues("Format", "Short Date", &text);
    getPropertyValues("TextAlign", "2", &text);
    EXPECT_EQ(text.required(), "NO");
    EXPECT_FALSE(text.textFormat().has_value());
    EXPECT_FALSE(text.resultType().has_value());
    EXPECT_EQ(text.textAlign(), "Center");
    EXPECT_EQ(text.textAlignForCell(), CellAlignment::Center);
    getPropertyValues("TextAlign", "4", &text);
    EXPECT_EQ(text.textAlignForCell(), CellAlignment::Justified);

    TOrbMDBColumn memo;
    memo.setDataType("Memo/Hyperlink");
    getPropertyValues("TextFormat", "7", &memo);
    EXPECT_EQ(memo.textFormat(), "Unknown");
    getPropertyValues("ResultType", "4", &memo);
    EXPECT_EQ(memo.resultType(), "Long Integer");
    getPropertyValues("DecimalPlaces", "255", &memo);
    EXPECT_EQ(memo.decimalPlaces(), "Auto");
    EXPECT_EQ(memo.storedDecimalPlaces(), "255");

    // Label order, with the optional rows left out when unset.
    memo.setName("Notes");
    EXPECT_EQ(memo.getObjectLabels(),
              (std::vector<std::string>{"Name", "Type", "Result Type", "Decimal places", "Text Format"}));
}

} // namespace
} // namespace vellum
