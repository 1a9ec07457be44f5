#include <tiffio.h>

#include <map>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;
using Floats = std::vector<float>;

// A TIFF put together by hand: header, picture data at once after it, longer values, directory.
class HandMadeTiff {
public:
    explicit HandMadeTiff(const std::string& pixels, bool bigEndian = false) : mBigEndian(bigEndian) {
        mBytes = bigEndian ? std::string("MM\0*\0\0\0\0", 8) : std::string("II*\0\0\0\0\0", 8);
        mBytes += pixels;
        tag(TIFFTAG_STRIPOFFSETS, 4, {8});
        tag(TIFFTAG_STRIPBYTECOUNTS, 4, {static_cast<std::uint32_t>(pixels.size())});
    }

    // type: 3 for 16 bits, 4 for 32 bits.
    HandMadeTiff& tag(std::uint16_t name, std::uint16_t type, const std::vector<std::uint32_t>& values) {
        std::string data;
        for (const std::uint32_t value : values)
            data += type == 3 ? word(static_cast<std::uint16_t>(value)) : longWord(value);
        const std::string count = longWord(static_cast<std::uint32_t>(values.size()));
        if (data.size() > 4) {
            mBytes += mBytes.size() % 2 == 0 ? "" : std::string(1, '\0');
            const auto offset = static_cast<std::uint32_t>(mBytes.size());
            mBytes += data;
            data = longWord(offset);
        }
        data.resize(4);
        mEntries[name] = word(name) + word(type) + count + data;
        return *this;
    }
    HandMadeTiff& size(std::uint32_t width, std::uint32_t height) {
        return tag(TIFFTAG_IMAGEWIDTH, 4, {width}).tag(TIFFTAG_IMAGELENGTH, 4, {height});
    }
    HandMadeTiff& samples(std::uint32_t count, std::uint32_t bits, std::uint32_t photometric) {
        return tag(TIFFTAG_SAMPLESPERPIXEL, 3, {count})
            .tag(TIFFTAG_BITSPERSAMPLE, 3, std::vector<std::uint32_t>(count, bits))
            .tag(TIFFTAG_PHOTOMETRIC, 3, {photometric});
    }

    std::string bytes() const {
        std::string result = mBytes + (mBytes.size() % 2 == 0 ? "" : std::string(1, '\0'));
        result.replace(4, 4, longWord(static_cast<std::uint32_t>(result.size())));
        result += word(static_cast<std::uint16_t>(mEntries.size()));
        for (const auto& [name, entry] : mEntries)
            result += entry;
        return result + longWord(0);
    }
    Image read() const {
        const TestFolder folder;
        return readImage(writeBytes(folder / "made.tif", bytes()));
    }
    std::string told() const {
        const TestFolder folder;
        return toldByReading(writeBytes(folder / "made.tif", bytes())).text;
    }

private:
    std::string word(std::uint16_t value) const {
        const char low = static_cast<char>(value), high = static_cast<char>(value >> 8);
        return mBigEndian ? std::string{high, low} : std::string{low, high};
    }
    std::string longWord(std::uint32_t value) const {
        const std::string low = word(static_cast<std::uint16_t>(value)),
                          high = word(static_cast<std::uint16_t>(value >> 16));
        return mBigEndian ? high + low : low + high;
    }

    bool mBigEndian;
    std::string mBytes;
    std::map<std::uint16_t, std::string> mEntries;
};

std::string text(std::initializer_list<int> bytes) {
    std::string result;
    for (const int byte : bytes)
        result += static_cast<char>(byte);
    return result;
}

