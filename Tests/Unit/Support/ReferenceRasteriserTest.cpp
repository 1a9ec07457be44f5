#include "Tests/Support/ReferenceRasteriser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace Tessavoy {
namespace {

constexpr ReferenceColour White = {1.0, 1.0, 1.0, 1.0};

ReferenceVertex vertex(double x, double y, double z, const ReferenceColour& c) {
    return {x, y, z, c[0], c[1], c[2], c[3]};
}

ReferenceScene emptyScene(int width, int height) {
    ReferenceScene scene;
    scene.width = width;
    scene.height = height;
    scene.projection = pixelProjection(width, height);
    return scene;
}

/// Adds a rectangle of two triangles, with texture coordinates from 0 to 1.
void addRectangle(ReferenceScene& scene, double left, double top, double right, double bottom,
                  const ReferenceColour& colour, double z = 0.0, double layer = 0.0) {
    ReferenceVertex a = vertex(left, top, z, colour);
    ReferenceVertex b = vertex(right, top, z, colour);
    ReferenceVertex c = vertex(right, bottom, z, colour);
    ReferenceVertex d = vertex(left, bottom, z, colour);
    b.u = c.u = 1.0;
    c.v = d.v = 1.0;
    a.layer = b.layer = c.layer = d.layer = layer;
    const int shape = static_cast<int>(scene.triangles.size());
    scene.triangles.push_back({{a, b, c}, shape});
    scene.triangles.push_back({{a, c, d}, shape});
}

void expectColour(const ReferencePixel& pixel, const ReferenceColour& colour) {
    for (std::size_t n = 0; n < 4; ++n) {
        EXPECT_NEAR(pixel.colour[n], colour[n], 1e-12) << "channel " << n;
    }
}

int countSure(const ReferencePicture& picture) {
    int sure = 0;
    for (const ReferencePixel& pixel : picture.pixels) {
        sure += pixel.sure ? 1 : 0;
    }
    return sure;
}

TEST(ReferenceRasteriser, AnEmptySceneIsTransparentAndSure) {
    const ReferencePicture picture = drawReference(emptyScene(3, 2));
    ASSERT_EQ(picture.pixels.size(), 6u);
    EXPECT_EQ(countSure(picture), 6);
    expectColour(picture.at(2, 1), {0.0, 0.0, 0.0, 0.0});
}

TEST(ReferenceRasteriser, ARectangleCoversThePixelsWhoseCentresItHolds) {
    ReferenceScene scene = emptyScene(5, 4);
    addRectangle(scene, 1.0, 1.0, 4.0, 3.0, {0.2, 0.4, 0.6, 1.0});
    const ReferencePicture picture = drawReference(scene);
    EXPECT_EQ(countSure(picture), 20);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 5; ++x) {
            const bool inside = x >= 1 && x < 4 && y >= 1 && y < 3;
            expectColour(picture.at(x, y), inside ? ReferenceColour{0.2, 0.4, 0.6, 1.0} : ReferenceColour{});
        }
    }
}

TEST(ReferenceRasteriser, EdgesThroughCentresBelongToTheLeftAndTopAndAreUnsure) {
    ReferenceScene scene = emptyScene(4, 4);
    addRectangle(scene, 0.5, 1.5, 2.5, 3.5, White);
    const ReferencePicture picture = drawReference(scene);
    for (int y = 0; y < 4; ++y) {
        for (int x = 0; x < 4; ++x) {
            EXPECT_EQ(picture.at(x, y).colour[3], x < 2 && y >= 1 && y < 3 ? 1.0 : 0.0) << x << " " << y;
        }
    }
    EXPECT_FALSE(picture.at(0, 1).sure);
    EXPECT_FALSE(picture.at(2, 2).sure);
    EXPECT_TRUE(picture.at(1, 2).sure);
    EXPECT_TRUE(picture.at(3, 0).sure);
}

