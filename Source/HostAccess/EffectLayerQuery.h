#pragma once

#include "HostInterface/Effect.h"
#include "Source/HostAccess/SuiteHandler.h"

namespace Tessavoy {

/// The plug-in id that the host gave at registration, out of the global data block. Throws
/// Exception(512, "Failed to get global data while constructing an AEGP effect") when there is no block.
AEGP_PluginID pluginId(const PF_InData* inData);

/// Questions about the effect's place in the project: its layer, its composition, its streams. Belongs to one scope on
/// one thread. A host error in any call throws Exception with its code; a missing suite throws the plain integer 516.
class EffectLayerQuery {
public:
    explicit EffectLayerQuery(const PF_InData* inData);

    /// Disposes of the effect reference; a failure is swallowed.
    ~EffectLayerQuery();

    EffectLayerQuery(const EffectLayerQuery&) = delete;
    EffectLayerQuery& operator=(const EffectLayerQuery&) = delete;

    SuiteHandler& suites() { return mSuites; }
    AEGP_PluginID plugin() const { return mPluginId; }
    AEGP_EffectRefH effect() const { return mEffect; }

    /// The reference by which the host's effect callbacks know this effect.
    PF_ProgPtr effectReference() const { return mInData->effect_ref; }

    /// The in-data's current time (layer time) as composition time.
    A_Time compositionTime();

    /// The layer that the effect is applied to.
    AEGP_LayerH effectLayer();

    /// The composition that a layer belongs to.
    AEGP_CompH parentComposition(AEGP_LayerH layer);

private:
    const PF_InData* mInData;
    AEGP_PluginID mPluginId;
    SuiteHandler mSuites;
    AEGP_EffectRefH mEffect = nullptr;
};

}  // namespace Tessavoy
