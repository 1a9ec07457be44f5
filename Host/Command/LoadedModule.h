#pragma once

#include <filesystem>
#include <string>

#include "Host/Command/OutputChannel.h"
#include "Host/EffectHost.h"
#include "Host/Scene/ParameterTable.h"

namespace TessavoyHost {

// The module file beside the running command.
std::filesystem::path moduleBesideCommand();

// The effect module with its parameters under their ids.
class LoadedModule {
public:
    // An empty path stands for the module beside the command. Throws HostError(Module).
    explicit LoadedModule(const std::filesystem::path& path);

    EffectHost& host() { return mHost; }
    const ParameterTable& table() const { return mTable; }
    const std::filesystem::path& path() const { return mPath; }
    // What was printed while the module was set up: the description of its OpenGL context.
    const std::string& setUpOutput() const { return mSetUpOutput; }

private:
    std::filesystem::path mPath;
    StrayOutput mStray;  // while the module is set up
    EffectHost mHost;
    ParameterTable mTable;
    std::string mSetUpOutput;
};

}  // namespace TessavoyHost
