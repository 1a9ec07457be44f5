#include "Source/Shell/EffectMain.h"

#include "HostInterface/Constants.h"
#include "Source/Editors/GradientControl.h"
#include "Source/Editors/GradientParameter.h"
#include "Source/Editors/RampControl.h"
#include "Source/Editors/RampParameter.h"
#include "Source/Editors/ScriptControl.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/ArbitraryKind.h"
#include "Source/Parameter/CustomParameterSets.h"
#include "Source/Parameter/DynamicFlags.h"
#include "Source/Parameter/PanelUpdate.h"
#include "Source/Parameter/Registration.h"
#include "Source/Parameter/StringTable.h"
#include "Source/Sequence.h"
#include "Source/Shell/GlobalSetup.h"
#include "Source/Shell/PreRender.h"
#include "Source/Shell/ProductIdentity.h"
#include "Source/Shell/SmartRender.h"
#include "Source/Shell/UserChangedParam.h"

#include <cstdint>
#include <unordered_set>

namespace Tessavoy {

namespace {

PF_Err about(PF_InData* inData, PF_OutData* outData) {
    SuiteHandler suites(inData->pica_basicP);
    suites.get<PF_ANSICallbacksSuite1>().sprintf(outData->return_msg, "%s v%d.%d\r%s", GetStringPtr(1),
                                                 ProductIdentity::shownMajor, ProductIdentity::shownMinor,
                                                 GetStringPtr(2));
    return PF_Err_NONE;
}

PF_Err arbitraryCallback(PF_InData* inData, PF_OutData* outData, PF_ArbParamsExtra* extra) {
    if (extra->which_function < PF_Arbitrary_NEW_FUNC || extra->which_function > PF_Arbitrary_SCAN_FUNC) {
        return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    // The reference value says which kind it is; it is the first field of every function's arguments.
    switch (reinterpret_cast<std::uintptr_t>(extra->u.new_func_params.refconPV)) {
        case ScriptRefcon:
            return PF_Err_NONE;  // the script's text lives in the sequence data
        case GradientRefcon:
            return HandleGradientArbitrary(inData, outData, extra);
        case RampRefcon:
            return HandleRampArbitrary(inData, outData, extra);
        default:
            return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
}

/// Which control an event goes to: the parameters that it draws, and what handles it.
struct ControlEvents {
    const std::unordered_set<A_long>& (*parameters)();
    PF_Err (*handle)(PF_InData*, PF_OutData*, PF_ParamDef*[], PF_EventExtra*);
};

constexpr ControlEvents controlEvents[] = {
    {gradientParamIds, HandleGradientEvent}, {rampParamIds, HandleRampEvent}, {scriptParamIds, HandleScriptEvent}};

/// The sets are tested one after the other; no parameter is in two of them.
PF_Err panelEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra) {
    PF_Err result = PF_Err_NONE;
    for (const ControlEvents& control : controlEvents) {
        if (control.parameters().contains(extra->effect_win.index)) {
            result = control.handle(inData, outData, params, extra);
        }
    }
    return result;
}

using SequenceCommand = PF_Err (*)(PF_InData*, PF_OutData*);

/// The sequence commands have a scope of their own: an Exception counts as anything else here.
PF_Err runSequenceCommand(SequenceCommand command, PF_InData* inData, PF_OutData* outData) {
    try {
        return command(inData, outData);
    } catch (PF_Err error) {
        return error;
    } catch (...) {
        return PF_Err_OUT_OF_MEMORY;
    }
}

PF_Err dispatch(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], void* extra) {
    switch (cmd) {
        case PF_Cmd_ABOUT:
            return about(inData, outData);
        case PF_Cmd_GLOBAL_SETUP:
            return GlobalSetup(inData, outData);
        case PF_Cmd_GLOBAL_SETDOWN:
            return GlobalSetdown(inData, outData);
        case PF_Cmd_PARAMS_SETUP:
            return registerParameters(inData, outData);
        case PF_Cmd_SEQUENCE_SETUP:
            return runSequenceCommand(SequenceSetup, inData, outData);
        case PF_Cmd_SEQUENCE_RESETUP:
            return runSequenceCommand(SequenceResetup, inData, outData);
        case PF_Cmd_SEQUENCE_FLATTEN:
            return runSequenceCommand(SequenceFlatten, inData, outData);
        case PF_Cmd_SEQUENCE_SETDOWN:
            return runSequenceCommand(SequenceSetdown, inData, outData);
        case PF_Cmd_GET_FLATTENED_SEQUENCE_DATA:
            return runSequenceCommand(SequenceGetFlattened, inData, outData);
        case PF_Cmd_USER_CHANGED_PARAM:
            return UserChangedParam(inData, outData, params, static_cast<PF_UserChangedParamExtra*>(extra));
        case PF_Cmd_UPDATE_PARAMS_UI:
            return UpdateParamsUi(inData, outData, params);
        case PF_Cmd_QUERY_DYNAMIC_FLAGS:
            return QueryDynamicFlags(inData, outData);
        case PF_Cmd_EVENT:
            return panelEvent(inData, outData, params, static_cast<PF_EventExtra*>(extra));
        case PF_Cmd_ARBITRARY_CALLBACK:
            return arbitraryCallback(inData, outData, static_cast<PF_ArbParamsExtra*>(extra));
        case PF_Cmd_SMART_PRE_RENDER:
            return SmartPreRender(inData, static_cast<PF_PreRenderExtra*>(extra));
        case PF_Cmd_SMART_RENDER:
            return SmartRender(inData, outData, static_cast<PF_SmartRenderExtra*>(extra));
        default:
            return PF_Err_NONE;
    }
}

/// The sets by which panel events are routed are made at the first entry, before any thread renders.
void makeParameterSets() {
    gradientParamIds();
    rampParamIds();
    scriptParamIds();
}

}  // namespace

}  // namespace Tessavoy

PF_Err EffectMain(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef*,
                  void* extra) {
    try {
        Tessavoy::makeParameterSets();
        return Tessavoy::dispatch(cmd, inData, outData, params, extra);
    } catch (const Tessavoy::Exception& exception) {
        if (*exception.what() != '\0') {
            Tessavoy::reportMessage(outData, exception.what());
        }
        return exception.code();
    } catch (PF_Err error) {
        return error;
    }
}

A_Err PluginDataEntryFunction(PF_PluginDataPtr inPtr, PF_PluginDataCB inPluginDataCallBackPtr, SPBasicSuite*,
                              const char*, const char*) {
    using namespace Tessavoy::ProductIdentity;
    const auto text = [](const char* characters) { return reinterpret_cast<const A_u_char*>(characters); };
    return inPluginDataCallBackPtr(inPtr, text(name), text(matchName), text(category), text(entryPoint), kind,
                                   apiVersionMajor, apiVersionMinor, reservedInfo);
}
