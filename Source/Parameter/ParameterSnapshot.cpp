#include "Source/Parameter/ParameterSnapshot.h"

#include "Source/Parameter/ParameterReader.h"
#include "Source/Parameter/PopupValues.h"
#include "Source/Parameter/Sections.h"

namespace Tessavoy {

namespace {

constexpr A_long filledSlots = 10;

/// The item id of a custom section's first slot.
constexpr A_long firstSlotItem = 2;

void readNoise(ParameterReader& reader, std::string_view section, NoiseSource& noise) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.number("Multiplier", noise.Multiplier);
    reader.number("Scale", noise.Scale);
    reader.number("ScaleX", noise.ScaleX);
    reader.number("ScaleY", noise.ScaleY);
    reader.number("OffsetX", noise.OffsetX);
    reader.number("OffsetY", noise.OffsetY);
    reader.number("OffsetZ", noise.OffsetZ);
    reader.number("LoopZ", noise.LoopZ);
    reader.whole("Seed", noise.Seed);
    {
        const ParameterReader::Prefix multLayer(reader, "MultLayer");
        reader.choice("Index", noise.MultLayer.Index);
        reader.choice("Source", noise.MultLayer.Source);
    }
    // Also where a read above failed: the multiplier alone decides.
    noise.buildTable();
}

void readLayerTerm(ParameterReader& reader, std::string_view section, LayerTerm& term) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.number("Multiplier", term.Multiplier);
    reader.choice("Index", term.Index);
    reader.choice("Source", term.Source);
}

void readProperty(ParameterReader& reader, std::string_view section, PropertyEvaluator& property,
                  std::string_view flag = {}) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.number("ValueOffset", property.ValueOffset);
    readNoise(reader, "Noise", property.Noise);
    readLayerTerm(reader, "Layer", property.Layer);
    reader.number("Value", property.Value);
    if (!flag.empty()) {
        reader.flag(flag, property.Flag);
    }
}

void readColor(ParameterReader& reader, std::string_view section, ColorEvaluator& color) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.color("Color", color.Color);
    readLayerTerm(reader, "Layer", color.Layer);
    readProperty(reader, "Brightness", color.Brightness);
    readProperty(reader, "Hue", color.Hue);
    readProperty(reader, "Saturation", color.Saturation);
}

void readVisible(ParameterReader& reader, std::string_view section, VisibleEvaluator& visible) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.number("Probability", visible.Probability);
    reader.whole("Seed", visible.Seed);
}

void readRandom(ParameterReader& reader, std::string_view section, RandomSource& random) {
    const ParameterReader::Prefix prefix(reader, section);
    reader.number("Min", random.Min);
    reader.number("Max", random.Max);
    reader.whole("Seed", random.Seed);
}

void readRenderSettings(ParameterReader& reader, ParameterSnapshot& s) {
    reader.choice("BlendMode", s.BlendMode);
    reader.choice("MSAA", s.MSAA);
    reader.flag("SortByZ", s.SortByZ);
    reader.flag("FogEnabled", s.FogEnabled);
    reader.number("FogColorWeight", s.FogColorWeight);
    reader.handle("FogColorGradient", s.FogColorGradient);
    reader.number("FogOpacity", s.FogOpacity);
    reader.number("FogStart", s.FogStart);
    reader.number("FogEnd", s.FogEnd);
}

void readGrid(ParameterReader& reader, ParameterSnapshot& s) {
    reader.flag("UseCompCamera", s.UseCompCamera);
    // Twice on purpose: the second read overwrites the first, and the list of checkouts keeps the extra entry.
    reader.whole("CountX", s.CountX);
    reader.whole("CountX", s.CountX);
    reader.whole("CountY", s.CountY);
    reader.number("GlobalScale", s.GlobalScale);
    reader.angle("Rotation3DX", s.Rotation3DX);
    reader.angle("Rotation3DY", s.Rotation3DY);
    reader.angle("Rotation", s.Rotation);
    reader.point("CenterPos", s.CenterPos.x, s.CenterPos.y);
    reader.number("CenterZ", s.CenterZ);
    reader.number("GridWidth", s.GridWidth);
    reader.number("GridHeight", s.GridHeight);
    reader.flag("HexGrid", s.HexGrid);
}

