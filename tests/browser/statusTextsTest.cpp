#include "browser/statusTexts.h"

#include <gtest/gtest.h>

namespace vellum {
namespace {

TEST(statusTexts, SingularOnlyForOne)
{
    EXPECT_EQ(statusForNoSelection(0), "0 files");
    EXPECT_EQ(statusForNoSelection(1), "1 file");
    EXPECT_EQ(statusForNoSelection(3), "3 files");

    EXPECT_EQ(statusForFileSelection(1, std::nullopt), "1 of 1 file");
    EXPECT_EQ(statusForFileSelection(0, std::nullopt), "1 of 0 files");
    EXPECT_EQ(statusForFileSelection(4, std::nullopt), "1 of 4 files");
    EXPECT_EQ(statusForFileSelection(1, 1), "1 of 1 file, contains 1 table");
    EXPECT_EQ(statusForFileSelection(2, 0), "1 of 2 files, contains 0 tables");
    EXPECT_EQ(statusForFileSelection(2, 14), "1 of 2 files, contains 14 tables");

    EXPECT_EQ(statusForTableSelection(3, 0), "1 of 3 tables, contains 0 records");
    EXPECT_EQ(statusForTableSelection(1, 1), "1 of 1 table, contains 1 record");
    EXPECT_EQ(statusForTableSelection(0, 200000), "1 of 0 tables, contains 200000 records");

    EXPECT_EQ(statusForRecordSelection(0, 0, 0), "0 records");
    EXPECT_EQ(statusForRecordSelection(0, 0, 1), "1 record");
    EXPECT_EQ(statusForRecordSelection(1, 4, 20), "Record 5 of 20");
    EXPECT_EQ(statusForRecordSelection(3, 0, 20), "3 of 20 records");
}

} // namespace
} // namespace vellum
