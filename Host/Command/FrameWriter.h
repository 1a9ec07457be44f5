#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

namespace TessavoyHost {

// Writes frames on threads of its own, beside the rendering of the next ones. The number of frames that wait is bounded
// by the schedule's slots.
class FrameWriter {
public:
    enum class Order { Any, ByPosition };

    // By position there is one thread whatever is asked for.
    FrameWriter(int threads, Order order);
    // Finishes what can be written.
    ~FrameWriter();
    FrameWriter(const FrameWriter&) = delete;
    FrameWriter& operator=(const FrameWriter&) = delete;

    // The work, which must not throw, runs soon; by position not before all earlier positions were submitted. Each
    // position is submitted once; an empty work says that there is nothing to write for it.
    void submit(std::size_t position, std::function<void()> work);

    // Waits until nothing is left that can be written, or until the time is over. Whether it is done.
    bool drain(std::chrono::duration<double> limit);
    // The same, and begins nothing more afterwards: what is submitted then is dropped.
    bool close(std::chrono::duration<double> limit);

private:
    void writeFrames();
    bool hasReadyWork() const;
    bool isIdle() const { return !hasReadyWork() && mRunning == 0; }

    const Order mOrder;
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::map<std::size_t, std::function<void()>> mWaiting;  // by position
    std::size_t mNextPosition = 0;
    int mRunning = 0;
    bool mEnding = false;
    bool mClosed = false;
    std::vector<std::thread> mThreads;
};

}  // namespace TessavoyHost
