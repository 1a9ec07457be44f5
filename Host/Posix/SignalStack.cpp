#include "Host/SignalStack.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <new>

namespace TessavoyHost {
namespace {

// Saved registers of wide vector units are part of what a handler needs; the system says how much.
std::size_t roomForHandlers() {
    constexpr long ownNeed = 32L << 10;
    return static_cast<std::size_t>(std::max(::sysconf(_SC_MINSIGSTKSZ), 0L) + ownNeed);
}

// Puts back what was there before: checking tools have such stacks, too.
class SignalStack {
public:
    SignalStack() noexcept : mMemory(new (std::nothrow) std::byte[roomForHandlers()]) {
        stack_t stack{};
        stack.ss_sp = mMemory.get();
        stack.ss_size = roomForHandlers();
        mUsed = mMemory != nullptr && ::sigaltstack(&stack, &mBefore) == 0;
    }
    ~SignalStack() {
        if (mUsed)
            ::sigaltstack(&mBefore, nullptr);
    }
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;

private:
    std::unique_ptr<std::byte[]> mMemory;
    stack_t mBefore{};
    bool mUsed;
};

}  // namespace

void useSignalStack() noexcept {
    [[maybe_unused]] thread_local const SignalStack stack;
}

}  // namespace TessavoyHost
