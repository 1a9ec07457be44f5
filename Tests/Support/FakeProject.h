#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Host/Image.h"
#include "Host/Project.h"

// Layers and projects made in memory.
namespace FakeProject {

// Red, green, blue and alpha.
using Texel = std::array<std::uint8_t, 4>;

// An 8-bit picture whose texel at column x, row y is texelAt(x, y).
template <class TexelAt>
std::shared_ptr<const TessavoyHost::Image> image(int width, int height, TexelAt texelAt) {
    auto made = std::make_shared<TessavoyHost::Image>();
    made->width = width;
    made->height = height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Texel texel = texelAt(x, y);
            for (const std::uint8_t value : texel)
                made->samples.push_back(static_cast<std::byte>(value));
        }
    }
    return made;
}

// One of a single colour.
inline std::shared_ptr<const TessavoyHost::Image> solidImage(int width, int height, std::uint8_t red,
                                                             std::uint8_t green, std::uint8_t blue,
                                                             std::uint8_t alpha = 255) {
    return image(width, height, [&](int, int) { return Texel{red, green, blue, alpha}; });
}

// Shows one picture from its start for its duration.
class StillLayer : public TessavoyHost::FrameSource {
public:
    StillLayer(std::string name, std::shared_ptr<const TessavoyHost::Image> image, double start = 0,
               double duration = 1000)
        : mName(std::move(name)), mImage(std::move(image)), mStart(start), mDuration(duration) {}

    std::string name() const override { return mName; }
    int width() const override { return mImage->width; }
    int height() const override { return mImage->height; }
    double start() const override { return mStart; }
    double duration() const override { return mDuration; }
    std::shared_ptr<const TessavoyHost::Image> frameAt(double time) override {
        return time < mStart || time >= mStart + mDuration ? nullptr : mImage;
    }

private:
    std::string mName;
    std::shared_ptr<const TessavoyHost::Image> mImage;
    double mStart;
    double mDuration;
};

// Shows one picture after the other from its start, 25 a second, and the last one until its end.
class FilmLayer : public TessavoyHost::FrameSource {
public:
    static constexpr double framesPerSecond = 25;

    FilmLayer(std::string name, std::vector<std::shared_ptr<const TessavoyHost::Image>> images, double start,
              double duration)
        : mName(std::move(name)), mImages(std::move(images)), mStart(start), mDuration(duration) {}

    std::string name() const override { return mName; }
    int width() const override { return mImages.front()->width; }
    int height() const override { return mImages.front()->height; }
    double start() const override { return mStart; }
    double duration() const override { return mDuration; }
    std::shared_ptr<const TessavoyHost::Image> frameAt(double time) override {
        if (time < mStart || time >= mStart + mDuration)
            return nullptr;
        const auto frame = static_cast<std::size_t>(std::floor((time - mStart) * framesPerSecond + 1e-6));
        return mImages[std::min(frame, mImages.size() - 1)];
    }

private:
    std::string mName;
    std::vector<std::shared_ptr<const TessavoyHost::Image>> mImages;
    double mStart;
    double mDuration;
};

// A composition of 100 by 80 pixels, 25 frames a second, 4 seconds, with one red layer of that size.
inline TessavoyHost::Project project() {
    TessavoyHost::Project made;
    made.composition = {100, 80, {25, 1}, 4};
    made.layers.push_back(std::make_shared<StillLayer>("Plate", solidImage(100, 80, 200, 100, 50)));
    return made;
}

}  // namespace FakeProject
