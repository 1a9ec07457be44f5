#include "Source/Editors/PanelDrawing.h"

#include <gtest/gtest.h>

#include <optional>

#include "Source/HostAccess/Exception.h"
#include "Tests/Support/SuiteTable.h"

namespace Tessavoy {

namespace {

/// A host that has nothing to draw with but images, in the layouts that it is told to take.
struct ImageHost {
    bool takesArgb = true, takesBgra = true;
    bool prefersArgb = false;
    std::optional<DRAWBOT_PixelLayout> layout;  ///< of the image that was made last
    int rowBytes = 0;
    std::vector<std::byte> samples;
    int images = 0;  ///< made and not released
    int suites = 0;  ///< acquired and not released
};

ImageHost* host = nullptr;

template <bool ImageHost::*Answer>
SPErr tell(DRAWBOT_SupplierRef, DRAWBOT_Boolean* place) {
    *place = host->*Answer ? 1 : 0;
    return 0;
}

SPErr newImage(DRAWBOT_SupplierRef, std::int32_t, std::int32_t height, std::int32_t rowBytes,
               DRAWBOT_PixelLayout layout, const void* pixels, DRAWBOT_ImageRef* image) {
    const auto* first = static_cast<const std::byte*>(pixels);
    host->layout = layout;
    host->rowBytes = rowBytes;
    host->samples.assign(first, first + static_cast<std::ptrdiff_t>(rowBytes) * height);
    ++host->images;
    *image = reinterpret_cast<DRAWBOT_ImageRef>(host);
    return 0;
}

SPErr releaseObject(DRAWBOT_ObjectRef) {
    --host->images;
    return 0;
}

template <class Reference>
SPErr giveReference(DRAWBOT_DrawRef, Reference* reference) {
    *reference = reinterpret_cast<Reference>(host);
    return 0;
}

PF_Err drawingReference(PF_ContextH, DRAWBOT_DrawRef* reference) {
    *reference = reinterpret_cast<DRAWBOT_DrawRef>(host);
    return 0;
}

SPErr drawImage(DRAWBOT_SurfaceRef, DRAWBOT_ImageRef image, const DRAWBOT_PointF32*, float alpha) {
    EXPECT_EQ(image, reinterpret_cast<DRAWBOT_ImageRef>(host));
    EXPECT_EQ(alpha, 1.0f);
    return 0;
}

const void* suiteTable(const char* name, std::int32_t version) {
    static const PF_EffectCustomUISuite1 customUi = {.PF_GetDrawingReference = drawingReference};
    static const DRAWBOT_DrawbotSuite1 drawbot = {giveReference<DRAWBOT_SupplierRef>,
                                                  giveReference<DRAWBOT_SurfaceRef>};
    static const DRAWBOT_SupplierSuite1 supplier = [] {
        DRAWBOT_SupplierSuite1 table{};
        table.NewImageFromBuffer = newImage;
        table.SupportsPixelLayoutARGB = tell<&ImageHost::takesArgb>;
        table.SupportsPixelLayoutBGRA = tell<&ImageHost::takesBgra>;
        table.PrefersPixelLayoutARGB = tell<&ImageHost::prefersArgb>;
        table.ReleaseObject = releaseObject;
        return table;
    }();
    static const DRAWBOT_SurfaceSuite1 surface = [] {
        DRAWBOT_SurfaceSuite1 table{};
        table.DrawImage = drawImage;
        return table;
    }();
    static const DRAWBOT_PathSuite1 path{};
    return tableFor(name, version, customUi, drawbot, supplier, surface, path);
}

SPErr acquire(const char* name, std::int32_t version, const void** suite) {
    *suite = suiteTable(name, version);
    host->suites += *suite == nullptr ? 0 : 1;
    return *suite == nullptr ? PF_Err_BAD_CALLBACK_PARAM : 0;
}

SPErr release(const char*, std::int32_t) {
    --host->suites;
    return 0;
}

class PanelImageDrawing : public testing::Test {
protected:
    PanelImageDrawing() {
        host = &imageHost;
        basic.AcquireSuite = acquire;
        basic.ReleaseSuite = release;
        inData.pica_basicP = &basic;
    }
    ~PanelImageDrawing() override {
        EXPECT_EQ(imageHost.images, 0);
        EXPECT_EQ(imageHost.suites, 0);
        host = nullptr;
    }

    void drawPixel() {
        const PanelDrawing drawing(&inData, &outData, nullptr);
        ASSERT_TRUE(drawing.hasSurface());
        drawing.drawImage({1, 2, {{1, 2, 3, 4}, {5, 6, 7, 8}}}, {0, 0});
    }

    ImageHost imageHost;
    SPBasicSuite basic{};
    PF_InData inData{};
    PF_OutData outData{};
};

TEST_F(PanelImageDrawing, ComesInTheLayoutThatTheHostTakesAndPrefers) {
    struct Case {
        bool takesArgb, takesBgra, prefersArgb;
        DRAWBOT_PixelLayout layout;
        int first;  // channel of the first pixel
    };
    for (const Case& c : {Case{true, true, false, kDRAWBOT_PixelLayout_32BGRA_Straight, 3},
                          Case{true, true, true, kDRAWBOT_PixelLayout_32ARGB_Straight, 4},
                          Case{true, false, false, kDRAWBOT_PixelLayout_32ARGB_Straight, 4},
                          Case{true, false, true, kDRAWBOT_PixelLayout_32ARGB_Straight, 4},
                          Case{false, true, false, kDRAWBOT_PixelLayout_32BGRA_Straight, 3},
                          Case{false, true, true, kDRAWBOT_PixelLayout_32BGRA_Straight, 3}}) {
        imageHost.takesArgb = c.takesArgb;
        imageHost.takesBgra = c.takesBgra;
        imageHost.prefersArgb = c.prefersArgb;
        drawPixel();
        EXPECT_EQ(imageHost.layout, c.layout);
        EXPECT_EQ(imageHost.rowBytes, 4);
        EXPECT_EQ(imageHost.samples.size(), 8u);
        EXPECT_EQ(imageHost.samples.front(), static_cast<std::byte>(c.first));
    }
}

TEST_F(PanelImageDrawing, FailsWhereTheHostTakesNoLayoutWithAlpha) {
    imageHost.takesArgb = imageHost.takesBgra = false;
    try {
        drawPixel();
        FAIL() << "an image in no layout";
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), PF_Err_BAD_CALLBACK_PARAM);
    }
    EXPECT_FALSE(imageHost.layout.has_value());
}

}  // namespace

}  // namespace Tessavoy
