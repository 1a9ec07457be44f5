#include "Source/TextureAtlas.h"

#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Gl/DrawingHost.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

#include <cmath>
#include <deque>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using Testing::Colour;
using Testing::DrawingHost;
using Testing::HostWorld;

AtlasFrameRect rectOf(const TextureAtlas& atlas, std::int32_t frame) {
    AtlasFrameRect rect;
    atlas.GetFrameRect(rect, frame);
    return rect;
}

void expectRect(const TextureAtlas& atlas, std::int32_t frame, const AtlasFrameRect& expected) {
    const AtlasFrameRect rect = rectOf(atlas, frame);
    EXPECT_FLOAT_EQ(rect.left, expected.left) << "frame " << frame;
    EXPECT_FLOAT_EQ(rect.top, expected.top) << "frame " << frame;
    EXPECT_FLOAT_EQ(rect.right, expected.right) << "frame " << frame;
    EXPECT_FLOAT_EQ(rect.bottom, expected.bottom) << "frame " << frame;
    EXPECT_EQ(rect.layer, expected.layer) << "frame " << frame;
}

// Rectangles.

TEST(TextureAtlas, withoutABuildIsOneFrameOverTheWhole) {
    const TextureAtlas atlas;
    EXPECT_EQ(atlas.columns, 1U);
    EXPECT_EQ(atlas.rows, 1U);
    EXPECT_EQ(atlas.frameCount, 1);
    EXPECT_EQ(atlas.mTextureWidth + atlas.mTextureHeight + atlas.mTextureDepth + atlas.textureName, 0U);
    for (const std::int32_t frame : {-5, 0, 1, 100}) {
        expectRect(atlas, frame, {0, 0, 1, 1, 0});
    }
}

TEST(TextureAtlas, framesRunAlongTheRowsThenDownThenThroughTheLayers) {
    TextureAtlas atlas;
    atlas.columns = 4;
    atlas.rows = 2;
    atlas.frameCount = 11;
    expectRect(atlas, 0, {0, 0, 0.25F, 0.5F, 0});
    expectRect(atlas, 3, {0.75F, 0, 1, 0.5F, 0});
    expectRect(atlas, 4, {0, 0.5F, 0.25F, 1, 0});
    expectRect(atlas, 7, {0.75F, 0.5F, 1, 1, 0});
    expectRect(atlas, 8, {0, 0, 0.25F, 0.5F, 1});
    expectRect(atlas, 10, {0.5F, 0, 0.75F, 0.5F, 1});
}

TEST(TextureAtlas, frameIndexesClampToTheFirstAndTheLast) {
    TextureAtlas atlas;
    atlas.columns = 3;
    atlas.rows = 1;
    atlas.frameCount = 2;
    expectRect(atlas, -1, {0, 0, 1.0F / 3, 1, 0});
    expectRect(atlas, 2, {1.0F / 3, 0, 2.0F / 3, 1, 0});
    expectRect(atlas, 1000, {1.0F / 3, 0, 2.0F / 3, 1, 0});
}

TEST(TextureAtlas, anAtlasOfNoFramesHasEmptyRectangles) {
    TextureAtlas atlas;
    atlas.columns = 0;
    atlas.frameCount = 0;
    expectRect(atlas, 0, {0, 0, 0, 0, 0});
}

/// Builds with a real context against a host whose layer frames are numbered by their place in time.
class TextureAtlasTest : public Testing::GlTest {
protected:
    /// All texels of the built atlas, layer by layer, row by row.
    static std::vector<Colour> texelsOf(const TextureAtlas& atlas) {
        std::vector<Colour> texels(std::size_t{atlas.mTextureWidth} * atlas.mTextureHeight * atlas.mTextureDepth);
        glBindTexture(GL_TEXTURE_2D_ARRAY, atlas.textureName);
        glGetTexImage(GL_TEXTURE_2D_ARRAY, 0, GL_RGBA, GL_FLOAT, texels.data());
        return texels;
    }

    /// Frames of a size whose every pixel has alpha 1 and, as red, how many frames of the step the time is after zero.
    void serveFrames(A_long width, A_long height) {
        mHost.frameAt = [this, width, height](A_long time) {
            auto& frame = mFrames.emplace_back(width, height, PF_PixelFormat_ARGB128);
            const float number = static_cast<float>(time / mHost.inData.time_step);
            for (A_long y = 0; y < height; ++y) {
                for (A_long x = 0; x < width; ++x) {
                    frame.set<float>(x, y, 1, number, static_cast<float>(x), static_cast<float>(y));
                }
            }
            return &frame;
        };
    }

