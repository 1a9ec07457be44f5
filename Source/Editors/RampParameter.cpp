#include "Source/Editors/RampParameter.h"

namespace Tessavoy {

PF_Err HandleRampArbitrary(PF_InData* inData, PF_OutData*, PF_ArbParamsExtra* extra) {
    return ArbitraryDataHandler<RampData>(inData, [] { return defaultRamp(); }).handle(*extra);
}

PF_Err NewRampHandle(PF_InData* inData, A_long mode, PF_Handle* out) {
    return newArbitraryHandle(inData, defaultRamp(mode), out);
}

}  // namespace Tessavoy
