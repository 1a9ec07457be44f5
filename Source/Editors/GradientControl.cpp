#include "Source/Editors/GradientControl.h"

#include "Source/Editors/ControlEvent.h"
#include "Source/Editors/GradientDrawing.h"
#include "Source/Editors/GradientEditor.h"
#include "Source/Editors/GradientParameter.h"

namespace Tessavoy {

namespace {

constexpr const char* pickerTitle = "Gradient Color";

/// Asks for another colour of the point at a position, in the gradient's own numbers as the bar shows them.
PF_Err pickColor(const ControlEvent& event, GradientEditor& editor, const GradientPoint& point, float position) {
    constexpr PF_Boolean withMonitorTransform = 0;
    SuiteHandler suites(event.inData()->pica_basicP);
    const PF_PixelFloat shown = {point.a, point.r, point.g, point.b};
    PF_PixelFloat picked = shown;
    const PF_Err error =
        suites.get<PFAppSuite4>().PF_AppColorPickerDialog(pickerTitle, &shown, withMonitorTransform, &picked);
    if (error == PF_Interrupt_CANCEL) {
        event.markHandled();
        return PF_Err_NONE;
    }
    if (error == PF_Err_NONE && editor.recolor(position, picked.red, picked.green, picked.blue)) {
        event.markChanged();
    }
    return error;
}

PF_Err click(const ControlEvent& event) {
    const CheckOutGradient gradient(event.inData(), event.value());
    GradientEditor editor(*gradient, event.frame());
    const GradientClick result = editor.click(event.click());
    switch (result.effect) {
        case GradientClick::Effect::Nothing:
            break;
        case GradientClick::Effect::Changed:
            event.markChanged();
            break;
        case GradientClick::Effect::DragStarted:
            event.startDrag(result.drag);
            event.markHandled();
            break;
        case GradientClick::Effect::ColorWanted:
            return pickColor(event, editor, gradient->points.at(result.position), result.position);
    }
    return PF_Err_NONE;
}

PF_Err drag(const ControlEvent& event) {
    const CheckOutGradient gradient(event.inData(), event.value());
    event.dragWith<GradientDrag>(GradientEditor(*gradient, event.frame()));
    return PF_Err_NONE;
}

void draw(const ControlEvent& event, const PanelDrawing& drawing) {
    const CheckOutGradient gradient(event.inData(), event.value());
    drawGradient(drawing, *gradient, event.frame());
}

}  // namespace

PF_Err HandleGradientEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef* params[], PF_EventExtra* extra) {
    return handleControlEvent({click, drag, draw}, inData, outData, params, extra);
}

}  // namespace Tessavoy
