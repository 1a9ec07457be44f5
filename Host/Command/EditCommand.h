#pragma once

#include <filesystem>

#include "Host/Command/OutputChannel.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy edit` does: opens the scene's script through the effect's own dialog, which the user's editor answers,
// and stores what the effect took: in the script's file where the scene names one, else in the scene. A script that
// doesn't compile is stored and told, with status Scene. Throws HostError where the scene or the module can't be had.
ExitStatus editScript(const std::filesystem::path& scene, const std::filesystem::path& module, OutputChannel& output);

}  // namespace TessavoyHost
