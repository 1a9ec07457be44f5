#pragma once

#include <filesystem>
#include <vector>

#include "Host/Project.h"
#include "Host/RegisteredParameter.h"

namespace Tessavoy {

/// Writes a project as "scene.json" and its layers' pictures, as PNG files, into a folder, for the command to render.
/// Knows constant values, gradients and a camera with constant tracks; names, masks and scripts are left out.
void writeScene(const std::filesystem::path& folder, const TessavoyHost::Project& project,
                const std::vector<TessavoyHost::RegisteredParameter>& parameters);

}  // namespace Tessavoy
