#pragma once

#include <filesystem>
#include <string>

#include "Host/Command/OutputChannel.h"
#include "Host/EffectHost.h"
#include "Host/HostError.h"

namespace TessavoyHost {

// What `tessavoy about` does: prints name, version and flags of the module, what it printed while it made its OpenGL
// context, and the libraries of the command. Throws HostError(Module).
ExitStatus printAbout(const std::filesystem::path& module, OutputChannel& output);

// "1.3.1" of a version as modules state it; the stage and build stand behind unless it is a release of build 0.
std::string versionInWords(A_u_long version);

}  // namespace TessavoyHost
