#include "Host/Command/ProgressStreams.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <mutex>

#include "Host/Command/Descriptors.h"
#include "Host/Command/Interruption.h"
#include "Host/Command/JsonLine.h"
#include "Host/Command/Outlets.h"
#include "Host/Command/StandardError.h"
#include "Host/HostError.h"

namespace TessavoyHost {
namespace {

double secondsNow() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

int copyOfStandardError() {
    const int copy = copyOfDescriptor(standardError);
    if (copy == -1) {
        throw HostError(ExitStatus::FrameFailed, std::string("standard error: ") + std::strerror(errno));
    }
    return copy;
}

}  // namespace

ProgressStreams::ProgressStreams(ProgressMode mode, bool framesOnOutput, const OutputChannel& output) : mMode(mode) {
    mOutput.error = writeStandardError;
    mOutput.json = [](const std::string&) {};
    mOutput.errorIsTerminal = isTerminal(standardError);
    mOutput.seconds = secondsNow;
    if (mode != ProgressMode::Json) {
        return;
    }
    letWritesToNobodyFail();
    if (!framesOnOutput) {
        sendObjectsTo(output.descriptor());
        setOutlets({standardError, output.descriptor()});
        return;
    }
    const int objects = copyOfStandardError();
    sendObjectsTo(objects);
    setOutlets({-1, objects});
    mOutput.error = [](const std::string&) {};
    mStrayLines.emplace(std::vector<int>{standardOutput, standardError}, [put = mOutput.json](const std::string& line) {
        if (!line.empty()) {
            put(messageLine(line));
        }
    });
}

// A reader that has gone away does not end the run. Lines come from several threads.
void ProgressStreams::sendObjectsTo(int descriptor) {
    mOutput.json = [descriptor, mutex = std::make_shared<std::mutex>()](const std::string& line) {
        const std::lock_guard lock(*mutex);
        writeAll(descriptor, line);
    };
}

std::unique_ptr<Progress> ProgressStreams::makeProgress() const {
    return TessavoyHost::makeProgress(mMode, mOutput);
}

void ProgressStreams::settle() {
    if (mStrayLines) {
        mStrayLines->end();
    }
}

}  // namespace TessavoyHost
