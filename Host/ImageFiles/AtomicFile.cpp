#include "Host/ImageFiles/AtomicFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <optional>
#include <regex>
#include <string_view>

#include "Host/HostError.h"

namespace TessavoyHost {

namespace {

constexpr std::size_t bufferBytes = std::size_t{256} * 1024;

const char* remedyOf(int error) {
    switch (error) {
        case ENOSPC:
        case EDQUOT:
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
        std::array<char, 64> host{};
        ::gethostname(host.data(), host.size() - 1);
        std::string name;
        for (const char letter : std::string_view(host.data())) {
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
           (passingPrefix() + std::to_string(::getpid()) + "-" + std::to_string(++count) + ".part");
}

// The number of the process of this machine that writes under such a passing name.
std::optional<pid_t> writerOf(const std::string& name) {
    static const std::regex passing(passingPrefix() + R"(([0-9]{1,9})-[0-9]+\.part)");
    std::smatch parts;
    return std::regex_match(name, parts, passing) ? std::optional<pid_t>(std::stoi(parts[1])) : std::nullopt;
}

bool isRunning(pid_t process) {
    return ::kill(process, 0) == 0 || errno != ESRCH;
}

}  // namespace

void removeAbandonedFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> abandoned;
    std::error_code ignored;
    for (std::filesystem::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored)) {
        const auto writer = writerOf(entry->path().filename().string());
        if (writer && !isRunning(*writer)) {
            abandoned.push_back(entry->path());
        }
    }
    for (const auto& file : abandoned) {
        std::filesystem::remove(file, ignored);
    }
}

AtomicFile::AtomicFile(const std::filesystem::path& path) : mPath(path) {
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        throw HostError(ExitStatus::FrameFailed,
                        path.string() + ": can't be written: isn't a file; choose another name");
    mPending.reserve(bufferBytes);
    // Another machine that writes to the same folder may have taken the name.
    do {
        mTemporary = temporaryName(path);
        mDescriptor = ::open(mTemporary.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (mDescriptor < 0 && (errno == EEXIST || errno == EINTR));
    if (mDescriptor < 0)
        failWith(errno);
}

AtomicFile::~AtomicFile() {
    if (mDescriptor >= 0)
        ::close(mDescriptor);
    if (!mTemporary.empty())
        ::unlink(mTemporary.c_str());
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
    const ssize_t got = ::pread(mDescriptor, to, count, static_cast<off_t>(mPosition));
    if (got < 0)
        keepError(errno);
    else
        mPosition += static_cast<std::uint64_t>(got);
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}

bool AtomicFile::flush() noexcept {
    const std::byte* from = mPending.data();
    std::size_t left = mPending.size();
    while (left > 0 && mError == 0) {
        const ssize_t written = ::pwrite(mDescriptor, from, left, static_cast<off_t>(mPosition));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0) {
            keepError(written < 0 ? errno : EIO);
            break;
        }
        from += written;
        left -= static_cast<std::size_t>(written);
        mPosition += static_cast<std::uint64_t>(written);
    }
    mPending.clear();
    mEnd = mPosition > mEnd ? mPosition : mEnd;
    return mError == 0;
}

void AtomicFile::commit() {
    if (!flush())
        failWith(mError);
    // Some network and pipe file systems have no flushing (EINVAL); what they hold is as safe as they make it.
    if (::fsync(mDescriptor) != 0 && errno != EINVAL)
        failWith(errno);
    const int closed = ::close(mDescriptor);
    mDescriptor = -1;
    if (closed != 0 && errno != EINTR)
        failWith(errno);
    if (::rename(mTemporary.c_str(), mPath.c_str()) != 0)
        failWith(errno);
    mTemporary.clear();
}

void AtomicFile::fail(const std::string& libraryText) {
    flush();
    if (mError != 0)
        failWith(mError);
    throw HostError(ExitStatus::FrameFailed,
                    mPath.string() + ": can't be written (" + libraryText + "); choose another file format");
}

void AtomicFile::keepError(int error) noexcept {
    if (mError == 0)
        mError = error;
}

void AtomicFile::failWith(int error) const {
    throw HostError(ExitStatus::FrameFailed,
                    mPath.string() + ": can't be written: " + std::strerror(error) + "; " + remedyOf(error));
}

}  // namespace TessavoyHost
