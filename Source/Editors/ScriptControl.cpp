#include "Source/Editors/ScriptControl.h"

#include "Source/Editors/PanelDrawing.h"
#include "Source/Editors/ScriptDialog.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/HostMemory.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Sequence.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

namespace Tessavoy {

namespace {

constexpr const char* hint = "Click on the text to edit the Lua script.";
constexpr const char* errorPrefix = "Error:\r\n";
constexpr float margin = 5;   ///< between the frame's left edge and the text, pixels
constexpr float leading = 5;  ///< between two lines, pixels

std::string bodyOf(const SequenceData* record) {
    if (record == nullptr) {
        return {};
    }
    const std::string error = scriptErrorOf(*record);
    return error.empty() ? record->script : errorPrefix + error;
}

/// Takes the first line off the text, with its line end: LF, CR or both.
std::string_view takeLine(std::string_view& text) {
    const std::size_t length = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(length);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
    return line;
}

void draw(const PanelDrawing& drawing, const PF_Rect& frame, std::string_view body) {
    const float fontSize = drawing.fontSize();
    const auto brush = drawing.newBrush(drawing.themeColor(PF_App_Color_TEXT));
    const auto font = drawing.newFont(fontSize);
    const PanelDrawing::ClipScope clip(drawing, frame);
    DRAWBOT_PointF32 place = {static_cast<float>(frame.left) + margin, static_cast<float>(frame.top) + fontSize};
    drawing.drawText(brush, font, hint, place);
    while (!body.empty()) {
        place.y += fontSize + leading;
        drawing.drawText(brush, font, takeLine(body), place);
    }
}

PF_Err handleDraw(PF_InData* inData, PF_OutData* outData, PF_EventExtra* extra) {
    const PanelDrawing drawing(inData, outData, extra->contextH);
    if (drawing.hasSurface() && drawing.supportsText()) {
        draw(drawing, extra->effect_win.current_frame, bodyOf(sequenceData(inData)));
    }
    extra->evt_out_flags |= PF_EO_HANDLED_EVENT;
    return PF_Err_NONE;
}

struct FreeHostBlock {
    PF_InData* inData;
    void operator()(char* block) const { HostFree(inData, block); }
};

PF_Err markProjectChanged(PF_InData* inData, PF_OutData* outData) {
    SuiteHandler suites(inData->pica_basicP);
    const PF_Err error = suites.get<PF_AdvAppSuite2>().PF_SetProjectDirty();
    outData->out_flags |= PF_OutFlag_FORCE_RERENDER | PF_OutFlag_REFRESH_UI;
    return error;
}

/// A text that came out of a dialog with an error changes the project, but is not stored. The first error counts.
PF_Err editScript(PF_InData* inData, PF_OutData* outData) {
    SequenceData* record = sequenceData(inData);
    const std::string script = record == nullptr ? std::string() : record->script;
    char* text = nullptr;
    const PF_Err dialogError = EditScriptDialog(inData, script.c_str(), &text);
    const std::unique_ptr<char, FreeHostBlock> newScript(text, {inData});
    if (newScript == nullptr) {
        return dialogError;
    }
    const PF_Err markError = markProjectChanged(inData, outData);
    if (dialogError != PF_Err_NONE) {
        return dialogError;
    }
    const PF_Err storeError = validateScript(record, inData, newScript.get());
    return firstError(markError, storeError);
}

}  // namespace

PF_Err HandleScriptEvent(PF_InData* inData, PF_OutData* outData, PF_ParamDef*[], PF_EventExtra* extra) {
    switch (extra->e_type) {
        case PF_Event_DRAW:
            return handleDraw(inData, outData, extra);
        case PF_Event_DO_CLICK:
            return editScript(inData, outData);
        default:
            return PF_Err_NONE;
    }
}

}  // namespace Tessavoy
