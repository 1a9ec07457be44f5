#pragma once

#include <list>
#include <memory>
#include <mutex>

#include "Host/Project.h"
#include "Host/World.h"

namespace TessavoyHost {

// The layers of a project as worlds, at any time, depth and resolution. Worlds that were made lately are kept, up to a
// number of bytes, so that stills are not converted for every frame. Thread safe.
class LayerWorlds {
public:
    explicit LayerWorlds(const Project& project) : mProject(project) {}

    // Null when the layer shows nothing then. Throws HostError when the picture cannot be read.
    std::shared_ptr<const World> worldAt(int layer, double compositionSeconds, int bitsPerChannel,
                                         const Rational& downsampleX, const Rational& downsampleY);

    int count() const { return static_cast<int>(mProject.layers.size()); }

    // The size of a layer at a resolution, at the origin.
    Region bounds(int layer, const Rational& downsampleX, const Rational& downsampleY) const;

private:
    struct Made {
        std::shared_ptr<const Image> image;  // held, so that its address stays its own
        int bits;
        Rational x, y;
        std::shared_ptr<const World> world;
    };

    std::shared_ptr<const World> find(const Image* image, int bits, const Rational& x, const Rational& y);
    void keep(Made made);

    const Project& mProject;
    std::mutex mMutex;
    std::list<Made> mRecent;  // the latest in front
    std::size_t mBytes = 0;
};

}  // namespace TessavoyHost
