#pragma once

#include "Host/Project.h"
#include "HostInterface/Types.h"

namespace TessavoyHost {

// The camera's layer-to-world matrix at a moment in composition seconds, as the host hands it over: for row vectors,
// row by row, the position in the last row. Columns of the rotation for column vectors are thus its rows: they are
// Ry(yaw) Rx(pitch) Rx(ox) Ry(oy) Rz(oz) Rx(rx) Ry(ry) Rz(rz) of the direction to the point of interest, the
// orientation o and the rotation r.
A_Matrix4 cameraToWorld(const Camera& camera, const Composition& composition, double time);

// Pixels.
double cameraZoom(const Camera& camera, double time);

}  // namespace TessavoyHost
