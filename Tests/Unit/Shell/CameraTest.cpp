#include "Source/Shell/Camera.h"

#include "Source/HostAccess/EffectLayerQuery.h"
#include "Source/HostAccess/Exception.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <string>

namespace Tessavoy {
namespace {

/// A project with one camera, and which of its calls fails.
struct FakeProject {
    bool hasCamera = true;
    A_Matrix4 cameraToWorld{};
    double zoom = 1000;
    A_long width = 640;
    A_long height = 360;
    std::string failing;
    int effectsOut = 0;
    int suitesOut = 0;
};
thread_local FakeProject* project = nullptr;

constexpr A_Err someError = 513;

A_Err resultOf(const char* call) {
    return project->failing == call ? someError : 0;
}

template <class Handle>
Handle someHandle(int* storage) {
    return reinterpret_cast<Handle>(storage);
}
int cameraStorage = 0;
int layerStorage = 0;
int compositionStorage = 0;
int itemStorage = 0;
int effectStorage = 0;

A_Err getEffectLayer(PF_ProgPtr, AEGP_LayerH* layer) {
    *layer = someHandle<AEGP_LayerH>(&layerStorage);
    return resultOf("layer");
}
A_Err getNewEffect(AEGP_PluginID id, PF_ProgPtr, AEGP_EffectRefH* effect) {
    EXPECT_EQ(id, 42);
    if (resultOf("effect") != 0) {
        return someError;
    }
    ++project->effectsOut;
    *effect = someHandle<AEGP_EffectRefH>(&effectStorage);
    return 0;
}
A_Err convertTime(PF_ProgPtr, A_long time, A_u_long scale, A_Time* compositionTime) {
    *compositionTime = {time + 7, scale};
    return resultOf("time");
}
A_Err getCamera(PF_ProgPtr, const A_Time* time, AEGP_LayerH* camera) {
    EXPECT_EQ(time->value, 12);
    *camera = project->hasCamera ? someHandle<AEGP_LayerH>(&cameraStorage) : nullptr;
    return resultOf("camera");
}
A_Err disposeEffect(AEGP_EffectRefH) {
    --project->effectsOut;
    return 0;
}
A_Err getXform(AEGP_LayerH layer, const A_Time* time, A_Matrix4* matrix) {
    EXPECT_EQ(layer, someHandle<AEGP_LayerH>(&cameraStorage));
    EXPECT_EQ(time->value, 12);
    *matrix = project->cameraToWorld;
    return resultOf("matrix");
}
A_Err getStreamValue(AEGP_LayerH, AEGP_LayerStream stream, AEGP_LTimeMode mode, const A_Time*, A_Boolean,
                     AEGP_StreamVal2* value, AEGP_StreamType*) {
    EXPECT_EQ(stream, 11);
    EXPECT_EQ(mode, 1);
    value->one_d = project->zoom;
    return resultOf("zoom");
}
A_Err getParentComp(AEGP_LayerH layer, AEGP_CompH* composition) {
    EXPECT_EQ(layer, someHandle<AEGP_LayerH>(&layerStorage));
    *composition = someHandle<AEGP_CompH>(&compositionStorage);
    return resultOf("composition");
}
A_Err getItem(AEGP_CompH, AEGP_ItemH* item) {
    *item = someHandle<AEGP_ItemH>(&itemStorage);
    return resultOf("item");
}
A_Err getDimensions(AEGP_ItemH, A_long* width, A_long* height) {
    *width = project->width;
    *height = project->height;
    return resultOf("dimensions");
}

/// The suites by name and version, with the slots that the camera questions use.
const std::map<std::string, const void*>& suites() {
    static AEGP_PFInterfaceSuite1 interface {};
    static AEGP_EffectSuite2 effect{};
    static AEGP_LayerSuite5 layer11{};
    static AEGP_LayerSuite8 layer14{};
    static AEGP_StreamSuite5 stream{};
    static AEGP_CompSuite4 composition{};
    static AEGP_ItemSuite6 item{};
    interface.AEGP_GetEffectLayer = getEffectLayer;
    interface.AEGP_GetNewEffectForEffect = getNewEffect;
    interface.AEGP_ConvertEffectToCompTime = convertTime;
    interface.AEGP_GetEffectCamera = getCamera;
    effect.AEGP_DisposeEffect = disposeEffect;
    layer11.AEGP_GetLayerToWorldXform = getXform;
    layer14.AEGP_GetLayerParentComp = getParentComp;
    stream.AEGP_GetLayerStreamValue = getStreamValue;
    composition.AEGP_GetItemFromComp = getItem;
    item.AEGP_GetItemDimensions = getDimensions;
    static const std::map<std::string, const void*> table = {{"AEGP PF Interface Suite 1", &interface},
                                                             {"AEGP Effect Suite 2", &effect},
                                                             {"AEGP Layer Suite 11", &layer11},
                                                             {"AEGP Layer Suite 14", &layer14},
                                                             {"AEGP Stream Suite 10", &stream},
                                                             {"AEGP Comp Suite 9", &composition},
                                                             {"AEGP Item Suite 10", &item}};
    return table;
}

SPErr acquire(const char* name, std::int32_t version, const void** suite) {
    const auto found = suites().find(std::string(name) + " " + std::to_string(version));
    if (found == suites().end()) {
        return 1;
    }
    ++project->suitesOut;
    *suite = found->second;
    return 0;
}
SPErr release(const char*, std::int32_t) {
    --project->suitesOut;
    return 0;
}

class Camera : public testing::Test {
protected:
    Camera() {
        project = &mProject;
        placeCamera(320, 180, -1000);
        mBasic.AcquireSuite = acquire;
        mBasic.ReleaseSuite = release;
        mInData.pica_basicP = &mBasic;
        mInData.global_data = reinterpret_cast<PF_Handle>(&mGlobalPointer);
        mInData.current_time = 5;
        mInData.time_scale = 25;
    }

