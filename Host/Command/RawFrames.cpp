#include "Host/Command/RawFrames.h"

#include <bit>

namespace TessavoyHost {

static_assert(std::endian::native == std::endian::little, "samples are copied as they stand in memory");

std::string rawFrame(const PixelView& pixels) {
    const auto rowBytes =
        static_cast<std::size_t>(pixels.width) * 4 * static_cast<std::size_t>(pixels.bitsPerChannel / 8);
    std::string bytes;
    bytes.reserve(rowBytes * static_cast<std::size_t>(pixels.height));
    for (int y = 0; y < pixels.height; ++y) {
        bytes.append(reinterpret_cast<const char*>(pixels.data + y * pixels.strideBytes), rowBytes);
    }
    return bytes;
}

}  // namespace TessavoyHost
