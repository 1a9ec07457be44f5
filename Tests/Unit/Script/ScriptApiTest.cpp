// The functions that a script may call: what they read of the frame's values, and what they compute.

#include "Source/Evaluate/PerlinTable.h"
#include "Tests/Unit/Script/BankScene.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace Tessavoy {
namespace {

using Numbers = std::vector<double>;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(ScriptApi, FunctionsAreGlobals) {
    ScriptScene scene;
    for (const char* name :
         {"GetFloat", "GetSlider", "GetColor", "GetLayer", "GetNoise", "GetRandom", "GetRamp", "GetGradient", "GetPath",
          "GetPoint2D", "GetPoint3D", "GetDistToCam", "Lerp", "Dist2D", "Dist3D"}) {
        EXPECT_EQ(scene.value(std::string("type(") + name + ") == 'function' and 1 or 0"), 1.0F) << name;
    }
}

TEST(ScriptApi, EveryFunctionGivesItsNumberOfResults) {
    BankScene scene;
    const std::pair<const char*, std::size_t> counts[] = {
        {"GetFloat(1)", 1},
        {"GetSlider(1)", 1},
        {"GetColor(1)", 4},
        {"GetLayer(1)", 4},
        {"GetLayer(11)", 4},
        {"GetNoise(1)", 1},
        {"GetRandom(1)", 1},
        {"GetRamp(1)", 1},
        {"GetRamp(11)", 1},
        {"GetGradient(1)", 3},
        {"GetGradient(2)", 3},
        {"GetPath(1)", 2},
        {"GetPath(11)", 2},
        {"GetPoint2D(1)", 2},
        {"GetPoint3D(1)", 3},
        {"GetDistToCam()", 1},
        {"Lerp()", 1},
        {"Dist2D()", 1},
        {"Dist3D()", 1},
        {"GetFloat(1, 2, 3)", 1},
        {"Lerp(1, 2, 3, 4, 5)", 1},
    };
    for (const auto& [call, count] : counts) {
        EXPECT_EQ(scene.results(call).size(), count) << call;
    }
}

TEST(ScriptApi, FloatsComeInDoublePrecision) {
    ScriptScene scene;
    scene.snapshot.Float[1] = 0.1;
    scene.snapshot.Float[2] = -1e300;
    scene.snapshot.Float[3] = infinity;
    EXPECT_EQ(scene.results("GetFloat(2)"), Numbers{0.1});
    EXPECT_EQ(scene.results("GetSlider(2)"), Numbers{0.1});
    EXPECT_EQ(scene.results("GetFloat(3)"), Numbers{-1e300});
    EXPECT_EQ(scene.results("GetFloat(4)"), Numbers{infinity});
}

TEST(ScriptApi, ColoursEndWithAlphaAndComeInSinglePrecision) {
    ScriptScene scene;
    // 8-bit channels over 255.
    scene.snapshot.Color[4] = {200 / 255.0F, 100 / 255.0F, 50 / 255.0F, 1.0F};
    EXPECT_EQ(scene.results("GetColor(5)"), (Numbers{200 / 255.0F, 100 / 255.0F, 50 / 255.0F, 1.0}));
    EXPECT_EQ(scene.results("GetColor(6)"), (Numbers{0, 0, 0, 0}));
}

/// The noise of a slot with unequal scales and offsets.
NoiseSource& setNoise(ScriptScene& scene, double multiplier) {
    NoiseSource& noise = scene.snapshot.Noise[2];
    noise.Multiplier = multiplier;
    noise.ResultOffset = 130.0;
    noise.Seed = 17;
    noise.Scale = 37.0;
    noise.ScaleX = 1.25;
    noise.ScaleY = 0.75;
    noise.OffsetX = 3.0;
    noise.OffsetY = -4.0;
    noise.OffsetZ = 5.0;
    noise.MultLayer.Index = 1;
    noise.buildTable();
    return noise;
}

// The position is narrowed to single precision on its way in; the result is not.
TEST(ScriptApi, NoiseIsPerlinsAtTheScaledPosition) {
    ScriptScene scene;
    setNoise(scene, 3.0);
    const PerlinTable table(17);
    const auto noiseAt = [&](double x, double y) {
        const double u = static_cast<float>(x);
        const double v = static_cast<float>(y);
        const double noise = table.perlin((37.0 * u * 1.25 - 3.0) * 0.1, (37.0 * v * 0.75 + 4.0) * 0.1, 5.0 * 0.1);
        return (130.0 * 0.01 - 1.0) * 0.5 * 3.0 + noise * 3.0;
    };
    EXPECT_EQ(scene.results("GetNoise(3, 0.1, 0.7)"), Numbers{noiseAt(0.1, 0.7)});
    EXPECT_EQ(scene.results("GetNoise(3, -20.3, 1e6)"), Numbers{noiseAt(-20.3, 1e6)});
    EXPECT_NE(noiseAt(0.1, 0.7), static_cast<float>(noiseAt(0.1, 0.7)));
    EXPECT_EQ(scene.results("GetNoise(3)"), Numbers{noiseAt(0, 0)});
}

TEST(ScriptApi, NoiseWithoutAMultiplierIsZero) {
    ScriptScene scene;
    setNoise(scene, 0.0);
    EXPECT_EQ(scene.results("GetNoise(3, 0.1, 0.7)"), Numbers{0});
    EXPECT_EQ(scene.results("GetNoise(11, 0.1, 0.7)"), Numbers{0});
}

TEST(ScriptApi, NoiseTakesNoInfinities) {
    ScriptScene scene;
    setNoise(scene, 3.0);
    EXPECT_EQ(scene.number("GetNoise(3, 1 / 0, 0.7)"), scene.number("GetNoise(3, 0, 0.7)"));
    EXPECT_EQ(scene.number("GetNoise(3, 0.1, -1 / 0)"), scene.number("GetNoise(3, 0.1, 0)"));
    EXPECT_TRUE(std::isnan(scene.number("GetNoise(3, 0 / 0, 0.7)")));
    // Finite for Lua and infinite in single precision: no place in the noise.
    EXPECT_TRUE(std::isnan(scene.number("GetNoise(3, 1e300, 0.7)")));
}

TEST(ScriptApi, NoiseIsMultipliedByItsLayer) {
    BankScene scene;
    NoiseSource& noise = scene.snapshot.Noise[0];
    noise.ResultOffset = 100.0;
    noise.Multiplier = 8.0;
    noise.MultLayer.Index = 6;  // the layer in slot 5, whose red is 5 / 32
    noise.MultLayer.Source = LayerSource_Red;
    EXPECT_EQ(scene.number("GetNoise(1, 0, 0)"), 4.0 * 5 / 32);
}

/// Two words of a Mersenne Twister that the standard library seeds, as a fraction.
double seededFraction(std::uint32_t seed, std::int32_t a, std::int32_t b) {
    std::seed_seq words{seed, static_cast<std::uint32_t>(a), static_cast<std::uint32_t>(b)};
    std::mt19937 generator(words);
    const double low = static_cast<double>(generator());
    return (low + static_cast<double>(generator()) * 4294967296.0) / 18446744073709551616.0;
}

TEST(ScriptApi, RandomNumbersDependOnSeedAndTwoWholeNumbers) {
    ScriptScene scene;
    scene.snapshot.Random[0] = {7, -10.0, 30.0};
    const auto randomAt = [](std::int32_t a, std::int32_t b) { return 40.0 * seededFraction(7, a, b) - 10.0; };
    EXPECT_EQ(scene.results("GetRandom(1, 2, 5)"), Numbers{randomAt(2, 5)});
    EXPECT_EQ(scene.results("GetRandom(1, 2.7, 5)"), Numbers{randomAt(2, 5)});
    EXPECT_EQ(scene.results("GetRandom(1, -2.7, -5.01)"), Numbers{randomAt(-2, -5)});
    EXPECT_EQ(scene.results("GetRandom(1)"), Numbers{randomAt(0, 0)});
}

TEST(ScriptApi, RandomNumbersTakeAnyArgument) {
    ScriptScene scene;
    scene.snapshot.Random[0] = {7, -10.0, 30.0};
    const double atZero = scene.number("GetRandom(1, 0, 0)");
    for (const char* call : {"GetRandom(1, 1 / 0, 0)", "GetRandom(1, 0, -1 / 0)", "GetRandom(1, 0 / 0, 0)",
                             "GetRandom(1, nil, {})", "GetRandom(1, 0.999, -0.999)", "GetRandom(1, 'x', true)"}) {
        EXPECT_EQ(scene.number(call), atZero) << call;
    }
    // What 32 bits can't hold is the nearest that they can.
    EXPECT_EQ(scene.number("GetRandom(1, 1e20, -1e20)"), scene.number("GetRandom(1, 2147483647, -2147483648)"));
}

TEST(ScriptApi, RandomNumbersOfAnEmptyRangeAreItsMinimum) {
    ScriptScene scene;
    scene.snapshot.Random[0] = {7, 5.5, 5.5};
    scene.snapshot.Random[1] = {7, 5.5, -3.0};
    EXPECT_EQ(scene.number("GetRandom(1, 2, 5)"), 5.5);
    EXPECT_EQ(scene.number("GetRandom(2, 2, 5)"), 5.5);
    EXPECT_EQ(scene.number("GetRandom(11, 2, 5)"), 0.0);
}

TEST(ScriptApi, PointsComeInFullResolution) {
    ScriptScene scene;
    scene.snapshot.Point2D.X[1] = 10.0;
    scene.snapshot.Point2D.Y[1] = 0.1;
    scene.snapshot.Point3D.X[2] = 10.0;
    scene.snapshot.Point3D.Y[2] = -0.1;
    scene.snapshot.Point3D.Z[2] = 7.0;
    EXPECT_EQ(scene.results("GetPoint2D(2)"), (Numbers{10.0, 0.1F}));
    EXPECT_EQ(scene.results("GetPoint3D(3)"), (Numbers{10.0, -0.1F, 7.0}));
    scene.inputs.downsampleX = 0.5F;
    scene.inputs.downsampleY = 0.25F;
    EXPECT_EQ(scene.results("GetPoint2D(2)"), (Numbers{20.0, 0.4F}));
    // Depth goes with the width.
    EXPECT_EQ(scene.results("GetPoint3D(3)"), (Numbers{20.0, -0.4F, 14.0}));
    scene.inputs.downsampleX = 1.0F / 3.0F;
    EXPECT_EQ(scene.results("GetPoint2D(2)")[0], static_cast<float>(10.0 / double{1.0F / 3.0F}));
}

TEST(ScriptApi, PointsIgnoreASecondArgument) {
    ScriptScene scene;
    scene.snapshot.Point2D.X[0] = 3.0;
    scene.snapshot.Point3D.X[0] = 4.0;
    EXPECT_EQ(scene.results("GetPoint2D(1, {})"), scene.results("GetPoint2D(1)"));
    EXPECT_EQ(scene.results("GetPoint3D(1, 5)"), scene.results("GetPoint3D(1)"));
}

TEST(ScriptApi, TheDownsamplingIsThatOfTheCell) {
    ScriptScene scene;
    scene.snapshot.Point2D.X[0] = 8.0;
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, "x = GetPoint2D(1)", &scene.snapshot));
    InstanceState cell = scene.cell();
    for (const float downsample : {1.0F, 0.5F, 0.25F}) {
        scene.inputs.downsampleX = downsample;
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_EQ(cell.x, 8.0F / downsample);
    }
}

