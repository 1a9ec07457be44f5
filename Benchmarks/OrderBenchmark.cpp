// Ordering cells by depth. The bound is std::stable_sort of (key, index) pairs; OrderByRank, which starts from the same
// keys, must not be slower. Items are cells. Kinds of keys: 0 noise, 1 few different ones, 2 rising, 3 falling, 4
// nearly rising.

#include "Source/RenderGrid/DrawOrder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

namespace Tessavoy {
namespace {

enum KeyKind : std::int64_t { Noise, FewKeys, Rising, Falling, NearlyRising };

float keyOf(std::int64_t kind, A_long index, A_long count, std::mt19937& generator) {
    const float share = static_cast<float>(index) / static_cast<float>(count);
    const float noise = static_cast<float>(generator()) / 4294967296.0F;
    switch (kind) {
        case FewKeys:
            return static_cast<float>(generator() % 8);
        case Rising:
            return 1000.0F * share;
        case Falling:
            return -1000.0F * share;
        case NearlyRising:
            return 1000.0F * (share + 0.01F * noise);
        default:
            return 2000.0F * noise - 1000.0F;
    }
}

struct KeyAndIndex {
    float key;
    A_long index;
};

std::vector<KeyAndIndex> unordered(const benchmark::State& state) {
    std::mt19937 generator(1);
    const A_long count = static_cast<A_long>(state.range(0));
    std::vector<KeyAndIndex> order(static_cast<std::size_t>(count));
    for (A_long index = 0; index < count; ++index) {
        order[index] = {keyOf(state.range(1), index, count, generator), index};
    }
    return order;
}

void OrderStableSort(benchmark::State& state) {
    const std::vector<KeyAndIndex> keys = unordered(state);
    std::vector<KeyAndIndex> order = keys;
    for (auto step : state) {
        std::copy(keys.begin(), keys.end(), order.begin());
        std::stable_sort(order.begin(), order.end(),
                         [](const KeyAndIndex& a, const KeyAndIndex& b) { return a.key < b.key; });
        benchmark::DoNotOptimize(order.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void OrderByRank(benchmark::State& state) {
    const std::vector<KeyAndIndex> keys = unordered(state);
    OrderMap order(keys.size());
    for (auto step : state) {
        std::transform(keys.begin(), keys.end(), order.begin(), [](const KeyAndIndex& entry) {
            return OrderEntry{rankOf(entry.key), entry.index};
        });
        sortByRank(order);
        benchmark::DoNotOptimize(order.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizesAndKinds(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgsProduct({{100, 1000, 10000, 102400, 1000000}, {Noise, FewKeys, Rising, Falling, NearlyRising}});
}

BENCHMARK(OrderStableSort)->Apply(sizesAndKinds);
BENCHMARK(OrderByRank)->Apply(sizesAndKinds);

}  // namespace
}  // namespace Tessavoy
