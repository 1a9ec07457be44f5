#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Drawing/PanelReader.h"
#include "Host/ParameterRecord.h"
#include "Host/SequenceBlock.h"
#include "Tests/Module/FailingCalls.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {

// Names of custom slots, by the disk ids of the parameters that carry them.
using SlotNames = std::map<std::int32_t, std::string>;

// The panel of an instance of the built module, whose parameters are named by their ids.
class PanelFixture : public ModuleFixture {
protected:
    // Instances of fourSquaresScene.
    std::unique_ptr<EffectInstance> instanceNaming(const SlotNames& names) {
        ModuleScene scene = fourSquaresScene();
        scene.project.slotNames = names;
        return instanceOf(scene);
    }
    std::unique_ptr<EffectInstance> instanceWithScript(const std::string& script) {
        ModuleScene scene = fourSquaresScene();
        scene.project.script = script;
        return instanceOf(scene);
    }

    // The script that the instance would save.
    static std::string scriptOf(EffectInstance& instance) { return scriptIn(instance.flattenedSequenceData()); }

    // What the dialogs answer; each shown script is kept.
    void answerDialogs(const std::string& value) {
        host().services().hooks.runScript = [this, value](const std::string& script) {
            shownScripts.push_back(script);
            return value;
        };
    }

    static PanelState::Item itemOf(const EffectInstance& instance, std::string_view id) {
        return instance.panel().at(parameterIndexOf(id));
    }
    static bool isShown(const EffectInstance& instance, std::string_view id) { return !itemOf(instance, id).hidden; }

    static CommandResult update(EffectInstance& instance) { return instance.command(PF_Cmd_UPDATE_PARAMS_UI, 0); }

    static CommandResult change(EffectInstance& instance, std::string_view id) {
        PF_UserChangedParamExtra extra{parameterIndexOf(id)};
        return instance.command(PF_Cmd_USER_CHANGED_PARAM, 0, &extra);
    }

    static PF_EventExtra clickOnScript() {
        PF_EventExtra event{};
        event.e_type = PF_Event_DO_CLICK;
        event.effect_win.index = parameterIndexOf("Script");
        return event;
    }
    static CommandResult click(EffectInstance& instance) {
        PF_EventExtra event = clickOnScript();
        return instance.command(PF_Cmd_EVENT, 0, &event);
    }

    // The same commands by a host that keeps no sequence data for the instance.
    static CommandResult commandWithoutSequenceData(EffectInstance& instance, PF_Cmd command, void* extra) {
        CommandContext context(instance.host(), &instance, command, {});
        return runBare(context, extra);
    }
    // And that has this in place of the module's own data, where the plug-in id is.
    static CommandResult commandWithGlobalData(EffectInstance& instance, PF_Cmd command, void* extra,
                                               PF_Handle globalData) {
        CommandContext context(instance.host(), &instance, command, {});
        context.in.global_data = globalData;
        return runBare(context, extra);
    }

    // The lines of text that the script's control draws.
    static std::vector<std::string> linesDrawnBy(EffectInstance& instance) {
        TextRecorder recorder;
        expectGood(PanelReader(instance).draw(parameterIndexOf("Script"), {10, 200, 160, 350}, recorder));
        std::vector<std::string> lines;
        for (const DrawnText& text : recorder.texts())
            lines.push_back(text.text);
        return lines;
    }

    // The command needs the plug-in id, says so, and showed no dialog.
    void expectNoPluginId(const CommandResult& result) const {
        EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
        EXPECT_EQ(result.message, "Failed to get global data while constructing an AEGP effect");
        EXPECT_THAT(shownScripts, testing::IsEmpty());
    }

    std::vector<std::string> shownScripts;

private:
    static CommandResult runBare(CommandContext& context, void* extra) {
        ParameterArray values(context);
        context.run(values.data(), nullptr, extra);
        return context.finish();
    }
};

}  // namespace TessavoyHost
