#include "Host/Scene/Tracks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;

const std::string place = "scene.json: effect.parameters.CountX";

TEST(SceneTracks, AConstantIsOneKeyAtZero) {
    auto scene = rightScene();
    scene["effect"]["parameters"]["CountX"] = 7;
    const auto track = readJson(scene).parameters.at(1);
    ASSERT_EQ(track.keys.size(), 1u);
    EXPECT_EQ(track.keys[0].time, 0.0);
    EXPECT_EQ(std::get<double>(track.keys[0].value), 7.0);
}

TEST(SceneTracks, KeysCarryTimeValueAndEase) {
    auto scene = rightScene();
    scene["effect"]["parameters"]["CountX"]["keys"] = {{{"time", -1}, {"value", 1}},
                                                       {{"time", 0.5}, {"value", 2}, {"ease", "hold"}},
                                                       {{"time", 0.75}, {"value", 3}, {"ease", "smooth"}},
                                                       {{"time", 9}, {"value", 4}, {"ease", "linear"}}};
    const auto keys = readJson(scene).parameters.at(1).keys;
    ASSERT_EQ(keys.size(), 4u);
    const std::vector<double> times{-1, 0.5, 0.75, 9};
    const std::vector<Ease> eases{Ease::Linear, Ease::Hold, Ease::Smooth, Ease::Linear};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_EQ(keys[i].time, times[i]);
        EXPECT_EQ(keys[i].ease, eases[i]);
        EXPECT_EQ(std::get<double>(keys[i].value), static_cast<double>(i + 1));
    }
}

TEST(SceneTracks, GradientsMayHaveKeysToo) {
    const json gradient = {{"points", json::array()}};
    auto scene = rightScene();
    scene["effect"]["parameters"]["Gradient.Custom1"]["keys"] = {{{"time", 0}, {"value", gradient}}};
    EXPECT_EQ(std::get<ArbitraryValue>(readJson(scene).parameters.at(17).keys.at(0).value).flat.size(), 4u);
}

TEST(SceneTracks, TimesMustRiseStrictly) {
    const json keys = {{{"time", 1}, {"value", 1}}, {{"time", 1}, {"value", 2}}, {{"time", 0.5}, {"value", 3}}};
    EXPECT_THAT(parameterRefusal("CountX", {{"keys", keys}}),
                ElementsAre(place + ".keys[1].time: times must rise: 1 comes after 1",
                            place + ".keys[2].time: times must rise: 0.5 comes after 1"));
}

TEST(SceneTracks, EachKeyIsChecked) {
    const json keys = {
        {{"time", 0}, {"value", -1}}, {{"value", 1}, {"eas", "hold"}}, {{"time", 2}, {"value", 1}, {"ease", "smoth"}}};
    EXPECT_THAT(
        parameterRefusal("CountX", {{"keys", keys}}),
        ElementsAre(place + ".keys[0].value: -1 is out of range; it goes from 0 to 100000",
                    place + ".keys[1].eas: unknown key; did you mean \"ease\"?", place + ".keys[1].time: missing",
                    place + ".keys[2].ease: \"smoth\" is none of \"linear\", \"hold\", \"smooth\"; did you mean "
                            "\"smooth\"?"));
}

TEST(SceneTracks, ThereIsAtLeastOneKey) {
    EXPECT_THAT(parameterRefusal("CountX", {{"keys", json::array()}}),
                ElementsAre(place + ".keys: must hold at least one key"));
    EXPECT_THAT(parameterRefusal("CountX", {{"keys", 1}}), ElementsAre(place + ".keys: must be a list, not a number"));
    EXPECT_THAT(parameterRefusal("CountX", {{"keys", {{{"time", 0}, {"value", 1}}}}, {"loop", true}}),
                ElementsAre(place + ".loop: unknown key"));
}

TEST(SceneTracks, WhatTheHostKeepsFixedHasNoKeys) {
    EXPECT_THAT(parameterRefusal("HexGrid", {{"keys", {{{"time", 0}, {"value", true}}}}}),
                ElementsAre("scene.json: effect.parameters.HexGrid: can't vary over time; give one value"));
    auto scene = rightScene();
    scene["effect"]["parameters"]["Source"]["keys"] = {{{"time", 0}, {"value", "Red"}}};
    EXPECT_EQ(readJson(scene).parameters.at(9).keys.size(), 1u);
}

}  // namespace
}  // namespace TessavoyHost
