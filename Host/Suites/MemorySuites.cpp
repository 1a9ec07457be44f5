#include <cstring>

#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

void breaksPromise(const std::string& text) {
    if (CommandContext* context = CommandContext::current())
        context->breaks(text);
}

// Handles and memory handles are the same memory under two kinds of loan.
struct Kind {
    Loan memory;
    Loan lock;
    std::string_view name;
};

constexpr Kind handleKind = {Loan::Handle, Loan::HandleLock, ""};
constexpr Kind memoryKind = {Loan::MemoryHandle, Loan::MemoryLock, ""};

// What was lent during the command or before it.
bool giveBack(HostServices& services, Loan loan, PF_Handle handle) {
    const Ledger::Key key = Ledger::keyOf(handle);
    return ledgerOfCaller(services).giveBack(loan, key) || services.ledger.giveBack(loan, key);
}

PF_Handle make(HostServices& services, const Kind& kind, std::size_t size, std::string_view name) {
    const PF_Handle handle = services.handles.make(size);
    ledgerOfCaller(services).lend(kind.memory, Ledger::keyOf(handle), name, static_cast<std::int64_t>(size));
    return handle;
}

void* lock(HostServices& services, const Kind& kind, PF_Handle handle) {
    void* block = services.handles.lock(handle);
    if (block == nullptr)
        breaksPromise("a handle was locked that is not alive");
    else
        ledgerOfCaller(services).lend(kind.lock, Ledger::keyOf(handle), kind.name,
                                      static_cast<std::int64_t>(services.handles.size(handle)));
    return block;
}

bool unlock(HostServices& services, const Kind& kind, PF_Handle handle) {
    if (!services.handles.unlock(handle)) {
        breaksPromise("a handle was unlocked that is not locked");
        return false;
    }
    giveBack(services, kind.lock, handle);
    return true;
}

bool dispose(HostServices& services, const Kind& kind, PF_Handle handle) {
    if (!services.handles.alive(handle)) {
        breaksPromise("a handle was disposed of that is not alive");
        return false;
    }
    if (services.handles.locks(handle) > 0)
        breaksPromise("a handle was disposed of while it was locked");
    while (giveBack(services, kind.lock, handle)) {
    }
    giveBack(services, kind.memory, handle);
    return services.handles.dispose(handle);
}

PF_Handle newHandle(A_HandleSize size) noexcept {
    constexpr const char* name = "host_new_handle";
    return valueOr(name, PF_Handle{nullptr}, [&](HostServices& services) {
        require(services.faults.answerOf(name) == PF_Err_NONE);
        return make(services, handleKind, size, {});
    });
}

void* lockHandle(PF_Handle handle) noexcept {
    constexpr const char* name = "host_lock_handle";
    return valueOr(name, static_cast<void*>(nullptr), [&](HostServices& services) {
        require(services.faults.answerOf(name) == PF_Err_NONE);
        return lock(services, handleKind, handle);
    });
}

void unlockHandle(PF_Handle handle) noexcept {
    valueOr("host_unlock_handle", false, [&](HostServices& services) { return unlock(services, handleKind, handle); });
}

void disposeHandle(PF_Handle handle) noexcept {
    valueOr("host_dispose_handle", false,
            [&](HostServices& services) { return dispose(services, handleKind, handle); });
}

A_HandleSize handleSize(PF_Handle handle) noexcept {
    return valueOr("host_get_handle_size", A_HandleSize{0},
                   [&](const HostServices& services) { return services.handles.size(handle); });
}

PF_Err resizeHandle(A_HandleSize size, PF_Handle* handle) noexcept {
    return answer("host_resize_handle", [&](CommandContext& context) {
        require(handle != nullptr && context.services.handles.resize(*handle, size));
    });
}

PF_Handle asHandle(AEGP_MemHandle memory) {
    return reinterpret_cast<PF_Handle>(memory);
}

A_Err newMemory(AEGP_PluginID, const A_char*, AEGP_MemSize size, AEGP_MemFlag flags, AEGP_MemHandle* memory) noexcept {
    return answer("AEGP_NewMemHandle", [&](CommandContext& context) {
        require(memory != nullptr);
        const PF_Handle handle = make(context.services, memoryKind, size, {});
        if ((flags & AEGP_MemFlag_CLEAR) != 0)
            std::memset(*handle, 0, size);
        *memory = reinterpret_cast<AEGP_MemHandle>(handle);
    });
}

A_Err freeMemory(AEGP_MemHandle memory) noexcept {
    return takeBack("AEGP_FreeMemHandle",
                    [&](CommandContext& context) { require(dispose(context.services, memoryKind, asHandle(memory))); });
}

A_Err lockMemory(AEGP_MemHandle memory, void** address) noexcept {
    return answer("AEGP_LockMemHandle", [&](CommandContext& context) {
        require(address != nullptr);
        *address = lock(context.services, memoryKind, asHandle(memory));
        require(*address != nullptr);
    });
}

A_Err unlockMemory(AEGP_MemHandle memory) noexcept {
    return takeBack("AEGP_UnlockMemHandle",
                    [&](CommandContext& context) { require(unlock(context.services, memoryKind, asHandle(memory))); });
}

A_Err memorySize(AEGP_MemHandle memory, AEGP_MemSize* size) noexcept {
    return answer("AEGP_GetMemHandleSize", [&](CommandContext& context) {
        require(size != nullptr && context.services.handles.alive(asHandle(memory)));
        *size = static_cast<AEGP_MemSize>(context.services.handles.size(asHandle(memory)));
    });
}

A_Err resizeMemory(const A_char*, AEGP_MemSize size, AEGP_MemHandle memory) noexcept {
    return answer("AEGP_ResizeMemHandle",
                  [&](CommandContext& context) { require(context.services.handles.resize(asHandle(memory), size)); });
}

}  // namespace

const PF_HandleSuite1 handleSuite = {
    .host_new_handle = newHandle,
    .host_lock_handle = lockHandle,
    .host_unlock_handle = unlockHandle,
    .host_dispose_handle = disposeHandle,
    .host_get_handle_size = handleSize,
    .host_resize_handle = resizeHandle,
};

const AEGP_MemorySuite1 memorySuite = {
    .AEGP_NewMemHandle = newMemory,
    .AEGP_FreeMemHandle = freeMemory,
    .AEGP_LockMemHandle = lockMemory,
    .AEGP_UnlockMemHandle = unlockMemory,
    .AEGP_GetMemHandleSize = memorySize,
    .AEGP_ResizeMemHandle = resizeMemory,
    .reserved0 = {},
};

}  // namespace TessavoyHost