TEST(ReferenceRasteriser, SuretyEndsAFiftiethOfAPixelFromAnOutline) {
    for (const double distance : {0.019, 0.021}) {
        for (const double side : {-1.0, 1.0}) {
            ReferenceScene scene = emptyScene(3, 3);
            addRectangle(scene, -5.0, -5.0, 1.5 + side * distance, 8.0, White);
            EXPECT_EQ(drawReference(scene).at(1, 1).sure, distance > 0.02) << distance << " " << side;
        }
    }
}

TEST(ReferenceRasteriser, BothWindingsAreDrawn) {
    for (const bool reversed : {false, true}) {
        ReferenceScene scene = emptyScene(3, 3);
        ReferenceTriangle triangle = {
            {vertex(-9.0, -9.0, 0.0, White), vertex(12.0, -9.0, 0.0, White), vertex(0.0, 20.0, 0.0, White)}};
        if (reversed) {
            std::swap(triangle.vertices[1], triangle.vertices[2]);
        }
        scene.triangles.push_back(triangle);
        EXPECT_EQ(drawReference(scene).at(1, 1).colour[3], 1.0);
    }
}

// A fan's inner edges run through many centres; each must be drawn once, by one of its two triangles.
TEST(ReferenceRasteriser, FansHaveNeitherGapsNorDoubleCoverage) {
    for (int corners = 3; corners <= 9; ++corners) {
        for (int step = 0; step < 24; ++step) {
            ReferenceScene scene = emptyScene(21, 21);
            const ReferenceColour half = {1.0, 1.0, 1.0, 0.5};
            const auto corner = [&](int n) {
                const double angle = (step * 15.0 / 180.0 + 2.0 * (n % corners) / corners) * std::numbers::pi;
                return vertex(10.5 + 9.7 * std::sin(angle), 10.5 - 9.7 * std::cos(angle), 0.0, half);
            };
            for (int n = 0; n < corners; ++n) {
                scene.triangles.push_back({{vertex(10.5, 10.5, 0.0, half), corner(n), corner(n + 1)}});
            }
            const ReferencePicture picture = drawReference(scene);
            const double inner = 9.7 * std::cos(std::numbers::pi / corners) - 0.03;
            for (int y = 0; y < 21; ++y) {
                for (int x = 0; x < 21; ++x) {
                    const ReferencePixel& pixel = picture.at(x, y);
                    const double distance = std::hypot(x - 10.0, y - 10.0);
                    const bool drawnOnce = std::abs(pixel.colour[3] - 0.5) < 1e-12;
                    EXPECT_TRUE(drawnOnce || pixel.colour[3] == 0.0) << corners << " " << step;
                    EXPECT_TRUE(distance > inner || (drawnOnce && pixel.sure)) << corners << " " << step;
                }
            }
        }
    }
}

TEST(ReferenceRasteriser, EdgesOfDifferentShapesAreOutlines) {
    ReferenceScene scene = emptyScene(4, 1);
    addRectangle(scene, 0.0, 0.0, 1.5, 1.0, White);
    addRectangle(scene, 1.5, 0.0, 4.0, 1.0, White);
    EXPECT_FALSE(drawReference(scene).at(1, 0).sure);
    for (ReferenceTriangle& triangle : scene.triangles) {
        for (ReferenceVertex& vertex : triangle.vertices) {
            vertex.u = vertex.v = 0.0;
        }
        triangle.shape = 0;
    }
    EXPECT_TRUE(drawReference(scene).at(1, 0).sure);
}

TEST(ReferenceRasteriser, OutlinesWithoutAlphaLeaveThePixelSure) {
    ReferenceScene scene = emptyScene(3, 3);
    scene.triangles.push_back({{vertex(1.5, -20.0, 0.0, {1.0, 1.0, 1.0, 0.0}),
                                vertex(1.5, 20.0, 0.0, {1.0, 1.0, 1.0, 0.0}), vertex(21.5, 0.0, 0.0, White)}});
    const ReferencePicture picture = drawReference(scene);
    EXPECT_TRUE(picture.at(1, 1).sure);
    EXPECT_NEAR(picture.at(2, 1).colour[3], 0.05, 1e-12);
}

