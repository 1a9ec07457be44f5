#pragma once

#include <array>
#include <compare>
#include <functional>
#include <optional>
#include <vector>

namespace Tessavoy {

/// Red, green, blue, alpha; 1 is full.
using ReferenceColour = std::array<double, 4>;

/// A vertex in view space, in render pixels of the scene. The texture coordinates count in scenes with a texture.
struct ReferenceVertex {
    double x = 0.0, y = 0.0, z = 0.0;
    double r = 1.0, g = 1.0, b = 1.0, a = 1.0;
    double u = 0.0, v = 0.0, layer = 0.0;

    std::partial_ordering operator<=>(const ReferenceVertex&) const = default;
};

/// Triangles of one shape may share edges, across which the shape has no gap.
struct ReferenceTriangle {
    std::array<ReferenceVertex, 3> vertices;
    int shape = 0;
};

/// Layers of equal size, one after the other, each row by row from the first. Sampled between texel centres, with the
/// edge texels going on outside; the layer is the nearest one.
struct ReferenceTexture {
    int width = 0, height = 0, layers = 1;
    std::vector<ReferenceColour> texels;
};

/// Fog along view-space z: none at `start`, full at `end`; a hard step where `end` isn't beyond `start`.
struct ReferenceFog {
    double start = 0.0, end = 0.0;
    double colourWeight = 1.0;              ///< 1 takes the whole fog colour
    double opacity = 1.0;                   ///< what full fog leaves of the alpha
    std::vector<ReferenceColour> gradient;  ///< a row of texels from no fog to full fog
};

/// Depth output: grey falls from 1 at `start` to 0 at `end`.
struct ReferenceDepth {
    double start = 0.0, end = 0.0;
    bool clamp = false;
    bool alpha = false;  ///< keeps the instances' alpha; without it the picture starts from opaque black
};

enum class ReferenceBlend { Normal, Add };

/// One frame as triangles in drawing order.
struct ReferenceScene {
    int width = 0, height = 0;            ///< render size
    std::array<double, 16> projection{};  ///< column-major, to clip space; row 0 of the picture at y = -1
    ReferenceBlend blend = ReferenceBlend::Normal;
    bool multisampled = false;  ///< drawn at twice the size and brought down by five taps
    std::optional<ReferenceFog> fog;
    std::optional<ReferenceDepth> depth;  ///< takes the fog's place
    std::optional<ReferenceTexture> texture;
    std::vector<ReferenceTriangle> triangles;
};

/// A pixel of the drawn picture: colour weighted by alpha, as blending leaves it.
struct ReferencePixel {
    ReferenceColour colour{};

    /// Whether every correct rasteriser gives this colour: no outline of the scene passes within 0.02 pixels of a
    /// sample that counts, and no threshold is closer than rounding reaches.
    bool sure = true;
};

struct ReferencePicture {
    int width = 0, height = 0;
    std::vector<ReferencePixel> pixels;  ///< row by row from the first

    const ReferencePixel& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    ReferencePixel& at(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

/// Draws the scene in double precision, the plain way: every triangle asks every sample in its reach.
///
/// A sample at a pixel's centre is covered when it lies inside the triangle, or on a left or top edge of it. Attributes
/// are interpolated in view space. What lies outside the clip volume in z is cut off. An edge that two triangles
/// of a shape share, with equal vertices and one on each side, is no outline: exactly one of the two covers each sample
/// on it. A triangle with a vertex that isn't finite makes the whole picture unsure.
ReferencePicture drawReference(const ReferenceScene& scene);

/// The colours that a gradient texture of `count` texels holds for a function of 0..1: texel n at n / (count - 1).
std::vector<ReferenceColour> gradientTexels(const std::function<ReferenceColour(double)>& colourAt, int count = 2048);

/// Pixel space: (0, 0, z) at the first pixel's corner, z from -2000 to 2000 inside the clip volume.
std::array<double, 16> pixelProjection(int width, int height);

/// A pin-hole camera at the origin of view space, looking along z, in a picture that shows the part of
/// `frameWidth` x `frameHeight` whose first pixel stands at (`originX`, `originY`). A point at depth `zoomX` is seen
/// at its own width, one at depth `zoomY` at its own height. All in render pixels. Depth 1 to 10000 is inside the clip
/// volume.
std::array<double, 16> cameraProjection(int width, int height, double frameWidth, double frameHeight, double originX,
                                        double originY, double zoomX, double zoomY);

}  // namespace Tessavoy
