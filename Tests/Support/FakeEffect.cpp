#include "Tests/Support/FakeEffect.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace FakeEffect {
namespace {

const A_u_char* text(const char* characters) {
    return reinterpret_cast<const A_u_char*>(characters);
}

A_Err describe(PF_PluginDataPtr data, PF_PluginDataCB* callback, SPBasicSuite*, const char*, const char*) {
    return callback(data, text("Fake"), text("Test Fake"), text("Test"), text("EffectMain"), 0x65464B54, 13, 27, 8);
}

PF_Handle newHandle(PF_InData* inData, std::size_t size) {
    return inData->utils->host_new_handle(size);
}

PF_Err globalSetup(PF_InData* inData, PF_OutData* outData) {
    outData->my_version = version;
    outData->out_flags = hooks().outFlags;
    outData->out_flags2 = hooks().outFlags2;
    outData->global_data = newHandle(inData, 4);
    return outData->global_data == nullptr ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

PF_Handle newData(PF_InData* inData, double number) {
    const PF_Handle handle = newHandle(inData, sizeof number);
    if (handle != nullptr)
        std::memcpy(*handle, &number, sizeof number);
    return handle;
}

PF_ParamDef definition(PF_ParamType type, const char* name, int index) {
    PF_ParamDef made{};
    made.param_type = type;
    made.uu.id = diskIdOf(index);
    std::strcpy(made.name, name);
    return made;
}

PF_ParamDef numbers(int index) {
    switch (index) {
        case Slider: {
            PF_ParamDef made = definition(PF_Param_SLIDER, "Slider", index);
            made.u.sd.dephault = 3;
            return made;
        }
        case FloatSlider: {
            PF_ParamDef made = definition(PF_Param_FLOAT_SLIDER, "Float", index);
            made.u.fs_d.dephault = 1.5f;
            return made;
        }
        case Angle: {
            PF_ParamDef made = definition(PF_Param_ANGLE, "Angle", index);
            made.u.ad.dephault = 90 << 16;
            return made;
        }
        case Checkbox: {
            PF_ParamDef made = definition(PF_Param_CHECKBOX, "Checkbox", index);
            made.flags = PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP;
            made.u.bd.dephault = 1;
            made.u.bd.u.nameptr = "On";
            return made;
        }
        default: {
            PF_ParamDef made = definition(PF_Param_POPUP, "Popup", index);
            made.flags = PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP;
            made.u.pd.dephault = 2;
            made.u.pd.num_choices = 3;
            made.u.pd.u.namesptr = "One|Two|Three";
            return made;
        }
    }
}

PF_ParamDef places(int index) {
    switch (index) {
        case Color: {
            PF_ParamDef made = definition(PF_Param_COLOR, "Color", index);
            made.u.cd.dephault = {255, 10, 20, 30};
            return made;
        }
        case Point: {
            PF_ParamDef made = definition(PF_Param_POINT, "Point", index);
            made.u.td.x_dephault = 50 << 16;
            made.u.td.y_dephault = 25 << 16;
            return made;
        }
        case Point3D: {
            PF_ParamDef made = definition(PF_Param_POINT_3D, "Point 3D", index);
            made.u.point3d_d.y_dephault = 100;
            return made;
        }
        case Layer:
            return definition(PF_Param_LAYER, "Layer", index);
        case Path:
            return definition(PF_Param_PATH, "Path", index);
        case GroupStart:
            return definition(PF_Param_GROUP_START, "Group", index);
        case GroupEnd:
            return definition(PF_Param_GROUP_END, "", index);
        default:
            return definition(PF_Param_BUTTON, "", index);
    }
}

PF_ParamDef definitionOf(PF_InData* inData, int index) {
    if (index <= Popup)
        return numbers(index);
    if (index != Data) {
        PF_ParamDef made = places(index);
        if (index == Button)
            made.u.button_d.u.namesptr = "Press";
        return made;
    }
    PF_ParamDef made = definition(PF_Param_ARBITRARY_DATA, "Data", index);
    made.ui_flags = PF_PUI_CONTROL;
    made.ui_width = 120;
    made.ui_height = 40;
    made.u.arb_d.refconPV = std::bit_cast<void*>(dataReference);
    made.u.arb_d.dephault = newData(inData, 7);
    return made;
}

PF_Err paramsSetup(PF_InData* inData, PF_OutData* outData) {
    for (int index = 1; index < ParameterCount; ++index) {
        PF_ParamDef made = definitionOf(inData, index);
        if (hooks().define)
            hooks().define(index, made);
        if (const PF_Err error = inData->inter.add_param(inData->effect_ref, -1, &made))
            return error;
    }
    outData->num_params = ParameterCount;
    return PF_Err_NONE;
}

// Sequence data: a block of bytes, the first 1 when it is flat.
PF_Handle sequenceCopy(PF_InData* inData, PF_Handle from, char flat) {
    const auto size = static_cast<std::size_t>(inData->utils->host_get_handle_size(from));
    const PF_Handle copy = newHandle(inData, size);
    if (copy != nullptr) {
        std::memcpy(*copy, *from, size);
        *static_cast<char*>(*copy) = flat;
    }
    return copy;
}

PF_Err sequenceSetup(PF_InData* inData, PF_OutData* outData) {
    outData->sequence_data = newHandle(inData, 1);
    if (outData->sequence_data == nullptr)
        return PF_Err_OUT_OF_MEMORY;
    *static_cast<char*>(*outData->sequence_data) = 0;
    return PF_Err_NONE;
}

PF_Err sequenceConvert(PF_InData* inData, PF_OutData* outData, char flat) {
    outData->sequence_data = sequenceCopy(inData, inData->sequence_data, flat);
    return outData->sequence_data == nullptr ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

PF_Err give(PF_ArbitraryH* place, PF_Handle made) {
    *place = made;
    return made == nullptr ? PF_Err_OUT_OF_MEMORY : PF_Err_NONE;
}

PF_Err arbitrary(PF_InData* inData, PF_ArbParamsExtra* extra) {
    PF_ArbParamsUnion& u = extra->u;
    switch (extra->which_function) {
        case PF_Arbitrary_NEW_FUNC:
            return give(u.new_func_params.arbPH, newData(inData, 7));
        case PF_Arbitrary_DISPOSE_FUNC:
            inData->utils->host_dispose_handle(u.dispose_func_params.arbH);
            break;
        case PF_Arbitrary_COPY_FUNC:
            return give(u.copy_func_params.dst_arbPH, newData(inData, numberIn(u.copy_func_params.src_arbH)));
        case PF_Arbitrary_FLAT_SIZE_FUNC:
            *u.flat_size_func_params.flat_data_sizePLu = sizeof(double);
            break;
        case PF_Arbitrary_FLATTEN_FUNC:
            std::memcpy(u.flatten_func_params.flat_dataPV, *u.flatten_func_params.arbH, sizeof(double));
            break;
        case PF_Arbitrary_UNFLATTEN_FUNC: {
            if (u.unflatten_func_params.buf_sizeLu != sizeof(double))
                return PF_Err_INTERNAL_STRUCT_DAMAGED;
            double number = 0;
            std::memcpy(&number, u.unflatten_func_params.flat_dataPV, sizeof number);
            return give(u.unflatten_func_params.arbPH, newData(inData, number));
        }
        case PF_Arbitrary_INTERP_FUNC: {
            const double left = numberIn(u.interp_func_params.left_arbH);
            const double right = numberIn(u.interp_func_params.right_arbH);
            return give(u.interp_func_params.interpPH,
                        newData(inData, left + (right - left) * u.interp_func_params.tF));
        }
        default:
            return PF_Err_UNRECOGNIZED_PARAM_TYPE;
    }
    return PF_Err_NONE;
}

PF_Err extraHook(const std::function<PF_Err(PF_InData*, PF_OutData*)>& hook, PF_Err before, PF_InData* inData,
                 PF_OutData* outData) {
    return before != PF_Err_NONE || !hook ? before : hook(inData, outData);
}

PF_Err renderCommand(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, void* extra) {
    if (cmd == PF_Cmd_SMART_PRE_RENDER) {
        const auto preRenderExtra = static_cast<PF_PreRenderExtra*>(extra);
        return hooks().preRender ? hooks().preRender(inData, outData, preRenderExtra)
                                 : usualPreRender(inData, preRenderExtra);
    }
    const auto renderExtra = static_cast<PF_SmartRenderExtra*>(extra);
    return hooks().render ? hooks().render(inData, outData, renderExtra) : usualRender(inData, renderExtra);
}

PF_Err effectMain(PF_Cmd cmd, PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_LayerDef*,
                  void* extra) {
    switch (cmd) {
        case PF_Cmd_GLOBAL_SETUP:
            return extraHook(hooks().globalSetup, globalSetup(inData, outData), inData, outData);
        case PF_Cmd_PARAMS_SETUP:
            return extraHook(hooks().paramsSetup, paramsSetup(inData, outData), inData, outData);
        case PF_Cmd_SEQUENCE_SETUP:
            return sequenceSetup(inData, outData);
        case PF_Cmd_SEQUENCE_RESETUP:
            return sequenceConvert(inData, outData, 0);
        case PF_Cmd_GET_FLATTENED_SEQUENCE_DATA:
            return sequenceConvert(inData, outData, 1);
        case PF_Cmd_SEQUENCE_SETDOWN:
            inData->utils->host_dispose_handle(inData->sequence_data);
            return PF_Err_NONE;
        case PF_Cmd_GLOBAL_SETDOWN:
            inData->utils->host_dispose_handle(inData->global_data);
            return PF_Err_NONE;
        case PF_Cmd_QUERY_DYNAMIC_FLAGS:
            return extraHook(hooks().queryFlags, PF_Err_NONE, inData, outData);
        case PF_Cmd_ARBITRARY_CALLBACK:
            return arbitrary(inData, static_cast<PF_ArbParamsExtra*>(extra));
        case PF_Cmd_SMART_PRE_RENDER:
        case PF_Cmd_SMART_RENDER:
            return renderCommand(cmd, inData, outData, extra);
        case PF_Cmd_USER_CHANGED_PARAM:
            return hooks().userChangedParam ? hooks().userChangedParam(inData, outData, params, extra) : PF_Err_NONE;
        case PF_Cmd_UPDATE_PARAMS_UI:
            return hooks().updateParamsUi ? hooks().updateParamsUi(inData, outData, params) : PF_Err_NONE;
        case PF_Cmd_EVENT:
            return hooks().event ? hooks().event(inData, outData, params, static_cast<PF_EventExtra*>(extra))
                                 : PF_Err_NONE;
        default:
            return PF_Err_NONE;
    }
}

void copyRows(const PF_LayerDef& from, PF_LayerDef& to, A_long pixelBytes) {
    const auto bytes = static_cast<std::size_t>(pixelBytes * std::min(from.width, to.width));
    for (A_long y = 0; y < std::min(from.height, to.height); ++y) {
        std::memcpy(reinterpret_cast<char*>(to.data) + y * to.rowbytes,
                    reinterpret_cast<const char*>(from.data) + y * from.rowbytes, bytes);
    }
}

}  // namespace

Hooks& hooks() {
    static Hooks instance;
    return instance;
}

TessavoyHost::ModuleEntryPoints entryPoints() {
    return {describe, effectMain};
}

PF_Err usualPreRender(PF_InData* inData, PF_PreRenderExtra* extra) {
    PF_CheckoutResult result{};
    const PF_Err error =
        extra->cb->checkout_layer(inData->effect_ref, 0, 0, &extra->input->output_request, inData->current_time,
                                  inData->time_step, inData->time_scale, &result);
    extra->output->result_rect = result.result_rect;
    extra->output->max_result_rect = result.max_result_rect;
    return error;
}

PF_Err usualRender(PF_InData* inData, PF_SmartRenderExtra* extra) {
    PF_EffectWorld* input = nullptr;
    PF_EffectWorld* output = nullptr;
    PF_Err error = extra->cb->checkout_layer_pixels(inData->effect_ref, 0, &input);
    if (error == PF_Err_NONE)
        error = extra->cb->checkout_output(inData->effect_ref, &output);
    if (error == PF_Err_NONE)
        copyRows(*input, *output, extra->input->bitdepth / 2);
    const PF_Err closing = extra->cb->checkin_layer_pixels(inData->effect_ref, 0);
    return error != PF_Err_NONE ? error : closing;
}

Value valueOf(PF_InData* inData, int index) {
    Value value;
    value.error = inData->inter.checkout_param(inData->effect_ref, index, inData->current_time, inData->time_step,
                                               inData->time_scale, &value.parameter);
    PF_ParamDef moved = value.parameter;
    const PF_Err closing = inData->inter.checkin_param(inData->effect_ref, &moved);
    if (value.error == PF_Err_NONE)
        value.error = closing;
    return value;
}

double numberIn(PF_ArbitraryH handle) {
    double number = 0;
    std::memcpy(&number, *handle, sizeof number);
    return number;
}

void setNumberIn(PF_ArbitraryH handle, double number) {
    std::memcpy(*handle, &number, sizeof number);
}

std::string sequenceBytes(const void* const* handle, std::size_t size) {
    return {static_cast<const char*>(*handle), size};
}

}  // namespace FakeEffect
