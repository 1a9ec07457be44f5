#include "Host/Command/LoadedModule.h"
#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {

// A name that doesn't fit is cut; then its length is the room's.
std::filesystem::path moduleBesideCommand() {
    std::wstring command(MAX_PATH, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(nullptr, command.data(), static_cast<DWORD>(command.size()))) ==
           command.size()) {
        command.resize(2 * command.size());
    }
    command.resize(length);
    return std::filesystem::path(command).parent_path() / "Tessavoy.aex";
}

}  // namespace TessavoyHost
