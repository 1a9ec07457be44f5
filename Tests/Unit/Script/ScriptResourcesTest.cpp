// The functions that read what the host keeps: layers, ramps, gradients and paths.

#include "Tests/Unit/Script/BankScene.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace Tessavoy {
namespace {

using Numbers = std::vector<double>;

/// A scene with one layer: red counts the columns in thirds, green the rows in halves, blue is a half and alpha a
/// quarter.
struct LayerScene : ScriptScene {
    enum class Depth { Bits8, Bits16, Float };

    explicit LayerScene(Depth depth) {
        std::vector<FakeLayers::Pixel> picture;
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 4; ++column) {
                picture.push_back({static_cast<float>(column) / 3.0F, static_cast<float>(row) / 2.0F, 0.5F, 0.25F});
            }
        }
        if (depth == Depth::Bits8) {
            layers.add8(4, 3, picture);
        } else if (depth == Depth::Bits16) {
            layers.add16(4, 3, picture);
        } else {
            layers.addFloat(4, 3, picture);
        }
        layers.addEmpty();
        layers.addSlider();
        snapshot.layers.inData = layers.slots.inData;
        snapshot.layers.checkouts = layers.slots.checkouts;
    }

    FakeLayers layers;
};

constexpr LayerScene::Depth depths[] = {LayerScene::Depth::Bits8, LayerScene::Depth::Bits16, LayerScene::Depth::Float};

/// The largest step between two stored values of a depth.
constexpr double steps[] = {1 / 255.0, 1 / 32768.0, 0.0};

void expectColour(LayerScene& scene, const std::string& call, const Numbers& expected, double tolerance) {
    const Numbers actual = scene.results(call);
    ASSERT_EQ(actual.size(), 4U) << call;
    for (std::size_t channel = 0; channel < 4; ++channel) {
        EXPECT_NEAR(actual[channel], expected[channel], tolerance) << call << ", channel " << channel;
        EXPECT_EQ(actual[channel], static_cast<float>(actual[channel])) << "in single precision";
    }
}

TEST(ScriptLayer, ReadsTheNearestPixelInEveryDepth) {
    for (std::size_t k = 0; k < std::size(depths); ++k) {
        SCOPED_TRACE(k);
        LayerScene scene(depths[k]);
        // Three columns and two rows from the first to the last, without their fractions.
        expectColour(scene, "GetLayer(1, 0, 0)", {0, 0, 0.5, 0.25}, steps[k]);
        expectColour(scene, "GetLayer(1, 1, 1)", {1, 1, 0.5, 0.25}, steps[k]);
        expectColour(scene, "GetLayer(1, 0.5, 0.5)", {1 / 3.0F, 0.5, 0.5, 0.25}, steps[k]);
        expectColour(scene, "GetLayer(1, 0.999, 0.49)", {2 / 3.0F, 0, 0.5, 0.25}, steps[k]);
        expectColour(scene, "GetLayer(1)", {0, 0, 0.5, 0.25}, steps[k]);
        EXPECT_EQ(scene.layers.suitesOut, 0);
    }
}

TEST(ScriptLayer, RepeatsItsEdgesAndTakesAnyNumber) {
    for (const LayerScene::Depth depth : depths) {
        LayerScene scene(depth);
        const Numbers first = scene.results("GetLayer(1, 0, 0)");
        const Numbers last = scene.results("GetLayer(1, 1, 1)");
        EXPECT_NE(first, last);
        EXPECT_EQ(scene.results("GetLayer(1, -5, -0.01)"), first);
        EXPECT_EQ(scene.results("GetLayer(1, 1 / 0, -1 / 0)"), first);
        EXPECT_EQ(scene.results("GetLayer(1, nil, {})"), first);
        EXPECT_EQ(scene.results("GetLayer(1, 0 / 0, 0 / 0)"), first);
        EXPECT_EQ(scene.results("GetLayer(1, 1.5, 2)"), last);
        EXPECT_EQ(scene.results("GetLayer(1, 1e300, 3e38)"), last);
    }
}

