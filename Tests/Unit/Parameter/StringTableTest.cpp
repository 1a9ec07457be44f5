#include "Source/Parameter/StringTable.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

TEST(StringTable, FixedMessagesStandInTheFirstRows) {
    EXPECT_STREQ(GetStringPtr(0), "");
    EXPECT_STREQ(GetStringPtr(1), "Tessavoy");
    EXPECT_STREQ(GetStringPtr(2), "A grid of instances, computed cell by cell.");
    EXPECT_STREQ(GetStringPtr(3), "All Dependencies requested.");
    EXPECT_STREQ(GetStringPtr(4), "Missing Dependencies requested.");
    EXPECT_STREQ(GetStringPtr(5), "Error loading suite.");
    EXPECT_STREQ(GetStringPtr(6), "Error releasing suite.");
}

TEST(StringTable, AlternativeLabelsAndUnusedRowsAreKept) {
    EXPECT_STREQ(GetStringPtr(38), "Value By Order");
    EXPECT_STREQ(GetStringPtr(63), "Grid Rotation Z");
    EXPECT_STREQ(GetStringPtr(76), "Instance Rotation Z");
    EXPECT_STREQ(GetStringPtr(80), "Instance Color");
    EXPECT_STREQ(GetStringPtr(118), "Pattern");
    EXPECT_STREQ(GetStringPtr(119), "Rect|Circle");
    EXPECT_STREQ(GetStringPtr(167), "Show Z Bounds");
}

TEST(StringTable, PlainAndNamedLabelFormatsOfASlotAreNeighbours) {
    for (const A_long row : {127, 130, 133, 136, 139, 142, 145, 148, 151, 154}) {
        EXPECT_EQ(std::string(GetStringPtr(row)) + " (%s)", GetStringPtr(row + 1));
    }
}

TEST(StringTable, RowsWithoutTextAreEmpty) {
    for (const A_long row : {33, 37, 48, 51, 71, 93, 99, 104, 109, 122, 124, 163, 165, 166}) {
        EXPECT_STREQ(GetStringPtr(row), "") << row;
    }
}

TEST(StringTableDeathTest, ARowOutsideTheTableStops) {
    EXPECT_DEATH(GetStringPtr(-1), "index >= 0 && index < rowCount");
    EXPECT_DEATH(GetStringPtr(168), "index >= 0 && index < rowCount");
}

}  // namespace
}  // namespace Tessavoy