TEST(ScriptApi, TheDistanceToTheCameraIsInViewSpace) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("GetDistToCam(3, 4, 12)"), 13.0);
    // Columns of the matrix: x' = 2 x + 10, y' = y + 3 z, z' = -4 y + 20; the last row must not count.
    scene.gridMatrix = {{2, 0, 0, 9, 0, 1, -4, 9, 0, 3, 0, 9, 10, 0, 20, 9}};
    // (-8, 0, -1) becomes (-6, -3, 20), (1, 5, 2) becomes (12, 11, 0).
    EXPECT_EQ(scene.number("GetDistToCam(-8, 0, -1)"), std::sqrt(36.0F + 9.0F + 400.0F));
    EXPECT_EQ(scene.number("GetDistToCam(1, 5, 2)"), std::sqrt(144.0F + 121.0F));
    EXPECT_EQ(scene.number("GetDistToCam()"), std::sqrt(500.0F));
}

TEST(ScriptApi, TheDistanceToTheCameraIsInSinglePrecision) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("GetDistToCam(0.1, 0, 0)"), 0.1F);
    // 1e30 has no square in single precision.
    EXPECT_EQ(scene.number("GetDistToCam(1e30, 0, 0)"), infinity);
    EXPECT_EQ(scene.number("GetDistToCam(1 / 0, 3, -1 / 0)"), 3.0);
    EXPECT_TRUE(std::isnan(scene.number("GetDistToCam(0 / 0, 0, 0)")));
    // Finite for Lua and infinite in single precision, and so no number beside the matrix's zeros.
    EXPECT_TRUE(std::isnan(scene.number("GetDistToCam(1e300, 0, 0)")));
}

