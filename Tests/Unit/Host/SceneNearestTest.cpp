#include "Host/Scene/Nearest.h"

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

TEST(SceneNearest, CountsInsertionsDeletionsReplacementsAndSwaps) {
    EXPECT_EQ(editDistance("", "abc"), 3u);
    EXPECT_EQ(editDistance("abc", ""), 3u);
    EXPECT_EQ(editDistance("kitten", "sitting"), 3u);  // k for s, e for i, g at the end
    EXPECT_EQ(editDistance("ab", "ba"), 1u);
    EXPECT_EQ(editDistance("ca", "abc"), 3u);  // a swapped pair is not edited again
    EXPECT_EQ(editDistance("InstanceSize.Valu", "InstanceSize.Value"), 1u);
}

TEST(SceneNearest, LetterCaseCostsNothing) {
    EXPECT_EQ(editDistance("countx", "CountX"), 0u);
}

TEST(SceneNearest, SuggestsTheNearestOfSeveral) {
    EXPECT_EQ(nearestName("CountZ", {"CenterZ", "CountX", "CountY"}), "CountX");
    EXPECT_EQ(nearestName("Centre", {"CenterZ", "CountX"}), "CenterZ");  // the swap of r and e, and a Z
}

TEST(SceneNearest, SuggestsNothingWhenAllAreFar) {
    EXPECT_EQ(nearestName("abcdefgh", {"CenterZ", "CountX"}), std::nullopt);
    EXPECT_EQ(nearestName("xy", {"in"}), std::nullopt);
    EXPECT_EQ(didYouMean("xy", {"in"}), "");
}

TEST(SceneNearest, SuggestsWhatGoesOnAfterADot) {
    EXPECT_EQ(nearestName("InstanceSize", {"CountX", "InstanceSize.Value", "InstanceSize.Seed"}), "InstanceSize.Value");
    EXPECT_EQ(nearestName("InstanceSiz", {"InstanceSize.Value"}), std::nullopt);
}

TEST(SceneNearest, AsksInWords) {
    EXPECT_EQ(didYouMean("widht", {"width"}), "; did you mean \"width\"?");
}

}  // namespace
}  // namespace TessavoyHost
