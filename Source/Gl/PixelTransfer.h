#pragma once

#include "HostInterface/Types.h"

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// How pixels of one host format pass between the host and the GL. The host's components stand in the order alpha, red,
/// green, blue; they pass as a GL_RGBA pixel, so that the GL's red channel holds the host's alpha.
struct PixelTransfer {
    A_long bytesPerPixel = 0;
    std::uint32_t glType = 0;      ///< the GL type of one channel
    float multiplier16bit = 1.0F;  ///< takes a channel that came in 16 bits to 0..1: 65535 / 32768 there, else 1
};

/// For PF_PixelFormat_ARGB32, ARGB64 and ARGB128. Throws Exception with code 516 for any other format.
PixelTransfer GetPixelTransfer(PF_PixelFormat pixelFormat);

}  // namespace Tessavoy::AESDK_OpenGL
