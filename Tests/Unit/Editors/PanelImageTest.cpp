#include "Source/Editors/PanelImage.h"

#include <gtest/gtest.h>

namespace Tessavoy {

namespace {

std::vector<std::byte> bytes(std::initializer_list<int> values) {
    std::vector<std::byte> result;
    for (const int value : values) {
        result.push_back(static_cast<std::byte>(value));
    }
    return result;
}

// Two rows of one pixel each, one after the other.
const PanelImage image{1, 2, {{1, 2, 3, 4}, {250, 251, 252, 253}}};

TEST(PanelImage, IsWrittenWithAlphaFirst) {
    EXPECT_EQ(pixelsInLayout(image, kDRAWBOT_PixelLayout_32ARGB_Straight), bytes({4, 1, 2, 3, 253, 250, 251, 252}));
}

TEST(PanelImage, IsWrittenWithBlueFirst) {
    EXPECT_EQ(pixelsInLayout(image, kDRAWBOT_PixelLayout_32BGRA_Straight), bytes({3, 2, 1, 4, 252, 251, 250, 253}));
}

}  // namespace

}  // namespace Tessavoy