TEST(ImageFilesTiff, ReadsOneBitGreyBothWays) {
    // 10 columns take two bytes a row: 1010000001 and 0000000000.
    const auto made = [](std::uint32_t photometric) {
        return samplesOf<std::uint8_t>(
            HandMadeTiff(text({0xa0, 0x40, 0, 0})).size(10, 2).samples(1, 1, photometric).read());
    };
    const Bytes black = made(PHOTOMETRIC_MINISBLACK), white = made(PHOTOMETRIC_MINISWHITE);
    const Bytes firstRow{255, 0, 255, 0, 0, 0, 0, 0, 0, 255};
    for (std::size_t x = 0; x < 10; ++x) {
        EXPECT_EQ(black[4 * x], firstRow[x]) << x;
        EXPECT_EQ(white[4 * x + 2], 255 - firstRow[x]) << x;
        EXPECT_EQ(white[4 * x + 3], 255) << x;
        EXPECT_EQ(black[40 + 4 * x], 0) << x;
    }
}

TEST(ImageFilesTiff, SpreadsFewBitsToWhite) {
    EXPECT_EQ(samplesOf<std::uint8_t>(HandMadeTiff(text({0x1b})).size(4, 1).samples(1, 2, 1).read()),
              (Bytes{0, 0, 0, 255, 85, 85, 85, 255, 170, 170, 170, 255, 255, 255, 255, 255}));
    EXPECT_EQ(samplesOf<std::uint8_t>(HandMadeTiff(text({0x2f})).size(2, 1).samples(1, 4, 1).read()),
              (Bytes{34, 34, 34, 255, 255, 255, 255, 255}));
}

TEST(ImageFilesTiff, ReadsPalettesOfSixteenAndOfEightBitColours) {
    const auto made = [](std::uint32_t factor) {
        std::vector<std::uint32_t> map(3 * 16, 0);
        map[1] = 10 * factor, map[16 + 1] = 20 * factor, map[32 + 1] = 255 * factor;
        HandMadeTiff tiff(text({0x10}));
        return samplesOf<std::uint8_t>(
            tiff.size(2, 1).samples(1, 4, PHOTOMETRIC_PALETTE).tag(TIFFTAG_COLORMAP, 3, map).read());
    };
    const Bytes expected{10, 20, 255, 255, 0, 0, 0, 255};
    EXPECT_EQ(made(257), expected);
    EXPECT_EQ(made(1), expected);
}

