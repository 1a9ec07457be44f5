#pragma once

#include "Source/Parameter/Declaration.h"

#include <string>
#include <vector>

namespace Tessavoy {

/// One parameter of the expanded tree.
struct ParameterDescription {
    std::string id;           ///< dotted, such as "InstanceSize.Noise.Seed"
    Declaration declaration;  ///< complete: what the sections around decide is filled in
    A_long slot = 0;          ///< the slot number that its label names, 1 to 10; 0 for a label without number
};

/// All 996 parameters in the order of the panel, the input layer left out: element i has the parameter index i + 1.
/// Built at the first call, which may come from any thread, and never changed.
const std::vector<ParameterDescription>& parameterTree();

}  // namespace Tessavoy
