#include "Tests/Support/FakeHandleHost.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <memory>

#include "Tests/Support/SuiteTable.h"

namespace Tessavoy {

namespace {

/// What a handle points at; the handle is the address of `address`.
struct Block {
    void* address = nullptr;
    std::size_t size = 0;
    int locks = 0;
    std::unique_ptr<std::byte[]> memory;
};

FakeHandleHost* host = nullptr;
std::map<PF_Handle, std::unique_ptr<Block>> blocks;

Block* blockOf(PF_Handle handle) {
    const auto found = blocks.find(handle);
    EXPECT_NE(found, blocks.end()) << "a handle that isn't alive";
    return found == blocks.end() ? nullptr : found->second.get();
}

PF_Handle makeBlock(std::size_t size) {
    auto block = std::make_unique<Block>();
    block->size = size;
    if (size > 0) {
        block->memory.reset(new std::byte[size]);
        std::memset(block->memory.get(), 0xA5, size);
        block->address = block->memory.get();
    }
    PF_Handle handle = &block->address;
    blocks.emplace(handle, std::move(block));
    return handle;
}

PF_Handle allocateHandle(A_HandleSize size) {
    return host->failsNow() ? nullptr : makeBlock(size);
}

void* lockHandle(PF_Handle handle) {
    Block* block = blockOf(handle);
    if (block == nullptr || block->address == nullptr || host->failsNow()) {
        return nullptr;
    }
    ++block->locks;
    return block->address;
}

void unlockHandle(PF_Handle handle) {
    if (Block* block = blockOf(handle)) {
        EXPECT_GT(block->locks, 0) << "unlocked without a lock";
        --block->locks;
    }
}

void disposeHandle(PF_Handle handle) {
    if (const Block* block = blockOf(handle)) {
        EXPECT_EQ(block->locks, 0) << "disposed of while locked";
        blocks.erase(handle);
    }
}

A_HandleSize handleSize(PF_Handle handle) {
    const Block* block = blockOf(handle);
    return block == nullptr ? 0 : block->size;
}

A_char* copyText(A_char* target, const A_char* text) {
    return std::strcpy(target, text);
}

PF_Err constSequenceData(PF_ProgPtr effect, PF_ConstHandle* data) {
    EXPECT_EQ(effect, host->inData.effect_ref);
    *data = const_cast<PF_ConstHandle>(reinterpret_cast<const PF_ConstPtr*>(host->constSequenceData));
    return host->constSequenceError;
}

const void* findTable(const char* name, std::int32_t version) {
    static const PF_HandleSuite1 handles = {allocateHandle, lockHandle, unlockHandle,
                                            disposeHandle,  handleSize, nullptr};
    static const PF_ANSICallbacksSuite1 ansi = [] {
        PF_ANSICallbacksSuite1 table{};
        table.strcpy = copyText;
        return table;
    }();
    static const PF_EffectSequenceDataSuite1 sequence = {constSequenceData};

    return tableFor(name, version, handles, ansi, sequence);
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    *suite = nullptr;
    if (host->absentSuites.count(name) != 0 || host->failsNow()) {
        return 1;
    }
    *suite = findTable(name, version);
    EXPECT_NE(*suite, nullptr) << name << " " << version << " isn't served by this host";
    host->suiteCount += *suite != nullptr ? 1 : 0;
    return *suite != nullptr ? 0 : 1;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    EXPECT_NE(findTable(name, version), nullptr);
    --host->suiteCount;
    return 0;
}

}  // namespace

FakeHandleHost::FakeHandleHost() {
    EXPECT_EQ(host, nullptr);
    host = this;
    basic.AcquireSuite = acquireSuite;
    basic.ReleaseSuite = releaseSuite;
    utilities.host_new_handle = allocateHandle;
    utilities.host_lock_handle = lockHandle;
    utilities.host_unlock_handle = unlockHandle;
    utilities.host_dispose_handle = disposeHandle;
    utilities.host_get_handle_size = handleSize;
    utilities.ansi.strcpy = copyText;
    utilities.ansi.sprintf = std::sprintf;
    inData.pica_basicP = &basic;
    inData.utils = &utilities;
    inData.effect_ref = reinterpret_cast<PF_ProgPtr>(this);
}

FakeHandleHost::~FakeHandleHost() {
    EXPECT_EQ(suiteCount, 0) << "suites not released";
    EXPECT_EQ(liveLocks(), 0) << "handles left locked";
    blocks.clear();
    host = nullptr;
}

PF_Handle FakeHandleHost::newHandle(std::span<const std::byte> bytes) {
    PF_Handle handle = makeBlock(bytes.size());
    if (!bytes.empty()) {
        std::memcpy(*handle, bytes.data(), bytes.size());
    }
    return handle;
}

void FakeHandleHost::dispose(PF_Handle handle) {
    disposeHandle(handle);
}

std::vector<std::byte> FakeHandleHost::bytesOf(PF_Handle handle) const {
    const Block* block = blockOf(handle);
    const auto* first = static_cast<const std::byte*>(block->address);
    return {first, first + block->size};
}

std::size_t FakeHandleHost::liveHandles() const {
    return blocks.size();
}

int FakeHandleHost::liveLocks() const {
    int locks = 0;
    for (const auto& [handle, block] : blocks) {
        locks += block->locks;
    }
    return locks;
}

void FakeHandleHost::failCall(int n) {
    callsUntilFailure = n;
    failedCall = false;
}

bool FakeHandleHost::failsNow() {
    if (callsUntilFailure == 0 || --callsUntilFailure > 0) {
        return false;
    }
    failedCall = true;
    return true;
}

}  // namespace Tessavoy
