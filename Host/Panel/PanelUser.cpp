#include "Host/Panel/PanelUser.h"

#include <algorithm>

#include "Host/EffectHost.h"
#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

constexpr PanelView everything = {.opensAll = true};

void add(const CommandResult& result, UserAction& action) {
    if (action.error == PF_Err_NONE)
        action.error = result.error;
    if (action.message.empty()) {
        action.message = result.message;
        action.displayError = result.displayError;
    }
    action.projectDirty |= result.projectDirty;
    action.rerender |= !result.changed.empty() || (result.out.out_flags & PF_OutFlag_FORCE_RERENDER) != 0;
    for (const int parameter : result.changed) {
        if (std::find(action.changed.begin(), action.changed.end(), parameter) == action.changed.end())
            action.changed.push_back(parameter);
    }
    action.broken.insert(action.broken.end(), result.broken.begin(), result.broken.end());
}

bool wantsRedraw(const PF_EventExtra& event) {
    constexpr PF_EventOutFlags redrawn = PF_EO_HANDLED_EVENT | PF_EO_ALWAYS_UPDATE | PF_EO_UPDATE_NOW;
    return (event.evt_out_flags & redrawn) != 0 && (event.evt_out_flags & PF_EO_NEVER_UPDATE) == 0;
}

bool isSupervised(const PF_ParamDef& definition) {
    return (definition.flags & PF_ParamFlag_SUPERVISE) != 0;
}

[[noreturn]] void refuse(int parameter, const std::string& reason) {
    throw HostError(ExitStatus::FrameFailed, "parameter " + std::to_string(parameter) + ' ' + reason);
}

}  // namespace

PanelUser::PanelUser(EffectInstance& instance, int frame, DrawingSurface* surface)
    : mInstance(instance),
      mFrame(frame),
      mReader(instance, frame),
      mSurface(surface == nullptr ? mNoSurface : *surface) {}

const PanelRow& PanelUser::rowOf(const PanelLayout& layout, int parameter) const {
    const PanelRow* row = layout.find(parameter);
    if (row == nullptr)
        refuse(parameter, "is not shown in the panel");
    return *row;
}

PF_Rect PanelUser::placeOf(int parameter) const {
    const PanelLayout layout(mInstance, everything);
    const PanelRow& row = rowOf(layout, parameter);
    if (row.control.bottom == row.control.top)
        refuse(parameter, "has no control that the module draws");
    return row.control;
}

UserAction PanelUser::look() {
    UserAction action;
    updatePanel(action);
    return action;
}

UserAction PanelUser::click(int parameter, const PF_Point& point, int clicks, PF_Modifiers modifiers) {
    UserAction action;
    for (int number = 1; number <= clicks && action.error == PF_Err_NONE; ++number)
        pressAndMove(parameter, {point}, number, modifiers, action);
    return action;
}

UserAction PanelUser::drag(int parameter, const std::vector<PF_Point>& points, PF_Modifiers modifiers) {
    UserAction action;
    if (!points.empty())
        pressAndMove(parameter, points, 1, modifiers, action);
    return action;
}

// The last event of a drag says that the button was let go, at a point where the mouse may have been before.
void PanelUser::pressAndMove(int parameter, const std::vector<PF_Point>& points, int clicks, PF_Modifiers modifiers,
                             UserAction& action) {
    const PF_Rect place = placeOf(parameter);
    const PanelLayout layout(mInstance, everything);
    PF_EventExtra event = mReader.eventOf(PF_Event_DO_CLICK, parameter, place, rowOf(layout, parameter).title);
    event.u.do_click.num_clicks = clicks;
    event.u.do_click.modifiers = modifiers;
    mouse(event, points.front(), action);
    event.e_type = PF_Event_DRAG;
    const std::size_t last = points.size() - 1;
    for (std::size_t i = std::min<std::size_t>(1, last); i <= last && event.u.do_click.send_drag != 0; ++i) {
        event.u.do_click.last_time = i == last ? 1 : 0;
        mouse(event, points[i], action);
    }
}

// What the module left in the event for the next one stays there: whether it wants more, and its own data.
void PanelUser::mouse(PF_EventExtra& event, const PF_Point& point, UserAction& action) {
    event.u.do_click.when = ++mTicks;
    event.u.do_click.screen_point = point;
    event.evt_out_flags = PF_EO_NONE;
    const CommandResult result = mInstance.panelEvent(event, mFrame);
    ++action.mouseEvents;
    action.handled |= (event.evt_out_flags & PF_EO_HANDLED_EVENT) != 0;
    add(result, action);
    if (result.error != PF_Err_NONE)
        event.u.do_click.send_drag = 0;
    if (wantsRedraw(event))
        redraw(event, action);
    if ((result.out.out_flags & (PF_OutFlag_REFRESH_UI | PF_OutFlag_SEND_UPDATE_PARAMS_UI)) != 0)
        updatePanel(action);
}

void PanelUser::redraw(const PF_EventExtra& event, UserAction& action) {
    const PF_EffectWindowInfo& window = event.effect_win;
    ++action.redraws;
    add(mReader.draw(window.index, window.current_frame, mSurface, window.param_title_frame), action);
}

UserAction PanelUser::change(int parameter, const ParameterValue& value) {
    const PanelLayout layout(mInstance, everything);
    rowOf(layout, parameter);
    const TimeBase& base = mInstance.timeBase();
    mInstance.values().set(parameter, base.compositionSeconds(base.layerTimeOf(mFrame), base.scale), value);
    UserAction action;
    action.rerender = true;
    action.changed.push_back(parameter);
    tellOfChange(parameter, action);
    return action;
}

UserAction PanelUser::press(int button) {
    const PanelLayout layout(mInstance, everything);
    rowOf(layout, button);
    if (mInstance.host().parameters()[static_cast<std::size_t>(button)].definition.param_type != PF_Param_BUTTON)
        refuse(button, "is no button");
    UserAction action;
    tellOfChange(button, action);
    return action;
}

void PanelUser::tellOfChange(int parameter, UserAction& action) {
    PF_UserChangedParamExtra extra{parameter};
    if (isSupervised(mInstance.host().parameters()[static_cast<std::size_t>(parameter)].definition))
        add(mInstance.panelCommand(PF_Cmd_USER_CHANGED_PARAM, mFrame, &extra), action);
    updatePanel(action);
}

void PanelUser::updatePanel(UserAction& action) {
    add(mInstance.panelCommand(PF_Cmd_UPDATE_PARAMS_UI, mFrame), action);
}

}  // namespace TessavoyHost
