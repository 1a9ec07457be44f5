// Whole frames through the host, split into their stages: 1920 x 1080 pixels of flat squares with three noises (size,
// rotation, hue). Counters are milliseconds a frame. The GL is asked to finish at the end of each stage that feeds it,
// so that a stage pays for its own work; a frame that is not watched overlaps a little more.

#include "Host/EffectHost.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/ParameterIds.h"
#include "Source/Shell/EffectMain.h"
#include "Source/Shell/FrameStages.h"

#include <benchmark/benchmark.h>
#include <glbinding/gl33core/gl.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <string>

namespace {

using namespace TessavoyHost;
using Tessavoy::FrameStage;
using Clock = std::chrono::steady_clock;

constexpr int width = 1920;
constexpr int height = 1080;
constexpr std::array<const char*, 7> stageNames = {"1_host", "2_snapshot", "3_prepare", "4_evaluate",
                                                   "5_emit", "6_draw",     "7_read"};

/// Milliseconds spent in each stage since the last reset.
struct StageClock {
    std::array<double, stageNames.size()> milliseconds{};
    Clock::time_point last;

    void restart() { last = Clock::now(); }

    void end(FrameStage stage) {
        if (stage == FrameStage::Preparation || stage == FrameStage::Drawing) {
            gl33core::glFinish();
        }
        const Clock::time_point now = Clock::now();
        milliseconds[static_cast<std::size_t>(stage)] += std::chrono::duration<double, std::milli>(now - last).count();
        last = now;
    }
};
StageClock stageClock;

/// A transparent layer of the picture's size: what the effect replaces.
class EmptyLayer final : public FrameSource {
public:
    EmptyLayer() : mImage(std::make_shared<Image>()) {
        *std::const_pointer_cast<Image>(mImage) = {::width, ::height, SampleFormat::UInt8,
                                                   std::vector<std::byte>(std::size_t{4} * ::width * ::height)};
    }
    std::string name() const override { return "Paper"; }
    int width() const override { return ::width; }
    int height() const override { return ::height; }
    double start() const override { return 0; }
    double duration() const override { return 1; }
    std::shared_ptr<const Image> frameAt(double) override { return mImage; }

private:
    std::shared_ptr<const Image> mImage;
};

void set(Project& project, const std::string& id, ParameterValue value) {
    const auto& ids = parameterIds();
    const auto found = std::find(ids.begin(), ids.end(), id);
    project.parameters[static_cast<int>(found - ids.begin()) + 1] = {{{0.0, std::move(value), Ease::Linear}}};
}

Project squares(int side, bool multisampled, bool feather) {
    Project project;
    project.composition = {width, height, {25, 1}, 1.0};
    project.layers.push_back(std::make_shared<EmptyLayer>());
    set(project, "CenterPos", Point2{width / 2.0, height / 2.0});
    set(project, "CountX", double(side));
    set(project, "CountY", double(side));
    set(project, "GridWidth", double(width));
    set(project, "GridHeight", double(height));
    set(project, "InstanceSize.Value", 0.2 * height / side);
    set(project, "InstanceSize.Noise.Multiplier", 0.4 * height / side);
    set(project, "InstanceRotation.Noise.Multiplier", 180.0);
    set(project, "InstanceColor.Color", ColorValue{60, 130, 240, 255});
    set(project, "InstanceColor.Hue.Noise.Multiplier", 200.0);
    set(project, "ShapeFeatherPixels", feather ? 1.0 : 0.0);
    set(project, "MSAA", multisampled ? 2.0 : 1.0);
    return project;
}

FrameRequest fullRequest() {
    FrameRequest request;
    request.downsampleX = request.downsampleY = {1, 1};
    return request;
}

void reportStages(benchmark::State& state) {
    for (std::size_t i = 0; i < stageNames.size(); ++i) {
        state.counters[stageNames[i]] =
            benchmark::Counter(stageClock.milliseconds[i], benchmark::Counter::kAvgIterations);
    }
}

/// The first frame of a process: the module set up, then 100 x 100 squares with a feather, whose stages find no shader
/// compiled and no memory touched. Means something only when it is run alone.
void firstFrame(benchmark::State& state) {
    stageClock = {};
    double setUp = 0;
    for (auto _ : state) {
        const Clock::time_point begin = Clock::now();
        EffectHost host(ModuleEntryPoints{PluginDataEntryFunction, EffectMain});
        const auto instance = host.createInstance(squares(100, state.range(0) != 0, true));
        setUp = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        Tessavoy::observeFrameStages([](FrameStage stage) { stageClock.end(stage); });
        stageClock.restart();
        const FrameResult frame = instance->renderFrame(fullRequest());
        if (frame.error != PF_Err_NONE) {
            state.SkipWithError(frame.message.c_str());
            break;
        }
        Tessavoy::observeFrameStages(nullptr);
    }
    state.counters["0_set_up"] = setUp;
    reportStages(state);
}
BENCHMARK(firstFrame)->ArgName("msaa")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();

void wholeFrame(benchmark::State& state) {
    EffectHost host(ModuleEntryPoints{PluginDataEntryFunction, EffectMain});
    const auto instance =
        host.createInstance(squares(static_cast<int>(state.range(0)), state.range(1) != 0, state.range(2) != 0));
    const FrameRequest request = fullRequest();
    instance->renderFrame(request);  // from the second frame on, all memory has been touched

    stageClock = {};
    Tessavoy::observeFrameStages([](FrameStage stage) { stageClock.end(stage); });
    FrameResult frame;
    for (auto _ : state) {
        stageClock.restart();
        frame = instance->renderFrame(request);
        if (frame.error != PF_Err_NONE) {
            state.SkipWithError(frame.message.c_str());
            break;
        }
    }
    Tessavoy::observeFrameStages(nullptr);
    reportStages(state);
}
BENCHMARK(wholeFrame)
    ->ArgNames({"side", "msaa", "feather"})
    ->ArgsProduct({{100, 320, 1000}, {0, 1}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

/// Encoding and writing the picture of 320 x 320 squares, which the command does beside the next frame.
void encodeFrame(benchmark::State& state) {
    EffectHost host(ModuleEntryPoints{PluginDataEntryFunction, EffectMain});
    const auto instance = host.createInstance(squares(320, false, true));
    const FrameResult frame = instance->renderFrame(fullRequest());
    const auto file = std::filesystem::temp_directory_path() / "tessavoy-benchmark.png";
    for (auto _ : state) {
        writeImage(file, FileFormat::Png, frame.output.view(), {0, "benchmark"}, static_cast<int>(state.range(0)));
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(file));
    std::filesystem::remove(file);
}
BENCHMARK(encodeFrame)->ArgName("level")->Arg(0)->Arg(1)->Arg(6)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Reading all parameters through the host; must stay within 0.5 ms of the bound below.
void snapshotThroughHost(benchmark::State& state) {
    EffectHost host(ModuleEntryPoints{PluginDataEntryFunction, EffectMain});
    const auto instance = host.createInstance(squares(1, false, false));
    FrameRequest request = fullRequest();
    request.region = Region{0, 0, 1, 1};
    instance->renderFrame(request);
    Tessavoy::observeFrameStages([](FrameStage stage) { stageClock.end(stage); });
    for (auto _ : state) {
        stageClock = {};
        stageClock.restart();
        instance->renderFrame(request);
        state.SetIterationTime(stageClock.milliseconds[1] / 1000);
    }
    Tessavoy::observeFrameStages(nullptr);
}
BENCHMARK(snapshotThroughHost)->UseManualTime()->Unit(benchmark::kMicrosecond);

PF_Err emptyCheckout(PF_ProgPtr, PF_ParamIndex, A_long, A_long, A_u_long, PF_ParamDef*) {
    return PF_Err_NONE;
}

/// The bound: as many calls of an empty callback as the panel has parameters.
void emptyCallbacks(benchmark::State& state) {
    auto callback = emptyCheckout;
    benchmark::DoNotOptimize(callback);
    PF_ParamDef record;
    for (auto _ : state) {
        for (int i = 0; i < 997; ++i) {
            benchmark::DoNotOptimize(callback(nullptr, i, 0, 1, 25, &record));
        }
    }
}
BENCHMARK(emptyCallbacks)->Unit(benchmark::kMicrosecond);

}  // namespace
