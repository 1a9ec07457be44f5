#include "Source/RenderGrid/DrawOrder.h"

#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tessavoy {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float notANumber = std::numeric_limits<float>::quiet_NaN();

OrderMap mapOf(const std::vector<float>& keys) {
    OrderMap order;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        order.push_back({rankOf(keys[k]), static_cast<A_long>(k)});
    }
    return order;
}

std::vector<A_long> indicesOf(const OrderMap& order) {
    std::vector<A_long> indices;
    for (const OrderEntry& entry : order) {
        indices.push_back(entry.index);
    }
    return indices;
}

std::vector<A_long> sorted(const std::vector<float>& keys) {
    OrderMap order = mapOf(keys);
    sortByRank(order);
    return indicesOf(order);
}

/// Inserts every key behind all that are not greater, one after the other; NaN behind all.
std::vector<A_long> inserted(const std::vector<float>& keys) {
    std::vector<A_long> numbers;
    std::vector<A_long> others;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        const A_long index = static_cast<A_long>(k);
        if (std::isnan(keys[k])) {
            others.push_back(index);
            continue;
        }
        const auto place =
            std::find_if(numbers.begin(), numbers.end(), [&](A_long other) { return keys[other] > keys[k]; });
        numbers.insert(place, index);
    }
    numbers.insert(numbers.end(), others.begin(), others.end());
    return numbers;
}

TEST(SortByRank, PutsSmallKeysFirstAndKeepsTheOrderOfEqualOnes) {
    EXPECT_EQ(sorted({3.0F, -1.0F, 2.0F, -1.0F, 3.0F}), (std::vector<A_long>{1, 3, 2, 0, 4}));
    EXPECT_EQ(sorted({}), (std::vector<A_long>{}));
    EXPECT_EQ(sorted({5.0F}), (std::vector<A_long>{0}));
}

TEST(SortByRank, ZeroAndMinusZeroAreEqual) {
    EXPECT_EQ(sorted({0.0F, -0.0F, 1.0F, -0.0F, 0.0F, -1.0F}), (std::vector<A_long>{5, 0, 1, 3, 4, 2}));
}

TEST(SortByRank, WhatIsNotANumberComesLast) {
    EXPECT_EQ(sorted({notANumber, infinity, -notANumber, -infinity, 0.0F}), (std::vector<A_long>{3, 4, 1, 0, 2}));
}

TEST(SortByRank, TellsNeighbouringNumbersApart) {
    const float tiny = std::numeric_limits<float>::denorm_min();
    EXPECT_EQ(sorted({1.0F, std::nextafter(1.0F, 0.0F), tiny, -tiny, std::nextafter(-1.0F, -2.0F), -1.0F}),
              (std::vector<A_long>{4, 5, 3, 2, 1, 0}));
}

TEST(SortByRank, AgreesWithInsertionForEverySize) {
    Numbers numbers(5);
    for (const int count : {2, 3, 10, 100, 1000, 1023, 1024, 1025, 3000}) {
        for (const int kinds : {1, 2, 7, 1000000}) {
            std::vector<float> keys;
            for (int k = 0; k < count; ++k) {
                const float key = static_cast<float>(numbers.oneOf(0, kinds) - kinds / 2) * 0.37F;
                keys.push_back(numbers.oneOf(0, 50) == 0 ? notANumber : key);
            }
            EXPECT_EQ(sorted(keys), inserted(keys)) << count << " " << kinds;
        }
    }
}

TEST(SortByRank, TurnsFallingKeysRound) {
    EXPECT_EQ(sorted({3.0F, 2.0F, 1.0F}), (std::vector<A_long>{2, 1, 0}));
    EXPECT_EQ(sorted({3.0F, 2.0F, 2.0F, 1.0F}), (std::vector<A_long>{3, 1, 2, 0}));
    std::vector<float> rows;
    for (int k = 0; k < 4000; ++k) {
        rows.push_back(static_cast<float>(-(k / 40)));
    }
    EXPECT_EQ(sorted(rows), inserted(rows));
}

TEST(SortByRank, SortsManyKeysOfAllSizes) {
    Numbers numbers(6);
    std::vector<float> keys;
    for (int k = 0; k < 5000; ++k) {
        keys.push_back(static_cast<float>(std::ldexp(numbers.between(-1.0, 1.0), numbers.oneOf(-140, 127))));
    }
    keys[17] = infinity;
    keys[3000] = -infinity;
    EXPECT_EQ(sorted(keys), inserted(keys));
}

TEST(BuildOrder, GoesFromFarToNearByTheOriginsDepth) {
    std::vector<InstanceState> cells(4);
    const float depths[] = {10.0F, 500.0F, -20.0F, 500.0F};
    for (int k = 0; k < 4; ++k) {
        cells[k] = {};
        cells[k].matrix.m[14] = depths[k];
        cells[k].visible = k % 2 == 0;  // makes no difference
    }
    const OrderMap order = buildOrder(cells.data(), 4);
    EXPECT_EQ(indicesOf(order), (std::vector<A_long>{1, 3, 0, 2}));
    EXPECT_EQ(order[0].rank, rankOf(-500.0F));
    EXPECT_EQ(order[3].rank, rankOf(20.0F));
}

