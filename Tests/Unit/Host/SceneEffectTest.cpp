#include "Host/Scene/EffectReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;
using ::testing::Pair;

const std::string place = "scene.json: effect";

json withEffect(const std::string& key, const json& value) {
    auto scene = rightScene();
    scene["effect"][key] = value;
    return scene;
}

TEST(SceneEffect, IsAppliedToTheLayerOfThatName) {
    EXPECT_EQ(readJson(withEffect("layer", "Red")).effectLayer, 1);
    EXPECT_THAT(refusal(withEffect("layer", "Plat")),
                ElementsAre(place + ".layer: there is no layer \"Plat\"; did you mean \"Plate\"?"));
    auto scene = rightScene();
    scene["effect"].erase("layer");
    EXPECT_THAT(refusal(scene), ElementsAre(place + ".layer: missing"));
}

TEST(SceneEffect, ParametersAreFoundByTheirIds) {
    const auto project = readJson(withEffect("parameters", {{"CountX", 3}, {"Float.Custom2", 1}}));
    EXPECT_EQ(project.parameters.size(), 2u);
    EXPECT_TRUE(project.parameters.contains(1));
    EXPECT_TRUE(project.parameters.contains(13));
}

TEST(SceneEffect, AnUnknownParameterIsSuggested) {
    EXPECT_THAT(parameterRefusal("InstanceSize.Valu", 1),
                ElementsAre(place + ".parameters.\"InstanceSize.Valu\": unknown parameter; did you mean "
                                    "\"InstanceSize.Value\"?"));
    EXPECT_THAT(
        parameterRefusal("InstanceSize", 1),
        ElementsAre(place + ".parameters.InstanceSize: unknown parameter; did you mean \"InstanceSize.Value\"?"));
    EXPECT_THAT(parameterRefusal("countx", 1),
                ElementsAre(place + ".parameters.countx: unknown parameter; did you mean \"CountX\"?"));
}

TEST(SceneEffect, GroupsButtonsAndTheScriptTakeNoValue) {
    EXPECT_THAT(parameterRefusal("InstanceSize.GroupBegin", 1),
                ElementsAre(place + ".parameters.\"InstanceSize.GroupBegin\": is a group and takes no value"));
    EXPECT_THAT(parameterRefusal("ShowZBounds", 1),
                ElementsAre(place + ".parameters.ShowZBounds: is a button and takes no value"));
    EXPECT_THAT(parameterRefusal("Script", "x = 1"),
                ElementsAre(place + ".parameters.Script: is given as \"script\" or \"scriptText\" of the effect"));
}

TEST(SceneEffect, PartsHaveTheirTypes) {
    EXPECT_THAT(refusal(withEffect("parameters", json::array())),
                ElementsAre(place + ".parameters: must be an object, not a list"));
    EXPECT_THAT(refusal(withEffect("names", "x")), ElementsAre(place + ".names: must be an object, not text"));
    EXPECT_THAT(refusal(withEffect("parameter", json::object())),
                ElementsAre(place + ".parameter: unknown key; did you mean \"parameters\"?"));
}

TEST(SceneEffect, SlotNamesStandUnderDiskIds) {
    const auto project = readJson(
        withEffect("names", {{"Float.Custom1", "amount"}, {"Noise.Custom6", "wind"}, {"Layer.Custom1", "wind"}}));
    EXPECT_THAT(project.slotNames, ElementsAre(Pair(112, "amount"), Pair(114, "wind"), Pair(119, "wind")));
}

TEST(SceneEffect, OnlySlotsHaveNames) {
    const std::string names = place + ".names.";
    EXPECT_THAT(refusal(withEffect("names", {{"CountX", "a"}})), ElementsAre(names + "CountX: is no custom slot"));
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom3", "a"}})),
                ElementsAre(names + "\"Float.Custom3\": is no custom slot; did you mean \"Float.Custom1\"?"));
    EXPECT_EQ(refusal(withEffect("names", {{"Noise.Custom6.GroupBegin", "a"}})).size(), 1u);
    EXPECT_EQ(refusal(withEffect("names", {{"Noise.Custom6.Multiplier", "a"}})).size(), 1u);
}

