#pragma once

#include <filesystem>

#include "Host/Command/OutputChannel.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy bounds` does: presses the effect's button for the depth range at a frame, 0 being the first, and
// prints what its dialog shows. Throws HostError where the scene or the module can't be had.
ExitStatus printBounds(const std::filesystem::path& scene, const std::filesystem::path& module, int frame,
                       OutputChannel& output);

}  // namespace TessavoyHost
