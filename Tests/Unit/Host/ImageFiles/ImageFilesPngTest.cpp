#include <png.h>
#include <zlib.h>

#include <cmath>
#include <limits>
#include <map>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

std::string bigEndian(std::uint32_t value) {
    return {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
            static_cast<char>(value)};
}

std::string chunk(const std::string& name, const std::string& data) {
    const std::string body = name + data;
    const auto* bytes = reinterpret_cast<const Bytef*>(body.data());
    return bigEndian(static_cast<std::uint32_t>(data.size())) + body +
           bigEndian(static_cast<std::uint32_t>(crc32(0, bytes, static_cast<uInt>(body.size()))));
}

std::string deflated(const std::string& raw) {
    uLongf length = compressBound(raw.size());
    std::string packed(length, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &length, reinterpret_cast<const Bytef*>(raw.data()), raw.size());
    packed.resize(length);
    return packed;
}

// A PNG put together from its parts. Each row of `raw` begins with its filter byte.
struct PngParts {
    std::uint32_t width = 1, height = 1;
    char bits = 8, colour = 0, interlace = 0;
    std::string before = {};  // chunks between header and data
    std::string raw = {};

    std::string bytes() const {
        const std::string header = bigEndian(width) + bigEndian(height) + bits + colour + '\0' + '\0' + interlace;
        return "\x89PNG\r\n\x1a\n" + chunk("IHDR", header) + before + chunk("IDAT", deflated(raw)) + chunk("IEND", "");
    }
};

std::string text(std::initializer_list<int> bytes) {
    std::string result;
    for (const int byte : bytes)
        result += static_cast<char>(byte);
    return result;
}

Image readParts(const PngParts& parts) {
    const TestFolder folder;
    return readImage(writeBytes(folder / "made.png", parts.bytes()));
}

// What libpng itself says about a file, without any conversion.
struct RawPng {
    int bits = 0, colour = 0;
    std::vector<Bytes> rows;
    std::map<std::string, std::string> texts;
};

RawPng rawPng(const std::filesystem::path& path) {
    RawPng raw;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_read_png(png, info, PNG_TRANSFORM_IDENTITY, nullptr);
    raw.bits = png_get_bit_depth(png, info);
    raw.colour = png_get_color_type(png, info);
    for (png_uint_32 y = 0; y < png_get_image_height(png, info); ++y) {
        const png_bytep row = png_get_rows(png, info)[y];
        raw.rows.emplace_back(row, row + png_get_rowbytes(png, info));
    }
    png_textp texts = nullptr;
    int count = 0;
    png_get_text(png, info, &texts, &count);
    for (int i = 0; i < count; ++i)
        raw.texts[texts[i].key] = texts[i].text;
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
    return raw;
}

TEST(ImageFilesPng, SpreadsGreyAndGivesFullAlpha) {
    const Image image = readParts({.width = 2, .raw = text({0, 10, 200})});
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 1);
    EXPECT_EQ(image.format, SampleFormat::UInt8);
    EXPECT_EQ(samplesOf<std::uint8_t>(image), (Bytes{10, 10, 10, 255, 200, 200, 200, 255}));
}

TEST(ImageFilesPng, SpreadsGreyOfFewBitsToWhite) {
    const auto first = [](char bits, int packed) {
        return samplesOf<std::uint8_t>(readParts({.bits = bits, .raw = text({0, packed})}))[0];
    };
    EXPECT_EQ(first(1, 0x80), 255);
    EXPECT_EQ(first(2, 0x40), 85);
    EXPECT_EQ(first(4, 0x30), 51);
}

TEST(ImageFilesPng, KeepsGreyAlpha) {
    const Image image = readParts({.colour = 4, .raw = text({0, 90, 7})});
    EXPECT_EQ(samplesOf<std::uint8_t>(image), (Bytes{90, 90, 90, 7}));
}

