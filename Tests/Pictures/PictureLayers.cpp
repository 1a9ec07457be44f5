#include "Tests/Pictures/PictureLayers.h"

#include <stdexcept>
#include <utility>

#include "Tests/Support/FakeProject.h"

namespace Tessavoy {

namespace {

constexpr int BlockSize = 12;

using TessavoyHost::Image;

std::shared_ptr<const Image> imageOf(int width, int height, const std::vector<Texel>& texels) {
    if (texels.size() != static_cast<std::size_t>(width * height)) {
        throw std::invalid_argument("an image has a colour for each of its pixels");
    }
    return FakeProject::image(width, height,
                              [&](int x, int y) { return texels[static_cast<std::size_t>(y * width + x)]; });
}

}  // namespace

std::shared_ptr<TessavoyHost::FrameSource> cellLayer(const std::string& name, int columns, int rows,
                                                     const std::vector<Texel>& colours) {
    auto image = FakeProject::image(columns * BlockSize, rows * BlockSize, [&](int x, int y) {
        return colours.at(static_cast<std::size_t>(y / BlockSize * columns + x / BlockSize));
    });
    return std::make_shared<FakeProject::StillLayer>(name, std::move(image));
}

std::shared_ptr<TessavoyHost::FrameSource> framesLayer(const PictureFrames& frames) {
    std::vector<std::shared_ptr<const Image>> images;
    for (const std::vector<Texel>& texels : frames.images) {
        images.push_back(imageOf(frames.width, frames.height, texels));
    }
    if (frames.splitting != PictureFrames::Splitting::Timeline) {
        return std::make_shared<FakeProject::StillLayer>("Frames", images.front());
    }
    // Half a frame more than it has, so that rounding never takes the last one.
    const double duration = (static_cast<double>(images.size()) + 0.5) / FakeProject::FilmLayer::framesPerSecond;
    return std::make_shared<FakeProject::FilmLayer>("Frames", std::move(images), 0.0, duration);
}

ReferenceSheet sheetOf(const PictureFrames& frames, int gridColumns, int gridRows) {
    const bool pieces = frames.splitting == PictureFrames::Splitting::Pieces;
    const int images = static_cast<int>(frames.images.size());
    ReferenceSheet sheet;
    sheet.columns = pieces ? gridColumns : frames.columns;
    sheet.rows = pieces ? gridRows : frames.rows;
    if (frames.splitting == PictureFrames::Splitting::Timeline) {
        sheet.columns = images;
        sheet.rows = 1;
    }
    sheet.limit = frames.limit;
    sheet.texture = {frames.width * images, frames.height, 1, {}};
    for (int y = 0; y < frames.height; ++y) {
        for (const std::vector<Texel>& image : frames.images) {
            for (int x = 0; x < frames.width; ++x) {
                const Texel& texel = image[static_cast<std::size_t>(y * frames.width + x)];
                sheet.texture.texels.push_back(colour(texel[0], texel[1], texel[2], texel[3] / 255.0));
            }
        }
    }
    return sheet;
}

ReferenceTexture boxed(const ReferenceTexture& texture, int across, int down) {
    if (texture.width % across != 0 || texture.height % down != 0) {
        throw std::invalid_argument("boxes fill the texture");
    }
    ReferenceTexture result{texture.width / across, texture.height / down, 1, {}};
    result.texels.resize(static_cast<std::size_t>(result.width * result.height));
    for (int y = 0; y < texture.height; ++y) {
        for (int x = 0; x < texture.width; ++x) {
            const ReferenceColour& from = texture.texels[static_cast<std::size_t>(y * texture.width + x)];
            ReferenceColour& to = result.texels[static_cast<std::size_t>(y / down * result.width + x / across)];
            for (std::size_t n = 0; n < 4; ++n) {
                to[n] += from[n] / (across * down);
            }
        }
    }
    return result;
}

std::vector<ReferenceColour> gradientColours(const std::vector<GradientStop>& stops) {
    return gradientTexels([&](double place) { return gradientAt(stops, place); });
}

}  // namespace Tessavoy
