#include "Host/SignalStack.h"

#include "Host/Windows/WindowsHeader.h"
#include "Host/WineContexts.h"

namespace TessavoyHost {
namespace {

constexpr ULONG roomForHandlers = 64UL << 10;
constexpr ULONG pageBytes = 4096;

// Windows lets a stack grow page by page, and stops above what is to be kept back. Wine has the whole stack ready with
// the guard at its very end, where nothing is left; one that stands higher is taken for the edge of a growing stack.
void guardAboveRoom() {
    ULONG_PTR lowest = 0;
    ULONG_PTR highest = 0;
    GetCurrentThreadStackLimits(&lowest, &highest);
    DWORD before = 0;
    VirtualProtect(reinterpret_cast<void*>(lowest + pageBytes + roomForHandlers), pageBytes,
                   PAGE_READWRITE | PAGE_GUARD, &before);
}

}  // namespace

// The handler runs on the stack that overflowed; the system keeps that much of it back.
void useSignalStack() noexcept {
    ULONG bytes = roomForHandlers;
    SetThreadStackGuarantee(&bytes);
    if (runsUnderWine()) {
        guardAboveRoom();
    }
}

}  // namespace TessavoyHost
