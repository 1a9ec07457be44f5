#pragma once

namespace TessavoyHost {

// While it lives, the signals that ask the command to end (interrupt, terminate, hang-up) are counted instead of ending
// it; and a closed pipe is a write error from then on.
class InterruptionWatch {
public:
    InterruptionWatch();
    ~InterruptionWatch();
    InterruptionWatch(const InterruptionWatch&) = delete;
    InterruptionWatch& operator=(const InterruptionWatch&) = delete;
};

// From then on a closed pipe is a write error instead of a signal.
void letWritesToNobodyFail();

// From then on a write past the limit of a file's size is an error instead of a signal.
void letWritesPastSizeLimitFail();

// Signals so far.
int interruptions();

}  // namespace TessavoyHost
