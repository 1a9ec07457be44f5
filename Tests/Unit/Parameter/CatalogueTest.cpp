#include "Source/Parameter/Catalogue.h"

#include "Tests/Support/CustomKinds.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <thread>

namespace Tessavoy {
namespace {

using Ids = std::vector<std::string>;

/// The expanded tree, written down from the panel's description rather than from the section tables.
class Panel {
public:
    static Ids write() {
        Panel panel;
        panel.add({"UseCompCamera", "GlobalScale", "Rotation3DX", "Rotation3DY", "Rotation", "CenterPos", "CenterZ",
                   "CountX", "CountY", "GridWidth", "GridHeight", "HexGrid"});
        for (const char* section : {"InstanceSize", "InstanceRotation3DX", "InstanceRotation3DY", "InstanceRotation",
                                    "InstanceOffsetX", "InstanceOffsetY", "InstanceOffsetZ"}) {
            panel.property(section);
        }
        panel.color();
        panel.property("InstanceAlpha", "CropToOne");
        panel.under("InstanceVisible", {"GroupBegin", "Probability", "Seed", "GroupEnd"});
        panel.shape();
        panel.add({"Script", "ParamsGroupBegin"});
        for (const auto& facts : Testing::customKinds) {
            panel.slots(facts.prefix);
        }
        panel.add({"ParamsGroupEnd",
                   "RenderSettingsGroupBegin",
                   "BlendMode",
                   "MSAA",
                   "SortByZ",
                   "FogGroupBegin",
                   "FogEnabled",
                   "FogColorWeight",
                   "FogColorGradient",
                   "FogOpacity",
                   "FogStart",
                   "FogEnd",
                   "FogGroupEnd",
                   "OutputGroupBegin",
                   "OutputType",
                   "OutputZDepthGroupBegin",
                   "OutputZDepthStart",
                   "OutputZDepthEnd",
                   "OutputZDepthClamp",
                   "OutputZDepthAlpha",
                   "OutputZDepthGroupEnd",
                   "OutputGroupEnd",
                   "ShowZBounds",
                   "RenderSettingsGroupEnd"});
        return panel.mIds;
    }

private:
    void add(const Ids& ids) { mIds.insert(mIds.end(), ids.begin(), ids.end()); }

    void under(const std::string& prefix, const Ids& names) {
        for (const std::string& name : names) {
            mIds.push_back(prefix + "." + name);
        }
    }

    void property(const std::string& prefix, const std::string& flag = "") {
        under(prefix, {"GroupBegin"});
        if (!flag.empty()) {
            under(prefix, {flag});
        }
        under(prefix, {"Value",
                       "ValueOffset",
                       "Noise.GroupBegin",
                       "Noise.Multiplier",
                       "Noise.Seed",
                       "Noise.Scale",
                       "Noise.ScaleX",
                       "Noise.ScaleY",
                       "Noise.OffsetX",
                       "Noise.OffsetY",
                       "Noise.OffsetZ",
                       "Noise.LoopZ",
                       "Noise.MultLayer.GroupBegin",
                       "Noise.MultLayer.Index",
                       "Noise.MultLayer.Source",
                       "Noise.MultLayer.GroupEnd",
                       "Noise.GroupEnd",
                       "Layer.GroupBegin",
                       "Layer.Multiplier",
                       "Layer.Index",
                       "Layer.Source",
                       "Layer.GroupEnd",
                       "GroupEnd"});
    }

    void color() {
        under("InstanceColor", {"GroupBegin", "Color", "Layer.GroupBegin", "Layer.Multiplier", "Layer.Index",
                                "Layer.Source", "Layer.GroupEnd"});
        property("InstanceColor.Brightness");
        property("InstanceColor.Hue");
        property("InstanceColor.Saturation");
        under("InstanceColor", {"GroupEnd"});
    }

    void shape() {
        add({"ShapeGroupBegin", "ShapeType", "ShapeTextureLayerIndex", "ShapeFramesSplittingMode",
             "ShapeXFramesInTexture", "ShapeYFramesInTexture", "ShapeLimitFramesCount", "ShapeFramesAnimationSequence",
             "ShapeFramesAnimationSpeed"});
        property("ShapeFrameIndex", "LoopIndexes");
        add({"ShapeDrawMode", "ShapeBillboard", "ShapeTransformGroupBegin"});
        property("ShapeAnchorX");
        property("ShapeAnchorY");
        add({"ShapeUniformScaling"});
        property("ShapeScaleX");
        property("ShapeScaleY");
        add({"ShapeAngleOffset", "ShapeTransformGroupEnd", "ShapeFeatherScreenSpace", "ShapeFeatherPixels",
             "ShapeFeatherPercents"});
        property("ShapeStrokeWidth");
        property("ShapeRaysCount");
        property("ShapeShelfLength");
        property("ShapeLinkMiddleOffset");
        property("ShapeRoundingRadius");
        add({"ShapeRoundingDots", "ShapeGroupEnd"});
    }

