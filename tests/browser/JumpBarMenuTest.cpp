#include "browser/JumpBarMenu.h"

#include "browserTestSupport.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(IndexPath, StringFormAndSubPaths)
{
    EXPECT_EQ(IndexPath({1, 3}).stringRepresentation(), "1.3");
    EXPECT_EQ(IndexPath({0}).stringRepresentation(), "0");
    EXPECT_EQ(IndexPath().stringRepresentation(), "");

    const IndexPath path{4, 1, 2};
    EXPECT_EQ(path.indexPathByAddingIndexPath(IndexPath{7, 8}), (IndexPath{4, 1, 2, 7, 8}));
    EXPECT_EQ(path.indexPathByAddingIndexInFront(9), (IndexPath{9, 4, 1, 2}));
    EXPECT_EQ(path.subIndexPathFromPosition(1), (IndexPath{1, 2}));
    EXPECT_EQ(path.subIndexPathFromPosition(3), IndexPath());
    EXPECT_EQ(path.subIndexPathToPosition(2), (IndexPath{4, 1}));
    EXPECT_EQ(path.subIndexPathToPosition(10), path);
    EXPECT_EQ(path.subIndexPathWithRange(1, 1), (IndexPath{1}));
    EXPECT_EQ(path.subIndexPathWithRange(2, 5), (IndexPath{2}));
}

TEST(JumpBarMenu, TreeOfFilesAndTables)
{
    auto closed = test::makeTestFile("Archive");
    auto open = test::makeTestFile("Sales");
    TOrbMDBTable *customers = test::addColumnTable(*open, "Customers", {});
    TOrbMDBTable *orders = test::addColumnTable(*open, "Orders", {});
    auto empty = test::makeTestFile("Empty");
    empty->setActive(true);
    const std::vector<TOrbMDBFile *> files = {closed.get(), open.get(), empty.get()};

    EXPECT_EQ(buildJumpBarMenu(files, nullptr), nullptr) << "no selected file: no menu";
    EXPECT_EQ(buildJumpBarMenu({}, open.get()), nullptr) << "no files: no menu";

    const auto menu = buildJumpBarMenu(files, closed.get());
    ASSERT_TRUE(menu);
    ASSERT_EQ(menu->size(), 3u);
    EXPECT_EQ(menu->itemAt(0)->title, "Archive");
    EXPECT_EQ(menu->itemAt(0)->image, JumpBarImage::File);
    EXPECT_FALSE(menu->itemAt(0)->submenu) << "a closed file has no submenu";
    EXPECT_FALSE(menu->itemAt(2)->submenu) << "an open file without tables has none either";
    ASSERT_TRUE(menu->itemAt(1)->submenu);

    JumpBarItem *ordersItem = menu->itemAtIndexPath({1, 1});
    ASSERT_TRUE(ordersItem);
    EXPECT_EQ(ordersItem->object.table, orders);
    EXPECT_EQ(ordersItem->image, JumpBarImage::Table);
    EXPECT_EQ(menu->indexPathOfItem(ordersItem), (IndexPath{1, 1}));
    EXPECT_EQ(menu->indexPathOfItem(menu->itemAt(2)), (IndexPath{2}));
    EXPECT_EQ(menu->itemAtIndexPath({0, 0}), nullptr);
    EXPECT_EQ(menu->itemAtIndexPath({5}), nullptr);

    EXPECT_EQ(locationItem(menu.get(), open.get(), customers), menu->itemAtIndexPath({1, 0}));
    EXPECT_EQ(locationItem(menu.get(), open.get(), nullptr), menu->itemAt(1));
    auto unlisted = test::makeTestFile("Elsewhere");
    EXPECT_EQ(locationItem(menu.get(), unlisted.get(), nullptr), nullptr);

    // A closed file's submenu is filled once it has been opened.
    test::addColumnTable(*closed, "Old", {});
    addTableItems(*menu->itemAt(0));
    ASSERT_TRUE(menu->itemAt(0)->submenu);
    EXPECT_EQ(menu->itemAtIndexPath({0, 0})->title, "Old");
}

} // namespace
} // namespace vellum
