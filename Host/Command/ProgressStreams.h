#pragma once

#include <memory>
#include <optional>

#include "Host/Command/OutputChannel.h"
#include "Host/Command/Progress.h"
#include "Host/Command/RenderOptions.h"

namespace TessavoyHost {

// Where a render tells how it goes, and where failures and crashes of the command are told from now on to the end of
// the process. Objects on standard error are to be parsed, so nothing else may stand between them: while this lives,
// what the module, a driver or the C library prints becomes objects, too, and afterwards it is dropped.
class ProgressStreams {
public:
    // framesOnOutput: standard output is taken by raw frames. The channel must outlive this. Throws
    // HostError(FrameFailed) where the system gives no descriptors.
    ProgressStreams(ProgressMode mode, bool framesOnOutput, const OutputChannel& output);

    // Shows progress here as the mode says.
    std::unique_ptr<Progress> makeProgress() const;

    // Returns when all that was printed so far has been told; what is printed later is dropped.
    void settle();

private:
    void sendObjectsTo(int descriptor);

    ProgressMode mMode;
    ProgressOutput mOutput;
    std::optional<StrayLines> mStrayLines;
};

}  // namespace TessavoyHost
