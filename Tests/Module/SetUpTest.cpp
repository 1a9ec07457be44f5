#include <malloc.h>

#include <algorithm>
#include <filesystem>
#include <limits>

#include "Host/CommandContext.h"
#include "Host/HostError.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

using ModuleSetUp = ModuleFixture;
using ModuleSetDown = ModuleFixture;

// A further set-up or set-down command of a module that is set up already, with global data of its own.
struct GlobalCommand {
    GlobalCommand(EffectHost& host, PF_Cmd command, PF_Handle globalData = nullptr, PF_Handle sequenceData = nullptr) {
        CommandContext context(host, nullptr, command, {});
        context.in.global_data = context.out.global_data = globalData;
        context.in.sequence_data = context.out.sequence_data = sequenceData;
        context.run();
        if (context.out.global_data != globalData)
            context.adopt(context.out.global_data);
        result = context.finish();
    }

    PF_Handle made() const { return result.out.global_data; }

    CommandResult result;
};

// The error of a set-up, which leaves nothing behind.
PF_Err errorOfSetUp(EffectHost& host) {
    const std::size_t handles = host.services().handles.count();
    const GlobalCommand setUp(host, PF_Cmd_GLOBAL_SETUP);
    EXPECT_EQ(setUp.made(), nullptr);
    EXPECT_THAT(setUp.result.broken, IsEmpty());
    EXPECT_EQ(host.services().handles.count(), handles);
    host.faults().clear();
    return setUp.result.error;
}

// The set-up succeeds, and the set-down takes its block back; a second set-up leaves the module as it was.
void expectSetUpAndDown(EffectHost& host) {
    const std::size_t handles = host.services().handles.count();
    const GlobalCommand setUp(host, PF_Cmd_GLOBAL_SETUP);
    EXPECT_EQ(setUp.result.error, PF_Err_NONE);
    EXPECT_THAT(setUp.result.broken, IsEmpty());
    ASSERT_NE(setUp.made(), nullptr);
    EXPECT_EQ(host.services().handles.size(setUp.made()), 4u);
    EXPECT_EQ(host.services().handles.locks(setUp.made()), 0);
    const GlobalCommand setDown(host, PF_Cmd_GLOBAL_SETDOWN, setUp.made());
    EXPECT_EQ(setDown.result.error, PF_Err_NONE);
    EXPECT_THAT(setDown.result.broken, IsEmpty());
    EXPECT_EQ(host.services().handles.count(), handles);
}

TEST_F(ModuleSetUp, KeepsThePluginIdInFourBytes) {
    expectSetUpAndDown(host());
}

TEST_F(ModuleSetUp, WithoutTheHandleSuiteIsAMissingSuite) {
    host().faults().removeSuite("PF Handle Suite", 2);
    EXPECT_EQ(errorOfSetUp(host()), PF_Err_BAD_CALLBACK_PARAM);
}

TEST_F(ModuleSetUp, WithoutAHandleIsADamagedStructure) {
    host().faults().failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(errorOfSetUp(host()), PF_Err_INTERNAL_STRUCT_DAMAGED);
}

