#include "Host/Scene/ParameterTable.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace TessavoyHost {
namespace {

// An arbitrary parameter says by eight bytes of text in its reference value what it holds, lowest byte first.
constexpr std::uint64_t gradientReference = 0x544E454944415247;
constexpr std::uint64_t rampReference = 0x0052414D50000000;
constexpr std::uint64_t scriptReference = 0x0000534352495054;

ParameterKind arbitraryKind(const PF_ArbitraryDef& definition) {
    switch (std::bit_cast<std::uint64_t>(definition.refconPV)) {
        case gradientReference:
            return ParameterKind::Gradient;
        case rampReference:
            return ParameterKind::Ramp;
        case scriptReference:
            return ParameterKind::Script;
        default:
            return ParameterKind::Other;
    }
}

constexpr std::string_view groupStart = ".GroupBegin";

bool isNumber(std::string_view text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// "Float" of "Float.Custom3"; nothing when the id is no slot.
std::optional<std::string> familyOf(std::string_view id) {
    const auto dot = id.find('.');
    constexpr std::string_view item = ".Custom";
    if (dot == std::string_view::npos || !id.substr(dot).starts_with(item) || !isNumber(id.substr(dot + item.size()))) {
        return std::nullopt;
    }
    return std::string(id.substr(0, dot));
}

}  // namespace

ParameterKind kindOf(const PF_ParamDef& definition) {
    switch (definition.param_type) {
        case PF_Param_LAYER:
            return ParameterKind::Layer;
        case PF_Param_SLIDER:
            return ParameterKind::Slider;
        case PF_Param_ANGLE:
            return ParameterKind::Angle;
        case PF_Param_CHECKBOX:
            return ParameterKind::Checkbox;
        case PF_Param_COLOR:
            return ParameterKind::Color;
        case PF_Param_POINT:
            return ParameterKind::Point;
        case PF_Param_POPUP:
            return ParameterKind::Popup;
        case PF_Param_FLOAT_SLIDER:
            return ParameterKind::FloatSlider;
        case PF_Param_ARBITRARY_DATA:
            return arbitraryKind(definition.u.arb_d);
        case PF_Param_PATH:
            return ParameterKind::Path;
        case PF_Param_GROUP_START:
        case PF_Param_GROUP_END:
            return ParameterKind::Group;
        case PF_Param_BUTTON:
            return ParameterKind::Button;
        case PF_Param_POINT_3D:
            return ParameterKind::Point3D;
        default:
            return ParameterKind::Other;
    }
}

bool holdsValue(ParameterKind kind) {
    return kind < ParameterKind::Script;
}

bool variesOverTime(const PF_ParamDef& definition) {
    return (definition.flags & PF_ParamFlag_CANNOT_TIME_VARY) == 0;
}

std::vector<std::string> splitChoices(const std::string& joined) {
    std::vector<std::string> choices;
    std::size_t start = 0;
    for (auto bar = joined.find('|'); bar != std::string::npos; bar = joined.find('|', start)) {
        choices.push_back(joined.substr(start, bar - start));
        start = bar + 1;
    }
    choices.push_back(joined.substr(start));
    return choices;
}

ParameterTable::ParameterTable(const std::vector<RegisteredParameter>& parameters, const std::vector<std::string>& ids)
    : mParameters(parameters), mIds(ids) {
    if (parameters.size() != ids.size() + 1) {
        throw HostError(ExitStatus::Module, "the module registered " + std::to_string(parameters.size()) +
                                                " parameters with its input layer, and this command knows ids for " +
                                                std::to_string(ids.size() + 1) +
                                                "; use the module that was built with it");
    }
    for (std::size_t i = 0; i < ids.size(); ++i) {
        mIndexes.emplace(ids[i], static_cast<int>(i) + 1);
    }
}

std::optional<int> ParameterTable::index(const std::string& id) const {
    const auto found = mIndexes.find(id);
    return found == mIndexes.end() ? std::nullopt : std::optional<int>(found->second);
}

std::vector<std::string> ParameterTable::valueIds() const {
    std::vector<std::string> ids;
    for (int i = 1; i < count(); ++i) {
        if (holdsValue(kind(i))) {
            ids.push_back(id(i));
        }
    }
    return ids;
}

std::vector<CustomSlot> ParameterTable::slots() const {
    std::vector<CustomSlot> slots;
    for (int i = 1; i < count(); ++i) {
        std::string_view slotId = id(i);
        if (slotId.ends_with(groupStart)) {
            slotId.remove_suffix(groupStart.size());
        }
        if (const auto family = familyOf(slotId)) {
            slots.push_back({std::string(slotId), *family, at(i).definition.uu.id});
        }
    }
    return slots;
}

}  // namespace TessavoyHost
