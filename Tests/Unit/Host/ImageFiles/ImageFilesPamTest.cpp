#include "Tests/Unit/Host/ImageFiles/ImageFileTestSupport.h"

namespace TessavoyHost {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Words = std::vector<std::uint16_t>;

// A header as netpbm's description gives it, and the bytes behind it.
std::string pam(const std::string& lines, const Bytes& samples) {
    return "P7\n" + lines + "ENDHDR\n" + std::string(samples.begin(), samples.end());
}

std::string sizeAndDepth(int width, int height, int depth, int maximum = 255) {
    return "WIDTH " + std::to_string(width) + "\nHEIGHT " + std::to_string(height) + "\nDEPTH " +
           std::to_string(depth) + "\nMAXVAL " + std::to_string(maximum) + "\n";
}

class ImageFilesPam : public testing::Test {
protected:
    std::filesystem::path make(const std::string& bytes) const { return writeBytes(folder / "made.pam", bytes); }
    Image read(const std::string& bytes) const { return readImage(make(bytes)); }
    std::string refusal(const std::string& bytes) const {
        const auto path = make(bytes);
        const Told told = toldByReading(path);
        EXPECT_EQ(told.status, ExitStatus::Scene);
        EXPECT_EQ(told.text.find(path.string() + ": "), 0u) << told.text;
        return told.text.substr(std::min(told.text.size(), path.string().size() + 2));
    }

