#pragma once

#include "Source/RenderGrid/GridScript.h"
#include "Source/Sequence.h"
#include "Tests/Unit/RenderGrid/RenderGridFixture.h"

#include <string>
#include <vector>

namespace Tessavoy {

/// A grid of 4 by 3 cells at frame 10 of an instance with a script.
struct ScriptedGrid {
    ScriptedGrid();

    GridScene scene;
    SequenceData sequence;

    /// Shows the frames of a layer on quads; the atlas says which there are.
    void chooseTextureLayer();

    /// The records of the frame under the instance's script, matrices included; their parts are gone.
    std::vector<InstanceState> evaluated();

    /// The same after giving the instance a script, as a text that was never checked.
    std::vector<InstanceState> evaluated(const std::string& script);

    /// The records without any script.
    std::vector<InstanceState> unscripted();

    /// The batches of the frame under this script.
    std::vector<RecordingSink::Batch> drawn(const std::string& script);

    /// Hands the evaluated frame under this script to `look`, which takes a `GridInstances&`.
    template <class Look>
    void lookAt(const std::string& script, const Look& look) {
        sequence.script = script;
        GridScript gridScript(&scene.host.inData, scene.snapshot);
        GridEvaluator evaluator = scene.evaluator(gridScript.usable());
        GridInstances instances(evaluator);
        look(instances);
    }

    /// The host was told nothing.
    void expectNothingReported() const;

private:
    void* mSequenceBlock = &sequence;
    PF_Pixel8 mPixel{};
};

/// Whether two records have the same bits in every field but the parts.
bool sameRecord(const InstanceState& left, const InstanceState& right);
bool sameRecords(const std::vector<InstanceState>& left, const std::vector<InstanceState>& right);

}  // namespace Tessavoy
