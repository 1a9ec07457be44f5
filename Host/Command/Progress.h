#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Command/RenderOptions.h"
#include "Host/Command/RunTally.h"

namespace TessavoyHost {

using TextSink = std::function<void(const std::string&)>;

// Where progress is shown, and by which clock it reckons.
struct ProgressOutput {
    TextSink error;  // standard error; drops what it is given where objects go there, which are to be parsed
    TextSink json;   // where objects go, one a line
    bool errorIsTerminal = false;
    std::function<double()> seconds;  // that have gone by since some moment
};

// Shows how a run goes. One thread at a time.
class Progress {
public:
    virtual ~Progress() = default;
    // A frame ended; the tally counts it already. Failures are shown by message besides.
    virtual void frame(const FrameReport& report, const RunTally& tally) = 0;
    // A line for standard error, in whole and not through the bar. frame: which it is about, or -1.
    virtual void message(const std::string& line, int frame) = 0;
    // The run is over. The last lines are shown as messages; none comes after them.
    virtual void end(const RunTally& tally, const std::vector<std::string>& lastLines) = 0;
};

// Auto is a bar on a terminal and lines elsewhere.
std::unique_ptr<Progress> makeProgress(ProgressMode mode, const ProgressOutput& output);

// "0:07", "12:34", "1:02:03"; seconds are rounded up.
std::string durationInWords(double seconds);

}  // namespace TessavoyHost