    const TestFolder folder;
};

// Two pixels, one below the other.
TEST_F(ImageFilesPam, ReadsEveryDepthOfPixels) {
    const auto samples = [this](int depth, const Bytes& bytes) {
        const Image image = read(pam(sizeAndDepth(1, 2, depth), bytes));
        EXPECT_EQ(image.width, 1);
        EXPECT_EQ(image.height, 2);
        EXPECT_EQ(image.format, SampleFormat::UInt8);
        return samplesOf<std::uint8_t>(image);
    };
    EXPECT_EQ(samples(1, {7, 9}), (Bytes{7, 7, 7, 255, 9, 9, 9, 255}));
    EXPECT_EQ(samples(2, {7, 0, 9, 128}), (Bytes{7, 7, 7, 0, 9, 9, 9, 128}));
    EXPECT_EQ(samples(3, {1, 2, 3, 4, 5, 6}), (Bytes{1, 2, 3, 255, 4, 5, 6, 255}));
    EXPECT_EQ(samples(4, {1, 2, 3, 4, 5, 6, 7, 8}), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST_F(ImageFilesPam, ReadsSixteenBitsBigEndian) {
    const auto samples = [this](int depth, const Bytes& bytes) {
        const Image image = read(pam(sizeAndDepth(1, 1, depth, 65535), bytes));
        EXPECT_EQ(image.format, SampleFormat::UInt16);
        return samplesOf<std::uint16_t>(image);
    };
    EXPECT_EQ(samples(1, {0x12, 0x34}), (Words{0x1234, 0x1234, 0x1234, 0xffff}));
    EXPECT_EQ(samples(2, {0x12, 0x34, 0x80, 0x01}), (Words{0x1234, 0x1234, 0x1234, 0x8001}));
    EXPECT_EQ(samples(3, {0, 1, 1, 0, 0xff, 0xfe}), (Words{1, 256, 0xfffe, 0xffff}));
    EXPECT_EQ(samples(4, {0, 1, 1, 0, 0xff, 0xfe, 0, 0}), (Words{1, 256, 0xfffe, 0}));
}

TEST_F(ImageFilesPam, HeadersMayHaveCommentsBlanksAndAnyOrder) {
    const Image image =
        read(pam("# from a camera\n\nMAXVAL 255  \n  DEPTH\t3\n#HEIGHT 7\nTUPLTYPE RGB\n"
                 "HEIGHT 1\r\nWIDTH 2\n",
                 {'#', '\n', 3, 4, 5, 6}));
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 1);
    EXPECT_EQ(samplesOf<std::uint8_t>(image), (Bytes{'#', '\n', 3, 255, 4, 5, 6, 255}));
}

TEST_F(ImageFilesPam, TheSizeComesFromTheHeaderAlone) {
    const ImageSize size = probeImage(make(pam(sizeAndDepth(640, 480, 4), {})));
    EXPECT_EQ(size.width, 640);
    EXPECT_EQ(size.height, 480);
}

TEST_F(ImageFilesPam, TheFirstOfSeveralPicturesIsRead) {
    const std::string first = pam(sizeAndDepth(1, 1, 1), {7});
    EXPECT_EQ(samplesOf<std::uint8_t>(read(first + pam(sizeAndDepth(2, 2, 1), {1, 2, 3, 4}))), (Bytes{7, 7, 7, 255}));
}

TEST_F(ImageFilesPam, TupleTypesBelongToTheirDepths) {
    const std::string names[] = {"GRAYSCALE", "GRAYSCALE_ALPHA", "RGB", "RGB_ALPHA"};
    for (int depth = 1; depth <= 4; ++depth) {
        for (int name = 1; name <= 4; ++name) {
            const auto file = pam(sizeAndDepth(1, 1, depth) + "TUPLTYPE " + names[name - 1] + "\n", {1, 2, 3, 4});
            if (name == depth)
                EXPECT_EQ(read(file).width, 1) << depth;
            else
                EXPECT_EQ(refusal(file),
                          "is a PAM whose TUPLTYPE isn't the one of grey or RGB with its DEPTH; convert it to grey or "
                          "RGB, with or without alpha");
        }
    }
}

TEST_F(ImageFilesPam, OtherKindsOfSamplesAreRefused) {
    const Bytes samples(64, 1);
    EXPECT_EQ(refusal(pam(sizeAndDepth(1, 1, 5), samples)),
              "is a PAM with 5 samples in a pixel; convert it to grey or RGB, with or without alpha");
    EXPECT_EQ(refusal(pam(sizeAndDepth(1, 1, 0), samples)),
              "is a PAM with 0 samples in a pixel; convert it to grey or RGB, with or without alpha");
    EXPECT_EQ(refusal(pam(sizeAndDepth(1, 1, 1, 1), samples)),
              "is a PAM with MAXVAL 1; convert it to MAXVAL 255 or 65535");
    EXPECT_EQ(refusal(pam(sizeAndDepth(1, 1, 1, 1023), samples)),
              "is a PAM with MAXVAL 1023; convert it to MAXVAL 255 or 65535");
}

TEST_F(ImageFilesPam, HeadersThatMakeNoSenseAreRefused) {
    const auto damage = [](const std::string& what) { return "can't be read (" + what + "); make the file again"; };
    EXPECT_EQ(refusal(pam("WIDTH 1\nHEIGHT 1\nDEPTH 1\n", {1})),
              damage("its header lacks WIDTH, HEIGHT, DEPTH or MAXVAL"));
    for (const std::string number : {"", "-1", "1.5", "0x10", "1 2", "99999999999999999999"})
        EXPECT_EQ(refusal(pam("WIDTH " + number + "\n" + sizeAndDepth(1, 1, 1), {1})),
                  damage("its header has no number where one belongs"))
            << number;
    EXPECT_EQ(refusal(pam(sizeAndDepth(1, 1, 1) + "COLOURS 3\n", {1})),
              damage("its header has a line that PAM doesn't know"));
    EXPECT_EQ(refusal("P7\n" + std::string(100'000, '#')), damage("its header has no end"));
}

TEST_F(ImageFilesPam, SizesAreChecked) {
    EXPECT_EQ(refusal(pam(sizeAndDepth(0, 5, 1), {})), "has no pixels; make the file again");
    EXPECT_EQ(refusal(pam(sizeAndDepth(5, 30001, 1), {})),
              "has 5 x 30001 pixels; scale it down to 30000 x 30000 at most");
}

// A picture of 30000 x 30000 would take 7.2 GB.
TEST_F(ImageFilesPam, AFileThatIsTooShortIsToldBeforeMemoryIsTaken) {
    EXPECT_EQ(refusal(pam(sizeAndDepth(30000, 30000, 4, 65535), {1, 2, 3})),
              "ends before the picture is complete; make the file again");
}

TEST_F(ImageFilesPam, WritesEightBitsAsTheyAre) {
    const TestWorld<std::uint8_t> world(2, 1, {10, 20, 30, 40, 0, 255, 1, 2});
    writeImage(folder / "a.pam", FileFormat::Pam, world.view(), {7, "Tool 1.0"}, 1);
    EXPECT_EQ(readBytes(folder / "a.pam"),
              std::string("P7\n# Software: Tool 1.0\n# Frame: 7\nWIDTH 2\nHEIGHT 1\nDEPTH 4\nMAXVAL 255\n"
                          "TUPLTYPE RGB_ALPHA\nENDHDR\n\x14\x1e\x28\x0a\xff\x01\x02\x00",
                          105));
}

// 32768 of a world is white, so half of it is round(16384 * 65535 / 32768) = 32768 = 0x8000.
TEST_F(ImageFilesPam, WritesSixteenBitsBigEndian) {
    const TestWorld<std::uint16_t> world(1, 1, {32768, 0, 16384, 32768});
    writeImage(folder / "a.pam", FileFormat::Pam, world.view(), {}, 1);
    const std::string bytes = readBytes(folder / "a.pam");
    EXPECT_NE(bytes.find("\nMAXVAL 65535\n"), std::string::npos);
    EXPECT_EQ(bytes.substr(bytes.size() - 8), std::string("\x00\x00\x80\x00\xff\xff\xff\xff", 8));
}

// Cut to 0 to 1, and 0.5 is round(32767.5) = 32768.
TEST_F(ImageFilesPam, WritesFloatsAsSixteenBits) {
    const TestWorld<float> world(1, 1, {1, -3, 0.5f, 7});
    writeImage(folder / "a.pam", FileFormat::Pam, world.view(), {}, 1);
    EXPECT_EQ(samplesOf<std::uint16_t>(readImage(folder / "a.pam")), (Words{0, 32768, 65535, 65535}));
}

TEST_F(ImageFilesPam, WhatIsWrittenReadsTheSame) {
    const TestWorld<std::uint8_t> world = noiseWorld(19, 7);
    writeImage(folder / "a.pam", FileFormat::Pam, world.view(), {}, 1);
    const Image image = readImage(folder / "a.pam");
    ASSERT_EQ(image.width, 19);
    ASSERT_EQ(image.height, 7);
    for (int y = 0; y < 7; ++y) {
        const auto* argb = world.view().row<std::uint8_t>(y);
        const auto* rgba = image.row<std::uint8_t>(y);
        for (int x = 0; x < 19; ++x)
            for (int channel = 0; channel < 4; ++channel)
                EXPECT_EQ(rgba[4 * x + channel], argb[4 * x + (channel + 1) % 4]) << x << " " << y;
    }
}

}  // namespace
}  // namespace TessavoyHost
