#include "Tests/Support/PanelDescription.h"

#include <cstring>
#include <sstream>

namespace Tessavoy {

namespace {

std::string quoted(const char* text) {
    return text == nullptr ? "null" : '"' + std::string(text) + '"';
}

std::string fixedPoint(PF_Fixed value) {
    std::ostringstream out;
    out << value / 65536.0;
    return out.str();
}

std::string colorBytes(const PF_Pixel& color) {
    std::ostringstream out;
    out << "argb " << +color.alpha << ' ' << +color.red << ' ' << +color.green << ' ' << +color.blue;
    return out.str();
}

/// Says so where the starting value isn't the default.
template <class Value>
std::string checkValue(Value value, Value dephault) {
    return value == dephault ? "" : " BUT ANOTHER VALUE";
}

void describeFloat(std::ostream& out, const PF_FloatSliderDef& slider) {
    out << slider.valid_min << " to " << slider.valid_max << ", slider " << slider.slider_min << " to "
        << slider.slider_max << ", default " << slider.dephault << ", precision " << slider.precision;
    out << (slider.display_flags == 0 ? "" : slider.display_flags == 1 ? " %" : " OTHER DISPLAY");
    out << checkValue(slider.value, static_cast<double>(slider.dephault));
    out << (slider.curve_tolerance == 0.05f && slider.fs_flags == 0 ? "" : " OTHER CURVE");
}

void describeSlider(std::ostream& out, const PF_SliderDef& slider) {
    out << slider.valid_min << " to " << slider.valid_max << ", slider " << slider.slider_min << " to "
        << slider.slider_max << ", default " << slider.dephault << checkValue(slider.value, slider.dephault);
}

void describeKind(std::ostream& out, const PF_ParamDef& definition) {
    const PF_ParamDefUnion& u = definition.u;
    const std::string name = ' ' + quoted(definition.name) + ' ';
    switch (definition.param_type) {
        case PF_Param_LAYER:
            out << "layer" << name << "default " << u.ld.dephault;
            break;
        case PF_Param_SLIDER:
            describeSlider(out << "slider" << name, u.sd);
            break;
        case PF_Param_ANGLE:
            out << "angle" << name << fixedPoint(u.ad.dephault) << checkValue(u.ad.value, u.ad.dephault);
            break;
        case PF_Param_CHECKBOX:
            out << "checkbox" << name << "text " << quoted(u.bd.u.nameptr) << (u.bd.dephault != 0 ? " on" : " off")
                << checkValue<A_long>(u.bd.value, u.bd.dephault);
            break;
        case PF_Param_COLOR:
            out << "color" << name << colorBytes(u.cd.dephault)
                << checkValue(colorBytes(u.cd.value), colorBytes(u.cd.dephault));
            break;
        case PF_Param_POINT:
            out << "point" << name << fixedPoint(u.td.x_dephault) << ' ' << fixedPoint(u.td.y_dephault)
                << (u.td.restrict_bounds != 0 ? " IN BOUNDS" : "");
            break;
        case PF_Param_POPUP:
            out << "popup" << name << quoted(u.pd.u.namesptr) << " count " << u.pd.num_choices << " default "
                << u.pd.dephault << checkValue<A_long>(u.pd.value, u.pd.dephault);
            break;
        case PF_Param_FLOAT_SLIDER:
            describeFloat(out << "float" << name, u.fs_d);
            break;
        case PF_Param_ARBITRARY_DATA: {
            char refcon[sizeof u.arb_d.refconPV];
            std::memcpy(refcon, &u.arb_d.refconPV, sizeof refcon);
            out << "arbitrary" << name << "refcon ";
            for (const char letter : refcon) {
                out << (letter == 0 ? '0' : letter);
            }
            out << ' ' << definition.ui_width << 'x' << definition.ui_height;
            break;
        }
        case PF_Param_PATH:
            out << "path" << name << u.path_d.path_id << ' ' << u.path_d.dephault;
            break;
        case PF_Param_GROUP_START:
            out << "group" << name << "start";
            break;
        case PF_Param_GROUP_END:
            out << "group" << name << "end";
            break;
        case PF_Param_BUTTON:
            out << "button" << name << "text " << quoted(u.button_d.u.namesptr);
            break;
        case PF_Param_POINT_3D:
            out << "point3D" << name << u.point3d_d.x_dephault << ' ' << u.point3d_d.y_dephault << ' '
                << u.point3d_d.z_dephault;
            break;
        default:
            out << "TYPE " << definition.param_type << name;
            break;
    }
}

}  // namespace

std::string describeParameter(const PF_ParamDef& definition) {
    std::ostringstream out;
    out.precision(9);
    describeKind(out, definition);
    out << " flags " << definition.flags << " ui " << definition.ui_flags;
    return out.str();
}

}  // namespace Tessavoy
