#include "Host/Command/CommandLine.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "Host/Command/AboutCommand.h"
#include "Host/Command/CheckCommand.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/LoadedModule.h"
#ifdef TESSAVOY_DIALOG_SCRIPTS
#include "Host/Command/BoundsCommand.h"
#include "Host/Command/EditCommand.h"
#endif
#ifdef TESSAVOY_PANEL_PICTURES
#include "Host/Command/PanelCommand.h"
#endif
#include "Host/Command/ParameterListing.h"
#include "Host/Command/RenderCommand.h"
#include "Host/Command/RenderOptions.h"
#include "Host/Command/SaveCommand.h"
#include "Host/Command/SceneSchema.h"
#include "Host/Command/StandardError.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/Nearest.h"

namespace TessavoyHost {
namespace {

std::string example(const std::string& arguments) {
    return "Example:\n  tessavoy " + arguments + "\n";
}

// The whole command line: what each subcommand takes, and what it does once all is read.
class CommandLine {
public:
    explicit CommandLine(OutputChannel& output) : mOutput(output) {
        mApp.require_subcommand(1);
        mApp.allow_windows_style_options(false);  // on Windows, too, a slash starts a path
        mApp.footer(example("render scene.json -o frames/" + namePattern()));
        addRender();
        addCheck();
        addSave();
        addBounds();
        addEdit();
        addPanel();
        addParameters();
        addSchema();
        addAbout();
    }

    ExitStatus run(int argc, const char* const* argv) {
        try {
            mApp.parse(argc, argv);
        } catch (const CLI::CallForHelp&) {
            mOutput.write(mApp.help());
            return ExitStatus::Success;
        } catch (const CLI::ParseError& error) {
            return refuse(error);
        }
        return mAction();
    }

private:
    CLI::App* addSubcommand(const std::string& name, const std::string& meaning, const std::string& arguments,
                            std::function<ExitStatus()> action) {
        CLI::App* command = mApp.add_subcommand(name, meaning);
        command->footer(example(name + arguments));
        command->callback([this, action = std::move(action)] { mAction = action; });
        return command;
    }

    void addScene(CLI::App* command) {
        command
            ->add_option_function<std::string>(
                "SCENE", [this](const std::string& value) { mOptions.scene = pathFromUtf8(value); }, "the scene file")
            ->type_name("")
            ->required();
    }

    void addOption(CLI::App* command, const RenderOption& option) {
        if (*option.value == '\0') {
            command->add_flag_callback(
                option.names, [this, take = option.take] { take(mOptions, {}); }, optionHelp(option));
            return;
        }
        auto* added = command->add_option_function<std::vector<std::string>>(
            option.names,
            [this, take = option.take](const std::vector<std::string>& values) {
                for (const auto& value : values) {
                    take(mOptions, value);
                }
            },
            optionHelp(option));
        added->type_name(option.value)->allow_extra_args(false);
        added->multi_option_policy(option.repeatable ? CLI::MultiOptionPolicy::TakeAll : CLI::MultiOptionPolicy::Throw);
        added->expected(1, option.repeatable ? CLI::detail::expected_max_vector_size : 1);
    }

    // An option of rendering that another subcommand takes, too.
    void addShared(CLI::App* command, const std::string& names) {
        for (const auto& option : renderOptions()) {
            if (option.names == names) {
                addOption(command, option);
            }
        }
    }

    void addModule(CLI::App* command) { addShared(command, "--module"); }

    void addRender() {
        auto* render =
            addSubcommand("render", "render frames", " scene.json -o frames/" + namePattern() + " --frames 0-99",
                          [this] { return renderScene(mOptions, mOutput); });
        addScene(render);
        for (const auto& option : renderOptions()) {
            addOption(render, option);
        }
        render->get_option("--output")->required();
    }

    void addCheck() {
        auto* check = addSubcommand("check", "read the scene, apply it, report what is wrong", " scene.json",
                                    [this] { return checkScene(mOptions.scene, mOptions.module, mOutput); });
        addScene(check);
        addModule(check);
    }

    void addSave() {
        auto* save = addSubcommand(
            "save", "the parameters and sequence data in their saved forms, for \"project\" in a scene",
            " scene.json -o saved.bin", [this] { return saveScene(mOptions.scene, mOptions.module, mFile); });
        addScene(save);
        save->add_option_function<std::string>(
                "-o,--output", [this](const std::string& value) { mFile = pathFromUtf8(value); },
                "the file; one that is there is replaced")
            ->type_name("FILE")
            ->required();
        addModule(save);
    }

    void addBounds() {
#ifdef TESSAVOY_DIALOG_SCRIPTS
        auto* bounds = addSubcommand("bounds", "the depth range of a frame, as the effect's dialog shows it",
                                     " scene.json --frame 12",
                                     [this] { return printBounds(mOptions.scene, mOptions.module, mFrame, mOutput); });
        addScene(bounds);
        bounds->add_option("--frame", mFrame, "the frame, from 0 (default: 0)")->type_name("N");
        addModule(bounds);
#endif
    }

