#include "support/Fixtures.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using test::fixturePath;

std::string keysText(const TOrbMDBIndex &index)
{
    return std::get<std::string>(index.getObjectValues().at("Index keys"));
}

TEST(TOrbMDBIndex, KeysDirectionsAndPrimaryMarks)
{
    for (const char *name : {"features.mdb", "features.accdb"}) {
        auto file = test::openInProcess(fixturePath(name));
        ASSERT_TRUE(file);
        const TOrbMDBTable *lines = file->tableNamed("OrderLines");
        ASSERT_NE(lines, nullptr);
        std::vector<std::string> names;
        for (const auto &index : lines->indices())
            names.push_back(index->name());
        // Sorted by name; the relationship's index is kept with the keys of its own key set.
        EXPECT_EQ(names, (std::vector<std::string>{"ixPriceDesc", "OrdersOrderLines", "PrimaryKey"})) << name;
        const TOrbMDBIndex *primary = lines->indices()[2].get();
        EXPECT_TRUE(primary->isPrimaryKey());
        EXPECT_TRUE(primary->isUnique());
        EXPECT_FALSE(primary->isForeignKey());
        const TOrbMDBIndex *foreign = lines->indices()[1].get();
        EXPECT_TRUE(foreign->isForeignKey());
        EXPECT_FALSE(foreign->isPrimaryKey());
        EXPECT_FALSE(foreign->isUnique());
        EXPECT_EQ(keysText(*foreign), "OrderID (Ascending)");
        EXPECT_EQ(keysText(*primary), "OrderID (Ascending), LineNo (Ascending)");
        const TOrbMDBIndex *descending = lines->indices()[0].get();
        EXPECT_FALSE(descending->isPrimaryKey());
        EXPECT_FALSE(descending->isUnique());
        EXPECT_FALSE(descending->isForeignKey());
        EXPECT_EQ(keysText(*descending), "Price (Descending)");
        EXPECT_EQ(std::get<std::string>(descending->getObjectValues().at("Primary key")), "NO");

        for (const auto &column : lines->columns()) {
            EXPECT_EQ(column->isPrimaryKey(), column->name() == "OrderID" || column->name() == "LineNo")
                << column->name();
        }

        const TOrbMDBTable *items = file->tableNamed("Items");
        std::vector<std::string> itemIndexes;
        for (const auto &index : items->indices())
            itemIndexes.push_back(index->name() + (index->isUnique() ? "!" : ""));
        EXPECT_EQ(itemIndexes, (std::vector<std::string>{"ix!", "ORDERS", "PrimaryKey!"}));

        // The referenced side: two relationships' indexes share the primary key's and the
        // unique index's key sets, and take their keys and uniqueness.
        std::vector<std::string> customerIndexes;
        for (const auto &index : file->tableNamed("Customers")->indices())
            customerIndexes.push_back(index->name() + (index->isForeignKey() ? "^" : "") +
                                      (index->isUnique() ? "!" : "") + " " + keysText(*index));
        EXPECT_EQ(customerIndexes, (std::vector<std::string>{".rB^! CustomerID (Ascending)",
                                                             ".rC^! Code (Ascending), Country (Ascending)",
                                                             "PrimaryKey! CustomerID (Ascending)",
                                                             "ux_CodeCountry! Code (Ascending), Country (Ascending)"}));
    }
}

TEST(TOrbMDBIndex, PrimaryKeyMarksCoverTheUnionAndAreNeverCleared)
{
    TOrbMDBTable table;
    for (const char *name : {"A", "B", "C"}) {
        auto column = std::make_unique<TOrbMDBColumn>();
        column->setName(name);
        table.addColumn(std::move(column));
    }
    table.columnNamed("C")->setIsPrimaryKey(true);
    auto first = std::make_unique<TOrbMDBIndex>();
    first->setName("pk1");
    first->setIsPrimaryKey(true);
    first->setKeys({{"A", true}});
    auto second = std::make_unique<TOrbMDBIndex>();
    second->setName("pk2");
    second->setIsPrimaryKey(true);
    second->setKeys({{"B", false}});
    table.addIndex(std::move(second));
    table.addIndex(std::move(first));
    table.sortIndices();
    EXPECT_EQ(table.indices()[0]->name(), "pk1");
    table.setColumnPrimaryKey();
    EXPECT_TRUE(table.columnNamed("A")->isPrimaryKey());
    EXPECT_TRUE(table.columnNamed("B")->isPrimaryKey());
    EXPECT_TRUE(table.columnNamed("C")->isPrimaryKey());
}

} // namespace
} // namespace vellum