TEST(GridToSequence, WalksTheCellsInOrder) {
    GridToSequence cursor(3, 2);
    EXPECT_EQ(cursor.GetCount(), 6);
    for (A_long index = 0; index < 6; ++index) {
        EXPECT_FALSE(cursor.IsEnd());
        EXPECT_EQ(cursor.GetInd(), index);
        cursor.Next();
    }
    EXPECT_TRUE(cursor.IsEnd());
    cursor.Prev();
    EXPECT_EQ(cursor.GetInd(), 5);
    cursor.Reset();
    EXPECT_EQ(cursor.GetInd(), 0);
    cursor.skipToEnd();
    EXPECT_TRUE(cursor.IsEnd());
}

TEST(GridToSequence, AnEmptyGridIsAtItsEndAtOnce) {
    for (const A_long side : {0, 5}) {
        EXPECT_TRUE(GridToSequence(side, 0).IsEnd());
        EXPECT_TRUE(GridToSequence(0, side).IsEnd());
        const OrderMap order;
        EXPECT_TRUE(GridToSequenceByZ(order, side, 0).IsEnd());
    }
}

TEST(GridToSequenceByZ, WalksTheMap) {
    const OrderMap order = {{3, 2}, {7, 0}, {7, 1}};
    GridToSequenceByZ byZ(order, 3, 1);
    GridToSequence& cursor = byZ;
    for (const A_long index : {2, 0, 1}) {
        EXPECT_FALSE(cursor.IsEnd());
        EXPECT_EQ(cursor.GetInd(), index);
        cursor.Next();
    }
    EXPECT_TRUE(cursor.IsEnd());
    EXPECT_EQ(cursor.GetInd(), 1);  // the last index stays at the end
    cursor.Prev();
    EXPECT_EQ(cursor.GetInd(), 1);
    cursor.Prev();
    EXPECT_EQ(cursor.GetInd(), 0);
    EXPECT_EQ(byZ.indexAhead(0), 0);
    EXPECT_EQ(byZ.indexAhead(1), 1);
    EXPECT_EQ(byZ.indexAhead(100), 1);
    cursor.Reset();
    EXPECT_EQ(cursor.GetInd(), 2);
}

TEST(SamePlace, ComparesPlacesNotCellsInTheMap) {
    const OrderMap order = {{5, 1}, {5, 0}};
    GridToSequenceByZ left(order, 2, 1);
    GridToSequenceByZ right(order, 2, 1);
    EXPECT_TRUE(samePlace(left, right));
    right.Next();
    EXPECT_FALSE(samePlace(left, right));
    left.Next();
    left.Next();
    right.Next();
    EXPECT_TRUE(samePlace(left, right));
    GridToSequence plain(2, 1);
    GridToSequence other(2, 1);
    EXPECT_TRUE(samePlace(plain, other));
    other.Next();
    EXPECT_FALSE(samePlace(plain, other));
}

TEST(DrawOrder, IsByDepthOnlyWhenAskedFor) {
    std::vector<InstanceState> cells(2);
    cells[0] = cells[1] = {};
    cells[1].matrix.m[14] = 100.0F;
    DrawOrder plain(false, 2, 1, cells.data());
    EXPECT_EQ(dynamic_cast<GridToSequenceByZ*>(&plain.left()), nullptr);
    EXPECT_EQ(plain.left().GetInd(), 0);
    DrawOrder byZ(true, 2, 1, cells.data());
    EXPECT_NE(dynamic_cast<GridToSequenceByZ*>(&byZ.left()), nullptr);
    EXPECT_NE(dynamic_cast<GridToSequenceByZ*>(&byZ.right()), nullptr);
    EXPECT_EQ(byZ.left().GetInd(), 1);
    EXPECT_EQ(byZ.right().GetInd(), 1);
}

TEST(DrawOrder, NeedsTheCameraOptionAndTheSortingOption) {
    for (const bool camera : {false, true}) {
        for (const bool sort : {false, true}) {
            GridScene scene;
            scene.snapshot.UseCompCamera = camera;
            scene.snapshot.SortByZ = sort;
            scene.snapshot.Rotation3DY = 30.0;  // the first columns are nearer
            GridEvaluator evaluator = scene.evaluator();
            GridInstances instances(evaluator);
            DrawOrder order = drawOrderOf(instances);
            const bool byZ = dynamic_cast<GridToSequenceByZ*>(&order.left()) != nullptr;
            EXPECT_EQ(byZ, camera && sort);
            EXPECT_EQ(evaluator.sortsByZ(), camera && sort);
            float last = infinity;
            for (; byZ && !order.left().IsEnd(); order.left().Next()) {
                const float depth = instances.cells()[order.left().GetInd()].matrix.m[14];
                EXPECT_LE(depth, last);
                last = depth;
            }
        }
    }
}

TEST(DrawOrderDeathTest, CursorsDoNotLeaveTheGrid) {
    GridToSequence plain(2, 1);
    EXPECT_DEATH(plain.Prev(), "mInd >= 0");
    plain.Next();
    plain.Next();
    EXPECT_DEATH(plain.Next(), "mInd <= mCount");
    const OrderMap order = {{5, 0}};
    GridToSequenceByZ byZ(order, 1, 1);
    EXPECT_DEATH(byZ.Prev(), "mCurIt != mOrder.begin\\(\\)");
    byZ.Next();
    EXPECT_DEATH(byZ.Next(), "mCurIt != mOrder.end\\(\\)");
}

TEST(DrawOrderDeathTest, TheMapHasAnEntryForEveryCell) {
    const OrderMap order = {{5, 0}};
    EXPECT_DEATH(GridToSequenceByZ(order, 2, 1), "mOrder.size\\(\\) == GetCount\\(\\)");
}

}  // namespace
}  // namespace Tessavoy
