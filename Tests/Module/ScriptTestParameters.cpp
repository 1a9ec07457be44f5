#include <cmath>
#include <cstring>
#include <random>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

// A script paints one square that fills the picture with what the functions gave it, in floats.
class ModuleScriptParameters : public ModuleFixture {
protected:
    ModuleScriptParameters() { scene.set("CountX", 1).set("CountY", 1).set("InstanceSize.Value", 40); }

    // Red, green and blue after assigning the expressions to them.
    Argb painted(const std::string& expressions, Rational downsample = {}) {
        scene.project.script = "r, g, b = " + expressions;
        FrameRequest request;
        request.bitsPerChannel = 32;
        request.downsampleX = request.downsampleY = downsample;
        const FrameResult result = render(scene, request);
        return pixelAt(result.output, result.output.width() / 2, result.output.height() / 2);
    }

    void expectPainted(const std::string& expressions, double r, double g, double b, Rational downsample = {}) {
        const Argb colour = painted(expressions, downsample);
        EXPECT_NEAR(colour.r, r, 1e-5) << expressions;
        EXPECT_NEAR(colour.g, g, 1e-5) << expressions;
        EXPECT_NEAR(colour.b, b, 1e-5) << expressions;
        EXPECT_EQ(colour.a, 1) << expressions;
    }

    ModuleScene scene = sharpScene(16, 12);
};

template <class Number>
void append(std::vector<std::byte>& flat, Number number) {
    const auto* first = reinterpret_cast<const std::byte*>(&number);
    flat.insert(flat.end(), first, first + sizeof number);
}

// A straight ramp in its saved form.
ArbitraryValue line(const std::vector<std::pair<float, float>>& points) {
    ArbitraryValue value;
    append(value.flat, std::int32_t{0});
    append(value.flat, std::int32_t{1});
    append(value.flat, static_cast<std::int32_t>(points.size()));
    for (const auto& [position, height] : points) {
        append(value.flat, position);
        append(value.flat, height);
    }
    return value;
}

// A gradient from black to a colour in its saved form.
ArbitraryValue gradientTo(float r, float g, float b) {
    ArbitraryValue value;
    append(value.flat, std::int32_t{2});
    for (const float position : {0.0F, 1.0F}) {
        append(value.flat, position);
        append(value.flat, std::int32_t{0});
        for (const float channel : {r * position, g * position, b * position, 1.0F})
            append(value.flat, channel);
    }
    return value;
}

TEST_F(ModuleScriptParameters, ReadsSlidersByNumberAndName) {
    scene.set("Float.Custom1", 0.125).set("Float.Custom2", 0.25).set("Float.Custom10", 0.75);
    scene.project.slotNames = {{305, "Speed"}, {313, "Größe"}};
    expectPainted("GetFloat(2), GetSlider(10), GetFloat(0)", 0.25, 0.75, 0.125);
    expectPainted("GetFloat('Speed'), GetFloat('Größe'), GetFloat('speed')", 0.25, 0.75, 0.125);
    expectPainted("GetFloat(11), GetFloat(1000), GetFloat('2')", 0, 0, 0.125);
}

TEST_F(ModuleScriptParameters, ReadsColours) {
    scene.set("Color.Custom3", ColorValue{200, 100, 50});
    scene.project.slotNames = {{318, "Tint"}};
    expectPainted("GetColor(3)", 200 / 255.0, 100 / 255.0, 50 / 255.0);
    expectPainted("GetColor('Tint')", 200 / 255.0, 100 / 255.0, 50 / 255.0);
    expectPainted("select(4, GetColor(3)), 0, 0", 1, 0, 0);
}

