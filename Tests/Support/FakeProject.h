#pragma once

#include <memory>
#include <string>
#include <utility>

#include "Host/Image.h"
#include "Host/Project.h"

// Layers and projects made in memory.
namespace FakeProject {

// An 8-bit picture of one colour.
inline std::shared_ptr<const TessavoyHost::Image> solidImage(int width, int height, std::uint8_t red,
                                                             std::uint8_t green, std::uint8_t blue,
                                                             std::uint8_t alpha = 255) {
    auto image = std::make_shared<TessavoyHost::Image>();
    image->width = width;
    image->height = height;
    for (int pixel = 0; pixel < width * height; ++pixel) {
        for (const std::uint8_t value : {red, green, blue, alpha})
            image->samples.push_back(static_cast<std::byte>(value));
    }
    return image;
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

// A composition of 100 by 80 pixels, 25 frames a second, 4 seconds, with one red layer of that size.
inline TessavoyHost::Project project() {
    TessavoyHost::Project made;
    made.composition = {100, 80, {25, 1}, 4};
    made.layers.push_back(std::make_shared<StillLayer>("Plate", solidImage(100, 80, 200, 100, 50)));
    return made;
}

}  // namespace FakeProject