TEST(ImageFilesTiff, ReadsEightBitRgb) {
    EXPECT_EQ(samplesOf<std::uint8_t>(HandMadeTiff(text({1, 2, 3, 4, 5, 6})).size(1, 2).samples(3, 8, 2).read()),
              (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
}

TEST(ImageFilesTiff, ReadsBothByteOrders) {
    const Words expected{0x0102, 0x0304, 0x0506, 0xffff};
    EXPECT_EQ(samplesOf<std::uint16_t>(HandMadeTiff(text({2, 1, 4, 3, 6, 5})).size(1, 1).samples(3, 16, 2).read()),
              expected);
    EXPECT_EQ(
        samplesOf<std::uint16_t>(HandMadeTiff(text({1, 2, 3, 4, 5, 6}), true).size(1, 1).samples(3, 16, 2).read()),
        expected);
}

TEST(ImageFilesTiff, ReadsWholeNumbersOf32BitsAsFractions) {
    const Image image = HandMadeTiff(text({0xff, 0xff, 0xff, 0xff, 0, 0, 0, 0x80})).size(2, 1).samples(1, 32, 1).read();
    EXPECT_EQ(image.format, SampleFormat::Float32);
    EXPECT_EQ(samplesOf<float>(image)[0], 1.0f);
    EXPECT_EQ(samplesOf<float>(image)[4], 0.5f);
}

TEST(ImageFilesTiff, ReadsHalfSingleAndDoubleFloats) {
    const auto made = [](const std::string& pixels, std::uint32_t bits) {
        HandMadeTiff tiff(pixels);
        tiff.size(1, 1).samples(1, bits, 1).tag(TIFFTAG_SAMPLEFORMAT, 3, {SAMPLEFORMAT_IEEEFP});
        return samplesOf<float>(tiff.read());
    };
    EXPECT_EQ(made(text({0x00, 0xc1}), 16), (Floats{-2.5f, -2.5f, -2.5f, 1.0f}));
    EXPECT_EQ(made(text({0, 0, 0x20, 0xc0}), 32), (Floats{-2.5f, -2.5f, -2.5f, 1.0f}));
    EXPECT_EQ(made(text({0, 0, 0, 0, 0, 0, 4, 0xc0}), 64), (Floats{-2.5f, -2.5f, -2.5f, 1.0f}));
}

TEST(ImageFilesTiff, DividesAssociatedAlphaOnly) {
    const std::string pixels = text({50, 25, 10, 100, 90, 90, 90, 0, 200, 1, 0, 100});
    const auto made = [&](std::uint32_t kind) {
        HandMadeTiff tiff(pixels);
        return samplesOf<std::uint8_t>(tiff.size(3, 1).samples(4, 8, 2).tag(TIFFTAG_EXTRASAMPLES, 3, {kind}).read());
    };
    // 50 * 255 / 100 = 127.5, 25 -> 63.75, 10 -> 25.5, 200 -> beyond 255, 1 -> 2.55; alpha 0 leaves the colour alone.
    EXPECT_EQ(made(EXTRASAMPLE_ASSOCALPHA), (Bytes{128, 64, 26, 100, 90, 90, 90, 0, 255, 3, 0, 100}));
    const Bytes asStored(pixels.begin(), pixels.end());
    EXPECT_EQ(made(EXTRASAMPLE_UNASSALPHA), asStored);
    EXPECT_EQ(made(EXTRASAMPLE_UNSPECIFIED), asStored);
}

TEST(ImageFilesTiff, DividesAssociatedAlphaOfSixteenBits) {
    HandMadeTiff tiff(text({0x00, 0x20, 0xff, 0x3f, 0, 0, 0x00, 0x40}));
    const Image image = tiff.size(1, 1).samples(4, 16, 2).tag(TIFFTAG_EXTRASAMPLES, 3, {EXTRASAMPLE_ASSOCALPHA}).read();
    // 8192 * 65535 / 16384 = 32767.5; 16383 * 65535 / 16384 = 65531.0001
    EXPECT_EQ(samplesOf<std::uint16_t>(image), (Words{32768, 65531, 0, 16384}));
}

TEST(ImageFilesTiff, FindsAlphaAmongOtherSamples) {
    HandMadeTiff tiff(text({1, 2, 3, 99, 4}));
    tiff.size(1, 1).samples(5, 8, 2).tag(TIFFTAG_EXTRASAMPLES, 3, {EXTRASAMPLE_UNSPECIFIED, EXTRASAMPLE_UNASSALPHA});
    EXPECT_EQ(samplesOf<std::uint8_t>(tiff.read()), (Bytes{1, 2, 3, 4}));
}

TEST(ImageFilesTiff, ReadsGreyWithAlpha) {
    HandMadeTiff tiff(text({60, 7}));
    tiff.size(1, 1).samples(2, 8, 1).tag(TIFFTAG_EXTRASAMPLES, 3, {EXTRASAMPLE_UNASSALPHA});
    EXPECT_EQ(samplesOf<std::uint8_t>(tiff.read()), (Bytes{60, 60, 60, 7}));
}

// The stored rows are 1 2 3 and 4 5 6. What is seen follows from the names: the first row is at the named side, and the
// first column at the other one.
TEST(ImageFilesTiff, TurnsThePictureAsItIsToBeSeen) {
    const struct {
        std::uint32_t orientation;
        int width;
        Bytes seen;
    } cases[] = {{ORIENTATION_TOPLEFT, 3, {1, 2, 3, 4, 5, 6}},  {ORIENTATION_TOPRIGHT, 3, {3, 2, 1, 6, 5, 4}},
                 {ORIENTATION_BOTRIGHT, 3, {6, 5, 4, 3, 2, 1}}, {ORIENTATION_BOTLEFT, 3, {4, 5, 6, 1, 2, 3}},
                 {ORIENTATION_LEFTTOP, 2, {1, 4, 2, 5, 3, 6}},  {ORIENTATION_RIGHTTOP, 2, {4, 1, 5, 2, 6, 3}},
                 {ORIENTATION_RIGHTBOT, 2, {6, 3, 5, 2, 4, 1}}, {ORIENTATION_LEFTBOT, 2, {3, 6, 2, 5, 1, 4}}};
    const TestFolder folder;
    for (const auto& [orientation, width, seen] : cases) {
        HandMadeTiff tiff(text({1, 2, 3, 4, 5, 6}));
        tiff.size(3, 2).samples(1, 8, 1).tag(TIFFTAG_ORIENTATION, 3, {orientation});
        const auto path = writeBytes(folder / "turned.tif", tiff.bytes());
        const Image image = readImage(path);
        EXPECT_EQ(image.width, width) << orientation;
        EXPECT_EQ(probeImage(path).width, width) << orientation;
        EXPECT_EQ(probeImage(path).height, 6 / width) << orientation;
        for (std::size_t pixel = 0; pixel < 6; ++pixel)
            EXPECT_EQ(samplesOf<std::uint8_t>(image)[4 * pixel], seen[pixel]) << orientation << " " << pixel;
    }
}

TEST(ImageFilesTiff, RefusesWhatItCannotRead) {
    const std::string remedy = "; save it as RGB of 8 or 16 bits or float, or as PNG or EXR";
    const std::string pixels(64, '\1');
    const auto told = [&](std::uint32_t count, std::uint32_t bits, std::uint32_t photometric, std::uint32_t kind) {
        HandMadeTiff tiff(pixels);
        const std::string all =
            tiff.size(1, 1).samples(count, bits, photometric).tag(TIFFTAG_SAMPLEFORMAT, 3, {kind}).told();
        return all.substr(all.find("made.tif") + 8);
    };
    EXPECT_EQ(told(4, 8, PHOTOMETRIC_SEPARATED, 1), ": is a TIFF with CMYK colour" + remedy);
    EXPECT_EQ(told(3, 8, PHOTOMETRIC_CIELAB, 1), ": is a TIFF with an unusual colour space" + remedy);
    EXPECT_EQ(told(1, 12, 1, 1), ": is a TIFF with samples of an unusual kind (12 bits)" + remedy);
    EXPECT_EQ(told(1, 16, 1, 2), ": is a TIFF with samples of an unusual kind (16 bits)" + remedy);
    EXPECT_EQ(told(2, 8, PHOTOMETRIC_RGB, 1),
              ": can't be read (too few samples for its colour space); make the file again");
}

TEST(ImageFilesTiff, RefusesPalettesOfMoreThan256Colours) {
    HandMadeTiff tiff(text({1, 0}));
    tiff.size(1, 1)
        .samples(1, 16, PHOTOMETRIC_PALETTE)
        .tag(TIFFTAG_COLORMAP, 3, std::vector<std::uint32_t>(3 * 65536, 7));
    EXPECT_NE(tiff.told().find(": is a TIFF with a palette of more than 256 colours; save it as"), std::string::npos);
}

TEST(ImageFilesTiff, RefusesHugeSizesBeforeTakingMemory) {
    const std::string small(8, '\1');
    EXPECT_NE(HandMadeTiff(small).size(2, 40000).samples(1, 8, 1).told().find("has 2 x 40000 pixels; scale it down"),
              std::string::npos);
    EXPECT_NE(HandMadeTiff(small).size(30000, 30000).samples(4, 32, 2).told().find("ends before the picture"),
              std::string::npos);
    EXPECT_NE(HandMadeTiff(small).size(0, 4).samples(1, 8, 1).told().find("can't be read"), std::string::npos);
}

// --- Through libtiff's own writer: every layout and compression must give the same picture.

struct Layout {
    bool tiled, separate;
    int compression, predictor;
    const char* mode;
};

constexpr int width = 37, height = 29;  // no multiple of a tile or strip

template <class Sample>
Sample sampleAt(int x, int y, int channel) {
    return static_cast<Sample>(x * 5 + y * 3 + channel * 11);
}

template <class Sample>
void writeBlock(TIFF* tiff, const Layout& layout, std::uint32_t index, int left, int top, int columns, int rows,
                int plane) {
    std::vector<Sample> block;
    for (int y = top; y < top + rows; ++y)
        for (int x = left; x < left + columns; ++x)
            for (int channel = layout.separate ? plane : 0; channel < (layout.separate ? plane + 1 : 4); ++channel)
                block.push_back(sampleAt<Sample>(x, y, channel));
    const auto bytes = static_cast<tmsize_t>(block.size() * sizeof(Sample));
    const tmsize_t written = layout.tiled ? TIFFWriteEncodedTile(tiff, index, block.data(), bytes)
                                          : TIFFWriteEncodedStrip(tiff, index, block.data(), bytes);
    ASSERT_EQ(written, bytes);
}

template <class Sample>
void writeWithLibrary(const std::filesystem::path& path, const Layout& layout) {
    TIFF* tiff = TIFFOpen(path.c_str(), layout.mode);
    ASSERT_NE(tiff, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, static_cast<int>(sizeof(Sample) * 8));
    TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT,
                 std::is_floating_point_v<Sample> ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    const std::uint16_t straight = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &straight);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, layout.separate ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, layout.compression);
    if (layout.predictor != PREDICTOR_NONE)
        TIFFSetField(tiff, TIFFTAG_PREDICTOR, layout.predictor);
    const int across = 16, down = layout.tiled ? 16 : 5;
    if (layout.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, across);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, down);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, down);
    }
    std::uint32_t index = 0;
    for (int plane = 0; plane < (layout.separate ? 4 : 1); ++plane)
        for (int top = 0; top < height; top += down)
            for (int left = 0; left < width; left += layout.tiled ? across : width)
                writeBlock<Sample>(tiff, layout, index++, left, top, layout.tiled ? across : width,
                                   layout.tiled ? down : std::min(down, height - top), plane);
    TIFFClose(tiff);
}