    ~Camera() override {
        EXPECT_EQ(mProject.effectsOut, 0) << "effect references left out";
        EXPECT_EQ(mProject.suitesOut, 0) << "suites left out";
    }

    /// A camera that looks along +z without any turn.
    void placeCamera(double x, double y, double z) {
        mProject.cameraToWorld = {};
        for (int i = 0; i < 4; ++i) {
            mProject.cameraToWorld.mat[i][i] = 1;
        }
        mProject.cameraToWorld.mat[3][0] = x;
        mProject.cameraToWorld.mat[3][1] = y;
        mProject.cameraToWorld.mat[3][2] = z;
    }

    FakeProject mProject;
    SPBasicSuite mBasic{};
    PF_InData mInData{};
    AEGP_PluginID mPluginId = 42;
    void* mGlobalPointer = &mPluginId;
};

std::array<double, 4> transformed(const Matrix& matrix, const std::array<double, 4>& point) {
    std::array<double, 4> result{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t k = 0; k < 4; ++k) {
            result[row] += static_cast<double>(matrix.m[k * 4 + row]) * point[k];
        }
    }
    return result;
}

/// The render pixel at which a world point (downsampled pixels) is seen.
std::array<double, 2> pixelOf(const ViewProjection& view, double x, double y, double z, double width, double height) {
    const auto clip = transformed(view.projection, transformed(view.view, {x, y, z, 1}));
    return {(clip[0] / clip[3] + 1) * 0.5 * width, (clip[1] / clip[3] + 1) * 0.5 * height};
}

TEST_F(Camera, TheFlatSpaceMapsPixelsToClipSpaceAndKeepsZWithin2000) {
    const ViewProjection flat = BuildViewProjection(&mInData, false, 10, 20, 640, 360, 1, 1);
    EXPECT_EQ(flat.usesCamera, 0);
    EXPECT_EQ(flat.view, Matrix::identity());
    const auto first = transformed(flat.projection, {0, 0, -2000, 1});
    const auto last = transformed(flat.projection, {640, 360, 2000, 1});
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR(first[i], -1, 1e-6);
        EXPECT_NEAR(last[i], 1, 1e-6);
    }
}

TEST_F(Camera, ACompositionWithoutACameraIsFlat) {
    mProject.hasCamera = false;
    const ViewProjection view = BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
    EXPECT_EQ(view.usesCamera, 0);
    EXPECT_EQ(view.projection, BuildViewProjection(&mInData, false, 0, 0, 640, 360, 1, 1).projection);
}

