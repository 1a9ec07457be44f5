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

StrayLines::StrayLines(std::function<void(const std::string&)> take) : mTake(std::move(take)) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) == -1) {
        throw HostError(ExitStatus::FrameFailed, std::string("pipe: ") + std::strerror(errno));
    }
    flushStandardOutput();
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[1]);
    mRead = ends[0];
    mThread = std::thread([this] { read(); });
}

StrayLines::~StrayLines() {
    end();
}

// The reader comes to its end as descriptor 1 is the only way into the pipe.
void StrayLines::end() {
    if (!mThread.joinable()) {
        return;
    }
    flushStandardOutput();
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere, STDOUT_FILENO);
    ::close(nowhere);
    mThread.join();
    ::close(mRead);
}

void StrayLines::read() {
    std::string line;
    std::array<char, 4096> block{};
    for (ssize_t got = 0; (got = ::read(mRead, block.data(), block.size())) > 0;) {
        for (const char letter : std::string_view(block.data(), static_cast<std::size_t>(got))) {
            if (letter != '\n') {
                line += letter;
            } else {
                mTake(line);
                line.clear();
            }
        }
    }
    if (!line.empty()) {
        mTake(line);
    }
}

}  // namespace TessavoyHost
