// The script of a frame: compiling, what a cell gives it and takes back, and what becomes of its failures.

#include "Source/Script/ScriptHost.h"

#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Script/ScriptFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Tessavoy {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr float infinity = std::numeric_limits<float>::infinity();

std::string compileError(const std::string& script) {
    ScriptScene scene;
    ScriptHost host;
    EXPECT_FALSE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
    return host.errorText();
}

TEST(ScriptHost, AnEmptyScriptLeavesEveryField) {
    ScriptScene scene;
    EXPECT_TRUE(sameFields(scene.run(""), scene.cell()));
    EXPECT_TRUE(sameFields(scene.run("-- a remark"), scene.cell()));
}

TEST(ScriptHost, InputsHaveTheirValues) {
    ScriptScene scene;
    scene.inputs.gridWidth = 0.1;
    scene.inputs.gridHeight = 1e9 + 1;
    // 1000 / 2500 seconds; frame 10 of a hundred units each.
    EXPECT_EQ(scene.evaluate("time, frame, i, j"), (std::array{0.4F, 10.0F, 3.0F, 2.0F}));
    EXPECT_EQ(scene.evaluate("xPart, yPart, xCount, yCount"), (std::array{0.25F, 0.5F, 5.0F, 4.0F}));
    // The grid's size comes in single precision: 0.1 isn't Lua's 0.1, and 1e9 + 1 has no neighbour of 1e9.
    EXPECT_EQ(scene.evaluate("gridWidth, gridHeight - 1e9, gridWidth == 0.1 and 1 or 0, 0"),
              (std::array{0.1F, 0.0F, 0.0F, 0.0F}));
}

TEST(ScriptHost, TimeIsADoubleAndTheFrameAWholeNumberOfSteps) {
    ScriptScene scene;
    scene.host.inData.current_time = 1099;
    EXPECT_EQ(scene.value("time == 1099 / 2500 and 1 or 0"), 1.0F);
    EXPECT_EQ(scene.value("frame"), 10.0F);
}

TEST(ScriptHost, WholeNumbersAreIntegersOnlyWhereTheyAreCounts) {
    ScriptScene scene;
    for (const char* name : {"xCount", "yCount", "spriteIndex"}) {
        EXPECT_EQ(scene.value(std::string("math.type(") + name + ") == 'integer' and 1 or 0"), 1.0F) << name;
    }
    for (const char* name : {"frame", "i", "j", "partsCount", "x", "time"}) {
        EXPECT_EQ(scene.value(std::string("math.type(") + name + ") == 'float' and 1 or 0"), 1.0F) << name;
    }
    for (const char* name : {"visible", "stroke"}) {
        EXPECT_EQ(scene.value(std::string("type(") + name + ") == 'boolean' and 1 or 0"), 1.0F) << name;
    }
}

// Each output under its own name: a script that adds a different number to each must move exactly these fields by it.
TEST(ScriptHost, EveryOutputReachesItsField) {
    struct Output {
        const char* name;
        float InstanceState::*field;
    };
    constexpr Output outputs[] = {{"x", &InstanceState::x},
                                  {"y", &InstanceState::y},
                                  {"z", &InstanceState::z},
                                  {"angleX", &InstanceState::angleX},
                                  {"angleY", &InstanceState::angleY},
                                  {"angle", &InstanceState::angle},
                                  {"radius", &InstanceState::radius},
                                  {"r", &InstanceState::r},
                                  {"g", &InstanceState::g},
                                  {"b", &InstanceState::b},
                                  {"a", &InstanceState::a},
                                  {"feather", &InstanceState::feather},
                                  {"strokeWidth", &InstanceState::strokeWidth},
                                  {"anchorX", &InstanceState::anchorX},
                                  {"anchorY", &InstanceState::anchorY},
                                  {"scaleX", &InstanceState::scaleX},
                                  {"scaleY", &InstanceState::scaleY},
                                  {"angleOffset", &InstanceState::angleOffset}};
    ScriptScene scene;
    for (const auto& [name, field] : outputs) {
        InstanceState expected = scene.cell();
        expected.*field += 1000.0F;
        EXPECT_TRUE(sameFields(scene.run(std::string(name) + " = " + name + " + 1000"), expected)) << name;
    }
    InstanceState expected = scene.cell();
    expected.partsCount = 12;
    expected.spriteIndex = 4;
    EXPECT_TRUE(sameFields(scene.run("partsCount = partsCount + 5; spriteIndex = spriteIndex - 5"), expected));
}

