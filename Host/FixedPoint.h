#pragma once

#include "HostInterface/Types.h"

namespace TessavoyHost {

// Numbers with 16 bits after the point.
inline constexpr double fixedOne = 65536;

constexpr double fromFixed(PF_Fixed value) {
    return value / fixedOne;
}

}  // namespace TessavoyHost
