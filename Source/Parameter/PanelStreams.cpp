#include "Source/Parameter/PanelStreams.h"

#include "Source/HostAccess/EffectLayerQuery.h"
#include "Source/HostAccess/MemoryHandle.h"
#include "Source/HostAccess/Utf16.h"
#include "Source/Parameter/Catalogue.h"

#include <utility>
#include <vector>

namespace Tessavoy {

namespace {

/// The stream of one of the effect's parameters, disposed of at the end with the reference that led to it. Every suite
/// is acquired before anything is lent, so that a missing one leaves nothing out.
class ParamStream {
public:
    ParamStream(const PF_InData* inData, SuiteHandler& suites)
        : mInData(inData),
          mPlugin(pluginId(inData)),
          mInterface(suites.get<AEGP_PFInterfaceSuite1>()),
          mEffects(suites.get<AEGP_EffectSuite2>()),
          mStreams(suites.get<AEGP_StreamSuite4>()),
          mDynamic(suites.get<AEGP_DynamicStreamSuite4>()) {}

    ~ParamStream() { close(); }

    ParamStream(const ParamStream&) = delete;
    ParamStream& operator=(const ParamStream&) = delete;

    PF_Err open(PF_ParamIndex index) {
        PF_Err error = mInterface.AEGP_GetNewEffectForEffect(mPlugin, mInData->effect_ref, &mEffect);
        if (error == PF_Err_NONE) {
            error = mStreams.AEGP_GetNewEffectStreamByIndex(mPlugin, mEffect, index, &mStream);
        }
        return error;
    }

    PF_Err hide(bool hidden) {
        constexpr A_Boolean undoable = 0;
        return mDynamic.AEGP_SetDynamicStreamFlag(mStream, AEGP_DynStreamFlag_HIDDEN, undoable, hidden);
    }

    PF_Err name(MemoryHandle& text) {
        constexpr A_Boolean forceEnglish = 0;
        return mStreams.AEGP_GetStreamName(mPlugin, mStream, forceEnglish, text.place());
    }

    PF_Err rename(const std::vector<A_UTF16Char>& text) { return mDynamic.AEGP_SetStreamName(mStream, text.data()); }

    /// Gives everything back; the first error.
    PF_Err close() {
        PF_Err ofStream = PF_Err_NONE;
        if (AEGP_StreamRefH stream = std::exchange(mStream, nullptr)) {
            ofStream = mStreams.AEGP_DisposeStream(stream);
        }
        PF_Err ofEffect = PF_Err_NONE;
        if (AEGP_EffectRefH effect = std::exchange(mEffect, nullptr)) {
            ofEffect = mEffects.AEGP_DisposeEffect(effect);
        }
        return firstError(ofStream, ofEffect);
    }

private:
    const PF_InData* mInData;
    AEGP_PluginID mPlugin;
    const AEGP_PFInterfaceSuite1& mInterface;
    const AEGP_EffectSuite2& mEffects;
    const AEGP_StreamSuite4& mStreams;
    const AEGP_DynamicStreamSuite4& mDynamic;
    AEGP_EffectRefH mEffect = nullptr;
    AEGP_StreamRefH mStream = nullptr;
};

/// Both texts are closed by a zero; the first may be null, which is no text at all.
bool sameText(const A_UTF16Char* first, const A_UTF16Char* second) {
    if (first == nullptr) {
        return false;
    }
    while (*first == *second && *first != 0) {
        ++first;
        ++second;
    }
    return *first == *second;
}

/// Whether the stream is called otherwise; the host's first error.
PF_Err askForOtherName(SuiteHandler& suites, ParamStream& stream, const std::vector<A_UTF16Char>& text, bool& other) {
    MemoryHandle name(suites);
    PF_Err error = stream.name(name);
    if (error == PF_Err_NONE) {
        error = name.lock();
    }
    other = error == PF_Err_NONE && !sameText(static_cast<const A_UTF16Char*>(name.address()), text.data());
    const PF_Err closing = name.close();
    return firstError(error, closing);
}

}  // namespace

bool hasStreams(const PF_InData* inData) {
    const bool hasPluginId = inData->global_data != nullptr && *inData->global_data != nullptr;
    return inData->appl_id != PF_AppID_Editing && hasPluginId;
}

PF_Err setParamHidden(const PF_InData* inData, SuiteHandler& suites, std::string_view id, bool hidden) {
    ParamStream stream(inData, suites);
    PF_Err error = stream.open(parameterIndex(id));
    if (error == PF_Err_NONE) {
        error = stream.hide(hidden);
    }
    const PF_Err closing = stream.close();
    return firstError(error, closing);
}

bool setParamVisible(const PF_InData* inData, SuiteHandler& suites, std::string_view id, bool show) {
    throwOnError(setParamHidden(inData, suites, id, !show));
    return true;
}

bool setParamLabel(const PF_InData* inData, SuiteHandler& suites, PF_ParamIndex index, std::string_view text) {
    const std::vector<A_UTF16Char> label = utf16FromUtf8(text);
    ParamStream stream(inData, suites);
    bool other = false;
    PF_Err error = stream.open(index);
    if (error == PF_Err_NONE) {
        error = askForOtherName(suites, stream, label, other);
    }
    if (error == PF_Err_NONE && other) {
        error = stream.rename(label);
    }
    const PF_Err closing = stream.close();
    throwOnError(firstError(error, closing));
    return other;
}

}  // namespace Tessavoy
