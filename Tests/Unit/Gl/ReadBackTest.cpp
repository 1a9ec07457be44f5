#include "Source/Gl/ReadBack.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/PixelTransfer.h"
#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/Textures.h"
#include "Source/HostAccess/Exception.h"
#include "Tests/Unit/Gl/DrawingHost.h"
#include "Tests/Unit/Gl/GlTesting.h"

#include <bit>
#include <cstring>
#include <functional>

namespace Tessavoy {
namespace {

using namespace AESDK_OpenGL;
using namespace Testing;

PF_Err exceptionCode(const std::function<void()>& work) {
    try {
        work();
    } catch (const Exception& exception) {
        return exception.code();
    }
    return 0;
}

TEST(PixelTransfer, followsTheHostFormat) {
    const PixelTransfer eight = GetPixelTransfer(PF_PixelFormat_ARGB32);
    EXPECT_EQ(eight.bytesPerPixel, 4);
    EXPECT_EQ(eight.glType, 0x1401U);  // GL_UNSIGNED_BYTE
    EXPECT_EQ(eight.multiplier16bit, 1.0F);
    const PixelTransfer sixteen = GetPixelTransfer(PF_PixelFormat_ARGB64);
    EXPECT_EQ(sixteen.bytesPerPixel, 8);
    EXPECT_EQ(sixteen.glType, 0x1403U);  // GL_UNSIGNED_SHORT
    EXPECT_EQ(std::bit_cast<std::uint32_t>(sixteen.multiplier16bit), 0x3fffff00U);
    const PixelTransfer floating = GetPixelTransfer(PF_PixelFormat_ARGB128);
    EXPECT_EQ(floating.bytesPerPixel, 16);
    EXPECT_EQ(floating.glType, 0x1406U);  // GL_FLOAT
    EXPECT_EQ(floating.multiplier16bit, 1.0F);
}

TEST(PixelTransfer, anyOtherFormatIs516) {
    PF_PixelFormat undecided = 0;
    std::memcpy(&undecided, "badf", 4);
    for (const PF_PixelFormat format : {undecided, PF_PixelFormat{0}, PF_PixelFormat{PF_PixelFormat_ARGB32 + 1}}) {
        EXPECT_EQ(exceptionCode([format] { GetPixelTransfer(format); }), 516);
    }
}

class ReadBackTest : public GlTest {
protected:
    /// Converts a picture and reads it back into a world of the host.
    void readInto(HostWorld& output, int width, int height, const std::vector<Colour>& picture,
                  PF_PixelFormat asked = 0) {
        const PF_PixelFormat format = output.format();
        const PixelTransfer transfer = GetPixelTransfer(format);
        HostWorld input(width, height, format);
        PrepareRenderTargets(renderData(), static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
                             false);
        const std::uint32_t source = makeTexture(width, height, picture);
        AttachTarget(renderData(), renderData().outputTexture);
        setViewport(width, height);
        setTransparentClearColor();
        clearTarget();
        DrawOutput(renderData(), width, height, source, transfer.multiplier16bit);
        deleteTexture(source);
        ReadBackOutput(renderData(), &mHost.inData, input.world(), output.world(), asked != 0 ? asked : format,
                       transfer.bytesPerPixel, transfer.glType);
        EXPECT_TRUE(takeGlErrors().empty());
    }

    template <class Channel>
    static std::array<Channel, 4> pixelOf(HostWorld& world, A_long x, A_long y) {
        std::array<Channel, 4> channels{};
        std::memcpy(channels.data(), world.pixel<Channel>(x, y), sizeof channels);
        return channels;
    }

