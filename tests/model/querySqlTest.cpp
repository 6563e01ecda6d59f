#include "model/querySql.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using Type = TOrbMDBQuery::Type;

// Shorthands for the rows of a definition: attribute, expression, flag, name1, name2, extra.
QueryRow row(int attribute, std::optional<std::string> expression = std::nullopt,
             std::optional<int> flag = std::nullopt, std::optional<std::string> name1 = std::nullopt,
             std::optional<std::string> name2 = std::nullopt, std::optional<std::int32_t> extra = std::nullopt)
{
    return QueryRow{attribute, std::move(expression), flag, extra, std::move(name1), std::move(name2)};
}
QueryRow typeRow(int code, std::optional<std::string> name1 = std::nullopt,
                 std::optional<std::string> name2 = std::nullopt, std::optional<std::string> expression = std::nullopt)
{
    return row(1, std::move(expression), code, std::move(name1), std::move(name2));
}
QueryRow flags(int value, std::optional<std::string> top = std::nullopt)
{
    return row(3, std::nullopt, value, std::move(top));
}
QueryRow table(std::string name, std::optional<std::string> alias = std::nullopt)
{
    return row(5, std::nullopt, std::nullopt, std::move(name), std::move(alias));
}
QueryRow column(std::string expression, std::optional<std::string> alias = std::nullopt, int flag = 0,
                std::optional<std::string> target = std::nullopt)
{
    return row(6, std::move(expression), flag, std::move(alias), std::move(target));
}
QueryRow join(std::string from, std::string to, std::string on, int kind)
{
    return row(7, std::move(on), kind, std::move(from), std::move(to));
}
QueryRow where(std::string expression)
{
    return row(8, std::move(expression));
}
QueryRow groupBy(std::string expression, int flag = 0)
{
    return row(9, std::move(expression), flag);
}
QueryRow having(std::string expression)
{
    return row(10, std::move(expression));
}
QueryRow orderBy(std::string expression, bool descending = false)
{
    return row(11, std::move(expression), std::nullopt, descending ? std::optional<std::string>("D") : std::nullopt);
}
QueryRow parameter(std::string name, int type, std::optional<std::int32_t> length = std::nullopt)
{
    return row(2, std::nullopt, type, std::move(name), std::nullopt, length);
}
// The rows that open and close every definition: they carry nothing.
const QueryRow kStart = row(0, std::nullopt, 0);
const QueryRow kEnd = row(255);