TEST(ScriptApi, LerpIsNotHeldToItsEnds) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("Lerp(10, 20, 0.25)"), 12.5);
    EXPECT_EQ(scene.number("Lerp(10, 20, 0)"), 10.0);
    EXPECT_EQ(scene.number("Lerp(10, 20, 1)"), 20.0);
    EXPECT_EQ(scene.number("Lerp(10, 20, 3)"), 40.0);
    EXPECT_EQ(scene.number("Lerp(10, 20, -1)"), 0.0);
    EXPECT_EQ(scene.number("Lerp(0.1, 0.7, 0.3)"), (0.7 - 0.1) * 0.3 + 0.1);
    // b - a + a: beside a large a nothing is left of b.
    EXPECT_EQ(scene.number("Lerp(1e300, 1, 1)"), 0.0);
}

TEST(ScriptApi, DistancesAreEuclideanInDoublePrecision) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("Dist2D(0, 0, 3, 4)"), 5.0);
    EXPECT_EQ(scene.number("Dist2D(10, -2, 5, 10)"), 13.0);
    EXPECT_EQ(scene.number("Dist3D(1, 1, 1, 3, 4, 7)"), 7.0);
    EXPECT_EQ(scene.number("Dist2D(0, 0, 1, 1)"), std::sqrt(2.0));
    EXPECT_EQ(scene.number("Dist3D(0, 0, 0, 1, 1, 1)"), std::sqrt(3.0));
    EXPECT_EQ(scene.number("Dist2D(1e-200, 0, 0, 0)"), 0.0);
}