TEST(ScriptHost, OnlyNilAndFalseAreFalse) {
    ScriptScene scene;
    EXPECT_EQ(scene.run("visible = false").visible, 0);
    EXPECT_EQ(scene.run("visible = nil").visible, 0);
    EXPECT_EQ(scene.run("visible = 0").visible, 1);
    EXPECT_EQ(scene.run("visible = ''").visible, 1);
    EXPECT_EQ(scene.run("stroke = false").stroke, 0);
    EXPECT_EQ(scene.run("stroke = 0").stroke, 1);
}

TEST(ScriptHost, WhatIsNoNumberReadsAsZeroAndTextsOfNumbersAsNumbers) {
    ScriptScene scene;
    EXPECT_EQ(scene.evaluate("nil, true, {}, print"), (std::array{0.0F, 0.0F, 0.0F, 0.0F}));
    EXPECT_EQ(scene.evaluate("'12.5', 'twelve', '0x10', ''"), (std::array{12.5F, 0.0F, 16.0F, 0.0F}));
    EXPECT_EQ(scene.run("partsCount = {}").partsCount, 0);
    EXPECT_EQ(scene.run("spriteIndex = 'x'").spriteIndex, 0);
}

TEST(ScriptHost, InfinitiesBecomeZeroAndNotANumberStays) {
    ScriptScene scene;
    EXPECT_EQ(scene.evaluate("1 / 0, -1 / 0, math.huge, 1"), (std::array{0.0F, 0.0F, 0.0F, 1.0F}));
    EXPECT_TRUE(std::isnan(scene.run("x = 0 / 0").x));
    EXPECT_TRUE(std::isnan(scene.run("strokeWidth = 0 / 0").strokeWidth));
    // Finite in double precision, and so no infinity when it is tested.
    EXPECT_EQ(scene.run("x = 1e300").x, infinity);
}

// Whether a script names a field or not, an infinity that was in it is gone afterwards.
TEST(ScriptHost, InfinitiesThatWentInBecomeZeroToo) {
    for (const char* script : {"", "x = x", "-- return"}) {
        ScriptScene scene;
        ScriptHost host;
        ASSERT_TRUE(host.compile(&scene.host.inData, script, &scene.snapshot));
        InstanceState cell = scene.cell();
        cell.x = cell.a = infinity;
        cell.scaleY = cell.angleOffset = -infinity;
        cell.r = std::numeric_limits<float>::quiet_NaN();
        ASSERT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_EQ(cell.x, 0.0F) << script;
        EXPECT_EQ(cell.a, 0.0F) << script;
        EXPECT_EQ(cell.scaleY, 0.0F) << script;
        EXPECT_EQ(cell.angleOffset, 0.0F) << script;
        EXPECT_TRUE(std::isnan(cell.r)) << script;
        EXPECT_EQ(cell.y, scene.cell().y) << script;
        host.release(&scene.host.inData);
    }
}

TEST(ScriptHost, CountsAreTruncatedAndHeldToTheirRange) {
    ScriptScene scene;
    constexpr A_long most = std::numeric_limits<A_long>::max();
    constexpr A_long least = std::numeric_limits<A_long>::min();
    EXPECT_EQ(scene.run("partsCount = 3.99").partsCount, 3);
    EXPECT_EQ(scene.run("partsCount = -3.99").partsCount, -3);
    EXPECT_EQ(scene.run("partsCount = 1 / 0").partsCount, most);
    EXPECT_EQ(scene.run("partsCount = -1e20").partsCount, least);
    EXPECT_EQ(scene.run("partsCount = 0 / 0").partsCount, 0);
    EXPECT_EQ(scene.run("spriteIndex = 2.9").spriteIndex, 2);
    EXPECT_EQ(scene.run("spriteIndex = 1 / 0").spriteIndex, 0);
    EXPECT_EQ(scene.run("spriteIndex = 1e20").spriteIndex, most);
    EXPECT_EQ(scene.run("spriteIndex = 0 / 0").spriteIndex, 0);
}