// A camera at the distance of its zoom sees the plane z = 0 at its own size.
TEST_F(Camera, AtTheDistanceOfItsZoomThePictureHasItsOwnSize) {
    const ViewProjection view = BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
    EXPECT_EQ(view.usesCamera, 1);
    for (const auto& [x, y] : {std::array{0.0, 0.0}, {640.0, 360.0}, {100.0, 250.0}}) {
        const auto pixel = pixelOf(view, x, y, 0, 640, 360);
        EXPECT_NEAR(pixel[0], x, 1e-3);
        EXPECT_NEAR(pixel[1], y, 1e-3);
    }
    // Twice as far off, distances from the middle are halved.
    const auto far = pixelOf(view, 420, 280, 1000, 640, 360);
    EXPECT_NEAR(far[0], 320 + 50, 1e-3);
    EXPECT_NEAR(far[1], 180 + 50, 1e-3);
}

TEST_F(Camera, ARegionShowsTheSamePartOfTheFrustum) {
    const ViewProjection whole = BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
    const ViewProjection part = BuildViewProjection(&mInData, true, 100, 50, 200, 120, 1, 1);
    const auto inWhole = pixelOf(whole, 260, 90, 300, 640, 360);
    const auto inPart = pixelOf(part, 260, 90, 300, 200, 120);
    EXPECT_NEAR(inPart[0], inWhole[0] - 100, 1e-3);
    EXPECT_NEAR(inPart[1], inWhole[1] - 50, 1e-3);
}

TEST_F(Camera, HalfResolutionHalvesTheCamerasPositionAndKeepsTheBorders) {
    placeCamera(400, 200, -800);
    const ViewProjection half = BuildViewProjection(&mInData, true, 0, 0, 320, 180, 0.5F, 0.5F);
    EXPECT_EQ(half.view.m[12], -200.0F);
    EXPECT_EQ(half.view.m[13], -100.0F);
    EXPECT_EQ(half.view.m[14], 400.0F);
    const ViewProjection full = BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
    EXPECT_EQ(half.projection, full.projection);
}

TEST_F(Camera, UnequalFactorsScaleZByTheHorizontalOne) {
    placeCamera(400, 200, -800);
    const ViewProjection view = BuildViewProjection(&mInData, true, 0, 0, 320, 90, 0.5F, 0.25F);
    EXPECT_EQ(view.view.m[12], -200.0F);
    EXPECT_EQ(view.view.m[13], -50.0F);
    EXPECT_EQ(view.view.m[14], 400.0F);
}

TEST_F(Camera, TheNearPlaneIsAt1AndTheFarPlaneAt10000) {
    const ViewProjection view = BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
    const auto near = transformed(view.projection, {0, 0, 1, 1});
    const auto far = transformed(view.projection, {0, 0, 10000, 1});
    EXPECT_NEAR(near[2] / near[3], -1, 1e-6);
    EXPECT_NEAR(far[2] / far[3], 1, 1e-6);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(view.projection.m[10]), 0x3F80068EU);
    EXPECT_EQ(view.projection.m[11], 1.0F);
    EXPECT_EQ(std::bit_cast<std::uint32_t>(view.projection.m[14]), 0xC0000347U);
}

TEST_F(Camera, EveryFailingHostCallThrowsItsCodeAndLeavesNothingOut) {
    for (const char* call :
         {"effect", "time", "camera", "matrix", "zoom", "layer", "composition", "item", "dimensions"}) {
        mProject.failing = call;
        try {
            BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
            ADD_FAILURE() << call;
        } catch (const Exception& exception) {
            EXPECT_EQ(exception.code(), someError) << call;
        }
    }
}

TEST_F(Camera, AbsentGlobalDataIsNamed) {
    mInData.global_data = nullptr;
    try {
        BuildViewProjection(&mInData, true, 0, 0, 640, 360, 1, 1);
        FAIL();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 512);
        EXPECT_STREQ(exception.what(), "Failed to get global data while constructing an AEGP effect");
    }
}

TEST_F(Camera, ADemandedCameraThatIsMissingIsAnError) {
    mProject.hasCamera = false;
    EffectLayerQuery query(&mInData);
    const A_Time time = query.compositionTime();
    EXPECT_EQ(findCamera(query, time, false).layer, nullptr);
    try {
        findCamera(query, time, true);
        FAIL();
    } catch (const Exception& exception) {
        EXPECT_EQ(exception.code(), 512);
        EXPECT_STREQ(exception.what(), "Failed to find the camera layer.");
    }
}

}  // namespace
}  // namespace Tessavoy
