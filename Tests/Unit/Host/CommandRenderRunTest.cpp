#include "Host/Command/RenderRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <numeric>
#include <set>

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Le;

// Waits for conditions between threads. A test that waits in vain fails instead of hanging.
class Gate {
public:
    void open() {
        {
            const std::lock_guard lock(mMutex);
            mOpen = true;
        }
        mChanged.notify_all();
    }
    bool wait() {
        std::unique_lock lock(mMutex);
        return mChanged.wait_for(lock, std::chrono::seconds(60), [this] { return mOpen; });
    }

private:
    std::mutex mMutex;
    std::condition_variable mChanged;
    bool mOpen = false;
};

// Frames that are rendered and written by the test's own functions.
class FakeWork : public FrameWork {
public:
    bool isThere(int frame) override { return there.contains(frame); }
    std::string fileOf(int frame) const override { return "file" + std::to_string(frame); }
    RenderedFrame render(int frame, const std::atomic<bool>& cancel) override {
        RenderedFrame rendered = onRender ? onRender(frame, cancel) : RenderedFrame{};
        if (!rendered.write) {
            rendered.write = [this, frame] {
                if (onWrite) {
                    onWrite(frame);
                }
                const std::lock_guard lock(mutex);
                written.push_back(frame);
            };
        }
        return rendered;
    }

    std::set<int> there;
    std::function<RenderedFrame(int, const std::atomic<bool>&)> onRender;
    std::function<void(int)> onWrite;
    std::mutex mutex;
    std::vector<int> written;
};

RenderedFrame failure(const std::string& text) {
    RenderedFrame rendered;
    rendered.failure = text;
    return rendered;
}

RenderedFrame saying(const std::string& text) {
    RenderedFrame rendered;
    rendered.messages = {text};
    return rendered;
}

class CommandRenderRun : public ::testing::Test {
protected:
    CommandRenderRun() {
        settings.frames = {0, 1, 2, 3, 4, 5, 6, 7};
        ProgressOutput output;
        output.error = [this](const std::string& text) { told.push_back(text); };
        output.seconds = [] { return 0.0; };
        progress = makeProgress(ProgressMode::None, output);
    }

    ExitStatus run() {
        reporter.emplace(static_cast<int>(settings.frames.size()), *progress);
        const auto end = [this](ExitStatus status) {
            endedWith = status;
            ended.open();
        };
        return RenderRun(settings, work, *reporter, {[this] { return signals.load(); }, end}).run();
    }

    std::string summary() const { return told.empty() ? "" : told.back(); }

    RunSettings settings;
    FakeWork work;
    std::vector<std::string> told;
    std::unique_ptr<Progress> progress;
    std::optional<RunReporter> reporter;
    std::atomic<int> signals = 0;
    std::optional<ExitStatus> endedWith;
    Gate ended;
};

TEST_F(CommandRenderRun, WritesEveryFrame) {
    EXPECT_EQ(run(), ExitStatus::Success);
    EXPECT_THAT(work.written, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    EXPECT_THAT(told, ElementsAre("frames: 8 written, 0 skipped, 0 failed\n"));
}

TEST_F(CommandRenderRun, KeepsWhatIsThere) {
    work.there = {1, 6};
    EXPECT_EQ(run(), ExitStatus::Success);
    EXPECT_EQ(summary(), "frames: 6 written, 2 skipped, 0 failed\n");
}

TEST_F(CommandRenderRun, RendersSideBySide) {
    settings.threads = 4;
    std::atomic<int> inside = 0;
    Gate allInside;
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame < 4 && ++inside == 4) {
            allInside.open();
        }
        EXPECT_TRUE(allInside.wait());
        return RenderedFrame{};
    };
    EXPECT_EQ(run(), ExitStatus::Success);
    EXPECT_EQ(summary(), "frames: 8 written, 0 skipped, 0 failed\n");
}

TEST_F(CommandRenderRun, ThreadsStayForTheWholeRun) {
    settings.threads = 3;
    std::set<std::thread::id> threads;
    work.onRender = [&](int, const std::atomic<bool>&) {
        const std::lock_guard lock(work.mutex);
        threads.insert(std::this_thread::get_id());
        return RenderedFrame{};
    };
    run();
    EXPECT_THAT(threads.size(), Le(3u));
    EXPECT_FALSE(threads.contains(std::this_thread::get_id()));
}

