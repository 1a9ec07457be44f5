#include "Source/Shell/SmartRender.h"

#include "HostInterface/Constants.h"
#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/PixelTransfer.h"
#include "Source/Gl/ReadBack.h"
#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/StateRestorer.h"
#include "Source/Gl/ThreadRenderData.h"
#include "Source/HostAccess/Exception.h"
#include "Source/HostAccess/SuiteHandler.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Shell/DrawGrid.h"
#include "Source/Shell/FrameStages.h"
#include "Source/Shell/PreRender.h"

#include <cstdint>
#include <optional>

namespace Tessavoy {

namespace {

using namespace AESDK_OpenGL;

using WorldSuite = SuiteIdentity<PF_WorldSuite2>;

/// What a frame borrows of the host.
struct FrameLoans {
    explicit FrameLoans(PF_InData* inData) : snapshot(inData) {}

    ParameterSnapshot snapshot;
    std::optional<SuiteHandler> suites;  ///< made before the worlds, so that a host without suites ends the frame here
    PF_EffectWorld* input = nullptr;     ///< the effect's own layer at the requested rectangle
    PF_EffectWorld* output = nullptr;    ///< what the host wants filled
    const PF_WorldSuite2* worldSuite = nullptr;
};

/// Reads the parameters, checks the worlds out and acquires the world suite, up to the first error.
PF_Err takeLoans(PF_InData* inData, PF_OutData* outData, PF_SmartRenderExtra* extra, FrameLoans& loans) {
    PF_Err error = loans.snapshot.read();
    endStage(FrameStage::Snapshot);
    if (error == PF_Err_NONE) {
        loans.suites.emplace(inData->pica_basicP);
        error = extra->cb->checkout_layer_pixels(inData->effect_ref, ownLayerCheckoutId, &loans.input);
    }
    if (error == PF_Err_NONE) {
        error = extra->cb->checkout_output(inData->effect_ref, &loans.output);
    }
    if (error == PF_Err_NONE) {
        const void* suite = nullptr;
        error = acquireSuite(inData, outData, WorldSuite::name, WorldSuite::version, "Couldn't load suite.", &suite);
        loans.worldSuite = static_cast<const PF_WorldSuite2*>(suite);
    }
    return error;
}

/// Gives everything back, without asking what was really taken. The first error of the frame is kept.
PF_Err giveBackLoans(PF_InData* inData, PF_OutData* outData, PF_SmartRenderExtra* extra, FrameLoans& loans,
                     PF_Err result) {
    const auto keepFirst = [&result](PF_Err error) {
        if (result == PF_Err_NONE) {
            result = error;
        }
    };
    keepFirst(releaseSuite(inData, outData, WorldSuite::name, WorldSuite::version, "Couldn't release suite."));
    keepFirst(loans.snapshot.release(inData->inter));
    keepFirst(extra->cb->checkin_layer_pixels(inData->effect_ref, ownLayerCheckoutId));
    loans.suites.reset();
    return result;
}

PF_PixelFormat pixelFormatOf(const FrameLoans& loans) {
    PF_PixelFormat format = PF_PixelFormat_INVALID;
    throwOnError(loans.worldSuite->PF_GetPixelFormat(loans.input, &format));
    return format;
}

/// The frame, stage by stage. Throws on any failure.
void renderFrame(PF_InData* inData, PF_OutData* outData, FrameLoans& loans) {
    const StateRestorer restorer;
    const auto renderData = prepareThreadRenderData();
    // This thread's own context is current; what the host had comes back at the end.

    if (loans.input == nullptr || loans.output == nullptr) {
        throw Exception(PF_Err_INTERNAL_STRUCT_DAMAGED);
    }
    // The render has the input world's size, not the output's.
    const A_long width = loans.input->width;
    const A_long height = loans.input->height;
    PrepareRenderTargets(*renderData, static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height),
                         loans.snapshot.MSAA != PopupValues::NoMultisampling);
    const PF_PixelFormat format = pixelFormatOf(loans);
    const PixelTransfer transfer = GetPixelTransfer(format);

    startPass(inData, outData, *renderData, renderData->resolveTexture);
    setViewport(width, height);
    setTransparentClearColor();
    clearTarget();
    const GridDrawing drawing = {static_cast<float>(loans.output->origin_x), static_cast<float>(loans.output->origin_y),
                                 width, height, transfer.multiplier16bit};
    DrawGrid(inData, outData, renderData.get(), loans.snapshot, drawing);
    // The resolve target holds the picture, premultiplied.

    startPass(inData, outData, *renderData, renderData->outputTexture);
    clearTarget();
    DrawOutput(*renderData, width, height, renderData->resolveTexture, transfer.multiplier16bit);
    endStage(FrameStage::Drawing);
    ReadBackOutput(*renderData, inData, loans.input, loans.output, format, transfer.bytesPerPixel, transfer.glType);
    endStage(FrameStage::ReadBack);
    releaseTargets();
}

/// A thrown integer is the result as it stands; anything else that was thrown is out of memory to the host. A frame
/// that was drawn asks the host at last whether it is still wanted.
PF_Err renderGuarded(PF_InData* inData, PF_OutData* outData, FrameLoans& loans) {
    try {
        renderFrame(inData, outData, loans);
    } catch (PF_Err error) {
        if (error != PF_Err_NONE) {
            return error;
        }
    } catch (...) {
        return PF_Err_OUT_OF_MEMORY;
    }
    return inData->inter.abort(inData->effect_ref);
}

}  // namespace

PF_Err SmartRender(PF_InData* inData, PF_OutData* outData, PF_SmartRenderExtra* extra) {
    endStage(FrameStage::Host);
    FrameLoans loans(inData);
    PF_Err result = PF_Err_NONE;
    try {
        result = takeLoans(inData, outData, extra, loans);
    } catch (PF_Err error) {
        result = error;  // a host without suites
    } catch (...) {
        result = PF_Err_OUT_OF_MEMORY;
    }
    if (result == PF_Err_NONE) {
        result = renderGuarded(inData, outData, loans);
    }
    return giveBackLoans(inData, outData, extra, loans, result);
}

}  // namespace Tessavoy