TEST(ScriptLayer, PositionsAreNarrowedBeforeTheyAreCounted) {
    LayerScene scene(LayerScene::Depth::Float);
    // Below 1 for Lua, 1 in single precision: the last column.
    EXPECT_EQ(scene.results("GetLayer(1, 1 - 2 ^ -40, 0)")[0], 1.0);
    EXPECT_EQ(scene.results("GetLayer(1, 1 - 2 ^ -20, 0)")[0], 2 / 3.0F);
}

TEST(ScriptLayer, WithoutPixelsIsZeroEverywhere) {
    LayerScene scene(LayerScene::Depth::Bits8);
    const Numbers zeros = {0, 0, 0, 0};
    EXPECT_EQ(scene.results("GetLayer(2, 0.5, 0.5)"), zeros);    // no layer chosen
    EXPECT_EQ(scene.results("GetLayer(3, 0.5, 0.5)"), zeros);    // no layer at all
    EXPECT_EQ(scene.results("GetLayer(11, 0.5, 0.5)"), zeros);   // behind the list
    EXPECT_EQ(scene.results("GetLayer(100, 0.5, 0.5)"), zeros);  // slot 21
    EXPECT_EQ(scene.layers.hostCalls(), 0);
}

TEST(ScriptLayer, FloatsComeAsTheyAreStored) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    ScriptScene scene;
    FakeLayers layers;
    layers.addFloat(1, 1, {FakeLayers::Pixel{2.5F, -1e-30F, infinity, std::nanf("")}});
    scene.snapshot.layers.inData = layers.slots.inData;
    scene.snapshot.layers.checkouts = layers.slots.checkouts;
    const Numbers colour = scene.results("GetLayer(1, 0.5, 0.5)");
    ASSERT_EQ(colour.size(), 4U);
    EXPECT_EQ(colour[0], 2.5);
    EXPECT_EQ(colour[1], -1e-30F);
    EXPECT_EQ(colour[2], infinity);
    EXPECT_TRUE(std::isnan(colour[3]));
}

TEST(ScriptRamp, IsEvaluatedInSinglePrecision) {
    BankScene scene;
    scene.snapshot.Ramp[1] = scene.handleOf({RampModeAll, RampInterpolationLine, {{0.0F, 0.2F}, {1.0F, 0.8F}}});
    scene.snapshot.Ramp[2] = scene.handleOf({RampModeAll, RampInterpolationSin, {{0.25F, 0.0F}, {0.75F, 1.0F}}});
    scene.snapshot.Ramp[3] = scene.handleOf({RampModeAll, RampInterpolationStep, {{0.0F, 0.1F}, {0.5F, 0.9F}}});
    const Numbers line = scene.results("GetRamp(2, 0.1)");
    EXPECT_NEAR(line[0], 0.2 + 0.6 * 0.1, 1e-7);
    EXPECT_EQ(line[0], static_cast<float>(line[0]));
    // A cosine ease: a third of the way is a quarter of the height.
    EXPECT_NEAR(scene.number("GetRamp(3, 0.25 + 0.5 / 3)"), 0.5 - 0.5 * std::cos(std::numbers::pi / 3), 1e-6);
    EXPECT_EQ(scene.number("GetRamp(4, 0.4999)"), 0.1F);
    EXPECT_EQ(scene.number("GetRamp(4, 0.5)"), 0.9F);
    EXPECT_TRUE(scene.nothingIsLent());
}

