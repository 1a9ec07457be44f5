#pragma once

#include "Host/ImageFiles/TiffLayout.h"

namespace TessavoyHost {

// Turns rows of TIFF samples, as libtiff decodes them, into rows of a picture.
class TiffRows {
public:
    explicit TiffRows(const TiffLayout& layout) : mLayout(layout) {}

    // Stores `columns` pixels at (left, y). `from` holds the samples of whole pixels, or with separate planes those of
    // one plane; grey and palette indices go to R, G and B alike.
    void store(Image& image, int left, int y, int columns, const std::byte* from, int plane);

private:
    const std::uint8_t* asBytes(const std::byte* from, int count);
    const float* asFloats(const std::byte* from, int count);
    template <class Sample>
    void spread(Sample* rgba, const Sample* from, int columns, int plane) const;

    const TiffLayout& mLayout;
    std::vector<std::uint8_t> mBytes;
    std::vector<float> mFloats;
};

// Alpha of a picture whose file has none.
void setFullAlpha(Image& image);

// Colour from stored palette indices; the tables have 2 to the power of `bits` entries.
void applyPalette(Image& image, int bits, const std::uint16_t* red, const std::uint16_t* green,
                  const std::uint16_t* blue);

// Grey that runs from white to black.
void invertColour(Image& image);

// The picture as it is to be looked at, from how it is stored (TIFF orientations 1 to 8; others change nothing).
Image oriented(Image&& stored, int orientation);

}  // namespace TessavoyHost
