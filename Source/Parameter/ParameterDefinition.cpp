#include "Source/Parameter/ParameterDefinition.h"

#include "Source/Parameter/ArbitraryKind.h"
#include "Source/Parameter/StringTable.h"

#include <cstring>

namespace Tessavoy {

namespace {

/// How close a curve follows its keyframes; the same for all float sliders.
constexpr float curveTolerance = 0.05f;

constexpr A_long fixedPointOne = 1 << 16;

std::uint64_t refconOf(ArbitraryDefault dephault) {
    switch (dephault) {
        case ArbitraryDefault::Script:
            return ScriptRefcon;
        case ArbitraryDefault::Ramp:
            return RampRefcon;
        case ArbitraryDefault::Gradient:
        case ArbitraryDefault::FogGradient:
            break;
    }
    return GradientRefcon;
}

/// For sliders of whole and of real numbers, whose records name their numbers alike.
template <class Slider, class Numbers>
void setNumbers(Slider& slider, const Numbers& numbers) {
    slider.value = numbers.dephault;
    slider.valid_min = numbers.valid_min;
    slider.valid_max = numbers.valid_max;
    slider.slider_min = numbers.slider_min;
    slider.slider_max = numbers.slider_max;
    slider.dephault = numbers.dephault;
}

struct DefinitionWriter {
    PF_ParamDef& definition;

    void operator()(const Controls::GroupEnd&) const { definition.param_type = PF_Param_GROUP_END; }

    void operator()(const Controls::GroupStart& group) const { setKind(PF_Param_GROUP_START, group.flags, group.ui); }

    void operator()(const Controls::FloatSlider& control) const {
        setKind(PF_Param_FLOAT_SLIDER, PF_ParamFlag_NONE, control.ui);
        PF_FloatSliderDef& slider = definition.u.fs_d;
        setNumbers(slider, control.numbers);
        slider.precision = static_cast<PF_Precision>(control.numbers.precision);
        slider.display_flags = static_cast<PF_ValueDisplayFlags>(control.display);
        slider.curve_tolerance = curveTolerance;
    }

    void operator()(const Controls::Slider& control) const {
        setKind(PF_Param_SLIDER);
        setNumbers(definition.u.sd, control.numbers);
    }

    void operator()(const Controls::Checkbox& control) const {
        setKind(PF_Param_CHECKBOX, control.flags);
        definition.u.bd.value = control.dephault ? 1 : 0;
        definition.u.bd.dephault = control.dephault ? 1 : 0;
        definition.u.bd.u.nameptr = GetStringPtr(control.text);
    }

    void operator()(const Controls::Popup& control) const {
        setKind(PF_Param_POPUP, control.flags);
        definition.u.pd.value = control.dephault;
        definition.u.pd.dephault = control.dephault;
        definition.u.pd.num_choices = control.declaredCount;
        definition.u.pd.u.namesptr = GetStringPtr(control.choices);
    }

    void operator()(const Controls::Angle&) const { setKind(PF_Param_ANGLE); }

    void operator()(const Controls::Point& control) const {
        setKind(PF_Param_POINT, control.flags);
        PF_PointDef& point = definition.u.td;
        point.x_value = point.y_value = point.x_dephault = point.y_dephault = control.percent * fixedPointOne;
    }

    void operator()(const Controls::Point3D&) const { setKind(PF_Param_POINT_3D); }

    void operator()(const Controls::Color& control) const {
        setKind(PF_Param_COLOR);
        definition.u.cd.value = control.dephault;
        definition.u.cd.dephault = control.dephault;
    }

    void operator()(const Controls::Layer&) const { setKind(PF_Param_LAYER); }

    void operator()(const Controls::Path& control) const { setKind(PF_Param_PATH, control.flags); }

    void operator()(const Controls::Button& control) const {
        setKind(PF_Param_BUTTON, PF_ParamFlag_SUPERVISE);
        definition.u.button_d.u.namesptr = GetStringPtr(control.text);
    }

    void operator()(const Controls::Arbitrary& control) const {
        setKind(PF_Param_ARBITRARY_DATA, control.flags, control.ui);
        definition.ui_width = control.width;
        definition.ui_height = control.height;
        const std::uint64_t refcon = refconOf(control.dephault);
        static_assert(sizeof refcon == sizeof definition.u.arb_d.refconPV);
        std::memcpy(&definition.u.arb_d.refconPV, &refcon, sizeof refcon);
    }

    void setKind(PF_ParamType type, A_long flags = PF_ParamFlag_NONE, A_long ui = PF_PUI_NONE) const {
        definition.param_type = type;
        definition.flags = flags;
        definition.ui_flags = ui;
    }
};

struct LabelRow {
    A_long operator()(const Controls::GroupEnd&) const { return 0; }

    template <class Control>
    A_long operator()(const Control& control) const {
        return control.label;
    }
};

}  // namespace

void writeDefinition(const Declaration& declaration, PF_ParamDef& definition) {
    std::visit(DefinitionWriter{definition}, declaration);
}

A_long labelRow(const Declaration& declaration) {
    return std::visit(LabelRow{}, declaration);
}

}  // namespace Tessavoy
