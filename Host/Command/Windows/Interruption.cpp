#include "Host/Command/Interruption.h"

#include <atomic>

#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {
namespace {

std::atomic<int> requestCount = 0;

// Called on a thread of the system's own. Once this returns from a request that ends the session or closes the console,
// the process is ended; so it waits, and the process ends by itself or when the system's patience does.
BOOL WINAPI countRequest(DWORD request) {
    requestCount.fetch_add(1, std::memory_order_relaxed);
    if (request != CTRL_C_EVENT && request != CTRL_BREAK_EVENT) {
        Sleep(INFINITE);
    }
    return TRUE;
}

}  // namespace

InterruptionWatch::InterruptionWatch() {
    SetConsoleCtrlHandler(countRequest, TRUE);
}

InterruptionWatch::~InterruptionWatch() {
    SetConsoleCtrlHandler(countRequest, FALSE);
}

// Such writes are errors on this system anyway.
void letWritesToNobodyFail() {}
void letWritesPastSizeLimitFail() {}

int interruptions() {
    return requestCount.load(std::memory_order_relaxed);
}

}  // namespace TessavoyHost
