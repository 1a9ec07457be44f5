#include "Source/Script/ChangedOutputs.h"

#include "Source/Script/ScriptText.h"
#include "Tests/Unit/Script/ScriptFixture.h"

#include <gtest/gtest.h>
#include <lua.hpp>

#include <memory>
#include <sstream>

namespace Tessavoy {
namespace {

constexpr OutputSet all = 0x3FFFFF;  // 22 outputs

/// The set for a text that stands in its chunk, as a frame's does.
OutputSet changedBy(const std::string& text) {
    const std::unique_ptr<lua_State, void (*)(lua_State*)> lua(luaL_newstate(), lua_close);
    std::ostringstream assembled;
    assembled << "\nfunction process (" << ScriptText::inputs << ", " << ScriptText::outputs << ")\n"
              << text << "\nreturn " << ScriptText::outputs << "\nend\n";
    const std::string chunk = assembled.str();
    EXPECT_EQ(luaL_loadbufferx(lua.get(), chunk.data(), chunk.size(), "script", nullptr), LUA_OK) << text;
    EXPECT_EQ(lua_pcallk(lua.get(), 0, 0, 0, 0, nullptr), LUA_OK) << text;
    const OutputSet changed = outputsThatMayChange(lua.get(), text.c_str());
    EXPECT_EQ(lua_gettop(lua.get()), 0) << text;
    return changed;
}

TEST(ChangedOutputs, AreThoseThatAreNamed) {
    // In the order in which a script's parameters stand.
    const std::vector<std::string> names = {"visible", "x",      "y",           "z",          "angleX",  "angleY",
                                            "angle",   "radius", "r",           "g",          "b",       "a",
                                            "feather", "stroke", "strokeWidth", "partsCount", "anchorX", "anchorY",
                                            "scaleX",  "scaleY", "angleOffset", "spriteIndex"};
    for (std::size_t k = 0; k < names.size(); ++k) {
        EXPECT_EQ(changedBy(names[k] + " = 1"), OutputSet{1} << k) << names[k];
        EXPECT_EQ(changedBy("local t = function() " + names[k] + "=i end t()"), OutputSet{1} << k) << names[k];
    }
    EXPECT_EQ(changedBy("r, g, b = 1, 2, 3"), OutputSet{7} << 8);
    EXPECT_EQ(changedBy("if i == 3 then y = 1 end"), OutputSet{1} << 2);
}

TEST(ChangedOutputs, AreNoneWhereNoWordNamesOne) {
    for (const char* text :
         {"", " \n\t", "-- nothing", "local t = time + i * xPart", "xx = 1 _x = 2 x1 = 3 X = 4 angles = 5",
          "for k = 1, 10 do if k == j then break end end", "returned = 1 loads = 2 _GG = 3"}) {
        EXPECT_EQ(changedBy(text), 0U) << text;
    }
}

TEST(ChangedOutputs, AreLookedForInRemarksAndTextsToo) {
    EXPECT_EQ(changedBy("-- the radius"), OutputSet{1} << 7);
    EXPECT_EQ(changedBy("local t = 'x'"), OutputSet{1} << 1);
    EXPECT_EQ(changedBy("local t = {}; t.y = 1"), OutputSet{1} << 2);
}

TEST(ChangedOutputs, AreAllWhereAWordReachesThemUnnamed) {
    for (const char* word :
         {"return", "process", "debug", "load", "loadfile", "dofile", "require", "package", "_G", "_ENV"}) {
        EXPECT_EQ(changedBy(std::string("-- ") + word), all) << word;
    }
}

// However a text ends its lines, it is known where its function ends.
TEST(ChangedOutputs, AreKnownForAnyKindOfLineEnd) {
    struct Broken {
        const char* before;
        const char* after;
    };
    for (const std::string end : {"\n", "\r", "\r\n", "\n\r", "\n\n", "\r\r", "\r\n\r", "\n\r\n", "\r\n\n\r"}) {
        for (const Broken& line :
             {Broken{"y =", "1"}, Broken{"if i > 1 then y = 2", "end"}, Broken{"-- y", ""},
              Broken{"local t = [[y", "]]"}, Broken{"--[=[ y", "]=] local t"}, Broken{"y = '\\z", "'"}}) {
            const std::string inside = end + line.before + end + line.after + end;
            const OutputSet named = inside.find("\\z") == std::string::npos ? 4 : 12;  // y, or y and the z of the sign
            EXPECT_EQ(changedBy(inside), named) << inside;
            EXPECT_EQ(changedBy("end function other()" + inside), all) << inside;
        }
    }
}

// It ends the function that it stands in, and what follows is another one.
TEST(ChangedOutputs, AreAllWhereTheTextIsNoBlock) {
    EXPECT_EQ(changedBy("end function other()"), all);
    EXPECT_EQ(changedBy("end do"), all);
    EXPECT_EQ(changedBy("end if true then"), all);
}

struct Attempt {
    const char* script;
    float x;  ///< what it makes of x, which is `before` in front of each cell
};

constexpr float before = 25.0F;

/// What a script makes of x in the second cell that it is run for.
float xAfterTwoCells(const std::string& script) {
    ScriptScene scene;
    ScriptHost host;
    EXPECT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot)) << host.errorText();
    InstanceState cell = scene.cell();
    for (int run = 0; run < 2; ++run) {
        cell = scene.cell();
        cell.x = before;
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell)) << host.errorText();
    }
    host.release(&scene.host.inData);
    return cell.x;
}

