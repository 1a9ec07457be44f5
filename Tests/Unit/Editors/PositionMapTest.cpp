#include "Source/Editors/PositionMap.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

namespace Tessavoy {
namespace {

constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinite = std::numeric_limits<float>::infinity();

TEST(PositionMap, OrderIsAStrictWeakOrderForEveryKindOfFloat) {
    const std::vector<float> positions = {-Infinite, -1.0f, -0.0f, 0.0f, 0.5f, Infinite, NotANumber, -NotANumber};
    const PositionOrder before;
    const auto same = [&](float a, float b) { return !before(a, b) && !before(b, a); };
    for (const float a : positions) {
        EXPECT_FALSE(before(a, a));
        for (const float b : positions) {
            EXPECT_FALSE(before(a, b) && before(b, a)) << a << " " << b;
            for (const float c : positions) {
                EXPECT_TRUE(!before(a, b) || !before(b, c) || before(a, c)) << a << " " << b << " " << c;
                EXPECT_TRUE(!same(a, b) || !same(b, c) || same(a, c)) << a << " " << b << " " << c;
            }
        }
    }
}

TEST(PositionMap, NotANumberIsOneKeyAtTheEndAndBothZeroesAreOneKey) {
    PositionMap<int> points;
    for (const float position : {NotANumber, 1.0f, -NotANumber, Infinite, 0.0f, -0.0f}) {
        points.insert_or_assign(position, static_cast<int>(points.size()));
    }
    ASSERT_EQ(points.size(), 4u);
    EXPECT_EQ(points.begin()->first, 0.0f);
    EXPECT_TRUE(std::isnan(points.rbegin()->first));
    EXPECT_EQ(std::next(points.rbegin())->first, Infinite);
}

TEST(PositionMap, FirstPointAfterIsStrictlyAfter) {
    const PositionMap<int> points = {{0.0f, 1}, {0.5f, 2}, {1.0f, 3}};
    EXPECT_EQ(firstPointAfter(points, -0.1f)->second, 1);
    EXPECT_EQ(firstPointAfter(points, 0.0f)->second, 2);
    EXPECT_EQ(firstPointAfter(points, 0.49f)->second, 2);
    EXPECT_EQ(firstPointAfter(points, 0.5f)->second, 3);
    EXPECT_EQ(firstPointAfter(points, 1.0f), points.end());
    EXPECT_EQ(firstPointAfter(points, NotANumber), points.end());
}

TEST(PositionMap, NoPositionIsBeforeNotANumber) {
    const PositionMap<int> points = {{0.0f, 1}, {NotANumber, 2}};
    EXPECT_EQ(firstPointAfter(points, -1.0f)->second, 1);
    EXPECT_EQ(firstPointAfter(points, 0.0f), points.end());
    EXPECT_EQ(firstPointAfter(points, NotANumber), points.end());
}

TEST(PositionMap, TolerancePassesATenThousandthAndEqualOddities) {
    EXPECT_TRUE(sameWithinTolerance(0.5f, 0.50009f));
    EXPECT_FALSE(sameWithinTolerance(0.5f, 0.50011f));
    EXPECT_FALSE(sameWithinTolerance(0.5f, 0.49989f));
    EXPECT_TRUE(sameWithinTolerance(Infinite, Infinite));
    EXPECT_FALSE(sameWithinTolerance(Infinite, -Infinite));
    EXPECT_TRUE(sameWithinTolerance(NotANumber, NotANumber));
    EXPECT_FALSE(sameWithinTolerance(NotANumber, 0.5f));
}

}  // namespace
}  // namespace Tessavoy
