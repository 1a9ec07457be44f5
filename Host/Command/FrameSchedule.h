#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <optional>

namespace TessavoyHost {

// Hands out the positions of a list in order, each together with a slot; there are so many slots at once. As a slot
// goes back only when its frame is written, the slots bound the frames that are held in memory, and as the earliest
// frame in work always has one, whoever waits for frames in order gets them.
class FrameSchedule {
public:
    FrameSchedule(std::size_t count, std::size_t slots) : mCount(count), mFreeSlots(slots) {}

    // The next position, once there is a slot for it; nothing at the end of the list or when stopped.
    std::optional<std::size_t> take();
    // Gives the slot of a position back.
    void giveBack();
    // No more positions.
    void stop();

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    std::size_t mCount;
    std::size_t mFreeSlots;
    std::size_t mNext = 0;
    bool mStopped = false;
};

}  // namespace TessavoyHost
