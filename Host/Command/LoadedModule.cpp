#include "Host/Command/LoadedModule.h"

#include "Host/Command/StandardError.h"
#include "Host/HostError.h"
#include "Host/ParameterIds.h"
#include "Host/Scene/Files.h"
#include "Host/WineContexts.h"

namespace TessavoyHost {
namespace {

std::filesystem::path existingModule(const std::filesystem::path& path) {
    const auto module = path.empty() ? moduleBesideCommand() : path;
    std::error_code ignored;
    if (!std::filesystem::exists(module, ignored)) {
        throw HostError(ExitStatus::Module, utf8(module) + ": there is no such module; name one with --module");
    }
    return module;
}

// Says so, as frames then don't tell how the module's own order of calls does on Windows.
HostOptions optionsForSystem() {
    HostOptions options;
    options.contextsForWine = runsUnderWine();
    if (options.contextsForWine) {
        writeStandardError("tessavoy: under Wine, OpenGL contexts share from their creation\n");
    }
    return options;
}

}  // namespace

LoadedModule::LoadedModule(const std::filesystem::path& path)
    : mPath(existingModule(path)),
      mHost(std::filesystem::absolute(mPath), optionsForSystem()),
      mTable(mHost.parameters(), parameterIds()),
      mSetUpOutput(mStray.take()) {}

}  // namespace TessavoyHost
