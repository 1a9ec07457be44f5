#include "Tests/Support/ReferenceGrid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace Tessavoy {
namespace {

/// The box around what is drawn, in render pixels.
struct Box {
    double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9, front = 1e9, back = -1e9;
};

void expectBox(const Box& box, double left, double right, double top, double bottom) {
    EXPECT_NEAR(box.left, left, 1e-9);
    EXPECT_NEAR(box.right, right, 1e-9);
    EXPECT_NEAR(box.top, top, 1e-9);
    EXPECT_NEAR(box.bottom, bottom, 1e-9);
}

/// The box in view space around the vertices of one cell whose alpha is at least `alpha`.
Box boxOf(const ReferenceScene& scene, int shape, double alpha = 0.0) {
    Box box;
    for (const ReferenceTriangle& triangle : scene.triangles) {
        for (const ReferenceVertex& v : triangle.vertices) {
            if (triangle.shape == shape && v.a >= alpha) {
                box = {std::min(box.left, v.x),   std::max(box.right, v.x), std::min(box.top, v.y),
                       std::max(box.bottom, v.y), std::min(box.front, v.z), std::max(box.back, v.z)};
            }
        }
    }
    return box;
}

bool hasVertex(const ReferenceScene& scene, double x, double y, double z = 0.0) {
    return std::any_of(scene.triangles.begin(), scene.triangles.end(), [&](const ReferenceTriangle& triangle) {
        return std::any_of(triangle.vertices.begin(), triangle.vertices.end(), [&](const ReferenceVertex& v) {
            return std::abs(v.x - x) + std::abs(v.y - y) + std::abs(v.z - z) < 1e-9;
        });
    });
}

/// One square of half side 10 in the middle of 100 x 100 pixels.
ReferenceGrid oneSquare() {
    ReferenceGrid grid;
    grid.width = grid.height = 100;
    grid.centreX = grid.centreY = 50.0;
    return grid;
}

TEST(ReferenceGrid, ASquareHasTheSizeAsItsHalfSide) {
    const ReferenceScene scene = oneSquare().scene();
    EXPECT_EQ(scene.triangles.size(), 4u);
    expectBox(boxOf(scene, 0), 40.0, 60.0, 40.0, 60.0);
    EXPECT_TRUE(hasVertex(scene, 40.0, 60.0));
    EXPECT_TRUE(hasVertex(scene, 50.0, 50.0));

    const ReferencePicture picture = drawReference(scene);
    for (int y = 0; y < 100; ++y) {
        for (int x = 0; x < 100; ++x) {
            const bool inside = x >= 40 && x < 60 && y >= 40 && y < 60;
            EXPECT_EQ(picture.at(x, y).colour[3], inside ? 1.0 : 0.0);
            EXPECT_TRUE(picture.at(x, y).sure);
        }
    }
}

TEST(ReferenceGrid, CellsStandFromEdgeToEdgeOfTheGridRowByRow) {
    ReferenceGrid grid = oneSquare();
    grid.columns = 3;
    grid.rows = 2;
    grid.gridWidth = 60.0;
    grid.gridHeight = 20.0;
    grid.cell.size = 1.0;
    grid.cell.position = {3.0, -2.0, 7.0};
    const ReferenceScene scene = grid.scene();
    for (int number = 0; number < 6; ++number) {
        const double x = 50.0 + 3.0 + 30.0 * (number % 3 - 1);
        const double y = 50.0 - 2.0 + (number < 3 ? -10.0 : 10.0);
        const Box box = boxOf(scene, number);
        expectBox(box, x - 1.0, x + 1.0, y - 1.0, y + 1.0);
        EXPECT_EQ(box.back, 0.0) << "z counts in three dimensions only";
    }
}

TEST(ReferenceGrid, OddRowsOfAHexagonalGridAreHalfACellToTheRight) {
    ReferenceGrid grid = oneSquare();
    grid.columns = grid.rows = 2;
    grid.gridWidth = grid.gridHeight = 40.0;
    grid.hexagonal = true;
    grid.cell.size = 1.0;
    const ReferenceScene scene = grid.scene();
    EXPECT_NEAR(boxOf(scene, 1).right, 71.0, 1e-9);
    EXPECT_NEAR(boxOf(scene, 2).right, 51.0, 1e-9);
    EXPECT_NEAR(boxOf(scene, 3).right, 91.0, 1e-9);
    grid.columns = 1;
    EXPECT_NEAR(boxOf(grid.scene(), 1).right, 51.0, 1e-9);
}

TEST(ReferenceGrid, CellsCanBeChangedHiddenAndReordered) {
    ReferenceGrid grid = oneSquare();
    grid.columns = 3;
    grid.gridWidth = 20.0;
    grid.change = [](int column, int row, ReferenceCell& cell) {
        EXPECT_EQ(row, 0);
        EXPECT_EQ(cell.position[0], 10.0 * (column - 1));
        cell.visible = column != 1;
        cell.colour = {column / 2.0, 0.0, 0.0, 1.0};
    };
    grid.order = {2, 1, 0};
    const ReferenceScene scene = grid.scene();
    ASSERT_EQ(scene.triangles.size(), 8u);
    EXPECT_EQ(scene.triangles.front().shape, 2);
    EXPECT_EQ(scene.triangles.front().vertices[0].r, 1.0);
    EXPECT_EQ(scene.triangles.back().shape, 0);
    EXPECT_EQ(scene.triangles.back().vertices[0].r, 0.0);
}

TEST(ReferenceGrid, OtherShapesHaveTheSizeAsTheirRadiusAndStandOnTheirFirstCornerUp) {
    ReferenceGrid grid = oneSquare();
    grid.cell.corners = 3;
    const double side = 10.0 * std::sqrt(0.75);
    ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 3u);
    EXPECT_TRUE(hasVertex(scene, 50.0, 40.0));
    EXPECT_TRUE(hasVertex(scene, 50.0 + side, 55.0));
    EXPECT_TRUE(hasVertex(scene, 50.0 - side, 55.0));
    grid.shapeAngle = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 60.0, 50.0)) << "angles grow clockwise";
}