    void setTimes(A_long timeStep, A_u_long timeScale, A_Time duration) {
        mHost.inData.time_step = timeStep;
        mHost.inData.time_scale = timeScale;
        mHost.layerDuration = duration;
    }

    /// The atlas of a timeline on a GPU that takes textures of this size.
    void buildTimeline(TextureAtlas& atlas, std::int32_t maxTextureSize) {
        renderData().maxTextureSize = maxTextureSize;
        atlas.BuildFromTimeline(&mHost.inData, renderData(), DrawingHost::layerParameter);
    }

    /// Whether each frame of the timeline lies where its rectangle says.
    static void expectFramesInPlace(const TextureAtlas& atlas, A_long width, A_long height) {
        const auto texels = texelsOf(atlas);
        for (std::int32_t frame = 0; frame < atlas.frameCount; ++frame) {
            const AtlasFrameRect rect = rectOf(atlas, frame);
            const auto left =
                static_cast<std::size_t>(std::lround(rect.left * static_cast<float>(atlas.mTextureWidth)));
            const auto top = static_cast<std::size_t>(std::lround(rect.top * static_cast<float>(atlas.mTextureHeight)));
            const auto layer = static_cast<std::size_t>(rect.layer);
            for (A_long y = 0; y < height; ++y) {
                for (A_long x = 0; x < width; ++x) {
                    const std::size_t row = layer * atlas.mTextureHeight + top + y;
                    EXPECT_EQ(texels[row * atlas.mTextureWidth + left + x],
                              (Colour{1, static_cast<float>(frame), static_cast<float>(x), static_cast<float>(y)}))
                        << "frame " << frame << " at " << x << ", " << y;
                }
            }
        }
    }

    DrawingHost mHost;
    std::deque<HostWorld> mFrames;
};

// One picture.

TEST_F(TextureAtlasTest, eightBitPixelsGoInInTheHostsOrder) {
    HostWorld layer(3, 2, PF_PixelFormat_ARGB32);
    for (A_long i = 0; i < 6; ++i) {
        layer.set<std::uint8_t>(i % 3, i / 3, 255, static_cast<std::uint8_t>(10 * i), 51, 0);
    }
    TextureAtlas atlas;
    atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
    const auto texels = texelsOf(atlas);
    for (std::size_t i = 0; i < 6; ++i) {
        Testing::expectNear(texels[i], {1, 10.0F * static_cast<float>(i) / 255.0F, 0.2F, 0}, 1e-6F);
    }
    EXPECT_TRUE(Testing::takeGlErrors().empty());
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, sixteenBitPixelsArriveAsPartsOf65535) {
    HostWorld layer(2, 2, PF_PixelFormat_ARGB64);
    layer.set<std::uint16_t>(0, 0, 32768, 32768, 0, 0);
    layer.set<std::uint16_t>(1, 0, 0, 0, 32768, 0);
    layer.set<std::uint16_t>(0, 1, 0, 0, 0, 16384);
    layer.set<std::uint16_t>(1, 1, 0, 0, 0, 0);
    TextureAtlas atlas;
    atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
    const auto texels = texelsOf(atlas);
    constexpr float full = 32768.0F / 65535.0F;
    Testing::expectNear(texels[0], {full, full, 0, 0}, 1e-7F);
    Testing::expectNear(texels[1], {0, 0, full, 0}, 1e-7F);
    Testing::expectNear(texels[2], {0, 0, 0, full / 2}, 1e-7F);
    Testing::expectNear(texels[3], {0, 0, 0, 0}, 1e-7F);
}

TEST_F(TextureAtlasTest, floatPixelsAreKeptAsTheyAre) {
    HostWorld layer(2, 1, PF_PixelFormat_ARGB128, 5);
    layer.set<float>(0, 0, 1, 3.5F, -2, 0.125F);
    layer.set<float>(1, 0, 0.5F, 0, 0, 9);
    TextureAtlas atlas;
    atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
    EXPECT_EQ(texelsOf(atlas), (std::vector<Colour>{{1, 3.5F, -2, 0.125F}, {0.5F, 0, 0, 9}}));
}