TEST_F(CommandRenderRun, WritesBesideTheRenderingOfTheNextFrame) {
    Gate secondIsRendered;
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame == 1) {
            secondIsRendered.open();
        }
        return RenderedFrame{};
    };
    work.onWrite = [&](int frame) {
        if (frame == 0) {
            EXPECT_TRUE(secondIsRendered.wait());
        }
    };
    EXPECT_EQ(run(), ExitStatus::Success);
}

TEST_F(CommandRenderRun, HoldsABoundedNumberOfFrames) {
    settings.threads = 2;
    settings.frames.resize(100);
    std::iota(settings.frames.begin(), settings.frames.end(), 0);
    std::atomic<int> held = 0, most = 0;
    work.onRender = [&](int, const std::atomic<bool>&) {
        most = std::max(most.load(), ++held);
        return RenderedFrame{};
    };
    work.onWrite = [&](int) {
        std::this_thread::yield();
        --held;
    };
    EXPECT_EQ(run(), ExitStatus::Success);
    EXPECT_LE(most, 5);  // two in rendering, two in writing, one that waits
}

TEST_F(CommandRenderRun, KeepsTheOrderWhereItCounts) {
    settings.threads = 4;
    settings.order = FrameWriter::Order::ByPosition;
    settings.frames = {5, 3, 1, 7, 0, 2, 6, 4};
    Gate thirdIsRendered;
    work.there = {7};
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame == 5) {  // the first is rendered after the third
            EXPECT_TRUE(thirdIsRendered.wait());
        }
        if (frame == 1) {
            thirdIsRendered.open();
        }
        return frame == 2 ? failure("no") : RenderedFrame{};
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(5, 3, 1, 0));
}

// Frames behind the failed one are rendered already when its turn comes; in the stream they would take its place.
TEST_F(CommandRenderRun, AStreamEndsBeforeAFailedFrame) {
    settings.threads = 2;
    settings.order = FrameWriter::Order::ByPosition;
    Gate thirdIsRendered;
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame == 1) {
            EXPECT_TRUE(thirdIsRendered.wait());
            return failure("no");
        }
        if (frame == 2) {
            thirdIsRendered.open();
        }
        return RenderedFrame{};
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0));
    EXPECT_THAT(told, ::testing::Contains("frame 1: failed: no\n"));
    EXPECT_THAT(told, ::testing::Contains("the stream ends before frame 1, as raw frames carry no numbers\n"));
    EXPECT_EQ(summary(), "frames: 1 written, 0 skipped, 1 failed (1), 6 not rendered\n");
}

TEST_F(CommandRenderRun, GoesOnAfterAFailure) {
    work.onRender = [](int frame, const std::atomic<bool>&) { return frame == 2 ? failure("no") : RenderedFrame{}; };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0, 1, 3, 4, 5, 6, 7));
    EXPECT_THAT(told, ElementsAre("frame 2: failed: no\n", "frames: 7 written, 0 skipped, 1 failed (2)\n"));
}

TEST_F(CommandRenderRun, StopsAfterAFailureWhenTold) {
    settings.onError = AfterFailure::Stop;
    work.onRender = [](int frame, const std::atomic<bool>&) { return frame == 2 ? failure("no") : RenderedFrame{}; };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0, 1));
    EXPECT_EQ(summary(), "frames: 2 written, 0 skipped, 1 failed (2), 5 not rendered\n");
}

