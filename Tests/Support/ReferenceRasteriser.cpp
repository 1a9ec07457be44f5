#include "Tests/Support/ReferenceRasteriser.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace Tessavoy {

namespace {

/// Pixels between a sample and an outline that count as too close: several times what rasterisers round positions to.
constexpr double OutlineMargin = 0.02;
/// An uncertain fragment of less alpha than this changes no pixel by more than a comparison allows.
constexpr double NegligibleAlpha = 0.002;
constexpr double DiscardAlpha = 0.01;
constexpr double ThresholdMargin = 1e-4;

using Vector3 = std::array<double, 3>;

/// Two vertices, the smaller first, of one shape.
using Edge = std::tuple<ReferenceVertex, ReferenceVertex, int>;

/// Negated exactly when its arguments change places, so that the two sides of an edge agree to the last bit.
Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double dot(const Vector3& a, const Vector3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

bool isFinite(const ReferenceTriangle& triangle) {
    return std::all_of(triangle.vertices.begin(), triangle.vertices.end(), [](const ReferenceVertex& vertex) {
        const double sum = vertex.x + vertex.y + vertex.z + vertex.r + vertex.g + vertex.b + vertex.a;
        return std::isfinite(sum) && std::isfinite(vertex.u + vertex.v + vertex.layer);
    });
}

ReferenceColour mixColours(const ReferenceColour& from, const ReferenceColour& to, double part) {
    ReferenceColour result;
    for (std::size_t n = 0; n < 4; ++n) {
        result[n] = from[n] * (1.0 - part) + to[n] * part;
    }
    return result;
}

/// Samples a grid of colours between texel centres; `at(x, y)` is asked inside the grid only.
template <class At>
ReferenceColour sampleBetween(double u, double v, int width, int height, At at) {
    const double x = u * width - 0.5;
    const double y = v * height - 0.5;
    const auto column = [&](double place) { return std::clamp(static_cast<int>(place), 0, width - 1); };
    const auto row = [&](double place) { return std::clamp(static_cast<int>(place), 0, height - 1); };
    const double left = std::floor(x);
    const double top = std::floor(y);
    const auto upper = mixColours(at(column(left), row(top)), at(column(left + 1), row(top)), x - left);
    const auto lower = mixColours(at(column(left), row(top + 1)), at(column(left + 1), row(top + 1)), x - left);
    return mixColours(upper, lower, y - top);
}

ReferenceColour sampleTexture(const ReferenceTexture& texture, double u, double v, double layer) {
    const int page = std::clamp(static_cast<int>(std::floor(layer + 0.5)), 0, texture.layers - 1);
    return sampleBetween(u, v, texture.width, texture.height, [&](int x, int y) {
        return texture.texels[static_cast<std::size_t>((page * texture.height + y) * texture.width + x)];
    });
}

/// A triangle seen from the samples of a picture. Edge n is the one across from vertex n.
class ProjectedTriangle {
public:
    ProjectedTriangle(const ReferenceTriangle& triangle, const std::array<double, 16>& projection, int width,
                      int height)
        : mVertices(triangle.vertices) {
        for (std::size_t n = 0; n < 3; ++n) {
            const auto row = [&](std::size_t r) {
                return projection[r] * mVertices[n].x + projection[4 + r] * mVertices[n].y +
                       projection[8 + r] * mVertices[n].z + projection[12 + r];
            };
            const double w = row(3);
            mPoints[n] = {(row(0) + w) * 0.5 * width, (row(1) + w) * 0.5 * height, w};
            mClipZ[n] = row(2);
        }
        for (std::size_t n = 0; n < 3; ++n) {
            mEdges[n] = cross(mPoints[(n + 1) % 3], mPoints[(n + 2) % 3]);
        }
        mDeterminant = dot(mPoints[0], mEdges[0]);
    }

    /// 1 or -1 for the side that is seen; 0 for a triangle without area.
    int facing() const { return (mDeterminant > 0.0) - (mDeterminant < 0.0); }

    /// The samples that may be covered, as half-open ranges of columns and rows.
    std::array<int, 4> reach(int width, int height) const {
        if (std::any_of(mPoints.begin(), mPoints.end(), [](const Vector3& p) { return p[2] <= 0.0; })) {
            return {0, width, 0, height};
        }
        std::array<double, 4> box = {1e9, -1e9, 1e9, -1e9};
        for (const Vector3& p : mPoints) {
            box = {std::min(box[0], p[0] / p[2]), std::max(box[1], p[0] / p[2]), std::min(box[2], p[1] / p[2]),
                   std::max(box[3], p[1] / p[2])};
        }
        const auto limit = [](double place, int end) {
            return static_cast<int>(std::clamp(place, 0.0, static_cast<double>(end)));
        };
        return {limit(box[0] - 1.0, width), limit(box[1] + 2.0, width), limit(box[2] - 1.0, height),
                limit(box[3] + 2.0, height)};
    }

    enum class Coverage { Out, In, Uncertain };

    struct Sample {
        Coverage coverage;
        bool drawn;  ///< by the tie rule, also where it is uncertain
        ReferenceVertex attributes;
    };

    /// What the triangle is at (`x`, `y`); `outline[n]` says whether edge n is one.
    Sample at(double x, double y, const std::array<bool, 3>& outline) const {
        Vector3 weights;
        Vector3 distances;
        bool inside = true;
        for (std::size_t n = 0; n < 3; ++n) {
            const double side = facing() * sideOf(n, x, y);
            const double across = facing() * mEdges[n][0];
            const double down = facing() * mEdges[n][1];
            const double slope = std::hypot(across, down);
            inside = inside && (side > 0.0 || (side == 0.0 && (across > 0.0 || (across == 0.0 && down > 0.0))));
            weights[n] = side / std::abs(mDeterminant);
            distances[n] = slope > 0.0 ? side / slope : std::copysign(1e9, side);
        }

        const double clipZ = weights[0] * mClipZ[0] + weights[1] * mClipZ[1] + weights[2] * mClipZ[2];
        const bool clipped = std::abs(clipZ) > 1.0;
        const bool nearby =
            std::all_of(distances.begin(), distances.end(), [](double d) { return d > -OutlineMargin; });
        bool uncertain = nearby && std::abs(std::abs(clipZ) - 1.0) < 1e-6;
        for (std::size_t n = 0; n < 3; ++n) {
            uncertain = uncertain || (nearby && !clipped && outline[n] && distances[n] < OutlineMargin);
        }
        const bool drawn = inside && !clipped;
        const Coverage covered = drawn ? Coverage::In : Coverage::Out;
        return {uncertain ? Coverage::Uncertain : covered, drawn, interpolate(weights)};
    }

private:
    /// The edge's function at a sample: exactly zero on its vertices, exactly negated for the edge reversed.
    double sideOf(std::size_t edge, double x, double y) const {
        const Vector3& from = mPoints[(edge + 1) % 3];
        const Vector3& to = mPoints[(edge + 2) % 3];
        return (from[0] - x * from[2]) * (to[1] - y * to[2]) - (from[1] - y * from[2]) * (to[0] - x * to[2]);
    }

    ReferenceVertex interpolate(const Vector3& weights) const {
        const double sum = weights[0] + weights[1] + weights[2];
        const auto field = [&](double ReferenceVertex::*member) {
            return (weights[0] * mVertices[0].*member + weights[1] * mVertices[1].*member +
                    weights[2] * mVertices[2].*member) /
                   sum;
        };
        using V = ReferenceVertex;
        return {field(&V::x), field(&V::y), field(&V::z), field(&V::r), field(&V::g),
                field(&V::b), field(&V::a), field(&V::u), field(&V::v), field(&V::layer)};
    }

    const std::array<ReferenceVertex, 3>& mVertices;
    std::array<Vector3, 3> mPoints{};  ///< x w, y w and w, in samples
    Vector3 mClipZ{};
    std::array<Vector3, 3> mEdges{};
    double mDeterminant = 0.0;
};

/// Which edges are shared by two triangles that lie on its two sides.
class SharedEdges {
public:
    void add(const ReferenceTriangle& triangle, int facing) {
        for (std::size_t n = 0; n < 3; ++n) {
            const auto [edge, direction] = edgeOf(triangle, n);
            Uses& uses = mUses[edge];
            (direction * facing > 0 ? uses.onOneSide : uses.onOtherSide) += 1;
        }
    }

    std::array<bool, 3> outline(const ReferenceTriangle& triangle) const {
        std::array<bool, 3> result{};
        for (std::size_t n = 0; n < 3; ++n) {
            const Uses& uses = mUses.at(edgeOf(triangle, n).first);
            result[n] = uses.onOneSide != 1 || uses.onOtherSide != 1;
        }
        return result;
    }

private:
    struct Uses {
        int onOneSide = 0, onOtherSide = 0;
    };

    static std::pair<Edge, int> edgeOf(const ReferenceTriangle& triangle, std::size_t n) {
        const ReferenceVertex& from = triangle.vertices[(n + 1) % 3];
        const ReferenceVertex& to = triangle.vertices[(n + 2) % 3];
        return from < to ? std::pair{Edge{from, to, triangle.shape}, 1} : std::pair{Edge{to, from, triangle.shape}, -1};
    }

    std::map<Edge, Uses> mUses;
};

/// The colour that one triangle gives to one sample.
struct Fragment {
    ReferenceColour colour{};
    bool discarded = false;
    bool sure = true;
};

double fogFactor(const ReferenceFog& fog, double z) {
    if (z >= fog.end) {
        return 1.0;
    }
    return z <= fog.start ? 0.0 : (z - fog.start) / (fog.end - fog.start);
}

void applyFog(const ReferenceFog& fog, double z, Fragment& fragment) {
    const double factor = fogFactor(fog, z);
    const int count = static_cast<int>(fog.gradient.size());
    const ReferenceColour colour =
        sampleBetween(factor, 0.5, count, 1, [&](int x, int) { return fog.gradient[static_cast<std::size_t>(x)]; });
    const double alpha = fragment.colour[3];
    fragment.colour = mixColours(fragment.colour, colour, std::clamp(factor * fog.colourWeight, 0.0, 1.0));
    fragment.colour[3] = std::clamp(alpha * (1.0 - factor + fog.opacity * factor), 0.0, 1.0);
    const bool hardStep = fog.end <= fog.start;
    fragment.sure = !hardStep || std::abs(z - fog.end) > ThresholdMargin * std::max(1.0, std::abs(z));
}

Fragment depthFragment(const ReferenceDepth& depth, double z, double alpha) {
    double grey = (depth.end - z) / (depth.end - depth.start);
    grey = depth.clamp ? std::clamp(grey, 0.0, 1.0) : grey;
    Fragment fragment;
    fragment.colour = {grey, grey, grey, depth.alpha ? alpha : 1.0};
    fragment.discarded = alpha <= DiscardAlpha;
    fragment.sure = std::abs(alpha - DiscardAlpha) > ThresholdMargin;
    return fragment;
}

Fragment shade(const ReferenceScene& scene, const ReferenceVertex& place) {
    Fragment fragment;
    fragment.colour = {place.r, place.g, place.b, place.a};
    if (scene.texture) {
        const ReferenceColour texel = sampleTexture(*scene.texture, place.u, place.v, place.layer);
        for (std::size_t n = 0; n < 4; ++n) {
            fragment.colour[n] *= texel[n];
        }
    }
    if (scene.depth) {
        return depthFragment(*scene.depth, place.z, fragment.colour[3]);
    }
    if (scene.fog) {
        applyFog(*scene.fog, place.z, fragment);
    }
    return fragment;
}

void blendOver(ReferenceBlend blend, const ReferenceColour& source, ReferenceColour& target) {
    const double alpha = source[3];
    const double kept = blend == ReferenceBlend::Add ? 1.0 : 1.0 - alpha;
    for (std::size_t n = 0; n < 3; ++n) {
        target[n] = source[n] * alpha + target[n] * kept;
    }
    target[3] = alpha + target[3] * (1.0 - alpha);
}

/// Draws onto samples, one for each pixel of `picture`.
class SampleDrawing {
public:
    SampleDrawing(const ReferenceScene& scene, ReferencePicture& picture) : mScene(scene), mPicture(picture) {}

    void draw() {
        const bool finite = std::all_of(mScene.triangles.begin(), mScene.triangles.end(), isFinite);
        for (ReferencePixel& pixel : mPicture.pixels) {
            pixel.sure = finite;
            pixel.colour[3] = mScene.depth && !mScene.depth->alpha ? 1.0 : 0.0;
        }
        for (const ReferenceTriangle& triangle : mScene.triangles) {
            const int facing = isFinite(triangle) ? project(triangle).facing() : 0;
            if (facing != 0) {
                mShared.add(triangle, facing);
            }
        }
        for (const ReferenceTriangle& triangle : mScene.triangles) {
            if (isFinite(triangle) && project(triangle).facing() != 0) {
                drawTriangle(triangle);
            }
        }
    }

private:
    ProjectedTriangle project(const ReferenceTriangle& triangle) const {
        return {triangle, mScene.projection, mPicture.width, mPicture.height};
    }

    void drawTriangle(const ReferenceTriangle& triangle) {
        const ProjectedTriangle projected = project(triangle);
        const auto outline = mShared.outline(triangle);
        const auto [left, right, top, bottom] = projected.reach(mPicture.width, mPicture.height);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) {
                drawSample(projected.at(x + 0.5, y + 0.5, outline), mPicture.at(x, y));
            }
        }
    }

