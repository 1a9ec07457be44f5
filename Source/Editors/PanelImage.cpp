#include "Source/Editors/PanelImage.h"

namespace Tessavoy {

std::vector<std::byte> pixelsInLayout(const PanelImage& image, DRAWBOT_PixelLayoutValue layout) {
    std::vector<std::byte> bytes;
    bytes.reserve(image.pixels.size() * panelPixelBytes);
    const auto append = [&bytes](auto... channels) { (bytes.push_back(std::byte{channels}), ...); };
    for (const PanelPixel& pixel : image.pixels) {
        if (layout == kDRAWBOT_PixelLayout_32ARGB_Straight) {
            append(pixel.a, pixel.r, pixel.g, pixel.b);
        } else {
            append(pixel.b, pixel.g, pixel.r, pixel.a);
        }
    }
    return bytes;
}

}  // namespace Tessavoy
