#include <ImfChannelList.h>
#include <ImfDeepFrameBuffer.h>
#include <ImfDeepScanLineOutputFile.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>
#include <ImfIntAttribute.h>
#include <ImfOutputFile.h>
#include <ImfPartType.h>
#include <ImfStringAttribute.h>
#include <ImfTiledOutputFile.h>

#include <cmath>
#include <limits>
#include <map>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

using Floats = std::vector<float>;
using Imath::Box2i;
using Imath::V2i;
using Channels = std::map<std::string, Floats>;  // by name, rows of the data window from the top

constexpr float infinite = std::numeric_limits<float>::infinity();

int widthOf(const Box2i& window) {
    return window.max.x - window.min.x + 1;
}

Imf::FrameBuffer bufferOver(Channels& channels, const Box2i& data) {
    Imf::FrameBuffer buffer;
    for (auto& [name, values] : channels)
        buffer.insert(name, Imf::Slice::Make(Imf::FLOAT, values.data(), data, sizeof(float),
                                             sizeof(float) * static_cast<std::size_t>(widthOf(data))));
    return buffer;
}

// Writes float channels with OpenEXR's own writer.
void writeFloats(const std::filesystem::path& path, const Box2i& display, const Box2i& data, Channels channels,
                 Imf::Compression compression = Imf::ZIP_COMPRESSION) {
    Imf::Header header(display, data);
    header.compression() = compression;
    for (const auto& [name, values] : channels)
        header.channels().insert(name, Imf::Channel(Imf::FLOAT));
    Imf::OutputFile output(path.c_str(), header);
    output.setFrameBuffer(bufferOver(channels, data));
    output.writePixels(data.max.y - data.min.y + 1);
}

// A channel of a picture, as OpenEXR reads it.
Floats channelOf(const std::filesystem::path& path, const std::string& name) {
    Imf::InputFile input(path.c_str());
    const Box2i data = input.header().dataWindow();
    Channels channels{{name, Floats(static_cast<std::size_t>(widthOf(data) * (data.max.y - data.min.y + 1)))}};
    input.setFrameBuffer(bufferOver(channels, data));
    input.readPixels(data.min.y, data.max.y);
    return channels[name];
}

const Box2i onePixel(V2i(0, 0), V2i(0, 0));

TEST(ImageFilesExr, DividesByAlphaWhereItIsAboveZero) {
    const TestFolder folder;
    writeFloats(folder / "a.exr", {V2i(0, 0), V2i(3, 0)}, {V2i(0, 0), V2i(3, 0)},
                {{"R", {0.25f, 3.0f, 2.0f, 1.0f}},
                 {"G", {0.5f, 0.0f, -1.0f, 1.0f}},
                 {"B", {-1.0f, 7.0f, 0.0f, 1.0f}},
                 {"A", {0.5f, 0.0f, 4.0f, -0.5f}}});
    const Image image = readImage(folder / "a.exr");
    EXPECT_EQ(image.format, SampleFormat::Float32);
    EXPECT_EQ(samplesOf<float>(image), (Floats{0.5f, 1.0f, -2.0f, 0.5f, 3.0f, 0.0f, 7.0f, 0.0f, 0.5f, -0.25f, 0.0f,
                                               4.0f, 1.0f, 1.0f, 1.0f, -0.5f}));
}

TEST(ImageFilesExr, GivesFullAlphaAndBlackForMissingChannels) {
    const TestFolder folder;
    writeFloats(folder / "rgb.exr", onePixel, onePixel, {{"R", {2.0f}}, {"G", {3.0f}}, {"B", {4.0f}}});
    EXPECT_EQ(samplesOf<float>(readImage(folder / "rgb.exr")), (Floats{2.0f, 3.0f, 4.0f, 1.0f}));
    writeFloats(folder / "g.exr", onePixel, onePixel, {{"G", {3.0f}}, {"Z", {9.0f}}});
    EXPECT_EQ(samplesOf<float>(readImage(folder / "g.exr")), (Floats{0.0f, 3.0f, 0.0f, 1.0f}));
    writeFloats(folder / "a.exr", onePixel, onePixel, {{"A", {0.5f}}});
    EXPECT_EQ(samplesOf<float>(readImage(folder / "a.exr")), (Floats{0.0f, 0.0f, 0.0f, 0.5f}));
}

