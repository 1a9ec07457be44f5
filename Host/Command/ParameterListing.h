#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// Everything that the module registered for a parameter: "id", "index", "diskId", "type", "label", "flags", "uiFlags",
// and where they apply "default", "validMin", "validMax", "sliderMin", "sliderMax", "precision", "percent", "choices",
// "declaredCount", "text", "uiWidth", "uiHeight".
nlohmann::ordered_json describeParameter(const ParameterTable& table, int index);

// All parameters in panel order: as a list of such objects, one a line; as columns; as a Markdown table.
std::string parametersAsJson(const ParameterTable& table);
std::string parametersAsText(const ParameterTable& table);
std::string parametersAsMarkdown(const ParameterTable& table);

}  // namespace TessavoyHost
