#include "Source/HostAccess/MemoryHandle.h"

#include "Tests/Support/SuiteTable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tessavoy {
namespace {

using Calls = std::vector<std::string>;

/// An application that lends one piece of memory and notes what is done with it.
class MemoryHost {
public:
    MemoryHost() {
        current = this;
        basic.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) -> SPErr {
            *suite = tableFor(name, version, table);
            return *suite == nullptr ? 1 : 0;
        };
        basic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr { return 0; };
        table.AEGP_LockMemHandle = [](AEGP_MemHandle, void** address) -> A_Err {
            *address = current->block;
            return current->note("lock", current->lockError);
        };
        table.AEGP_UnlockMemHandle = [](AEGP_MemHandle) -> A_Err {
            return current->note("unlock", current->unlockError);
        };
        table.AEGP_FreeMemHandle = [](AEGP_MemHandle) -> A_Err { return current->note("free", current->freeError); };
    }
    ~MemoryHost() { current = nullptr; }
    MemoryHost(const MemoryHost&) = delete;
    MemoryHost& operator=(const MemoryHost&) = delete;

    /// What stands for the memory; it is never looked into.
    AEGP_MemHandle memory() { return reinterpret_cast<AEGP_MemHandle>(this); }

    SPBasicSuite basic{};
    void* block = this;  ///< that a lock gives
    A_Err lockError = PF_Err_NONE;
    A_Err unlockError = PF_Err_NONE;
    A_Err freeError = PF_Err_NONE;
    Calls calls;

private:
    A_Err note(const char* call, A_Err error) {
        calls.emplace_back(call);
        return error;
    }

    static inline MemoryHost* current = nullptr;
    static inline AEGP_MemorySuite1 table{};
};

/// A handle in which the host has put its memory.
class LentMemory : public MemoryHandle {
public:
    LentMemory(MemoryHost& host, SuiteHandler& suites) : MemoryHandle(suites) { *place() = host.memory(); }
};

class HostMemoryHandle : public testing::Test {
protected:
    MemoryHost host;
    SuiteHandler suites{&host.basic};
};

TEST_F(HostMemoryHandle, IsUnlockedAndFreedAtTheEndOfItsScope) {
    {
        LentMemory handle(host, suites);
        EXPECT_EQ(handle.address(), nullptr);
        EXPECT_EQ(handle.lock(), PF_Err_NONE);
        EXPECT_EQ(handle.address(), host.block);
    }
    EXPECT_EQ(host.calls, (Calls{"lock", "unlock", "free"}));
}

TEST_F(HostMemoryHandle, IsClosedOnce) {
    {
        LentMemory handle(host, suites);
        handle.lock();
        EXPECT_EQ(handle.close(), PF_Err_NONE);
        EXPECT_EQ(handle.address(), nullptr);
        EXPECT_EQ(handle.close(), PF_Err_NONE);
    }
    EXPECT_EQ(host.calls, (Calls{"lock", "unlock", "free"}));
}

// The host counts locks, whatever address they gave.
TEST_F(HostMemoryHandle, IsUnlockedAlsoWhereTheLockGaveNoBlock) {
    host.block = nullptr;
    LentMemory handle(host, suites);
    EXPECT_EQ(handle.lock(), PF_Err_NONE);
    EXPECT_EQ(handle.address(), nullptr);
    EXPECT_EQ(handle.close(), PF_Err_NONE);
    EXPECT_EQ(host.calls, (Calls{"lock", "unlock", "free"}));
}

// A host may have written an address before it failed.
TEST_F(HostMemoryHandle, IsFreedWithoutAnUnlockWhereTheLockFailed) {
    host.lockError = PF_Err_INVALID_INDEX;
    LentMemory handle(host, suites);
    EXPECT_EQ(handle.lock(), PF_Err_INVALID_INDEX);
    EXPECT_EQ(handle.address(), nullptr);
    EXPECT_EQ(handle.close(), PF_Err_NONE);
    EXPECT_EQ(host.calls, (Calls{"lock", "free"}));
}

TEST_F(HostMemoryHandle, WithoutMemoryAsksForNothing) {
    MemoryHandle handle(suites);
    EXPECT_EQ(handle.lock(), PF_Err_NONE);
    EXPECT_EQ(handle.address(), nullptr);
    EXPECT_EQ(handle.close(), PF_Err_NONE);
    EXPECT_EQ(host.calls, Calls());
}

TEST_F(HostMemoryHandle, TellsTheFirstErrorOfItsEndAndIsFreedAllTheSame) {
    host.unlockError = PF_Err_INVALID_INDEX;
    host.freeError = PF_Err_INVALID_CALLBACK;
    for (const PF_Err expected : {PF_Err{PF_Err_INVALID_INDEX}, PF_Err{PF_Err_INVALID_CALLBACK}}) {
        LentMemory handle(host, suites);
        handle.lock();
        EXPECT_EQ(handle.close(), expected);
        host.unlockError = PF_Err_NONE;
    }
    EXPECT_EQ(host.calls, (Calls{"lock", "unlock", "free", "lock", "unlock", "free"}));
}

}  // namespace
}  // namespace Tessavoy
