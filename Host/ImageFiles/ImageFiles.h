#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Host/Image.h"

namespace TessavoyHost {

// Picture files are read by their content (PNG, EXR, TIFF, JPEG, PAM), whatever their suffix says. The values are kept
// as they are in the file: no gamma, profile or colour space is applied, and the orientation that a camera notes in a
// JPEG isn't either. Of a file with several pictures the first one is read. All functions may be called from several
// threads at once; none prints anything. Failures are one HostError that names the file, the reason and what helps,
// with ExitStatus::Scene from reading and ExitStatus::FrameFailed from verifying and writing.

// The whole picture. EXR and TIFF with associated alpha are divided by alpha where alpha is above 0 (integers rounded
// to the nearest and cut at their largest value). An EXR picture has the size of its display window: what its data
// window doesn't cover is transparent black. Depth: 1, 2, 4 and 8 bits become UInt8, 16 bits UInt16, all else Float32.
Image readImage(const std::filesystem::path& path);

// The size, from the header, which also tells whether the picture is of a kind that is read.
ImageSize probeImage(const std::filesystem::path& path);

// Decodes the whole file and throws when it can't be read to its end or has another size.
void verifyImage(const std::filesystem::path& path, int width, int height);

enum class FileFormat { Png, Tiff, Exr, Pam };

// How a format that is written is asked for.
struct FileSuffix {
    std::string_view suffix;  // in lower case, with its dot
    FileFormat format;
    std::string_view depths;  // what it holds, in words
    bool isWritten;           // by this build: all but PAM need their libraries
};

// All suffixes that are known, the usual one of each format first.
std::span<const FileSuffix> fileSuffixes();

// "PNG, EXR or PAM". At least one.
std::string alternatives(const std::vector<std::string_view>& names);

// What a file tells about its making: PNG text "Software" and "Frame"; TIFF Software and, as ImageDescription, "Frame
// 7"; EXR header attributes "software" (text) and "frame" (integer); PAM comments "Software: " and "Frame: ".
struct FrameMetadata {
    int frame = 0;
    std::string software;  // name and version
};

// Writes the file whole under another name in the same folder, flushes it to the disk and renames it; a file that was
// there is replaced. When that fails nothing is left behind.
//
// PNG: 8 bits from 8-bit pixels, else 16 bits (worlds' 0 to 32768 spread to 0 to 65535, rounded; floats cut to 0 to 1,
// NaN is 0), straight alpha. TIFF: 8, 16 or float, straight alpha. EXR: float, associated alpha.
// PAM: as PNG.
//
// pngLevel, 0 to 9: how hard PNG deflates. 0 stores; 1 to 3 use one filter for all rows, for speed; 4 to 9 choose the
// filter row by row, for size.
void writeImage(const std::filesystem::path& path, FileFormat format, const PixelView& pixels,
                const FrameMetadata& metadata, int pngLevel);

}  // namespace TessavoyHost
