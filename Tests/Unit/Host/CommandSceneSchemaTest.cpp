#include "Host/Command/SceneSchema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;

json schema() {
    return json::parse(sceneSchema(fakeTable()).dump());
}

// What a reference points to, with the place's own annotations left out.
json resolved(const json& whole, const json& place) {
    if (!place.contains("$ref")) {
        return place;
    }
    const auto pointer = place["$ref"].get<std::string>().substr(1);
    return resolved(whole, whole.at(json::json_pointer(pointer)));
}

json parameter(const std::string& id) {
    const json whole = schema();
    return resolved(whole, whole["properties"]["effect"]["properties"]["parameters"]["properties"][id]);
}

// The schema of a single value of a parameter that may vary.
json valueOf(const std::string& id) {
    return resolved(schema(), parameter(id)["anyOf"][0]);
}

TEST(CommandSceneSchema, SaysWhichDraftItIs) {
    EXPECT_EQ(schema()["$schema"], "https://json-schema.org/draft/2020-12/schema");
}

TEST(CommandSceneSchema, ForbidsUnknownKeysEverywhere) {
    const json whole = schema();
    EXPECT_EQ(whole["additionalProperties"], false);
    EXPECT_EQ(whole["properties"]["composition"]["additionalProperties"], false);
    EXPECT_EQ(whole["properties"]["effect"]["additionalProperties"], false);
    EXPECT_EQ(whole["properties"]["effect"]["properties"]["parameters"]["additionalProperties"], false);
}

TEST(CommandSceneSchema, HasEveryParameterThatHoldsAValueAndNoOther) {
    const json whole = schema();
    std::vector<std::string> ids;
    for (const auto& [id, value] : whole["properties"]["effect"]["properties"]["parameters"]["properties"].items()) {
        ids.push_back(id);
    }
    EXPECT_THAT(ids, ::testing::UnorderedElementsAreArray(fakeTable().valueIds()));
}

TEST(CommandSceneSchema, NumbersHaveTheirRange) {
    EXPECT_EQ(valueOf("CountX"), (json{{"type", "number"}, {"minimum", 0.0}, {"maximum", 100000.0}}));
    EXPECT_EQ(valueOf("InstanceSize.Value"), (json{{"type", "number"}, {"minimum", -10000.0}, {"maximum", 10000.0}}));
}

TEST(CommandSceneSchema, WhatStaysFixedHasNoKeys) {
    EXPECT_EQ(parameter("HexGrid"), (json{{"type", "boolean"}}));
    EXPECT_EQ(parameter("ShapeType")["oneOf"][0]["enum"], (json{"Complex Polygon", "Textured Quad"}));
    EXPECT_EQ(parameter("ShapeType")["oneOf"][1]["maximum"], 2);
}

TEST(CommandSceneSchema, WhatVariesMayHaveKeys) {
    const json keys = parameter("CountX")["anyOf"][1]["properties"]["keys"];
    EXPECT_EQ(keys["minItems"], 1);
    EXPECT_EQ(keys["items"]["required"], (json{"time", "value"}));
    EXPECT_EQ(resolved(schema(), keys["items"]["properties"]["ease"])["enum"], (json{"linear", "hold", "smooth"}));
}

TEST(CommandSceneSchema, ParametersCarryLabelAndDefault) {
    const json parameters = schema()["properties"]["effect"]["properties"]["parameters"]["properties"];
    EXPECT_EQ(parameters["CountX"]["default"], 10);
    EXPECT_EQ(parameters["InstanceSize.Value"]["default"], 10.0);
    EXPECT_FALSE(parameters["CenterPos"].contains("default"));  // registered in percent of the layer
}

TEST(CommandSceneSchema, SlotsCanBeNamed) {
    const json names = schema()["properties"]["effect"]["properties"]["names"];
    EXPECT_EQ(names["properties"].size(), fakeTable().slots().size());
    EXPECT_EQ(names["properties"]["Noise.Custom6"]["maxLength"], 31);
}

TEST(CommandSceneSchema, AlikeSchemasStandOnce) {
    const json parameters = schema()["properties"]["effect"]["properties"]["parameters"]["properties"];
    EXPECT_EQ(parameters["Float.Custom1"]["$ref"], parameters["Float.Custom2"]["$ref"]);
    EXPECT_NE(parameters["Float.Custom1"]["$ref"], parameters["CountX"]["$ref"]);
}

}  // namespace
}  // namespace TessavoyHost
