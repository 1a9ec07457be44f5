#include "Source/RenderGrid/PartLayout.h"

#include "Source/RenderGrid/ShapeGeometry.h"
#include "Tests/Unit/RenderGrid/ReferenceCell.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

std::vector<InstancePart> laidOut(GridScene& scene, A_long count) {
    PartLayout layout(scene.snapshot);
    layout.evaluate(CellBlock({1, 1, false}, 0, 1));
    InstanceState cell{};
    cell.partsCount = count;
    cell.radius = 6.0F;
    std::vector<InstancePart> parts(static_cast<std::size_t>(count));
    const std::uint64_t points = layout.layOut(0, cell, parts.data());
    EXPECT_EQ(points, outlinePointCount(parts.data(), count));
    return parts;
}

TEST(PartLayout, FourPartsStandASquareOnItsSide) {
    GridScene scene;
    const std::vector<InstancePart> parts = laidOut(scene, 4);
    const float expected[] = {45.0F, 135.0F, 225.0F, 315.0F};
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(parts[k].angle, expected[k]);
        EXPECT_EQ(parts[k].radius, 6.0F);
    }
}

TEST(PartLayout, OtherCountsBeginStraightUp) {
    GridScene scene;
    EXPECT_EQ(laidOut(scene, 3)[0].angle, 0.0F);
    EXPECT_EQ(laidOut(scene, 3)[1].angle, 120.0F);
    EXPECT_EQ(laidOut(scene, 5)[4].angle, 288.0F);
    EXPECT_EQ(laidOut(scene, 7)[3].angle, 3.0F * 360.0F / 7.0F);
}

TEST(PartLayout, TheOffsetTurnsAllPartsAndSmallAnglesAreNone) {
    GridScene scene;
    scene.snapshot.ShapeAngleOffset = -119.995;
    const std::vector<InstancePart> parts = laidOut(scene, 3);
    EXPECT_EQ(parts[0].angle, -119.995F);
    EXPECT_EQ(parts[1].angle, 0.0F);
    scene.snapshot.ShapeAngleOffset = 0.01;
    EXPECT_EQ(laidOut(scene, 3)[0].angle, 0.0F);
    scene.snapshot.ShapeAngleOffset = -0.01;
    EXPECT_EQ(laidOut(scene, 3)[0].angle, 0.0F);
    scene.snapshot.ShapeAngleOffset = 0.0101;
    EXPECT_EQ(laidOut(scene, 3)[0].angle, 0.0101F);
    scene.snapshot.ShapeAngleOffset = -45.0;
    EXPECT_EQ(laidOut(scene, 4)[0].angle, 0.0F);
}

TEST(PartLayout, SmallFractionsAreNone) {
    GridScene scene;
    scene.snapshot.ShapeShelfLength.Value = 0.01;
    scene.snapshot.ShapeRoundingRadius.Value = 0.1;
    scene.snapshot.ShapeRoundingDots = 0.01;
    scene.snapshot.ShapeLinkMiddleOffset.Value = 0.01;
    InstancePart part = laidOut(scene, 3)[0];
    EXPECT_EQ(part.shelfLength, 0.0F);
    EXPECT_EQ(part.roundingRadius, 0.0F);
    EXPECT_EQ(part.linkRoundingRadius, 0.0F);
    EXPECT_EQ(part.roundingDots, 0.0F);
    EXPECT_EQ(part.linkRoundingDots, 0.0F);
    EXPECT_EQ(part.linkMiddleOffset, 0.0F);

    scene.snapshot.ShapeShelfLength.Value = -20.0;
    scene.snapshot.ShapeRoundingRadius.Value = -20.0;
    scene.snapshot.ShapeRoundingDots = -2.0;
    scene.snapshot.ShapeLinkMiddleOffset.Value = -20.0;
    part = laidOut(scene, 3)[0];
    EXPECT_EQ(part.shelfLength, 0.0F);
    EXPECT_EQ(part.roundingRadius, 0.0F);
    EXPECT_EQ(part.roundingDots, 0.0F);
    EXPECT_EQ(part.linkMiddleOffset, -0.2F);

    scene.snapshot.ShapeShelfLength.Value = 0.02;
    scene.snapshot.ShapeRoundingRadius.Value = 0.11;
    scene.snapshot.ShapeRoundingDots = 2.75;
    scene.snapshot.ShapeLinkMiddleOffset.Value = 0.02;
    part = laidOut(scene, 3)[0];
    EXPECT_EQ(part.shelfLength, static_cast<float>(0.02 * 0.01));
    EXPECT_EQ(part.roundingRadius, static_cast<float>(0.11 * 0.01));
    EXPECT_EQ(part.linkRoundingRadius, part.roundingRadius);
    EXPECT_EQ(part.roundingDots, 2.75F);
    EXPECT_EQ(part.linkRoundingDots, 2.75F);
    EXPECT_EQ(part.linkMiddleOffset, static_cast<float>(0.02 * 0.01));
}

