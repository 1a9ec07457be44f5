#pragma once

#include <filesystem>

#include "HostInterface/Effect.h"

namespace TessavoyHost {

// The two exports of an effect module. The name of the first comes out of the second.
struct ModuleEntryPoints {
    PF_PluginDataEntryFunction* describe = nullptr;
    PF_EffectMain* effectMain = nullptr;
};

// A loaded module file; unloads it at the end.
class ModuleLoader {
public:
    // Throws HostError(Module) with the system's reason.
    explicit ModuleLoader(const std::filesystem::path& path);
    ~ModuleLoader();

    ModuleLoader(const ModuleLoader&) = delete;
    ModuleLoader& operator=(const ModuleLoader&) = delete;

    // The address of an exported function. Throws HostError(Module) naming it when it is missing.
    template <class Function>
    Function* function(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    // What the system's loading gave.
    void* get() const { return mLibrary; }

private:
    using Address = void (*)();
    Address address(const char* name) const;

    std::filesystem::path mPath;
    void* mLibrary = nullptr;
};

}  // namespace TessavoyHost
