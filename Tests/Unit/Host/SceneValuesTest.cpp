#include "Host/Scene/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;

const std::string before = "scene.json: effect.parameters.";

TEST(SceneValues, SlidersAndAnglesTakeNumbers) {
    EXPECT_EQ(std::get<double>(parameterValue("CountX", 40)), 40.0);
    EXPECT_EQ(std::get<double>(parameterValue("CountX", 0)), 0.0);
    EXPECT_EQ(std::get<double>(parameterValue("CountX", 100000)), 100000.0);
    EXPECT_EQ(std::get<double>(parameterValue("InstanceSize.Value", -12.5)), -12.5);
    EXPECT_EQ(std::get<double>(parameterValue("Rotation", 720.5)), 720.5);
}

TEST(SceneValues, NumbersStayInTheRegisteredRange) {
    EXPECT_THAT(parameterRefusal("CountX", -1),
                ElementsAre(before + "CountX: -1 is out of range; it goes from 0 to 100000"));
    EXPECT_THAT(parameterRefusal("InstanceSize.Value", 10000.5),
                ElementsAre(before + "\"InstanceSize.Value\": 10000.5 is out of range; it goes from -10000 to 10000"));
    EXPECT_THAT(parameterRefusal("Rotation", 40000),
                ElementsAre(before + "Rotation: 40000 is out of range; it goes from -32768 to 32767"));
}

TEST(SceneValues, ADefaultBelowTheValidRangeCanNotBeTyped) {
    EXPECT_THAT(parameterRefusal("FramesLimit", 0),
                ElementsAre(before + "FramesLimit: 0 is out of range; it goes from 1 to 10000"));
}

TEST(SceneValues, WrongTypesAreNamed) {
    EXPECT_THAT(parameterRefusal("CountX", "40"), ElementsAre(before + "CountX: must be a number, not text"));
    EXPECT_THAT(parameterRefusal("CountX", true), ElementsAre(before + "CountX: must be a number, not true"));
    EXPECT_THAT(parameterRefusal("CountX", nullptr), ElementsAre(before + "CountX: must be a number, not null"));
    EXPECT_THAT(parameterRefusal("HexGrid", 1), ElementsAre(before + "HexGrid: must be true or false, not a number"));
    EXPECT_THAT(parameterRefusal("CenterPos", 1),
                ElementsAre(before + "CenterPos: must be a list of 2 numbers, not a number"));
    EXPECT_THAT(parameterRefusal("Layer.Custom1", 1),
                ElementsAre(before + "\"Layer.Custom1\": must be the name of a layer, or null, not a number"));
    EXPECT_THAT(parameterRefusal("Path.Custom1", json::array()),
                ElementsAre(before + "\"Path.Custom1\": must be the name of a mask, or null, not a list"));
    EXPECT_THAT(parameterRefusal("ShapeType", false),
                ElementsAre(before + "ShapeType: must be one of the popup's texts or its number, not false"));
}

TEST(SceneValues, CheckboxesBecomeOneAndZero) {
    EXPECT_EQ(std::get<double>(parameterValue("HexGrid", true)), 1.0);
    EXPECT_EQ(std::get<double>(parameterValue("HexGrid", false)), 0.0);
}

TEST(SceneValues, PopupsTakeTheirTextOrNumber) {
    EXPECT_EQ(std::get<double>(parameterValue("ShapeType", "Complex Polygon")), 1.0);
    EXPECT_EQ(std::get<double>(parameterValue("ShapeType", "Textured Quad")), 2.0);
    EXPECT_EQ(std::get<double>(parameterValue("ShapeType", 2)), 2.0);
}

TEST(SceneValues, PopupNumbersGoAsFarAsTheModuleDeclared) {
    EXPECT_EQ(std::get<double>(parameterValue("Source", 5)), 5.0);
    EXPECT_THAT(parameterRefusal("Source", 6), ElementsAre(before + "Source: 6 is out of range; it goes from 1 to 5"));
    EXPECT_THAT(parameterRefusal("Source", 0), ElementsAre(before + "Source: 0 is out of range; it goes from 1 to 5"));
    EXPECT_THAT(parameterRefusal("Source", 1.5), ElementsAre(before + "Source: must be a whole number, not 1.5"));
}

