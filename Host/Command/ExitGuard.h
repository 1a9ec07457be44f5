#pragma once

#include <functional>

#include "Host/HostError.h"

namespace TessavoyHost {

// From then on a crash (of the module, a driver) says that the module could not be set up, and ends the process with
// that status.
void guardSetUp();

// From then on a crash says that a frame crashed, and ends the process with the status of a failed frame.
void guardFrames();

// While it lives, a crash of this thread is the frame's.
class FrameCrashGuard {
public:
    explicit FrameCrashGuard(int frame);
    ~FrameCrashGuard();
    FrameCrashGuard(const FrameCrashGuard&) = delete;
    FrameCrashGuard& operator=(const FrameCrashGuard&) = delete;
};

// Runs the action, tells its failure on standard error, and gives the exit status. From then on only tearing down is
// left: should the module or a driver crash while it is taken down, the process says so and still ends with the status.
ExitStatus decideStatus(const std::function<ExitStatus()>& action);

// The same without the promise about what follows.
ExitStatus statusOf(const std::function<ExitStatus()>& action);

}  // namespace TessavoyHost
