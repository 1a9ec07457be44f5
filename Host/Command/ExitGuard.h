#pragma once

#include <functional>

#include "Host/HostError.h"

namespace TessavoyHost {

// Crashes (of the module, a driver; an overflown stack is one) are told through the outlets and end the process with a
// status. So does a module, or a script in it, that ends the process itself. A thread that may overflow its stack needs
// useSignalStack(); these functions see to the calling thread.

// To be called once, first. From then on a crash says that the module could not be set up, and has that status.
void guardSetUp();

// From then on a crash says that the module crashed, with the status of one that can't be set up. For work on something
// else than frames.
void guardWork();

// From then on a crash says that a frame crashed, and has the status of a failed frame.
void guardFrames();

// The process may end: from then on that it does is nobody's failure.
void allowExit() noexcept;

// While it lives, a crash of this thread is the frame's.
class FrameCrashGuard {
public:
    explicit FrameCrashGuard(int frame);
    ~FrameCrashGuard();
    FrameCrashGuard(const FrameCrashGuard&) = delete;
    FrameCrashGuard& operator=(const FrameCrashGuard&) = delete;
};

// Runs the action, tells its failure through the outlets, and gives the exit status. From then on only tearing down is
// left: should the module or a driver crash while it is taken down, the process says so and still ends with the status.
ExitStatus decideStatus(const std::function<ExitStatus()>& action);

// The same without the promise about what follows.
ExitStatus statusOf(const std::function<ExitStatus()>& action);

}  // namespace TessavoyHost