TEST(ScriptApi, PlainFunctionsTakeInfinitiesAsTheyAre) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("Lerp(0, 1 / 0, 1)"), infinity);
    EXPECT_TRUE(std::isnan(scene.number("Lerp(1 / 0, 1 / 0, 0.5)")));
    EXPECT_EQ(scene.number("Dist2D(-1 / 0, 0, 0, 0)"), infinity);
    EXPECT_EQ(scene.number("Dist3D(0, 0, 1 / 0, 0, 0, 0)"), infinity);
    EXPECT_TRUE(std::isnan(scene.number("Dist2D(0 / 0, 0, 0, 0)")));
    EXPECT_EQ(scene.number("Dist2D(1e200, 0, 0, 0)"), infinity);
}

TEST(ScriptApi, ArgumentsAreNumbersWhereverTheyCanBe) {
    ScriptScene scene;
    EXPECT_EQ(scene.number("Lerp('10', ' 20 ', '0x.4')"), 12.5);
    EXPECT_EQ(scene.number("Dist2D('0', nil, '3', 4)"), 5.0);
    EXPECT_EQ(scene.number("Dist2D({}, 'three', 3, '4.0')"), 5.0);
    EXPECT_EQ(scene.number("Dist3D(true, print, 0, 2, 3, '6e0')"), 7.0);
    EXPECT_EQ(scene.number("GetDistToCam('3', '4', 'far')"), 5.0);
    EXPECT_EQ(scene.number("Lerp(0, math.maxinteger, 1)"), 9223372036854775807.0);
}

TEST(ScriptApi, ValuesOfOneCellAreThoseOfTheFrame) {
    BankScene scene;
    ScriptHost host;
    ASSERT_TRUE(
        host.compile(&scene.host.inData, "x = GetFloat(i + 1); y = select(4, GetColor(j + 1))", &scene.snapshot));
    for (A_long column = 0; column < 10; ++column) {
        InstanceState cell = scene.cell();
        cell.i = column;
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_EQ(cell.x, static_cast<float>(column + 1) / 32.0F);
        EXPECT_EQ(cell.y, 0.75F);
    }
}

// Without a frame there is nothing to read; a script can only get there by what it runs while the functions are made.
TEST(ScriptApi, OutsideACellEverythingIsZero) {
    BankScene scene;
    const std::string script =
        "x, y = calls, sum return visible, x, y end calls, sum = 0, 0 "
        "setmetatable(_G, {__newindex = function(t, name, f) rawset(t, name, f) if name:find('^Get') then "
        "calls = calls + 1 for _, result in ipairs{f(1, 1, 1)} do sum = sum + result end end end}) do";
    const InstanceState cell = scene.run(script);
    EXPECT_EQ(cell.x, 12.0F);
    EXPECT_EQ(cell.y, 0.0F);
    EXPECT_TRUE(scene.nothingIsLent());
}

// The debug library is open, and with it what the functions are closed over.
TEST(ScriptApi, FunctionsThatLostTheirHostGiveZeros) {
    BankScene scene;
    for (const char* value : {"nil", "7", "'text'", "{}"}) {
        const std::string script =
            std::string("for _, f in ipairs{GetFloat, GetLayer, GetRamp, GetPath} do debug.setupvalue(f, 2, ") + value +
            ") end x = GetFloat(1) + GetLayer(1, 0, 0) + GetRamp(1, 0) + GetPath('Line', 0)";
        EXPECT_EQ(scene.run(script).x, 0.0F) << script;
    }
}

}  // namespace
}  // namespace Tessavoy
