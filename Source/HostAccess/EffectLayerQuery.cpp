#include "Source/HostAccess/EffectLayerQuery.h"

#include "Source/HostAccess/Exception.h"

#include <cstring>

namespace Tessavoy {

AEGP_PluginID pluginId(const PF_InData* inData) {
    if (inData->global_data == nullptr || *inData->global_data == nullptr) {
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED, "Failed to get global data while constructing an AEGP effect");
    }
    AEGP_PluginID id = 0;
    std::memcpy(&id, *inData->global_data, sizeof id);
    return id;
}

EffectLayerQuery::EffectLayerQuery(const PF_InData* inData)
    : mInData(inData), mPluginId(pluginId(inData)), mSuites(inData->pica_basicP) {
    const auto& interface = mSuites.get<AEGP_PFInterfaceSuite1>();
    throwOnError(interface.AEGP_GetNewEffectForEffect(mPluginId, mInData->effect_ref, &mEffect));
}

EffectLayerQuery::~EffectLayerQuery() {
    try {
        mSuites.get<AEGP_EffectSuite2>().AEGP_DisposeEffect(mEffect);
    } catch (...) {
    }
}

A_Time EffectLayerQuery::compositionTime() {
    A_Time time{};
    const auto& interface = mSuites.get<AEGP_PFInterfaceSuite1>();
    throwOnError(
        interface.AEGP_ConvertEffectToCompTime(mInData->effect_ref, mInData->current_time, mInData->time_scale, &time));
    return time;
}

AEGP_LayerH EffectLayerQuery::effectLayer() {
    AEGP_LayerH layer = nullptr;
    throwOnError(mSuites.get<AEGP_PFInterfaceSuite1>().AEGP_GetEffectLayer(mInData->effect_ref, &layer));
    return layer;
}

AEGP_CompH EffectLayerQuery::parentComposition(AEGP_LayerH layer) {
    AEGP_CompH composition = nullptr;
    throwOnError(mSuites.get<AEGP_LayerSuite8>().AEGP_GetLayerParentComp(layer, &composition));
    return composition;
}

}  // namespace Tessavoy
