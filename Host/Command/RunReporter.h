#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "Host/Command/Progress.h"
#include "Host/Command/RunTally.h"

namespace TessavoyHost {

// Counts and tells what becomes of the frames. May be called from several threads at once. Once finished it tells no
// more.
class RunReporter {
public:
    // The progress must outlive the reporter.
    RunReporter(int totalFrames, Progress& progress) : mTally(totalFrames), mProgress(progress) {}

    // A frame ends once; what is said of its end later is ignored.
    void frameEnded(const FrameReport& report);
    // What the effect said during a frame. A text that came before is told once more only at the end, with all its
    // frames; so is a failure of the script, though its text differs from frame to frame.
    void message(int frame, const std::string& text);
    // About the run as a whole.
    void note(const std::string& line);
    // The last line: the summary. Later calls do nothing.
    void finish();

    ExitStatus status() const;

private:
    std::vector<std::string> repetitions() const;

    mutable std::mutex mMutex;
    RunTally mTally;
    Progress& mProgress;
    std::vector<std::string> mTexts;                  // in the order in which they came
    std::map<std::string, std::vector<int>> mFrames;  // that gave a text
    std::vector<int> mScriptFailures;                 // frames in which the script failed
    std::set<int> mEnded;
    bool mFinished = false;
};

}  // namespace TessavoyHost
