#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>

#include "Host/Image.h"
#include "Host/World.h"

namespace TessavoyHost {

// A pixel of a drawing: red, green, blue, alpha.
struct Rgba {
    int red = 0, green = 0, blue = 0, alpha = 255;

    friend bool operator==(const Rgba&, const Rgba&) = default;
    friend std::ostream& operator<<(std::ostream& stream, const Rgba& c) {
        return stream << c.red << ' ' << c.green << ' ' << c.blue << ' ' << c.alpha;
    }
};

inline Rgba drawnPixel(const Image& image, int x, int y) {
    const std::uint8_t* pixel = image.row<std::uint8_t>(y) + 4 * x;
    return {pixel[0], pixel[1], pixel[2], pixel[3]};
}

// The smallest rectangle around all pixels that differ from the colour; empty when none does.
inline Region inkOf(const Image& image, const Rgba& paper) {
    int left = image.width, top = image.height, right = 0, bottom = 0;
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) {
            if (drawnPixel(image, x, y) == paper)
                continue;
            left = std::min(left, x);
            right = std::max(right, x + 1);
            top = std::min(top, y);
            bottom = std::max(bottom, y + 1);
        }
    }
    return right <= left ? Region{} : Region{left, top, right - left, bottom - top};
}

}  // namespace TessavoyHost
