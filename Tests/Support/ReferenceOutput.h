#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "Tests/Support/ReferenceRasteriser.h"

namespace Tessavoy {

/// A pixel as a world of the host holds it: straight colour.
struct ReferenceOutputPixel {
    std::array<double, 4> argb{};  ///< in the world's units (full is 255, 32768 or 1.0), within its range, not rounded
    double alpha = 0.0;            ///< of the drawn picture, 0..1
    bool sure = true;
};

struct ReferenceOutput {
    int width = 0, height = 0;
    int bitsPerChannel = 8;
    std::vector<ReferenceOutputPixel> pixels;

    const ReferenceOutputPixel& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

/// Turns a drawn picture into a world's pixels at 8, 16 or 32 bits: clamped to 0..1, nothing below an alpha of 0.01,
/// then divided by alpha. Divided colour may exceed 1; 16 bits hold up to 65535 of it, 8 bits none.
ReferenceOutput convertOutput(const ReferencePicture& picture, int bitsPerChannel);

/// What comparing a world with the reference came to.
struct PictureComparison {
    int compared = 0;  ///< sure pixels
    int wrong = 0;     ///< of these, the ones off by more than was allowed
    std::string firstWrong;
};

/// Compares the sure pixels of `reference` with a world of its size and depth.
///
/// `pixels` are alpha, red, green, blue; rows are `rowBytes` apart. `tolerance` is what the drawn picture may be off, 1
/// being full; a straight colour may be off by that over its alpha, and every number by half a unit besides.
PictureComparison compareSurePixels(const ReferenceOutput& reference, const std::byte* pixels, std::ptrdiff_t rowBytes,
                                    double tolerance);

}  // namespace Tessavoy
