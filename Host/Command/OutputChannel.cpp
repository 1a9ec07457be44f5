#include "Host/Command/OutputChannel.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

// open takes the lowest free number, so closed ones are filled in order.
void fillClosedDescriptors() {
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
        if (!isOpen(descriptor)) {
            [[maybe_unused]] const int opened = ::open("/dev/null", O_RDWR);
        }
    }
}

void flushStandardOutput() {
    std::cout.flush();
    std::fflush(stdout);
}

int namelessFile() {
    std::string name = "/tmp/tessavoy-XXXXXX";
    const int descriptor = ::mkostemp(name.data(), O_CLOEXEC);
    if (descriptor != -1) {
        ::unlink(name.c_str());
    }
    return descriptor;
}

std::string contentsOf(int descriptor) {
    std::string text;
    std::array<char, 4096> block{};
    ::lseek(descriptor, 0, SEEK_SET);
    for (ssize_t got = 0; (got = ::read(descriptor, block.data(), block.size())) > 0;) {
        text.append(block.data(), static_cast<std::size_t>(got));
    }
    return text;
}

}  // namespace

OutputChannel::OutputChannel() {
    const bool hadOutput = isOpen(STDOUT_FILENO);
    fillClosedDescriptors();
    mDescriptor = hadOutput ? ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1) : -1;
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

OutputChannel::~OutputChannel() {
    if (mDescriptor == -1) {
        return;
    }
    flushStandardOutput();
    ::dup2(mDescriptor, STDOUT_FILENO);
    ::close(mDescriptor);
}

void OutputChannel::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = mDescriptor == -1 ? -1 : ::write(mDescriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR && mDescriptor != -1) {
            continue;
        }
        if (written < 0) {
            const std::string reason = mDescriptor == -1 ? "it is closed" : std::strerror(errno);
            throw HostError(ExitStatus::FrameFailed, "standard output: " + reason);
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

bool OutputChannel::isTerminal() const {
    return mDescriptor != -1 && ::isatty(mDescriptor) == 1;
}

StrayOutput::StrayOutput() : mBefore(-1), mCaught(namelessFile()) {
    if (mCaught == -1) {
        return;
    }
    flushStandardOutput();
    mBefore = ::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::dup2(mCaught, STDOUT_FILENO);
}

StrayOutput::~StrayOutput() {
    const std::string left = take();
    std::fwrite(left.data(), 1, left.size(), stdout);
    std::fflush(stdout);
}

std::string StrayOutput::take() {
    restore();
    if (mCaught == -1) {
        return {};
    }
    std::string text = contentsOf(mCaught);
    ::close(mCaught);
    mCaught = -1;
    return text;
}

void StrayOutput::restore() {
    if (mBefore == -1) {
        return;
    }
    flushStandardOutput();
    ::dup2(mBefore, STDOUT_FILENO);
    ::close(mBefore);
    mBefore = -1;
}

}  // namespace TessavoyHost
