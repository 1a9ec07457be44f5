#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Host/Image.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/ReferenceGradient.h"
#include "Tests/Support/ReferenceGrid.h"

namespace Tessavoy {

using FakeProject::Texel;

/// A colour as the effect's colour parameter takes it, with an alpha of its own.
ReferenceColour colour(int red, int green, int blue, double alpha = 1.0);

struct PictureFog {
    double start = 0.0, end = 0.0;  ///< from 0
    double colourWeight = 100.0;    ///< percent
    double opacity = 100.0;         ///< percent
    std::vector<GradientStop> gradient;
};

/// Frames on a layer, all of one size, and how the effect is told to take them from it.
struct PictureFrames {
    enum class Splitting { Items = 1, Timeline = 2, Pieces = 3 };

    Splitting splitting = Splitting::Items;
    int width = 0, height = 0;               ///< of the layer
    std::vector<std::vector<Texel>> images;  ///< one, or one for each frame of a timeline
    int columns = 1, rows = 1;               ///< of items; pieces are as many as cells, a timeline has its images
    int limit = 0;                           ///< of items; 0: all
    int slot = 1;                            ///< the custom slot that holds the layer, 1 to 3

    int count() const;
};

/// A picture as a user describes it. Says from one description what the effect is told, and what must be seen.
struct Picture {
    int width = 72, height = 48;                              ///< of the effect's layer
    std::optional<TessavoyHost::ImageSize> composition = {};  ///< without: as large as the layer

    /// What is drawn, its centre in full-resolution pixels. Its size, part and resolution are a view's; fog, sheet and
    /// the camera's frame come from the fields here. The camera is the composition's, and counts in three dimensions.
    ReferenceGrid grid;

    std::optional<PictureFog> fog;
    std::optional<PictureFrames> frames;
    bool sortByDepth = false;

    /// Further parameters of the effect, set last. They change nothing that is seen.
    std::vector<std::pair<std::string, double>> settings;

    /// What a drawn picture may be off, 1 being full: single precision, over a few blends, unless a test says more.
    double tolerance = 1e-4;
    /// Shares of the picture that must be comparable, and be drawn on, for a comparison to say anything.
    double leastCompared = 0.6, leastDrawn = 0.1;

    /// Adds to one number of every cell what a level, 0 to 255 row by row, takes of `reach`. The number is told by the
    /// name of the effect's parameters. Not on hexagonal grids.
    Picture& vary(std::string_view section, double reach, std::vector<int> levels);

    /// A colour for every cell, row by row, in the place of the common one; alpha stays common. Not on hexagonal grids.
    Picture& paint(std::vector<Texel> colours);

    struct Variation {
        std::string section;
        double reach = 0.0;
        std::vector<int> levels;
    };
    std::vector<Variation> variations;
    std::vector<Texel> colours;

    TessavoyHost::ImageSize compositionSize() const {
        return composition.value_or(TessavoyHost::ImageSize{width, height});
    }
};

/// The picture at twice the size, with all its lengths.
Picture enlarged(Picture picture);

/// Which part of a picture is rendered how.
struct View {
    std::string name;
    TessavoyHost::Rational downsampleX{}, downsampleY{};
    std::optional<TessavoyHost::Region> region = std::nullopt;  ///< in downsampled pixels
    int bitsPerChannel = 8;
    bool doubled = false;  ///< for tables of views; says nothing about the request

    TessavoyHost::FrameRequest request() const;
};

/// The whole picture at full resolution.
View wholeView(int bitsPerChannel);

/// The project that makes the effect draw the picture.
TessavoyHost::ModuleScene sceneOf(const Picture& picture);

/// The grid that the reference draws for a view of the picture.
ReferenceGrid gridOf(const Picture& picture, const View& view);

}  // namespace Tessavoy
