#include "Source/Shell/Camera.h"

#include "Source/HostAccess/EffectLayerQuery.h"
#include "Source/HostAccess/Exception.h"

#include <bit>
#include <cstdint>

namespace Tessavoy {

CameraLayer findCamera(EffectLayerQuery& query, const A_Time& compositionTime, bool demanded) {
    CameraLayer camera{&query, nullptr};
    const auto& interface = query.suites().get<AEGP_PFInterfaceSuite1>();
    throwOnError(interface.AEGP_GetEffectCamera(query.effectReference(), &compositionTime, &camera.layer));
    if (camera.layer == nullptr && demanded) {
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED, "Failed to find the camera layer.");
    }
    return camera;
}

namespace {

struct CompositionSize {
    A_long width = 0;
    A_long height = 0;
};

/// The camera's layer-to-world matrix in single precision. The host gives it row by row with the translation in the
/// last row; read as column-major that puts the translation into elements 12, 13 and 14.
Matrix layerToWorld(const CameraLayer& camera, const A_Time& time) {
    A_Matrix4 host{};
    throwOnError(camera.query->suites().get<AEGP_LayerSuite5>().AEGP_GetLayerToWorldXform(camera.layer, &time, &host));
    Matrix matrix{};
    for (std::size_t row = 0; row < 4; ++row) {
        for (std::size_t column = 0; column < 4; ++column) {
            matrix.m[row * 4 + column] = static_cast<float>(host.mat[row][column]);
        }
    }
    return matrix;
}

/// The zoom in pixels: the distance at which the picture has the composition's size.
float zoomOf(const CameraLayer& camera, const A_Time& time) {
    AEGP_StreamVal2 value{};
    AEGP_StreamType type = AEGP_StreamType_NO_DATA;
    throwOnError(camera.query->suites().get<AEGP_StreamSuite5>().AEGP_GetLayerStreamValue(
        camera.layer, AEGP_LayerStream_ZOOM, AEGP_LTimeMode_CompTime, &time, 0, &value, &type));
    return static_cast<float>(value.one_d);
}

CompositionSize compositionSize(EffectLayerQuery& query) {
    AEGP_CompH composition = query.parentComposition(query.effectLayer());
    AEGP_ItemH item = nullptr;
    throwOnError(query.suites().get<AEGP_CompSuite4>().AEGP_GetItemFromComp(composition, &item));
    CompositionSize size;
    throwOnError(query.suites().get<AEGP_ItemSuite6>().AEGP_GetItemDimensions(item, &size.width, &size.height));
    return size;
}

ViewProjection flatSpace(float width, float height) {
    ViewProjection flat;
    flat.projection.translate(-1.0F, -1.0F, 0.0F);
    flat.projection.scale(2.0F / width, 2.0F / height, 0.0005F);
    return flat;
}

/// The borders of the render in full-resolution composition pixels, measured from the camera's axis.
struct Borders {
    float left;
    float right;
    float bottom;
    float top;
};

Matrix frustum(const Borders& borders, float zoom) {
    const auto [left, right, bottom, top] = borders;
    Matrix projection{};
    projection.m[0] = 2.0F * zoom / (right - left);
    projection.m[5] = 2.0F * zoom / (top - bottom);
    projection.m[8] = (right + left) / (right - left);
    projection.m[9] = (top + bottom) / (top - bottom);
    // (far + near) / (far - near) and -2 far near / (far - near) for 1 and 10000, to the last bit.
    projection.m[10] = std::bit_cast<float>(std::uint32_t{0x3F80068E});
    projection.m[11] = 1.0F;
    projection.m[14] = std::bit_cast<float>(std::uint32_t{0xC0000347});
    return projection;
}

}  // namespace

ViewProjection BuildViewProjection(PF_InData* inData, bool useCamera, float originX, float originY, A_long width,
                                   A_long height, float downsampleX, float downsampleY) {
    const float renderWidth = static_cast<float>(width);
    const float renderHeight = static_cast<float>(height);
    if (!useCamera) {
        return flatSpace(renderWidth, renderHeight);
    }
    EffectLayerQuery query(inData);
    const A_Time time = query.compositionTime();
    const CameraLayer camera = findCamera(query, time, false);
    if (camera.layer == nullptr) {
        return flatSpace(renderWidth, renderHeight);
    }

    Matrix cameraToWorld = layerToWorld(camera, time);
    cameraToWorld.m[12] *= downsampleX;
    cameraToWorld.m[13] *= downsampleY;
    cameraToWorld.m[14] *= downsampleX;
    const float zoom = zoomOf(camera, time);
    const CompositionSize size = compositionSize(query);
    const float centreX = static_cast<float>(size.width * 0.5);
    const float centreY = static_cast<float>(size.height * 0.5);
    const Borders borders = {centreX - (renderWidth + originX) / downsampleX, centreX - originX / downsampleX,
                             centreY - (renderHeight + originY) / downsampleY, centreY - originY / downsampleY};
    return {1, inverse(cameraToWorld), frustum(borders, zoom)};
}

}  // namespace Tessavoy
