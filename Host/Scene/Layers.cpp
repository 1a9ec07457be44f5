#include "Host/Scene/Layers.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "Host/HostError.h"
#include "Host/Scene/Files.h"
#include "Host/TimeBase.h"

namespace TessavoyHost {
namespace {

// Decoded pictures that one layer keeps beyond those in use.
constexpr std::size_t layerBudget = std::size_t{256} << 20;

Image solidImage(int width, int height, ColorValue color) {
    Image image;
    image.width = width;
    image.height = height;
    image.format = SampleFormat::UInt8;
    image.samples.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    const std::array<std::byte, 4> pixel{std::byte{color.red}, std::byte{color.green}, std::byte{color.blue},
                                         std::byte{color.alpha}};
    for (std::size_t i = 0; i < image.samples.size(); ++i) {
        image.samples[i] = pixel[i % pixel.size()];
    }
    return image;
}

std::string sizeInWords(int width, int height) {
    return std::to_string(width) + " x " + std::to_string(height);
}

}  // namespace

std::optional<double> LayerSource::layerTime(double compositionSeconds) const {
    const double time = compositionSeconds - mFrame.start;
    if (time < -sameMoment || time >= mFrame.duration - sameMoment) {
        return std::nullopt;
    }
    return std::max(0.0, time);
}

std::shared_ptr<const Image> SolidSource::frameAt(double compositionSeconds) {
    if (!layerTime(compositionSeconds)) {
        return nullptr;
    }
    std::call_once(mMade, [this] { mImage = std::make_shared<Image>(solidImage(width(), height(), mColor)); });
    return mImage;
}

ImageCache::ImageCache(ImageReader read, int width, int height, std::size_t budget)
    : mRead(std::move(read)), mWidth(width), mHeight(height), mBudget(budget) {}

std::shared_ptr<const Image> ImageCache::get(const std::filesystem::path& file) {
    std::shared_ptr<Entry> entry;
    {
        const std::lock_guard lock(mMutex);
        auto& place = mEntries[file];
        if (!place) {
            place = std::make_shared<Entry>();
        }
        entry = place;
    }
    const std::lock_guard lock(entry->decoding);
    auto image = entry->image.lock();
    if (!image) {
        image = decode(file);
        entry->image = image;
    }
    keep(image);
    return image;
}

std::shared_ptr<const Image> ImageCache::decode(const std::filesystem::path& file) const {
    auto image = std::make_shared<Image>(mRead(file));
    if (image->width != mWidth || image->height != mHeight) {
        throw HostError(ExitStatus::Scene, utf8(file) + ": is " + sizeInWords(image->width, image->height) +
                                               " pixels, and the layer's first file is " +
                                               sizeInWords(mWidth, mHeight));
    }
    return image;
}

void ImageCache::keep(const std::shared_ptr<const Image>& image) {
    const std::lock_guard lock(mMutex);
    std::erase(mKept, image);
    mKept.push_back(image);
    std::size_t bytes = 0;
    for (const auto& kept : mKept) {
        bytes += kept->samples.size();
    }
    while (bytes > mBudget && mKept.size() > 1) {
        bytes -= mKept.front()->samples.size();
        mKept.erase(mKept.begin());
    }
}

StillSource::StillSource(LayerFrame frame, std::filesystem::path file, ImageReader read)
    : LayerSource(std::move(frame)), mFile(std::move(file)), mCache(std::move(read), width(), height(), layerBudget) {}

std::shared_ptr<const Image> StillSource::frameAt(double compositionSeconds) {
    return layerTime(compositionSeconds) ? mCache.get(mFile) : nullptr;
}

std::filesystem::path SequenceFiles::file(int index) const {
    return folder / pathFromUtf8(name.with(first + index));
}

SequenceSource::SequenceSource(LayerFrame frame, SequenceFiles files, ImageReader read)
    : LayerSource(std::move(frame)),
      mFiles(std::move(files)),
      mCache(std::move(read), width(), height(), layerBudget) {}

std::shared_ptr<const Image> SequenceSource::frameAt(double compositionSeconds) {
    const auto time = layerTime(compositionSeconds);
    if (!time) {
        return nullptr;
    }
    const auto index = static_cast<int>(std::floor((*time + sameMoment) * mFiles.frameRate));
    return mCache.get(mFiles.file(std::clamp(index, 0, mFiles.count - 1)));
}

}  // namespace TessavoyHost