TEST_F(ModuleScriptParameters, ReadsLayersInEveryDepth) {
    auto image = std::make_shared<Image>(*FakeProject::solidImage(2, 2, 250, 40, 90, 255));
    image->samples[4] = std::byte{20};  // the second pixel's red
    scene.layer(4, std::make_shared<FakeProject::StillLayer>("Map", image));
    scene.project.slotNames = {{331, "Map"}};
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        scene.project.script = "r, g, b = GetLayer(4, 0, 1)";
        FrameRequest request;
        request.bitsPerChannel = bits;
        const Argb left = pixelAt(render(scene, request).output, 8, 6);
        EXPECT_NEAR(left.r, 250 / 255.0, 1e-4);
        EXPECT_NEAR(left.g, 40 / 255.0, 1e-4);
        EXPECT_NEAR(left.b, 90 / 255.0, 1e-4);
        scene.project.script = "r = GetLayer('Map', 1, 0) g = GetLayer(4, 1, 1) b = GetLayer(3, 1, 1)";
        const Argb right = pixelAt(render(scene, request).output, 8, 6);
        EXPECT_NEAR(right.r, 20 / 255.0, 1e-4);
        EXPECT_NEAR(right.g, 250 / 255.0, 1e-4);
        EXPECT_EQ(right.b, 0);
    }
}

// In the middle of its lattice's corner the noise is half of its multiplier, plus half the range's shift.
TEST_F(ModuleScriptParameters, ReadsNoise) {
    scene.set("Noise.Custom2.Multiplier", 0.5).set("Noise.Custom2.ResultOffset", 150);
    scene.set("Noise.Custom3.Multiplier", 0.5).set("Noise.Custom3.ResultOffset", 100);
    scene.set("Noise.Custom4.Multiplier", 0).set("Noise.Custom4.ResultOffset", 200);
    scene.project.slotNames = {{418, "Waves"}};
    expectPainted("GetNoise(2, 0, 0), GetNoise(3, 0, 0), GetNoise(4, 0, 0)", 0.375, 0.25, 0);
    expectPainted("GetNoise('Waves', 0, 0), 0, 0", 0.375, 0, 0);
}

TEST_F(ModuleScriptParameters, ReadsRandomNumbers) {
    scene.set("Random.Custom1.Min", 0).set("Random.Custom1.Max", 1).set("Random.Custom1.Seed", 7);
    scene.set("Random.Custom2.Min", 0.5).set("Random.Custom2.Max", 0.25);
    scene.project.slotNames = {{551, "Dice"}};
    std::seed_seq words{7, 2, -3};
    std::mt19937 generator(words);
    const double low = static_cast<double>(generator());
    const double fraction = (low + static_cast<double>(generator()) * 4294967296.0) / 18446744073709551616.0;
    expectPainted("GetRandom(1, 2.7, -3), GetRandom(2, 1, 1), GetRandom('Dice', 5, 5)", fraction, 0.5, 0.5);
}

TEST_F(ModuleScriptParameters, ReadsRamps) {
    scene.set("Ramp.Custom2", line({{0, 0}, {1, 1}})).set("Ramp.Custom3", line({{0, 1}, {0.5F, 0.5F}, {1, 0.75F}}));
    scene.set("Ramp.Custom4", line({}));
    scene.project.slotNames = {{848, "Curve"}};
    expectPainted("GetRamp(2, 0.3), GetRamp('Curve', 0.75), GetRamp(3, 0.25)", 0.3, 0.625, 0.75);
    expectPainted("GetRamp(4, 0.5), GetRamp(11, 0.5), GetRamp(2, -1)", 1, 0, 0);
}

// The default is a ramp of ones.
TEST_F(ModuleScriptParameters, ReadsRampsThatNobodyTouched) {
    expectPainted("GetRamp(1, 0), GetRamp(1, 0.5), GetRamp(10, 1)", 1, 1, 1);
}

// Gradient n lies in slot 2 n - 1; the slots between hold none, and a name finds the slot of its own number.
TEST_F(ModuleScriptParameters, ReadsGradientsInOddSlots) {
    scene.set("Gradient.Custom1", gradientTo(1, 0.5F, 0)).set("Gradient.Custom2", gradientTo(0, 1, 0.5F));
    scene.set("Gradient.Custom5", gradientTo(0.5F, 0, 1)).set("Gradient.Custom6", gradientTo(1, 1, 1));
    scene.project.slotNames = {{858, "first"}, {859, "second"}, {860, "third"}};
    expectPainted("GetGradient(1, 0.5)", 0.5, 0.25, 0);
    expectPainted("GetGradient(2, 0.5)", 0, 0, 0);
    expectPainted("GetGradient(3, 0.5)", 0, 0.5, 0.25);
    expectPainted("GetGradient(9, 1)", 0.5, 0, 1);
    for (int slot = 10; slot <= 22; ++slot)
        expectPainted("GetGradient(" + std::to_string(slot) + ", 1)", 0, 0, 0);
    expectPainted("GetGradient('first', 1)", 1, 0.5, 0);
    expectPainted("GetGradient('second', 1)", 0, 0, 0);
    expectPainted("GetGradient('third', 1)", 0, 1, 0.5);
}

