#include "Host/Command/Arguments.h"

#include <memory>

#include "Host/Windows/WindowsHeader.h"

#include <shellapi.h>

namespace TessavoyHost {
namespace {

std::string utf8Of(const wchar_t* text) {
    const int room = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);  // its end included
    std::string result(static_cast<std::size_t>(room), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, result.data(), room, nullptr, nullptr);
    result.pop_back();
    return result;
}

}  // namespace

std::vector<std::string> programArguments(int, const char* const*) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> wide(CommandLineToArgvW(GetCommandLineW(), &count),
                                                               LocalFree);
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) {
        arguments.push_back(utf8Of(wide.get()[i]));
    }
    return arguments;
}

}  // namespace TessavoyHost
