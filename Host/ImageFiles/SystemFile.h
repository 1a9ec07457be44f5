#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace TessavoyHost {

// Files by the system's own calls. None throws; what fails says so in errno.

// Makes a file that isn't there yet, for writing and reading: its descriptor, or -1 (EEXIST: there is one).
int makeFile(const std::filesystem::path& path) noexcept;

// How many bytes were read or written at the position, fewer than asked for at the end of the file or of the disk;
// nothing at an error.
std::optional<std::size_t> readAt(int descriptor, void* to, std::size_t count, std::uint64_t position) noexcept;
std::optional<std::size_t> writeAt(int descriptor, const void* from, std::size_t count,
                                   std::uint64_t position) noexcept;

// Returns when the disk has what was written, as far as the file system can tell.
bool flushToDisk(int descriptor) noexcept;
// Whatever it returns, the descriptor is closed.
bool closeFile(int descriptor) noexcept;

void removeFile(const std::filesystem::path& path) noexcept;
// Gives a file another name in the same folder, at once; a file that has that name is replaced.
bool renameOver(const std::filesystem::path& from, const std::filesystem::path& to) noexcept;

// The name of this machine; empty where it has none.
std::string machineName();
int ownProcess() noexcept;
// Whether a process of this machine runs. True where that can't be told.
bool isRunning(int process) noexcept;

}  // namespace TessavoyHost
