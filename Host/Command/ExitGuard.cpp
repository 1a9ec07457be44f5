#include "Host/Command/ExitGuard.h"

#include <unistd.h>

#include <array>
#include <charconv>
#include <csignal>
#include <exception>
#include <string_view>

#include "Host/Command/StandardError.h"

namespace TessavoyHost {
namespace {

enum Stage : int { SettingUp, Frames, TakingDown };

// What a crash means now. A handler reads both, so nothing here may need more than a plain load.
volatile std::sig_atomic_t stage = SettingUp;
volatile std::sig_atomic_t statusOfCrash = static_cast<int>(ExitStatus::Module);
thread_local volatile int frameInWork = -1;  // of this thread

void writeInHandler(std::string_view text) {
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

// Only what a handler may do.
void writeFrameCrashed(int frame) {
    if (frame < 0) {
        writeInHandler("tessavoy: a frame crashed\n");
        return;
    }
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), frame).ptr;
    writeInHandler("tessavoy: frame ");
    writeInHandler({digits.data(), static_cast<std::size_t>(end - digits.data())});
    writeInHandler(" crashed\n");
}

extern "C" void endAfterCrash(int) {
    switch (stage) {
        case SettingUp:
            writeInHandler("tessavoy: the module crashed while being set up\n");
            break;
        case Frames:
            writeFrameCrashed(frameInWork);
            break;
        default:
            writeInHandler("tessavoy: the module crashed while it was taken down; the result stands\n");
    }
    ::_exit(statusOfCrash);
}

void enter(Stage next, ExitStatus status) {
    statusOfCrash = static_cast<int>(status);
    stage = next;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        std::signal(signal, endAfterCrash);
    }
}

void tell(const std::exception& error) {
    writeStandardError("tessavoy: " + std::string(error.what()) + '\n');
}

}  // namespace

void guardSetUp() {
    enter(SettingUp, ExitStatus::Module);
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
        tell(error);
        return error.status();
    } catch (const std::exception& error) {
        tell(error);
        return ExitStatus::FrameFailed;
    }
}

}  // namespace TessavoyHost
