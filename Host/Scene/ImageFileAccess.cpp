#include "Host/ImageFiles/ImageFiles.h"
#include "Host/Scene/LayersReader.h"

namespace TessavoyHost {

ImageAccess imageFileAccess(PictureCheck check) {
    const auto probe = [](const std::filesystem::path& file) {
        const auto size = probeImage(file);
        return PixelSize{size.width, size.height};
    };
    return {probe, [](const std::filesystem::path& file) { return readImage(file); }, check};
}

}  // namespace TessavoyHost
