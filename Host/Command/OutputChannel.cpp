#include "Host/Command/OutputChannel.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <utility>

#include "Host/Command/StandardError.h"
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

// For a signal handler.
std::atomic<const StrayLines*> liveStrayLines = nullptr;
static_assert(std::atomic<const StrayLines*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

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
    if (mDescriptor == -1) {
        throw HostError(ExitStatus::FrameFailed, "standard output: it is closed");
    }
    if (!writeAll(mDescriptor, bytes)) {
        throw HostError(ExitStatus::FrameFailed, std::string("standard output: ") + std::strerror(errno));
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

StrayLines::StrayLines(std::vector<int> descriptors, std::function<void(const std::string&)> take)
    : mDescriptors(std::move(descriptors)), mTake(std::move(take)) {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) == -1) {
        throw HostError(ExitStatus::FrameFailed, std::string("pipe: ") + std::strerror(errno));
    }
    flushStandardOutput();
    for (const int descriptor : mDescriptors) {
        ::dup2(ends[1], descriptor);
    }
    ::close(ends[1]);
    mRead = ends[0];
    mThread = std::thread([this] { read(); });
    liveStrayLines = this;
}

StrayLines::~StrayLines() {
    end();
}

void StrayLines::end() {
    if (!mThread.joinable()) {
        return;
    }
    liveStrayLines = nullptr;
    flushStandardOutput();
    dropWhatFollows();
    mThread.join();
    ::close(mRead);
}

void StrayLines::endInHandler() noexcept {
    const StrayLines* lines = liveStrayLines;
    if (lines == nullptr) {
        return;
    }
    lines->dropWhatFollows();
    for (int hundredth = 0; hundredth < 100 && !lines->mEnded; ++hundredth) {
        ::poll(nullptr, 0, 10);
    }
}

// The reader comes to its end as the descriptors are the only ways into the pipe.
void StrayLines::dropWhatFollows() const noexcept {
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (const int descriptor : mDescriptors) {
        ::dup2(nowhere, descriptor);
    }
    ::close(nowhere);
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
    mEnded = true;
}

}  // namespace TessavoyHost
