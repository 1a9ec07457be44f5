#include <algorithm>

#include "Host/ImageFiles/Formats.h"
#include "Host/ImageFiles/RowConversion.h"
#include "Host/ImageFiles/StraightAlpha.h"
#include "Host/ImageFiles/TiffFile.h"
#include "Host/ImageFiles/TiffRows.h"

namespace TessavoyHost {

namespace {

// How many decoded bytes a stored byte stands for at most; far too much where it isn't known.
std::uint64_t largestExpansion(int compression) {
    switch (compression) {
        case COMPRESSION_NONE:
            return 1;
        case COMPRESSION_PACKBITS:
            return 64;
        case COMPRESSION_DEFLATE:
        case COMPRESSION_ADOBE_DEFLATE:
            return 1032;
        case COMPRESSION_LZW:
            return 4096;
        default:
            return 1 << 20;
    }
}

class TiffReader {
public:
    explicit TiffReader(InputFile& file) : mFile(file), mTiff(file) {
        if (mTiff.get() == nullptr)
            mFile.failDamaged(mTiff.message());
    }

    ImageSize readSize() {
        const TiffLayout layout = readTiffLayout(mFile, tiff());
        if (layout.turned())
            return {layout.size.height, layout.size.width};
        return layout.size;
    }

    Image readPixels() {
        mLayout = readTiffLayout(mFile, tiff());
        requireWholeBlocks();
        Image image = newImage(mLayout.size, mLayout.format());
        if (mLayout.alpha < 0)
            setFullAlpha(image);
        mBlock.resize(static_cast<std::size_t>(mLayout.tiled ? TIFFTileSize(tiff()) : TIFFStripSize(tiff())));
        for (int plane = 0; plane < (mLayout.separate ? mLayout.samples : 1); ++plane)
            readPlane(image, plane);
        if (mFile.endedEarly())
            mFile.failCutShort();  // tags at the end, which libtiff does without
        applyMeaning(image);
        return oriented(std::move(image), mLayout.orientation);
    }

private:
    TIFF* tiff() const { return mTiff.get(); }

    // Told before memory is taken for the picture: blocks that lie outside the file, and sizes that so few bytes can't
    // fill.
    void requireWholeBlocks() const {
        const std::uint32_t count = mLayout.tiled ? TIFFNumberOfTiles(tiff()) : TIFFNumberOfStrips(tiff());
        std::uint64_t stored = 0;
        for (std::uint32_t block = 0; block < count; ++block) {
            const std::uint64_t from = TIFFGetStrileOffset(tiff(), block);
            const std::uint64_t bytes = TIFFGetStrileByteCount(tiff(), block);
            if (bytes == 0 || from > mFile.size() || bytes > mFile.size() - from)
                mFile.failCutShort();
            stored += bytes;
        }
        if (decodedBytes() / largestExpansion(mLayout.compression) > stored)
            mFile.failCutShort();
    }

    std::uint64_t decodedBytes() const {
        if (mLayout.tiled)
            return static_cast<std::uint64_t>(TIFFTileSize(tiff())) * TIFFNumberOfTiles(tiff());
        const auto planes = static_cast<std::uint64_t>(mLayout.separate ? mLayout.samples : 1);
        return static_cast<std::uint64_t>(TIFFScanlineSize(tiff())) * static_cast<std::uint64_t>(mLayout.size.height) *
               planes;
    }

    void readPlane(Image& image, int plane) {
        TiffRows rows(mLayout);
        const auto width = static_cast<std::uint32_t>(image.width);
        const auto height = static_cast<std::uint32_t>(image.height);
        const auto rowBytes =
            static_cast<std::size_t>(mLayout.tiled ? TIFFTileRowSize(tiff()) : TIFFScanlineSize(tiff()));
        for (std::uint32_t top = 0; top < height; top += mLayout.blockHeight)
            for (std::uint32_t left = 0; left < width; left += mLayout.blockWidth) {
                const std::uint32_t rowCount = std::min(mLayout.blockHeight, height - top);
                readBlock(left, top, rowCount, static_cast<std::uint16_t>(plane));
                const auto columns = static_cast<int>(std::min(mLayout.blockWidth, width - left));
                for (std::uint32_t row = 0; row < rowCount; ++row)
                    rows.store(image, static_cast<int>(left), static_cast<int>(top + row), columns,
                               mBlock.data() + row * rowBytes, plane);
            }
    }

    void readBlock(std::uint32_t left, std::uint32_t top, std::uint32_t rowCount, std::uint16_t plane) {
        const tmsize_t wanted = mLayout.tiled ? TIFFTileSize(tiff()) : TIFFVStripSize(tiff(), rowCount);
        const tmsize_t got =
            mLayout.tiled
                ? TIFFReadEncodedTile(tiff(), TIFFComputeTile(tiff(), left, top, 0, plane), mBlock.data(), wanted)
                : TIFFReadEncodedStrip(tiff(), TIFFComputeStrip(tiff(), top, plane), mBlock.data(), wanted);
        if (got != wanted)
            mFile.failDamaged(mTiff.message().empty() ? "a strip or tile is too short" : mTiff.message());
    }

