#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "Host/Image.h"

namespace TessavoyHost {

// How far two pictures are apart. Differences are in 255ths of full scale, whatever the pictures' formats are, so that
// two 8-bit pictures differ by whole numbers. A sample that is not a number in one picture alone differs without limit.
struct ImageDifference {
    bool sameSize = true;                // else nothing more was compared
    std::array<double, 4> largest = {};  // by channel: red, green, blue, alpha
    long long pixelsBeyond = 0;          // with a channel that is further apart than was allowed

    bool within() const { return sameSize && pixelsBeyond == 0; }

    // One line for people.
    std::string describe(const Image& expected, const Image& actual, double allowed) const;
};

// allowed: the largest difference of a sample that counts as the same.
ImageDifference compareImages(const Image& expected, const Image& actual, double allowed);

// Writes `name`-expected.png, `name`-actual.png and, when the sizes agree, `name`-difference.png into a folder that is
// made if it is missing. The difference is opaque; each channel's distance plus alpha's, brightened until the largest
// is full. Pictures of more than 8 bits become 16-bit files. Throws HostError.
void writeComparison(const std::filesystem::path& folder, const std::string& name, const Image& expected,
                     const Image& actual);

}  // namespace TessavoyHost
