#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <thread>

namespace TessavoyHost {

// The command's own standard output. A module prints to descriptor 1 when it pleases (a driver's description, a
// script's print), so the command keeps a copy of the descriptor for itself and points 1 at standard error. Make one at
// the start of the program, before anything opens files. Descriptors 0 to 2 that are closed are opened on the null
// device first, so that no file lands there.
class OutputChannel {
public:
    OutputChannel();
    ~OutputChannel();
    OutputChannel(const OutputChannel&) = delete;
    OutputChannel& operator=(const OutputChannel&) = delete;

    // Writes all bytes at once, past any buffer. Throws HostError(FrameFailed) when nobody reads any more, or when the
    // command was started without a standard output.
    void write(std::string_view bytes);
    bool isTerminal() const;

private:
    int mDescriptor;  // -1: there was none
};

// Catches what is printed to descriptor 1 until it is taken. What nobody takes is printed after all at the end.
class StrayOutput {
public:
    StrayOutput();
    ~StrayOutput();
    StrayOutput(const StrayOutput&) = delete;
    StrayOutput& operator=(const StrayOutput&) = delete;

    // Ends the catch and gives what was printed.
    std::string take();

private:
    void restore();

    int mBefore;  // where descriptor 1 pointed; -1 once restored
    int mCaught;  // a nameless file; -1 once taken
};

// Hands each line that is printed to descriptor 1 to a function, on a thread of its own. Descriptor 1 stays away from
// where it pointed: what is printed after the end is dropped.
class StrayLines {
public:
    // The function may not print to descriptor 1. Throws HostError(FrameFailed) where the system has no pipe.
    explicit StrayLines(std::function<void(const std::string&)> take);
    ~StrayLines();
    StrayLines(const StrayLines&) = delete;
    StrayLines& operator=(const StrayLines&) = delete;

    // Returns when all that was printed so far has been handed over. Later calls do nothing.
    void end();

private:
    void read();

    std::function<void(const std::string&)> mTake;
    int mRead = -1;
    std::thread mThread;
};

}  // namespace TessavoyHost