// x is the twelfth parameter. Every way to it counts, whether it is named or not.
TEST(ChangedOutputs, NothingThatAScriptDoesIsMissed) {
    for (const Attempt& attempt : {
             Attempt{"", before},
             Attempt{"local t = 7", before},
             Attempt{"x = 7", 7.0F},
             Attempt{"local x = 7", 7.0F},
             Attempt{"local function set() x = 7 end set()", 7.0F},
             Attempt{"do local x = 7 end", before},
             Attempt{"if i > 0 then return true, 7 end", 7.0F},
             Attempt{"if i > 0 then return end", 0.0F},
             Attempt{"do return end", 0.0F},
             Attempt{"end function other()", 0.0F},
             Attempt{"end do", 0.0F},
             Attempt{"function process() end", 0.0F},
             Attempt{"debug.setlocal(1, 12, 7)", 7.0F},
             Attempt{"_G['de' .. 'bug'].setlocal(1, 12, 7)", 7.0F},
             Attempt{"_ENV['de' .. 'bug'].setlocal(1, 12, 7)", 7.0F},
             Attempt{"require('de' .. 'bug').setlocal(1, 12, 7)", 7.0F},
             Attempt{"package.loaded['de' .. 'bug'].setlocal(1, 12, 7)", 7.0F},
             Attempt{"load('de' .. 'bug.setlocal(2, 12, 7)')()", 7.0F},
             Attempt{"load('pro' .. 'cess = function() end')()", 0.0F},
         }) {
        EXPECT_EQ(xAfterTwoCells(attempt.script), attempt.x) << attempt.script;
    }
}

// The word in the remark has everything read back: whatever a script does, that must make no difference.
TEST(ChangedOutputs, ReadingTheOthersMakesNoDifference) {
    const std::vector<std::string> statements = {
        "x = x + 1",
        "local y = 3",
        "do local z = 4 end",
        "r, g, b = b, r, g",
        "if i > 1 then radius = radius * 2 end",
        "for k = 1, 3 do a = a / k end",
        "local function turn() angle = angle + 90 end turn()",
        "visible = stroke",
        "stroke = nil",
        "partsCount = partsCount + 0.5",
        "spriteIndex = 'seven'",
        "local t <close> = setmetatable({}, {__close = function() scaleX = 1 end})",
        "goto done ::done::",
        "feather = 1 / 0",
        "counter = (counter or 0) + 1 anchorX = counter",
        "local wave = coroutine.wrap(function() scaleY = 5 coroutine.yield() end) wave()",
    };
    for (std::size_t first = 0; first < statements.size(); ++first) {
        for (const std::string& second : statements) {
            const std::string script = "do " + statements[first] + " end\n" + second;
            ScriptScene scene;
            EXPECT_TRUE(sameFields(scene.run(script), scene.run(script + " -- return"))) << script;
        }
    }
}

}  // namespace
}  // namespace Tessavoy
