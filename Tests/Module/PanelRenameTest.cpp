// Giving names to custom slots.

#include "Tests/Module/PanelFixture.h"
#include "Tests/Support/CustomKinds.h"
#include "Tests/Support/DialogTexts.h"

namespace TessavoyHost {
namespace {

using Tessavoy::Testing::customKinds;
using testing::AnyOf;
using testing::ElementsAre;
using testing::IsEmpty;

using Names = SlotNames;

constexpr const char* tooLong = "Failed to rename the parameter: The name must be shorter then 31.";
constexpr const char* inUse = "Failed to rename the parameter: The name already in use by other parameter.";

class PanelRename : public PanelFixture {
protected:
    // The names that the instance would save.
    static Names namesOf(EffectInstance& instance) {
        return readSequenceBlock(instance.flattenedSequenceData()).value().names;
    }

    // Presses a slot's button and answers with OK and a name.
    CommandResult rename(EffectInstance& instance, const char* button, const std::string& name) {
        answerDialogs("1" + name);
        return change(instance, button);
    }

    // A rename that was carried out.
    static void expectRenamed(const CommandResult& result) {
        expectGood(result);
        EXPECT_TRUE(result.projectDirty);
        EXPECT_EQ(result.out.out_flags, PF_OutFlag_SEND_UPDATE_PARAMS_UI);
    }

    // One that left everything as it was.
    static void expectUnchanged(const CommandResult& result) {
        EXPECT_EQ(result.error, PF_Err_NONE);
        EXPECT_FALSE(result.projectDirty);
        EXPECT_EQ(result.out.out_flags & ~PF_OutFlag_DISPLAY_ERROR_MESSAGE, 0);
        EXPECT_THAT(result.broken, IsEmpty());
    }

    static void expectRefused(const CommandResult& result, const char* message) {
        expectUnchanged(result);
        EXPECT_TRUE(result.displayError);
        EXPECT_EQ(result.message, message);
    }
};

TEST_F(PanelRename, StoresTheNameAndShowsIt) {
    const auto instance = instanceNaming({});
    expectRenamed(rename(*instance, "Color.Rename3", "Sky"));
    EXPECT_EQ(namesOf(*instance), (Names{{318, "Sky"}}));
    EXPECT_EQ(itemOf(*instance, "Color.Custom3").name, "Color 3 (Sky)");
    EXPECT_THAT(shownScripts, ElementsAre(renameDialog("")));
}

// The name of a slot that is a group stands at the group's start.
TEST_F(PanelRename, ReachesEverySlotOfEveryKind) {
    const auto instance = instanceNaming({});
    Names expected;
    for (const auto& kind : customKinds) {
        for (int slot = 1; slot <= 10; ++slot) {
            const std::string number = std::to_string(slot), name = "n" + number;
            const std::string button = kind.prefix + std::string(".Rename") + number;
            expectRenamed(rename(*instance, button.c_str(), name));
            expected[kind.firstDiskId + (slot - 1) * kind.diskIdStep] = name;
            EXPECT_EQ(itemOf(*instance, kind.prefix + std::string(".Custom") + number + kind.suffix).name,
                      kind.label + std::string(" ") + number + " (" + name + ")");
        }
    }
    EXPECT_EQ(namesOf(*instance), expected);
}

TEST_F(PanelRename, Takes31CharactersAndRefuses32) {
    const auto instance = instanceNaming({});
    const std::string name32(32, 'n');
    expectRefused(rename(*instance, "Float.Rename1", name32), tooLong);
    EXPECT_EQ(namesOf(*instance), Names());
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1");
    const std::string name31 = name32.substr(1);
    expectRenamed(rename(*instance, "Float.Rename1", name31));
    EXPECT_EQ(namesOf(*instance), (Names{{304, name31}}));
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1 (" + name31.substr(0, 18) + "...");
}

// Letters of two bytes: 15 of them and one more byte are 31, 16 are 32.
TEST_F(PanelRename, CountsBytes) {
    const auto instance = instanceNaming({});
    std::string letters;
    for (int i = 0; i < 15; ++i)
        letters += "\xC3\xBC";
    expectRenamed(rename(*instance, "Path.Rename10", letters + "x"));
    expectRefused(rename(*instance, "Path.Rename10", letters + "\xC3\xBC"), tooLong);
    EXPECT_EQ(namesOf(*instance), (Names{{879, letters + "x"}}));
}

TEST_F(PanelRename, RefusesANameThatAnotherSlotOfTheKindHas) {
    const auto instance = instanceNaming({{304, "Speed"}, {313, "Last"}});
    expectRefused(rename(*instance, "Float.Rename2", "Speed"), inUse);
    expectRefused(rename(*instance, "Float.Rename1", "Last"), inUse);
    EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}, {313, "Last"}}));
    EXPECT_EQ(itemOf(*instance, "Float.Custom2").name, "Slider 2");
}

