#pragma once

#include "Host/ImageFiles/AtomicFile.h"
#include "Host/ImageFiles/ImageFiles.h"
#include "Host/ImageFiles/InputFile.h"

namespace TessavoyHost {

// One file of code for each format. Readers start at the beginning of the file, whose first bytes are known to be of
// the format, and fail through InputFile. Writers fail through AtomicFile and leave the commit to the caller.

ImageSize probePng(InputFile& file);
Image readPng(InputFile& file);
void writePng(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int level);

ImageSize probeTiff(InputFile& file);
Image readTiff(InputFile& file);
void writeTiff(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata);

ImageSize probeExr(InputFile& file);
Image readExr(InputFile& file);
void writeExr(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata);

ImageSize probeJpeg(InputFile& file);
Image readJpeg(InputFile& file);

}  // namespace TessavoyHost
