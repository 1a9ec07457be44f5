#include "Host/ImageFiles/ImageFiles.h"

#include <new>
#include <stdexcept>
#include <string_view>

#include "Host/HostError.h"
#include "Host/ImageFiles/Formats.h"

namespace TessavoyHost {

namespace {

using namespace std::string_view_literals;

struct Reader {
    std::string_view signature;  // the first bytes of the file
    ImageSize (*probe)(InputFile&);
    Image (*read)(InputFile&);
};

constexpr Reader readers[] = {
    {"\x89PNG\r\n\x1a\n"sv, probePng, readPng}, {"\xff\xd8\xff"sv, probeJpeg, readJpeg},
    {"\x76\x2f\x31\x01"sv, probeExr, readExr},  {"II*\0"sv, probeTiff, readTiff},
    {"MM\0*"sv, probeTiff, readTiff},           {"II+\0"sv, probeTiff, readTiff},
    {"MM\0+"sv, probeTiff, readTiff},
};

const Reader& readerOf(InputFile& file) {
    char start[8] = {};
    const std::string_view bytes(start, file.read(start, sizeof start));
    file.seek(0);
    for (const Reader& reader : readers)
        if (bytes.starts_with(reader.signature))
            return reader;
    if (bytes.empty())
        file.fail("is empty", "make the file again");
    file.fail("isn't a PNG, EXR, TIFF or JPEG picture", "convert it to one of these");
}

template <class Read>
auto withinMemory(InputFile& file, Read read) {
    try {
        return read();
    } catch (const std::bad_alloc&) {
        file.fail("needs more memory than this machine gives", "scale the picture down");
    } catch (const std::length_error&) {
        file.fail("needs more memory than this machine gives", "scale the picture down");
    }
}

void requireWritable(const std::filesystem::path& path, const PixelView& pixels) {
    const std::string limit = std::to_string(maximumPictureSide);
    if (pixels.width < 1 || pixels.height < 1)
        throw HostError(ExitStatus::FrameFailed, path.string() + ": the picture has no pixels; render a larger region");
    if (pixels.width > maximumPictureSide || pixels.height > maximumPictureSide)
        throw HostError(ExitStatus::FrameFailed, path.string() + ": the picture is larger than " + limit + " x " +
                                                     limit + " pixels; render a smaller region");
}

void writeFormat(AtomicFile& file, FileFormat format, const PixelView& pixels, const FrameMetadata& metadata,
                 int pngLevel) {
    switch (format) {
        case FileFormat::Png:
            return writePng(file, pixels, metadata, pngLevel);
        case FileFormat::Tiff:
            return writeTiff(file, pixels, metadata);
        case FileFormat::Exr:
            return writeExr(file, pixels, metadata);
    }
}

}  // namespace

Image readImage(const std::filesystem::path& path) {
    InputFile file(path);
    return withinMemory(file, [&] { return readerOf(file).read(file); });
}

ImageSize probeImage(const std::filesystem::path& path) {
    InputFile file(path);
    return withinMemory(file, [&] { return readerOf(file).probe(file); });
}

void verifyImage(const std::filesystem::path& path, int width, int height) {
    try {
        InputFile file(path);
        const ImageSize size = probeImage(path);
        if (size.width != width || size.height != height)
            file.fail("has " + std::to_string(size.width) + " x " + std::to_string(size.height) +
                          " pixels instead of " + std::to_string(width) + " x " + std::to_string(height),
                      "render it again");
        readImage(path);
    } catch (const HostError& error) {
        throw HostError(ExitStatus::FrameFailed, error.what());
    }
}

void writeImage(const std::filesystem::path& path, FileFormat format, const PixelView& pixels,
                const FrameMetadata& metadata, int pngLevel) {
    requireWritable(path, pixels);
    AtomicFile file(path);
    try {
        writeFormat(file, format, pixels, metadata, pngLevel);
    } catch (const std::bad_alloc&) {
        throw HostError(ExitStatus::FrameFailed,
                        path.string() + ": no memory left to write it; render with fewer threads");
    }
    file.commit();
}

}  // namespace TessavoyHost
