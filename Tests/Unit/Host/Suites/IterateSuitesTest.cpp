#include <atomic>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>

#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;

using HostIterateSuites = HostFixture;

struct Visit {
    std::atomic<int> calls = 0;
    std::mutex mutex;
    std::set<std::thread::id> threads;
    PF_Err answer = PF_Err_NONE;
    int failAtY = -1;
};

PF_Err visit(void* refcon, A_long x, A_long y, PF_PixelFloat* source, PF_PixelFloat* target) {
    auto& seen = *static_cast<Visit*>(refcon);
    ++seen.calls;
    {
        const std::lock_guard lock(seen.mutex);
        seen.threads.insert(std::this_thread::get_id());
    }
    target->red = static_cast<float>(x);
    target->green = static_cast<float>(y);
    target->blue = source->blue;
    return y == seen.failAtY ? 513 : PF_Err_NONE;
}

// Runs an iterate call from the input layer to the output of a float frame, and gives the frame.
FrameResult iterated(EffectHost& host, Visit& seen, const PF_Rect* area, PF_Err expected) {
    FakeEffect::hooks().render = [&seen, area, expected](PF_InData* in, PF_OutData*, PF_SmartRenderExtra* extra) {
        const Acquired<PF_iterateFloatSuite1> suite(in);
        PF_EffectWorld *input = nullptr, *output = nullptr;
        extra->cb->checkout_layer_pixels(in->effect_ref, 0, &input);
        extra->cb->checkout_output(in->effect_ref, &output);
        EXPECT_EQ(suite->iterate(in, 0, input->height, input, area, &seen, visit, output), expected);
        return extra->cb->checkin_layer_pixels(in->effect_ref, 0);
    };
    FrameRequest request;
    request.bitsPerChannel = 32;
    return host.createInstance(FakeProject::project())->renderFrame(request);
}

HostOptions threads(int count) {
    HostOptions options;
    options.iterateThreads = count;
    return options;
}

TEST_F(HostIterateSuites, CallOnceForEveryPixelWithBothItsPixels) {
    for (const int count : {1, 3, 200}) {
        EffectHost host(FakeEffect::entryPoints(), threads(count));
        Visit seen;
        const FrameResult result = iterated(host, seen, nullptr, PF_Err_NONE);
        EXPECT_EQ(seen.calls, 100 * 80);
        const auto row = reinterpret_cast<const PF_PixelFloat*>(result.output.row(61));
        EXPECT_EQ(row[37].red, 37);
        EXPECT_EQ(row[37].green, 61);
        EXPECT_EQ(row[37].blue, 50 / 255.0f);
    }
}

TEST_F(HostIterateSuites, RunOnSeveralThreads) {
    EffectHost host(FakeEffect::entryPoints(), threads(4));
    Visit seen;
    iterated(host, seen, nullptr, PF_Err_NONE);
    EXPECT_EQ(seen.threads.size(), 4u);
}

TEST_F(HostIterateSuites, KeepToTheArea) {
    EffectHost host(FakeEffect::entryPoints());
    Visit seen;
    const PF_Rect area{90, 70, 300, 75};
    iterated(host, seen, &area, PF_Err_NONE);
    EXPECT_EQ(seen.calls, 10 * 5);
}

TEST_F(HostIterateSuites, PassTheFirstErrorOn) {
    EffectHost host(FakeEffect::entryPoints(), threads(2));
    Visit seen;
    seen.failAtY = 3;
    iterated(host, seen, nullptr, 513);
    EXPECT_LT(seen.calls, 100 * 80);
}

// Of the functions that threads call, none may end the process.
TEST_F(HostIterateSuites, FailTheFrameWhereTheFunctionThrows) {
    EffectHost host(FakeEffect::entryPoints(), threads(3));
    duringRender([&](PF_InData* in) {
        const Acquired<PF_Iterate8Suite1> suite(in);
        const auto fail = [](void*, A_long, A_long, A_long) -> PF_Err { throw std::runtime_error("thrown"); };
        EXPECT_EQ(suite->iterate_generic(50, nullptr, fail), PF_Err_INTERNAL_STRUCT_DAMAGED);
    });
    const FrameResult result = host.createInstance(FakeProject::project())->renderFrame({});
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_EQ(result.failure, "thrown");
}

TEST_F(HostIterateSuites, CountThroughGenericWorkOnce) {
    EffectHost host(FakeEffect::entryPoints(), threads(3));
    std::array<std::atomic<int>, 50> counts{};
    duringRender([&](PF_InData* in) {
        const Acquired<PF_Iterate8Suite1> suite(in);
        const auto count = [](void* refcon, A_long thread, A_long index, A_long iterations) -> PF_Err {
            ++(*static_cast<std::array<std::atomic<int>, 50>*>(refcon))[static_cast<std::size_t>(index)];
            return thread < 3 && iterations == 50 ? 0 : 513;
        };
        EXPECT_EQ(suite->iterate_generic(50, &counts, count), PF_Err_NONE);
    });
    EXPECT_EQ(host.createInstance(FakeProject::project())->renderFrame({}).error, PF_Err_NONE);
    for (const std::atomic<int>& count : counts)
        EXPECT_EQ(count, 1);
}

// The source lies at (2, 1) of the target: the target's pixel (x, y) sees the source's (x - 2, y - 1).
TEST_F(HostIterateSuites, OffsetTheSourceByItsOrigin) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<PF_Iterate8Suite1> suite(in);
        World source(3, 3, 8), target(4, 4, 8);
        reinterpret_cast<PF_Pixel*>(source.row(1))[1].red = 9;
        const PF_Point origin{2, 1};
        int calls = 0;
        struct Copy {
            static PF_Err pixel(void* refcon, A_long, A_long, PF_Pixel* from, PF_Pixel* to) {
                ++*static_cast<int*>(refcon);
                *to = *from;
                return 0;
            }
        };
        EXPECT_EQ(suite->iterate_origin(in, 0, 4, &source.record(), nullptr, &origin, nullptr, nullptr, nullptr),
                  PF_Err_BAD_CALLBACK_PARAM);
        const PF_Rect row{0, 0, 4, 1};
        EXPECT_EQ(
            suite->iterate_origin(in, 0, 4, &source.record(), &row, &origin, &calls, Copy::pixel, &target.record()), 0);
        EXPECT_EQ(calls, 0);  // the first row lies above the source
        EXPECT_EQ(suite->iterate_origin_non_clip_src(in, 0, 4, &source.record(), &row, &origin, &calls, Copy::pixel,
                                                     &target.record()),
                  0);
        EXPECT_EQ(calls, 4);
        const PF_Rect third{0, 2, 4, 3};
        EXPECT_EQ(
            suite->iterate_origin(in, 0, 4, &source.record(), &third, &origin, &calls, Copy::pixel, &target.record()),
            0);
        EXPECT_EQ(calls, 6);
        EXPECT_EQ(reinterpret_cast<PF_Pixel*>(target.row(2))[3].red, 9);
    });
}

}  // namespace
}  // namespace TessavoyHost
