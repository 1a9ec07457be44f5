#include "Host/Panel/PanelLayout.h"

#include <algorithm>

#include "Host/EffectHost.h"

namespace TessavoyHost {
namespace {

// Pixels.
constexpr int captionHeight = 26;
constexpr int lineHeight = 22;
constexpr int controlMargin = 4;
constexpr int indent = 14;
constexpr int twirlWidth = 16;
constexpr int titleShare = 55;  // percent of the width that twirls and titles have

const PF_ParamDef& definitionOf(const EffectInstance& instance, int parameter) {
    return instance.host().parameters()[static_cast<std::size_t>(parameter)].definition;
}

bool isShown(const EffectInstance& instance, int parameter) {
    return !instance.panel().at(parameter).hidden &&
           (definitionOf(instance, parameter).ui_flags & PF_PUI_NO_ECW_UI) == 0;
}

bool startsOpen(const PF_ParamDef& definition) {
    return (definition.flags & PF_ParamFlag_START_COLLAPSED) == 0;
}

}  // namespace

bool drawsControl(const EffectHost& host, int parameter) {
    const PF_ParamDef& definition = host.parameters().at(static_cast<std::size_t>(parameter)).definition;
    return (host.description().customEvents & PF_CustomEFlag_EFFECT) != 0 &&
           (definition.ui_flags & PF_PUI_CONTROL) != 0;
}

PanelLayout::PanelLayout(const EffectInstance& instance, const PanelView& view)
    : mWidth(view.width), mHeight(captionHeight) {
    int depth = 0;    // of groups that are shown and open
    int skipped = 0;  // groups inside of the outermost that is not, itself included
    const int count = static_cast<int>(instance.host().parameters().size());
    for (int parameter = 1; parameter < count; ++parameter) {
        const PF_ParamDef& definition = definitionOf(instance, parameter);
        const bool isOpen = view.opensAll || startsOpen(definition);
        const bool appears = skipped == 0 && isShown(instance, parameter);
        if (definition.param_type == PF_Param_GROUP_END) {
            skipped > 0 ? --skipped : --depth;
            continue;
        }
        if (appears)
            add(instance, parameter, depth, isOpen);
        if (definition.param_type == PF_Param_GROUP_START)
            appears&& isOpen ? ++depth : ++skipped;
    }
}

void PanelLayout::add(const EffectInstance& instance, int parameter, int depth, bool isOpen) {
    const PF_ParamDef& definition = definitionOf(instance, parameter);
    const bool hasControl = drawsControl(instance.host(), parameter);
    const int middle = mWidth * titleShare / 100;
    const int left = std::min(controlMargin + depth * indent, middle - twirlWidth);
    const int bottom = mHeight + lineHeight;
    PanelRow row;
    row.parameter = parameter;
    row.canTwirl = hasControl || definition.param_type == PF_Param_GROUP_START;
    row.isOpen = row.canTwirl && isOpen;
    row.twirl = {left, mHeight, left + twirlWidth, bottom};
    row.title = {left + twirlWidth, mHeight, middle, bottom};
    row.value = {middle, mHeight, mWidth, bottom};
    mHeight = bottom;
    if (hasControl && isOpen) {
        row.control = {row.title.left, bottom, row.title.left + definition.ui_width, bottom + definition.ui_height};
        mHeight = row.control.bottom + controlMargin;
    }
    mRows.push_back(row);
}

PF_Rect PanelLayout::caption() const {
    return {0, 0, mWidth, captionHeight};
}

const PanelRow* PanelLayout::find(int parameter) const {
    const auto found = std::find_if(mRows.begin(), mRows.end(),
                                    [parameter](const PanelRow& row) { return row.parameter == parameter; });
    return found == mRows.end() ? nullptr : &*found;
}

}  // namespace TessavoyHost
