#include "Host/ModuleLoader.h"

#include <string>

#include "Host/HostError.h"
#include "Host/Scene/Files.h"

#ifdef _WIN32
#include "Host/Windows/WindowsHeader.h"
#else
#include <dlfcn.h>
#endif

namespace TessavoyHost {
namespace {

HostError loadFailure(const std::filesystem::path& path, const std::string& reason) {
    return {ExitStatus::Module, "the effect module \"" + utf8(path) + "\" cannot be used: " + reason};
}

}  // namespace

#ifdef _WIN32

ModuleLoader::ModuleLoader(const std::filesystem::path& path) : mPath(path) {
    mLibrary = LoadLibraryW(std::filesystem::absolute(path).c_str());
    if (mLibrary == nullptr)
        throw loadFailure(path, "system error " + std::to_string(GetLastError()));
}

ModuleLoader::~ModuleLoader() {
    FreeLibrary(static_cast<HMODULE>(mLibrary));
}

ModuleLoader::Address ModuleLoader::address(const char* name) const {
    const auto found = reinterpret_cast<Address>(GetProcAddress(static_cast<HMODULE>(mLibrary), name));
    if (found == nullptr)
        throw loadFailure(mPath, std::string("it has no function ") + name);
    return found;
}

#else

// A bare file name would be searched in the system's folders.
ModuleLoader::ModuleLoader(const std::filesystem::path& path) : mPath(path) {
    mLibrary = dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (mLibrary == nullptr)
        throw loadFailure(path, dlerror());
}

ModuleLoader::~ModuleLoader() {
    dlclose(mLibrary);
}

ModuleLoader::Address ModuleLoader::address(const char* name) const {
    const auto found = reinterpret_cast<Address>(dlsym(mLibrary, name));
    if (found == nullptr)
        throw loadFailure(mPath, std::string("it has no function ") + name);
    return found;
}

#endif

}  // namespace TessavoyHost