Mask rectangle() {
    Mask mask;
    mask.name = "Frame";
    mask.closed = true;
    for (const Point2 point : {Point2{2, 1}, Point2{14, 1}, Point2{14, 9}, Point2{2, 9}})
        mask.vertices.push_back({point, {}, {}});
    return mask;
}

TEST_F(ModuleScriptParameters, ReadsMasksByTheirLength) {
    scene.project.masks = {rectangle()};
    scene.set("Path.Custom1", MaskReference{1}).set("Path.Custom3", MaskReference{1});
    scene.project.slotNames = {{872, "Frame"}};
    // The sides are 12, 8, 12 and 8 long; a sixteenth brings the coordinates below 1.
    const std::string script =
        "(function() local x, y = GetPath(1, 0.4) local u, v = GetPath('Frame', 0.75) return x / 16, y / 16, (u + v) / "
        "16 end)()";
    for (const Rational downsample : {Rational{1, 1}, Rational{1, 2}}) {
        // 16 of 40: 12 to the right and 4 down; 30: at 4 from the left, at the bottom.
        expectPainted(script, 14 / 16.0, 5 / 16.0, (4 + 9) / 16.0, downsample);
    }
    expectPainted("GetPath(2, 0.5), GetPath(2, 0.5)", 0, 0, 0);
}

TEST_F(ModuleScriptParameters, ReadsPointsInFullResolution) {
    scene.set("Point2D.Custom2", Point2{4, 8}).set("Point3D.Custom3", Point3{2, 6, 12});
    scene.project.slotNames = {{883, "Target"}, {896, "Lamp"}};
    for (const Rational downsample : {Rational{1, 1}, Rational{1, 2}}) {
        expectPainted("GetPoint2D(2) / 16, select(2, GetPoint2D('Target')) / 16, 0", 0.25, 0.5, 0, downsample);
        expectPainted("GetPoint3D(3) / 16, select(2, GetPoint3D('Lamp')) / 16, select(3, GetPoint3D(3)) / 16", 0.125,
                      0.375, 0.75, downsample);
    }
}

// The grid's centre lies in the middle of the composition, at the camera's point of interest.
TEST_F(ModuleScriptParameters, MeasuresTheDistanceToTheCamera) {
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(30);
    expectPainted("GetDistToCam(0, 0, 0) / 64, GetDistToCam(40, 0, 0) / 64, GetDistToCam(0, 0, -10) / 64", 30 / 64.0,
                  50 / 64.0, 20 / 64.0);
    // In view space, which goes with the resolution.
    expectPainted("GetDistToCam(0, 0, 0) / 64, 0, 0", 15 / 64.0, 0, 0, {1, 2});
}

TEST_F(ModuleScriptParameters, ComputesWithoutAnyParameter) {
    expectPainted("Lerp(0, 1, 0.25), Dist2D(0, 0, 0.3, 0.4), Dist3D(0.2, 0.1, 0.4, 0, 0.2, 0.2)", 0.25, 0.5, 0.3);
}

TEST_F(ModuleScriptParameters, FollowsKeys) {
    scene.key("Float.Custom1", 0, 0).key("Float.Custom1", 2, 1);
    scene.project.script = "r, g, b = GetFloat(1), 0, 0";
    const auto instance = instanceOf(scene);
    for (const int frame : {0, 25, 50}) {
        FrameRequest request;
        request.frame = frame;
        request.bitsPerChannel = 32;
        const FrameResult result = instance->renderFrame(request);
        expectGood(result);
        EXPECT_NEAR(pixelAt(result.output, 8, 6).r, frame / 50.0, 1e-5);
    }
}

}  // namespace
}  // namespace TessavoyHost
