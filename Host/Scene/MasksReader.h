#pragma once

#include <vector>

#include "Host/Project.h"
#include "Host/Scene/JsonNode.h"

namespace TessavoyHost {

// The list of masks of the effect's layer: names that differ, vertices in full-resolution pixels, tangents relative to
// their vertex and zero when left out, closed when not said otherwise. As many masks as the list has elements.
std::vector<Mask> readMasks(const JsonNode& node);

}  // namespace TessavoyHost