TEST(PartLayout, TexturedQuadsKeepOnlyTheDots) {
    GridScene scene;
    scene.snapshot.ShapeType = 2;
    scene.snapshot.ShapeShelfLength.Value = 30.0;
    scene.snapshot.ShapeRoundingRadius.Value = 30.0;
    scene.snapshot.ShapeRoundingDots = 3.0;
    scene.snapshot.ShapeLinkMiddleOffset.Value = 30.0;
    addNoise(scene.snapshot.ShapeShelfLength, 40.0, 1);
    const InstancePart part = laidOut(scene, 4)[2];
    EXPECT_EQ(part.shelfLength, 0.0F);
    EXPECT_EQ(part.roundingRadius, 0.0F);
    EXPECT_EQ(part.linkMiddleOffset, 0.0F);
    EXPECT_EQ(part.linkRoundingRadius, 0.0F);
    EXPECT_EQ(part.roundingDots, 3.0F);
    EXPECT_EQ(part.linkRoundingDots, 3.0F);
}

TEST(PartLayout, AnyNumberOfPartsIsLaidOutAlike) {
    for (const bool varying : {false, true}) {
        GridScene scene;
        scene.setCounts(1, 1);
        scene.snapshot.ShapeShelfLength.Value = 10.0;
        scene.snapshot.ShapeLinkMiddleOffset.Value = -5.0;
        scene.snapshot.ShapeRoundingRadius.Value = 4.0;
        scene.snapshot.ShapeAngleOffset = 11.0;
        if (varying) {
            addNoise(scene.snapshot.ShapeRoundingRadius, 3.0, 1);
        }
        const ReferenceGrid reference{scene.snapshot, 1, 0.0, nullptr};
        PartLayout layout(scene.snapshot);
        EXPECT_EQ(layout.dependsOnCountOnly(), !varying);
        layout.evaluate(CellBlock({1, 1, false}, 0, 1));
        for (const A_long count : {64, 3, 65, 3, 66, 65, 4096, 4097, 1, 5000}) {
            InstanceState cell{};
            cell.partsCount = count;
            cell.radius = static_cast<float>(count);
            const std::vector<InstancePart> expected = reference.parts(cell);
            std::vector<InstancePart> parts(static_cast<std::size_t>(count));
            EXPECT_EQ(layout.layOut(0, cell, parts.data()), outlinePointCount(expected.data(), count));
            for (A_long k = 0; k < count; ++k) {
                ASSERT_EQ(parts[k].angle, expected[k].angle) << count << " " << k;
                ASSERT_EQ(parts[k].radius, expected[k].radius);
                ASSERT_EQ(parts[k].roundingRadius, expected[k].roundingRadius);
                ASSERT_NEAR(parts[k].shelfStart.x, expected[k].shelfStart.x, 1e-6);
                ASSERT_NEAR(parts[k].linkMiddle.y, expected[k].linkMiddle.y, 1e-6);
            }
        }
    }
}

}  // namespace
}  // namespace Tessavoy
