#include "Host/World.h"

#include <cstring>

#include <gtest/gtest.h>

#include "Host/Handles.h"
#include "Host/WorldFromImage.h"

namespace TessavoyHost {
namespace {

Image image8(int width, int height, const std::vector<int>& samples) {
    Image image{width, height, SampleFormat::UInt8, {}};
    for (const int sample : samples)
        image.samples.push_back(static_cast<std::byte>(sample));
    return image;
}

template <class Sample>
Image imageOf(SampleFormat format, int width, int height, const std::vector<Sample>& samples) {
    Image image{width, height, format, {}};
    image.samples.resize(samples.size() * sizeof(Sample));
    std::memcpy(image.samples.data(), samples.data(), image.samples.size());
    return image;
}

template <class Pixel>
Pixel pixelAt(const World& world, int x, int y) {
    Pixel pixel;
    std::memcpy(&pixel, world.row(y) + static_cast<std::size_t>(x) * sizeof(Pixel), sizeof pixel);
    return pixel;
}

void expectPixel(const PF_Pixel& pixel, int alpha, int red, int green, int blue) {
    EXPECT_EQ(pixel.alpha, alpha);
    EXPECT_EQ(pixel.red, red);
    EXPECT_EQ(pixel.green, green);
    EXPECT_EQ(pixel.blue, blue);
}

TEST(HostWorld, HasAStrideWiderThanThePictureInWholePixels) {
    for (const int bits : {8, 16, 32}) {
        for (const int width : {1, 3, 4, 100, 101}) {
            const World world(width, 2, bits);
            EXPECT_GE(world.record().rowbytes, (width + 4) * bytesPerPixel(bits));
            EXPECT_EQ(world.record().rowbytes % bytesPerPixel(bits), 0);
        }
    }
}

TEST(HostWorld, TellsItsDepthByFlagsAndFormat) {
    EXPECT_EQ(pixelFormatOf(World(1, 1, 8).record()), PF_PixelFormat_ARGB32);
    EXPECT_EQ(pixelFormatOf(World(1, 1, 16).record()), PF_PixelFormat_ARGB64);
    EXPECT_EQ(pixelFormatOf(World(1, 1, 32).record()), PF_PixelFormat_ARGB128);
    EXPECT_EQ(pixelFormatOf(PF_LayerDef{}), PF_PixelFormat_INVALID);
    EXPECT_EQ(World(1, 1, 16).record().world_flags & PF_WorldFlag_DEEP, PF_WorldFlag_DEEP);
    EXPECT_EQ(World(1, 1, 32).record().world_flags & PF_WorldFlag_DEEP, 0);
}

TEST(HostWorld, IsFilledAsAsked) {
    const World rubbish(2, 1, 8, World::Fill::Rubbish);
    EXPECT_EQ(static_cast<int>(*rubbish.row(0)), rubbishByte);
    const World zero(2, 1, 8, World::Fill::Zero);
    EXPECT_EQ(static_cast<int>(*zero.row(0)), 0);
}

TEST(HostWorld, GivesARecordOfAPartThatSharesItsPixels) {
    const World world = makeWorld(image8(3, 2, {1,  2,  3,  255, 4,  5,  6,  255, 7,  8,  9,  255,  //
                                                11, 12, 13, 255, 14, 15, 16, 255, 17, 18, 19, 255}),
                                  8, {1, 1}, {1, 1});
    const PF_LayerDef part = world.partRecord({1, 1, 2, 1});
    EXPECT_EQ(part.width, 2);
    EXPECT_EQ(part.height, 1);
    EXPECT_EQ(part.origin_x, 1);
    EXPECT_EQ(part.origin_y, 1);
    EXPECT_EQ(part.rowbytes, world.record().rowbytes);
    EXPECT_EQ(part.data->red, 14);
}

TEST(HostWorld, MakesRegionsMeet) {
    EXPECT_EQ(intersection({0, 0, 10, 10}, {5, -2, 10, 4}), (Region{5, 0, 5, 2}));
    EXPECT_TRUE(intersection({0, 0, 3, 3}, {3, 0, 3, 3}).empty());
}

TEST(HostWorld, RoundsDownsampledSizesUp) {
    EXPECT_EQ(downsampled(101, {1, 2}), 51);
    EXPECT_EQ(downsampled(100, {1, 2}), 50);
    EXPECT_EQ(downsampled(100, {1, 3}), 34);
    EXPECT_EQ(downsampled(7, {1, 1}), 7);
    EXPECT_EQ(downsampled(1, {1, 4}), 1);
}

TEST(HostWorldFromImage, PutsAlphaFirst) {
    const World world = makeWorld(image8(1, 1, {10, 20, 30, 40}), 8, {1, 1}, {1, 1});
    expectPixel(pixelAt<PF_Pixel>(world, 0, 0), 40, 10, 20, 30);
}

// round(128 * 32768 / 255) = round(16448.25...) = 16448
TEST(HostWorldFromImage, ScalesBytesTo16BitsOf32768) {
    const World world = makeWorld(image8(1, 1, {0, 255, 128, 1}), 16, {1, 1}, {1, 1});
    const auto pixel = pixelAt<PF_Pixel16>(world, 0, 0);
    EXPECT_EQ(pixel.red, 0);
    EXPECT_EQ(pixel.green, 32768);
    EXPECT_EQ(pixel.blue, 16448);
    EXPECT_EQ(pixel.alpha, 129);  // 128.50...
}

TEST(HostWorldFromImage, ScalesBytesToFloatsOfOne) {
    const World world = makeWorld(image8(1, 1, {0, 255, 51, 255}), 32, {1, 1}, {1, 1});
    const auto pixel = pixelAt<PF_PixelFloat>(world, 0, 0);
    EXPECT_EQ(pixel.alpha, 1.0f);
    EXPECT_EQ(pixel.green, 1.0f);
    EXPECT_EQ(pixel.blue, 0.2f);
}

TEST(HostWorldFromImage, Scales16BitPicturesByTheirFullValue) {
    const Image image = imageOf<std::uint16_t>(SampleFormat::UInt16, 1, 1, {65535, 32896, 0, 65535});
    const auto deep = pixelAt<PF_Pixel16>(makeWorld(image, 16, {1, 1}, {1, 1}), 0, 0);
    EXPECT_EQ(deep.red, 32768);
    EXPECT_EQ(deep.green, 16448);  // 32896 / 65535 = 128 / 255
    EXPECT_EQ(pixelAt<PF_Pixel>(makeWorld(image, 8, {1, 1}, {1, 1}), 0, 0).green, 128);
}

TEST(HostWorldFromImage, KeepsFloatsAndClampsThemForIntegers) {
    const Image image = imageOf<float>(SampleFormat::Float32, 1, 1, {2.5f, -1.0f, 0.5f, 1.0f});
    const auto same = pixelAt<PF_PixelFloat>(makeWorld(image, 32, {1, 1}, {1, 1}), 0, 0);
    EXPECT_EQ(same.red, 2.5f);
    EXPECT_EQ(same.green, -1.0f);
    expectPixel(pixelAt<PF_Pixel>(makeWorld(image, 8, {1, 1}, {1, 1}), 0, 0), 255, 255, 0, 128);
}

// Two by two pixels into one: alpha (255 + 0 + 255 + 0) / 4 = 127.5, and the colour of the opaque ones alone.
TEST(HostWorldFromImage, AveragesPremultiplied) {
    const World world = makeWorld(image8(2, 2,
                                         {100, 0, 0, 255, 9, 9, 9, 0,  //
                                          200, 40, 0, 255, 9, 9, 9, 0}),
                                  8, {1, 2}, {1, 2});
    ASSERT_EQ(world.width(), 1);
    ASSERT_EQ(world.height(), 1);
    expectPixel(pixelAt<PF_Pixel>(world, 0, 0), 128, 150, 20, 0);
}

// Weights by alpha: (80 * 1 + 20 * 0.2) / 1.2 = 70 in red, alpha (1 + 0.2) / 2 = 0.6.
TEST(HostWorldFromImage, WeighsColoursByAlpha) {
    const World world = makeWorld(image8(2, 1, {80, 0, 0, 255, 20, 0, 0, 51}), 8, {1, 2}, {1, 1});
    expectPixel(pixelAt<PF_Pixel>(world, 0, 0), 153, 70, 0, 0);
}

TEST(HostWorldFromImage, GivesZeroWhereAllIsTransparent) {
    const World world = makeWorld(image8(2, 1, {80, 1, 2, 0, 20, 3, 4, 0}), 8, {1, 2}, {1, 1});
    expectPixel(pixelAt<PF_Pixel>(world, 0, 0), 0, 0, 0, 0);
}

// Three columns at half resolution: the second box covers the last column alone.
TEST(HostWorldFromImage, AveragesWhatTheLastBoxCovers) {
    const World world = makeWorld(image8(3, 1, {10, 0, 0, 255, 30, 0, 0, 255, 77, 0, 0, 255}), 8, {1, 2}, {1, 1});
    ASSERT_EQ(world.width(), 2);
    EXPECT_EQ(pixelAt<PF_Pixel>(world, 0, 0).red, 20);
    EXPECT_EQ(pixelAt<PF_Pixel>(world, 1, 0).red, 77);
}

// Three columns at 2/3: boxes of 1.5 columns, (10 + 0.5 * 40) / 1.5 = 20 and (0.5 * 40 + 70) / 1.5 = 60.
TEST(HostWorldFromImage, WeighsColumnsByHowMuchABoxCoversThem) {
    const World world = makeWorld(image8(3, 1, {10, 0, 0, 255, 40, 0, 0, 255, 70, 0, 0, 255}), 8, {2, 3}, {1, 1});
    ASSERT_EQ(world.width(), 2);
    EXPECT_EQ(pixelAt<PF_Pixel>(world, 0, 0).red, 20);
    EXPECT_EQ(pixelAt<PF_Pixel>(world, 1, 0).red, 60);
}

TEST(HostWorldFromImage, TakesEachDirectionsOwnFactor) {
    const World world = makeWorld(image8(2, 4, std::vector<int>(2 * 4 * 4, 255)), 8, {1, 2}, {1, 4});
    EXPECT_EQ(world.width(), 1);
    EXPECT_EQ(world.height(), 1);
    expectPixel(pixelAt<PF_Pixel>(world, 0, 0), 255, 255, 255, 255);
}

}  // namespace
}  // namespace TessavoyHost
