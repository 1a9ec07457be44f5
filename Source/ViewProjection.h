#pragma once

#include "HostInterface/Types.h"
#include "Source/Matrix.h"

namespace Tessavoy {

/// How one frame looks at the grid. The view goes into the instance matrices on the CPU; the projection alone goes to
/// the instance shaders.
struct ViewProjection {
    A_long usesCamera = 0;  ///< 1 when a composition camera was found and is used, else 0
    Matrix view = Matrix::identity();
    Matrix projection = Matrix::identity();
};

}  // namespace Tessavoy
