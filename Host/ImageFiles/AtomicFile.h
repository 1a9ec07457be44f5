#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace TessavoyHost {

// A file that appears under its name whole or not at all: written under a passing name in the same folder, flushed to
// the disk, then renamed over what was there. Unless committed, it is removed by the destructor.
class AtomicFile {
public:
    // Throws HostError when the folder can't be written to, or when the path stands for something else than a file.
    explicit AtomicFile(const std::filesystem::path& path);
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // The image libraries call these from C, so they throw nothing. The first failure is kept: later writes do nothing
    // and return false, and commit throws it.
    bool write(const void* from, std::size_t count) noexcept;
    void seek(std::uint64_t position) noexcept;
    std::size_t read(void* to, std::size_t count) noexcept;  // what was written at the position, fewer at the end
    std::uint64_t position() const { return mPosition + mPending.size(); }
    std::uint64_t size() const { return mEnd > position() ? mEnd : position(); }

    // Throws HostError, whether the disk or the renaming failed.
    void commit();

    // Throws HostError: the disk's failure if there was one, else the library's text.
    [[noreturn]] void fail(const std::string& libraryText);

private:
    bool flush() noexcept;
    void keepError(int error) noexcept;
    [[noreturn]] void failWith(int error) const;

    std::filesystem::path mPath;
    std::filesystem::path mTemporary;  // empty once renamed or removed
    int mDescriptor = -1;
    int mError = 0;               // errno of the first failure
    std::uint64_t mPosition = 0;  // in the file, of the first pending byte
    std::uint64_t mEnd = 0;
    std::vector<std::byte> mPending;  // bytes not yet handed to the system, of a capacity that never changes
};

// Why no file can be made in the folder, in words; nothing where one can. A passing file is made, and removed.
std::optional<std::string> reasonAgainstFiles(const std::filesystem::path& folder);

// Removes the passing files that processes of this machine which are no longer running left in the folder. Files of
// other machines are let alone: a folder may be shared.
void removeAbandonedFiles(const std::filesystem::path& folder);

}  // namespace TessavoyHost