TEST(QuerySql, RebuildsEveryKindOfQuery)
{
    struct Case {
        const char *what;
        std::uint32_t objectFlags;
        std::vector<QueryRow> rows;
        Type type;
        const char *sql;
    };
    const Case cases[] = {
        {"joins with aliases, where and descending order",
         0,
         {kStart, kEnd, typeRow(1), flags(0x02), table("Orders", "o"), table("Order Details", "d"), table("Customers"),
          column("o.OrderID"), column("d.Qty * 2", "Twice"), column("Customers.[Company Name]", "Company Name"),
          join("o", "d", "o.OrderID = d.OrderID", 1), join("Customers", "o", "Customers.ID = o.CustomerID", 2),
          where("((o.Freight)>10)"), orderBy("o.OrderID", true), orderBy("d.Qty")},
         Type::Select,
         "SELECT DISTINCT o.OrderID, d.Qty * 2 AS Twice, Customers.[Company Name] AS [Company Name]\n"
         "FROM Customers LEFT JOIN (Orders AS o INNER JOIN [Order Details] AS d ON o.OrderID = d.OrderID) ON "
         "Customers.ID = o.CustomerID\n"
         "WHERE ((o.Freight)>10)\n"
         "ORDER BY o.OrderID DESC, d.Qty;"},
        {"a join on two conditions keeps them in reverse, a right join, a table outside the joins",
         0,
         {typeRow(1), table("A"), table("B"), table("C"), table("Lone"), column("A.x"), join("A", "B", "A.x = B.x", 1),
          join("A", "B", "A.y = B.y", 1), join("B", "C", "B.z = C.z", 3)},
         Type::Select,
         "SELECT A.x\nFROM Lone, (A INNER JOIN B ON (A.y = B.y) AND (A.x = B.x)) RIGHT JOIN C ON B.z = C.z;"},
        {"group by, having, distinctrow with top",
         0,
         {typeRow(1), flags(0x08 | 0x10, "10"), table("Sales"), column("Sales.Region"),
          column("Sum(Sales.Amount)", "Total"), groupBy("Sales.Region"), having("((Sum(Sales.Amount))>100)"),
          orderBy("Sum(Sales.Amount)", true)},
         Type::Select,
         "SELECT DISTINCTROW TOP 10 Sales.Region, Sum(Sales.Amount) AS Total\nFROM Sales\nGROUP BY Sales.Region\n"
         "HAVING ((Sum(Sales.Amount))>100)\nORDER BY Sum(Sales.Amount) DESC;"},
        {"top percent, select star, owner access",
         0,
         {typeRow(1), flags(0x01 | 0x04 | 0x10 | 0x20, "25"), table("T")},
         Type::Select,
         "SELECT TOP 25 PERCENT *\nFROM T\nWITH OWNERACCESS OPTION;"},
        {"parameters with their types",
         0,
         {typeRow(1), parameter("Beginning Date", 8), parameter("Forms!Sales by Year Dialog!EndingDate", 8),
          parameter("prmName", 10, 255), parameter("prmCode", 10), parameter("[Which id?]", 4), parameter("Any", 0),
          table("T"), column("T.a"),
          where("T.d Between [Beginning Date] And "
                "[Forms]![Sales by Year Dialog]![EndingDate]")},
         Type::Select,
         "PARAMETERS [Beginning Date] DateTime, [Forms]![Sales by Year Dialog]![EndingDate] DateTime, prmName "
         "Text(255), prmCode Text, [Which id?] Long, Any Value;\n"
         "SELECT T.a\nFROM T\nWHERE T.d Between [Beginning Date] And [Forms]![Sales by Year Dialog]![EndingDate];"},
        {"a table of another database and a source database",
         0,
         {typeRow(1), row(5, "C:\\data\\other.mdb", std::nullopt, "Remote"),
          row(4, "dBASE IV;", std::nullopt, "C:\\dbf"), column("*")},
         Type::Select,
         "SELECT *\nFROM [C:\\data\\other.mdb].Remote IN 'C:\\dbf' [dBASE IV;];"},
        {"union, stored with CR LF",
         128,
         {kStart, typeRow(9), flags(0x02),
          row(5, "SELECT a FROM T1\r\n\r\nWHERE a > 1  \r\n", std::nullopt, std::nullopt, "X7YZ_____1"),
          row(5, "  SELECT b FROM T2", std::nullopt, std::nullopt, "X7YZ_____2"), orderBy("a")},
         Type::Union,
         "SELECT a FROM T1\nWHERE a > 1\nUNION SELECT b FROM T2\nORDER BY a;"},
        {"union all",
         128,
         {typeRow(9), flags(0), row(5, "SELECT b FROM T2", std::nullopt, std::nullopt, "X7YZ_____2"),
          row(5, "SELECT a FROM T1", std::nullopt, std::nullopt, "X7YZ_____1")},
         Type::Union,
         "SELECT a FROM T1\nUNION ALL SELECT b FROM T2;"},
        {"crosstab",
         16,
         {typeRow(6), flags(0), table("Orders"), column("Orders.Customer", std::nullopt, 2),
          column("Format([Date],\"yyyy\") In (\"2001\",\"2002\")", "Years", 1), column("Sum(Orders.Amount)", "Total"),
          column("Count(*)", "Orders", 2), groupBy("Orders.Customer", 2), groupBy("Format([Date],\"yyyy\")", 1)},
         Type::CrossTab,
         "TRANSFORM Sum(Orders.Amount) AS Total\nSELECT Orders.Customer, Count(*) AS Orders\nFROM Orders\n"
         "GROUP BY Orders.Customer\nPIVOT Format([Date],\"yyyy\") In (\"2001\",\"2002\");"},
        {"append from a select",
         64,
         {typeRow(3, "Archive Table"), table("Orders"), column("Orders.ID", std::nullopt, 0, "ID"),
          column("Orders.Total", std::nullopt, 0, "Sum Total"), where("Orders.Done=True")},
         Type::Append,
         "INSERT INTO [Archive Table] (ID, [Sum Total])\nSELECT Orders.ID, Orders.Total\nFROM Orders\n"
         "WHERE Orders.Done=True;"},
        {"append of values into another database",
         64,
         {typeRow(3, "Log", "C:\\logs.mdb"), column("[prmText]", std::nullopt, 0x8000 - 0x10000, "Text"),
          column("#2001-10-10#", std::nullopt, 0x8000 - 0x10000, "When")},
         Type::Append,
         "INSERT INTO Log (Text, When) IN 'C:\\logs.mdb'\nVALUES ([prmText], #2001-10-10#);"},
        {"update",
         48,
         {typeRow(4), table("Table1"), table("Table2"), join("Table1", "Table2", "Table1.id = Table2.id", 1),
          column("\"foo\"", std::nullopt, 0, "Table1.col1"),
          column("[Table2].[col3]", std::nullopt, 0, "Table1.my col"), where("(((Table2.col1) Is Not Null))")},
         Type::Update,
         "UPDATE Table1 INNER JOIN Table2 ON Table1.id = Table2.id\n"
         "SET Table1.col1 = \"foo\", Table1.[my col] = [Table2].[col3]\nWHERE (((Table2.col1) Is Not Null));"},
        {"delete",
         32,
         {typeRow(5), flags(0x01), table("Table1"), where("Table1.col1>\"blah\"")},
         Type::Delete,
         "DELETE *\nFROM Table1\nWHERE Table1.col1>\"blah\";"},
        {"make table into another database",
         80,
         {typeRow(2, "New Table", "C:\\out.mdb", "Paradox 4.x;"), table("T"), column("T.a", "A")},
         Type::MakeTable,
         "SELECT T.a AS A INTO [New Table] IN 'C:\\out.mdb' [Paradox 4.x;]\nFROM T;"},
        {"data definition: the stored text without its NUL",
         96,
         {kStart, kEnd, typeRow(7, std::nullopt, std::nullopt, std::string("CREATE TABLE T (a CHAR);\0", 25))},
         Type::DataDefinition,
         "CREATE TABLE T (a CHAR);"},
        {"pass-through: the stored text, no clause added",
         112,
         {typeRow(8, "ODBC;DSN=x", std::nullopt, "exec sp_who\r\ngo")},
         Type::PassThrough,
         "exec sp_who\r\ngo"},
        {"catalog flags of a select, type row of an update: the rows decide",
         0,
         {typeRow(4), table("T"), column("1", std::nullopt, 0, "T.a")},
         Type::Update,
         "UPDATE T\nSET T.a = 1;"},
        {"catalog and type row disagree: unknown, with the stored text",
         48,
         {typeRow(1, std::nullopt, std::nullopt, "SELECT 1")},
         Type::Unknown,
         "SELECT 1"},
        {"a catalog kind Vellum does not know", 224, {}, Type::Unknown, ""},
    };
    for (const Case &c : cases) {
        const RebuiltQuery rebuilt = rebuildQuery(c.objectFlags, c.rows);
        EXPECT_EQ(rebuilt.type, c.type) << c.what;
        EXPECT_EQ(rebuilt.sql, c.sql) << c.what;
        EXPECT_EQ(rebuilt.error, "") << c.what;
    }
}

