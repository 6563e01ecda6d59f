#include "browser/NavigationHistory.h"

#include "browserTestSupport.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

using Tables = std::vector<TOrbMDBTable *>;

class NavigationHistoryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        first = test::makeTestFile("first");
        second = test::makeTestFile("second");
        a = test::addColumnTable(*first, "A", {});
        b = test::addColumnTable(*first, "B", {});
        c = test::addColumnTable(*first, "C", {});
        d = test::addColumnTable(*first, "D", {});
        e = test::addColumnTable(*second, "E", {});
    }

    /// Back/Next whose selection always reaches the target; remembers what was selected.
    NavigationHistory::SelectTarget reach()
    {
        return [this](TOrbMDBTable *t) {
            shown = t;
            return true;
        };
    }

    std::unique_ptr<TOrbMDBFile> first, second;
    TOrbMDBTable *a = nullptr, *b = nullptr, *c = nullptr, *d = nullptr, *e = nullptr;
    TOrbMDBTable *shown = nullptr;
    NavigationHistory history;
};

TEST_F(NavigationHistoryTest, NewVisitAfterBackTwiceDropsTheForwardList)
{
    history.recordVisit(a);
    EXPECT_FALSE(history.backEnabled()) << "one visit does not enable Back";
    history.recordVisit(b);
    history.recordVisit(c);
    EXPECT_TRUE(history.backEnabled());

    history.goBack(reach());
    EXPECT_EQ(shown, b);
    EXPECT_TRUE(history.nextEnabled());
    history.goBack(reach());
    EXPECT_EQ(shown, a);
    EXPECT_FALSE(history.backEnabled());
    EXPECT_EQ(history.next(), (Tables{c, b}));

    history.goBack(reach()); // disabled: nothing happens
    EXPECT_EQ(history.previous(), (Tables{a}));

    history.recordVisit(d);
    EXPECT_EQ(history.previous(), (Tables{a, d}));
    EXPECT_TRUE(history.next().empty());
    EXPECT_FALSE(history.nextEnabled());
    EXPECT_TRUE(history.backEnabled());
}

TEST_F(NavigationHistoryTest, NextWalksForwardAndRevisitsRecordNothing)
{
    history.recordVisit(a);
    history.recordVisit(a);
    EXPECT_EQ(history.previous(), (Tables{a})) << "the table already shown is not recorded again";
    history.recordVisit(b);
    history.goBack(reach());
    history.goNext(reach());
    EXPECT_EQ(shown, b);
    EXPECT_EQ(history.previous(), (Tables{a, b}));
    EXPECT_TRUE(history.next().empty());
    EXPECT_FALSE(history.nextEnabled());
    EXPECT_TRUE(history.backEnabled());
}

TEST_F(NavigationHistoryTest, UnreachableTargetLeavesTheLists)
{
    history.recordVisit(a);
    history.recordVisit(b);
    history.goBack([](TOrbMDBTable *) { return false; });
    EXPECT_EQ(history.previous(), (Tables{a, b}));
    EXPECT_TRUE(history.next().empty());
    EXPECT_TRUE(history.backEnabled());
}

TEST_F(NavigationHistoryTest, ClosingAFilePurgesItsTables)
{
    history.recordVisit(a);
    history.recordVisit(e);
    history.purgeTables({e});
    EXPECT_EQ(history.previous(), (Tables{a}));
    EXPECT_TRUE(history.backEnabled()) << "closing disables Back only when the list is empty";

    history.goBack(reach());
    EXPECT_EQ(shown, a);
    EXPECT_TRUE(history.previous().empty());
    EXPECT_EQ(history.next(), (Tables{a}));
    EXPECT_FALSE(history.backEnabled());
    EXPECT_TRUE(history.nextEnabled());

    // Duplicates left behind by a purge are trimmed, and Next never repeats where we are.
    NavigationHistory other;
    other.recordVisit(a);
    other.recordVisit(e);
    other.recordVisit(a);
    other.recordVisit(b);
    other.goBack([](TOrbMDBTable *) { return true; });
    EXPECT_EQ(other.previous(), (Tables{a, e, a}));
    EXPECT_EQ(other.next(), (Tables{b}));
    other.purgeTables({e, b});
    EXPECT_EQ(other.previous(), (Tables{a}));
    EXPECT_TRUE(other.next().empty());
    EXPECT_FALSE(other.nextEnabled());
    EXPECT_TRUE(other.backEnabled());
}

} // namespace
} // namespace vellum
