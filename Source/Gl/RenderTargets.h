#pragma once

#include "HostInterface/Effect.h"
#include "Source/Gl/EffectRenderData.h"

#include <cstdint>

namespace Tessavoy::AESDK_OpenGL {

/// Brings the render data to a picture of this size (pixels): targets, framebuffer, quad and programs. What fits
/// already is kept; another size rebuilds everything but the programs and the instance buffers; another `multisampled`
/// alone rebuilds only sceneTexture, which is twice as wide and high with it. Called before anything is drawn in a
/// frame. Throws AESDK_OpenGL_Fault with code 6 when a program can't be built.
void PrepareRenderTargets(AESDK_OpenGL_EffectRenderData& renderData, std::uint16_t width, std::uint16_t height,
                          bool multisampled);

/// Makes the texture the one that is drawn into. Throws AESDK_OpenGL_Fault with code 3 when the framebuffer is then not
/// complete.
void AttachTarget(AESDK_OpenGL_EffectRenderData& renderData, std::uint32_t texture);

/// The state of the bound framebuffer as a text; "OK" when it is complete.
const char* framebufferStatusText();

/// The text for a status as glCheckFramebufferStatus gives it.
const char* framebufferStatusText(std::uint32_t status);

/// The check that follows each AttachTarget: when the bound framebuffer is not complete, its status text goes to the
/// host's return message, to be shown, and Exception with code 4 is thrown.
void checkFramebuffer(PF_InData* inData, PF_OutData* outData);

/// The start of a pass: AttachTarget, which throws for a target that isn't complete, and then checkFramebuffer, which
/// would have reported it.
void startPass(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL_EffectRenderData& renderData, std::uint32_t target);

/// The drawn part of the target: from its first pixel on, width by height pixels.
void setViewport(std::int32_t width, std::int32_t height);

/// Sets transparent black as what clearTarget writes; holds until the end of the frame.
void setTransparentClearColor();

/// Clears the whole attached target.
void clearTarget();

/// The end of a frame, after the read-back: no framebuffer and no texture of unit 0 stay bound.
void releaseTargets();

}  // namespace Tessavoy::AESDK_OpenGL
