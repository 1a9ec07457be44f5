#pragma once

#include <filesystem>

#include "Host/Command/OutputChannel.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy about` does: prints name, version and flags of the module, what it printed while it made its OpenGL
// context, and the libraries of the command. Throws HostError(Module).
ExitStatus printAbout(const std::filesystem::path& module, OutputChannel& output);

}  // namespace TessavoyHost
