#pragma once

#include "Source/Gl/EffectRenderData.h"

#include <cstdint>
#include <span>

namespace Tessavoy::AESDK_OpenGL {

/// The vertex attributes of all programs; the value is the attribute's fixed location.
enum class VertexAttribute : std::uint32_t {
    Position = 0,  ///< three floats; quad programs read a vec4, with w supplied as 1
    UVs = 1,       ///< quad texture coordinate, two floats
    UV3 = 2,       ///< atlas coordinate: u, v and array layer, three floats
    Color = 3,     ///< red, green, blue, alpha, four floats
};

/// Compiles both sources, binds each listed attribute to its location and links. Returns the program's name, which the
/// caller owns. Throws AESDK_OpenGL_Fault with code 6 when a step fails; the driver's log is not shown, and the names
/// of the failed attempt are not deleted.
std::uint32_t BuildProgram(const char* vertexSource, const char* fragmentSource,
                           std::span<const VertexAttribute> attributes);

/// Builds every program of the render data whose name is zero, in the order of its fields. Needs its context current.
void buildMissingPrograms(AESDK_OpenGL_EffectRenderData& renderData);

/// Makes texture unit 0 or 1 the active one, binds the texture to its GL_TEXTURE_2D and sets the program's uniform to
/// the unit. The program is in use. Throws AESDK_OpenGL_Fault with code 6 for a texture name of all ones or another
/// unit.
///
/// For an array texture the GL refuses the bind (GL_INVALID_OPERATION, which nobody reads): its sampler sees what is
/// bound to GL_TEXTURE_2D_ARRAY of the unit. So the atlas is created while unit 0 is active and stays bound there.
void BindTextureUniform(std::uint32_t program, std::uint32_t textureName, const char* uniformName, std::int32_t unit);

}  // namespace Tessavoy::AESDK_OpenGL