TEST(ImageFilesPng, KeepsSixteenBits) {
    const Image image = readParts({.bits = 16, .colour = 2, .raw = text({0, 0x12, 0x34, 0xab, 0xcd, 0x00, 0x01})});
    EXPECT_EQ(image.format, SampleFormat::UInt16);
    EXPECT_EQ(samplesOf<std::uint16_t>(image), (Words{0x1234, 0xabcd, 0x0001, 0xffff}));
}

TEST(ImageFilesPng, ReadsPalettesWithTransparentEntries) {
    const std::string palette = chunk("PLTE", text({1, 2, 3, 40, 50, 60})) + chunk("tRNS", text({9}));
    const Image image = readParts({.width = 2, .bits = 1, .colour = 3, .before = palette, .raw = text({0, 0x40})});
    EXPECT_EQ(samplesOf<std::uint8_t>(image), (Bytes{1, 2, 3, 9, 40, 50, 60, 255}));
}

TEST(ImageFilesPng, MakesTheTransparentColourTransparent) {
    const PngParts grey{.width = 2, .before = chunk("tRNS", text({0, 5})), .raw = text({0, 5, 6})};
    EXPECT_EQ(samplesOf<std::uint8_t>(readParts(grey)), (Bytes{5, 5, 5, 0, 6, 6, 6, 255}));
    const PngParts wide{.bits = 16, .before = chunk("tRNS", text({1, 2})), .raw = text({0, 1, 2})};
    EXPECT_EQ(samplesOf<std::uint16_t>(readParts(wide)), (Words{0x0102, 0x0102, 0x0102, 0}));
}

TEST(ImageFilesPng, IgnoresTheGammaThatTheFileNames) {
    const PngParts parts{.before = chunk("gAMA", bigEndian(100000)), .raw = text({0, 128})};
    EXPECT_EQ(samplesOf<std::uint8_t>(readParts(parts))[0], 128);
}

TEST(ImageFilesPng, ReadsInterlacedPictures) {
    // Of a picture of 3 x 3, pass 1 holds (0,0), pass 4 (2,0), pass 5 (0,2) and (2,2), pass 6 (1,0) and (1,2), pass 7
    // the middle row; the other passes are empty. The values count row by row.
    const std::string raw = text({0, 1, 0, 3, 0, 7, 9, 0, 2, 0, 8, 0, 4, 5, 6});
    const Image image = readParts({.width = 3, .height = 3, .interlace = 1, .raw = raw});
    for (int pixel = 0; pixel < 9; ++pixel)
        EXPECT_EQ(samplesOf<std::uint8_t>(image)[static_cast<std::size_t>(4 * pixel)], pixel + 1) << pixel;
}

TEST(ImageFilesPng, UndoesRowFilters) {
    const std::string raw = text({1, 10, 5, 2, 1, 1});  // left neighbour, then the row above
    const Image image = readParts({.width = 2, .height = 2, .raw = raw});
    EXPECT_EQ(samplesOf<std::uint8_t>(image),
              (Bytes{10, 10, 10, 255, 15, 15, 15, 255, 11, 11, 11, 255, 16, 16, 16, 255}));
}

TEST(ImageFilesPng, SurvivesADamagedChunkThatIsNotNeeded) {
    std::string damaged = chunk("gAMA", bigEndian(100000));
    damaged.back() ^= 1;
    EXPECT_EQ(samplesOf<std::uint8_t>(readParts({.before = damaged, .raw = text({0, 3})}))[0], 3);
}

TEST(ImageFilesPng, RefusesDamagedPictureData) {
    const TestFolder folder;
    std::string bytes = PngParts{.width = 2, .raw = text({0, 1, 2})}.bytes();
    bytes[bytes.size() - 12 - 5] ^= 1;  // the last data byte, before its check sum and the end chunk
    const Told told = toldByReading(writeBytes(folder / "bad.png", bytes));
    EXPECT_NE(told.text.find("bad.png: can't be read"), std::string::npos) << told.text;
    EXPECT_EQ(told.status, ExitStatus::Scene);
}

