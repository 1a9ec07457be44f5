#include "Host/Command/EditCommand.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Host/Command/ExitGuard.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/ScriptEditor.h"
#include "Host/Command/ScriptMessages.h"
#include "Host/Command/StandardError.h"
#include "Host/Dialogs/DialogScript.h"
#include "Host/Dialogs/InterpreterText.h"
#include "Host/Drawing/PanelReader.h"
#include "Host/ErrorTexts.h"
#include "Host/ImageFiles/AtomicFile.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/SceneFile.h"
#include "Host/Scene/SceneScriptText.h"
#include "Host/SequenceBlock.h"

namespace TessavoyHost {
namespace {

// What ends the text in the dialog's own script.
struct Obstacle {
    std::string_view bytes;
    std::string_view name;
    std::string_view remedy;
};
constexpr Obstacle obstacles[] = {
    {"'", "a single quote", "write texts in double quotes"},
    {"\xE2\x80\xA8", "a line separator (U+2028)", "take it out"},
    {"\xE2\x80\xA9", "a paragraph separator (U+2029)", "take it out"},
};

// From 1.
long lineOf(const std::string& text, std::size_t place) {
    return 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n');
}

// A click into the control, as the panel sends it.
CommandResult clickControl(EffectInstance& instance, int parameter) {
    PanelReader panel(instance);
    PF_EventExtra event = panel.eventOf(PF_Event_DO_CLICK, parameter, PF_Rect{});
    event.u.do_click.num_clicks = 1;
    return instance.panelEvent(event, 0);
}

// Over a link the file that it leads to; with the permissions that were there.
void replaceFile(const std::filesystem::path& path, const std::string& text) {
    const auto file = std::filesystem::canonical(path);
    const auto permissions = std::filesystem::status(file).permissions();
    AtomicFile writer(file);
    writer.write(text.data(), text.size());
    writer.commit();
    std::filesystem::permissions(file, permissions);
}

// The script of one scene, from its file through the effect and back.
class ScriptEdit {
public:
    ScriptEdit(const SceneText& scene, LoadedModule& module, const Project& project, OutputChannel& output)
        : mScene(scene),
          mModule(module),
          mProject(project),
          mOutput(output),
          mSource(scriptSourceOf(project, scene.file)),
          mEditor(project.script, output),
          mInstance(module.host().createInstance(project)) {}

    ExitStatus run() {
        openDialog();
        if (const auto& cancelled = mEditor.cancelled()) {
            throwUnlessSuccess(*cancelled);
            writeStandardError(mSource.name + ": nothing was changed: " + cancelled->reason + '\n');
            return cancelled->status;
        }
        const std::string script = scriptIn(mInstance->flattenedSequenceData());
        store(script);
        mOutput.write(mSource.name + ": stored\n");
        return checkStored(script);
    }

private:
    void openDialog() {
        const auto index = mModule.table().index("Script");
        if (!index) {
            throw HostError(ExitStatus::Module, "the module has no parameter \"Script\"");
        }
        serveDialogs(mModule.host().services(), mEditor);
        const CommandResult result = clickControl(*mInstance, *index);
        mModule.host().services().hooks.runScript = nullptr;
        for (const std::string& broken : result.broken) {
            writeStandardError("tessavoy: the module: " + broken + '\n');
        }
        if (result.error != PF_Err_NONE) {
            failed(result);
        }
        if (!mEditor.asked()) {
            throw HostError(ExitStatus::Module, "the effect opens no dialog for the script; " +
                                                    std::string(errorText(PF_Err_BAD_CALLBACK_PARAM).remedy));
        }
    }

    // The dialog's script could not be run, or the effect could not take what came of it.
    [[noreturn]] void failed(const CommandResult& result) {
        const std::string reason =
            result.failure.empty() ? failureOf("the dialog", result.error, result.message) : result.failure;
        const bool isScripts = !mEditor.asked() && !whatDialogsCantHold().empty();
        throw HostError(isScripts ? ExitStatus::Scene : ExitStatus::Module,
                        mSource.name + ": nothing was changed: " + (isScripts ? whatDialogsCantHold() + ": " : "") +
                            reason + mEditor.keepText());
    }

    // Why the effect's dialog can't be opened on the script that is stored; empty where nothing is known against it.
    std::string whatDialogsCantHold() const {
        const std::string& script = mProject.script;
        for (const Obstacle& obstacle : obstacles) {
            const std::size_t place = script.find(obstacle.bytes);
            if (place != std::string::npos) {
                return "line " + std::to_string(lineOf(script, place)) + " has " + std::string(obstacle.name) +
                       ", which the effect's dialog can't hold; " + std::string(obstacle.remedy) +
                       ", in another editor this once";
            }
        }
        return isUtf8(script) ? "" : "the script is not UTF-8; save it so in another editor";
    }

    void throwUnlessSuccess(const ScriptEditor::Cancelled& cancelled) const {
        if (cancelled.status != ExitStatus::Success) {
            const std::string cause = cancelled.status == ExitStatus::Scene ? whatDialogsCantHold() : "";
            throw HostError(cancelled.status, mSource.name + ": nothing was changed: " + cancelled.reason +
                                                  (cause.empty() ? "" : "; " + cause));
        }
    }

    void store(const std::string& script) {
        try {
            if (mProject.scriptFile.empty()) {
                replaceFile(mScene.file, withScriptText(mScene.json, script));
            } else {
                replaceFile(mProject.scriptFile, script);
            }
        } catch (const std::exception& error) {
            throw HostError(ExitStatus::Scene, error.what() + mEditor.keepText());
        }
    }

    // What the user should know of the new script, and the status for it.
    ExitStatus checkStored(const std::string& script) {
        for (const Obstacle& obstacle : obstacles) {
            if (script.find(obstacle.bytes) != std::string::npos) {
                writeStandardError(mSource.name + ": the script has " + std::string(obstacle.name) +
                                   ", with which the effect's dialog won't open again; " +
                                   std::string(obstacle.remedy) + '\n');
            }
        }
        const auto problem = scriptProblem(*mInstance, mModule.table(), {mSource.name, script});
        if (problem) {
            throw HostError(ExitStatus::Scene, *problem);
        }
        return ExitStatus::Success;
    }

    const SceneText& mScene;
    LoadedModule& mModule;
    const Project& mProject;
    OutputChannel& mOutput;
    const ScriptSource mSource;
    ScriptEditor mEditor;
    std::unique_ptr<EffectInstance> mInstance;
};

}  // namespace

ExitStatus editScript(const std::filesystem::path& scene, const std::filesystem::path& modulePath,
                      OutputChannel& output) {
    const SceneText text = loadSceneText(scene);
    LoadedModule module(modulePath);
    Project project;
    std::optional<ScriptEdit> edit;
    return decideStatus([&] {
        project = readScene(text, module.table(), {}, imageFileAccess());
        edit.emplace(text, module, project, output);
        guardWork();
        return edit->run();
    });
}

}  // namespace TessavoyHost
