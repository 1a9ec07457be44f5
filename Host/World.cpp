#include "Host/World.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "Host/Handles.h"

namespace TessavoyHost {
namespace {

// Records of ours carry the address of one of these, so that float worlds can be told from 8-bit ones, which the
// published flags cannot.
constexpr std::array<int, 3> depths = {8, 16, 32};

const int* depthTag(int bitsPerChannel) {
    return std::find(depths.begin(), depths.end(), bitsPerChannel);
}

// At least four pixels wider than the picture.
int rowPixels(int width) {
    return (width / 4 + 2) * 4;
}

}  // namespace

Region intersection(const Region& a, const Region& b) {
    const int left = std::max(a.x, b.x);
    const int top = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width);
    const int bottom = std::min(a.y + a.height, b.y + b.height);
    return {left, top, std::max(0, right - left), std::max(0, bottom - top)};
}

PF_LRect toRect(const Region& region) {
    return {region.x, region.y, region.x + region.width, region.y + region.height};
}

Region toRegion(const PF_LRect& rect) {
    return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

World::World(int width, int height, int bitsPerChannel, Fill fill) : mBits(bitsPerChannel) {
    mRecord.rowbytes = rowPixels(width) * bytesPerPixel(bitsPerChannel);
    mRecord.width = width;
    mRecord.height = height;
    mBlock = std::make_shared<PoolBlock>(bytes());
    mRecord.world_flags = PF_WorldFlag_WRITEABLE | (bitsPerChannel == 16 ? PF_WorldFlag_DEEP : 0);
    mRecord.data = reinterpret_cast<PF_PixelPtr>(mBlock->block.data);
    mRecord.extent_hint = {0, 0, width, height};
    mRecord.pix_aspect_ratio = {1, 1};
    mRecord.platform_ref = const_cast<int*>(depthTag(bitsPerChannel));
    if (fill != Fill::None)
        std::memset(mBlock->block.data, fill == Fill::Zero ? 0 : rubbishByte, bytes());
}

std::byte* World::row(int y) const {
    return reinterpret_cast<std::byte*>(mRecord.data) + static_cast<std::ptrdiff_t>(y) * mRecord.rowbytes;
}

PixelView World::view() const {
    return {row(0), width(), height(), mRecord.rowbytes, mBits};
}

PF_LayerDef World::partRecord(const Region& region) const {
    PF_LayerDef part = mRecord;
    part.world_flags &= ~PF_WorldFlag_WRITEABLE;
    part.data = reinterpret_cast<PF_PixelPtr>(row(region.y) + region.x * bytesPerPixel(mBits));
    part.width = region.width;
    part.height = region.height;
    part.extent_hint = {0, 0, region.width, region.height};
    part.origin_x = region.x;
    part.origin_y = region.y;
    return part;
}

int bitsOf(const PF_LayerDef& record) {
    const auto tag = static_cast<const int*>(record.platform_ref);
    const bool ours = std::any_of(depths.begin(), depths.end(), [&](const int& depth) { return &depth == tag; });
    return ours ? *tag : 0;
}

PF_PixelFormat pixelFormatOf(const PF_LayerDef& record) {
    switch (bitsOf(record)) {
        case 8:
            return PF_PixelFormat_ARGB32;
        case 16:
            return PF_PixelFormat_ARGB64;
        case 32:
            return PF_PixelFormat_ARGB128;
        default:
            return PF_PixelFormat_INVALID;
    }
}

int bitsOfFormat(PF_PixelFormat format) {
    switch (format) {
        case PF_PixelFormat_ARGB32:
            return 8;
        case PF_PixelFormat_ARGB64:
            return 16;
        case PF_PixelFormat_ARGB128:
            return 32;
        default:
            return 0;
    }
}

int downsampled(int size, const Rational& factor) {
    const auto parts = static_cast<std::int64_t>(size) * factor.num;
    return static_cast<int>((parts + factor.den - 1) / factor.den);
}

}  // namespace TessavoyHost
