#include "Host/ImageFiles/AtomicFile.h"

#include <atomic>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <regex>

#include "Host/HostError.h"
#include "Host/ImageFiles/SystemFile.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;

const char* remedyOf(int error) {
    switch (error) {
        case ENOSPC:
#ifdef EDQUOT  // not on Windows
        case EDQUOT:
#endif
            return "free space on the disk and try again";
        case EFBIG:
            return "raise the limit on file sizes or write to another disk";
        case EACCES:
        case EPERM:
        case EROFS:
            return "choose a folder that you may write to";
        case ENOENT:
        case ENOTDIR:
            return "make the folder first";
        case ENAMETOOLONG:
            return "choose a shorter name";
        case EBUSY:
            return "close the file where it is open";
        case EMFILE:
        case ENFILE:
            return "render with fewer threads";
        default:
            return "check the disk and the output folder";
    }
}

// The start of this machine's passing names. Render machines share folders, so a process number alone would not do.
const std::string& passingPrefix() {
    static const std::string prefix = [] {
        std::string name;
        for (const char letter : machineName()) {
            name += std::isalnum(static_cast<unsigned char>(letter)) != 0 ? letter : '_';
        }
        return ".tessavoy-" + name + "-";
    }();
    return prefix;
}

// The passing name is short and doesn't grow with the file's, so that a name of the greatest length can be written too.
// The number keeps the threads of this process apart, the process number the processes of one machine.
std::filesystem::path temporaryName(const std::filesystem::path& path) {
    static std::atomic<unsigned> count{0};
    return path.parent_path() /
           (passingPrefix() + std::to_string(ownProcess()) + "-" + std::to_string(++count) + ".part");
}

struct PassingFile {
    std::filesystem::path path;
    int descriptor = -1;
};

// The number of the process of this machine that writes under such a passing name.
std::optional<int> writerOf(const std::string& name) {
    static const std::regex passing(passingPrefix() + R"(([0-9]{1,9})-[0-9]+\.part)");
    std::smatch parts;
    return std::regex_match(name, parts, passing) ? std::optional<int>(std::stoi(parts[1])) : std::nullopt;
}

// A new file under a passing name beside the path. Another machine that writes to the same folder may have taken a
// name.
std::optional<PassingFile> makePassingFile(const std::filesystem::path& path) {
    PassingFile file;
    do {
        file.path = temporaryName(path);
        file.descriptor = makeFile(file.path);
    } while (file.descriptor < 0 && errno == EEXIST);
    return file.descriptor < 0 ? std::nullopt : std::optional(file);
}

}  // namespace

void removeAbandonedFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> abandoned;
    std::error_code ignored;
    for (std::filesystem::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
        const auto writer = writerOf(utf8(entry->path().filename()));
        if (writer && !isRunning(*writer)) {
            abandoned.push_back(entry->path());
        }
    }
    for (const auto& file : abandoned) {
        std::filesystem::remove(file, ignored);
    }
}

std::optional<std::string> reasonAgainstFiles(const std::filesystem::path& folder) {
    const auto file = makePassingFile(folder / "probe");
    if (!file)
        return std::strerror(errno);
    closeFile(file->descriptor);
    removeFile(file->path);
    return std::nullopt;
}

AtomicFile::AtomicFile(const std::filesystem::path& path) : mPath(path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw HostError(ExitStatus::FrameFailed, utf8(path) + ": can't be written: isn't a file; choose another name");
    mPending.reserve(bufferBytes);
    const auto file = makePassingFile(path);
    if (!file)
        failWith(errno);
    mTemporary = file->path;
    mDescriptor = file->descriptor;
}

AtomicFile::~AtomicFile() {
    if (mDescriptor >= 0)
        closeFile(mDescriptor);
    if (!mTemporary.empty())
        removeFile(mTemporary);
}

bool AtomicFile::write(const void* from, std::size_t count) noexcept {
    const auto* bytes = static_cast<const std::byte*>(from);
    while (count > 0 && mError == 0) {
        const std::size_t room = bufferBytes - mPending.size();
        const std::size_t part = count < room ? count : room;
        mPending.insert(mPending.end(), bytes, bytes + part);
        bytes += part;
        count -= part;
        if (mPending.size() == bufferBytes)
            flush();
    }
    return mError == 0;
}

void AtomicFile::seek(std::uint64_t position) noexcept {
    flush();
    mPosition = position;
}

std::size_t AtomicFile::read(void* to, std::size_t count) noexcept {
    if (!flush())
        return 0;
    const auto got = readAt(mDescriptor, to, count, mPosition);
    if (!got)
        keepError(errno);
    mPosition += got.value_or(0);
    return got.value_or(0);
}

bool AtomicFile::flush() noexcept {
    const std::byte* from = mPending.data();
    std::size_t left = mPending.size();
    while (left > 0 && mError == 0) {
        const auto written = writeAt(mDescriptor, from, left, mPosition);
        if (written.value_or(0) == 0) {
            keepError(written ? EIO : errno);
            break;
        }
        from += *written;
        left -= *written;
        mPosition += *written;
    }
    mPending.clear();
    mEnd = mPosition > mEnd ? mPosition : mEnd;
    return mError == 0;
}

void AtomicFile::commit() {
    if (!flush())
        failWith(mError);
    if (!flushToDisk(mDescriptor))
        failWith(errno);
    const bool isClosed = closeFile(mDescriptor);
    mDescriptor = -1;
    if (!isClosed || !renameOver(mTemporary, mPath))
        failWith(errno);
    mTemporary.clear();
}

void AtomicFile::fail(const std::string& libraryText) {
    flush();
    if (mError != 0)
        failWith(mError);
    throw HostError(ExitStatus::FrameFailed,
                    utf8(mPath) + ": can't be written (" + libraryText + "); choose another file format");
}

void AtomicFile::keepError(int error) noexcept {
    if (mError == 0)
        mError = error;
}

void AtomicFile::failWith(int error) const {
    throw HostError(ExitStatus::FrameFailed,
                    utf8(mPath) + ": can't be written: " + std::strerror(error) + "; " + remedyOf(error));
}

}  // namespace TessavoyHost
