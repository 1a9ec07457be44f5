#include "Source/Evaluate/RandomSource.h"

#include "Source/Evaluate/SeededRandom.h"

#include <gtest/gtest.h>

namespace Tessavoy {

TEST(RandomSource, DrawIsSpreadOverTheRange) {
    const RandomSource random{5, 10.0, 30.0};
    EXPECT_EQ(random.sample(3, 4), 20.0 * seededRandom(5, 3, 4) + 10.0);
    for (A_long k = 0; k < 200; ++k) {
        EXPECT_GE(random.sample(k, 1), 10.0);
        EXPECT_LE(random.sample(k, 1), 30.0);
    }
}

TEST(RandomSource, EmptyOrReversedRangeGivesItsMinimum) {
    EXPECT_EQ((RandomSource{5, 7.0, 7.0}.sample(1, 2)), 7.0);
    EXPECT_EQ((RandomSource{5, 7.0, -7.0}.sample(1, 2)), 7.0);
    EXPECT_EQ(RandomSource{}.sample(1, 2), 0.0);
}

TEST(RandomSource, NegativeNumbersEnterAsTwosComplement) {
    const RandomSource random{-2, 0.0, 1.0};
    EXPECT_EQ(random.sample(-1, -3), seededRandom(0xFFFFFFFEu, 0xFFFFFFFFu, 0xFFFFFFFDu));
}

TEST(RandomSource, OrderOfTheTwoNumbersMatters) {
    const RandomSource random{1, 0.0, 1.0};
    EXPECT_NE(random.sample(2, 3), random.sample(3, 2));
    EXPECT_EQ(random.sample(2, 3), random.sample(2, 3));
}

}  // namespace Tessavoy
