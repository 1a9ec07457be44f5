#include <algorithm>
#include <cmath>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using ModuleRegion = ModuleFixture;
using ModuleResolution = ModuleFixture;

FrameRequest requestOf(int bits, Rational downsampleX = {}, Rational downsampleY = {}) {
    return {.bitsPerChannel = bits, .downsampleX = downsampleX, .downsampleY = downsampleY};
}

FrameRequest within(FrameRequest request, const Region& region) {
    request.region = region;
    return request;
}

// Premultiplied, as alpha alone shows how much a colour counts.
double difference(const Argb& a, const Argb& b) {
    return std::max({std::abs(a.a - b.a), std::abs(a.a * a.r - b.a * b.r), std::abs(a.a * a.g - b.a * b.g),
                     std::abs(a.a * a.b - b.a * b.b)});
}

// The part of a region whose pixels depend on nothing outside of it. Multisampling mixes each pixel with its
// neighbours, which a region's outermost pixels lack unless they are the picture's outermost ones too.
Region settledPart(const Region& region, const World& whole, bool multisampled) {
    if (!multisampled)
        return region;
    const int left = region.x == 0 ? 0 : 1, top = region.y == 0 ? 0 : 1;
    const int right = region.x + region.width == whole.width() ? 0 : 1;
    const int bottom = region.y + region.height == whole.height() ? 0 : 1;
    return {region.x + left, region.y + top, region.width - left - right, region.height - top - bottom};
}

// The pixels are those of the whole picture, up to what single precision makes of other coordinates: a step of 8 bits
// may then go the other way.
void expectSamePart(const World& part, const World& whole, const Region& region, bool multisampled = true) {
    ASSERT_EQ(part.width(), region.width);
    ASSERT_EQ(part.height(), region.height);
    EXPECT_EQ(part.record().origin_x, region.x);
    EXPECT_EQ(part.record().origin_y, region.y);
    const Region settled = settledPart(region, whole, multisampled);
    const double tolerance = whole.bitsPerChannel() == 8 ? 1.0 / 255 : 1e-4;
    double largest = 0;
    for (int y = settled.y; y < settled.y + settled.height; ++y) {
        for (int x = settled.x; x < settled.x + settled.width; ++x)
            largest = std::max(largest, difference(pixelAt(part, x - region.x, y - region.y), pixelAt(whole, x, y)));
    }
    EXPECT_LE(largest, tolerance);
}

constexpr Region regions[] = {{0, 0, 40, 30}, {17, 11, 23, 9}, {60, 40, 4, 8}, {31, 0, 1, 48}, {0, 0, 64, 48}};

// Every region of the scene, with and without multisampling.
void expectRegionsOf(const ModuleScene& scene, EffectInstance& instance, int bits) {
    const bool multisampled = !scene.project.parameters.contains(parameterIndexOf("MSAA"));
    const FrameResult whole = instance.renderFrame(requestOf(bits));
    for (const Region& region : regions) {
        SCOPED_TRACE(testing::Message() << bits << " bits, " << region.x << ", " << region.y);
        const FrameResult part = instance.renderFrame(within(requestOf(bits), region));
        expectGood(part);
        expectSamePart(part.output, whole.output, region, multisampled);
    }
}

TEST_F(ModuleRegion, ShowsThePixelsOfTheWholePicture) {
    for (const bool camera : {false, true}) {
        for (const bool multisampled : {false, true}) {
            SCOPED_TRACE(testing::Message() << "camera " << camera << ", multisampled " << multisampled);
            ModuleScene scene = camera ? richCameraScene(64, 48) : richScene(64, 48);
            if (!multisampled)
                scene.set("MSAA", 1);
            const auto instance = instanceOf(scene);
            for (const int bits : {8, 16, 32})
                expectRegionsOf(scene, *instance, bits);
        }
    }
}

TEST_F(ModuleRegion, IsCutFromTheSameGridAtLowerResolution) {
    for (const ModuleScene& scene : {richScene(64, 48), richCameraScene(64, 48)}) {
        const auto instance = instanceOf(scene);
        const FrameRequest half = requestOf(8, {1, 2}, {1, 2});
        const FrameResult whole = instance->renderFrame(half);
        ASSERT_EQ(whole.output.width(), 32);
        const Region region{9, 5, 17, 11};
        expectSamePart(instance->renderFrame(within(half, region)).output, whole.output, region);
    }
}

TEST_F(ModuleRegion, BeyondTheLayerIsTransparentThere) {
    ModuleScene scene = fourSquaresScene();
    scene.set("GridWidth", 64);  // the squares hang half over the edges
    const FrameResult result = render(scene, within(requestOf(8), {-10, -4, 84, 30}));
    expectPicture(result.output, {{{10, 11, 5, 10}}, {{69, 11, 5, 10}}});
}

TEST_F(ModuleRegion, OutsideTheLayerIsEmptyAndNoError) {
    const FrameResult result = render(fourSquaresScene(), within(requestOf(8), {100, 0, 10, 10}));
    expectPicture(result.output, {});
    EXPECT_EQ(result.output.width(), 10);
}

