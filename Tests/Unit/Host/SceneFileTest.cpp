#include "Host/Scene/SceneFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Lt;
using ::testing::SizeIs;
using ::testing::StartsWith;

TEST(SceneFile, ARightSceneIsReadWhole) {
    const auto project = readJson(rightScene());
    EXPECT_EQ(project.layers.size(), 2u);
    EXPECT_EQ(project.masks.size(), 1u);
    EXPECT_FALSE(project.camera.has_value());
    EXPECT_EQ(project.effectLayer, 0);
    EXPECT_THAT(project.parameters, IsEmpty());
    EXPECT_THAT(project.slotNames, IsEmpty());
    EXPECT_EQ(project.script, "");
}

TEST(SceneFile, TheVersionMustBeOne) {
    auto scene = rightScene();
    scene["tessavoy"] = 2;
    EXPECT_THAT(refusal(scene), ElementsAre("scene.json: tessavoy: this command reads version 1 of the format, not 2"));
    scene["tessavoy"] = "1";
    EXPECT_THAT(refusal(scene),
                ElementsAre("scene.json: tessavoy: this command reads version 1 of the format, not \"1\""));
    scene.erase("tessavoy");
    EXPECT_THAT(refusal(scene), ElementsAre("scene.json: tessavoy: missing"));
}

TEST(SceneFile, AVersionOfAnotherKindIsToldInWords) {
    auto scene = rightScene();
    const std::string start = "scene.json: tessavoy: this command reads version 1 of the format, not ";
    scene["tessavoy"] = json::array({1, 2});
    EXPECT_THAT(refusal(scene), ElementsAre(start + "a list"));
    scene["tessavoy"] = std::string(33, 'v');
    EXPECT_THAT(refusal(scene), ElementsAre(start + "text"));
    scene["tessavoy"] = 1.5;
    EXPECT_THAT(refusal(scene), ElementsAre(start + "1.5"));
}

// The right scene's text with 200,000 nested lists or objects for the value that is called "here".
std::string deepText(json scene, const json::json_pointer& place, bool ofObjects) {
    constexpr std::size_t depth = 200000;
    std::string value;
    for (std::size_t i = 0; i < depth; ++i) {
        value += ofObjects ? "{\"keys\":" : "[";
    }
    value.append(1, '1').append(depth, ofObjects ? '}' : ']');
    scene[place] = "here";
    std::string text = scene.dump();
    return text.replace(text.find("\"here\""), 6, value);
}

TEST(SceneFile, DeepNestingIsRefusedWhereverItStands) {
    for (const char* place : {"/tessavoy",
                              "/composition",
                              "/composition/frameRate",
                              "/composition/duration",
                              "/layers",
                              "/layers/0",
                              "/layers/0/name",
                              "/layers/0/image",
                              "/layers/1/solid",
                              "/masks",
                              "/masks/0/vertices",
                              "/camera",
                              "/camera/zoom",
                              "/effect",
                              "/effect/layer",
                              "/effect/script",
                              "/effect/names",
                              "/effect/parameters",
                              "/effect/parameters/CountX",
                              "/effect/parameters/ShapeType",
                              "/effect/parameters/InstanceColor",
                              "/effect/parameters/CenterPos",
                              "/effect/parameters/Gradient.Custom1",
                              "/effect/parameters/Ramp.Custom1",
                              "/unknown"}) {
        for (const bool ofObjects : {false, true}) {
            const auto lines = textRefusal(deepText(rightScene(), json::json_pointer(place), ofObjects));
            EXPECT_THAT(lines, Each(AllOf(StartsWith("scene.json: "), SizeIs(Lt(200u))))) << place;
        }
    }
}

TEST(SceneFile, UnknownAndMissingPartsAreNamed) {
    EXPECT_THAT(
        textRefusal("{\"tessavoy\": 1, \"mask\": []}"),
        ElementsAre("scene.json: mask: unknown key; did you mean \"masks\"?", "scene.json: composition: missing",
                    "scene.json: layers: missing", "scene.json: effect: missing"));
    EXPECT_THAT(textRefusal("[]"), ElementsAre("scene.json: must be an object, not a list"));
    EXPECT_THAT(textRefusal("{"), ElementsAre(StartsWith("scene.json: line 1, column 2: syntax error")));
}

TEST(SceneFile, AllThatIsWrongIsToldAtOnce) {
    auto scene = rightScene();
    scene["composition"]["width"] = "wide";
    scene["layers"][1]["height"] = 0;
    scene["camera"] = json::object();
    scene["effect"]["parameters"]["InstanceSize.Valu"] = 1;
    EXPECT_THAT(refusal(scene),
                ElementsAre("scene.json: composition.width: must be a number, not text",
                            "scene.json: layers[1].height: 0 is out of range; it goes from 1 to 30000",
                            "scene.json: camera.zoom: missing",
                            "scene.json: effect.parameters.\"InstanceSize.Valu\": unknown parameter; did you mean "
                            "\"InstanceSize.Value\"?"));
}

