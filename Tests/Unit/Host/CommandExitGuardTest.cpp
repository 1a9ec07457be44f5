#include "Host/Command/ExitGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "Host/Command/Descriptors.h"
#include "Host/Command/EffectFrames.h"
#include "Host/Command/JsonLine.h"
#include "Host/Command/Outlets.h"
#include "Host/Command/OutputChannel.h"
#include "Host/SignalStack.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

// What ends a process is looked at in a process of its own, which tests that ran before have left no threads in.
class CommandExitGuard : public HostFixture {
protected:
    CommandExitGuard() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

::testing::ExitedWithCode endsWith(ExitStatus status) {
    return ::testing::ExitedWithCode(static_cast<int>(status));
}

TEST_F(CommandExitGuard, ACrashEndsWithTheStatusOfItsTime) {
    EXPECT_EXIT(
        {
            guardSetUp();
            std::abort();
        },
        endsWith(ExitStatus::Module), "^tessavoy: the module crashed while being set up\n$");
    EXPECT_EXIT(
        {
            guardFrames();
            const FrameCrashGuard frame(120);
            std::raise(SIGSEGV);
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: frame 120 crashed\n$");
    EXPECT_EXIT(
        {
            guardFrames();
            { const FrameCrashGuard frame(120); }
            std::raise(SIGBUS);
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: a frame crashed\n$");
    EXPECT_EXIT(
        {
            decideStatus([] { return ExitStatus::Scene; });
            std::abort();
        },
        endsWith(ExitStatus::Scene), "while it was taken down; the result stands\n$");
}

// As a script may, by os.exit: whatever status it gives, the frame has failed.
TEST_F(CommandExitGuard, AModuleThatEndsTheProcessHasFailed) {
    EXPECT_EXIT(
        {
            guardSetUp();
            guardFrames();
            const FrameCrashGuard frame(7);
            std::exit(0);
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: frame 7 ended the process\n$");
    EXPECT_EXIT(
        {
            guardSetUp();
            std::exit(0);
        },
        endsWith(ExitStatus::Module), "^tessavoy: the module ended the process while being set up\n$");
    EXPECT_EXIT(
        {
            guardSetUp();
            guardWork();
            std::exit(0);
        },
        endsWith(ExitStatus::Module), "^tessavoy: the module ended the process\n$");
    EXPECT_EXIT(
        {
            guardSetUp();
            decideStatus([] { return ExitStatus::Scene; });
            std::exit(0);
        },
        endsWith(ExitStatus::Scene), "ended the process while it was taken down; the result stands\n$");
}

TEST_F(CommandExitGuard, TheCommandMayEnd) {
    EXPECT_EXIT(
        {
            guardSetUp();
            decideStatus([] { return ExitStatus::Success; });
            allowExit();
            std::exit(static_cast<int>(ExitStatus::Scene));
        },
        endsWith(ExitStatus::Scene), "^$");
}

TEST_F(CommandExitGuard, ACrashIsAnObjectWhereObjectsGo) {
    EXPECT_EXIT(
        {
            setOutlets({-1, STDERR_FILENO});
            guardFrames();
            const FrameCrashGuard frame(120);
            std::raise(SIGSEGV);
        },
        endsWith(ExitStatus::FrameFailed),
        R"(^\{"event":"crash","frame":120,"text":"frame 120 crashed"\})"
        "\n$");
    EXPECT_EXIT(
        {
            setOutlets({-1, STDERR_FILENO});
            guardSetUp();
            std::abort();
        },
        endsWith(ExitStatus::Module),
        R"(^\{"event":"crash","text":"the module crashed while being set up"\})"
        "\n$");
}

TEST_F(CommandExitGuard, AFailureIsToldInWordsAndAsAnObject) {
    EXPECT_EXIT(
        {
            setOutlets({STDERR_FILENO, STDERR_FILENO});
            const auto fail = []() -> ExitStatus { throw HostError(ExitStatus::Scene, "no \"Plate\""); };
            ::_exit(static_cast<int>(statusOf(fail)));
        },
        endsWith(ExitStatus::Scene),
        R"(^tessavoy: no "Plate")"
        "\n"
        R"(\{"event":"error","text":"no \\"Plate\\""\})"
        "\n$");
}

// What the module prints before it crashes, such as a failed assertion, is told before the crash.
TEST_F(CommandExitGuard, LastWordsComeBeforeTheCrash) {
    EXPECT_EXIT(
        {
            const int objects = ::dup(STDERR_FILENO);
            setOutlets({-1, objects});
            guardFrames();
            const StrayLines lines({STDERR_FILENO},
                                   [objects](const std::string& line) { writeAll(objects, messageLine(line)); });
            std::fprintf(stderr, "ind < mCount\n");
            std::abort();
        },
        endsWith(ExitStatus::FrameFailed),
        R"(^\{"event":"message","text":"ind < mCount"\})"
        "\n"
        R"(\{"event":"crash","text":"a frame crashed"\})"
        "\n$");
}

// A pointer that the compiler can't look through, so that it neither warns nor unrolls.
int callAgain(int depth);
int (*volatile again)(int) = callAgain;
int callAgain(int depth) {
    volatile char room[256] = {};
    room[static_cast<unsigned>(depth) % sizeof room] = 1;
    return again(depth + 1) + room[0];
}

TEST_F(CommandExitGuard, AStackThatOverflowsIsACrash) {
    EXPECT_EXIT(
        {
            guardFrames();
            const FrameCrashGuard frame(5);
            callAgain(0);
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: frame 5 crashed\n$");
}

TEST_F(CommandExitGuard, AStackThatOverflowsOnAnotherThreadIsACrash) {
    EXPECT_EXIT(
        {
            guardFrames();
            std::thread([] {
                useSignalStack();
                callAgain(0);
            }).join();
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: a frame crashed\n$");
}

// Renders frame 3 as the command does.
void renderFrame3(FrameWork& work) {
    const auto progress = makeProgress(ProgressMode::None, {});
    RunReporter reporter(1, *progress);
    RunSettings settings;
    settings.frames = {3};
    guardFrames();
    RenderRun(settings, work, reporter, {[] { return 0; }, [](ExitStatus) {}}).run();
}

// By the fake effect, whose render calls itself without end.
void renderWithoutEnd() {
    FakeEffect::hooks().render = [](PF_InData*, PF_OutData*, PF_SmartRenderExtra*) { return PF_Err{callAgain(0)}; };
    std::fflush(stdout);  // what the tests have printed so far is not the command's
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    OutputChannel output;
    RenderOptions options;
    options.output = OutputPattern("/nowhere/a.##.png");
    EffectFrames work(*instance, options, 8, {100, 80}, output);
    renderFrame3(work);
}

TEST_F(CommandExitGuard, AModuleThatCallsItselfWithoutEndCrashesItsFrame) {
    EXPECT_EXIT(renderWithoutEnd(), endsWith(ExitStatus::FrameFailed), "^tessavoy: frame 3 crashed\n$");
}

// Frames that crash while they are written.
class CrashingWrites : public FrameWork {
public:
    bool isThere(int) override { return false; }
    std::string fileOf(int) const override { return {}; }
    RenderedFrame render(int, const std::atomic<bool>&) override {
        RenderedFrame rendered;
        rendered.write = [] { std::raise(SIGSEGV); };
        return rendered;
    }
};

TEST_F(CommandExitGuard, ACrashInWritingIsTheFramesThatIsWritten) {
    EXPECT_EXIT(
        {
            CrashingWrites work;
            renderFrame3(work);
        },
        endsWith(ExitStatus::FrameFailed), "^tessavoy: frame 3 crashed\n$");
}

// The functions that a module hands to iterate run on threads of the host.
void iterateWithoutEnd() {
    HostOptions options;
    options.iterateThreads = 2;
    FakeEffect::hooks().render = [](PF_InData* in, PF_OutData*, PF_SmartRenderExtra*) {
        const FakeEffect::Acquired<PF_Iterate8Suite1> suite(in);
        const auto function = [](void*, A_long thread, A_long, A_long) { return thread == 1 ? callAgain(0) : 0; };
        return suite->iterate_generic(2, nullptr, function);
    };
    EffectHost host(FakeEffect::entryPoints(), options);
    guardFrames();
    host.createInstance(FakeProject::project())->renderFrame({});
}

TEST_F(CommandExitGuard, AnIteratedFunctionThatCallsItselfWithoutEndIsACrash) {
    EXPECT_EXIT(iterateWithoutEnd(), endsWith(ExitStatus::FrameFailed), "^tessavoy: a frame crashed\n$");
}

}  // namespace
}  // namespace TessavoyHost
