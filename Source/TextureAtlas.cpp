#include "Source/TextureAtlas.h"

#include "HostInterface/Constants.h"
#include "Source/Assert.h"
#include "Source/Gl/ArrayTexture.h"
#include "Source/Gl/PixelTransfer.h"
#include "Source/Gl/Textures.h"
#include "Source/HostAccess/EffectLayerQuery.h"
#include "Source/HostAccess/Exception.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace Tessavoy {

namespace {

using AESDK_OpenGL::AESDK_OpenGL_EffectRenderData;

double seconds(A_Time time) {
    return static_cast<double>(time.value) / time.scale;
}

/// The integer part; what no 32-bit integer holds saturates, and NaN (a layer without length over a step of none) is 0.
A_long integerPart(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double lowest = std::numeric_limits<A_long>::min();
    constexpr double highest = std::numeric_limits<A_long>::max();
    return static_cast<A_long>(std::clamp(value, lowest, highest));
}

std::uint32_t dividedUp(std::uint32_t count, std::uint32_t size) {
    return count / size + (count % size != 0 ? 1 : 0);
}

/// Which frames of a layer the atlas holds: the time of the first one, in the host's time units (the others follow
/// time_step apart), and how many there are.
struct Timeline {
    A_long firstRequest;
    A_long frameCount;
};

/// A stream of one of the effect's parameters and its value at a composition time; both are given back at the end.
class StreamValue {
public:
    StreamValue(EffectLayerQuery& query, PF_ParamIndex parameter, const A_Time& time)
        : mSuite(query.suites().get<AEGP_StreamSuite2>()) {
        throwOnError(mSuite.AEGP_GetNewEffectStreamByIndex(query.plugin(), query.effect(), parameter, &mStream));
        const A_Err error =
            mSuite.AEGP_GetNewStreamValue(query.plugin(), mStream, AEGP_LTimeMode_CompTime, &time, 0, &mValue);
        if (error != 0) {
            mSuite.AEGP_DisposeStream(mStream);
            throw Exception(error);
        }
    }

    ~StreamValue() {
        mSuite.AEGP_DisposeStreamValue(&mValue);
        mSuite.AEGP_DisposeStream(mStream);
    }

    StreamValue(const StreamValue&) = delete;
    StreamValue& operator=(const StreamValue&) = delete;

    AEGP_LayerIDVal layerId() const { return mValue.val.layer_id; }

private:
    const AEGP_StreamSuite2& mSuite;
    AEGP_StreamRefH mStream = nullptr;
    AEGP_StreamValue mValue{};
};

A_Time inPoint(EffectLayerQuery& query, AEGP_LayerH layer) {
    A_Time time{};
    throwOnError(query.suites().get<AEGP_LayerSuite8>().AEGP_GetLayerInPoint(layer, AEGP_LTimeMode_CompTime, &time));
    return time;
}

A_Time duration(EffectLayerQuery& query, AEGP_LayerH layer) {
    A_Time time{};
    throwOnError(query.suites().get<AEGP_LayerSuite8>().AEGP_GetLayerDuration(layer, AEGP_LTimeMode_CompTime, &time));
    return time;
}

AEGP_LayerH chosenLayer(EffectLayerQuery& query, AEGP_LayerH effectLayer, PF_ParamIndex parameter, const A_Time& time) {
    const StreamValue value(query, parameter, time);
    AEGP_LayerH layer = nullptr;
    throwOnError(query.suites().get<AEGP_LayerSuite8>().AEGP_GetLayerFromLayerID(query.parentComposition(effectLayer),
                                                                                 value.layerId(), &layer));
    return layer;
}

/// The first frame is asked for in the middle of its step, so that rounding can't reach the frame before.
Timeline readTimeline(PF_InData* inData, PF_ParamIndex layerParamIndex) {
    EffectLayerQuery query(inData);
    const AEGP_LayerH effectLayer = query.effectLayer();
    const A_Time effectStart = inPoint(query, effectLayer);
    const AEGP_LayerH layer = chosenLayer(query, effectLayer, layerParamIndex, effectStart);
    const double start = seconds(inPoint(query, layer)) - seconds(effectStart);
    const double frameDuration = static_cast<double>(inData->time_step) / inData->time_scale;
    return {integerPart((start + frameDuration * 0.5) * inData->time_scale),
            integerPart(seconds(duration(query, layer)) / frameDuration)};
}

/// A layer parameter's pixels at one time, checked in again at the end.
class LayerFrame {
public:
    LayerFrame(PF_InData* inData, PF_ParamIndex parameter, A_long time) : mInData(inData) {
        throwOnError(inData->inter.checkout_param(inData->effect_ref, parameter, time, inData->time_step,
                                                  inData->time_scale, &mDefinition));
    }

