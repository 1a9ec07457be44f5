#include "Tests/Pictures/PictureFixture.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>

#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Pictures/SceneWriter.h"

namespace Tessavoy {

namespace {

using TessavoyHost::Rational;
using TessavoyHost::World;

/// Sets a channel of a pixel to a number of its depth.
void setChannel(World& world, int x, int y, std::size_t channel, double number) {
    std::byte* pixel = world.row(y) + x * TessavoyHost::bytesPerPixel(world.bitsPerChannel());
    const auto put = [&](auto value) { std::memcpy(pixel + channel * sizeof value, &value, sizeof value); };
    switch (world.bitsPerChannel()) {
        case 8:
            return put(static_cast<std::uint8_t>(std::lround(number)));
        case 16:
            return put(static_cast<std::uint16_t>(std::lround(number)));
        default:
            return put(static_cast<float>(number));
    }
}

World expectedWorld(const ReferenceOutput& expected) {
    World world(expected.width, expected.height, expected.bitsPerChannel);
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            for (std::size_t channel = 0; channel < 4; ++channel) {
                setChannel(world, x, y, channel, expected.at(x, y).argb[channel]);
            }
        }
    }
    return world;
}

/// Red, green and blue are off by ten times what the picture shows; pixels that weren't compared are grey.
World differenceWorld(const ReferenceOutput& expected, const World& seen, const World& actual) {
    World world(expected.width, expected.height, 8);
    for (int y = 0; y < expected.height; ++y) {
        for (int x = 0; x < expected.width; ++x) {
            const auto a = TessavoyHost::pixelAt(seen, x, y);
            const auto b = TessavoyHost::pixelAt(actual, x, y);
            const double alpha = std::abs(a.a - b.a);
            const std::array<double, 3> off = {std::abs(a.r - b.r), std::abs(a.g - b.g), std::abs(a.b - b.b)};
            setChannel(world, x, y, 0, 255.0);
            for (std::size_t n = 0; n < 3; ++n) {
                const double shown = expected.at(x, y).sure ? std::min(1.0, 10.0 * std::max(off[n], alpha)) : 0.5;
                setChannel(world, x, y, n + 1, 255.0 * shown);
            }
        }
    }
    return world;
}

std::string fraction(const Rational& rational) {
    return std::to_string(rational.num) + "/" + std::to_string(rational.den);
}

/// The command that renders the written scene as the test did.
std::string commandOf(const std::filesystem::path& folder, const View& view) {
    std::ostringstream text;
    text << "tessavoy render " << (folder / "scene.json").string() << " -o " << (folder / "again.png").string()
         << " --frames 0 --existing overwrite --depth " << view.bitsPerChannel << " --resolution "
         << fraction(view.downsampleX) << "," << fraction(view.downsampleY);
    if (view.region) {
        text << " --region " << view.region->x << "," << view.region->y << "," << view.region->width << ","
             << view.region->height;
    }
    return text.str();
}

std::string testName() {
    const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
    return std::string(info->test_suite_name()) + "." + info->name();
}

std::filesystem::path failureFolder(const View& view) {
    std::string name = testName() + "_" + view.name + std::to_string(view.bitsPerChannel);
    std::replace(name.begin(), name.end(), '/', '_');
    const std::filesystem::path folder = std::filesystem::path(testing::TempDir()) / "TessavoyPictures" / name;
    std::filesystem::create_directories(folder);
    return folder;
}

}  // namespace

PictureJudgement judge(const ReferencePicture& reference, const World& world, double tolerance) {
    PictureJudgement judgement{convertOutput(reference, world.bitsPerChannel()), {}, 0};
    const auto pixels = world.view();
    judgement.comparison = compareSurePixels(judgement.expected, pixels.data, pixels.strideBytes, tolerance);
    judgement.drawn = static_cast<int>(
        std::count_if(judgement.expected.pixels.begin(), judgement.expected.pixels.end(),
                      [](const ReferenceOutputPixel& pixel) { return pixel.sure && pixel.argb[0] > 0.0; }));
    return judgement;
}

ReferencePicture referenceOf(const Picture& picture, const View& view) {
    return drawReference(gridOf(picture, view).scene());
}

