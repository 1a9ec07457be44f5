#include "Source/RenderGrid/CellBlock.h"

#include <algorithm>
#include <cstdint>

namespace Tessavoy {

namespace {

/// The largest position of an axis of so many cells, in single precision.
float lastPosition(A_long count) {
    return static_cast<float>(count - 1);
}

/// How far odd rows of a hexagon grid lie to the right.
float hexShift(A_long countX) {
    return 1.0F / static_cast<float>(2 * std::int64_t{countX} - 2);
}

/// A run of cells in one row of a block.
struct RowRun {
    int begin;
    int end;
    A_long column;
    A_long row;
};

void fillRow(CellBlock& block, const GridShape& grid, const RowRun& run) {
    const float v = grid.countY < 2 ? 0.5F : static_cast<float>(run.row) / lastPosition(grid.countY);
    const float across = lastPosition(grid.countX);
    for (int k = run.begin; k < run.end; ++k) {
        block.i[k] = run.column + (k - run.begin);
        block.j[k] = run.row;
        block.u[k] = static_cast<float>(block.i[k]) / across;
        block.v[k] = v;
    }
    if (grid.countX < 2) {
        std::fill(block.u.begin() + run.begin, block.u.begin() + run.end, 0.5F);
    } else if (grid.hexGrid && run.row % 2 == 1) {
        const float shift = hexShift(grid.countX);
        for (int k = run.begin; k < run.end; ++k) {
            block.u[k] += shift;
        }
    }
}

}  // namespace

CellBlock::CellBlock(const GridShape& grid, A_long firstIndex, A_long cellCount)
    : first(firstIndex), count(std::min(cellCount, A_long{blockCells})) {
    A_long column = first % grid.countX;
    A_long row = first / grid.countX;
    for (int begin = 0; begin < count;) {
        const int end = std::min(count, begin + (grid.countX - column));
        fillRow(*this, grid, {begin, end, column, row});
        begin = end;
        column = 0;
        ++row;
    }
    fillRow(*this, {1, 1, false}, {count, blockCells, 0, 0});
}

}  // namespace Tessavoy
