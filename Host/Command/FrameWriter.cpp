#include "Host/Command/FrameWriter.h"

#include <system_error>
#include <utility>

#include "Host/SignalStack.h"

namespace TessavoyHost {

FrameWriter::FrameWriter(int threads, Order order) : mOrder(order) {
    const int count = order == Order::ByPosition ? 1 : threads;
    for (int i = 0; i < count; ++i) {
        try {
            mThreads.emplace_back([this] { writeFrames(); });
        } catch (const std::system_error&) {
            if (mThreads.empty()) {
                throw;
            }
            return;  // fewer write as well
        }
    }
}

FrameWriter::~FrameWriter() {
    {
        const std::lock_guard lock(mMutex);
        mEnding = true;
    }
    mChanged.notify_all();
    for (auto& thread : mThreads) {
        thread.join();
    }
}

void FrameWriter::submit(std::size_t position, std::function<void()> work) {
    {
        const std::lock_guard lock(mMutex);
        mWaiting.emplace(position, std::move(work));
    }
    mChanged.notify_all();
}

bool FrameWriter::drain(std::chrono::duration<double> limit) {
    std::unique_lock lock(mMutex);
    return mChanged.wait_for(lock, limit, [this] { return isIdle(); });
}

bool FrameWriter::close(std::chrono::duration<double> limit) {
    std::unique_lock lock(mMutex);
    const bool isDone = mChanged.wait_for(lock, limit, [this] { return isIdle(); });
    mClosed = true;
    return isDone;
}

bool FrameWriter::hasReadyWork() const {
    return !mClosed && !mWaiting.empty() && (mOrder == Order::Any || mWaiting.begin()->first == mNextPosition);
}

void FrameWriter::writeFrames() {
    useSignalStack();
    std::unique_lock lock(mMutex);
    for (;;) {
        mChanged.wait(lock, [this] { return mEnding || hasReadyWork(); });
        if (!hasReadyWork()) {
            return;
        }
        const auto work = std::move(mWaiting.begin()->second);
        mWaiting.erase(mWaiting.begin());
        ++mNextPosition;
        ++mRunning;
        lock.unlock();
        if (work) {
            work();
        }
        lock.lock();
        --mRunning;
        mChanged.notify_all();
    }
}

}  // namespace TessavoyHost
