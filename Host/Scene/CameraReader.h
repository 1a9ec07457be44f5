#pragma once

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {

// { "position", "pointOfInterest", "orientation", "rotation", "zoom" }, each a value or keys; zoom is required and
// above 0. A track that is left out stays without keys.
Camera readCamera(const JsonNode& node);

}  // namespace TessavoyHost
