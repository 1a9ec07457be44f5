#pragma once

#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Events.h"
#include "Source/Editors/PanelDrawing.h"
#include "Source/Editors/PointEditing.h"

#include <cstring>
#include <type_traits>

namespace Tessavoy {

/// One of the host's events for a control of arbitrary data, as its editor sees it: the host's record is read and
/// answered here and nowhere else.
class ControlEvent {
public:
    /// All must outlive this. params: of all parameters, the control's among them.
    ControlEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra& extra)
        : mInData(inData), mOutData(outData), mParameter(*params[extra.effect_win.index]), mExtra(extra) {}

    PF_InData* inData() const { return mInData; }

    /// The control's value, which is edited in place.
    PF_Handle value() const { return mParameter.u.arb_d.value; }

    const PF_Rect& frame() const { return mExtra.effect_win.current_frame; }

    /// Where the pointer is, in a click or a drag.
    PanelPlace pointer() const;

    ControlClick click() const;

    /// Has the host send drags from now on, each with what is kept here.
    template <class Drag>
    void startDrag(const Drag& drag) const {
        mExtra.u.do_click.send_drag = 1;
        keepDrag(drag);
    }

    /// What was kept at the last event of the same press of the mouse.
    template <class Drag>
    Drag drag() const {
        Drag drag;
        std::memcpy(&drag, mExtra.u.do_click.continue_refcon, sizeof drag);
        return drag;
    }

    template <class Drag>
    void keepDrag(const Drag& drag) const {
        static_assert(std::is_trivially_copyable_v<Drag> && sizeof drag <= sizeof mExtra.u.do_click.continue_refcon);
        std::memcpy(mExtra.u.do_click.continue_refcon, &drag, sizeof drag);
    }

    /// Has the value's editor move what is dragged, by `editor.drag(drag, pointer)`, and keeps what came of it.
    template <class Drag, class Editor>
    void dragWith(Editor editor) const {
        auto moved = drag<Drag>();
        if (editor.drag(moved, pointer())) {
            keepDrag(moved);
            markChanged();
        }
    }

    /// The event was the control's, which is to be drawn again.
    void markHandled() const { mExtra.evt_out_flags |= PF_EO_HANDLED_EVENT; }

    /// The same, and the value is another one.
    void markChanged() const;

    PanelDrawing drawing() const { return {mInData, mOutData, mExtra.contextH}; }

private:
    PF_InData* mInData;
    PF_OutData* mOutData;
    PF_ParamDef& mParameter;
    PF_EventExtra& mExtra;
};

/// What a control does in its events. Host errors come out as result, as Exception or as plain integer.
struct ControlHandlers {
    PF_Err (*click)(const ControlEvent& event);
    PF_Err (*drag)(const ControlEvent& event);
    /// The drawing has a surface, is clipped to the frame, and shows the panel's background there.
    void (*draw)(const ControlEvent& event, const PanelDrawing& drawing);
};

/// Hands an event to the control's handlers. Events beside the control itself (its title) and others than
/// PF_Event_DO_CLICK, PF_Event_DRAG and PF_Event_DRAW return 0 with no effect.
PF_Err handleControlEvent(const ControlHandlers& handlers, PF_InData* inData, PF_OutData* outData,
                          PF_ParamDef* params[], PF_EventExtra* extra);

}  // namespace Tessavoy
