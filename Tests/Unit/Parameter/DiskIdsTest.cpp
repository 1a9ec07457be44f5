#include "Source/Parameter/DiskIds.h"

#include "Source/Parameter/Catalogue.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace Tessavoy {
namespace {

/// The first and the last id of each stretch of numbers that was handed out at one time.
constexpr std::pair<A_long, const char*> anchors[] = {
    {1, "BlendMode"},
    {2, "MSAA"},
    {3, "Rotation"},
    {4, "CenterPos"},
    {5, "CountX"},
    {6, "CountY"},
    {7, "GridWidth"},
    {8, "GridHeight"},
    {9, "HexGrid"},
    {10, "InstanceSize.GroupBegin"},
    {28, "InstanceSize.GroupEnd"},
    {29, "InstanceOffsetX.GroupBegin"},
    {47, "InstanceOffsetX.GroupEnd"},
    {48, "InstanceOffsetY.GroupBegin"},
    {66, "InstanceOffsetY.GroupEnd"},
    {67, "InstanceColor.GroupBegin"},
    {68, "InstanceColor.Color"},
    {69, "InstanceColor.Layer.GroupBegin"},
    {73, "InstanceColor.Layer.GroupEnd"},
    {116, "InstanceColor.GroupEnd"},
    {74, "InstanceColor.Brightness.GroupBegin"},
    {87, "InstanceColor.Brightness.GroupEnd"},
    {88, "InstanceColor.Hue.GroupBegin"},
    {101, "InstanceColor.Hue.GroupEnd"},
    {102, "InstanceColor.Saturation.GroupBegin"},
    {115, "InstanceColor.Saturation.GroupEnd"},
    {117, "InstanceAlpha.GroupBegin"},
    {118, "InstanceAlpha.CropToOne"},
    {119, "InstanceAlpha.Value"},
    {136, "InstanceAlpha.GroupEnd"},
    {137, "InstanceVisible.GroupBegin"},
    {138, "InstanceVisible.Probability"},
    {139, "InstanceVisible.Seed"},
    {140, "InstanceVisible.GroupEnd"},
    {141, "ShapeGroupBegin"},
    {142, "ShapeDrawMode"},
    {143, "ShapeTransformGroupBegin"},
    {144, "InstanceRotation.GroupBegin"},
    {162, "InstanceRotation.GroupEnd"},
    {163, "ShapeUniformScaling"},
    {164, "ShapeScaleX.GroupBegin"},
    {182, "ShapeScaleX.GroupEnd"},
    {183, "ShapeScaleY.GroupBegin"},
    {201, "ShapeScaleY.GroupEnd"},
    {202, "ShapeTransformGroupEnd"},
    {203, "ShapeStrokeWidth.GroupBegin"},
    {221, "ShapeStrokeWidth.GroupEnd"},
    {222, "ShapeRaysCount.GroupBegin"},
    {240, "ShapeRaysCount.GroupEnd"},
    {241, "ShapeAngleOffset"},
    {242, "ShapeShelfLength.GroupBegin"},
    {260, "ShapeShelfLength.GroupEnd"},
    {261, "ShapeLinkMiddleOffset.GroupBegin"},
    {279, "ShapeLinkMiddleOffset.GroupEnd"},
    {280, "ShapeRoundingRadius.GroupBegin"},
    {298, "ShapeRoundingRadius.GroupEnd"},
    {299, "ShapeRoundingDots"},
    {300, "ShapeGroupEnd"},
    {302, "ParamsGroupBegin"},
    {303, "Float.GroupBegin"},
    {304, "Float.Custom1"},
    {313, "Float.Custom10"},
    {314, "Float.GroupEnd"},
    {315, "Color.GroupBegin"},
    {326, "Color.GroupEnd"},
    {327, "Layer.GroupBegin"},
    {328, "Layer.Custom1"},
    {338, "Layer.GroupEnd"},
    {339, "ParamsGroupEnd"},
    {340, "ShapeFeatherScreenSpace"},
    {341, "ShapeFeatherPixels"},
    {342, "ShapeFeatherPercents"},
    {343, "InstanceSize.Noise.MultLayer.GroupBegin"},
    {344, "InstanceSize.Noise.MultLayer.Index"},
    {345, "InstanceSize.Noise.MultLayer.Source"},
    {346, "InstanceSize.Noise.MultLayer.GroupEnd"},
    {347, "InstanceRotation.Noise.MultLayer.GroupBegin"},
    {351, "InstanceOffsetX.Noise.MultLayer.GroupBegin"},
    {355, "InstanceOffsetY.Noise.MultLayer.GroupBegin"},
    {359, "InstanceColor.Brightness.Noise.MultLayer.GroupBegin"},
    {363, "InstanceColor.Hue.Noise.MultLayer.GroupBegin"},
    {367, "InstanceColor.Saturation.Noise.MultLayer.GroupBegin"},
    {371, "InstanceAlpha.Noise.MultLayer.GroupBegin"},
    {375, "ShapeScaleX.Noise.MultLayer.GroupBegin"},
    {379, "ShapeScaleY.Noise.MultLayer.GroupBegin"},
    {383, "ShapeStrokeWidth.Noise.MultLayer.GroupBegin"},
    {387, "ShapeRaysCount.Noise.MultLayer.GroupBegin"},
    {391, "ShapeShelfLength.Noise.MultLayer.GroupBegin"},
    {395, "ShapeLinkMiddleOffset.Noise.MultLayer.GroupBegin"},
    {399, "ShapeRoundingRadius.Noise.MultLayer.GroupBegin"},
    {402, "ShapeRoundingRadius.Noise.MultLayer.GroupEnd"},
    {403, "Noise.GroupBegin"},
    {404, "Noise.Custom1.GroupBegin"},
    {405, "Noise.Custom1.Multiplier"},
    {406, "Noise.Custom1.Seed"},
    {412, "Noise.Custom1.OffsetZ"},
    {413, "Noise.Custom1.MultLayer.GroupBegin"},
    {417, "Noise.Custom1.GroupEnd"},
    {418, "Noise.Custom2.GroupBegin"},
    {543, "Noise.Custom10.GroupEnd"},
    {544, "Noise.GroupEnd"},
    {545, "Random.GroupBegin"},
    {546, "Random.Custom1.GroupBegin"},
    {547, "Random.Custom1.Min"},
    {548, "Random.Custom1.Max"},
    {549, "Random.Custom1.Seed"},
    {550, "Random.Custom1.GroupEnd"},
    {595, "Random.Custom10.GroupEnd"},
    {596, "Random.GroupEnd"},
    {597, "ShapeAnchorX.GroupBegin"},
    {619, "ShapeAnchorX.GroupEnd"},
    {620, "ShapeAnchorY.GroupBegin"},
    {642, "ShapeAnchorY.GroupEnd"},
    {643, "InstanceColor.Brightness.Layer.GroupBegin"},
    {647, "InstanceColor.Brightness.Layer.GroupEnd"},
    {648, "InstanceColor.Hue.Layer.GroupBegin"},
    {653, "InstanceColor.Saturation.Layer.GroupBegin"},
    {657, "InstanceColor.Saturation.Layer.GroupEnd"},
    {658, "Script"},
    {659, "ShapeType"},
    {660, "ShapeTextureLayerIndex"},
    {661, "ShapeXFramesInTexture"},
    {662, "ShapeYFramesInTexture"},
    {687, "ShapeFrameIndex.GroupBegin"},
    {688, "ShapeFrameIndex.LoopIndexes"},
    {690, "ShapeFrameIndex.Value"},
    {711, "ShapeFrameIndex.GroupEnd"},
    {712, "ShapeFramesSplittingMode"},
    {713, "ShapeFramesAnimationSpeed"},
    {714, "UseCompCamera"},
    {715, "CenterZ"},
    {716, "InstanceOffsetZ.GroupBegin"},
    {738, "InstanceOffsetZ.GroupEnd"},
    {739, "ShapeFramesAnimationSequence"},
    {740, "ShapeLimitFramesCount"},
    {741, "ShapeBillboard"},
    {743, "GlobalScale"},
    {744, "Rotation3DX"},
    {745, "Rotation3DY"},
    {746, "InstanceRotation3DX.GroupBegin"},
    {768, "InstanceRotation3DX.GroupEnd"},
    {769, "InstanceRotation3DY.GroupBegin"},
    {791, "InstanceRotation3DY.GroupEnd"},
    {792, "InstanceSize.Noise.LoopZ"},
    {793, "InstanceRotation3DX.Noise.LoopZ"},
    {794, "InstanceRotation3DY.Noise.LoopZ"},
    {795, "InstanceRotation.Noise.LoopZ"},
    {796, "InstanceOffsetX.Noise.LoopZ"},
    {797, "InstanceOffsetY.Noise.LoopZ"},
    {798, "InstanceOffsetZ.Noise.LoopZ"},
    {799, "InstanceColor.Brightness.Noise.LoopZ"},
    {800, "InstanceColor.Hue.Noise.LoopZ"},
    {801, "InstanceColor.Saturation.Noise.LoopZ"},
    {802, "InstanceAlpha.Noise.LoopZ"},
    {803, "ShapeFrameIndex.Noise.LoopZ"},
    {804, "ShapeAnchorX.Noise.LoopZ"},
    {805, "ShapeAnchorY.Noise.LoopZ"},
    {806, "ShapeScaleX.Noise.LoopZ"},
    {807, "ShapeScaleY.Noise.LoopZ"},
    {808, "ShapeStrokeWidth.Noise.LoopZ"},
    {809, "ShapeRaysCount.Noise.LoopZ"},
    {810, "ShapeShelfLength.Noise.LoopZ"},
    {811, "ShapeLinkMiddleOffset.Noise.LoopZ"},
    {812, "ShapeRoundingRadius.Noise.LoopZ"},
    {813, "Noise.Custom1.LoopZ"},
    {822, "Noise.Custom10.LoopZ"},
    {823, "RenderSettingsGroupBegin"},
    {824, "RenderSettingsGroupEnd"},
    {825, "FogGroupBegin"},
    {826, "FogGroupEnd"},
    {828, "FogEnabled"},
    {829, "FogColorWeight"},
    {831, "FogOpacity"},
    {832, "FogStart"},
    {833, "FogEnd"},
    {834, "OutputGroupBegin"},
    {835, "OutputType"},
    {836, "OutputZDepthGroupBegin"},
    {837, "OutputZDepthGroupEnd"},
    {838, "OutputZDepthStart"},
    {839, "OutputZDepthEnd"},
    {840, "OutputZDepthClamp"},
    {841, "OutputZDepthAlpha"},
    {842, "OutputGroupEnd"},
    {843, "FogColorGradient"},
    {844, "ShowZBounds"},
    {845, "Ramp.GroupBegin"},
    {846, "Ramp.Custom1"},
    {855, "Ramp.Custom10"},
    {856, "Ramp.GroupEnd"},
    {857, "Gradient.GroupBegin"},
    {858, "Gradient.Custom1"},
    {868, "Gradient.GroupEnd"},
    {869, "Path.GroupBegin"},
    {881, "Point2D.GroupBegin"},
    {893, "Point3D.GroupBegin"},
    {904, "Point3D.GroupEnd"},
    {905, "Float.Rename1"},
    {914, "Float.Rename10"},
    {915, "Color.Rename1"},
    {925, "Layer.Rename1"},
    {935, "Ramp.Rename1"},
    {945, "Gradient.Rename1"},
    {955, "Path.Rename1"},
    {965, "Point2D.Rename1"},
    {975, "Point3D.Rename1"},
    {984, "Point3D.Rename10"},
    {985, "Noise.Rename1"},
    {993, "Noise.Rename9"},
    {994, "Random.Rename1"},
    {1003, "Random.Rename10"},
    {1004, "Noise.Rename10"},
    {1006, "Float.ShowRenameButtons"},
    {1007, "Color.ShowRenameButtons"},
    {1008, "Layer.ShowRenameButtons"},
    {1009, "Noise.ShowRenameButtons"},
    {1010, "Random.ShowRenameButtons"},
    {1011, "Ramp.ShowRenameButtons"},
    {1012, "Gradient.ShowRenameButtons"},
    {1013, "Path.ShowRenameButtons"},
    {1014, "Point2D.ShowRenameButtons"},
    {1015, "Point3D.ShowRenameButtons"},
    {1047, "Noise.Custom1.ResultOffset"},
    {1056, "Noise.Custom10.ResultOffset"},
    {1057, "SortByZ"},
};

bool isRetired(A_long diskId) {
    const std::set<A_long> single = {301, 689, 742, 827, 830, 1005};
    return single.contains(diskId) || (diskId >= 663 && diskId <= 686) || (diskId >= 1016 && diskId <= 1046);
}

TEST(DiskIds, AnchorsHold) {
    for (const auto& [diskId, id] : anchors) {
        EXPECT_EQ(parameterDiskId(id), diskId) << id;
    }
}

TEST(DiskIds, CoreOfAPropertyKeepsThePanelsOrder) {
    const char* const core[] = {
        "GroupBegin",    "Value",         "ValueOffset",    "Noise.GroupBegin", "Noise.Multiplier",
        "Noise.Seed",    "Noise.Scale",   "Noise.ScaleX",   "Noise.ScaleY",     "Noise.OffsetX",
        "Noise.OffsetY", "Noise.OffsetZ", "Noise.GroupEnd", "Layer.GroupBegin", "Layer.Multiplier",
        "Layer.Index",   "Layer.Source",  "Layer.GroupEnd", "GroupEnd"};
    A_long diskId = 10;
    for (const char* name : core) {
        EXPECT_EQ(parameterDiskId(std::string("InstanceSize.") + name), diskId++) << name;
    }
}

TEST(DiskIds, EveryNumberIsEitherHandedOutOnceOrRetired) {
    std::map<A_long, std::string> owners;
    for (const std::string& id : registrationList()) {
        const A_long diskId = parameterDiskId(id);
        EXPECT_TRUE(owners.emplace(diskId, id).second) << diskId << " is both " << owners[diskId] << " and " << id;
    }
    EXPECT_EQ(owners.size(), 996u);
    for (A_long diskId = 1; diskId <= 1057; ++diskId) {
        EXPECT_NE(owners.contains(diskId), isRetired(diskId)) << diskId;
    }
    EXPECT_EQ(owners.begin()->first, 1);
    EXPECT_EQ(owners.rbegin()->first, 1057);
}

TEST(DiskIds, RunsStandInAscendingOrderAndDontMeet) {
    A_long previous = 0;
    for (const DiskIdRun& run : diskIdRuns()) {
        EXPECT_GT(run.first, previous) << run.ids;
        EXPECT_GE(run.last, run.first) << run.ids;
        previous = run.last;
    }
}

TEST(DiskIdsDeathTest, AnIdMissingFromTheListStopsTheStart) {
    const std::vector<std::string> incomplete = {"BlendMode", "MSAA"};
    EXPECT_DEATH(expandDiskIds(incomplete), "place != mPlaces.end\\(\\)");
}

TEST(DiskIds, AnIdOutsideTheRunsHasNone) {
    std::vector<std::string> ids = registrationList();
    ids.push_back("Newcomer");
    const std::vector<A_long> diskIds = expandDiskIds(ids);
    EXPECT_EQ(diskIds.back(), 0);
    EXPECT_EQ(diskIds.front(), 714);
}

}  // namespace
}  // namespace Tessavoy
