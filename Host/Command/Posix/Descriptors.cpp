#include "Host/Command/Descriptors.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <string>

namespace TessavoyHost {
namespace {

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

}  // namespace

// open takes the lowest free number, so closed ones are filled in order.
bool prepareStandardDescriptors() {
    const bool hadOutput = isOpen(STDOUT_FILENO);
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (!isOpen(descriptor)) {
            [[maybe_unused]] const int opened = ::open("/dev/null", O_RDWR);
        }
    }
    return hadOutput;
}

int copyOfDescriptor(int descriptor) noexcept {
    return ::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

void pointDescriptor(int descriptor, int where) noexcept {
    ::dup2(where, descriptor);
}

void closeDescriptor(int descriptor) noexcept {
    ::close(descriptor);
}

int openNullDevice() noexcept {
    return ::open("/dev/null", O_WRONLY | O_CLOEXEC);
}

int openNamelessFile() {
    return ::memfd_create("tessavoy", MFD_CLOEXEC);
}

void rewindDescriptor(int descriptor) {
    ::lseek(descriptor, 0, SEEK_SET);
}

bool openPipe(std::array<int, 2>& ends) {
    return ::pipe2(ends.data(), O_CLOEXEC) == 0;
}

std::size_t readSome(int descriptor, char* to, std::size_t count) noexcept {
    const ssize_t got = ::read(descriptor, to, count);
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

bool writeAll(int descriptor, std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

}  // namespace TessavoyHost