    // What the stored numbers stand for.
    void applyMeaning(Image& image) const {
        if (mLayout.photometric == PHOTOMETRIC_PALETTE) {
            std::uint16_t *red = nullptr, *green = nullptr, *blue = nullptr;
            if (TIFFGetField(tiff(), TIFFTAG_COLORMAP, &red, &green, &blue) != 1)
                mFile.failDamaged("the palette is missing");
            applyPalette(image, mLayout.bits, red, green, blue);
        }
        if (mLayout.photometric == PHOTOMETRIC_MINISWHITE)
            invertColour(image);
        if (mLayout.associated)
            makeStraight(image);
    }

    InputFile& mFile;
    TiffFile mTiff;
    TiffLayout mLayout;
    std::vector<std::byte> mBlock;
};

constexpr std::uint64_t bytesOfAStrip = std::uint64_t{256} * 1024;
constexpr std::uint64_t largestPlainTiff = 0xf0000000;  // beyond that, 32-bit offsets may not do

class TiffWriter {
public:
    TiffWriter(AtomicFile& file, const PixelView& pixels)
        : mFile(file),
          mPixels(pixels),
          mRowBytes(static_cast<std::size_t>(pixels.width) * static_cast<std::size_t>(pixels.bitsPerChannel) / 2),
          mTiff(file, mRowBytes * static_cast<std::uint64_t>(pixels.height) > largestPlainTiff) {
        if (mTiff.get() == nullptr)
            fail();
    }

    void write(const FrameMetadata& metadata) {
        const int stripRows = static_cast<int>(std::max<std::uint64_t>(1, bytesOfAStrip / mRowBytes));
        setTags(metadata, stripRows);
        mStrip.resize(static_cast<std::size_t>(stripRows) * mRowBytes);
        std::uint32_t strip = 0;
        for (int y = 0; y < mPixels.height; y += stripRows, ++strip)
            writeStrip(strip, y, std::min(stripRows, mPixels.height - y));
        if (!mTiff.close())
            fail();
    }

private:
    template <class... Values>
    void set(std::uint32_t name, Values... values) {
        if (TIFFSetField(mTiff.get(), name, values...) != 1)
            fail();
    }

    void setTags(const FrameMetadata& metadata, int stripRows) {
        const bool floating = mPixels.bitsPerChannel == 32;
        set(TIFFTAG_IMAGEWIDTH, mPixels.width);
        set(TIFFTAG_IMAGELENGTH, mPixels.height);
        set(TIFFTAG_BITSPERSAMPLE, mPixels.bitsPerChannel);
        set(TIFFTAG_SAMPLEFORMAT, floating ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
        set(TIFFTAG_SAMPLESPERPIXEL, 4);
        set(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
        set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
        const std::uint16_t straight = EXTRASAMPLE_UNASSALPHA;
        set(TIFFTAG_EXTRASAMPLES, 1, &straight);
        set(TIFFTAG_ROWSPERSTRIP, stripRows);
        set(TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
        set(TIFFTAG_ZIPQUALITY, 1);  // smaller and faster than LZW; higher levels gain little
        set(TIFFTAG_PREDICTOR, floating ? PREDICTOR_NONE : PREDICTOR_HORIZONTAL);
        set(TIFFTAG_SOFTWARE, metadata.software.c_str());
        set(TIFFTAG_IMAGEDESCRIPTION, ("Frame " + std::to_string(metadata.frame)).c_str());
    }

    void writeStrip(std::uint32_t strip, int top, int rows) {
        for (int row = 0; row < rows; ++row)
            convertRow(top + row, mStrip.data() + static_cast<std::size_t>(row) * mRowBytes);
        const auto bytes = static_cast<tmsize_t>(static_cast<std::size_t>(rows) * mRowBytes);
        if (TIFFWriteEncodedStrip(mTiff.get(), strip, mStrip.data(), bytes) != bytes)
            fail();
    }

    void convertRow(int y, std::byte* to) const {
        if (mPixels.bitsPerChannel == 8)
            rowToUInt8(mPixels, y, reinterpret_cast<std::uint8_t*>(to));
        else if (mPixels.bitsPerChannel == 16)
            rowToUInt16(mPixels, y, reinterpret_cast<std::uint16_t*>(to));
        else
            rowToFloat(mPixels, y, reinterpret_cast<float*>(to));
    }

    [[noreturn]] void fail() { mFile.fail("libtiff: " + mTiff.message()); }

    AtomicFile& mFile;
    const PixelView& mPixels;
    std::size_t mRowBytes;
    TiffFile mTiff;
    std::vector<std::byte> mStrip;
};

}  // namespace

ImageSize probeTiff(InputFile& file) {
    return TiffReader(file).readSize();
}

Image readTiff(InputFile& file) {
    return TiffReader(file).readPixels();
}

void writeTiff(AtomicFile& file, const PixelView& pixels, const FrameMetadata& metadata, int) {
    TiffWriter(file, pixels).write(metadata);
}

}  // namespace TessavoyHost
