#include "Host/ImageFiles/SystemFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>

namespace TessavoyHost {

int makeFile(const std::filesystem::path& path) noexcept {
    int descriptor = -1;
    do {
        descriptor = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

std::optional<std::size_t> readAt(int descriptor, void* to, std::size_t count, std::uint64_t position) noexcept {
    const ssize_t got = ::pread(descriptor, to, count, static_cast<off_t>(position));
    return got < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(got));
}

std::optional<std::size_t> writeAt(int descriptor, const void* from, std::size_t count,
                                   std::uint64_t position) noexcept {
    ssize_t written = 0;
    do {
        written = ::pwrite(descriptor, from, count, static_cast<off_t>(position));
    } while (written < 0 && errno == EINTR);
    return written < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(written));
}

// Some network and pipe file systems have no flushing (EINVAL); what they hold is as safe as they make it.
bool flushToDisk(int descriptor) noexcept {
    return ::fsync(descriptor) == 0 || errno == EINVAL;
}

bool closeFile(int descriptor) noexcept {
    return ::close(descriptor) == 0 || errno == EINTR;
}

void removeFile(const std::filesystem::path& path) noexcept {
    ::unlink(path.c_str());
}

bool renameOver(const std::filesystem::path& from, const std::filesystem::path& to) noexcept {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

std::string machineName() {
    std::array<char, 64> name{};
    ::gethostname(name.data(), name.size() - 1);
    return name.data();
}

int ownProcess() noexcept {
    return ::getpid();
}

bool isRunning(int process) noexcept {
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

}  // namespace TessavoyHost