TEST(QuerySql, DefinitionsThatCannotBeRebuiltSayWhy)
{
    struct Case {
        const char *what;
        std::uint32_t objectFlags;
        std::vector<QueryRow> rows;
        const char *error;
    };
    const Case cases[] = {
        {"a join of unknown kind",
         0,
         {typeRow(1), table("A"), table("B"), join("A", "B", "A.x = B.x", 7)},
         "a join of unknown kind"},
        {"two kinds of join between the same tables",
         0,
         {typeRow(1), table("A"), table("B"), join("A", "B", "A.x = B.x", 1), join("A", "B", "A.y = B.y", 2)},
         "inconsistent joins between A and B"},
        {"a union with one half",
         128,
         {typeRow(9), row(5, "SELECT 1", std::nullopt, std::nullopt, "X7YZ_____1")},
         "a half of the union is missing"},
    };
    for (const Case &c : cases) {
        const RebuiltQuery rebuilt = rebuildQuery(c.objectFlags, c.rows);
        EXPECT_EQ(rebuilt.error, c.error) << c.what;
        EXPECT_EQ(rebuilt.sql, "") << c.what;
    }
}

TEST(QuerySql, QuotesNamesThatNeedBrackets)
{
    struct Case {
        const char *text;
        bool dotted;
        const char *quoted;
    };
    const Case cases[] = {
        {"Orders", true, "Orders"},
        {"Order Details", true, "[Order Details]"},
        {"Order Details.Unit Price", true, "[Order Details].[Unit Price]"},
        {"Orders.ID", false, "[Orders.ID]"},
        {"[Already]", true, "[Already]"},
        {"Caf\xc3\xa9", true, "[Caf\xc3\xa9]"},
        {"a.b.", true, "a.b"},
        {"under_score9", true, "under_score9"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(quotedQueryName(c.text, c.dotted), c.quoted) << c.text;
}

} // namespace
} // namespace vellum
