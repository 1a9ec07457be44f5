#include "Host/Drawing/PanelReader.h"

#include "Host/Drawing/Drawing.h"
#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"
#include "Host/Panel/PanelLayout.h"

namespace TessavoyHost {

PanelReader::PanelReader(EffectInstance& instance, int frame) : mInstance(instance), mFrame(frame) {
    mContext.w_type = PF_Window_EFFECT;
}

bool PanelReader::drawsControl(int parameter) const {
    return TessavoyHost::drawsControl(mInstance.host(), parameter);
}

PF_EventExtra PanelReader::eventOf(PF_EventType type, int parameter, const PF_Rect& frame, const PF_Rect& title) {
    PF_EventExtra extra{};
    extra.contextH = &mContextPointer;
    extra.e_type = type;
    extra.effect_win.index = parameter;
    extra.effect_win.area = PF_EA_CONTROL;
    extra.effect_win.current_frame = frame;
    extra.effect_win.param_title_frame = title;
    return extra;
}

CommandResult PanelReader::draw(int parameter, const PF_Rect& frame, DrawingSurface& surface, const PF_Rect& title) {
    constexpr A_long bitsOfAScreen = 32;
    Drawing drawing(surface, toRegion(frame), &mContextPointer);
    PF_EventExtra extra = eventOf(PF_Event_DRAW, parameter, frame, title);
    extra.u.draw.update_rect = frame;
    extra.u.draw.depth = bitsOfAScreen;
    CommandResult result = mInstance.drawEvent(extra, mFrame, drawing);
    if (drawing.depth() > 0)
        result.broken.push_back("PF_Cmd_EVENT: " + std::to_string(drawing.depth()) + " drawing states left pushed");
    while (drawing.pop()) {
    }
    return result;
}

std::vector<DrawnText> PanelReader::textsOf(int parameter) {
    if (!drawsControl(parameter))
        return {};
    EffectHost& host = mInstance.host();
    const PF_ParamDef& definition = host.parameters().at(static_cast<std::size_t>(parameter)).definition;
    TextRecorder recorder;
    const CommandResult result = draw(parameter, {0, 0, definition.ui_width, definition.ui_height}, recorder);
    for (const std::string& text : result.broken)
        host.noteBroken(text);
    if (result.error != PF_Err_NONE)
        host.noteBroken(
            failureOf("drawing the control of parameter " + std::to_string(parameter), result.error, result.message));
    return recorder.texts();
}

}  // namespace TessavoyHost
