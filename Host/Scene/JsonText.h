#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "Host/Scene/Problems.h"

namespace TessavoyHost {

// Parses UTF-8 JSON with // and /* */ comments. A syntax error is a problem "line L, column C: ..." and gives nothing;
// a key that stands twice in one object is a problem at its place.
std::optional<nlohmann::json> parseJsonText(const std::string& text, Problems& problems);

}  // namespace TessavoyHost
