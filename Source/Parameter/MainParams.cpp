#include "Source/Parameter/MainParams.h"

#include "Source/Parameter/Popups.h"
#include "Source/Parameter/Ranges.h"

#include <array>

namespace Tessavoy {

namespace {

using namespace Controls;

constexpr PF_Pixel opaqueBlack = {255, 0, 0, 0};
constexpr A_long collapsed = PF_ParamFlag_COLLAPSE_TWIRLY;
constexpr A_long drawnByEffect = PF_PUI_CONTROL | PF_PUI_DONT_ERASE_CONTROL;

/// A number evaluated for each cell.
constexpr SubSection property(A_long label, const FloatParamDefaults& value, Display display = Display::Number,
                              A_long groupUi = PF_PUI_NONE) {
    return {Section::GridParam, {.label = label, .groupUi = groupUi, .value = value, .display = display}};
}

/// Ten slots of one kind.
constexpr SubSection custom(A_long groupLabel, const Declaration& slot) {
    return {Section::CustomParameters, {.label = groupLabel, .slot = slot}};
}

constexpr Arbitrary gradient(A_long label, ArbitraryDefault dephault, A_long flags) {
    return {label, dephault, flags, drawnByEffect, 150, 50};
}

constexpr Checkbox panelSwitch(A_long label, A_long text, bool dephault) {
    return {label, text, dephault, PanelSwitch};
}

constexpr SectionItem items[] = {
    {"UseCompCamera", panelSwitch(57, 58, false)},
    {"GlobalScale", FloatSlider{59, Ranges::upToAll, Display::Percent}},
    {"Rotation3DX", Angle{60}},
    {"Rotation3DY", Angle{61}},
    {"Rotation", Angle{62}},
    {"CenterPos", Point{64, 50}},
    {"CenterZ", FloatSlider{65, Ranges::centerZ}},
    {"CountX", Slider{66, Ranges::count}},
    {"CountY", Slider{67, Ranges::count}},
    {"GridWidth", FloatSlider{68, Ranges::gridSize}},
    {"GridHeight", FloatSlider{69, Ranges::gridSize}},
    {"HexGrid", Checkbox{70, 71, false}},

    {"InstanceSize", property(72, Ranges::size)},
    {"InstanceRotation3DX", property(73, Ranges::centred)},
    {"InstanceRotation3DY", property(74, Ranges::centred)},
    {"InstanceRotation", property(75, Ranges::centred)},
    {"InstanceOffsetX", property(77, Ranges::offset)},
    {"InstanceOffsetY", property(78, Ranges::offset)},
    {"InstanceOffsetZ", property(79, Ranges::offset)},
    {"InstanceColor", SubSection{Section::ColorParam, {.label = 28, .multiplier = Ranges::unit}}},
    {"InstanceAlpha",
     SubSection{Section::AlphaParam, {.label = 81, .value = Ranges::alpha, .multiplier = Ranges::unit}}},
    {"InstanceVisible", SubSection{Section::VisibleParam, {.label = 82}}},

    {"ShapeGroupBegin", GroupStart{83}},
    {"ShapeType", Popups::shapeType},
    {"ShapeTextureLayerIndex", Popups::customLayer(88)},
    {"ShapeFramesSplittingMode", Popups::framesSplitting},
    {"ShapeXFramesInTexture", Slider{89, Ranges::framesPerSide}},
    {"ShapeYFramesInTexture", Slider{90, Ranges::framesPerSide}},
    {"ShapeLimitFramesCount", Slider{91, Ranges::framesLimit}},
    {"ShapeFramesAnimationSequence", panelSwitch(92, 93, false)},
    {"ShapeFramesAnimationSpeed", FloatSlider{94, Ranges::animationSpeed}},
    {"ShapeFrameIndex",
     SubSection{Section::IndexParam, {.label = 95, .value = Ranges::frameIndex, .display = Display::Percent}}},
    {"ShapeDrawMode", Popups::drawMode},
    {"ShapeBillboard", panelSwitch(98, 99, false)},
    {"ShapeTransformGroupBegin", GroupStart{100}},
    {"ShapeAnchorX", property(101, Ranges::centred, Display::Percent)},
    {"ShapeAnchorY", property(102, Ranges::centred, Display::Percent)},
    {"ShapeUniformScaling", panelSwitch(103, 104, true)},
    {"ShapeScaleX", property(105, Ranges::scale, Display::Percent)},
    {"ShapeScaleY", property(106, Ranges::scale, Display::Percent, PF_PUI_INVISIBLE)},
    {"ShapeAngleOffset", FloatSlider{107, Ranges::centred}},
    {"ShapeTransformGroupEnd", GroupEnd{}},
    {"ShapeFeatherScreenSpace", panelSwitch(108, 109, true)},
    {"ShapeFeatherPixels", FloatSlider{110, Ranges::featherPixels}},
    {"ShapeFeatherPercents", FloatSlider{111, Ranges::featherPercents, Display::Percent, PF_PUI_INVISIBLE}},
    {"ShapeStrokeWidth", property(112, Ranges::strokeWidth, Display::Percent, PF_PUI_INVISIBLE)},
    {"ShapeRaysCount", property(113, Ranges::raysCount)},
    {"ShapeShelfLength", property(114, Ranges::centred, Display::Percent)},
    {"ShapeLinkMiddleOffset", property(115, Ranges::centred, Display::Percent)},
    {"ShapeRoundingRadius", property(116, Ranges::centred, Display::Percent)},
    {"ShapeRoundingDots", FloatSlider{117, Ranges::roundingDots}},
    {"ShapeGroupEnd", GroupEnd{}},

    {"Script", Arbitrary{120, ArbitraryDefault::Script, PF_ParamFlag_SUPERVISE, PF_PUI_CONTROL, 150, 150}},

    {"ParamsGroupBegin", GroupStart{121, 0}},
    {"Float", custom(126, FloatSlider{127, Ranges::customFloat})},
    {"Color", custom(129, Color{130, opaqueBlack})},
    {"Layer", custom(132, Layer{133})},
    {"Noise", SubSection{Section::CustomNoiseParameters, {.label = 135}}},
    {"Random", SubSection{Section::CustomRandomParameters, {.label = 138}}},
    {"Ramp", custom(141, Arbitrary{142, ArbitraryDefault::Ramp, collapsed, drawnByEffect, 150, 140})},
    {"Gradient", custom(144, gradient(145, ArbitraryDefault::Gradient, collapsed))},
    {"Path", custom(147, Path{148, collapsed})},
    {"Point2D", custom(150, Point{151, 0, collapsed})},
    {"Point3D", custom(153, Point3D{154})},
    {"ParamsGroupEnd", GroupEnd{}},

    {"RenderSettingsGroupBegin", GroupStart{42}},
    {"BlendMode", Popups::blendMode},
    {"MSAA", Popups::multisampling},
    {"SortByZ", panelSwitch(47, 48, true)},
    {"FogGroupBegin", GroupStart{49}},
    {"FogEnabled", panelSwitch(50, 51, false)},
    {"FogColorWeight", FloatSlider{52, Ranges::upToAll, Display::Percent}},
    {"FogColorGradient", gradient(53, ArbitraryDefault::FogGradient, 0)},
    {"FogOpacity", FloatSlider{54, Ranges::share, Display::Percent}},
    {"FogStart", FloatSlider{55, Ranges::nearDistance}},
    {"FogEnd", FloatSlider{56, Ranges::farDistance}},
    {"FogGroupEnd", GroupEnd{}},
    {"OutputGroupBegin", GroupStart{156}},
    {"OutputType", Popups::outputType},
    {"OutputZDepthGroupBegin", GroupStart{159}},
    {"OutputZDepthStart", FloatSlider{160, Ranges::nearDistance}},
    {"OutputZDepthEnd", FloatSlider{161, Ranges::farDistance}},
    {"OutputZDepthClamp", panelSwitch(162, 163, true)},
    {"OutputZDepthAlpha", panelSwitch(164, 165, false)},
    {"OutputZDepthGroupEnd", GroupEnd{}},
    {"OutputGroupEnd", GroupEnd{}},
    {"ShowZBounds", Button{166, 167}},
    {"RenderSettingsGroupEnd", GroupEnd{}},
};

}  // namespace

std::span<const SectionItem> mainParams() {
    return items;
}

}  // namespace Tessavoy
