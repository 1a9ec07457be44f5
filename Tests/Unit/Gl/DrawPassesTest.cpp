#include "Source/Gl/DrawPasses.h"

#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/Textures.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <glbinding/gl33core/gl.h>

using namespace gl33core;

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using namespace Testing;

constexpr Colour black = {0, 0, 0, 1};

class DrawPassesTest : public GlTest {
protected:
    /// Draws a rectangle over a target of one pixel that holds `under` and returns what the pixel holds then.
    Colour blended(std::int32_t mode, const Colour& under, const Colour& over) {
        beginScene(1, 1, under);
        drawShapes(renderData(), flatView(1, 1), rectangle(0, 0, 1, 1, 0, over), {.blendMode = mode});
        return readTarget(1, 1).front();
    }

    static void expectNothingLeftOn(bool blending) {
        EXPECT_EQ(glIsEnabled(GL_BLEND) == GL_TRUE, blending);
        for (const GLenum binding :
             {GL_VERTEX_ARRAY_BINDING, GL_ARRAY_BUFFER_BINDING, GL_ELEMENT_ARRAY_BUFFER_BINDING, GL_CURRENT_PROGRAM}) {
            EXPECT_EQ(glState(binding), 0) << static_cast<std::uint32_t>(binding);
        }
    }

    /// The factors of colour and alpha, each of the source and then of the target; both are added.
    static void expectBlending(const std::array<GLenum, 4>& factors) {
        constexpr std::array names = {GL_BLEND_SRC_RGB, GL_BLEND_DST_RGB, GL_BLEND_SRC_ALPHA, GL_BLEND_DST_ALPHA};
        for (std::size_t i = 0; i < factors.size(); ++i) {
            EXPECT_EQ(glState(names[i]), static_cast<GLint>(factors[i])) << "factor " << i;
        }
        EXPECT_EQ(glState(GL_BLEND_EQUATION_RGB), static_cast<GLint>(GL_FUNC_ADD));
        EXPECT_EQ(glState(GL_BLEND_EQUATION_ALPHA), static_cast<GLint>(GL_FUNC_ADD));
    }

    static void expectArraysDisabled(GLuint vertexArray) {
        glBindVertexArray(vertexArray);
        for (GLuint location = 0; location < 4; ++location) {
            GLint enabled = -1;
            glGetVertexAttribiv(location, GL_VERTEX_ATTRIB_ARRAY_ENABLED, &enabled);
            EXPECT_EQ(enabled, 0) << location;
        }
        glBindVertexArray(0);
    }
};

// Blending, with powers of two, so that the results are exact.
// Normal: colour = source * a + target * (1 - a); alpha = a + target alpha * (1 - a).

TEST_F(DrawPassesTest, normalLaysOver) {
    EXPECT_EQ(blended(blendNormal, {0.5F, 0.25F, 1, 0.5F}, {1, 0.5F, 0, 0.25F}),
              (Colour{0.25F + 0.375F, 0.125F + 0.1875F, 0.75F, 0.25F + 0.375F}));
}

TEST_F(DrawPassesTest, normalOverNothingPremultiplies) {
    EXPECT_EQ(blended(blendNormal, {}, {1, 0.5F, 0.25F, 0.5F}), (Colour{0.5F, 0.25F, 0.125F, 0.5F}));
}

// Add: colour = source * a + target; alpha as in Normal.

TEST_F(DrawPassesTest, addAddsColourAndLaysAlphaOver) {
    EXPECT_EQ(blended(blendAdd, {0.5F, 0.25F, 1, 0.5F}, {1, 0.5F, 0.25F, 0.5F}), (Colour{1, 0.5F, 1.125F, 0.75F}));
}

TEST_F(DrawPassesTest, offReplaces) {
    EXPECT_EQ(blended(blendOff, {0.5F, 0.25F, 1, 0.5F}, {1, 0.5F, 0, 0.25F}), (Colour{1, 0.5F, 0, 0.25F}));
}

