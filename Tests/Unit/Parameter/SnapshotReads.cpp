#include "Tests/Unit/Parameter/SnapshotReads.h"

#include <cstdint>

namespace Tessavoy {

namespace {

using Snapshot = ParameterSnapshot;
using Fields = std::vector<double>;

double address(PF_Handle handle) {
    return static_cast<double>(reinterpret_cast<std::intptr_t>(handle));
}

class ReadList {
public:
    std::vector<SnapshotRead> reads;

    template <class Value>
    void field(const std::string& id, Value Snapshot::*member) {
        add(id, [member](const Snapshot& s) { return Fields{static_cast<double>(s.*member)}; });
    }

    void property(const std::string& id, PropertyEvaluator Snapshot::*member, const std::string& flag = "") {
        property(
            id, [member](const Snapshot& s) -> const PropertyEvaluator& { return s.*member; }, flag);
    }

    void color(const std::string& id) {
        add(id + ".Color",
            [](const Snapshot& s) { return Fields(s.InstanceColor.Color.begin(), s.InstanceColor.Color.end()); });
        layerTerm(id, [](const Snapshot& s) -> const LayerTerm& { return s.InstanceColor.Layer; });
        property(id + ".Brightness",
                 [](const Snapshot& s) -> const PropertyEvaluator& { return s.InstanceColor.Brightness; });
        property(id + ".Hue", [](const Snapshot& s) -> const PropertyEvaluator& { return s.InstanceColor.Hue; });
        property(id + ".Saturation",
                 [](const Snapshot& s) -> const PropertyEvaluator& { return s.InstanceColor.Saturation; });
    }

    template <class Get>
    void noise(const std::string& id, Get get) {
        part(id + ".Multiplier", get, &NoiseSource::Multiplier);
        part(id + ".Scale", get, &NoiseSource::Scale);
        part(id + ".ScaleX", get, &NoiseSource::ScaleX);
        part(id + ".ScaleY", get, &NoiseSource::ScaleY);
        part(id + ".OffsetX", get, &NoiseSource::OffsetX);
        part(id + ".OffsetY", get, &NoiseSource::OffsetY);
        part(id + ".OffsetZ", get, &NoiseSource::OffsetZ);
        part(id + ".LoopZ", get, &NoiseSource::LoopZ);
        part(id + ".Seed", get, &NoiseSource::Seed);
        add(id + ".MultLayer.Index", [get](const Snapshot& s) { return Fields{double(get(s).MultLayer.Index)}; });
        add(id + ".MultLayer.Source", [get](const Snapshot& s) { return Fields{double(get(s).MultLayer.Source)}; });
    }

    template <class Get, class Part, class Value>
    void part(const std::string& id, Get get, Value Part::*member) {
        add(id, [get, member](const Snapshot& s) { return Fields{static_cast<double>(get(s).*member)}; });
    }

    void add(const std::string& id, std::function<Fields(const Snapshot&)> fields) {
        reads.push_back({id, std::move(fields)});
    }

    /// Ten reads of a kind; fields(snapshot, entry).
    template <class Get>
    void slots(const std::string& kind, Get fields) {
        for (std::size_t k = 0; k < 10; ++k) {
            add(slot(kind, k), [fields, k](const Snapshot& s) { return Fields(fields(s, k)); });
        }
    }

    static std::string slot(const std::string& kind, std::size_t entry) {
        return kind + ".Custom" + std::to_string(entry + 1);
    }

private:
    template <class Get>
    void layerTerm(const std::string& id, Get get) {
        part(id + ".Layer.Multiplier", get, &LayerTerm::Multiplier);
        part(id + ".Layer.Index", get, &LayerTerm::Index);
        part(id + ".Layer.Source", get, &LayerTerm::Source);
    }

