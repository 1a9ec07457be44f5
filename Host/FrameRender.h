#pragma once

#include "Host/EffectInstance.h"

namespace TessavoyHost {

// One frame, from the question about flags to the pixels.
class FrameRender {
public:
    // whole is the effect layer at the request's resolution.
    FrameRender(EffectInstance& instance, const FrameRequest& request, const Region& whole, PF_Handle sequenceData);
    ~FrameRender();

    FrameResult run();

private:
    void queryFlags();
    void preRender();
    void render();
    void placeOutput();

    bool good() const { return mResult.error == PF_Err_NONE; }
    void collect(const CommandResult& command);
    void checkPromise(const PF_PreRenderOutput& output);

    EffectInstance& mInstance;
    const FrameRequest& mRequest;
    const Region mRegion;  // that is asked for
    CommandSetting mSetting;
    FrameWorlds mWorlds;
    PF_RenderRequest mOutputRequest{};
    PF_PreRenderOutput mPromise{};  // what the pre-render said
    FrameResult mResult;
};

}  // namespace TessavoyHost
