#include "Host/Command/Crashes.h"

#include <csignal>
#include <cstdlib>

#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {
namespace {

void (*crashHandler)() = nullptr;

LONG WINAPI passFault(EXCEPTION_POINTERS*) {
    crashHandler();
    return EXCEPTION_EXECUTE_HANDLER;
}

// abort() raises no fault but this signal.
extern "C" void passAbort(int) {
    crashHandler();
}

}  // namespace

// Nobody sits at the machine who could close a window that tells of a crash.
void handleCrashes(void (*handler)()) {
    crashHandler = handler;
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(passFault);
    std::signal(SIGABRT, passAbort);
}

void pauseInHandler(int milliseconds) noexcept {
    Sleep(static_cast<DWORD>(milliseconds));
}

// Not by exit and its kin, which let modules take themselves down under threads that still run.
void endAtOnce(int status) noexcept {
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    std::abort();  // not reached
}

}  // namespace TessavoyHost
