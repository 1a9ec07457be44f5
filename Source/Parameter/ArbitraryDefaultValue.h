#pragma once

#include "HostInterface/Effect.h"
#include "Source/Parameter/Declaration.h"

namespace Tessavoy {

/// The value that an arbitrary-data parameter is registered with, in a host handle. Until `release` it is this
/// object's, and is disposed of with it: a host that refuses the parameter doesn't take the handle.
class ArbitraryDefaultValue {
public:
    ArbitraryDefaultValue(PF_InData* inData, PF_OutData* outData) : mInData(inData), mOutData(outData) {}
    ~ArbitraryDefaultValue();

    ArbitraryDefaultValue(const ArbitraryDefaultValue&) = delete;
    ArbitraryDefaultValue& operator=(const ArbitraryDefaultValue&) = delete;

    /// Makes the value; the script's stays null. Returns the host's error where the handle can't be made, and throws
    /// the plain integers of the editors' check-outs (4, 516).
    PF_Err make(ArbitraryDefault kind);

    PF_Handle handle() const { return mHandle; }

    /// The handle is the host's from now on.
    void release() { mHandle = nullptr; }

private:
    PF_Err makeFogGradient();
    PF_Err makeRamp();

    PF_InData* mInData;
    PF_OutData* mOutData;
    PF_Handle mHandle = nullptr;
    ArbitraryDefault mKind = ArbitraryDefault::Script;
};

}  // namespace Tessavoy
