#pragma once

#include "Source/Editors/ArbitraryData.h"
#include "Source/Editors/RampData.h"

namespace Tessavoy {

/// The ramp in a host handle, locked while this object lives.
using CheckOutRamp = CheckOutArbitrary<RampData>;

/// Answers one of the host's arbitrary-data functions for ramps. See `ArbitraryDataHandler` for the errors.
PF_Err HandleRampArbitrary(PF_InData* inData, PF_OutData* outData, PF_ArbParamsExtra* extra);

/// A handle with the default ramp of `mode` (a `RampMode`), for registration. Errors as `newArbitraryHandle`.
PF_Err NewRampHandle(PF_InData* inData, A_long mode, PF_Handle* out);

}  // namespace Tessavoy