TEST_F(TextureAtlasTest, theTextureIsFilteredClampedAndLeftBoundOnUnitZero) {
    HostWorld layer(4, 2, PF_PixelFormat_ARGB32);
    glActiveTexture(GL_TEXTURE1);
    TextureAtlas atlas;
    atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 2, 1, 0);
    GLint active = 0;
    GLint bound = 0;
    GLint rowLength = 0;
    glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
    glGetIntegerv(GL_TEXTURE_BINDING_2D_ARRAY, &bound);
    glGetIntegerv(GL_UNPACK_ROW_LENGTH, &rowLength);
    EXPECT_EQ(active, static_cast<GLint>(GL_TEXTURE0));
    EXPECT_EQ(bound, static_cast<GLint>(atlas.textureName));
    EXPECT_EQ(rowLength, 7);  // four pixels and three of padding; it is not set back
    for (const auto& [name, value] : {std::pair{GL_TEXTURE_MIN_FILTER, GL_LINEAR},
                                      {GL_TEXTURE_MAG_FILTER, GL_LINEAR},
                                      {GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE},
                                      {GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE}}) {
        GLint set = 0;
        glGetTexParameteriv(GL_TEXTURE_2D_ARRAY, name, &set);
        EXPECT_EQ(set, static_cast<GLint>(value));
    }
    GLint format = 0;
    glGetTexLevelParameteriv(GL_TEXTURE_2D_ARRAY, 0, GL_TEXTURE_INTERNAL_FORMAT, &format);
    EXPECT_EQ(format, static_cast<GLint>(GL_RGBA32F));
}

TEST_F(TextureAtlasTest, theLimitLowersTheNumberOfFramesButNeverRaisesIt) {
    struct Case {
        std::int32_t limit, frames;
    };
    for (const auto& [limit, frames] : {Case{0, 12}, {5, 5}, {12, 12}, {13, 12}, {1000, 12}, {-3, 0}}) {
        HostWorld layer(4, 3, PF_PixelFormat_ARGB32);
        TextureAtlas atlas;
        atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 4, 3, limit);
        EXPECT_EQ(atlas.frameCount, frames) << "limit " << limit;
        EXPECT_EQ(atlas.columns, 4U);
        EXPECT_EQ(atlas.rows, 3U);
        EXPECT_EQ(atlas.mTextureWidth, 4U);
        EXPECT_EQ(atlas.mTextureHeight, 3U);
        EXPECT_EQ(atlas.mTextureDepth, 1U);
    }
}

TEST_F(TextureAtlasTest, aLayerWithoutPixelsGivesNoTexture) {
    PF_EffectWorld empty{};
    TextureAtlas atlas;
    atlas.BuildFromImage(&mHost.inData, renderData(), &empty, 4, 3, 0);
    EXPECT_EQ(atlas.textureName, 0U);
    EXPECT_EQ(atlas.frameCount, 1);
    expectRect(atlas, 0, {0, 0, 1, 1, 0});
}

TEST_F(TextureAtlasTest, theTextureIsDeletedWithTheAtlas) {
    const int before = Testing::liveObjects();
    {
        HostWorld layer(4, 3, PF_PixelFormat_ARGB32);
        TextureAtlas atlas;
        atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 4, 3, 0);
        EXPECT_EQ(Testing::liveObjects(), before + 1);
    }
    EXPECT_EQ(Testing::liveObjects(), before);
}

TEST_F(TextureAtlasTest, aPictureBeyondTheGpusLimitIsNamedWithBothSizes) {
    HostWorld layer(20, 3, PF_PixelFormat_ARGB32);
    renderData().maxTextureSize = 16;
    TextureAtlas atlas;
    try {
        atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
        FAIL() << "no exception";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 512);
        EXPECT_STREQ(
            exception.what(),
            "Failed to create texture of size 20x3 which is bigger than maximum supported by GPU size of 16x16");
    }
    EXPECT_EQ(atlas.textureName, 0U);
}

TEST_F(TextureAtlasTest, failingPixelCallsThrow) {
    struct Case {
        PF_PixelFormat format;
        const char* call;
    };
    for (const auto& [format, call] :
         {Case{PF_PixelFormat_ARGB64, "get_pixel_data16"}, {PF_PixelFormat_ARGB128, "get_pixel_data_float"}}) {
        mHost.failingCalls = {call};
        HostWorld layer(2, 2, format);
        TextureAtlas atlas;
        try {
            atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
            FAIL() << call;
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.code(), DrawingHost::callError) << call;
        }
        EXPECT_EQ(mHost.lent(), 0);
    }
}

TEST_F(TextureAtlasTest, aHostWithoutThePixelDataSuiteIsThePlainInteger516) {
    mHost.missingSuites = {"PF Pixel Data Suite"};
    HostWorld layer(2, 2, PF_PixelFormat_ARGB32);
    TextureAtlas atlas;
    try {
        atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0);
        FAIL() << "nothing thrown";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 516);
    }
}

