#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "Host/HostError.h"
#include "Host/ImageFiles/ImageFiles.h"

namespace TessavoyHost {

// A folder that is empty at the start of a test and gone at its end.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::filesystem::path path() const { return mPath; }
    std::filesystem::path operator/(const std::string& name) const { return mPath / name; }
    int fileCount() const;  // hidden ones too

private:
    std::filesystem::path mPath;
};

std::string readBytes(const std::filesystem::path& path);
std::filesystem::path writeBytes(const std::filesystem::path& path, const std::string& bytes);

// The samples of an image: R, G, B, A, R, ...
template <class Sample>
std::vector<Sample> samplesOf(const Image& image) {
    std::vector<Sample> samples(image.samples.size() / sizeof(Sample));
    std::memcpy(samples.data(), image.samples.data(), image.samples.size());
    return samples;
}

// A world of the given samples (A, R, G, B, A, ...), its rows padded with rubbish.
template <class Sample>
class TestWorld {
public:
    TestWorld(int width, int height, const std::vector<Sample>& argb) : mStride(width * 4 + 12) {
        mSamples.assign(static_cast<std::size_t>(mStride * height), Sample{77});
        for (int y = 0; y < height; ++y)
            std::copy_n(argb.begin() + y * width * 4, width * 4, mSamples.begin() + y * mStride);
        mView = {reinterpret_cast<const std::byte*>(mSamples.data()), width, height,
                 static_cast<std::ptrdiff_t>(static_cast<std::size_t>(mStride) * sizeof(Sample)),
                 static_cast<int>(sizeof(Sample) * 8)};
    }
    const PixelView& view() const { return mView; }

private:
    int mStride;  // in samples
    std::vector<Sample> mSamples;
    PixelView mView;
};

// Bytes that no compression shrinks, the same in every run.
TestWorld<std::uint8_t> noiseWorld(int width, int height);

// What a call told the user, with its status; fails the test when it told nothing.
struct Told {
    std::string text;
    ExitStatus status = ExitStatus::Success;
};

template <class Call>
Told toldBy(Call call) {
    try {
        call();
    } catch (const HostError& error) {
        return {error.what(), error.status()};
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

inline Told toldByReading(const std::filesystem::path& path) {
    return toldBy([&] { readImage(path); });
}

}  // namespace TessavoyHost
