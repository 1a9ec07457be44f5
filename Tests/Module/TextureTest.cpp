#include <algorithm>
#include <cmath>

#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/ApplicationContext.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

using ModuleTexture = ModuleFixture;

constexpr ColorValue red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255}, grey{100, 150, 200};

Argb argbOf(const ColorValue& colour) {
    return {colour.alpha / 255.0, colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0};
}

FakeProject::Texel texelOf(const ColorValue& colour) {
    return {colour.red, colour.green, colour.blue, colour.alpha};
}

// A sheet of one-coloured square frames, row by row.
std::shared_ptr<const Image> sheet(int columns, int frameSide, const std::vector<ColorValue>& frames) {
    const int rows = static_cast<int>(frames.size()) / columns;
    return FakeProject::image(columns * frameSide, rows * frameSide, [&](int x, int y) {
        return texelOf(frames[static_cast<std::size_t>(y / frameSide * columns + x / frameSide)]);
    });
}

std::shared_ptr<FrameSource> still(std::shared_ptr<const Image> image) {
    return std::make_shared<FakeProject::StillLayer>("Sheet", std::move(image));
}

// A layer whose frames, 25 a second, each have one colour.
std::shared_ptr<FrameSource> film(double start, double duration, const std::vector<ColorValue>& frames, int width = 8,
                                  int height = 8) {
    std::vector<std::shared_ptr<const Image>> images;
    for (const ColorValue& frame : frames)
        images.push_back(FakeProject::image(width, height, [&](int, int) { return texelOf(frame); }));
    return std::make_shared<FakeProject::FilmLayer>("Film", std::move(images), start, duration);
}

constexpr int gridOfItems = 1, timelineFrames = 2, splitImage = 3;

// One or more textured quads of 16 pixels' side in a row, 24 pixels apart, in the middle of 96 by 32.
ModuleScene quads(int count, int mode, std::shared_ptr<FrameSource> source) {
    ModuleScene scene = sharpScene(96, 32);
    scene.set("CountX", count).set("CountY", 1).set("GridWidth", 24 * (count - 1));
    // A textured quad's half side is the square root of 2 times the size.
    scene.set("InstanceSize.Value", 8 / std::sqrt(2.0));
    scene.set("ShapeType", 2).set("ShapeTextureLayerIndex", 2).set("ShapeFramesSplittingMode", mode);
    if (source != nullptr)
        scene.layer(1, std::move(source));
    return scene;
}

// Where the k-th of so many quads stands.
Region placeOf(int k, int count) {
    return {40 + 24 * k - 12 * (count - 1), 8, 16, 16};
}

// The whole quad, where its frame borders on no other one of the sheet.
void expectQuads(const World& world, const std::vector<ColorValue>& colours) {
    std::vector<Patch> patches;
    for (int k = 0; k < static_cast<int>(colours.size()); ++k)
        patches.push_back({placeOf(k, static_cast<int>(colours.size())), argbOf(colours[static_cast<std::size_t>(k)])});
    expectPicture(world, patches);
}

// The inner part of the quad: at its border the next frame of the sheet shines in by half a texel.
void expectInside(const World& world, const Region& place, const ColorValue& colour) {
    const Argb expected = argbOf(colour);
    for (int y = place.y + 4; y < place.y + place.height - 4; ++y) {
        for (int x = place.x + 4; x < place.x + place.width - 4; ++x) {
            const Argb pixel = pixelAt(world, x, y);
            ASSERT_NEAR(pixel.a, expected.a, 0.002) << x << ", " << y;
            ASSERT_NEAR(pixel.r, expected.r, 0.002) << x << ", " << y;
            ASSERT_NEAR(pixel.g, expected.g, 0.002) << x << ", " << y;
            ASSERT_NEAR(pixel.b, expected.b, 0.002) << x << ", " << y;
        }
    }
}

TEST_F(ModuleTexture, ShowsAWholeImageInEveryDepth) {
    ModuleScene scene = quads(3, gridOfItems, still(sheet(1, 4, {grey})));
    scene.set("ShapeXFramesInTexture", 1).set("ShapeYFramesInTexture", 1);
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        expectQuads(render(scene, {.bitsPerChannel = bits}).output, {grey, grey, grey});
    }
}

TEST_F(ModuleTexture, IsMultipliedByTheInstancesColour) {
    ModuleScene scene = quads(1, gridOfItems, still(sheet(1, 4, {{255, 255, 51, 255}})));
    scene.set("ShapeXFramesInTexture", 1).set("ShapeYFramesInTexture", 1);
    scene.set("InstanceColor.Color", ColorValue{51, 102, 255}).set("InstanceAlpha.Value", 0.6);
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        expectQuads(render(scene, {.bitsPerChannel = bits}).output, {{51, 102, 51, 153}});
    }
}

