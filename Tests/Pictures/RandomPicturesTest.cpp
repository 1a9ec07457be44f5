#include <array>
#include <cmath>
#include <random>

#include "Tests/Pictures/PictureFixture.h"

namespace Tessavoy {
namespace {

/// Draws the parameters of a picture; the same ones for a seed on every machine.
class Draw {
public:
    explicit Draw(unsigned seed) : mEngine(seed) {}

    double between(double low, double high) {
        return low + (high - low) * static_cast<double>(mEngine()) / 4294967296.0;
    }
    int whole(int low, int high) { return static_cast<int>(std::floor(between(low, high + 1.0))); }
    bool chance(double part) { return between(0.0, 1.0) < part; }

    std::vector<int> levels(int count) {
        std::vector<int> result;
        for (int n = 0; n < count; ++n) {
            result.push_back(whole(0, 255));
        }
        return result;
    }

    Texel texel() {
        const auto level = [&] { return static_cast<std::uint8_t>(whole(0, 255)); };
        return {level(), level(), level(), 255};
    }

private:
    std::mt19937 mEngine;
};

void drawGrid(Draw& draw, Picture& picture) {
    ReferenceGrid& grid = picture.grid;
    grid.columns = draw.whole(1, 5);
    grid.rows = draw.whole(1, 4);
    grid.gridWidth = draw.between(20.0, 60.0);
    grid.gridHeight = draw.between(10.0, 40.0);
    grid.centreX = draw.between(30.0, 42.0);
    grid.centreY = draw.between(20.0, 28.0);
    grid.rotation = draw.between(-180.0, 180.0);
    grid.globalScale = draw.between(70.0, 130.0);
    grid.shapeAngle = draw.between(-90.0, 90.0);
    grid.blend = draw.chance(0.3) ? ReferenceBlend::Add : ReferenceBlend::Normal;
    grid.multisampled = draw.chance(0.3);
}

void drawShape(Draw& draw, ReferenceCell& cell) {
    cell.size = draw.between(6.0, 16.0);
    cell.colour = colour(draw.whole(0, 255), draw.whole(0, 255), draw.whole(0, 255), draw.between(0.2, 1.0));
    cell.angle = draw.between(-180.0, 180.0);
    cell.anchorX = draw.between(-40.0, 40.0);
    cell.anchorY = draw.between(-40.0, 40.0);
    cell.scaleX = draw.between(60.0, 140.0);
    cell.scaleY = draw.between(60.0, 140.0);
    cell.corners = draw.whole(3, 8);
    if (draw.chance(0.4)) {
        cell.strokeWidth = draw.between(5.0, 30.0);
    }
    cell.shelf = draw.chance(0.5) ? draw.between(5.0, 30.0) : 0.0;
    cell.link = draw.chance(0.5) ? draw.between(-20.0, 25.0) : 0.0;
    // small enough that no two arcs meet, where a stroke's or a feather's edge has no direction
    cell.rounding = draw.chance(0.5) ? draw.between(0.5, 2.0) : 0.0;
    cell.roundingDots = draw.whole(0, 5);
}

void drawFeather(Draw& draw, Picture& picture) {
    ReferenceCell& cell = picture.grid.cell;
    double pixels = draw.between(1.5, 5.0);
    if (draw.chance(0.5)) {
        cell.featherPixels = pixels;
    } else {
        cell.featherPercents = draw.between(10.0, 40.0);
        pixels = cell.featherPercents / 100.0 * cell.size * picture.grid.globalScale / 100.0;
    }
    // corners lie on a 256th of a pixel, and a slope leaning away may be half as wide
    picture.tolerance += 2.0 / 256.0 / (pixels / 2.0);
}

void drawSpace(Draw& draw, Picture& picture) {
    ReferenceGrid& grid = picture.grid;
    grid.threeDimensional = true;
    grid.rotationX = draw.between(-40.0, 40.0);
    grid.rotationY = draw.between(-40.0, 40.0);
    grid.cell.angleX = draw.between(-40.0, 40.0);
    grid.cell.angleY = draw.between(-40.0, 40.0);
    grid.centreZ = draw.between(-30.0, 60.0);
    grid.billboard = draw.chance(0.3);
    picture.sortByDepth = draw.chance(0.7);
    if (draw.chance(0.7)) {
        const ReferencePoint eye = {draw.between(-60.0, 130.0), draw.between(-50.0, 90.0),
                                    draw.between(-300.0, -150.0)};
        grid.camera = ReferenceCamera{eye, draw.between(150.0, 260.0), 0.0, 0.0, ReferencePoint{36.0, 24.0, 20.0}};
        grid.camera->roll = draw.between(-45.0, 45.0);
    }
}

void drawAir(Draw& draw, Picture& picture) {
    const double start = draw.between(0.0, 200.0);
    const double end = start + draw.between(100.0, 200.0);  // not so short that a slope is steep
    picture.tolerance += 1e-3;                              // a depth may be off by what a 256th of a pixel makes of it
    if (draw.chance(0.5)) {
        const Texel from = draw.texel();
        const Texel to = draw.texel();
        picture.fog = PictureFog{start,
                                 end,
                                 draw.between(0.0, 150.0),
                                 draw.between(0.0, 100.0),
                                 {{0.0, StopKind::Soft, colour(from[0], from[1], from[2])},
                                  {1.0, StopKind::Straight, colour(to[0], to[1], to[2])}}};
    } else {
        picture.grid.depth = ReferenceDepth{start, end, draw.chance(0.5), draw.chance(0.5)};
    }
}

Picture drawPicture(unsigned seed) {
    Draw draw(seed);
    Picture picture;
    picture.leastCompared = 0.3;  // chance may fill the picture with outlines
    picture.leastDrawn = 0.0;
    drawGrid(draw, picture);
    drawShape(draw, picture.grid.cell);
    if (draw.chance(0.5)) {
        drawFeather(draw, picture);
    }
    if (draw.chance(0.6)) {
        drawSpace(draw, picture);
    }
    if (picture.grid.threeDimensional && draw.chance(0.5)) {
        drawAir(draw, picture);
    }
    const int cells = picture.grid.columns * picture.grid.rows;
    picture.vary("InstanceOffsetZ", 80.0, draw.levels(cells));
    picture.vary("InstanceRotation", 120.0, draw.levels(cells));
    std::vector<Texel> colours;
    for (int n = 0; n < cells; ++n) {
        colours.push_back(draw.texel());
    }
    return picture.paint(colours);
}

View drawView(unsigned seed) {
    Draw draw(seed + 1000);
    static constexpr std::array<std::uint32_t, 5> factors = {1, 1, 1, 2, 3};
    View view;
    view.name = "Drawn";
    view.downsampleX.den = factors.at(static_cast<std::size_t>(draw.whole(0, 4)));
    view.downsampleY.den = draw.chance(0.8) ? view.downsampleX.den : 2;
    view.bitsPerChannel = std::array<int, 3>{8, 16, 32}.at(static_cast<std::size_t>(draw.whole(0, 2)));
    if (draw.chance(0.4)) {
        const int width = TessavoyHost::downsampled(72, view.downsampleX);
        const int height = TessavoyHost::downsampled(48, view.downsampleY);
        view.region =
            TessavoyHost::Region{draw.whole(0, width / 4), draw.whole(0, height / 4), width * 2 / 3, height * 2 / 3};
    }
    return view;
}

class RandomPictures : public PictureFixture, public testing::WithParamInterface<int> {};

/// Ten pictures to a test, so that the module is loaded once for them.
TEST_P(RandomPictures, areAsTheReference) {
    int drawn = 0;
    for (int n = 0; n < 10; ++n) {
        const auto seed = static_cast<unsigned>(10 * GetParam() + n);
        SCOPED_TRACE("seed " + std::to_string(seed));
        drawn += expectAsReference(drawPicture(seed), drawView(seed));
    }
    EXPECT_GT(drawn, 2000);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomPictures, testing::Range(0, 8));

}  // namespace
}  // namespace Tessavoy
