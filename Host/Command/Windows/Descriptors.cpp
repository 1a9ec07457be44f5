#include "Host/Command/Descriptors.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>

#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {
namespace {

constexpr DWORD standardHandles[] = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};

// A handle that leads nowhere is of no type, and that is an error.
bool isOpen(int standardDescriptor) {
    const HANDLE handle = GetStdHandle(standardHandles[standardDescriptor]);
    if (handle == nullptr || handle == INVALID_HANDLE_VALUE) {
        return false;
    }
    SetLastError(NO_ERROR);
    return GetFileType(handle) != FILE_TYPE_UNKNOWN || GetLastError() == NO_ERROR;
}

// The C library has descriptors 0 to 2 even where the program was started without.
void openOnNullDevice(int descriptor) {
    const int opened = _open("NUL", _O_RDWR | _O_BINARY);
    if (opened != -1 && opened != descriptor) {
        _dup2(opened, descriptor);
        _close(opened);
    }
}

// Puts back at the end what the console took texts for before.
class Utf8Console {
public:
    Utf8Console() : mBefore(GetConsoleOutputCP()) { SetConsoleOutputCP(CP_UTF8); }
    ~Utf8Console() { SetConsoleOutputCP(mBefore); }
    Utf8Console(const Utf8Console&) = delete;
    Utf8Console& operator=(const Utf8Console&) = delete;

private:
    UINT mBefore;
};

// The bar goes back to the start of its line by such a sequence.
void understandEscapeSequences() {
    const HANDLE error = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(error, &mode) != FALSE) {
        SetConsoleMode(error, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    }
}

}  // namespace

bool prepareStandardDescriptors() {
    const bool hadOutput = isOpen(standardOutput);
    for (int descriptor = 0; descriptor <= standardError; ++descriptor) {
        if (!isOpen(descriptor)) {
            openOnNullDevice(descriptor);
        }
        _setmode(descriptor, _O_BINARY);
    }
    [[maybe_unused]] static const Utf8Console console;
    understandEscapeSequences();
    return hadOutput;
}

int copyOfDescriptor(int descriptor) noexcept {
    const int copy = _dup(descriptor);
    if (copy != -1) {
        SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(copy)), HANDLE_FLAG_INHERIT, 0);
        _setmode(copy, _O_BINARY);
    }
    return copy;
}

void pointDescriptor(int descriptor, int where) noexcept {
    _dup2(where, descriptor);
}

void closeDescriptor(int descriptor) noexcept {
    _close(descriptor);
}

int openNullDevice() noexcept {
    return _open("NUL", _O_WRONLY | _O_BINARY | _O_NOINHERIT);
}

// Windows knows no file without a name; this one goes with its last handle.
int openNamelessFile() {
    wchar_t folder[MAX_PATH + 1] = {};
    wchar_t name[MAX_PATH + 1] = {};
    if (GetTempPathW(MAX_PATH + 1, folder) == 0 || GetTempFileNameW(folder, L"tsv", 0, name) == 0) {
        return -1;
    }
    return _wopen(name, _O_RDWR | _O_BINARY | _O_TEMPORARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

void rewindDescriptor(int descriptor) {
    _lseeki64(descriptor, 0, SEEK_SET);
}

bool openPipe(std::array<int, 2>& ends) {
    constexpr unsigned bufferBytes = 64 * 1024;
    return _pipe(ends.data(), bufferBytes, _O_BINARY | _O_NOINHERIT) == 0;
}

std::size_t readSome(int descriptor, char* to, std::size_t count) noexcept {
    const int got = _read(descriptor, to, static_cast<unsigned>(count));
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

// The C library takes a count of 32 bits, and a console takes little at once.
bool writeAll(int descriptor, std::string_view bytes) noexcept {
    constexpr std::size_t most = std::size_t{1} << 20;
    while (!bytes.empty()) {
        const int written = _write(descriptor, bytes.data(), static_cast<unsigned>(std::min(bytes.size(), most)));
        if (written <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

// The C library takes every device for a terminal, the null device too.
bool isTerminal(int descriptor) {
    DWORD mode = 0;
    return GetConsoleMode(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), &mode) != FALSE;
}

}  // namespace TessavoyHost
