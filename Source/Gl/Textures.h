#pragma once

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// An empty GL_TEXTURE_2D of GL_RGBA32F, filtered linearly and clamped to its edge, left unbound. Rows and columns
/// count from the texture coordinate 0. The caller owns the name. A size that the GL refuses gives a texture without
/// storage.
std::uint32_t makeFloatTexture(std::int32_t width, std::int32_t height);

/// Replaces all texels of such a texture. `texels` holds red, green, blue, alpha per texel, rows without gaps.
void fillFloatTexture(std::uint32_t texture, std::int32_t width, std::int32_t height, const float* texels);

/// Deletes a texture; a name of zero is let pass.
void deleteTexture(std::uint32_t texture);

}  // namespace Tessavoy::AESDK_OpenGL
