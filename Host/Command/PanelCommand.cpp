#include "Host/Command/PanelCommand.h"

#include <memory>
#include <optional>

#include "Host/Command/ExitGuard.h"
#include "Host/Command/FrameList.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/OutputChecks.h"
#include "Host/Command/StandardError.h"
#include "Host/Command/Version.h"
#include "Host/Drawing/CairoSurface.h"
#include "Host/ErrorTexts.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/Panel/PanelPainter.h"
#include "Host/Panel/PanelUser.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/SceneFile.h"
#include "Host/Theme.h"
#include "Host/WorldFromImage.h"

namespace TessavoyHost {
namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw HostError(ExitStatus::CommandLine, text);
}

OutputPattern pictureFile(const std::string& text) {
    OutputPattern pattern(text);
    if (pattern.isStandardOutput() || pattern.format() != FileFormat::Png) {
        refuse("--output: \"" + text + "\" must end in .png");
    }
    return pattern;
}

bool isThere(const std::filesystem::path& file, const PanelLayout& layout) {
    std::error_code ignored;
    if (!std::filesystem::exists(file, ignored)) {
        return false;
    }
    try {
        verifyImage(file, layout.width(), layout.height());
        return true;
    } catch (const HostError&) {
        return false;
    }
}

// The module's own view of what its panel shows.
void bringUpToDate(EffectInstance& instance, int frame) {
    const UserAction action = PanelUser(instance, frame).look();
    for (const auto& text : action.broken) {
        instance.host().noteBroken(text);
    }
    if (action.error != PF_Err_NONE) {
        throw HostError(ExitStatus::FrameFailed,
                        failureOf("bringing the panel up to date", action.error, action.message));
    }
    if (!action.message.empty()) {
        writeStandardError("tessavoy: the module: " + action.message + '\n');
    }
}

Image picture(EffectInstance& instance, int frame, const PanelLayout& layout) {
    CairoSurface surface(layout.width(), layout.height(), drawnThemeColor(PF_App_Color_PANEL_BACKGROUND));
    PanelPainter(instance, frame, surface).paint(layout);
    return surface.image();
}

void write(const std::filesystem::path& file, const Image& image, EffectInstance& instance, int frame, int pngLevel) {
    const ModuleDescription& description = instance.host().description();
    const World world = makeWorld(image, 8, {}, {});
    writeImage(file, FileFormat::Png, world.view(),
               {frame, description.name + ' ' + versionInWords(description.version)}, pngLevel);
}

}  // namespace

ExitStatus drawPanel(const RenderOptions& options, const PanelOptions& panel, OutputChannel& output) {
    const OutputPattern pattern = pictureFile(panel.output);
    const SceneText scene = loadSceneText(options.scene);
    LoadedModule module(options.module);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        const Project project = readScene(scene, module.table(), options.overrides, imageFileAccess());
        checkFrame(panel.frame, project.composition.frameCount());
        checkFolder(pattern.folder());
        checkExistingFiles(pattern, {panel.frame}, options.existing);
        instance = module.host().createInstance(project);
        guardFrames();
        const FrameCrashGuard guard(panel.frame);
        bringUpToDate(*instance, panel.frame);
        const PanelLayout layout(*instance, panel.view);
        const auto file = pattern.file(panel.frame);
        const bool keeps = options.existing == ExistingFiles::Skip && isThere(file, layout);
        if (!keeps) {
            write(file, picture(*instance, panel.frame, layout), *instance, panel.frame, options.pngLevel);
        }
        for (const auto& broken : instance->host().broken()) {
            writeStandardError("tessavoy: the module: " + broken + '\n');
        }
        output.write(utf8(file) + ": " + (keeps ? "kept, " : "") + std::to_string(layout.width()) + " x " +
                     std::to_string(layout.height()) + " pixels\n");
        return ExitStatus::Success;
    });
}

}  // namespace TessavoyHost