TEST_F(DrawPassesTest, anotherModeChangesNothing) {
    SetBlendMode(blendAdd);
    for (const std::int32_t mode : {0, 4, -1}) {
        SetBlendMode(mode);
        EXPECT_EQ(glIsEnabled(GL_BLEND), GL_TRUE);
        expectBlending({GL_SRC_ALPHA, GL_ONE, GL_ONE, GL_ONE_MINUS_SRC_ALPHA});
    }
}

TEST_F(DrawPassesTest, blendingStateIsAsTheModesSay) {
    SetBlendMode(blendNormal);
    expectBlending({GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA});
    SetBlendMode(blendAdd);
    expectBlending({GL_SRC_ALPHA, GL_ONE, GL_ONE, GL_ONE_MINUS_SRC_ALPHA});
}

// Instances.

TEST_F(DrawPassesTest, instancesLandOnTheirPixelsWithTheFirstRowFirst) {
    beginScene(4, 3);
    drawShapes(renderData(), flatView(4, 3), rectangle(1, 0, 3, 1, 0, {1, 0.5F, 0.25F, 1}));
    const auto texels = readTarget(4, 3);
    for (std::size_t i = 0; i < texels.size(); ++i) {
        const bool inside = i == 1 || i == 2;
        EXPECT_EQ(texels[i], inside ? (Colour{1, 0.5F, 0.25F, 1}) : Colour{}) << i;
    }
    EXPECT_TRUE(takeGlErrors().empty());
}

TEST_F(DrawPassesTest, laterInstancesLieOnTopWhateverTheirDepth) {
    beginScene(1, 1);
    auto vertices = rectangle(0, 0, 1, 1, -100, {1, 0, 0, 1});
    const auto farther = rectangle(0, 0, 1, 1, 100, {0, 1, 0, 1});
    vertices.insert(vertices.end(), farther.begin(), farther.end());
    drawShapes(renderData(), flatView(1, 1), vertices, {.blendMode = blendNormal});
    EXPECT_EQ(readTarget(1, 1).front(), (Colour{0, 1, 0, 1}));
}

TEST_F(DrawPassesTest, aBatchLeavesNothingBoundAndNoArrayEnabled) {
    beginScene(1, 1);
    drawShapes(renderData(), flatView(1, 1), rectangle(0, 0, 1, 1, 0, black), {.blendMode = blendNormal});
    expectNothingLeftOn(false);
    expectArraysDisabled(renderData().instanceVao);
    EXPECT_TRUE(takeGlErrors().empty());
}

TEST_F(DrawPassesTest, fogUniformsAreSetAlsoWhenFogIsOff) {
    beginScene(1, 1);
    const FogState fog = {.enabled = 0, .colorWeight = 50, .gradientTexture = 0, .opacity = 25, .start = 10, .end = 20};
    drawShapes(renderData(), flatView(1, 1), rectangle(0, 0, 1, 1, 0, black), {.fog = fog});
    const GLuint program = renderData().shapeProgram;
    GLint enabled = -1;
    GLint unit = -1;
    glGetUniformiv(program, glGetUniformLocation(program, "fogEnabled"), &enabled);
    glGetUniformiv(program, glGetUniformLocation(program, "fogTexture"), &unit);
    EXPECT_EQ(enabled, 0);
    EXPECT_EQ(unit, 1);
    EXPECT_FLOAT_EQ(uniformOf(program, "fogColorWeight"), 0.5F);
    EXPECT_FLOAT_EQ(uniformOf(program, "fogOpacity"), 0.25F);
    EXPECT_FLOAT_EQ(uniformOf(program, "fogStart"), 10);
    EXPECT_FLOAT_EQ(uniformOf(program, "fogEnd"), 20);
    EXPECT_EQ(readTarget(1, 1).front(), black);
}

// Distances.

