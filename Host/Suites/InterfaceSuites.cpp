#include <memory>

#include "Host/CameraMatrix.h"
#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

const Camera& cameraOf(const EffectInstance& instance) {
    require(instance.project().camera.has_value());
    return *instance.project().camera;
}

A_Err effectLayer(PF_ProgPtr reference, AEGP_LayerH* layer) noexcept {
    return answer("AEGP_GetEffectLayer", reference, [&](CommandContext& context) {
        require(layer != nullptr);
        EffectInstance& instance = context.instance();
        *layer = instance.objects().layer(instance.project().effectLayer);
    });
}

A_Err newEffectForEffect(AEGP_PluginID, PF_ProgPtr reference, AEGP_EffectRefH* effect) noexcept {
    return answer("AEGP_GetNewEffectForEffect", reference, [&](CommandContext& context) {
        require(effect != nullptr);
        const auto object = std::make_shared<EffectObject>(EffectObject{nullptr, {&context.instance()}});
        *effect = object->handle();
        context.ledger.lend(Loan::EffectReference, Ledger::keyOf(*effect), "AEGP_GetNewEffectForEffect", 0, object);
    });
}

A_Err convertEffectToCompTime(PF_ProgPtr reference, A_long time, A_u_long timeScale, A_Time* compTime) noexcept {
    return answer("AEGP_ConvertEffectToCompTime", reference, [&](CommandContext& context) {
        require(compTime != nullptr && timeScale != 0);
        const TimeBase& base = context.instance().timeBase();
        *compTime = timeScale == base.scale ? A_Time{time + base.start, base.scale}
                                            : toTime(base.compositionSeconds(time, timeScale), timeScale);
    });
}

A_Err effectCamera(PF_ProgPtr reference, const A_Time* compTime, AEGP_LayerH* camera) noexcept {
    return answer("AEGP_GetEffectCamera", reference, [&](CommandContext& context) {
        require(compTime != nullptr && camera != nullptr);
        EffectInstance& instance = context.instance();
        *camera = instance.project().camera.has_value() ? instance.objects().camera() : nullptr;
    });
}

A_Err effectCameraMatrix(PF_ProgPtr reference, const A_Time* compTime, A_Matrix4* matrix, A_FpLong* distance,
                         A_short* width, A_short* height) noexcept {
    return answer("AEGP_GetEffectCameraMatrix", reference, [&](CommandContext& context) {
        require(compTime != nullptr && compTime->scale != 0 && matrix != nullptr && distance != nullptr);
        require(width != nullptr && height != nullptr);
        const EffectInstance& instance = context.instance();
        const Composition& composition = instance.project().composition;
        const double time = seconds(*compTime);
        *matrix = cameraToWorld(cameraOf(instance), composition, time);
        *distance = cameraZoom(cameraOf(instance), time);
        *width = static_cast<A_short>(composition.width);
        *height = static_cast<A_short>(composition.height);
    });
}

A_Err layerNumEffects(AEGP_LayerH layer, A_long* count) noexcept {
    return answer("AEGP_GetLayerNumEffects", [&](CommandContext& context) {
        const EffectInstance& instance = context.instance();
        const LayerRecord* record = context.instance().objects().find(layer);
        require(record != nullptr && count != nullptr);
        *count = record->layer == instance.project().effectLayer ? 1 : 0;
    });
}

A_Err disposeEffect(AEGP_EffectRefH effect) noexcept {
    return takeBack("AEGP_DisposeEffect", [&](CommandContext& context) {
        require(context.ledger.giveBack(Loan::EffectReference, Ledger::keyOf(effect)));
    });
}

}  // namespace

const AEGP_PFInterfaceSuite1 interfaceSuite = {
    .AEGP_GetEffectLayer = effectLayer,
    .AEGP_GetNewEffectForEffect = newEffectForEffect,
    .AEGP_ConvertEffectToCompTime = convertEffectToCompTime,
    .AEGP_GetEffectCamera = effectCamera,
    .AEGP_GetEffectCameraMatrix = effectCameraMatrix,
};

const AEGP_EffectSuite2 effectSuite = {
    .AEGP_GetLayerNumEffects = layerNumEffects,
    .reserved0 = {},
    .AEGP_DisposeEffect = disposeEffect,
    .reserved1 = {},
};

}  // namespace TessavoyHost
