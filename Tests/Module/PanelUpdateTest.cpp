// How the panel follows its settings.

#include <array>
#include <set>
#include <utility>

#include "Tests/Module/PanelFixture.h"
#include "Tests/Support/CustomKinds.h"

namespace TessavoyHost {
namespace {

using Tessavoy::Testing::customKinds;
using testing::IsEmpty;

// The settings that decide what is shown.
struct Settings {
    bool cam = false;
    int type = 1;
    int split = 1;
    bool seq = false;
    int out = 1;
};

ModuleScene sceneWith(const Settings& settings) {
    ModuleScene scene = fourSquaresScene();
    scene.set("UseCompCamera", settings.cam).set("ShapeType", settings.type);
    scene.set("ShapeFramesSplittingMode", settings.split).set("ShapeFramesAnimationSequence", settings.seq);
    return scene.set("OutputType", settings.out);
}

struct Row {
    const char* id;
    bool (*shown)(const Settings&);
};

bool always(const Settings&) {
    return true;
}
bool withCamera(const Settings& s) {
    return s.cam;
}
bool withTexture(const Settings& s) {
    return s.type == 2;
}
bool withItems(const Settings& s) {
    return s.type == 2 && s.split == 1;
}
bool withFrames(const Settings& s) {
    return s.type == 2 && s.split != 3;
}
bool withSequence(const Settings& s) {
    return s.type == 2 && s.split != 3 && s.seq;
}
bool withPolygon(const Settings& s) {
    return s.type == 1;
}
bool withDepth(const Settings& s) {
    return s.out == 2;
}

constexpr std::array<Row, 29> rows = {{
    {"CenterZ", withCamera},
    {"Rotation3DX", withCamera},
    {"Rotation3DY", withCamera},
    {"Rotation", always},
    {"InstanceRotation3DX.GroupBegin", withCamera},
    {"InstanceRotation3DY.GroupBegin", withCamera},
    {"InstanceRotation.GroupBegin", always},
    {"ShapeTextureLayerIndex", withTexture},
    {"ShapeFramesSplittingMode", withTexture},
    {"ShapeXFramesInTexture", withItems},
    {"ShapeYFramesInTexture", withItems},
    {"ShapeLimitFramesCount", withItems},
    {"ShapeFramesAnimationSpeed", withSequence},
    {"ShapeFramesAnimationSequence", withFrames},
    {"ShapeFrameIndex.GroupBegin", withFrames},
    {"ShapeDrawMode", withPolygon},
    {"ShapeBillboard", withCamera},
    {"ShapeAngleOffset", withPolygon},
    {"ShapeFeatherScreenSpace", withPolygon},
    {"ShapeFeatherPixels", withPolygon},
    {"ShapeFeatherPercents", withPolygon},
    {"ShapeStrokeWidth.GroupBegin", withPolygon},
    {"ShapeRaysCount.GroupBegin", withPolygon},
    {"ShapeShelfLength.GroupBegin", withPolygon},
    {"ShapeLinkMiddleOffset.GroupBegin", withPolygon},
    {"ShapeRoundingRadius.GroupBegin", withPolygon},
    {"ShapeRoundingDots", withPolygon},
    {"OutputZDepthGroupBegin", withDepth},
    {"SortByZ", withCamera},
}};

// Every combination of the settings: 2 * 2 * 3 * 2 * 2.
std::vector<Settings> allSettings() {
    std::vector<Settings> all;
    for (int number = 0; number < 48; ++number)
        all.push_back({number % 2 == 1, 1 + number / 2 % 2, 1 + number / 4 % 3, number / 12 % 2 == 1, 1 + number / 24});
    return all;
}

std::string buttonId(const std::string& kind, int slot) {
    return kind + ".Rename" + std::to_string(slot);
}

class PanelUpdate : public PanelFixture {
protected:
    void expectRows(const EffectInstance& instance, const Settings& settings) {
        for (const Row& row : rows)
            EXPECT_EQ(isShown(instance, row.id), row.shown(settings)) << row.id;
        EXPECT_EQ(itemOf(instance, "Rotation").name, settings.cam ? "Grid Rotation Z" : "Grid Rotation");
        EXPECT_EQ(itemOf(instance, "InstanceRotation.GroupBegin").name,
                  settings.cam ? "Instance Rotation Z" : "Instance Rotation");
    }