TEST(ReferenceGrid, CellAnchorScaleAndAngleActInThatOrder) {
    ReferenceGrid grid = oneSquare();
    grid.cell.corners = 6;
    grid.cell.scaleX = 50.0;
    grid.cell.scaleY = 200.0;
    expectBox(boxOf(grid.scene(), 0), 50.0 - 5.0 * std::sqrt(0.75), 50.0 + 5.0 * std::sqrt(0.75), 30.0, 70.0);
    grid.cell.anchorX = 50.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 55.0, 30.0));
    grid.cell.angle = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 70.0, 55.0));
}

TEST(ReferenceGrid, AnchorOfASquareCountsItsCornerRadius) {
    ReferenceGrid grid = oneSquare();
    grid.cell.anchorX = 100.0;
    expectBox(boxOf(grid.scene(), 0), 40.0 + 10.0 * std::numbers::sqrt2, 60.0 + 10.0 * std::numbers::sqrt2, 40.0, 60.0);
}

TEST(ReferenceGrid, GridTurnsAndScalesAboutItsCentre) {
    ReferenceGrid grid = oneSquare();
    grid.columns = 2;
    grid.gridWidth = 40.0;
    grid.rotation = 90.0;
    grid.globalScale = 50.0;
    const ReferenceScene scene = grid.scene();
    expectBox(boxOf(scene, 0), 45.0, 55.0, 35.0, 45.0);
    expectBox(boxOf(scene, 1), 45.0, 55.0, 55.0, 65.0);
}

TEST(ReferenceGrid, DownsamplingShrinksAboutTheCentreAndTheOriginMovesThePart) {
    ReferenceGrid grid = oneSquare();
    grid.downsampleX = grid.downsampleY = 0.5;
    grid.originX = 30.0;
    grid.originY = 10.0;
    expectBox(boxOf(grid.scene(), 0), 15.0, 25.0, 35.0, 45.0);
}

