#pragma once

namespace TessavoyHost {

// Whether the program runs under Wine instead of on Windows. Never where it is a program of another system.
bool runsUnderWine();

// For Wine alone: makes a loaded module get OpenGL contexts under which its order of calls works. To be called before
// the module makes its first context. The module is what the system's loading gave.
void shareContextsAtCreation(void* module);

}  // namespace TessavoyHost
