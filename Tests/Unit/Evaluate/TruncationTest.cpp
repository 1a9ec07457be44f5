#include "Source/Evaluate/Truncation.h"

#include <gtest/gtest.h>

#include <limits>

namespace Tessavoy {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

}  // namespace

TEST(Truncation, FractionsAreCutTowardZero) {
    EXPECT_EQ(truncated(2.9), 2);
    EXPECT_EQ(truncated(-2.9), -2);
    EXPECT_EQ(truncated(0.9), 0);
    EXPECT_EQ(truncated(-0.9), 0);
    EXPECT_EQ(truncated(2147483647.5), 2147483647);
    EXPECT_EQ(truncated(-2147483647.5), -2147483647);
}

TEST(Truncation, WhatDoesNotFitBecomesTheNearestBound) {
    EXPECT_EQ(truncated(2147483648.0), 2147483647);
    EXPECT_EQ(truncated(1e300), 2147483647);
    EXPECT_EQ(truncated(infinity), 2147483647);
    EXPECT_EQ(truncated(-2147483648.0), -2147483647 - 1);
    EXPECT_EQ(truncated(-2147483649.0), -2147483647 - 1);
    EXPECT_EQ(truncated(-infinity), -2147483647 - 1);
}

TEST(Truncation, NumberThatIsNoneBecomesZero) {
    EXPECT_EQ(truncated(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace Tessavoy
