#pragma once

#include <filesystem>

#include "Host/HostError.h"

namespace TessavoyHost {

// `tessavoy save`: writes what a project keeps of the scene's effect to the file, whole or not at all; a file that is
// there is replaced. See Host/Scene/SavedProject.h for what stands in it.
ExitStatus saveScene(const std::filesystem::path& scene, const std::filesystem::path& modulePath,
                     const std::filesystem::path& file);

}  // namespace TessavoyHost
