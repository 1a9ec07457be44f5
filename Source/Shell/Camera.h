#pragma once

#include "HostInterface/Effect.h"
#include "Source/ViewProjection.h"

namespace Tessavoy {

class EffectLayerQuery;

/// The camera through which a composition is seen: the query that found it and the host's layer, null for none.
struct CameraLayer {
    EffectLayerQuery* query = nullptr;
    AEGP_LayerH layer = nullptr;
};

/// The camera at a composition time. A composition without one gives an empty value, or, when it is demanded, throws
/// Exception(512, "Failed to find the camera layer.").
CameraLayer findCamera(EffectLayerQuery& query, const A_Time& compositionTime, bool demanded);

/// How a frame looks at the grid: through the composition's camera when useCamera is set and there is one, else flat.
///
/// The origin is the output world's, in downsampled pixels; width and height are the render's size in pixels; the
/// downsample factors are single-precision quotients (0.5 for half resolution). In the flat space pixel (0, 0) is
/// mapped to clip (-1, -1) and z from -2000 to 2000 stays inside the clip volume. The camera's projection is an
/// off-centre frustum that looks along +z, with a near plane at 1 and a far plane at 10000. Host errors throw
/// Exception; a missing suite throws the plain integer 516.
ViewProjection BuildViewProjection(PF_InData* inData, bool useCamera, float originX, float originY, A_long width,
                                   A_long height, float downsampleX, float downsampleY);

}  // namespace Tessavoy
