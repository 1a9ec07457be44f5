#include <atomic>
#include <cstring>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using ModuleFrame = ModuleFixture;

TEST_F(ModuleFrame, ShowsEachSquareAtItsPlaceInEveryDepth) {
    ModuleScene scene = fourSquaresScene();
    scene.set("InstanceColor.Color", ColorValue{200, 100, 50});
    expectPictureAtEveryDepth(scene, fourSquares({1, 200 / 255.0, 100 / 255.0, 50 / 255.0}));
}

TEST_F(ModuleFrame, HasStraightColourWhereItIsTransparent) {
    ModuleScene scene = fourSquaresScene();
    scene.set("InstanceColor.Color", ColorValue{200, 100, 50}).set("InstanceAlpha.Value", 0.4);
    expectPictureAtEveryDepth(scene, fourSquares({0.4, 200 / 255.0, 100 / 255.0, 50 / 255.0}));
}

TEST_F(ModuleFrame, HasNoColourWhereItIsAlmostTransparent) {
    ModuleScene scene = fourSquaresScene();
    scene.set("InstanceAlpha.Value", 0.009);
    expectPictureAtEveryDepth(scene, {});
    scene.set("InstanceAlpha.Value", 0.011);
    expectPicture(render(scene, {.bitsPerChannel = 32}).output, fourSquares({0.011, 1, 1, 1}));
}

TEST_F(ModuleFrame, ReachesTheFullValueOf16Bits) {
    const FrameResult result = render(fourSquaresScene(), {.bitsPerChannel = 16});
    std::uint16_t samples[4];
    std::memcpy(samples, result.output.row(10) + 15 * sizeof samples, sizeof samples);
    for (const std::uint16_t sample : samples)
        EXPECT_EQ(sample, 32768);
}

TEST_F(ModuleFrame, DoesNotExceedOneInFloats) {
    ModuleScene scene = fourSquaresScene();
    scene.set("InstanceAlpha.CropToOne", 0).set("InstanceAlpha.Value", 3).set("BlendMode", 2);
    expectPicture(render(scene, {.bitsPerChannel = 32}).output, fourSquares());
}

TEST_F(ModuleFrame, OfAnEmptyGridIsEmpty) {
    ModuleScene scene(64, 48);
    expectPictureAtEveryDepth(scene.set("CountX", 0).set("CountY", 10), {});
    expectPictureAtEveryDepth(scene.set("CountX", 10).set("CountY", 0), {});
    expectPictureAtEveryDepth(scene.set("CountX", 0), {});
}

TEST_F(ModuleFrame, OfAnEmptyGridShowsTheBackgroundOfTheDepthOutput) {
    ModuleScene scene(64, 48);
    scene.set("CountX", 0).set("OutputType", 2);
    const Patch black{{0, 0, 64, 48}, {1, 0, 0, 0}};
    expectPicture(render(scene).output, {black});
    expectPicture(render(scene.set("OutputZDepthAlpha", 1)).output, {});
}

// The driver decides what the division by no extent gives for the greys; alpha has no part in it.
TEST_F(ModuleFrame, OfADepthOutputWithoutExtentIsNoError) {
    ModuleScene scene = fourSquaresScene();
    scene.set("OutputType", 2).set("OutputZDepthStart", 0).set("OutputZDepthEnd", 0);
    for (const int bits : {8, 16, 32}) {
        const FrameResult result = render(scene, {.bitsPerChannel = bits});
        for (int y = 0; y < 48; ++y) {
            for (int x = 0; x < 64; ++x)
                ASSERT_EQ(pixelAt(result.output, x, y).a, 1) << x << ", " << y;
        }
    }
}

