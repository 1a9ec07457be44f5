#include "Tests/Pictures/Picture.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

#include "Tests/Pictures/PictureLayers.h"

namespace Tessavoy {

namespace {

using TessavoyHost::ColorValue;
using TessavoyHost::ModuleScene;
using TessavoyHost::Point2;
using TessavoyHost::Point3;

constexpr int ColourSlot = 10;
constexpr int FirstVariationSlot = 4;

/// A number of a cell, and the effect's section that tells it.
struct CellNumber {
    std::string_view section;
    double& (*of)(ReferenceCell& cell);
};

constexpr std::array<CellNumber, 15> CellNumbers = {{
    {"InstanceSize", [](ReferenceCell& cell) -> double& { return cell.size; }},
    {"InstanceRotation3DX", [](ReferenceCell& cell) -> double& { return cell.angleX; }},
    {"InstanceRotation3DY", [](ReferenceCell& cell) -> double& { return cell.angleY; }},
    {"InstanceRotation", [](ReferenceCell& cell) -> double& { return cell.angle; }},
    {"InstanceOffsetX", [](ReferenceCell& cell) -> double& { return cell.position[0]; }},
    {"InstanceOffsetY", [](ReferenceCell& cell) -> double& { return cell.position[1]; }},
    {"InstanceOffsetZ", [](ReferenceCell& cell) -> double& { return cell.position[2]; }},
    {"InstanceAlpha", [](ReferenceCell& cell) -> double& { return cell.colour[3]; }},
    {"ShapeAnchorX", [](ReferenceCell& cell) -> double& { return cell.anchorX; }},
    {"ShapeAnchorY", [](ReferenceCell& cell) -> double& { return cell.anchorY; }},
    {"ShapeScaleX", [](ReferenceCell& cell) -> double& { return cell.scaleX; }},
    {"ShapeScaleY", [](ReferenceCell& cell) -> double& { return cell.scaleY; }},
    {"ShapeShelfLength", [](ReferenceCell& cell) -> double& { return cell.shelf; }},
    {"ShapeLinkMiddleOffset", [](ReferenceCell& cell) -> double& { return cell.link; }},
    {"ShapeRoundingRadius", [](ReferenceCell& cell) -> double& { return cell.rounding; }},
}};

auto numberOf(std::string_view section) {
    return std::find_if(CellNumbers.begin(), CellNumbers.end(),
                        [&](const CellNumber& number) { return number.section == section; });
}

constexpr std::string_view FrameSection = "ShapeFrameIndex";

/// The percentage of the way through `count` frames at which a frame, from 1, stands.
double frameToPercent(int frame, int count) {
    return count > 1 ? 100.0 * (frame - 1) / (count - 1) : 0.0;
}

int percentToFrame(double percent, int count) {
    return static_cast<int>(std::lround((count - 1) * percent / 100.0)) + 1;
}

std::uint8_t byteOf(double channel) {
    const double level = channel * 255.0;
    if (std::abs(level - std::round(level)) > 1e-9 || level < 0.0 || level > 255.0) {
        throw std::invalid_argument("the effect's colours are bytes");
    }
    return static_cast<std::uint8_t>(std::lround(level));
}

void setGrid(ModuleScene& scene, const ReferenceGrid& grid) {
    scene.set("CountX", grid.columns).set("CountY", grid.rows);
    scene.set("GridWidth", grid.gridWidth).set("GridHeight", grid.gridHeight).set("HexGrid", grid.hexagonal);
    scene.set("CenterPos", Point2{grid.centreX, grid.centreY}).set("CenterZ", grid.centreZ);
    scene.set("Rotation", grid.rotation).set("Rotation3DX", grid.rotationX).set("Rotation3DY", grid.rotationY);
    scene.set("GlobalScale", grid.globalScale).set("UseCompCamera", grid.threeDimensional);
    scene.set("ShapeBillboard", grid.billboard).set("ShapeAngleOffset", grid.shapeAngle);
    scene.set("BlendMode", grid.blend == ReferenceBlend::Add ? 2 : 1).set("MSAA", grid.multisampled ? 2 : 1);
}

void setCell(ModuleScene& scene, ReferenceCell cell) {
    for (const CellNumber& number : CellNumbers) {
        scene.set(std::string(number.section) + ".Value", number.of(cell));
    }
    scene.set("InstanceColor.Color",
              ColorValue{byteOf(cell.colour[0]), byteOf(cell.colour[1]), byteOf(cell.colour[2])});
    scene.set("InstanceAlpha.CropToOne", 0).set("ShapeUniformScaling", 0);
    scene.set("ShapeRaysCount.Value", cell.corners).set("ShapeRoundingDots", cell.roundingDots);
    scene.set("ShapeDrawMode", cell.strokeWidth ? 2 : 1).set("ShapeStrokeWidth.Value", cell.strokeWidth.value_or(20.0));
    scene.set("ShapeFeatherScreenSpace", cell.featherPercents <= 0.0);
    scene.set("ShapeFeatherPixels", cell.featherPixels).set("ShapeFeatherPercents", cell.featherPercents);
}

/// A layer's term of one section: its red, times the reach, on top of the value.
void setLayerTerm(ModuleScene& scene, const std::string& section, int slot, double reach) {
    scene.set(section + ".ValueOffset", 100).set(section + ".Layer.Index", slot + 1);
    scene.set(section + ".Layer.Multiplier", reach).set(section + ".Layer.Source", 1);
}

void setVariations(ModuleScene& scene, const Picture& picture) {
    int slot = FirstVariationSlot;
    for (const Picture::Variation& variation : picture.variations) {
        std::vector<Texel> texels;
        for (const int level : variation.levels) {
            const auto byte = static_cast<std::uint8_t>(level);
            texels.push_back({byte, byte, byte, 255});
        }
        scene.layer(slot, cellLayer("Levels of " + variation.section, picture.grid.columns, picture.grid.rows, texels));
        setLayerTerm(scene, variation.section, slot++, variation.reach);
    }
    if (!picture.colours.empty()) {
        scene.layer(ColourSlot, cellLayer("Colours", picture.grid.columns, picture.grid.rows, picture.colours));
        scene.set("InstanceColor.Color", ColorValue{0, 0, 0});
        scene.set("InstanceColor.Layer.Index", ColourSlot + 1).set("InstanceColor.Layer.Multiplier", 1);
    }
}

void setCamera(ModuleScene& scene, const ReferenceCamera& camera) {
    const auto constant = [](TessavoyHost::ParameterValue value) {
        return TessavoyHost::ParameterTrack{{{0, std::move(value), TessavoyHost::Ease::Hold}}};
    };
    const auto point = [&](const ReferencePoint& p) { return constant(Point3{p[0], p[1], p[2]}); };
    TessavoyHost::Camera& result = scene.project.camera.emplace();
    result.position = point(camera.position);
    const ReferencePoint ahead = {camera.position[0], camera.position[1], camera.position[2] + 1.0};
    result.pointOfInterest = point(camera.target.value_or(ahead));
    result.rotation = point({0.0, 0.0, camera.roll});
    result.zoom = constant(camera.zoom);
}

void setFogAndDepth(ModuleScene& scene, const Picture& picture) {
    if (picture.fog) {
        scene.set("FogEnabled", 1).set("FogStart", picture.fog->start).set("FogEnd", picture.fog->end);
        scene.set("FogColorWeight", picture.fog->colourWeight).set("FogOpacity", picture.fog->opacity);
        scene.set("FogColorGradient", TessavoyHost::ArbitraryValue{flatGradient(picture.fog->gradient)});
    }
    if (const auto& depth = picture.grid.depth) {
        scene.set("OutputType", 2).set("OutputZDepthStart", depth->start).set("OutputZDepthEnd", depth->end);
        scene.set("OutputZDepthClamp", depth->clamp).set("OutputZDepthAlpha", depth->alpha);
    }
}

void setFrames(ModuleScene& scene, const Picture& picture) {
    const PictureFrames& frames = *picture.frames;
    scene.layer(frames.slot, framesLayer(frames));
    scene.set("ShapeType", 2).set("ShapeTextureLayerIndex", frames.slot + 1);
    scene.set("ShapeFramesSplittingMode", static_cast<int>(frames.splitting));
    scene.set("ShapeXFramesInTexture", frames.columns).set("ShapeYFramesInTexture", frames.rows);
    if (frames.limit > 0) {
        scene.set("ShapeLimitFramesCount", frames.limit);
    }
    scene.set("ShapeFrameIndex.Value", frameToPercent(picture.grid.cell.frame, frames.count()));
}

/// What the effect's layers add to a cell.
void changeCell(const Picture& picture, std::size_t number, ReferenceCell& cell) {
    for (const Picture::Variation& variation : picture.variations) {
        const double added = variation.reach * variation.levels.at(number) / 255.0;
        if (variation.section == FrameSection) {
            const int count = picture.frames->count();
            cell.frame = percentToFrame(frameToPercent(cell.frame, count) + added, count);
            continue;
        }
        numberOf(variation.section)->of(cell) += added;
    }
    if (!picture.colours.empty()) {
        for (std::size_t n = 0; n < 3; ++n) {
            cell.colour[n] = picture.colours.at(number)[n] / 255.0;
        }
    }
    if (picture.frames && picture.frames->splitting == PictureFrames::Splitting::Pieces) {
        cell.frame = static_cast<int>(number) + 1;
    }
}

}  // namespace

ReferenceColour colour(int red, int green, int blue, double alpha) {
    return {red / 255.0, green / 255.0, blue / 255.0, alpha};
}

int PictureFrames::count() const {
    return splitting == Splitting::Timeline ? static_cast<int>(images.size()) : limit > 0 ? limit : columns * rows;
}

Picture& Picture::vary(std::string_view section, double reach, std::vector<int> levels) {
    const bool known = section == FrameSection || numberOf(section) != CellNumbers.end();
    if (!known || levels.size() != static_cast<std::size_t>(grid.columns * grid.rows)) {
        throw std::invalid_argument("no cell number, or not one level for each cell: " + std::string(section));
    }
    variations.push_back({std::string(section), reach, std::move(levels)});
    return *this;
}

Picture& Picture::paint(std::vector<Texel> cellColours) {
    if (cellColours.size() != static_cast<std::size_t>(grid.columns * grid.rows)) {
        throw std::invalid_argument("not one colour for each cell");
    }
    colours = std::move(cellColours);
    return *this;
}

Picture enlarged(Picture picture) {
    constexpr int factor = 2;
    picture.width = picture.width * factor;
    picture.height = picture.height * factor;
    if (picture.composition) {
        picture.composition->width = picture.composition->width * factor;
        picture.composition->height = picture.composition->height * factor;
    }
    ReferenceGrid& grid = picture.grid;
    for (double* length : {&grid.centreX, &grid.centreY, &grid.centreZ, &grid.globalScale, &grid.cell.featherPixels}) {
        *length *= factor;
    }
    const auto enlarge = [](ReferencePoint& point) {
        for (double& coordinate : point) {
            coordinate *= factor;
        }
    };
    if (grid.camera) {
        enlarge(grid.camera->position);
        grid.camera->zoom *= factor;
        if (grid.camera->target) {
            enlarge(*grid.camera->target);
        }
    }
    if (grid.depth) {
        grid.depth->start *= factor;
        grid.depth->end *= factor;
    }
    if (picture.fog) {
        picture.fog->start *= factor;
        picture.fog->end *= factor;
    }
    return picture;
}

TessavoyHost::FrameRequest View::request() const {
    TessavoyHost::FrameRequest result;
    result.bitsPerChannel = bitsPerChannel;
    result.downsampleX = downsampleX;
    result.downsampleY = downsampleY;
    result.region = region;
    return result;
}

View wholeView(int bitsPerChannel) {
    View view;
    view.name = "Whole";
    view.bitsPerChannel = bitsPerChannel;
    return view;
}

ModuleScene sceneOf(const Picture& picture) {
    ModuleScene scene(picture.width, picture.height);
    scene.project.composition.width = picture.compositionSize().width;
    scene.project.composition.height = picture.compositionSize().height;
    setGrid(scene, picture.grid);
    setCell(scene, picture.grid.cell);
    setVariations(scene, picture);
    setFogAndDepth(scene, picture);
    scene.set("SortByZ", picture.sortByDepth);
    if (picture.grid.camera) {
        setCamera(scene, *picture.grid.camera);
    }
    if (picture.frames) {
        setFrames(scene, picture);
    }
    for (const auto& [id, value] : picture.settings) {
        scene.set(id, value);
    }
    return scene;
}

ReferenceGrid gridOf(const Picture& picture, const View& view) {
    ReferenceGrid grid = picture.grid;
    const TessavoyHost::Region whole{0, 0, TessavoyHost::downsampled(picture.width, view.downsampleX),
                                     TessavoyHost::downsampled(picture.height, view.downsampleY)};
    const TessavoyHost::Region part = view.region.value_or(whole);
    grid.width = part.width;
    grid.height = part.height;
    grid.originX = part.x;
    grid.originY = part.y;
    grid.downsampleX = view.downsampleX.value();
    grid.downsampleY = view.downsampleY.value();
    grid.centreX *= grid.downsampleX;
    grid.centreY *= grid.downsampleY;
    grid.change = [&picture](int column, int row, ReferenceCell& cell) {
        changeCell(picture, static_cast<std::size_t>(row * picture.grid.columns + column), cell);
    };
    if (!grid.threeDimensional) {
        grid.camera.reset();
    }
    if (grid.camera) {
        grid.camera->frameWidth = picture.compositionSize().width;
        grid.camera->frameHeight = picture.compositionSize().height;
    }
    if (picture.fog) {
        grid.fog = ReferenceFog{picture.fog->start, picture.fog->end, picture.fog->colourWeight / 100.0,
                                picture.fog->opacity / 100.0, gradientColours(picture.fog->gradient)};
    }
    if (picture.frames) {
        grid.sheet = sheetOf(*picture.frames, picture.grid.columns, picture.grid.rows);
        grid.sheet->texture =
            boxed(grid.sheet->texture, static_cast<int>(view.downsampleX.den), static_cast<int>(view.downsampleY.den));
    }
    if (picture.sortByDepth && grid.threeDimensional) {
        grid.order = grid.farToNear();
    }
    return grid;
}

}  // namespace Tessavoy