    template <class Get>
    void property(const std::string& id, Get get, const std::string& flag = "") {
        part(id + ".ValueOffset", get, &PropertyEvaluator::ValueOffset);
        noise(id + ".Noise", [get](const Snapshot& s) -> const NoiseSource& { return get(s).Noise; });
        layerTerm(id, [get](const Snapshot& s) -> const LayerTerm& { return get(s).Layer; });
        part(id + ".Value", get, &PropertyEvaluator::Value);
        if (!flag.empty()) {
            part(id + "." + flag, get, &PropertyEvaluator::Flag);
        }
    }
};

void addSettingsAndGrid(ReadList& list) {
    list.field("BlendMode", &Snapshot::BlendMode);
    list.field("MSAA", &Snapshot::MSAA);
    list.field("SortByZ", &Snapshot::SortByZ);
    list.field("FogEnabled", &Snapshot::FogEnabled);
    list.field("FogColorWeight", &Snapshot::FogColorWeight);
    list.add("FogColorGradient", [](const Snapshot& s) { return Fields{address(s.FogColorGradient)}; });
    list.field("FogOpacity", &Snapshot::FogOpacity);
    list.field("FogStart", &Snapshot::FogStart);
    list.field("FogEnd", &Snapshot::FogEnd);
    list.field("UseCompCamera", &Snapshot::UseCompCamera);
    list.add("CountX", [](const Snapshot&) { return Fields{}; });  // what it gives is overwritten
    list.field("CountX", &Snapshot::CountX);
    list.field("CountY", &Snapshot::CountY);
    list.field("GlobalScale", &Snapshot::GlobalScale);
    list.field("Rotation3DX", &Snapshot::Rotation3DX);
    list.field("Rotation3DY", &Snapshot::Rotation3DY);
    list.field("Rotation", &Snapshot::Rotation);
    list.add("CenterPos", [](const Snapshot& s) { return Fields{s.CenterPos.x, s.CenterPos.y}; });
    list.field("CenterZ", &Snapshot::CenterZ);
    list.field("GridWidth", &Snapshot::GridWidth);
    list.field("GridHeight", &Snapshot::GridHeight);
    list.field("HexGrid", &Snapshot::HexGrid);
}

void addInstance(ReadList& list) {
    list.property("InstanceSize", &Snapshot::InstanceSize);
    list.property("InstanceOffsetX", &Snapshot::InstanceOffsetX);
    list.property("InstanceOffsetY", &Snapshot::InstanceOffsetY);
    list.property("InstanceOffsetZ", &Snapshot::InstanceOffsetZ);
    list.color("InstanceColor");
    list.property("InstanceAlpha", &Snapshot::InstanceAlpha, "CropToOne");
    const auto visible = [](const Snapshot& s) -> const VisibleEvaluator& { return s.InstanceVisible; };
    list.part("InstanceVisible.Probability", visible, &VisibleEvaluator::Probability);
    list.part("InstanceVisible.Seed", visible, &VisibleEvaluator::Seed);
}

void addShape(ReadList& list) {
    list.field("ShapeType", &Snapshot::ShapeType);
    list.field("ShapeTextureLayerIndex", &Snapshot::ShapeTextureLayerIndex);
    list.field("ShapeFramesSplittingMode", &Snapshot::ShapeFramesSplittingMode);
    list.field("ShapeXFramesInTexture", &Snapshot::ShapeXFramesInTexture);
    list.field("ShapeYFramesInTexture", &Snapshot::ShapeYFramesInTexture);
    list.field("ShapeLimitFramesCount", &Snapshot::ShapeLimitFramesCount);
    list.field("ShapeFramesAnimationSequence", &Snapshot::ShapeFramesAnimationSequence);
    list.field("ShapeFramesAnimationSpeed", &Snapshot::ShapeFramesAnimationSpeed);
    list.property("ShapeFrameIndex", &Snapshot::ShapeFrameIndex, "LoopIndexes");
    list.field("ShapeDrawMode", &Snapshot::ShapeDrawMode);
    list.field("ShapeBillboard", &Snapshot::ShapeBillboard);
    list.property("ShapeAnchorX", &Snapshot::ShapeAnchorX);
    list.property("ShapeAnchorY", &Snapshot::ShapeAnchorY);
    list.property("InstanceRotation3DX", &Snapshot::InstanceRotation3DX);
    list.property("InstanceRotation3DY", &Snapshot::InstanceRotation3DY);
    list.property("InstanceRotation", &Snapshot::InstanceRotation);
    list.field("ShapeUniformScaling", &Snapshot::ShapeUniformScaling);
    list.property("ShapeScaleX", &Snapshot::ShapeScaleX);
    list.property("ShapeScaleY", &Snapshot::ShapeScaleY);
    list.field("ShapeFeatherScreenSpace", &Snapshot::ShapeFeatherScreenSpace);
    list.field("ShapeFeatherPixels", &Snapshot::ShapeFeatherPixels);
    list.field("ShapeFeatherPercents", &Snapshot::ShapeFeatherPercents);
    list.property("ShapeStrokeWidth", &Snapshot::ShapeStrokeWidth);
    list.property("ShapeRaysCount", &Snapshot::ShapeRaysCount);
    list.field("ShapeAngleOffset", &Snapshot::ShapeAngleOffset);
    list.property("ShapeShelfLength", &Snapshot::ShapeShelfLength);
    list.property("ShapeLinkMiddleOffset", &Snapshot::ShapeLinkMiddleOffset);
    list.property("ShapeRoundingRadius", &Snapshot::ShapeRoundingRadius);
    list.field("ShapeRoundingDots", &Snapshot::ShapeRoundingDots);
}

void addSources(ReadList& list) {
    for (std::size_t k = 0; k < 10; ++k) {
        const auto noise = [k](const Snapshot& s) -> const NoiseSource& { return s.Noise[k]; };
        list.noise(ReadList::slot("Noise", k), noise);
        list.part(ReadList::slot("Noise", k) + ".ResultOffset", noise, &NoiseSource::ResultOffset);
    }
    for (std::size_t k = 0; k < 10; ++k) {
        const auto random = [k](const Snapshot& s) -> const RandomSource& { return s.Random[k]; };
        list.part(ReadList::slot("Random", k) + ".Min", random, &RandomSource::Min);
        list.part(ReadList::slot("Random", k) + ".Max", random, &RandomSource::Max);
        list.part(ReadList::slot("Random", k) + ".Seed", random, &RandomSource::Seed);
    }
}

void addGradients(ReadList& list) {
    const char* const names[] = {"Custom1", "Rename1", "Custom2", "Rename2", "Custom3",
                                 "Rename3", "Custom4", "Rename4", "Custom5", "Rename5"};
    for (std::size_t k = 0; k < 10; ++k) {
        list.add(std::string("Gradient.") + names[k],
                 [k](const Snapshot& s) { return Fields{address(s.Gradient[k])}; });
    }
}

void addCustom(ReadList& list) {
    list.slots("Float", [](const Snapshot& s, std::size_t k) { return Fields{s.Float[k]}; });
    list.slots("Color", [](const Snapshot& s, std::size_t k) { return Fields(s.Color[k].begin(), s.Color[k].end()); });
    list.slots("Layer", [](const Snapshot&, std::size_t) { return Fields{}; });
    addSources(list);
    list.slots("Ramp", [](const Snapshot& s, std::size_t k) { return Fields{address(s.Ramp[k])}; });
    addGradients(list);
    list.slots("Path", [](const Snapshot& s, std::size_t k) { return Fields{double(s.Path[k])}; });
    list.slots("Point2D", [](const Snapshot& s, std::size_t k) { return Fields{s.Point2D.X[k], s.Point2D.Y[k]}; });
    list.slots("Point3D", [](const Snapshot& s, std::size_t k) {
        return Fields{s.Point3D.X[k], s.Point3D.Y[k], s.Point3D.Z[k]};
    });
}

void addOutput(ReadList& list) {
    list.field("OutputType", &Snapshot::OutputZBuffer);
    list.field("OutputZDepthStart", &Snapshot::OutputZDepthStart);
    list.field("OutputZDepthEnd", &Snapshot::OutputZDepthEnd);
    list.field("OutputZDepthClamp", &Snapshot::OutputZDepthClamp);
    list.field("OutputZDepthAlpha", &Snapshot::OutputZDepthAlpha);
}

}  // namespace

std::vector<SnapshotRead> expectedReads() {
    ReadList list;
    addSettingsAndGrid(list);
    addInstance(list);
    addShape(list);
    addCustom(list);
    addOutput(list);
    return list.reads;
}

}  // namespace Tessavoy