TEST(ImageFilesPng, RefusesHugeSizesBeforeTakingMemory) {
    const TestFolder folder;
    const auto wide = writeBytes(folder / "wide.png", PngParts{.width = 30001, .raw = text({0, 1})}.bytes());
    EXPECT_EQ(toldByReading(wide).text,
              wide.string() + ": has 30001 x 1 pixels; scale it down to 30000 x 30000 at most");
    const auto claim = writeBytes(folder / "claim.png",
                                  PngParts{.width = 30000, .height = 30000, .colour = 6, .raw = text({0})}.bytes());
    EXPECT_EQ(toldByReading(claim).text, claim.string() + ": ends before the picture is complete; make the file again");
    EXPECT_EQ(probeImage(claim).width, 30000);
}

TEST(ImageFilesPng, WritesEightBitsAsTheyAre) {
    const TestFolder folder;
    const TestWorld<std::uint8_t> world(2, 2, {1, 2, 3, 4, 5, 6, 7, 8, 0, 10, 11, 12, 255, 14, 15, 16});
    for (int level = 0; level <= 9; ++level) {
        writeImage(folder / "a.png", FileFormat::Png, world.view(), {7, "Tool 1.0"}, level);
        const RawPng raw = rawPng(folder / "a.png");
        EXPECT_EQ(raw.bits, 8);
        EXPECT_EQ(raw.colour, PNG_COLOR_TYPE_RGB_ALPHA);
        EXPECT_EQ(raw.rows, (std::vector<Bytes>{{2, 3, 4, 1, 6, 7, 8, 5}, {10, 11, 12, 0, 14, 15, 16, 255}})) << level;
    }
}

TEST(ImageFilesPng, SpreadsWorldsOfSixteenBits) {
    const TestFolder folder;
    // v * 65535 / 32768: 1.99997, 5.9999, 16383.75, 32767.5, 49151.25; above 32768 the picture is full.
    const TestWorld<std::uint16_t> world(2, 1, {0, 1, 3, 8192, 32768, 16384, 24576, 40000});
    writeImage(folder / "a.png", FileFormat::Png, world.view(), {}, 1);
    const RawPng raw = rawPng(folder / "a.png");
    EXPECT_EQ(raw.bits, 16);
    EXPECT_EQ(raw.rows[0], (Bytes{0, 2, 0, 6, 0x40, 0, 0, 0, 0x80, 0, 0xbf, 0xff, 0xff, 0xff, 0xff, 0xff}));
}

TEST(ImageFilesPng, CutsFloatsToSixteenBits) {
    const TestFolder folder;
    const float infinite = std::numeric_limits<float>::infinity();
    const TestWorld<float> world(2, 1, {1.0f, 0.5f, 0.25f, 1.5f, std::nanf(""), -1.0f, infinite, -infinite});
    writeImage(folder / "a.png", FileFormat::Png, world.view(), {}, 1);
    EXPECT_EQ(samplesOf<std::uint16_t>(readImage(folder / "a.png")),
              (Words{32768, 16384, 65535, 65535, 0, 65535, 0, 0}));
}

TEST(ImageFilesPng, TellsProgramAndFrame) {
    const TestFolder folder;
    writeImage(folder / "a.png", FileFormat::Png, noiseWorld(3, 3).view(), {-12, "Tool 1.2.3"}, 1);
    const std::map<std::string, std::string> expected{{"Software", "Tool 1.2.3"}, {"Frame", "-12"}};
    EXPECT_EQ(rawPng(folder / "a.png").texts, expected);
}

TEST(ImageFilesPng, TakesLevelsOutsideTheRangeAsTheNearest) {
    const TestFolder folder;
    const auto sizeAt = [&](int level) {
        writeImage(folder / "a.png", FileFormat::Png, TestWorld<std::uint8_t>(64, 64, Bytes(64 * 64 * 4)).view(), {},
                   level);
        return readBytes(folder / "a.png").size();
    };
    EXPECT_EQ(sizeAt(-5), sizeAt(0));
    EXPECT_EQ(sizeAt(99), sizeAt(9));
    EXPECT_GT(sizeAt(0), 64u * 64u * 4u);
    EXPECT_LT(sizeAt(1), 1000u);
}

}  // namespace
}  // namespace TessavoyHost