TEST(ScaleDistances, multipliesAllFourAndRaisesTheFogsEnd) {
    FogState fog = {.start = 300, .end = 100};
    ZDepthState zDepth = {.start = -40, .end = 80};
    scaleDistances(fog, zDepth, 0.25F);
    EXPECT_EQ(fog.start, 75);
    EXPECT_EQ(fog.end, 75);
    EXPECT_EQ(zDepth.start, -10);
    EXPECT_EQ(zDepth.end, 20);
}

TEST(ScaleDistances, keepsAFogEndBeyondItsStart) {
    FogState fog = {.start = 100, .end = 300};
    ZDepthState zDepth;
    scaleDistances(fog, zDepth, 0.5F);
    EXPECT_EQ(fog.start, 50);
    EXPECT_EQ(fog.end, 150);
}

// Background.

TEST_F(DrawPassesTest, theBackgroundIsOpaqueBlackAndLeavesNoObject) {
    beginScene(3, 2, {1, 0.5F, 0.25F, 0.5F});
    const int before = liveObjects();
    SetBlendMode(blendAdd);
    drawBackground(renderData());
    EXPECT_EQ(liveObjects(), before);
    for (const Colour& texel : readTarget(3, 2)) {
        EXPECT_EQ(texel, black);
    }
    expectNothingLeftOn(false);
    EXPECT_TRUE(takeGlErrors().empty());
}

// Copy and resolve.

TEST_F(DrawPassesTest, aCopyIsOneToOne) {
    constexpr int width = 3;
    constexpr int height = 2;
    PrepareRenderTargets(renderData(), width, height, false);
    std::vector<Colour> pattern;
    for (int i = 0; i < width * height; ++i) {
        const float value = static_cast<float>(i);
        pattern.push_back({value, -value, value * 8, 0.125F * value});
    }
    const std::uint32_t source = makeTexture(width, height, pattern);
    AttachTarget(renderData(), renderData().resolveTexture);
    setViewport(width, height);
    clearTo({9, 9, 9, 9});
    DrawFullPicture(renderData(), width, height, source, blendOff, false);
    const auto texels = readTarget(width, height);
    for (std::size_t i = 0; i < texels.size(); ++i) {
        expectNear(texels[i], pattern[i], 1e-5F);
    }
    expectNothingLeftOn(false);
    expectArraysDisabled(renderData().quadVao);
    deleteTexture(source);
    EXPECT_TRUE(takeGlErrors().empty());
}

/// Resolves a doubled scene of 4 by 4 with a single texel of 1 into a picture of 2 by 2.
class ResolveTest : public DrawPassesTest {
protected:
    std::vector<Colour> resolvedImpulse(std::size_t x, std::size_t y) {
        PrepareRenderTargets(renderData(), 2, 2, true);
        std::vector<Colour> scene(16);
        scene[y * 4 + x] = {1, 2, 4, 0.5F};
        const std::uint32_t source = makeTexture(4, 4, scene);
        AttachTarget(renderData(), renderData().resolveTexture);
        setViewport(2, 2);
        clearTo({9, 9, 9, 9});
        DrawFullPicture(renderData(), 2, 2, source, blendOff, true);
        deleteTexture(source);
        EXPECT_TRUE(takeGlErrors().empty());
        return readTarget(2, 2);
    }

    static void expectWeights(const std::vector<Colour>& texels, const std::array<float, 4>& weights) {
        for (std::size_t i = 0; i < 4; ++i) {
            expectNear(texels[i], {weights[i], 2 * weights[i], 4 * weights[i], 0.5F * weights[i]}, 1e-5F);
        }
    }
};

// Each of the five samples of a target pixel lies on a corner of source texels and is the mean of the four around it.
// For target pixel (0, 0) the corners are (1, 1), the centre, and (0, 0), (2, 0), (0, 2), (2, 2); corner (i, j) has the
// texels i - 1 and i across, j - 1 and j down, clamped to the edge. Target pixel (1, 0) has the corners 2 further
// right, and so on.

