#include "Host/Scene/Overrides.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using ::testing::ElementsAre;
using ::testing::StartsWith;

using Sets = std::vector<std::pair<std::string, std::string>>;

ParameterValue valueSet(const Sets& sets, const std::string& id) {
    return readJson(rightScene(), {sets, {}}).parameters.at(*fakeTable().index(id)).keys.at(0).value;
}

Lines setRefusal(const Sets& sets) {
    return textRefusal(rightScene().dump(), {sets, {}}, ExitStatus::CommandLine);
}

TEST(SceneOverrides, TakeJsonOrPlainText) {
    EXPECT_EQ(std::get<double>(valueSet({{"CountX", "40"}}, "CountX")), 40.0);
    EXPECT_EQ(std::get<double>(valueSet({{"HexGrid", "true"}}, "HexGrid")), 1.0);
    EXPECT_EQ(std::get<double>(valueSet({{"ShapeType", "Textured Quad"}}, "ShapeType")), 2.0);
    EXPECT_EQ(std::get<double>(valueSet({{"ShapeType", "\"Textured Quad\""}}, "ShapeType")), 2.0);
    EXPECT_EQ(std::get<ColorValue>(valueSet({{"InstanceColor", "#010203"}}, "InstanceColor")).green, 2);
    EXPECT_EQ(std::get<Point2>(valueSet({{"CenterPos", "[1, 2]"}}, "CenterPos")).y, 2.0);
    EXPECT_EQ(std::get<LayerReference>(valueSet({{"Layer.Custom1", "Red"}}, "Layer.Custom1")).layer, 1);
    EXPECT_EQ(std::get<LayerReference>(valueSet({{"Layer.Custom1", "null"}}, "Layer.Custom1")).layer, -1);
}

TEST(SceneOverrides, LayersWithNamesLikeNumbersAreFound) {
    auto scene = rightScene();
    scene["layers"][1]["name"] = "12";
    const auto project = readJson(scene, {{{"Layer.Custom1", "12"}}, {}});
    EXPECT_EQ(std::get<LayerReference>(project.parameters.at(14).keys.at(0).value).layer, 1);
}

TEST(SceneOverrides, StandInTheScenesPlaceAndTheLastWins) {
    auto scene = rightScene();
    scene["effect"]["parameters"]["CountX"] = 1;
    const auto project = readJson(scene, {{{"CountX", "2"}, {"CountX", "3"}}, {}});
    EXPECT_EQ(std::get<double>(project.parameters.at(1).keys.at(0).value), 3.0);
}

TEST(SceneOverrides, MayHaveKeys) {
    const Sets sets{{"CountX", R"({"keys": [{"time": 0, "value": 1}, {"time": 1, "value": 2}]})"}};
    EXPECT_EQ(readJson(rightScene(), {sets, {}}).parameters.at(1).keys.size(), 2u);
}

TEST(SceneOverrides, EachWrongOneIsNamed) {
    EXPECT_THAT(setRefusal({{"CountZ", "1"}, {"CountX", "-1"}, {"HexGrid", "yes"}}),
                ElementsAre("--set CountZ: unknown parameter; did you mean \"CountX\"?",
                            "--set CountX: -1 is out of range; it goes from 0 to 100000",
                            "--set HexGrid: must be true or false, not text"));
}

TEST(SceneOverrides, AListOrObjectMustBeRightJson) {
    EXPECT_THAT(setRefusal({{"CenterPos", "[1, 2"}}),
                ElementsAre(StartsWith("--set CenterPos: line 1, column 6: syntax error")));
    EXPECT_THAT(setRefusal({{"CountX", R"({"keys": 1, "keys": 2})"}}), ElementsAre("--set CountX: keys: stands twice"));
}

TEST(SceneOverrides, TheScriptComesFromItsFile) {
    const auto file = std::filesystem::temp_directory_path() / "tessavoy-scene-overrides.lua";
    std::ofstream(file) << "z = 2";
    auto scene = rightScene();
    scene["effect"]["scriptText"] = "z = 1";
    EXPECT_EQ(readJson(scene, {{}, file}).script, "z = 2");
    std::filesystem::remove(file);
    EXPECT_THAT(textRefusal(scene.dump(), {{}, "no/such.lua"}, ExitStatus::CommandLine),
                ElementsAre("--script: no/such.lua: No such file or directory"));
}

TEST(SceneOverrides, AScriptThatIsReplacedNeedNotBeThere) {
    const auto file = std::filesystem::temp_directory_path() / "tessavoy-scene-replaced.lua";
    std::ofstream(file) << "z = 2";
    auto scene = rightScene();
    scene["effect"]["script"] = "no/such.lua";
    EXPECT_THAT(refusal(scene), ElementsAre("scene.json: effect.script: no/such.lua: No such file or directory"));
    EXPECT_EQ(readJson(scene, {{}, file}).script, "z = 2");
    scene["effect"]["script"] = 7;
    EXPECT_THAT(textRefusal(scene.dump(), {{}, file}),
                ElementsAre("scene.json: effect.script: must be text, not a number"));
    std::filesystem::remove(file);
}

TEST(SceneOverrides, DeepNestingIsRefused) {
    const std::size_t depth = 200000;
    EXPECT_THAT(setRefusal({{"CountX", std::string(depth, '[') + std::string(depth, ']')}}),
                ElementsAre("--set CountX: must be a number, not a list"));
}

TEST(SceneOverrides, AWrongSceneIsToldFirst) {
    EXPECT_THAT(textRefusal("{", {{{"CountZ", "1"}}, {}}), ElementsAre(StartsWith("scene.json: line 1")));
}

}  // namespace
}  // namespace TessavoyHost
