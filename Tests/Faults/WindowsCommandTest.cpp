#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "Host/ImageFiles/ImageFiles.h"
#include "Tests/Support/CommandFixture.h"
#include "Tests/Support/Examples.h"

// The effect built for Windows is the same effect: every example comes out of its command, run under Wine, as it comes
// out of the command here.

namespace TessavoyHost {
namespace {

using testing::ElementsAre;

constexpr const char* windowsCommand = TESSAVOY_WINDOWS_FOLDER "/tessavoy.exe";

// Why these tests can't run; empty where they can.
std::string whatIsMissing() {
    if (!std::filesystem::exists(windowsCommand)) {
        return "the Windows build isn't there; make it with: Tools/Build windows";
    }
    return std::system(TESSAVOY_WINE " --check >/dev/null 2>&1") == 0 ? "" : "Wine or Xvfb is missing";
}

class WindowsCommand : public CommandFixture, public testing::WithParamInterface<std::filesystem::path> {
protected:
    void SetUp() override {
        if (const std::string missing = whatIsMissing(); !missing.empty()) {
            GTEST_SKIP() << missing;
        }
    }

    Outcome runOnWindows(const std::string& arguments) {
        return runProgram("'" TESSAVOY_WINE "' '" + std::string(windowsCommand) + "' " + arguments);
    }

    // The example with its images as PAM files in the folder, since the Windows build reads no others, and with what it
    // needs beside it.
    void takeExample() {
        scene = exampleScene(GetParam());
        for (auto& layer : scene.at("layers")) {
            if (layer.contains("image")) {
                layer["image"] = asPam(layer["image"].get<std::string>());
            }
        }
        if (scene["effect"].contains("script")) {
            scene["effect"]["scriptText"] =
                contents(GetParam().parent_path() / scene["effect"]["script"].get<std::string>());
            scene["effect"].erase("script");
        }
    }

private:
    std::string asPam(const std::filesystem::path& file) const {
        const Image image = readImage(file);
        const std::string name = file.stem().string() + ".pam";
        std::vector<std::byte> argb(image.samples.size());
        const std::size_t size = bytesPerSample(image.format);
        EXPECT_NE(image.format, SampleFormat::Float32) << "no PAM holds it";
        for (std::size_t pixel = 0; pixel < argb.size(); pixel += 4 * size) {
            std::copy_n(&image.samples[pixel], 3 * size, &argb[pixel + size]);
            std::copy_n(&image.samples[pixel + 3 * size], size, &argb[pixel]);
        }
        EXPECT_EQ(image.format, SampleFormat::UInt8);
        const PixelView view{argb.data(), image.width, image.height, static_cast<std::ptrdiff_t>(image.rowBytes()), 8};
        writeImage(folder / name, FileFormat::Pam, view, {0, "test"}, 0);
        return name;
    }
};

int stepsBetween(const Image& first, const Image& second, int x, int y) {
    int largest = 0;
    for (int channel = 0; channel < 4; ++channel) {
        largest = std::max(largest, std::abs(first.row<std::uint8_t>(y)[4 * x + channel] -
                                             second.row<std::uint8_t>(y)[4 * x + channel]));
    }
    return largest;
}

// Whether a pixel and those around it are nearly one colour.
bool isAwayFromEdges(const Image& image, int x, int y) {
    constexpr int nearly = 24;
    for (int ny = std::max(y - 1, 0); ny <= std::min(y + 1, image.height - 1); ++ny) {
        for (int nx = std::max(x - 1, 0); nx <= std::min(x + 1, image.width - 1); ++nx) {
            for (int channel = 0; channel < 4; ++channel) {
                if (std::abs(image.row<std::uint8_t>(ny)[4 * nx + channel] -
                             image.row<std::uint8_t>(y)[4 * x + channel]) > nearly) {
                    return false;
                }
            }
        }
    }
    return true;
}

TEST_P(WindowsCommand, ShowsTheSamePictures) {
    takeExample();
    const std::string options = " --frames 12 --depth 8 --resolution half --strict --progress none";
    const Outcome here = run("render scene.json -o here.####.pam" + options);
    ASSERT_EQ(here.status, 0) << here.error;
    const Outcome there = runOnWindows("render scene.json -o there.####.pam" + options);
    ASSERT_EQ(there.status, 0) << there.error;
    const Image first = readImage(folder / "here.0012.pam");
    const Image second = readImage(folder / "there.0012.pam");
    ASSERT_EQ(first.samples.size(), second.samples.size());
    int compared = 0;
    for (int y = 0; y < first.height; ++y) {
        for (int x = 0; x < first.width; ++x) {
            if (isAwayFromEdges(first, x, y)) {
                ++compared;
                ASSERT_LE(stepsBetween(first, second, x, y), 1) << "at " << x << ", " << y;
            }
        }
    }
    EXPECT_GT(compared, first.width * first.height / 20) << "nearly all of the picture is edges";
}

// Prints a cell's place and all that a script sees of it, each number as its eight bytes.
constexpr const char* printRecord = R"(
local function bits(value)
  if type(value) ~= "number" then return tostring(value) end
  return (string.pack("<d", value):gsub(".", function(byte) return string.format("%02x", byte:byte()) end))
end
local fields = {visible, x, y, z, angleX, angleY, angle, radius, r, g, b, a, feather, stroke, strokeWidth, partsCount,
                anchorX, anchorY, scaleX, scaleY, angleOffset, spriteIndex}
for field = 1, 22 do fields[field] = bits(fields[field]) end
print("record", i, j, table.concat(fields, " "))
)";

std::vector<std::string> recordsIn(const Outcome& outcome) {
    std::vector<std::string> records;
    for (std::string line : linesOf(outcome.error)) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        if (line.starts_with("record")) {
            records.push_back(line);
        }
    }
    return records;
}

