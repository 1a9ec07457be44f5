#pragma once

#include <cstddef>

#include "Host/ImageFiles/AtomicFile.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/ImageFiles/InputFile.h"

namespace TessavoyHost {

// One file of code for each format. Readers start at the beginning of the file, whose first bytes are known to be of
// the format, and fail through InputFile. Writers fail through AtomicFile and leave the commit to the caller; all take
// the level that is PNG's alone.

ImageSize probePam(InputFile& file);
Image readPam(InputFile& file);
void writePam(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int pngLevel);

#ifdef TESSAVOY_IMAGE_LIBRARIES

ImageSize probePng(InputFile& file);
Image readPng(InputFile& file);
void writePng(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int pngLevel);

ImageSize probeTiff(InputFile& file);
Image readTiff(InputFile& file);
void writeTiff(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int pngLevel);

ImageSize probeExr(InputFile& file);
Image readExr(InputFile& file);
void writeExr(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int pngLevel);

ImageSize probeJpeg(InputFile& file);
Image readJpeg(InputFile& file);

#else

// A build without image libraries knows these formats by name, and neither reads nor writes them.
inline constexpr std::nullptr_t probePng{}, readPng{}, writePng{}, probeTiff{}, readTiff{}, writeTiff{};
inline constexpr std::nullptr_t probeExr{}, readExr{}, writeExr{}, probeJpeg{}, readJpeg{};

#endif

}  // namespace TessavoyHost