int PictureFixture::expectAsDrawn(const Picture& picture, const View& view, const ReferencePicture& reference) {
    SCOPED_TRACE(std::to_string(view.bitsPerChannel) + " bits");
    const TessavoyHost::FrameResult frame = render(sceneOf(picture), view.request());
    const World& world = frame.output;
    if (!world.hasPixels() || world.width() != reference.width || world.height() != reference.height ||
        world.bitsPerChannel() != view.bitsPerChannel) {
        ADD_FAILURE() << "no picture of " << reference.width << " by " << reference.height << " pixels";
        return 0;
    }
    const PictureJudgement judgement = judge(reference, world, picture.tolerance);
    const double pixels = reference.width * reference.height;
    EXPECT_GE(judgement.comparison.compared, picture.leastCompared * pixels) << "of " << pixels << " pixels";
    EXPECT_GE(judgement.drawn, picture.leastDrawn * pixels) << "of " << pixels << " pixels";
    if (judgement.comparison.wrong > 0) {
        ADD_FAILURE() << report(picture, view, world, judgement);
    }
    return judgement.drawn;
}

void PictureFixture::expectAsReferenceAtEveryDepth(const Picture& picture) {
    const ReferencePicture reference = referenceOf(picture, wholeView(8));
    for (const int bits : {8, 16, 32}) {
        expectAsDrawn(picture, wholeView(bits), reference);
    }
}

std::string PictureFixture::report(const Picture& picture, const View& view, const World& world,
                                   const PictureJudgement& judgement) {
    const std::filesystem::path folder = failureFolder(view);
    const World expected = expectedWorld(judgement.expected);
    const auto write = [&](const char* file, const World& what) {
        writeImage(folder / file, TessavoyHost::FileFormat::Png, what.view(), {0, "Tessavoy tests"}, 1);
    };
    write("expected.png", expected);
    write("actual.png", world);
    write("difference.png", differenceWorld(judgement.expected, expected, world));
    writeScene(folder, sceneOf(picture).project, host().parameters());
    std::ostringstream text;
    text << judgement.comparison.wrong << " of " << judgement.comparison.compared << " compared pixels differ; first "
         << judgement.comparison.firstWrong << "\nexpected, actual and difference: " << folder.string()
         << "\nagain: TessavoyTests --gtest_filter=" << testName() << "\n       " << commandOf(folder, view);
    return text.str();
}

void EveryDepth::expectPicture() {
    const auto& [named, doubled] = GetParam();
    Picture picture = named.make();
    picture.grid.multisampled = doubled;
    expectAsReferenceAtEveryDepth(picture);
}

TEST_P(EveryDepth, isAsTheReference) {
    expectPicture();
}

std::string nameOf(const testing::TestParamInfo<EveryDepth::ParamType>& info) {
    const auto& [named, doubled] = info.param;
    return std::string(named.name) + (doubled ? "_Doubled" : "_Single");
}

void OtherViews::expectPicture() {
    const auto& [named, view] = GetParam();
    Picture picture = enlarged(named.make());
    picture.grid.multisampled = view.doubled;
    expectAsReference(picture, view);
}

TEST_P(OtherViews, isAsTheReference) {
    expectPicture();
}

const std::vector<View>& otherViews() {
    static const std::vector<View> views = {
        {"Half", {1, 2}, {1, 2}, std::nullopt, 8, false},
        {"Third", {1, 3}, {1, 3}, std::nullopt, 16, true},
        {"Unequal", {1, 2}, {1, 4}, std::nullopt, 32, false},
        {"Part", {1, 1}, {1, 1}, TessavoyHost::Region{37, 21, 60, 45}, 8, true},
        {"PartOfHalf", {1, 2}, {1, 2}, TessavoyHost::Region{11, 7, 50, 33}, 16, false},
        {"PartOfUnequal", {1, 2}, {1, 3}, TessavoyHost::Region{7, 4, 45, 24}, 8, true},
    };
    return views;
}

std::string nameOfView(const testing::TestParamInfo<OtherViews::ParamType>& info) {
    const auto& [named, view] = info.param;
    return std::string(named.name) + "_" + view.name + (view.doubled ? "_Doubled_" : "_Single_") +
           std::to_string(view.bitsPerChannel) + "bit";
}

void PrintTo(const NamedPicture& picture, std::ostream* stream) {
    *stream << picture.name;
}

void PrintTo(const View& view, std::ostream* stream) {
    *stream << view.name;
}

}  // namespace Tessavoy