TEST(ReferenceRasteriser, NormalBlendingLaysOver) {
    ReferenceScene scene = emptyScene(1, 1);
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, {1.0, 0.0, 0.0, 0.5});
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, {0.0, 1.0, 0.0, 0.5});
    expectColour(drawReference(scene).at(0, 0), {0.25, 0.5, 0.0, 0.75});
}

TEST(ReferenceRasteriser, AddBlendingKeepsColoursAndLaysAlphaOver) {
    ReferenceScene scene = emptyScene(1, 1);
    scene.blend = ReferenceBlend::Add;
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, {1.0, 0.0, 0.5, 0.5});
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, {1.0, 1.0, 0.0, 0.75});
    expectColour(drawReference(scene).at(0, 0), {1.25, 0.75, 0.25, 0.875});
}

// A wall from 1 deep on the left to 3 deep on the right: half way across the picture a quarter of it has passed.
TEST(ReferenceRasteriser, AttributesAreInterpolatedInDepth) {
    ReferenceScene scene = emptyScene(3, 3);
    scene.projection = cameraProjection(3, 3, 3.0, 3.0, 0.0, 0.0, 1.5, 1.5);
    const ReferenceVertex nearTop = vertex(-1.0, -9.0, 1.0 + 1e-9, {0.0, 0.0, 0.0, 1.0});
    const ReferenceVertex farTop = vertex(3.0, -9.0, 3.0, {1.0, 0.0, 0.0, 1.0});
    const ReferenceVertex farBottom = vertex(3.0, 9.0, 3.0, {1.0, 0.0, 0.0, 1.0});
    const ReferenceVertex nearBottom = vertex(-1.0, 9.0, 1.0 + 1e-9, {0.0, 0.0, 0.0, 1.0});
    scene.triangles = {{{nearTop, farTop, farBottom}}, {{nearTop, farBottom, nearBottom}}};
    EXPECT_NEAR(drawReference(scene).at(1, 1).colour[0], 0.25, 1e-6);
}

// A floor one unit below the eye, from behind it to far ahead: seen below the horizon, at depth 1 / (height there).
TEST(ReferenceRasteriser, WhatLiesBehindTheEyeIsNotSeen) {
    ReferenceScene scene = emptyScene(2, 10);
    scene.projection = cameraProjection(2, 10, 2.0, 10.0, 0.0, 0.0, 5.0, 5.0);
    scene.depth = ReferenceDepth{.start = 0.0, .end = 100.0, .clamp = false, .alpha = true};
    scene.triangles = {
        {{vertex(-1e6, 1.0, -10.0, White), vertex(1e6, 1.0, -10.0, White), vertex(0.0, 1.0, 1e5, White)}}};
    const ReferencePicture picture = drawReference(scene);
    for (int y = 0; y < 10; ++y) {
        const double height = (y - 4.5) / 5.0;
        EXPECT_EQ(picture.at(0, y).colour[3], height > 0.0 ? 1.0 : 0.0) << y;
        if (height > 0.0) {
            EXPECT_NEAR(picture.at(0, y).colour[0], (100.0 - 1.0 / height) / 100.0, 1e-9) << y;
        }
        EXPECT_TRUE(picture.at(0, y).sure) << y;
    }
}

TEST(ReferenceRasteriser, WhatLeavesTheClipVolumeIsCutOffThere) {
    ReferenceScene scene = emptyScene(4, 1);
    const auto deep = [](double x, double y) { return vertex(x, y, 1990.0 + 5.0 * x, White); };
    scene.triangles = {{{deep(0.0, -9.0), deep(8.0, -9.0), deep(8.0, 9.0)}},
                       {{deep(0.0, -9.0), deep(8.0, 9.0), deep(0.0, 9.0)}}};
    const ReferencePicture picture = drawReference(scene);
    EXPECT_EQ(picture.at(1, 0).colour[3], 1.0);
    EXPECT_EQ(picture.at(2, 0).colour[3], 0.0);

    scene = emptyScene(1, 1);
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, White, -2001.0);
    EXPECT_EQ(drawReference(scene).at(0, 0).colour[3], 0.0);
}

