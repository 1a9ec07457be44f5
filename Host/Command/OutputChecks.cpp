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

// Whether a file is in its place.
bool refuseOtherThanFile(const std::filesystem::path& file) {
    std::error_code ignored;
    const auto status = std::filesystem::status(file, ignored);
    if (!std::filesystem::exists(status)) {
        return false;
    }
    if (!std::filesystem::is_regular_file(status)) {
        refuse("--output: " + utf8(file) + " is there and is no file");
    }
    return true;
}

}  // namespace

void checkNumbering(const OutputPattern& output, const std::vector<int>& frames) {
    if (frames.size() > 1 && !output.isStandardOutput() && !output.isNumbered()) {
        refuse("--output: \"" + output.text() + "\" has no place for the number of " + std::to_string(frames.size()) +
               " frames; write such as " + namePattern());
    }
}

// Permissions alone don't tell: the disk may be mounted for reading only, and the administrator may do everything.
void checkFolder(const std::filesystem::path& folder) {
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored)) {
        refuse("--output: there is no folder " + utf8(folder) + "; make it first");
    }
    if (const auto reason = reasonAgainstFiles(folder)) {
        refuse("--output: files can't be made in " + utf8(folder) + ": " + *reason);
    }
    removeAbandonedFiles(folder);
}

void checkFile(const std::filesystem::path& file) {
    if (file.empty() || file == "-") {
        refuse("--output: \"" + utf8(file) + "\" is no name of a file");
    }
    checkFolder(file.has_parent_path() ? file.parent_path() : ".");
    refuseOtherThanFile(file);
}

void checkExistingFiles(const OutputPattern& output, const std::vector<int>& frames, ExistingFiles existing) {
    std::size_t count = 0;
    std::optional<std::filesystem::path> first;
    for (const int frame : frames) {
        const auto file = output.file(frame);
        if (!refuseOtherThanFile(file)) {
            continue;
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