    void drawSample(const ProjectedTriangle::Sample& sample, ReferencePixel& pixel) {
        using Coverage = ProjectedTriangle::Coverage;
        if (sample.coverage == Coverage::Out) {
            return;
        }
        const Fragment fragment = shade(mScene, sample.attributes);
        const bool matters = !fragment.discarded && std::abs(fragment.colour[3]) > NegligibleAlpha;
        if (!fragment.sure || (sample.coverage == Coverage::Uncertain && matters)) {
            pixel.sure = false;
        }
        if (sample.drawn && !fragment.discarded) {
            blendOver(mScene.blend, fragment.colour, pixel.colour);
        }
    }

    const ReferenceScene& mScene;
    ReferencePicture& mPicture;
    SharedEdges mShared;
};

ReferencePicture emptyPicture(int width, int height) {
    return {width, height, std::vector<ReferencePixel>(static_cast<std::size_t>(width * height))};
}

/// Brings a picture of twice the size down: the mean of five taps, at the pixel's centre and half a pixel off in both
/// directions, each between the centres of the doubled picture's pixels.
ReferencePicture resolve(const ReferencePicture& doubled) {
    ReferencePicture picture = emptyPicture(doubled.width / 2, doubled.height / 2);
    const auto colourAt = [&](int x, int y) { return doubled.at(x, y).colour; };
    constexpr std::array<std::pair<double, double>, 5> taps = {
        {{0.0, 0.0}, {0.5, 0.5}, {-0.5, 0.5}, {0.5, -0.5}, {-0.5, -0.5}}};
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            ReferencePixel& pixel = picture.at(x, y);
            for (const auto& [right, down] : taps) {
                const double u = (x + 0.5 + right) / picture.width;
                const double v = (y + 0.5 + down) / picture.height;
                const auto tap = sampleBetween(u, v, doubled.width, doubled.height, colourAt);
                for (std::size_t n = 0; n < 4; ++n) {
                    pixel.colour[n] += tap[n] / 5.0;
                }
            }
            for (int row = std::max(0, 2 * y - 1); row <= std::min(doubled.height - 1, 2 * y + 2); ++row) {
                for (int column = std::max(0, 2 * x - 1); column <= std::min(doubled.width - 1, 2 * x + 2); ++column) {
                    pixel.sure = pixel.sure && doubled.at(column, row).sure;
                }
            }
        }
    }
    return picture;
}

}  // namespace

