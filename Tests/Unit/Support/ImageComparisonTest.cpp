#include "Tests/Support/ImageComparison.h"

#include <cmath>
#include <limits>

#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

template <class Sample>
Image imageOf(SampleFormat format, int width, int height, const std::vector<Sample>& rgba) {
    Image image{width, height, format, {}};
    image.samples.resize(rgba.size() * sizeof(Sample));
    std::memcpy(image.samples.data(), rgba.data(), image.samples.size());
    return image;
}

Image bytesOf(int width, int height, const std::vector<std::uint8_t>& rgba) {
    return imageOf(SampleFormat::UInt8, width, height, rgba);
}

using Distances = std::array<double, 4>;

TEST(ImageComparison, FindsTheLargestDifferenceOfEachChannel) {
    const Image expected = bytesOf(2, 1, {10, 20, 30, 40, 50, 60, 70, 80});
    const Image actual = bytesOf(2, 1, {13, 20, 29, 40, 49, 60, 70, 255});
    const ImageDifference difference = compareImages(expected, actual, 0);
    EXPECT_EQ(difference.largest, (Distances{3, 0, 1, 175}));
    EXPECT_EQ(difference.pixelsBeyond, 2);
    EXPECT_FALSE(difference.within());
    EXPECT_EQ(difference.describe(expected, actual, 0),
              "largest difference in 255ths: red 3, green 0, blue 1, alpha 175; 2 of 2 pixels beyond 0");
}

TEST(ImageComparison, LetsTheThresholdItselfPass) {
    const Image expected = bytesOf(2, 1, {10, 20, 30, 40, 50, 60, 70, 80});
    const Image actual = bytesOf(2, 1, {13, 20, 30, 40, 50, 60, 72, 80});
    EXPECT_TRUE(compareImages(expected, actual, 3).within());
    EXPECT_EQ(compareImages(expected, actual, 2.5).pixelsBeyond, 1);
    EXPECT_EQ(compareImages(expected, actual, 1).pixelsBeyond, 2);
    EXPECT_TRUE(compareImages(expected, expected, 0).within());
}

TEST(ImageComparison, ComparesFormatsWithEachOther) {
    const Image bytes = bytesOf(1, 1, {255, 0, 51, 255});
    EXPECT_TRUE(
        compareImages(bytes, imageOf<std::uint16_t>(SampleFormat::UInt16, 1, 1, {65535, 0, 13107, 65535}), 0).within());
    const Image floats = imageOf<float>(SampleFormat::Float32, 1, 1, {1.0f, 0.0f, 0.2f, 1.5f});
    EXPECT_NEAR(compareImages(bytes, floats, 0).largest[2], 0.0, 1e-5);
    EXPECT_EQ(compareImages(bytes, floats, 0).largest[3], 127.5);
}

TEST(ImageComparison, TakesWhatIsNotANumberAsFarFromAllNumbers) {
    const float none = std::nanf(""), infinite = std::numeric_limits<float>::infinity();
    const Image expected = imageOf<float>(SampleFormat::Float32, 1, 1, {none, none, infinite, infinite});
    const Image actual = imageOf<float>(SampleFormat::Float32, 1, 1, {none, 0.5f, infinite, -infinite});
    const double far = std::numeric_limits<double>::infinity();
    EXPECT_EQ(compareImages(expected, actual, 0).largest, (Distances{0, far, 0, far}));
    EXPECT_FALSE(compareImages(expected, actual, 1e300).within());
}

TEST(ImageComparison, TellsSizesApart) {
    const Image wide = bytesOf(2, 1, std::vector<std::uint8_t>(8)), high = bytesOf(1, 2, std::vector<std::uint8_t>(8));
    const ImageDifference difference = compareImages(wide, high, 255);
    EXPECT_FALSE(difference.within());
    EXPECT_EQ(difference.describe(wide, high, 255), "sizes differ: expected 2 x 1, actual 1 x 2");
}

TEST(ImageComparison, WritesThreePictures) {
    const TestFolder folder;
    const Image expected = bytesOf(2, 1, {10, 20, 30, 40, 50, 60, 70, 80});
    const Image actual = bytesOf(2, 1, {14, 20, 29, 40, 50, 60, 70, 78});
    writeComparison(folder / "new" / "deep", "a", expected, actual);
    EXPECT_EQ(samplesOf<std::uint8_t>(readImage(folder / "new/deep/a-expected.png")),
              samplesOf<std::uint8_t>(expected));
    EXPECT_EQ(samplesOf<std::uint8_t>(readImage(folder / "new/deep/a-actual.png")), samplesOf<std::uint8_t>(actual));
    // Distances 4 0 1, and 2 in alpha, which counts in each channel; the largest is 4: 65535 * 1 / 4 = 16383.75.
    EXPECT_EQ(samplesOf<std::uint16_t>(readImage(folder / "new/deep/a-difference.png")),
              (std::vector<std::uint16_t>{65535, 0, 16384, 65535, 32768, 32768, 32768, 65535}));
}

TEST(ImageComparison, WritesNoDifferenceOfUnlikeSizes) {
    const TestFolder folder;
    writeBytes(folder / "a-difference.png", "from an earlier run");
    writeComparison(folder.path(), "a", bytesOf(1, 1, {1, 2, 3, 4}), bytesOf(2, 1, std::vector<std::uint8_t>(8)));
    EXPECT_EQ(folder.fileCount(), 2);
}

TEST(ImageComparison, KeepsTheFineStepsOfDeepPictures) {
    const TestFolder folder;
    const std::vector<std::uint16_t> samples{1, 32768, 65534, 65535};
    const Image image = imageOf(SampleFormat::UInt16, 1, 1, samples);
    writeComparison(folder.path(), "deep", image, image);
    EXPECT_EQ(samplesOf<std::uint16_t>(readImage(folder / "deep-actual.png")), samples);
}

}  // namespace
}  // namespace TessavoyHost
