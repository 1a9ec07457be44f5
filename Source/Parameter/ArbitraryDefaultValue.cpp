#include "Source/Parameter/ArbitraryDefaultValue.h"

#include "Source/Editors/GradientParameter.h"
#include "Source/Editors/RampParameter.h"

namespace Tessavoy {

ArbitraryDefaultValue::~ArbitraryDefaultValue() {
    if (mHandle == nullptr) {
        return;
    }
    PF_ArbParamsExtra extra = {};
    extra.which_function = PF_Arbitrary_DISPOSE_FUNC;
    extra.u.dispose_func_params = {nullptr, mHandle};
    try {
        if (mKind == ArbitraryDefault::Ramp) {
            HandleRampArbitrary(mInData, mOutData, &extra);
        } else {
            HandleGradientArbitrary(mInData, mOutData, &extra);
        }
    } catch (...) {
        // The host can't lock its own handle any more, say; the error that brought us here is the one to report.
    }
}

PF_Err ArbitraryDefaultValue::make(ArbitraryDefault kind) {
    mKind = kind;
    switch (kind) {
        case ArbitraryDefault::Script:
            break;
        case ArbitraryDefault::Gradient:
            return NewGradientHandle(mInData, &mHandle);
        case ArbitraryDefault::FogGradient:
            return makeFogGradient();
        case ArbitraryDefault::Ramp:
            return makeRamp();
    }
    return PF_Err_NONE;
}

PF_Err ArbitraryDefaultValue::makeFogGradient() {
    const PF_Err error = NewGradientHandle(mInData, &mHandle);
    if (error == PF_Err_NONE) {
        constexpr float middle = 0.5f;
        constexpr float grey = 0.3f;
        const CheckOutGradient gradient(mInData, mHandle);
        gradient->points.clear();
        InsertPoint(*gradient, middle, {GradientKindSin, grey, grey, grey, 1.0f});
    }
    return error;
}

PF_Err ArbitraryDefaultValue::makeRamp() {
    const PF_Err error = NewRampHandle(mInData, RampModeAll, &mHandle);
    if (error == PF_Err_NONE) {
        const CheckOutRamp ramp(mInData, mHandle);
        ramp->interpolation = RampInterpolationBezier;
    }
    return error;
}

}  // namespace Tessavoy
