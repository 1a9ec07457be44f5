#include "Host/Command/FrameList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;

std::string refusal(const std::string& list, int frameCount = 100) {
    try {
        parseFrameList(list, frameCount);
    } catch (const HostError& error) {
        return error.status() == ExitStatus::CommandLine ? error.what() : "another status";
    }
    return "accepted";
}

TEST(CommandFrameList, OneFrame) {
    EXPECT_THAT(parseFrameList("12", 100), ElementsAre(12));
    EXPECT_THAT(parseFrameList("0", 1), ElementsAre(0));
}

TEST(CommandFrameList, Ranges) {
    EXPECT_THAT(parseFrameList("3-6", 100), ElementsAre(3, 4, 5, 6));
    EXPECT_THAT(parseFrameList("5-5", 100), ElementsAre(5));
}

TEST(CommandFrameList, StepsCountFromTheFirst) {
    EXPECT_THAT(parseFrameList("1-12x5", 100), ElementsAre(1, 6, 11));
    EXPECT_THAT(parseFrameList("1-11x5", 100), ElementsAre(1, 6, 11));
    EXPECT_THAT(parseFrameList("2-4x1", 100), ElementsAre(2, 3, 4));
    EXPECT_THAT(parseFrameList("2-4x99", 100), ElementsAre(2));
}

TEST(CommandFrameList, TheOthersAreTheRest) {
    EXPECT_THAT(parseFrameList("1-8y5", 100), ElementsAre(2, 3, 4, 5, 7, 8));
    EXPECT_THAT(parseFrameList("0-3y2", 100), ElementsAre(1, 3));
}

TEST(CommandFrameList, PartsKeepTheirOrder) {
    EXPECT_THAT(parseFrameList("7,0-4x2,0-4y2", 100), ElementsAre(7, 0, 2, 4, 1, 3));
}

TEST(CommandFrameList, NoFrameTwice) {
    EXPECT_EQ(refusal("1,2,1"), "--frames: frame 1 is named twice");
    EXPECT_EQ(refusal("0-10,10-12"), "--frames: frame 10 is named twice");
}

TEST(CommandFrameList, NoFrameOutside) {
    EXPECT_EQ(refusal("99"), "accepted");
    EXPECT_EQ(refusal("100"), "--frames: frame 100 lies outside the composition, whose frames are 0 to 99");
    EXPECT_EQ(refusal("90-120"), "--frames: frame 100 lies outside the composition, whose frames are 0 to 99");
    EXPECT_EQ(refusal("200-300"), "--frames: frame 200 lies outside the composition, whose frames are 0 to 99");
    EXPECT_EQ(refusal("0-2147483647"), "--frames: frame 100 lies outside the composition, whose frames are 0 to 99");
}

TEST(CommandFrameList, RangesRiseAndStepsAreAtLeastOne) {
    EXPECT_EQ(refusal("9-3"), "--frames: \"9-3\": 3 comes before 9");
    EXPECT_EQ(refusal("0-9x0"), "--frames: \"0-9x0\": the step must be at least 1");
    EXPECT_EQ(refusal("0-9y0"), "--frames: \"0-9y0\": the step must be at least 1");
}

TEST(CommandFrameList, AListLeavesAtLeastOneFrame) {
    EXPECT_EQ(refusal("0-9y1"), "--frames: \"0-9y1\" leaves no frame");
}

// Told before room is made for the frames, so in no time.
TEST(CommandFrameList, NoMoreFramesThanARunTakes) {
    constexpr int all = 2147483647;
    const std::string why = ": with it the list has more than 10000000 frames, too many for one run; render in several";
    EXPECT_EQ(refusal("0-10000000", all), "--frames: \"0-10000000\"" + why);
    EXPECT_EQ(refusal("7,100-10000099", all), "--frames: \"100-10000099\"" + why);
    EXPECT_EQ(refusal("0-2147483646", all), "--frames: \"0-2147483646\"" + why);
    EXPECT_EQ(refusal("0-2147483646y2147483646", all), "--frames: \"0-2147483646y2147483646\"" + why);
    EXPECT_EQ(parseFrameList("0-9999999", all).size(), 10000000u);
}

TEST(CommandFrameList, WorkGoesWithTheFramesThatAreNamed) {
    constexpr int all = 2147483647;
    EXPECT_THAT(parseFrameList("5-2147483646x1000000000", all), ElementsAre(5, 1000000005, 2000000005));
    EXPECT_THAT(parseFrameList("2147483645-2147483646x2", all), ElementsAre(2147483645));
    EXPECT_EQ(refusal("0-2147483646y1", all), "--frames: \"0-2147483646y1\" leaves no frame");
}

TEST(CommandFrameList, OtherTextsAreRefused) {
    for (const std::string part :
         {"", "x", "-5", "+5", "1-", "1-2x", "1x2", "1-2z3", "1-2x3x4", " 1", "1 ", "1.5", "1--2", "99999999999"}) {
        EXPECT_EQ(refusal(part), "--frames: \"" + part +
                                     "\" names no frames; write such as 12, 0-99, 0-99x5 or 0-99y5, joined by commas");
    }
    EXPECT_NE(refusal("1,"), "accepted");
    EXPECT_NE(refusal(",1"), "accepted");
    EXPECT_NE(refusal("1,,2"), "accepted");
}

TEST(CommandFrameList, FramesInWordsJoinRuns) {
    EXPECT_EQ(framesInWords({7, 12, 13, 14, 3}), "3, 7, 12-14");
    EXPECT_EQ(framesInWords({5}), "5");
    EXPECT_EQ(framesInWords({}), "");
}

}  // namespace
}  // namespace TessavoyHost
