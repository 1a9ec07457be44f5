#include "HostInterface/Constants.h"
#include "Tests/Pictures/PictureFixture.h"
#include "Tests/Pictures/PictureLayers.h"
#include "Tests/Pictures/PictureParts.h"

namespace Tessavoy {
namespace {

using Splitting = PictureFrames::Splitting;

/// Textures are sampled with eight bits between two texels, in each direction, and levels differ by half at most.
constexpr double FilterTolerance = 1e-3 + 2.0 * 0.5 / 256.0;

/// Blocks of 4 by 4 texels, each of a colour of its own between 64 and 192.
std::vector<Texel> blocks(int width, int height, int seed) {
    std::vector<Texel> texels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int block = 1 + x / 4 + 7 * (y / 4) + 31 * seed;
            const auto level = [&](int factor) { return static_cast<std::uint8_t>(64 + block * factor % 129); };
            texels.push_back({level(37), level(59), level(83), 255});
        }
    }
    return texels;
}

std::vector<Texel> withAlpha(std::vector<Texel> texels) {
    for (Texel& texel : texels) {
        texel[3] = static_cast<std::uint8_t>(255 - texel[0] / 2);
    }
    return texels;
}

/// Four by three quads with gaps, white.
Picture quads() {
    Picture picture = cells(4, 3, 51.0, 31.0, 5.1);
    picture.tolerance = FilterTolerance;
    return picture;
}

const std::vector<int> scatteredFrames = {0, 51, 102, 153, 204, 255, 255, 153, 51, 0, 204, 102};

Picture sheet() {
    Picture picture = quads();
    picture.frames = PictureFrames{Splitting::Items, 24, 24, {blocks(24, 24, 1)}, 3, 2};
    picture.vary("ShapeFrameIndex", 100.0, scatteredFrames);
    return picture;
}

/// Indexes beyond the sheet's limit show its last frame.
Picture limitedSheet() {
    Picture picture = sheet();
    picture.frames->limit = 4;
    picture.grid.cell.frame = 2;
    return picture;
}

Picture oneFrame() {
    Picture picture = quads();
    picture.grid.columns = picture.grid.rows = 1;
    picture.grid.cell.size = 15.0;
    picture.frames = PictureFrames{Splitting::Items, 24, 24, {blocks(24, 24, 5)}, 1, 1};
    return picture;
}

Picture transparentSheet() {
    Picture picture = sheet();
    picture.frames->images = {withAlpha(blocks(24, 24, 2))};
    picture.grid.cell.size = 8.0;  // on each other
    return picture;
}

Picture tintedSheet() {
    Picture picture = transparentSheet();
    picture.grid.cell.colour = colour(255, 153, 51, 0.8);
    return picture;
}

Picture paintedSheet() {
    Picture picture = transparentSheet();
    picture.paint(distinctColours(12));
    return picture;
}

Picture addedSheet() {
    Picture picture = transparentSheet();
    picture.grid.blend = ReferenceBlend::Add;
    picture.grid.cell.colour[3] = 0.5;
    return picture;
}

/// What shapes have, quads don't: corners, stroke, feather, shelves, links, rounding and an angle of the first corner.
Picture whatQuadsIgnore() {
    Picture picture = sheet();
    picture.settings = {{"ShapeRaysCount.Value", 7},
                        {"ShapeDrawMode", 2},
                        {"ShapeFeatherPixels", 5},
                        {"ShapeShelfLength.Value", 50},
                        {"ShapeLinkMiddleOffset.Value", 30},
                        {"ShapeRoundingRadius.Value", 30},
                        {"ShapeAngleOffset", 25}};
    return picture;
}

Picture turnedSheet() {
    Picture picture = sheet();
    picture.grid.rotation = 20.0;
    picture.grid.cell.scaleX = 120.0;
    picture.grid.cell.scaleY = 80.0;
    picture.grid.cell.anchorX = 30.0;
    picture.vary("InstanceRotation", 300.0, risingLevels());
    return picture;
}

Picture sheetInDepth() {
    Picture picture = turnedSheet();
    picture.grid.threeDimensional = true;
    picture.grid.cell.size = 8.0;
    picture.grid.rotationY = 35.0;
    picture.grid.camera = ReferenceCamera{{70.0, -10.0, -150.0}, 160.0, 0.0, 0.0, ReferencePoint{36.0, 24.0, 30.0}};
    picture.sortByDepth = true;
    picture.vary("InstanceOffsetZ", 90.0, scatteredLevels());
    return picture;
}

Picture foggedSheet() {
    Picture picture = sheetInDepth();
    picture.fog =
        PictureFog{120.0,
                   260.0,
                   80.0,
                   40.0,
                   {{0.0, StopKind::Straight, {0.2, 0.4, 0.8, 1.0}}, {1.0, StopKind::Straight, {0.8, 0.6, 0.2, 1.0}}}};
    return picture;
}

Picture depthOfSheet() {
    Picture picture = sheetInDepth();
    picture.frames->images = {withAlpha(blocks(24, 24, 2))};
    picture.grid.depth = ReferenceDepth{120.0, 300.0, true, true};
    return picture;
}

