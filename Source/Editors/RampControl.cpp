#include "Source/Editors/RampControl.h"

#include "Source/Editors/ControlEvent.h"
#include "Source/Editors/RampDrawing.h"
#include "Source/Editors/RampEditor.h"
#include "Source/Editors/RampParameter.h"

namespace Tessavoy {

namespace {

PF_Err click(const ControlEvent& event) {
    const CheckOutRamp ramp(event.inData(), event.value());
    const RampClick result = RampEditor(*ramp, event.frame()).click(event.click());
    switch (result.effect) {
        case RampClick::Effect::Nothing:
            break;
        case RampClick::Effect::Changed:
            event.markChanged();
            break;
        case RampClick::Effect::DragStarted:
            event.startDrag(result.drag);
            event.markHandled();
            break;
    }
    return PF_Err_NONE;
}

PF_Err drag(const ControlEvent& event) {
    const CheckOutRamp ramp(event.inData(), event.value());
    event.dragWith<RampDrag>(RampEditor(*ramp, event.frame()));
    return PF_Err_NONE;
}

void draw(const ControlEvent& event, const PanelDrawing& drawing) {
    const CheckOutRamp ramp(event.inData(), event.value());
    drawRamp(drawing, *ramp, event.frame());
}

}  // namespace

PF_Err HandleRampEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra) {
    return handleControlEvent({click, drag, draw}, inData, outData, params, extra);
}

}  // namespace Tessavoy