template <class Sample>
void expectSamePicture(const std::filesystem::path& path, const std::string& name) {
    const Image image = readImage(path);
    ASSERT_EQ(image.width, width);
    ASSERT_EQ(image.height, height);
    for (int y = 0; y < height; ++y)
        for (int i = 0; i < width * 4; ++i)
            ASSERT_EQ(image.row<Sample>(y)[i], sampleAt<Sample>(i / 4, y, i % 4)) << name << " at row " << y;
}

template <class Sample>
void checkAllLayouts() {
    const TestFolder folder;
    const int predictor = std::is_floating_point_v<Sample> ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL;
    for (const bool tiled : {false, true})
        for (const bool separate : {false, true})
            for (const int compression :
                 {COMPRESSION_NONE, COMPRESSION_PACKBITS, COMPRESSION_LZW, COMPRESSION_ADOBE_DEFLATE})
                for (const char* mode : {"wl", "wb", "wl8"}) {
                    // libtiff 4.5 doesn't write predicted floats of the other byte order right.
                    const bool foreign = std::is_floating_point_v<Sample> && mode == std::string("wb");
                    const bool predicted =
                        !foreign && (compression == COMPRESSION_LZW || compression == COMPRESSION_ADOBE_DEFLATE);
                    const Layout layout{tiled, separate, compression, predicted ? predictor : PREDICTOR_NONE, mode};
                    writeWithLibrary<Sample>(folder / "layout.tif", layout);
                    expectSamePicture<Sample>(folder / "layout.tif", std::string(tiled ? "tiles " : "strips ") +
                                                                         (separate ? "planes " : "together ") +
                                                                         std::to_string(compression) + " " + mode);
                }
}