TEST(SceneFile, KeysThatStandTwiceAreRefused) {
    auto text = rightScene().dump();
    text.insert(text.find("\"effect\""), "\"effect\": {}, ");
    EXPECT_THAT(textRefusal(text), ElementsAre("scene.json: effect: stands twice"));
    // Whichever name is meant, what refers to the other is no mistake of its own.
    text = rightScene().dump();
    text.insert(text.find("\"name\":\"Plate\""), "\"name\": \"Plate\", ");
    text.replace(text.find("\"name\":\"Plate\""), 14, "\"name\":\"Back\"");
    EXPECT_THAT(textRefusal(text), ElementsAre("scene.json: layers[0].name: stands twice"));
}

TEST(SceneFile, AFileThatCanNotBeReadIsNamed) {
    try {
        loadSceneText("no/such/scene.json");
        FAIL() << "it was read";
    } catch (const HostError& error) {
        EXPECT_EQ(error.status(), ExitStatus::Scene);
        EXPECT_STREQ(error.what(), "no/such/scene.json: No such file or directory");
    }
    EXPECT_THROW(loadSceneText("."), HostError);
}

TEST(SceneMasks, AreReadWithTheirTangents) {
    auto scene = rightScene();
    scene["masks"].push_back(
        {{"name", "Line"}, {"closed", false}, {"vertices", {{{"point", {400, 300}}}, {{"point", {1.5, 2}}}}}});
    const auto masks = readJson(scene).masks;
    ASSERT_EQ(masks.size(), 2u);
    EXPECT_EQ(masks[0].name, "Orbit");
    EXPECT_TRUE(masks[0].closed);
    ASSERT_EQ(masks[0].vertices.size(), 1u);
    EXPECT_EQ(masks[0].vertices[0].point.x, 200.0);
    EXPECT_EQ(masks[0].vertices[0].in.y, -40.0);
    EXPECT_EQ(masks[0].vertices[0].out.y, 40.0);
    EXPECT_FALSE(masks[1].closed);
    ASSERT_EQ(masks[1].vertices.size(), 2u);
    EXPECT_EQ(masks[1].vertices[1].point.x, 1.5);
    EXPECT_EQ(masks[1].vertices[1].in.x, 0.0);
    EXPECT_EQ(masks[1].vertices[1].out.y, 0.0);
}

TEST(SceneMasks, EverythingWrongIsNamed) {
    auto scene = rightScene();
    scene["masks"] = json::parse(R"([
        { "name": "A", "vertices": [] },
        { "name": "A", "closed": 1, "vertices": [ { "point": [0], "into": [0, 0] }, { "in": [0, 40000] } ] },
        { "vertices": 3 },
        7
    ])");
    const std::string place = "scene.json: masks";
    EXPECT_THAT(refusal(scene),
                ElementsAre(place + "[0].vertices: must hold at least one vertex",
                            place + "[1].closed: must be true or false, not a number",
                            place + "[1].name: there is a mask \"A\" already",
                            place + "[1].vertices[0].into: unknown key; did you mean \"in\"?",
                            place + "[1].vertices[0].point: must be a list of 2 numbers, not of 1",
                            place + "[1].vertices[1].point: missing",
                            place + "[1].vertices[1].in[1]: 40000 is out of range; it goes from -32768 to 32767",
                            place + "[2].name: missing", place + "[2].vertices: must be a list, not a number",
                            place + "[3]: must be an object, not a number"));
    scene["masks"] = json::object();
    EXPECT_THAT(refusal(scene), ElementsAre(place + ": must be a list, not an object"));
}

TEST(SceneCamera, IsReadWithItsKeys) {
    auto scene = rightScene();
    scene["camera"] = json::parse(R"({
        "position": { "keys": [ { "time": 0, "value": [1, 2, 3], "ease": "smooth" }, { "time": 1, "value": [4, 5, 6] } ] },
        "orientation": [10, 20, 30], "rotation": [-1, -2, 400], "zoom": 1866.5
    })");
    const auto camera = readJson(scene).camera;
    ASSERT_TRUE(camera.has_value());
    ASSERT_EQ(camera->position.keys.size(), 2u);
    EXPECT_EQ(camera->position.keys[0].ease, Ease::Smooth);
    EXPECT_EQ(std::get<Point3>(camera->position.keys[1].value).z, 6.0);
    EXPECT_THAT(camera->pointOfInterest.keys, IsEmpty());
    EXPECT_EQ(std::get<Point3>(camera->orientation.keys.at(0).value).y, 20.0);
    EXPECT_EQ(std::get<Point3>(camera->rotation.keys.at(0).value).z, 400.0);
    EXPECT_EQ(std::get<double>(camera->zoom.keys.at(0).value), 1866.5);
}

TEST(SceneCamera, ZoomIsRequiredAndAboveZero) {
    auto scene = rightScene();
    scene["camera"] = {{"zoom", 0}, {"positon", {0, 0, 0}}, {"rotation", {0, 0}}};
    EXPECT_THAT(refusal(scene), ElementsAre("scene.json: camera.positon: unknown key; did you mean \"position\"?",
                                            "scene.json: camera.rotation: must be a list of 3 numbers, not of 2",
                                            "scene.json: camera.zoom: must be above 0, not 0"));
}

}  // namespace
}  // namespace TessavoyHost
