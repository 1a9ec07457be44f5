#include "Host/ParameterRecord.h"

#include <algorithm>
#include <string>

#include "Host/EffectHost.h"

namespace TessavoyHost {
namespace {

void writeLayer(CommandContext& context, int layer, double time, ParameterRecord& record) {
    record.definition.u.ld = {};
    EffectInstance& instance = context.instance();
    if (layer < 0 || layer >= instance.layerWorlds().count())
        return;
    const CommandSetting& setting = context.setting;
    const auto world =
        instance.layerWorlds().worldAt(layer, time, setting.bitsPerChannel, setting.downsampleX, setting.downsampleY);
    if (world == nullptr)
        return;
    record.definition.u.ld = world->partRecord({0, 0, world->width(), world->height()});
    record.keep = std::const_pointer_cast<World>(world);
}

void copyName(const std::string& name, A_char (&target)[32]) {
    const std::size_t length = std::min(name.size(), sizeof target - 1);
    std::copy_n(name.begin(), length, target);
    target[length] = '\0';
}

}  // namespace

ParameterRecord parameterRecord(CommandContext& context, int index, double time, LayerPixels pixels) {
    EffectInstance& instance = context.instance();
    ParameterRecord record;
    PF_ParamDef& definition = record.definition;
    definition = context.host.parameters().at(static_cast<std::size_t>(index)).definition;
    definition.uu.change_flags = PF_ChangeFlag_NONE;
    const bool isLayer = index == 0 || definition.param_type == PF_Param_LAYER;
    if (isLayer && pixels == LayerPixels::Absent) {
        definition.u.ld = {};
    } else if (index == 0) {
        writeLayer(context, instance.project().effectLayer, time, record);
    } else if (definition.param_type == PF_Param_LAYER) {
        const ParameterValue value = instance.values().at(index, time);
        const auto reference = std::get_if<LayerReference>(&value);
        writeLayer(context, reference == nullptr ? -1 : reference->layer, time, record);
    } else if (definition.param_type == PF_Param_ARBITRARY_DATA) {
        record.keep = instance.values().arbitraryAt(index, time);
        definition.u.arb_d.value = static_cast<PF_ArbitraryH>(record.keep.get());
    } else {
        writeValue(definition, instance.values().at(index, time), context.setting.downsampleX,
                   context.setting.downsampleY);
    }
    return record;
}

ParameterArray::ParameterArray(CommandContext& context, LayerPixels pixels) {
    const EffectInstance& instance = context.instance();
    const double time = context.compositionSeconds(context.in.current_time, context.in.time_scale);
    for (int index = 0; index < context.in.num_params; ++index) {
        mRecords.push_back(parameterRecord(context, index, time, pixels));
        copyName(instance.panel().at(index).name, mRecords.back().definition.name);
    }
    for (ParameterRecord& record : mRecords)
        mPointers.push_back(&record.definition);
}

}  // namespace TessavoyHost
