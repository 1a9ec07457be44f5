#include "Source/Shell/DrawGrid.h"

#include "HostInterface/Constants.h"
#include "Source/Editors/GradientParameter.h"
#include "Source/Gl/DrawPasses.h"
#include "Source/Gl/InstanceBuffers.h"
#include "Source/Gl/RenderTargets.h"
#include "Source/Gl/Textures.h"
#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/RenderGrid/GridEvaluator.h"
#include "Source/RenderGrid/GridInstances.h"
#include "Source/RenderGrid/GridScript.h"
#include "Source/Shell/Camera.h"
#include "Source/Shell/FrameStages.h"
#include "Source/TextureAtlas.h"

#include <cstdint>
#include <optional>

namespace Tessavoy {

namespace {

using namespace AESDK_OpenGL;

float quotient(const PF_RationalScale& scale) {
    return static_cast<float>(scale.num) / static_cast<float>(scale.den);
}

ViewProjection viewOf(PF_InData* inData, const ParameterSnapshot& snapshot, const GridDrawing& drawing) {
    return BuildViewProjection(inData, snapshot.UseCompCamera, drawing.originX, drawing.originY, drawing.width,
                               drawing.height, quotient(inData->downsample_x), quotient(inData->downsample_y));
}

FramePlace placeOf(const PF_InData* inData, const GridDrawing& drawing) {
    return {quotient(inData->downsample_x), quotient(inData->downsample_y), drawing.originX, drawing.originY};
}

/// Brings the frames of the chosen layer into the atlas, if the instances show one and it holds pixels.
void fillAtlas(PF_InData* inData, const AESDK_OpenGL_EffectRenderData& renderData, ParameterSnapshot& snapshot,
               TextureAtlas& atlas) {
    if (snapshot.ShapeType != PopupValues::TexturedQuad || snapshot.ShapeTextureLayerIndex == PopupValues::NoLayer) {
        return;
    }
    PF_LayerDef* layer = snapshot.shapeTextureLayer();
    if (layer == nullptr) {
        return;  // the instances are plain squares
    }
    switch (snapshot.ShapeFramesSplittingMode) {
        case PopupValues::GridOfItems:
            atlas.BuildFromImage(inData, renderData, layer, static_cast<std::uint32_t>(snapshot.ShapeXFramesInTexture),
                                 static_cast<std::uint32_t>(snapshot.ShapeYFramesInTexture),
                                 snapshot.ShapeLimitFramesCount);
            break;
        case PopupValues::TimelineFrames:
            atlas.BuildFromTimeline(inData, renderData, parameterIndex(snapshot.shapeTextureLayerId()));
            break;
        case PopupValues::SplitImage:
            atlas.BuildFromImage(inData, renderData, layer, static_cast<std::uint32_t>(snapshot.CountX),
                                 static_cast<std::uint32_t>(snapshot.CountY), 0);
            break;
        default:
            break;
    }
}

/// What surrounds the instances: fog, or the depth output with its background. Owns the fog's texture for the frame.
class Surroundings {
public:
    Surroundings(const ParameterSnapshot& snapshot, float downsampleX)
        : fog{snapshot.FogEnabled, snapshot.FogColorWeight, 0, snapshot.FogOpacity, snapshot.FogStart, snapshot.FogEnd},
          zDepth{snapshot.OutputZBuffer, snapshot.OutputZDepthStart, snapshot.OutputZDepthEnd,
                 snapshot.OutputZDepthClamp, snapshot.OutputZDepthAlpha} {
        scaleDistances(fog, zDepth, downsampleX);
    }

    ~Surroundings() { deleteFogTexture(); }

    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;

    /// Depth output turns fog off; without the instances' alpha it stands on opaque black.
    void draw(PF_InData* inData, const AESDK_OpenGL_EffectRenderData& renderData, const ParameterSnapshot& snapshot) {
        if (zDepth.enabled != 0) {
            if (zDepth.alpha == 0) {
                drawBackground(renderData);
            }
        } else if (fog.enabled != 0) {
            const CheckOutGradient gradient(inData, snapshot.FogColorGradient);
            fog.gradientTexture =
                MakeFogTexture([&gradient](float t, float* colour) { EvaluateGradient(*gradient, t, colour); });
        }
    }

    void deleteFogTexture() {
        deleteTexture(fog.gradientTexture);
        fog.gradientTexture = 0;
    }

    FogState fog;
    ZDepthState zDepth;
};

/// Draws each batch as it is written, out of the thread's instance buffers.
class DrawingSink final : public BatchSink {
public:
    DrawingSink(AESDK_OpenGL_EffectRenderData& renderData, const GridEvaluator& evaluator, const TextureAtlas& atlas,
                const Surroundings& surroundings)
        : mRenderData(renderData), mEvaluator(evaluator), mAtlas(atlas), mSurroundings(surroundings) {}

