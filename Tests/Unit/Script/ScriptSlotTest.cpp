// Which slot the first argument of a function names: by number, or by the name that the user gave to the slot.

#include "Tests/Unit/Script/BankScene.h"

#include <gtest/gtest.h>

#include <string_view>

namespace Tessavoy {
namespace {

constexpr const char* sequenceSuite = "PF Effect Sequence Data Suite";

double firstResult(BankScene& scene, const BankFunction& function, const std::string& slot) {
    return scene.number(function.call(slot));
}

void expectSlot(BankScene& scene, const std::string& argument, A_long slot) {
    for (const BankFunction& function : bankFunctions) {
        EXPECT_EQ(firstResult(scene, function, argument), BankScene::valueOf(function.kind, slot))
            << function.call(argument);
    }
}

TEST(ScriptSlot, ANumberCountsWithoutItsFraction) {
    BankScene scene;
    for (A_long slot = 1; slot <= 10; ++slot) {
        expectSlot(scene, std::to_string(slot), slot);
    }
    expectSlot(scene, "2.9", 2);
    expectSlot(scene, "1.0", 1);
    expectSlot(scene, "9.999", 9);
}

TEST(ScriptSlot, WhatIsBelowOneOrNoNumberIsTheFirst) {
    BankScene scene;
    for (const char* argument : {"0", "-0.0", "-3", "0.999", "-1e300", "math.mininteger", "nil", "true", "false", "{}",
                                 "print", "io.stdout", "coroutine.create(print)", "0 / 0", "1 / 0", "-1 / 0"}) {
        SCOPED_TRACE(argument);
        expectSlot(scene, argument, 1);
    }
}

TEST(ScriptSlot, NoArgumentAtAllIsTheFirst) {
    BankScene scene;
    EXPECT_EQ(scene.number("GetFloat()"), 1 / 32.0);
    EXPECT_EQ(scene.number("GetPoint2D()"), 1 / 32.0);
    EXPECT_EQ(scene.number("GetLayer()"), 1 / 32.0);
}

// The lists have room behind the ten, where everything is in its zero state; a larger number means the last of them.
TEST(ScriptSlot, NumbersAboveTenReadTheZeroState) {
    BankScene scene;
    for (A_long slot = 11; slot <= 22; ++slot) {
        expectSlot(scene, std::to_string(slot), slot);
    }
    for (const char* argument : {"1000", "21.5", "1e300", "2 ^ 31", "2 ^ 32 + 1", "math.maxinteger"}) {
        SCOPED_TRACE(argument);
        expectSlot(scene, argument, 21);
    }
    EXPECT_TRUE(scene.nothingIsLent());
}

TEST(ScriptSlot, ALargeNumberReadsTheLastEntryOfAll) {
    BankScene scene;
    scene.snapshot.Float[19] = 20.0;
    scene.snapshot.Float[20] = 21.0;
    EXPECT_EQ(scene.number("GetFloat(20)"), 20.0);
    EXPECT_EQ(scene.number("GetFloat(21)"), 21.0);
    EXPECT_EQ(scene.number("GetFloat(22)"), 21.0);
    EXPECT_EQ(scene.number("GetFloat(1000)"), 21.0);
}

TEST(ScriptSlot, ANameBelongsToTheSlotOfItsParameterInEveryKind) {
    BankScene scene;
    for (const BankFunction& function : bankFunctions) {
        for (A_long slot = 1; slot <= 10; ++slot) {
            scene.sequence.paramNames[function.diskId(slot)] = function.name + std::to_string(slot);
        }
    }
    for (const BankFunction& function : bankFunctions) {
        for (A_long slot = 1; slot <= 10; ++slot) {
            const std::string name = "'" + (function.name + std::to_string(slot)) + "'";
            EXPECT_EQ(firstResult(scene, function, name), BankScene::valueOf(function.kind, slot)) << name;
        }
    }
    EXPECT_TRUE(scene.nothingIsLent());
}

// A group's other parameters, and the rename buttons, carry no names.
TEST(ScriptSlot, OnlyTheParameterThatCarriesTheNameCounts) {
    BankScene scene;
    for (A_long diskId = 405; diskId <= 417; ++diskId) {
        scene.sequence.paramNames[diskId] = "inside";
    }
    for (A_long diskId = 418; diskId <= 431; ++diskId) {
        scene.sequence.paramNames[diskId] = diskId == 418 ? "second" : "inside";
    }
    EXPECT_EQ(scene.number("GetNoise('second', 0, 0)"), 2 / 32.0);
    EXPECT_EQ(scene.number("GetNoise('inside', 0, 0)"), 1 / 32.0);
    scene.sequence.paramNames[905] = "button";  // Float.Rename1
    scene.sequence.paramNames[305] = "slider";
    EXPECT_EQ(scene.number("GetFloat('slider')"), 2 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('button')"), 1 / 32.0);
}

TEST(ScriptSlot, NamesOfOtherKindsDoNotCount) {
    BankScene scene;
    scene.sequence.paramNames = {{306, "Speed"}, {322, "Speed"}};
    EXPECT_EQ(scene.number("GetFloat('Speed')"), 3 / 32.0);
    EXPECT_EQ(scene.number("GetColor('Speed')"), 7 / 32.0);
    EXPECT_EQ(scene.number("GetPoint2D('Speed')"), 1 / 32.0);
}

TEST(ScriptSlot, ANameThatNobodyAssignedIsTheFirst) {
    BankScene scene;
    expectSlot(scene, "'Speed'", 1);
    for (const BankFunction& function : bankFunctions) {
        scene.sequence.paramNames[function.diskId(3)] = "Speed";
    }
    expectSlot(scene, "'Speed'", 3);
    for (const char* other : {"'speed'", "'SPEED'", "'Speed '", "' Speed'", "'Spee'", "'Speed1'", "''"}) {
        SCOPED_TRACE(other);
        expectSlot(scene, other, 1);
    }
}

TEST(ScriptSlot, OfSlotsWithOneNameTheLastCounts) {
    BankScene scene;
    scene.sequence.paramNames = {{305, "twice"}, {308, "twice"}, {306, "thrice"}, {307, "thrice"}, {313, "thrice"}};
    EXPECT_EQ(scene.number("GetFloat('twice')"), 5 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('thrice')"), 10 / 32.0);
}

TEST(ScriptSlot, ATextIsANameAlsoWhenItReadsAsANumber) {
    BankScene scene;
    expectSlot(scene, "'3'", 1);
    scene.sequence.paramNames = {{308, "2"}, {310, "0x3"}, {311, "1e1"}};
    EXPECT_EQ(scene.number("GetFloat('2')"), 5 / 32.0);
    EXPECT_EQ(scene.number("GetFloat(2)"), 2 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('0x3')"), 7 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('1e1')"), 8 / 32.0);
}

TEST(ScriptSlot, NamesAreComparedInAllTheirBytes) {
    using namespace std::string_literals;
    BankScene scene;
    scene.sequence.paramNames = {
        {305, "a\0b"s},       {306, "a"}, {307, "a\0c"s}, {308, "Größe"}, {309, std::string(3000, 'n')},
        {310, "it's \"x\"\n"}};
    EXPECT_EQ(scene.number("GetFloat('a\\0b')"), 2 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('a')"), 3 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('a\\0c')"), 4 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('a\\0')"), 1 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('Größe')"), 5 / 32.0);
    EXPECT_EQ(scene.number("GetFloat(string.rep('n', 3000))"), 6 / 32.0);
    EXPECT_EQ(scene.number("GetFloat('it\\'s \"x\"\\n')"), 7 / 32.0);
}

TEST(ScriptSlot, SliderAndFloatAreOneFunction) {
    BankScene scene;
    scene.sequence.paramNames = {{306, "Speed"}};
    for (const char* argument : {"1", "10", "11", "nil", "'Speed'", "'none'"}) {
        const std::string slot = argument;
        EXPECT_EQ(scene.results("GetSlider(" + slot + ")"), scene.results("GetFloat(" + slot + ")")) << argument;
    }
    EXPECT_EQ(scene.number("GetSlider('Speed')"), 3 / 32.0);
}

TEST(ScriptSlot, NamesAreReadOnceAFrameAndKind) {
    BankScene scene;
    scene.sequence.paramNames = {{306, "Speed"}, {318, "Tint"}};
    const std::string script = "x = GetFloat('Speed') + GetFloat('none') + GetFloat('Speed')";
    EXPECT_EQ(scene.run(script).x, static_cast<float>(7 / 32.0));
    EXPECT_EQ(scene.paths.acquisitions[sequenceSuite], 1);
    scene.run(script + " + GetColor('Tint') + GetColor('none')");
    EXPECT_EQ(scene.paths.acquisitions[sequenceSuite], 3);
}

TEST(ScriptSlot, NamesAreLookedForAgainWhileAKindHasNone) {
    BankScene scene;
    scene.run("x = GetFloat('a') + GetFloat('b') + GetFloat('a')");
    EXPECT_EQ(scene.paths.acquisitions[sequenceSuite], 3);
}

TEST(ScriptSlot, NumbersAskTheSequenceDataForNothing) {
    BankScene scene;
    expectSlot(scene, "4", 4);
    EXPECT_EQ(scene.paths.acquisitions[sequenceSuite], 0);
}

TEST(ScriptSlot, WithoutSequenceDataEveryNameIsTheFirst) {
    BankScene scene;
    scene.host.constSequenceData = nullptr;
    expectSlot(scene, "'Speed'", 1);
}

// An older host has no suite for the sequence data of renders; the in-data's own is read then.
TEST(ScriptSlot, NamesComeFromTheInDatasRecordWithoutTheSuite) {
    BankScene scene;
    scene.sequence.paramNames = {{306, "Speed"}};
    scene.host.inData.sequence_data = scene.host.constSequenceData;
    scene.host.constSequenceData = nullptr;
    scene.host.absentSuites = {sequenceSuite};
    EXPECT_EQ(scene.number("GetFloat('Speed')"), 3 / 32.0);
}

// Gradients lie a step apart where the other kinds lie two, so a name lands beside its gradient: slot 1 holds gradient
// 1, slot 3 gradient 2, and the even slots hold none.
TEST(ScriptSlot, ANamedGradientReadsTheSlotOfItsOwnNumber) {
    BankScene scene;
    scene.sequence.paramNames = {{858, "first"}, {859, "second"}, {860, "third"}, {867, "tenth"}};
    EXPECT_EQ(scene.results("GetGradient('first', 0.5)"), (std::vector<double>{1 / 32.0, 0.25, 0.5}));
    EXPECT_EQ(scene.results("GetGradient('second', 0.5)"), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(scene.results("GetGradient('third', 0.5)"), (std::vector<double>{3 / 32.0, 0.25, 0.5}));
    EXPECT_EQ(scene.results("GetGradient('tenth', 0.5)"), (std::vector<double>{0, 0, 0}));
}

}  // namespace
}  // namespace Tessavoy
