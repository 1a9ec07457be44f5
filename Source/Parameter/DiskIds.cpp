#include "Source/Parameter/DiskIds.h"

#include "Source/Assert.h"

#include <algorithm>
#include <unordered_map>

namespace Tessavoy {

namespace {

// What a section held when it was first shipped is what is left without the later additions.
constexpr std::string_view core = "Noise.LoopZ Noise.MultLayer";
constexpr std::string_view coreWithoutLayer = "Noise.LoopZ Noise.MultLayer Layer";
constexpr std::string_view loop = "Noise.LoopZ";

constexpr DiskIdRun runs[] = {
    {1, 9, "BlendMode MSAA Rotation CenterPos CountX CountY GridWidth GridHeight HexGrid"},
    {10, 66, "InstanceSize.* InstanceOffsetX.* InstanceOffsetY.*", core},
    {67, 73, "InstanceColor.GroupBegin InstanceColor.Color InstanceColor.Layer.*"},
    {74, 115, "InstanceColor.Brightness.* InstanceColor.Hue.* InstanceColor.Saturation.*", coreWithoutLayer},
    {116, 116, "InstanceColor.GroupEnd"},
    {117, 136, "InstanceAlpha.*", core},
    {137, 140, "InstanceVisible.*"},
    {141, 143, "ShapeGroupBegin ShapeDrawMode ShapeTransformGroupBegin"},
    {144, 162, "InstanceRotation.*", core},
    {163, 163, "ShapeUniformScaling"},
    {164, 201, "ShapeScaleX.* ShapeScaleY.*", core},
    {202, 202, "ShapeTransformGroupEnd"},
    {203, 240, "ShapeStrokeWidth.* ShapeRaysCount.*", core},
    {241, 241, "ShapeAngleOffset"},
    {242, 298, "ShapeShelfLength.* ShapeLinkMiddleOffset.* ShapeRoundingRadius.*", core},
    {299, 300, "ShapeRoundingDots ShapeGroupEnd"},
    {302, 302, "ParamsGroupBegin"},
    {303, 314, "Float.GroupBegin Float.Custom# Float.GroupEnd"},
    {315, 326, "Color.GroupBegin Color.Custom# Color.GroupEnd"},
    {327, 338, "Layer.GroupBegin Layer.Custom# Layer.GroupEnd"},
    {339, 339, "ParamsGroupEnd"},
    {340, 342, "ShapeFeatherScreenSpace ShapeFeatherPixels ShapeFeatherPercents"},
    {343, 402,
     "InstanceSize.Noise.MultLayer.* InstanceRotation.Noise.MultLayer.* InstanceOffsetX.Noise.MultLayer.* "
     "InstanceOffsetY.Noise.MultLayer.* InstanceColor.Brightness.Noise.MultLayer.* InstanceColor.Hue.Noise.MultLayer.* "
     "InstanceColor.Saturation.Noise.MultLayer.* InstanceAlpha.Noise.MultLayer.* ShapeScaleX.Noise.MultLayer.* "
     "ShapeScaleY.Noise.MultLayer.* ShapeStrokeWidth.Noise.MultLayer.* ShapeRaysCount.Noise.MultLayer.* "
     "ShapeShelfLength.Noise.MultLayer.* ShapeLinkMiddleOffset.Noise.MultLayer.* "
     "ShapeRoundingRadius.Noise.MultLayer.*"},
    {403, 403, "Noise.GroupBegin"},
    {404, 543, "Noise.Custom#.*", "LoopZ ResultOffset"},
    {544, 544, "Noise.GroupEnd"},
    {545, 545, "Random.GroupBegin"},
    {546, 595, "Random.Custom#.*"},
    {596, 596, "Random.GroupEnd"},
    {597, 642, "ShapeAnchorX.* ShapeAnchorY.*", loop},
    {643, 657, "InstanceColor.Brightness.Layer.* InstanceColor.Hue.Layer.* InstanceColor.Saturation.Layer.*"},
    {658, 662, "Script ShapeType ShapeTextureLayerIndex ShapeXFramesInTexture ShapeYFramesInTexture"},
    {687, 688, "ShapeFrameIndex.GroupBegin ShapeFrameIndex.LoopIndexes"},
    {690, 711, "ShapeFrameIndex.*", "GroupBegin LoopIndexes Noise.LoopZ"},
    {712, 715, "ShapeFramesSplittingMode ShapeFramesAnimationSpeed UseCompCamera CenterZ"},
    {716, 738, "InstanceOffsetZ.*", loop},
    {739, 741, "ShapeFramesAnimationSequence ShapeLimitFramesCount ShapeBillboard"},
    {743, 745, "GlobalScale Rotation3DX Rotation3DY"},
    {746, 791, "InstanceRotation3DX.* InstanceRotation3DY.*", loop},
    {792, 812,
     "InstanceSize.Noise.LoopZ InstanceRotation3DX.Noise.LoopZ InstanceRotation3DY.Noise.LoopZ "
     "InstanceRotation.Noise.LoopZ "
     "InstanceOffsetX.Noise.LoopZ InstanceOffsetY.Noise.LoopZ InstanceOffsetZ.Noise.LoopZ "
     "InstanceColor.Brightness.Noise.LoopZ InstanceColor.Hue.Noise.LoopZ InstanceColor.Saturation.Noise.LoopZ "
     "InstanceAlpha.Noise.LoopZ ShapeFrameIndex.Noise.LoopZ ShapeAnchorX.Noise.LoopZ ShapeAnchorY.Noise.LoopZ "
     "ShapeScaleX.Noise.LoopZ ShapeScaleY.Noise.LoopZ ShapeStrokeWidth.Noise.LoopZ ShapeRaysCount.Noise.LoopZ "
     "ShapeShelfLength.Noise.LoopZ ShapeLinkMiddleOffset.Noise.LoopZ ShapeRoundingRadius.Noise.LoopZ"},
    {813, 822, "Noise.Custom#.LoopZ"},
    {823, 824, "RenderSettingsGroupBegin RenderSettingsGroupEnd"},
    {825, 826, "FogGroupBegin FogGroupEnd"},
    {828, 829, "FogEnabled FogColorWeight"},
    {831, 833, "FogOpacity FogStart FogEnd"},
    {834, 842,
     "OutputGroupBegin OutputType OutputZDepthGroupBegin OutputZDepthGroupEnd OutputZDepthStart OutputZDepthEnd "
     "OutputZDepthClamp OutputZDepthAlpha OutputGroupEnd"},
    {843, 844, "FogColorGradient ShowZBounds"},
    {845, 856, "Ramp.GroupBegin Ramp.Custom# Ramp.GroupEnd"},
    {857, 868, "Gradient.GroupBegin Gradient.Custom# Gradient.GroupEnd"},
    {869, 880, "Path.GroupBegin Path.Custom# Path.GroupEnd"},
    {881, 892, "Point2D.GroupBegin Point2D.Custom# Point2D.GroupEnd"},
    {893, 904, "Point3D.GroupBegin Point3D.Custom# Point3D.GroupEnd"},
    {905, 984,
     "Float.Rename# Color.Rename# Layer.Rename# Ramp.Rename# Gradient.Rename# Path.Rename# Point2D.Rename# "
     "Point3D.Rename#"},
    {985, 993,
     "Noise.Rename1 Noise.Rename2 Noise.Rename3 Noise.Rename4 Noise.Rename5 Noise.Rename6 Noise.Rename7 Noise.Rename8 "
     "Noise.Rename9"},
    {994, 1003, "Random.Rename#"},
    {1004, 1004, "Noise.Rename10"},
    {1006, 1015,
     "Float.ShowRenameButtons Color.ShowRenameButtons Layer.ShowRenameButtons Noise.ShowRenameButtons "
     "Random.ShowRenameButtons Ramp.ShowRenameButtons Gradient.ShowRenameButtons Path.ShowRenameButtons "
     "Point2D.ShowRenameButtons Point3D.ShowRenameButtons"},
    {1047, 1056, "Noise.Custom#.ResultOffset"},
    {1057, 1057, "SortByZ"},
};

/// Calls back with each word of the text.
template <class Function>
void forEachWord(std::string_view text, Function function) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        function(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

/// True where `less` holds the name, or a section that it lies in.
bool isLeftOut(std::string_view name, std::string_view less) {
    bool leftOut = false;
    forEachWord(less, [&](std::string_view word) {
        leftOut |= name == word || (name.starts_with(word) && name.substr(word.size()).starts_with('.'));
    });
    return leftOut;
}

class RunExpansion {
public:
    explicit RunExpansion(std::span<const std::string> ids) : mIds(ids), mDiskIds(ids.size(), 0) {
        for (std::size_t i = 0; i < ids.size(); ++i) {
            mPlaces.emplace(ids[i], i);
        }
    }

    void expand(const DiskIdRun& run) {
        mNext = run.first;
        forEachWord(run.ids, [&](std::string_view word) { expandSlots(word, run.less); });
        TESSAVOY_ASSERT(mNext == run.last + 1, "mNext == run.last + 1");
    }

    std::vector<A_long> result() && { return std::move(mDiskIds); }

private:
    void expandSlots(std::string_view word, std::string_view less) {
        constexpr int slots = 10;
        const std::size_t mark = word.find('#');
        if (mark == std::string_view::npos) {
            expandBlock(std::string(word), less);
            return;
        }
        for (int slot = 1; slot <= slots; ++slot) {
            std::string id(word);
            expandBlock(id.replace(mark, 1, std::to_string(slot)), less);
        }
    }

    void expandBlock(const std::string& word, std::string_view less) {
        if (!word.ends_with('*')) {
            const auto place = mPlaces.find(word);
            TESSAVOY_ASSERT(place != mPlaces.end(), "place != mPlaces.end()");
            give(place->second);
            return;
        }
        const std::string_view prefix = std::string_view(word).substr(0, word.size() - 1);
        for (std::size_t i = 0; i < mIds.size(); ++i) {
            const std::string_view id = mIds[i];
            if (id.starts_with(prefix) && !isLeftOut(id.substr(prefix.size()), less)) {
                give(i);
            }
        }
    }

    void give(std::size_t place) {
        TESSAVOY_ASSERT(mDiskIds[place] == 0, "mDiskIds[place] == 0");
        mDiskIds[place] = mNext++;
    }

    std::span<const std::string> mIds;
    std::unordered_map<std::string_view, std::size_t> mPlaces;
    std::vector<A_long> mDiskIds;
    A_long mNext = 0;
};

}  // namespace

std::span<const DiskIdRun> diskIdRuns() {
    return runs;
}

std::vector<A_long> expandDiskIds(std::span<const std::string> ids) {
    RunExpansion expansion(ids);
    for (const DiskIdRun& run : runs) {
        expansion.expand(run);
    }
    return std::move(expansion).result();
}

}  // namespace Tessavoy
