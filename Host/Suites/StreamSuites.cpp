#include <algorithm>
#include <memory>

#include "Host/CameraMatrix.h"
#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/HostText.h"
#include "Host/Suites/Tables.h"
#include "Host/Utf16.h"

namespace TessavoyHost {
namespace {

// A name of a stream in the oldest version of the table has room for this many bytes and a zero.
constexpr std::size_t longestName = 31;

const StreamRecord& streamOf(CommandContext& context, AEGP_StreamRefH stream) {
    require(context.ledger.holds(Loan::Stream, Ledger::keyOf(stream)));
    return StreamObject::of(stream);
}

const PF_ParamDef& definitionOf(const StreamRecord& stream) {
    return stream.instance->host().parameters()[static_cast<std::size_t>(stream.parameter)].definition;
}

AEGP_StreamType typeOf(const PF_ParamDef& definition) {
    switch (definition.param_type) {
        case PF_Param_SLIDER:
        case PF_Param_FIX_SLIDER:
        case PF_Param_ANGLE:
        case PF_Param_CHECKBOX:
        case PF_Param_POPUP:
        case PF_Param_FLOAT_SLIDER:
            return AEGP_StreamType_OneD;
        case PF_Param_COLOR:
            return AEGP_StreamType_COLOR;
        case PF_Param_POINT:
            return AEGP_StreamType_TwoD_SPATIAL;
        case PF_Param_POINT_3D:
            return AEGP_StreamType_ThreeD_SPATIAL;
        case PF_Param_LAYER:
            return AEGP_StreamType_LAYER_ID;
        case PF_Param_PATH:
            return AEGP_StreamType_MASK_ID;
        default:
            return AEGP_StreamType_NO_DATA;
    }
}

// Stream values are in full-resolution pixels and shares of full colour.
template <class Value>
struct StreamWriter {
    Value& target;

