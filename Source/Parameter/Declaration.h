#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Types.h"

#include <variant>

namespace Tessavoy {

/// The numbers of a float slider, in the unit the user sees.
struct FloatParamDefaults {
    float valid_min;
    float valid_max;
    float slider_min;
    float slider_max;
    float dephault;
    A_long precision;  ///< digits after the point
};

/// The numbers of a whole-number slider. The default may lie outside the valid range, which binds only what is typed.
struct SliderDefaults {
    A_long valid_min;
    A_long valid_max;
    A_long slider_min;
    A_long slider_max;
    A_long dephault;
};

/// The display flags of a float slider.
enum class Display : A_short { Number = PF_ValueDisplayFlag_NONE, Percent = PF_ValueDisplayFlag_PERCENT };

/// A control that changes the panel when it changes, and that has no keyframes.
inline constexpr A_long PanelSwitch =
    PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP | PF_ParamFlag_SUPERVISE;

/// A choice without keyframes.
inline constexpr A_long FixedChoice = PF_ParamFlag_CANNOT_TIME_VARY | PF_ParamFlag_CANNOT_INTERP;

/// The value that an arbitrary-data parameter starts with.
enum class ArbitraryDefault {
    Script,       ///< none: the text is kept elsewhere
    Gradient,     ///< the gradient editor's default
    FogGradient,  ///< one grey stop in the middle
    Ramp,         ///< the ramp editor's default, with bezier interpolation
};

/// What one parameter is in the panel: one record for each kind of control. Texts are rows of the StringTable, 0
/// meaning the empty text; the label of a custom slot is a format with one %d, filled with the slot number.
namespace Controls {

struct GroupStart {
    A_long label = 0;
    A_long flags = PF_ParamFlag_COLLAPSE_TWIRLY;
    A_long ui = PF_PUI_NONE;
};

struct GroupEnd {};

struct FloatSlider {
    A_long label = 0;
    FloatParamDefaults numbers{};
    Display display = Display::Number;
    A_long ui = PF_PUI_NONE;
};

struct Slider {
    A_long label = 0;
    SliderDefaults numbers{};
};

struct Checkbox {
    A_long label = 0;
    A_long text = 0;  ///< the text beside the box
    bool dephault = false;
    A_long flags = 0;
};

/// The choices are one text of the table, joined by "|". The count declared to the host may exceed the number of
/// choices.
struct Popup {
    A_long label = 0;
    A_long choices = 0;
    A_short declaredCount = 0;
    A_short dephault = 1;  ///< one-based
    A_long flags = 0;
};

struct Angle {
    A_long label = 0;
};

/// The default lies at the same percentage of the layer's width and height.
struct Point {
    A_long label = 0;
    A_long percent = 0;
    A_long flags = 0;
};

struct Point3D {
    A_long label = 0;
};

struct Color {
    A_long label = 0;
    PF_Pixel dephault{};
};

struct Layer {
    A_long label = 0;
};

struct Path {
    A_long label = 0;
    A_long flags = 0;
};

/// A button; its text stands on it, its label beside it.
struct Button {
    A_long label = 0;
    A_long text = 0;
};

struct Arbitrary {
    A_long label = 0;
    ArbitraryDefault dephault = ArbitraryDefault::Script;
    A_long flags = 0;
    A_long ui = PF_PUI_NONE;
    A_short width = 0;   ///< of the control, in pixels
    A_short height = 0;  ///< of the control, in pixels
};

}  // namespace Controls

using Declaration =
    std::variant<Controls::GroupEnd, Controls::GroupStart, Controls::FloatSlider, Controls::Slider, Controls::Checkbox,
                 Controls::Popup, Controls::Angle, Controls::Point, Controls::Point3D, Controls::Color, Controls::Layer,
                 Controls::Path, Controls::Button, Controls::Arbitrary>;

}  // namespace Tessavoy
