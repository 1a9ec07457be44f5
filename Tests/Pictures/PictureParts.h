#pragma once

#include <vector>

#include "Tests/Pictures/Picture.h"

namespace Tessavoy {

/// So many cells on a grid of so many pixels, off the pixel grid. What they show is the caller's to say.
Picture cells(int columns, int rows, double gridWidth, double gridHeight, double size);

/// Four by three cells on 50 by 30 pixels.
Picture fourByThree(double size);

/// A colour of its own for each of so many cells, 12 at most.
std::vector<Texel> distinctColours(int count);

/// Levels for twelve cells: from 0 to 255, all different and in no order.
const std::vector<int>& scatteredLevels();

/// Levels for twelve cells: 10, 30, 50 and so on to 230.
const std::vector<int>& risingLevels();

}  // namespace Tessavoy
