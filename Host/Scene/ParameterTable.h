#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Host/HostError.h"
#include "Host/RegisteredParameter.h"

namespace TessavoyHost {

// The kinds of values that a scene can give; Group, Button, Script and Other hold none.
enum class ParameterKind {
    Slider,
    FloatSlider,
    Angle,
    Checkbox,
    Popup,
    Color,
    Point,
    Point3D,
    Layer,
    Path,
    Gradient,
    Ramp,
    Script,
    Group,
    Button,
    Other
};

ParameterKind kindOf(const PF_ParamDef& definition);

// Whether a scene can give such a parameter a value.
bool holdsValue(ParameterKind kind);

// Whether the host lets the parameter vary over time.
bool variesOverTime(const PF_ParamDef& definition);

// Popup texts as the module joined them with '|'.
std::vector<std::string> splitChoices(const std::string& joined);

// A custom slot, whose name scripts can ask for.
struct CustomSlot {
    std::string id;      // "Float.Custom3", "Noise.Custom3"
    std::string family;  // "Float", "Noise"
    std::int32_t
        diskId;  // of the parameter that carries the name, which for a slot that is a group is the group's start
};

// The parameters that a module registered, found by their ids. Index 0 is the input layer, which has no id.
class ParameterTable {
public:
    // ids: one for each parameter from index 1 on. Throws HostError(Module) when the module registered another number.
    // The parameters must outlive the table.
    ParameterTable(const std::vector<RegisteredParameter>& parameters, const std::vector<std::string>& ids);

    int count() const { return static_cast<int>(mIds.size()) + 1; }
    std::optional<int> index(const std::string& id) const;
    const std::string& id(int index) const { return mIds[static_cast<std::size_t>(index) - 1]; }  // index 1 and up
    const RegisteredParameter& at(int index) const { return mParameters[static_cast<std::size_t>(index)]; }
    ParameterKind kind(int index) const { return kindOf(at(index).definition); }

    std::vector<std::string> valueIds() const;  // of the parameters that hold values, in panel order
    std::vector<CustomSlot> slots() const;      // in panel order

private:
    const std::vector<RegisteredParameter>& mParameters;
    std::vector<std::string> mIds;
    std::map<std::string, int> mIndexes;
};

}  // namespace TessavoyHost
