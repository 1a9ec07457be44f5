#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "Host/Image.h"

namespace TessavoyHost {

// A picture file that is being read, in the form that the image libraries' callbacks want.
class InputFile {
public:
    // Throws HostError when the path isn't a file that can be opened.
    explicit InputFile(const std::filesystem::path& path);

    std::uint64_t size() const { return mSize; }
    std::uint64_t position() const { return mPosition; }

    // Positions past the end are allowed; nothing can be read there.
    void seek(std::uint64_t position) noexcept { mPosition = position; }

    // Returns how many bytes there were, fewer than asked for at the end of the file.
    std::size_t read(void* to, std::size_t count) noexcept;

    // Whether a read asked for more than there was.
    bool endedEarly() const { return mEndedEarly; }

    // Throws HostError: "path: what; remedy".
    [[noreturn]] void fail(const std::string& what, const std::string& remedy) const;

    // For what a library says about bytes that it can't make sense of.
    [[noreturn]] void failDamaged(const std::string& libraryText) const;

    [[noreturn]] void failCutShort() const;

private:
    std::filesystem::path mPath;
    std::ifstream mStream;
    std::uint64_t mSize = 0;
    std::uint64_t mPosition = 0;  // of the next read
    bool mEndedEarly = false;
    std::uint64_t mStreamPosition = 0;  // where the stream stands
};

// The size, if pictures may have it; else fails.
ImageSize checkedSize(const InputFile& file, std::uint64_t width, std::uint64_t height);

// A picture of zeros.
Image newImage(ImageSize size, SampleFormat format);

}  // namespace TessavoyHost
