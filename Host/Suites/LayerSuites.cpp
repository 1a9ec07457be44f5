#include "Host/CameraMatrix.h"
#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

// A layer of the project, or its camera, which lasts as long as the composition.
struct Layer {
    const Project& project;
    int index;

    bool isCamera() const { return index == LayerRecord::camera; }
    const FrameSource& source() const { return *project.layers.at(static_cast<std::size_t>(index)); }
    double start() const { return isCamera() ? 0 : source().start(); }
    double duration() const { return isCamera() ? project.composition.duration : source().duration(); }
};

Layer layerOf(CommandContext& context, AEGP_LayerH handle) {
    const LayerRecord* record = context.instance().objects().find(handle);
    require(record != nullptr);
    return {context.instance().project(), record->layer};
}

A_u_long scaleOf(CommandContext& context) {
    return context.instance().timeBase().scale;
}

A_Err compNumLayers(AEGP_CompH composition, A_long* count) noexcept {
    return answer("AEGP_GetCompNumLayers", [&](CommandContext& context) {
        require(context.instance().objects().isComposition(composition) && count != nullptr);
        *count = context.instance().layerWorlds().count();
    });
}

A_Err compLayerByIndex(AEGP_CompH composition, A_long index, AEGP_LayerH* layer) noexcept {
    return answer("AEGP_GetCompLayerByIndex", [&](CommandContext& context) {
        EffectInstance& instance = context.instance();
        require(instance.objects().isComposition(composition) && layer != nullptr);
        require(index >= 0 && index < instance.layerWorlds().count(), PF_Err_INVALID_INDEX);
        *layer = instance.objects().layer(index);
    });
}

A_Err layerIndex(AEGP_LayerH handle, A_long* index) noexcept {
    return answer("AEGP_GetLayerIndex", [&](CommandContext& context) {
        require(index != nullptr);
        *index = layerOf(context, handle).index;
    });
}

A_Err layerParentComp(AEGP_LayerH handle, AEGP_CompH* composition) noexcept {
    return answer("AEGP_GetLayerParentComp", [&](CommandContext& context) {
        layerOf(context, handle);
        require(composition != nullptr);
        *composition = context.instance().objects().composition();
    });
}

A_Err layerCurrentTime(AEGP_LayerH handle, AEGP_LTimeMode mode, A_Time* time) noexcept {
    return answer("AEGP_GetLayerCurrentTime", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(time != nullptr);
        const double now = context.compositionSeconds(context.in.current_time, context.in.time_scale);
        *time = toTime(mode == AEGP_LTimeMode_CompTime ? now : now - layer.start(), scaleOf(context));
    });
}

// In its own time a layer begins at 0.
A_Err layerInPoint(AEGP_LayerH handle, AEGP_LTimeMode mode, A_Time* time) noexcept {
    return answer("AEGP_GetLayerInPoint", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(time != nullptr);
        *time = toTime(mode == AEGP_LTimeMode_CompTime ? layer.start() : 0, scaleOf(context));
    });
}

A_Err layerDuration(AEGP_LayerH handle, AEGP_LTimeMode, A_Time* time) noexcept {
    return answer("AEGP_GetLayerDuration", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(time != nullptr);
        *time = toTime(layer.duration(), scaleOf(context));
    });
}

A_Err layerOffset(AEGP_LayerH handle, A_Time* time) noexcept {
    return answer("AEGP_GetLayerOffset", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(time != nullptr);
        *time = toTime(layer.start(), scaleOf(context));
    });
}

A_Err convertCompToLayerTime(AEGP_LayerH handle, const A_Time* compTime, A_Time* layerTime) noexcept {
    return answer("AEGP_ConvertCompToLayerTime", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(compTime != nullptr && compTime->scale != 0 && layerTime != nullptr);
        *layerTime = toTime(seconds(*compTime) - layer.start(), compTime->scale);
    });
}

A_Err convertLayerToCompTime(AEGP_LayerH handle, const A_Time* layerTime, A_Time* compTime) noexcept {
    return answer("AEGP_ConvertLayerToCompTime", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(layerTime != nullptr && layerTime->scale != 0 && compTime != nullptr);
        *compTime = toTime(seconds(*layerTime) + layer.start(), layerTime->scale);
    });
}

A_Err layerId(AEGP_LayerH handle, AEGP_LayerIDVal* id) noexcept {
    return answer("AEGP_GetLayerID", [&](CommandContext& context) {
        require(id != nullptr);
        *id = ApplicationObjects::idOf(layerOf(context, handle).index);
    });
}

