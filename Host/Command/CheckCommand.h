#pragma once

#include <filesystem>

#include "Host/Command/OutputChannel.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy check` does: reads the scene, applies the effect, and prints a line when all is right. What is wrong
// goes to standard error. Throws HostError where the scene's file or the module can't be had.
ExitStatus checkScene(const std::filesystem::path& scene, const std::filesystem::path& module, OutputChannel& output);

}  // namespace TessavoyHost
