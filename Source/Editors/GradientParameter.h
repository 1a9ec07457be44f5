#pragma once

#include "Source/Editors/ArbitraryData.h"
#include "Source/Editors/GradientData.h"

namespace Tessavoy {

/// The gradient in a host handle, locked while this object lives.
using CheckOutGradient = CheckOutArbitrary<GradientData>;

/// Answers one of the host's arbitrary-data functions for gradients. See `ArbitraryDataHandler` for the errors.
PF_Err HandleGradientArbitrary(PF_InData* inData, PF_OutData* outData, PF_ArbParamsExtra* extra);

/// A handle with the default gradient, for registration. Errors as `newArbitraryHandle`.
PF_Err NewGradientHandle(PF_InData* inData, PF_Handle* out);

}  // namespace Tessavoy
