#include "Host/Scene/CompositionReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;

const std::string place = "scene.json: composition";

Composition readWith(const std::string& key, const json& value) {
    auto scene = rightScene();
    scene["composition"][key] = value;
    return readJson(scene).composition;
}

Lines refusalWith(const std::string& key, const json& value) {
    auto scene = rightScene();
    scene["composition"][key] = value;
    return refusal(scene);
}

TEST(SceneComposition, IsReadWhole) {
    const auto composition = readJson(rightScene()).composition;
    EXPECT_EQ(composition.width, 640);
    EXPECT_EQ(composition.height, 360);
    EXPECT_EQ(composition.frameRate, (Rational{25, 1}));
    EXPECT_EQ(composition.duration, 4.0);
    EXPECT_EQ(composition.frameCount(), 100);
}

TEST(SceneComposition, SizesGoToThirtyThousand) {
    EXPECT_EQ(readWith("width", 1).width, 1);
    EXPECT_EQ(readWith("height", 30000).height, 30000);
    EXPECT_THAT(refusalWith("width", 0), ElementsAre(place + ".width: 0 is out of range; it goes from 1 to 30000"));
    EXPECT_THAT(refusalWith("height", 30001),
                ElementsAre(place + ".height: 30001 is out of range; it goes from 1 to 30000"));
    EXPECT_THAT(refusalWith("width", 10.5), ElementsAre(place + ".width: must be a whole number, not 10.5"));
}

TEST(SceneComposition, FrameRatesAreNumbersOrFractions) {
    EXPECT_EQ(readWith("frameRate", "30000/1001").frameRate, (Rational{30000, 1001}));
    EXPECT_EQ(readWith("frameRate", 29.97).frameRate, (Rational{2997, 100}));
    EXPECT_EQ(readWith("frameRate", 23.976).frameRate, (Rational{2997, 125}));
    EXPECT_EQ(readWith("frameRate", 30000.0 / 1001.0).frameRate, (Rational{30000, 1001}));
    EXPECT_EQ(readWith("frameRate", 0.5).frameRate, (Rational{1, 2}));
}

TEST(SceneComposition, OtherFrameRatesAreRefused) {
    for (const char* text : {"", "25", "/1", "25/", "30000/0", "-25/1", "25/1x", "1e3/1", " 25/1", "9999999999/1"}) {
        EXPECT_THAT(refusalWith("frameRate", text),
                    ElementsAre(place + ".frameRate: must be a number or a fraction such as \"30000/1001\""))
            << text;
    }
    EXPECT_THAT(refusalWith("frameRate", 0), ElementsAre(place + ".frameRate: must be above 0, not 0"));
    EXPECT_THAT(refusalWith("frameRate", -25), ElementsAre(place + ".frameRate: must be above 0, not -25"));
    EXPECT_THAT(refusalWith("frameRate", nullptr), ElementsAre(place + ".frameRate: must be a number, not null"));
}

TEST(SceneComposition, LastsAtLeastOneFrameAndNoLongerThanTheClock) {
    EXPECT_EQ(readWith("duration", 0.04).frameCount(), 1);
    EXPECT_THAT(refusalWith("duration", 0), ElementsAre(place + ".duration: must be above 0, not 0"));
    // 2^31 - 1 units of 1/25 s are 85899345.88 s.
    EXPECT_THAT(
        refusalWith("duration", 85899346),
        ElementsAre(place + ".duration: 85899346 seconds are more than the host's clock holds at 25 units a second"));
    EXPECT_EQ(readWith("duration", 85899345).duration, 85899345.0);
}

TEST(SceneComposition, EveryKeyIsRequired) {
    auto scene = rightScene();
    scene["composition"] = json::object();
    EXPECT_THAT(refusal(scene), ElementsAre(place + ".width: missing", place + ".height: missing",
                                            place + ".frameRate: missing", place + ".duration: missing"));
}

TEST(SceneComposition, UnknownKeysAreNamed) {
    EXPECT_THAT(refusalWith("framerate", 25),
                ElementsAre(place + ".framerate: unknown key; did you mean \"frameRate\"?"));
}

TEST(SceneComposition, TheSimplestFractionIsFound) {
    EXPECT_EQ(simplestFraction(1.0 / 3), (Rational{1, 3}));
    EXPECT_EQ(simplestFraction(59.94), (Rational{2997, 50}));
    EXPECT_EQ(simplestFraction(1e10), std::nullopt);
}

}  // namespace
}  // namespace TessavoyHost
