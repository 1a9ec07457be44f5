#include "Host/LayerWorlds.h"

#include <utility>

#include "Host/WorldFromImage.h"

namespace TessavoyHost {
namespace {

constexpr std::size_t mostBytes = std::size_t{512} << 20;

}  // namespace

Region LayerWorlds::bounds(int layer, const Rational& downsampleX, const Rational& downsampleY) const {
    const FrameSource& source = *mProject.layers.at(static_cast<std::size_t>(layer));
    return {0, 0, downsampled(source.width(), downsampleX), downsampled(source.height(), downsampleY)};
}

// Two threads may convert the same picture side by side; that costs less than one waiting for the other.
std::shared_ptr<const World> LayerWorlds::worldAt(int layer, double compositionSeconds, int bitsPerChannel,
                                                  const Rational& downsampleX, const Rational& downsampleY) {
    auto image = mProject.layers.at(static_cast<std::size_t>(layer))->frameAt(compositionSeconds);
    if (image == nullptr)
        return nullptr;
    if (auto world = find(image.get(), bitsPerChannel, downsampleX, downsampleY))
        return world;
    auto world = std::make_shared<const World>(makeWorld(*image, bitsPerChannel, downsampleX, downsampleY));
    keep({std::move(image), bitsPerChannel, downsampleX, downsampleY, world});
    return world;
}

std::shared_ptr<const World> LayerWorlds::find(const Image* image, int bits, const Rational& x, const Rational& y) {
    const std::lock_guard lock(mMutex);
    for (auto made = mRecent.begin(); made != mRecent.end(); ++made) {
        if (made->image.get() == image && made->bits == bits && made->x == x && made->y == y) {
            mRecent.splice(mRecent.begin(), mRecent, made);
            return made->world;
        }
    }
    return nullptr;
}

void LayerWorlds::keep(Made made) {
    const std::lock_guard lock(mMutex);
    mBytes += made.world->bytes();
    mRecent.push_front(std::move(made));
    while (mBytes > mostBytes && mRecent.size() > 1) {
        mBytes -= mRecent.back().world->bytes();
        mRecent.pop_back();
    }
}

}  // namespace TessavoyHost
