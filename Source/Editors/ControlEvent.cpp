#include "Source/Editors/ControlEvent.h"

namespace Tessavoy {

namespace {

DRAWBOT_RectF32 areaOf(const PF_Rect& frame) {
    const auto left = static_cast<float>(frame.left);
    const auto top = static_cast<float>(frame.top);
    return {left, top, static_cast<float>(frame.right) - left, static_cast<float>(frame.bottom) - top};
}

// The controls are registered as not to be erased by the host.
PF_Err draw(const ControlEvent& event, const ControlHandlers& handlers) {
    const PanelDrawing drawing = event.drawing();
    if (drawing.hasSurface()) {
        const PanelDrawing::ClipScope clip(drawing, event.frame());
        drawing.paintRect(areaOf(event.frame()), drawing.themeColor(PF_App_Color_PANEL_BACKGROUND));
        handlers.draw(event, drawing);
    }
    event.markHandled();
    return PF_Err_NONE;
}

}  // namespace

PanelPlace ControlEvent::pointer() const {
    const PF_Point& point = mExtra.u.do_click.screen_point;
    return {point.h, point.v};
}

ControlClick ControlEvent::click() const {
    const PF_DoClickEventInfo& info = mExtra.u.do_click;
    return {pointer(), info.num_clicks, (info.modifiers & PF_Mod_CMD_CTRL_KEY) != 0};
}

void ControlEvent::markChanged() const {
    mParameter.uu.change_flags |= PF_ChangeFlag_CHANGED_VALUE;
    markHandled();
}

PF_Err handleControlEvent(const ControlHandlers& handlers, PF_InData* inData, PF_OutData* outData,
                          PF_ParamDef* params[], PF_EventExtra* extra) {
    if (extra->effect_win.area != PF_EA_CONTROL) {
        return PF_Err_NONE;
    }
    const ControlEvent event(inData, outData, params, *extra);
    switch (extra->e_type) {
        case PF_Event_DO_CLICK:
            return handlers.click(event);
        case PF_Event_DRAG:
            return handlers.drag(event);
        case PF_Event_DRAW:
            return draw(event, handlers);
        default:
            return PF_Err_NONE;
    }
}

}  // namespace Tessavoy
