#include "HostInterface/Constants.h"
#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/PixelTransfer.h"
#include "Source/Gl/ReadBack.h"
#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/Textures.h"
#include "Source/TextureAtlas.h"
#include "Tests/Unit/Gl/DrawingHost.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using namespace Testing;

/// Whole frames, in the order of calls in which the effect draws them.
class FrameTest : public GlTest {
protected:
    struct FrameSettings {
        A_long width = 8;
        A_long height = 6;
        bool multisampled = false;
        bool textured = false;
        bool fog = false;
        bool depth = false;
        PF_PixelFormat format = PF_PixelFormat_ARGB32;
    };

    void expectNoErrors(const char* pass) { EXPECT_TRUE(takeGlErrors().empty()) << pass; }

    /// A red rectangle over the left half of the picture; the input world is also the layer that textures it.
    void drawFrame(const FrameSettings& frame, HostWorld& input, HostWorld& output) {
        const PixelTransfer transfer = GetPixelTransfer(frame.format);
        PrepareRenderTargets(renderData(), static_cast<std::uint16_t>(frame.width),
                             static_cast<std::uint16_t>(frame.height), frame.multisampled);
        AttachTarget(renderData(), renderData().resolveTexture);
        setViewport(frame.width, frame.height);
        setTransparentClearColor();
        clearTarget();
        const int scale = frame.multisampled ? 2 : 1;
        AttachTarget(renderData(), renderData().sceneTexture);
        setViewport(scale * frame.width, scale * frame.height);
        clearTarget();
        expectNoErrors("targets");
        drawInstances(frame, input, transfer.multiplier16bit);
        setViewport(frame.width, frame.height);
        AttachTarget(renderData(), renderData().resolveTexture);
        clearTarget();
        DrawFullPicture(renderData(), frame.width, frame.height, renderData().sceneTexture, blendOff,
                        frame.multisampled);
        expectNoErrors("resolve");
        AttachTarget(renderData(), renderData().outputTexture);
        clearTarget();
        DrawOutput(renderData(), frame.width, frame.height, renderData().resolveTexture, transfer.multiplier16bit);
        expectNoErrors("output");
        ReadBackOutput(renderData(), &mHost.inData, input.world(), output.world(), frame.format, transfer.bytesPerPixel,
                       transfer.glType);
        expectNoErrors("read-back");
        releaseTargets();
        expectNoErrors("release");
        // the next frame's atlas is bound where the draw looks for it
        EXPECT_EQ(glState(gl33core::GL_ACTIVE_TEXTURE), static_cast<gl::GLint>(gl33core::GL_TEXTURE0));
    }

    DrawingHost mHost;

private:
    void drawInstances(const FrameSettings& frame, HostWorld& input, float multiplier16bit) {
        TextureAtlas atlas;
        BatchSettings settings = {.multiplier16bit = multiplier16bit, .blendMode = blendNormal};
        if (frame.textured) {
            atlas.BuildFromImage(&mHost.inData, renderData(), input.world(), 1, 1, 0);
            settings.atlas = atlas.textureName;
            expectNoErrors("atlas");
        }
        if (frame.depth) {
            settings.zDepth = {.enabled = 1, .start = 0, .end = 100, .clamp = 1};
            drawBackground(renderData());
            expectNoErrors("background");
        } else if (frame.fog) {
            settings.fog = {.enabled = 1, .colorWeight = 100, .opacity = 100, .start = 1000, .end = 1500};
            settings.fog.gradientTexture = MakeFogTexture([](float, float* colour) { std::fill_n(colour, 4, 0.5F); });
            expectNoErrors("fog");
        }
        drawHalf(frame, settings);
        deleteTexture(settings.fog.gradientTexture);
    }

