#pragma once

#include "HostInterface/Effect.h"
#include "Source/Gl/EffectRenderData.h"

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// Reads the attached output target into the host's output world, first row first: both have y growing from the first
/// row of the host's world. pixelFormat is the worlds' format, bytesPerPixel and glType are its transfer
/// (GetPixelTransfer). The picture has the size of the input world; an output world that is smaller gets its own width
/// and height of it, and of a larger one the rest is left alone.
///
/// Throws Exception with code 4 when the host has no memory for the picture, with the host's code when its iteration
/// fails, and with 516 for another pixel format. After an exception in between the block is not released.
void ReadBackOutput(const AESDK_OpenGL_EffectRenderData& renderData, PF_InData* inData, PF_EffectWorld* inputWorld,
                    PF_EffectWorld* outputWorld, PF_PixelFormat pixelFormat, A_long bytesPerPixel,
                    std::uint32_t glType);

}  // namespace Tessavoy::AESDK_OpenGL