// Each frame of the composition goes on by a frame of the sheet: F = 1 / 4, 2 / 4 and so on of the three steps from the
// first to the last, rounded.
TEST_F(ModuleTexture, PlaysASheetOfItems) {
    ModuleScene scene = quads(1, gridOfItems, still(sheet(2, 4, {red, green, blue, grey})));
    scene.set("ShapeFramesAnimationSequence", 1).set("ShapeFrameIndex.Value", 0);
    const auto instance = instanceOf(scene);
    const ColorValue expected[] = {red, green, blue, blue, grey, grey};  // round(3 f / 4)
    for (int frame = 0; frame < 6; ++frame) {
        for (const int bits : {8, 16, 32}) {
            SCOPED_TRACE(testing::Message() << "frame " << frame << ", " << bits << " bits");
            const FrameResult result = instance->renderFrame({.frame = frame, .bitsPerChannel = bits});
            expectGood(result);
            expectInside(result.output, placeOf(0, 1), expected[frame]);
        }
    }
}

TEST_F(ModuleTexture, LimitsTheFramesOfASheet) {
    ModuleScene scene = quads(1, gridOfItems, still(sheet(2, 4, {red, green, blue, grey})));
    scene.set("ShapeFrameIndex.Value", 100);
    const ColorValue last[] = {grey, red, green, blue, grey, grey};  // a limit of 0 is none, one above 4 is 4
    for (const int limit : {0, 1, 2, 3, 4, 10000}) {
        SCOPED_TRACE(limit);
        scene.set("ShapeLimitFramesCount", limit);
        expectInside(render(scene).output, placeOf(0, 1), last[std::min(limit, 5)]);
    }
}

TEST_F(ModuleTexture, SplitsAnImageAmongTheCells) {
    ModuleScene scene = quads(3, splitImage, still(sheet(3, 8, {red, green, blue})));
    for (const int bits : {8, 16, 32}) {
        const FrameResult result = render(scene, {.bitsPerChannel = bits});
        expectInside(result.output, placeOf(0, 3), red);
        expectInside(result.output, placeOf(1, 3), green);
        expectInside(result.output, placeOf(2, 3), blue);
    }
}

TEST_F(ModuleTexture, KeepsTheImagesRowsUpright) {
    ModuleScene scene = quads(1, splitImage, still(sheet(1, 8, {red, green, blue})));
    scene.set("ShapeFramesSplittingMode", gridOfItems).set("ShapeXFramesInTexture", 1).set("ShapeYFramesInTexture", 1);
    const FrameResult result = render(scene);
    EXPECT_EQ(pixelAt(result.output, 47, 9).r, 1);
    EXPECT_EQ(pixelAt(result.output, 47, 16).g, 1);
    EXPECT_EQ(pixelAt(result.output, 47, 22).b, 1);
}

TEST_F(ModuleTexture, ShowsTheFramesOfALayersTimeline) {
    // Three frames: round(2 F) steps at F = 0, 0.5 and 1.
    const auto layer = film(0, 3 / 25.0, std::vector{red, green, blue});
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        ModuleScene scene = quads(1, timelineFrames, layer);
        expectInside(render(scene.set("ShapeFrameIndex.Value", 0), {.bitsPerChannel = bits}).output, placeOf(0, 1),
                     red);
        expectInside(render(scene.set("ShapeFrameIndex.Value", 50), {.bitsPerChannel = bits}).output, placeOf(0, 1),
                     green);
        expectInside(render(scene.set("ShapeFrameIndex.Value", 100), {.bitsPerChannel = bits}).output, placeOf(0, 1),
                     blue);
    }
}

TEST_F(ModuleTexture, TakesATimelineFromWhereTheLayerStarts) {
    ModuleScene scene = quads(1, timelineFrames, film(0.4, 2 / 25.0, std::vector{red, green}));
    // The atlas is built from the layer at the current time, where it must have pixels to be drawn at all.
    expectInside(render(scene.set("ShapeFrameIndex.Value", 0), {.frame = 11}).output, placeOf(0, 1), red);
    expectInside(render(scene.set("ShapeFrameIndex.Value", 100), {.frame = 11}).output, placeOf(0, 1), green);
}

// The layer's own frames fill several rows of the texture when they are wide.
TEST_F(ModuleTexture, FindsFramesInAnyRowOfALargeTimeline) {
    const std::vector<ColorValue> colours = {red, green, blue, grey, green, red};
    ModuleScene scene = quads(1, timelineFrames, film(0, 6 / 25.0, colours, 4000, 4));
    const auto instance = [&](int index) { return instanceOf(scene.set("ShapeFrameIndex.Value", 20 * index)); };
    for (int index = 0; index < 6; ++index) {
        SCOPED_TRACE(index);
        const FrameResult result = instance(index)->renderFrame({});
        expectGood(result);
        expectInside(result.output, placeOf(0, 1), colours[static_cast<std::size_t>(index)]);
    }
}

