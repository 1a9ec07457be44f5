#include "Source/Gl/ArrayTexture.h"
#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/Textures.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

#include <algorithm>
#include <cmath>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using namespace Testing;

constexpr float tolerance = 2e-4F;

/// A gradient that is straight in every channel, so that linear filtering between its texels adds nothing of its own.
void straightGradient(float t, float* colour) {
    colour[0] = t;
    colour[1] = 1 - t;
    colour[2] = 0.25F + 0.5F * t;
    colour[3] = 0.125F;
}

/// The fog's colour at a factor: texels stand at the middles of 2048 equal parts, and hold the gradient at i / 2047.
Colour fogColourAt(double factor) {
    const double texel = std::clamp(factor * 2048 - 0.5, 0.0, 2047.0);
    Colour colour{};
    straightGradient(static_cast<float>(texel / 2047), colour.data());
    return colour;
}

double mixed(double from, double to, double share) {
    return from + (to - from) * share;
}

double fogFactor(double z, double start, double end) {
    return z >= end ? 1 : z <= start ? 0 : (z - start) / (end - start);
}

Colour fogged(const Colour& colour, double z, const FogState& fog) {
    const double factor = fogFactor(z, fog.start, fog.end);
    const double weight = std::clamp(factor * fog.colorWeight / 100, 0.0, 1.0);
    const Colour fogColour = fogColourAt(factor);
    Colour result{};
    for (std::size_t channel = 0; channel < 3; ++channel) {
        result[channel] = static_cast<float>(mixed(colour[channel], fogColour[channel], weight));
    }
    result[3] = static_cast<float>(std::clamp(mixed(colour[3], colour[3] * fog.opacity / 100, factor), 0.0, 1.0));
    return result;
}

class FogAndDepthTest : public GlTest {
protected:
    /// What a rectangle of one colour at one depth gives on a pixel, without blending.
    Colour shaded(const Colour& colour, float z, const BatchSettings& settings) {
        beginScene(1, 1, untouched);
        drawShapes(renderData(), flatView(1, 1), rectangle(0, 0, 1, 1, z, colour), settings);
        EXPECT_TRUE(takeGlErrors().empty());
        return readTarget(1, 1).front();
    }

    static constexpr Colour untouched = {-7, -7, -7, -7};
};

TEST_F(FogAndDepthTest, theFogTextureHoldsTheGradientAt2048Steps) {
    std::vector<float> positions;
    const std::uint32_t texture = MakeFogTexture([&](float t, float* colour) {
        positions.push_back(t);
        straightGradient(t, colour);
    });
    ASSERT_EQ(positions.size(), 2048U);
    EXPECT_EQ(positions.front(), 0.0F);
    EXPECT_EQ(positions[1], 1.0F / 2047.0F);
    EXPECT_EQ(positions.back(), 1.0F);
    std::vector<Colour> texels(2048);
    glBindTexture(GL_TEXTURE_2D, texture);
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, texels.data());
    glBindTexture(GL_TEXTURE_2D, 0);
    for (const std::size_t i : {0U, 1U, 1000U, 2047U}) {
        Colour expected{};
        straightGradient(static_cast<float>(i) / 2047.0F, expected.data());
        EXPECT_EQ(texels[i], expected) << i;
    }
    EXPECT_EQ(glState(GL_UNPACK_ROW_LENGTH), 0);
    EXPECT_EQ(glState(GL_TEXTURE_BINDING_2D), 0);
    deleteTexture(texture);
    EXPECT_EQ(glIsTexture(texture), GL_FALSE);
    EXPECT_TRUE(takeGlErrors().empty());
}

TEST_F(FogAndDepthTest, fogFollowsItsFormulaAtEveryDepth) {
    constexpr Colour colour = {0.75F, 0.5F, 0.25F, 0.5F};
    const std::uint32_t texture = MakeFogTexture(straightGradient);
    for (const double colourWeight : {0.0, 40.0, 100.0, 250.0}) {
        for (const double opacity : {0.0, 30.0, 100.0, 400.0}) {
            const FogState fog = {.enabled = 1,
                                  .colorWeight = colourWeight,
                                  .gradientTexture = texture,
                                  .opacity = opacity,
                                  .start = 100,
                                  .end = 500};
            for (const float z : {-1500.0F, 99.0F, 100.0F, 101.0F, 200.0F, 300.0F, 499.0F, 500.0F, 501.0F, 1900.0F}) {
                SCOPED_TRACE(::testing::Message()
                             << "weight " << colourWeight << ", opacity " << opacity << ", z " << z);
                expectNear(shaded(colour, z, {.fog = fog}), fogged(colour, z, fog), tolerance);
            }
        }
    }
    deleteTexture(texture);
}