TEST_F(ModuleSetUp, WithoutALockIsOutOfMemory) {
    host().faults().failNth("host_lock_handle", 1, PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(errorOfSetUp(host()), PF_Err_OUT_OF_MEMORY);
}

TEST_F(ModuleSetUp, PassesOnTheErrorOfTheRegistration) {
    host().faults().failNth("AEGP_RegisterWithAEGP", 1, PF_Err_INVALID_CALLBACK);
    EXPECT_EQ(errorOfSetUp(host()), PF_Err_INVALID_CALLBACK);
}

TEST_F(ModuleSetUp, WithoutTheUtilitySuiteIsAMissingSuite) {
    host().faults().removeSuite("AEGP Utility Suite", 7);
    const std::size_t handles = host().services().handles.count();
    const GlobalCommand setUp(host(), PF_Cmd_GLOBAL_SETUP);
    EXPECT_EQ(setUp.result.error, PF_Err_BAD_CALLBACK_PARAM);
    EXPECT_EQ(setUp.made(), nullptr);
    EXPECT_THAT(setUp.result.broken, IsEmpty());
    EXPECT_EQ(host().services().handles.count(), handles);
}

TEST_F(ModuleSetUp, InTheEditingHostDoesNotRegister) {
    HostOptions options;
    options.applId = PF_AppID_Editing;
    EffectHost& editing = host(options);
    editing.faults().removeSuite("AEGP Utility Suite", 7);
    expectSetUpAndDown(editing);
    editing.faults().clear();
    const GlobalCommand again(editing, PF_Cmd_GLOBAL_SETUP);
    expectPicture(render(fourSquaresScene()).output, fourSquares());
    EXPECT_EQ(GlobalCommand(editing, PF_Cmd_GLOBAL_SETDOWN, again.made()).result.error, PF_Err_NONE);
}

TEST_F(ModuleSetUp, WorksInTheEditingHost) {
    HostOptions options;
    options.applId = PF_AppID_Editing;
    EXPECT_EQ(host(options).description().outFlags, 33588308);
    expectPicture(render(fourSquaresScene()).output, fourSquares());
}

TEST_F(ModuleSetUp, FailsInTurnWithEveryHostCall) {
    int n = 1;
    for (bool struck = true; struck; ++n) {
        SCOPED_TRACE(n);
        const std::size_t handles = host().services().handles.count();
        host().faults().failNth(Faults::anyCall, n, PF_Err_INVALID_INDEX);
        const GlobalCommand setUp(host(), PF_Cmd_GLOBAL_SETUP);
        struck = host().faults().struck() > 0;
        host().faults().clear();
        EXPECT_EQ(setUp.result.error != PF_Err_NONE, struck);
        EXPECT_THAT(setUp.result.broken, IsEmpty());
        const GlobalCommand setDown(host(), PF_Cmd_GLOBAL_SETDOWN, setUp.made());
        EXPECT_EQ(setDown.result.error, PF_Err_NONE);
        EXPECT_EQ(host().services().handles.count(), handles);
    }
    EXPECT_GT(n, 5);
}

TEST_F(ModuleSetDown, DisposesOfSequenceDataThatIsLeft) {
    const std::size_t handles = host().services().handles.count();
    CommandContext setUp(host(), nullptr, PF_Cmd_SEQUENCE_SETUP, {});
    ASSERT_EQ(setUp.run(), PF_Err_NONE);
    setUp.adopt(setUp.out.sequence_data);
    EXPECT_THAT(setUp.finish().broken, IsEmpty());
    const GlobalCommand setDown(host(), PF_Cmd_GLOBAL_SETDOWN, nullptr, setUp.out.sequence_data);
    EXPECT_EQ(setDown.result.error, PF_Err_NONE);
    EXPECT_EQ(setDown.result.out.sequence_data, nullptr);
    EXPECT_THAT(setDown.result.broken, IsEmpty());
    EXPECT_EQ(host().services().handles.count(), handles);
}

TEST_F(ModuleSetDown, MayComeTwice) {
    for (int round = 0; round < 2; ++round)
        EXPECT_EQ(GlobalCommand(host(), PF_Cmd_GLOBAL_SETDOWN).result.error, PF_Err_NONE);
}

// Between a set-down and the next set-up there is nothing to draw with.
TEST_F(ModuleSetDown, EndsDrawingUntilTheNextSetUp) {
    const auto instance = instanceOf(fourSquaresScene());
    expectPicture(instance->renderFrame({}).output, fourSquares());
    GlobalCommand(host(), PF_Cmd_GLOBAL_SETDOWN);
    const FrameResult without = instance->renderFrame({});
    EXPECT_EQ(without.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_THAT(without.broken, IsEmpty());
    const GlobalCommand setUp(host(), PF_Cmd_GLOBAL_SETUP);
    const FrameResult with = instance->renderFrame({});
    expectGood(with);
    expectPicture(with.output, fourSquares());
    EXPECT_EQ(GlobalCommand(host(), PF_Cmd_GLOBAL_SETDOWN, setUp.made()).result.error, PF_Err_NONE);
}

// What the whole process holds.
struct Holdings {
    std::ptrdiff_t heapBytes = static_cast<std::ptrdiff_t>(mallinfo2().uordblks);
    std::ptrdiff_t threads = entries("/proc/self/task");
    std::ptrdiff_t files = entries("/proc/self/fd");

    static std::ptrdiff_t entries(const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), {});
    }
};

// The module's file stays loaded meanwhile, as in the application.
TEST_F(ModuleSetDown, FreesWhatALifeTook) {
    const ModuleLoader module(TESSAVOY_MODULE);
    const auto live = [] {
        EffectHost host(std::filesystem::path(TESSAVOY_MODULE), forThisSystem());
        expectPicture(host.createInstance(fourSquaresScene().project)->renderFrame({}).output, fourSquares());
    };
    const auto holdingsAfter = [&](int lives) {
        for (int life = 0; life < lives; ++life)
            live();
        return Holdings();
    };
    constexpr int lives = 10;
    Holdings before = holdingsAfter(5);  // drivers keep some caches from their first uses on
    std::ptrdiff_t leastGrowth = std::numeric_limits<std::ptrdiff_t>::max();
    for (int round = 0; round < 3; ++round) {
        const Holdings after = holdingsAfter(lives);
        EXPECT_LE(after.threads, before.threads);
        EXPECT_LE(after.files, before.files);
        leastGrowth = std::min(leastGrowth, after.heapBytes - before.heapBytes);
        before = after;
    }
    // A thread's context with its programs and targets takes some million bytes, and what is never freed grows in every
    // round; a cache that fills or the allocator's play doesn't.
    EXPECT_LT(leastGrowth, lives * 300000);
}

}  // namespace
}  // namespace TessavoyHost
