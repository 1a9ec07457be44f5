#include "Tests/Fuzz/FuzzHost.h"

#include "HostInterface/SuiteIdentity.h"
#include "HostInterface/Suites.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace TessavoyFuzz {

using namespace Tessavoy;

namespace {

/// What a handle points at; the handle is the address of `address`.
struct Block {
    void* address;
};

void* sequenceBlock = nullptr;
std::size_t handleCount = 0;
int lockCount = 0;
int suiteCount = 0;

PF_Handle newHandle(A_HandleSize size) {
    auto* block = new Block{std::malloc(size)};
    ++handleCount;
    return &block->address;
}

void* lockHandle(PF_Handle handle) {
    ++lockCount;
    return *handle;
}

void unlockHandle(PF_Handle) {
    --lockCount;
}

void disposeHandle(PF_Handle handle) {
    std::free(*handle);
    delete reinterpret_cast<Block*>(handle);
    --handleCount;
}

PF_Err constSequenceData(PF_ProgPtr, PF_ConstHandle* data) {
    *data = const_cast<PF_ConstHandle>(reinterpret_cast<const PF_ConstPtr*>(&sequenceBlock));
    return 0;
}

const void* tableOf(std::string_view name) {
    static const PF_HandleSuite1 handles = {newHandle, lockHandle, unlockHandle, disposeHandle, nullptr, nullptr};
    static const PF_EffectSequenceDataSuite1 sequenceData = {constSequenceData};
    if (name == SuiteIdentity<PF_HandleSuite1>::name) {
        return &handles;
    }
    return name == SuiteIdentity<PF_EffectSequenceDataSuite1>::name ? &sequenceData : nullptr;
}

SPErr acquireSuite(const char* name, std::int32_t, const void** suite) {
    *suite = tableOf(name);
    suiteCount += *suite != nullptr ? 1 : 0;
    return *suite != nullptr ? 0 : 1;
}

SPErr releaseSuite(const char*, std::int32_t) {
    --suiteCount;
    return 0;
}

template <class Value>
PF_Handle handleTo(Value& value) {
    const Value* address = &value;
    PF_Handle handle = newHandle(sizeof address);
    std::memcpy(*handle, &address, sizeof address);
    return handle;
}

}  // namespace

FuzzHost::FuzzHost() : snapshot(&inData) {
    mUtilities.host_new_handle = newHandle;
    mUtilities.host_lock_handle = lockHandle;
    mUtilities.host_unlock_handle = unlockHandle;
    mUtilities.host_dispose_handle = disposeHandle;
    mUtilities.ansi.sprintf = std::sprintf;
    mBasic.AcquireSuite = acquireSuite;
    mBasic.ReleaseSuite = releaseSuite;
    inData.utils = &mUtilities;
    inData.pica_basicP = &mBasic;
    inData.current_time = 250;
    inData.time_step = 100;
    inData.time_scale = 2500;
    sequenceBlock = &sequence;
    sequence.paramNames = {{304, "a"}, {305, "b"}};
    fillSlots();
}

void FuzzHost::fillSlots() {
    snapshot.Float[0] = 1.5;
    snapshot.Color[0] = {0.25F, 0.5F, 0.75F, 1.0F};
    NoiseSource& noise = snapshot.Noise[0];
    noise.Multiplier = 2.0;
    noise.Scale = noise.ScaleX = noise.ScaleY = 10.0;
    noise.LoopZ = 3.0;
    noise.OffsetZ = 4.0;
    noise.MultLayer.Index = 1;
    noise.buildTable();
    snapshot.Random[0] = {1, 0.0, 10.0};
    snapshot.Ramp[0] = handleTo(mRamp);
    snapshot.Gradient[0] = handleTo(mGradient);
    snapshot.Path[1] = 5;
    mLayers.add8(2, 2, std::vector<FakeLayers::Pixel>(4, {0.5F, 0.25F, 1.0F, 1.0F}));
    mLayers.addFloat(2, 1, std::vector<FakeLayers::Pixel>(2, {0.5F, 1e30F, -1.0F, 1.0F}));
    snapshot.layers.inData = mLayers.slots.inData;
    snapshot.layers.checkouts = mLayers.slots.checkouts;
    mOwnHandles = handleCount;
}

bool FuzzHost::hasEverythingBack() const {
    return handleCount == mOwnHandles && lockCount == 0 && suiteCount == 0 && mLayers.suitesOut == 0;
}

}  // namespace TessavoyFuzz
