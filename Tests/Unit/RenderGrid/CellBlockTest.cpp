#include "Source/RenderGrid/CellBlock.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

TEST(CellBlock, PositionsRunFromZeroToOne) {
    const CellBlock block({5, 3, false}, 0, 15);
    ASSERT_EQ(block.count, 15);
    for (int k = 0; k < 15; ++k) {
        EXPECT_EQ(block.i[k], k % 5);
        EXPECT_EQ(block.j[k], k / 5);
        EXPECT_EQ(block.u[k], static_cast<float>(k % 5) / 4.0F);
        EXPECT_EQ(block.v[k], static_cast<float>(k / 5) / 2.0F);
    }
}

TEST(CellBlock, PositionsAreSinglePrecisionQuotients) {
    const CellBlock block({8, 1, false}, 3, 1);
    EXPECT_EQ(block.u[0], 3.0F / 7.0F);
    EXPECT_NE(static_cast<double>(block.u[0]), 3.0 / 7.0);
}

TEST(CellBlock, OneColumnStandsInTheMiddleAlsoInHexagonGrids) {
    for (const bool hexGrid : {false, true}) {
        const CellBlock block({1, 4, hexGrid}, 0, 4);
        for (int k = 0; k < 4; ++k) {
            EXPECT_EQ(block.u[k], 0.5F);
            EXPECT_EQ(block.v[k], static_cast<float>(k) / 3.0F);
        }
    }
}

TEST(CellBlock, OneRowStandsInTheMiddle) {
    const CellBlock block({3, 1, true}, 0, 3);
    EXPECT_EQ(block.u[0], 0.0F);
    EXPECT_EQ(block.u[2], 1.0F);
    EXPECT_EQ(block.v[0], 0.5F);
    EXPECT_EQ(block.v[2], 0.5F);
}

TEST(CellBlock, HexagonGridShiftsOddRowsByHalfACell) {
    const CellBlock two({2, 3, true}, 0, 6);
    const float expected[] = {0.0F, 1.0F, 0.5F, 1.5F, 0.0F, 1.0F};
    for (int k = 0; k < 6; ++k) {
        EXPECT_EQ(two.u[k], expected[k]) << k;
    }
    const CellBlock five({5, 2, true}, 0, 10);
    EXPECT_EQ(five.u[5], 0.125F);
    EXPECT_EQ(five.u[9], 1.125F);
    EXPECT_EQ(five.v[9], 1.0F);
}

TEST(CellBlock, HoldsAtMostItsSizeAndBeginsAnywhere) {
    const CellBlock full({1000, 1000, false}, 999, 1000000 - 999);
    EXPECT_EQ(full.count, blockCells);
    EXPECT_EQ(full.i[0], 999);
    EXPECT_EQ(full.j[0], 0);
    EXPECT_EQ(full.i[1], 0);
    EXPECT_EQ(full.j[1], 1);
    const CellBlock rest({7, 9, false}, 60, 3);
    EXPECT_EQ(rest.count, 3);
    EXPECT_EQ(rest.i[2], 6);
    EXPECT_EQ(rest.j[2], 8);
}

TEST(CellBlock, CrossesManyShortRows) {
    const CellBlock block({3, 100, true}, 4, 296);
    for (int k = 0; k < blockCells; ++k) {
        const int index = 4 + k;
        const float shift = index / 3 % 2 == 1 ? 0.25F : 0.0F;
        EXPECT_EQ(block.i[k], index % 3);
        EXPECT_EQ(block.j[k], index / 3);
        EXPECT_EQ(block.u[k], static_cast<float>(index % 3) / 2.0F + shift);
        EXPECT_EQ(block.v[k], static_cast<float>(index / 3) / 99.0F);
    }
}

}  // namespace
}  // namespace Tessavoy
