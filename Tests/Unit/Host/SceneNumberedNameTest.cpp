#include "Host/Scene/NumberedName.h"

#include <gtest/gtest.h>

namespace TessavoyHost {
namespace {

std::string filled(const std::string& name, int number) {
    const auto places = findNumberPlaces(name);
    return places.size() == 1 ? NumberedName(name, places[0]).with(number) : std::to_string(places.size()) + " places";
}

TEST(SceneNumberedName, HashSignsAreFilledWithZeros) {
    EXPECT_EQ(filled("out.####.png", 12), "out.0012.png");
    EXPECT_EQ(filled("####", 0), "0000");
    EXPECT_EQ(filled("a##", 7), "a07");
}

TEST(SceneNumberedName, BracketsBelongToThePlace) {
    EXPECT_EQ(filled("out_[####].png", 12), "out_0012.png");
    EXPECT_EQ(filled("[[###]]", 5), "[005]");
    EXPECT_EQ(filled("[##", 5), "[05");
    EXPECT_EQ(filled("##]", 5), "05]");
    EXPECT_EQ(filled("[take 2] ##", 5), "[take 2] 05");
}

TEST(SceneNumberedName, PercentPlacesAreThoseOfPrintf) {
    EXPECT_EQ(filled("%04d.png", 12), "0012.png");
    EXPECT_EQ(filled("%d.png", 12), "12.png");
    EXPECT_EQ(filled("%010d", 3), "0000000003");
    EXPECT_EQ(filled("%01d", 12), "12");
}

TEST(SceneNumberedName, OtherPercentSignsAreText) {
    EXPECT_EQ(filled("100%.png", 1), "0 places");
    EXPECT_EQ(filled("%4d", 1), "0 places");
    EXPECT_EQ(filled("%%d", 1), "0 places");
    EXPECT_EQ(filled("%04x", 1), "0 places");
    EXPECT_EQ(filled("%0004d", 1), "0 places");
    EXPECT_EQ(filled("%", 1), "0 places");
}

TEST(SceneNumberedName, LongNumbersTakeMoreDigits) {
    EXPECT_EQ(filled("##", 12345), "12345");
}

TEST(SceneNumberedName, AllPlacesAreFoundInOrder) {
    const auto places = findNumberPlaces("a##b[###]c%02d");
    ASSERT_EQ(places.size(), 3u);
    EXPECT_EQ(places[0].start, 1u);
    EXPECT_EQ(places[0].length, 2u);
    EXPECT_EQ(places[1].start, 4u);
    EXPECT_EQ(places[1].length, 5u);
    EXPECT_EQ(places[2].start, 10u);
    EXPECT_EQ(places[2].length, 4u);
}

TEST(SceneNumberedName, ALoneHashIsMarked) {
    ASSERT_EQ(findNumberPlaces("take #2").size(), 1u);
    EXPECT_TRUE(findNumberPlaces("take #2")[0].isLoneHash);
    EXPECT_TRUE(findNumberPlaces("[#]")[0].isLoneHash);
    EXPECT_FALSE(findNumberPlaces("##")[0].isLoneHash);
    EXPECT_FALSE(findNumberPlaces("%d")[0].isLoneHash);
}

}  // namespace
}  // namespace TessavoyHost
