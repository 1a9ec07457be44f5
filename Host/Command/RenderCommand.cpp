#include "Host/Command/RenderCommand.h"

#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <optional>

#include "Host/Command/EffectFrames.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/FrameList.h"
#include "Host/Command/Interruption.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/OutputChecks.h"
#include "Host/Command/Progress.h"
#include "Host/Command/RenderRun.h"
#include "Host/Command/RunReporter.h"
#include "Host/Command/ScriptMessages.h"
#include "Host/Command/StandardError.h"

namespace TessavoyHost {
namespace {

// Held as a list, with what was said of each; more is surely a mistake in the duration.
constexpr double mostFrames = 1e7;

std::vector<int> framesToRender(const RenderOptions& options, const Composition& composition) {
    if (options.frames) {
        return parseFrameList(*options.frames, composition.frameCount());
    }
    if (composition.duration * composition.frameRate.value() > mostFrames) {
        throw HostError(ExitStatus::CommandLine,
                        "the composition has more than 10000000 frames, too many for one run; choose with --frames");
    }
    std::vector<int> frames(static_cast<std::size_t>(composition.frameCount()));
    std::iota(frames.begin(), frames.end(), 0);
    return frames;
}

ImageSize pictureSize(const RenderOptions& options, const FrameSource& layer) {
    const ImageSize whole{downsampled(layer.width(), options.downsampleX),
                          downsampled(layer.height(), options.downsampleY)};
    if (!options.region) {
        return whole;
    }
    checkRegion(*options.region, whole.width, whole.height);
    return {options.region->width, options.region->height};
}

void checkOutput(const RenderOptions& options, const std::vector<int>& frames, const OutputChannel& output) {
    checkNumbering(*options.output, frames);
    if (!options.output->isStandardOutput()) {
        checkFolder(*options.output);
        checkExistingFiles(*options.output, frames, options.existing);
    } else if (output.isTerminal()) {
        throw HostError(ExitStatus::CommandLine,
                        "--output: raw frames don't belong on a terminal; use a pipe or a file");
    }
}

// Objects on standard error are to be parsed, so nothing else may stand between them.
bool errorIsForObjects(const RenderOptions& options) {
    return options.progress == ProgressMode::Json && options.output->isStandardOutput();
}

// A reader of the progress that has gone away does not end the run.
TextSink jsonSink(const RenderOptions& options, OutputChannel& output) {
    if (options.output->isStandardOutput()) {
        return writeStandardError;
    }
    return [&output](const std::string& text) {
        try {
            output.write(text);
        } catch (const HostError&) {
        }
    };
}

std::unique_ptr<Progress> progressFor(const RenderOptions& options, OutputChannel& output) {
    ProgressOutput progress;
    progress.error = errorIsForObjects(options) ? TextSink([](const std::string&) {}) : writeStandardError;
    progress.json = jsonSink(options, output);
    progress.errorIsTerminal = ::isatty(STDERR_FILENO) == 1;
    progress.seconds = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    };
    return makeProgress(options.progress, progress);
}

RunSettings settingsFor(const RenderOptions& options, const std::vector<int>& frames) {
    RunSettings settings;
    settings.frames = frames;
    settings.threads = options.threads;
    settings.order = options.output->isStandardOutput() ? FrameWriter::Order::ByPosition : FrameWriter::Order::Any;
    settings.onError = options.onError;
    settings.strict = options.strict;
    settings.frameTimeout = options.frameTimeout;
    return settings;
}

// A script that doesn't compile is told once; the frames are rendered without it, unless that is not wanted.
void tellScriptProblem(const RenderOptions& options, const ParameterTable& table, EffectInstance& instance,
                       RunReporter& reporter) {
    const auto problem = scriptProblem(instance, table, scriptSourceOf(instance.project(), options.scene));
    if (problem && options.strict) {
        throw HostError(ExitStatus::Scene, *problem);
    }
    if (problem) {
        reporter.note(*problem + "; the frames are rendered without the script");
    }
}

[[noreturn]] void endProcess(ExitStatus status) {
    std::_Exit(static_cast<int>(status));
}

ExitStatus renderFrames(const RenderOptions& options, const std::vector<int>& frames, ImageSize size,
                        LoadedModule& module, const Project& project, std::unique_ptr<EffectInstance>& instance,
                        OutputChannel& output) {
    const auto progress = progressFor(options, output);
    RunReporter reporter(static_cast<int>(frames.size()), *progress);
    std::optional<StrayLines> strayLines;
    if (errorIsForObjects(options)) {
        strayLines.emplace([&reporter](const std::string& line) { reporter.note(line); });
    }
    instance = module.host().createInstance(project);
    tellScriptProblem(options, module.table(), *instance, reporter);
    for (const auto& broken : instance->host().broken()) {
        reporter.note("the module: " + broken);
    }
    EffectFrames work(*instance, options, options.depth.value_or(options.output->usualDepth()), size, output);
    const InterruptionWatch watch;
    const auto settle = [&strayLines] {
        if (strayLines) {
            strayLines->end();
        }
    };
    guardFrames();
    return RenderRun(settingsFor(options, frames), work, reporter, {interruptions, endProcess, settle}).run();
}

}  // namespace

ExitStatus renderScene(const RenderOptions& options, OutputChannel& output) {
    const SceneText scene = loadSceneText(options.scene);
    LoadedModule module(options.module);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        const Project project = readScene(scene, module.table(), options.overrides, imageFileAccess());
        const auto frames = framesToRender(options, project.composition);
        const auto& layer = *project.layers.at(static_cast<std::size_t>(project.effectLayer));
        const ImageSize size = pictureSize(options, layer);
        checkOutput(options, frames, output);
        // Nothing is known to stand in the way now.
        return renderFrames(options, frames, size, module, project, instance, output);
    });
}

}  // namespace TessavoyHost