TEST(SceneEffect, SlotNamesHaveAtMost31Bytes) {
    const std::string longest(31, 'x');
    EXPECT_EQ(readJson(withEffect("names", {{"Float.Custom1", longest}})).slotNames.at(112), longest);
    const std::string names = place + ".names.\"Float.Custom1\": ";
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", longest + "x"}})),
                ElementsAre(names + "has 32 bytes; a name has at most 31"));
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", "\u00e4" + std::string(30, 'x')}})),
                ElementsAre(names + "has 32 bytes; a name has at most 31"));
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", ""}})), ElementsAre(names + "must not be empty"));
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", std::string("a\0b", 3)}})),
                ElementsAre(names + "must not hold a zero byte"));
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", 5}})),
                ElementsAre(names + "must be text, not a number"));
}

TEST(SceneEffect, SlotNamesDifferWithinTheirKind) {
    EXPECT_THAT(refusal(withEffect("names", {{"Float.Custom1", "a"}, {"Float.Custom2", "a"}})),
                ElementsAre(place + ".names.\"Float.Custom2\": another slot of \"Float\" is called \"a\" already"));
    EXPECT_EQ(readJson(withEffect("names", {{"Float.Custom1", "a"}, {"Float.Custom2", "A"}})).slotNames.size(), 2u);
}

TEST(SceneEffect, TheScriptIsTextOrAFile) {
    EXPECT_EQ(readJson(withEffect("scriptText", "x = x + 10")).script, "x = x + 10");
    const auto file = std::filesystem::temp_directory_path() / "tessavoy-scene-effect.lua";
    std::ofstream(file, std::ios::binary) << "y = 1\r\n";
    EXPECT_EQ(readJson(withEffect("script", file.string())).script, "y = 1\r\n");
    std::filesystem::remove(file);
}

TEST(SceneEffect, AScriptThatCanNotBeUsedIsNamed) {
    EXPECT_THAT(refusal(withEffect("script", "no/such.lua")),
                ElementsAre(place + ".script: no/such.lua: No such file or directory"));
    EXPECT_THAT(refusal(withEffect("script", "/")), ElementsAre(place + ".script: /: is a folder"));
    EXPECT_THAT(refusal(withEffect("scriptText", std::string("a\0b", 3))),
                ElementsAre(place + ".scriptText: must not hold a zero byte"));
    EXPECT_THAT(refusal(withEffect("scriptText", 1)), ElementsAre(place + ".scriptText: must be text, not a number"));
    auto scene = withEffect("script", "a.lua");
    scene["effect"]["scriptText"] = "";
    EXPECT_THAT(refusal(scene), ElementsAre(place + ".scriptText: stands beside \"script\"; give one of them"));
}

TEST(SceneParameterTable, NeedsAnIdForEachParameter) {
    const std::vector<RegisteredParameter> two(2);
    EXPECT_NO_THROW(ParameterTable(two, {"A"}));
    try {
        ParameterTable(two, {"A", "B"});
        FAIL() << "it was accepted";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Module);
    }
}

TEST(SceneParameterTable, ListsSlotsWithTheDiskIdThatCarriesTheName) {
    std::vector<std::string> slots;
    for (const auto& slot : fakeTable().slots()) {
        slots.push_back(slot.family + " " + slot.id + " " + std::to_string(slot.diskId));
    }
    EXPECT_THAT(slots,
                ElementsAre("Float Float.Custom1 112", "Float Float.Custom2 113", "Layer Layer.Custom1 114",
                            "Path Path.Custom1 115", "Point3D Point3D.Custom1 116", "Gradient Gradient.Custom1 117",
                            "Ramp Ramp.Custom1 118", "Noise Noise.Custom6 119"));
}

TEST(SceneParameterTable, SplitsPopupTexts) {
    EXPECT_THAT(splitChoices("None|Layer 1|Layer 2"), ElementsAre("None", "Layer 1", "Layer 2"));
    EXPECT_THAT(splitChoices("One"), ElementsAre("One"));
    EXPECT_THAT(splitChoices("A||B"), ElementsAre("A", "", "B"));
}

}  // namespace
}  // namespace TessavoyHost
