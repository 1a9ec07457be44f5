#include "Tests/Pictures/PictureFixture.h"
#include "Tests/Pictures/PictureParts.h"

namespace Tessavoy {
namespace {

/// Four by three overlapping squares at twelve depths from 0 to 120, seen straight from 200 pixels before the first.
Picture deep() {
    Picture picture = fourByThree(11.4);
    picture.grid.threeDimensional = true;
    picture.grid.cell.colour[3] = 0.7;
    picture.grid.camera = ReferenceCamera{{36.0, 24.0, -200.0}, 200.0};
    picture.paint(distinctColours(12));
    picture.vary("InstanceOffsetZ", 120.0, scatteredLevels());
    return picture;
}

Picture deepSorted() {
    Picture picture = deep();
    picture.sortByDepth = true;
    return picture;
}

Picture opaqueSorted() {
    Picture picture = deepSorted();
    picture.grid.cell.colour[3] = 1.0;
    return picture;
}

/// At equal depths the later cell lies on top.
Picture sortedWithEqualDepths() {
    Picture picture = deepSorted();
    picture.variations.clear();
    picture.vary("InstanceOffsetZ", 120.0, {51, 102, 51, 102, 102, 51, 102, 51, 51, 51, 102, 102});
    return picture;
}

/// Sorting is of no account without three dimensions, though depths are told.
Picture sortedInThePlane() {
    Picture picture = deepSorted();
    picture.grid.threeDimensional = false;
    return picture;
}

Picture withoutCamera() {
    Picture picture = deepSorted();
    picture.grid.camera.reset();
    picture.grid.rotationX = 25.0;
    picture.grid.rotationY = -40.0;
    return picture;
}

/// Without a camera what is further than 2000 from the picture's plane is cut off.
Picture beyondTheFlatSpace() {
    Picture picture = deep();
    picture.grid.camera.reset();
    picture.variations.clear();
    picture.vary("InstanceOffsetZ", 4500.0, scatteredLevels());
    picture.grid.centreZ = -2250.0;
    picture.grid.rotationX = 1.0;
    return picture;
}

Picture turnedAway() {
    Picture picture = deepSorted();
    picture.grid.rotationX = 35.0;
    picture.grid.rotationY = 50.0;
    picture.grid.rotation = 20.0;
    return picture;
}

Picture cellsTurned() {
    Picture picture = deepSorted();
    picture.vary("InstanceRotation3DX", 170.0, risingLevels());
    picture.vary("InstanceRotation3DY", -120.0, {230, 30, 190, 70, 150, 110, 130, 90, 170, 50, 210, 10});
    picture.vary("InstanceRotation", 90.0, {0, 230, 30, 190, 70, 150, 110, 130, 90, 170, 50, 210});
    return picture;
}

Picture lookedAtFromAside() {
    Picture picture = deepSorted();
    picture.grid.camera = ReferenceCamera{{150.0, -40.0, -120.0}, 180.0, 0.0, 0.0, ReferencePoint{36.0, 24.0, 60.0}};
    return picture;
}

Picture rolledCamera() {
    Picture picture = lookedAtFromAside();
    picture.grid.camera->roll = 33.0;
    picture.grid.globalScale = 85.0;
    picture.grid.centreZ = 15.0;
    return picture;
}

/// The camera sees the composition; the layer is its upper left part.
Picture inALargerComposition() {
    Picture picture = rolledCamera();
    picture.composition = TessavoyHost::ImageSize{104, 64};
    return picture;
}

/// From behind, shapes are seen from their backs, and what was far is near.
Picture fromBehind() {
    Picture picture = deepSorted();
    picture.grid.camera = ReferenceCamera{{60.0, 10.0, 330.0}, 200.0, 0.0, 0.0, ReferencePoint{36.0, 24.0, 60.0}};
    return picture;
}

/// Some cells are behind the camera, and the plane right before it cuts through others.
Picture amongTheCells() {
    Picture picture = deepSorted();
    picture.grid.camera = ReferenceCamera{{36.0, 24.0, 55.0}, 40.0};
    picture.grid.rotationY = 20.0;
    return picture;
}

Picture billboards() {
    Picture picture = turnedAway();
    picture.grid.billboard = true;
    picture.grid.globalScale = 90.0;
    picture.vary("InstanceRotation", 90.0, {0, 230, 30, 190, 70, 150, 110, 130, 90, 170, 50, 210});
    picture.vary("InstanceRotation3DX", 170.0, risingLevels());
    return picture;
}

/// An anchor moves a billboard off its place, but isn't what it turns about.
Picture anchoredBillboards() {
    Picture picture = billboards();
    picture.grid.cell.anchorX = 45.0;
    picture.grid.cell.anchorY = -70.0;
    return picture;
}

Picture billboardsFromAside() {
    Picture picture = rolledCamera();
    picture.grid.billboard = true;
    picture.grid.rotationX = 40.0;
    return picture;
}

Picture anchoredInDepth() {
    Picture picture = cellsTurned();
    picture.grid.cell.anchorX = 60.0;
    picture.grid.cell.anchorY = 40.0;
    return picture;
}

/// Feather in pixels is measured in the picture's plane before perspective, all round, on shapes that lean away.
Picture softInPixels() {
    Picture picture = cellsTurned();
    picture.grid.cell.size = 8.0;
    picture.grid.cell.featherPixels = 4.0;
    picture.tolerance = 1e-4 + 2.0 / 256.0 / 1.5;  // corners lie on a 256th of a pixel; a slope is 1.5 at least
    return picture;
}

/// Feather in percents leans with its shape.
Picture softInPercents() {
    Picture picture = turnedAway();
    picture.grid.cell.corners = 5;
    picture.grid.cell.featherPercents = 60.0;
    picture.tolerance = 1e-4 + 2.0 / 256.0 / 1.5;
    return picture;
}

Picture strokedInDepth() {
    Picture picture = rolledCamera();
    picture.grid.cell.corners = 6;
    picture.grid.cell.strokeWidth = 45.0;
    return picture;
}

const std::vector<NamedPicture> pictures = {
    {"CellOrder", deep},
    {"FarToNear", deepSorted},
    {"FarToNearOpaque", opaqueSorted},
    {"FarToNearEqualDepths", sortedWithEqualDepths},
    {"SortedInThePlane", sortedInThePlane},
    {"WithoutCamera", withoutCamera},
    {"BeyondTheFlatSpace", beyondTheFlatSpace},
    {"TurnedAway", turnedAway},
    {"CellsTurned", cellsTurned},
    {"FromAside", lookedAtFromAside},
    {"Rolled", rolledCamera},
    {"InALargerComposition", inALargerComposition},
    {"FromBehind", fromBehind},
    {"AmongTheCells", amongTheCells},
    {"Billboards", billboards},
    {"BillboardsAnchored", anchoredBillboards},
    {"BillboardsFromAside", billboardsFromAside},
    {"Anchored", anchoredInDepth},
    {"SoftInPixels", softInPixels},
    {"SoftInPercents", softInPercents},
    {"Stroked", strokedInDepth},
};

INSTANTIATE_TEST_SUITE_P(Camera, EveryDepth, everyDepthOf(pictures), nameOf);

const std::vector<NamedPicture> viewedPictures = {{"FarToNear", deepSorted},
                                                  {"WithoutCamera", withoutCamera},
                                                  {"InALargerComposition", inALargerComposition},
                                                  {"BillboardsFromAside", billboardsFromAside}};

INSTANTIATE_TEST_SUITE_P(Camera, OtherViews, otherViewsOf(viewedPictures), nameOfView);

}  // namespace
}  // namespace Tessavoy