    void operator()(double value) const { target.one_d = value; }
    void operator()(const ColorValue& value) const {
        target.color = {value.alpha / 255.0, value.red / 255.0, value.green / 255.0, value.blue / 255.0};
    }
    void operator()(const Point2& value) const { target.two_d = {value.x, value.y}; }
    void operator()(const Point3& value) const { target.three_d = {value.x, value.y, value.z}; }
    void operator()(const LayerReference& value) const { target.layer_id = ApplicationObjects::idOf(value.layer); }
    void operator()(const MaskReference& value) const { target.mask_id = static_cast<AEGP_MaskIDVal>(value.id); }
    void operator()(const ArbitraryValue&) const {}
};

double compositionTime(const EffectInstance& instance, AEGP_LTimeMode mode, const A_Time& time) {
    return mode == AEGP_LTimeMode_CompTime ? seconds(time)
                                           : instance.timeBase().compositionSeconds(time.value, time.scale);
}

A_Err numParamStreams(AEGP_EffectRefH effect, A_long* count) noexcept {
    return answer("AEGP_GetEffectNumParamStreams", [&](CommandContext& context) {
        require(context.ledger.holds(Loan::EffectReference, Ledger::keyOf(effect)) && count != nullptr);
        *count = EffectObject::of(effect).instance->values().count();
    });
}

A_Err newEffectStream(AEGP_PluginID, AEGP_EffectRefH effect, PF_ParamIndex index, AEGP_StreamRefH* stream) noexcept {
    return answer("AEGP_GetNewEffectStreamByIndex", [&](CommandContext& context) {
        require(context.ledger.holds(Loan::EffectReference, Ledger::keyOf(effect)) && stream != nullptr);
        EffectInstance* instance = EffectObject::of(effect).instance;
        require(index >= 0 && index < instance->values().count(), PF_Err_INVALID_INDEX);
        const auto object = std::make_shared<StreamObject>(StreamObject{nullptr, {instance, index}});
        *stream = object->handle();
        context.ledger.lend(Loan::Stream, Ledger::keyOf(*stream), definitionOf(object->record).name, index, object);
    });
}

A_Err disposeStream(AEGP_StreamRefH stream) noexcept {
    return takeBack("AEGP_DisposeStream", [&](CommandContext& context) {
        require(context.ledger.giveBack(Loan::Stream, Ledger::keyOf(stream)));
    });
}

A_Err streamType(AEGP_StreamRefH stream, AEGP_StreamType* type) noexcept {
    return answer("AEGP_GetStreamType", [&](CommandContext& context) {
        const StreamRecord& record = streamOf(context, stream);
        require(type != nullptr);
        *type = typeOf(definitionOf(record));
    });
}

std::string nameOf(const StreamRecord& stream) {
    return stream.instance->panel().at(stream.parameter).name;
}

A_Err streamName(AEGP_StreamRefH stream, A_Boolean, A_char* name) noexcept {
    return answer("AEGP_GetStreamName", [&](CommandContext& context) {
        const std::string text = nameOf(streamOf(context, stream)).substr(0, longestName);
        require(name != nullptr);
        std::copy_n(text.c_str(), text.size() + 1, name);
    });
}

A_Err streamNameUtf16(AEGP_PluginID, AEGP_StreamRefH stream, A_Boolean, AEGP_MemHandle* name) noexcept {
    return answer("AEGP_GetStreamName", [&](CommandContext& context) {
        const std::string text = nameOf(streamOf(context, stream));
        require(name != nullptr);
        *name = lendUtf16(context, text);
    });
}

template <class Value>
A_Err newStreamValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_LTimeMode mode, const A_Time* time, A_Boolean,
                     Value* value) noexcept {
    return answer("AEGP_GetNewStreamValue", [&](CommandContext& context) {
        const StreamRecord& record = streamOf(context, stream);
        require(time != nullptr && time->scale != 0 && value != nullptr);
        require(typeOf(definitionOf(record)) != AEGP_StreamType_NO_DATA);
        *value = {};
        value->streamH = stream;
        const double moment = compositionTime(*record.instance, mode, *time);
        std::visit(StreamWriter<decltype(value->val)>{value->val},
                   record.instance->values().at(record.parameter, moment));
        context.ledger.lend(Loan::StreamValue, Ledger::keyOf(stream), definitionOf(record).name, record.parameter);
    });
}

template <class Value>
A_Err disposeStreamValue(Value* value) noexcept {
    return takeBack("AEGP_DisposeStreamValue", [&](CommandContext& context) {
        require(value != nullptr);
        require(context.ledger.giveBack(Loan::StreamValue, Ledger::keyOf(value->streamH)));
    });
}

// The camera's zoom is the one layer property that this host has.
template <class Value>
A_Err layerStreamValue(AEGP_LayerH layer, AEGP_LayerStream which, AEGP_LTimeMode, const A_Time* time, A_Boolean,
                       Value* value, AEGP_StreamType* type) noexcept {
    return answer("AEGP_GetLayerStreamValue", [&](CommandContext& context) {
        const EffectInstance& instance = context.instance();
        const LayerRecord* record = context.instance().objects().find(layer);
        require(record != nullptr && record->layer == LayerRecord::camera && which == AEGP_LayerStream_ZOOM);
        require(time != nullptr && time->scale != 0 && value != nullptr);
        // A camera lasts as long as the composition, so its own time is the composition's.
        value->one_d = cameraZoom(*instance.project().camera, seconds(*time));
        if (type != nullptr)
            *type = AEGP_StreamType_OneD;
    });
}

A_Err dynamicStreamFlags(AEGP_StreamRefH stream, AEGP_DynStreamFlags* flags) noexcept {
    return answer("AEGP_GetDynamicStreamFlags", [&](CommandContext& context) {
        const StreamRecord& record = streamOf(context, stream);
        require(flags != nullptr);
        *flags = 0;
        if (record.instance->panel().at(record.parameter).hidden)
            *flags = AEGP_DynStreamFlag_HIDDEN;
    });
}

A_Err setDynamicStreamFlag(AEGP_StreamRefH stream, AEGP_DynStreamFlags flag, A_Boolean, A_Boolean set) noexcept {
    return answer("AEGP_SetDynamicStreamFlag", [&](CommandContext& context) {
        const StreamRecord& record = streamOf(context, stream);
        require(flag == AEGP_DynStreamFlag_HIDDEN);
        record.instance->panel().hide(record.parameter, set != 0);
    });
}

A_Err setStreamName(AEGP_StreamRefH stream, const A_UTF16Char* name) noexcept {
    return answer("AEGP_SetStreamName", [&](CommandContext& context) {
        const StreamRecord& record = streamOf(context, stream);
        require(name != nullptr);
        record.instance->panel().rename(record.parameter, fromUtf16(name));
    });
}

// The slots that all versions of the table have.
template <class Suite, class Value, class LayerValue>
constexpr Suite streamSuite() {
    Suite suite{};
    suite.AEGP_GetEffectNumParamStreams = numParamStreams;
    suite.AEGP_GetNewEffectStreamByIndex = newEffectStream;
    suite.AEGP_DisposeStream = disposeStream;
    suite.AEGP_GetStreamType = streamType;
    suite.AEGP_GetNewStreamValue = newStreamValue<Value>;
    suite.AEGP_DisposeStreamValue = disposeStreamValue<Value>;
    suite.AEGP_GetLayerStreamValue = layerStreamValue<LayerValue>;
    return suite;
}

constexpr AEGP_StreamSuite2 streamSuiteWithBytes() {
    auto suite = streamSuite<AEGP_StreamSuite2, AEGP_StreamValue, AEGP_StreamVal>();
    suite.AEGP_GetStreamName = streamName;
    return suite;
}

template <class Suite>
constexpr Suite streamSuiteWithUtf16() {
    auto suite = streamSuite<Suite, AEGP_StreamValue2, AEGP_StreamVal2>();
    suite.AEGP_GetStreamName = streamNameUtf16;
    return suite;
}

}  // namespace

const AEGP_StreamSuite2 streamSuite7 = streamSuiteWithBytes();
const AEGP_StreamSuite4 streamSuite9 = streamSuiteWithUtf16<AEGP_StreamSuite4>();
const AEGP_StreamSuite5 streamSuite10 = streamSuiteWithUtf16<AEGP_StreamSuite5>();

const AEGP_DynamicStreamSuite4 dynamicStreamSuite = {
    .reserved0 = {},
    .AEGP_GetDynamicStreamFlags = dynamicStreamFlags,
    .AEGP_SetDynamicStreamFlag = setDynamicStreamFlag,
    .reserved1 = {},
    .AEGP_SetStreamName = setStreamName,
    .reserved2 = {},
};

}  // namespace TessavoyHost
