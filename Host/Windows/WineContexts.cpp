#include "Host/WineContexts.h"

#include <atomic>
#include <cstdint>
#include <cstring>
#include <string_view>

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

// A module in memory: its headers, and what they point to by distances from its start.
class LoadedImage {
public:
    explicit LoadedImage(void* module) : mStart(static_cast<std::byte*>(module)) {}

    template <class Record>
    Record* at(std::uintptr_t distance) const {
        return reinterpret_cast<Record*>(mStart + distance);
    }

    IMAGE_IMPORT_DESCRIPTOR* imports() const {
        const auto* headers = at<IMAGE_NT_HEADERS>(static_cast<std::uintptr_t>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
        const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        return place.Size == 0 ? nullptr : at<IMAGE_IMPORT_DESCRIPTOR>(place.VirtualAddress);
    }

private:
    std::byte* mStart;
};

void replaceAddress(IMAGE_THUNK_DATA& entry, void* function) {
    DWORD before = 0;
    if (VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &before) != FALSE) {
        entry.u1.Function = reinterpret_cast<std::uintptr_t>(function);
        VirtualProtect(&entry, sizeof entry, before, &before);
    }
}

void* replacementOf(std::string_view name) {
    if (name == "wglGetProcAddress") {
        return reinterpret_cast<void*>(findEntryPoint);
    }
    return name == "wglShareLists" ? reinterpret_cast<void*>(shareLists) : nullptr;
}

// The names and the addresses of a library's imported functions stand in two tables side by side.
void replaceImportsFrom(const LoadedImage& image, const IMAGE_IMPORT_DESCRIPTOR& library) {
    auto* name = image.at<IMAGE_THUNK_DATA>(library.OriginalFirstThunk);
    auto* address = image.at<IMAGE_THUNK_DATA>(library.FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
            continue;
        }
        const char* text = image.at<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name;
        if (void* function = replacementOf(text)) {
            replaceAddress(*address, function);
        }
    }
}

}  // namespace

bool runsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

void shareContextsAtCreation(void* module) {
    const LoadedImage image(module);
    for (auto* library = image.imports(); library != nullptr && library->Name != 0; ++library) {
        if (_stricmp(image.at<char>(library->Name), "opengl32.dll") == 0) {
            replaceImportsFrom(image, *library);
        }
    }
}

}  // namespace TessavoyHost