using TextureAtlasDeathTest = TextureAtlasTest;

TEST_F(TextureAtlasDeathTest, pixelsWithoutAnAddressStopTheProcess) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    mHost.failingCalls = {"null pixels"};
    HostWorld layer(2, 2, PF_PixelFormat_ARGB64);
    TextureAtlas atlas;
    EXPECT_DEATH(atlas.BuildFromImage(&mHost.inData, renderData(), layer.world(), 1, 1, 0), "data != nullptr");
}

TEST_F(TextureAtlasDeathTest, aFrameThatGrewStopsTheProcess) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    setTimes(1, 25, {2, 25});
    HostWorld small(2, 2, PF_PixelFormat_ARGB32);
    HostWorld wide(3, 2, PF_PixelFormat_ARGB32);
    HostWorld high(2, 3, PF_PixelFormat_ARGB32);
    TextureAtlas atlas;
    mHost.frameAt = [&](A_long time) { return time == 0 ? &small : &wide; };
    EXPECT_DEATH(buildTimeline(atlas, 16), "xOffset \\+ layer->width <= mTextureWidth");
    mHost.frameAt = [&](A_long time) { return time == 0 ? &small : &high; };
    EXPECT_DEATH(buildTimeline(atlas, 16), "yOffset \\+ layer->height <= mTextureHeight");
}

// Timelines.

TEST_F(TextureAtlasTest, aTimelineOfPartOfARowIsOnlyAsWideAsNeeded) {
    serveFrames(3, 2);
    setTimes(1, 25, {3, 25});
    TextureAtlas atlas;
    buildTimeline(atlas, 16);  // 5 across, 8 down
    EXPECT_EQ(atlas.frameCount, 3);
    EXPECT_EQ(atlas.columns, 3U);
    EXPECT_EQ(atlas.rows, 1U);
    EXPECT_EQ(atlas.mTextureWidth, 9U);
    EXPECT_EQ(atlas.mTextureHeight, 2U);
    EXPECT_EQ(atlas.mTextureDepth, 1U);
    expectFramesInPlace(atlas, 3, 2);
    expectRect(atlas, 7, {2.0F / 3, 0, 1, 1, 0});
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, aTimelineOfPartOfAPageHasTheRowsThatItNeeds) {
    serveFrames(3, 2);
    TextureAtlas atlas;
    setTimes(1, 25, {11, 25});
    buildTimeline(atlas, 16);
    EXPECT_EQ(atlas.frameCount, 11);
    EXPECT_EQ(atlas.columns, 5U);
    EXPECT_EQ(atlas.rows, 3U);
    EXPECT_EQ(atlas.mTextureWidth, 15U);
    EXPECT_EQ(atlas.mTextureHeight, 6U);
    EXPECT_EQ(atlas.mTextureDepth, 1U);
    expectFramesInPlace(atlas, 3, 2);
}

TEST_F(TextureAtlasTest, wholeRowsTakeNoRowMore) {
    serveFrames(3, 2);
    TextureAtlas atlas;
    setTimes(1, 25, {10, 25});
    buildTimeline(atlas, 16);
    EXPECT_EQ(atlas.columns, 5U);
    EXPECT_EQ(atlas.rows, 2U);
}

