#pragma once

#include <tiffio.h>

#include "Host/ImageFiles/InputFile.h"

namespace TessavoyHost {

// What the tags of a TIFF picture say about its samples.
struct TiffLayout {
    ImageSize size;  // as stored, before the orientation is applied
    std::uint16_t orientation = ORIENTATION_TOPLEFT;
    std::uint16_t bits = 1;                  // of a sample
    std::uint16_t kind = SAMPLEFORMAT_UINT;  // SAMPLEFORMAT_*
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint16_t samples = 1;  // of a pixel
    std::uint16_t colours = 1;  // of these, at the front: 1 or 3
    int alpha = -1;             // the sample that is alpha, or -1
    bool associated = false;    // colour is multiplied by alpha
    bool separate = false;      // each sample has a plane of its own
    bool tiled = false;
    std::uint32_t blockWidth = 0;  // of a tile, or of a strip (the picture's), pixels
    std::uint32_t blockHeight = 0;

    // The format that holds the samples.
    SampleFormat format() const;

    // Whether the orientation exchanges width and height.
    bool turned() const { return orientation >= ORIENTATION_LEFTTOP; }

    // How many samples of a pixel stand together in a block.
    int samplesTogether() const { return separate ? 1 : samples; }
};

// Everything; fails when the picture is of a kind that isn't read. Sets JPEG data up to be decoded to RGB.
TiffLayout readTiffLayout(const InputFile& file, TIFF* tiff);

}  // namespace TessavoyHost