TEST(ReferenceRasteriser, CameraSeesTheFrameAroundItsAxisAndAPointAtTheZoomAtItsOwnSize) {
    const auto shown = [](const std::array<double, 16>& p, double x, double y, double z, int width, int height) {
        const double w = p[3] * x + p[7] * y + p[11] * z + p[15];
        return std::array{((p[0] * x + p[8] * z + p[12]) / w + 1.0) * 0.5 * width,
                          ((p[5] * y + p[9] * z + p[13]) / w + 1.0) * 0.5 * height};
    };
    const auto whole = cameraProjection(200, 100, 200.0, 100.0, 0.0, 0.0, 300.0, 300.0);
    const auto axis = shown(whole, 0.0, 0.0, 777.0, 200, 100);
    EXPECT_NEAR(axis[0], 100.0, 1e-9);
    EXPECT_NEAR(axis[1], 50.0, 1e-9);
    const auto near = shown(whole, 30.0, -20.0, 300.0, 200, 100);
    EXPECT_NEAR(near[0], 130.0, 1e-9);
    EXPECT_NEAR(near[1], 30.0, 1e-9);
    const auto part =
        shown(cameraProjection(60, 40, 200.0, 100.0, 90.0, 10.0, 300.0, 300.0), 30.0, -20.0, 600.0, 60, 40);
    EXPECT_NEAR(part[0], 100.0 + 15.0 - 90.0, 1e-9);
    EXPECT_NEAR(part[1], 50.0 - 10.0 - 10.0, 1e-9);
}

ReferencePixel foggedPixel(const ReferenceFog& fog, double z, const ReferenceColour& colour) {
    ReferenceScene scene = emptyScene(1, 1);
    scene.fog = fog;
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, colour, z);
    return drawReference(scene).at(0, 0);
}

TEST(ReferenceRasteriser, FogTakesColourByItsWeightAndAlphaByItsOpacity) {
    const ReferenceFog fog{0.0, 100.0, 0.5, 0.2, std::vector<ReferenceColour>(2048, {0.0, 0.0, 1.0, 0.3})};
    expectColour(foggedPixel(fog, 50.0, {1.0, 0.0, 0.0, 1.0}), {0.45, 0.0, 0.15, 0.6});
    expectColour(foggedPixel(fog, -5.0, {1.0, 0.0, 0.0, 1.0}), {1.0, 0.0, 0.0, 1.0});
    expectColour(foggedPixel(fog, 150.0, {1.0, 0.0, 0.0, 1.0}), {0.1, 0.0, 0.1, 0.2});
}

TEST(ReferenceRasteriser, FogColourRunsBetweenTheTexelsOfItsGradient) {
    const auto grey = [](double t) { return ReferenceColour{t, t, t, 1.0}; };
    const ReferenceFog fog{0.0, 100.0, 1.0, 1.0, gradientTexels(grey)};
    ASSERT_EQ(fog.gradient.size(), 2048u);
    EXPECT_EQ(fog.gradient[2047][0], 1.0);
    // the fog itself is the weight of its colour: black gains t * t
    expectColour(foggedPixel(fog, 50.0, {0.0, 0.0, 0.0, 1.0}), {0.25, 0.25, 0.25, 1.0});
    const double quarter = (0.25 * 2048.0 - 0.5) / 2047.0 * 0.25;
    expectColour(foggedPixel(fog, 25.0, {0.0, 0.0, 0.0, 1.0}), {quarter, quarter, quarter, 1.0});
    expectColour(foggedPixel(fog, 100.0, {0.0, 0.0, 0.0, 1.0}), {1.0, 1.0, 1.0, 1.0});
}