ReferencePicture drawReference(const ReferenceScene& scene) {
    const int scale = scene.multisampled ? 2 : 1;
    ReferencePicture picture = emptyPicture(scene.width * scale, scene.height * scale);
    SampleDrawing(scene, picture).draw();
    return scene.multisampled ? resolve(picture) : picture;
}

std::vector<ReferenceColour> gradientTexels(const std::function<ReferenceColour(double)>& colourAt, int count) {
    std::vector<ReferenceColour> texels;
    for (int n = 0; n < count; ++n) {
        texels.push_back(colourAt(static_cast<double>(n) / (count - 1)));
    }
    return texels;
}

std::array<double, 16> pixelProjection(int width, int height) {
    std::array<double, 16> projection{};
    projection[0] = 2.0 / width;
    projection[5] = 2.0 / height;
    projection[10] = 1.0 / 2000.0;
    projection[12] = -1.0;
    projection[13] = -1.0;
    projection[15] = 1.0;
    return projection;
}

std::array<double, 16> cameraProjection(int width, int height, double frameWidth, double frameHeight, double originX,
                                        double originY, double zoomX, double zoomY) {
    constexpr double NearDepth = 1.0;
    constexpr double FarDepth = 10000.0;
    std::array<double, 16> projection{};
    projection[0] = 2.0 * zoomX / width;
    projection[5] = 2.0 * zoomY / height;
    projection[8] = (frameWidth - 2.0 * originX) / width - 1.0;
    projection[9] = (frameHeight - 2.0 * originY) / height - 1.0;
    projection[10] = (FarDepth + NearDepth) / (FarDepth - NearDepth);
    projection[11] = 1.0;
    projection[14] = -2.0 * FarDepth * NearDepth / (FarDepth - NearDepth);
    return projection;
}

}  // namespace Tessavoy