// No choice of the popup: the target is doubled, but neither drawn on as a whole nor brought down. A copy shows it at
// half its size, in the first quarter of the picture.
TEST_F(ModuleFrame, OfAnUnknownMultisamplingIsHalfAsLarge) {
    ModuleScene scene = fourSquaresScene();
    scene.set("MSAA", 3).set("InstanceSize.Value", 6);  // squares of 12 pixels' side, at 10 and 42 by 6 and 30
    expectPictureAtEveryDepth(scene, {{{5, 3, 6, 6}}, {{21, 3, 6, 6}}, {{5, 15, 6, 6}}, {{21, 15, 6, 6}}});
}

TEST_F(ModuleFrame, IsEmptyWhenNothingIsVisible) {
    expectPicture(render(fourSquaresScene().set("InstanceVisible.Probability", 0)).output, {});
    expectPicture(render(fourSquaresScene().set("InstanceSize.Value", 0)).output, {});
    expectPicture(render(fourSquaresScene().set("InstanceSize.Value", -5)).output, {});
    expectPicture(render(fourSquaresScene().set("ShapeRaysCount.Value", 0.9)).output, {});
    expectPicture(render(fourSquaresScene().set("InstanceAlpha.Value", 0)).output, {});
    expectPicture(render(fourSquaresScene().set("CenterPos", Point2{-500, -500})).output, {});
}

TEST_F(ModuleFrame, HidesTheLayerItStandsOn) {
    ModuleScene scene = fourSquaresScene();
    scene.project.layers[0] =
        std::make_shared<FakeProject::StillLayer>("Plate", FakeProject::solidImage(64, 48, 255, 0, 0));
    expectPicture(render(scene).output, fourSquares());
}

TEST_F(ModuleFrame, IsDrawnAlsoWhereItsLayerHasNoPicture) {
    ModuleScene scene = fourSquaresScene();
    scene.project.layers[0] =
        std::make_shared<FakeProject::StillLayer>("Late", FakeProject::solidImage(64, 48, 255, 0, 0), 1, 1);
    expectPicture(render(scene, {.frame = 0}).output, fourSquares());
}

TEST_F(ModuleFrame, SoftensEdgesOnly) {
    for (const bool multisampled : {false, true}) {
        for (const double feather : {0.0, 1.0}) {
            ModuleScene scene = fourSquaresScene();
            scene.set("MSAA", multisampled ? 2 : 1).set("ShapeFeatherPixels", feather);
            const FrameResult result = render(scene);
            const Region inside{12, 8, 8, 8}, outside{23, 19, 18, 10};
            EXPECT_EQ(bytesOf(result.output, inside),
                      std::vector<std::byte>(inside.width * inside.height * 4, std::byte{255}));
            EXPECT_EQ(bytesOf(result.output, outside), std::vector<std::byte>(outside.width * outside.height * 4));
            EXPECT_EQ(pixelAt(result.output, 10, 12).a > 0, feather > 0 || multisampled);
        }
    }
}

TEST_F(ModuleFrame, DrawsLaterCellsOverEarlierOnes) {
    ModuleScene scene = sharpScene(64, 48);
    scene.set("CountX", 2).set("CountY", 1).set("GridWidth", 8).set("InstanceSize.Value", 8);
    // The layer says how bright each of the two columns is: black, then white.
    const auto map = FakeProject::image(2, 1, [](int x, int) {
        const auto level = static_cast<std::uint8_t>(255 * x);
        return FakeProject::Texel{level, level, level, 255};
    });
    scene.layer(1, std::make_shared<FakeProject::StillLayer>("Map", map));
    scene.set("InstanceColor.Color", ColorValue{0, 0, 0});
    scene.set("InstanceColor.Layer.Index", 2).set("InstanceColor.Layer.Multiplier", 1);
    const Patch black{{20, 16, 16, 16}, {1, 0, 0, 0}}, light{{28, 16, 16, 16}, white};
    expectPictureAtEveryDepth(scene, {black, light});
}

TEST_F(ModuleFrame, UnderTheStandardCameraIsTheFlatOne) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(170);
    expectPicture(render(scene).output, fourSquares());
}

