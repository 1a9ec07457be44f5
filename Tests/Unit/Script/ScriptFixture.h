#pragma once

#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Script/ScriptHost.h"
#include "Source/Sequence.h"
#include "Tests/Support/FakeHandleHost.h"
#include "Tests/Unit/Script/FakePaths.h"

#include <array>
#include <string>
#include <vector>

namespace Tessavoy {

/// A host, a snapshot in its zero state, an instance without names, and what a script is told of a cell: column 3, row
/// 2 of a grid of 5 by 4 at a quarter of its width and half of its height, full resolution, frame 10 at 25 frames a
/// second.
struct ScriptScene {
    ScriptScene();

    FakeHandleHost host;
    FakePaths paths{host};
    SequenceData sequence;
    ParameterSnapshot snapshot;
    Matrix gridMatrix = Matrix::identity();
    CellScriptInputs inputs{1.0F, 1.0F, 0.25F, 0.5F, 5, 4, 300.0, 200.0, gridMatrix};

    /// A live cell with a different number in each field.
    InstanceState cell() const;

    /// The cell after a script; the script must compile and run.
    InstanceState run(const std::string& script);

    /// What a script leaves in x, y, z and radius after assigning `expressions` to them, as in "GetColor(1)".
    std::array<float, 4> evaluate(const std::string& expressions);

    /// The first of them.
    float value(const std::string& expression) { return evaluate(expression)[0]; }

    /// A Lua number to its last bit, which the cell's fields would round.
    double number(const std::string& expression);

    /// All results of a call, to their last bits.
    std::vector<double> results(const std::string& call);

private:
    void* mSequenceBlock = &sequence;
};

/// Whether two cells have the same bits in all fields that a script sees.
bool sameFields(const InstanceState& left, const InstanceState& right);

}  // namespace Tessavoy
