#include "Host/ImageFiles/TiffLayout.h"

#include <algorithm>

namespace TessavoyHost {

namespace {

template <class Value>
Value tag(TIFF* tiff, std::uint32_t name, Value absent) {
    Value value{};
    return TIFFGetFieldDefaulted(tiff, name, &value) == 1 ? value : absent;
}

// JPEG data inside TIFF is YCbCr as a rule; the codec can convert it back.
void requestRgb(TIFF* tiff, TiffLayout& layout) {
    if (layout.photometric != PHOTOMETRIC_YCBCR || layout.compression != COMPRESSION_JPEG || layout.separate)
        return;
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    layout.photometric = PHOTOMETRIC_RGB;
}

void readSamples(TIFF* tiff, TiffLayout& layout) {
    layout.bits = tag<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    layout.kind = tag<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
    layout.compression = tag<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    layout.samples = tag<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    layout.separate = tag<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
    const std::uint16_t guess = layout.samples < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
    layout.photometric = tag<std::uint16_t>(tiff, TIFFTAG_PHOTOMETRIC, guess);
    requestRgb(tiff, layout);
    layout.colours = layout.photometric == PHOTOMETRIC_RGB ? 3 : 1;
}

// The first extra sample that says it is alpha; else the first one of unknown meaning, taken as straight alpha.
void readAlpha(TIFF* tiff, TiffLayout& layout) {
    if (layout.samples <= layout.colours)
        return;
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
    layout.alpha = layout.colours;
    for (int extra = 0; extra < count && layout.colours + extra < layout.samples; ++extra)
        if (kinds[extra] == EXTRASAMPLE_ASSOCALPHA || kinds[extra] == EXTRASAMPLE_UNASSALPHA) {
            layout.alpha = layout.colours + extra;
            layout.associated = kinds[extra] == EXTRASAMPLE_ASSOCALPHA;
            return;
        }
}

void readBlockSize(const InputFile& file, TIFF* tiff, TiffLayout& layout) {
    const auto width = static_cast<std::uint32_t>(layout.size.width);
    const auto height = static_cast<std::uint32_t>(layout.size.height);
    layout.tiled = TIFFIsTiled(tiff) != 0;
    layout.blockWidth = layout.tiled ? tag<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0) : width;
    layout.blockHeight = layout.tiled ? tag<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0)
                                      : std::min(tag<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, height), height);
    // A single tile may be somewhat larger than the largest picture, as tiles come in steps.
    const std::uint32_t limit = maximumPictureSide + 4096;
    if (layout.blockWidth == 0 || layout.blockHeight == 0 || layout.blockWidth > limit || layout.blockHeight > limit)
        file.failDamaged("impossible tile or strip size");
}

[[noreturn]] void failUnsupported(const InputFile& file, const std::string& what) {
    file.fail("is a TIFF with " + what, "save it as RGB of 8 or 16 bits or float, or as PNG or EXR");
}

void requireSupportedColour(const InputFile& file, const TiffLayout& layout) {
    switch (layout.photometric) {
        case PHOTOMETRIC_RGB:
        case PHOTOMETRIC_MINISBLACK:
        case PHOTOMETRIC_MINISWHITE:
        case PHOTOMETRIC_PALETTE:
            break;
        case PHOTOMETRIC_SEPARATED:
            failUnsupported(file, "CMYK colour");
        default:
            failUnsupported(file, "an unusual colour space");
    }
    if (layout.samples < layout.colours)
        file.failDamaged("too few samples for its colour space");
}

void requireSupportedSamples(const InputFile& file, const TiffLayout& layout) {
    const int bits = layout.bits;
    const bool whole = (layout.kind == SAMPLEFORMAT_UINT || layout.kind == SAMPLEFORMAT_VOID) &&
                       (bits == 1 || bits == 2 || bits == 4 || bits == 8 || bits == 16 || bits == 32);
    const bool floating = layout.kind == SAMPLEFORMAT_IEEEFP && (bits == 16 || bits == 32 || bits == 64);
    if (!whole && !floating)
        failUnsupported(file, "samples of an unusual kind (" + std::to_string(bits) + " bits)");
    if (layout.photometric == PHOTOMETRIC_PALETTE && (!whole || bits > 8))
        failUnsupported(file, "a palette of more than 256 colours");
}

}  // namespace

SampleFormat TiffLayout::format() const {
    if (kind == SAMPLEFORMAT_IEEEFP || bits == 32)
        return SampleFormat::Float32;
    return bits == 16 ? SampleFormat::UInt16 : SampleFormat::UInt8;
}

TiffLayout readTiffLayout(const InputFile& file, TIFF* tiff) {
    TiffLayout layout;
    layout.size = checkedSize(file, tag<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0),
                              tag<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0));
    layout.orientation = tag<std::uint16_t>(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    readSamples(tiff, layout);
    readAlpha(tiff, layout);
    readBlockSize(file, tiff, layout);
    requireSupportedColour(file, layout);
    requireSupportedSamples(file, layout);
    if (TIFFIsCODECConfigured(layout.compression) == 0)
        failUnsupported(file, "an unknown compression");
    return layout;
}

}  // namespace TessavoyHost