Picture billboardSheet() {
    Picture picture = sheetInDepth();
    picture.grid.billboard = true;
    return picture;
}

Picture pieces() {
    Picture picture = quads();
    picture.frames = PictureFrames{Splitting::Pieces, 48, 36, {blocks(48, 36, 3)}};
    return picture;
}

/// Pieces that meet at their sides show the layer as it is; a quad's half side is 1.4142135 times its size.
Picture meetingPieces() {
    Picture picture = pieces();
    picture.grid.gridWidth = 36.0;
    picture.grid.gridHeight = 24.0;
    picture.grid.cell.size = 6.0 / 1.4142135;
    return picture;
}

/// The frame's index and the sheet's own division are of no account.
Picture piecesIgnoreTheIndex() {
    Picture picture = pieces();
    picture.settings = {{"ShapeFrameIndex.Value", 70}, {"ShapeXFramesInTexture", 5}, {"ShapeYFramesInTexture", 2}};
    return picture;
}

Picture timeline() {
    Picture picture = quads();
    picture.frames = PictureFrames{Splitting::Timeline, 12, 12, {}};
    for (int frame = 0; frame < 6; ++frame) {
        picture.frames->images.push_back(blocks(12, 12, frame));
    }
    picture.vary("ShapeFrameIndex", 100.0, scatteredFrames);
    return picture;
}

Picture timelineOfOneFrame() {
    Picture picture = timeline();
    picture.frames->images.resize(1);
    return picture;
}

/// Quads without a layer are squares in the cell's colour.
Picture quadsWithoutLayer() {
    Picture picture = quads();
    picture.grid.cell.colour = colour(200, 100, 50, 0.7);
    picture.tolerance = 1e-4;
    picture.settings = {{"ShapeType", 2}, {"ShapeRaysCount.Value", 7}, {"ShapeShelfLength.Value", 50}};
    return picture;
}

/// So are quads whose chosen slot holds no layer.
Picture quadsWithAnEmptySlot() {
    Picture picture = quadsWithoutLayer();
    picture.settings.emplace_back("ShapeTextureLayerIndex", 8);
    return picture;
}

const std::vector<NamedPicture> pictures = {
    {"Sheet", sheet},
    {"SheetLimited", limitedSheet},
    {"SheetOfOneFrame", oneFrame},
    {"SheetTransparent", transparentSheet},
    {"SheetTinted", tintedSheet},
    {"SheetPainted", paintedSheet},
    {"SheetAdd", addedSheet},
    {"SheetIgnoringShape", whatQuadsIgnore},
    {"SheetTurned", turnedSheet},
    {"SheetUnderCamera", sheetInDepth},
    {"SheetInFog", foggedSheet},
    {"SheetDepth", depthOfSheet},
    {"SheetOnBillboards", billboardSheet},
    {"Pieces", pieces},
    {"PiecesMeeting", meetingPieces},
    {"PiecesIgnoringTheIndex", piecesIgnoreTheIndex},
    {"Timeline", timeline},
    {"TimelineOfOneFrame", timelineOfOneFrame},
    {"WithoutLayer", quadsWithoutLayer},
    {"EmptySlot", quadsWithAnEmptySlot},
};

INSTANTIATE_TEST_SUITE_P(Textures, EveryDepth, everyDepthOf(pictures), nameOf);

const std::vector<NamedPicture> viewedPictures = {
    {"Sheet", sheet}, {"Timeline", timeline}, {"PiecesMeeting", meetingPieces}};

INSTANTIATE_TEST_SUITE_P(Textures, OtherViews, otherViewsOf(viewedPictures), nameOfView);

using TimelineSlots = PictureFixture;

/// A timeline with its frames in one slot and a still in another, which the effect is told to use.
TessavoyHost::ModuleScene timelineScene(const Picture& picture, int stillSlot) {
    TessavoyHost::ModuleScene scene = sceneOf(picture);
    scene.layer(stillSlot, cellLayer("Still", 1, 1, {{255, 255, 255, 255}}));
    return scene.set("ShapeTextureLayerIndex", stillSlot + 1);
}

TEST_F(TimelineSlots, theThirdEntryTakesItsTimelineFromTheSecondSlot) {
    Picture picture = timeline();
    picture.frames->slot = 2;
    const View view = wholeView(8);
    const TessavoyHost::FrameResult frame = render(timelineScene(picture, 3), view.request());
    const PictureJudgement judgement = judge(referenceOf(picture, view), frame.output, picture.tolerance);
    EXPECT_EQ(judgement.comparison.wrong, 0) << judgement.comparison.firstWrong;
    EXPECT_GT(judgement.drawn, 400);
}

TEST_F(TimelineSlots, theSecondEntryHasNoTimeline) {
    const auto instance = instanceOf(timelineScene(timeline(), 2));
    EXPECT_EQ(instance->renderFrame(wholeView(8).request()).error, PF_Err_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace Tessavoy
