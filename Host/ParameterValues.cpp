#include "Host/ParameterValues.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "Host/ArbitraryCalls.h"
#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/FixedPoint.h"
#include "Host/HostCall.h"
#include "Host/HostError.h"
#include "Host/KeyTrack.h"
#include "Host/TimeBase.h"

namespace TessavoyHost {
namespace {

PF_Fixed toInteger(double value) {
    return static_cast<PF_Fixed>(std::lround(std::clamp<double>(value, INT32_MIN, INT32_MAX)));
}

PF_Fixed toFixed(double value) {
    return toInteger(value * fixedOne);
}

ColorValue toColor(const PF_Pixel& pixel) {
    return {pixel.red, pixel.green, pixel.blue, pixel.alpha};
}

// Writes each kind of value into the parameter types that take it.
struct Writer {
    PF_ParamDef& parameter;
    double factorX;
    double factorY;

    bool operator()(double value) const {
        PF_ParamDefUnion& u = parameter.u;
        switch (parameter.param_type) {
            case PF_Param_SLIDER:
                u.sd.value = toInteger(value);
                return true;
            case PF_Param_FIX_SLIDER:
                u.fd.value = toFixed(value);
                return true;
            case PF_Param_ANGLE:
                u.ad.value = toFixed(value);
                return true;
            case PF_Param_CHECKBOX:
                u.bd.value = value != 0;
                return true;
            case PF_Param_POPUP:
                u.pd.value = toInteger(value);
                return true;
            case PF_Param_FLOAT_SLIDER:
                u.fs_d.value = value;
                return true;
            default:
                return false;
        }
    }

    bool operator()(const ColorValue& value) const {
        parameter.u.cd.value = {value.alpha, value.red, value.green, value.blue};
        return parameter.param_type == PF_Param_COLOR;
    }

    bool operator()(const Point2& value) const {
        parameter.u.td.x_value = toFixed(value.x * factorX);
        parameter.u.td.y_value = toFixed(value.y * factorY);
        return parameter.param_type == PF_Param_POINT;
    }

    bool operator()(const Point3& value) const {
        parameter.u.point3d_d.x_value = value.x * factorX;
        parameter.u.point3d_d.y_value = value.y * factorY;
        parameter.u.point3d_d.z_value = value.z * factorX;
        return parameter.param_type == PF_Param_POINT_3D;
    }

    bool operator()(const MaskReference& value) const {
        parameter.u.path_d.path_id = value.id;
        return parameter.param_type == PF_Param_PATH;
    }