TEST_F(ModuleFrame, UnderACameraTwiceAsFarAwayIsHalfAsLarge) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", 1).set("InstanceSize.Value", 6).set("GridWidth", 40).set("GridHeight", 32);
    scene.project.camera = facingCamera(100);
    scene.project.camera->position = {{{0, Point3{32, 24, -200}, Ease::Hold}}};
    expectPicture(render(scene).output, {{{19, 13, 6, 6}}, {{39, 13, 6, 6}}, {{19, 29, 6, 6}}, {{39, 29, 6, 6}}});
}

TEST_F(ModuleFrame, WithoutACameraIsTheFlatOne) {
    expectPicture(render(fourSquaresScene().set("UseCompCamera", 1)).output, fourSquares());
}

TEST_F(ModuleFrame, FollowsItsKeys) {
    ModuleScene scene = sharpScene(64, 48);
    scene.set("CountX", 1).set("CountY", 1).set("InstanceSize.Value", 5);
    scene.key("InstanceOffsetX.Value", 0, -10).key("InstanceOffsetX.Value", 0.4, 10);
    const auto instance = instanceOf(scene);
    for (const int frame : {0, 5, 10, 20}) {
        SCOPED_TRACE(frame);
        const FrameResult result = instance->renderFrame({.frame = frame});
        expectGood(result);
        expectPicture(result.output, {{{17 + 2 * std::min(frame, 10), 19, 10, 10}}});
    }
}

TEST_F(ModuleFrame, DoesNotDependOnTheFramesBefore) {
    const ModuleScene scene = richScene(64, 48);
    const auto instance = instanceOf(scene);
    std::vector<std::vector<std::byte>> forwards;
    for (const int frame : {0, 30, 60, 90})
        forwards.push_back(bytesOf(instance->renderFrame({.frame = frame}).output));
    EXPECT_NE(forwards.front(), forwards.back());
    for (const int place : {3, 1, 0, 2})
        EXPECT_EQ(bytesOf(instance->renderFrame({.frame = 30 * place}).output), forwards[place]) << place;
    EXPECT_EQ(bytesOf(render(scene, {.frame = 60}).output), forwards[2]) << "another instance";
}

TEST_F(ModuleFrame, OfAnInstanceDoesNotDependOnOtherInstances) {
    ModuleScene larger = sharpScene(100, 30);
    larger.set("CountX", 1).set("CountY", 1).set("InstanceSize.Value", 10).set("MSAA", 2);
    const auto first = instanceOf(fourSquaresScene()), second = instanceOf(larger);
    for (int round = 0; round < 3; ++round) {
        expectPicture(first->renderFrame({}).output, fourSquares());
        const FrameResult result = second->renderFrame({.bitsPerChannel = 16});
        expectGood(result);
        EXPECT_EQ(pixelAt(result.output, 50, 15).a, 1);
        EXPECT_EQ(pixelAt(result.output, 30, 15).a, 0);
    }
}

TEST_F(ModuleFrame, CanBeOnePixel) {
    ModuleScene scene = sharpScene(1, 1);
    scene.set("CountX", 1).set("CountY", 1).set("InstanceSize.Value", 5).set("MSAA", 2);
    expectPicture(render(scene).output, {{{0, 0, 1, 1}}});
}

TEST_F(ModuleFrame, ThatIsCancelledSaysSo) {
    std::atomic<bool> cancel = true;
    FrameRequest request;
    request.cancel = &cancel;
    const auto instance = instanceOf(fourSquaresScene());
    const FrameResult cancelled = instance->renderFrame(request);
    EXPECT_EQ(cancelled.error, PF_Interrupt_CANCEL);
    EXPECT_THAT(cancelled.broken, testing::IsEmpty());
    EXPECT_FALSE(cancelled.displayError);
    cancel = false;
    const FrameResult wanted = instance->renderFrame(request);
    expectGood(wanted);
    expectPicture(wanted.output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
