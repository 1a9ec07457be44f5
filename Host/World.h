#pragma once

#include <cstddef>
#include <memory>

#include "Host/BlockPool.h"
#include "Host/Image.h"
#include "Host/Rational.h"
#include "HostInterface/Constants.h"
#include "HostInterface/Parameters.h"

namespace TessavoyHost {

// Pixels: left and top of the first one, and how many.
struct Region {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool empty() const { return width <= 0 || height <= 0; }
    friend bool operator==(const Region&, const Region&) = default;
};

Region intersection(const Region& a, const Region& b);
PF_LRect toRect(const Region& region);
Region toRegion(const PF_LRect& rect);

// A rectangle of pixels in the host's order (alpha, red, green, blue; straight) with 8, 16 (to 32768) or 32 bits
// (float) a channel. Rows stand at a stride that is always wider than the picture. Moves, but is not copied.
class World {
public:
    enum class Fill { None, Zero, Rubbish };

    // No pixels.
    World() = default;
    // Throws std::bad_alloc.
    World(int width, int height, int bitsPerChannel, Fill fill = Fill::Zero);
    World(World&&) = default;
    World& operator=(World&&) = default;

    // The record that a module is given. Its pixels belong to this object.
    PF_LayerDef& record() { return mRecord; }
    const PF_LayerDef& record() const { return mRecord; }

    int width() const { return mRecord.width; }
    int height() const { return mRecord.height; }
    int bitsPerChannel() const { return mBits; }
    std::size_t bytes() const {
        return static_cast<std::size_t>(mRecord.rowbytes) * static_cast<std::size_t>(height());
    }
    bool hasPixels() const { return mRecord.data != nullptr; }

    std::byte* row(int y) const;
    PixelView view() const;

    // A record of the part of this world inside the region, which it must cover; the pixels are shared. Its origin is
    // the region's corner.
    PF_LayerDef partRecord(const Region& region) const;

private:
    struct PoolBlock {
        BlockPool::Block block;
        explicit PoolBlock(std::size_t bytes) : block(BlockPool::shared().take(bytes)) {}
        ~PoolBlock() { BlockPool::shared().give(block); }
        PoolBlock(const PoolBlock&) = delete;
        PoolBlock& operator=(const PoolBlock&) = delete;
    };

    int mBits = 0;
    std::shared_ptr<PoolBlock> mBlock;
    PF_LayerDef mRecord{};
};

constexpr int bytesPerPixel(int bitsPerChannel) {
    return bitsPerChannel / 2;
}

// The depth of a record that the host made, or 0 for another.
int bitsOf(const PF_LayerDef& record);
PF_PixelFormat pixelFormatOf(const PF_LayerDef& record);
// Bits per channel of a pixel format, or 0.
int bitsOfFormat(PF_PixelFormat format);

// The size at a downsample factor: rounded up, so that no column is lost.
int downsampled(int size, const Rational& factor);

}  // namespace TessavoyHost
