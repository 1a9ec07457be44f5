#include "Host/Command/FrameSchedule.h"

namespace TessavoyHost {

std::optional<std::size_t> FrameSchedule::take() {
    std::unique_lock lock(mMutex);
    mChanged.wait(lock, [this] { return mStopped || mNext == mCount || mFreeSlots > 0; });
    if (mStopped || mNext == mCount) {
        return std::nullopt;
    }
    --mFreeSlots;
    return mNext++;
}

void FrameSchedule::giveBack() {
    {
        const std::lock_guard lock(mMutex);
        ++mFreeSlots;
    }
    mChanged.notify_all();
}

void FrameSchedule::stop() {
    {
        const std::lock_guard lock(mMutex);
        mStopped = true;
    }
    mChanged.notify_all();
}

}  // namespace TessavoyHost
