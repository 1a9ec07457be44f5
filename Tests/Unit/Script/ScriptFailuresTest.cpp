// A failure of the host inside a function that a script calls ends the frame as it was thrown, whatever the script does
// about the error that it sees.

#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Script/BankScene.h"

#include <gtest/gtest.h>

#include <ostream>

namespace Tessavoy {
namespace {

constexpr PF_Err hostError = 13;

/// What came out of a cell.
struct Thrown {
    enum class Kind { Nothing, Exception, Integer } kind = Kind::Nothing;
    PF_Err code = 0;

    friend bool operator==(const Thrown&, const Thrown&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Thrown& thrown) {
        return out << (thrown.kind == Kind::Nothing     ? "nothing"
                       : thrown.kind == Kind::Exception ? "exception "
                                                        : "integer ")
                   << thrown.code;
    }
};

constexpr Thrown nothing{};

template <class Body>
Thrown thrownBy(const Body& body) {
    try {
        body();
        return nothing;
    } catch (const Exception& exception) {
        return {Thrown::Kind::Exception, exception.code()};
    } catch (PF_Err error) {
        return {Thrown::Kind::Integer, error};
    }
}

/// Something of the host's that fails, and a call that meets it.
struct HostFailure {
    const char* name;
    const char* call;
    void (*arrange)(BankScene&);
    Thrown expected;
};

void refuseLayers(BankScene& scene) {
    scene.layers.error8 = hostError;
}

const HostFailure hostFailures[] = {
    {"no handle suite for a ramp",
     "GetRamp(1, 0.5)",
     [](BankScene& scene) { scene.host.failCall(1); },
     {Thrown::Kind::Integer, PF_Err_BAD_CALLBACK_PARAM}},
    {"no lock on a ramp",
     "GetRamp(1, 0.5)",
     [](BankScene& scene) { scene.host.failCall(2); },
     {Thrown::Kind::Integer, PF_Err_OUT_OF_MEMORY}},
    {"no handle suite for a gradient",
     "GetGradient(1, 0.5)",
     [](BankScene& scene) { scene.host.absentSuites = {"PF Handle Suite"}; },
     {Thrown::Kind::Integer, PF_Err_BAD_CALLBACK_PARAM}},
    {"no lock on a gradient",
     "GetGradient(3, 0.5)",
     [](BankScene& scene) { scene.host.failCall(2); },
     {Thrown::Kind::Integer, PF_Err_OUT_OF_MEMORY}},
    {"a layer that isn't given", "GetLayer(1, 0, 0)", refuseLayers, {Thrown::Kind::Exception, hostError}},
    {"a layer of floats that isn't given",
     "GetLayer(1, 0, 0)",
     [](BankScene& scene) { scene.layers.errorFloat = hostError; },
     {Thrown::Kind::Exception, hostError}},
    {"no suite for floats",
     "GetLayer(1, 0, 0)",
     [](BankScene& scene) { scene.layers.hasPixelSuite = false; },
     {Thrown::Kind::Exception, PF_Err_BAD_CALLBACK_PARAM}},
    {"a noise's layer",
     "GetNoise(1, 0, 0)",
     [](BankScene& scene) {
         scene.snapshot.Noise[0].MultLayer.Index = 2;
         refuseLayers(scene);
     },
     {Thrown::Kind::Exception, hostError}},
    {"no path suite",
     "GetPath(1, 0.5)",
     [](BankScene& scene) { scene.host.absentSuites = {"PF Path Query Suite"}; },
     {Thrown::Kind::Integer, PF_Err_BAD_CALLBACK_PARAM}},
    {"a path that isn't given",
     "GetPath(1, 0.5)",
     [](BankScene& scene) {
         scene.paths.failure = hostError;
         scene.host.failCall(2);
     },
     {Thrown::Kind::Exception, hostError}},
    {"no sequence data for a name",
     "GetFloat('Speed')",
     [](BankScene& scene) { scene.host.constSequenceError = hostError; },
     {Thrown::Kind::Exception, hostError}},
    {"no sequence data for a layer's name",
     "GetLayer('Speed', 0, 0)",
     [](BankScene& scene) { scene.host.constSequenceError = hostError; },
     {Thrown::Kind::Exception, hostError}},
};

/// Scripts around a call, which stands for "CALL". All of them end without an error of their own, if they can.
constexpr const char* wrappings[] = {
    "x = CALL",
    "local t = {CALL}",
    "pcall(function() return CALL end)",
    "local ok, message = pcall(function() return CALL end) x = 5",
    "pcall(pcall, function() return CALL end)",
    "xpcall(function() return CALL end, function(message) return message end)",
    "xpcall(function() return CALL end, debug.traceback)",
    "xpcall(function() return CALL end, function() error('in the handler') end)",
    "xpcall(function() return CALL end, function() return CALL end)",
    "xpcall(error, function() return CALL end)",
    "pcall(function() return CALL end) error('of its own')",
    "for n = 1, 100 do pcall(function() return CALL end) end",
    "coroutine.resume(coroutine.create(function() return CALL end))",
    "pcall(coroutine.wrap(function() return CALL end))",
    "local co = coroutine.wrap(function() while true do coroutine.yield(1) x = CALL end end) co() pcall(co)",
    "local co = coroutine.create(function() local c <close> = setmetatable({}, {__close = function() return CALL end}) "
    "coroutine.yield() end) coroutine.resume(co) coroutine.close(co)",
    "setmetatable({}, {__gc = function() return CALL end}) collectgarbage()",
    "coroutine.wrap(function() setmetatable({}, {__gc = function() return CALL end}) collectgarbage() end)()",
    "do local c <close> = setmetatable({}, {__close = function() pcall(function() return CALL end) end}) end",
    "pcall(function() local c <close> = setmetatable({}, {__close = function() return CALL end}) error('first') end)",
    "for k in next, {1}, nil, setmetatable({}, {__close = function() pcall(function() return CALL end) end}) do end",
    "pcall(table.sort, {3, 1, 2}, function() return CALL end)",
    "pcall(string.gsub, 'abc', '.', function() return CALL end)",
    "pcall(load, function() return CALL end)",
    "pcall(function() return setmetatable({}, {__index = function() return CALL end}).field end)",
    "pcall(tostring, setmetatable({}, {__tostring = function() return CALL end}))",
    "package.preload.own = function() return CALL end pcall(require, 'own')",
    "debug.sethook(function() debug.sethook() return CALL end, 'l')\nlocal a = 1\nlocal b = 2",
};

std::string wrapped(std::string wrapping, const std::string& call) {
    const std::string mark = "CALL";
    for (std::size_t at = wrapping.find(mark); at != std::string::npos; at = wrapping.find(mark, at + call.size())) {
        wrapping.replace(at, mark.size(), call);
    }
    return wrapping;
}

TEST(ScriptFailures, ComeOutOfTheCellAsTheyWereThrown) {
    for (const HostFailure& failure : hostFailures) {
        for (const char* wrapping : wrappings) {
            const std::string script = wrapped(wrapping, failure.call);
            SCOPED_TRACE(std::string(failure.name) + ": " + script);
            BankScene scene;
            InstanceState cell = scene.cell();
            {
                ScriptHost host;
                ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot)) << host.errorText();
                failure.arrange(scene);
                EXPECT_EQ(thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); }), failure.expected);
            }
            EXPECT_TRUE(sameFields(cell, scene.cell()));
            EXPECT_TRUE(scene.nothingIsLent());
        }
    }
}