TEST(ReferenceRasteriser, FogThatEndsWhereItStartsIsAHardStep) {
    const ReferenceFog fog{100.0, 100.0, 1.0, 1.0, std::vector<ReferenceColour>(2048, {0.0, 0.0, 1.0, 1.0})};
    expectColour(foggedPixel(fog, 99.0, {1.0, 0.0, 0.0, 1.0}), {1.0, 0.0, 0.0, 1.0});
    expectColour(foggedPixel(fog, 101.0, {1.0, 0.0, 0.0, 1.0}), {0.0, 0.0, 1.0, 1.0});
    EXPECT_TRUE(foggedPixel(fog, 99.0, White).sure);
    EXPECT_FALSE(foggedPixel(fog, 100.0, White).sure);
}

ReferencePixel depthPixel(const ReferenceDepth& depth, double z, double alpha) {
    ReferenceScene scene = emptyScene(1, 1);
    scene.depth = depth;
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, {0.9, 0.1, 0.5, alpha}, z);
    return drawReference(scene).at(0, 0);
}

TEST(ReferenceRasteriser, DepthIsGreyFromStartToEnd) {
    expectColour(depthPixel({0.0, 100.0, false, false}, 25.0, 0.5), {0.75, 0.75, 0.75, 1.0});
    expectColour(depthPixel({0.0, 100.0, false, false}, -50.0, 0.5), {1.5, 1.5, 1.5, 1.0});
    expectColour(depthPixel({0.0, 100.0, true, false}, -50.0, 0.5), {1.0, 1.0, 1.0, 1.0});
    expectColour(depthPixel({0.0, 100.0, true, false}, 150.0, 0.5), {0.0, 0.0, 0.0, 1.0});
    expectColour(depthPixel({0.0, 100.0, false, true}, 25.0, 0.5), {0.375, 0.375, 0.375, 0.5});
}

TEST(ReferenceRasteriser, DepthDropsWhatIsNearlyTransparent) {
    expectColour(depthPixel({0.0, 100.0, false, false}, 25.0, 0.009), {0.0, 0.0, 0.0, 1.0});
    expectColour(depthPixel({0.0, 100.0, false, true}, 25.0, 0.01), {0.0, 0.0, 0.0, 0.0});
    EXPECT_FALSE(depthPixel({0.0, 100.0, false, true}, 25.0, 0.01).sure);
    EXPECT_TRUE(depthPixel({0.0, 100.0, false, true}, 25.0, 0.009).sure);
}

TEST(ReferenceRasteriser, DepthTakesTheFogsPlaceAndStartsBlackWithoutAlpha) {
    ReferenceScene scene = emptyScene(2, 1);
    scene.depth = ReferenceDepth{0.0, 100.0, false, false};
    scene.fog = ReferenceFog{0.0, 1.0, 1.0, 0.0, std::vector<ReferenceColour>(2048)};
    addRectangle(scene, 0.0, 0.0, 1.0, 1.0, White, 50.0);
    const ReferencePicture picture = drawReference(scene);
    expectColour(picture.at(0, 0), {0.5, 0.5, 0.5, 1.0});
    expectColour(picture.at(1, 0), {0.0, 0.0, 0.0, 1.0});
}

TEST(ReferenceRasteriser, TexturesAreSampledBetweenTexelCentres) {
    ReferenceScene scene = emptyScene(4, 1);
    scene.texture = ReferenceTexture{2, 1, 1, {{0.0, 0.0, 0.0, 1.0}, {1.0, 1.0, 1.0, 1.0}}};
    addRectangle(scene, 0.0, 0.0, 4.0, 1.0, {1.0, 0.5, 0.25, 0.5});
    const ReferencePicture picture = drawReference(scene);
    const double expected[] = {0.0, 0.25, 0.75, 1.0};
    for (int x = 0; x < 4; ++x) {
        expectColour(picture.at(x, 0), {expected[x] * 0.5, expected[x] * 0.25, expected[x] * 0.125, 0.5});
    }
}

