#include "Host/Command/RunReporter.h"

#include "Host/Command/FrameList.h"
#include "Host/Command/ScriptMessages.h"

namespace TessavoyHost {

void RunReporter::frameEnded(const FrameReport& report) {
    const std::lock_guard lock(mMutex);
    if (mFinished || !mEnded.insert(report.frame).second) {
        return;
    }
    mTally.add(report);
    if (report.status == FrameStatus::Failed) {
        mProgress.message("frame " + std::to_string(report.frame) + ": failed: " + report.reason, report.frame);
    }
    mProgress.frame(report, mTally);
}

void RunReporter::message(int frame, const std::string& text) {
    const std::lock_guard lock(mMutex);
    if (mFinished) {
        return;
    }
    const bool isOfScript = isScriptFailure(text);
    auto& frames = isOfScript ? mScriptFailures : mFrames[text];
    frames.push_back(frame);
    if (frames.size() == 1) {
        if (!isOfScript) {
            mTexts.push_back(text);
        }
        mProgress.message("frame " + std::to_string(frame) + ": " + text, frame);
    }
}

void RunReporter::note(const std::string& line) {
    const std::lock_guard lock(mMutex);
    if (!mFinished) {
        mProgress.message(line, -1);
    }
}

void RunReporter::finish() {
    const std::lock_guard lock(mMutex);
    if (mFinished) {
        return;
    }
    mFinished = true;
    auto lines = repetitions();
    lines.push_back(mTally.summary());
    mProgress.end(mTally, lines);
}

std::vector<std::string> RunReporter::repetitions() const {
    std::vector<std::string> lines;
    for (const auto& text : mTexts) {
        const auto& frames = mFrames.at(text);
        if (frames.size() > 1) {
            const std::vector<int> later(frames.begin() + 1, frames.end());
            lines.push_back("frames " + framesInWords(later) + " said what frame " + std::to_string(frames.front()) +
                            " said: " + text);
        }
    }
    if (!mScriptFailures.empty()) {
        lines.push_back("the script failed in frame" + std::string(mScriptFailures.size() > 1 ? "s " : " ") +
                        framesInWords(mScriptFailures) +
                        "; frames rendered after that may lack it (--strict makes frames fail instead)");
    }
    return lines;
}

ExitStatus RunReporter::status() const {
    const std::lock_guard lock(mMutex);
    return mTally.status();
}

}  // namespace TessavoyHost
