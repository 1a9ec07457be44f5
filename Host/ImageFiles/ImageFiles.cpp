#include "Host/ImageFiles/ImageFiles.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "Host/HostError.h"
#include "Host/ImageFiles/Formats.h"
#include "Host/Scene/Files.h"

namespace TessavoyHost {

namespace {

using namespace std::string_view_literals;

// Formats without a function are those that need a library which this build was made without.
struct Reader {
    std::string_view name;
    std::string_view signature;  // the first bytes of the file
    ImageSize (*probe)(InputFile&);
    Image (*read)(InputFile&);
};

constexpr Reader readers[] = {
    {"PNG", "\x89PNG\r\n\x1a\n"sv, probePng, readPng}, {"EXR", "\x76\x2f\x31\x01"sv, probeExr, readExr},
    {"TIFF", "II*\0"sv, probeTiff, readTiff},          {"TIFF", "MM\0*"sv, probeTiff, readTiff},
    {"TIFF", "II+\0"sv, probeTiff, readTiff},          {"TIFF", "MM\0+"sv, probeTiff, readTiff},
    {"JPEG", "\xff\xd8\xff"sv, probeJpeg, readJpeg},   {"PAM", "P7\n"sv, probePam, readPam},
};

struct Writer {
    FileFormat format;
    void (*write)(AtomicFile&, const PixelView&, const FrameMetadata&, int pngLevel);
};

constexpr Writer writers[] = {
    {FileFormat::Png, writePng},
    {FileFormat::Tiff, writeTiff},
    {FileFormat::Exr, writeExr},
    {FileFormat::Pam, writePam},
};

const Writer& writerOf(FileFormat format) {
    return *std::find_if(std::begin(writers), std::end(writers),
                         [format](const Writer& w) { return w.format == format; });
}

FileSuffix suffixOf(FileFormat format, std::string_view suffix, std::string_view depths) {
    return {suffix, format, depths, writerOf(format).write != nullptr};
}

// Made at the start of the program: with instrumented code the address of a function is no constant.
const FileSuffix suffixes[] = {
    suffixOf(FileFormat::Png, ".png", "8 or 16 bits"), suffixOf(FileFormat::Tiff, ".tif", "any depth"),
    suffixOf(FileFormat::Tiff, ".tiff", "any depth"),  suffixOf(FileFormat::Exr, ".exr", "float"),
    suffixOf(FileFormat::Pam, ".pam", "8 or 16 bits"),
};

// "PNG, EXR, TIFF, JPEG or PAM"
std::string readFormats() {
    std::vector<std::string_view> names;
    for (const Reader& reader : readers)
        if (reader.read != nullptr && (names.empty() || names.back() != reader.name))
            names.push_back(reader.name);
    return alternatives(names);
}

const Reader& readerOf(InputFile& file) {
    char start[8] = {};
    const std::string_view bytes(start, file.read(start, sizeof start));
    file.seek(0);
    if (bytes.empty())
        file.fail("is empty", "make the file again");
    const auto reader = std::find_if(std::begin(readers), std::end(readers),
                                     [&](const Reader& r) { return bytes.starts_with(r.signature); });
    if (reader == std::end(readers))
        file.fail("isn't a " + readFormats() + " picture", "convert it to one of these");
    if (reader->read == nullptr)
        file.fail("is a " + std::string(reader->name) + " picture, which this build doesn't read",
                  "convert it to " + readFormats());
    return *reader;
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
        throw HostError(ExitStatus::FrameFailed, utf8(path) + ": the picture has no pixels; render a larger region");
    if (pixels.width > maximumPictureSide || pixels.height > maximumPictureSide)
        throw HostError(ExitStatus::FrameFailed, utf8(path) + ": the picture is larger than " + limit + " x " + limit +
                                                     " pixels; render a smaller region");
}

}  // namespace

std::span<const FileSuffix> fileSuffixes() {
    return suffixes;
}

std::string alternatives(const std::vector<std::string_view>& names) {
    std::string text;
    for (const std::string_view& name : names)
        text += (&name == &names.front() ? "" : &name == &names.back() ? " or " : ", ") + std::string(name);
    return text;
}

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
    const auto write = writerOf(format).write;
    if (write == nullptr)
        throw HostError(ExitStatus::FrameFailed, utf8(path) + ": this build doesn't write the format; choose .pam");
    AtomicFile file(path);
    try {
        write(file, pixels, metadata, pngLevel);
    } catch (const std::bad_alloc&) {
        throw HostError(ExitStatus::FrameFailed,
                        utf8(path) + ": no memory left to write it; render with fewer threads");
    }
    file.commit();
}

}  // namespace TessavoyHost
