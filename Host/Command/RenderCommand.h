#pragma once

#include "Host/Command/OutputChannel.h"
#include "Host/Command/RenderOptions.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy render` does. All that can be known to stand in the way is found before the first frame is rendered.
// Throws HostError where the scene's file or the module can't be had; everything else is told on standard error.
ExitStatus renderScene(const RenderOptions& options, OutputChannel& output);

}  // namespace TessavoyHost
