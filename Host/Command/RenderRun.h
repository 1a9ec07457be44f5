#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "Host/Command/FrameSchedule.h"
#include "Host/Command/FrameWriter.h"
#include "Host/Command/RenderOptions.h"
#include "Host/Command/RunReporter.h"

namespace TessavoyHost {

// A frame as it comes out of the effect.
struct RenderedFrame {
    std::string failure;                // why there is none; empty when there is one
    std::vector<std::string> messages;  // what the effect said
    std::vector<std::string> remarks;   // what the host has to say, such as a broken promise of the module
    std::function<void()> write;        // puts the frame where it belongs; may throw
};

// What a run does for each frame. Called from several threads at once.
class FrameWork {
public:
    virtual ~FrameWork() = default;
    // Whether the frame is there already and stays as it is.
    virtual bool isThere(int frame) = 0;
    // Where the frame goes, for reports; may be empty.
    virtual std::string fileOf(int frame) const = 0;
    // cancel: set when the frame is no longer wanted.
    virtual RenderedFrame render(int frame, const std::atomic<bool>& cancel) = 0;
};

struct RunSettings {
    std::vector<int> frames;
    int threads = 1;
    FrameWriter::Order order = FrameWriter::Order::Any;  // in which frames are written
    AfterFailure onError = AfterFailure::Continue;  // in order a run always stops: a stream can't leave a frame out
    bool strict = false;                            // a message of the effect is a failure
    std::optional<double> frameTimeout;             // seconds
    double patience = 10;  // seconds that frames in work are waited for when the run is interrupted
};

// How a run hears of the world outside.
struct RunEnvironment {
    std::function<int()> interruptions;          // signals so far
    std::function<void(ExitStatus)> endProcess;  // at once, with frames still in work
    std::function<void()> settle = [] {};  // lets what is still to be told come in, before the reporter is finished
};

// Renders frames on persistent threads, writes them beside the rendering of the next ones, and watches the time.
class RenderRun {
public:
    RenderRun(RunSettings settings, FrameWork& work, RunReporter& reporter, RunEnvironment environment);

    // Success when every frame was written or was there. The reporter is finished then.
    ExitStatus run();

private:
    using Clock = std::chrono::steady_clock;

    struct InWork {
        int frame;
        Clock::time_point since;
    };

    int renderThreads() const;  // no more than there are frames
    void startThreads();
    void renderFrames();
    void handle(std::size_t position);
    std::optional<RenderedFrame> renderGuarded(int frame);
    void submit(std::size_t position, double seconds, std::function<void()> work);
    void breakStream(int frame);
    std::vector<int> takeLateFrames();
    void tell(int frame, RenderedFrame& rendered);
    void write(int frame, double seconds, const std::function<void()>& work);
    void fail(int frame, double seconds, const std::string& reason);

    bool waitForThreads(std::chrono::duration<double> limit);
    void watch();
    void watchFrameTimes();
    void watchInterruptions();
    void abandon();

    const RunSettings mSettings;
    FrameWork& mWork;
    RunReporter& mReporter;
    const RunEnvironment mEnvironment;
    FrameSchedule mSchedule;
    FrameWriter mWriter;
    std::vector<std::thread> mThreads;

    std::atomic<bool> mCancel = false;
    bool mStreamBroken = false;  // touched by the one thread that writes in order
    std::mutex mMutex;
    std::condition_variable mThreadEnded;
    int mRunningThreads = 0;
    std::map<std::thread::id, InWork> mInWork;
    std::set<int> mLate;  // given up while in work; what comes of them is dropped

    std::optional<Clock::time_point> mInterruptedAt;
    bool mAbandoned = false;
};

}  // namespace TessavoyHost
