#include "Host/Command/Progress.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Host/Command/RunReporter.h"

namespace TessavoyHost {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

FrameReport written(int frame) {
    return {frame, FrameStatus::Written, "out/" + std::to_string(frame) + ".png", {}, 0.25};
}
FrameReport skipped(int frame) {
    return {frame, FrameStatus::Skipped, "out/" + std::to_string(frame) + ".png", {}, 0};
}
FrameReport failed(int frame) {
    return {frame, FrameStatus::Failed, {}, "no memory", 1.5};
}

// What a progress prints, by a clock that the test sets.
class CommandProgress : public ::testing::Test {
protected:
    ProgressOutput output(bool terminal = false) {
        ProgressOutput result;
        result.error = [this](const std::string& text) { error.push_back(text); };
        result.json = [this](const std::string& text) { json.push_back(text); };
        result.errorIsTerminal = terminal;
        result.seconds = [this] { return now; };
        return result;
    }

    double now = 100;
    std::vector<std::string> error, json;
};

TEST(CommandTally, CountsAndNamesTheFailed) {
    RunTally tally(6);
    for (const auto& report : {written(0), failed(4), skipped(2), failed(3), written(1)}) {
        tally.add(report);
    }
    EXPECT_EQ(tally.done(), 5);
    EXPECT_EQ(tally.rendered(), 4);
    EXPECT_EQ(tally.summary(), "frames: 2 written, 1 skipped, 2 failed (3-4), 1 not rendered");
}

TEST(CommandTally, SucceedsWhenEveryFrameIsThere) {
    RunTally tally(2);
    EXPECT_EQ(tally.status(), ExitStatus::FrameFailed);
    tally.add(written(0));
    tally.add(skipped(1));
    EXPECT_EQ(tally.status(), ExitStatus::Success);
    EXPECT_EQ(tally.summary(), "frames: 1 written, 1 skipped, 0 failed");
}

TEST_F(CommandProgress, LinesTellOfEachFrameOnStandardError) {
    const auto progress = makeProgress(ProgressMode::Lines, output());
    RunReporter reporter(3, *progress);
    reporter.frameEnded(written(7));
    reporter.frameEnded(skipped(8));
    reporter.frameEnded(failed(9));
    reporter.finish();
    EXPECT_THAT(error, ElementsAre("frame 7: written to out/7.png, rendered in 0.25 s\n",
                                   "frame 8: skipped, out/8.png is there\n", "frame 9: failed: no memory\n",
                                   "frames: 1 written, 1 skipped, 1 failed (9)\n"));
    EXPECT_THAT(json, IsEmpty());
}

TEST_F(CommandProgress, NoneTellsFailuresAndTheSummary) {
    const auto progress = makeProgress(ProgressMode::None, output());
    RunReporter reporter(2, *progress);
    reporter.frameEnded(written(0));
    reporter.frameEnded(failed(1));
    reporter.finish();
    EXPECT_THAT(error, ElementsAre("frame 1: failed: no memory\n", "frames: 1 written, 0 skipped, 1 failed (1)\n"));
}

TEST_F(CommandProgress, TheBarShowsSpeedAndTimeLeft) {
    const auto progress = makeProgress(ProgressMode::Bar, output());
    RunReporter reporter(10, *progress);
    reporter.frameEnded(skipped(0));
    EXPECT_EQ(error.back(), "\r\x1b[K[===                           ] 1/10");
    now = 104;  // one frame rendered in 4 s leaves 8 frames or 32 s
    reporter.frameEnded(written(1));
    EXPECT_EQ(error.back(), "\r\x1b[K[======                        ] 2/10  0.25 frames/s  0:32 left");
    reporter.finish();
    EXPECT_EQ(error.back(), "frames: 1 written, 1 skipped, 0 failed, 8 not rendered\n");
}

TEST_F(CommandProgress, TheBarIsFullAtMost) {
    RunTally tally(1);
    tally.add(skipped(0));
    tally.add(skipped(0));
    makeProgress(ProgressMode::Bar, output())->frame(skipped(0), tally);
    EXPECT_EQ(error.back(), "\r\x1b[K[==============================] 2/1");
}

TEST_F(CommandProgress, AFrameEndsOnce) {
    const auto progress = makeProgress(ProgressMode::Lines, output());
    RunReporter reporter(2, *progress);
    reporter.frameEnded(failed(1));
    reporter.frameEnded(written(1));
    reporter.finish();
    EXPECT_THAT(error, ElementsAre("frame 1: failed: no memory\n",
                                   "frames: 0 written, 0 skipped, 1 failed (1), 1 not rendered\n"));
}

TEST_F(CommandProgress, TheBarIsLeftBeforeTheLastLines) {
    const auto progress = makeProgress(ProgressMode::Bar, output());
    RunReporter reporter(1, *progress);
    reporter.frameEnded(skipped(0));
    error.clear();
    reporter.finish();
    EXPECT_THAT(error, ElementsAre("\n", "frames: 0 written, 1 skipped, 0 failed\n"));
}

TEST_F(CommandProgress, MessagesStandAboveTheBar) {
    const auto progress = makeProgress(ProgressMode::Bar, output());
    RunReporter reporter(2, *progress);
    reporter.frameEnded(skipped(0));
    reporter.message(1, "odd");
    EXPECT_EQ(error.back(), "\r\x1b[Kframe 1: odd\n[===============               ] 1/2");
}

TEST_F(CommandProgress, AutoIsABarOnATerminalOnly) {
    const RunTally tally(1);
    makeProgress(ProgressMode::Auto, output(true))->frame(written(0), tally);
    EXPECT_THAT(error.back(), HasSubstr("[   "));
    makeProgress(ProgressMode::Auto, output(false))->frame(written(0), tally);
    EXPECT_EQ(error.back(), "frame 0: written to out/0.png, rendered in 0.25 s\n");
}

TEST_F(CommandProgress, JsonIsOneObjectALine) {
    const auto progress = makeProgress(ProgressMode::Json, output());
    RunReporter reporter(3, *progress);
    reporter.frameEnded(written(7));
    reporter.frameEnded(failed(9));
    reporter.message(8, "odd \xff");
    reporter.finish();
    EXPECT_THAT(
        json,
        ElementsAre("{\"event\":\"frame\",\"frame\":7,\"status\":\"written\",\"file\":\"out/"
                    "7.png\",\"seconds\":0.25,\"done\":1,"
                    "\"total\":3}\n",
                    "{\"event\":\"message\",\"text\":\"frame 9: failed: no memory\",\"frame\":9}\n",
                    "{\"event\":\"frame\",\"frame\":9,\"status\":\"failed\",\"reason\":\"no "
                    "memory\",\"seconds\":1.5,\"done\":2,"
                    "\"total\":3}\n",
                    "{\"event\":\"message\",\"text\":\"frame 8: odd \xEF\xBF\xBD\",\"frame\":8}\n",
                    "{\"event\":\"message\",\"text\":\"frames: 1 written, 0 skipped, 1 failed (9), 1 not rendered\"}\n",
                    "{\"event\":\"end\",\"written\":1,\"skipped\":0,\"failed\":[9],\"total\":3}\n"));
    EXPECT_THAT(error, ElementsAre("frame 9: failed: no memory\n", "frame 8: odd \xff\n",
                                   "frames: 1 written, 0 skipped, 1 failed (9), 1 not rendered\n"));
}

TEST_F(CommandProgress, TheSameMessageIsToldOnceAndCountedAtTheEnd) {
    const auto progress = makeProgress(ProgressMode::None, output());
    RunReporter reporter(4, *progress);
    for (const int frame : {2, 4, 3}) {
        reporter.message(frame, "script error");
    }
    reporter.message(3, "other");
    reporter.finish();
    EXPECT_THAT(error, ElementsAre("frame 2: script error\n", "frame 3: other\n",
                                   "frames 3-4 said what frame 2 said: script error\n",
                                   "frames: 0 written, 0 skipped, 0 failed, 4 not rendered\n"));
}

TEST_F(CommandProgress, NothingIsToldAfterTheEnd) {
    const auto progress = makeProgress(ProgressMode::Lines, output());
    RunReporter reporter(2, *progress);
    reporter.finish();
    error.clear();
    reporter.frameEnded(written(0));
    reporter.message(0, "late");
    reporter.note("late");
    reporter.finish();
    EXPECT_THAT(error, IsEmpty());
    EXPECT_EQ(reporter.status(), ExitStatus::FrameFailed);
}

TEST(CommandDuration, IsWrittenAsAClock) {
    EXPECT_EQ(durationInWords(0), "0:00");
    EXPECT_EQ(durationInWords(6.2), "0:07");
    EXPECT_EQ(durationInWords(754), "12:34");
    EXPECT_EQ(durationInWords(3723), "1:02:03");
}

}  // namespace
}  // namespace TessavoyHost