TEST_F(ResolveTest, aTexelInsideAPixelCountsInItsCentreAndTheNearDiagonals) {
    // Texel (1, 1) is in corners (1, 1) and (2, 2) of pixel (0, 0): 2 of 20; and in corner (2, 2) of each of the
    // others.
    expectWeights(resolvedImpulse(1, 1), {0.1F, 0.05F, 0.05F, 0.05F});
}

TEST_F(ResolveTest, aTexelInTheCornerCountsFourTimesThroughTheClamping) {
    // Texel (0, 0) is in corner (1, 1) once and in corner (0, 0) four times: 5 of 20.
    expectWeights(resolvedImpulse(0, 0), {0.25F, 0, 0, 0});
}

TEST_F(ResolveTest, aTexelAtTheEdgeCountsTwiceThroughTheClamping) {
    // Texel (1, 0) is once in corners (1, 1) and twice in (2, 0) of pixel (0, 0), and twice in corner (2, 0) of pixel
    // (1, 0).
    expectWeights(resolvedImpulse(1, 0), {0.15F, 0.1F, 0, 0});
}

TEST_F(ResolveTest, anEvenSceneStaysEven) {
    PrepareRenderTargets(renderData(), 3, 2, true);
    AttachTarget(renderData(), renderData().sceneTexture);
    clearTo({0.25F, 0.5F, 2, 0.75F});
    AttachTarget(renderData(), renderData().resolveTexture);
    setViewport(3, 2);
    DrawFullPicture(renderData(), 3, 2, renderData().sceneTexture, blendOff, true);
    for (const Colour& texel : readTarget(3, 2)) {
        expectNear(texel, {0.25F, 0.5F, 2, 0.75F}, 1e-6F);
    }
}

// Output conversion.

class OutputTest : public DrawPassesTest {
protected:
    Colour converted(const Colour& pixel, float multiplier16bit = 1.0F) {
        PrepareRenderTargets(renderData(), 1, 1, false);
        const std::uint32_t source = makeTexture(1, 1, {pixel});
        AttachTarget(renderData(), renderData().outputTexture);
        setViewport(1, 1);
        setTransparentClearColor();
        clearTarget();
        DrawOutput(renderData(), 1, 1, source, multiplier16bit);
        deleteTexture(source);
        EXPECT_TRUE(takeGlErrors().empty());
        return readTarget(1, 1).front();
    }
};

TEST_F(OutputTest, colourIsDividedByAlphaAndAlphaComesFirst) {
    expectNear(converted({0.25F, 0.5F, 0.125F, 0.5F}), {0.5F, 0.5F, 1, 0.25F}, 1e-6F);
}

TEST_F(OutputTest, alphaBelowAHundredthGivesNothing) {
    EXPECT_EQ(converted({1, 1, 1, 0.0099F}), (Colour{0, 0, 0, 0}));
    expectNear(converted({0.005F, 0, 0, 0.0101F}), {0.0101F, 0.49505F, 0, 0}, 1e-5F);
    EXPECT_EQ(converted({1, 1, 1, 0}), (Colour{0, 0, 0, 0}));
}

TEST_F(OutputTest, theClampingComesBeforeTheDividing) {
    expectNear(converted({4, -1, 0.5F, 1}), {1, 1, 0, 0.5F}, 1e-6F);
    expectNear(converted({1, 1, 1, 3}), {1, 1, 1, 1}, 1e-6F);
    expectNear(converted({0.75F, 0, 0, 0.5F}), {0.5F, 1.5F, 0, 0}, 1e-6F);
}

TEST_F(OutputTest, sixteenBitsEndAt32768Of65535) {
    expectNear(converted({1, 0.5F, 0, 1}, 65535.0F / 32768.0F),
               {32768.0F / 65535.0F, 32768.0F / 65535.0F, 16384.0F / 65535.0F, 0}, 1e-7F);
}

TEST_F(OutputTest, blendingStaysOnAndNothingElse) {
    converted({1, 1, 1, 1});
    expectNothingLeftOn(true);
    expectArraysDisabled(renderData().quadVao);
    expectBlending({GL_ONE, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA});
}

}  // namespace
}  // namespace Tessavoy