TEST_F(CommandRenderRun, AnExceptionFailsItsFrameAlone) {
    work.onRender = [](int frame, const std::atomic<bool>&) -> RenderedFrame {
        if (frame == 1) {
            throw std::runtime_error("bad");
        }
        if (frame == 2) {
            throw std::bad_alloc();
        }
        return {};
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(told, ElementsAre("frame 1: failed: bad\n", "frame 2: failed: there is not enough memory\n",
                                  "frames: 6 written, 0 skipped, 2 failed (1-2)\n"));
}

TEST_F(CommandRenderRun, AFileThatCanNotBeWrittenFailsItsFrame) {
    work.onWrite = [](int frame) {
        if (frame == 3) {
            throw HostError(ExitStatus::FrameFailed, "disk full");
        }
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(told, ElementsAre("frame 3: failed: disk full\n", "frames: 7 written, 0 skipped, 1 failed (3)\n"));
}

TEST_F(CommandRenderRun, AStreamThatBreaksEndsTheRun) {
    settings.order = FrameWriter::Order::ByPosition;
    settings.frames.resize(100);
    std::iota(settings.frames.begin(), settings.frames.end(), 0);
    work.onWrite = [](int frame) {
        if (frame == 3) {
            throw HostError(ExitStatus::FrameFailed, "Broken pipe");
        }
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0, 1, 2));
    EXPECT_THAT(told, ElementsAre("frame 3: failed: Broken pipe\n",
                                  "frames: 3 written, 0 skipped, 1 failed (3), 96 not rendered\n"));
}

TEST_F(CommandRenderRun, MessagesAreTold) {
    work.onRender = [](int frame, const std::atomic<bool>&) { return frame == 4 ? saying("odd") : RenderedFrame{}; };
    EXPECT_EQ(run(), ExitStatus::Success);
    EXPECT_THAT(told, ElementsAre("frame 4: odd\n", "frames: 8 written, 0 skipped, 0 failed\n"));
}

TEST_F(CommandRenderRun, MessagesAreFailuresWhenStrict) {
    settings.strict = true;
    work.onRender = [](int frame, const std::atomic<bool>&) {
        RenderedFrame rendered = frame == 4 ? saying("odd") : RenderedFrame{};
        rendered.remarks = {"left a handle"};  // of the host, and no failure
        return rendered;
    };
    settings.frames = {3, 4};
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(3));
    EXPECT_THAT(told, ElementsAre("frame 3: left a handle\n", "frame 4: failed: odd\n",
                                  "frames 4 said what frame 3 said: left a handle\n",
                                  "frames: 1 written, 0 skipped, 1 failed (4)\n"));
}

TEST_F(CommandRenderRun, AFrameThatTakesTooLongEndsTheProcessWithItsNumber) {
    settings.frameTimeout = 0.05;
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame == 2) {
            EXPECT_TRUE(ended.wait());  // would never return
        }
        return RenderedFrame{};
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_EQ(endedWith, ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0, 1));  // what was rendered is written first
    EXPECT_THAT(told, ElementsAre("frame 2: failed: took longer than 0.05 seconds\n",
                                  "frames: 2 written, 0 skipped, 1 failed (2), 5 not rendered\n"));
}