void readInstance(ParameterReader& reader, ParameterSnapshot& s) {
    readProperty(reader, "InstanceSize", s.InstanceSize);
    readProperty(reader, "InstanceOffsetX", s.InstanceOffsetX);
    readProperty(reader, "InstanceOffsetY", s.InstanceOffsetY);
    readProperty(reader, "InstanceOffsetZ", s.InstanceOffsetZ);
    readColor(reader, "InstanceColor", s.InstanceColor);
    readProperty(reader, "InstanceAlpha", s.InstanceAlpha, "CropToOne");
    readVisible(reader, "InstanceVisible", s.InstanceVisible);
}

void readTexture(ParameterReader& reader, ParameterSnapshot& s) {
    reader.choice("ShapeType", s.ShapeType);
    reader.choice("ShapeTextureLayerIndex", s.ShapeTextureLayerIndex);
    reader.choice("ShapeFramesSplittingMode", s.ShapeFramesSplittingMode);
    reader.whole("ShapeXFramesInTexture", s.ShapeXFramesInTexture);
    reader.whole("ShapeYFramesInTexture", s.ShapeYFramesInTexture);
    reader.whole("ShapeLimitFramesCount", s.ShapeLimitFramesCount);
    reader.flag("ShapeFramesAnimationSequence", s.ShapeFramesAnimationSequence);
    reader.number("ShapeFramesAnimationSpeed", s.ShapeFramesAnimationSpeed);
    readProperty(reader, "ShapeFrameIndex", s.ShapeFrameIndex, "LoopIndexes");
}

void readShape(ParameterReader& reader, ParameterSnapshot& s) {
    reader.choice("ShapeDrawMode", s.ShapeDrawMode);
    reader.flag("ShapeBillboard", s.ShapeBillboard);
    readProperty(reader, "ShapeAnchorX", s.ShapeAnchorX);
    readProperty(reader, "ShapeAnchorY", s.ShapeAnchorY);
    readProperty(reader, "InstanceRotation3DX", s.InstanceRotation3DX);
    readProperty(reader, "InstanceRotation3DY", s.InstanceRotation3DY);
    readProperty(reader, "InstanceRotation", s.InstanceRotation);
    reader.flag("ShapeUniformScaling", s.ShapeUniformScaling);
    readProperty(reader, "ShapeScaleX", s.ShapeScaleX);
    readProperty(reader, "ShapeScaleY", s.ShapeScaleY);
    reader.flag("ShapeFeatherScreenSpace", s.ShapeFeatherScreenSpace);
    reader.number("ShapeFeatherPixels", s.ShapeFeatherPixels);
    reader.number("ShapeFeatherPercents", s.ShapeFeatherPercents);
    readProperty(reader, "ShapeStrokeWidth", s.ShapeStrokeWidth);
    readProperty(reader, "ShapeRaysCount", s.ShapeRaysCount);
    reader.number("ShapeAngleOffset", s.ShapeAngleOffset);
    readProperty(reader, "ShapeShelfLength", s.ShapeShelfLength);
    readProperty(reader, "ShapeLinkMiddleOffset", s.ShapeLinkMiddleOffset);
    readProperty(reader, "ShapeRoundingRadius", s.ShapeRoundingRadius);
    reader.number("ShapeRoundingDots", s.ShapeRoundingDots);
}

/// Reads ten items of a custom section, from the first slot in steps of `step`, as read(item's name, entry).
template <class Read>
void readSlots(ParameterReader& reader, std::string_view kind, const Read& read, A_long step = 2) {
    const ParameterReader::Prefix prefix(reader, kind);
    for (A_long entry = 0; entry < filledSlots; ++entry) {
        read(parameterName(Section::CustomParameters, firstSlotItem + entry * step), static_cast<std::size_t>(entry));
    }
}

void readCustomNoise(ParameterReader& reader, std::string_view slot, NoiseSource& noise) {
    readNoise(reader, slot, noise);
    const ParameterReader::Prefix prefix(reader, slot);
    reader.number("ResultOffset", noise.ResultOffset);
}

