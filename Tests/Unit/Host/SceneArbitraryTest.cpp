#include "Host/Scene/ArbitraryValues.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Unit/Host/SceneFixture.h"

namespace TessavoyHost {
namespace {

using namespace SceneFixture;
using nlohmann::json;
using ::testing::ElementsAre;

std::vector<int> flatOf(const std::string& id, const json& value) {
    const auto arbitrary = std::get<ArbitraryValue>(parameterValue(id, value));
    std::vector<int> bytes;
    for (const auto byte : arbitrary.flat) {
        bytes.push_back(std::to_integer<int>(byte));
    }
    return bytes;
}

// IEEE 754 single precision, lowest byte first: 0 is 00000000, 0.25 is 3e800000, 0.5 is 3f000000, 1 is 3f800000.
const std::vector<int> zero{0, 0, 0, 0}, quarter{0, 0, 0x80, 0x3e}, half{0, 0, 0, 0x3f}, one{0, 0, 0x80, 0x3f};

std::vector<int> integer(int value) {
    return {value, 0, 0, 0};
}

std::vector<int> joined(const std::vector<std::vector<int>>& parts) {
    std::vector<int> all;
    for (const auto& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

json stop(double t, const std::string& kind, const json& color) {
    return {{"t", t}, {"kind", kind}, {"color", color}};
}

TEST(SceneArbitrary, AGradientBecomesItsFlatFormInRisingOrder) {
    const json value = {
        {"points",
         {stop(1, "edge", {0, 0.25, 0.5, 1}), stop(0.25, "sin", {1, 0, 0, 0.5}), stop(0, "linear", {0, 0, 0, 1})}}};
    EXPECT_EQ(flatOf("Gradient.Custom1", value),
              joined({integer(3),                                  //
                      zero, integer(0), zero, zero, zero, one,     //
                      quarter, integer(1), one, zero, zero, half,  //
                      one, integer(2), zero, quarter, half, one}));
}

TEST(SceneArbitrary, AGradientMayBeEmpty) {
    EXPECT_EQ(flatOf("Gradient.Custom1", {{"points", json::array()}}), integer(0));
}

TEST(SceneArbitrary, AllThatIsWrongWithARampIsTold) {
    const std::string ramp = "scene.json: effect.parameters.\"Ramp.Custom1\"";
    const nlohmann::json value = {{"mode", "al"}, {"interpolation", "lin"}, {"points", {{0, 2}, {0}}}};
    const auto told = parameterRefusal("Ramp.Custom1", value);
    ASSERT_EQ(told.size(), 4U);
    for (const char* part : {".mode: ", ".interpolation: ", ".points[0][1]: ", ".points[1]: "})
        EXPECT_EQ(
            std::count_if(told.begin(), told.end(), [&](const auto& line) { return line.starts_with(ramp + part); }), 1)
            << part;
}

TEST(SceneArbitrary, ARampBecomesItsFlatFormInRisingOrder) {
    const json value = {{"mode", "withoutSin"}, {"interpolation", "bezier"}, {"points", {{1, 0.5}, {0.25, 0}}}};
    EXPECT_EQ(flatOf("Ramp.Custom1", value), joined({integer(1), integer(3), integer(2), quarter, zero, one, half}));
}

TEST(SceneArbitrary, RampWordsHaveTheirNumbers) {
    const std::vector<std::string> words{"sin", "line", "step", "bezier"};
    for (int i = 0; i < 4; ++i) {
        const json value = {{"interpolation", words[static_cast<std::size_t>(i)]}, {"points", json::array()}};
        EXPECT_EQ(flatOf("Ramp.Custom1", value), joined({integer(0), integer(i), integer(0)}));
    }
}

const std::string gradientPlace = "scene.json: effect.parameters.\"Gradient.Custom1\"";
const std::string rampPlace = "scene.json: effect.parameters.\"Ramp.Custom1\"";

TEST(SceneArbitrary, TwoPointsAtOnePositionAreRefused) {
    EXPECT_THAT(parameterRefusal("Gradient.Custom1",
                                 {{"points", {stop(0.5, "sin", {1, 1, 1, 1}), stop(0.5, "sin", {0, 0, 0, 1})}}}),
                ElementsAre(gradientPlace + ".points[1].t: there is a point at 0.5 already"));
    EXPECT_THAT(parameterRefusal("Ramp.Custom1", {{"interpolation", "line"}, {"points", {{0, 0}, {0, 1}}}}),
                ElementsAre(rampPlace + ".points[1]: there is a point at 0 already"));
}

TEST(SceneArbitrary, PositionsThatAreEqualInSinglePrecisionAreOnePosition) {
    EXPECT_EQ(
        parameterRefusal("Ramp.Custom1", {{"interpolation", "line"}, {"points", {{0.5, 0}, {0.500000001, 1}}}}).size(),
        1u);
}

TEST(SceneArbitrary, NumbersGoFromZeroToOne) {
    EXPECT_THAT(parameterRefusal("Gradient.Custom1", {{"points", {stop(1.5, "sin", {1, 1, 2, 1})}}}),
                ElementsAre(gradientPlace + ".points[0].t: 1.5 is out of range; it goes from 0 to 1",
                            gradientPlace + ".points[0].color[2]: 2 is out of range; it goes from 0 to 1"));
    EXPECT_THAT(parameterRefusal("Ramp.Custom1", {{"interpolation", "line"}, {"points", {{0, -0.5}}}}),
                ElementsAre(rampPlace + ".points[0][1]: -0.5 is out of range; it goes from 0 to 1"));
}

TEST(SceneArbitrary, EverythingMissingOrUnknownIsNamed) {
    EXPECT_THAT(parameterRefusal("Gradient.Custom1", {{"points", {{{"t", 0}, {"colour", 1}}}}}),
                ElementsAre(gradientPlace + ".points[0].colour: unknown key; did you mean \"color\"?",
                            gradientPlace + ".points[0].kind: missing", gradientPlace + ".points[0].color: missing"));
    EXPECT_THAT(parameterRefusal("Gradient.Custom1", json::object()), ElementsAre(gradientPlace + ".points: missing"));
    EXPECT_THAT(parameterRefusal("Gradient.Custom1", 1),
                ElementsAre(gradientPlace + ": must be an object, not a number"));
    EXPECT_THAT(parameterRefusal("Ramp.Custom1", json::object()),
                ElementsAre(rampPlace + ".interpolation: missing", rampPlace + ".points: missing"));
    EXPECT_THAT(
        parameterRefusal("Ramp.Custom1", {{"mode", "all"}, {"interpolation", "cubic"}, {"points", {{0, 0}}}}),
        ElementsAre(rampPlace + ".interpolation: \"cubic\" is none of \"sin\", \"line\", \"step\", \"bezier\""));
    EXPECT_THAT(parameterRefusal("Ramp.Custom1", {{"interpolation", "line"}, {"points", {{0}}}}),
                ElementsAre(rampPlace + ".points[0]: must be a list of 2 numbers, not of 1"));
}

}  // namespace
}  // namespace TessavoyHost
