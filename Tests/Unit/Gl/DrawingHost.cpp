#include "Tests/Unit/Gl/DrawingHost.h"

#include "Tests/Support/SuiteTable.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <list>

namespace Tessavoy::Testing {

namespace {

A_long bytesPerPixelOf(PF_PixelFormat format) {
    return format == PF_PixelFormat_ARGB32 ? 4 : format == PF_PixelFormat_ARGB64 ? 8 : 16;
}

DrawingHost* host = nullptr;

bool fails(const char* call) {
    return host->failingCalls.contains(call);
}

/// Handles of the application's objects are addresses that only the host looks into.
int effectLayerObject, chosenLayerObject, compositionObject, effectObject, streamObject;
template <class Handle>
Handle handleOf(int& object) {
    return reinterpret_cast<Handle>(&object);
}

/// A handle points at the address of its block. Blocks that are never given back go with the host.
struct Block {
    explicit Block(std::size_t size) : bytes(size, std::byte{0xCD}), address(bytes.data()) {}

    std::vector<std::byte> bytes;
    void* address;
};
std::list<Block> blocks;

PF_Handle newHandle(A_HandleSize size) {
    if (fails("host_new_handle")) {
        return nullptr;
    }
    ++host->handlesOut;
    return &blocks.emplace_back(static_cast<std::size_t>(size)).address;
}

void* lockHandle(PF_Handle handle) {
    if (fails("host_lock_handle")) {
        return nullptr;
    }
    ++host->locksOut;
    return *handle;
}

void unlockHandle(PF_Handle) {
    --host->locksOut;
}

void disposeHandle(PF_Handle handle) {
    --host->handlesOut;
    blocks.remove_if([handle](const Block& block) { return &block.address == handle; });
}

template <class Pixel>
PF_Err pixelData(const char* call, PF_EffectWorld* world, PF_PixelFormat format, Pixel** pixels) {
    const auto* owner = static_cast<const HostWorld*>(world->platform_ref);
    *pixels = nullptr;
    if (fails(call)) {
        return DrawingHost::callError;
    }
    if (owner->format() != format) {
        return PF_Err_BAD_CALLBACK_PARAM;
    }
    if (!host->failingCalls.contains("null pixels")) {
        *pixels = reinterpret_cast<Pixel*>(world->data);
    }
    return PF_Err_NONE;
}

PF_Err pixelData8(PF_EffectWorld* world, PF_PixelPtr, PF_Pixel8** pixels) {
    return pixelData("get_pixel_data8", world, PF_PixelFormat_ARGB32, pixels);
}
PF_Err pixelData16(PF_EffectWorld* world, PF_PixelPtr, PF_Pixel16** pixels) {
    return pixelData("get_pixel_data16", world, PF_PixelFormat_ARGB64, pixels);
}
PF_Err pixelDataFloat(PF_EffectWorld* world, PF_PixelPtr, PF_PixelFloat** pixels) {
    return pixelData("get_pixel_data_float", world, PF_PixelFormat_ARGB128, pixels);
}

PF_Err iterateFloat(PF_InData*, A_long, A_long progressFinal, PF_EffectWorld* source, const PF_Rect*, void* reference,
                    PF_IteratePixelFloatFunc* function, PF_EffectWorld* target) {
    host->iterateHeight = progressFinal;
    if (fails("iterate")) {
        return DrawingHost::callError;
    }
    auto* from = static_cast<HostWorld*>(source->platform_ref);
    auto* to = static_cast<HostWorld*>(target->platform_ref);
    for (A_long y = 0; y < target->height; ++y) {
        for (A_long x = 0; x < target->width; ++x) {
            auto* in = reinterpret_cast<PF_PixelFloat*>(
                from->pixel<float>(std::min(x, source->width - 1), std::min(y, source->height - 1)));
            const PF_Err error =
                function(reference, x, y, in, reinterpret_cast<PF_PixelFloat*>(to->pixel<float>(x, y)));
            if (error != 0) {
                return error;
            }
        }
    }
    return PF_Err_NONE;
}

template <class Handle>
A_Err lend(const char* call, Handle* result, int& object, int& counter) {
    if (fails(call)) {
        return DrawingHost::callError;
    }
    *result = handleOf<Handle>(object);
    ++counter;
    return A_Err{0};
}

template <class Handle>
A_Err give(const char* call, Handle* result, int& object) {
    int uncounted = 0;
    return lend(call, result, object, uncounted);
}

A_Err getEffectLayer(PF_ProgPtr, AEGP_LayerH* layer) {
    return give("AEGP_GetEffectLayer", layer, effectLayerObject);
}

A_Err getNewEffect(AEGP_PluginID, PF_ProgPtr, AEGP_EffectRefH* effect) {
    return lend("AEGP_GetNewEffectForEffect", effect, effectObject, host->effectsOut);
}

A_Err disposeEffect(AEGP_EffectRefH) {
    --host->effectsOut;
    return 0;
}

A_Err getNewStream(AEGP_PluginID, AEGP_EffectRefH, PF_ParamIndex index, AEGP_StreamRefH* stream) {
    if (index != DrawingHost::layerParameter) {
        return DrawingHost::callError;
    }
    return lend("AEGP_GetNewEffectStreamByIndex", stream, streamObject, host->streamsOut);
}

A_Err disposeStream(AEGP_StreamRefH) {
    --host->streamsOut;
    return 0;
}

constexpr AEGP_LayerIDVal chosenLayerId = 42;

A_Err getNewStreamValue(AEGP_PluginID, AEGP_StreamRefH stream, AEGP_LTimeMode mode, const A_Time* time, A_Boolean,
                        AEGP_StreamValue* value) {
    if (fails("AEGP_GetNewStreamValue") || mode != AEGP_LTimeMode_CompTime) {
        return DrawingHost::callError;
    }
    host->streamValueTime = time->value;
    value->streamH = stream;
    value->val.layer_id = chosenLayerId;
    ++host->streamValuesOut;
    return 0;
}

A_Err disposeStreamValue(AEGP_StreamValue*) {
    --host->streamValuesOut;
    return 0;
}

A_Err getParentComp(AEGP_LayerH, AEGP_CompH* composition) {
    return give("AEGP_GetLayerParentComp", composition, compositionObject);
}

A_Err getLayerFromId(AEGP_CompH, AEGP_LayerIDVal id, AEGP_LayerH* layer) {
    return id == chosenLayerId ? give("AEGP_GetLayerFromLayerID", layer, chosenLayerObject) : DrawingHost::callError;
}

A_Err getInPoint(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) {
    *time = layer == handleOf<AEGP_LayerH>(effectLayerObject) ? host->effectInPoint : host->layerInPoint;
    return fails("AEGP_GetLayerInPoint") || mode != AEGP_LTimeMode_CompTime ? DrawingHost::callError : 0;
}

A_Err getDuration(AEGP_LayerH layer, AEGP_LTimeMode mode, A_Time* time) {
    *time = host->layerDuration;
    const bool known = layer == handleOf<AEGP_LayerH>(chosenLayerObject) && mode == AEGP_LTimeMode_CompTime;
    return fails("AEGP_GetLayerDuration") || !known ? DrawingHost::callError : 0;
}

PF_Err checkoutParam(PF_ProgPtr, PF_ParamIndex index, A_long time, A_long, A_u_long, PF_ParamDef* parameter) {
    if (fails("checkout_param") || index != DrawingHost::layerParameter) {
        return DrawingHost::callError;
    }
    host->requestedTimes.push_back(time);
    ++host->checkoutsOut;
    HostWorld* frame = host->frameAt(time);
    parameter->u.ld = frame != nullptr ? *frame->world() : PF_LayerDef{};
    return PF_Err_NONE;
}

PF_Err checkinParam(PF_ProgPtr, PF_ParamDef*) {
    --host->checkoutsOut;
    return PF_Err_NONE;
}

std::int32_t formatted(A_char* target, const A_char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(target, sizeof(PF_OutData::return_msg), format, arguments);
    va_end(arguments);
    return length;
}

const PF_HandleSuite1 handleSuite = {newHandle, lockHandle, unlockHandle, disposeHandle, nullptr, nullptr};
const PF_PixelDataSuite1 pixelDataSuite = {pixelData8, pixelData16, pixelDataFloat};
const PF_iterateFloatSuite1 iterateFloatSuite = {iterateFloat, nullptr, nullptr};

const void* suiteTable(const char* name, std::int32_t version) {
    static const AEGP_PFInterfaceSuite1 interfaceSuite = [] {
        AEGP_PFInterfaceSuite1 suite{};
        suite.AEGP_GetEffectLayer = getEffectLayer;
        suite.AEGP_GetNewEffectForEffect = getNewEffect;
        return suite;
    }();
    static const AEGP_EffectSuite2 effectSuite = [] {
        AEGP_EffectSuite2 suite{};
        suite.AEGP_DisposeEffect = disposeEffect;
        return suite;
    }();
    static const AEGP_StreamSuite2 streamSuite = [] {
        AEGP_StreamSuite2 suite{};
        suite.AEGP_GetNewEffectStreamByIndex = getNewStream;
        suite.AEGP_DisposeStream = disposeStream;
        suite.AEGP_GetNewStreamValue = getNewStreamValue;
        suite.AEGP_DisposeStreamValue = disposeStreamValue;
        return suite;
    }();
    static const AEGP_LayerSuite8 layerSuite = [] {
        AEGP_LayerSuite8 suite{};
        suite.AEGP_GetLayerParentComp = getParentComp;
        suite.AEGP_GetLayerFromLayerID = getLayerFromId;
        suite.AEGP_GetLayerInPoint = getInPoint;
        suite.AEGP_GetLayerDuration = getDuration;
        return suite;
    }();
    return tableFor(name, version, handleSuite, pixelDataSuite, iterateFloatSuite, interfaceSuite, effectSuite,
                    streamSuite, layerSuite);
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) {
    const void* table = host->missingSuites.contains(name) ? nullptr : suiteTable(name, version);
    if (table == nullptr) {
        return -1;
    }
    ++host->suitesOut;
    *suite = table;
    return 0;
}

SPErr releaseSuite(const char*, std::int32_t) {
    --host->suitesOut;
    return 0;
}

SPBasicSuite basicSuite = [] {
    SPBasicSuite suite{};
    suite.AcquireSuite = acquireSuite;
    suite.ReleaseSuite = releaseSuite;
    return suite;
}();

}  // namespace

HostWorld::HostWorld(A_long width, A_long height, PF_PixelFormat format, A_long paddingPixels)
    : mFormat(format), mBytesPerPixel(bytesPerPixelOf(format)) {
    mWorld.width = width;
    mWorld.height = height;
    mWorld.rowbytes = (width + paddingPixels) * mBytesPerPixel;
    mWorld.world_flags = format == PF_PixelFormat_ARGB64 ? PF_WorldFlag_DEEP : 0;
    mWorld.platform_ref = this;
    mStorage.assign(static_cast<std::size_t>(mWorld.rowbytes) * height, padding);
    mWorld.data = reinterpret_cast<PF_PixelPtr>(mStorage.data());
}

bool HostWorld::paddingIsIntact() const {
    for (A_long y = 0; y < mWorld.height; ++y) {
        const auto row = mStorage.begin() + y * mWorld.rowbytes;
        if (!std::all_of(row + mWorld.width * mBytesPerPixel, row + mWorld.rowbytes,
                         [](std::byte value) { return value == padding; })) {
            return false;
        }
    }
    return true;
}

DrawingHost::DrawingHost() : mGlobalBlock(sizeof(AEGP_PluginID)), mGlobalPointer(mGlobalBlock.data()) {
    host = this;
    mUtilities.ansi.sprintf = formatted;
    mUtilities.get_pixel_data8 = pixelData8;
    mUtilities.get_pixel_data16 = pixelData16;
    inData.utils = &mUtilities;
    inData.pica_basicP = &basicSuite;
    inData.global_data = &mGlobalPointer;
    inData.inter.checkout_param = checkoutParam;
    inData.inter.checkin_param = checkinParam;
    inData.time_step = 1;
    inData.time_scale = 25;
}

DrawingHost::~DrawingHost() {
    blocks.clear();
    host = nullptr;
}

}  // namespace Tessavoy::Testing
