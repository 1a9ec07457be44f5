#include "Source/Parameter/DynamicFlags.h"

#include "HostInterface/Constants.h"
#include "Source/HostAccess/Exception.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Sequence.h"

#include <string_view>

namespace Tessavoy {

namespace {

/// A parameter's value at the current time, checked in at the end of its scope.
class CheckedOutParameter {
public:
    CheckedOutParameter(PF_InData* inData, std::string_view id) : mInData(inData) {
        throwOnError(inData->inter.checkout_param(inData->effect_ref, parameterIndex(id), inData->current_time,
                                                  inData->time_step, inData->time_scale, &mRecord));
    }

    ~CheckedOutParameter() { mInData->inter.checkin_param(mInData->effect_ref, &mRecord); }

    CheckedOutParameter(const CheckedOutParameter&) = delete;
    CheckedOutParameter& operator=(const CheckedOutParameter&) = delete;

    const PF_ParamDefUnion& value() const { return mRecord.u; }
    bool isOn() const { return value().bd.value != 0; }

private:
    PF_InData* mInData;
    PF_ParamDef mRecord{};
};

template <class Flags, class Flag>
void setFlag(Flags& flags, Flag flag, bool set) {
    flags = set ? flags | flag : flags & ~flag;
}

bool hasScript(const SequenceAccess& sequence) {
    return sequence.get() != nullptr && !sequence->script.empty();
}

}  // namespace

PF_Err QueryDynamicFlags(PF_InData* inData, PF_OutData* outData) {
    const CheckedOutParameter shapeType(inData, "ShapeType");
    const CheckedOutParameter splittingMode(inData, "ShapeFramesSplittingMode");
    const CheckedOutParameter animationSequence(inData, "ShapeFramesAnimationSequence");
    const CheckedOutParameter animationSpeed(inData, "ShapeFramesAnimationSpeed");
    const SequenceAccess sequence(inData);

    const bool playsFrames = shapeType.value().pd.value == PopupValues::TexturedQuad &&
                             splittingMode.value().pd.value != PopupValues::SplitImage && animationSequence.isOn() &&
                             animationSpeed.value().fs_d.value != 0;
    setFlag(outData->out_flags, PF_OutFlag_NON_PARAM_VARY, playsFrames || hasScript(sequence));

    const CheckedOutParameter useCompCamera(inData, "UseCompCamera");
    setFlag(outData->out_flags2, PF_OutFlag2_I_USE_3D_CAMERA, useCompCamera.isOn());
    return PF_Err_NONE;
}

}  // namespace Tessavoy
