#include "Source/Editors/GradientParameter.h"

namespace Tessavoy {

PF_Err HandleGradientArbitrary(PF_InData* inData, PF_OutData*, PF_ArbParamsExtra* extra) {
    return ArbitraryDataHandler<GradientData>(inData, [] { return defaultGradient(); }).handle(*extra);
}

PF_Err NewGradientHandle(PF_InData* inData, PF_Handle* out) {
    return newArbitraryHandle(inData, defaultGradient(), out);
}

}  // namespace Tessavoy
