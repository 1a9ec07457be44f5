#include "Host/Command/LoadedModule.h"

#include "Host/HostError.h"
#include "Host/ParameterIds.h"

namespace TessavoyHost {
namespace {

std::filesystem::path existingModule(const std::filesystem::path& path) {
    const auto module = path.empty() ? moduleBesideCommand() : path;
    std::error_code ignored;
    if (!std::filesystem::exists(module, ignored)) {
        throw HostError(ExitStatus::Module, module.string() + ": there is no such module; name one with --module");
    }
    return module;
}

}  // namespace

std::filesystem::path moduleBesideCommand() {
    std::error_code ignored;
    const auto command = std::filesystem::read_symlink("/proc/self/exe", ignored);
    return command.parent_path() / "Tessavoy.so";
}

LoadedModule::LoadedModule(const std::filesystem::path& path)
    : mPath(existingModule(path)),
      mHost(std::filesystem::absolute(mPath)),
      mTable(mHost.parameters(), parameterIds()),
      mSetUpOutput(mStray.take()) {}

}  // namespace TessavoyHost
