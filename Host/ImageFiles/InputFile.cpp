#include "Host/ImageFiles/InputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "Host/HostError.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {

InputFile::InputFile(const std::filesystem::path& path) : mPath(path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        fail("there is no such file", "check the path");
    if (error)
        fail("can't be opened: " + error.message(), "check the path and your permissions");
    if (!std::filesystem::is_regular_file(status))
        fail("isn't a file", "name a picture file");
    errno = 0;
    mStream.open(path, std::ios::binary);
    if (!mStream.is_open())
        fail(std::string("can't be opened: ") + std::strerror(errno), "check your permissions");
    mSize = std::filesystem::file_size(path, error);
    if (error)
        fail("can't be read: " + error.message(), "check the disk");
}

std::size_t InputFile::read(void* to, std::size_t count) noexcept {
    if (mPosition >= mSize) {
        mEndedEarly = mEndedEarly || count > 0;
        return 0;
    }
    if (mPosition != mStreamPosition || !mStream.good()) {
        mStream.clear();
        mStream.seekg(static_cast<std::streamoff>(mPosition));
    }
    const std::uint64_t wanted = std::min<std::uint64_t>(count, mSize - mPosition);
    mStream.read(static_cast<char*>(to), static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(mStream.gcount());
    mPosition += got;
    mEndedEarly = mEndedEarly || got < count;
    mStreamPosition = mPosition;
    return got;
}

void InputFile::fail(const std::string& what, const std::string& remedy) const {
    throw HostError(ExitStatus::Scene, utf8(mPath) + ": " + what + "; " + remedy);
}

void InputFile::failDamaged(const std::string& libraryText) const {
    std::string text = libraryText;
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && (text.back() == '.' || text.back() == ' '))
        text.pop_back();
    fail("can't be read (" + text + ")", "make the file again");
}

void InputFile::failCutShort() const {
    fail("ends before the picture is complete", "make the file again");
}

ImageSize checkedSize(const InputFile& file, std::uint64_t width, std::uint64_t height) {
    const std::string limit = std::to_string(maximumPictureSide);
    if (width == 0 || height == 0)
        file.fail("has no pixels", "make the file again");
    if (width > maximumPictureSide || height > maximumPictureSide)
        file.fail("has " + std::to_string(width) + " x " + std::to_string(height) + " pixels",
                  "scale it down to " + limit + " x " + limit + " at most");
    return {static_cast<int>(width), static_cast<int>(height)};
}

Image newImage(ImageSize size, SampleFormat format) {
    Image image{size.width, size.height, format, {}};
    image.samples.resize(image.rowBytes() * static_cast<std::size_t>(size.height));
    return image;
}

}  // namespace TessavoyHost
