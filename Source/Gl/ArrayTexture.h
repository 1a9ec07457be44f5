#pragma once

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// An array texture of GL_RGBA32F: one level, `depth` layers of width by height texels, filtered linearly and clamped
/// to its edge. It stays bound to GL_TEXTURE_2D_ARRAY of unit 0, and the draw relies on that. The caller owns the name
/// (deleteTexture). A size that the GL refuses gives a texture without storage; that error is not read.
std::uint32_t makeArrayTexture(std::int32_t width, std::int32_t height, std::int32_t depth);

/// The place of a block of texels in an array texture, and its size, in texels.
struct ArrayRegion {
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t layer = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
};

/// Copies pixels of four channels into the bound array texture. `rowPixels` is the distance of two rows in pixels,
/// `glType` the GL type of a channel. Row 0 goes to the region's first row. The unpack row length stays as it is set
/// here.
void fillArrayTexture(const ArrayRegion& region, std::int32_t rowPixels, std::uint32_t glType, const void* pixels);

}  // namespace Tessavoy::AESDK_OpenGL
