#include "Host/Command/OutputChecks.h"

#include <optional>

#include "Host/HostError.h"
#include "Host/ImageFiles/AtomicFile.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {
namespace {

[[noreturn]] void refuse(const std::string& text) {
    throw HostError(ExitStatus::CommandLine, text);
}

}  // namespace

void checkNumbering(const OutputPattern& output, const std::vector<int>& frames) {
    if (frames.size() > 1 && !output.isStandardOutput() && !output.isNumbered()) {
        refuse("--output: \"" + output.text() + "\" has no place for the number of " + std::to_string(frames.size()) +
               " frames; write such as " + namePattern());
    }
}

// Permissions alone don't tell: the disk may be mounted for reading only, and the administrator may do everything.
void checkFolder(const OutputPattern& output) {
    std::error_code ignored;
    if (!std::filesystem::is_directory(output.folder(), ignored)) {
        refuse("--output: there is no folder " + utf8(output.folder()) + "; make it first");
    }
    if (const auto reason = reasonAgainstFiles(output.folder())) {
        refuse("--output: files can't be made in " + utf8(output.folder()) + ": " + *reason);
    }
    removeAbandonedFiles(output.folder());
}

void checkExistingFiles(const OutputPattern& output, const std::vector<int>& frames, ExistingFiles existing) {
    std::size_t count = 0;
    std::optional<std::filesystem::path> first;
    for (const int frame : frames) {
        const auto file = output.file(frame);
        std::error_code ignored;
        const auto status = std::filesystem::status(file, ignored);
        if (!std::filesystem::exists(status)) {
            continue;
        }
        if (!std::filesystem::is_regular_file(status)) {
            refuse("--output: " + utf8(file) + " is there and is no file");
        }
        first = first.value_or(file);
        ++count;
    }
    if (count > 0 && existing == ExistingFiles::Fail) {
        refuse("--output: " + std::to_string(count) + " of " + std::to_string(frames.size()) +
               " files are there already, first " + utf8(*first) + "; say --existing overwrite or --existing skip");
    }
}

void checkRegion(const Region& region, int width, int height) {
    if (region.width > width - region.x || region.height > height - region.y) {
        refuse("--region: reaches outside the layer, which has " + std::to_string(width) + " x " +
               std::to_string(height) + " pixels at this resolution");
    }
}

}  // namespace TessavoyHost