// In the place of the example's own script, which may ask for a sine: that comes from the system's library, and its
// last bit differs from system to system.
TEST_P(WindowsCommand, EvaluatesTheSameBits) {
    takeExample();
    scene["effect"]["scriptText"] = printRecord;
    const std::string options = " --frames 12 --resolution quarter --progress none";
    const auto here = recordsIn(run("render scene.json -o here.####.pam" + options));
    const auto there = recordsIn(runOnWindows("render scene.json -o there.####.pam" + options));
    EXPECT_GT(here.size(), 30U) << "cells";
    ASSERT_EQ(here.size(), there.size());
    for (std::size_t cell = 0; cell < here.size(); ++cell) {
        ASSERT_EQ(here[cell], there[cell]);
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, WindowsCommand, testing::ValuesIn(exampleScenes()), nameOfExample);

class WindowsCommandLine : public WindowsCommand {};

TEST_P(WindowsCommandLine, RendersOnEightThreadsWhatItRendersOnOne) {
    takeExample();
    const std::string options = " --frames 0-15 --resolution quarter --strict --progress none";
    ASSERT_EQ(runOnWindows("render scene.json -o one.####.pam" + options).status, 0);
    const Outcome eight = runOnWindows("render scene.json -o eight.####.pam --threads 8" + options);
    ASSERT_EQ(eight.status, 0) << eight.error;
    for (int frame = 0; frame < 16; ++frame) {
        const std::string number = (frame < 10 ? ".000" : ".00") + std::to_string(frame) + ".pam";
        EXPECT_EQ(contents(folder / ("one" + number)), contents(folder / ("eight" + number))) << frame;
    }
}

TEST_P(WindowsCommandLine, ListsTheSameParameters) {
    std::string there = runOnWindows("parameters --json").out;
    there.erase(std::remove(there.begin(), there.end(), '\r'), there.end());
    EXPECT_EQ(run("parameters --json").out, there);
    EXPECT_GT(there.size(), 100000U);
}

INSTANTIATE_TEST_SUITE_P(OfNoise, WindowsCommandLine,
                         testing::Values(std::filesystem::path(TESSAVOY_EXAMPLES) / "NoiseField.json"), nameOfExample);

}  // namespace
}  // namespace TessavoyHost
