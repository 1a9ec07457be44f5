#pragma once

#include <stdexcept>
#include <string>

namespace TessavoyHost {

// How the command ends; the numbers are its exit status.
enum class ExitStatus { Success = 0, FrameFailed = 1, CommandLine = 2, Scene = 3, Module = 4 };

// A failure that is told to the user: what happened, where, and what helps.
class HostError : public std::runtime_error {
public:
    HostError(ExitStatus status, const std::string& text) : std::runtime_error(text), mStatus(status) {}

    ExitStatus status() const { return mStatus; }

private:
    ExitStatus mStatus;
};

}  // namespace TessavoyHost
