#pragma once

#include <string>
#include <vector>

#include "Host/HostError.h"

namespace TessavoyHost {

enum class FrameStatus { Written, Skipped, Failed };

// How one frame ended.
struct FrameReport {
    int frame = 0;
    FrameStatus status = FrameStatus::Written;
    std::string file;    // where it is; empty for standard output
    std::string reason;  // why it failed
    double seconds = 0;  // that it took to render
};

// What became of the frames of a run so far.
class RunTally {
public:
    explicit RunTally(int total) : mTotal(total) {}
    void add(const FrameReport& report);

    int total() const { return mTotal; }
    int written() const { return mWritten; }
    int skipped() const { return mSkipped; }
    const std::vector<int>& failed() const { return mFailed; }
    int done() const { return mWritten + mSkipped + static_cast<int>(mFailed.size()); }
    int rendered() const { return done() - mSkipped; }

    // Success when every frame was written or skipped.
    ExitStatus status() const;
    // "frames: 97 written, 0 skipped, 3 failed (7, 12-13)", and ", 5 not rendered" if so.
    std::string summary() const;

private:
    int mTotal;
    int mWritten = 0, mSkipped = 0;
    std::vector<int> mFailed;
};

}  // namespace TessavoyHost
