#pragma once

#include "HostInterface/Types.h"

#include <array>

namespace Tessavoy {

/// How many cells are evaluated at a time: their records and what is computed on the way fit the first cache.
inline constexpr int blockCells = 64;

/// The grid's cells as coordinates.
struct GridShape {
    A_long countX;
    A_long countY;
    bool hexGrid;  ///< odd rows are shifted by half a cell
};

/// A run of consecutive cells, at most blockCells, with their column, row and normalised position. Entries behind count
/// are numbers without a meaning.
struct CellBlock {
    /// The cells from this index on, so many of them or as many as fit. The grid has a cell with this index.
    CellBlock(const GridShape& grid, A_long firstIndex, A_long cellCount);

    A_long first;  ///< index of the first cell
    int count;
    std::array<A_long, blockCells> i;  ///< column
    std::array<A_long, blockCells> j;  ///< row
    std::array<float, blockCells> u;   ///< across: 0.5 for a single column; above 1 at the end of shifted rows
    std::array<float, blockCells> v;   ///< down: 0.5 for a single row
};

}  // namespace Tessavoy