TEST(ImageFilesTiff, ReadsEveryLayoutOf8Bits) {
    checkAllLayouts<std::uint8_t>();
}
TEST(ImageFilesTiff, ReadsEveryLayoutOf16Bits) {
    checkAllLayouts<std::uint16_t>();
}
TEST(ImageFilesTiff, ReadsEveryLayoutOfFloats) {
    checkAllLayouts<float>();
}

TEST(ImageFilesTiff, ReadsJpegDataAsRgb) {
    const TestFolder folder;
    TIFF* tiff = TIFFOpen((folder / "jpeg.tif").c_str(), "w");
    for (const auto& [name, value] : std::map<std::uint32_t, int>{{TIFFTAG_IMAGEWIDTH, 16},
                                                                  {TIFFTAG_IMAGELENGTH, 16},
                                                                  {TIFFTAG_SAMPLESPERPIXEL, 3},
                                                                  {TIFFTAG_BITSPERSAMPLE, 8},
                                                                  {TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_YCBCR},
                                                                  {TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG},
                                                                  {TIFFTAG_COMPRESSION, COMPRESSION_JPEG},
                                                                  {TIFFTAG_ROWSPERSTRIP, 16}})
        TIFFSetField(tiff, name, value);
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    Bytes pixels;
    for (int pixel = 0; pixel < 256; ++pixel)
        pixels.insert(pixels.end(), {200, 60, 20});
    ASSERT_GT(TIFFWriteEncodedStrip(tiff, 0, pixels.data(), 768), 0);
    TIFFClose(tiff);
    const Bytes read = samplesOf<std::uint8_t>(readImage(folder / "jpeg.tif"));
    ASSERT_EQ(read.size(), 1024u);
    for (std::size_t pixel = 0; pixel < 256; ++pixel) {
        EXPECT_NEAR(read[4 * pixel], 200, 3);
        EXPECT_NEAR(read[4 * pixel + 1], 60, 3);
        EXPECT_NEAR(read[4 * pixel + 2], 20, 3);
        EXPECT_EQ(read[4 * pixel + 3], 255);
    }
}

