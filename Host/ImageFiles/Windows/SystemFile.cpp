#include "Host/ImageFiles/SystemFile.h"

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>

#include "Host/Windows/WindowsHeader.h"

namespace TessavoyHost {
namespace {

// Of what a renaming meets.
int errnoOf(DWORD error) {
    switch (error) {
        case ERROR_FILE_NOT_FOUND:
        case ERROR_PATH_NOT_FOUND:
            return ENOENT;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
            return EACCES;
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
            return EBUSY;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
            return ENOSPC;
        case ERROR_FILENAME_EXCED_RANGE:
            return ENAMETOOLONG;
        default:
            return EIO;
    }
}

// The C library takes counts of 31 bits.
unsigned countAtOnce(std::size_t count) {
    constexpr std::size_t most = std::size_t{1} << 30;
    return static_cast<unsigned>(std::min(count, most));
}

std::optional<std::size_t> countOf(int result) {
    return result < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(result));
}

bool seek(int descriptor, std::uint64_t position) {
    return _lseeki64(descriptor, static_cast<std::int64_t>(position), SEEK_SET) != -1;
}

}  // namespace

int makeFile(const std::filesystem::path& path) noexcept {
    return _wopen(path.c_str(), _O_RDWR | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

std::optional<std::size_t> readAt(int descriptor, void* to, std::size_t count, std::uint64_t position) noexcept {
    return seek(descriptor, position) ? countOf(_read(descriptor, to, countAtOnce(count))) : std::nullopt;
}

std::optional<std::size_t> writeAt(int descriptor, const void* from, std::size_t count,
                                   std::uint64_t position) noexcept {
    return seek(descriptor, position) ? countOf(_write(descriptor, from, countAtOnce(count))) : std::nullopt;
}

bool flushToDisk(int descriptor) noexcept {
    return _commit(descriptor) == 0;
}

bool closeFile(int descriptor) noexcept {
    return _close(descriptor) == 0;
}

void removeFile(const std::filesystem::path& path) noexcept {
    _wunlink(path.c_str());
}

bool renameOver(const std::filesystem::path& from, const std::filesystem::path& to) noexcept {
    if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE) {
        return true;
    }
    errno = errnoOf(GetLastError());
    return false;
}

std::string machineName() {
    std::array<char, MAX_COMPUTERNAME_LENGTH + 1> name{};
    DWORD room = static_cast<DWORD>(name.size());
    GetComputerNameA(name.data(), &room);
    return name.data();
}

int ownProcess() noexcept {
    return static_cast<int>(GetCurrentProcessId());
}

// Numbers of processes that have ended can't be opened; those of others may refuse it.
bool isRunning(int process) noexcept {
    const HANDLE handle =
        OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(process));
    if (handle == nullptr) {
        return GetLastError() != ERROR_INVALID_PARAMETER;
    }
    const bool runs = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    return runs;
}

}  // namespace TessavoyHost