TEST(ScriptFailures, AreTheHostsAndNotTheScripts) {
    for (const HostFailure& failure : hostFailures) {
        SCOPED_TRACE(failure.name);
        BankScene scene;
        ScriptHost host;
        const std::string script = wrapped("x = CALL", failure.call);
        ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
        failure.arrange(scene);
        InstanceState cell = scene.cell();
        EXPECT_NE(thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); }), nothing);
        EXPECT_STREQ(host.errorText(), "");
    }
}

TEST(ScriptFailures, OfSeveralTheFirstComesOut) {
    BankScene scene;
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData,
                             "pcall(GetLayer, 1, 0, 0) pcall(GetFloat, 'Speed') error(pcall(GetLayer, 2, 0, 0))",
                             &scene.snapshot));
    scene.layers.error8 = 21;
    scene.host.constSequenceError = 22;
    InstanceState cell = scene.cell();
    EXPECT_EQ(thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); }),
              (Thrown{Thrown::Kind::Exception, 21}));
}

// Whoever takes the failure and goes on finds the other cells untouched, as after a failure of the script's own.
TEST(ScriptFailures, EndTheScript) {
    BankScene scene;
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, "if i == 0 then GetLayer(1, 0, 0) end x = 99", &scene.snapshot));
    scene.layers.error8 = hostError;
    InstanceState cell = scene.cell();
    cell.i = 0;
    EXPECT_NE(thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); }), nothing);
    cell.i = 1;
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, scene.cell().x);
    ASSERT_TRUE(host.compile(&scene.host.inData, "x = 99", &scene.snapshot));
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    EXPECT_EQ(cell.x, 99.0F);
}

// Fails the n-th call of the host, for n upwards until the cell gets through.
TEST(ScriptFailures, OfAnyCallLeaveNothingLent) {
    const std::string script =
        "pcall(function() x = GetRamp(1, i) + GetPath(1, 0.5) + GetFloat('Speed') + GetGradient(3, 0.5) + "
        "GetPath(2, 0.1) + GetRamp('Speed', j) end)";
    int calls = 0;
    for (bool failed = true; failed; ++calls) {
        ASSERT_LT(calls, 200);
        BankScene scene;
        scene.sequence.paramNames = {{305, "Speed"}, {848, "Speed"}};
        ScriptHost host;
        ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
        scene.host.failCall(calls + 1);
        InstanceState cell = scene.cell();
        const Thrown thrown = thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); });
        failed = scene.host.failed();
        // An older host has no suite for the sequence data, and then the in-data's is read.
        EXPECT_TRUE(failed || thrown == nothing) << calls;
        EXPECT_TRUE(scene.nothingIsLent()) << calls;
        scene.host.failCall(0);
    }
    EXPECT_GT(calls, 20);
}