TEST(ScriptRamp, TakesAnyPosition) {
    BankScene scene;
    scene.snapshot.Ramp[0] = scene.handleOf({RampModeAll, RampInterpolationLine, {{-0.5F, 0.0F}, {0.5F, 1.0F}}});
    EXPECT_EQ(scene.number("GetRamp(1, 0)"), 0.5);
    EXPECT_EQ(scene.number("GetRamp(1)"), 0.5);
    EXPECT_EQ(scene.number("GetRamp(1, 1 / 0)"), 0.5);
    EXPECT_EQ(scene.number("GetRamp(1, -1 / 0)"), 0.5);
    EXPECT_EQ(scene.number("GetRamp(1, -3)"), 0.0);
    EXPECT_EQ(scene.number("GetRamp(1, 3)"), 1.0);
    EXPECT_EQ(scene.number("GetRamp(1, 1e300)"), 1.0);
    EXPECT_EQ(scene.number("GetRamp(1, 0 / 0)"), 1.0);  // no point is after it
}

TEST(ScriptRamp, WithoutPointsIsOneAndWithoutAHandleZero) {
    BankScene scene;
    scene.snapshot.Ramp[0] = scene.handleOf(RampData{});
    EXPECT_EQ(scene.number("GetRamp(1, 0.5)"), 1.0);
    EXPECT_EQ(scene.number("GetRamp(11, 0.5)"), 0.0);
    scene.snapshot.Ramp[1] = nullptr;
    EXPECT_EQ(scene.number("GetRamp(2, 0.5)"), 0.0);
}

TEST(ScriptGradient, GivesThreeChannelsInSinglePrecision) {
    BankScene scene;
    scene.snapshot.Gradient[2] = scene.handleOf(
        {{{0.0F, {GradientKindLinear, 0.0F, 0.1F, 1.0F, 0.0F}}, {1.0F, {GradientKindLinear, 1.0F, 0.1F, 0.5F, 1.0F}}}});
    const Numbers colour = scene.results("GetGradient(3, 0.3)");
    ASSERT_EQ(colour.size(), 3U);
    EXPECT_NEAR(colour[0], 0.3, 1e-7);
    EXPECT_NEAR(colour[1], 0.1, 1e-7);
    EXPECT_NEAR(colour[2], 0.85, 1e-7);
    for (const double channel : colour) {
        EXPECT_EQ(channel, static_cast<float>(channel));
    }
    EXPECT_TRUE(scene.nothingIsLent());
}

TEST(ScriptGradient, TakesAnyPosition) {
    BankScene scene;
    scene.snapshot.Gradient[0] = scene.handleOf({{{-0.5F, {GradientKindLinear, 0.0F, 0.0F, 0.0F, 1.0F}},
                                                  {0.5F, {GradientKindLinear, 1.0F, 1.0F, 1.0F, 1.0F}}}});
    EXPECT_EQ(scene.number("(GetGradient(1, 0))"), 0.5);
    EXPECT_EQ(scene.number("(GetGradient(1, 1 / 0))"), 0.5);
    EXPECT_EQ(scene.number("(GetGradient(1, -1e300))"), 0.0);
    EXPECT_EQ(scene.number("(GetGradient(1, 0 / 0))"), 1.0);  // no point is after it
}

// What lies in the even entries is no handle, so that touching one would be seen; those above 10 are empty.
TEST(ScriptGradient, IsInTheOddSlotsUpToNineOnly) {
    BankScene scene;
    for (int slot = 1; slot <= 22; ++slot) {
        const double red = slot < 10 && slot % 2 == 1 ? slot / 32.0 : 0.0;
        const Numbers expected = red > 0 ? Numbers{red, 0.25, 0.5} : Numbers{0, 0, 0};
        EXPECT_EQ(scene.results("GetGradient(" + std::to_string(slot) + ", 0.5)"), expected) << slot;
    }
    scene.snapshot.Gradient[0] = nullptr;
    EXPECT_EQ(scene.results("GetGradient(1, 0.5)"), (Numbers{0, 0, 0}));
}