    bool operator()(const LayerReference&) const { return false; }
    bool operator()(const ArbitraryValue&) const { return false; }
};

// The place of the key that a value at a moment goes to. One that is made for it goes on as the stretch in which it
// stands.
std::size_t keyToSet(ParameterTrack& track, double time) {
    auto& keys = track.keys;
    if (keys.size() == 1)
        return 0;
    const auto next =
        std::find_if(keys.begin(), keys.end(), [&](const Key& key) { return key.time >= time - sameMoment; });
    const auto place = static_cast<std::size_t>(next - keys.begin());
    if (next == keys.end() || next->time > time + sameMoment)
        keys.insert(next, {time, {}, place == 0 ? Ease::Linear : keys[place - 1].ease});
    return place;
}

}  // namespace

bool blends(const PF_ParamDef& definition) {
    switch (definition.param_type) {
        case PF_Param_SLIDER:
        case PF_Param_FIX_SLIDER:
        case PF_Param_ANGLE:
        case PF_Param_COLOR:
        case PF_Param_POINT:
        case PF_Param_FLOAT_SLIDER:
        case PF_Param_ARBITRARY_DATA:
        case PF_Param_POINT_3D:
            return (definition.flags & PF_ParamFlag_CANNOT_INTERP) == 0;
        default:
            return false;
    }
}

ParameterValue registeredDefault(const PF_ParamDef& definition, int layerWidth, int layerHeight) {
    const PF_ParamDefUnion& u = definition.u;
    switch (definition.param_type) {
        case PF_Param_SLIDER:
            return static_cast<double>(u.sd.dephault);
        case PF_Param_FIX_SLIDER:
            return fromFixed(u.fd.dephault);
        case PF_Param_ANGLE:
            return fromFixed(u.ad.dephault);
        case PF_Param_CHECKBOX:
            return static_cast<double>(u.bd.dephault);
        case PF_Param_POPUP:
            return static_cast<double>(u.pd.dephault);
        case PF_Param_FLOAT_SLIDER:
            return static_cast<double>(u.fs_d.dephault);
        case PF_Param_COLOR:
            return toColor(u.cd.dephault);
        case PF_Param_POINT:
            return Point2{fromFixed(u.td.x_dephault) / 100 * layerWidth,
                          fromFixed(u.td.y_dephault) / 100 * layerHeight};
        case PF_Param_POINT_3D:
            return Point3{u.point3d_d.x_dephault / 100 * layerWidth, u.point3d_d.y_dephault / 100 * layerHeight,
                          u.point3d_d.z_dephault / 100 * layerHeight};
        case PF_Param_LAYER:
            return LayerReference{};
        case PF_Param_PATH:
            return MaskReference{static_cast<std::uint32_t>(u.path_d.dephault)};
        case PF_Param_ARBITRARY_DATA:
            return ArbitraryValue{};
        default:
            return 0.0;
    }
}

bool writeValue(PF_ParamDef& parameter, const ParameterValue& value, const Rational& downsampleX,
                const Rational& downsampleY) {
    return std::visit(Writer{parameter, downsampleX.value(), downsampleY.value()}, value);
}

std::optional<ParameterValue> readValue(const PF_ParamDef& parameter) {
    const PF_ParamDefUnion& u = parameter.u;
    switch (parameter.param_type) {
        case PF_Param_SLIDER:
            return static_cast<double>(u.sd.value);
        case PF_Param_FIX_SLIDER:
            return fromFixed(u.fd.value);
        case PF_Param_ANGLE:
            return fromFixed(u.ad.value);
        case PF_Param_CHECKBOX:
            return u.bd.value != 0 ? 1.0 : 0.0;
        case PF_Param_POPUP:
            return static_cast<double>(u.pd.value);
        case PF_Param_FLOAT_SLIDER:
            return static_cast<double>(u.fs_d.value);
        case PF_Param_COLOR:
            return toColor(u.cd.value);
        case PF_Param_POINT:
            return Point2{fromFixed(u.td.x_value), fromFixed(u.td.y_value)};
        case PF_Param_POINT_3D:
            return Point3{u.point3d_d.x_value, u.point3d_d.y_value, u.point3d_d.z_value};
        case PF_Param_PATH:
            return MaskReference{static_cast<std::uint32_t>(u.path_d.path_id)};
        default:
            return std::nullopt;
    }
}

ParameterValues::ParameterValues(EffectHost& host, const Project& project, int layerWidth, int layerHeight)
    : mHost(host), mParameters(host.parameters().size()) {
    for (int index = 0; index < count(); ++index) {
        const PF_ParamDef& definition = host.parameters()[static_cast<std::size_t>(index)].definition;
        Parameter& parameter = mParameters[static_cast<std::size_t>(index)];
        const auto given = project.parameters.find(index);
        if (given != project.parameters.end() && !given->second.keys.empty())
            parameter.track = given->second;
        else
            parameter.track.keys.push_back({0, registeredDefault(definition, layerWidth, layerHeight), Ease::Linear});
        parameter.blends = blends(definition);
        if (definition.param_type == PF_Param_ARBITRARY_DATA)
            makeHandles(index, parameter);
    }
}

ParameterValues::~ParameterValues() {
    for (std::size_t index = 0; index < mParameters.size(); ++index) {
        const ArbitraryCalls calls(mHost, mHost.parameters()[index]);
        for (const PF_Handle handle : mParameters[index].handles) {
            try {
                calls.dispose(handle);
            } catch (const HostCallFailure& failure) {
                mHost.noteBroken(failureOf("disposing of arbitrary data", failure.error));
            }
        }
    }
}

// A value without bytes stands for the registered default.
PF_Handle ParameterValues::newHandle(int index, const ParameterValue& value) const {
    const RegisteredParameter& registered = mHost.parameters()[static_cast<std::size_t>(index)];
    const ArbitraryCalls calls(mHost, registered);
    const PF_Handle fallback = registered.definition.u.arb_d.dephault;
    const auto data = std::get_if<ArbitraryValue>(&value);
    try {
        if (data != nullptr && !data->flat.empty())
            return calls.unflatten(data->flat);
        return fallback == nullptr ? nullptr : calls.copy(fallback);
    } catch (const HostCallFailure& failure) {
        throw HostError(ExitStatus::Scene, "the effect refuses the saved value of parameter " + std::to_string(index) +
                                               " (\"" + registered.definition.name + "\"), error " +
                                               std::to_string(failure.error));
    }
}

void ParameterValues::makeHandles(int index, Parameter& parameter) {
    for (const Key& key : parameter.track.keys)
        parameter.handles.push_back(newHandle(index, key.value));
}

ParameterValue ParameterValues::at(int index, double time) const {
    const Parameter& parameter = mParameters.at(static_cast<std::size_t>(index));
    return valueAt(parameter.track, time, parameter.blends);
}

ParameterTrack ParameterValues::saved(int index) const {
    const Parameter& parameter = mParameters.at(static_cast<std::size_t>(index));
    const ArbitraryCalls calls(mHost, mHost.parameters()[static_cast<std::size_t>(index)]);
    ParameterTrack track = parameter.track;
    for (std::size_t key = 0; key < parameter.handles.size(); ++key) {
        if (parameter.handles[key] != nullptr)
            track.keys[key].value = ArbitraryValue{calls.flatten(parameter.handles[key])};
    }
    return track;
}

std::shared_ptr<void> ParameterValues::arbitraryAt(int index, double time) const {
    const Parameter& parameter = mParameters.at(static_cast<std::size_t>(index));
    const KeySpan span = locate(parameter.track, time, parameter.blends);
    const PF_Handle left = parameter.handles.at(span.left);
    const PF_Handle right = parameter.handles.at(span.right);
    if (span.share == 0 || left == nullptr || right == nullptr)
        return {left, [](void*) {}};
    const ArbitraryCalls calls(mHost, mHost.parameters()[static_cast<std::size_t>(index)]);
    return owned(index, calls.interpolate(left, right, span.share));
}

std::shared_ptr<void> ParameterValues::owned(int index, PF_Handle handle) const {
    const ArbitraryCalls calls(mHost, mHost.parameters()[static_cast<std::size_t>(index)]);
    return {handle, [calls](void* made) {
                try {
                    calls.dispose(static_cast<PF_Handle>(made));
                } catch (...) {  // the module keeps it then, and the long ledger shows it
                    answerToException(CommandContext::current(), "PF_Arbitrary_DISPOSE_FUNC");
                }
            }};
}

std::shared_ptr<void> ParameterValues::arbitraryCopyAt(int index, double time) const {
    const std::shared_ptr<void> value = arbitraryAt(index, time);
    const auto handle = static_cast<PF_Handle>(value.get());
    const ArbitraryCalls calls(mHost, mHost.parameters()[static_cast<std::size_t>(index)]);
    return handle == nullptr ? value : owned(index, calls.copy(handle));
}

void ParameterValues::set(int index, double time, const ParameterValue& value) {
    Parameter& parameter = mParameters.at(static_cast<std::size_t>(index));
    const bool isArbitrary = !parameter.handles.empty();
    const PF_Handle handle = isArbitrary ? newHandle(index, value) : nullptr;
    const std::size_t place = keyToSet(parameter.track, time);
    parameter.track.keys[place].value = value;
    if (!isArbitrary)
        return;
    const auto before = parameter.handles.begin() + static_cast<std::ptrdiff_t>(place);
    if (parameter.handles.size() < parameter.track.keys.size())
        parameter.handles.insert(before, handle);
    else
        owned(index, std::exchange(*before, handle));
}

}  // namespace TessavoyHost