TEST_F(PanelRename, TakesANameThatASlotOfAnotherKindHas) {
    const auto instance = instanceNaming({{304, "Speed"}});
    expectRenamed(rename(*instance, "Color.Rename1", "Speed"));
    EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}, {316, "Speed"}}));
}

TEST_F(PanelRename, ComparesNamesExactly) {
    const auto instance = instanceNaming({{304, "Speed"}});
    expectRenamed(rename(*instance, "Float.Rename2", "speed"));
    expectRenamed(rename(*instance, "Float.Rename3", "Speed "));
    EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}, {305, "speed"}, {306, "Speed "}}));
}

TEST_F(PanelRename, ToNothingRemovesTheName) {
    const auto instance = instanceNaming({{304, "Speed"}, {305, "Other"}});
    expectRenamed(rename(*instance, "Float.Rename1", ""));
    EXPECT_EQ(namesOf(*instance), (Names{{305, "Other"}}));
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1");
    expectRenamed(rename(*instance, "Float.Rename2", ""));
    EXPECT_EQ(namesOf(*instance), Names()) << "several slots may be without a name";
}

TEST_F(PanelRename, ToItsOwnNameChangesNothing) {
    const auto instance = instanceNaming({{304, "Speed"}});
    const CommandResult result = rename(*instance, "Float.Rename1", "Speed");
    expectUnchanged(result);
    EXPECT_EQ(result.message, "");
    expectUnchanged(rename(*instance, "Float.Rename2", ""));
    EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}}));
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1") << "only an update shows it";
}

TEST_F(PanelRename, CancelLeavesEverything) {
    const auto instance = instanceNaming({{304, "Speed"}});
    for (const char* answer : {"2", "2Another", "2Speed", ""}) {
        answerDialogs(answer);
        for (const char* button : {"Float.Rename1", "Float.Rename2"}) {
            const CommandResult result = change(*instance, button);
            expectUnchanged(result);
            EXPECT_EQ(result.message, "");
        }
    }
    EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}}));
}

// The present name stands escaped in the dialog, its single quotes excepted; what comes back is taken as it is.
TEST_F(PanelRename, ShowsAndTakesNamesOfAllCharacters) {
    struct Name {
        std::string name;
        std::string escaped;
    };
    const auto instance = instanceNaming({});
    std::string before;
    for (const Name& row :
         {Name{"a \"b\" c", "a \\\"b\\\" c"}, Name{"it's", "it's"}, Name{"back\\slash", "back\\\\slash"},
          Name{"S\xC3\xBC\xC3\x9F \xF0\x9F\x8E\xA8", "S\xC3\xBC\xC3\x9F \xF0\x9F\x8E\xA8"},
          Name{"\b\t\n\f\r\x01\x1f\x7f", "\\b\\t\\n\\f\\r\\u0001\\u001f\x7f"}, Name{"%s %d", "%s %d"},
          Name{"2", "2"}}) {
        shownScripts.clear();
        expectRenamed(rename(*instance, "Ramp.Rename2", row.name));
        EXPECT_THAT(shownScripts, ElementsAre(renameDialog(before)));
        EXPECT_EQ(namesOf(*instance), (Names{{847, row.name}}));
        EXPECT_EQ(itemOf(*instance, "Ramp.Custom2").name, "Ramp 2 (" + row.name + ")");
        before = row.escaped;
    }
}

// What another command then does to the label is what the rename did.
TEST_F(PanelRename, AgreesWithTheUpdate) {
    const auto instance = instanceNaming({});
    expectRenamed(rename(*instance, "Random.Rename10", std::string(31, 'r')));
    const std::string label = itemOf(*instance, "Random.Custom10.GroupBegin").name;
    EXPECT_EQ(label, "Random 10 (" + std::string(17, 'r') + "...");
    host().faults().failNth("PF_UpdateParamUI", 1, PF_Err_INVALID_INDEX);
    expectGood(update(*instance));
    EXPECT_EQ(host().faults().struck(), 0);
    EXPECT_EQ(itemOf(*instance, "Random.Custom10.GroupBegin").name, label);
}

