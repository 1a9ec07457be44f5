#pragma once

#include "HostInterface/Constants.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tessavoy {

/// A pixel of the panel, 8 bits a channel, straight alpha.
struct PanelPixel {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;
    std::uint8_t a = 0;

    bool operator==(const PanelPixel&) const = default;
};

/// A picture for the panel: rows from the top, without padding; width * height pixels.
struct PanelImage {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<PanelPixel> pixels;
};

/// Bytes of a pixel in the host's layouts with alpha.
inline constexpr std::int32_t panelPixelBytes = 4;

/// The picture's bytes in the host's layout, rows without padding. Known are the straight ones with alpha, in both
/// orders.
std::vector<std::byte> pixelsInLayout(const PanelImage& image, DRAWBOT_PixelLayoutValue layout);

}  // namespace Tessavoy
