#include "Host/Command/Crashes.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace TessavoyHost {
namespace {

void (*crashHandler)() = nullptr;

extern "C" void passToHandler(int) {
    crashHandler();
}

}  // namespace

void handleCrashes(void (*handler)()) {
    crashHandler = handler;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) {
        struct sigaction action {};
        action.sa_handler = passToHandler;
        action.sa_flags = SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        ::sigaction(signal, &action, nullptr);
    }
}

void pauseInHandler(int milliseconds) noexcept {
    ::poll(nullptr, 0, milliseconds);
}

void endAtOnce(int status) noexcept {
    ::_exit(status);
}

}  // namespace TessavoyHost