TEST_F(ModuleTexture, OfATimelineShorterThanAFrameIsNoError) {
    ModuleScene scene = quads(1, timelineFrames, film(0, 0.02, std::vector{red}));
    for (const int bits : {8, 16, 32})
        render(scene, {.bitsPerChannel = bits});
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

TEST_F(ModuleTexture, OfAnEmptySlotIsAPlainSquare) {
    ModuleScene scene = quads(1, gridOfItems, nullptr);
    scene.set("InstanceSize.Value", 8);
    for (const int mode : {gridOfItems, timelineFrames, splitImage}) {
        SCOPED_TRACE(mode);
        scene.set("ShapeFramesSplittingMode", mode);
        expectPicture(render(scene.set("ShapeTextureLayerIndex", 2)).output, {{placeOf(0, 1)}});
        expectPicture(render(scene.set("ShapeTextureLayerIndex", 1)).output, {{placeOf(0, 1)}});
        expectPicture(render(scene.set("ShapeTextureLayerIndex", 11)).output, {{placeOf(0, 1)}});
    }
}

TEST_F(ModuleTexture, OfALayerThatHasNothingAtThisTimeIsAPlainSquare) {
    ModuleScene scene = quads(1, gridOfItems, film(1, 1, std::vector{red}));
    scene.set("InstanceSize.Value", 8);
    for (const int mode : {gridOfItems, timelineFrames, splitImage})
        expectPicture(render(scene.set("ShapeFramesSplittingMode", mode)).output, {{placeOf(0, 1)}});
}

// The timeline looks its layer up under the popup's number as it stands: "Layer 3" (4) finds the second custom layer.
TEST_F(ModuleTexture, OfATimelineTakesEverySecondSlot) {
    ModuleScene scene = quads(1, timelineFrames, still(sheet(1, 8, {red})));
    scene.layer(2, film(0, 2 / 25.0, std::vector{green, green}));
    scene.layer(3, still(sheet(1, 8, {blue})));
    expectQuads(render(scene.set("ShapeTextureLayerIndex", 4)).output, {green});
    scene.set("ShapeFramesSplittingMode", gridOfItems).set("ShapeXFramesInTexture", 1).set("ShapeYFramesInTexture", 1);
    expectQuads(render(scene).output, {blue});
}

// "Layer 2" (3) finds a rename button, which holds no layer.
TEST_F(ModuleTexture, OfATimelineOnAButtonIsAnErrorWithoutHarm) {
    ModuleScene scene = quads(1, timelineFrames, still(sheet(1, 8, {red})));
    scene.layer(2, still(sheet(1, 8, {green})));
    const FrameResult result = instanceOf(scene.set("ShapeTextureLayerIndex", 3))->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_THAT(result.broken, IsEmpty());
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

TEST_F(ModuleTexture, IsAveragedInHalfResolution) {
    ModuleScene scene = quads(1, gridOfItems, still(sheet(2, 4, {red, blue})));
    scene.set("ShapeXFramesInTexture", 1).set("ShapeYFramesInTexture", 1);
    FrameRequest request;
    request.downsampleX = request.downsampleY = {1, 2};
    const FrameResult result = render(scene, request);
    // 8 by 8 pixels around (24, 8): the left half shows red, the right half blue.
    EXPECT_EQ(pixelAt(result.output, 21, 8).r, 1);
    EXPECT_EQ(pixelAt(result.output, 21, 8).b, 0);
    EXPECT_EQ(pixelAt(result.output, 26, 8).b, 1);
    EXPECT_EQ(pixelAt(result.output, 19, 8).a, 0);
}

// The text about it goes with the exception and is not shown.
TEST_F(ModuleTexture, LargerThanTheGpuAllowsIsAnError) {
    const int limit = Tessavoy::Testing::ApplicationContext().largestTexture();
    ASSERT_GT(limit, 0);
    const auto strip = [](int width, int height) { return still(FakeProject::solidImage(width, height, 255, 0, 0)); };
    for (const int mode : {gridOfItems, timelineFrames, splitImage}) {
        SCOPED_TRACE(mode);
        expectOutOfMemory(instanceOf(quads(1, mode, strip(limit + 1, 1)))->renderFrame({}));
        expectOutOfMemory(instanceOf(quads(1, mode, strip(1, limit + 1)))->renderFrame({}));
        if (mode != timelineFrames)
            expectQuads(render(quads(1, mode, strip(limit, 1))).output, {red});
    }
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