    void slots(const std::string& kind) {
        under(kind, {"GroupBegin", "ShowRenameButtons"});
        for (int slot = 1; slot <= 10; ++slot) {
            const std::string custom = kind + ".Custom" + std::to_string(slot);
            if (kind == "Noise") {
                under(custom, {"GroupBegin", "Multiplier", "ResultOffset", "Seed", "Scale", "ScaleX", "ScaleY",
                               "OffsetX", "OffsetY", "OffsetZ", "LoopZ", "MultLayer.GroupBegin", "MultLayer.Index",
                               "MultLayer.Source", "MultLayer.GroupEnd", "GroupEnd"});
            } else if (kind == "Random") {
                under(custom, {"GroupBegin", "Min", "Max", "Seed", "GroupEnd"});
            } else {
                add({custom});
            }
            under(kind, {"Rename" + std::to_string(slot)});
        }
        under(kind, {"GroupEnd"});
    }

    Ids mIds;
};

std::string messageOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "nothing thrown";
}

TEST(Catalogue, ListsTheExpandedTreeInThePanelsOrder) {
    EXPECT_EQ(registrationList(), Panel::write());
    EXPECT_EQ(registrationList().size(), 996u);
}

TEST(Catalogue, IndexIsThePlaceInTheListFromOne) {
    A_long index = 1;
    for (const std::string& id : registrationList()) {
        EXPECT_EQ(parameterIndex(id), index++) << id;
    }
}

TEST(Catalogue, IndexAnchorsHold) {
    const std::pair<const char*, A_long> anchors[] = {{"UseCompCamera", 1},
                                                      {"InstanceSize.GroupBegin", 13},
                                                      {"InstanceColor.GroupBegin", 181},
                                                      {"InstanceAlpha.GroupBegin", 261},
                                                      {"InstanceVisible.GroupBegin", 286},
                                                      {"ShapeGroupBegin", 290},
                                                      {"ShapeFrameIndex.GroupBegin", 299},
                                                      {"Script", 551},
                                                      {"Float.GroupBegin", 553},
                                                      {"Noise.GroupBegin", 622},
                                                      {"Random.GroupBegin", 795},
                                                      {"ParamsGroupEnd", 973},
                                                      {"RenderSettingsGroupBegin", 974},
                                                      {"RenderSettingsGroupEnd", 996}};
    for (const auto& [id, index] : anchors) {
        EXPECT_EQ(parameterIndex(id), index) << id;
    }
}

TEST(Catalogue, UnknownIdsAreRefusedByName) {
    for (const char* id : {"", "usecompcamera", "UseCompCamer", "UseCompCamera ", "InstanceSize", "InstanceSize.Noise",
                           "Noise.Custom1", "Noise.Custom1.MultLayer", "Float.Custom11", ".UseCompCamera"}) {
        const std::string quoted = '"' + std::string(id) + '"';
        EXPECT_EQ(messageOf([&] { parameterIndex(id); }), "Failed to find the parameter index for id " + quoted);
        EXPECT_EQ(messageOf([&] { parameterDiskId(id); }), "Failed to find the disk ID for parameter id " + quoted);
    }
}

TEST(Catalogue, LookUpsFromSeveralThreadsAgree) {
    std::vector<A_long> found(8);
    std::vector<std::thread> threads;
    for (A_long& index : found) {
        threads.emplace_back([&index] { index = parameterIndex("Script") + parameterDiskId("Script"); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(found, std::vector<A_long>(8, 551 + 658));
}

TEST(Catalogue, HashIsThePublishedFnv1a) {
    // The test values of the authors' reference code.
    EXPECT_EQ(hashFnv1a(""), 0xcbf29ce484222325u);
    EXPECT_EQ(hashFnv1a("a"), 0xaf63dc4c8601ec8cu);
    EXPECT_EQ(hashFnv1a("foobar"), 0x85944171f73967e8u);
}

TEST(Sections, NamesFollowTheItemIds) {
    EXPECT_EQ(parameterName(Section::MainParams, 0), "UseCompCamera");
    EXPECT_EQ(parameterName(Section::MainParams, 22), "ShapeGroupBegin");
    EXPECT_EQ(parameterName(Section::MainParams, 52), "Script");
    EXPECT_EQ(parameterName(Section::MainParams, 54), "Float");
    EXPECT_EQ(parameterName(Section::MainParams, 63), "Point3D");
    EXPECT_EQ(parameterName(Section::MainParams, 87), "RenderSettingsGroupEnd");
    EXPECT_EQ(parameterName(Section::GridParam, 4), "Layer");
    EXPECT_EQ(parameterName(Section::AlphaParam, 1), "CropToOne");
    EXPECT_EQ(parameterName(Section::IndexParam, 1), "LoopIndexes");
    EXPECT_EQ(parameterName(Section::ColorParam, 4), "Hue");
    EXPECT_EQ(parameterName(Section::VisibleParam, 1), "Probability");
    EXPECT_EQ(parameterName(Section::NoiseProperty, 2), "Seed");
    EXPECT_EQ(parameterName(Section::NoiseCustomProperty, 2), "ResultOffset");
    EXPECT_EQ(parameterName(Section::LayerProperty, 3), "Source");
    EXPECT_EQ(parameterName(Section::MultLayerProperty, 1), "Index");
    EXPECT_EQ(parameterName(Section::RandomProperty, 2), "Max");
    for (const Section custom :
         {Section::CustomParameters, Section::CustomNoiseParameters, Section::CustomRandomParameters}) {
        EXPECT_EQ(parameterName(custom, 0), "GroupBegin");
        EXPECT_EQ(parameterName(custom, 1), "ShowRenameButtons");
        EXPECT_EQ(parameterName(custom, 2), "Custom1");
        EXPECT_EQ(parameterName(custom, 21), "Rename10");
        EXPECT_EQ(parameterName(custom, 22), "GroupEnd");
    }
}

TEST(Sections, ItemsOutOfRangeAreRefusedWithTheSectionsName) {
    struct Case {
        Section section;
        A_long count;
        const char* name;
    };
    const Case cases[] = {{Section::MainParams, 88, "MainParams"},
                          {Section::GridParam, 6, "GridParam"},
                          {Section::AlphaParam, 7, "AlphaParam"},
                          {Section::IndexParam, 7, "IndexParam"},
                          {Section::ColorParam, 7, "ColorParam"},
                          {Section::VisibleParam, 4, "VisibleParam"},
                          {Section::NoiseProperty, 12, "NoiseProperty"},
                          {Section::NoiseCustomProperty, 13, "NoiseCustomProperty"},
                          {Section::LayerProperty, 5, "LayerProperty"},
                          {Section::MultLayerProperty, 4, "MultLayerProperty"},
                          {Section::RandomProperty, 5, "RandomProperty"},
                          {Section::CustomParameters, 23, "CustomParameters"},
                          {Section::CustomNoiseParameters, 23, "CustomNoiseParameters"},
                          {Section::CustomRandomParameters, 23, "CustomRandomParameters"}};
    for (const Case& row : cases) {
        const std::string text = std::string("Failed to get Id for section ") + row.name;
        EXPECT_NO_THROW(parameterName(row.section, 0));
        EXPECT_NO_THROW(parameterName(row.section, row.count - 1));
        EXPECT_EQ(messageOf([&] { parameterName(row.section, -1); }), text);
        EXPECT_EQ(messageOf([&] { composeId(row.section, "X", row.count); }), text);
    }
}

TEST(Sections, ComposingJoinsByADotAndLeavesItOutWithoutPrefix) {
    EXPECT_EQ(composeId("", "Value"), "Value");
    EXPECT_EQ(composeId(Section::GridParam, "", 1), "Value");
    EXPECT_EQ(composeId(Section::GridParam, "InstanceSize", 1), "InstanceSize.Value");
    EXPECT_EQ(
        composeId(Section::MultLayerProperty, composeId(Section::NoiseProperty, "InstanceColor.Hue.Noise", 10), 2),
        "InstanceColor.Hue.Noise.MultLayer.Source");
}

TEST(Sections, SlotNumbersBelongToSlotsAndTheirButtons) {
    EXPECT_EQ(slotNumber(Section::CustomParameters, 1), 0);
    EXPECT_EQ(slotNumber(Section::CustomParameters, 2), 1);
    EXPECT_EQ(slotNumber(Section::CustomNoiseParameters, 3), 1);
    EXPECT_EQ(slotNumber(Section::CustomRandomParameters, 20), 10);
    EXPECT_EQ(slotNumber(Section::CustomParameters, 21), 10);
    EXPECT_EQ(slotNumber(Section::CustomParameters, 22), 0);
    EXPECT_EQ(slotNumber(Section::GridParam, 2), 0);
}

}  // namespace
}  // namespace Tessavoy