    void addEdit() {
#ifdef TESSAVOY_DIALOG_SCRIPTS
        auto* edit = addSubcommand("edit", "the script of the scene in your editor ($VISUAL, $EDITOR)", " scene.json",
                                   [this] { return editScript(mOptions.scene, mOptions.module, mOutput); });
        addScene(edit);
        addModule(edit);
#endif
    }

    void addPanel() {
#ifdef TESSAVOY_PANEL_PICTURES
        auto* panel = addSubcommand("panel", "the effect's panel with its custom controls, as a picture",
                                    " scene.json -o panel.png --frame 12 --all",
                                    [this] { return drawPanel(mOptions, mPanelOptions, mOutput); });
        addScene(panel);
        panel->add_option("-o,--output", mPanelOptions.output, "output file, .png; #### takes the frame number")
            ->type_name("FILE")
            ->required();
        panel->add_flag("--all", mPanelOptions.view.opensAll, "open every group and every control");
        panel->add_option("--frame", mPanelOptions.frame, "the frame whose values are shown (default: 0)")
            ->type_name("N");
        panel->add_option("--width", mPanelOptions.view.width, "width in pixels (default: 480)")
            ->type_name("W")
            ->check(CLI::Range(leastPanelWidth, mostPanelWidth));
        for (const char* shared : {"--existing", "--set", "--script", "--module"}) {
            addShared(panel, shared);
        }
#endif
    }

    ExitStatus printFromModule(const std::function<std::string(const ParameterTable&)>& text) {
        LoadedModule module(mOptions.module);
        return decideStatus([&] {
            mOutput.write(text(module.table()));
            return ExitStatus::Success;
        });
    }

    void addParameters() {
        auto* parameters =
            addSubcommand("parameters", "every parameter: id, index, disk id, type, label, range, default, popup texts",
                          " --json", [this] { return printFromModule(mListing); });
        auto* json = parameters->add_flag_callback(
            "--json", [this] { mListing = parametersAsJson; }, "as JSON");
        parameters
            ->add_flag_callback(
                "--markdown", [this] { mListing = parametersAsMarkdown; }, "as a Markdown table")
            ->excludes(json);
        addModule(parameters);
    }

    void addSchema() {
        auto* schema =
            addSubcommand("schema", "a JSON Schema of scene files, for editors", " > scene.schema.json", [this] {
                return printFromModule([](const ParameterTable& table) { return sceneSchema(table).dump(2) + '\n'; });
            });
        addModule(schema);
    }

    void addAbout() {
        auto* about = addSubcommand("about", "name, version, flags, OpenGL driver, libraries", "",
                                    [this] { return printAbout(mOptions.module, mOutput); });
        addModule(about);
    }

    ExitStatus refuse(const CLI::ParseError& error) const {
        const auto chosen = mApp.get_subcommands();
        const CLI::App& command = chosen.empty() ? mApp : *chosen.back();
        writeStandardError("tessavoy: " + wordsFor(error, chosen.empty()) + suggestion(command) + "\nRun 'tessavoy " +
                           (chosen.empty() ? "" : command.get_name() + ' ') + "--help' for what can be said.\n");
        return ExitStatus::CommandLine;
    }

    // Arguments that were not understood are named in the order in which they stand.
    std::string wordsFor(const CLI::ParseError& error, bool lacksSubcommand) const {
        const auto rest = mApp.remaining(true);
        const bool isExtra = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
        if (rest.empty() || (!isExtra && !lacksSubcommand)) {
            return error.what();
        }
        if (lacksSubcommand && !rest.front().starts_with('-')) {
            return "there is no subcommand \"" + rest.front() + '"';
        }
        return "not expected: " + CLI::detail::join(rest, " ");
    }

    // For the first argument that was not understood.
    std::string suggestion(const CLI::App& command) const {
        const auto rest = mApp.remaining(true);
        if (rest.empty()) {
            return {};
        }
        std::vector<std::string> known;
        for (const auto* option : command.get_options()) {
            for (const auto& name : option->get_lnames()) {
                known.push_back("--" + name);
            }
        }
        for (const auto* subcommand : command.get_subcommands(nullptr)) {
            known.push_back(subcommand->get_name());
        }
        return didYouMean(rest.front(), known);
    }

    OutputChannel& mOutput;
    RenderOptions mOptions;
    std::filesystem::path mFile;      // that a command writes, other than frames
    [[maybe_unused]] int mFrame = 0;  // of `bounds`
#ifdef TESSAVOY_PANEL_PICTURES
    PanelOptions mPanelOptions;
#endif
    std::function<std::string(const ParameterTable&)> mListing = parametersAsText;
    std::function<ExitStatus()> mAction;
    CLI::App mApp{"Renders scenes with the Tessavoy effect.", "tessavoy"};
};

}  // namespace

ExitStatus runCommandLine(int argc, const char* const* argv, OutputChannel& output) {
    return statusOf([&] { return CommandLine(output).run(argc, argv); });
}

}  // namespace TessavoyHost
