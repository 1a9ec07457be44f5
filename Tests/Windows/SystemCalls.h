#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace Tessavoy {

/// Writes down what a loaded module asks of Windows to make and drop its OpenGL contexts, one line a call, and passes
/// it on. Windows and contexts are named by the order in which they came: "window 0", "context 1". One at a time; the
/// module must be unloaded before it ends, as its imports stay as they are.
class SystemCalls {
public:
    /// module: what LoadLibrary gave.
    explicit SystemCalls(void* module);
    ~SystemCalls();

    SystemCalls(const SystemCalls&) = delete;
    SystemCalls& operator=(const SystemCalls&) = delete;

    /// What was asked since the last call of this.
    std::vector<std::string> take();

    /// How many of all lines so far begin so.
    int countOf(const std::string& start) const;

    /// From now on the driver names only this in its list of extensions; empty: what it has.
    void pretendExtensions(const std::string& extensions);

    /// The next call of this function, of those that make a context, is noted and refused.
    void refuseOnce(const std::string& function);

private:
    friend struct Recorder;

    void note(const std::string& line);
    bool refuses(const std::string& function);

    mutable std::mutex mMutex;
    std::vector<std::string> mNew;
    std::vector<std::string> mAll;
    std::vector<void*> mWindows;
    std::vector<void*> mContexts;
    std::string mExtensions;
    std::string mRefused;
};

}  // namespace Tessavoy
