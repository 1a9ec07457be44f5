#include "Host/Panel/PanelPainter.h"

#include <cmath>
#include <numbers>

#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/HostError.h"
#include "Host/Panel/ValueText.h"
#include "Host/Theme.h"

namespace TessavoyHost {
namespace {

// Pixels.
constexpr float fontSize = 12;
constexpr float captionFontSize = 13;
constexpr float baselineBelowMiddle = 4;
constexpr int textMargin = 6;
constexpr int swatchWidth = 32;
constexpr int boxSide = 12;
constexpr float line = 1;
constexpr float tickWidth = 2;

DRAWBOT_RectF32 toRectF(const PF_Rect& rect) {
    return {static_cast<float>(rect.left), static_cast<float>(rect.top), static_cast<float>(rect.right - rect.left),
            static_cast<float>(rect.bottom - rect.top)};
}

PF_Rect inset(const PF_Rect& rect, int x, int y) {
    return {rect.left + x, rect.top + y, rect.right - x, rect.bottom - y};
}

DRAWBOT_PointF32 middleOf(const PF_Rect& rect) {
    return {static_cast<float>(rect.left + rect.right) / 2, static_cast<float>(rect.top + rect.bottom) / 2};
}

// The first columns of a place, centred in its height.
PF_Rect boxIn(const PF_Rect& place, int width, int height) {
    const A_long top = place.top + (place.bottom - place.top - height) / 2;
    return {place.left, top, place.left + width, top + height};
}

DrawnPath triangle(const DRAWBOT_PointF32& a, const DRAWBOT_PointF32& b, const DRAWBOT_PointF32& c) {
    return {PathPiece::Move{a}, PathPiece::Line{b}, PathPiece::Line{c}, PathPiece::Close{}};
}

DrawnPath pointingDown(const DRAWBOT_PointF32& middle) {
    return triangle({middle.x - 4, middle.y - 2}, {middle.x + 4, middle.y - 2}, {middle.x, middle.y + 3});
}

DrawnPath pointingRight(const DRAWBOT_PointF32& middle) {
    return triangle({middle.x - 2, middle.y - 4}, {middle.x + 3, middle.y}, {middle.x - 2, middle.y + 4});
}

}  // namespace

PanelPainter::PanelPainter(EffectInstance& instance, int frame, DrawingSurface& surface)
    : mInstance(instance),
      mReader(instance, frame),
      mSurface(surface),
      mTime(instance.timeBase().compositionSeconds(instance.timeBase().layerTimeOf(frame), instance.timeBase().scale)) {
}

void PanelPainter::paint(const PanelLayout& layout) {
    mSurface.pushState();
    mSurface.setAntiAliasing(kDRAWBOT_AntiAliasPolicy_High);
    const DRAWBOT_RectF32 sheet = {0, 0, static_cast<float>(layout.width()), static_cast<float>(layout.height())};
    mSurface.paintRect(sheet, drawnThemeColor(PF_App_Color_PANEL_BACKGROUND));
    paintCaption(layout.caption());
    for (const PanelRow& row : layout.rows())
        paintRow(row);
    mSurface.popState();
}

void PanelPainter::paintCaption(const PF_Rect& place) {
    mSurface.paintRect(toRectF(place), drawnThemeColor(PF_App_Color_DARK_CAPTION_FILL));
    DrawnText text;
    text.text = mInstance.host().description().name;
    text.origin = {textMargin, middleOf(place).y + baselineBelowMiddle};
    text.fontSize = captionFontSize;
    text.color = drawnThemeColor(PF_App_Color_DARK_CAPTION_TEXT);
    mSurface.drawText(text);
}

void PanelPainter::paintRow(const PanelRow& row) {
    const float width = static_cast<float>(row.value.right);
    mSurface.paintRect({0, static_cast<float>(row.title.top), width, line}, drawnThemeColor(PF_App_Color_DARK_TINGE));
    if (row.canTwirl)
        paintTwirl(row.twirl, row.isOpen);
    paintText(mInstance.panel().at(row.parameter).name, row.title, PF_App_Color_TEXT);
    paintValue(row);
    if (row.control.bottom > row.control.top)
        paintControl(row);
}

void PanelPainter::paintTwirl(const PF_Rect& place, bool isOpen) {
    const DRAWBOT_PointF32 middle = middleOf(place);
    mSurface.fillPath(isOpen ? pointingDown(middle) : pointingRight(middle), drawnThemeColor(PF_App_Color_TEXT),
                      kDRAWBOT_FillType_Default);
}

void PanelPainter::paintValue(const PanelRow& row) {
    switch (mInstance.host().parameters()[static_cast<std::size_t>(row.parameter)].definition.param_type) {
        case PF_Param_CHECKBOX:
            return paintCheckbox(row);
        case PF_Param_COLOR:
            return paintColor(row);
        case PF_Param_ANGLE:
            return paintDial(row);
        case PF_Param_POPUP:
        case PF_Param_LAYER:
        case PF_Param_PATH:
            return paintChoice(row);
        case PF_Param_BUTTON:
            return paintButton(row);
        default:
            return paintText(valueText(mInstance, row.parameter, mTime), row.value, PF_App_Color_HOT_TEXT);
    }
}

void PanelPainter::paintCheckbox(const PanelRow& row) {
    const PF_Rect box = boxIn(row.value, boxSide, boxSide);
    paintBox(box, PF_App_Color_BUTTON_FRAME, PF_App_Color_LIST_BOX_FILL);
    const ParameterValue value = mInstance.values().at(row.parameter, mTime);
    const auto left = static_cast<float>(box.left), top = static_cast<float>(box.top);
    if (const double* number = std::get_if<double>(&value); number != nullptr && *number != 0)
        mSurface.strokePath({PathPiece::Move{{left + 3, top + 6}}, PathPiece::Line{{left + 5, top + 9}},
                             PathPiece::Line{{left + 10, top + 3}}},
                            drawnThemeColor(PF_App_Color_HILITE), tickWidth);
    const std::string& text = mInstance.host().parameters()[static_cast<std::size_t>(row.parameter)].text;
    paintText(text, {box.right + textMargin, row.value.top, row.value.right, row.value.bottom}, PF_App_Color_TEXT);
}

void PanelPainter::paintColor(const PanelRow& row) {
    const PF_Rect swatch = boxIn(row.value, swatchWidth, boxSide + 2);
    paintBox(swatch, PF_App_Color_BUTTON_FRAME, PF_App_Color_LIST_BOX_FILL);
    const ParameterValue value = mInstance.values().at(row.parameter, mTime);
    constexpr float full = 255;
    if (const ColorValue* color = std::get_if<ColorValue>(&value))
        mSurface.paintRect(toRectF(inset(swatch, 1, 1)),
                           {static_cast<float>(color->red) / full, static_cast<float>(color->green) / full,
                            static_cast<float>(color->blue) / full, 1});
}

// The hand stands up at 0 degrees and turns clockwise.
void PanelPainter::paintDial(const PanelRow& row) {
    constexpr float radius = 7;
    const ParameterValue value = mInstance.values().at(row.parameter, mTime);
    const double* angle = std::get_if<double>(&value);
    const double turn = (angle == nullptr ? 0 : *angle) * std::numbers::pi / 180;
    const DRAWBOT_PointF32 middle = {static_cast<float>(row.value.left) + radius + line, middleOf(row.value).y};
    const DRAWBOT_PointF32 end = {middle.x + radius * static_cast<float>(std::sin(turn)),
                                  middle.y - radius * static_cast<float>(std::cos(turn))};
    mSurface.strokePath({PathPiece::Arc{middle, radius, 0, 360}}, drawnThemeColor(PF_App_Color_BUTTON_FRAME), line);
    mSurface.strokePath({PathPiece::Move{middle}, PathPiece::Line{end}}, drawnThemeColor(PF_App_Color_TEXT), line);
    const int textLeft = row.value.left + static_cast<int>(2 * radius) + textMargin;
    paintText(valueText(mInstance, row.parameter, mTime), {textLeft, row.value.top, row.value.right, row.value.bottom},
              PF_App_Color_HOT_TEXT);
}

void PanelPainter::paintChoice(const PanelRow& row) {
    const PF_Rect box = {row.value.left, row.value.top + 2, row.value.right - textMargin, row.value.bottom - 1};
    paintBox(box, PF_App_Color_BUTTON_FRAME, PF_App_Color_BUTTON_FILL);
    const A_long arrow = box.right - boxSide;
    mSurface.fillPath(pointingDown({static_cast<float>(arrow), middleOf(box).y}),
                      drawnThemeColor(PF_App_Color_BUTTON_TEXT), kDRAWBOT_FillType_Default);
    paintText(valueText(mInstance, row.parameter, mTime), {box.left + textMargin, box.top, arrow, box.bottom},
              PF_App_Color_BUTTON_TEXT);
}

void PanelPainter::paintButton(const PanelRow& row) {
    const PF_Rect box = {row.value.left, row.value.top + 2, row.value.right - textMargin, row.value.bottom - 1};
    paintBox(box, PF_App_Color_BUTTON_FRAME, PF_App_Color_BUTTON_FILL);
    paintText(mInstance.host().parameters()[static_cast<std::size_t>(row.parameter)].text, box,
              PF_App_Color_BUTTON_TEXT, kDRAWBOT_TextAlignment_Center);
}

void PanelPainter::paintControl(const PanelRow& row) {
    const PF_Rect& place = row.control;
    mSurface.pushState();
    mSurface.setAntiAliasing(kDRAWBOT_AntiAliasPolicy_Default);
    mSurface.clip({place.left, place.top, place.right - place.left, place.bottom - place.top});
    const CommandResult result = mReader.draw(row.parameter, place, mSurface, row.title);
    mSurface.popState();
    for (const std::string& text : result.broken)
        mInstance.host().noteBroken(text);
    if (result.error != PF_Err_NONE)
        throw HostError(ExitStatus::FrameFailed,
                        failureOf("drawing the control \"" + mInstance.panel().at(row.parameter).name + '"',
                                  result.error, result.message));
}

void PanelPainter::paintBox(const PF_Rect& place, PF_App_ColorType frame, PF_App_ColorType fill) {
    mSurface.paintRect(toRectF(place), drawnThemeColor(frame));
    mSurface.paintRect(toRectF(inset(place, 1, 1)), drawnThemeColor(fill));
}

void PanelPainter::paintText(const std::string& text, const PF_Rect& place, PF_App_ColorType color,
                             DRAWBOT_TextAlignment alignment) {
    const bool isCentred = alignment == kDRAWBOT_TextAlignment_Center;
    DrawnText drawn;
    drawn.text = text;
    drawn.origin = {isCentred ? middleOf(place).x : static_cast<float>(place.left),
                    std::round(middleOf(place).y) + baselineBelowMiddle};
    drawn.fontSize = fontSize;
    drawn.color = drawnThemeColor(color);
    drawn.alignment = alignment;
    drawn.truncation = kDRAWBOT_TextTruncation_EndEllipsis;
    drawn.truncationWidth = static_cast<float>(place.right - place.left - textMargin);
    mSurface.drawText(drawn);
}

}  // namespace TessavoyHost