    ~LayerFrame() { mInData->inter.checkin_param(mInData->effect_ref, &mDefinition); }

    LayerFrame(const LayerFrame&) = delete;
    LayerFrame& operator=(const LayerFrame&) = delete;

    PF_EffectWorld* world() { return &mDefinition.u.ld; }

private:
    PF_InData* mInData;
    PF_ParamDef mDefinition{};
};

bool isEmpty(const PF_EffectWorld& world) {
    return world.data == nullptr || world.width <= 0 || world.height <= 0;
}

/// The address of a world's pixels and their format.
struct WorldPixels {
    const void* data;
    PF_PixelFormat format;
};

/// Only a deep world says its depth. For the others the 8-bit call is tried: a float world gives no address there.
WorldPixels pixelsOf(SuiteHandler& suites, PF_EffectWorld* world) {
    const auto& suite = suites.get<PF_PixelDataSuite1>();
    if ((world->world_flags & PF_WorldFlag_DEEP) != 0) {
        PF_Pixel16* pixels = nullptr;
        throwOnError(suite.get_pixel_data16(world, nullptr, &pixels));
        return {pixels, PF_PixelFormat_ARGB64};
    }
    PF_Pixel8* pixels8 = nullptr;
    suite.get_pixel_data8(world, nullptr, &pixels8);
    if (pixels8 != nullptr) {
        return {pixels8, PF_PixelFormat_ARGB32};
    }
    PF_PixelFloat* pixels = nullptr;
    throwOnError(suite.get_pixel_data_float(world, nullptr, &pixels));
    return {pixels, PF_PixelFormat_ARGB128};
}

void checkTextureSize(std::uint32_t width, std::uint32_t height, std::uint32_t maxTextureSize) {
    if (width > maxTextureSize || height > maxTextureSize) {
        const std::string limit = std::to_string(maxTextureSize);
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED,
                        "Failed to create texture of size " + std::to_string(width) + "x" + std::to_string(height) +
                            " which is bigger than maximum supported by GPU size of " + limit + "x" + limit);
    }
}

}  // namespace

TextureAtlas::~TextureAtlas() {
    try {
        if (textureName != 0) {
            AESDK_OpenGL::deleteTexture(textureName);
        }
    } catch (...) {
    }
}

void TextureAtlas::BuildFromImage(PF_InData* inData, const AESDK_OpenGL_EffectRenderData& renderData,
                                  PF_EffectWorld* layerWorld, std::uint32_t columnCount, std::uint32_t rowCount,
                                  std::int32_t limit) {
    if (isEmpty(*layerWorld)) {
        return;
    }
    columns = columnCount;
    rows = rowCount;
    const std::int64_t places = std::min<std::int64_t>(std::int64_t{columns} * rows, INT32_MAX);
    frameCount = static_cast<std::int32_t>(limit == 0 ? places : std::clamp<std::int64_t>(limit, 0, places));
    mTextureWidth = static_cast<std::uint32_t>(layerWorld->width);
    mTextureHeight = static_cast<std::uint32_t>(layerWorld->height);
    mTextureDepth = 1;
    createTexture(static_cast<std::uint32_t>(renderData.maxTextureSize));
    SuiteHandler suites(inData->pica_basicP);
    upload(suites, layerWorld, 0, 0, 0);
}

