#include "Host/Command/ExitGuard.h"

#include <unistd.h>

#include <csignal>
#include <exception>
#include <string_view>

#include "Host/Command/StandardError.h"

namespace TessavoyHost {
namespace {

volatile std::sig_atomic_t decidedStatus = 0;

extern "C" void endWithDecidedStatus(int) {
    constexpr std::string_view text = "tessavoy: the module crashed while it was taken down; the result stands\n";
    [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
    ::_exit(decidedStatus);
}

void tell(const std::exception& error) {
    writeStandardError("tessavoy: " + std::string(error.what()) + '\n');
}

}  // namespace

ExitStatus decideStatus(const std::function<ExitStatus()>& action) {
    const ExitStatus status = statusOf(action);
    decidedStatus = static_cast<int>(status);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        std::signal(signal, endWithDecidedStatus);
    }
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