TEST_F(FogAndDepthTest, fogOfNoDepthIsAHardStep) {
    constexpr Colour colour = {0.75F, 0.5F, 0.25F, 0.5F};
    const std::uint32_t texture = MakeFogTexture(straightGradient);
    const FogState fog = {
        .enabled = 1, .colorWeight = 100, .gradientTexture = texture, .opacity = 50, .start = 300, .end = 300};
    expectNear(shaded(colour, 299, {.fog = fog}), colour, tolerance);
    expectNear(shaded(colour, 300, {.fog = fog}), {1, 0, 0.75F, 0.25F}, tolerance);
    expectNear(shaded(colour, 301, {.fog = fog}), {1, 0, 0.75F, 0.25F}, tolerance);
    deleteTexture(texture);
}

TEST_F(FogAndDepthTest, withoutFogTheColourIsTheInstances) {
    constexpr Colour colour = {2, 0.5F, -1, 0.5F};
    EXPECT_EQ(shaded(colour, 1000, {.fog = {.enabled = 0, .colorWeight = 100, .opacity = 0, .start = 0, .end = 1}}),
              colour);
}

TEST_F(FogAndDepthTest, depthGreyIsThePlaceBetweenEndAndStart) {
    // (end - z) / (end - start), start 200, end 600
    const ZDepthState zDepth = {.enabled = 1, .start = 200, .end = 600};
    constexpr Colour colour = {0.3F, 0.6F, 0.9F, 0.5F};
    const auto grey = [](float value) { return Colour{value, value, value, 1}; };
    expectNear(shaded(colour, 200, {.zDepth = zDepth}), grey(1), tolerance);
    expectNear(shaded(colour, 300, {.zDepth = zDepth}), grey(0.75F), tolerance);
    expectNear(shaded(colour, 600, {.zDepth = zDepth}), grey(0), tolerance);
    expectNear(shaded(colour, 1000, {.zDepth = zDepth}), grey(-1), tolerance);
    expectNear(shaded(colour, -600, {.zDepth = zDepth}), grey(3), tolerance);
}

TEST_F(FogAndDepthTest, depthGreyIsClampedWhenAsked) {
    const ZDepthState zDepth = {.enabled = 1, .start = 200, .end = 600, .clamp = 1};
    expectNear(shaded({1, 1, 1, 1}, 1000, {.zDepth = zDepth}), {0, 0, 0, 1}, tolerance);
    expectNear(shaded({1, 1, 1, 1}, -600, {.zDepth = zDepth}), {1, 1, 1, 1}, tolerance);
    expectNear(shaded({1, 1, 1, 1}, 400, {.zDepth = zDepth}), {0.5F, 0.5F, 0.5F, 1}, tolerance);
}

// What a division by zero gives is the driver's to say; nothing on this side steps in, and alpha has no part in it.
TEST_F(FogAndDepthTest, depthThatEndsWhereItStartsReachesTheShaderAsItIs) {
    for (const std::uint8_t alpha : {std::uint8_t{0}, std::uint8_t{1}}) {
        const ZDepthState zDepth = {.enabled = 1, .start = 300, .end = 300, .clamp = 1, .alpha = alpha};
        for (const float z : {299.0F, 300.0F, 301.0F}) {
            EXPECT_EQ(shaded({1, 1, 1, 0.5F}, z, {.zDepth = zDepth})[3], alpha != 0 ? 0.5F : 1.0F) << z;
            EXPECT_EQ(uniformOf(renderData().shapeZProgram, "zStart"), 300);
            EXPECT_EQ(uniformOf(renderData().shapeZProgram, "zEnd"), 300);
        }
    }
}

TEST_F(FogAndDepthTest, depthHasTheInstancesAlphaWhenAsked) {
    const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100, .alpha = 1};
    expectNear(shaded({1, 1, 1, 0.5F}, 75, {.zDepth = zDepth}), {0.25F, 0.25F, 0.25F, 0.5F}, tolerance);
}

TEST_F(FogAndDepthTest, depthLeavesOutWhatIsNearlyTransparent) {
    for (const std::uint8_t alpha : {std::uint8_t{0}, std::uint8_t{1}}) {
        const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100, .alpha = alpha};
        EXPECT_EQ(shaded({1, 1, 1, 0.0099F}, 0, {.zDepth = zDepth}), untouched);
        EXPECT_EQ(shaded({1, 1, 1, 0.01F}, 0, {.zDepth = zDepth}), untouched);
        EXPECT_NE(shaded({1, 1, 1, 0.0101F}, 0, {.zDepth = zDepth}), untouched);
    }
}

