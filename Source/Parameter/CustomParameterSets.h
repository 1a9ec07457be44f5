#pragma once

#include "HostInterface/Types.h"

#include <unordered_set>

namespace Tessavoy {

/// The parameter indices whose events go to a custom editor. Built at the first call, which may come from any thread.
const std::unordered_set<A_long>& gradientParamIds();  ///< FogColorGradient and the ten custom gradients
const std::unordered_set<A_long>& rampParamIds();      ///< the ten custom ramps
const std::unordered_set<A_long>& scriptParamIds();    ///< the script

}  // namespace Tessavoy
