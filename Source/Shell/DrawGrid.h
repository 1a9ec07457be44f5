#pragma once

#include "HostInterface/Effect.h"
#include "Source/Gl/EffectRenderData.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/RenderGrid/BatchWalk.h"

namespace Tessavoy {

/// Where a frame's picture lies, and how its pixels pass.
struct GridDrawing {
    float originX = 0;  ///< the output world's origin: the place of its first pixel in the downsampled layer
    float originY = 0;
    A_long width = 0;  ///< pixels of the render
    A_long height = 0;
    float multiplier16bit = 1.0F;  ///< from GetPixelTransfer
};

/// Draws the grid into the scene target and brings it down to the resolve target, premultiplied. The render data's
/// targets are prepared and its context is current; that there is none is an assertion. Throws whatever fails.
void DrawGrid(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL::AESDK_OpenGL_EffectRenderData* renderContext,
              ParameterSnapshot& snapshot, const GridDrawing& drawing);

/// Evaluates, orders and emits the same grid without any OpenGL, atlas, fog or picture, and measures its vertices.
/// Nothing to draw leaves the bounds as they were given.
void MeasureZBounds(PF_InData* inData, PF_OutData* outData, ParameterSnapshot& snapshot, const GridDrawing& drawing,
                    ZBounds& bounds);

}  // namespace Tessavoy
