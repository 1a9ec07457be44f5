#include "Source/Parameter/ParameterSnapshot.h"
#include "Tests/Support/FakeParameterHost.h"
#include "Tests/Support/ParameterValues.h"

#include <gtest/gtest.h>

namespace Tessavoy {
namespace {

PF_Err eightBitPixels(PF_EffectWorld* world, PF_PixelPtr, PF_Pixel8** pixels) {
    *pixels = world->data;
    return 0;
}

/// A host whose custom layers 1 and 10 have one pixel each; the other layers are none.
class ParametersLayersTest : public ::testing::Test {
protected:
    ParametersLayersTest() : snapshot(&host.inData()) {
        setDistinctValues(host);
        setPixel("Layer.Custom1", &first);
        setPixel("Layer.Custom10", &tenth);
        utilities.get_pixel_data8 = eightBitPixels;
        host.inData().utils = &utilities;
        EXPECT_EQ(snapshot.read(), 0);
    }

    void setPixel(std::string_view id, PF_Pixel* pixel) {
        PF_LayerDef& layer = valueOf(host, id).u.ld;
        layer.data = pixel;
        layer.width = 1;
        layer.height = 1;
        layer.rowbytes = 4;
    }

    PF_LayerDef* textureLayer(A_long popupValue) {
        snapshot.ShapeTextureLayerIndex = popupValue;
        return snapshot.shapeTextureLayer();
    }

    std::string textureLayerId(A_long popupValue) {
        snapshot.ShapeTextureLayerIndex = popupValue;
        return snapshot.shapeTextureLayerId();
    }

    PF_Pixel first = {255, 51, 102, 153};  // alpha, red, green, blue
    PF_Pixel tenth = {51, 255, 0, 0};
    PF_UtilCallbacks utilities{};
    FakeParameterHost host;
    ParameterSnapshot snapshot;
};

TEST_F(ParametersLayersTest, NoTextureLayerIsNullAndHasNoId) {
    EXPECT_EQ(textureLayer(1), nullptr);
    EXPECT_EQ(textureLayerId(1), "");
}

TEST_F(ParametersLayersTest, APopupValueChoosesTheLayerBelowIt) {
    ASSERT_NE(textureLayer(2), nullptr);
    EXPECT_EQ(textureLayer(2)->data, &first);
    ASSERT_NE(textureLayer(11), nullptr);
    EXPECT_EQ(textureLayer(11)->data, &tenth);
    EXPECT_EQ(textureLayer(11), &snapshot.layers.checkouts[411].u.ld);
}

TEST_F(ParametersLayersTest, ALayerLeftAtNoneIsEmpty) {
    EXPECT_EQ(textureLayer(3), nullptr);
    EXPECT_EQ(snapshot.layerColor(2, 0.5f, 0.5f), (std::array<float, 4>{}));
}

TEST_F(ParametersLayersTest, ValuesBehindTheLayersReachNoPixels) {
    for (A_long value = 12; value <= 24; ++value) {
        EXPECT_EQ(textureLayer(value), nullptr) << value;
    }
    for (A_long slot = 11; slot <= 23; ++slot) {
        EXPECT_EQ(snapshot.layerColor(slot, 0, 0), (std::array<float, 4>{})) << slot;
        EXPECT_EQ(snapshot.layerChannel(slot, 0, 0, 1), 0) << slot;
    }
}

TEST_F(ParametersLayersTest, TheIdTakesThePopupValueUnscaled) {
    EXPECT_EQ(textureLayerId(2), "Layer.Custom1");
    EXPECT_EQ(textureLayerId(3), "Layer.Rename1");
    EXPECT_EQ(textureLayerId(4), "Layer.Custom2");
    EXPECT_EQ(textureLayerId(11), "Layer.Rename5");
    EXPECT_EQ(textureLayerId(22), "Layer.GroupEnd");
    EXPECT_THROW(textureLayerId(23), std::runtime_error);
}

TEST_F(ParametersLayersTest, ColorsComeAsRedGreenBlueAlpha) {
    EXPECT_EQ(snapshot.layerColor(1, 0.5f, 0.5f), (std::array<float, 4>{0.2f, 0.4f, 0.6f, 1.0f}));
    EXPECT_EQ(snapshot.layerColor(10, 0, 1), (std::array<float, 4>{1.0f, 0.0f, 0.0f, 0.2f}));
}

TEST_F(ParametersLayersTest, ChannelsAreChosenBySource) {
    EXPECT_EQ(snapshot.layerChannel(1, 0, 0, 2), 0.4f);
    EXPECT_EQ(snapshot.layerChannel(10, 0, 0, 4), 0.2f);
    EXPECT_EQ(snapshot.layerChannel(1, 0, 0, 6), 0.0);
}

TEST_F(ParametersLayersTest, AfterReleaseNoSlotHoldsPixels) {
    EXPECT_NE(snapshot.layerColor(1, 0, 0), (std::array<float, 4>{}));
    ASSERT_EQ(snapshot.release(host.inData().inter), 0);
    EXPECT_EQ(textureLayer(2), nullptr);
    EXPECT_EQ(snapshot.layerColor(1, 0, 0), (std::array<float, 4>{}));
}

using ParametersLayersDeathTest = ParametersLayersTest;

TEST_F(ParametersLayersDeathTest, AnUnknownTextureLayerStops) {
    EXPECT_DEATH(textureLayer(0), "index >= 0, file Source/Parameter/Parameters");
    EXPECT_DEATH(textureLayer(25), "index \\+ 1 <= CustomParametersCount, file Source/Parameter/Parameters");
}

TEST_F(ParametersLayersDeathTest, AnUnknownLayerNumberStops) {
    EXPECT_DEATH(snapshot.layerColor(0, 0, 0), "layerInd >= 1, file Source/Parameter/Parameters");
    EXPECT_DEATH(snapshot.layerColor(24, 0, 0), "layerInd <= CustomParametersCount, file Source/Parameter/Parameters");
    EXPECT_DEATH(snapshot.layerChannel(-1, 0, 0, 1), "layerInd >= 1, file Source/Parameter/Parameters");
    EXPECT_DEATH(snapshot.layerChannel(24, 0, 0, 1),
                 "layerInd <= CustomParametersCount, file Source/Parameter/Parameters");
}

}  // namespace
}  // namespace Tessavoy
