#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Host/FrameSource.h"
#include "Host/Rational.h"

// What the host's project holds for one instance of the effect. Plain data, read-only once an instance is made of it.

namespace TessavoyHost {

struct Composition {
    int width = 0;        // pixels
    int height = 0;       // pixels
    Rational frameRate;   // frames per second
    double duration = 0;  // seconds

    // Frames that begin before the end. A duration that is a whole number of frames but for rounding counts as whole.
    int frameCount() const;
};

// How a value goes from one key to the next: straight, not at all, or as 3u^2 - 2u^3.
enum class Ease { Linear, Hold, Smooth };

struct ColorValue {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t alpha = 255;
};

// Full-resolution layer pixels, y downwards.
struct Point2 {
    double x = 0;
    double y = 0;
};

// z points away from the viewer.
struct Point3 {
    double x = 0;
    double y = 0;
    double z = 0;
};

// A place in Project::layers; -1 is none.
struct LayerReference {
    int layer = -1;
};

// A mask's id, its place in Project::masks plus 1; 0 is none.
struct MaskReference {
    std::uint32_t id = 0;
};

// A value that only the effect understands, in its saved form.
struct ArbitraryValue {
    std::vector<std::byte> flat;
};

// The double stands for sliders, float sliders, angles in degrees, checkboxes (0 or 1) and popups (from 1).
using ParameterValue = std::variant<double, ColorValue, Point2, Point3, LayerReference, MaskReference, ArbitraryValue>;

struct Key {
    double time = 0;  // composition seconds
    ParameterValue value;
    Ease ease = Ease::Linear;  // up to the next key
};

// Keys in rising time; one key is a constant. Before the first and after the last the value holds.
struct ParameterTrack {
    std::vector<Key> keys;
};

// Tangents are relative to the point.
struct MaskVertex {
    Point2 point, in, out;
};

// A mask of the effect's layer, in full-resolution pixels.
struct Mask {
    std::string name;
    bool closed = false;
    std::vector<MaskVertex> vertices;
};

// A track without keys takes its default: position at (width / 2, height / 2, -zoom), pointOfInterest at the middle of
// the composition at z = 0, no rotation. Degrees; zoom in pixels.
struct Camera {
    ParameterTrack position, pointOfInterest, orientation, rotation, zoom;
};

struct Project {
    Composition composition;
    std::vector<std::shared_ptr<FrameSource>> layers;
    std::vector<Mask> masks;
    std::optional<Camera> camera;
    int effectLayer = 0;                            // place in layers
    std::map<int, ParameterTrack> parameters;       // by parameter index; the others keep the registered default
    std::map<std::int32_t, std::string> slotNames;  // by disk id
    std::string script;
    std::filesystem::path scriptFile;  // where the script was read from; empty when its text stands in the scene
};

}  // namespace TessavoyHost
