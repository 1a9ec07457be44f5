#include "Host/Windows/ImportTable.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {
namespace {

// A module in memory: its headers, and what they point to by distances from its start.
class LoadedImage {
public:
    explicit LoadedImage(void* module) : mStart(static_cast<std::byte*>(module)) {}

    template <class Record>
    Record* at(std::uintptr_t distance) const {
        return reinterpret_cast<Record*>(mStart + distance);
    }

    // Null for a module that imports nothing from the library.
    const IMAGE_IMPORT_DESCRIPTOR* importsFrom(const char* library) const {
        const auto* headers = at<IMAGE_NT_HEADERS>(static_cast<std::uintptr_t>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
        const auto& place = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        if (place.Size == 0) {
            return nullptr;
        }
        const auto* descriptor = at<IMAGE_IMPORT_DESCRIPTOR>(place.VirtualAddress);
        while (descriptor->Name != 0 && _stricmp(at<char>(descriptor->Name), library) != 0) {
            ++descriptor;
        }
        return descriptor->Name == 0 ? nullptr : descriptor;
    }

private:
    std::byte* mStart;
};

void* replaceAddress(IMAGE_THUNK_DATA& entry, void* function) {
    void* before = reinterpret_cast<void*>(entry.u1.Function);
    DWORD protection = 0;
    if (VirtualProtect(&entry, sizeof entry, PAGE_READWRITE, &protection) == FALSE) {
        return nullptr;
    }
    entry.u1.Function = reinterpret_cast<std::uintptr_t>(function);
    VirtualProtect(&entry, sizeof entry, protection, &protection);
    return before;
}

}  // namespace

// The names and the addresses of a library's imported functions stand in two tables side by side.
void* replaceImport(void* module, const char* library, const char* function, void* replacement) {
    const LoadedImage image(module);
    const IMAGE_IMPORT_DESCRIPTOR* imports = image.importsFrom(library);
    if (imports == nullptr) {
        return nullptr;
    }
    auto* name = image.at<IMAGE_THUNK_DATA>(imports->OriginalFirstThunk);
    auto* address = image.at<IMAGE_THUNK_DATA>(imports->FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
        if (!IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) &&
            std::strcmp(image.at<IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData)->Name, function) == 0) {
            return replaceAddress(*address, replacement);
        }
    }
    return nullptr;
}

}  // namespace TessavoyHost
