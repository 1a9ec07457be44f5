#include "Host/ParameterRecord.h"

#include <algorithm>
#include <optional>
#include <string>

#include "Host/ArbitraryCalls.h"
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

double momentOf(const CommandContext& context) {
    return context.compositionSeconds(context.in.current_time, context.in.time_scale);
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
    const double time = momentOf(context);
    for (int index = 0; index < context.in.num_params; ++index) {
        mRecords.push_back(parameterRecord(context, index, time, pixels));
        copyName(instance.panel().at(index).name, mRecords.back().definition.name);
    }
    for (ParameterRecord& record : mRecords)
        mPointers.push_back(&record.definition);
}

void ParameterArray::detach(CommandContext& context, int index) {
    ParameterRecord& record = mRecords.at(static_cast<std::size_t>(index));
    if (record.definition.param_type != PF_Param_ARBITRARY_DATA)
        return;
    record.keep = context.instance().values().arbitraryCopyAt(index, momentOf(context));
    record.definition.u.arb_d.value = static_cast<PF_ArbitraryH>(record.keep.get());
}

std::vector<int> ParameterArray::changed() const {
    std::vector<int> indexes;
    for (std::size_t index = 0; index < mRecords.size(); ++index) {
        if ((mRecords[index].definition.uu.change_flags & PF_ChangeFlag_CHANGED_VALUE) != 0)
            indexes.push_back(static_cast<int>(index));
    }
    return indexes;
}

void ParameterArray::takeOver(CommandContext& context) const {
    for (const int index : changed()) {
        const PF_ParamDef& definition = mRecords[static_cast<std::size_t>(index)].definition;
        std::optional<ParameterValue> value = readValue(definition);
        if (definition.param_type == PF_Param_ARBITRARY_DATA && definition.u.arb_d.value != nullptr) {
            const ArbitraryCalls calls(context.host, context.host.parameters()[static_cast<std::size_t>(index)]);
            value = ArbitraryValue{calls.flatten(definition.u.arb_d.value)};
        }
        if (value)
            context.instance().values().set(index, momentOf(context), *value);
        else
            context.breaks("parameter " + std::to_string(index) + " is marked as changed, but has no value to change");
    }
}

}  // namespace TessavoyHost
