#pragma once

#include "HostInterface/Effect.h"
#include "Source/Evaluate/ColorEvaluator.h"
#include "Source/Evaluate/CustomParameters.h"
#include "Source/Evaluate/LayerSampling.h"
#include "Source/Evaluate/NoiseSource.h"
#include "Source/Evaluate/PropertyEvaluator.h"
#include "Source/Evaluate/RandomSource.h"
#include "Source/Evaluate/VisibleEvaluator.h"

#include <array>
#include <string>
#include <vector>

namespace Tessavoy {

/// The entries of every per-slot list. One for each item between a custom section's group start and end; only the first
/// ten are ever filled, the rest keep their zero state.
inline constexpr A_long CustomSlotEntries = CustomParametersCount - 2;

/// The values of one kind of custom parameter; slot n is entry n - 1.
template <class Value>
using CustomSlots = std::array<Value, CustomSlotEntries>;

/// All parameters of one frame, read once at the effect's current time, with the evaluators made from them. A field is
/// called after the parameter that fills it; popups keep the host's one-based value, angles are degrees, points pixels
/// of the host's (downsampled) layer.
///
/// Made on the stack for one call on one thread, read, used, released, thrown away. The objects in it point into it, so
/// it is neither copied nor moved. Without `read` every field has its default; fields whose read failed keep it.
struct ParameterSnapshot {
    /// Sets the defaults; asks nothing of the host. The in-data must outlive the snapshot.
    explicit ParameterSnapshot(PF_InData* in_data);

    ParameterSnapshot(const ParameterSnapshot&) = delete;
    ParameterSnapshot& operator=(const ParameterSnapshot&) = delete;

    /// Reads every parameter and returns the host's first error. After an error no further parameter is asked for, but
    /// `layers.checkouts` still gets one (zero) entry for each, so that the layers keep their places. Noise tables are
    /// built wherever a noise has a multiplier.
    PF_Err read();

    /// Checks every entry of `layers.checkouts` in, in list order and up to the first error, empties the list and
    /// returns that error. No handle or layer of the snapshot may be used afterwards. Destruction checks nothing in.
    PF_Err release(const PF_InteractCallbacks& interact);

    /// The layer that ShapeTextureLayerIndex chooses, or null for none or for one without pixels.
    PF_LayerDef* shapeTextureLayer();

    /// The id that is looked up for the texture layer; empty for none. The popup's value is taken as an item id of the
    /// custom layers as it stands, so that 2 is "Layer.Custom1", 3 "Layer.Rename1", 4 "Layer.Custom2" and so on.
    std::string shapeTextureLayerId() const;

    /// The nearest pixel of custom layer layerInd, 1 to 23, as r, g, b, a; see sampleLayerPixel.
    std::array<float, 4> layerColor(A_long layerInd, float u, float v) const;

    /// One channel of it; see sampleLayerChannel.
    double layerChannel(A_long layerInd, float u, float v, A_long source) const;

    PF_InData* inData;  ///< not owned

    /// The checked-out parameters in call order, and where the custom layers begin among them.
    LayerSlots layers;

    A_long BlendMode = 0;
    A_long MSAA = 0;
    bool SortByZ = false;
    bool FogEnabled = false;
    double FogColorWeight = 0;             ///< percent
    PF_Handle FogColorGradient = nullptr;  ///< GradientData; borrowed until `release`
    double FogOpacity = 0;                 ///< percent
    double FogStart = 0;
    double FogEnd = 0;

    bool UseCompCamera = false;
    double GlobalScale = 0;  ///< percent
    double Rotation3DX = 0;
    double Rotation3DY = 0;
    double Rotation = 0;
    struct {
        double x = 0;
        double y = 0;
    } CenterPos;
    double CenterZ = 0;
    A_long CountX = 0;  ///< columns
    A_long CountY = 0;  ///< rows
    double GridWidth = 0;
    double GridHeight = 0;
    bool HexGrid = false;

    PropertyEvaluator InstanceSize;
    PropertyEvaluator InstanceRotation3DX;
    PropertyEvaluator InstanceRotation3DY;
    PropertyEvaluator InstanceRotation;
    PropertyEvaluator InstanceOffsetX;
    PropertyEvaluator InstanceOffsetY;
    PropertyEvaluator InstanceOffsetZ;
    ColorEvaluator InstanceColor;
    PropertyEvaluator InstanceAlpha;  ///< its flag is CropToOne
    VisibleEvaluator InstanceVisible;

    A_long ShapeType = 0;               ///< 1 polygon, 2 textured quad
    A_long ShapeTextureLayerIndex = 0;  ///< 1 none, n custom layer n - 1
    A_long ShapeFramesSplittingMode = 0;
    A_long ShapeXFramesInTexture = 0;
    A_long ShapeYFramesInTexture = 0;
    A_long ShapeLimitFramesCount = 0;  ///< 0: no limit
    bool ShapeFramesAnimationSequence = false;
    double ShapeFramesAnimationSpeed = 0;
    PropertyEvaluator ShapeFrameIndex;  ///< its flag is LoopIndexes
    A_long ShapeDrawMode = 0;           ///< 1 fill, 2 stroke
    bool ShapeBillboard = false;
    double ShapeAngleOffset = 0;
    PropertyEvaluator ShapeAnchorX;
    PropertyEvaluator ShapeAnchorY;
    bool ShapeUniformScaling = false;
    PropertyEvaluator ShapeScaleX;
    PropertyEvaluator ShapeScaleY;
    bool ShapeFeatherScreenSpace = false;
    double ShapeFeatherPixels = 0;
    double ShapeFeatherPercents = 0;
    PropertyEvaluator ShapeStrokeWidth;
    PropertyEvaluator ShapeRaysCount;
    PropertyEvaluator ShapeShelfLength;
    PropertyEvaluator ShapeLinkMiddleOffset;
    PropertyEvaluator ShapeRoundingRadius;
    double ShapeRoundingDots = 0;

    CustomSlots<double> Float{};
    CustomSlots<std::array<float, 4>> Color{};  ///< r, g, b, a, each 0..1
    std::vector<NoiseSource> Noise;             ///< CustomSlotEntries of them
    std::vector<RandomSource> Random;           ///< CustomSlotEntries of them
    CustomSlots<PF_Handle> Ramp{};              ///< RampData; borrowed until `release`

    /// GradientData; borrowed until `release`. Entries 0, 2, 4, 6 and 8 are gradients 1 to 5; the odd ones hold what
    /// the host leaves in the records of rename buttons 1 to 5. Gradients 6 to 10 are never read.
    CustomSlots<PF_Handle> Gradient{};
    CustomSlots<A_u_long> Path{};  ///< path ids; 0 is no path
    struct {
        CustomSlots<double> X{};
        CustomSlots<double> Y{};
    } Point2D;
    struct {
        CustomSlots<double> X{};
        CustomSlots<double> Y{};
        CustomSlots<double> Z{};
    } Point3D;

    bool OutputZBuffer = false;  ///< OutputType is the Z buffer
    double OutputZDepthStart = 0;
    double OutputZDepthEnd = 0;
    bool OutputZDepthClamp = false;
    bool OutputZDepthAlpha = false;
};

}  // namespace Tessavoy