TEST_F(ModuleRegion, PlacesPredictedSquares) {
    for (const int bits : {8, 16, 32}) {
        const FrameResult result = render(fourSquaresScene(), within(requestOf(bits), {15, 9, 34, 30}));
        expectPicture(result.output, {{{0, 0, 6, 8}}, {{28, 0, 6, 8}}, {{0, 22, 6, 8}}, {{28, 22, 6, 8}}});
    }
}

// 2 by 2 squares of 24 pixels' side whose edges stay between pixels at all the resolutions below.
ModuleScene divisibleScene() {
    ModuleScene scene = sharpScene(96, 72);
    scene.set("CountX", 2).set("CountY", 2).set("GridWidth", 48).set("GridHeight", 36).set("InstanceSize.Value", 6);
    return scene;
}

// What divisibleScene shows at 1/x by 1/y of its size.
std::vector<Patch> dividedSquares(int x, int y) {
    const int width = 12 / x, height = 12 / y;
    return {{{18 / x, 12 / y, width, height}},
            {{66 / x, 12 / y, width, height}},
            {{18 / x, 48 / y, width, height}},
            {{66 / x, 48 / y, width, height}}};
}

struct Factors {
    int x, y;
};

constexpr Factors factors[] = {{1, 1}, {2, 2}, {3, 3}, {6, 6}, {2, 3}, {3, 1}, {1, 6}};

TEST_F(ModuleResolution, ShowsTheSamePictureSmaller) {
    const auto instance = instanceOf(divisibleScene());
    for (const auto& [x, y] : factors) {
        for (const int bits : {8, 16, 32}) {
            SCOPED_TRACE(testing::Message() << "1/" << x << " by 1/" << y << ", " << bits << " bits");
            const FrameResult result = instance->renderFrame(
                requestOf(bits, {1, static_cast<std::uint32_t>(x)}, {1, static_cast<std::uint32_t>(y)}));
            expectGood(result);
            EXPECT_EQ(result.output.width(), 96 / x);
            EXPECT_EQ(result.output.height(), 72 / y);
            expectPicture(result.output, dividedSquares(x, y));
        }
    }
}

TEST_F(ModuleResolution, ShowsTheSamePictureSmallerUnderACamera) {
    ModuleScene scene = divisibleScene();
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(100);
    const auto instance = instanceOf(scene);
    for (const std::uint32_t divisor : {1u, 2u, 3u, 6u}) {
        SCOPED_TRACE(divisor);
        const FrameResult result = instance->renderFrame(requestOf(8, {1, divisor}, {1, divisor}));
        expectGood(result);
        expectPicture(result.output, dividedSquares(static_cast<int>(divisor), static_cast<int>(divisor)));
    }
}

// Depth goes with the horizontal factor, so that heights shrink by the vertical factor and by the ratio of the two.
TEST_F(ModuleResolution, ScalesDepthByTheHorizontalFactorUnderACamera) {
    ModuleScene scene = sharpScene(64, 48);
    scene.set("CountX", 2).set("CountY", 2).set("GridWidth", 32).set("GridHeight", 32).set("InstanceSize.Value", 8);
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(100);
    const FrameResult result = render(scene, requestOf(8, {1, 2}, {1, 4}));
    EXPECT_EQ(result.output.width(), 32);
    EXPECT_EQ(result.output.height(), 12);
    expectPicture(result.output, {{{4, 3, 8, 2}}, {{20, 3, 8, 2}}, {{4, 7, 8, 2}}, {{20, 7, 8, 2}}});
}

// Every picture's pixels are averages of what lies under them, so the two differ by what sampling loses.
TEST_F(ModuleResolution, HalvesASoftPictureClosely) {
    ModuleScene scene = richScene(96, 72);
    scene.set("CountX", 4).set("CountY", 3).set("InstanceSize.Value", 9);
    for (const bool camera : {false, true}) {
        scene.set("UseCompCamera", camera);
        scene.project.camera = facingCamera(100);
        const auto instance = instanceOf(scene);
        const World whole = std::move(instance->renderFrame(requestOf(32)).output);
        const World half = std::move(instance->renderFrame(requestOf(32, {1, 2}, {1, 2})).output);
        double sum = 0;
        for (int y = 0; y < half.height(); ++y) {
            for (int x = 0; x < half.width(); ++x) {
                const double mean = (pixelAt(whole, 2 * x, 2 * y).a + pixelAt(whole, 2 * x + 1, 2 * y).a +
                                     pixelAt(whole, 2 * x, 2 * y + 1).a + pixelAt(whole, 2 * x + 1, 2 * y + 1).a) /
                                    4;
                sum += std::abs(mean - pixelAt(half, x, y).a);
            }
        }
        EXPECT_LT(sum / (half.width() * half.height()), 0.02) << camera;
    }
}

// A layer of odd size keeps its last column.
TEST_F(ModuleResolution, RoundsOddSizesUp) {
    ModuleScene scene = sharpScene(65, 47);
    scene.set("CountX", 1).set("CountY", 1).set("InstanceSize.Value", 100);
    const FrameResult result = render(scene, requestOf(8, {1, 2}, {1, 2}));
    EXPECT_EQ(result.output.width(), 33);
    EXPECT_EQ(result.output.height(), 24);
    expectPicture(result.output, {{{0, 0, 33, 24}}});
}

}  // namespace
}  // namespace TessavoyHost