TEST_F(FogAndDepthTest, depthTurnsFogOff) {
    const std::uint32_t texture = MakeFogTexture(straightGradient);
    const FogState fog = {
        .enabled = 1, .colorWeight = 100, .gradientTexture = texture, .opacity = 0, .start = 0, .end = 1};
    const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100};
    expectNear(shaded({1, 0, 0, 1}, 50, {.fog = fog, .zDepth = zDepth}), {0.5F, 0.5F, 0.5F, 1}, tolerance);
    deleteTexture(texture);
}

TEST_F(FogAndDepthTest, blendingAppliesToGreyAsToColour) {
    beginScene(1, 1, {0, 0, 0, 1});
    const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100, .alpha = 1};
    drawShapes(renderData(), flatView(1, 1), rectangle(0, 0, 1, 1, 0, {1, 1, 1, 0.5F}),
               {.zDepth = zDepth, .blendMode = blendNormal});
    expectNear(readTarget(1, 1).front(), {0.5F, 0.5F, 0.5F, 1}, tolerance);
}

/// An atlas of two layers of one texel each, in the host's order (alpha, red, green, blue).
class TexturedTest : public FogAndDepthTest {
protected:
    static constexpr Colour instance = {0.5F, 1, 0.25F, 0.5F};

    std::uint32_t makeAtlas() {
        const std::uint32_t atlas = makeArrayTexture(1, 1, 2);
        const std::array<Colour, 2> layers = {Colour{1, 0.125F, 0.25F, 0.5F}, Colour{0.5F, 1, 0.75F, 0}};
        for (std::int32_t layer = 0; layer < 2; ++layer) {
            fillArrayTexture({.layer = layer, .width = 1, .height = 1}, 1, static_cast<std::uint32_t>(GL_FLOAT),
                             layers[static_cast<std::size_t>(layer)].data());
        }
        return atlas;
    }

    Colour sprite(float z, float layer, BatchSettings settings) {
        beginScene(1, 1, untouched);
        settings.atlas = makeAtlas();
        const std::vector<SpriteVertex> vertices = {{0, 0, z, instance, 0, 0, layer},
                                                    {1, 0, z, instance, 1, 0, layer},
                                                    {0, 1, z, instance, 0, 1, layer},
                                                    {1, 1, z, instance, 1, 1, layer}};
        drawSprites(renderData(), flatView(1, 1), vertices, settings);
        // The one error of a textured batch: the atlas can't be bound as a plain texture.
        EXPECT_EQ(takeGlErrors(), std::vector{static_cast<std::uint32_t>(GL_INVALID_OPERATION)});
        deleteTexture(settings.atlas);
        return readTarget(1, 1).front();
    }
};

TEST_F(TexturedTest, theFrameIsMultipliedIntoTheInstanceColour) {
    expectNear(sprite(0, 0, {}), {0.0625F, 0.25F, 0.125F, 0.5F}, tolerance);
    expectNear(sprite(0, 1, {}), {0.5F, 0.75F, 0, 0.25F}, tolerance);
}

TEST_F(TexturedTest, theSixteenBitMultiplierAppliesToAllChannels) {
    constexpr float multiplier = 65535.0F / 32768.0F;
    expectNear(sprite(0, 0, {.multiplier16bit = multiplier}),
               {0.0625F * multiplier, 0.25F * multiplier, 0.125F * multiplier, 0.5F * multiplier}, tolerance);
}

TEST_F(TexturedTest, fogAppliesToTheTexturedColour) {
    const std::uint32_t texture = MakeFogTexture(straightGradient);
    const FogState fog = {
        .enabled = 1, .colorWeight = 50, .gradientTexture = texture, .opacity = 50, .start = 0, .end = 400};
    expectNear(sprite(100, 0, {.fog = fog}), fogged({0.0625F, 0.25F, 0.125F, 0.5F}, 100, fog), tolerance);
    deleteTexture(texture);
}

TEST_F(TexturedTest, depthUsesTheTexturedAlpha) {
    const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100, .alpha = 1};
    expectNear(sprite(25, 1, {.zDepth = zDepth}), {0.75F, 0.75F, 0.75F, 0.25F}, tolerance);
    EXPECT_EQ(sprite(25, 1, {.zDepth = zDepth, .multiplier16bit = 0.03F}), untouched);  // alpha 0.0075
}

TEST_F(TexturedTest, depthWithoutAlphaIsOpaque) {
    const ZDepthState zDepth = {.enabled = 1, .start = 0, .end = 100};
    expectNear(sprite(25, 1, {.zDepth = zDepth}), {0.75F, 0.75F, 0.75F, 1}, tolerance);
}

}  // namespace
}  // namespace Tessavoy
