#pragma once

#include "Source/Editors/GradientData.h"
#include "Source/Editors/RampData.h"
#include "Tests/Unit/Evaluate/FakeLayers.h"
#include "Tests/Unit/Script/ScriptFixture.h"

#include <deque>

namespace Tessavoy {

/// A function that reads one kind of custom parameter.
struct BankFunction {
    CustomParameterType kind;
    const char* name;
    const char* otherArguments;  ///< what stands behind the slot
    A_long firstDiskId;          ///< of the parameter that carries the name of slot 1
    A_long diskIdStep;           ///< from one slot to the next

    std::string call(const std::string& slot) const { return std::string(name) + "(" + slot + otherArguments + ")"; }
    A_long diskId(A_long slot) const { return firstDiskId + (slot - 1) * diskIdStep; }
};

/// One for each kind. The disk ids are those that saved projects have.
extern const std::array<BankFunction, CustomParameterKinds> bankFunctions;

/// A scene whose ten slots of each kind can be told apart: the first result of the function of bankFunctions is slot /
/// 32 for every slot from 1 to 10, except for gradients, which have their values in slots 1, 3, 5, 7 and 9 and handles
/// that are no handles in the even ones.
struct BankScene : ScriptScene {
    BankScene();

    /// What slot 1 to 21 of a kind gives.
    static double valueOf(CustomParameterType kind, A_long slot);

    /// A handle with a ramp or gradient, which the scene owns.
    PF_Handle handleOf(RampData ramp);
    PF_Handle handleOf(GradientData gradient);

    /// Whether the host has everything back that a script may borrow.
    bool nothingIsLent() const;

    FakeLayers layers;

private:
    std::deque<RampData> mRamps;
    std::deque<GradientData> mGradients;
};

/// A straight ramp and a plain gradient of one value everywhere.
RampData constantRamp(float value);
GradientData constantGradient(float value);

}  // namespace Tessavoy
