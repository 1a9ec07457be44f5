#pragma once

#include <string>

#include "Host/EffectInstance.h"

namespace TessavoyHost {

// A parameter's value at a moment (composition seconds) as the panel writes it: "12.5", "100.0%", "0x+90.0°",
// "960.0, 540.0", the choice of a popup, the name of a layer or mask, or "None". Empty for what has no value in words:
// checkboxes, colours, groups, buttons, arbitrary data.
std::string valueText(const EffectInstance& instance, int parameter, double time);

}  // namespace TessavoyHost