// --- What is written, as libtiff reads it.

struct RawTiff {
    std::uint16_t bits = 0, kind = 0, photometric = 0, samples = 0, orientation = 0, extraCount = 0, extra = 9;
    std::string software, description;
    std::string pixels;
};

RawTiff rawTiff(const std::filesystem::path& path) {
    RawTiff raw;
    TIFF* tiff = TIFFOpen(path.c_str(), "r");
    std::uint32_t rows = 0;
    std::uint16_t* extras = nullptr;
    char* value = nullptr;
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &rows);
    TIFFGetField(tiff, TIFFTAG_BITSPERSAMPLE, &raw.bits);
    TIFFGetField(tiff, TIFFTAG_SAMPLEFORMAT, &raw.kind);
    TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &raw.photometric);
    TIFFGetField(tiff, TIFFTAG_SAMPLESPERPIXEL, &raw.samples);
    TIFFGetField(tiff, TIFFTAG_ORIENTATION, &raw.orientation);
    if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &raw.extraCount, &extras) == 1)
        raw.extra = extras[0];
    if (TIFFGetField(tiff, TIFFTAG_SOFTWARE, &value) == 1)
        raw.software = value;
    if (TIFFGetField(tiff, TIFFTAG_IMAGEDESCRIPTION, &value) == 1)
        raw.description = value;
    const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize(tiff));
    raw.pixels.resize(rowBytes * rows);
    for (std::uint32_t y = 0; y < rows; ++y)
        TIFFReadScanline(tiff, raw.pixels.data() + y * rowBytes, y, 0);
    TIFFClose(tiff);
    return raw;
}

