#include "Tests/Pictures/PictureFixture.h"
#include "Tests/Pictures/PictureParts.h"

namespace Tessavoy {
namespace {

/// Three by two shapes, off the pixel grid.
Picture shapes(int corners) {
    Picture picture = cells(3, 2, 46.0, 23.0, 9.3);
    picture.grid.centreX = 36.4;
    picture.grid.centreY = 24.7;
    picture.grid.cell.corners = corners;
    picture.grid.cell.colour = colour(51, 153, 255, 0.8);
    return picture;
}

/// Rasterisers place corners on a 256th of a pixel, so that each end of a slope across so many pixels may be off by
/// that, and alpha with it.
double slopeTolerance(double pixels) {
    return 1e-4 + 2.0 / 256.0 / pixels;
}

Picture soft(Picture picture, double pixels) {
    picture.grid.cell.featherPixels = pixels;
    picture.tolerance = slopeTolerance(pixels);
    return picture;
}

Picture softByPercents(Picture picture, double percents) {
    picture.grid.cell.featherPercents = percents;
    picture.tolerance = slopeTolerance(picture.grid.cell.size * percents / 100.0);
    return picture;
}

Picture stroked(Picture picture, double percents) {
    picture.grid.cell.strokeWidth = percents;
    return picture;
}

Picture rounded(Picture picture, double percents, int dots) {
    picture.grid.cell.rounding = percents;
    picture.grid.cell.roundingDots = dots;
    return picture;
}

Picture shelved(Picture picture, double percents) {
    picture.grid.cell.shelf = percents;
    return picture;
}

Picture linked(Picture picture, double percents) {
    picture.grid.cell.link = percents;
    return picture;
}

Picture triangles() {
    return shapes(3);
}

/// Parts of a corner don't count.
Picture fractionOfACorner() {
    Picture picture = shapes(3);
    picture.settings = {{"ShapeRaysCount.Value", 3.9}};
    return picture;
}

Picture pentagons() {
    return shapes(5);
}

Picture twelveCorners() {
    return shapes(12);
}

Picture turnedShapes() {
    Picture picture = shapes(5);
    picture.grid.shapeAngle = 31.0;
    picture.grid.rotation = 12.0;
    picture.vary("InstanceRotation", 90.0, {0, 50, 100, 150, 200, 250});
    return picture;
}

Picture manyRoundingsTurned() {
    Picture picture = rounded(shelved(linked(turnedShapes(), 20.0), 30.0), 5.0, 3);
    picture.vary("ShapeLinkMiddleOffset", 20.0, {250, 200, 150, 100, 50, 0});
    picture.vary("ShapeShelfLength", 20.0, {0, 250, 100, 200, 150, 50});
    picture.vary("ShapeRoundingRadius", 20.0, {100, 50, 250, 0, 200, 150});
    return picture;
}

Picture strokedSquares() {
    return stroked(shapes(4), 20.0);
}

Picture strokedTriangles() {
    return stroked(shapes(3), 15.0);
}

Picture strokedTwelveCorners() {
    return stroked(shapes(12), 40.0);
}

Picture strokedStretched() {
    Picture picture = stroked(shapes(5), 20.0);
    picture.grid.cell.scaleX = 130.0;
    picture.grid.cell.scaleY = 70.0;
    return picture;
}

Picture softPentagons() {
    return soft(shapes(5), 3.0);
}

Picture softOverlappingSquares() {
    Picture picture = soft(shapes(4), 4.5);
    picture.grid.cell.size = 12.0;
    picture.paint(distinctColours(6));
    return picture;
}

Picture softByPercentsTriangles() {
    Picture picture = softByPercents(shapes(3), 25.0);
    return picture;
}

/// The feather's width goes with the size of each cell when it is told in percents.
Picture softByPercentsOfSizes() {
    Picture picture = softByPercents(shapes(5), 40.0);
    picture.vary("InstanceSize", -4.0, {0, 51, 102, 153, 204, 255});
    picture.tolerance *= 2.0;
    return picture;
}

/// The feather lies outside the scaled shape, with the same width all round.
Picture softStretched() {
    Picture picture = softByPercents(shapes(4), 20.0);
    picture.grid.cell.scaleX = 140.0;
    picture.grid.cell.scaleY = 50.0;
    return picture;
}

Picture softStrokedSquares() {
    return soft(strokedSquares(), 2.0);
}

Picture softStrokedByPercents() {
    return softByPercents(stroked(shapes(5), 25.0), 20.0);
}

Picture softAdded() {
    Picture picture = softOverlappingSquares();
    picture.grid.blend = ReferenceBlend::Add;
    return picture;
}

Picture shelves() {
    return shelved(shapes(5), 50.0);
}

Picture shelvesBeyondTheirSides() {
    Picture picture = shelved(shapes(3), 400.0);
    picture.grid.cell.colour[3] = 1.0;
    picture.grid.cell.size = 4.0;
    return picture;
}

Picture stars() {
    return linked(shapes(5), 45.0);
}

Picture bulges() {
    return linked(shapes(4), -30.0);
}

/// The middles of the sides reach the centre, which leaves spikes of no width.
Picture collapsedStars() {
    Picture picture = shelved(linked(shapes(5), 99.0), 40.0);
    picture.leastDrawn = 0.05;
    return picture;
}

Picture collapsedStrokes() {
    Picture picture = stroked(collapsedStars(), 10.0);
    return picture;
}

Picture roundedTriangles() {
    return rounded(shapes(3), 20.0, 4);
}

/// No arc is longer than half of its shorter side.
Picture roundedToTheLimit() {
    return rounded(shapes(3), 500.0, 6);
}

Picture chamfered() {
    return rounded(shapes(4), 30.0, 0);
}

Picture roundedStretched() {
    Picture picture = rounded(shapes(4), 20.0, 5);
    picture.grid.cell.scaleX = 150.0;
    picture.grid.cell.scaleY = 60.0;
    return picture;
}

Picture roundedStars() {
    return rounded(stars(), 8.0, 3);
}

Picture roundedStrokedStars() {
    Picture picture = stroked(roundedStars(), 18.0);
    picture.leastDrawn = 0.08;
    return picture;
}

Picture softRoundedShelvedStrokes() {
    return soft(stroked(rounded(shelved(shapes(5), 40.0), 10.0, 2), 15.0), 2.5);
}

const std::vector<NamedPicture> pictures = {
    {"Triangles", triangles},
    {"FractionOfACorner", fractionOfACorner},
    {"Pentagons", pentagons},
    {"TwelveCorners", twelveCorners},
    {"Turned", turnedShapes},
    {"StrokedSquares", strokedSquares},
    {"StrokedTriangles", strokedTriangles},
    {"StrokedTwelveCorners", strokedTwelveCorners},
    {"StrokedStretched", strokedStretched},
    {"SoftPentagons", softPentagons},
    {"SoftOverlappingSquares", softOverlappingSquares},
    {"SoftOverlappingSquaresAdd", softAdded},
    {"SoftByPercentsTriangles", softByPercentsTriangles},
    {"SoftByPercentsOfSizes", softByPercentsOfSizes},
    {"SoftByPercentsStretched", softStretched},
    {"SoftStrokedSquares", softStrokedSquares},
    {"SoftStrokedByPercents", softStrokedByPercents},
    {"Shelves", shelves},
    {"ShelvesBeyondTheirSides", shelvesBeyondTheirSides},
    {"Stars", stars},
    {"Bulges", bulges},
    {"CollapsedStars", collapsedStars},
    {"CollapsedStrokes", collapsedStrokes},
    {"RoundedTriangles", roundedTriangles},
    {"RoundedToTheLimit", roundedToTheLimit},
    {"Chamfered", chamfered},
    {"RoundedStretched", roundedStretched},
    {"RoundedStars", roundedStars},
    {"RoundedStrokedStars", roundedStrokedStars},
    {"SoftRoundedShelvedStrokes", softRoundedShelvedStrokes},
    {"ManyRoundingsTurned", manyRoundingsTurned},
};

INSTANTIATE_TEST_SUITE_P(Shapes, EveryDepth, everyDepthOf(pictures), nameOf);

const std::vector<NamedPicture> viewedPictures = {{"SoftOverlappingSquares", softOverlappingSquares},
                                                  {"SoftStrokedSquares", softStrokedSquares},
                                                  {"SoftStrokedByPercents", softStrokedByPercents},
                                                  {"ManyRoundingsTurned", manyRoundingsTurned}};

INSTANTIATE_TEST_SUITE_P(Shapes, OtherViews, otherViewsOf(viewedPictures), nameOfView);

}  // namespace
}  // namespace Tessavoy