    DrawingHost mHost;
};

/// Four pixels: opaque white, half-transparent, nearly transparent, and beyond 1. Premultiplied, as blending leaves
/// them.
const std::vector<Colour> fourPixels = {
    {1, 1, 1, 1}, {0.25F, 0.125F, 0, 0.5F}, {0.5F, 0.5F, 0.5F, 0.009F}, {3, 0.25F, -1, 1}};

TEST_F(ReadBackTest, eightBits) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB32);
    readInto(output, 2, 2, fourPixels);
    using Pixel = std::array<std::uint8_t, 4>;
    EXPECT_EQ(pixelOf<std::uint8_t>(output, 0, 0), (Pixel{255, 255, 255, 255}));
    const Pixel half = pixelOf<std::uint8_t>(output, 1, 0);  // 127.5, 127.5, 63.75, 0
    EXPECT_NEAR(half[0], 127.5, 0.5);
    EXPECT_NEAR(half[1], 127.5, 0.5);
    EXPECT_EQ(half[2], 64);
    EXPECT_EQ(half[3], 0);
    EXPECT_EQ(pixelOf<std::uint8_t>(output, 0, 1), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(pixelOf<std::uint8_t>(output, 1, 1), (Pixel{255, 255, 64, 0}));
    EXPECT_TRUE(output.paddingIsIntact());
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(ReadBackTest, sixteenBitsEndAt32768) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB64);
    readInto(output, 2, 2, fourPixels);
    using Pixel = std::array<std::uint16_t, 4>;
    EXPECT_EQ(pixelOf<std::uint16_t>(output, 0, 0), (Pixel{32768, 32768, 32768, 32768}));
    EXPECT_EQ(pixelOf<std::uint16_t>(output, 1, 0), (Pixel{16384, 16384, 8192, 0}));
    EXPECT_EQ(pixelOf<std::uint16_t>(output, 0, 1), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(pixelOf<std::uint16_t>(output, 1, 1), (Pixel{32768, 32768, 8192, 0}));
    EXPECT_TRUE(output.paddingIsIntact());
    EXPECT_EQ(mHost.lent(), 0);
}

TEST_F(ReadBackTest, floats) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB128);
    readInto(output, 2, 2, fourPixels);
    expectNear(pixelOf<float>(output, 0, 0), {1, 1, 1, 1}, 1e-6F);
    expectNear(pixelOf<float>(output, 1, 0), {0.5F, 0.5F, 0.25F, 0}, 1e-6F);
    EXPECT_EQ(pixelOf<float>(output, 0, 1), (Colour{0, 0, 0, 0}));
    expectNear(pixelOf<float>(output, 1, 1), {1, 1, 0.25F, 0}, 1e-6F);
    EXPECT_EQ(mHost.iterateHeight, 2);
    EXPECT_TRUE(output.paddingIsIntact());
    EXPECT_EQ(mHost.lent(), 0);
}

std::vector<Colour> numberedPicture(int width, int height) {
    std::vector<Colour> picture;
    for (int i = 0; i < width * height; ++i) {
        picture.push_back({static_cast<float>(i) / 255.0F, 0, 0, 1});
    }
    return picture;
}

TEST_F(ReadBackTest, everyRowKeepsItsPlaceInAWorldOfOddWidth) {
    HostWorld output(5, 3, PF_PixelFormat_ARGB32, 1);
    readInto(output, 5, 3, numberedPicture(5, 3));
    for (A_long y = 0; y < 3; ++y) {
        for (A_long x = 0; x < 5; ++x) {
            EXPECT_EQ(output.pixel<std::uint8_t>(x, y)[1], y * 5 + x);
        }
    }
    EXPECT_TRUE(output.paddingIsIntact());
}

TEST_F(ReadBackTest, aNarrowerOutputGetsItsOwnWidthOfEachRow) {
    for (const PF_PixelFormat format : {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64, PF_PixelFormat_ARGB128}) {
        HostWorld output(2, 2, format);
        readInto(output, 5, 3, numberedPicture(5, 3));
        for (A_long y = 0; y < 2; ++y) {
            for (A_long x = 0; x < 2; ++x) {
                const int number = y * 5 + x;
                if (format == PF_PixelFormat_ARGB32) {
                    EXPECT_EQ(output.pixel<std::uint8_t>(x, y)[1], number);
                } else if (format == PF_PixelFormat_ARGB64) {
                    EXPECT_NEAR(output.pixel<std::uint16_t>(x, y)[1], number * 32768.0 / 255.0, 0.51);
                } else {
                    EXPECT_NEAR(output.pixel<float>(x, y)[1], number / 255.0, 1e-6);
                }
            }
        }
        EXPECT_TRUE(output.paddingIsIntact());
    }
}

