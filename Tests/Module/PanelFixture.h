#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {

// The panel of an instance of the built module, whose parameters are named by their ids.
class PanelFixture : public ModuleFixture {
protected:
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

    static CommandResult click(EffectInstance& instance) {
        PF_EventExtra event{};
        event.e_type = PF_Event_DO_CLICK;
        event.effect_win.index = parameterIndexOf("Script");
        return instance.command(PF_Cmd_EVENT, 0, &event);
    }

    // A command that did its work and left nothing.
    static void expectGood(const CommandResult& result) {
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_EQ(result.message, "");
        EXPECT_FALSE(result.displayError);
        EXPECT_THAT(result.broken, testing::IsEmpty());
    }

    std::vector<std::string> shownScripts;
};

}  // namespace TessavoyHost
