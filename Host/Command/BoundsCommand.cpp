#include "Host/Command/BoundsCommand.h"

#include <memory>
#include <string>

#include "Host/Command/ExitGuard.h"
#include "Host/Command/FrameList.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/ScriptMessages.h"
#include "Host/Command/StandardError.h"
#include "Host/Dialogs/DialogScript.h"
#include "Host/ErrorTexts.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/SceneFile.h"

namespace TessavoyHost {
namespace {

constexpr const char* buttonId = "ShowZBounds";

// Keeps what stands in the fields that only show, and presses OK.
class FieldReader : public DialogUser {
public:
    DialogAnswer answer(const Dialog& dialog) override {
        for (const DialogElement& element : dialog.elements) {
            if (element.readOnly) {
                text += element.text + '\n';
            }
        }
        return {DialogButton::Ok, {}};
    }

    std::string text;
};

// The parameters that the button checks out are left to the host, as they are meant to be; everything else is told.
void tellBroken(const CommandResult& result) {
    for (const std::string& broken : result.broken) {
        if (broken.find("not given back: parameter") == std::string::npos) {
            writeStandardError("tessavoy: the module: " + broken + '\n');
        }
    }
}

CommandResult pressButton(EffectInstance& instance, int index, int frame) {
    PF_UserChangedParamExtra extra{};
    extra.param_index = index;
    return instance.command(PF_Cmd_USER_CHANGED_PARAM, frame, &extra);
}

std::string boundsText(EffectInstance& instance, const LoadedModule& module, int frame, const ScriptSource& script) {
    const auto index = module.table().index(buttonId);
    if (!index) {
        throw HostError(ExitStatus::Module, std::string("the module has no parameter \"") + buttonId + '"');
    }
    FieldReader reader;
    serveDialogs(instance.host().services(), reader);
    guardFrames();
    const FrameCrashGuard guard(frame);
    const CommandResult result = pressButton(instance, *index, frame);
    instance.host().services().hooks.runScript = nullptr;
    tellBroken(result);
    if (result.error != PF_Err_NONE) {
        const std::string what = "measuring the depths of frame " + std::to_string(frame);
        throw HostError(ExitStatus::FrameFailed, result.failure.empty()
                                                     ? what + ": " + frameFailure(result.error, result.message)
                                                     : result.failure);
    }
    if (!result.message.empty()) {
        writeStandardError("frame " + std::to_string(frame) + ": " + inUsersLines(result.message, script) + '\n');
    }
    if (reader.text.empty()) {
        throw HostError(ExitStatus::Module,
                        "the effect shows no bounds; " + std::string(errorText(PF_Err_BAD_CALLBACK_PARAM).remedy));
    }
    return reader.text;
}

}  // namespace

ExitStatus printBounds(const std::filesystem::path& scene, const std::filesystem::path& modulePath, int frame,
                       OutputChannel& output) {
    const SceneText text = loadSceneText(scene);
    LoadedModule module(modulePath);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        const Project project = readScene(text, module.table(), {}, imageFileAccess());
        checkFrame(frame, project.composition.frameCount());
        instance = module.host().createInstance(project);
        const ScriptSource script = scriptSourceOf(project, scene);
        if (const auto problem = scriptProblem(*instance, module.table(), script)) {
            writeStandardError(*problem + "; the bounds are those without the script\n");
        }
        output.write(boundsText(*instance, module, frame, script));
        return ExitStatus::Success;
    });
}

}  // namespace TessavoyHost