    void drawHalf(const FrameSettings& frame, const BatchSettings& settings) {
        constexpr Colour red = {1, 0, 0, 1};
        const auto corners =
            rectangle(0, 0, static_cast<float>(frame.width) / 2, static_cast<float>(frame.height), 0, red);
        if (!frame.textured) {
            drawShapes(renderData(), flatView(frame.width, frame.height), corners, settings);
            expectNoErrors("shapes");
            return;
        }
        std::vector<SpriteVertex> sprites;
        for (const ShapeVertex& corner : corners) {
            sprites.push_back({corner.x, corner.y, corner.z, corner.colour, 0.5F, 0.5F, 0});
        }
        drawSprites(renderData(), flatView(frame.width, frame.height), sprites, settings);
        EXPECT_EQ(takeGlErrors(), std::vector{static_cast<std::uint32_t>(gl33core::GL_INVALID_OPERATION)}) << "sprites";
    }
};

TEST_F(FrameTest, theHalfIsRedInEveryVariant) {
    for (const bool multisampled : {false, true}) {
        for (const bool textured : {false, true}) {
            for (const bool fog : {false, true}) {
                SCOPED_TRACE(::testing::Message()
                             << "multisampled " << multisampled << ", textured " << textured << ", fog " << fog);
                HostWorld input(8, 6, PF_PixelFormat_ARGB64);
                HostWorld output(8, 6, PF_PixelFormat_ARGB64);
                for (A_long i = 0; i < 48; ++i) {
                    input.set<std::uint16_t>(i % 8, i / 8, 32768, 32768, 32768, 32768);
                }
                drawFrame(
                    {.multisampled = multisampled, .textured = textured, .fog = fog, .format = PF_PixelFormat_ARGB64},
                    input, output);
                for (const A_long y : {0, 3, 5}) {
                    const std::vector<std::uint16_t> left(output.pixel<std::uint16_t>(2, y),
                                                          output.pixel<std::uint16_t>(2, y) + 4);
                    const std::vector<std::uint16_t> right(output.pixel<std::uint16_t>(6, y),
                                                           output.pixel<std::uint16_t>(6, y) + 4);
                    EXPECT_EQ(left, (std::vector<std::uint16_t>{32768, 32768, 0, 0}));
                    EXPECT_EQ(right, (std::vector<std::uint16_t>{0, 0, 0, 0}));
                }
            }
        }
    }
}

TEST_F(FrameTest, depthWithoutAlphaStandsOnOpaqueBlack) {
    HostWorld input(8, 6, PF_PixelFormat_ARGB32);
    HostWorld output(8, 6, PF_PixelFormat_ARGB32);
    drawFrame({.depth = true}, input, output);
    EXPECT_EQ(output.pixel<std::uint8_t>(1, 1)[0], 255);
    EXPECT_EQ(output.pixel<std::uint8_t>(1, 1)[1], 255);  // at the start: white
    EXPECT_EQ(output.pixel<std::uint8_t>(6, 1)[0], 255);
    EXPECT_EQ(output.pixel<std::uint8_t>(6, 1)[1], 0);
}

TEST_F(FrameTest, aHundredFramesLeaveNoObjectAndNothingLentBehind) {
    int afterFirstRound = 0;
    for (int frame = 0; frame < 100; ++frame) {
        const FrameSettings settings = {.width = 8 + frame % 3,
                                        .multisampled = frame % 2 == 1,
                                        .textured = frame % 4 >= 2,
                                        .fog = frame % 5 >= 2,
                                        .depth = frame % 7 == 0};
        HostWorld input(settings.width, settings.height, settings.format);
        HostWorld output(settings.width, settings.height, settings.format);
        drawFrame(settings, input, output);
        const int objects = liveObjects();
        afterFirstRound = frame == 0 ? objects : afterFirstRound;
        ASSERT_EQ(objects, afterFirstRound) << "frame " << frame;
        ASSERT_EQ(mHost.lent(), 0) << "frame " << frame;
    }
}

}  // namespace
}  // namespace Tessavoy