TEST(ReferenceGrid, FeatherIsARingWithoutAlphaAroundTheShape) {
    ReferenceGrid grid = oneSquare();
    grid.cell.featherPercents = 10.0;
    grid.cell.colour[3] = 0.5;
    ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 12u);
    expectBox(boxOf(scene, 0, 0.5), 40.0, 60.0, 40.0, 60.0);
    const double reach = 10.0 + std::numbers::sqrt2;
    expectBox(boxOf(scene, 0), 50.0 - reach, 50.0 + reach, 50.0 - reach, 50.0 + reach);

    grid.cell.featherPercents = 0.0;
    grid.cell.featherPixels = 8.0;
    grid.downsampleX = grid.downsampleY = 0.5;
    scene = grid.scene();
    expectBox(boxOf(scene, 0), 41.0, 59.0, 41.0, 59.0);
    EXPECT_NEAR(drawReference(scene).at(56, 50).colour[3], 0.5 * 2.5 / 4.0, 1e-9);
    EXPECT_TRUE(drawReference(scene).at(56, 50).sure);
}

TEST(ReferenceGrid, FeatherKeepsItsDistanceOnScaledShapes) {
    ReferenceGrid grid = oneSquare();
    grid.cell.scaleX = 200.0;
    grid.cell.featherPixels = 3.0;
    expectBox(boxOf(grid.scene(), 0), 27.0, 73.0, 37.0, 63.0);
}

TEST(ReferenceGrid, StrokeLiesHalfInsideAndHalfOutside) {
    ReferenceGrid grid = oneSquare();
    grid.cell.strokeWidth = 20.0;
    const double half = std::numbers::sqrt2;
    ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 8u);
    expectBox(boxOf(scene, 0), 40.0 - half, 60.0 + half, 40.0 - half, 60.0 + half);
    EXPECT_TRUE(hasVertex(scene, 40.0 + half, 40.0 + half));
    EXPECT_EQ(drawReference(scene).at(50, 50).colour[3], 0.0);
    EXPECT_EQ(drawReference(scene).at(40, 50).colour[3], 1.0);

    grid.cell.featherPixels = 2.0;
    scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 24u);
    expectBox(boxOf(scene, 0), 38.0 - half, 62.0 + half, 38.0 - half, 62.0 + half);
    EXPECT_TRUE(hasVertex(scene, 42.0 + half, 42.0 + half));
    expectBox(boxOf(scene, 0, 1.0), 40.0 - half, 60.0 + half, 40.0 - half, 60.0 + half);
}

TEST(ReferenceGrid, StrokeOfATriangleIsMitredToTwiceItsWidth) {
    ReferenceGrid grid = oneSquare();
    grid.cell.corners = 3;
    grid.cell.strokeWidth = 20.0;  // 2 pixels, so 1 to each side, which the 60 degree corner doubles
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 38.0));
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 42.0));
}

ReferenceSheet sheetOfSix() {
    ReferenceSheet sheet;
    sheet.columns = 3;
    sheet.rows = 2;
    sheet.texture = {6, 4, 1, {}};
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 6; ++x) {
            const double level = (x / 2 + 3 * (y / 2) + 1) / 6.0;
            sheet.texture.texels.push_back({level, level, level, 1.0});
        }
    }
    return sheet;
}

TEST(ReferenceGrid, TexturedQuadsAreLargerThanSquaresAndShowTheirFrame) {
    ReferenceGrid grid = oneSquare();
    grid.sheet = sheetOfSix();
    grid.shapeAngle = 30.0;  // turns corners, and a quad has none of its own
    const double half = 10.0 * std::numbers::sqrt2;
    for (int frame = 1; frame <= 6; ++frame) {
        grid.cell.frame = frame;
        const ReferenceScene scene = grid.scene();
        EXPECT_EQ(scene.triangles.size(), 2u);
        expectBox(boxOf(scene, 0), 50.0 - half, 50.0 + half, 50.0 - half, 50.0 + half);
        const ReferencePixel centre = drawReference(scene).at(50, 50);
        EXPECT_NEAR(centre.colour[0], frame / 6.0, 1e-9) << frame;
    }
    grid.cell.frame = 99;
    EXPECT_NEAR(drawReference(grid.scene()).at(50, 50).colour[0], 1.0, 1e-9);
}