    // The panel as it is, by index.
    static std::vector<std::pair<std::string, bool>> panelOf(const EffectInstance& instance) {
        std::vector<std::pair<std::string, bool>> items;
        for (int index = 0; index <= 996; ++index)
            items.emplace_back(instance.panel().at(index).name, instance.panel().at(index).hidden);
        return items;
    }

    void expectAsRegistered(const EffectInstance& instance) {
        for (int index = 0; index < static_cast<int>(host().parameters().size()); ++index) {
            const PF_ParamDef& registered = host().parameters()[static_cast<std::size_t>(index)].definition;
            EXPECT_EQ(instance.panel().at(index).name, registered.name) << index;
            EXPECT_EQ(instance.panel().at(index).hidden, (registered.ui_flags & PF_PUI_INVISIBLE) != 0) << index;
        }
    }
};

TEST_F(PanelUpdate, ShowsAndHidesBySettings) {
    for (const Settings& settings : allSettings()) {
        SCOPED_TRACE(testing::Message() << settings.cam << settings.type << settings.split << settings.seq
                                        << settings.out);
        const auto instance = instanceOf(sceneWith(settings));
        expectGood(update(*instance));
        expectRows(*instance, settings);
    }
}

// What the camera decides goes and comes back with it.
TEST_F(PanelUpdate, FollowsTheCameraAsItIsSwitched) {
    Settings settings = {.cam = true};
    const auto instance = instanceOf(sceneWith(settings));
    for (const bool cam : {true, false, true, false}) {
        SCOPED_TRACE(cam);
        settings.cam = cam;
        instance->values().set(parameterIndexOf("UseCompCamera"), 0, cam ? 1.0 : 0.0);
        expectGood(update(*instance));
        expectRows(*instance, settings);
    }
}

// What was registered otherwise follows as well, in both directions, and the rest of the panel stays.
TEST_F(PanelUpdate, LeavesOtherParametersAsTheyAre) {
    std::set<int> concerned;
    for (const Row& row : rows)
        concerned.insert(parameterIndexOf(row.id));
    for (const auto& kind : customKinds) {
        for (int slot = 1; slot <= 10; ++slot)
            concerned.insert(parameterIndexOf(buttonId(kind.prefix, slot)));
    }
    const auto instance = instanceOf(sceneWith({.cam = true, .type = 2, .seq = true, .out = 2}));
    for (const bool hidden : {true, false}) {
        for (int index = 1; index <= 996; ++index)
            instance->panel().hide(index, hidden);
        expectGood(update(*instance));
        for (int index = 1; index <= 996; ++index) {
            if (concerned.contains(index))
                continue;
            EXPECT_EQ(instance->panel().at(index).hidden, hidden) << index;
        }
        expectRows(*instance, {.cam = true, .type = 2, .seq = true, .out = 2});
    }
}

// An update that fails at one parameter has done those before it and none of those after it.
TEST_F(PanelUpdate, GoesThroughThePanelInOrder) {
    const Settings settings = {.cam = true, .type = 2, .split = 2, .out = 2};
    struct Step {
        int index;
        bool hidden;
    };
    std::vector<Step> steps;
    for (const Row& row : rows)
        steps.push_back({parameterIndexOf(row.id), !row.shown(settings)});
    for (const auto& kind : customKinds) {
        for (int slot = 1; slot <= 10; ++slot)
            steps.push_back({parameterIndexOf(buttonId(kind.prefix, slot)), true});
    }
    const auto instance = instanceOf(sceneWith(settings));
    for (std::size_t failing = 0; failing < steps.size(); ++failing) {
        for (const Step& step : steps)
            instance->panel().hide(step.index, !step.hidden);
        instance->panel().rename(parameterIndexOf("Rotation"), "Another");
        host().faults().failNth("AEGP_SetDynamicStreamFlag", static_cast<int>(failing) + 1, PF_Err_INVALID_INDEX);
        EXPECT_EQ(update(*instance).error, PF_Err_INVALID_INDEX);
        host().faults().clear();
        for (std::size_t step = 0; step < steps.size(); ++step) {
            const bool done = instance->panel().at(steps[step].index).hidden == steps[step].hidden;
            EXPECT_EQ(done, step < failing) << step << " of an update that fails at " << failing;
        }
        // The fourth parameter is shown and then labelled.
        EXPECT_EQ(itemOf(*instance, "Rotation").name, failing > 3 ? "Grid Rotation Z" : "Another");
    }
}

// Slots are labelled when all parameters are shown and hidden.
TEST_F(PanelUpdate, LabelsSlotsLast) {
    const auto instance = instanceNaming({{304, "Speed"}, {896, "End"}});
    host().faults().failNth("AEGP_SetDynamicStreamFlag", 129, PF_Err_INVALID_INDEX);
    EXPECT_EQ(update(*instance).error, PF_Err_INVALID_INDEX);
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1");
    host().faults().clear();
    host().faults().failNth("PF_UpdateParamUI", 2, PF_Err_INVALID_INDEX);
    EXPECT_EQ(update(*instance).error, PF_Err_INVALID_INDEX);
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1 (Speed)");
    EXPECT_EQ(itemOf(*instance, "Point3D.Custom3").name, "Point 3D 3");
}

TEST_F(PanelUpdate, AsksForNewFramesEveryTime) {
    const auto instance = instanceOf(sceneWith({}));
    for (int pass = 0; pass < 2; ++pass) {
        const CommandResult result = update(*instance);
        expectGood(result);
        EXPECT_EQ(result.out.out_flags, PF_OutFlag_FORCE_RERENDER);
        EXPECT_EQ(result.out.out_flags2, 0);
    }
}

// A name that is right isn't set again.
TEST_F(PanelUpdate, RelabelsRotationsOnlyWhenTheCameraIsSwitched) {
    const auto instance = instanceOf(sceneWith({.cam = true}));
    host().faults().failNth("AEGP_SetStreamName", 1, PF_Err_INVALID_INDEX);
    EXPECT_EQ(update(*instance).error, PF_Err_INVALID_INDEX);
    host().faults().clear();
    expectGood(update(*instance));
    host().faults().failNth("AEGP_SetStreamName", 1, PF_Err_INVALID_INDEX);
    expectGood(update(*instance));
    EXPECT_EQ(host().faults().struck(), 0);
}

// The feather's two sizes and the stroke's width show by the shape alone, whatever their own switches have hidden.
TEST_F(PanelUpdate, WidensWhatSwitchesNarrowed) {
    for (const int drawMode : {1, 2}) {
        for (const int screenSpace : {0, 1}) {
            ModuleScene scene = sceneWith({});
            scene.set("ShapeDrawMode", drawMode).set("ShapeFeatherScreenSpace", screenSpace);
            const auto instance = instanceOf(scene);
            expectGood(change(*instance, "ShapeDrawMode"));
            expectGood(change(*instance, "ShapeFeatherScreenSpace"));
            expectGood(update(*instance));
            EXPECT_TRUE(isShown(*instance, "ShapeStrokeWidth.GroupBegin"));
            EXPECT_TRUE(isShown(*instance, "ShapeFeatherPixels"));
            EXPECT_TRUE(isShown(*instance, "ShapeFeatherPercents"));
        }
    }
}

TEST_F(PanelUpdate, ShowsTheRenameButtonsOfEachKindByItsSwitch) {
    for (const auto& chosen : customKinds) {
        ModuleScene scene = fourSquaresScene();
        scene.set(std::string(chosen.prefix) + ".ShowRenameButtons", 1);
        const auto instance = instanceOf(scene);
        expectGood(update(*instance));
        for (const auto& kind : customKinds) {
            for (int slot = 1; slot <= 10; ++slot) {
                const std::string id = buttonId(kind.prefix, slot);
                EXPECT_EQ(isShown(*instance, id), &kind == &chosen) << id;
            }
        }
    }
}

TEST_F(PanelUpdate, LabelsSlotsWithTheirNames) {
    // Under the disk ids of the slots 1, 10 and 3, the last of which is a group.
    const auto instance = instanceNaming({{304, "Speed"}, {325, "S\xC3\xBC\xC3\x9F"}, {432, "it's \"wind\""}});
    expectGood(update(*instance));
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1 (Speed)");
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2");
    EXPECT_EQ(itemOf(*instance, "Color.Custom10").name, "Color 10 (S\xC3\xBC\xC3\x9F)");
    EXPECT_EQ(itemOf(*instance, "Noise.Custom3.GroupBegin").name, "Noise 3 (it's \"wind\")");
    EXPECT_EQ(itemOf(*instance, "Point3D.Custom10").name, "Point 3D 10");
}

TEST_F(PanelUpdate, PutsDotsAtTheEndOfLongLabels) {
    const std::string name31 = "1234567890123456789012345678901";
    const auto instance = instanceNaming({{304, name31.substr(0, 19)}, {305, name31.substr(0, 20)}, {313, name31}});
    expectGood(update(*instance));
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1 (1234567890123456789)") << "30 characters";
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2 (123456789012345678...") << "31 characters";
    EXPECT_EQ(itemOf(*instance, "Float.Custom10").name, "Slider 10 (12345678901234567...");
}

TEST_F(PanelUpdate, GivesALabelBackWhenTheNameIsGone) {
    const auto instance = instanceNaming({});
    instance->panel().rename(parameterIndexOf("Path.Custom4"), "Path 4 (gone)");
    expectGood(update(*instance));
    EXPECT_EQ(itemOf(*instance, "Path.Custom4").name, "Path 4");
}

// One of two names is missing; the rest is right already.
TEST_F(PanelUpdate, RenamesOnlyWhatDiffers) {
    const auto instance = instanceNaming({{304, "Speed"}, {305, "1234567890123456789012345678901"}});
    expectGood(update(*instance));
    host().faults().failNth("PF_UpdateParamUI", 1, PF_Err_INVALID_INDEX);
    expectGood(update(*instance));
    EXPECT_EQ(host().faults().struck(), 0);
    instance->panel().rename(parameterIndexOf("Float.Custom1"), "Slider 1");
    EXPECT_EQ(update(*instance).error, PF_Err_INVALID_INDEX);
}

// Every call of an update in turn: its error is the command's, and everything that was lent comes back. In the end the
// panel is as if nothing had failed.
TEST_F(PanelUpdate, AHostCallThatFailsEndsItWithItsError) {
    const auto instance = instanceNaming({{304, "Speed"}});
    expectGood(update(*instance));
    const auto updated = panelOf(*instance);
    FailingCommand command;
    command.prepare = [&] {
        instance->panel().rename(parameterIndexOf("Float.Custom1"), "Slider 1");
        instance->panel().rename(parameterIndexOf("Rotation"), "Another");
    };
    command.run = [&] { return update(*instance); };
    command.expectFailed = [](const CommandResult& result, int) {
        EXPECT_THAT(result.broken, IsEmpty());
        EXPECT_THAT(result.error, testing::AnyOf(PF_Err_INVALID_CALLBACK, PF_Err_BAD_CALLBACK_PARAM));
    };
    command.expectDone = [](const CommandResult& result) { expectGood(result); };
    // For each of 129 parameters five calls, for each of two labels eight without and one for a new name, for one slot
    // one; and six suites.
    EXPECT_EQ(failEachCall(host(), PF_Err_INVALID_CALLBACK, command), 129 * 5 + 2 * 8 + 1 + 1 + 6);
    EXPECT_EQ(panelOf(*instance), updated);
}

TEST_F(PanelUpdate, WithoutASuiteEndsAsAMissingSuite) {
    const auto instance = instanceNaming({{304, "Speed"}});
    struct Suite {
        const char* name;
        A_long version;
    };
    for (const Suite& suite :
         {Suite{"AEGP PF Interface Suite", 1}, Suite{"AEGP Effect Suite", 2}, Suite{"AEGP Stream Suite", 9},
          Suite{"AEGP Dynamic Stream Suite", 5}, Suite{"AEGP Memory Suite", 1}, Suite{"PF Param Utils Suite", 3}}) {
        host().faults().removeSuite(suite.name, suite.version);
        const CommandResult result = update(*instance);
        host().faults().clear();
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM) << suite.name;
        EXPECT_THAT(result.broken, IsEmpty()) << suite.name;
    }
}

TEST_F(PanelUpdate, LeavesThePanelOfTheEditingHost) {
    host({.applId = PF_AppID_Editing});
    const auto instance = instanceOf(sceneWith({.cam = true, .type = 2, .out = 2}));
    host().faults().failNth(Faults::anyCall, 1, PF_Err_INVALID_CALLBACK);
    const CommandResult result = update(*instance);
    expectGood(result);
    EXPECT_EQ(host().faults().struck(), 0) << "the host was called";
    host().faults().clear();
    EXPECT_EQ(result.out.out_flags, 0);
    expectAsRegistered(*instance);
}

TEST_F(PanelUpdate, LeavesThePanelWithoutAPluginId) {
    const auto instance = instanceOf(sceneWith({.cam = true, .type = 2, .out = 2}));
    void* none = nullptr;
    for (const PF_Handle missing : {PF_Handle{nullptr}, PF_Handle{&none}}) {
        const CommandResult result = commandWithGlobalData(*instance, PF_Cmd_UPDATE_PARAMS_UI, nullptr, missing);
        expectGood(result);
        EXPECT_EQ(result.out.out_flags, 0);
        expectAsRegistered(*instance);
    }
}

}  // namespace
}  // namespace TessavoyHost
