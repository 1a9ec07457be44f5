#pragma once

#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/EffectRenderData.h"
#include "Source/Gl/StateRestorer.h"
#include "Tests/Support/QuietOutput.h"

#include <glbinding/gl/enum.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

namespace Tessavoy::Testing {

using Colour = std::array<float, 4>;

/// A vertex of shape instances as it lies in memory: position, then colour.
struct ShapeVertex {
    float x, y, z;
    Colour colour;
};
static_assert(sizeof(ShapeVertex) == 28);

/// A vertex of textured instances: the same and the atlas coordinate.
struct SpriteVertex {
    float x, y, z;
    Colour colour;
    float u, v, layer;
};
static_assert(sizeof(SpriteVertex) == 40);

/// Sets the plug-in's contexts up for one test, with this thread's context current and its render data ready.
class GlTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    AESDK_OpenGL::AESDK_OpenGL_EffectRenderData& renderData() { return *mRenderData; }

    /// Targets of a size, with the scene attached, cleared to a colour, and its whole area as viewport.
    void beginScene(std::uint16_t width, std::uint16_t height, const Colour& clear = {}, bool multisampled = false);

private:
    std::optional<AESDK_OpenGL::StateRestorer> mRestorer;
    std::shared_ptr<AESDK_OpenGL::AESDK_OpenGL_EffectRenderData> mRenderData;
};

/// The projection that takes pixels of a picture to clip space, z from -2000 to 2000 staying inside.
ViewProjection flatView(int width, int height);

/// All errors that the GL holds, oldest first; none are left.
std::vector<std::uint32_t> takeGlErrors();

/// The attached target as floats, first row first.
std::vector<Colour> readTarget(int width, int height);

/// A float texture with these texels, first row first.
std::uint32_t makeTexture(int width, int height, const std::vector<Colour>& texels);

/// Clears the attached target to a colour.
void clearTo(const Colour& colour);

/// How many objects of any kind exist in the current context.
int liveObjects();

/// A state of the GL that is one whole number.
std::int32_t glState(gl::GLenum name);

/// The value of a program's uniform of one float.
float uniformOf(std::uint32_t program, const char* name);

void expectNear(const Colour& actual, const Colour& expected, float tolerance);

/// A rectangle as two triangles (four vertices, in the order of a strip), all at one depth and of one colour.
std::vector<ShapeVertex> rectangle(float left, float top, float right, float bottom, float z, const Colour& colour);

/// Sends rectangles (four vertices each) through the instance buffers and draws them.
struct BatchSettings {
    AESDK_OpenGL::FogState fog{};
    AESDK_OpenGL::ZDepthState zDepth{};
    float multiplier16bit = 1.0F;
    std::int32_t blendMode = 3;
    std::uint32_t atlas = 0;
};
void drawShapes(AESDK_OpenGL::AESDK_OpenGL_EffectRenderData& renderData, const ViewProjection& view,
                const std::vector<ShapeVertex>& vertices, const BatchSettings& settings = {});
void drawSprites(AESDK_OpenGL::AESDK_OpenGL_EffectRenderData& renderData, const ViewProjection& view,
                 const std::vector<SpriteVertex>& vertices, const BatchSettings& settings);

}  // namespace Tessavoy::Testing