TEST(ReferenceGrid, FramesAreNotMirrored) {
    ReferenceGrid grid = oneSquare();
    grid.sheet = ReferenceSheet{{2, 2, 1, {{1, 0, 0, 1}, {0, 1, 0, 1}, {0, 0, 1, 1}, {1, 1, 1, 1}}}, 1, 1};
    const ReferencePicture picture = drawReference(grid.scene());
    EXPECT_NEAR(picture.at(37, 37).colour[0], 1.0, 1e-9);
    EXPECT_NEAR(picture.at(62, 37).colour[1], 1.0, 1e-9);
    EXPECT_NEAR(picture.at(37, 62).colour[2], 1.0, 1e-9);
    EXPECT_NEAR(picture.at(62, 62).colour[0], 1.0, 1e-9);
}

TEST(ReferenceGrid, InThreeDimensionsRotationsTurnXToYYToZAndZToX) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.cell.corners = 6;  // the first corner up, at -y
    grid.cell.angleX = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 50.0, -10.0));
    grid.cell.angleY = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 40.0, 50.0, 0.0));
    grid.cell.angle = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 40.0, 0.0));

    grid.cell.angleX = grid.cell.angleY = grid.cell.angle = 0.0;
    grid.centreZ = 30.0;
    grid.rotation = 90.0;   // the corner to +x
    grid.rotationY = 90.0;  // to -z
    grid.rotationX = 90.0;  // to +y
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 60.0, 30.0));
}

TEST(ReferenceGrid, FlatGridsKnowNoDepth) {
    ReferenceGrid grid = oneSquare();
    grid.centreZ = grid.rotationX = grid.rotationY = 30.0;
    grid.cell.angleX = grid.cell.angleY = 40.0;
    grid.cell.position[2] = 50.0;
    const ReferenceScene scene = grid.scene();
    expectBox(boxOf(scene, 0), 40.0, 60.0, 40.0, 60.0);
    EXPECT_EQ(boxOf(scene, 0).back, 0.0);
}

TEST(ReferenceGrid, BillboardsKeepTheirPlaceAndFaceThePicture) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = grid.billboard = true;
    grid.rotationY = 60.0;
    grid.downsampleX = grid.downsampleY = 0.5;
    grid.cell.angleX = 70.0;
    grid.cell.position = {40.0, 0.0, 0.0};
    const ReferenceScene scene = grid.scene();
    const Box box = boxOf(scene, 0);
    expectBox(box, 55.0, 65.0, 45.0, 55.0);
    EXPECT_NEAR(box.front, -20.0 * std::sin(std::numbers::pi / 3.0), 1e-9);
    EXPECT_EQ(box.front, box.back);
}

TEST(ReferenceGrid, CameraShowsCellsByTheirDepth) {
    for (const double downsample : {1.0, 0.5}) {
        ReferenceGrid grid = oneSquare();
        grid.threeDimensional = true;
        grid.downsampleX = grid.downsampleY = downsample;
        grid.centreX = 320.0 * downsample;
        grid.centreY = 240.0 * downsample;
        grid.centreZ = 500.0;
        // twice as far as the zoom: half the size, and half of 20 to the right of the frame's middle
        grid.camera = ReferenceCamera{{300.0, 240.0, -500.0}, 500.0, 200.0, 100.0};
        grid.originX = 60.0 * downsample;
        const ReferencePicture picture = drawReference(grid.scene());
        const double left = (100.0 + 10.0 - 5.0 - 60.0) * downsample;
        const double top = (50.0 - 5.0) * downsample;
        for (int y = 0; y < 100; ++y) {
            for (int x = 0; x < 100; ++x) {
                const bool inside = x + 0.5 > left && x + 0.5 < left + 10.0 * downsample && y + 0.5 > top &&
                                    y + 0.5 < top + 10.0 * downsample;
                if (picture.at(x, y).sure) {
                    EXPECT_EQ(picture.at(x, y).colour[3], inside ? 1.0 : 0.0) << x << " " << y;
                }
            }
        }
    }
}

