#pragma once

#include "Source/Gl/EffectRenderData.h"
#include "Source/Gl/InstanceBuffers.h"
#include "Source/ViewProjection.h"

#include <cstdint>
#include <functional>

namespace Tessavoy::AESDK_OpenGL {

/// How fog enters the instance shaders. Distances are view-space z in downsampled pixels.
struct FogState {
    std::uint8_t enabled = 0;
    double colorWeight = 0;             ///< percent
    std::uint32_t gradientTexture = 0;  ///< from MakeFogTexture; 0 while fog is off
    double opacity = 0;                 ///< percent
    double start = 0;
    double end = 0;
};

/// The depth output, which takes the place of colour and fog. Distances as in FogState.
struct ZDepthState {
    std::uint8_t enabled = 0;
    double start = 0;
    double end = 0;
    std::uint8_t clamp = 0;  ///< grey values are kept in 0 to 1
    std::uint8_t alpha = 0;  ///< the output has the instances' alpha, instead of 1
};

/// Takes the distances from full-resolution pixels to downsampled ones, after raising the fog's end to its start if it
/// is below. Done once, on the frame's own copies.
void scaleDistances(FogState& fog, ZDepthState& zDepth, float downsampleX);

/// Blend modes: the popup's one-based values, and one more for passes that copy.
inline constexpr std::int32_t blendNormal = 1;
inline constexpr std::int32_t blendAdd = 2;
inline constexpr std::int32_t blendOff = 3;

/// Sets blending for what is drawn next; a mode that isn't one of the three changes nothing.
void SetBlendMode(std::int32_t mode);

/// Draws opaque black over the whole viewport, without blending.
void drawBackground(const AESDK_OpenGL_EffectRenderData& renderData);

/// Gives the colour at t, 0 to 1, as red, green, blue, alpha.
using FogGradient = std::function<void(float t, float* colour)>;

/// A texture of 2048 by 1 texels; texel i holds the gradient's colour at i / 2047. The caller deletes it
/// (deleteTexture) at the end of the frame.
std::uint32_t MakeFogTexture(const FogGradient& gradient);

/// What all batches of a frame are drawn with.
struct BatchSurroundings {
    ViewProjection viewProjection;
    FogState fog;
    ZDepthState zDepth;
    float multiplier16bit = 1.0F;  ///< as GetPixelTransfer gives it
    std::int32_t blendMode = blendNormal;
};

/// Draws the triangles of the instance buffers into the attached target. Vertices are position (three floats), colour
/// (four) and, when textured, u, v, layer, vertexStride bytes apart, in view space: the shaders are given the
/// projection alone. The atlas is bound to GL_TEXTURE_2D_ARRAY of unit 0 already.
void DrawInstanceBatch(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t indexCount,
                       std::int32_t vertexStride, bool textured, std::uint32_t atlasTexture,
                       const BatchSurroundings& surroundings);

/// Draws the texture over the whole picture of width by height pixels: one to one, or, when multisampled, from a
/// texture of twice the size, as the mean of five bilinear samples, at the pixel's centre and its four corners.
void DrawFullPicture(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t width, std::int32_t height,
                     std::uint32_t texture, std::int32_t blendMode, bool multisampled);

/// Converts the premultiplied picture to the host's pixels: clamped, straight, as alpha, red, green, blue, divided by
/// multiplier16bit. Blending stays switched on.
void DrawOutput(const AESDK_OpenGL_EffectRenderData& renderData, std::int32_t width, std::int32_t height,
                std::uint32_t texture, float multiplier16bit);

}  // namespace Tessavoy::AESDK_OpenGL