void readCustomParameters(ParameterReader& reader, ParameterSnapshot& s) {
    using Name = std::string_view;
    readSlots(reader, "Float", [&](Name name, std::size_t k) { reader.number(name, s.Float[k]); });
    readSlots(reader, "Color", [&](Name name, std::size_t k) { reader.color(name, s.Color[k]); });
    s.layers.firstLayerCheckout = static_cast<A_long>(s.layers.checkouts.size());
    readSlots(reader, "Layer", [&](Name name, std::size_t) { reader.layer(name); });
    readSlots(reader, "Noise", [&](Name name, std::size_t k) { readCustomNoise(reader, name, s.Noise[k]); });
    readSlots(reader, "Random", [&](Name name, std::size_t k) { readRandom(reader, name, s.Random[k]); });
    readSlots(reader, "Ramp", [&](Name name, std::size_t k) { reader.handle(name, s.Ramp[k]); });
    // One item at a time, so that every other read is of a rename button: the entries' layout depends on it.
    readSlots(
        reader, "Gradient", [&](Name name, std::size_t k) { reader.handle(name, s.Gradient[k]); }, 1);
    readSlots(reader, "Path", [&](Name name, std::size_t k) { reader.path(name, s.Path[k]); });
    readSlots(reader, "Point2D", [&](Name name, std::size_t k) { reader.point(name, s.Point2D.X[k], s.Point2D.Y[k]); });
    readSlots(reader, "Point3D",
              [&](Name name, std::size_t k) { reader.point3D(name, s.Point3D.X[k], s.Point3D.Y[k], s.Point3D.Z[k]); });
}

void readOutput(ParameterReader& reader, ParameterSnapshot& s) {
    A_long outputType = 0;
    reader.choice("OutputType", outputType);
    s.OutputZBuffer = outputType == PopupValues::ZBuffer;
    reader.number("OutputZDepthStart", s.OutputZDepthStart);
    reader.number("OutputZDepthEnd", s.OutputZDepthEnd);
    reader.flag("OutputZDepthClamp", s.OutputZDepthClamp);
    reader.flag("OutputZDepthAlpha", s.OutputZDepthAlpha);
}

}  // namespace

ParameterSnapshot::ParameterSnapshot(PF_InData* in_data)
    : inData(in_data),
      InstanceSize(layers),
      InstanceRotation3DX(layers),
      InstanceRotation3DY(layers),
      InstanceRotation(layers),
      InstanceOffsetX(layers),
      InstanceOffsetY(layers),
      InstanceOffsetZ(layers),
      InstanceColor(layers),
      InstanceAlpha(layers),
      ShapeFrameIndex(layers),
      ShapeAnchorX(layers),
      ShapeAnchorY(layers),
      ShapeScaleX(layers),
      ShapeScaleY(layers),
      ShapeStrokeWidth(layers),
      ShapeRaysCount(layers),
      ShapeShelfLength(layers),
      ShapeLinkMiddleOffset(layers),
      ShapeRoundingRadius(layers),
      Random(CustomSlotEntries) {
    layers.inData = in_data;
    InstanceAlpha.Flag = true;
    Noise.reserve(CustomSlotEntries);
    for (A_long entry = 0; entry < CustomSlotEntries; ++entry) {
        Noise.emplace_back(layers);
    }
}

PF_Err ParameterSnapshot::read() {
    // The order is part of the record: it fixes the places in the list of checkouts.
    ParameterReader reader(layers);
    readRenderSettings(reader, *this);
    readGrid(reader, *this);
    readInstance(reader, *this);
    readTexture(reader, *this);
    readShape(reader, *this);
    readCustomParameters(reader, *this);
    readOutput(reader, *this);
    return reader.error();
}

PF_Err ParameterSnapshot::release(const PF_InteractCallbacks& interact) {
    PF_Err error = PF_Err_NONE;
    for (PF_ParamDef& checkout : layers.checkouts) {
        error = interact.checkin_param(inData->effect_ref, &checkout);
        if (error != PF_Err_NONE) {
            break;
        }
    }
    layers.clear();
    return error;
}

}  // namespace Tessavoy
