#pragma once

namespace TessavoyHost {

// What the system tells a process of its own crashes.

// From then on a crash of any thread (a fault, an abort) calls the handler on that thread. The handler does only what
// may be done then, and ends the process.
void handleCrashes(void (*handler)());

// Waits. Crash handlers may call it.
void pauseInHandler(int milliseconds) noexcept;

// Ends the process without taking anything down. Crash handlers may call it.
[[noreturn]] void endAtOnce(int status) noexcept;

}  // namespace TessavoyHost