TEST(ReferenceRasteriser, TextureRowsAndLayersFollowEachOther) {
    ReferenceScene scene = emptyScene(1, 2);
    const auto grey = [](double level) { return ReferenceColour{level, level, level, 1.0}; };
    scene.texture = ReferenceTexture{1, 2, 2, {grey(0.1), grey(0.2), grey(0.3), grey(0.4)}};
    addRectangle(scene, 0.0, 0.0, 1.0, 2.0, White, 0.0, 0.0);
    EXPECT_NEAR(drawReference(scene).at(0, 0).colour[0], 0.1, 1e-12);
    EXPECT_NEAR(drawReference(scene).at(0, 1).colour[0], 0.2, 1e-12);
    for (const double layer : {0.6, 1.0, 7.0}) {
        scene.triangles.clear();
        addRectangle(scene, 0.0, 0.0, 1.0, 2.0, White, 0.0, layer);
        EXPECT_NEAR(drawReference(scene).at(0, 1).colour[0], 0.4, 1e-12) << layer;
    }
}

// One doubled pixel, the first of pixel (1, 1): it is in the middle tap there, and in one corner tap of the four
// pixels around its own first corner. Each tap takes a quarter of it and counts a fifth.
TEST(ReferenceRasteriser, ResolvingSpreadsADoubledPixelOverItsTaps) {
    ReferenceScene scene = emptyScene(3, 3);
    scene.multisampled = true;
    addRectangle(scene, 1.0, 1.0, 1.5, 1.5, White);
    const ReferencePicture picture = drawReference(scene);
    const double expected[3][3] = {{0.05, 0.05, 0.0}, {0.05, 0.1, 0.0}, {0.0, 0.0, 0.0}};
    for (int y = 0; y < 3; ++y) {
        for (int x = 0; x < 3; ++x) {
            EXPECT_NEAR(picture.at(x, y).colour[3], expected[y][x], 1e-12) << x << " " << y;
        }
    }
    EXPECT_EQ(countSure(picture), 9);
}

TEST(ReferenceRasteriser, ResolvingAFullPictureKeepsItToItsBorders) {
    ReferenceScene scene = emptyScene(3, 2);
    scene.multisampled = true;
    addRectangle(scene, -1.0, -1.0, 4.0, 3.0, {0.25, 0.5, 1.0, 1.0});
    for (const ReferencePixel& pixel : drawReference(scene).pixels) {
        expectColour(pixel, {0.25, 0.5, 1.0, 1.0});
        EXPECT_TRUE(pixel.sure);
    }
}

// An outline through doubled column 3 reaches the taps of pixels 1 and 2.
TEST(ReferenceRasteriser, ResolvedPixelsAreSureWhenAllTheirSamplesAre) {
    ReferenceScene scene = emptyScene(5, 1);
    scene.multisampled = true;
    addRectangle(scene, -1.0, -1.0, 1.75, 2.0, White);
    const ReferencePicture picture = drawReference(scene);
    for (int x = 0; x < 5; ++x) {
        EXPECT_EQ(picture.at(x, 0).sure, x != 1 && x != 2) << x;
    }
}

TEST(ReferenceRasteriser, VerticesThatAreNotFiniteMakeEverythingUnsure) {
    for (const double odd : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        ReferenceScene scene = emptyScene(2, 1);
        addRectangle(scene, 0.0, 0.0, 1.0, 1.0, White);
        scene.triangles[0].vertices[0].x = odd;
        EXPECT_EQ(countSure(drawReference(scene)), 0);
    }
}

TEST(ReferenceRasteriser, TrianglesWithoutAreaDrawNothing) {
    ReferenceScene scene = emptyScene(3, 3);
    scene.triangles = {{{vertex(0.0, 0.0, 0.0, White), vertex(3.0, 3.0, 0.0, White), vertex(1.5, 1.5, 0.0, White)}},
                       {{vertex(1.5, 1.5, 0.0, White), vertex(1.5, 1.5, 0.0, White), vertex(1.5, 1.5, 0.0, White)}}};
    for (const ReferencePixel& pixel : drawReference(scene).pixels) {
        expectColour(pixel, {});
    }
}

}  // namespace
}  // namespace Tessavoy