TEST_F(TextureAtlasTest, moreThanAPageGoesOnToFurtherLayers) {
    serveFrames(3, 2);
    setTimes(1, 25, {10, 25});
    TextureAtlas atlas;
    buildTimeline(atlas, 6);  // 2 across, 3 down
    EXPECT_EQ(atlas.columns, 2U);
    EXPECT_EQ(atlas.rows, 3U);
    EXPECT_EQ(atlas.mTextureDepth, 2U);
    EXPECT_EQ(atlas.mTextureWidth, 6U);
    EXPECT_EQ(atlas.mTextureHeight, 6U);
    expectFramesInPlace(atlas, 3, 2);
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(TextureAtlasTest, exactlyAPageIsOneLayer) {
    serveFrames(3, 2);
    setTimes(1, 25, {6, 25});
    TextureAtlas atlas;
    buildTimeline(atlas, 6);
    EXPECT_EQ(atlas.mTextureDepth, 1U);
    EXPECT_EQ(atlas.rows, 3U);
    expectFramesInPlace(atlas, 3, 2);
}

TEST_F(TextureAtlasTest, framesAreAskedForInTheMiddleOfTheirStepFromTheLayersStart) {
    serveFrames(2, 2);
    setTimes(100, 2500, {7, 50});   // 0.14 s of 0.04 s each: 3 whole frames
    mHost.effectInPoint = {3, 10};  // 0.3 s
    mHost.layerInPoint = {1, 2};    // 0.5 s
    TextureAtlas atlas;
    buildTimeline(atlas, 64);
    // (0.5 - 0.3 + 0.02) * 2500 = 550
    EXPECT_EQ(mHost.requestedTimes, (std::vector<A_long>{550, 650, 750}));
    EXPECT_EQ(mHost.streamValueTime, 3);  // asked at the effect layer's start
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, aFrameWiderOrHigherThanTheGpuAllowsIsNamedWithItsOwnSize) {
    TextureAtlas wide;
    TextureAtlas high;
    setTimes(1, 25, {3, 25});
    serveFrames(20, 2);
    EXPECT_THROW(
        {
            try {
                buildTimeline(wide, 16);
            } catch (const Exception& exception) {
                EXPECT_STREQ(exception.what(),
                             "Failed to create texture of size 20x2 which is bigger than maximum supported by GPU size "
                             "of 16x16");
                throw;
            }
        },
        Exception);
    serveFrames(2, 17);
    EXPECT_THROW(buildTimeline(high, 16), Exception);
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, aTimelineShorterThanAFrameHasNoFramesAndNoStorage) {
    serveFrames(2, 2);
    setTimes(1, 25, {1, 50});
    TextureAtlas atlas;
    buildTimeline(atlas, 16);
    EXPECT_EQ(atlas.frameCount, 0);
    EXPECT_EQ(atlas.columns, 0U);
    EXPECT_EQ(atlas.rows, 1U);
    EXPECT_EQ(atlas.mTextureDepth, 0U);
    EXPECT_EQ(Testing::takeGlErrors(), std::vector{static_cast<std::uint32_t>(GL_INVALID_VALUE)});
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, aTimelineWithoutPixelsAtItsStartGivesNoTexture) {
    mHost.frameAt = [](A_long) { return nullptr; };
    setTimes(1, 25, {3, 25});
    TextureAtlas atlas;
    buildTimeline(atlas, 16);
    EXPECT_EQ(atlas.textureName, 0U);
    EXPECT_EQ(atlas.frameCount, 1);
    EXPECT_EQ(mHost.requestedTimes.size(), 1U);
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(TextureAtlasTest, aLaterFrameWithoutPixelsIsPassedOver) {
    HostWorld frame(2, 1, PF_PixelFormat_ARGB32);
    mHost.frameAt = [&](A_long time) { return time == 1 ? nullptr : &frame; };
    setTimes(1, 25, {3, 25});
    TextureAtlas atlas;
    buildTimeline(atlas, 16);
    EXPECT_EQ(atlas.frameCount, 3);
    EXPECT_EQ(mHost.requestedTimes, (std::vector<A_long>{0, 1, 2}));
    EXPECT_TRUE(Testing::takeGlErrors().empty());
}

TEST_F(TextureAtlasTest, everyFailingHostCallThrowsItsCodeAndLeavesNothingLent) {
    serveFrames(2, 2);
    setTimes(1, 25, {3, 25});
    for (const char* call :
         {"AEGP_GetNewEffectForEffect", "AEGP_GetEffectLayer", "AEGP_GetLayerInPoint", "AEGP_GetNewEffectStreamByIndex",
          "AEGP_GetNewStreamValue", "AEGP_GetLayerParentComp", "AEGP_GetLayerFromLayerID", "AEGP_GetLayerDuration",
          "checkout_param", "get_pixel_data_float"}) {
        mHost.failingCalls = {call};
        TextureAtlas atlas;
        try {
            buildTimeline(atlas, 16);
            ADD_FAILURE() << call;
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.code(), DrawingHost::callError) << call;
        }
        EXPECT_EQ(mHost.lent(), 0) << call;
    }
}

TEST_F(TextureAtlasTest, aFailureInTheMiddleOfATimelineChecksEverythingIn) {
    HostWorld frame(2, 2, PF_PixelFormat_ARGB128);
    setTimes(1, 25, {5, 25});
    mHost.frameAt = [&](A_long time) {
        if (time == 3) {
            mHost.failingCalls = {"get_pixel_data_float"};
        }
        return &frame;
    };
    TextureAtlas atlas;
    EXPECT_THROW(buildTimeline(atlas, 16), Exception);
    EXPECT_EQ(mHost.requestedTimes.size(), 4U);
    EXPECT_EQ(mHost.lent(), 0);
}

}  // namespace
}  // namespace Tessavoy
