#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

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
    // For those who write by themselves; -1 without a standard output.
    int descriptor() const { return mDescriptor; }

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
    int mCaught;  // a file without a name; -1 once taken
};

// Hands each line that is printed to some descriptors to a function, on a thread of its own. The descriptors stay away
// from where they pointed: what is printed after the end is dropped. One at a time.
class StrayLines {
public:
    // The function may not print to the descriptors. Throws HostError(FrameFailed) where the system has no pipe.
    StrayLines(std::vector<int> descriptors, std::function<void(const std::string&)> take);
    ~StrayLines();
    StrayLines(const StrayLines&) = delete;
    StrayLines& operator=(const StrayLines&) = delete;

    // Returns when all that was printed so far has been handed over. Later calls do nothing.
    void end();

    // For a signal handler that ends the process: does the same for the one that lives, if any, but waits for a second
    // at most, as its thread may need what the thread that crashed holds.
    static void endInHandler() noexcept;

private:
    void read();
    void dropWhatFollows() const noexcept;

    const std::vector<int> mDescriptors;
    const std::function<void(const std::string&)> mTake;
    int mRead = -1;
    std::atomic<bool> mEnded = false;
    std::thread mThread;
};

}  // namespace TessavoyHost
