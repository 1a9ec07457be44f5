#include "Host/Drawing/PanelReader.h"

#include "Host/Drawing/Drawing.h"
#include "Host/EffectHost.h"
#include "Host/ErrorTexts.h"

namespace TessavoyHost {

PanelReader::PanelReader(EffectInstance& instance) : mInstance(instance) {
    mContext.w_type = PF_Window_EFFECT;
}

bool PanelReader::drawsControl(int parameter) const {
    const EffectHost& host = mInstance.host();
    const PF_ParamDef& definition = host.parameters().at(static_cast<std::size_t>(parameter)).definition;
    return (host.description().customEvents & PF_CustomEFlag_EFFECT) != 0 &&
           (definition.ui_flags & PF_PUI_CONTROL) != 0;
}

CommandResult PanelReader::draw(int parameter, const PF_Rect& frame, DrawingSurface& surface) {
    constexpr A_long bitsOfAScreen = 32;
    Drawing drawing(surface, toRegion(frame), &mContextPointer);
    PF_EventExtra extra{};
    extra.contextH = &mContextPointer;
    extra.e_type = PF_Event_DRAW;
    extra.u.draw.update_rect = frame;
    extra.u.draw.depth = bitsOfAScreen;
    extra.effect_win.index = parameter;
    extra.effect_win.area = PF_EA_CONTROL;
    extra.effect_win.current_frame = frame;
    CommandResult result = mInstance.drawEvent(extra, drawing);
    if (drawing.depth() > 0)
        result.broken.push_back("PF_Cmd_EVENT: " + std::to_string(drawing.depth()) + " drawing states left pushed");
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