TEST(ReferenceGrid, DistancesOfFogAndDepthShrinkWithThePicture) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.downsampleX = grid.downsampleY = 0.5;
    grid.centreZ = 100.0;
    grid.fog = ReferenceFog{200.0, 50.0, 1.0, 1.0, std::vector<ReferenceColour>(2048)};
    EXPECT_EQ(grid.scene().fog->start, 100.0);
    EXPECT_EQ(grid.scene().fog->end, 100.0) << "an end before the start is raised to it";
    grid.depth = ReferenceDepth{0.0, 400.0, false, false};
    EXPECT_NEAR(drawReference(grid.scene()).at(50, 50).colour[0], 0.75, 1e-9);
}

TEST(ReferenceGrid, ShapesItDoesNotKnowAreRefused) {
    ReferenceGrid grid = oneSquare();
    grid.cell.corners = 2;
    EXPECT_THROW(grid.scene(), std::invalid_argument);
    grid = oneSquare();
    grid.cell.scaleX = -100.0;
    EXPECT_THROW(grid.scene(), std::invalid_argument);
}

TEST(ReferenceGrid, ShelfIsAFlatAcrossEachCorner) {
    ReferenceGrid grid = oneSquare();
    grid.cell.corners = 6;
    grid.cell.shelf = 40.0;  // 4 pixels, half to each side of the first corner
    const ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 12u);
    EXPECT_TRUE(hasVertex(scene, 48.0, 40.0));
    EXPECT_TRUE(hasVertex(scene, 52.0, 40.0));
    EXPECT_TRUE(hasVertex(scene, 48.0, 60.0));
}

TEST(ReferenceGrid, LinkMovesTheMiddlesOfTheSidesToTheCentre) {
    ReferenceGrid grid = oneSquare();
    grid.cell.link = 20.0;  // of the corner radius
    ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 8u);
    EXPECT_TRUE(hasVertex(scene, 50.0, 40.0 + 2.0 * std::numbers::sqrt2));
    grid.cell.link = -20.0;
    EXPECT_TRUE(hasVertex(grid.scene(), 60.0 + 2.0 * std::numbers::sqrt2, 50.0));
    grid.cell.link = 80.0;
    EXPECT_EQ(drawReference(grid.scene()).at(50, 45).colour[3], 0.0) << "nothing but the centre is left of the shape";
}

TEST(ReferenceGrid, RoundedCornersTouchBothSides) {
    ReferenceGrid grid = oneSquare();
    grid.cell.rounding = 100.0 * 4.0 / (10.0 * std::numbers::sqrt2);  // 4 pixels
    grid.cell.roundingDots = 1;
    ReferenceScene scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 12u);
    EXPECT_TRUE(hasVertex(scene, 44.0, 40.0));
    EXPECT_TRUE(hasVertex(scene, 40.0, 44.0));
    const double middle = 44.0 - 2.0 * std::numbers::sqrt2;
    EXPECT_TRUE(hasVertex(scene, middle, middle));
    grid.cell.roundingDots = 0;
    EXPECT_EQ(grid.scene().triangles.size(), 8u);
    grid.cell.roundingDots = 1;
    grid.cell.rounding = 1000.0;  // as much as half a side takes: a circle of 10 pixels
    scene = grid.scene();
    EXPECT_EQ(scene.triangles.size(), 8u) << "arcs that meet share their ends";
    EXPECT_TRUE(hasVertex(scene, 50.0, 40.0));
    EXPECT_TRUE(hasVertex(scene, 50.0 - 10.0 * std::sqrt(0.5), 50.0 - 10.0 * std::sqrt(0.5)));
}

