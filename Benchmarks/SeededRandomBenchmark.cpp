// A cell's seeded number, alone and with its neighbours side by side. The bound is what the standard library takes for
// the same two draws: std::mt19937 seeded by std::seed_seq. Items are cells.

#include "Source/Evaluate/SeededRandom.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <numeric>
#include <random>

namespace Tessavoy {

namespace {

constexpr int cells = 256;
constexpr std::uint32_t seed = 17;

double standardLibraryDraw(std::uint32_t w1, std::uint32_t w2, std::uint32_t w3) {
    std::seed_seq sequence{w1, w2, w3};
    std::mt19937 generator(sequence);
    const auto low = static_cast<double>(generator());
    const auto high = static_cast<double>(generator());
    return (low + high * 0x1p32) / 0x1p64;
}

void BM_SeededRandomStandardLibrary(benchmark::State& state) {
    std::uint32_t column = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(standardLibraryDraw(seed, column++, 3));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_SeededRandomStandardLibrary);

void BM_SeededRandomCells(benchmark::State& state) {
    const auto lanes = static_cast<VectorLanes>(state.range(0));
    if (!lanesAvailable(lanes)) {
        state.SkipWithError("the processor lacks these lanes");
        return;
    }
    std::array<std::uint32_t, cells> columns;
    std::array<std::uint32_t, cells> rows{};
    std::iota(columns.begin(), columns.end(), 0u);
    std::array<double, cells> numbers;
    for (auto step : state) {
        rows.fill(rows[0] + 1);
        seededRandomCells(seed, columns.data(), rows.data(), cells, numbers.data(), lanes);
        benchmark::DoNotOptimize(numbers.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * cells);
}
BENCHMARK(BM_SeededRandomCells)
    ->ArgName("avx2")
    ->Arg(static_cast<int>(VectorLanes::Scalar))
    ->Arg(static_cast<int>(VectorLanes::Avx2));

}  // namespace

}  // namespace Tessavoy
