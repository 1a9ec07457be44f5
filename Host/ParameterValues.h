#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Host/Project.h"
#include "Host/Rational.h"
#include "Host/RegisteredParameter.h"

namespace TessavoyHost {

class EffectHost;

// Whether keys of this parameter blend; the others hold until the next key.
bool blends(const PF_ParamDef& definition);

// The default that the module registered, as a project value. Points are registered in percent of the layer.
// Arbitrary data gives an empty value: its default is the registered handle.
ParameterValue registeredDefault(const PF_ParamDef& definition, int layerWidth, int layerHeight);

// Puts a value into a parameter record as the module sees it: integers rounded half away from zero, angles in 16.16
// degrees, points in (16.16) pixels of the downsampled layer, colours in bytes. Layers and arbitrary data are not its
// business. False when the value is not of the parameter's kind.
bool writeValue(PF_ParamDef& parameter, const ParameterValue& value, const Rational& downsampleX,
                const Rational& downsampleY);

// The way back, from a record at full resolution; nothing for layers, arbitrary data and what holds no value.
std::optional<ParameterValue> readValue(const PF_ParamDef& parameter);

// The values of one instance's parameters over time. Safe to read from several threads, but not while one is set;
// arbitrary data is copied and interpolated by the module's own calls.
class ParameterValues {
public:
    // Makes the handles of arbitrary data through the module. Throws HostError when it refuses a saved form.
    ParameterValues(EffectHost& host, const Project& project, int layerWidth, int layerHeight);
    ~ParameterValues();
    ParameterValues(const ParameterValues&) = delete;
    ParameterValues& operator=(const ParameterValues&) = delete;

    int count() const { return static_cast<int>(mParameters.size()); }

    // The value at a moment in composition seconds; not for arbitrary data.
    ParameterValue at(int index, double time) const;

    // The handle of arbitrary data at a moment. Between two keys that blend it is a fresh one, interpolated by the
    // module, which goes when the pointer does; otherwise it is the instance's own. Null for data without a handle.
    // Throws HostCallFailure.
    std::shared_ptr<void> arbitraryAt(int index, double time) const;

    // The same, but always a fresh one, which the module may change.
    std::shared_ptr<void> arbitraryCopyAt(int index, double time) const;

    // The parameter's keys as a project saves them: arbitrary data in the flat form that the module gives it now.
    // Throws HostCallFailure.
    ParameterTrack saved(int index) const;

    // Sets a value as the user does: of a parameter with several keys at that moment, as a key of its own where there
    // is none yet; of others for all time. The value is of the parameter's kind. Throws HostError when the module
    // refuses arbitrary data.
    void set(int index, double time, const ParameterValue& value);

private:
    struct Parameter {
        ParameterTrack track;
        bool blends = false;
        std::vector<PF_Handle> handles;  // of arbitrary data: one a key, or the registered default alone
    };

    void makeHandles(int index, Parameter& parameter);
    PF_Handle newHandle(int index, const ParameterValue& value) const;
    std::shared_ptr<void> owned(int index, PF_Handle handle) const;

    EffectHost& mHost;
    std::vector<Parameter> mParameters;
};

}  // namespace TessavoyHost