TEST_F(ReadBackTest, aLargerOutputGetsThePictureAndNothingBesides) {
    for (const PF_PixelFormat format : {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB128}) {
        HostWorld output(4, 3, format);
        readInto(output, 3, 2, numberedPicture(3, 2));
        const bool floats = format == PF_PixelFormat_ARGB128;
        const void* besideFirstRow =
            floats ? static_cast<void*>(output.pixel<float>(3, 0)) : output.pixel<std::uint8_t>(3, 0);
        const auto* beside = static_cast<const std::byte*>(besideFirstRow);
        EXPECT_EQ(*beside, HostWorld::padding);
        const auto* below = reinterpret_cast<const std::byte*>(output.pixel<std::uint8_t>(0, 2));
        EXPECT_EQ(*below, HostWorld::padding);
    }
}

// Such a world may have no pixels to ask for.
TEST_F(ReadBackTest, anOutputWithoutRowsIsLeftAlone) {
    for (const PF_PixelFormat format : {PF_PixelFormat_ARGB32, PF_PixelFormat_ARGB64}) {
        HostWorld output(2, 2, format);
        output.world()->height = 0;
        mHost.failingCalls = {"get_pixel_data8", "get_pixel_data16", "null pixels"};
        EXPECT_NO_THROW(readInto(output, 2, 2, fourPixels));
        EXPECT_EQ(*reinterpret_cast<const std::byte*>(output.pixel<std::uint8_t>(0, 0)), HostWorld::padding);
        EXPECT_EQ(mHost.lent(), 0);
    }
}

TEST_F(ReadBackTest, rowOffsetsAreRoundedDownToWholePixels) {
    HostWorld output(2, 3, PF_PixelFormat_ARGB32);
    output.world()->rowbytes = 11;  // rows at 0, 8 (of 11) and 20 (of 22)
    readInto(output, 2, 3, numberedPicture(2, 3));
    const auto* bytes = output.pixel<std::uint8_t>(0, 0);
    EXPECT_EQ(bytes[8 + 1], 2);
    EXPECT_EQ(bytes[20 + 1], 4);
}

TEST_F(ReadBackTest, aHostWithoutMemoryIsCodeFour) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB32);
    for (const char* call : {"host_new_handle", "host_lock_handle"}) {
        mHost.failingCalls = {call};
        EXPECT_EQ(exceptionCode([&] { readInto(output, 2, 2, fourPixels); }), 4) << call;
        EXPECT_EQ(mHost.lent(), 0);
    }
}

TEST_F(ReadBackTest, aFailedIterationIsTheHostsCodeAndKeepsTheBlock) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB128);
    mHost.failingCalls = {"iterate"};
    EXPECT_EQ(exceptionCode([&] { readInto(output, 2, 2, fourPixels); }), DrawingHost::callError);
    EXPECT_EQ(mHost.handlesOut, 1);
    EXPECT_EQ(mHost.locksOut, 1);
    EXPECT_EQ(mHost.suitesOut, 0);
}

TEST_F(ReadBackTest, anotherFormatIs516AndKeepsTheBlock) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB32);
    EXPECT_EQ(exceptionCode([&] { readInto(output, 2, 2, fourPixels, PF_PixelFormat_INVALID); }), 516);
    EXPECT_EQ(mHost.handlesOut, 1);
}

TEST_F(ReadBackTest, failedPixelAddressesAreExceptions) {
    HostWorld eight(2, 2, PF_PixelFormat_ARGB32);
    mHost.failingCalls = {"get_pixel_data8"};
    EXPECT_EQ(exceptionCode([&] { readInto(eight, 2, 2, fourPixels); }), DrawingHost::callError);
    HostWorld sixteen(2, 2, PF_PixelFormat_ARGB64);
    mHost.failingCalls = {"null pixels"};
    EXPECT_EQ(exceptionCode([&] { readInto(sixteen, 2, 2, fourPixels); }), 512);
}

TEST_F(ReadBackTest, aMissingSuiteIsThePlainInteger516) {
    HostWorld output(2, 2, PF_PixelFormat_ARGB128);
    for (const char* suite : {"PF Handle Suite", "PF iterateFloat Suite"}) {
        mHost.missingSuites = {suite};
        try {
            readInto(output, 2, 2, fourPixels);
            FAIL() << suite;
        } catch (PF_Err error) {
            EXPECT_EQ(error, 516);
        }
    }
}

}  // namespace
}  // namespace Tessavoy
