#include "Host/Command/RenderRun.h"

#include <algorithm>
#include <exception>
#include <system_error>

#include "Host/Command/ExitGuard.h"
#include "Host/Scene/JsonNode.h"
#include "Host/SignalStack.h"

namespace TessavoyHost {
namespace {

constexpr std::chrono::milliseconds watchInterval{20};

// How long writes in progress are waited for when the process is about to end. They are whole or not at all either way,
// but for a passing file that a write cut short leaves behind.
constexpr std::chrono::seconds writePatience{10};

// Frames held at once: those in rendering, as many in writing, and one that waits.
std::size_t slotsFor(int threads) {
    return 2 * static_cast<std::size_t>(threads) + 1;
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

RenderRun::RenderRun(RunSettings settings, FrameWork& work, RunReporter& reporter, RunEnvironment environment)
    : mSettings(std::move(settings)),
      mWork(work),
      mReporter(reporter),
      mEnvironment(std::move(environment)),
      mSchedule(mSettings.frames.size(), slotsFor(mSettings.threads)),
      mWriter(renderThreads(), mSettings.order) {}

int RenderRun::renderThreads() const {
    return std::min(mSettings.threads, static_cast<int>(mSettings.frames.size()));
}

ExitStatus RenderRun::run() {
    startThreads();
    watch();
    for (auto& thread : mThreads) {
        thread.join();
    }
    mEnvironment.settle();
    mReporter.finish();
    return mReporter.status();
}

void RenderRun::startThreads() {
    const int count = renderThreads();
    for (int i = 0; i < count; ++i) {
        try {
            const std::lock_guard lock(mMutex);
            mThreads.emplace_back([this] { renderFrames(); });
            ++mRunningThreads;
        } catch (const std::system_error& error) {
            if (mThreads.empty()) {
                throw;
            }
            mReporter.note("only " + std::to_string(mThreads.size()) + " threads could be started: " + error.what());
            return;
        }
    }
}

void RenderRun::renderFrames() {
    useSignalStack();
    while (const auto position = mSchedule.take()) {
        handle(*position);
    }
    const std::lock_guard lock(mMutex);
    --mRunningThreads;
    mThreadEnded.notify_all();
}

void RenderRun::handle(std::size_t position) {
    const int frame = mSettings.frames[position];
    const auto start = Clock::now();
    if (mWork.isThere(frame)) {
        mReporter.frameEnded({frame, FrameStatus::Skipped, mWork.fileOf(frame), {}, 0});
        mWriter.submit(position, [this] { mSchedule.giveBack(); });
        return;
    }
    auto rendered = renderGuarded(frame);
    const double seconds = secondsSince(start);
    if (!rendered) {
        submit(position, seconds, nullptr);
        return;
    }
    tell(frame, *rendered);
    if (!rendered->failure.empty()) {
        rendered->write = nullptr;
        if (!mCancel) {
            fail(frame, seconds, rendered->failure);
        }
    }
    submit(position, seconds, std::move(rendered->write));
}

// An empty work: there is no such frame.
void RenderRun::submit(std::size_t position, double seconds, std::function<void()> work) {
    mWriter.submit(position, [this, frame = mSettings.frames[position], seconds, work = std::move(work)] {
        if (work) {
            write(frame, seconds, work);
        } else if (mSettings.order == FrameWriter::Order::ByPosition) {
            breakStream(frame);
        }
        mSchedule.giveBack();
    });
}

// Who reads the stream counts frames; those behind a missing one would be taken for others.
void RenderRun::breakStream(int frame) {
    if (!mStreamBroken) {
        mStreamBroken = true;
        mSchedule.stop();
        mReporter.note("the stream ends before frame " + std::to_string(frame) + ", as raw frames carry no numbers");
    }
}

// Reports what was said; where that counts as a failure, the first message becomes the reason instead.
void RenderRun::tell(int frame, RenderedFrame& rendered) {
    if (mSettings.strict && rendered.failure.empty() && !rendered.messages.empty()) {
        rendered.failure = rendered.messages.front();
        rendered.messages.erase(rendered.messages.begin());
    }
    for (const auto& remark : rendered.remarks) {
        mReporter.message(frame, remark);
    }
    for (const auto& message : rendered.messages) {
        mReporter.message(frame, message);
    }
}

// Nothing where the frame was given up meanwhile.
std::optional<RenderedFrame> RenderRun::renderGuarded(int frame) {
    {
        const std::lock_guard lock(mMutex);
        mInWork[std::this_thread::get_id()] = {frame, Clock::now()};
    }
    const FrameCrashGuard guard(frame);
    RenderedFrame rendered;
    try {
        rendered = mWork.render(frame, mCancel);
    } catch (const std::bad_alloc&) {
        rendered.failure = "there is not enough memory";
    } catch (const std::exception& error) {
        rendered.failure = error.what();
    }
    const std::lock_guard lock(mMutex);
    mInWork.erase(std::this_thread::get_id());
    if (mLate.contains(frame)) {
        return std::nullopt;
    }
    return rendered;
}

void RenderRun::write(int frame, double seconds, const std::function<void()>& work) {
    if (mStreamBroken) {
        return;
    }
    const FrameCrashGuard guard(frame);
    try {
        work();
        mReporter.frameEnded({frame, FrameStatus::Written, mWork.fileOf(frame), {}, seconds});
    } catch (const std::exception& error) {
        fail(frame, seconds, error.what());
        if (mSettings.order == FrameWriter::Order::ByPosition) {
            mStreamBroken = true;
            mSchedule.stop();
        }
    }
}

void RenderRun::fail(int frame, double seconds, const std::string& reason) {
    mReporter.frameEnded({frame, FrameStatus::Failed, {}, reason, seconds});
    if (mSettings.onError == AfterFailure::Stop || mSettings.order == FrameWriter::Order::ByPosition) {
        mSchedule.stop();
    }
}

bool RenderRun::waitForThreads(std::chrono::duration<double> limit) {
    std::unique_lock lock(mMutex);
    return mThreadEnded.wait_for(lock, limit, [this] { return mRunningThreads == 0; });
}

// Until everything is rendered and written.
void RenderRun::watch() {
    while (!waitForThreads(watchInterval)) {
        watchFrameTimes();
        watchInterruptions();
    }
    while (!mWriter.drain(watchInterval)) {
        watchInterruptions();
    }
}

// A frame is given up or comes to its end, whichever is first under the lock.
std::vector<int> RenderRun::takeLateFrames() {
    const std::lock_guard lock(mMutex);
    std::vector<int> late;
    for (const auto& [thread, work] : mInWork) {
        if (secondsSince(work.since) > *mSettings.frameTimeout) {
            late.push_back(work.frame);
        }
    }
    mLate.insert(late.begin(), late.end());
    return late;
}

void RenderRun::watchFrameTimes() {
    if (!mSettings.frameTimeout || mAbandoned) {
        return;
    }
    const auto late = takeLateFrames();
    for (const int frame : late) {
        fail(frame, *mSettings.frameTimeout, "took longer than " + numberInWords(*mSettings.frameTimeout) + " seconds");
    }
    if (!late.empty()) {
        abandon();
    }
}

void RenderRun::watchInterruptions() {
    const int count = mEnvironment.interruptions();
    if (count == 0 || mAbandoned) {
        return;
    }
    if (!mInterruptedAt) {
        mInterruptedAt = Clock::now();
        mCancel = true;
        mSchedule.stop();
        mReporter.note("interrupted");
    }
    if (count > 1 || secondsSince(*mInterruptedAt) > mSettings.patience) {
        abandon();
    }
}

// Ends the process with frames still in work, after those that are rendered are written.
void RenderRun::abandon() {
    mAbandoned = true;
    mCancel = true;
    mSchedule.stop();
    mWriter.close(writePatience);
    mEnvironment.settle();
    mReporter.finish();
    mEnvironment.endProcess(ExitStatus::FrameFailed);
}

}  // namespace TessavoyHost
