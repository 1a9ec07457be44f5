#include "Host/Command/Interruption.h"

#include <atomic>
#include <csignal>

namespace TessavoyHost {
namespace {

std::atomic<int> signalCount = 0;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may touch it");

extern "C" void countSignal(int) {
    signalCount.fetch_add(1, std::memory_order_relaxed);
}

void install(int signal, void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(signal, &action, nullptr);
}

// A shell starts background jobs with signals ignored; they stay so.
void replace(int signal, void (*from)(int), void (*to)(int)) {
    struct sigaction action {};
    ::sigaction(signal, nullptr, &action);
    if (action.sa_handler == from) {
        install(signal, to);
    }
}

constexpr int watchedSignals[] = {SIGINT, SIGTERM, SIGHUP};

}  // namespace

InterruptionWatch::InterruptionWatch() {
    for (const int signal : watchedSignals) {
        replace(signal, SIG_DFL, countSignal);
    }
    letWritesToNobodyFail();
}

InterruptionWatch::~InterruptionWatch() {
    for (const int signal : watchedSignals) {
        replace(signal, countSignal, SIG_DFL);
    }
}

void letWritesToNobodyFail() {
    install(SIGPIPE, SIG_IGN);
}

void letWritesPastSizeLimitFail() {
    install(SIGXFSZ, SIG_IGN);
}

int interruptions() {
    return signalCount.load(std::memory_order_relaxed);
}

}  // namespace TessavoyHost