void TextureAtlas::BuildFromTimeline(PF_InData* inData, const AESDK_OpenGL_EffectRenderData& renderData,
                                     PF_ParamIndex layerParamIndex) {
    const Timeline timeline = readTimeline(inData, layerParamIndex);
    SuiteHandler suites(inData->pica_basicP);
    FramePage page;
    {
        LayerFrame first(inData, layerParamIndex, timeline.firstRequest);
        if (isEmpty(*first.world())) {
            return;
        }
        frameCount = std::max(timeline.frameCount, 0);
        page = arrangeFrames(static_cast<std::uint32_t>(first.world()->width),
                             static_cast<std::uint32_t>(first.world()->height),
                             static_cast<std::uint32_t>(renderData.maxTextureSize));
        createTexture(static_cast<std::uint32_t>(renderData.maxTextureSize));
        if (frameCount > 0) {
            upload(suites, first.world(), 0, 0, 0);
        }
    }
    for (std::int32_t i = 1; i < frameCount; ++i) {
        const std::int64_t time = timeline.firstRequest + std::int64_t{inData->time_step} * i;
        LayerFrame frame(inData, layerParamIndex, static_cast<A_long>(time));
        const std::uint32_t place = static_cast<std::uint32_t>(i) % page.frames;
        upload(suites, frame.world(), place % columns * page.frameWidth, place / columns * page.frameHeight,
               static_cast<std::uint32_t>(i) / page.frames);
    }
}

/// A page is as many frames as the largest texture holds. When one page is not full, the texture shrinks to the rows,
/// or to the part of one row, that the frames need; they keep their places, all being on the first page.
TextureAtlas::FramePage TextureAtlas::arrangeFrames(std::uint32_t frameWidth, std::uint32_t frameHeight,
                                                    std::uint32_t maxTextureSize) {
    checkTextureSize(frameWidth, frameHeight, maxTextureSize);
    const auto count = static_cast<std::uint32_t>(frameCount);
    columns = maxTextureSize / frameWidth;
    rows = maxTextureSize / frameHeight;
    const std::uint32_t page = columns * rows;
    mTextureDepth = dividedUp(count, page);
    if (count < page && count >= columns) {
        rows = dividedUp(count, columns);
    } else if (count < columns) {
        columns = count;
        rows = 1;
    }
    mTextureWidth = columns * frameWidth;
    mTextureHeight = rows * frameHeight;
    return {frameWidth, frameHeight, page};
}

void TextureAtlas::createTexture(std::uint32_t maxTextureSize) {
    checkTextureSize(mTextureWidth, mTextureHeight, maxTextureSize);
    textureName = AESDK_OpenGL::makeArrayTexture(static_cast<std::int32_t>(mTextureWidth),
                                                 static_cast<std::int32_t>(mTextureHeight),
                                                 static_cast<std::int32_t>(mTextureDepth));
}

void TextureAtlas::upload(SuiteHandler& suites, PF_EffectWorld* layer, std::uint32_t xOffset, std::uint32_t yOffset,
                          std::uint32_t zOffset) {
    if (isEmpty(*layer)) {
        return;
    }
    const auto [data, format] = pixelsOf(suites, layer);
    TESSAVOY_ASSERT(data != nullptr, "data != nullptr");
    TESSAVOY_ASSERT(xOffset + static_cast<std::uint32_t>(layer->width) <= mTextureWidth,
                    "xOffset + layer->width <= mTextureWidth");
    TESSAVOY_ASSERT(yOffset + static_cast<std::uint32_t>(layer->height) <= mTextureHeight,
                    "yOffset + layer->height <= mTextureHeight");
    TESSAVOY_ASSERT(zOffset < mTextureDepth, "zOffset < mTextureDepth");
    const AESDK_OpenGL::PixelTransfer transfer = AESDK_OpenGL::GetPixelTransfer(format);
    const AESDK_OpenGL::ArrayRegion region = {static_cast<std::int32_t>(xOffset), static_cast<std::int32_t>(yOffset),
                                              static_cast<std::int32_t>(zOffset), layer->width, layer->height};
    AESDK_OpenGL::fillArrayTexture(region, layer->rowbytes / transfer.bytesPerPixel, transfer.glType, data);
}

void TextureAtlas::GetFrameRect(AtlasFrameRect& rect, std::int32_t frame) const {
    if (frameCount <= 0) {
        rect = {};
        return;
    }
    const auto index = static_cast<std::uint32_t>(std::clamp(frame, 0, frameCount - 1));
    const std::uint32_t page = columns * rows;
    const std::uint32_t column = index % page % columns;
    const std::uint32_t row = index % page / columns;
    const auto fraction = [](std::uint32_t part, std::uint32_t whole) {
        return std::clamp(static_cast<float>(part) / static_cast<float>(whole), 0.0F, 1.0F);
    };
    rect.left = fraction(column, columns);
    rect.right = fraction(column + 1, columns);
    rect.top = fraction(row, rows);
    rect.bottom = fraction(row + 1, rows);
    rect.layer = static_cast<float>(index / page);
}

}  // namespace Tessavoy
