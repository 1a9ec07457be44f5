#pragma once

#include <nlohmann/json.hpp>

#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// A JSON Schema (draft 2020-12) of scene files, with every parameter as the module registered it: what an editor needs
// to complete and check scenes.
nlohmann::ordered_json sceneSchema(const ParameterTable& table);

}  // namespace TessavoyHost