TEST(ReferenceGrid, RoundingOfAnInwardCornerLiesOutsideIt) {
    ReferenceGrid grid = oneSquare();
    grid.cell.link = 50.0;
    grid.cell.roundingDots = 1;
    const double depth = 5.0 * std::numbers::sqrt2;  // from the square's side to the corner
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 40.0 + depth));
    EXPECT_EQ(drawReference(grid.scene()).at(50, 46).colour[3], 0.0);
    grid.cell.rounding = 50.0;
    const double beyond = std::hypot(10.0, depth) / 10.0 - 1.0;  // of the arc's radius, from the corner to the arc
    EXPECT_TRUE(hasVertex(grid.scene(), 50.0, 40.0 + depth - 5.0 * std::numbers::sqrt2 * beyond));
    EXPECT_EQ(drawReference(grid.scene()).at(50, 46).colour[3], 1.0) << "the arc cuts the inward corner off";
}

TEST(ReferenceGrid, FeatherInPixelsIsMeasuredWhereItIsSeen) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.rotationY = 60.0;  // halves the width
    grid.cell.featherPixels = 2.0;
    expectBox(boxOf(grid.scene(), 0), 43.0, 57.0, 38.0, 62.0);
    grid.downsampleX = 0.5;
    grid.downsampleY = 0.25;
    expectBox(boxOf(grid.scene(), 0), 46.75, 53.25, 46.75, 53.25);
}

TEST(ReferenceGrid, UnequalFactorsShrinkEachDirectionByItsOwnAndDepthByTheHorizontalOne) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.downsampleX = 0.5;
    grid.downsampleY = 0.2;
    grid.centreZ = 30.0;
    const Box box = boxOf(grid.scene(), 0);
    expectBox(box, 45.0, 55.0, 48.0, 52.0);
    EXPECT_EQ(box.front, 15.0);
}

TEST(ReferenceGrid, CameraLooksAtItsTargetAndRolls) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.cell.corners = 6;  // up from the centre, 10 pixels
    grid.camera = ReferenceCamera{{-450.0, 50.0, 0.0}, 500.0, 100.0, 100.0, ReferencePoint{50.0, 50.0, 0.0}};
    // seen from the left: the centre 500 away on the axis, the corner above it
    EXPECT_TRUE(hasVertex(grid.scene(), 0.0, 0.0, 500.0));
    EXPECT_TRUE(hasVertex(grid.scene(), 0.0, -10.0, 500.0));
    grid.camera->roll = 90.0;
    EXPECT_TRUE(hasVertex(grid.scene(), -10.0, 0.0, 500.0)) << "a camera turned clockwise turns the picture back";
    grid.camera = ReferenceCamera{{50.0, 350.0, -400.0}, 500.0, 100.0, 100.0, ReferencePoint{50.0, 50.0, 0.0}};
    // seen from below: the corner is further from the eye, and above the axis
    EXPECT_TRUE(hasVertex(grid.scene(), 0.0, -8.0, 506.0));
}

TEST(ReferenceGrid, CellsAreOrderedByTheirDepth) {
    ReferenceGrid grid = oneSquare();
    grid.threeDimensional = true;
    grid.columns = 4;
    grid.change = [](int column, int, ReferenceCell& cell) {
        cell.position[2] = column == 3 ? 5.0 : -1.0 * (column % 2);
    };
    EXPECT_EQ(grid.farToNear(), (std::vector<int>{3, 0, 2, 1}));
}

TEST(ReferenceGrid, ASheetEndsAtItsLimit) {
    ReferenceGrid grid = oneSquare();
    grid.sheet = sheetOfSix();
    grid.sheet->limit = 2;
    grid.cell.frame = 5;
    EXPECT_NEAR(drawReference(grid.scene()).at(50, 50).colour[0], 2.0 / 6.0, 1e-9);
}

}  // namespace
}  // namespace Tessavoy
