#pragma once

#include <memory>
#include <string>

#include "Host/Command/OutputChannel.h"
#include "Host/Command/RenderOptions.h"
#include "Host/Command/RenderRun.h"
#include "Host/Command/ScriptMessages.h"
#include "Host/EffectInstance.h"

namespace TessavoyHost {

// Renders frames of an instance as the options say, and writes them to files or to standard output.
class EffectFrames : public FrameWork {
public:
    // All must outlive it. depth: bits per channel. size: of the pictures, in pixels.
    EffectFrames(EffectInstance& instance, const RenderOptions& options, int depth, ImageSize size,
                 OutputChannel& output);

    bool isThere(int frame) override;
    std::string fileOf(int frame) const override;
    RenderedFrame render(int frame, const std::atomic<bool>& cancel) override;

private:
    void write(int frame, const World& world) const;

    EffectInstance& mInstance;
    const RenderOptions& mOptions;
    const int mDepth;
    const ImageSize mSize;
    OutputChannel& mOutput;
    const std::string mSoftware;  // name and version, for the files
    const ScriptSource mScript;   // whose lines messages name
};

}  // namespace TessavoyHost