TEST(ImageFilesExr, SpreadsGrey) {
    const TestFolder folder;
    writeFloats(folder / "y.exr", onePixel, onePixel, {{"Y", {0.25f}}, {"A", {0.5f}}});
    EXPECT_EQ(samplesOf<float>(readImage(folder / "y.exr")), (Floats{0.5f, 0.5f, 0.5f, 0.5f}));
}

TEST(ImageFilesExr, ReadsHalfAndWholeNumberChannels) {
    const TestFolder folder;
    Imf::Header header(1, 1);
    header.channels().insert("R", Imf::Channel(Imf::HALF));
    header.channels().insert("G", Imf::Channel(Imf::UINT));
    half red = -1.5f;
    unsigned green = 12;
    {
        Imf::OutputFile output((folder / "mixed.exr").c_str(), header);
        Imf::FrameBuffer buffer;
        buffer.insert("R", Imf::Slice(Imf::HALF, reinterpret_cast<char*>(&red), 2, 2));
        buffer.insert("G", Imf::Slice(Imf::UINT, reinterpret_cast<char*>(&green), 4, 4));
        output.setFrameBuffer(buffer);
        output.writePixels(1);
    }
    EXPECT_EQ(samplesOf<float>(readImage(folder / "mixed.exr")), (Floats{-1.5f, 12.0f, 0.0f, 1.0f}));
}

TEST(ImageFilesExr, HasTheSizeOfTheDisplayWindow) {
    const TestFolder folder;
    // The display window is 4 x 3 from (10, 20); the data window 3 x 2 from (12, 19): its upper row and right column
    // lie outside, and (12, 20), (13, 20) are seen.
    writeFloats(folder / "part.exr", {V2i(10, 20), V2i(13, 22)}, {V2i(12, 19), V2i(14, 20)},
                {{"R", {1, 2, 3, 4, 5, 6}}, {"G", Floats(6, 0.5f)}, {"B", Floats(6, 0.25f)}});
    const Image image = readImage(folder / "part.exr");
    ASSERT_EQ(image.width, 4);
    ASSERT_EQ(image.height, 3);
    EXPECT_EQ(probeImage(folder / "part.exr").width, 4);
    EXPECT_EQ(probeImage(folder / "part.exr").height, 3);
    Floats expected(48, 0.0f);
    const Floats seen{4, 0.5f, 0.25f, 1, 5, 0.5f, 0.25f, 1};
    std::copy(seen.begin(), seen.end(), expected.begin() + 8);
    EXPECT_EQ(samplesOf<float>(image), expected);
}

TEST(ImageFilesExr, IsEmptyWhereTheWindowsDontMeet) {
    const TestFolder folder;
    writeFloats(folder / "away.exr", {V2i(0, 0), V2i(1, 0)}, {V2i(5, 0), V2i(5, 0)},
                {{"R", {1}}, {"G", {1}}, {"B", {1}}});
    EXPECT_EQ(samplesOf<float>(readImage(folder / "away.exr")), Floats(8, 0.0f));
}

TEST(ImageFilesExr, ReadsEveryCompressionOverSeveralBands) {
    const TestFolder folder;
    const Box2i window(V2i(-3, -70), V2i(9, 90));  // 13 x 161
    Floats values;
    for (int i = 0; i < 13 * 161; ++i)
        values.push_back(static_cast<float>(i % 50) / 64.0f);  // exact in the 24 bits that PXR24 keeps
    for (const Imf::Compression compression : {Imf::NO_COMPRESSION, Imf::RLE_COMPRESSION, Imf::ZIPS_COMPRESSION,
                                               Imf::ZIP_COMPRESSION, Imf::PIZ_COMPRESSION, Imf::PXR24_COMPRESSION}) {
        writeFloats(folder / "c.exr", window, window, {{"R", values}, {"G", values}, {"B", values}}, compression);
        const Image image = readImage(folder / "c.exr");
        ASSERT_EQ(image.width, 13);
        ASSERT_EQ(image.height, 161);
        for (std::size_t i = 0; i < values.size(); ++i)
            ASSERT_EQ(samplesOf<float>(image)[4 * i + 2], values[i]) << compression << " at " << i;
    }
}