// Scripts find a slot by the name that it was given.
TEST_F(PanelRename, LetsScriptsUseTheName) {
    ModuleScene scene = fourSquaresScene();
    scene.set("Float.Custom1", 100).set("Float.Custom7", 0);
    scene.project.script = "local v = GetFloat('Green') / 100 r = v g = v b = v";
    const auto instance = instanceOf(scene);
    expectPicture(instance->renderFrame({}).output, fourSquares());
    expectRenamed(rename(*instance, "Float.Rename7", "Green"));
    expectPicture(instance->renderFrame({}).output, fourSquares({1, 0, 0, 0}));
}

// Every call in turn: its error is the command's, without a message, and everything lent comes back.
TEST_F(PanelRename, AHostCallThatFailsEndsItWithItsError) {
    std::unique_ptr<EffectInstance> instance;
    FailingCommand command;
    command.prepare = [&] {
        instance = instanceNaming({{304, "Speed"}});
        answerDialogs("1Tempo");
    };
    command.run = [&] { return change(*instance, "Float.Rename1"); };
    command.expectFailed = [](const CommandResult& result, int) {
        EXPECT_THAT(result.broken, IsEmpty());
        EXPECT_EQ(result.message, "");
        EXPECT_THAT(result.error, AnyOf(PF_Err_INVALID_INDEX, PF_Err_BAD_CALLBACK_PARAM));
        EXPECT_EQ(result.out.out_flags, 0);
        EXPECT_FALSE(result.projectDirty);
    };
    command.expectDone = expectRenamed;
    // The memory and the utility suite; the dialog, lock, unlock, free; four suites; effect, stream, name, lock,
    // unlock, free, new name, two disposals; the application's suite and its call.
    EXPECT_EQ(failEachCall(host(), PF_Err_INVALID_INDEX, command), 2 + 4 + 4 + 9 + 2);
}

// A failure of the dialog comes before anything is changed.
TEST_F(PanelRename, AFailedDialogChangesNothing) {
    const auto instance = instanceNaming({{304, "Speed"}});
    answerDialogs("1Tempo");
    for (const char* call :
         {"AEGP_ExecuteScript", "AEGP_LockMemHandle", "AEGP_UnlockMemHandle", "AEGP_FreeMemHandle"}) {
        host().faults().failNth(call, 1, PF_Err_INVALID_INDEX);
        EXPECT_EQ(change(*instance, "Float.Rename1").error, PF_Err_INVALID_INDEX) << call;
        host().faults().clear();
        EXPECT_EQ(namesOf(*instance), (Names{{304, "Speed"}})) << call;
    }
}

TEST_F(PanelRename, NeedsThePluginId) {
    const auto instance = instanceNaming({});
    answerDialogs("1Tempo");
    PF_UserChangedParamExtra extra{parameterIndexOf("Float.Rename1")};
    const CommandResult result = commandWithGlobalData(*instance, PF_Cmd_USER_CHANGED_PARAM, &extra, nullptr);
    expectNoPluginId(result);
    EXPECT_THAT(result.broken, IsEmpty());
}

// The editing host's panel isn't arranged, but its buttons do what they say.
TEST_F(PanelRename, WorksInTheEditingHostToo) {
    host({.applId = PF_AppID_Editing});
    const auto instance = instanceNaming({});
    expectRenamed(rename(*instance, "Layer.Rename10", "Plate"));
    EXPECT_EQ(itemOf(*instance, "Layer.Custom10").name, "Layer 10 (Plate)");
    EXPECT_EQ(namesOf(*instance), (Names{{337, "Plate"}}));
}

// An instance that keeps nothing has no place for a name.
TEST_F(PanelRename, NeedsSequenceData) {
    const auto instance = instanceNaming({});
    answerDialogs("1Tempo");
    PF_UserChangedParamExtra extra{parameterIndexOf("Float.Rename1")};
    const CommandResult result = commandWithoutSequenceData(*instance, PF_Cmd_USER_CHANGED_PARAM, &extra);
    EXPECT_EQ(result.error, PF_Err_INTERNAL_STRUCT_DAMAGED);
    EXPECT_THAT(result.broken, IsEmpty());
    EXPECT_EQ(shownScripts.size(), 1u);
    EXPECT_EQ(itemOf(*instance, "Float.Custom1").name, "Slider 1");
}

}  // namespace
}  // namespace TessavoyHost
