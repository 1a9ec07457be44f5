#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {

using ValueReader = std::function<std::optional<ParameterValue>(const JsonNode&)>;

// "linear", "hold" or "smooth".
const std::string& easeWord(Ease ease);

enum class OverTime { MayVary, Fixed };

// A constant value, which becomes one key at time 0, or { "keys": [ { "time", "value", "ease" } ] } with strictly
// rising times in composition seconds. Keys where the value is fixed are a problem.
std::optional<ParameterTrack> readTrack(const JsonNode& node, OverTime overTime, const ValueReader& readValue);

}  // namespace TessavoyHost
