#pragma once

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// A failure of the drawing side. It carries a code and no text; no handler of the effect tells the codes apart, so
/// that in a frame every fault ends as the host's out-of-memory error.
class AESDK_OpenGL_Fault {
public:
    explicit AESDK_OpenGL_Fault(std::uint32_t code) : mCode(code) {}

    std::uint32_t code() const { return mCode; }

private:
    std::uint32_t mCode;
};

/// The codes in use.
inline constexpr std::uint32_t faultContext = 1;      ///< a step of creating a context failed
inline constexpr std::uint32_t faultFramebuffer = 3;  ///< a framebuffer is incomplete after a texture was attached
inline constexpr std::uint32_t faultShader = 6;  ///< compiling or linking failed, or a texture or its unit is not valid

}  // namespace Tessavoy::AESDK_OpenGL
