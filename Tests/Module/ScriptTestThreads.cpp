#include <atomic>
#include <thread>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using ModuleScriptThreads = ModuleFixture;

constexpr int frameCount = 16;
constexpr int threadCount = 8;

// Uses globals, tables and coroutines, and every kind of parameter that a thread could share.
constexpr const char* busyScript = R"(
sum = (sum or 0) + GetNoise(1, xPart, yPart) * 4
seen = seen or {}
seen[#seen + 1] = coroutine.wrap(function(n) return GetRandom('Dice', n, j) end)(i)
x = x + sum % 3 + seen[#seen]
y = y + GetFloat(1) * math.sin(time * 6) + select(2, GetPath(1, xPart)) / 20
r, g, b = GetGradient(1, yPart)
g = GetRamp(1, xPart) * g
b = (GetLayer(1, xPart, yPart))
radius = radius * (0.5 + GetDistToCam(x, y, z) % 1)
)";

ModuleScene busyScene() {
    ModuleScene scene = richScene(64, 48);
    scene.layer(1, std::make_shared<FakeProject::StillLayer>("Map", FakeProject::solidImage(8, 8, 90, 200, 30)));
    scene.set("Noise.Custom1.Multiplier", 2).set("Noise.Custom1.Scale", 300).set("Float.Custom1", 3);
    scene.set("Random.Custom2.Max", 4).set("Path.Custom1", MaskReference{1});
    Mask mask{"Line", false, {{{5, 5}, {}, {10, 3}}, {{50, 40}, {-5, -20}, {}}, {{60, 8}, {}, {}}}};
    scene.project.masks = {mask};
    scene.project.slotNames = {{551, "Dice"}};
    scene.project.script = busyScript;
    return scene;
}

// Renders all frames, taken by the threads as they come, and hands each result to `take`.
template <class Take>
void renderAll(EffectInstance& instance, int threads, const Take& take) {
    std::atomic<int> next = 0;
    std::vector<std::thread> workers;
    for (int worker = 0; worker < threads; ++worker) {
        workers.emplace_back([&] {
            for (int frame = next++; frame < frameCount; frame = next++) {
                FrameRequest request;
                request.frame = 6 * frame;
                take(frame, instance.renderFrame(request));
            }
        });
    }
    for (std::thread& worker : workers)
        worker.join();
}

using Pictures = std::vector<std::vector<std::byte>>;

// A frame that went wrong is empty.
Pictures picturesOf(EffectInstance& instance, int threads) {
    Pictures pictures(frameCount);
    renderAll(instance, threads, [&](int frame, const FrameResult& result) {
        if (result.error == PF_Err_NONE && result.message.empty() && result.broken.empty())
            pictures[static_cast<std::size_t>(frame)] = bytesOf(result.output);
    });
    return pictures;
}

TEST_F(ModuleScriptThreads, GiveTheSameBytesAsOneThread) {
    const auto instance = instanceOf(busyScene());
    const Pictures alone = picturesOf(*instance, 1);
    for (const auto& picture : alone)
        EXPECT_FALSE(picture.empty());
    EXPECT_NE(alone.front(), alone.back());
    const Pictures together = picturesOf(*instance, threadCount);
    for (int frame = 0; frame < frameCount; ++frame)
        EXPECT_TRUE(together[static_cast<std::size_t>(frame)] == alone[static_cast<std::size_t>(frame)]) << frame;
}

// The host gives every render at a time a record of its own, and each of them tells its first failure. The first cell
// fails, so every picture is the plain one.
TEST_F(ModuleScriptThreads, MayAllFailAtOnce) {
    ModuleScene scene = fourSquaresScene();
    const auto plain = bytesOf(render(scene).output);
    scene.project.script = "x = x + 3 error('no')";
    const auto instance = instanceOf(scene);
    std::atomic<int> told = 0, wrong = 0;
    renderAll(*instance, threadCount, [&](int, const FrameResult& result) {
        const bool good = result.error == PF_Err_NONE && result.broken.empty() && bytesOf(result.output) == plain;
        wrong += good ? 0 : 1;
        told += result.displayError ? 1 : 0;
    });
    EXPECT_EQ(wrong, 0);
    EXPECT_GE(told, 1);
    EXPECT_LE(told, threadCount);
}

}  // namespace
}  // namespace TessavoyHost
