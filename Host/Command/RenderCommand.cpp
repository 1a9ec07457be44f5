#include "Host/Command/RenderCommand.h"

#include <memory>
#include <numeric>

#include "Host/Command/Crashes.h"
#include "Host/Command/EffectFrames.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/FrameList.h"
#include "Host/Command/Interruption.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/OutputChecks.h"
#include "Host/Command/ProgressStreams.h"
#include "Host/Command/RenderRun.h"
#include "Host/Command/RunReporter.h"
#include "Host/Command/ScriptMessages.h"

namespace TessavoyHost {
namespace {

std::vector<int> framesToRender(const RenderOptions& options, const Composition& composition) {
    if (options.frames) {
        return parseFrameList(*options.frames, composition.frameCount());
    }
    if (composition.frameCount() > mostFrames) {
        throw HostError(ExitStatus::CommandLine, "the composition has more than " + std::to_string(mostFrames) +
                                                     " frames, too many for one run; choose with --frames");
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
        checkFolder(options.output->folder());
        checkExistingFiles(*options.output, frames, options.existing);
    } else if (output.isTerminal()) {
        throw HostError(ExitStatus::CommandLine,
                        "--output: raw frames don't belong on a terminal; use a pipe or a file");
    }
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
    endAtOnce(static_cast<int>(status));
}

// What there is to do, once nothing is known to stand in the way.
struct Job {
    Project project;
    std::vector<int> frames;
    ImageSize size;  // of the pictures
};

Job prepare(const RenderOptions& options, const SceneText& scene, const ParameterTable& table,
            const OutputChannel& output) {
    Job job;
    job.project = readScene(scene, table, options.overrides, imageFileAccess(PictureCheck::Stills));
    job.frames = framesToRender(options, job.project.composition);
    job.size = pictureSize(options, *job.project.layers.at(static_cast<std::size_t>(job.project.effectLayer)));
    checkOutput(options, job.frames, output);
    return job;
}

ExitStatus renderFrames(const RenderOptions& options, const Job& job, const ParameterTable& table,
                        EffectInstance& instance, OutputChannel& output, ProgressStreams& streams) {
    const auto progress = streams.makeProgress();
    RunReporter reporter(static_cast<int>(job.frames.size()), *progress);
    tellScriptProblem(options, table, instance, reporter);
    for (const auto& broken : instance.host().broken()) {
        reporter.note("the module: " + broken);
    }
    EffectFrames work(instance, options, options.depth.value_or(options.output->usualDepth()), job.size, output);
    const InterruptionWatch watch;
    guardFrames();
    const RunEnvironment environment{interruptions, endProcess, [&streams] { streams.settle(); }};
    return RenderRun(settingsFor(options, job.frames), work, reporter, environment).run();
}

}  // namespace

ExitStatus renderScene(const RenderOptions& options, OutputChannel& output) {
    ProgressStreams streams(options.progress, options.output->isStandardOutput(), output);
    const SceneText scene = loadSceneText(options.scene);
    LoadedModule module(options.module);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        const Job job = prepare(options, scene, module.table(), output);
        instance = module.host().createInstance(job.project);
        return renderFrames(options, job, module.table(), *instance, output, streams);
    });
}

}  // namespace TessavoyHost
