#include "Host/Command/ExitGuard.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <string_view>

#include "Host/Command/Crashes.h"
#include "Host/Command/Descriptors.h"
#include "Host/Command/Outlets.h"
#include "Host/Command/OutputChannel.h"
#include "Host/SignalStack.h"

namespace TessavoyHost {
namespace {

enum Stage : int { SettingUp, AtWork, Frames, TakingDown, Leaving };

// What a crash means now. A handler reads both, so nothing here may need more than a plain load.
volatile std::sig_atomic_t stage = SettingUp;
volatile std::sig_atomic_t statusOfCrash = static_cast<int>(ExitStatus::Module);
thread_local volatile int frameInWork = -1;  // of this thread

// A short text put together without memory, as a handler must.
class FixedText {
public:
    void add(std::string_view part) {
        const std::size_t count = std::min(part.size(), mLetters.size() - mLength);
        std::copy_n(part.begin(), count, mLetters.begin() + static_cast<std::ptrdiff_t>(mLength));
        mLength += count;
    }
    void add(int number) {
        std::array<char, 16> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        add(std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data())));
    }
    std::string_view text() const { return {mLetters.data(), mLength}; }

private:
    std::array<char, 256> mLetters{};
    std::size_t mLength = 0;
};

// The frame that crashed, or -1.
int crashedFrame() {
    return stage == Frames ? frameInWork : -1;
}

// Nothing here is written in another way in JSON. what: "crashed".
FixedText endInWords(std::string_view what) {
    FixedText words;
    if (crashedFrame() >= 0) {
        words.add("frame ");
        words.add(crashedFrame());
        words.add(" ");
    } else {
        words.add(stage == Frames ? "a frame " : "the module ");
    }
    words.add(what);
    if (stage == SettingUp) {
        words.add(" while being set up");
    } else if (stage == TakingDown) {
        words.add(" while it was taken down; the result stands");
    }
    return words;
}

void tellInWords(int descriptor, std::string_view words) {
    FixedText line;
    line.add("tessavoy: ");
    line.add(words);
    line.add("\n");
    writeAll(descriptor, line.text());
}

void tellAsObject(int descriptor, std::string_view words) {
    FixedText line;
    line.add(R"({"event":"crash",)");
    if (crashedFrame() >= 0) {
        line.add(R"("frame":)");
        line.add(crashedFrame());
        line.add(",");
    }
    line.add(R"("text":")");
    line.add(words);
    line.add("\"}\n");
    writeAll(descriptor, line.text());
}

// A copy of the descriptor, to which nobody else writes: what other threads still have to say goes nowhere, so that
// the crash is the last that is told.
int takenFromOthers(int descriptor) {
    const int copy = copyOfDescriptor(descriptor);
    if (copy == -1) {
        return descriptor;
    }
    silenceDescriptor(descriptor);
    return copy;
}

void tellOfEnd(std::string_view what) {
    StrayLines::endInHandler();  // a failed assertion stands among them
    const FixedText words = endInWords(what);
    const Outlets to = outlets();
    if (to.words != -1) {
        tellInWords(takenFromOthers(to.words), words.text());
    }
    if (to.objects != -1) {
        tellAsObject(takenFromOthers(to.objects), words.text());
    }
}

std::atomic_flag endIsTold;

// Only what a handler may do, here and in what it calls. When several threads crash, one tells.
[[noreturn]] void endAfter(std::string_view what) {
    if (endIsTold.test_and_set()) {
        pauseInHandler(1000);
    } else {
        tellOfEnd(what);
    }
    endAtOnce(statusOfCrash);
}

void endAfterCrash() {
    endAfter("crashed");
}

// The C library's exit calls it, on the thread that called that.
void endAfterExit() {
    if (stage != Leaving) {
        endAfter("ended the process");
    }
}

void enter(Stage next, ExitStatus status) {
    statusOfCrash = static_cast<int>(status);
    stage = next;
    useSignalStack();
    handleCrashes(endAfterCrash);
}

}  // namespace

void guardSetUp() {
    std::atexit(endAfterExit);
    enter(SettingUp, ExitStatus::Module);
}

void guardWork() {
    enter(AtWork, ExitStatus::Module);
}

void allowExit() noexcept {
    stage = Leaving;
}

void guardFrames() {
    enter(Frames, ExitStatus::FrameFailed);
}

FrameCrashGuard::FrameCrashGuard(int frame) {
    frameInWork = frame;
}

FrameCrashGuard::~FrameCrashGuard() {
    frameInWork = -1;
}

ExitStatus decideStatus(const std::function<ExitStatus()>& action) {
    const ExitStatus status = statusOf(action);
    enter(TakingDown, status);
    return status;
}

ExitStatus statusOf(const std::function<ExitStatus()>& action) {
    try {
        return action();
    } catch (const HostError& error) {
        tellFailure(error.what());
        return error.status();
    } catch (const std::exception& error) {
        tellFailure(error.what());
        return ExitStatus::FrameFailed;
    }
}

}  // namespace TessavoyHost
