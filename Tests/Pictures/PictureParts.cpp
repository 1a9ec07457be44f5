#include "Tests/Pictures/PictureParts.h"

#include <array>

namespace Tessavoy {

Picture cells(int columns, int rows, double gridWidth, double gridHeight, double size) {
    Picture picture;
    picture.grid.columns = columns;
    picture.grid.rows = rows;
    picture.grid.gridWidth = gridWidth;
    picture.grid.gridHeight = gridHeight;
    picture.grid.centreX = 36.3;
    picture.grid.centreY = 24.2;
    picture.grid.cell.size = size;
    return picture;
}

Picture fourByThree(double size) {
    return cells(4, 3, 50.0, 30.0, size);
}

std::vector<Texel> distinctColours(int count) {
    static constexpr std::array<Texel, 12> colours = {{{255, 0, 0, 255},
                                                       {0, 255, 0, 255},
                                                       {0, 0, 255, 255},
                                                       {255, 255, 0, 255},
                                                       {0, 255, 255, 255},
                                                       {255, 0, 255, 255},
                                                       {128, 128, 128, 255},
                                                       {255, 255, 255, 255},
                                                       {40, 80, 120, 255},
                                                       {120, 80, 40, 255},
                                                       {80, 40, 120, 255},
                                                       {10, 250, 90, 255}}};
    return {colours.begin(), colours.begin() + count};
}

const std::vector<int>& scatteredLevels() {
    static const std::vector<int> levels = {150, 10, 230, 40, 90, 255, 0, 180, 60, 120, 210, 30};
    return levels;
}

const std::vector<int>& risingLevels() {
    static const std::vector<int> levels = {10, 30, 50, 70, 90, 110, 130, 150, 170, 190, 210, 230};
    return levels;
}

}  // namespace Tessavoy
