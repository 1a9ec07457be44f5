#pragma once

namespace TessavoyHost {

// Puts another function in the place of one that a loaded module imports: in the table of that module alone, nothing
// else of the process is touched. library: as in "opengl32.dll", in any case of letters. Gives the function that stood
// there; null where the module imports no such function, and nothing is changed then. module: what LoadLibrary gave.
void* replaceImport(void* module, const char* library, const char* function, void* replacement);

}  // namespace TessavoyHost