TEST(ScriptHost, AReturnInABlockGivesNothingBack) {
    ScriptScene scene;
    const InstanceState cell = scene.run("if i == 3 then return end");
    InstanceState nothing{};
    EXPECT_TRUE(sameFields(cell, nothing));
    const InstanceState some = scene.run("do return true, 5, 6 end");
    EXPECT_EQ(some.visible, 1);
    EXPECT_EQ(some.x, 5.0F);
    EXPECT_EQ(some.y, 6.0F);
    EXPECT_EQ(some.radius, 0.0F);
}

TEST(ScriptHost, MoreResultsThanOutputsAreDropped) {
    ScriptScene scene;
    EXPECT_EQ(scene.run("do return true, table.unpack({5, 6, 7}, 1, 100) end").z, 7.0F);
}

TEST(ScriptHost, AReturnAtTheEndDoesNotCompile) {
    // The assembled chunk returns the outputs on the line after the user's text, where "end" must stand.
    EXPECT_EQ(compileError("return x"),
              "[string \"script\"]:4: 'end' expected (to close 'function' at line 2) near 'return'");
}

TEST(ScriptHost, TheFirstLineOfTheTextIsLineThree) {
    EXPECT_THAT(compileError("x = ="), StartsWith("[string \"script\"]:3: "));
    EXPECT_THAT(compileError("\n\nx = ="), StartsWith("[string \"script\"]:5: "));
}

TEST(ScriptHost, WhatRunsAtLoadTimeCanFailToo) {
    // The text closes the function itself, so that what follows runs when the chunk does; the API isn't there yet.
    EXPECT_THAT(compileError("end error('early') do"), HasSubstr("early"));
    EXPECT_THAT(compileError("end GetFloat(1) do"), HasSubstr("GetFloat"));
}

TEST(ScriptHost, AFailedCompileLeavesNoStateAndCellsAlone) {
    ScriptScene scene;
    ScriptHost host;
    EXPECT_FALSE(host.compile(&scene.host.inData, "x = =", &scene.snapshot));
    InstanceState cell = scene.cell();
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_TRUE(sameFields(cell, scene.cell()));
    EXPECT_STRNE(host.errorText(), "");
    EXPECT_TRUE(host.compile(&scene.host.inData, "x = 1", &scene.snapshot));
    EXPECT_STREQ(host.errorText(), "");
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, 1.0F);
}

TEST(ScriptHost, AFailureKeepsTheCellAndEndsTheScript) {
    ScriptScene scene;
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, "x = 99\nif i == 3 then error('no') end", &scene.snapshot));
    InstanceState cell = scene.cell();
    cell.i = 2;
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, 99.0F);
    cell = scene.cell();
    EXPECT_FALSE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_TRUE(sameFields(cell, scene.cell()));
    EXPECT_STREQ(host.errorText(), "[string \"script\"]:4: no");
    cell.i = 2;
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, scene.cell().x);
}

TEST(ScriptHost, ErrorsThatAreNoTexts) {
    const auto errorOf = [](const std::string& script) {
        ScriptScene scene;
        ScriptHost host;
        EXPECT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
        InstanceState cell = scene.cell();
        EXPECT_FALSE(host.runCell(&scene.host.inData, scene.inputs, cell));
        return std::string(host.errorText());
    };
    EXPECT_EQ(errorOf("error({})"), "");
    EXPECT_EQ(errorOf("error(nil)"), "");
    EXPECT_EQ(errorOf("error(42)"), "42");
    EXPECT_EQ(errorOf("error('a\\0b', 0)"), "a");
}