TEST(ImageFilesExr, ReadsTiles) {
    const TestFolder folder;
    Imf::Header header(50, 70);
    header.setTileDescription(Imf::TileDescription(16, 32, Imf::ONE_LEVEL));
    header.channels().insert("G", Imf::Channel(Imf::FLOAT));
    Channels channels{{"G", Floats(50 * 70)}};
    for (std::size_t i = 0; i < channels["G"].size(); ++i)
        channels["G"][i] = static_cast<float>(i);
    {
        Imf::TiledOutputFile output((folder / "tiles.exr").c_str(), header);
        output.setFrameBuffer(bufferOver(channels, header.dataWindow()));
        output.writeTiles(0, output.numXTiles() - 1, 0, output.numYTiles() - 1);
    }
    const Floats read = samplesOf<float>(readImage(folder / "tiles.exr"));
    for (std::size_t i = 0; i < 50 * 70; ++i)
        ASSERT_EQ(read[4 * i + 1], static_cast<float>(i));
}

TEST(ImageFilesExr, RefusesPicturesWithoutColour) {
    const TestFolder folder;
    const std::string remedy =
        ": is an EXR without channels R, G, B or A; write the picture's colour to channels of these names";
    for (const Channels& channels :
         {Channels{{"Z", {1}}}, Channels{{"left.R", {1}}}, Channels{{"Y", {1}}, {"RY", {1}}}}) {
        writeFloats(folder / "z.exr", onePixel, onePixel, channels);
        EXPECT_EQ(toldByReading(folder / "z.exr").text, (folder / "z.exr").string() + remedy);
    }
}

TEST(ImageFilesExr, RefusesDeepPictures) {
    const TestFolder folder;
    Imf::Header header(1, 1);
    header.setType(Imf::DEEPSCANLINE);
    header.compression() = Imf::ZIPS_COMPRESSION;
    header.channels().insert("R", Imf::Channel(Imf::FLOAT));
    unsigned count = 1;
    float value = 1.0f;
    float* values = &value;
    {
        Imf::DeepScanLineOutputFile output((folder / "deep.exr").c_str(), header);
        Imf::DeepFrameBuffer buffer;
        buffer.insertSampleCountSlice(Imf::Slice(Imf::UINT, reinterpret_cast<char*>(&count), 4, 4));
        buffer.insert("R",
                      Imf::DeepSlice(Imf::FLOAT, reinterpret_cast<char*>(&values), sizeof values, sizeof values, 4));
        output.setFrameBuffer(buffer);
        output.writePixels(1);
    }
    const std::string told = toldByReading(folder / "deep.exr").text;
    EXPECT_EQ(told.find((folder / "deep.exr").string() + ": "), 0u) << told;
    EXPECT_EQ(told.find('\n'), std::string::npos) << told;
}

TEST(ImageFilesExr, RefusesHugeWindows) {
    const TestFolder folder;
    writeFloats(folder / "huge.exr", {V2i(0, 0), V2i(29999, 30000)}, onePixel, {{"R", {1}}});
    EXPECT_EQ(toldByReading(folder / "huge.exr").text,
              (folder / "huge.exr").string() + ": has 30000 x 30001 pixels; scale it down to 30000 x 30000 at most");
}

