#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Host/ApplicationObjects.h"
#include "Host/CommandContext.h"
#include "Host/CommandResult.h"
#include "Host/LayerWorlds.h"
#include "Host/PanelState.h"
#include "Host/ParameterValues.h"
#include "Host/Project.h"
#include "Host/SequencePool.h"
#include "Host/TimeBase.h"
#include "Host/World.h"
#include "HostInterface/Events.h"

namespace TessavoyHost {

class Drawing;
class EffectHost;

struct FrameRequest {
    int frame = 0;
    int bitsPerChannel = 8;  // 8, 16 or 32
    Rational downsampleX{}, downsampleY{};
    std::optional<Region> region = std::nullopt;  // in downsampled pixels; none: the whole layer
    const std::atomic<bool>* cancel = nullptr;    // set it to make the module's abort call answer so
    // Sequence data that a message came with is not used for further frames, so that what the module noted there, such
    // as a script that failed, has no effect on them.
    bool renewAfterMessage = false;
};

struct FrameResult {
    PF_Err error = PF_Err_NONE;
    std::string message;              // what the module or the host has to say about it
    std::string failure;              // of the host itself, with what helps; mostly empty
    bool displayError = false;        // the module asks that the message be shown
    World output;                     // of the region's size; without pixels when there was an error
    std::vector<std::string> broken;  // what the commands left out, and other broken promises
};

// One use of the effect on a layer.
class EffectInstance {
public:
    // Runs the sequence set-up, hands over the project's slot names and script as a project load does, and makes the
    // values of all arbitrary data. Throws HostError.
    EffectInstance(EffectHost& host, const Project& project);
    ~EffectInstance();

    EffectInstance(const EffectInstance&) = delete;
    EffectInstance& operator=(const EffectInstance&) = delete;

    // Renders one frame by PF_Cmd_QUERY_DYNAMIC_FLAGS, PF_Cmd_SMART_PRE_RENDER and PF_Cmd_SMART_RENDER. May be called
    // from several threads at once.
    FrameResult renderFrame(const FrameRequest& request);

    // The sequence data in its saved form, and back from it. Not during a render.
    std::vector<std::byte> flattenedSequenceData();
    void resetup(const std::vector<std::byte>& flat);

    // One command at a moment of the composition, for panels and tests. params, output and extra go to the module as
    // they are; without params the module gets all parameters' values at that moment.
    CommandResult command(PF_Cmd command, int frame, void* extra = nullptr, PF_ParamDef** params = nullptr);

    // The commands of the panel at a frame of the composition. The module gets all parameters' values, layers without
    // their pixels. Except while it draws, what it marks as changed becomes the instance's value, an event's parameter
    // getting a copy of its arbitrary data to change. Not during a render.
    CommandResult panelCommand(PF_Cmd command, int frame, void* extra = nullptr);
    CommandResult panelEvent(PF_EventExtra& extra, int frame);
    CommandResult drawEvent(PF_EventExtra& extra, int frame, Drawing& drawing);

    EffectHost& host() { return mHost; }
    const EffectHost& host() const { return mHost; }
    const Project& project() const { return mProject; }
    const TimeBase& timeBase() const { return mTimeBase; }
    ApplicationObjects& objects() { return mObjects; }
    LayerWorlds& layerWorlds() { return mLayerWorlds; }
    ParameterValues& values() { return mValues; }
    const ParameterValues& values() const { return mValues; }
    PanelState& panel() { return mPanel; }
    const PanelState& panel() const { return mPanel; }
    FrameSource& effectLayer() const { return *mProject.layers.at(static_cast<std::size_t>(mProject.effectLayer)); }

private:
    struct PanelCall;

    Region wholeLayer(const FrameRequest& request) const;
    CommandSetting settingOfPanel(int frame) const;
    CommandResult run(const PanelCall& call);

    EffectHost& mHost;
    const Project mProject;
    TimeBase mTimeBase;
    ApplicationObjects mObjects;
    LayerWorlds mLayerWorlds;
    ParameterValues mValues;
    PanelState mPanel;
    SequencePool mSequence;
};

}  // namespace TessavoyHost
