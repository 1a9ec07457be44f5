// Ordering cells by depth. The bound is std::stable_sort of the same (key, index) pairs; OrderByKey must not be slower.
// Items are cells. Kinds of keys: 0 noise, 1 few different ones, 2 rising, 3 falling, 4 nearly rising.

#include "Source/RenderGrid/DrawOrder.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>

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

OrderMap unordered(const benchmark::State& state) {
    std::mt19937 generator(1);
    const A_long count = static_cast<A_long>(state.range(0));
    OrderMap order(static_cast<std::size_t>(count));
    for (A_long index = 0; index < count; ++index) {
        order[index] = {keyOf(state.range(1), index, count, generator), index};
    }
    return order;
}

template <class Sort>
void sortAgainAndAgain(benchmark::State& state, const Sort& sort) {
    const OrderMap keys = unordered(state);
    OrderMap order = keys;
    for (auto step : state) {
        std::copy(keys.begin(), keys.end(), order.begin());
        sort(order);
        benchmark::DoNotOptimize(order.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void OrderStableSort(benchmark::State& state) {
    sortAgainAndAgain(state, [](OrderMap& order) {
        std::stable_sort(order.begin(), order.end(),
                         [](const OrderEntry& a, const OrderEntry& b) { return a.key < b.key; });
    });
}

void OrderByKey(benchmark::State& state) {
    sortAgainAndAgain(state, sortByKey);
}

void sizesAndKinds(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgsProduct({{16, 100, 1000, 10000, 100000, 1000000}, {Noise, FewKeys, Rising, Falling, NearlyRising}});
}

BENCHMARK(OrderStableSort)->Apply(sizesAndKinds);
BENCHMARK(OrderByKey)->Apply(sizesAndKinds);

}  // namespace
}  // namespace Tessavoy
