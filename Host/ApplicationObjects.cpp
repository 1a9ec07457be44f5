#include "Host/ApplicationObjects.h"

namespace TessavoyHost {

ApplicationObjects::ApplicationObjects(int layers) {
    for (int layer = 0; layer < layers; ++layer)
        mLayers.push_back({nullptr, {layer}});
}

const LayerRecord* ApplicationObjects::find(AEGP_LayerH handle) const {
    if (handle == &mCamera.master)
        return &mCamera.record;
    for (const LayerObject& layer : mLayers) {
        if (handle == &layer.master)
            return &layer.record;
    }
    return nullptr;
}

}  // namespace TessavoyHost
