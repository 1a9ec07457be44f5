#pragma once

#include <cstdint>

namespace Tessavoy {

/// The stages of a frame, in their order. Each ends where the next begins.
enum class FrameStage : std::uint8_t {
    Host,         ///< everything before the render command
    Snapshot,     ///< parameters read
    Preparation,  ///< worlds, context, targets, camera, atlas, fog texture
    Evaluation,   ///< cells, parts, order; of cells that write alike and aren't ordered, only the first
    Emission,     ///< vertices and indices of a batch, and the other ones of those cells; comes once a batch
    Drawing,      ///< instances, resolve and output passes handed to the GL
    ReadBack,     ///< pixels in the host's world
};

/// Called on the rendering thread, with its context current from Preparation on, whenever a stage has ended.
using FrameStageObserver = void (*)(FrameStage ended);

/// Sets who is told about the stages of all frames from now on; null for nobody. For measurements: the module itself
/// sets none.
void observeFrameStages(FrameStageObserver observer);

/// Tells the observer, if there is one.
void endStage(FrameStage ended);

}  // namespace Tessavoy
