#include "Host/WineContexts.h"

#include <atomic>
#include <cstring>

#include "Host/Windows/ImportTable.h"
#include "Host/Windows/WindowsHeader.h"

// A module for Windows may make a context current and let it share the objects of another one afterwards, by
// wglShareLists: drivers for Windows accept that as long as the context has no objects of its own. Wine makes the
// sharing context anew in that call and refuses one that has been current before, for good.
//
// So two functions that the module imports are replaced in its table of imports, and nothing else of the process is
// touched. The module asks for wglCreateContextAttribsARB while its first context is current, and gets a function that
// makes each further context share with that one from its creation; wglShareLists then only has to agree.

namespace TessavoyHost {
namespace {

using CreateContextAttribs = HGLRC(WINAPI*)(HDC, HGLRC, const int*);

std::atomic<CreateContextAttribs> createByWine = nullptr;
std::atomic<HGLRC> firstContext = nullptr;

HGLRC WINAPI createSharing(HDC device, HGLRC share, const int* attributes) {
    return createByWine.load()(device, share != nullptr ? share : firstContext.load(), attributes);
}

PROC WINAPI findEntryPoint(LPCSTR name) {
    const PROC found = wglGetProcAddress(name);
    if (found == nullptr || std::strcmp(name, "wglCreateContextAttribsARB") != 0) {
        return found;
    }
    createByWine = reinterpret_cast<CreateContextAttribs>(reinterpret_cast<void*>(found));
    firstContext = wglGetCurrentContext();
    return reinterpret_cast<PROC>(reinterpret_cast<void*>(createSharing));
}

// Others than with the first context go to Wine, for its own answer.
BOOL WINAPI shareLists(HGLRC with, HGLRC context) {
    return with == firstContext.load() ? TRUE : wglShareLists(with, context);
}

}  // namespace

bool runsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void shareContextsAtCreation(void* module) {
    replaceImport(module, "opengl32.dll", "wglGetProcAddress", reinterpret_cast<void*>(findEntryPoint));
    replaceImport(module, "opengl32.dll", "wglShareLists", reinterpret_cast<void*>(shareLists));
}

}  // namespace TessavoyHost