TEST(SceneValues, APopupTextThatIsNotThereIsSuggested) {
    EXPECT_THAT(parameterRefusal("ShapeType", "textured quad"),
                ElementsAre(before + "ShapeType: \"textured quad\" is none of \"Complex Polygon\", \"Textured Quad\"; "
                                     "did you mean \"Textured Quad\"?"));
}

void expectColor(const json& value, int red, int green, int blue, int alpha) {
    const auto color = std::get<ColorValue>(parameterValue("InstanceColor", value));
    EXPECT_THAT((std::vector<int>{color.red, color.green, color.blue, color.alpha}),
                ElementsAre(red, green, blue, alpha));
}

TEST(SceneValues, ColoursAreTextOrLists) {
    expectColor("#0180fF", 1, 128, 255, 255);
    expectColor("#0180ff40", 1, 128, 255, 64);
    expectColor({1, 2, 3}, 1, 2, 3, 255);
    expectColor({1, 2, 3, 0}, 1, 2, 3, 0);
}

TEST(SceneValues, OtherColoursAreRefused) {
    for (const char* text : {"", "red", "#12345", "#1234567", "#12345g", "0123456", "#+12345", "#123456789"}) {
        EXPECT_THAT(parameterRefusal("InstanceColor", text),
                    ElementsAre(before + "InstanceColor: \"" + text +
                                "\" is no colour; write \"#rrggbb\", \"#rrggbbaa\" or [r, g, b, a]"));
    }
    EXPECT_THAT(parameterRefusal("InstanceColor", {0, 256, 0}),
                ElementsAre(before + "InstanceColor[1]: 256 is out of range; it goes from 0 to 255"));
    EXPECT_THAT(parameterRefusal("InstanceColor", {0, 0.5, 0}),
                ElementsAre(before + "InstanceColor[1]: must be a whole number, not 0.5"));
    EXPECT_EQ(parameterRefusal("InstanceColor", {0, 0}).size(), 1u);
}

TEST(SceneValues, PointsAreLists) {
    const auto point = std::get<Point2>(parameterValue("CenterPos", {12.5, -3}));
    EXPECT_EQ(point.x, 12.5);
    EXPECT_EQ(point.y, -3.0);
    const auto point3 = std::get<Point3>(parameterValue("Point3D.Custom1", {1, 2, 100000}));
    EXPECT_EQ(point3.x, 1.0);
    EXPECT_EQ(point3.y, 2.0);
    EXPECT_EQ(point3.z, 100000.0);
}

TEST(SceneValues, PointsHaveTheRightLengthAndFitFixedPoint) {
    EXPECT_THAT(parameterRefusal("CenterPos", {1, 2, 3}),
                ElementsAre(before + "CenterPos: must be a list of 2 numbers, not of 3"));
    EXPECT_THAT(parameterRefusal("CenterPos", {1, 32768}),
                ElementsAre(before + "CenterPos[1]: 32768 is out of range; it goes from -32768 to 32767"));
    EXPECT_THAT(parameterRefusal("CenterPos", {1, "x"}),
                ElementsAre(before + "CenterPos[1]: must be a number, not text"));
}

TEST(SceneValues, LayersAndMasksAreNames) {
    EXPECT_EQ(std::get<LayerReference>(parameterValue("Layer.Custom1", "Red")).layer, 1);
    EXPECT_EQ(std::get<LayerReference>(parameterValue("Layer.Custom1", nullptr)).layer, -1);
    EXPECT_EQ(std::get<MaskReference>(parameterValue("Path.Custom1", "Orbit")).id, 1u);
    EXPECT_EQ(std::get<MaskReference>(parameterValue("Path.Custom1", nullptr)).id, 0u);
    EXPECT_THAT(parameterRefusal("Layer.Custom1", "Rod"),
                ElementsAre(before + "\"Layer.Custom1\": there is no layer \"Rod\"; did you mean \"Red\"?"));
    EXPECT_THAT(parameterRefusal("Path.Custom1", "Plate"),
                ElementsAre(before + "\"Path.Custom1\": there is no mask \"Plate\""));
}

TEST(SceneValues, NumbersAreWrittenWithoutLoss) {
    EXPECT_EQ(numberInWords(100000), "100000");
    EXPECT_EQ(numberInWords(0.1), "0.1");
    EXPECT_EQ(numberInWords(0), "0");
    EXPECT_EQ(numberInWords(-5e-7), "-5e-07");
}

}  // namespace
}  // namespace TessavoyHost
