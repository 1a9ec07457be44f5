#include "Tests/Pictures/PictureFixture.h"
#include "Tests/Pictures/PictureParts.h"

namespace Tessavoy {
namespace {

/// Four by three overlapping squares without a camera, leaning away and at depths from 0 to 510: a level is 2.
Picture leaning() {
    Picture picture = fourByThree(11.4);
    picture.grid.threeDimensional = true;
    picture.grid.cell.colour = colour(255, 204, 51, 0.8);
    picture.sortByDepth = true;
    picture.vary("InstanceOffsetZ", 510.0, scatteredLevels());
    picture.vary("InstanceRotation3DX", 80.0, {100, 200, 50, 255, 150, 0, 100, 200, 50, 255, 150, 0});
    return picture;
}

/// Cells that face the picture, each at one depth.
Picture facing() {
    Picture picture = leaning();
    picture.variations.pop_back();
    return picture;
}

const std::vector<GradientStop> straightGradient = {{0.0, StopKind::Straight, {1.0, 0.0, 0.25, 1.0}},
                                                    {1.0, StopKind::Straight, {0.0, 0.5, 1.0, 1.0}}};

/// All kinds of stretches; the edge ends between the depths of cells.
const std::vector<GradientStop> bentGradient = {{0.1, StopKind::Soft, {0.9, 0.1, 0.0, 1.0}},
                                                {0.4, StopKind::Straight, {0.0, 0.8, 0.2, 1.0}},
                                                {0.6, StopKind::Edge, {0.3, 0.3, 1.0, 1.0}},
                                                {0.72, StopKind::Straight, {1.0, 1.0, 1.0, 1.0}},
                                                {0.95, StopKind::Straight, {0.0, 0.0, 0.0, 1.0}}};

/// Corners lie on a 256th of a pixel. The steepest cell leans so that depth runs through six pixels' depth in one, a
/// hundredth of the fog; the rest is for the gradient's texture, sampled with eight bits between its texels.
constexpr double FogTolerance = 1e-3;

Picture fogged(Picture picture, const PictureFog& fog) {
    picture.fog = fog;
    picture.tolerance = FogTolerance;
    return picture;
}

Picture straightFog() {
    return fogged(leaning(), {51.0, 459.0, 100.0, 100.0, straightGradient});
}

Picture bentFog() {
    return fogged(facing(), {51.0, 459.0, 100.0, 100.0, bentGradient});
}

Picture lightFog() {
    return fogged(leaning(), {51.0, 459.0, 40.0, 100.0, straightGradient});
}

/// The weight counts from where it reaches the whole fog colour no further.
Picture heavyFog() {
    return fogged(leaning(), {51.0, 459.0, 300.0, 100.0, straightGradient});
}

Picture fadingFog() {
    return fogged(leaning(), {51.0, 459.0, 0.0, 20.0, straightGradient});
}

Picture fogToNothing() {
    return fogged(leaning(), {0.0, 400.0, 70.0, 0.0, straightGradient});
}

/// Fog that ends where it starts is a step.
Picture stepFog() {
    return fogged(facing(), {201.0, 201.0, 100.0, 50.0, straightGradient});
}

/// So is fog that ends before it starts.
Picture backwardFog() {
    return fogged(facing(), {301.0, 101.0, 80.0, 50.0, straightGradient});
}

Picture fogOfOneColour() {
    return fogged(leaning(), {0.0, 510.0, 100.0, 100.0, {{0.5, StopKind::Soft, {0.3, 0.3, 0.3, 1.0}}}});
}

Picture fogAdded() {
    Picture picture = straightFog();
    picture.grid.blend = ReferenceBlend::Add;
    picture.grid.cell.colour[3] = 0.4;
    return picture;
}

Picture fogUnderCamera() {
    Picture picture = straightFog();
    picture.grid.camera = ReferenceCamera{{120.0, -30.0, -250.0}, 320.0, 0.0, 0.0, ReferencePoint{36.0, 24.0, 200.0}};
    picture.fog->start = 300.0;
    picture.fog->end = 800.0;
    return picture;
}

/// Without three dimensions every cell has a depth of 0.
Picture fogInThePlane() {
    Picture picture = straightFog();
    picture.grid.threeDimensional = false;
    picture.fog->start = 0.0;
    return picture;
}

Picture softFog() {
    Picture picture = straightFog();
    picture.grid.cell.size = 8.0;
    picture.grid.cell.featherPixels = 4.0;
    picture.tolerance = FogTolerance + 2.0 / 256.0 / 1.5;  // corners lie on a 256th of a pixel; a slope is 1.5 at least
    return picture;
}

/// Corners lie on a 256th of a pixel, and depth runs through up to six pixels' depth in one.
constexpr double DepthTolerance = 1e-3;

Picture depthOf(Picture picture, const ReferenceDepth& depth) {
    picture.grid.depth = depth;
    picture.tolerance = DepthTolerance;
    return picture;
}

Picture clampedDepth() {
    return depthOf(leaning(), {100.0, 400.0, true, false});
}

/// Greys below 0 and above 1 blend as they are, and are cut in the end.
Picture unclampedDepth() {
    return depthOf(leaning(), {100.0, 400.0, false, false});
}

Picture depthWithAlpha() {
    return depthOf(leaning(), {0.0, 510.0, true, true});
}

Picture unclampedDepthWithAlpha() {
    return depthOf(leaning(), {200.0, 300.0, false, true});
}

Picture backwardDepth() {
    return depthOf(leaning(), {500.0, 50.0, true, false});
}

Picture depthTurnsFogOff() {
    Picture picture = clampedDepth();
    picture.settings = {{"FogEnabled", 1}, {"FogStart", 0}, {"FogEnd", 100}, {"FogOpacity", 10}};
    return picture;
}

Picture depthAdded() {
    Picture picture = depthWithAlpha();
    picture.grid.blend = ReferenceBlend::Add;
    return picture;
}

/// Nearly transparent cells leave no depth, however little the others show.
Picture depthOfAlphas() {
    Picture picture = depthOf(facing(), {0.0, 510.0, true, false});
    picture.grid.cell.colour[3] = 0.0;
    picture.vary("InstanceAlpha", 1.0, {0, 2, 3, 5, 20, 51, 102, 128, 170, 204, 230, 255});
    return picture;
}

Picture alphasOfDepth() {
    Picture picture = depthOfAlphas();
    picture.grid.depth->alpha = true;
    return picture;
}

Picture softDepth() {
    Picture picture = depthWithAlpha();
    picture.grid.cell.size = 8.0;
    picture.grid.cell.featherPixels = 4.0;
    picture.tolerance = DepthTolerance + 2.0 / 256.0 / 1.5;
    return picture;
}

Picture depthUnderCamera() {
    Picture picture = fogUnderCamera();
    picture.fog.reset();
    return depthOf(picture, {250.0, 800.0, true, false});
}

/// Nothing but the black that depths stand on.
Picture depthOfNothing() {
    Picture picture = depthOf(facing(), {0.0, 510.0, true, false});
    picture.grid.cell.colour[3] = 0.0;
    picture.leastDrawn = 1.0;
    return picture;
}

Picture depthOfNoCells() {
    Picture picture = depthOfNothing();
    picture.variations.clear();
    picture.grid.rows = 0;
    return picture;
}

Picture depthAlphaOfNoCells() {
    Picture picture = depthOfNoCells();
    picture.grid.depth->alpha = true;
    picture.leastDrawn = 0.0;
    return picture;
}

const std::vector<NamedPicture> pictures = {
    {"FogStraight", straightFog},
    {"FogBent", bentFog},
    {"FogLight", lightFog},
    {"FogHeavy", heavyFog},
    {"FogFading", fadingFog},
    {"FogToNothing", fogToNothing},
    {"FogStep", stepFog},
    {"FogBackward", backwardFog},
    {"FogOfOneColour", fogOfOneColour},
    {"FogAdd", fogAdded},
    {"FogUnderCamera", fogUnderCamera},
    {"FogInThePlane", fogInThePlane},
    {"FogSoft", softFog},
    {"DepthClamped", clampedDepth},
    {"DepthUnclamped", unclampedDepth},
    {"DepthAlpha", depthWithAlpha},
    {"DepthUnclampedAlpha", unclampedDepthWithAlpha},
    {"DepthBackward", backwardDepth},
    {"DepthTurnsFogOff", depthTurnsFogOff},
    {"DepthAdd", depthAdded},
    {"DepthOfAlphas", depthOfAlphas},
    {"DepthAlphaOfAlphas", alphasOfDepth},
    {"DepthAlphaSoft", softDepth},
    {"DepthUnderCamera", depthUnderCamera},
    {"DepthOfNothing", depthOfNothing},
    {"DepthOfNoCells", depthOfNoCells},
    {"DepthAlphaOfNoCells", depthAlphaOfNoCells},
};

INSTANTIATE_TEST_SUITE_P(FogAndDepth, EveryDepth, everyDepthOf(pictures), nameOf);

const std::vector<NamedPicture> viewedPictures = {
    {"FogUnderCamera", fogUnderCamera}, {"FogBent", bentFog}, {"DepthUnderCamera", depthUnderCamera}};

INSTANTIATE_TEST_SUITE_P(FogAndDepth, OtherViews, otherViewsOf(viewedPictures), nameOfView);

}  // namespace
}  // namespace Tessavoy