// 8 bits: 51 / 255 = 0.2, 102 / 255 = 0.4, 255 / 255 = 1.
TEST(ImageFilesExr, WritesColourTimesAlphaFrom8Bits) {
    const TestFolder folder;
    const TestWorld<std::uint8_t> world(2, 1, {102, 51, 255, 0, 0, 255, 9, 9});
    writeImage(folder / "a.exr", FileFormat::Exr, world.view(), {}, 1);
    EXPECT_FLOAT_EQ(channelOf(folder / "a.exr", "R")[0], 0.08f);
    EXPECT_FLOAT_EQ(channelOf(folder / "a.exr", "G")[0], 0.4f);
    EXPECT_EQ(channelOf(folder / "a.exr", "B"), (Floats{0.0f, 0.0f}));
    EXPECT_FLOAT_EQ(channelOf(folder / "a.exr", "A")[0], 0.4f);
    EXPECT_EQ(channelOf(folder / "a.exr", "R")[1], 0.0f);
    EXPECT_EQ(channelOf(folder / "a.exr", "A")[1], 0.0f);
}

TEST(ImageFilesExr, WritesColourTimesAlphaFrom16Bits) {
    const TestFolder folder;
    const TestWorld<std::uint16_t> world(1, 1, {16384, 8192, 32768, 1});
    writeImage(folder / "a.exr", FileFormat::Exr, world.view(), {}, 1);
    EXPECT_EQ(channelOf(folder / "a.exr", "R"), Floats{0.125f});
    EXPECT_EQ(channelOf(folder / "a.exr", "G"), Floats{0.5f});
    EXPECT_EQ(channelOf(folder / "a.exr", "B"), Floats{1.0f / 65536.0f});
    EXPECT_EQ(channelOf(folder / "a.exr", "A"), Floats{0.5f});
}

TEST(ImageFilesExr, WritesFloatsBeyondWhiteAndNothingWhereAlphaIsZero) {
    const TestFolder folder;
    const TestWorld<float> world(2, 1, {0.5f, 8.0f, -2.0f, 1.0f, 0.0f, infinite, std::nanf(""), 5.0f});
    writeImage(folder / "a.exr", FileFormat::Exr, world.view(), {}, 1);
    EXPECT_EQ(channelOf(folder / "a.exr", "R"), (Floats{4.0f, 0.0f}));
    EXPECT_EQ(channelOf(folder / "a.exr", "G"), (Floats{-1.0f, 0.0f}));
    EXPECT_EQ(channelOf(folder / "a.exr", "B"), (Floats{0.5f, 0.0f}));
    EXPECT_EQ(channelOf(folder / "a.exr", "A"), (Floats{0.5f, 0.0f}));
}

TEST(ImageFilesExr, TellsProgramAndFrameInTheHeader) {
    const TestFolder folder;
    writeImage(folder / "a.exr", FileFormat::Exr, noiseWorld(5, 4).view(), {77, "Tool 1.2.3"}, 1);
    const Imf::InputFile input((folder / "a.exr").c_str());
    EXPECT_EQ(input.header().typedAttribute<Imf::StringAttribute>("software").value(), "Tool 1.2.3");
    EXPECT_EQ(input.header().typedAttribute<Imf::IntAttribute>("frame").value(), 77);
    EXPECT_EQ(input.header().dataWindow(), Box2i(V2i(0, 0), V2i(4, 3)));
    EXPECT_EQ(input.header().displayWindow(), Box2i(V2i(0, 0), V2i(4, 3)));
    EXPECT_TRUE(input.isComplete());
}

TEST(ImageFilesExr, WritesEveryRowOfSeveralBands) {
    const TestFolder folder;
    Floats argb;
    for (int i = 0; i < 7 * 200; ++i)
        argb.insert(argb.end(), {1.0f, static_cast<float>(i), 0.0f, -static_cast<float>(i)});
    writeImage(folder / "a.exr", FileFormat::Exr, TestWorld<float>(7, 200, argb).view(), {}, 1);
    const Floats red = channelOf(folder / "a.exr", "R"), blue = channelOf(folder / "a.exr", "B");
    ASSERT_EQ(red.size(), 1400u);
    for (std::size_t i = 0; i < 1400; ++i) {
        ASSERT_EQ(red[i], static_cast<float>(i));
        ASSERT_EQ(blue[i], -static_cast<float>(i));
    }
}

}  // namespace
}  // namespace TessavoyHost
