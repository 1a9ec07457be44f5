#include "Host/Project.h"

#include <cmath>

namespace TessavoyHost {

int Composition::frameCount() const {
    const double frames = duration * frameRate.value();
    return static_cast<int>(std::ceil(frames - 1e-6));
}

}  // namespace TessavoyHost
