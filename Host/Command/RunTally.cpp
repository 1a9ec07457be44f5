#include "Host/Command/RunTally.h"

#include "Host/Command/FrameList.h"

namespace TessavoyHost {

void RunTally::add(const FrameReport& report) {
    switch (report.status) {
        case FrameStatus::Written:
            ++mWritten;
            break;
        case FrameStatus::Skipped:
            ++mSkipped;
            break;
        case FrameStatus::Failed:
            mFailed.push_back(report.frame);
            break;
    }
}

ExitStatus RunTally::status() const {
    return mWritten + mSkipped == mTotal ? ExitStatus::Success : ExitStatus::FrameFailed;
}

std::string RunTally::summary() const {
    std::string text = "frames: " + std::to_string(mWritten) + " written, " + std::to_string(mSkipped) + " skipped, " +
                       std::to_string(mFailed.size()) + " failed";
    if (!mFailed.empty()) {
        text += " (" + framesInWords(mFailed) + ")";
    }
    if (done() < mTotal) {
        text += ", " + std::to_string(mTotal - done()) + " not rendered";
    }
    return text;
}

}  // namespace TessavoyHost