    BatchRoom begin(const BatchSize& size) override {
        EnsureInstanceBuffers(mRenderData, static_cast<std::int64_t>(size.vertexCount),
                              static_cast<std::int64_t>(size.vertexStride), static_cast<std::int64_t>(size.indexCount),
                              sizeof(std::uint32_t));
        mBuffers.emplace(mRenderData);
        return {mBuffers->vertices(), mBuffers->indices()};
    }

    void end(const BatchSize& written) override {
        mBuffers.reset();
        endStage(FrameStage::Emission);
        DrawInstanceBatch(mRenderData, static_cast<std::int32_t>(written.indexCount),
                          static_cast<std::int32_t>(written.vertexStride), mEvaluator.isTextured(), mAtlas.textureName,
                          {mEvaluator.viewProjection(), mSurroundings.fog, mSurroundings.zDepth,
                           mEvaluator.multiplier16bit(), mEvaluator.snapshot().BlendMode});
    }

private:
    AESDK_OpenGL_EffectRenderData& mRenderData;
    const GridEvaluator& mEvaluator;
    const TextureAtlas& mAtlas;
    const Surroundings& mSurroundings;
    std::optional<MappedInstanceBuffers> mBuffers;
};

/// A target for the instances, cleared: twice the render size in each direction with multisampling.
void startScene(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL_EffectRenderData& renderData,
                const ParameterSnapshot& snapshot, const GridDrawing& drawing) {
    startPass(inData, outData, renderData, renderData.sceneTexture);
    if (snapshot.MSAA == PopupValues::FourSamples) {
        setViewport(2 * drawing.width, 2 * drawing.height);
    }
    clearTarget();
}

/// The end of the instances: back to render size, and nothing of their surroundings kept.
void endScene(const ParameterSnapshot& snapshot, const GridDrawing& drawing, Surroundings& surroundings) {
    if (snapshot.MSAA == PopupValues::FourSamples) {
        setViewport(drawing.width, drawing.height);
    }
    surroundings.deleteFogTexture();
}

/// Brings the scene down to render size.
void resolveScene(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL_EffectRenderData& renderData,
                  const ParameterSnapshot& snapshot, const GridDrawing& drawing) {
    startPass(inData, outData, renderData, renderData.resolveTexture);
    clearTarget();
    DrawFullPicture(renderData, drawing.width, drawing.height, renderData.sceneTexture, blendOff,
                    snapshot.MSAA == PopupValues::FourSamples);
}

}  // namespace

void DrawGrid(PF_InData* inData, PF_OutData* outData, AESDK_OpenGL_EffectRenderData* renderContext,
              ParameterSnapshot& snapshot, const GridDrawing& drawing) {
    requireRenderContext(renderContext);
    AESDK_OpenGL_EffectRenderData& renderData = *renderContext;
    startScene(inData, outData, renderData, snapshot, drawing);
    const ViewProjection view = viewOf(inData, snapshot, drawing);
    const FramePlace place = placeOf(inData, drawing);
    TextureAtlas atlas;
    fillAtlas(inData, renderData, snapshot, atlas);
    Surroundings surroundings(snapshot, place.downsampleX);
    surroundings.draw(inData, renderData, snapshot);
    endStage(FrameStage::Preparation);
    // The scene target holds what lies behind the instances; all that they read is on the GPU.

    GridScript script(inData, snapshot);
    GridEvaluator evaluator(snapshot, {inData, outData, place, view, atlas, drawing.multiplier16bit, script.usable()});
    GridInstances instances(evaluator);
    DrawOrder order = drawOrderOf(instances);
    endStage(FrameStage::Evaluation);
    // What the cells will draw is known, and the place of each among the others. Cells that write alike are evaluated
    // as they are written.

    DrawingSink sink(renderData, evaluator, atlas, surroundings);
    writeBatches(instances, order, sink);
    endScene(snapshot, drawing, surroundings);
    resolveScene(inData, outData, renderData, snapshot, drawing);
}

void MeasureZBounds(PF_InData* inData, PF_OutData* outData, ParameterSnapshot& snapshot, const GridDrawing& drawing,
                    ZBounds& bounds) {
    const ViewProjection view = viewOf(inData, snapshot, drawing);
    const TextureAtlas atlas;
    GridScript script(inData, snapshot);
    GridEvaluator evaluator(
        snapshot, {inData, outData, placeOf(inData, drawing), view, atlas, drawing.multiplier16bit, script.usable()});
    measureDepths(evaluator, bounds);
}

}  // namespace Tessavoy
