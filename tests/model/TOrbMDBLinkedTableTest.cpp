#include "model/TOrbMDBLinkedTable.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(TOrbMDBLinkedTable, InformationRowsAndTargetByKind)
{
    using Kind = TOrbMDBLinkedTable::Kind;
    struct Case {
        Kind kind;
        const char *database;
        const char *connect;
        std::vector<std::string> labels;
        const char *target;
    };
    const Case cases[] = {
        // An Access link: its database, no connect row when none is stored.
        {Kind::Access, "C:\\db\\orders.mdb", "", {"Name", "Link", "Database", "Table"}, "C:\\db\\orders.mdb : dbo.T"},
        // Access links may store options such as ";DATABASE=…": then they are shown.
        {Kind::Access,
         "C:\\db\\orders.mdb",
         ";DATABASE=C:\\db\\orders.mdb",
         {"Name", "Link", "Database", "Table", "Connect"},
         "C:\\db\\orders.mdb : dbo.T"},
        // An ODBC link has no database; the target leaves the connect text (a password) out.
        {Kind::Odbc, "", "DSN=x;PWD=secret", {"Name", "Link", "Table", "Connect"}, "ODBC dbo.T"},
    };
    for (const Case &c : cases) {
        TOrbMDBLinkedTable link;
        link.setName("T");
        link.setKind(c.kind);
        link.setDatabase(c.database);
        link.setTargetTable("dbo.T");
        link.setConnect(c.connect);
        EXPECT_EQ(link.getObjectLabels(), c.labels);
        const auto values = link.getObjectValues();
        ASSERT_EQ(values.size(), c.labels.size());
        EXPECT_EQ(infoValueText(values.at("Link")), TOrbMDBLinkedTable::kindName(c.kind));
        EXPECT_EQ(infoValueText(values.at("Table")), "dbo.T");
        EXPECT_EQ(link.targetDescription(), c.target);
    }
    EXPECT_STREQ(TOrbMDBLinkedTable::kindName(Kind::Access), "ACCESS");
    EXPECT_STREQ(TOrbMDBLinkedTable::kindName(Kind::Odbc), "ODBC");
}

} // namespace
} // namespace vellum
