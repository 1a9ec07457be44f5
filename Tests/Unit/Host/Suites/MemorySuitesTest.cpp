#include <cstring>

#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class HostMemorySuites : public HostFixture {
protected:
    // The broken promises of a frame whose render runs the body.
    std::vector<std::string> brokenBy(const Body& body) {
        duringRender(body);
        EffectHost host(FakeEffect::entryPoints());
        const auto instance = host.createInstance(FakeProject::project());
        return instance->renderFrame({}).broken;
    }
};

TEST_F(HostMemorySuites, LendHandlesWithCountedLocks) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<PF_HandleSuite1> suite(in);
        PF_Handle handle = suite->host_new_handle(10);
        EXPECT_EQ(suite->host_get_handle_size(handle), 10u);
        EXPECT_EQ(suite->host_lock_handle(handle), *handle);
        suite->host_unlock_handle(handle);
        EXPECT_EQ(suite->host_resize_handle(20, &handle), PF_Err_NONE);
        EXPECT_EQ(suite->host_get_handle_size(handle), 20u);
        suite->host_dispose_handle(handle);
    });
}

TEST_F(HostMemorySuites, ReportAHandleThatWasNotDisposedOf) {
    EXPECT_THAT(brokenBy([](PF_InData* in) { in->utils->host_new_handle(77); }),
                ElementsAre("PF_Cmd_SMART_RENDER: not given back: handle (77)"));
}

TEST_F(HostMemorySuites, ReportHandlesThatAreMisused) {
    EXPECT_THAT(brokenBy([](PF_InData* in) {
                    const PF_Handle handle = in->utils->host_new_handle(1);
                    in->utils->host_unlock_handle(handle);
                    in->utils->host_lock_handle(handle);
                    in->utils->host_dispose_handle(handle);
                    in->utils->host_dispose_handle(handle);
                    EXPECT_EQ(in->utils->host_lock_handle(handle), nullptr);
                }),
                ElementsAre(HasSubstr("unlocked that is not locked"), HasSubstr("disposed of while it was locked"),
                            HasSubstr("disposed of that is not alive"), HasSubstr("locked that is not alive")));
}

TEST_F(HostMemorySuites, FailWhenToldTo) {
    duringRender([](PF_InData* in) {
        const Acquired<PF_HandleSuite1> suite(in);
        EXPECT_EQ(suite->host_new_handle(8), nullptr);
        const PF_Handle handle = suite->host_new_handle(8);
        EXPECT_EQ(suite->host_lock_handle(handle), nullptr);
        suite->host_dispose_handle(handle);
    });
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    host.faults().failNth("host_new_handle", 1, 4);
    host.faults().failNth("host_lock_handle", 1, 4);
    EXPECT_THAT(instance->renderFrame({}).broken, IsEmpty());
    EXPECT_EQ(host.faults().struck(), 2);
}

// Null is the published answer, but the frame that goes on without the memory is not what the scene asks for.
TEST_F(HostMemorySuites, GiveNoHandleAndFailTheFrameWhereMemoryRunsOut) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    for (const char* call : {"host_new_handle", "host_lock_handle"}) {
        duringRender([&](PF_InData* in) {
            const Acquired<PF_HandleSuite1> suite(in);
            host.faults().exhaustNth(call, 1);
            const PF_Handle handle = suite->host_new_handle(8);
            if (handle != nullptr) {
                EXPECT_EQ(suite->host_lock_handle(handle), nullptr);
                suite->host_dispose_handle(handle);
            }
        });
        const FrameResult result = instance->renderFrame({});
        EXPECT_EQ(host.faults().struck(), 1);
        EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
        EXPECT_THAT(result.failure, HasSubstr(call));
        EXPECT_THAT(result.broken, IsEmpty());
        host.faults().clear();
    }
}

TEST_F(HostMemorySuites, LendMemoryHandles) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<AEGP_MemorySuite1> suite(in);
        AEGP_MemHandle memory = nullptr;
        ASSERT_EQ(suite->AEGP_NewMemHandle(1, "test", 6, AEGP_MemFlag_CLEAR, &memory), PF_Err_NONE);
        void* block = nullptr;
        EXPECT_EQ(suite->AEGP_LockMemHandle(memory, &block), PF_Err_NONE);
        EXPECT_EQ(std::memcmp(block, "\0\0\0\0\0\0", 6), 0);
        AEGP_MemSize size = 0;
        EXPECT_EQ(suite->AEGP_GetMemHandleSize(memory, &size), PF_Err_NONE);
        EXPECT_EQ(size, 6u);
        EXPECT_EQ(suite->AEGP_UnlockMemHandle(memory), PF_Err_NONE);
        EXPECT_EQ(suite->AEGP_FreeMemHandle(memory), PF_Err_NONE);
    });
}

TEST_F(HostMemorySuites, ReportMemoryThatWasNotFreed) {
    EXPECT_THAT(brokenBy([](PF_InData* in) {
                    const Acquired<AEGP_MemorySuite1> suite(in);
                    AEGP_MemHandle memory = nullptr;
                    suite->AEGP_NewMemHandle(1, "test", 6, 0, &memory);
                }),
                ElementsAre("PF_Cmd_SMART_RENDER: not given back: memory handle (6)"));
}

}  // namespace
}  // namespace TessavoyHost