// It is cancelled when the time is over, and comes to its end while an earlier frame is still written.
TEST_F(CommandRenderRun, ALateFrameThatEndsAfterAllIsNeitherToldNorWritten) {
    settings.frameTimeout = 0.05;
    settings.frames = {0, 1};
    Gate secondIsCancelled;
    work.onRender = [&](int frame, const std::atomic<bool>& cancel) {
        while (frame == 1 && !cancel) {
            std::this_thread::yield();
        }
        if (frame == 0) {
            return RenderedFrame{};
        }
        secondIsCancelled.open();
        return saying("late");
    };
    work.onWrite = [&](int frame) {
        if (frame == 0) {
            EXPECT_TRUE(secondIsCancelled.wait());
            std::this_thread::sleep_for(std::chrono::milliseconds(100));  // so that a late frame could be submitted
        }
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(work.written, ElementsAre(0));
    EXPECT_THAT(told, ElementsAre("frame 1: failed: took longer than 0.05 seconds\n",
                                  "frames: 1 written, 0 skipped, 1 failed (1)\n"));
}

TEST_F(CommandRenderRun, WritingIsNotHeldAgainstTheFrameTimeout) {
    settings.frameTimeout = 0.02;
    settings.frames = {0};
    work.onWrite = [](int) { std::this_thread::sleep_for(std::chrono::milliseconds(100)); };
    EXPECT_EQ(run(), ExitStatus::Success);
}

TEST_F(CommandRenderRun, AnInterruptionEndsTheRunAfterTheFramesInWork) {
    work.onRender = [&](int frame, const std::atomic<bool>& cancel) {
        if (frame == 2) {
            signals = 1;
            while (!cancel) {
                std::this_thread::yield();
            }
        }
        return RenderedFrame{};  // it came to its end all the same
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_EQ(endedWith, std::nullopt);
    EXPECT_THAT(work.written, ElementsAre(0, 1, 2));
    EXPECT_THAT(told, ElementsAre("interrupted\n", "frames: 3 written, 0 skipped, 0 failed, 5 not rendered\n"));
}

TEST_F(CommandRenderRun, AFrameThatIsCancelledHasNotFailed) {
    work.onRender = [&](int frame, const std::atomic<bool>& cancel) {
        if (frame == 2) {
            signals = 1;
            while (!cancel) {
                std::this_thread::yield();
            }
            return failure("interrupted");
        }
        return RenderedFrame{};
    };
    EXPECT_EQ(run(), ExitStatus::FrameFailed);
    EXPECT_THAT(told, ElementsAre("interrupted\n", "frames: 2 written, 0 skipped, 0 failed, 6 not rendered\n"));
}

TEST_F(CommandRenderRun, ASecondInterruptionEndsTheProcess) {
    work.onRender = [&](int frame, const std::atomic<bool>&) {
        if (frame == 2) {
            signals = 2;
            EXPECT_TRUE(ended.wait());  // would never return
        }
        return RenderedFrame{};
    };
    run();
    EXPECT_EQ(endedWith, ExitStatus::FrameFailed);
    EXPECT_EQ(summary(), "frames: 2 written, 0 skipped, 0 failed, 6 not rendered\n");
}

TEST_F(CommandRenderRun, PatienceWithAFrameInWorkHasItsEnd) {
    settings.patience = 0.05;
    work.onRender = [&](int, const std::atomic<bool>&) {
        signals = 1;
        EXPECT_TRUE(ended.wait());  // would never return
        return RenderedFrame{};
    };
    run();
    EXPECT_EQ(endedWith, ExitStatus::FrameFailed);
}

TEST(CommandFrameWriter, ClosedItBeginsNothingMore) {
    FrameWriter writer(1, FrameWriter::Order::Any);
    int written = 0;
    writer.submit(0, [&written] { ++written; });
    EXPECT_TRUE(writer.close(std::chrono::seconds(60)));
    writer.submit(1, [&written] { ++written; });
    EXPECT_TRUE(writer.drain(std::chrono::seconds(60)));
    EXPECT_EQ(written, 1);
}

TEST(CommandFrameWriter, WaitsForWorkInProgressAsLongAsItIsTold) {
    Gate gate;
    FrameWriter writer(1, FrameWriter::Order::Any);
    writer.submit(0, [&gate] { EXPECT_TRUE(gate.wait()); });
    EXPECT_FALSE(writer.drain(std::chrono::milliseconds(1)));
    gate.open();
    EXPECT_TRUE(writer.drain(std::chrono::seconds(60)));
}

TEST(CommandFrameWriter, WhatWaitsForAnEarlierPositionIsNotReady) {
    FrameWriter writer(4, FrameWriter::Order::ByPosition);
    std::vector<int> written;
    writer.submit(1, [&written] { written.push_back(1); });
    EXPECT_TRUE(writer.drain(std::chrono::seconds(60)));
    EXPECT_THAT(written, IsEmpty());
    writer.submit(0, [&written] { written.push_back(0); });
    EXPECT_TRUE(writer.drain(std::chrono::seconds(60)));
    EXPECT_THAT(written, ElementsAre(0, 1));
}

TEST(CommandFrameSchedule, HandsOutPositionsInOrderAsLongAsThereAreSlots) {
    FrameSchedule schedule(3, 2);
    EXPECT_EQ(schedule.take(), 0u);
    EXPECT_EQ(schedule.take(), 1u);
    auto third = std::async(std::launch::async, [&schedule] { return schedule.take(); });
    EXPECT_EQ(third.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    schedule.giveBack();
    EXPECT_EQ(third.get(), 2u);
    EXPECT_EQ(schedule.take(), std::nullopt);
}

TEST(CommandFrameSchedule, StoppingWakesWhoWaits) {
    FrameSchedule schedule(3, 0);
    auto first = std::async(std::launch::async, [&schedule] { return schedule.take(); });
    schedule.stop();
    EXPECT_EQ(first.get(), std::nullopt);
}

}  // namespace
}  // namespace TessavoyHost
