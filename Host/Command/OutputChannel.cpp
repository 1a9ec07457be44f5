#include "Host/Command/OutputChannel.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <utility>

#include "Host/Command/Crashes.h"
#include "Host/Command/Descriptors.h"
#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

void flushStandardOutput() {
    std::cout.flush();
    std::fflush(stdout);
}

std::string contentsOf(int descriptor) {
    std::string text;
    std::array<char, 4096> block{};
    rewindDescriptor(descriptor);
    for (std::size_t got = 0; (got = readSome(descriptor, block.data(), block.size())) > 0;) {
        text.append(block.data(), got);
    }
    return text;
}

// For a signal handler.
std::atomic<const StrayLines*> liveStrayLines = nullptr;
static_assert(std::atomic<const StrayLines*>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);

}  // namespace

OutputChannel::OutputChannel() {
    const bool hadOutput = prepareStandardDescriptors();
    mDescriptor = hadOutput ? copyOfDescriptor(standardOutput) : -1;
    pointDescriptor(standardOutput, standardError);
}

OutputChannel::~OutputChannel() {
    if (mDescriptor == -1) {
        return;
    }
    flushStandardOutput();
    pointDescriptor(standardOutput, mDescriptor);
    closeDescriptor(mDescriptor);
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
    return mDescriptor != -1 && TessavoyHost::isTerminal(mDescriptor);
}

StrayOutput::StrayOutput() : mBefore(-1), mCaught(openNamelessFile()) {
    if (mCaught == -1) {
        return;
    }
    flushStandardOutput();
    mBefore = copyOfDescriptor(standardOutput);
    pointDescriptor(standardOutput, mCaught);
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
    closeDescriptor(mCaught);
    mCaught = -1;
    return text;
}

void StrayOutput::restore() {
    if (mBefore == -1) {
        return;
    }
    flushStandardOutput();
    pointDescriptor(standardOutput, mBefore);
    closeDescriptor(mBefore);
    mBefore = -1;
}

StrayLines::StrayLines(std::vector<int> descriptors, std::function<void(const std::string&)> take)
    : mDescriptors(std::move(descriptors)), mTake(std::move(take)) {
    std::array<int, 2> ends{};
    if (!openPipe(ends)) {
        throw HostError(ExitStatus::FrameFailed, std::string("pipe: ") + std::strerror(errno));
    }
    flushStandardOutput();
    for (const int descriptor : mDescriptors) {
        pointDescriptor(descriptor, ends[1]);
    }
    closeDescriptor(ends[1]);
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
    closeDescriptor(mRead);
}

void StrayLines::endInHandler() noexcept {
    const StrayLines* lines = liveStrayLines;
    if (lines == nullptr) {
        return;
    }
    lines->dropWhatFollows();
    for (int hundredth = 0; hundredth < 100 && !lines->mEnded; ++hundredth) {
        pauseInHandler(10);
    }
}

// The reader comes to its end as the descriptors are the only ways into the pipe.
void StrayLines::dropWhatFollows() const noexcept {
    for (const int descriptor : mDescriptors) {
        silenceDescriptor(descriptor);
    }
}

void StrayLines::read() {
    std::string line;
    std::array<char, 4096> block{};
    for (std::size_t got = 0; (got = readSome(mRead, block.data(), block.size())) > 0;) {
        for (const char letter : std::string_view(block.data(), got)) {
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