TEST(ScriptHost, AScriptThatLosesItsFunctionFailsAtTheNextCell) {
    for (const char* loss : {"process = nil", "process = 5", "process = {}"}) {
        ScriptScene scene;
        ScriptHost host;
        ASSERT_TRUE(host.compile(&scene.host.inData, loss, &scene.snapshot));
        InstanceState cell = scene.cell();
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_FALSE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_THAT(host.errorText(), HasSubstr("attempt to call a "));
        EXPECT_TRUE(sameFields(cell, scene.cell()));
    }
}

// Another function may take its place, as long as it is one.
TEST(ScriptHost, AScriptMayReplaceItsFunction) {
    ScriptScene scene;
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, "process = function(...) return true, 5 end", &scene.snapshot));
    InstanceState cell = scene.cell();
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_TRUE(sameFields(cell, scene.cell()));
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, 5.0F);
    EXPECT_EQ(cell.y, 0.0F);
}

TEST(ScriptHost, GlobalsLastFromCellToCellAndNoLonger) {
    ScriptScene scene;
    const std::string counting = "count = (count or 0) + 1; x = count";
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, counting.c_str(), &scene.snapshot));
    InstanceState cell = scene.cell();
    for (int k = 1; k <= 3; ++k) {
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        EXPECT_EQ(cell.x, static_cast<float>(k));
    }
    ASSERT_TRUE(host.compile(&scene.host.inData, counting.c_str(), &scene.snapshot));
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, 1.0F);
}

TEST(ScriptHost, AllStandardLibrariesAreOpen) {
    ScriptScene scene;
    EXPECT_EQ(scene.value("#(function() local n = {} for _, lib in ipairs{'package', 'coroutine', 'table', 'io', 'os', "
                          "'string', 'math', 'utf8', 'debug'} do n[#n + 1] = type(_G[lib]) == 'table' and 1 or nil end "
                          "return n end)()"),
              9.0F);
    EXPECT_EQ(scene.value("os.execute and io.open and debug.getinfo and load and 1 or 0"), 1.0F);
}

TEST(ScriptHost, EveryFailureOfHostMemoryIsThrownAndNothingStaysBehind) {
    for (const char* script : {"x = 1", "x = =", "error('late')"}) {
        bool failed = true;
        for (int call = 1; failed; ++call) {
            ScriptScene scene;
            const std::size_t before = scene.host.liveHandles();
            scene.host.failCall(call);
            try {
                ScriptHost host;
                InstanceState cell = scene.cell();
                if (host.compile(&scene.host.inData, script, &scene.snapshot)) {
                    host.runCell(&scene.host.inData, scene.inputs, cell);
                }
            } catch (PF_ErrorValue error) {
                EXPECT_EQ(error, PF_Err_OUT_OF_MEMORY);
                EXPECT_TRUE(scene.host.failed());
            }
            failed = scene.host.failed();
            EXPECT_EQ(scene.host.liveHandles(), before);
            EXPECT_EQ(scene.host.liveLocks(), 0);
        }
    }
}

#ifndef _WIN32  // where a box waits for somebody to read it

TEST(ScriptHostDeathTest, AnErrorOutsideAProtectedCallIsShownAndStopsTheProcess) {
    ScriptScene scene;
    const auto loseTheFunction = [&](const char* error) {
        ScriptHost host;
        const std::string script =
            std::string("process = nil; setmetatable(_G, {__index = function() ") + error + " end})";
        host.compile(&scene.host.inData, script.c_str(), &scene.snapshot);
        InstanceState cell = scene.cell();
        host.runCell(&scene.host.inData, scene.inputs, cell);
        host.runCell(&scene.host.inData, scene.inputs, cell);
    };
    EXPECT_DEATH(loseTheFunction("error('lost', 0)"), "Lua error: lost");
    EXPECT_DEATH(loseTheFunction("error({})"), "Lua error: Error object is not a string");
}

#endif

}  // namespace
}  // namespace Tessavoy
