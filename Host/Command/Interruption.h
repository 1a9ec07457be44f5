#pragma once

namespace TessavoyHost {

// While it lives, what asks the command to end (the signals interrupt, terminate and hang-up; on Windows Ctrl+C,
// Ctrl+Break, and the end of the console or the session) is counted instead of ending it; and a closed pipe is a write
// error from then on.
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

// Requests to end so far.
int interruptions();

}  // namespace TessavoyHost
