#pragma once

#include "Host/Project.h"
#include "Host/Scene/ParameterTable.h"
#include "Host/Scene/SceneFile.h"
#include "Host/Scene/Values.h"

namespace TessavoyHost {

// Puts the overrides into the project. Throws HostError(CommandLine) with a line for each that is wrong.
void applyOverrides(const SceneOverrides& overrides, const ParameterTable& table, const SceneNames& names,
                    Project& project);

}  // namespace TessavoyHost