TEST(ScriptGradient, WithoutPointsIsBlack) {
    BankScene scene;
    scene.snapshot.Gradient[0] = scene.handleOf(GradientData{});
    EXPECT_EQ(scene.results("GetGradient(1, 0.5)"), (Numbers{0, 0, 0}));
}

/// A path of a horizontal side of 100 and a vertical one of 50, in slot 1.
struct PathScene : ScriptScene {
    PathScene() {
        snapshot.Path[0] = 7;
        paths.paths[7].addLines({{10, 20}, {110, 20}, {110, 70}});
    }

    void expectPoint(const std::string& call, double x, double y) {
        const Numbers point = results(call);
        ASSERT_EQ(point.size(), 2U) << call;
        EXPECT_NEAR(point[0], x, 1e-5) << call;
        EXPECT_NEAR(point[1], y, 1e-5) << call;
        EXPECT_EQ(point[0], static_cast<float>(point[0]));
        EXPECT_EQ(point[1], static_cast<float>(point[1]));
    }
};

TEST(ScriptPath, IsReadByItsLength) {
    PathScene scene;
    scene.expectPoint("GetPath(1, 0)", 10, 20);
    scene.expectPoint("GetPath(1, 0.1)", 25, 20);
    scene.expectPoint("GetPath(1, 0.51)", 86.5, 20);
    scene.expectPoint("GetPath(1, 0.9)", 110, 55);
    scene.expectPoint("GetPath(1, 1)", 110, 70);
    scene.expectPoint("GetPath(1)", 10, 20);
}

// The position isn't filtered: an infinity is an end.
TEST(ScriptPath, EndsWhereItEndsForAnyPosition) {
    PathScene scene;
    scene.expectPoint("GetPath(1, -0.5)", 10, 20);
    scene.expectPoint("GetPath(1, -1 / 0)", 10, 20);
    scene.expectPoint("GetPath(1, 1.5)", 110, 70);
    scene.expectPoint("GetPath(1, 1 / 0)", 110, 70);
    scene.expectPoint("GetPath(1, 1e300)", 110, 70);
    scene.expectPoint("GetPath(1, 0 / 0)", 110, 70);  // no point is after it
}

TEST(ScriptPath, ComesInFullResolution) {
    PathScene scene;
    scene.inputs.downsampleX = 0.5F;
    scene.inputs.downsampleY = 0.25F;
    scene.expectPoint("GetPath(1, 0.9)", 220, 220);
}

TEST(ScriptPath, OfNoneIsTheOrigin) {
    PathScene scene;
    EXPECT_EQ(scene.results("GetPath(2, 0.5)"), (Numbers{0, 0}));
    EXPECT_EQ(scene.results("GetPath(11, 0.5)"), (Numbers{0, 0}));
    EXPECT_TRUE(scene.paths.checkouts.empty());
    scene.snapshot.Path[1] = 9;
    scene.paths.paths[9].addLines({{5, 5}});  // no segment
    EXPECT_EQ(scene.results("GetPath(2, 0.5)"), (Numbers{0, 0}));
}

TEST(ScriptPath, IsFlattenedOnceAFrame) {
    PathScene scene;
    scene.snapshot.Path[1] = 8;
    scene.snapshot.Path[2] = 7;
    scene.paths.paths[8].addLines({{0, 0}, {1, 0}});
    ScriptHost host;
    const std::string script = "x = GetPath(1, 0) + GetPath(2, 1) + GetPath(3, 1) + GetPath(1, i)";
    ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
    InstanceState cell = scene.cell();
    for (cell.i = 0; cell.i < 5; ++cell.i) {
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    }
    EXPECT_EQ(cell.x, 10.0F + 1.0F + 110.0F + 110.0F);
    // Slots 1 and 3 hold the same path.
    EXPECT_EQ(scene.paths.checkouts, (std::vector<A_u_long>{7, 8}));
    EXPECT_EQ(scene.paths.livePaths(), 0);
}

}  // namespace
}  // namespace Tessavoy
