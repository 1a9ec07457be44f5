#include "Host/Command/LoadedModule.h"

namespace TessavoyHost {

std::filesystem::path moduleBesideCommand() {
    std::error_code ignored;
    const auto command = std::filesystem::read_symlink("/proc/self/exe", ignored);
    return command.parent_path() / "Tessavoy.so";
}

}  // namespace TessavoyHost
