#include "Tests/Pictures/PictureFixture.h"
#include "Tests/Pictures/PictureParts.h"

namespace Tessavoy {
namespace {

/// Four by three squares with gaps, off the pixel grid.
Picture squares() {
    Picture picture = fourByThree(6.25);
    picture.grid.cell.colour = colour(200, 100, 50);
    return picture;
}

/// The same, large enough to lie on each other, in twelve colours.
Picture overlapping() {
    Picture picture = squares();
    picture.grid.cell.size = 11.4;
    picture.grid.cell.colour[3] = 0.6;
    picture.paint(distinctColours(12));
    return picture;
}

Picture opaqueOverlap() {
    Picture picture = overlapping();
    picture.grid.cell.colour[3] = 1.0;
    return picture;
}

/// Colours add up beyond alpha, and beyond 1, where the output is cut.
Picture added() {
    Picture picture = overlapping();
    picture.grid.blend = ReferenceBlend::Add;
    return picture;
}

Picture addedFaintly() {
    Picture picture = added();
    picture.grid.cell.colour[3] = 0.05;
    // alpha of a few hundredths makes straight colours very sensitive, which the comparison allows for by itself
    return picture;
}

Picture addedBeyondOne() {
    Picture picture = added();
    picture.grid.cell.colour[3] = 1.7;
    return picture;
}

/// Every cell with another alpha, some below what is shown at all.
Picture alphas() {
    Picture picture = squares();
    picture.grid.cell.colour[3] = 0.0;
    picture.vary("InstanceAlpha", 1.0, {0, 2, 5, 20, 51, 85, 102, 128, 170, 204, 230, 255});
    return picture;
}

Picture turnedGrid() {
    Picture picture = overlapping();
    picture.grid.rotation = 23.0;
    return picture;
}

Picture turnedCells() {
    Picture picture = squares();
    picture.vary("InstanceRotation", 360.0, risingLevels());
    return picture;
}

Picture turnedBoth() {
    Picture picture = turnedCells();
    picture.grid.rotation = -67.0;
    picture.grid.globalScale = 80.0;
    return picture;
}

Picture scaledDown() {
    Picture picture = overlapping();
    picture.grid.globalScale = 45.5;
    picture.leastDrawn = 0.05;
    return picture;
}

Picture scaledUp() {
    Picture picture = overlapping();
    picture.grid.globalScale = 240.0;
    return picture;
}

Picture anchored() {
    Picture picture = squares();
    picture.grid.cell.anchorX = 60.0;
    picture.grid.cell.anchorY = -35.0;
    return picture;
}

/// An anchor moves the shape off the point about which it turns.
Picture anchoredAndTurned() {
    Picture picture = turnedBoth();
    picture.grid.cell.anchorX = -80.0;
    picture.vary("ShapeAnchorY", 120.0, {255, 0, 40, 80, 120, 160, 200, 240, 20, 60, 100, 140});
    return picture;
}

Picture stretched() {
    Picture picture = squares();
    picture.grid.cell.scaleX = 30.0;
    picture.grid.cell.scaleY = 60.0;
    picture.vary("ShapeScaleX", 100.0, {0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200, 220});
    picture.vary("ShapeScaleY", -40.0, {220, 200, 180, 160, 140, 120, 100, 80, 60, 40, 20, 0});
    return picture;
}

Picture sizes() {
    Picture picture = squares();
    picture.grid.cell.size = 1.0;
    picture.vary("InstanceSize", 12.0, {0, 20, 40, 60, 80, 100, 120, 140, 160, 180, 200, 255});
    return picture;
}

/// Offsets in all directions; depth doesn't count in the plane.
Picture offsets() {
    Picture picture = squares();
    picture.grid.cell.position = {-4.0, 3.0, 500.0};
    picture.grid.centreZ = 800.0;
    picture.grid.rotationX = 40.0;
    picture.grid.rotationY = 30.0;
    picture.vary("InstanceOffsetX", 9.0, {0, 90, 20, 250, 30, 60, 70, 200, 140, 20, 230, 10});
    picture.vary("InstanceOffsetY", -7.0, {10, 230, 20, 140, 200, 70, 60, 30, 250, 20, 90, 0});
    picture.vary("InstanceRotation3DX", 90.0, {10, 230, 20, 140, 200, 70, 60, 30, 250, 20, 90, 0});
    return picture;
}

/// Every other row is half a cell to the right.
Picture hexagonal() {
    Picture picture = squares();
    picture.grid.hexagonal = true;
    picture.grid.gridWidth = 44.0;
    picture.grid.cell.size = 5.5;
    picture.grid.cell.colour[3] = 0.75;
    return picture;
}

Picture hexagonalOfTwoColumns() {
    Picture picture = hexagonal();
    picture.grid.columns = 2;
    picture.grid.gridWidth = 30.0;
    picture.leastDrawn = 0.08;
    return picture;
}

Picture oneColumn() {
    Picture picture = hexagonal();
    picture.grid.columns = 1;
    picture.leastDrawn = 0.05;
    return picture;
}

Picture oneRow() {
    Picture picture = hexagonal();
    picture.grid.rows = 1;
    picture.leastDrawn = 0.08;
    return picture;
}

Picture cutByTheEdges() {
    Picture picture = squares();
    picture.grid.gridWidth = 90.0;
    picture.grid.gridHeight = 60.0;
    picture.grid.cell.size = 9.1;
    return picture;
}

Picture noCells() {
    Picture picture = squares();
    picture.grid.columns = 0;
    picture.leastDrawn = 0.0;
    return picture;
}

const std::vector<NamedPicture> pictures = {
    {"Squares", squares},
    {"OverlappingNormal", overlapping},
    {"OverlappingOpaque", opaqueOverlap},
    {"OverlappingAdd", added},
    {"OverlappingAddFaint", addedFaintly},
    {"OverlappingAddBeyondOne", addedBeyondOne},
    {"Alphas", alphas},
    {"TurnedGrid", turnedGrid},
    {"TurnedCells", turnedCells},
    {"TurnedGridAndCells", turnedBoth},
    {"ScaledDown", scaledDown},
    {"ScaledUp", scaledUp},
    {"Anchored", anchored},
    {"AnchoredAndTurned", anchoredAndTurned},
    {"Stretched", stretched},
    {"Sizes", sizes},
    {"Offsets", offsets},
    {"Hexagonal", hexagonal},
    {"HexagonalOfTwoColumns", hexagonalOfTwoColumns},
    {"HexagonalOneColumn", oneColumn},
    {"HexagonalOneRow", oneRow},
    {"CutByTheEdges", cutByTheEdges},
    {"NoCells", noCells},
};

INSTANTIATE_TEST_SUITE_P(Flat, EveryDepth, everyDepthOf(pictures), nameOf);

const std::vector<NamedPicture> viewedPictures = {
    {"OverlappingNormal", overlapping}, {"TurnedGridAndCells", turnedBoth}, {"Hexagonal", hexagonal}};

INSTANTIATE_TEST_SUITE_P(Flat, OtherViews, otherViewsOf(viewedPictures), nameOfView);

}  // namespace
}  // namespace Tessavoy