template <class Sample>
std::vector<Sample> pixelsOf(const RawTiff& raw) {
    std::vector<Sample> samples(raw.pixels.size() / sizeof(Sample));
    std::memcpy(samples.data(), raw.pixels.data(), raw.pixels.size());
    return samples;
}

TEST(ImageFilesTiff, WritesEightBitsStraight) {
    const TestFolder folder;
    const TestWorld<std::uint8_t> world(2, 2, {1, 2, 3, 4, 5, 6, 7, 8, 0, 10, 11, 12, 255, 14, 15, 16});
    writeImage(folder / "a.tif", FileFormat::Tiff, world.view(), {41, "Tool 1.0"}, 1);
    const RawTiff raw = rawTiff(folder / "a.tif");
    EXPECT_EQ(pixelsOf<std::uint8_t>(raw), (Bytes{2, 3, 4, 1, 6, 7, 8, 5, 10, 11, 12, 0, 14, 15, 16, 255}));
    EXPECT_EQ(raw.bits, 8);
    EXPECT_EQ(raw.kind, SAMPLEFORMAT_UINT);
    EXPECT_EQ(raw.photometric, PHOTOMETRIC_RGB);
    EXPECT_EQ(raw.samples, 4);
    EXPECT_EQ(raw.orientation, ORIENTATION_TOPLEFT);
    EXPECT_EQ(raw.extraCount, 1);
    EXPECT_EQ(raw.extra, EXTRASAMPLE_UNASSALPHA);
    EXPECT_EQ(raw.software, "Tool 1.0");
    EXPECT_EQ(raw.description, "Frame 41");
}

TEST(ImageFilesTiff, SpreadsWorldsOfSixteenBits) {
    const TestFolder folder;
    const TestWorld<std::uint16_t> world(2, 1, {0, 1, 3, 8192, 32768, 16384, 24576, 40000});
    writeImage(folder / "a.tif", FileFormat::Tiff, world.view(), {}, 1);
    EXPECT_EQ(pixelsOf<std::uint16_t>(rawTiff(folder / "a.tif")), (Words{2, 6, 16384, 0, 32768, 49151, 65535, 65535}));
}

TEST(ImageFilesTiff, WritesFloatsAsTheyAre) {
    const TestFolder folder;
    const TestWorld<float> world(2, 1, {0.5f, -1.0f, 7.25f, 1e-20f, 0.0f, 0.1f, 0.2f, 0.3f});
    writeImage(folder / "a.tif", FileFormat::Tiff, world.view(), {}, 1);
    const RawTiff raw = rawTiff(folder / "a.tif");
    EXPECT_EQ(raw.bits, 32);
    EXPECT_EQ(raw.kind, SAMPLEFORMAT_IEEEFP);
    EXPECT_EQ(pixelsOf<float>(raw), (Floats{-1.0f, 7.25f, 1e-20f, 0.5f, 0.1f, 0.2f, 0.3f, 0.0f}));
}

TEST(ImageFilesTiff, WritesPicturesOfSeveralStrips) {
    const TestFolder folder;
    const TestWorld<std::uint8_t> world = noiseWorld(400, 401);  // 641600 bytes
    writeImage(folder / "a.tif", FileFormat::Tiff, world.view(), {}, 1);
    const Bytes pixels = pixelsOf<std::uint8_t>(rawTiff(folder / "a.tif"));
    for (int y = 0; y < 401; ++y)
        for (int x = 0; x < 400; ++x)
            for (int channel = 0; channel < 4; ++channel)
                ASSERT_EQ(pixels[static_cast<std::size_t>((y * 400 + x) * 4 + channel)],
                          world.view().row<std::uint8_t>(y)[4 * x + (channel + 1) % 4]);
}

}  // namespace
}  // namespace TessavoyHost
