#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

#include "Host/HostCall.h"
#include "Host/SignalStack.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

int threadsFor(const HostServices& services, int rows) {
    const int cores = static_cast<int>(std::max(1u, std::thread::hardware_concurrency()));
    const int wanted = services.options.iterateThreads > 0 ? services.options.iterateThreads : cores;
    return std::clamp(wanted, 1, std::max(1, rows));
}

// Runs work(0) to work(threads - 1) side by side, on threads that count as the command's own; what the system gives no
// thread for, one after the other on this one. Returns when all have ended.
template <class Work>
void onThreads(CommandContext& context, int threads, const Work& work) {
    std::vector<std::jthread> helpers;
    int started = 1;
    try {
        for (; started < threads; ++started) {
            helpers.emplace_back([&context, &work, thread = started] {
                useSignalStack();
                const CommandContext::Scope scope(&context);
                work(thread);
            });
        }
    } catch (const std::system_error&) {  // so many must do
    }
    work(0);
    for (int left = started; left < threads; ++left)
        work(left);
}

// Calls body(first, last, thread, failure) for bands of 0..count on several threads. The first error that comes up ends
// the rest as soon as they see it, and is thrown. What the module's functions throw counts as a failure of the call.
template <class Body>
void inBands(const char* name, CommandContext& context, int count, Body body) {
    const int threads = threadsFor(context.services, count);
    const auto edge = [&](int band) { return static_cast<int>(static_cast<std::int64_t>(count) * band / threads); };
    std::atomic<PF_Err> failure = PF_Err_NONE;
    onThreads(context, threads, [&](int thread) {
        PF_Err error = PF_Err_NONE;
        try {
            error = body(edge(thread), edge(thread + 1), thread, failure);
        } catch (...) {
            error = answerToException(&context, name);
        }
        PF_Err none = PF_Err_NONE;
        if (error != PF_Err_NONE)
            failure.compare_exchange_strong(none, error);
    });
    require(failure == PF_Err_NONE, failure);
}

template <class Pixel>
Pixel* pixelAt(const PF_EffectWorld* world, int x, int y) {
    const auto row = reinterpret_cast<std::byte*>(world->data) + static_cast<std::ptrdiff_t>(y) * world->rowbytes;
    return reinterpret_cast<Pixel*>(row) + x;
}

bool contains(const PF_EffectWorld* world, int x, int y) {
    return world != nullptr && x >= 0 && y >= 0 && x < world->width && y < world->height;
}

template <class Pixel>
using PixelFunction = PF_Err(void* refcon, A_long x, A_long y, Pixel* source, Pixel* target);

// What one iterate call asks for. The source lies at origin in the target; where it has no pixel the function gets a
// transparent one, or is not called when the source clips.
template <class Pixel>
struct Iteration {
    PF_EffectWorld* source;
    PF_EffectWorld* target;
    Region area;
    PF_Point origin;
    bool clip;
    void* refcon;
    PixelFunction<Pixel>* function;

    PF_Err pixel(int x, int y) const {
        const int sourceX = x - origin.h, sourceY = y - origin.v;
        Pixel none{};
        const bool inside = contains(source, sourceX, sourceY);
        if (!inside && clip && source != nullptr)
            return PF_Err_NONE;
        return function(refcon, x, y, inside ? pixelAt<Pixel>(source, sourceX, sourceY) : &none,
                        pixelAt<Pixel>(target, x, y));
    }

    PF_Err rows(int first, int last, const std::atomic<PF_Err>& failure) const {
        for (int y = area.y + first; y < area.y + last && failure == PF_Err_NONE; ++y) {
            for (int x = area.x; x < area.x + area.width; ++x) {
                if (const PF_Err error = pixel(x, y))
                    return error;
            }
        }
        return PF_Err_NONE;
    }
};

template <class Pixel>
PF_Err iterateOver(const char* name, PF_InData* inData, Iteration<Pixel> iteration, const PF_Rect* area) noexcept {
    return answer(name, inData == nullptr ? nullptr : inData->effect_ref, [&](CommandContext& context) {
        require(iteration.target != nullptr && iteration.function != nullptr);
        const Region whole{0, 0, iteration.target->width, iteration.target->height};
        iteration.area = area == nullptr ? whole : intersection(whole, toRegion(*area));
        inBands(name, context, iteration.area.height,
                [&](int first, int last, int, const std::atomic<PF_Err>& failure) {
                    return iteration.rows(first, last, failure);
                });
    });
}

template <class Pixel>
PF_Err iterate(PF_InData* inData, A_long, A_long, PF_EffectWorld* source, const PF_Rect* area, void* refcon,
               PixelFunction<Pixel>* function, PF_EffectWorld* target) noexcept {
    return iterateOver<Pixel>("iterate", inData, {source, target, {}, {0, 0}, true, refcon, function}, area);
}

template <class Pixel>
PF_Err iterateOrigin(PF_InData* inData, A_long, A_long, PF_EffectWorld* source, const PF_Rect* area,
                     const PF_Point* origin, void* refcon, PixelFunction<Pixel>* function,
                     PF_EffectWorld* target) noexcept {
    const PF_Point place = origin == nullptr ? PF_Point{0, 0} : *origin;
    return iterateOver<Pixel>("iterate_origin", inData, {source, target, {}, place, true, refcon, function}, area);
}

template <class Pixel>
PF_Err iterateOriginNonClip(PF_InData* inData, A_long, A_long, PF_EffectWorld* source, const PF_Rect* area,
                            const PF_Point* origin, void* refcon, PixelFunction<Pixel>* function,
                            PF_EffectWorld* target) noexcept {
    const PF_Point place = origin == nullptr ? PF_Point{0, 0} : *origin;
    return iterateOver<Pixel>("iterate_origin_non_clip_src", inData,
                              {source, target, {}, place, false, refcon, function}, area);
}

PF_Err iterateGeneric(A_long iterations, void* refcon, PF_IterateGenericFunc* function) noexcept {
    constexpr const char* name = "iterate_generic";
    return answer(name, [&](CommandContext& context) {
        require(function != nullptr && iterations >= 0);
        inBands(name, context, iterations, [&](int first, int last, int thread, const std::atomic<PF_Err>& failure) {
            PF_Err error = PF_Err_NONE;
            for (int index = first; index < last && error == PF_Err_NONE && failure == PF_Err_NONE; ++index)
                error = function(refcon, thread, index, iterations);
            return error;
        });
    });
}

}  // namespace

const PF_Iterate8Suite1 iterate8Suite = {
    .iterate = iterate<PF_Pixel>,
    .iterate_origin = iterateOrigin<PF_Pixel>,
    .reserved0 = nullptr,
    .iterate_origin_non_clip_src = iterateOriginNonClip<PF_Pixel>,
    .iterate_generic = iterateGeneric,
};

const PF_iterate16Suite1 iterate16Suite = {
    .iterate = iterate<PF_Pixel16>,
    .iterate_origin = iterateOrigin<PF_Pixel16>,
    .iterate_origin_non_clip_src = iterateOriginNonClip<PF_Pixel16>,
};

const PF_iterateFloatSuite1 iterateFloatSuite = {
    .iterate = iterate<PF_PixelFloat>,
    .iterate_origin = iterateOrigin<PF_PixelFloat>,
    .iterate_origin_non_clip_src = iterateOriginNonClip<PF_PixelFloat>,
};

}  // namespace TessavoyHost