A_Err layerFromId(AEGP_CompH composition, AEGP_LayerIDVal id, AEGP_LayerH* layer) noexcept {
    return answer("AEGP_GetLayerFromLayerID", [&](CommandContext& context) {
        EffectInstance& instance = context.instance();
        const int index = ApplicationObjects::layerOfId(id);
        require(instance.objects().isComposition(composition) && layer != nullptr);
        require(index >= 0 && index < instance.layerWorlds().count(), PF_Err_INVALID_INDEX);
        *layer = instance.objects().layer(index);
    });
}

// Layers of a project lie flat in the composition's corner.
A_Err layerToWorld(AEGP_LayerH handle, const A_Time* compTime, A_Matrix4* matrix) noexcept {
    return answer("AEGP_GetLayerToWorldXform", [&](CommandContext& context) {
        const Layer layer = layerOf(context, handle);
        require(compTime != nullptr && compTime->scale != 0 && matrix != nullptr);
        const Project& project = layer.project;
        *matrix = layer.isCamera() ? cameraToWorld(*project.camera, project.composition, seconds(*compTime))
                                   : A_Matrix4{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    });
}

A_Err compFromItem(AEGP_ItemH item, AEGP_CompH* composition) noexcept {
    return answer("AEGP_GetCompFromItem", [&](CommandContext& context) {
        require(context.instance().objects().isItem(item) && composition != nullptr);
        *composition = context.instance().objects().composition();
    });
}

A_Err itemFromComp(AEGP_CompH composition, AEGP_ItemH* item) noexcept {
    return answer("AEGP_GetItemFromComp", [&](CommandContext& context) {
        require(context.instance().objects().isComposition(composition) && item != nullptr);
        *item = context.instance().objects().item();
    });
}

A_Err compFrameRate(AEGP_CompH composition, A_FpLong* frameRate) noexcept {
    return answer("AEGP_GetCompFramerate", [&](CommandContext& context) {
        require(context.instance().objects().isComposition(composition) && frameRate != nullptr);
        *frameRate = context.instance().project().composition.frameRate.value();
    });
}

A_Err itemDuration(AEGP_ItemH item, A_Time* time) noexcept {
    return answer("AEGP_GetItemDuration", [&](CommandContext& context) {
        require(context.instance().objects().isItem(item) && time != nullptr);
        *time = toTime(context.instance().project().composition.duration, scaleOf(context));
    });
}

A_Err itemDimensions(AEGP_ItemH item, A_long* width, A_long* height) noexcept {
    return answer("AEGP_GetItemDimensions", [&](CommandContext& context) {
        require(context.instance().objects().isItem(item) && width != nullptr && height != nullptr);
        *width = context.instance().project().composition.width;
        *height = context.instance().project().composition.height;
    });
}

// The slots that both versions of the table have.
template <class Suite>
constexpr Suite layerSuite() {
    Suite suite{};
    suite.AEGP_GetCompNumLayers = compNumLayers;
    suite.AEGP_GetCompLayerByIndex = compLayerByIndex;
    suite.AEGP_GetLayerIndex = layerIndex;
    suite.AEGP_GetLayerParentComp = layerParentComp;
    suite.AEGP_GetLayerCurrentTime = layerCurrentTime;
    suite.AEGP_GetLayerInPoint = layerInPoint;
    suite.AEGP_GetLayerDuration = layerDuration;
    suite.AEGP_GetLayerOffset = layerOffset;
    suite.AEGP_ConvertCompToLayerTime = convertCompToLayerTime;
    suite.AEGP_ConvertLayerToCompTime = convertLayerToCompTime;
    suite.AEGP_GetLayerID = layerId;
    suite.AEGP_GetLayerToWorldXform = layerToWorld;
    suite.AEGP_GetLayerFromLayerID = layerFromId;
    return suite;
}

}  // namespace

const AEGP_LayerSuite5 layerSuite11 = layerSuite<AEGP_LayerSuite5>();
const AEGP_LayerSuite8 layerSuite14 = layerSuite<AEGP_LayerSuite8>();

const AEGP_CompSuite4 compositionSuite = {
    .AEGP_GetCompFromItem = compFromItem,
    .AEGP_GetItemFromComp = itemFromComp,
    .reserved0 = {},
    .AEGP_GetCompFramerate = compFrameRate,
    .reserved1 = {},
};

const AEGP_ItemSuite6 itemSuite = {
    .reserved0 = {},
    .AEGP_GetItemDuration = itemDuration,
    .reserved1 = nullptr,
    .AEGP_GetItemDimensions = itemDimensions,
    .reserved2 = {},
};

}  // namespace TessavoyHost
