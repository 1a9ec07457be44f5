// Noise over the cells of a grid. The bound is three noises for each cell in a plain scalar loop; beside it the same
// three in batches, and then the evaluators that are made of noise. Items are cells.

#include "Source/Evaluate/ColorEvaluator.h"
#include "Source/Evaluate/PerlinTable.h"
#include "Source/Evaluate/PropertyEvaluator.h"

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

namespace Tessavoy {

namespace {

constexpr int columns = 64;
constexpr int rows = 64;
constexpr int cells = columns * rows;

/// Three properties' noises, each with a table and an evolution of its own, and where the cells lie.
struct Scene {
    std::array<PerlinTable, 3> tables = {PerlinTable(1), PerlinTable(2), PerlinTable(3)};
    std::array<double, 3> evolutions = {0.25, 1.5, 7.75};
    std::array<double, cells> x;
    std::array<double, cells> y;
    std::array<double, cells> out;

    /// step: from cell to cell, in cells of the noise's lattice.
    explicit Scene(double step) {
        for (int k = 0; k < cells; ++k) {
            x[k] = step * (k % columns);
            y[k] = step * (k / columns);
        }
    }
};

void BM_NoiseThreePlain(benchmark::State& state) {
    const auto scene = std::make_unique<Scene>(0.173);
    for (auto step : state) {
        for (int k = 0; k < cells; ++k) {
            double sum = 0;
            for (int noise = 0; noise < 3; ++noise) {
                sum += scene->tables[noise].perlin(scene->x[k], scene->y[k], scene->evolutions[noise]);
            }
            scene->out[k] = sum;
        }
        benchmark::DoNotOptimize(scene->out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * cells);
}
BENCHMARK(BM_NoiseThreePlain);

void addNoise(const Scene& scene, int noise, int first, int count, VectorLanes lanes, double* sums) {
    std::array<double, columns> values;
    scene.tables[noise].perlin(&scene.x[first], &scene.y[first], scene.evolutions[noise], values.data(), count, lanes);
    for (int k = 0; k < count; ++k) {
        sums[k] += values[k];
    }
}

void BM_NoiseThreeBatched(benchmark::State& state) {
    const auto lanes = static_cast<VectorLanes>(state.range(0));
    if (!lanesAvailable(lanes)) {
        state.SkipWithError("the processor lacks these lanes");
        return;
    }
    const auto scene = std::make_unique<Scene>(static_cast<double>(state.range(1)) / 1000.0);
    for (auto step : state) {
        scene->out.fill(0.0);
        for (int first = 0; first < cells; first += columns) {
            for (int noise = 0; noise < 3; ++noise) {
                addNoise(*scene, noise, first, columns, lanes, &scene->out[first]);
            }
        }
        benchmark::DoNotOptimize(scene->out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * cells);
}
BENCHMARK(BM_NoiseThreeBatched)
    ->ArgNames({"avx2", "thousandths"})
    ->ArgsProduct({{static_cast<int>(VectorLanes::Scalar), static_cast<int>(VectorLanes::Avx2)}, {31, 100, 173, 700}});

struct Cells {
    std::array<float, cells> u;
    std::array<float, cells> v;

    Cells() {
        for (int k = 0; k < cells; ++k) {
            u[k] = static_cast<float>(k % columns) / (columns - 1);
            v[k] = static_cast<float>(k / columns) / (rows - 1);
        }
    }
};

void makeNoisy(PropertyEvaluator& property) {
    property.ValueOffset = 100;
    property.Noise.Multiplier = 30;
    property.Noise.Scale = 10;
    property.Noise.ScaleX = 11;
    property.Noise.ScaleY = 11;
    property.Noise.OffsetZ = 2.5;
    property.Noise.MultLayer.Index = 1;
    property.Noise.buildTable();
}

/// Times fill(grid, out) for all cells, Out being what one cell gives.
template <class Out, class Fill>
void measureCells(benchmark::State& state, Fill fill) {
    const Cells grid;
    std::array<Out, cells> out;
    for (auto step : state) {
        fill(grid, out);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * cells);
}

PropertyEvaluator noisyProperty(const LayerSlots& layers) {
    PropertyEvaluator property(layers);
    makeNoisy(property);
    return property;
}

ColorEvaluator noisyHue(const LayerSlots& layers) {
    ColorEvaluator color(layers);
    color.Color = {0.8, 0.4, 0.1, 1.0};
    makeNoisy(color.Hue);
    return color;
}

/// One call a cell.
template <class Evaluator, class Out>
void evaluateSingly(const Evaluator& evaluator, const Cells& grid, std::array<Out, cells>& out) {
    for (int k = 0; k < cells; ++k) {
        out[k] = evaluator.evaluate(grid.u[k], grid.v[k]);
    }
}

/// One call for all.
template <class Evaluator, class Out>
void evaluateBatch(const Evaluator& evaluator, const Cells& grid, std::array<Out, cells>& out) {
    evaluator.evaluate(grid.u.data(), grid.v.data(), out.data(), cells);
}

void BM_PropertySingle(benchmark::State& state) {
    const LayerSlots layers;
    const PropertyEvaluator property = noisyProperty(layers);
    measureCells<double>(state, [&](const Cells& grid, auto& out) { evaluateSingly(property, grid, out); });
}
BENCHMARK(BM_PropertySingle);

void BM_PropertyBatch(benchmark::State& state) {
    const LayerSlots layers;
    const PropertyEvaluator property = noisyProperty(layers);
    measureCells<double>(state, [&](const Cells& grid, auto& out) { evaluateBatch(property, grid, out); });
}
BENCHMARK(BM_PropertyBatch);

void BM_ColorSingle(benchmark::State& state) {
    const LayerSlots layers;
    const ColorEvaluator color = noisyHue(layers);
    measureCells<std::array<float, 4>>(state, [&](const Cells& grid, auto& out) { evaluateSingly(color, grid, out); });
}
BENCHMARK(BM_ColorSingle);

void BM_ColorBatch(benchmark::State& state) {
    const LayerSlots layers;
    const ColorEvaluator color = noisyHue(layers);
    measureCells<std::array<float, 4>>(state, [&](const Cells& grid, auto& out) { evaluateBatch(color, grid, out); });
}
BENCHMARK(BM_ColorBatch);

void BM_NoiseTable(benchmark::State& state) {
    std::uint32_t seed = 0;
    for (auto step : state) {
        benchmark::DoNotOptimize(PerlinTable(seed++));
    }
}
BENCHMARK(BM_NoiseTable);

}  // namespace

}  // namespace Tessavoy