/// Calls every function, and one of them on.
constexpr const char* everyCall =
    "GetFloat('Speed') GetSlider(1) GetColor('Tint') GetLayer(1, 0, 0) GetNoise(1, 0, 0) GetRandom(1, 0, 0) "
    "GetRamp(1, 0) GetGradient(1, 0) GetPath(1, 0) GetPoint2D(1) GetPoint3D(1) GetDistToCam(1, 2, 3) Lerp(1, 2, 3) "
    "Dist2D(1, 2, 3, 4) Dist3D(1, 2, 3, 4, 5, 6) process(time)";

std::string withFinalizer(const std::string& rest) {
    return "keep = keep or setmetatable({}, {__gc = function() " + std::string(everyCall) + " end}) " + rest;
}

/// A scene where any call of the host from now on would be seen.
void refuseEverything(BankScene& scene) {
    scene.host.absentSuites = {"PF Path Query Suite", "PF Effect Sequence Data Suite"};
    scene.layers.error8 = hostError;
    scene.paths.acquisitions.clear();
}

TEST(ScriptClosing, FinalizersMayCallAnythingAndReachNoHost) {
    for (const char* ending : {"", "error('fails')", "coroutine.wrap(function() coroutine.yield() end)()"}) {
        SCOPED_TRACE(ending);
        BankScene scene;
        {
            ScriptHost host;
            const std::string script = withFinalizer(ending);
            ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot)) << host.errorText();
            refuseEverything(scene);
            InstanceState cell = scene.cell();
            host.runCell(&scene.host.inData, scene.inputs, cell);
        }
        EXPECT_EQ(scene.layers.hostCalls(), 0);
        EXPECT_EQ(scene.paths.acquisitions.count("PF Path Query Suite"), 0U);
        EXPECT_EQ(scene.paths.acquisitions.count("PF Effect Sequence Data Suite"), 0U);
        EXPECT_TRUE(scene.nothingIsLent());
    }
}

TEST(ScriptClosing, FinalizersMayRunAtReleaseAndBeforeAnotherCompile) {
    BankScene scene;
    ScriptHost host;
    InstanceState cell = scene.cell();
    const std::string script = withFinalizer("x = 1");
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
        EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        if (round == 1) {
            host.release(&scene.host.inData);
            EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
        }
    }
    EXPECT_EQ(scene.layers.hostCalls(), 0);
}

// The chunk itself may leave one behind, which then meets a state that never saw a cell.
TEST(ScriptClosing, FinalizersMayRunWithoutAnyCell) {
    BankScene scene;
    const std::string script = "end keep = setmetatable({}, {__gc = function() " + std::string(everyCall) + " end}) do";
    {
        ScriptHost host;
        ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot)) << host.errorText();
    }
    {
        ScriptHost host;
        ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), nullptr)) << host.errorText();
    }
    EXPECT_EQ(scene.layers.hostCalls(), 0);
}

// After a failure of the host the state is closed too, with what it left in it.
TEST(ScriptClosing, FinalizersAfterAFailureOfTheHostDoNotHideIt) {
    BankScene scene;
    const std::string script = withFinalizer("GetLayer(1, 0, 0)");
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
    refuseEverything(scene);
    InstanceState cell = scene.cell();
    EXPECT_EQ(thrownBy([&] { host.runCell(&scene.host.inData, scene.inputs, cell); }),
              (Thrown{Thrown::Kind::Exception, hostError}));
    host.release(&scene.host.inData);
    EXPECT_EQ(scene.layers.hostCalls(), 1);
    EXPECT_TRUE(scene.nothingIsLent());
}

// Finalizers that make new objects with finalizers, and errors in them, end all the same.
TEST(ScriptClosing, FinalizersMayMakeMoreOfTheirKind) {
    BankScene scene;
    const std::string script =
        "depth = 0 function again() depth = depth + 1 if depth < 50 then setmetatable({}, {__gc = again}) end "
        "GetLayer(1, 0, 0) error('in a finalizer') end setmetatable({}, {__gc = again}) keep = {} "
        "for n = 1, 100 do keep[n] = setmetatable({}, {__gc = again}) end";
    ScriptHost host;
    ASSERT_TRUE(host.compile(&scene.host.inData, script.c_str(), &scene.snapshot));
    InstanceState cell = scene.cell();
    EXPECT_TRUE(host.runCell(&scene.host.inData, scene.inputs, cell));
    host.release(&scene.host.inData);
    EXPECT_TRUE(scene.nothingIsLent());
}

}  // namespace
}  // namespace Tessavoy
